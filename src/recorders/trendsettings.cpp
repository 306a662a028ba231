#include "kx/recorders/trendsettings.h"

#include <cmath>

#include "kx/framework/setfield.h"

namespace kx {

void TTrendLimit::SetValue(float v) {
    if (std::isnan(v) || v == value_) return;
    value_ = v;
    if (onValueChange_) onValueChange_(this);
}

void TTrendLimit::SetColor(TColorArg v) {
    SetField(*this, color_, TColor(v));
}

void TTrendLimit::SetFilled(bool v) {
    SetField(*this, filled_, v);
}

void TTrendLimit::SetEnabled(bool v) {
    SetField(*this, enabled_, v);
}

void TTrendLimit::AssignTo(TKxPersistent* dest) const {
    auto* d = qobject_cast<TTrendLimit*>(dest);
    if (!d) assignError(dest);
    d->value_ = value_;
    d->color_ = color_;
    d->filled_ = filled_;
    d->enabled_ = enabled_;
    d->Change();
}

void TRecInfo::SetDisplayed(int32_t first, int32_t last) {
    if (first == firstDisplayed_ && last == lastDisplayed_) return;
    firstDisplayed_ = first;
    lastDisplayed_ = last;
    Change();
}

void TRecInfo::SetRecords(uint32_t total, TDateTime first, TDateTime last) {
    total_ = total;
    first_ = first;
    last_ = last;
    Change();
}

}  // namespace kx
