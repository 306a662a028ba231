#pragma once
// Binds a loaded panel to its sources: every value that arrives for a bound address is
// scaled and written to its component property; operator changes go back to the source;
// components whose data is too old show the stale overlay; limit and overflow events of
// bound indicators go to the alarm log.
//
// Targets: "Widget.Channel[n]" sets the current value of a trend channel (the trend
// records it on its own ticks); "Widget.Property" writes a property. Numbers go to double
// and float properties as they are (the components ignore NaN and clamp infinities), to
// bool ones as value != 0, to int ones rounded, keeping the bits of 32-bit status words
// (values up to 4294967295 wrap into the int's negative half, as the word reads), and
// saturated beyond that.
//
// Problems found at start (no such widget, no such property, a property that is not a
// number or bool, or read-only, Channel[n] on something that is not a trend, write-back
// from a component the operator cannot change, a source that is not available) are listed
// in Problems() with the binding's JSON path; that binding is left out and the rest runs.
//
// Write-back (write: true): adjusters write on OnValueChanged, once per finished change,
// never for each drag step; binary controls write when the operator changed Checked or
// StatusInt (changes the binder makes itself are not written back). The value goes
// through the inverse scaling; a write the source refuses at once ("bindings[2]: write to
// plc holding:20 failed: refused by the source") or reports as failed later ("write to plc
// holding:20 failed: <the server's answer>") is reported through writeFailed and not
// retried. While the operator is still moving an adjuster, values arriving for it
// are held back so that it does not jump under the hand; the newest is applied once the
// change is finished.
//
// Stale: a binding is stale when its last value is stale_after_ms old (0: never); a
// component is stale while any of its bindings is, and its overlay (staleoverlay.h) then
// says since when the oldest of them has had no data. Counting starts when Bind() runs.
// Ages come from kx::GetTickCount and times from kx::Now, so tests step them with a fake
// clock. A timer calls CheckStale() four times a second.
//
// Readings that the scaling rejects (short words, NaN, ...) are dropped and counted; the
// count is logged at most once a minute.
#include <QHash>
#include <QList>
#include <QMap>
#include <QMetaProperty>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QTimer>
#include <vector>

#include "bindingsfile.h"
#include "source.h"

namespace kx {
class TChSettings;
class TKxAnalogCControl;
class TKxAnalogGControl;
}  // namespace kx

namespace kx::panel {

class AlarmLog;
class StaleOverlay;

class Binder : public QObject {
    Q_OBJECT
  public:
    explicit Binder(QWidget* panel, QObject* parent = nullptr);
    ~Binder() override;

    // Resolves the bindings against the panel and the running sources (by name; a missing
    // one is reported per binding) and connects them. Call once.
    void Bind(const BindingsFile& file, const QMap<QString, Source*>& sources);
    // Limit and overflow events go to log (not owned; null: none). Call before Bind.
    void SetAlarmLog(AlarmLog* log) { alarmLog_ = log; }

    const QStringList& Problems() const { return problems_; }
    int BoundCount() const { return int(bindings_.size()); }
    int64_t Applied() const { return applied_; }
    int64_t Dropped() const { return dropped_; }

    void CheckStale();
    // The overlay of a bound component; null when it has none (yet).
    StaleOverlay* OverlayOf(const QWidget* widget) const;

  signals:
    void writeFailed(const QString& message);

  private:
    struct Binding {
        BindingConfig Config;
        QPointer<QWidget> Widget;
        Source* From = nullptr;
        QMetaProperty Property;
        TChSettings* Channel = nullptr;
        TKxAnalogGControl* Indicator = nullptr;  // fast path for Value
        uint32_t LastTick = 0;
        double LastWall = 0.0;
        bool HeldBack = false;
        double HeldValue = 0.0;
    };

    bool resolve(Binding& b, const QMap<QString, Source*>& sources);
    bool resolveProperty(Binding& b);
    void connectWriteBack(int index);
    void connectAlarms(QWidget* w);
    void onValue(Source* source, const QString& address, const SourceValue& value);
    void apply(Binding& b, double value);
    void writeBack(int index);
    void finishAdjusting(QWidget* w);
    void refreshStale(QWidget* w);
    void problem(const QString& path, const QString& message);
    void noteDropped();

    QWidget* panel_;
    AlarmLog* alarmLog_ = nullptr;
    std::vector<Binding> bindings_;
    QHash<QString, QList<int>> byAddress_;  // "source\naddress" -> bindings
    QHash<const QWidget*, QList<int>> byWidget_;
    QHash<const QWidget*, QPointer<StaleOverlay>> overlays_;
    QStringList problems_;
    QTimer staleTimer_;
    int applying_ = 0;
    int64_t applied_ = 0;
    int64_t dropped_ = 0;
    int64_t droppedLogged_ = 0;
    uint32_t lastDropLog_ = 0;
    bool dropLogged_ = false;
};

}  // namespace kx::panel
