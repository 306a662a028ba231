#include "indicators/rmeter.h"

#include <QPointer>
#include <algorithm>

#include "blink/flashtimer.h"
#include "drawing/angles.h"
#include "drawing/geometry.h"
#include "drawing/shapes.h"
#include "host/numeric.h"

namespace kx {
namespace {

// Square-wave code of the needle blink (about 2 Hz at the 16 ms tick).
constexpr int64_t kNeedleBlinkCode = 4;

TRect unite(const TRect& a, const TRect& b) {
    return TRect{std::min(a.Left, b.Left), std::min(a.Top, b.Top), std::max(a.Right, b.Right),
                 std::max(a.Bottom, b.Bottom)};
}

void include(TRect& r, TPoint p) {
    r.Left = std::min(r.Left, p.X);
    r.Top = std::min(r.Top, p.Y);
    r.Right = std::max(r.Right, p.X + 1);
    r.Bottom = std::max(r.Bottom, p.Y + 1);
}

}  // namespace

TKxRMeter::TKxRMeter(QWidget* parent)
    : TKxAnalogGControl(parent),
      arrowSettings_(new TArrowSettings(this)),
      fontUnit_(new TFont(this)),
      bevelInner_(new TKxSBevel(this)),
      bevelOuter_(new TKxSBevel(this)),
      scaleSettings_(new TScaleSettings(this)) {
    BeginUpdate();
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    fontUnit_->SetName(QStringLiteral("System"));
    fontUnit_->SetSize(10);
    fontUnit_->SetColor(clBlack);
    bevelInner_->SetStyle(TKxSBevel::bsLowered);
    bevelInner_->SetSpacing(5);
    bevelInner_->SetWidth(2);
    bevelInner_->SetBevelLine(TKxSBevel::blInner);
    bevelOuter_->SetSpacing(5);
    bevelOuter_->SetBevelLine(TKxSBevel::blOuter);
    bevelOuter_->SetWidth(2);
}

TKxRMeter::~TKxRMeter() { DelControl(this); }

void TKxRMeter::configure(TMeterType type, int32_t start, int32_t sweep, float aspect,
                          int32_t width, int32_t height, int32_t steps) {
    meterType_ = type;
    startAngle_ = start;
    sweepAngle_ = sweep;
    aspect_ = aspect;
    scaleSettings_->SetSteps(steps);
    SetBounds(x(), y(), width, height);
}

void TKxRMeter::hookSettings() {
    auto handler = [this](QObject* sender) { ParamChange(sender); };
    arrowSettings_->SetOnChange(handler);
    fontUnit_->SetOnChange(handler);
    bevelInner_->SetOnChange(handler);
    bevelOuter_->SetOnChange(handler);
    scaleSettings_->SetOnChange(handler);
}

void TKxRMeter::Loaded() {
    hookSettings();
    TKxAnalogGControl::Loaded();
    EndUpdate();
}

void TKxRMeter::requestRepaint() {
    if (UpdateCount() == 0) Invalidate();
}

void TKxRMeter::SetKxAutoSize(bool v) {
    autoSize_ = v;
    // An auto-sized meter keeps the size it works out; layouts then leave it alone.
    setSizePolicy(v ? QSizePolicy::Fixed : QSizePolicy::Preferred,
                  v ? QSizePolicy::Fixed : QSizePolicy::Preferred);
    requestRepaint();
}

void TKxRMeter::SetArrowSettings(const TArrowSettings* v) {
    if (v && v != arrowSettings_) arrowSettings_->Assign(v);
}

void TKxRMeter::SetFontUnit(const TFont* v) {
    if (v && v != fontUnit_) fontUnit_->Assign(*v);
    requestRepaint();
}

void TKxRMeter::SetBevelInner(const TKxSBevel* v) {
    if (v && v != bevelInner_) bevelInner_->Assign(v);
}

void TKxRMeter::SetBevelOuter(const TKxSBevel* v) {
    if (v && v != bevelOuter_) bevelOuter_->Assign(v);
}

void TKxRMeter::SetScaleSettings(const TScaleSettings* v) {
    if (v && v != scaleSettings_) scaleSettings_->Assign(v);
}

void TKxRMeter::SetOptions(TRMeterOptions v) {
    options_ = v;
    // Turning off the option that made the needle blink stops the blinking at once.
    if (blinking_) PointerFlash();
    requestRepaint();
}

void TKxRMeter::ParamChange(QObject* sender) {
    TKxAnalogGControl::ParamChange(sender);
    requestRepaint();
}

void TKxRMeter::LogScaleChanged() {
    scaleSettings_->LogScale = LogScale();
    requestRepaint();
    TKxAnalogGControl::LogScaleChanged();
}

void TKxRMeter::CalcSize() {
    TCanvas& c = Canvas();
    c.SetFont(*Font());
    const TSignalSettings& sig = *SignalSettings();
    text_.name1W = c.TextWidth(sig.Name1());
    text_.name1H = c.TextHeight(sig.Name1());
    text_.name2W = c.TextWidth(sig.Name2());
    text_.name2H = c.TextHeight(sig.Name2());
    c.SetFont(*fontUnit_);
    text_.unitW = c.TextWidth(sig.ValueUnit());
    text_.unitH = c.TextHeight(sig.ValueUnit());
    scaleSettings_->CalcRSize(c, sig.ValueFrom(), sig.ValueTo());

    const int32_t labelH = scaleSettings_->MaxTextHeight;
    const int32_t labelW = scaleSettings_->MaxTextWidth;
    const int32_t outer = HasOption(opBevelOuter) ? 2 * bevelOuter_->TotalWidth() : 0;
    const int32_t inner = HasOption(opBevelInner) ? 2 * bevelInner_->TotalWidth() : 0;
    int32_t w;
    if (autoSize_) {
        w = 10 * labelH;
    } else {
        w = std::max(width() - outer - inner, 7 * labelH);
    }
    int32_t h = Round(double(w - labelW) / double(aspect_) + labelH);
    w += outer;
    h += outer;
    const int32_t bevels = outer + inner;
    if (HasOption(opName1)) {
        h += text_.name1H;
        w = std::max(w, bevels + text_.name1W);
    }
    if (HasOption(opName2)) {
        h += text_.name2H;
        w = std::max(w, bevels + text_.name2W);
    }
    if (HasOption(opBevelInner)) {
        h += inner;
        w = std::max(w, w + inner);
    }
    if (autoSize_ && (width() != w || height() != h)) SetBounds(x(), y(), w, h);
}

void TKxRMeter::paintNames(TRect& r, int32_t t) {
    TCanvas& c = Canvas();
    c.Brush().SetStyle(bsClear);
    c.SetFont(*Font());
    const TSignalSettings& sig = *SignalSettings();
    if (HasOption(opName2)) {
        r.Bottom -= text_.name2H;
        c.TextOut(r.Left + Div(r.Width() - text_.name2W, 2), r.Bottom + t, sig.Name2());
    }
    if (HasOption(opName1)) {
        r.Bottom -= text_.name1H;
        c.TextOut(r.Left + Div(r.Width() - text_.name1W, 2), r.Bottom + t, sig.Name1());
    }
}

void TKxRMeter::paintScale(TRect& r) {
    TCanvas& c = Canvas();
    TRect r0 = r;
    switch (meterType_) {
        case Kx360Meter:
        case Kx270Meter:
            scaleSettings_->RoundScala(c, r, startAngle_, sweepAngle_);
            scaleRect_ = r;
            break;
        case Kx120Meter:
            r = Widen120(r);
            r0 = r;
            [[fallthrough]];
        case Kx180Meter: {
            scaleRect_.Bottom = r.Bottom + bevelInner_->Spacing();
            scaleSettings_->RoundScala(c, r, startAngle_, sweepAngle_);
            scaleRect_.Left = r.Left;
            scaleRect_.Top = r.Top;
            scaleRect_.Right = r.Right;
            break;
        }
    }
    const TSectorSettings& sectors = *SectorSettings();
    if (HasOption(opSector)) {
        TRect r2 = r;
        KxBorder(r2, scaleSettings_->StepLength + sectors.Offset());
        DrawRSector(c, r2);
    }
    // A sector ring reaching into the scale gets the scale drawn over it again.
    if (sectors.Offset() < 0) scaleSettings_->RoundScala(c, r0, startAngle_, sweepAngle_);
}

void TKxRMeter::paintUnit(const TRect& r) {
    if (!HasOption(opUnit)) return;
    const int32_t labelH = scaleSettings_->MaxTextHeight;
    int32_t y;
    if (meterType_ == Kx270Meter)
        y = Round(double(width() - scaleSettings_->MaxTextWidth) / 1.18 - labelH);
    else
        y = r.Top + Round(r.Width() / 3.0 - labelH / 2.0);
    TCanvas& c = Canvas();
    c.SetFont(*fontUnit_);
    c.Brush().SetStyle(bsClear);
    c.TextOut(r.Left + Div(r.Width() - text_.unitW, 2), y, SignalSettings()->ValueUnit());
}

void TKxRMeter::buildNeedleField() {
    KxArrowField(arrowSettings_->Shape(), Div(scaleSettings_->StepLength, 2), scaleRect_, arrow_,
                 kArrowPointsHigh);
    const int32_t n = std::min(ArrowPointCount(arrow_[0]), kArrowPointsHigh);
    for (int32_t i = 2; i <= n; ++i)
        arrow_[size_t(i)] = KxRotate(arrow_[size_t(i)], arrow_[1], float(startAngle_), true);
}

void TKxRMeter::buildMarkerTemplate() {
    const int32_t len = scaleSettings_->StepLength;
    const int32_t w = Round(len * 0.6);
    const int32_t cx = arrow_[1].X;
    markerTemplate_ = {TPoint{cx, len + w}, TPoint{cx, 1}, TPoint{cx - w, 1},
                       TPoint{cx, len + w}, TPoint{cx, 1}, TPoint{cx + w, 1}};
    for (TPoint& p : markerTemplate_) p = KxRotate(p, arrow_[1], float(startAngle_), true);
}

void TKxRMeter::Paint() {
    if (UpdateCount() > 0) return;
    CalcSize();
    lastDrawn_ = -1;
    lastBoundsValid_ = false;
    TRect r = ClientRect();
    TCanvas& c = Canvas();
    int32_t t = 0;
    if (HasOption(opBevelOuter)) {
        bevelOuter_->PaintFilledBevel(c, r);
        t = Div(bevelOuter_->Spacing(), 2);
    }
    paintNames(r, t);
    if (HasOption(opBevelInner)) bevelInner_->PaintFilledBevel(c, r);
    tooSmall_ = r.Width() < 2 || r.Height() < 2;
    if (tooSmall_) return;
    paintScale(r);
    paintUnit(r);
    buildNeedleField();
    // A failed capture (an empty scale area) must not leave the previous layout's image.
    background_.SetSize(0, 0);
    GetBkUpImage(c, background_, scaleRect_);
    buildMarkerTemplate();
    ValueChange();
}

TRect TKxRMeter::Widen120(TRect r) {
    // The right side grows by the already widened width: kept asymmetric.
    r.Left -= Div(r.Width(), 20);
    r.Right += Div(r.Width(), 20);
    return r;
}

bool TKxRMeter::SectorArc(int32_t from, int32_t to, int32_t startAngle, int32_t sweepAngle,
                          int32_t& start, int32_t& extent) {
    // Sectors shorter than 5 per mille, ending below 1 or starting at the end are skipped.
    if (int64_t(to) - from < 5 || to < 1 || from >= 1000) return false;
    const float f = float(sweepAngle / 1000.0);
    if (from >= 0) {
        start = startAngle + Round(double(f) * from);
        extent = Round(double(f) * (int64_t(std::min(1000, to)) - from));
    } else {
        start = startAngle;
        extent = Round(double(f) * std::min(1000, to));
    }
    // An extent that rounds to nothing would be a full circle to the pie.
    return extent != 0;
}

int32_t TKxRMeter::NeedlePosition() const {
    const TSignalSettings& sig = *SignalSettings();
    if (sig.TotalDigit() == 0) return PPT();
    const double pos = 1000.0 / sig.TotalDigit() * (double(Digit()) - sig.DigitalFrom());
    return std::clamp(Round(pos), -30, 1030);
}

void TKxRMeter::DrawRSector(TCanvas& canvas, const TRect& r2) {
    const TSectorSettings& s = *SectorSettings();
    const int32_t q = Div(r2.Width(), 10) + s.WidthOffset();
    // The canvas is the control's own surface, so the regions need no shift to the parent.
    TRect outerBox = r2;
    outerBox.Bottom += 1;
    TRect innerBox = r2;
    KxBorder(innerBox, q);
    const bool hadClip = canvas.HasClipRegion();
    const QRegion kept = canvas.ClipRegion();
    QRegion ring = TCanvas::EllipticRegion(outerBox).subtracted(TCanvas::EllipticRegion(innerBox));
    canvas.SetClipRegion(hadClip ? ring.intersected(kept) : ring);
    canvas.Brush().SetStyle(bsSolid);
    const struct {
        int32_t from, to;
        TColor color;
    } sectors[] = {{s.Sector1From(), s.Sector1To(), s.Sector1Color()},
                   {s.Sector2From(), s.Sector2To(), s.Sector2Color()},
                   {s.Sector3From(), s.Sector3To(), s.Sector3Color()}};
    for (const auto& sec : sectors) {
        int32_t start, extent;
        if (!SectorArc(sec.from, sec.to, startAngle_, sweepAngle_, start, extent)) continue;
        canvas.Brush().SetColor(sec.color);
        canvas.Pen().SetColor(sec.color);
        KxRoundSector(canvas, r2, float(start), float(extent));
    }
    if (hadClip)
        canvas.SetClipRegion(kept);
    else
        canvas.ClearClipRegion();
    canvas.Pen().SetColor(scaleSettings_->Color());
    canvas.Pen().SetWidth(scaleSettings_->LineWidth);
    canvas.Brush().SetStyle(bsClear);
    if (!scaleSettings_->DrawLine()) return;
    if (meterType_ == Kx360Meter) {
        canvas.Ellipse(r2);
    } else {
        const TRect& a = scaleSettings_->ArcRect;
        canvas.Arc(a.Left, a.Top, a.Right, a.Bottom, scaleSettings_->ArcStart.X,
                   scaleSettings_->ArcStart.Y, scaleSettings_->ArcEnd.X, scaleSettings_->ArcEnd.Y);
    }
}

TColor TKxRMeter::markerColor(int32_t ppt, bool useSectorColor, TColor own) const {
    TColor c = own;
    if (useSectorColor && SectorSettings()->CheckSectorColor(ppt, c)) return c;
    return own;
}

// The areas the needle (with its caps) and the two marks at these angles cover, in
// background coordinates; computes the mark polygons on the way.
TKxRMeter::TComposeAreas TKxRMeter::composeAreas(float angle, float minAngle, float maxAngle) {
    auto empty = [this] { return TRect{scaleRect_.Width(), scaleRect_.Height(), 0, 0}; };
    TComposeAreas areas{empty(), empty(), empty()};
    const TPoint pivot = arrow_[1];
    const int32_t n = std::min(ArrowPointCount(arrow_[0]), kArrowPointsHigh);
    for (int32_t i = 2; i <= n; ++i)
        include(areas.needle, KxRotate(arrow_[size_t(i)], pivot, angle, true));
    const int32_t cap = std::max(ArrowStyleByte(arrow_[0], 4), ArrowStyleByte(arrow_[0], 5));
    include(areas.needle, TPoint{pivot.X - cap, pivot.Y - cap});
    include(areas.needle, TPoint{pivot.X + cap, pivot.Y + cap});
    for (size_t i = 0; i < 3; ++i) {
        markers_[i] = KxRotate(markerTemplate_[i], pivot, minAngle, true);
        markers_[i + 3] = KxRotate(markerTemplate_[i + 3], pivot, maxAngle, true);
        include(areas.min, markers_[i]);
        include(areas.max, markers_[i + 3]);
    }
    // Outline pens and rounding reach a pixel or two past the vertices.
    for (TRect* r : {&areas.needle, &areas.min, &areas.max}) KxBorder(*r, -2);
    const TMinMax& mm = *MinMax();
    if (mm.MinVisible()) areas.minColor = markerColor(MinPPT(), mm.UseSectorCol(), mm.MinColor());
    if (mm.MaxVisible()) areas.maxColor = markerColor(MaxPPT(), mm.UseSectorCol(), mm.MaxColor());
    return areas;
}

void TKxRMeter::DrawPointer(TCanvas* canvas, TColor) {
    if (tooSmall_ || background_.Width() < 2) return;
    const double perMille = sweepAngle_ / 1000.0;
    const float a = float(perMille * NeedlePosition());
    const float amin = float(perMille * MinPPT());
    const float amax = float(perMille * MaxPPT());

    // Restore only what the previous and the new needle and marks cover.
    const TRect whole{0, 0, background_.Width(), background_.Height()};
    const TComposeAreas now = composeAreas(a, amin, amax);
    std::array<TRect, 3> dirty{};
    size_t count = 0;
    if (lastBoundsValid_ && work_.Width() == whole.Right && work_.Height() == whole.Bottom) {
        dirty[count++] = unite(now.needle, last_.needle);
        if (!(now.min == last_.min) || now.minColor != last_.minColor)
            dirty[count++] = unite(now.min, last_.min);
        if (!(now.max == last_.max) || now.maxColor != last_.maxColor)
            dirty[count++] = unite(now.max, last_.max);
    } else {
        work_.SetSize(whole.Right, whole.Bottom);
        dirty[count++] = whole;
    }
    last_ = now;
    lastBoundsValid_ = true;
    TCanvas& w = work_.Canvas();
    w.SetCopyMode(cmSrcCopy);
    for (size_t i = 0; i < count; ++i) {
        KxRectIntersection(dirty[i], whole, dirty[i]);
        if (dirty[i].Width() > 0 && dirty[i].Height() > 0)
            w.CopyRect(dirty[i], background_.Canvas(), dirty[i]);
    }
    drawMarks(w);
    drawNeedle(w, a);
    if (!canvas) return;
    canvas->SetCopyMode(cmSrcCopy);
    for (size_t i = 0; i < count; ++i) {
        const TRect& d = dirty[i];
        if (d.Width() <= 0 || d.Height() <= 0) continue;
        const TRect onSurface{scaleRect_.Left + d.Left, scaleRect_.Top + d.Top,
                              scaleRect_.Left + d.Right, scaleRect_.Top + d.Bottom};
        canvas->CopyRect(onSurface, w, d);
    }
}

void TKxRMeter::drawMarks(TCanvas& w) {
    w.Pen().SetMode(pmCopy);
    w.Pen().SetStyle(psSolid);
    w.Pen().SetWidth(1);
    w.Pen().SetColor(clBlack);
    w.Brush().SetStyle(bsSolid);
    if (last_.minColor != clNone) {
        w.Brush().SetColor(last_.minColor);
        w.Polygon(std::span<const TPoint>(markers_.data(), 3));
    }
    if (last_.maxColor != clNone) {
        w.Brush().SetColor(last_.maxColor);
        w.Polygon(std::span<const TPoint>(markers_.data() + 3, 3));
    }
}

void TKxRMeter::drawNeedle(TCanvas& w, float angle) {
    if (blinking_) {
        w.Brush().SetColor(blinkColor_);
        w.Pen().SetColor(ArrowStyleByte(arrow_[0], 1) ? blinkColor_ : arrowSettings_->ColorPen());
    } else {
        w.Pen().SetColor(arrowSettings_->ColorPen());
        w.Brush().SetColor(arrowSettings_->ColorBrush());
    }
    KxArrowDraw(w, angle, arrow_, kArrowPointsHigh, needle_, kArrowPointsHigh, true);
    const TPoint cp = arrow_[1];
    const int32_t r1 = ArrowStyleByte(arrow_[0], 4);
    const int32_t r2 = ArrowStyleByte(arrow_[0], 5);
    if (r1 > 0) {
        w.Brush().SetColor(arrowSettings_->ColorCP1Brush());
        w.Pen().SetColor(arrowSettings_->ColorCP1Pen());
        w.Ellipse(cp.X - r1, cp.Y - r1, cp.X + r1, cp.Y + r1);
    }
    if (r2 > 0) {
        w.Brush().SetColor(arrowSettings_->ColorCP2Brush());
        w.Pen().SetColor(arrowSettings_->ColorCP2Pen());
        w.Ellipse(cp.X - r2, cp.Y - r2, cp.X + r2, cp.Y + r2);
    }
}

void TKxRMeter::ValueChange() {
    ++drawingNeedle_;
    // An event handler may delete the meter; then there is nothing left to draw.
    QPointer<TKxRMeter> alive(this);
    TKxAnalogGControl::ValueChange();
    if (!alive) return;
    if (!tooSmall_ && !background_.Empty() && Visible()) {
        DrawPointer(&Canvas(), scaleSettings_->PointerColor());
        lastDrawn_ = PPT();
    }
    --drawingNeedle_;
}

void TKxRMeter::OverflowChange(int32_t) { PointerFlash(); }

void TKxRMeter::LimitChange() { PointerFlash(); }

void TKxRMeter::PointerFlash() {
    const int32_t pos = NeedlePosition();
    const bool overflow = HasOption(opOverflow) && (pos > 1000 || pos < 0);
    const bool limit = HasOption(opLimit) && (UpperExceeded() || LowerExceeded());
    if (overflow || limit) {
        AddControl(this, kNeedleBlinkCode);
        blinking_ = true;
    } else {
        blinking_ = false;
        DelControl(this);
    }
}

void TKxRMeter::WMFlash(TMessage& message) {
    if (!Visible() || drawingNeedle_ > 0 || tooSmall_) return;
    blinkColor_ = message.LParam != 0 ? BlinkColor2() : BlinkColor1();
    DrawPointer(&Canvas(), blinkColor_);
}

TKx120Meter::TKx120Meter(QWidget* parent) : TKxRMeter(parent) {
    configure(Kx120Meter, 300, 120, 2.5f, 252, 155, 5);
}

TKx180Meter::TKx180Meter(QWidget* parent) : TKxRMeter(parent) {
    configure(Kx180Meter, 270, 180, 2.0f, 252, 174, 5);
}

TKx270Meter::TKx270Meter(QWidget* parent) : TKxRMeter(parent) {
    configure(Kx270Meter, 225, 270, 1.18f, 252, 252, 10);
}

}  // namespace kx
