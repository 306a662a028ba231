#include "kx/framework/bevelsettings.h"

#include <utility>

#include "kx/framework/setfield.h"

namespace kx {

void TKxBevelSettings::SetColorFrom(TColorArg v) {
    SetField(*this, colorFrom_, v);
}
void TKxBevelSettings::SetColorTo(TColorArg v) {
    SetField(*this, colorTo_, v);
}
void TKxBevelSettings::SetWidth(int32_t v) {
    SetField(*this, width_, v);
}

void TKxBevelSettings::SwapColors() {
    std::swap(colorFrom_, colorTo_);
    Change();
}

void TKxBevelSettings::AssignTo(TKxPersistent* dest) const {
    auto* d = qobject_cast<TKxBevelSettings*>(dest);
    if (!d) return TKxPersistent::AssignTo(dest);
    d->colorFrom_ = colorFrom_;
    d->colorTo_ = colorTo_;
    d->width_ = width_;
    d->Change();
}

}  // namespace kx
