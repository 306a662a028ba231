#include "kx/framework/btnbevel.h"

#include "kx/framework/setfield.h"

namespace kx {

void TKxBtnBevel::SetShadowColFrom(TColorArg v) {
    SetField(*this, shadowColFrom_, v);
}
void TKxBtnBevel::SetShadowColTo(TColorArg v) {
    SetField(*this, shadowColTo_, v);
}
void TKxBtnBevel::SetHighlightColFrom(TColorArg v) {
    SetField(*this, highlightColFrom_, v);
}
void TKxBtnBevel::SetHighlightColTo(TColorArg v) {
    SetField(*this, highlightColTo_, v);
}
void TKxBtnBevel::SetWidth(int32_t v) {
    if (v >= 0) SetField(*this, width_, v);
}

void TKxBtnBevel::PaintBevel(TCanvas& canvas, TRect& rect, bool raised, bool fill,
                             TColor fillColor) const {
    const TKxRingColors colors{shadowColFrom_, shadowColTo_, highlightColFrom_, highlightColTo_};
    KxPaintGradFrame(canvas, rect, raised, fill, fillColor, colors, width_);
}

void TKxBtnBevel::AssignTo(TKxPersistent* dest) const {
    auto* d = qobject_cast<TKxBtnBevel*>(dest);
    if (!d) return TKxPersistent::AssignTo(dest);
    d->shadowColFrom_ = shadowColFrom_;
    d->shadowColTo_ = shadowColTo_;
    d->highlightColFrom_ = highlightColFrom_;
    d->highlightColTo_ = highlightColTo_;
    d->width_ = width_;
    d->Change();
}

}  // namespace kx
