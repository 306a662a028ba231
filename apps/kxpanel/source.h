#pragma once
// The abstract data source of a live panel. A source delivers values by address (a
// simulator signal name, a Modbus register or coil, an MQTT topic), keeps a connection
// state and the tick of its last data, and accepts write-back from the panel's adjusters
// and switches.
//
// Values are either a number (simulator, MQTT) or raw 16-bit words as a field bus reads
// them (a register, two registers for 32-bit types, 0/1 for a coil); Scaling turns both
// into the bound engineering value.
//
// Contract for implementations (simulator, in-process, Modbus TCP, MQTT):
//  - Watch() is called for every bound address before Start(); a source may poll only
//    those. words is the number of registers the binding's type needs (1 or 2).
//  - Start() never blocks; connecting happens in the event loop, and a source that cannot
//    connect keeps trying by itself (capped back-off) while its state says so.
//  - publish() is the only way values leave a source: it stamps LastDataTick and emits
//    valueArrived on the GUI thread.
//  - Write() returns false at once when the write cannot even be sent (no connection,
//    unknown or read-only address); a write that fails later is reported through
//    writeFailed. Neither is retried: the operator's next action writes again.
#include <QObject>
#include <QString>
#include <cstdint>
#include <vector>

#include "kx/host/clock.h"

namespace kx::panel {

struct SourceValue {
    // Raw words (bus order: words[0] is the first register) when IsWords, else Number.
    std::vector<uint16_t> Words;
    double Number = 0.0;
    bool IsWords = false;

    static SourceValue FromNumber(double v) { return {{}, v, false}; }
    static SourceValue FromWords(std::vector<uint16_t> w) { return {std::move(w), 0.0, true}; }
};

class Source : public QObject {
    Q_OBJECT
  public:
    enum class State { Stopped, Connecting, Connected, Unavailable };
    Q_ENUM(State)

    explicit Source(const QString& name, QObject* parent = nullptr)
        : QObject(parent), name_(name) {}

    const QString& Name() const { return name_; }
    State ConnectionState() const { return state_; }
    // GetTickCount() of the last value published; 0 before the first.
    uint32_t LastDataTick() const { return lastDataTick_; }
    bool HasData() const { return hasData_; }

    virtual void Watch(const QString& address, int words) {
        Q_UNUSED(address);
        Q_UNUSED(words);
    }
    // Whether write-back to address takes raw words (a field bus) or a number.
    virtual bool TakesWords(const QString& address) const {
        Q_UNUSED(address);
        return false;
    }
    virtual void Start() = 0;
    virtual void Stop() = 0;
    virtual bool Write(const QString& address, const SourceValue& value) = 0;

  signals:
    void valueArrived(const QString& address, const kx::panel::SourceValue& value);
    void stateChanged(kx::panel::Source::State state);
    void writeFailed(const QString& address, const QString& message);

  protected:
    void setState(State s) {
        if (s == state_) return;
        state_ = s;
        emit stateChanged(s);
    }
    void publish(const QString& address, const SourceValue& value) {
        lastDataTick_ = GetTickCount();
        hasData_ = true;
        emit valueArrived(address, value);
    }

  private:
    QString name_;
    State state_ = State::Stopped;
    uint32_t lastDataTick_ = 0;
    bool hasData_ = false;
};

}  // namespace kx::panel
