#include "kx/indicators/rmeter.h"

#include <QPointer>
#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "kx/blink/flashtimer.h"
#include "kx/drawing/angles.h"
#include "kx/drawing/geometry.h"
#include "kx/drawing/shapes.h"
#include "kx/host/numeric.h"

namespace kx {
namespace {

// Square-wave code of the needle blink (about 2 Hz at the 16 ms tick).
constexpr int64_t kNeedleBlinkCode = 4;
// An auto-sized scale grows no wider than this to keep its labels apart.
constexpr int32_t kMaxNaturalWidth = 4096;

void include(TRect& r, TPoint p) {
    r.Left = std::min(r.Left, p.X);
    r.Top = std::min(r.Top, p.Y);
    r.Right = std::max(r.Right, p.X + 1);
    r.Bottom = std::max(r.Bottom, p.Y + 1);
}

TRect shrunk(TRect r, int32_t n) {
    KxBorder(r, n);
    return r;
}

bool overlaps(const TRect& a, const TRect& b) {
    return a.Left < b.Right && b.Left < a.Right && a.Top < b.Bottom && b.Top < a.Bottom;
}

bool inside(const TRect& inner, const TRect& outer) {
    return inner.Left >= outer.Left && inner.Top >= outer.Top && inner.Right <= outer.Right &&
           inner.Bottom <= outer.Bottom;
}

}  // namespace

// Draws nothing: collects the box of every line end and text that a drawing touches, and
// the boxes of the texts. Texts are measured by another canvas as it stands, so the
// caller selects the drawing's font there first.
class TKxRMeter::TExtentCanvas : public TCanvas {
  public:
    explicit TExtentCanvas(TCanvas& metrics) : metrics_(metrics) {}

    bool Any = false;
    TRect Box{};
    std::vector<TRect> Texts;

    void Add(int64_t l, int64_t t, int64_t r, int64_t b) {
        const TRect box{Saturate(l), Saturate(t), Saturate(r), Saturate(b)};
        Box = Any ? KxUnionRect(Box, box) : box;
        Any = true;
    }
    // A pixel with the pen's reach round it.
    void AddPoint(TPoint p, int32_t reach) {
        Add(int64_t(p.X) - reach, int64_t(p.Y) - reach, int64_t(p.X) + reach + 1,
            int64_t(p.Y) + reach + 1);
    }
    // Points of the ellipse inscribed in r, from angle a0 (degrees, 0 up, clockwise) over
    // extent degrees: one per degree and both ends.
    void AddEllipseArc(const TRect& r, double a0, double extent, int32_t reach) {
        const double cx = (double(r.Left) + r.Right) / 2, cy = (double(r.Top) + r.Bottom) / 2;
        const double rx = (double(r.Right) - r.Left) / 2, ry = (double(r.Bottom) - r.Top) / 2;
        const int32_t steps = std::clamp(int32_t(std::ceil(std::abs(extent))), 1, 720);
        for (int32_t i = 0; i <= steps; ++i) {
            const double a = (a0 + extent * i / steps) * std::numbers::pi / 180;
            const double x = std::clamp(cx + rx * std::sin(a), -1e9, 1e9);
            const double y = std::clamp(cy - ry * std::cos(a), -1e9, 1e9);
            AddPoint(TPoint{int32_t(std::floor(x)), int32_t(std::floor(y))}, reach);
        }
    }

    void MoveTo(int32_t x, int32_t y) override { SetPenPos(TPoint{x, y}); }
    void LineTo(int32_t x, int32_t y) override {
        const int32_t reach = Div(Pen().Width(), 2);
        AddPoint(PenPos(), reach);
        AddPoint(TPoint{x, y}, reach);
        SetPenPos(TPoint{x, y});
    }
    void TextOut(int32_t x, int32_t y, const QString& text) override {
        if (text.isEmpty()) return;
        const TRect box{x, y, Saturate(int64_t(x) + TextWidth(text)),
                        Saturate(int64_t(y) + TextHeight(text))};
        Texts.push_back(box);
        Add(box.Left, box.Top, box.Right, box.Bottom);
    }
    int32_t TextWidth(const QString& text) override { return metrics_.TextWidth(text); }
    int32_t TextHeight(const QString& text) override { return metrics_.TextHeight(text); }

