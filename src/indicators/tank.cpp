#include "kx/indicators/tank.h"

#include <QPointer>
#include <algorithm>
#include <cmath>
#include <numbers>

#include "kx/blink/flashtimer.h"
#include "kx/drawing/geometry.h"
#include "kx/drawing/shapes.h"
#include "kx/drawing/text.h"
#include "kx/framework/areacomposer.h"
#include "kx/host/formatfloat.h"
#include "kx/host/numeric.h"

namespace kx {

namespace {

constexpr int64_t kBlinkCode = 4;
constexpr int32_t kPad = 3;  // between the area's edges and the vessel or scale
constexpr int32_t kGap = 2;  // between the vessel, the marker column and the scale
constexpr int32_t kMinVesselWidth = 5;
constexpr int32_t kMinScaledWidth = 8;  // below it the scale gives its room to the vessel

// Each component moved by share (0..1) of the way towards target.
TColor blend(TColor c, uint8_t target, double share) {
    const TColor rgb = ColorToRGB(c);
    auto part = [&](int shift) {
        const double v = double((rgb >> shift) & 0xFF);
        return uint32_t(std::clamp(Round(v + (target - v) * share), 0, 255)) << shift;
    };
    return part(0) | part(8) | part(16);
}

}  // namespace

TKxTank::TKxTank(QWidget* parent)
    : TKxAnalogGControl(parent),
      bevelInner_(new TKxSBevel(this)),
      bevelOuter_(new TKxSBevel(this)),
      liquidColor_(RGB(30, 110, 220)),
      limitLowerColor_(RGB(255, 140, 0)),
      scaleSettings_(new TScaleSettings(this)),
      valInd_(new TKxValInd(this)) {
    BeginUpdate();
    // The linear meters' bevels: spacing 5 and width 2 are the bevels' own defaults.
    KxSetDefaultBevels(*bevelInner_, *bevelOuter_);
    // A narrow control: the scale engine's 14 points would crowd the vessel out.
    scaleSettings_->Font()->SetSize(10);
    SetBounds(x(), y(), 140, 240);
}

TKxTank::~TKxTank() {
    DelControl(this);
}

void TKxTank::hookSettings() {
    const TNotifyEvent handler = [this](QObject* sender) { ParamChange(sender); };
    bevelInner_->SetOnChange(handler);
    bevelOuter_->SetOnChange(handler);
    scaleSettings_->SetOnChange(handler);
    valInd_->SetOnChange(handler);
}

void TKxTank::Loaded() {
    hookSettings();
    TKxAnalogGControl::Loaded();
    EndUpdate();
}

void TKxTank::requestRepaint() {
    if (UpdateCount() == 0) Invalidate();
}

bool TKxTank::shown() const {
    return Visible() || Designing();
}

// --- properties ------------------------------------------------------------------------

void TKxTank::SetBevelInner(const TKxSBevel* v) {
    if (v && v != bevelInner_) bevelInner_->Assign(v);
}
void TKxTank::SetBevelOuter(const TKxSBevel* v) {
    if (v && v != bevelOuter_) bevelOuter_->Assign(v);
}
void TKxTank::SetScaleSettings(const TScaleSettings* v) {
    if (v && v != scaleSettings_) scaleSettings_->Assign(v);
}
void TKxTank::SetValInd(const TKxValInd* v) {
    if (v && v != valInd_) valInd_->Assign(v);
}

void TKxTank::SetLiquidColor(TColorArg v) {
    if (liquidColor_ == TColor(v)) return;
    liquidColor_ = v;
    requestRepaint();
}
void TKxTank::SetLimitLowerColor(TColorArg v) {
    if (limitLowerColor_ == TColor(v)) return;
    limitLowerColor_ = v;
    requestRepaint();
}
void TKxTank::SetLimitUpperColor(TColorArg v) {
    if (limitUpperColor_ == TColor(v)) return;
    limitUpperColor_ = v;
    requestRepaint();
}
void TKxTank::SetTankColor(TColorArg v) {
    if (tankColor_ == TColor(v)) return;
    tankColor_ = v;
    requestRepaint();
}
void TKxTank::SetTankShape(TTankShape v) {
    if (tankShape_ == v) return;
    tankShape_ = v;
    requestRepaint();
}
void TKxTank::SetValueTop(bool v) {
    if (valueTop_ == v) return;
    valueTop_ = v;
    requestRepaint();
}

void TKxTank::SetOptions(TTankOptions v) {
    options_ = TTankOptions(v & kAllTankOptions);
    if (blinking_) startOrStopBlinking();
    requestRepaint();
}

void TKxTank::ParamChange(QObject* sender) {
    TKxAnalogGControl::ParamChange(sender);
    requestRepaint();
}

void TKxTank::LogScaleChanged() {
    scaleSettings_->LogScale = LogScale();
    TKxAnalogGControl::LogScaleChanged();  // a settings pass: ParamChange repaints
}

// --- geometry --------------------------------------------------------------------------

TColor TKxTank::Shade(TColor base, int32_t x, int32_t width) {
    if (width <= 0) return ColorToRGB(base);
    const double t = (double(x) + 0.5) / double(width);
    // Dark towards both edges, as a lit cylinder; a highlight left of the centre.
    const double body = 0.45 + 0.55 * std::sin(std::numbers::pi * std::clamp(t, 0.0, 1.0));
    const double u = (t - 0.35) / 0.12;
    const double light = 0.55 * std::exp(-u * u);
    return blend(blend(base, 0, 1.0 - body), 255, light);
}

int32_t TKxTank::LevelRow(int32_t ppt) const {
    const float f = float(int64_t(levelBottom_) - levelTop_) / 1000.0f;
    const int64_t raw = int64_t(levelBottom_) - Round(double(f) * ppt);
    // Inside the outline: the first inner row (full) to the bottom outline row (empty).
    return Saturate(std::clamp<int64_t>(raw, int64_t(vessel_.Top) + 1,
                                        std::max<int64_t>(vessel_.Top + 1, vessel_.Bottom - 1)));
}

std::pair<int32_t, int32_t> TKxTank::Inside(int32_t y) const {
    const int64_t j = int64_t(y) - vessel_.Top;
    if (j < 0 || j >= int64_t(rows_.size())) return {0, 0};
    return {rows_[size_t(j)].In0, rows_[size_t(j)].In1};
}

void TKxTank::measure(TCanvas& c) {
    const TSignalSettings& sig = *SignalSettings();
    names_ = MeasureNames(c);
    c.SetFont(*Font());
    unitW_ = c.TextWidth(sig.ValueUnit());
    unitH_ = c.TextHeight(sig.ValueUnit());
    scaleSettings_->CalcSize(c, sig.ValueFrom(), sig.ValueTo());
}

void TKxTank::layoutVessel(const TRect& area) {
    rows_.clear();
    tooSmall_ = true;
    vessel_ = markerColumn_ = scaleRect_ = TRect{};
    levelTop_ = levelBottom_ = endHeight_ = 0;
    if (area.Width() < 2 || area.Height() < 2) return;
    const TScaleSettings& s = *scaleSettings_;
    leftTop_ = s.PosLeftTop();
    const int64_t T = std::max(2, s.StepLength);
    const int64_t markerW = T + 2;
    const int64_t inner = int64_t(area.Width()) - 2 * kPad;
    int64_t scaleW = HasOption(opScale) ? std::max(0, s.ScaleThickness) : 0;
    int64_t W = inner - kGap - markerW - (scaleW > 0 ? kGap + scaleW : 0);
    if (scaleW > 0 && W < kMinScaledWidth) {
        scaleW = 0;
        W = inner - kGap - markerW;
    }
    if (W < kMinVesselWidth) return;

    const int64_t Hv = int64_t(area.Height()) - 2 * kPad;
    int64_t e = 0, top = 0, bottom = 0;
    for (;;) {
        // The ends hold the stops at -30 and 1030 per mille (3 / 106 of the vessel each).
        const int64_t eMin = (Hv * 3 + 105) / 106;
        e = eMin;
        if (tankShape_ == tsCylinder) e = std::clamp(W / 5, eMin, std::max(eMin, Hv / 4));
        const int64_t half = scaleW > 0 ? s.MaxTextHeight / 2 + 1 : 0;
        const int64_t inset = std::max<int64_t>(kPad + e, half);
        top = int64_t(area.Top) + inset;
        bottom = int64_t(area.Bottom) - 1 - inset;
        // A scale shorter than its labels need would print them over each other.
        if (scaleW == 0 || bottom - top >= s.ScaleMinLength) break;
        scaleW = 0;
        W = inner - kGap - markerW;
    }
    if (bottom - top < 2) return;

    int64_t vx, mx, sx;
    if (!leftTop_) {
        vx = int64_t(area.Left) + kPad;
        mx = vx + W + kGap;
        sx = mx + markerW + kGap;
    } else {
        sx = int64_t(area.Left) + kPad;
        mx = sx + (scaleW > 0 ? scaleW + kGap : 0);
        vx = mx + markerW + kGap;
    }
    tooSmall_ = false;
    levelTop_ = Saturate(top);
    levelBottom_ = Saturate(bottom);
    endHeight_ = Saturate(e);
    vessel_ = TRect{Saturate(vx), Saturate(top - e), Saturate(vx + W), Saturate(bottom + e + 1)};
    markerColumn_ =
        TRect{Saturate(mx), levelTop_, Saturate(mx + markerW), WrapAdd(levelBottom_, 1)};
    if (scaleW > 0) {
        // VertiScala's base line is the rectangle's left edge, or its right one (a drawn
        // column) with the labels left.
        scaleRect_ = TRect{Saturate(sx), levelTop_, Saturate(sx + scaleW), levelBottom_};
        if (leftTop_) scaleRect_.Right = WrapSub(scaleRect_.Right, 1);
    }

    // Outer spans row by row: the domes are half ellipses, symmetric about the centre.
    const int64_t H = int64_t(vessel_.Bottom) - vessel_.Top;
    rows_.resize(size_t(H));
    for (int64_t j = 0; j < H; ++j) {
        const int64_t y = vessel_.Top + j;
        int64_t k = 0;
        if (tankShape_ == tsCylinder && (y < top || y > bottom)) {
            const int64_t d = y < top ? top - y : y - bottom;
            const double q = (double(d) - 0.5) / double(e);
            const double hw = double(W) / 2.0 * std::sqrt(std::max(0.0, 1.0 - q * q));
            k = std::clamp<int64_t>(Round(double(W) / 2.0 - hw), 0, (W - 1) / 2);
        }
        rows_[size_t(j)].Outer0 = Saturate(vx + k);
        rows_[size_t(j)].Outer1 = Saturate(vx + W - k);
    }
    // The inside: pixels whose four neighbours all lie in the vessel.
    for (int64_t j = 0; j < H; ++j) {
        TRowSpan& r = rows_[size_t(j)];
        if (j == 0 || j == H - 1) {
            r.In0 = r.In1 = r.Outer0;
            continue;
        }
        const TRowSpan& a = rows_[size_t(j - 1)];
        const TRowSpan& b = rows_[size_t(j + 1)];
        r.In0 = std::max({WrapAdd(r.Outer0, 1), a.Outer0, b.Outer0});
        r.In1 = std::min({WrapSub(r.Outer1, 1), a.Outer1, b.Outer1});
        if (r.In1 < r.In0) r.In1 = r.In0;
    }
}

// --- painting --------------------------------------------------------------------------

void TKxTank::paintVessel(TCanvas& c, TPoint at, TColor base) {
    const int32_t W = vessel_.Width(), H = vessel_.Height();
    // The shading runs down whole columns; each row then takes its inside from it.
    TBitmap slab;
    MakeCompatibleBitmap(slab, W, H, TPoint{vessel_.Left, vessel_.Top});
    TCanvas& sc = slab.Canvas();
    sc.Brush().SetStyle(bsSolid);
    for (int32_t x = 0; x < W; ++x) {
        sc.Brush().SetColor(Shade(base, x, W));
        sc.FillRect(TRect{x, 0, x + 1, H});
    }
    c.SetCopyMode(cmSrcCopy);
    c.Brush().SetStyle(bsSolid);
    const TColor outline = blend(tankColor_, 0, 0.6);
    // Rows with equal spans (the straight part) go in one operation each.
    for (size_t j = 0; j < rows_.size();) {
        size_t n = j + 1;
        while (n < rows_.size() && rows_[n].Outer0 == rows_[j].Outer0 &&
               rows_[n].Outer1 == rows_[j].Outer1 && rows_[n].In0 == rows_[j].In0 &&
               rows_[n].In1 == rows_[j].In1)
            ++n;
        const TRowSpan& r = rows_[j];
        const int32_t y0 = WrapSub(WrapAdd(vessel_.Top, int32_t(j)), at.Y);
        const int32_t y1 = WrapSub(WrapAdd(vessel_.Top, int32_t(n)), at.Y);
        if (r.In1 > r.In0) {
            c.CopyRect(TRect{WrapSub(r.In0, at.X), y0, WrapSub(r.In1, at.X), y1}, sc,
                       TRect{r.In0 - vessel_.Left, int32_t(j), r.In1 - vessel_.Left, int32_t(n)});
            c.Brush().SetColor(outline);
            c.FillRect(TRect{WrapSub(r.Outer0, at.X), y0, WrapSub(r.In0, at.X), y1});
            c.FillRect(TRect{WrapSub(r.In1, at.X), y0, WrapSub(r.Outer1, at.X), y1});
        } else {
            c.Brush().SetColor(outline);
            c.FillRect(TRect{WrapSub(r.Outer0, at.X), y0, WrapSub(r.Outer1, at.X), y1});
        }
        j = n;
    }
}

void TKxTank::paintLimitLines(TCanvas& c, TPoint at) {
    paintedLower_ = LimitLowerPPT();
    paintedUpper_ = LimitUpperPPT();
    if (!HasOption(opLimitLines)) return;
    c.Brush().SetStyle(bsSolid);
    const std::pair<int32_t, TColor> lines[] = {{paintedLower_, limitLowerColor_},
                                                {paintedUpper_, limitUpperColor_}};
    for (const auto& [ppt, color] : lines) {
        if (ppt < 0 || ppt > 1000) continue;
        const int32_t y = LevelRow(ppt);
        const int64_t j = int64_t(y) - vessel_.Top;
        if (j < 0 || j >= int64_t(rows_.size())) continue;
        const TRowSpan& r = rows_[size_t(j)];
        c.Brush().SetColor(color);
        c.FillRect(TRect{WrapSub(WrapSub(r.Outer0, kGap), at.X), WrapSub(y, at.Y),
                         WrapSub(WrapAdd(r.Outer1, kGap), at.X), WrapSub(WrapAdd(y, 1), at.Y)});
    }
}

void TKxTank::renderFull(TColor liquid) {
    const int32_t W = vessel_.Width(), H = vessel_.Height();
    MakeCompatibleBitmap(full_, W, H, TPoint{vessel_.Left, vessel_.Top});
    TCanvas& f = full_.Canvas();
    f.SetCopyMode(cmSrcCopy);
    f.CopyRect(TRect{0, 0, W, H}, background_.Canvas(),
               TRect{vessel_.Left - area_.Left, vessel_.Top - area_.Top, vessel_.Right - area_.Left,
                     vessel_.Bottom - area_.Top});
    const TPoint at{vessel_.Left, vessel_.Top};
    paintVessel(f, at, liquid);
    paintLimitLines(f, at);
    fullColor_ = liquid;
}

TColor TKxTank::liquidNow() const {
    if (HasOption(opSector) && (InSector1() || InSector2() || InSector3())) return SectorColor();
    return liquidColor_;
}

void TKxTank::fillBand(TCanvas& c, TPoint at, int32_t level, TColor color) const {
    c.Brush().SetStyle(bsSolid);
    c.Brush().SetColor(color);
    for (int32_t i = 0; i < 2; ++i) {
        const int32_t y = WrapAdd(level, i);
        const auto [a, b] = Inside(y);
        if (b > a)
            c.FillRect(TRect{WrapSub(a, at.X), WrapSub(y, at.Y), WrapSub(b, at.X),
                             WrapSub(WrapAdd(y, 1), at.Y)});
    }
}

void TKxTank::Paint() {
    if (UpdateCount() > 0) return;
    TCanvas& c = Canvas();
    measure(c);
    lastLevel_ = -1;
    lastMarks_ = {};
    fullColor_ = clNone;
    TRect r = ClientRect();
    int32_t t = 0;
    if (HasOption(opBevelOuter)) {
        bevelOuter_->PaintFilledBevel(c, r);
        t = Div(bevelOuter_->Spacing(), 2);
    }
    PaintNames(c, r, t, HasOption(opName1), HasOption(opName2), names_);

    // The readout row: the box (laid out as TKxValInd::Draw does) and the unit.
    valueBox_ = TRect{};
    const QString& unit = SignalSettings()->ValueUnit();
    const bool withValue = HasOption(opValue), withUnit = HasOption(opUnit) && !unit.isEmpty();
    if (withValue || withUnit) {
        int64_t blockW = 0, blockH = 0, boxH = 0, captionH = 0;
        if (withValue) {
            c.SetFont(*valInd_->Font());
            const QString sample = valInd_->SampleText.isEmpty()
                                       ? FormatFloat(valInd_->FormatStr(), -88888.888)
                                       : valInd_->SampleText;
            const TKxOffset& sp = *valInd_->TxtSpacing();
            const int64_t ring = std::max(0, valInd_->Bevel()->Width());
            blockW = std::max<int64_t>(0, int64_t(c.TextWidth(sample)) + sp.Left() + sp.Right()) +
                     2 * ring;
            boxH = std::max<int64_t>(
                       0, int64_t(c.TextHeight(QStringLiteral("0"))) + sp.Top() + sp.Bottom()) +
                   2 * ring;
            const TKxText& cap = *valInd_->Caption();
            if (cap.Visible() && !cap.Text().isEmpty()) {
                c.SetFont(*cap.Font());
                blockW = std::max<int64_t>(blockW, c.TextWidth(cap.Text()));
                captionH = c.TextHeight(cap.Text());
            }
            blockH = boxH + captionH;
        }
        const int64_t gap = withValue && withUnit ? 3 : 0;
        const int64_t rowW = blockW + gap + (withUnit ? unitW_ : 0);
        const int64_t rowH = std::max<int64_t>(blockH, withUnit ? unitH_ : 0);
        if (rowW <= r.Width() && rowH * 3 <= r.Height()) {
            const int64_t y = valueTop_ ? r.Top : int64_t(r.Bottom) - rowH;
            const int64_t x = int64_t(r.Left) + (int64_t(r.Width()) - rowW) / 2;
            if (withValue) {
                valInd_->Draw(c, KxSaturatedPoint(x, y), toTopLeft);
                if (valInd_->Visible()) valueBox_ = valInd_->TextRect();
            }
            if (withUnit) {
                c.SetFont(*Font());
                c.Brush().SetStyle(bsClear);
                const int64_t uy = withValue ? y + captionH + (boxH - unitH_) / 2 : y;
                KxTextOut(c, Saturate(x + blockW + gap), Saturate(uy), unit, toTopLeft);
            }
            if (valueTop_)
                r.Top = Saturate(y + rowH + 3);
            else
                r.Bottom = Saturate(y - 3);
        }
    }
    if (HasOption(opBevelInner)) bevelInner_->PaintFilledBevel(c, r);
    // Negative bevel spacings widen the rectangle past the control, up to the int32 limits;
    // the vessel, laid out row by row, stays within what can be seen.
    if (!KxRectIntersection(r, ClientRect(), r)) r = TRect{};
    area_ = r;
    layoutVessel(r);
    background_.SetSize(0, 0);
    full_.SetSize(0, 0);
    if (tooSmall_) {
        blinking_ = false;
        DelControl(this);
        return;
    }
    if (!KxIsEmptyRect(scaleRect_)) scaleSettings_->VertiScala(c, scaleRect_);
    paintVessel(c, TPoint{}, tankColor_);
    paintLimitLines(c, TPoint{});
    GetBkUpImage(c, background_, area_);
    startOrStopBlinking();  // a tank that was too small may have missed its overflow
    ValueChange();
}

void TKxTank::drawNumber() {
    if (!HasOption(opValue) || KxIsEmptyRect(valueBox_)) return;
    valInd_->DrawValue(Canvas(), double(Value()));
}

void TKxTank::drawLevel(TCanvas& canvas) {
    if (tooSmall_ || background_.Width() < 2) return;
    const TColor liquid = liquidNow();
    bool whole = lastLevel_ < 0;
    if (liquid != fullColor_ || full_.Width() != vessel_.Width()) {
        renderFull(liquid);
        whole = true;
    }
    const TRect all{0, 0, background_.Width(), background_.Height()};
    if (work_.Width() != all.Right || work_.Height() != all.Bottom ||
        work_.DeviceRatio() != background_.DeviceRatio() ||
        work_.GridOrigin() != background_.GridOrigin() || lastLevel_ < 0) {
        MakeCompatibleBitmap(work_, all.Right, all.Bottom, background_.GridOrigin());
        work_.Canvas().SetCopyMode(cmSrcCopy);
        work_.Canvas().CopyRect(all, background_.Canvas(), all);
        whole = true;
        lastMarks_ = {};
    }
    TCanvas& w = work_.Canvas();
    w.SetCopyMode(cmSrcCopy);
    const TPoint at{area_.Left, area_.Top};

    // The rows between the old and the new surface band, from the two caches.
    const int32_t level = LevelRow(PointerPosition());
    int32_t y0 = vessel_.Top, y1 = vessel_.Bottom;
    if (!whole) {
        y0 = std::max(vessel_.Top, std::min(lastLevel_, level));
        y1 = std::min(vessel_.Bottom, WrapAdd(std::max(lastLevel_, level), 2));
    }
    const int32_t split = std::clamp(level, y0, y1);
    const int32_t vl = vessel_.Left - at.X, vr = vessel_.Right - at.X;
    w.CopyRect(TRect{vl, y0 - at.Y, vr, split - at.Y}, background_.Canvas(),
               TRect{vl, y0 - at.Y, vr, split - at.Y});
    w.CopyRect(TRect{vl, split - at.Y, vr, y1 - at.Y}, full_.Canvas(),
               TRect{0, split - vessel_.Top, vessel_.Width(), y1 - vessel_.Top});
    const bool blink = blinking_ && HasOption(opOverflow);
    fillBand(w, at, level, blink ? blinkColor_ : blend(liquid, 255, 0.45));
    lastLevel_ = level;

    // Markers: half triangles in their column, the point towards the vessel.
    const TMinMax& mm = *MinMax();
    const int32_t T = std::max(2, scaleSettings_->StepLength), k = Div(T, 2);
    const int32_t tip = leftTop_ ? WrapSub(markerColumn_.Right, 1) : markerColumn_.Left;
    const int32_t base = leftTop_ ? WrapSub(tip, T) : WrapAdd(tip, T);
    auto rowOf = [&](int32_t ppt) {
        const float f = float(int64_t(levelBottom_) - levelTop_) / 1000.0f;
        return WrapSub(levelBottom_, Round(double(f) * std::clamp(ppt, 0, 1000)));
    };
    const int32_t minPos = std::clamp(MinPPT(), 0, 1000), maxPos = std::clamp(MaxPPT(), 0, 1000);
    const int32_t ymin = rowOf(minPos), ymax = rowOf(maxPos);
    markers_ = {TPoint{base, ymin}, TPoint{base, WrapAdd(ymin, k)}, TPoint{tip, ymin},
                TPoint{base, ymax}, TPoint{base, WrapSub(ymax, k)}, TPoint{tip, ymax}};
    const TMarkState state{ymin, ymax,
                           mm.MinVisible() ? MarkerColor(minPos, mm.MinColor()) : clNone,
                           mm.MaxVisible() ? MarkerColor(maxPos, mm.MaxColor()) : clNone};
    std::array<TRect, 2> dirty{};
    // Markers that stand still cost nothing: the rows above never touch their column.
    if (whole || state != lastMarkState_) {
        lastMarkState_ = state;
        const TRect column{markerColumn_.Left, area_.Top, markerColumn_.Right, area_.Bottom};
        std::array<TRect, 2> now{};
        for (size_t i = 0; i < 2; ++i) {
            TRect b = KxPointsBounds(markers_.data() + 3 * i, 3, kKxOutlineReach);
            KxRectIntersection(b, column, b);
            now[i] = KxOffsetRect(b, -at.X, -at.Y);
        }
        for (size_t i = 0; i < 2; ++i) {
            dirty[i] = KxUnionArea(now[i], lastMarks_[i]);
            if (!KxIsEmptyRect(dirty[i])) w.CopyRect(dirty[i], background_.Canvas(), dirty[i]);
        }
        lastMarks_ = now;
        std::array<TPoint, 6> local{};
        for (size_t i = 0; i < 6; ++i)
            local[i] = TPoint{WrapSub(markers_[i].X, at.X), WrapSub(markers_[i].Y, at.Y)};
        KxPaintMinMaxMarkers(w, local.data(), state.MinColor != clNone, state.MinColor,
                             state.MaxColor != clNone, state.MaxColor);
    }

    canvas.SetCopyMode(cmSrcCopy);
    const TRect rows{vl, y0 - at.Y, vr, y1 - at.Y};
    if (!KxIsEmptyRect(rows)) canvas.CopyRect(KxOffsetRect(rows, at.X, at.Y), w, rows);
    for (const TRect& d : dirty)
        if (!KxIsEmptyRect(d)) canvas.CopyRect(KxOffsetRect(d, at.X, at.Y), w, d);
}

void TKxTank::ValueChange() {
    ++drawing_;
    // An event handler may delete the tank; then there is nothing left to draw.
    QPointer<TKxTank> alive(this);
    TKxAnalogGControl::ValueChange();
    if (!alive) return;
    if (!tooSmall_ && background_.Width() >= 2 && UpdateCount() == 0) {
        // The limit lines are part of the caches: a moved limit needs a full Paint.
        if (HasOption(opLimitLines) &&
            (LimitLowerPPT() != paintedLower_ || LimitUpperPPT() != paintedUpper_))
            requestRepaint();
        if (shown()) {
            drawNumber();
            drawLevel(Canvas());
        }
    }
    --drawing_;
}

void TKxTank::OverflowChange(int32_t) {
    startOrStopBlinking();
}

void TKxTank::LimitChange() {
    startOrStopBlinking();
}

void TKxTank::startOrStopBlinking() {
    if (tooSmall_) return;
    if (PointerAlarm(PointerPosition(), HasOption(opOverflow), HasOption(opLimit))) {
        AddControl(this, kBlinkCode);
        blinking_ = true;
        return;
    }
    const bool was = blinking_;
    blinking_ = false;
    DelControl(this);
    // The band takes its own colour at once.
    if (was && Visible() && drawing_ == 0 && lastLevel_ >= 0) drawLevel(Canvas());
}

void TKxTank::WMFlash(TMessage& message) {
    if (tooSmall_ || !HasOption(opOverflow) || !Visible() || drawing_ > 0) return;
    if (background_.Width() < 2 || lastLevel_ < 0) return;
    blinkColor_ = message.LParam != 0 ? BlinkColor2() : BlinkColor1();
    fillBand(Canvas(), TPoint{}, lastLevel_, blinkColor_);
}

}  // namespace kx
