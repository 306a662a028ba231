#include "kx/framework/sbevel.h"

#include <algorithm>

#include "kx/drawing/geometry.h"
#include "kx/drawing/gradient.h"
#include "kx/framework/setfield.h"

namespace kx {
namespace {
// Inner or outer line: the one-pixel outline inset of a frame element.
constexpr int32_t kLineWidth = 1;
}  // namespace

TKxSBevel::TKxSBevel(QObject* parent)
    : TKxPersistent(parent), offset_(new TKxOffset(this)), surfaceGrad_(new TKxGradSettings(this)) {
    hookOwned();
    updateTotalWidth();
}

TKxSBevel::~TKxSBevel() {
    offset_->SetOnChange(nullptr);
    surfaceGrad_->SetOnChange(nullptr);
}

void TKxSBevel::hookOwned() {
    offset_->SetOnChange([this](QObject* sender) { ParamChange(sender); });
    surfaceGrad_->SetOnChange([this](QObject* sender) { ParamChange(sender); });
}

void TKxSBevel::ParamChange(QObject*) {
    Change();
}

void TKxSBevel::SetOffset(const TKxOffset* v) {
    if (v && v != offset_) offset_->Assign(v);
}
void TKxSBevel::SetStyle(TBevelStyle v) {
    if (v == bsLowered || v == bsRaised) SetField(*this, style_, v);
}
void TKxSBevel::SetSpacing(int32_t v) {
    SetField(*this, spacing_, v);
}
void TKxSBevel::SetBevelLine(TBevelLine v) {
    if (v >= blNone && v <= blBoth) SetField(*this, bevelLine_, v);
}
void TKxSBevel::SetWidth(int32_t v) {
    if (v >= 0) SetField(*this, width_, v);
}
void TKxSBevel::SetColor(TColorArg v) {
    SetField(*this, color_, v);
}
void TKxSBevel::SetColorShadowFrom(TColorArg v) {
    SetField(*this, colorShadowFrom_, v);
}
void TKxSBevel::SetColorShadowTo(TColorArg v) {
    SetField(*this, colorShadowTo_, v);
}
void TKxSBevel::SetColorHighLightFrom(TColorArg v) {
    SetField(*this, colorHighLightFrom_, v);
}
void TKxSBevel::SetColorHighLightTo(TColorArg v) {
    SetField(*this, colorHighLightTo_, v);
}
void TKxSBevel::SetPenColor(TColorArg v) {
    SetField(*this, penColor_, v);
}
void TKxSBevel::SetSurfaceGrad(const TKxGradSettings* v) {
    if (v && v != surfaceGrad_) surfaceGrad_->Assign(v);
}

void TKxSBevel::updateTotalWidth() {
    int32_t lines = 0;
    if (bevelLine_ == blOuter || bevelLine_ == blInner) lines = 1;
    if (bevelLine_ == blBoth) lines = 2;
    // Wrapping sum: absurd spacings give a wrapped but defined width.
    totalWidth_ = int32_t(uint32_t(spacing_) + uint32_t(width_) + uint32_t(lines));
}

void TKxSBevel::fillGradBitmap() {
    if (!gradBitmap_) gradBitmap_ = std::make_unique<TBitmap>(kGradBitmapSize, kGradBitmapSize);
    KxGradFill(gradBitmap_->Canvas(), TRect{0, 0, kGradBitmapSize, kGradBitmapSize},
               colorShadowFrom_, colorShadowTo_, gsTopLeft);
}

void TKxSBevel::Change() {
    updateTotalWidth();
    if (UseGradBitmap) fillGradBitmap();
    TKxPersistent::Change();
}

TKxRingColors TKxSBevel::ringColors() const {
    return TKxRingColors{colorShadowFrom_, colorShadowTo_, colorHighLightFrom_, colorHighLightTo_};
}

void TKxSBevel::PaintGradBevel(TCanvas& canvas, TRect& rect, bool raised, bool fill,
                               TColor fillColor) const {
    KxPaintGradFrame(canvas, rect, raised, fill, fillColor, ringColors(), width_);
}

void TKxSBevel::paintFrame(TCanvas& canvas, TRect& rect, bool fill) const {
    const TRect outer = rect;
    canvas.Pen().SetWidth(1);
    canvas.Brush().SetStyle(bsClear);
    KxBorder(rect, hasOuterLine() ? kLineWidth : 0);
    PaintGradBevel(canvas, rect, style_ == bsRaised, fill, color_);
    canvas.Brush().SetStyle(bsClear);  // the fill leaves a solid brush behind
    canvas.Pen().SetColor(penColor_);
    if (hasInnerLine()) {
        canvas.Rectangle(rect);
        KxBorder(rect, kLineWidth);
    }
    if (hasOuterLine()) canvas.Rectangle(outer);
    KxBorder(rect, spacing_);
    rect = offset_->SetOffset(rect);
}

void TKxSBevel::PaintBevel(TCanvas& canvas, TRect& rect) const {
    paintFrame(canvas, rect, false);
}

void TKxSBevel::PaintFilledBevel(TCanvas& canvas, TRect& rect) const {
    paintFrame(canvas, rect, true);
    if (surfaceGrad_->Visible() && rect.Right > rect.Left && rect.Bottom > rect.Top) {
        KxGradFill(canvas, rect, surfaceGrad_->ColorFrom(), surfaceGrad_->ColorTo(),
                   surfaceGrad_->Style());
    }
}

void TKxSBevel::PaintRoundBevel(TCanvas& canvas, TRect& rect, int32_t a, int32_t b) const {
    a = std::max(a, 0);
    b = std::max(b, 0);
    // Corner size of an outline `inset` pixels inside the outer edge.
    auto corner = [](int32_t size, int32_t inset) { return std::max(0, size - 2 * inset); };
    const TRect outer = rect;
    canvas.Pen().SetWidth(1);
    canvas.Pen().SetColor(color_);
    canvas.Brush().SetColor(color_);
    canvas.Brush().SetStyle(bsSolid);
    canvas.RoundRect(outer.Left, outer.Top, outer.Right, outer.Bottom, a, b);
    canvas.Brush().SetStyle(bsClear);

    int32_t inset = hasOuterLine() ? kLineWidth : 0;
    KxBorder(rect, inset);
    KxPaintRoundGradFrame(canvas, rect, style_ == bsRaised, ringColors(), width_, corner(a, inset),
                          corner(b, inset));
    inset = int32_t(std::min<int64_t>(int64_t(inset) + width_, INT32_MAX / 2));
    canvas.Pen().SetColor(penColor_);
    if (hasInnerLine()) {
        canvas.RoundRect(rect.Left, rect.Top, rect.Right, rect.Bottom, corner(a, inset),
                         corner(b, inset));
        KxBorder(rect, kLineWidth);
    }
    if (hasOuterLine()) canvas.RoundRect(outer.Left, outer.Top, outer.Right, outer.Bottom, a, b);
    KxBorder(rect, spacing_);
    rect = offset_->SetOffset(rect);
}

void TKxSBevel::AssignTo(TKxPersistent* dest) const {
    auto* d = qobject_cast<TKxSBevel*>(dest);
    if (!d) return TKxPersistent::AssignTo(dest);
    d->offset_->SetOnChange(nullptr);
    d->surfaceGrad_->SetOnChange(nullptr);
    d->offset_->Assign(offset_);
    d->surfaceGrad_->Assign(surfaceGrad_);
    d->hookOwned();
    d->style_ = style_;
    d->spacing_ = spacing_;
    d->bevelLine_ = bevelLine_;
    d->width_ = width_;
    d->color_ = color_;
    d->colorShadowFrom_ = colorShadowFrom_;
    d->colorShadowTo_ = colorShadowTo_;
    d->colorHighLightFrom_ = colorHighLightFrom_;
    d->colorHighLightTo_ = colorHighLightTo_;
    d->penColor_ = penColor_;
    d->Change();
}

void KxSetDefaultBevels(TKxSBevel& inner, TKxSBevel& outer) {
    inner.SetStyle(bsLowered);
    inner.SetBevelLine(blInner);
    outer.SetBevelLine(blOuter);
}

}  // namespace kx
