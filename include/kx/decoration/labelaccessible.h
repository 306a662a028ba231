#pragma once
// What assistive tools learn about the decoration:
//   TKxLabel   role QAccessible::StaticText; Name accessibleName when set, else the text
//              shown; Value the text shown (so a status label is read as "FAULT")
//   TKxPanel   role QAccessible::Grouping; Name accessibleName, else the object name
// Frames and gradients are decorative and keep Qt's plain widget interface. Installed by
// each label and panel when it is made.
#include <QAccessibleWidget>

namespace kx {

class TKxLabel;

class TKxLabelAccessible : public QAccessibleWidget {
  public:
    explicit TKxLabelAccessible(TKxLabel* label);
    QString text(QAccessible::Text t) const override;
};

void KxInstallDecorationAccessibility();

}  // namespace kx
