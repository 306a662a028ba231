#include "kx/framework/arrowsettings.h"

#include "kx/framework/setfield.h"

namespace kx {

void TArrowSettings::SetShape(int32_t v) {
    SetField(*this, shape_, v);
}
void TArrowSettings::SetColorPen(TColorArg v) {
    SetField(*this, colorPen_, v);
}
void TArrowSettings::SetColorBrush(TColorArg v) {
    SetField(*this, colorBrush_, v);
}
void TArrowSettings::SetColorCP1Pen(TColorArg v) {
    SetField(*this, colorCP1Pen_, v);
}
void TArrowSettings::SetColorCP1Brush(TColorArg v) {
    SetField(*this, colorCP1Brush_, v);
}
void TArrowSettings::SetColorCP2Pen(TColorArg v) {
    SetField(*this, colorCP2Pen_, v);
}
void TArrowSettings::SetColorCP2Brush(TColorArg v) {
    SetField(*this, colorCP2Brush_, v);
}

void TArrowSettings::AssignTo(TKxPersistent* dest) const {
    auto* d = qobject_cast<TArrowSettings*>(dest);
    if (!d) return TKxPersistent::AssignTo(dest);
    d->shape_ = shape_;
    d->colorPen_ = colorPen_;
    d->colorBrush_ = colorBrush_;
    d->colorCP1Pen_ = colorCP1Pen_;
    d->colorCP1Brush_ = colorCP1Brush_;
    d->colorCP2Pen_ = colorCP2Pen_;
    d->colorCP2Brush_ = colorCP2Brush_;
    d->Change();
}

}  // namespace kx
