#pragma once
// What assistive tools learn about the course/attitude indicator: as any analog
// indicator (role Indicator, Name, the deviation's alarm state as Description, Help, the
// deviation as the value interface's value), except
//   Value  "<pitch>; <roll>; <course>; <deviation>", each "<name> <value><unit>": the
//          reading's Name1 (else "Pitch", "Roll", "Course"; the deviation is always
//          "Deviation", its names being the instrument's own), its value in
//          its ValueFormat (else "##0.#") and its ValueUnit (after a space unless the
//          unit starts with a sign such as "°" or "%"), e.g.
//          "Pitch 5.0°; Roll -12.0°; Course 273°; Deviation 0.5"
// Installed by each indicator when it is made; a change of pitch, roll or course
// notifies the new text.
#include <QString>

#include "kx/framework/accessible.h"

namespace kx {

class TKxVCInd;

class TKxVCIndAccessible : public TKxAnalogAccessible {
  public:
    explicit TKxVCIndAccessible(TKxVCInd* indicator);
    QString text(QAccessible::Text t) const override;
};

// The Value text above.
QString KxVCIndValueText(const TKxVCInd& indicator);
QAccessibleInterface* KxVCIndAccessibleFactory(const QString& className, QObject* object);
void KxInstallVCIndAccessibility();

}  // namespace kx
