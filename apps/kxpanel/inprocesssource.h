#pragma once
// A source fed by code in the same process: tests, benchmarks and applications that
// embed the runner push values; writes are recorded (and can be refused to test failure
// paths). Connected from Start() to Stop(); pushes while stopped are still delivered.
#include <QList>
#include <QMap>
#include <QPair>

#include "source.h"

namespace kx::panel {

class InProcessSource : public Source {
    Q_OBJECT
  public:
    explicit InProcessSource(const QString& name, QObject* parent = nullptr)
        : Source(name, parent) {}

    void Start() override { setState(State::Connected); }
    void Stop() override { setState(State::Stopped); }
    bool Write(const QString& address, const SourceValue& value) override;

    void Push(const QString& address, const SourceValue& value) { publish(address, value); }
    void Push(const QString& address, double v) { Push(address, SourceValue::FromNumber(v)); }

    const QList<QPair<QString, SourceValue>>& Writes() const { return writes_; }
    void SetAcceptWrites(bool accept) { acceptWrites_ = accept; }
    const QMap<QString, int>& Watched() const { return watched_; }
    void Watch(const QString& address, int words) override { watched_.insert(address, words); }

  private:
    QList<QPair<QString, SourceValue>> writes_;
    QMap<QString, int> watched_;
    bool acceptWrites_ = true;
};

}  // namespace kx::panel
