#pragma once
// TKxFlash: calls its OnTimer handler every Interval milliseconds on the GUI thread.
//
// The ticks come from a TKxTickSource (a precise QTimer unless a test installed a
// factory), so handlers always run on the GUI thread and nothing is locked.
#include <QObject>
#include <cstdint>
#include <functional>
#include <memory>

#include "kx/blink/ticksource.h"

namespace kx {

class TKxFlash : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool Enabled READ Enabled WRITE SetEnabled)
    Q_PROPERTY(uint32_t Interval READ Interval WRITE SetInterval DESIGNABLE false)
    Q_PROPERTY(TThreadPriority ThreadPriority READ ThreadPriority WRITE SetThreadPriority)

  public:
    // Kept for compatibility of stored settings: the ticks run on the GUI thread,
    // so the priority is only stored (and restarts the ticks like any other
    // setting); it does not change how often or when the handler runs.
    enum TThreadPriority : int {
        tpIdle,
        tpLowest,
        tpLower,
        tpNormal,
        tpHigher,
        tpHighest,
        tpTimeCritical
    };
    Q_ENUM(TThreadPriority)

    using TNotifyEvent = std::function<void(QObject* sender)>;

    explicit TKxFlash(QObject* owner = nullptr);
    // Stops the ticks before anything else goes; there is no thread to wait for,
    // so destroying a TKxFlash at any time is immediate and safe, even from
    // inside its own OnTimer handler.
    ~TKxFlash() override;

    bool Enabled() const { return enabled_; }
    void SetEnabled(bool value);
    // Milliseconds between ticks; 0 stops the ticks.
    uint32_t Interval() const { return interval_; }
    void SetInterval(uint32_t value);
    TThreadPriority ThreadPriority() const { return priority_; }
    void SetThreadPriority(TThreadPriority value);
    // An empty handler counts as unassigned. Replacing one assigned handler by
    // another keeps the ticks running in their phase.
    const TNotifyEvent& OnTimer() const { return onTimer_; }
    void SetOnTimer(TNotifyEvent handler);

    // The source driving this component (owned), for tests.
    TKxTickSource* TickSource() const { return source_.get(); }

  protected:
    // Stops the ticks, then starts them with Interval only when Interval is not 0,
    // Enabled is true and a handler is assigned.
    void UpdateTimer();
    // One tick: calls OnTimer(this) when Enabled, not being destroyed and assigned.
    virtual void Timer();

  private:
    std::unique_ptr<TKxTickSource> source_;
    TNotifyEvent onTimer_;
    uint32_t interval_ = 16;
    TThreadPriority priority_ = tpNormal;
    bool enabled_ = true;
    bool destroying_ = false;
};

}  // namespace kx
