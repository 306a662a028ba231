#include "kx/adjusters/dial.h"

#include <QMouseEvent>
#include <QPointer>
#include <algorithm>
#include <cmath>

#include "kx/drawing/angles.h"
#include "kx/drawing/geometry.h"
#include "kx/drawing/shapes.h"
#include "kx/drawing/text.h"
#include "kx/framework/names.h"
#include "kx/framework/valuebox.h"
#include "kx/host/numeric.h"

namespace kx {

TKxDial::TKxDial(QWidget* parent)
    : TKxAnalogCControl(parent),
      bevelOuter_(new TKxSBevel(this)),
      bevelValue_(new TKxSBevel(this)),
      bevelDial_(new TKxSBevel(this)),
      fontValue_(new TFont(this)),
      scaleSettings_(new TScaleSettings(this)) {
    bevelOuter_->SetSpacing(5);
    bevelOuter_->SetBevelLine(TKxSBevel::blOuter);
    bevelOuter_->SetWidth(2);
    bevelValue_->SetStyle(TKxSBevel::bsLowered);
    bevelValue_->SetWidth(2);
    bevelValue_->SetColor(clBlack);
    bevelValue_->SetSpacing(0);
    bevelDial_->SetColorShadowFrom(clBtnHighlight);
    bevelDial_->SetColorShadowTo(clBtnShadow);
    bevelDial_->SetBevelLine(TKxSBevel::blOuter);
    bevelDial_->SetPenColor(clBtnShadow);
    bevelDial_->SetSpacing(1);
    fontValue_->SetColor(clLime);
    fontValue_->SetName(QStringLiteral("System"));
    fontValue_->SetSize(10);
    scaleSettings_->Font()->SetSize(8);
    SetBounds(x(), y(), 113, 161);
}

void TKxDial::Loaded() {
    const auto repaint = [this](QObject* sender) {
        if (UpdateCount() == 0) ParamChange(sender);
    };
    for (TKxPersistent* p :
         {static_cast<TKxPersistent*>(bevelOuter_), static_cast<TKxPersistent*>(bevelValue_),
          static_cast<TKxPersistent*>(bevelDial_), static_cast<TKxPersistent*>(scaleSettings_)})
        p->SetOnChange(repaint);
    fontValue_->SetOnChange(repaint);
    TKxAnalogCControl::Loaded();
}

void TKxDial::requestRepaint() {
    if (UpdateCount() == 0) Invalidate();
}

void TKxDial::SetBevelOuter(const TKxSBevel* v) {
    if (v && v != bevelOuter_) bevelOuter_->Assign(v);
}

void TKxDial::SetBevelValue(const TKxSBevel* v) {
    if (v && v != bevelValue_) bevelValue_->Assign(v);
}

void TKxDial::SetBevelDial(const TKxSBevel* v) {
    if (v && v != bevelDial_) bevelDial_->Assign(v);
}

void TKxDial::SetFontValue(const TFont* f) {
    if (f && f != fontValue_) fontValue_->Assign(*f);
}

void TKxDial::SetScaleSettings(const TScaleSettings* v) {
    if (v && v != scaleSettings_) scaleSettings_->Assign(v);
}

void TKxDial::SetOptions(TDialOptions o) {
    options_ = TDialOptions(o & kAllOptions);
    ParamChange(this);
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

void TKxDial::ParamChange(QObject* sender) {
    TKxAnalogCControl::ParamChange(sender);
    requestRepaint();
}

TKxDial::TBoxSize TKxDial::measureValueBox(TCanvas& c) const {
    TBoxSize b;
    c.SetFont(*fontValue_);
    const QString sample = SignalSettings()->SampleValueText();
    b.W = c.TextWidth(sample);
    b.H = c.TextHeight(sample);
    b.M = b.H / 3;
    if (HasOption(opUnit)) {
        b.Unit = SignalSettings()->ValueUnit();
        c.SetFont(*Font());
        b.U = c.TextWidth(b.Unit);
    }
    const int64_t t = bevelValue_->TotalWidth();
    b.BoxW = Saturate(int64_t(b.W) + 2 * t + 2 * int64_t(b.M));
    b.Height = Saturate(2 * t + b.H + bevelOuter_->Spacing());
    return b;
}

TRect TKxDial::paintValueBox(TCanvas& c, TRect r, const TBoxSize& b) {
    // A unit that does not fit beside the box is left out.
    const bool unit = int64_t(b.BoxW) + b.M + b.U <= r.Width();
    const TKxValueBox box =
        KxPaintValueBox(c, r, *bevelValue_, *Font(), Font()->Color(), unit ? b.Unit : QString(),
                        b.W, unit ? b.U : 0, b.H, b.M);
    number_ = box.Number;
    r.Top = Saturate(int64_t(r.Top) + b.Height);
    return r;
}

void TKxDial::Paint() {
    painted_ = false;
    number_ = TRect{};
    TCanvas& c = Canvas();
    TRect r = ClientRect();
    if (HasOption(opBevelOuter)) {
        bevelOuter_->PaintFilledBevel(c, r);
    } else {
        c.Brush().SetStyle(bsSolid);
        c.Brush().SetColor(bevelOuter_->Color());
        c.FillRect(r);
    }
    // What does not fit gives way to the face: first the names, then the value box.
    const TNameSizes names = KxMeasureNames(c, *Font(), *SignalSettings());
    const int64_t namesH =
        (HasOption(opName1) ? names.Name1H : 0) + (HasOption(opName2) ? names.Name2H : 0);
    bool value = HasOption(opValue), showNames = namesH > 0;
    const TBoxSize box = value ? measureValueBox(c) : TBoxSize{};
    const int64_t need = kMinFace + 4;
    if (value && box.BoxW > r.Width()) value = false;
    if (showNames && r.Height() - namesH - (value ? box.Height : 0) < need) showNames = false;
    if (value && r.Height() - box.Height < need) value = false;
    if (value) r = paintValueBox(c, r, box);
    KxPaintNames(c, *Font(), *SignalSettings(), r, Div(bevelOuter_->Spacing(), 2),
                 showNames && HasOption(opName1), showNames && HasOption(opName2), names);
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
    TKxAnalogCControl::ValueChange();
    if (!alive) return;
    angle_ = float(SignalSettings()->GetPPT(Value())) * float(kSweep) / 1000.0f;
    if (!painted_ || UpdateCount() > 0 || !(Visible() || Designing())) return;
    drawPointer();
    if (HasOption(opValue)) {
        const QString text = Designing() ? SignalSettings()->SampleValueText() : ValueText();
        KxDrawNumberBox(Canvas(), numberCache_, number_, bevelValue_->Color(), *fontValue_, text);
    }
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
            drawSpot(w, pts[0], color);
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

void TKxDial::drawSpot(TCanvas& canvas, TPoint p, TColor color) {
    // The spot is the same picture at every angle: drawn once, then blended in place. On
    // a scaled grid the picture's pixels would not meet the face's, so it is drawn there.
    if (canvas.DeviceRatio() != 1.0) {
        KxCircleAtPoint(canvas, p, spotRadius_, color, color);
        return;
    }
    const int32_t r = spotRadius_, size = 2 * r + 3;
    if (spot_.Width() != size || spotColor_ != color) {
        spot_.SetSize(size, size);
        spot_.ClearTransparent();
        spot_.SetTransparent(true);
        KxCircleAtPoint(spot_.Canvas(), TPoint{r + 1, r + 1}, r, color, color);
        spotColor_ = color;
    }
    canvas.Draw(p.X - r - 1, p.Y - r - 1, spot_);
}

void TKxDial::mousePressEvent(QMouseEvent* e) {
    lastMouseAngle_ =
        KxGetAngle(centre_, TPoint{int32_t(e->position().x()), int32_t(e->position().y())});
    TKxAnalogCControl::mousePressEvent(e);
}

void TKxDial::MouseSlide(Qt::KeyboardModifiers shift, int32_t x, int32_t y, TPoint lastPos) {
    TKxAnalogCControl::MouseSlide(shift, x, y, lastPos);
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
