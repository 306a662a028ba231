#include "kx/indicators/linearmeter.h"

#include <QPointer>
#include <algorithm>

#include "kx/blink/flashtimer.h"
#include "kx/drawing/geometry.h"
#include "kx/drawing/shapes.h"
#include "kx/drawing/text.h"
#include "kx/framework/areacomposer.h"
#include "kx/framework/valuebox.h"
#include "kx/host/numeric.h"

namespace kx {

namespace {

constexpr int64_t kPointerBlinkCode = 4;

}  // namespace

// --- TKxLinearMeter ----------------------------------------------------------------------

TKxLinearMeter::TKxLinearMeter(QWidget* parent)
    : TKxAnalogGControl(parent),
      bevelInner_(new TKxSBevel(this)),
      bevelOuter_(new TKxSBevel(this)),
      scaleSettings_(new TScaleSettings(this)) {
    BeginUpdate();
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    KxSetDefaultBevels(*bevelInner_, *bevelOuter_);
}

TKxLinearMeter::~TKxLinearMeter() {
    DelControl(this);
}

void TKxLinearMeter::hookSettings() {
    const TNotifyEvent handler = [this](QObject* sender) { ParamChange(sender); };
    bevelInner_->SetOnChange(handler);
    bevelOuter_->SetOnChange(handler);
    scaleSettings_->SetOnChange(handler);
    hookOwn(handler);
}

void TKxLinearMeter::Loaded() {
    hookSettings();
    TKxAnalogGControl::Loaded();
    EndUpdate();
}

void TKxLinearMeter::requestRepaint() {
    if (UpdateCount() == 0) Invalidate();
}

void TKxLinearMeter::SetKxAutoSize(bool v) {
    autoSize_ = v;
    setSizePolicy(v ? QSizePolicy::Fixed : QSizePolicy::Preferred,
                  v ? QSizePolicy::Fixed : QSizePolicy::Preferred);
    requestRepaint();
}

void TKxLinearMeter::SetBevelInner(const TKxSBevel* v) {
    if (v && v != bevelInner_) bevelInner_->Assign(v);
}
void TKxLinearMeter::SetBevelOuter(const TKxSBevel* v) {
    if (v && v != bevelOuter_) bevelOuter_->Assign(v);
}
void TKxLinearMeter::SetScaleSettings(const TScaleSettings* v) {
    if (v && v != scaleSettings_) scaleSettings_->Assign(v);
}

void TKxLinearMeter::SetOptions(uint16_t v) {
    options_ = v;
    // Clearing the option that made the pointer blink stops the blinking at once.
    if (blinking_) PointerFlash();
    requestRepaint();
}

void TKxLinearMeter::ParamChange(QObject* sender) {
    TKxAnalogGControl::ParamChange(sender);
    requestRepaint();
}

void TKxLinearMeter::LogScaleChanged() {
    scaleSettings_->LogScale = LogScale();
    TKxAnalogGControl::LogScaleChanged();  // a settings pass: ParamChange repaints
}

int32_t TKxLinearMeter::BandHeight() const {
    return std::max(1, WrapAdd(scaleSettings_->SubStepLength, SectorSettings()->WidthOffset()));
}

void TKxLinearMeter::setArea(const TRect& area, bool tooSmall) {
    area_ = area;
    tooSmall_ = tooSmall;
}

bool TKxLinearMeter::shown() const {
    return Visible() || Designing();
}

void TKxLinearMeter::Paint() {
    if (UpdateCount() > 0) return;
    CalcSize();
    lastDrawn_ = -1;
    composer_.Invalidate();
    TRect r = ClientRect();
    TCanvas& c = Canvas();
    int32_t t = 0;
    if (has(rBevelOuter)) {
        bevelOuter_->PaintFilledBevel(c, r);
        t = Div(bevelOuter_->Spacing(), 2);
    }
    PaintNames(c, r, t, has(rName1), has(rName2), names_);
    paintInstrument(r);
    background_.SetSize(0, 0);
    if (tooSmall_) return;
    GetBkUpImage(c, background_, area_);
    PointerFlash();  // a meter that was too small may have missed its overflow
    ValueChange();
}

void TKxLinearMeter::DrawPointer(TCanvas& canvas) {
    if (tooSmall_ || background_.Width() < 2) return;
    std::array<TPoint, 3> p{};
    std::array<TPoint, 6> m{};
    const int32_t minPos = std::clamp(MinPPT(), 0, 1000), maxPos = std::clamp(MaxPPT(), 0, 1000);
    lastDrawn_ = shapes(PointerPosition(), minPos, maxPos, p, m);
    const TPoint at{area_.Left, area_.Top};
    // Only an overflow blink changes the pointer's colour.
    composer_.Compose(canvas, *this, background_, at, p, m, minPos, maxPos,
                      blinking_ && has(rOverflow) ? blinkColor_ : scaleSettings_->PointerColor());
    for (size_t i = 0; i < 3; ++i)
        pointer_[i] = KxOffsetPoint(p[i], at.X, at.Y);
    for (size_t i = 0; i < 6; ++i)
        markers_[i] = KxOffsetPoint(m[i], at.X, at.Y);
}

void TKxLinearMeter::ValueChange() {
    ++drawing_;
    // An event handler may delete the meter; then there is nothing left to draw.
    QPointer<TKxLinearMeter> alive(this);
    TKxAnalogGControl::ValueChange();
    if (!alive) return;
    if (!tooSmall_ && background_.Width() >= 2 && shown() && UpdateCount() == 0) {
        drawReadout();
        DrawPointer(Canvas());
    }
    --drawing_;
}

void TKxLinearMeter::OverflowChange(int32_t) {
    PointerFlash();
}

void TKxLinearMeter::LimitChange() {
    PointerFlash();
}

void TKxLinearMeter::PointerFlash() {
    if (tooSmall_) return;
    if (PointerAlarm(PointerPosition(), has(rOverflow), has(rLimit))) {
        AddControl(this, kPointerBlinkCode);
        blinking_ = true;
        return;
    }
    const bool was = blinking_;
    blinking_ = false;
    DelControl(this);
    lastDrawn_ = -1;
    // The pointer takes its own colour at once.
    if (was && Visible() && drawing_ == 0) DrawPointer(Canvas());
}

void TKxLinearMeter::WMFlash(TMessage& message) {
    if (tooSmall_ || !has(rOverflow) || !Visible() || drawing_ > 0) return;
    if (background_.Width() < 2) return;
    blinkColor_ = message.LParam != 0 ? BlinkColor2() : BlinkColor1();
    TCanvas& c = Canvas();
    c.Pen().SetMode(pmCopy);
    c.Pen().SetStyle(psSolid);
    c.Pen().SetWidth(1);
    c.Pen().SetColor(clBlack);
    c.Brush().SetStyle(bsSolid);
    c.Brush().SetColor(blinkColor_);
    c.Polygon(std::span<const TPoint>(pointer_.data(), 3));
}

// --- TKxHMeter -----------------------------------------------------------------------------

TKxHMeter::TKxHMeter(QWidget* parent) : TKxLinearMeter(parent), fontUnit_(new TFont(this)) {
    fontUnit_->SetName(QStringLiteral("System"));
    fontUnit_->SetSize(10);
    fontUnit_->SetColor(clBlack);
    SetOptions(kAllHMeterOptions);
    SetBounds(x(), y(), 263, 118);
}

void TKxHMeter::hookOwn(const TNotifyEvent& handler) {
    fontUnit_->SetOnChange(handler);
}

void TKxHMeter::SetFontUnit(const TFont* v) {
    if (v && v != fontUnit_) fontUnit_->Assign(*v);
    requestRepaint();
}

bool TKxHMeter::has(TRole role) const {
    static constexpr int kBits[] = {opBevelInner, opBevelOuter, opUnit,   opName1, opName2,
                                    opOverflow,   opLimit,      opSector, -1};
    const int bit = kBits[role];
    return bit >= 0 && (Options() & (1u << bit));
}

void TKxHMeter::CalcSize() {
    TCanvas& c = Canvas();
    const TSignalSettings& sig = *SignalSettings();
    setNames(MeasureNames(c));
    c.SetFont(*fontUnit_);
    unitW_ = c.TextWidth(sig.ValueUnit());
    unitH_ = c.TextHeight(sig.ValueUnit());
    TScaleSettings& s = *ScaleSettings();
    s.CalcHSize(c, sig.ValueFrom(), sig.ValueTo());
    if (!AutoSize()) return;
    const int64_t outer = has(rBevelOuter) ? 2 * int64_t(BevelOuter()->TotalWidth()) : 0;
    const int64_t inner = has(rBevelInner) ? 2 * int64_t(BevelInner()->TotalWidth()) : 0;
    int64_t h = outer + s.ScaleThickness + s.StepLength / 2 + s.MaxTextHeight / 2;
    int64_t w = outer;
    if (has(rName1)) {
        h += names().Name1H;
        w = std::max(w, outer + names().Name1W);
    }
    if (has(rName2)) {
        h += names().Name2H;
        w = std::max(w, outer + names().Name2W);
    }
    if (has(rBevelInner)) {
        h += inner;
        w = std::max(w, outer + inner);
    }
    w = std::max(w, outer + inner + s.ScaleMinLength);
    if (has(rUnit)) h += unitH_ / 2;
    SetAutoSize(w, h);
}

void TKxHMeter::DrawHSector(TCanvas& canvas, const TRect& s) {
    KxDrawSectorBands(canvas, s, *SectorSettings(), false);
}

void TKxHMeter::paintInstrument(TRect& r) {
    TCanvas& c = Canvas();
    if (has(rBevelInner)) BevelInner()->PaintFilledBevel(c, r);
    setArea(r, r.Width() < 2 || r.Height() < 2);
    if (TooSmall()) return;
    TScaleSettings& s = *ScaleSettings();
    const int32_t T = s.StepLength, half = Div(T, 2);
    const int32_t m = Div(std::max(s.MaxTextWidth, T), 2);
    const int32_t sl = WrapAdd(r.Left, m), sr = WrapSub(WrapSub(r.Right, m), 1);
    const QString& unit = SignalSettings()->ValueUnit();
    auto unitAt = [&](int32_t y) {
        c.SetFont(*fontUnit_);
        c.Brush().SetStyle(bsClear);
        KxTextOut(c, Div(width(), 2), WrapSub(y, Div(unitH_, 5)), unit, toTopCenter);
    };
    if (!s.PosLeftTop()) {
        int32_t y = WrapAdd(r.Top, half);
        if (has(rUnit)) {
            y = r.Top;
            unitAt(y);
            y = Saturate(int64_t(y) + Round(unitH_ / 1.8) + half + 1);
        }
        scaleRect_ = TRect{sl, y, sr, WrapAdd(r.Top, s.ScaleThickness)};
        strip_ = TRect{WrapSub(sl, half), WrapAdd(WrapSub(y, half), 1), WrapAdd(sr, half), 0};
        strip_.Bottom = WrapAdd(strip_.Top, T);
        if (has(rSector)) DrawHSector(c, TRect{sl, y, sr, WrapAdd(y, BandHeight())});
        s.HorizScala(c, scaleRect_);
        return;
    }
    const int32_t top = WrapAdd(r.Top, half), bottom = WrapAdd(top, s.ScaleThickness);
    scaleRect_ = TRect{sl, top, sr, bottom};
    strip_ = TRect{WrapSub(sl, half), WrapSub(bottom, half), WrapAdd(sr, half), 0};
    strip_.Bottom = WrapAdd(strip_.Top, WrapAdd(T, 1));
    if (has(rSector))
        DrawHSector(c,
                    TRect{sl, WrapAdd(WrapSub(bottom, BandHeight()), 2), sr, WrapAdd(bottom, 1)});
    s.HorizScala(c, scaleRect_);
    if (has(rUnit)) unitAt(strip_.Bottom);
}

int32_t TKxHMeter::shapes(int32_t pos, int32_t minPos, int32_t maxPos, std::array<TPoint, 3>& p,
                          std::array<TPoint, 6>& m) const {
    const TScaleSettings& s = *ScaleSettings();
    const TRect a = PointerArea();
    const int32_t T = s.StepLength, k = Div(T, 2);
    const int32_t x0 = WrapSub(s.ScaleStart, a.Left);
    const float f = float(int64_t(WrapSub(s.ScaleEnd, a.Left)) - x0) / 1000.0f;
    auto at = [&](int32_t ppt) { return WrapAdd(x0, Round(double(f) * ppt)); };
    const int32_t xp = at(pos), xmin = at(minPos), xmax = at(maxPos);
    if (!s.PosLeftTop()) {
        const int32_t py = WrapSub(strip_.Top, a.Top);
        p = {TPoint{xp - k, py}, TPoint{xp + k, py}, TPoint{xp, py + T}};
        const int32_t my = WrapSub(strip_.Bottom, a.Top) + k + 3;
        m = {TPoint{xmin, my}, TPoint{xmin - k, my}, TPoint{xmin, my - T},
             TPoint{xmax, my}, TPoint{xmax + k, my}, TPoint{xmax, my - T}};
    } else {
        const int32_t py = WrapSub(strip_.Bottom, a.Top) - 2;
        p = {TPoint{xp - k, py}, TPoint{xp + k, py}, TPoint{xp, py - T}};
        const int32_t my = WrapSub(strip_.Top, a.Top) - k - 3;
        m = {TPoint{xmin, my}, TPoint{xmin - k, my}, TPoint{xmin, my + T},
             TPoint{xmax, my}, TPoint{xmax + k, my}, TPoint{xmax, my + T}};
    }
    return xp;
}

// --- TKxVMeter -----------------------------------------------------------------------------

TKxVMeter::TKxVMeter(QWidget* parent)
    : TKxLinearMeter(parent), fontValue_(new TFont(this)), bevelValue_(new TKxSBevel(this)) {
    fontValue_->SetName(QStringLiteral("System"));
    fontValue_->SetSize(10);
    fontValue_->SetColor(clLime);
    bevelValue_->SetStyle(bsLowered);
    bevelValue_->SetWidth(2);
    bevelValue_->SetColor(clBlack);
    bevelValue_->SetSpacing(0);
    SetOptions(kAllVMeterOptions);
    SetBounds(x(), y(), 98, 273);
}

void TKxVMeter::hookOwn(const TNotifyEvent& handler) {
    fontValue_->SetOnChange(handler);
    bevelValue_->SetOnChange(handler);
}

void TKxVMeter::SetFontValue(const TFont* v) {
    if (v && v != fontValue_) fontValue_->Assign(*v);
    requestRepaint();
}

void TKxVMeter::SetBevelValue(const TKxSBevel* v) {
    if (v && v != bevelValue_) bevelValue_->Assign(v);
}

bool TKxVMeter::has(TRole role) const {
    static constexpr int kBits[] = {opBevelInner, opBevelOuter, opUnit,   opName1, opName2,
                                    opOverflow,   opLimit,      opSector, opValue};
    return Options() & (1u << kBits[role]);
}

void TKxVMeter::CalcSize() {
    TCanvas& c = Canvas();
    const TSignalSettings& sig = *SignalSettings();
    setNames(MeasureNames(c));
    c.SetFont(*fontValue_);
    const QString sample = sig.SampleValueText();
    valueW_ = c.TextWidth(sample);
    valueH_ = c.TextHeight(sample);
    unitW_ = has(rUnit) ? c.TextWidth(sig.ValueUnit()) : 0;
    TScaleSettings& s = *ScaleSettings();
    s.CalcSize(c, sig.ValueFrom(), sig.ValueTo());
    if (!AutoSize()) return;
    const int64_t outer = has(rBevelOuter) ? 2 * int64_t(BevelOuter()->TotalWidth()) : 0;
    const int64_t inner = has(rBevelInner) ? 2 * int64_t(BevelInner()->TotalWidth()) : 0;
    const int64_t T = s.StepLength;
    int64_t w = outer + inner + s.ScaleThickness + T / 2;
    int64_t h = outer + inner + s.ScaleMinLength + T + 1;
    if (has(rName1)) {
        h += names().Name1H;
        w = std::max(w, outer + names().Name1W);
    }
    if (has(rName2)) {
        h += names().Name2H;
        w = std::max(w, outer + names().Name2W);
    }
    if (has(rValue)) {
        const int64_t vb = 2 * int64_t(bevelValue_->TotalWidth()), e = valueH_ / 3;
        h += valueH_ + vb + BevelOuter()->Spacing();
        w = std::max(w, outer + valueW_ + unitW_ + vb + 3 * e);
    }
    SetAutoSize(w, h);
}

void TKxVMeter::DrawVSector(TCanvas& canvas, const TRect& s) {
    if (!TooSmall()) KxDrawSectorBands(canvas, s, *SectorSettings(), true);
}

void TKxVMeter::paintInstrument(TRect& r) {
    TCanvas& c = Canvas();
    const TSignalSettings& sig = *SignalSettings();
    valueBox_ = TRect{};
    if (has(rValue)) {
        const TKxValueBox box = KxPaintValueBox(c, r, *bevelValue_, *fontValue_, Font()->Color(),
                                                has(rUnit) ? sig.ValueUnit() : QString(), valueW_,
                                                unitW_, valueH_, Div(valueH_, 3));
        valueBox_ = box.Number;
        r.Top = Saturate(int64_t(box.Frame.Bottom) + BevelOuter()->Spacing());
    }
    if (has(rBevelInner)) BevelInner()->PaintFilledBevel(c, r);
    const TRect area = r;
    TScaleSettings& s = *ScaleSettings();
    const int32_t T = s.StepLength, half = Div(T, 2);
    r.Top = WrapAdd(r.Top, half);
    r.Bottom = WrapSub(r.Bottom, WrapAdd(half, 1));
    setArea(area, r.Width() < 2 || r.Height() < 2);
    if (TooSmall()) return;
    const int32_t xc = Div(Saturate(int64_t(width()) - s.ScaleThickness - half), 2);
    if (!s.PosLeftTop()) {
        scaleRect_ =
            TRect{WrapAdd(xc, half), r.Top, WrapAdd(WrapAdd(xc, half), s.ScaleThickness), r.Bottom};
        strip_ = TRect{xc, WrapSub(r.Top, half), WrapAdd(xc, T), WrapAdd(r.Bottom, half)};
        if (has(rSector))
            DrawVSector(
                c, TRect{scaleRect_.Left, r.Top, WrapAdd(scaleRect_.Left, BandHeight()), r.Bottom});
    } else {
        scaleRect_ = TRect{xc, r.Top, WrapAdd(xc, s.ScaleThickness), r.Bottom};
        const int32_t left = WrapSub(scaleRect_.Right, half);
        strip_ = TRect{left, WrapSub(r.Top, half), WrapAdd(left, T),
                       WrapAdd(WrapAdd(r.Bottom, half), 1)};
        if (has(rSector))
            DrawVSector(c, TRect{WrapAdd(WrapSub(scaleRect_.Right, BandHeight()), 1), r.Top,
                                 scaleRect_.Right, r.Bottom});
    }
    s.VertiScala(c, scaleRect_);
}

int32_t TKxVMeter::shapes(int32_t pos, int32_t minPos, int32_t maxPos, std::array<TPoint, 3>& p,
                          std::array<TPoint, 6>& m) const {
    const TScaleSettings& s = *ScaleSettings();
    const TRect a = PointerArea();
    const int32_t T = s.StepLength, k = Div(T, 2);
    const int32_t y0 = WrapSub(s.ScaleStart, a.Top);
    const float f = float(int64_t(y0) - WrapSub(s.ScaleEnd, a.Top)) / 1000.0f;
    auto at = [&](int32_t ppt) { return WrapSub(y0, Round(double(f) * ppt)); };
    const int32_t yp = at(pos), ymin = at(minPos), ymax = at(maxPos);
    if (!s.PosLeftTop()) {
        const int32_t px = WrapSub(strip_.Left, a.Left);
        p = {TPoint{px, yp - k}, TPoint{px, yp + k}, TPoint{px + T, yp}};
        const int32_t mx = WrapSub(strip_.Right, a.Left) + k + 3;
        m = {TPoint{mx, ymin}, TPoint{mx, ymin + k}, TPoint{mx - T, ymin},
             TPoint{mx, ymax}, TPoint{mx, ymax - k}, TPoint{mx - T, ymax}};
    } else {
        const int32_t px = WrapSub(strip_.Right, a.Left) - 1;
        p = {TPoint{px, yp + k}, TPoint{px, yp - k}, TPoint{px - T, yp}};
        const int32_t mx = WrapSub(strip_.Left, a.Left) - k - 3;
        m = {TPoint{mx, ymin}, TPoint{mx, ymin + k}, TPoint{mx + T, ymin},
             TPoint{mx, ymax}, TPoint{mx, ymax - k}, TPoint{mx + T, ymax}};
    }
    return yp;
}

void TKxVMeter::drawReadout() {
    if (!has(rValue)) return;
    const QString text = Designing() ? SignalSettings()->SampleValueText() : ValueText();
    KxDrawNumberBox(Canvas(), number_, valueBox_, bevelValue_->Color(), *fontValue_, text);
}

}  // namespace kx
