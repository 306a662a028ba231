#include "kx/adjusters/slider.h"

#include <QMouseEvent>
#include <QPointer>
#include <algorithm>

#include "kx/drawing/geometry.h"
#include "kx/drawing/shapes.h"
#include "kx/drawing/text.h"
#include "kx/host/numeric.h"

namespace kx {

namespace {

TRect unite(const TRect& a, const TRect& b) {
    if (a.Right <= a.Left || a.Bottom <= a.Top) return b;
    return TRect{std::min(a.Left, b.Left), std::min(a.Top, b.Top), std::max(a.Right, b.Right),
                 std::max(a.Bottom, b.Bottom)};
}

}  // namespace

TKxSlider::TKxSlider(QWidget* parent, bool vertical)
    : TKxFramedAdjuster(parent, kAllOptions),
      bevelTrack_(new TKxSBevel(this)),
      scaleSettings_(new TScaleSettings(this)),
      sectorSettings_(new TSectorSettings(this)),
      vertical_(vertical) {
    bevelTrack_->SetStyle(TKxSBevel::bsLowered);
    bevelTrack_->SetWidth(1);
    bevelTrack_->SetSpacing(0);
    bevelTrack_->SetBevelLine(TKxSBevel::blNone);
    bevelTrack_->SetColor(clBtnShadow);
    scaleSettings_->Font()->SetSize(8);
}

TKxHSlider::TKxHSlider(QWidget* parent) : TKxSlider(parent, false) {
    SetBounds(x(), y(), 240, 128);
}

TKxVSlider::TKxVSlider(QWidget* parent) : TKxSlider(parent, true) {
    SetBounds(x(), y(), 112, 240);
}

void TKxSlider::Loaded() {
    repaintOnChange({bevelTrack_, scaleSettings_, sectorSettings_});
    TKxFramedAdjuster::Loaded();
}

void TKxSlider::SetBevelTrack(const TKxSBevel* v) {
    if (v && v != bevelTrack_) bevelTrack_->Assign(v);
}

void TKxSlider::SetScaleSettings(const TScaleSettings* v) {
    if (v && v != scaleSettings_) scaleSettings_->Assign(v);
}

void TKxSlider::SetSectorSettings(const TSectorSettings* v) {
    if (v && v != sectorSettings_) sectorSettings_->Assign(v);
}

void TKxSlider::SetThumbSize(int32_t v) {
    if (v < 8 || v > 200 || v == thumbSize_) return;
    thumbSize_ = v;
    requestRepaint();
}

void TKxSlider::SetTrackWidth(int32_t v) {
    if (v < 2 || v > 100 || v == trackWidth_) return;
    trackWidth_ = v;
    requestRepaint();
}

int32_t TKxSlider::halfThumb() const {
    return Round(thumbSize_ * 0.2);
}

TRect TKxSlider::oriented(int32_t a, int32_t b, int32_t c, int32_t d) const {
    return vertical_ ? TRect{c, a, d, b} : TRect{a, c, b, d};
}

bool TKxSlider::layOut(TCanvas& c, const TRect& rest) {
    TScaleSettings& s = *scaleSettings_;
    const TSignalSettings& sig = *SignalSettings();
    bool scale = HasOption(opScale), labels = scale && HasOption(opScaleText);
    const int32_t a = halfThumb();
    const int64_t length = int64_t(vertical_ ? rest.Height() : rest.Width()) - 2 * (a + 1);
    int32_t thickness = 0;
    if (scale) {
        s.LogScale = false;
        if (vertical_)
            s.CalcSize(c, sig.ValueFrom(), sig.ValueTo());
        else
            s.CalcHSize(c, sig.ValueFrom(), sig.ValueTo());
        // Labels that would crowd each other on a short track are left out.
        if (s.ScaleMinLength > length) labels = false;
        thickness = labels ? s.ScaleThickness : s.StepLength + 1;
        if (!labels) s.ClearLabels();
    }
    // A horizontal scale's labels reach half their height beyond its thickness.
    const int32_t overhang = labels && !vertical_ ? Div(s.MaxTextHeight, 2) + 1 : 0;
    thickness = Saturate(int64_t(thickness) + overhang);
    const int64_t across = vertical_ ? rest.Width() : rest.Height();
    const int64_t strip = int64_t(thumbSize_) + 1;
    if (scale && strip + 2 + thickness > across) scale = labels = false;
    if (strip > across) return false;
    const int32_t label = labels ? Div(vertical_ ? s.MaxTextHeight : s.MaxTextWidth, 2) : 0;
    const int32_t m = std::max(a, label) + 1;
    const int32_t lo = vertical_ ? rest.Top : rest.Left, hi = vertical_ ? rest.Bottom : rest.Right;
    const int32_t first = WrapAdd(lo, m), last = WrapSub(WrapSub(hi, m), 1);
    if (int64_t(last) - first < 1) return false;
    // The block of strip, gap and scale, centred across the rest.
    const int64_t block = strip + (scale ? 2 + thickness : 0);
    const int32_t from = Saturate((vertical_ ? rest.Left : rest.Top) + (across - block) / 2);
    const bool scaleFirst = scale && s.PosLeftTop();
    const int32_t stripFrom = scaleFirst ? Saturate(int64_t(from) + thickness + 2) : from;
    const int32_t scaleFrom = scaleFirst ? from : Saturate(int64_t(from) + strip + 2);
    strip_ = oriented(WrapAdd(lo, 1), WrapSub(hi, 1), stripFrom, Saturate(stripFrom + strip));
    middle_ = WrapAdd(stripFrom, Div(thumbSize_, 2));
    const int32_t t0 = WrapSub(middle_, Div(trackWidth_, 2));
    track_ =
        oriented(WrapSub(first, a), WrapAdd(WrapAdd(last, a), 1), t0, WrapAdd(t0, trackWidth_));
    if (vertical_) {
        start_ = last;
        end_ = first;
    } else {
        start_ = first;
        end_ = last;
    }
    if (!scale) return true;
    const int32_t scaleTop = scaleFirst ? WrapAdd(scaleFrom, overhang) : scaleFrom;
    const TRect scaleRect =
        oriented(first, last, scaleTop, Saturate(int64_t(scaleTop) + thickness - overhang));
    if (vertical_)
        s.VertiScala(c, scaleRect);
    else
        s.HorizScala(c, scaleRect);
    return true;
}

void TKxSlider::paintTrack(TCanvas& c) {
    TRect inside = track_;
    bevelTrack_->PaintFilledBevel(c, inside);
    if (!HasOption(opSector)) return;
    // The bands are filled without a pen, one pixel short of their rectangle's far edges:
    // across the track that edge lies one further out.
    const TRect band = vertical_ ? TRect{inside.Left, end_, WrapAdd(inside.Right, 1), start_}
                                 : TRect{start_, inside.Top, end_, WrapAdd(inside.Bottom, 1)};
    KxDrawSectorBands(c, band, *sectorSettings_, vertical_);
}

void TKxSlider::Paint() {
    painted_ = false;
    strip_ = track_ = lastThumb_ = TRect{};
    HitRect = TRect{};
    HitIsCircle = false;
    TCanvas& c = Canvas();
    // Upright, the rest needs room for a track of a few positions.
    const int32_t minRest = vertical_ ? 4 * halfThumb() + 6 : thumbSize_ + 1;
    if (!layOut(c, paintFrame(minRest))) {
        strip_ = track_ = TRect{};
        ValueChange();
        return;
    }
    paintTrack(c);
    HitRect = strip_;
    background_.SetSize(0, 0);
    GetBkUpImage(c, background_, strip_);
    painted_ = true;
    ValueChange();
}

int32_t TKxSlider::ThumbPosition() const {
    const int32_t ppt = std::clamp(SignalSettings()->GetPPT(Value()), 0, 1000);
    const float f = float(int64_t(end_) - start_) / 1000.0f;
    return WrapAdd(start_, Round(double(f) * ppt));
}

TRect TKxSlider::ThumbRect() const {
    const int32_t p = ThumbPosition(), a = halfThumb(), h = Div(thumbSize_, 2);
    return oriented(WrapSub(p, a), WrapAdd(WrapAdd(p, a), 1), WrapSub(middle_, h),
                    WrapAdd(WrapAdd(middle_, h), 1));
}

void TKxSlider::ValueChange() {
    QPointer<TKxSlider> alive(this);
    TKxFramedAdjuster::ValueChange();
    if (!alive || UpdateCount() > 0 || !(Visible() || Designing())) return;
    if (painted_) drawThumb();
    drawNumber();
}

void TKxSlider::drawThumb() {
    const TRect whole{0, 0, background_.Width(), background_.Height()};
    if (whole.Right < 1 || whole.Bottom < 1) return;
    TCanvas& w = StartComposition(work_, background_);
    const int32_t p = ThumbPosition();
    const TPoint centre = vertical_ ? TPoint{middle_, p} : TPoint{p, middle_};
    KxThumb(w, TPoint{centre.X - strip_.Left, centre.Y - strip_.Top}, thumbSize_, 0, vertical_,
            StateColor());
    const TRect thumb = ThumbRect();
    TRect dirty = unite(lastThumb_, thumb);
    lastThumb_ = thumb;
    KxRectIntersection(dirty, strip_, dirty);
    const TRect source{dirty.Left - strip_.Left, dirty.Top - strip_.Top, dirty.Right - strip_.Left,
                       dirty.Bottom - strip_.Top};
    TCanvas& c = Canvas();
    c.SetCopyMode(cmSrcCopy);
    c.CopyRect(dirty, w, source);
}

void TKxSlider::mousePressEvent(QMouseEvent* e) {
    const TPoint p{int32_t(e->position().x()), int32_t(e->position().y())};
    grabbed_ = painted_ && KxInRect(p.X, p.Y, ThumbRect());
    pressAt_ = along(p);
    pressDigit_ = Digit();
    pressed_ = true;
    TKxFramedAdjuster::mousePressEvent(e);
    pressed_ = false;
}

void TKxSlider::MouseSlide(Qt::KeyboardModifiers shift, int32_t x, int32_t y, TPoint lastPos) {
    TKxFramedAdjuster::MouseSlide(shift, x, y, lastPos);
    if (!painted_) return;
    const int64_t at = along(TPoint{x, y});
    if (!grabbed_) {
        // Beside the thumb: one large step towards the press.
        if (!pressed_) return;
        const bool up = vertical_ ? at < ThumbPosition() : at > ThumbPosition();
        if (up)
            DoChange(ChangeLarge(), 0);
        else
            DoChange(0, ChangeLarge());
        return;
    }
    // Counted from the press, so that the thumb neither jumps to the mouse nor creeps by
    // re-reading its own rounded position.
    const int64_t span = int64_t(end_) - start_;
    const double share = double(at - pressAt_) / double(span);
    const TSignalSettings& sig = *SignalSettings();
    SetDigit(Saturate(int64_t(pressDigit_) +
                      Round(std::clamp(share, -1.0, 1.0) * double(sig.TotalDigit()))));
}

}  // namespace kx
