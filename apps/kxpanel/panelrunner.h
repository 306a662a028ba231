#pragma once
// One live panel: the loaded .ui, its sources, the binder and the alarm log, owned
// together. Load() fails only for what makes running pointless (an unreadable panel, a
// bindings file with errors); everything else (a binding to a missing widget, a source
// type this build lacks, an alarm log that cannot be written) is a message and the rest of
// the panel runs.
#include <QMap>
#include <QObject>
#include <QStringList>
#include <memory>
#include <vector>

#include "alarmlog.h"
#include "bindingsfile.h"
#include "source.h"

class QWidget;

namespace kx::panel {

class Binder;

class PanelRunner : public QObject {
    Q_OBJECT
  public:
    explicit PanelRunner(QObject* parent = nullptr);
    ~PanelRunner() override;

    // bindingsPath may be empty (a panel without live data). false with *error on failure.
    bool Load(const QString& panelPath, const QString& bindingsPath, QString* error);
    // Messages for stderr: warnings of the bindings file and problems found at start.
    const QStringList& Messages() const { return messages_; }
    void Start();

    QWidget* Panel() const { return panel_.get(); }
    Binder* Bindings() const { return binder_.get(); }
    Source* SourceNamed(const QString& name) const { return sourceMap_.value(name, nullptr); }

  private:
    std::unique_ptr<QWidget> panel_;
    std::vector<std::unique_ptr<Source>> sources_;
    QMap<QString, Source*> sourceMap_;
    std::unique_ptr<Binder> binder_;
    AlarmLog alarmLog_;
    QStringList messages_;
};

}  // namespace kx::panel
