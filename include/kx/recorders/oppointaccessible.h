#pragma once
// What assistive tools learn about the operating-point display:
//   role         QAccessible::Indicator (read-only)
//   Name         accessibleName when set, else the object name, else "operating point"
//   Value        "<X name> <X value> <X unit>; <Y name> <Y value> <Y unit>": each axis'
//                Name1 (else "X" / "Y"), its value in its ValueFormat (else "##0.#") and
//                its ValueUnit when there is one
//   Description  "out of range" while either value lies outside its axis, else "normal"
//                (after accessibleDescription, when the application set one)
//   Help         whatsThis, else the tool tip
// Installed by each display when it is made.
#include <QAccessibleWidget>

namespace kx {

class TKxOperatingPoint;

class TKxOperatingPointAccessible : public QAccessibleWidget {
  public:
    explicit TKxOperatingPointAccessible(TKxOperatingPoint* display);
    QString text(QAccessible::Text t) const override;

  private:
    TKxOperatingPoint* display() const;
};

}  // namespace kx
