#include "kx/framework/gradsettings.h"

#include "kx/framework/setfield.h"

namespace kx {

void TKxGradSettings::SetColorFrom(TColorArg v) {
    SetField(*this, colorFrom_, v);
}
void TKxGradSettings::SetColorTo(TColorArg v) {
    SetField(*this, colorTo_, v);
}
void TKxGradSettings::SetVisible(bool v) {
    SetField(*this, visible_, v);
}
void TKxGradSettings::SetStyle(TGradientStyle v) {
    if (v >= gsHorizontal1 && v <= gsTopRight) SetField(*this, style_, v);
}
void TKxGradSettings::SetStyleValue(int v) {
    if (v >= gsHorizontal1 && v <= gsTopRight) SetStyle(static_cast<TGradientStyle>(v));
}

void TKxGradSettings::AssignTo(TKxPersistent* dest) const {
    auto* d = qobject_cast<TKxGradSettings*>(dest);
    if (!d) return TKxPersistent::AssignTo(dest);
    d->SetColorFrom(colorFrom_);
    d->SetColorTo(colorTo_);
    d->SetVisible(visible_);
    d->SetStyle(style_);
    d->Change();
}

}  // namespace kx