  private:
    TCanvas& metrics_;
};

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

TKxRMeter::~TKxRMeter() {
    DelControl(this);
}

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
    const TSignalSettings& sig = *SignalSettings();
    text_.names = MeasureNames(c);
    c.SetFont(*fontUnit_);
    text_.unitW = c.TextWidth(sig.ValueUnit());
    text_.unitH = c.TextHeight(sig.ValueUnit());
    scaleSettings_->CalcRSize(c, sig.ValueFrom(), sig.ValueTo());

    // A fixed size is kept as it is: the measures above serve the paint.
    if (!autoSize_) return;
    // In 64 bits: absurd bevel spacings and fonts would overflow the sums; SetAutoSize
    // bounds the result.
    const int64_t labelH = scaleSettings_->MaxTextHeight;
    const int64_t labelW = scaleSettings_->MaxTextWidth;
    const int64_t outer = HasOption(opBevelOuter) ? 2 * int64_t(bevelOuter_->TotalWidth()) : 0;
    const int64_t inner = HasOption(opBevelInner) ? 2 * int64_t(bevelInner_->TotalWidth()) : 0;
    const int32_t natural = naturalScaleWidth();
    int64_t w = natural;
    int64_t h = Round64(double(w - labelW) / double(aspect_) + double(labelH));
    w += outer;
    h += outer;
    const int64_t bevels = outer + inner;
    if (HasOption(opName1)) {
        h += text_.names.Name1H;
        w = std::max(w, bevels + text_.names.Name1W);
    }
    if (HasOption(opName2)) {
        h += text_.names.Name2H;
        w = std::max(w, bevels + text_.names.Name2W);
    }
    if (HasOption(opBevelInner)) {
        h += inner;
        w = std::max(w, w + inner);
    }
    // The scale as wide as the sizing makes it without names must fit in the area above
    // the names: grow by what it lacks (the 120-degree scale is wider than its area).
    TRect instrument, area;
    frameFor(TRect{0, 0, Saturate(w), Saturate(h)}, instrument, area);
    TRect in = instrument;
    in.Left = Saturate(instrument.Left + (int64_t(instrument.Width()) - natural) / 2);
    in.Right = Saturate(int64_t(in.Left) + natural);
    TExtentCanvas e(c);
    scaleExtent(e, meterType_ == Kx120Meter ? Widen120(in) : in);
    if (e.Any) {
        const int64_t side = std::max<int64_t>(
            {0, int64_t(area.Left) - e.Box.Left, int64_t(e.Box.Right) - area.Right});
        w += 2 * side;
        h += std::max<int64_t>(0, int64_t(e.Box.Bottom) - area.Bottom);
    }
    SetAutoSize(Saturate(w), Saturate(h));
}

int32_t TKxRMeter::naturalScaleWidth() {
    // Labels are measured in the font CalcRSize left selected.
    const int32_t base = Saturate(10 * int64_t(scaleSettings_->MaxTextHeight));
    // Labels closer than a quarter of their height read as one.
    const int32_t gap = std::max(1, Div(scaleSettings_->MaxTextHeight, 4));
    auto crowded = [&](int32_t w) {
        TExtentCanvas e(Canvas());
        const TRect in{0, 0, w, w};
        scaleExtent(e, meterType_ == Kx120Meter ? Widen120(in) : in);
        for (size_t i = 0; i < e.Texts.size(); ++i)
            for (size_t j = i + 1; j < e.Texts.size(); ++j)
                if (overlaps(shrunk(e.Texts[i], -gap), e.Texts[j])) return true;
        return false;
    };
    // Without a sweep every label stands on the first: no width keeps them apart.
    if (base <= 0 || sweepAngle_ <= 0 || !crowded(base)) return base;
    int32_t lo = base, hi = base;
    while (crowded(hi)) {
        if (hi >= kMaxNaturalWidth / 2) return kMaxNaturalWidth;
        lo = hi;
        hi *= 2;
    }
    while (hi - lo > 1) {
        const int32_t mid = lo + (hi - lo) / 2;
        (crowded(mid) ? lo : hi) = mid;
    }
    return hi;
}

