#include "kx/framework/minmax.h"

#include <cmath>

#include "kx/framework/setfield.h"
#include "kx/host/clock.h"

namespace kx {

TMinMax::TMinMax(QObject* parent) : TKxPersistent(parent) {
    const TDateTime now = kx::Now();
    maxDateTime_ = now;
    minDateTime_ = now;
}

void TMinMax::SetMax(float v) {
    if (std::isnan(v)) return;
    SetMaxDirect(v, kx::Now());
}
void TMinMax::SetMin(float v) {
    if (std::isnan(v)) return;
    SetMinDirect(v, kx::Now());
}
void TMinMax::SetMaxDateTime(TDateTime v) {
    maxDateTime_ = v;
}
void TMinMax::SetMinDateTime(TDateTime v) {
    minDateTime_ = v;
}

void TMinMax::SetMaxDirect(float v, TDateTime when) {
    max_ = v;
    maxDateTime_ = when;
}
void TMinMax::SetMinDirect(float v, TDateTime when) {
    min_ = v;
    minDateTime_ = when;
}

void TMinMax::SetMaxColor(TColorArg v) {
    SetField(*this, maxColor_, v);
}
void TMinMax::SetMinColor(TColorArg v) {
    SetField(*this, minColor_, v);
}
void TMinMax::SetUseSectorCol(bool v) {
    SetField(*this, useSectorCol_, v);
}
void TMinMax::SetMinVisible(bool v) {
    SetField(*this, minVisible_, v);
}
void TMinMax::SetMaxVisible(bool v) {
    SetField(*this, maxVisible_, v);
}

void TMinMax::AssignTo(TKxPersistent* dest) const {
    auto* d = qobject_cast<TMinMax*>(dest);
    if (!d) return TKxPersistent::AssignTo(dest);
    d->max_ = max_;
    d->maxDateTime_ = maxDateTime_;
    d->min_ = min_;
    d->minDateTime_ = minDateTime_;
    d->maxColor_ = maxColor_;
    d->minColor_ = minColor_;
    d->useSectorCol_ = useSectorCol_;
    d->minVisible_ = minVisible_;
    d->maxVisible_ = maxVisible_;
    d->Change();
}

}  // namespace kx
