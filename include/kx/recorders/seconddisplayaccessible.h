#pragma once
// What assistive tools learn about the operating-hour counter and the clock:
//   role         QAccessible::Indicator (read-only)
//   Name         accessibleName when set, else the object name, else "operating-hour
//                counter" / "clock"
//   Value        the text as shown ("0012h:05m:07s", "10:00:00 AM")
//   Description  counter: "counting" or "stopped", then ", limit reached" while the limit
//                holds and ", zero" at zero; clock: nothing (after accessibleDescription,
//                when the application set one)
//   Help         whatsThis, else the tool tip
// A value-change event is sent each time the text is redrawn, only while an assistive
// tool listens. Installed by each counter and clock when it is made.
#include <QAccessibleWidget>

namespace kx {

class TKxSecondDisplay;

class TKxSecondDisplayAccessible : public QAccessibleWidget {
  public:
    explicit TKxSecondDisplayAccessible(TKxSecondDisplay* display);
    QString text(QAccessible::Text t) const override;

  private:
    TKxSecondDisplay* display() const;
};

}  // namespace kx
