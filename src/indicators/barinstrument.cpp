#include "kx/indicators/barinstrument.h"

#include <QPointer>
#include <algorithm>

#include "kx/blink/flashtimer.h"
#include "kx/drawing/geometry.h"
#include "kx/drawing/shapes.h"
#include "kx/drawing/text.h"
#include "kx/framework/valuebox.h"
#include "kx/host/numeric.h"
#include "kx/indicators/bar.h"

namespace kx {

namespace {

constexpr int64_t kOverflowBlinkCode = 4;

// Pixels along a bar of the given length for the per-mille position p (as the bar's end).
int32_t along(int32_t p, int32_t length) {
    return Round(double(std::clamp(p, 0, 1000)) * (double(length) / 1000.0));
}

}  // namespace

TKxBarInstrument::TKxBarInstrument(QWidget* parent)
    : TKxAnalogGControl(parent),
      fontValue_(new TFont(this)),
      barSettings_(new TBarSettings(this)),
      bevelInner_(new TKxSBevel(this)),
      bevelOuter_(new TKxSBevel(this)),
      bevelValue_(new TKxSBevel(this)) {
    BeginUpdate();
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    fontValue_->SetName(QStringLiteral("System"));
    fontValue_->SetSize(10);
    fontValue_->SetColor(clLime);
    bevelInner_->SetStyle(bsLowered);
    bevelInner_->SetWidth(2);
    bevelInner_->SetBevelLine(blInner);
    bevelOuter_->SetSpacing(5);
    bevelOuter_->SetWidth(2);
    bevelOuter_->SetBevelLine(blOuter);
    bevelValue_->SetStyle(bsLowered);
    bevelValue_->SetColor(clBlack);
    bevelValue_->SetWidth(2);
    bevelValue_->SetSpacing(0);
    barSettings_->Bevel()->SetSpacing(1);
    barSettings_->Bevel()->SetColor(clBlack);
    barSettings_->SetBkBrightness(40.0f);
}

TKxBarInstrument::~TKxBarInstrument() {
    DelControl(this);
}

void TKxBarInstrument::hookSettings() {
    auto handler = [this](QObject* sender) { ParamChange(sender); };
    fontValue_->SetOnChange(handler);
    barSettings_->SetOnChange(handler);
    bevelInner_->SetOnChange(handler);
    bevelOuter_->SetOnChange(handler);
    bevelValue_->SetOnChange(handler);
}

void TKxBarInstrument::Loaded() {
    hookSettings();
    TKxAnalogGControl::Loaded();
    EndUpdate();
}

void TKxBarInstrument::requestRepaint() {
    if (UpdateCount() == 0) Invalidate();
}

void TKxBarInstrument::SetKxAutoSize(bool v) {
    autoSize_ = v;
    setSizePolicy(v ? QSizePolicy::Fixed : QSizePolicy::Preferred,
                  v ? QSizePolicy::Fixed : QSizePolicy::Preferred);
    requestRepaint();
}

void TKxBarInstrument::SetFontValue(const TFont* v) {
    if (v && v != fontValue_) fontValue_->Assign(*v);
    requestRepaint();
}
void TKxBarInstrument::SetBarSettings(const TBarSettings* v) {
    if (v && v != barSettings_) barSettings_->Assign(v);
}
void TKxBarInstrument::SetBevelInner(const TKxSBevel* v) {
    if (v && v != bevelInner_) bevelInner_->Assign(v);
}
void TKxBarInstrument::SetBevelOuter(const TKxSBevel* v) {
    if (v && v != bevelOuter_) bevelOuter_->Assign(v);
}
void TKxBarInstrument::SetBevelValue(const TKxSBevel* v) {
    if (v && v != bevelValue_) bevelValue_->Assign(v);
}

void TKxBarInstrument::SetOptions(THBarOptions v) {
    options_ = v;
    startOrStopBlinking();
    requestRepaint();
}

void TKxBarInstrument::startOrStopBlinking() {
    const bool out = OverflowHigh() || OverflowLow();
    if (HasOption(opOverflow) && out && !Designing()) {
        AddControl(this, kOverflowBlinkCode);
        blinking_ = true;
    } else {
        DelControl(this);
        blinking_ = false;
    }
}

void TKxBarInstrument::ParamChange(QObject* sender) {
    TKxAnalogGControl::ParamChange(sender);
    barSettings_->BidirOrigin = SignalSettings()->GetPPT(0.0f);
    requestRepaint();
}

void TKxBarInstrument::LogScaleChanged() {
    requestRepaint();
    TKxAnalogGControl::LogScaleChanged();
}

void TKxBarInstrument::MinMaxChange(QObject* sender) {
    TKxAnalogGControl::MinMaxChange(sender);
    // Showing or hiding the markers changes the layout (their room beside the bar).
    if (Designing() || (laidOut_ && markersLaidOut_ != MarkersShown())) requestRepaint();
}

int32_t TKxBarInstrument::barThickness() const {
    return Saturate(2 * int64_t(barSettings_->Bevel()->TotalWidth()) + barAcross());
}

bool TKxBarInstrument::MarkersShown() const {
    return MinMax()->MinVisible() || MinMax()->MaxVisible();
}

void TKxBarInstrument::CalcSize() {
    TCanvas& c = Canvas();
    const TSignalSettings& sig = *SignalSettings();
    text_.names = MeasureNames(c);
    c.SetFont(*fontValue_);
    const QString sample = sig.SampleValueText();
    text_.valueW = c.TextWidth(sample);
    text_.valueH = c.TextHeight(sample);
    text_.unitW = HasOption(opUnit) ? c.TextWidth(sig.ValueUnit()) : 0;
    text_.unitH = c.TextHeight(sig.ValueUnit());
    markerRoom_ = Saturate(int64_t(barAcross()) + 2 * int64_t(barSettings_->Bevel()->Spacing()));
    int32_t w = 0, h = 0;
    requiredSize(w, h);
    if (autoSize_)
        SetAutoSize(w, h);
    else
        GrowToAtLeast(w, h);
}

int32_t TKxBarInstrument::paintValueBox(const TRect& r) {
    const TKxValueBox box =
        KxPaintValueBox(Canvas(), r, *bevelValue_, *fontValue_, Font()->Color(),
                        HasOption(opUnit) ? SignalSettings()->ValueUnit() : QString(), text_.valueW,
                        text_.unitW, text_.valueH, Div(text_.valueH, 6));
    valueBox_ = box.Number;
    return Saturate(int64_t(box.Frame.Bottom) + bevelInner_->Spacing());
}

void TKxBarInstrument::Paint() {
    if (UpdateCount() > 0) return;
    barSettings_->UnitText = SignalSettings()->ValueUnit();
    CalcSize();
    TRect r = ClientRect();
    TCanvas& c = Canvas();
    int32_t t = 0;
    if (HasOption(opBevelOuter)) {
        bevelOuter_->PaintFilledBevel(c, r);
        t = Div(bevelOuter_->Spacing(), 2);
    }
    PaintNames(c, r, t, HasOption(opName1), HasOption(opName2), text_.names);
    if (HasOption(opBevelInner)) bevelInner_->PaintFilledBevel(c, r);
    int32_t y = r.Top;
    valueBox_ = TRect{};
    if (HasOption(opValue)) y = paintValueBox(r);
    triangles_ = {};
    placeBar(r, y);
    laidOut_ = true;
    markersLaidOut_ = MarkersShown();
    if (HasOption(opOverflow)) DrawOverflow(c, clBtnFace, clBtnFace);
    TRect bar = barFrame_;
    barSettings_->Bevel()->PaintFilledBevel(c, bar);
    barSettings_->BarRect = bar;
    stripImage_.SetSize(0, 0);
    if (MarkersShown()) GetBkUpImage(c, stripImage_, strip_);
    marksValid_ = false;
    ValueChange();
}

void TKxBarInstrument::setTriangle(size_t index, std::array<TPoint, 4> points) {
    std::copy(points.begin(), points.end(), triangles_.begin() + ptrdiff_t(4 * index));
}

void TKxBarInstrument::DrawOverflow(TCanvas& canvas, TColor c1, TColor c2) {
    if (!laidOut_) return;  // no triangles before the first paint
    canvas.Pen().SetMode(pmCopy);
    canvas.Pen().SetStyle(psSolid);
    canvas.Pen().SetWidth(1);
    canvas.Pen().SetColor(clBtnShadow);
    canvas.Brush().SetStyle(bsSolid);
    canvas.Brush().SetColor(c1);
    canvas.Polygon(std::span<const TPoint>(triangles_.data(), 4));
    canvas.Pen().SetColor(clBtnShadow);
    canvas.Brush().SetColor(c2);
    canvas.Polygon(std::span<const TPoint>(triangles_.data() + 4, 4));
}

void TKxBarInstrument::drawMarkers() {
    if (stripImage_.Width() < 2) return;
    const TRect& bar = barSettings_->BarRect;
    const bool vertical = !(bar.Width() > bar.Height());
    const int32_t length = vertical ? bar.Height() : bar.Width();
    const TMinMax& mm = *MinMax();
    TMarkState now;
    now.a = alongToStrip(along(MinPPT(), length));
    now.b = alongToStrip(along(MaxPPT(), length));
    now.minColor = mm.MinVisible() ? MarkerColor(MinPPT(), mm.MinColor()) : clNone;
    now.maxColor = mm.MaxVisible() ? MarkerColor(MaxPPT(), mm.MaxColor()) : clNone;
    if (marksValid_ && now == lastMarks_) return;
    lastMarks_ = now;
    marksValid_ = true;
    work_.Assign(stripImage_);
    std::array<TPoint, 6> m{};
    markerShapes(now.a, now.b, m);
    TCanvas& w = work_.Canvas();
    w.Pen().SetMode(pmCopy);
    w.Pen().SetStyle(psSolid);
    w.Pen().SetWidth(1);
    w.Pen().SetColor(clBlack);
    w.Brush().SetStyle(bsSolid);
    if (now.minColor != clNone) {
        w.Brush().SetColor(now.minColor);
        w.Polygon(std::span<const TPoint>(m.data(), 3));
    }
    if (now.maxColor != clNone) {
        w.Brush().SetColor(now.maxColor);
        w.Polygon(std::span<const TPoint>(m.data() + 3, 3));
    }
    for (size_t i = 0; i < m.size(); ++i)
        markers_[i] = TPoint{WrapAdd(m[i].X, strip_.Left), WrapAdd(m[i].Y, strip_.Top)};
    Canvas().SetCopyMode(cmSrcCopy);
    Canvas().Draw(strip_.Left, strip_.Top, work_);
}

void TKxBarInstrument::drawValue() {
    const QString text = Designing() ? SignalSettings()->SampleValueText() : ValueText();
    KxDrawNumberBox(Canvas(), number_, valueBox_, bevelValue_->Color(), *fontValue_, text);
}

void TKxBarInstrument::ValueChange() {
    QPointer<TKxBarInstrument> alive(this);
    TKxAnalogGControl::ValueChange();
    if (!alive || !laidOut_ || UpdateCount() > 0) return;
    if (!Visible() && !Designing()) return;
    drawMarkers();
    KxPaintBarReading(*this, *barSettings_, Canvas());
    if (HasOption(opValue)) drawValue();
}

void TKxBarInstrument::OverflowChange(int32_t) {
    if (!HasOption(opOverflow)) return;
    if (!OverflowHigh() && !OverflowLow()) {
        DelControl(this);
        blinking_ = false;
        if (laidOut_ && (Visible() || Designing())) DrawOverflow(Canvas(), clBtnFace, clBtnFace);
    } else if (!Designing()) {
        AddControl(this, kOverflowBlinkCode);
        blinking_ = true;
    }
}

void TKxBarInstrument::WMFlash(TMessage& message) {
    if (!Visible() || !laidOut_ || !HasOption(opOverflow)) return;
    const TColor blink = message.LParam != 0 ? BlinkColor2() : BlinkColor1();
    if (blinkingTriangle() == 0)
        DrawOverflow(Canvas(), blink, clBtnFace);
    else
        DrawOverflow(Canvas(), clBtnFace, blink);
}

// --- TKxHBar ---------------------------------------------------------------------------

TKxHBar::TKxHBar(QWidget* parent) : TKxBarInstrument(parent) {
    BevelInner()->SetSpacing(0);
    BarSettings()->SetminWidth(100);
    BarSettings()->SetminHeight(9);
    SetBounds(x(), y(), 115, 74);
}

int32_t TKxHBar::barAcross() const {
    return BarSettings()->minHeight();
}

void TKxHBar::requiredSize(int32_t& width, int32_t& height) const {
    const TTexts& t = Texts();
    const TBarSettings& bs = *BarSettings();
    const int64_t outer = 2 * int64_t(BevelOuter()->TotalWidth());
    const int64_t inner = 2 * int64_t(BevelInner()->TotalWidth());
    const int64_t vb = 2 * int64_t(BevelValue()->TotalWidth());
    int64_t h = barThickness(), w = bs.minWidth();
    if (HasOption(opBevelOuter)) {
        w += outer;
        h += outer;
    }
    if (HasOption(opOverflow))
        w += int64_t(bs.minHeight()) + 6;
    else if (MarkersShown())
        w += MarkerRoom();
    const int64_t x = (HasOption(opBevelOuter) ? outer : 0) + (HasOption(opBevelInner) ? inner : 0);
    if (HasOption(opName1)) {
        h += t.names.Name1H;
        w = std::max(w, x + t.names.Name1W);
    }
    if (HasOption(opName2)) {
        h += t.names.Name2H;
        w = std::max(w, x + t.names.Name2W);
    }
    if (HasOption(opBevelInner)) {
        h += inner;
        w = std::max(w, x + inner);
    }
    if (HasOption(opValue)) {
        h += int64_t(t.valueH) + vb + BevelInner()->TotalWidth() - t.valueH / 6;
        w = std::max(w, x + t.valueW + t.unitW + vb + t.valueH / 3);
    }
    if (MarkersShown()) h += MarkerRoom();
    width = Saturate(w);
    height = Saturate(h);
}

void TKxHBar::placeBar(const TRect& r, int32_t y) {
    const int32_t bh = barThickness();
    const int32_t m = MarkerRoom();
    const int64_t room = int64_t(r.Bottom) - y - bh;
    const int32_t top = Saturate(y + (MarkersShown() ? (room + m) / 2 : room / 2));
    int32_t indent = 0;
    if (HasOption(opOverflow))
        indent = Div(Saturate(int64_t(bh) + 5), 2);
    else if (MarkersShown())
        indent = Div(m, 2);
    barFrame_ = TRect{Saturate(int64_t(r.Left) + indent), top, Saturate(int64_t(r.Right) - indent),
                      Saturate(int64_t(top) + bh)};
    const int64_t s = int64_t(bh) - 1;
    const int64_t x0 = int64_t(barFrame_.Left) - 3, x1 = int64_t(barFrame_.Right) + 2;
    setTriangle(0, {KxSaturatedPoint(x0, top), KxSaturatedPoint(x0, top + s),
                    KxSaturatedPoint(x0 - s / 2, top + s / 2), KxSaturatedPoint(x0, top)});
    setTriangle(1, {KxSaturatedPoint(x1, top), KxSaturatedPoint(x1, top + s),
                    KxSaturatedPoint(x1 + s / 2, top + s / 2), KxSaturatedPoint(x1, top)});
    strip_ = TRect{Saturate(int64_t(barFrame_.Left) - (m / 2 + 1)), Saturate(int64_t(top) - m),
                   Saturate(int64_t(barFrame_.Right) + m / 2 + 1), top};
}

void TKxHBar::markerShapes(int32_t a, int32_t b, std::array<TPoint, 6>& mk) const {
    const int64_t m = MarkerRoom();
    mk = {KxSaturatedPoint(a, 0), KxSaturatedPoint(a, m),         KxSaturatedPoint(a - m / 2, 0),
          KxSaturatedPoint(b, 0), KxSaturatedPoint(b + m / 2, 0), KxSaturatedPoint(b, m)};
}

int32_t TKxHBar::alongToStrip(int32_t along) const {
    return WrapAdd(WrapSub(BarSettings()->BarRect.Left, MarkerStrip().Left), along);
}

int32_t TKxHBar::blinkingTriangle() const {
    return PPT() < 1000 ? 0 : 1;
}

// --- TKxVBar ---------------------------------------------------------------------------

TKxVBar::TKxVBar(QWidget* parent) : TKxBarInstrument(parent) {
    BevelInner()->SetSpacing(5);
    BarSettings()->SetminWidth(9);
    BarSettings()->SetminHeight(100);
    SetBounds(x(), y(), 67, 165);
}

int32_t TKxVBar::barAcross() const {
    return BarSettings()->minWidth();
}

void TKxVBar::requiredSize(int32_t& width, int32_t& height) const {
    const TTexts& t = Texts();
    const TBarSettings& bs = *BarSettings();
    const int64_t outer = 2 * int64_t(BevelOuter()->TotalWidth());
    const int64_t inner = 2 * int64_t(BevelInner()->TotalWidth());
    const int64_t vb = 2 * int64_t(BevelValue()->TotalWidth());
    const int64_t bw = barThickness();
    const int64_t room = MarkersShown() ? MarkerRoom() : 0;
    int64_t w = bw, h = bs.minHeight();
    if (HasOption(opBevelOuter)) {
        w += outer;
        h += outer;
    }
    if (HasOption(opOverflow))
        h += int64_t(bs.minWidth()) + 6;
    else if (MarkersShown())
        h += MarkerRoom();
    const int64_t x = (HasOption(opBevelOuter) ? outer : 0) + (HasOption(opBevelInner) ? inner : 0);
    if (HasOption(opName1)) {
        h += t.names.Name1H;
        w = std::max(w, x + t.names.Name1W);
    }
    if (HasOption(opName2)) {
        h += t.names.Name2H;
        w = std::max(w, x + t.names.Name2W);
    }
    if (HasOption(opBevelInner)) h += inner;
    if (HasOption(opValue)) {
        h += int64_t(t.valueH) + vb + BevelInner()->TotalWidth() - t.valueH / 6;
        w = std::max(w, x + t.valueW + t.unitW + vb + t.valueH / 3);
    }
    w = std::max(w, x + bw + room);
    width = Saturate(w);
    height = Saturate(h);
}

void TKxVBar::placeBar(const TRect& r, int32_t y) {
    const int32_t bw = barThickness();
    const int32_t m = MarkerRoom();
    const int32_t left = MarkersShown() ? Div(Saturate(int64_t(width()) - bw - m), 2) + 1
                                        : Div(Saturate(int64_t(width()) - bw), 2);
    int32_t indent = 0;
    if (HasOption(opOverflow))
        indent = int64_t(bw) + 1 < 1 ? 0 : Div(Saturate(int64_t(bw) + 5), 2);
    else if (MarkersShown())
        indent = Div(m, 2);
    const int32_t top = Saturate(int64_t(y) + indent);
    const int32_t bottom = Saturate(int64_t(r.Bottom) - indent);
    barFrame_ = TRect{left, top, Saturate(int64_t(left) + bw), bottom};
    const int64_t s = int64_t(bw) - 1;
    const int64_t y0 = int64_t(top) - 3, y1 = int64_t(bottom) + 2;
    setTriangle(0, {KxSaturatedPoint(left, y0), KxSaturatedPoint(left + s, y0),
                    KxSaturatedPoint(left + s / 2, y0 - s / 2), KxSaturatedPoint(left, y0)});
    setTriangle(1, {KxSaturatedPoint(left, y1), KxSaturatedPoint(left + s, y1),
                    KxSaturatedPoint(left + s / 2, y1 + s / 2), KxSaturatedPoint(left, y1)});
    strip_ = TRect{barFrame_.Right, Saturate(int64_t(top) - (m / 2 + 1)),
                   Saturate(int64_t(barFrame_.Right) + m), Saturate(int64_t(bottom) + m / 2 + 1)};
}

void TKxVBar::markerShapes(int32_t a, int32_t b, std::array<TPoint, 6>& mk) const {
    const int64_t m = MarkerRoom();
    mk = {KxSaturatedPoint(m, a), KxSaturatedPoint(0, a),         KxSaturatedPoint(m, a + m / 2),
          KxSaturatedPoint(m, b), KxSaturatedPoint(m, b - m / 2), KxSaturatedPoint(0, b)};
}

int32_t TKxVBar::alongToStrip(int32_t along) const {
    return WrapSub(WrapSub(BarSettings()->BarRect.Bottom, MarkerStrip().Top), along);
}

int32_t TKxVBar::blinkingTriangle() const {
    return PPT() < 1000 ? 1 : 0;
}

}  // namespace kx
