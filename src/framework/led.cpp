#include "kx/framework/led.h"

#include "kx/framework/setfield.h"

namespace kx {
namespace {
bool validSize(int32_t v) {
    return v >= TLED::kMinSize && v <= TLED::kMaxSize;
}
bool validShape(int v) {
    return v >= sRound && v <= sDiamondRight;
}
}  // namespace

void TLED::SetShape(TLEDShape v) {
    if (validShape(v)) SetField(*this, shape_, v);
}
void TLED::SetShapeValue(int v) {
    if (validShape(v)) SetShape(static_cast<TLEDShape>(v));
}
void TLED::SetColorOn(TColorArg v) {
    SetField(*this, colorOn_, v);
}
void TLED::SetColorOff(TColorArg v) {
    SetField(*this, colorOff_, v);
}
void TLED::SetWidth(int32_t v) {
    if (validSize(v)) SetField(*this, width_, v);
}
void TLED::SetHeight(int32_t v) {
    if (validSize(v)) SetField(*this, height_, v);
}

void TLED::DrawIn(TCanvas& canvas, const TRect& rect, bool on) const {
    KxDrawLED(canvas, rect, shape_, clBtnShadow, on ? colorOn_ : colorOff_);
}

void TLED::AssignTo(TKxPersistent* dest) const {
    auto* d = qobject_cast<TLED*>(dest);
    if (!d) return TKxPersistent::AssignTo(dest);
    d->shape_ = shape_;
    d->colorOn_ = colorOn_;
    d->colorOff_ = colorOff_;
    d->width_ = width_;
    d->height_ = height_;
    d->Change();
}

}  // namespace kx