void TKxRMeter::frameFor(const TRect& client, TRect& instrument, TRect& area) const {
    TRect r = client;
    TRect frame = client;  // inside the outer bevel's lines and rings
    int32_t t = 0;
    if (HasOption(opBevelOuter)) {
        frame =
            shrunk(client, Saturate(int64_t(bevelOuter_->TotalWidth()) - bevelOuter_->Spacing()));
        r = bevelOuter_->Offset()->SetOffset(shrunk(client, bevelOuter_->TotalWidth()));
        t = Div(bevelOuter_->Spacing(), 2);
    }
    int64_t namesTop = frame.Bottom;
    if (HasOption(opName2)) {
        r.Bottom = Saturate(int64_t(r.Bottom) - text_.names.Name2H);
        namesTop = int64_t(r.Bottom) + t;
    }
    if (HasOption(opName1)) {
        r.Bottom = Saturate(int64_t(r.Bottom) - text_.names.Name1H);
        namesTop = int64_t(r.Bottom) + t;
    }
    if (HasOption(opBevelInner)) {
        area = shrunk(r, Saturate(int64_t(bevelInner_->TotalWidth()) - bevelInner_->Spacing()));
        r = bevelInner_->Offset()->SetOffset(shrunk(r, bevelInner_->TotalWidth()));
    } else {
        area = frame;
        area.Bottom = Saturate(std::min<int64_t>(frame.Bottom, namesTop));
    }
    instrument = r;
}

void TKxRMeter::paintNames(TRect& r, int32_t t) {
    PaintNames(Canvas(), r, t, HasOption(opName1), HasOption(opName2), text_.names);
}

void TKxRMeter::scaleExtent(TExtentCanvas& e, const TRect& in) {
    TRect square = in;
    scaleSettings_->RoundScala(e, square, startAngle_, sweepAngle_);
    if (square.Width() <= 0) return;  // no room: no ring either
    const TSectorSettings& sectors = *SectorSettings();
    TRect r2 = shrunk(square, Saturate(int64_t(scaleSettings_->StepLength) + sectors.Offset()));
    if (HasOption(opSector)) {
        TRect ring = r2;
        ring.Bottom = Saturate(int64_t(ring.Bottom) + 1);
        for (const auto& sec : sectorList()) {
            int32_t start, extent;
            if (SectorArc(sec.from, sec.to, startAngle_, sweepAngle_, start, extent))
                e.AddEllipseArc(ring, start, extent, 0);
        }
    }
    if (!scaleSettings_->DrawLine()) return;
    const int32_t reach = Div(scaleSettings_->LineWidth, 2);
    if (meterType_ == Kx360Meter)
        e.AddEllipseArc(r2, 0, 360, reach);
    else
        e.AddEllipseArc(scaleSettings_->ArcRect, startAngle_, sweepAngle_, reach);
}

TRect TKxRMeter::fitScale(const TRect& in) {
    auto fits = [&](const TRect& f) {
        TExtentCanvas e(Canvas());
        scaleExtent(e, f);
        return !e.Any || inside(e.Box, area_);
    };
    if (fits(in)) return in;
    auto narrowed = [&](int32_t w) {
        TRect f = in;
        f.Left = Saturate(in.Left + int64_t(Div(in.Width() - w, 2)));
        f.Right = Saturate(int64_t(f.Left) + w);
        return f;
    };
    // The widest scale that fits; a width of 0 leaves no room for a ring and always fits.
    int32_t lo = 0, hi = std::max(in.Width(), 0);
    while (hi - lo > 1) {
        const int32_t mid = lo + (hi - lo) / 2;
        (fits(narrowed(mid)) ? lo : hi) = mid;
    }
    return narrowed(lo);
}

void TKxRMeter::paintScale(TRect& r) {
    TCanvas& c = Canvas();
    c.SetFont(*scaleSettings_->Font());
    const TRect rule = meterType_ == Kx120Meter ? Widen120(r) : r;
    const TRect in = fitScale(rule);
    narrowedBy_ = rule.Width() - in.Width();
    {
        TExtentCanvas e(c);
        scaleExtent(e, in);
        labelBoxes_ = std::move(e.Texts);
    }
    r = in;
    scaleSettings_->RoundScala(c, r, startAngle_, sweepAngle_);
    if (meterType_ == Kx120Meter || meterType_ == Kx180Meter)
        scaleRect_ =
            TRect{r.Left, r.Top, r.Right, Saturate(int64_t(in.Bottom) + bevelInner_->Spacing())};
    else
        scaleRect_ = r;
    if (r.Width() <= 0) return;  // no room for a ring
    const TSectorSettings& sectors = *SectorSettings();
    const TRect r2 = shrunk(r, Saturate(int64_t(scaleSettings_->StepLength) + sectors.Offset()));
    if (HasOption(opSector))
        DrawRSector(c, r2);
    else
        drawBaseLine(c, r2);  // without sectors too, or the ticks would float
    // A sector ring reaching into the scale gets the scale drawn over it again.
    if (sectors.Offset() < 0) {
        TRect again = in;
        scaleSettings_->RoundScala(c, again, startAngle_, sweepAngle_);
    }
}

