#include "kx/framework/rscale.h"

#include "kx/framework/setfield.h"

namespace kx {

void TKxRScale::SetAlphaStart(int32_t v) {
    if (v >= 0 && v <= 360) SetField(*this, alphaStart_, v);
}
void TKxRScale::SetAlpha(int32_t v) {
    if (v >= 1 && v <= 360) SetField(*this, alpha_, v);
}
void TKxRScale::SetOffsetX(int32_t v) {
    SetField(*this, offsetX_, v);
}
void TKxRScale::SetOffsetY(int32_t v) {
    SetField(*this, offsetY_, v);
}
void TKxRScale::SetSwapDir(bool v) {
    SetField(*this, swapDir_, v);
}
void TKxRScale::SetSteps(int32_t v) {
    if (v >= 1 && v <= 30) SetField(*this, steps_, v);
}
void TKxRScale::SetSubSteps(int32_t v) {
    if (v >= 1 && v <= 30) SetField(*this, subSteps_, v);
}
void TKxRScale::SetDiameter(int32_t v) {
    if (v >= 10) SetField(*this, diameter_, v);
}

void TKxRScale::copyTo(TKxCustomScale& dest) const {
    TKxScale::copyTo(dest);
    if (auto* d = qobject_cast<TKxRScale*>(&dest)) {
        d->alphaStart_ = alphaStart_;
        d->alpha_ = alpha_;
        d->offsetX_ = offsetX_;
        d->offsetY_ = offsetY_;
        d->swapDir_ = swapDir_;
        d->steps_ = steps_;
        d->subSteps_ = subSteps_;
        d->diameter_ = diameter_;
    }
}

}  // namespace kx
