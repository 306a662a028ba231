#pragma once
// What assistive tools learn about a trend recorder:
//   role         QAccessible::Chart
//   Name         accessibleName when set, else Caption, else the object name
//   Value        the newest record's values of the visible channels, "Ch<n> <value>
//                <unit>" joined by "; " (each value in the channel's ValueFormat, else
//                "##0.#"); empty without records
//   Description  "recording" or "stopped", then ", upper limit exceeded" or ", lower limit
//                exceeded" when an enabled limit is passed by the newest value of the right
//                scale's channel (after accessibleDescription, when the application set one)
//   Help         whatsThis, else the tool tip
// Installed by every trend when it is made.
#include <QAccessibleWidget>

namespace kx {

class TKxTrend;

class TKxTrendAccessible : public QAccessibleWidget {
  public:
    explicit TKxTrendAccessible(TKxTrend* trend);
    QString text(QAccessible::Text t) const override;

  private:
    TKxTrend* trend() const;
};

// The factory of every recorder-subsystem component (trend, counter, clock, ...).
QAccessibleInterface* KxRecorderAccessibleFactory(const QString& className, QObject* object);
void KxInstallRecorderAccessibility();

}  // namespace kx
