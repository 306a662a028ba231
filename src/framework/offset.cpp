#include "kx/framework/offset.h"

#include "kx/drawing/geometry.h"
#include "kx/framework/setfield.h"

namespace kx {

void TKxOffset::SetTop(int32_t v) {
    SetField(*this, top_, v);
}
void TKxOffset::SetLeft(int32_t v) {
    SetField(*this, left_, v);
}
void TKxOffset::SetRight(int32_t v) {
    SetField(*this, right_, v);
}
void TKxOffset::SetBottom(int32_t v) {
    SetField(*this, bottom_, v);
}

void TKxOffset::Write(int32_t top, int32_t left, int32_t right, int32_t bottom) {
    top_ = top;
    left_ = left;
    right_ = right;
    bottom_ = bottom;
}

TRect TKxOffset::SetOffset(const TRect& rect) const {
    return KxMultiBorderRect(rect, left_, top_, right_, bottom_);
}

void TKxOffset::AssignTo(TKxPersistent* dest) const {
    auto* d = qobject_cast<TKxOffset*>(dest);
    if (!d) return TKxPersistent::AssignTo(dest);
    d->Write(top_, left_, right_, bottom_);
    d->Change();
}

}  // namespace kx
