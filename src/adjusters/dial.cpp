#include "kx/adjusters/dial.h"

#include <QMouseEvent>
#include <QPointer>
#include <algorithm>
#include <cmath>

#include "kx/drawing/angles.h"
#include "kx/drawing/geometry.h"
#include "kx/drawing/shapes.h"
#include "kx/drawing/spot.h"
#include "kx/drawing/text.h"
#include "kx/host/numeric.h"

namespace kx {

TKxDial::TKxDial(QWidget* parent)
    : TKxFramedAdjuster(parent, kAllOptions),
      bevelDial_(new TKxSBevel(this)),
      scaleSettings_(new TScaleSettings(this)) {
    bevelDial_->SetColorShadowFrom(clBtnHighlight);
    bevelDial_->SetColorShadowTo(clBtnShadow);
    bevelDial_->SetBevelLine(TKxSBevel::blOuter);
    bevelDial_->SetPenColor(clBtnShadow);
    bevelDial_->SetSpacing(1);
    scaleSettings_->Font()->SetSize(8);
    SetBounds(x(), y(), 113, 161);
}

void TKxDial::Loaded() {
    repaintOnChange({bevelDial_, scaleSettings_});
    TKxFramedAdjuster::Loaded();
}

void TKxDial::SetBevelDial(const TKxSBevel* v) {
    if (v && v != bevelDial_) bevelDial_->Assign(v);
}

void TKxDial::SetScaleSettings(const TScaleSettings* v) {
    if (v && v != scaleSettings_) scaleSettings_->Assign(v);
}

void TKxDial::SetPointerType(TDialPointer p) {
    if (p < dpRound || p > dpTriangle || p == pointerType_) return;
    pointerType_ = p;
    requestRepaint();
}

void TKxDial::SetPointerSize(int32_t s) {
    if (s < 1 || s > 100 || s == pointerSize_) return;
    pointerSize_ = s;
    requestRepaint();
}

void TKxDial::Paint() {
    painted_ = false;
    TCanvas& c = Canvas();
    const TRect r = paintFrame(kMinFace + 4);
    const int32_t side = std::max(0, std::min(r.Width(), r.Height()));
    const int32_t left = r.Left + Div(r.Width() - side, 2), top = r.Top + Div(r.Height() - side, 2);
    TRect knob{left, top, left + side, top + side};
    if (HasOption(opScale)) {
        const TSignalSettings& sig = *SignalSettings();
        scaleSettings_->LogScale = false;
        scaleSettings_->CalcRSize(c, sig.ValueFrom(), sig.ValueTo());
        if (!HasOption(opScaleText)) scaleSettings_->ClearLabels();
        scaleSettings_->LineWidth = 2;
        scaleSettings_->DialScala(c, knob, kStartAngle, kSweep);
    } else {
        knob = TRect{knob.Left + 2, knob.Top + 2, knob.Right - 2, knob.Bottom - 2};
    }
    if (knob.Width() < kMinFace || knob.Height() < kMinFace) return;
    face_ = knob;
    TRect ring = knob;
    bevelDial_->PaintRoundBevel(c, ring, knob.Width(), knob.Height());
    centre_ = KxCenterPoint(face_);
    HitRect = face_;
    HitIsCircle = true;
    layoutPointer();
    background_.SetSize(0, 0);
    GetBkUpImage(c, background_, face_);
    painted_ = true;
    ValueChange();
}

void TKxDial::layoutPointer() {
    const int32_t radius = KxGetRadius(face_);
    const int32_t s = pointerSize_;
    const TPoint m = centre_;
    const auto up = [&m](int32_t dx, int32_t distance) { return TPoint{m.X + dx, m.Y - distance}; };
    spotRadius_ = std::max(2, s / 2);
    switch (pointerType_) {
        case dpRound:
            reference_ = {up(0, radius - spotRadius_ - 3)};
            break;
        case dpLine:
            reference_ = {up(0, radius - 3), up(0, std::max(1, radius - 3 - 2 * s))};
            break;
        case dpTriangle:
            reference_ = {up(0, radius - 3), up(-(s / 2), radius - 3 - s),
                          up(s / 2, radius - 3 - s)};
            break;
    }
    for (TPoint& p : reference_)
        p = KxRotate(p, m, float(kStartAngle), true);
}

std::vector<TPoint> TKxDial::PointerPoints() const {
    std::vector<TPoint> points;
    for (const TPoint& p : reference_)
        points.push_back(KxRotate(p, centre_, angle_, true));
    return points;
}

void TKxDial::ValueChange() {
    QPointer<TKxDial> alive(this);
    TKxFramedAdjuster::ValueChange();
    if (!alive) return;
    angle_ = float(SignalSettings()->GetPPT(Value())) * float(kSweep) / 1000.0f;
    if (!painted_ || UpdateCount() > 0 || !(Visible() || Designing())) return;
    drawPointer();
    drawNumber();
}

void TKxDial::drawPointer() {
    const TRect whole{0, 0, background_.Width(), background_.Height()};
    if (whole.Right < 1 || whole.Bottom < 1) return;
    TCanvas& w = StartComposition(work_, background_);
    std::vector<TPoint> pts = PointerPoints();
    for (TPoint& p : pts)
        p = TPoint{p.X - face_.Left, p.Y - face_.Top};
    const TColor color = StateColor();
    w.Pen().SetMode(pmCopy);
    w.Pen().SetStyle(psSolid);
    switch (pointerType_) {
        case dpRound:
            spot_.Draw(w, pts[0], spotRadius_, color);
            break;
        case dpLine:
            w.Pen().SetWidth(2);
            w.Pen().SetColor(color);
            w.MoveTo(pts[0].X, pts[0].Y);
            w.LineTo(pts[1].X, pts[1].Y);
            w.Pen().SetWidth(1);
            break;
        case dpTriangle:
            w.Pen().SetWidth(1);
            w.Pen().SetColor(clBlack);
            w.Brush().SetStyle(bsSolid);
            w.Brush().SetColor(color);
            w.Polygon(pts);
            break;
    }
    TCanvas& c = Canvas();
    c.SetCopyMode(cmSrcCopy);
    c.CopyRect(face_, w, whole);
}

void TKxDial::mousePressEvent(QMouseEvent* e) {
    lastMouseAngle_ =
        KxGetAngle(centre_, TPoint{int32_t(e->position().x()), int32_t(e->position().y())});
    TKxFramedAdjuster::mousePressEvent(e);
}

void TKxDial::MouseSlide(Qt::KeyboardModifiers shift, int32_t x, int32_t y, TPoint lastPos) {
    TKxFramedAdjuster::MouseSlide(shift, x, y, lastPos);
    const float a = KxGetAngle(centre_, TPoint{x, y});
    float d = a - lastMouseAngle_;
    lastMouseAngle_ = a;
    if (d == 0.0f) return;
    // More than 200 degrees at once has crossed the seam of the angle below the centre.
    if (std::fabs(d) > 200.0f) d = d > 0.0f ? d - 360.0f : d + 360.0f;
    angle_ = std::clamp(angle_ + d, 0.0f, float(kSweep));
    const TSignalSettings& sig = *SignalSettings();
    const float share = (angle_ + 0.0001f) / float(kSweep);
    SetDigit(Saturate(int64_t(sig.DigitalFrom()) + Round(double(float(sig.TotalDigit()) * share))));
}

}  // namespace kx