void TKxRMeter::paintUnit(const TRect& r) {
    unitShown_ = false;
    if (!HasOption(opUnit)) return;
    const int32_t labelH = scaleSettings_->MaxTextHeight;
    int32_t y;
    if (meterType_ == Kx270Meter) {
        // The width the control would have for the narrowed scale.
        const int64_t w = int64_t(width()) - narrowedBy_;
        y = Round(double(w - scaleSettings_->MaxTextWidth) / 1.18 - labelH);
    } else {
        y = r.Top + Round(r.Width() / 3.0 - labelH / 2.0);
    }
    const int32_t x = r.Left + Div(r.Width() - text_.unitW, 2);
    const TRect box{x, y, Saturate(int64_t(x) + text_.unitW), Saturate(int64_t(y) + text_.unitH)};
    if (!inside(box, area_)) return;
    for (const TRect& label : labelBoxes_)
        if (overlaps(box, label)) return;
    TCanvas& c = Canvas();
    c.SetFont(*fontUnit_);
    c.Brush().SetStyle(bsClear);
    c.TextOut(x, y, SignalSettings()->ValueUnit());
    unitShown_ = true;
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
    for (TPoint& p : markerTemplate_)
        p = KxRotate(p, arrow_[1], float(startAngle_), true);
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
    TRect instrument;
    frameFor(ClientRect(), instrument, area_);
    unitShown_ = false;
    labelBoxes_.clear();
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
    r.Left = Saturate(int64_t(r.Left) - Div(r.Width(), 20));
    r.Right = Saturate(int64_t(r.Right) + Div(r.Width(), 20));
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
    return PointerPosition();
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
    for (const auto& sec : sectorList()) {
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
    drawBaseLine(canvas, r2);
}

void TKxRMeter::drawBaseLine(TCanvas& canvas, const TRect& r2) {
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

std::array<TKxRMeter::TSectorSpan, 3> TKxRMeter::sectorList() const {
    const TSectorSettings& s = *SectorSettings();
    return {{{s.Sector1From(), s.Sector1To(), s.Sector1Color()},
             {s.Sector2From(), s.Sector2To(), s.Sector2Color()},
             {s.Sector3From(), s.Sector3To(), s.Sector3Color()}}};
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
    for (TRect* r : {&areas.needle, &areas.min, &areas.max})
        KxBorder(*r, -2);
    const TMinMax& mm = *MinMax();
    if (mm.MinVisible()) areas.minColor = MarkerColor(MinPPT(), mm.MinColor());
    if (mm.MaxVisible()) areas.maxColor = MarkerColor(MaxPPT(), mm.MaxColor());
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
    if (lastBoundsValid_ && work_.Width() == whole.Right && work_.Height() == whole.Bottom &&
        work_.DeviceRatio() == background_.DeviceRatio()) {
        dirty[count++] = KxUnionRect(now.needle, last_.needle);
        if (!(now.min == last_.min) || now.minColor != last_.minColor)
            dirty[count++] = KxUnionRect(now.min, last_.min);
        if (!(now.max == last_.max) || now.maxColor != last_.maxColor)
            dirty[count++] = KxUnionRect(now.max, last_.max);
    } else {
        MakeCompatibleBitmap(work_, whole.Right, whole.Bottom, background_.GridOrigin());
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
        const TRect onSurface{scaleRect_.Left + d.Left, scaleRect_.Top + d.Top,
                              scaleRect_.Left + d.Right, scaleRect_.Top + d.Bottom};
        // Needle and marks stay inside the scale area, off the names and the bevels.
        TRect shown;
        if (!KxRectIntersection(onSurface, area_, shown)) continue;
        if (shown.Width() <= 0 || shown.Height() <= 0) continue;
        const TRect from{shown.Left - scaleRect_.Left, shown.Top - scaleRect_.Top,
                         shown.Right - scaleRect_.Left, shown.Bottom - scaleRect_.Top};
        canvas->CopyRect(shown, w, from);
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

void TKxRMeter::OverflowChange(int32_t) {
    PointerFlash();
}

void TKxRMeter::LimitChange() {
    PointerFlash();
}

void TKxRMeter::PointerFlash() {
    if (PointerAlarm(NeedlePosition(), HasOption(opOverflow), HasOption(opLimit))) {
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
