#include "kx/adjusters/geardial.h"

#include <QMouseEvent>
#include <QPointer>
#include <algorithm>
#include <cmath>
#include <numbers>

#include "kx/drawing/angles.h"
#include "kx/drawing/colors.h"
#include "kx/drawing/geometry.h"
#include "kx/drawing/shapes.h"
#include "kx/drawing/spot.h"
#include "kx/drawing/text.h"
#include "kx/host/numeric.h"

namespace kx {

TKxGearDial::TKxGearDial(QWidget* parent) : TKxFramedAdjuster(parent, kAllOptions) {
    SetBounds(x(), y(), 113, 161);
}

void TKxGearDial::SetTurns(int32_t v) {
    if (v < 1 || v > 1000 || v == turns_) return;
    turns_ = v;
    total_ = angleOf(Digit());
    requestRepaint();
}

void TKxGearDial::SetTeeth(int32_t v) {
    if (v < 8 || v > 180 || v == teeth_) return;
    teeth_ = v;
    requestRepaint();
}

void TKxGearDial::SetKnobColor(TColorArg c) {
    if (c == knobColor_) return;
    knobColor_ = c;
    requestRepaint();
}

double TKxGearDial::angleOf(int32_t digit) const {
    const TSignalSettings& sig = *SignalSettings();
    if (sig.TotalDigit() == 0) return 0.0;
    const double share = (double(digit) - sig.DigitalFrom()) / double(sig.TotalDigit());
    return std::clamp(share, 0.0, 1.0) * 360.0 * turns_;
}

int32_t TKxGearDial::TurnCount() const {
    return int32_t(std::floor(total_ / 360.0));
}

void TKxGearDial::Paint() {
    painted_ = false;
    knob_ = TRect{};
    HitRect = TRect{};
    TCanvas& c = Canvas();
    const TRect r = paintFrame(kMinKnob + 4);
    const int32_t side = std::max(0, std::min(r.Width(), r.Height()) - 4);
    if (side >= kMinKnob) {
        const int32_t left = r.Left + Div(r.Width() - side, 2);
        const int32_t top = r.Top + Div(r.Height() - side, 2);
        knob_ = TRect{left, top, left + side, top + side};
        paintRim(c);
        HitRect = knob_;
        HitIsCircle = true;
        background_.SetSize(0, 0);
        GetBkUpImage(c, background_, knob_);
        paintFace(background_.Canvas());
        painted_ = true;
    }
    ValueChange();
}

void TKxGearDial::paintRim(TCanvas& c) {
    const int32_t side = knob_.Width();
    rim_ = std::max(3, side / 10);
    centre_ = KxCenterPoint(knob_);
    markRadius_ = std::max(2, (side / 2 - rim_) / 8);
    c.Pen().SetStyle(psSolid);
    c.Pen().SetWidth(1);
    c.Pen().SetColor(clBtnShadow);
    c.Brush().SetStyle(bsSolid);
    c.Brush().SetColor(KxSetBrightness(ColorToRGB(knobColor_), 80.0f));
    c.Ellipse(knob_.Left, knob_.Top, knob_.Right, knob_.Bottom);
}

void TKxGearDial::paintFace(TCanvas& b) {
    // Drawn in the knob's own picture, whose origin is its corner: the gradient's clip
    // takes the face's corners the classic way round, which needs Left == Top.
    const int32_t side = knob_.Width();
    const TRect face{rim_, rim_, side - rim_, side - rim_};
    KxCircleGradFill(b, face, clBtnHighlight, knobColor_);
    b.Pen().SetStyle(psSolid);
    b.Pen().SetWidth(1);
    b.Pen().SetColor(clBtnShadow);
    b.Brush().SetStyle(bsClear);
    b.Ellipse(face.Left, face.Top, face.Right, face.Bottom);
}

TPoint TKxGearDial::MarkPoint() const {
    const int32_t radius = knob_.Width() / 2;
    const TPoint up{centre_.X, centre_.Y - (radius - rim_ - markRadius_ - 3)};
    return KxRotate(up, centre_, float(std::fmod(total_, 360.0)), true);
}

void TKxGearDial::ValueChange() {
    QPointer<TKxGearDial> alive(this);
    TKxFramedAdjuster::ValueChange();
    if (!alive) return;
    total_ = angleOf(Digit());
    if (UpdateCount() > 0 || !(Visible() || Designing())) return;
    if (painted_) drawMoving();
    drawNumber();
}

void TKxGearDial::drawTeeth(TCanvas& w, TPoint m) {
    const int32_t radius = knob_.Width() / 2;
    const double turn = std::fmod(total_, 360.0);
    // On big knobs each knurl is two pixels wide: a second one-pixel line beside the
    // first, which the exact rasterizer draws far faster than a wide pen.
    const bool wide = knob_.Width() >= 60;
    w.Pen().SetWidth(1);
    for (int32_t i = 0; i < teeth_; ++i) {
        const double a = turn + 360.0 * i / teeth_;
        // Light falls from the upper left (315 degrees clockwise from up).
        const double light = std::cos((a - 315.0) * std::numbers::pi / 180.0);
        w.Pen().SetColor(KxCalcColor(clBtnShadow, clBtnHighlight, 100, Round(50.0 + 50.0 * light)));
        const TPoint outer = KxRotate(TPoint{m.X, m.Y - (radius - 2)}, m, float(a), true);
        const TPoint inner = KxRotate(TPoint{m.X, m.Y - (radius - rim_ + 1)}, m, float(a), true);
        w.MoveTo(inner.X, inner.Y);
        w.LineTo(outer.X, outer.Y);
        if (!wide) continue;
        // Beside it across the knurl's direction: x for steep knurls, y for flat ones.
        const bool steep = std::abs(outer.Y - inner.Y) >= std::abs(outer.X - inner.X);
        const int32_t dx = steep ? 1 : 0, dy = steep ? 0 : 1;
        w.MoveTo(inner.X + dx, inner.Y + dy);
        w.LineTo(outer.X + dx, outer.Y + dy);
    }
}

void TKxGearDial::drawCounter(TCanvas& w, TPoint m) {
    const QString text = QString::number(TurnCount());
    w.SetFont(*Font());
    const int32_t room = knob_.Width() / 2 - rim_ - 2 * markRadius_ - 4;
    if (w.TextWidth(text) > room || w.TextHeight(text) > room) return;
    w.Brush().SetStyle(bsClear);
    KxTextOut(w, m.X, m.Y, text, toMidCenter);
}

void TKxGearDial::drawMoving() {
    const TRect whole{0, 0, background_.Width(), background_.Height()};
    if (whole.Right < 1 || whole.Bottom < 1) return;
    TCanvas& w = StartComposition(work_, background_);
    const TPoint offset{knob_.Left, knob_.Top};
    const TPoint m{centre_.X - offset.X, centre_.Y - offset.Y};
    w.Pen().SetMode(pmCopy);
    w.Pen().SetStyle(psSolid);
    drawTeeth(w, m);
    const TPoint mark = MarkPoint();
    const TColor color = StateColor();
    spot_.Draw(w, TPoint{mark.X - offset.X, mark.Y - offset.Y}, markRadius_, color);
    if (HasOption(opTurns)) drawCounter(w, m);
    TCanvas& c = Canvas();
    c.SetCopyMode(cmSrcCopy);
    c.CopyRect(knob_, w, whole);
}

void TKxGearDial::mousePressEvent(QMouseEvent* e) {
    lastMouseAngle_ =
        KxGetAngle(centre_, TPoint{int32_t(e->position().x()), int32_t(e->position().y())});
    dragAngle_ = total_;
    TKxFramedAdjuster::mousePressEvent(e);
}

void TKxGearDial::MouseSlide(Qt::KeyboardModifiers shift, int32_t x, int32_t y, TPoint lastPos) {
    TKxFramedAdjuster::MouseSlide(shift, x, y, lastPos);
    const float a = KxGetAngle(centre_, TPoint{x, y});
    float d = a - lastMouseAngle_;
    lastMouseAngle_ = a;
    if (d == 0.0f) return;
    if (d > 180.0f) d -= 360.0f;
    if (d < -180.0f) d += 360.0f;
    const double full = 360.0 * turns_;
    dragAngle_ = std::clamp(dragAngle_ + double(d), 0.0, full);
    const TSignalSettings& sig = *SignalSettings();
    SetDigit(
        Saturate(int64_t(sig.DigitalFrom()) + Round(double(sig.TotalDigit()) * dragAngle_ / full)));
}

}  // namespace kx
