#include "kx/indicators/thermometer.h"

#include <QPointer>
#include <algorithm>

#include "kx/blink/flashtimer.h"
#include "kx/drawing/colors.h"
#include "kx/drawing/geometry.h"
#include "kx/drawing/gradient.h"
#include "kx/drawing/shapes.h"
#include "kx/drawing/text.h"
#include "kx/framework/areacomposer.h"
#include "kx/host/numeric.h"

namespace kx {

namespace {

constexpr int64_t kColumnBlinkCode = 4;
constexpr TColor kGlassEdge = clGray;

}  // namespace

TKxThermometer::TKxThermometer(QWidget* parent)
    : TKxAnalogGControl(parent),
      bevelInner_(new TKxSBevel(this)),
      bevelOuter_(new TKxSBevel(this)),
      fontUnit_(new TFont(this)),
      scaleSettings_(new TScaleSettings(this)) {
    BeginUpdate();
    KxSetDefaultBevels(*bevelInner_, *bevelOuter_);
    fontUnit_->SetName(QStringLiteral("System"));
    fontUnit_->SetSize(10);
    fontUnit_->SetColor(clBlack);
    SetBounds(x(), y(), 130, 280);
}

TKxThermometer::~TKxThermometer() {
    DelControl(this);
}

void TKxThermometer::Loaded() {
    const TNotifyEvent handler = [this](QObject* sender) { ParamChange(sender); };
    bevelInner_->SetOnChange(handler);
    bevelOuter_->SetOnChange(handler);
    fontUnit_->SetOnChange(handler);
    scaleSettings_->SetOnChange(handler);
    TKxAnalogGControl::Loaded();
    EndUpdate();
}

void TKxThermometer::requestRepaint() {
    if (UpdateCount() == 0) Invalidate();
}

void TKxThermometer::SetBevelInner(const TKxSBevel* v) {
    if (v && v != bevelInner_) bevelInner_->Assign(v);
}
void TKxThermometer::SetBevelOuter(const TKxSBevel* v) {
    if (v && v != bevelOuter_) bevelOuter_->Assign(v);
}
void TKxThermometer::SetFontUnit(const TFont* v) {
    if (v && v != fontUnit_) fontUnit_->Assign(*v);
    requestRepaint();
}
void TKxThermometer::SetScaleSettings(const TScaleSettings* v) {
    if (v && v != scaleSettings_) scaleSettings_->Assign(v);
}

void TKxThermometer::SetLiquidColor(TColorArg v) {
    if (v == liquidColor_) return;
    liquidColor_ = v;
    requestRepaint();
}

void TKxThermometer::SetTubeColor(TColorArg v) {
    if (v == tubeColor_) return;
    tubeColor_ = v;
    requestRepaint();
}

void TKxThermometer::SetOptions(TThermometerOptions v) {
    options_ = v;
    // Clearing the option that made the column blink stops the blinking at once.
    if (blinking_) flash();
    requestRepaint();
}

void TKxThermometer::ParamChange(QObject* sender) {
    TKxAnalogGControl::ParamChange(sender);
    requestRepaint();
}

void TKxThermometer::LogScaleChanged() {
    scaleSettings_->LogScale = LogScale();
    TKxAnalogGControl::LogScaleChanged();  // a settings pass: ParamChange repaints
}

void TKxThermometer::CalcSize() {
    TCanvas& c = Canvas();
    const TSignalSettings& sig = *SignalSettings();
    names_ = MeasureNames(c);
    c.SetFont(*fontUnit_);
    const bool unit = HasOption(opUnit) && !sig.ValueUnit().isEmpty();
    unitW_ = unit ? c.TextWidth(sig.ValueUnit()) : 0;
    unitH_ = unit ? c.TextHeight(sig.ValueUnit()) : 0;
    scaleSettings_->CalcSize(c, sig.ValueFrom(), sig.ValueTo());
}

TColor TKxThermometer::CurrentLiquidColor() const {
    if (HasOption(opSectorColor)) {
        const TSectorSettings& s = *SectorSettings();
        if (InSector1()) return s.Sector1Color();
        if (InSector2()) return s.Sector2Color();
        if (InSector3()) return s.Sector3Color();
    }
    return liquidColor_;
}

int32_t TKxThermometer::LevelOf(int32_t ppt) const {
    const TScaleSettings& s = *scaleSettings_;
    const float f = float(int64_t(s.ScaleStart) - s.ScaleEnd) / 1000.0f;
    return Saturate(int64_t(s.ScaleStart) - Round(double(f) * ppt));
}

void TKxThermometer::paintBulb(TCanvas& canvas, const TRect& bulb, TColor liquid) {
    canvas.Pen().SetMode(pmCopy);
    canvas.Pen().SetStyle(psSolid);
    canvas.Pen().SetWidth(1);
    canvas.Pen().SetColor(kGlassEdge);
    canvas.Brush().SetStyle(bsSolid);
    canvas.Brush().SetColor(liquid);
    canvas.Ellipse(bulb);
    // Light from the upper left: lighter there, darker towards the lower right.
    TRect face = bulb;
    KxBorder(face, 1);
    if (face.Width() > 2)
        KxCircleGradFill(canvas, face, KxCalcColor(liquid, clWhite, 5, 3),
                         KxCalcColor(liquid, clBlack, 4, 1));
}

void TKxThermometer::paintLiquid(TCanvas& canvas, TPoint origin, TColor color, int32_t level,
                                 bool shaded) const {
    const int32_t dx = -origin.X, dy = -origin.Y;
    const TRect bore = KxOffsetRect(bore_, dx, dy);
    const int32_t top = std::clamp(WrapAdd(level, dy), bore.Top, bore.Bottom);
    canvas.Brush().SetStyle(bsSolid);
    canvas.Brush().SetColor(color);
    canvas.FillRect(TRect{bore.Left, top, bore.Right, bore.Bottom});
    if (shaded && bore.Width() >= 4) {
        canvas.Brush().SetColor(KxCalcColor(color, clWhite, 2, 1));
        canvas.FillRect(TRect{bore.Left + 1, top, bore.Left + 2, bore.Bottom});
    }
}

void TKxThermometer::Paint() {
    if (UpdateCount() > 0) return;
    CalcSize();
    level_ = -1;
    composer_.Invalidate();
    background_.SetSize(0, 0);
    TRect r = ClientRect();
    TCanvas& c = Canvas();
    int32_t t = 0;
    if (HasOption(opBevelOuter)) {
        bevelOuter_->PaintFilledBevel(c, r);
        t = Div(bevelOuter_->Spacing(), 2);
    }
    PaintNames(c, r, t, HasOption(opName1), HasOption(opName2), names_);
    if (HasOption(opBevelInner)) bevelInner_->PaintFilledBevel(c, r);
    if (unitH_ > 0) {
        c.SetFont(*fontUnit_);
        c.Brush().SetStyle(bsClear);
        // A unit wider than the area is shortened rather than drawn over the bevels.
        const QString unit = KxElideLines(c, SignalSettings()->ValueUnit(), QChar(0), r.Width());
        KxTextOut(c, Div(width(), 2), r.Top, unit, toTopCenter);
        r.Top = WrapAdd(r.Top, unitH_);
    }
    area_ = r;

    TScaleSettings& s = *scaleSettings_;
    const int64_t T = s.StepLength, H = s.MaxTextHeight;
    const int64_t tw = std::max<int64_t>(4, Round(double(H) * 0.6));
    const int64_t bd = 2 * tw, capBottom = int64_t(r.Top) + tw / 2;
    const int64_t bulbTop = int64_t(r.Bottom) - bd;
    const int64_t room = bulbTop - capBottom;
    const int64_t blockW = T + 2 + tw + 2 + s.ScaleThickness;
    const int64_t len = room * 1000 / 1060, free = room - len;
    const int64_t top = std::max(capBottom + free / 2, int64_t(r.Top) + H / 2);
    const int64_t bottom = bulbTop - (free - free / 2);
    tooSmall_ = r.Width() < blockW || room < 20 || bottom - top < 20;
    if (tooSmall_) {
        flash();
        return;
    }

    const int64_t x0 = r.Left + (r.Width() - blockW) / 2;
    const bool left = s.PosLeftTop();
    const int64_t tl = left ? x0 + s.ScaleThickness + 2 : x0 + T + 2;
    const int64_t tubeBottom = bulbTop + tw / 2;
    tube_ = TRect{Saturate(tl), r.Top, Saturate(tl + tw), Saturate(tubeBottom)};
    const int64_t wall = std::max<int64_t>(1, tw / 5);
    bore_ = TRect{Saturate(tl + wall), Saturate(capBottom), Saturate(tl + tw - wall),
                  Saturate(tubeBottom)};
    bulb_ = TRect{Saturate(tl - tw / 2), Saturate(bulbTop), Saturate(tl - tw / 2 + bd), r.Bottom};
    scaleRect_ =
        left ? TRect{Saturate(x0), Saturate(top), Saturate(x0 + s.ScaleThickness), Saturate(bottom)}
             : TRect{Saturate(tl + tw + 2), Saturate(top), Saturate(tl + tw + 2 + s.ScaleThickness),
                     Saturate(bottom)};
    // The strip holds everything a reading touches: marker room, tube and bulb.
    const int64_t markLeft = left ? tl + tw : x0, markRight = left ? tl + tw + T + 2 : tl;
    strip_ = TRect{Saturate(std::min<int64_t>(markLeft, bulb_.Left)), r.Top,
                   Saturate(std::max<int64_t>(markRight, bulb_.Right)), r.Bottom};

    // The glass: outlined tube, rounded cap, its inside shaded from the edges.
    c.Pen().SetMode(pmCopy);
    c.Pen().SetStyle(psSolid);
    c.Pen().SetWidth(1);
    c.Pen().SetColor(kGlassEdge);
    c.Brush().SetStyle(bsSolid);
    c.Brush().SetColor(tubeColor_);
    c.Ellipse(tube_.Left, tube_.Top, tube_.Right, Saturate(int64_t(tube_.Top) + tw));
    c.Rectangle(tube_.Left, Saturate(capBottom), tube_.Right, tube_.Bottom);
    KxGradFill(
        c,
        TRect{WrapAdd(tube_.Left, 1), Saturate(capBottom), WrapSub(tube_.Right, 1), tube_.Bottom},
        KxCalcColor(tubeColor_, clGray, 3, 1), tubeColor_, gsVertical2);
    bulbColor_ = CurrentLiquidColor();
    paintBulb(c, bulb_, bulbColor_);
    s.VertiScala(c, scaleRect_);
    GetBkUpImage(c, background_, strip_);
    flash();  // a thermometer that was too small may have missed its overflow
    ValueChange();
}

void TKxThermometer::DrawColumn(TCanvas& canvas) {
    if (tooSmall_ || background_.Width() < 2 || background_.Height() < 2) return;
    const TScaleSettings& s = *scaleSettings_;
    const int32_t T = s.StepLength, k = Div(T, 2);
    const int32_t level = LevelOf(PointerPosition());
    const int32_t ymin = LevelOf(std::clamp(MinPPT(), 0, 1000));
    const int32_t ymax = LevelOf(std::clamp(MaxPPT(), 0, 1000));
    const int32_t dx = -strip_.Left, dy = -strip_.Top;
    std::array<TPoint, 6> m{};
    if (!s.PosLeftTop()) {
        const int32_t tx = tube_.Left - 2 + dx, bx = tx - T;
        m = {TPoint{bx, ymin + dy}, TPoint{bx, ymin + dy + k}, TPoint{tx, ymin + dy},
             TPoint{bx, ymax + dy}, TPoint{bx, ymax + dy - k}, TPoint{tx, ymax + dy}};
    } else {
        const int32_t tx = tube_.Right + 1 + dx, bx = tx + T;
        m = {TPoint{bx, ymin + dy}, TPoint{bx, ymin + dy + k}, TPoint{tx, ymin + dy},
             TPoint{bx, ymax + dy}, TPoint{bx, ymax + dy - k}, TPoint{tx, ymax + dy}};
    }
    const TColor liquid = CurrentLiquidColor();
    const TRect bore = KxOffsetRect(bore_, dx, dy);
    const int32_t ly = std::clamp(WrapAdd(level, dy), bore.Top, bore.Bottom);
    const std::array<TRect, 3> now{TRect{bore.Left, ly, bore.Right, ly},
                                   KxPointsBounds(m.data(), 3, kKxOutlineReach),
                                   KxPointsBounds(m.data() + 3, 3, kKxOutlineReach)};

    const TMinMax& mm = *MinMax();
    const std::array<TColor, 2> markColor{
        mm.MinVisible() ? MarkerColor(std::clamp(MinPPT(), 0, 1000), mm.MinColor()) : clNone,
        mm.MaxVisible() ? MarkerColor(std::clamp(MaxPPT(), 0, 1000), mm.MaxColor()) : clNone};
    if (liquid != bulbColor_) {
        // A new liquid colour fills the bulb anew; everything is recomposed.
        TCanvas& b = background_.Canvas();
        paintBulb(b, KxOffsetRect(bulb_, dx, dy), liquid);
        bulbColor_ = liquid;
        composer_.Invalidate();
    }
    if (composer_.Begin(*this, background_)) {
        // The column band: the rows between the old and the new level.
        const TRect& old = lastDirty_[0];
        composer_.Add(
            TRect{bore.Left, std::min(old.Top, ly) - 1, bore.Right, std::max(old.Top, ly) + 1});
        // Markers only when they moved (their colour follows their position).
        for (size_t i = 1; i < 3; ++i)
            if (!(now[i] == lastDirty_[i]) || markColor[i - 1] != lastMarkColor_[i - 1])
                composer_.Add(KxUnionRect(now[i], lastDirty_[i]));
    }
    lastDirty_ = now;
    lastMarkColor_ = markColor;
    level_ = level;

    TCanvas& w = composer_.Restore(background_);
    paintLiquid(w, TPoint{strip_.Left, strip_.Top}, blinking_ ? blinkColor_ : liquid, level,
                !blinking_);
    KxPaintMinMaxMarkers(w, m.data(), mm.MinVisible(), markColor[0], mm.MaxVisible(), markColor[1]);
    for (size_t i = 0; i < 6; ++i)
        markers_[i] = KxOffsetPoint(m[i], strip_.Left, strip_.Top);
    composer_.Put(canvas, TPoint{strip_.Left, strip_.Top});
}

void TKxThermometer::ValueChange() {
    ++drawing_;
    // An event handler may delete the thermometer; then there is nothing left to draw.
    QPointer<TKxThermometer> alive(this);
    TKxAnalogGControl::ValueChange();
    if (!alive) return;
    if (shown() && UpdateCount() == 0) DrawColumn(Canvas());
    --drawing_;
}

void TKxThermometer::OverflowChange(int32_t) {
    flash();
}

void TKxThermometer::LimitChange() {
    flash();
}

void TKxThermometer::flash() {
    if (!tooSmall_ && PointerAlarm(PointerPosition(), HasOption(opOverflow), HasOption(opLimit))) {
        AddControl(this, kColumnBlinkCode);
        // The whole column changes its look, not only the rows a reading moves.
        if (!blinking_) composer_.Invalidate();
        blinking_ = true;
        return;
    }
    const bool was = blinking_;
    blinking_ = false;
    DelControl(this);
    if (!was) return;
    // The column takes its own colour at once.
    composer_.Invalidate();
    if (Visible() && drawing_ == 0 && UpdateCount() == 0) DrawColumn(Canvas());
}

void TKxThermometer::WMFlash(TMessage& message) {
    if (!blinking_ || tooSmall_ || !Visible() || drawing_ > 0 || level_ < 0) return;
    if (background_.Width() < 2) return;
    blinkColor_ = message.LParam != 0 ? BlinkColor2() : BlinkColor1();
    paintLiquid(Canvas(), TPoint{}, blinkColor_, level_, false);
}

}  // namespace kx
