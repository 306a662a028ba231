#include "kx/indicators/flexmeter.h"

#include <QPointer>
#include <QRegion>
#include <algorithm>
#include <climits>
#include <cmath>

#include "kx/blink/flashtimer.h"
#include "kx/drawing/geometry.h"
#include "kx/drawing/shapes.h"
#include "kx/drawing/text.h"
#include "kx/framework/areacomposer.h"
#include "kx/host/formatfloat.h"
#include "kx/host/numeric.h"

namespace kx {

namespace {

constexpr int64_t kPointerBlinkCode = 4;
// Labels keep 1.4 label extents apart, as the classic scale engine's steps do.
constexpr double kLabelPitch = 1.4;

// The next value of the 1-2-5 series above s (s itself one of the series).
double nextStep(double s) {
    const double e = std::pow(10.0, std::floor(std::log10(s) + 1e-9));
    const double m = s / e;
    if (m < 1.5) return 2 * e;
    if (m < 3.5) return 5 * e;
    return 10 * e;
}

// The smallest value of the 1-2-5 series that is >= v (v > 0 and finite).
double seriesAtLeast(double v) {
    const double e = std::pow(10.0, std::floor(std::log10(v)));
    for (double m : {1.0, 2.0, 5.0, 10.0})
        if (m * e >= v * (1 - 1e-12)) return m * e;
    return 10 * e;
}

// The smallest n of 1, 2, 5, 10, 20, ... with n * pitch >= need.
int32_t everyNth(double pitch, double need) {
    int32_t n = 1;
    for (int i = 0; i < 24 && n * pitch < need; ++i)
        n = int32_t(nextStep(n));
    return n;
}

int64_t floorMod(int64_t a, int64_t b) {
    const int64_t r = a % b;
    return r < 0 ? r + b : r;
}

// The ValInd block's size as TKxValInd::Draw lays it out.
TPoint valIndSize(TCanvas& c, const TKxValInd& v) {
    c.SetFont(*v.Font());
    const QString sample =
        v.SampleText.isEmpty() ? FormatFloat(v.FormatStr(), -88888.888) : v.SampleText;
    const TKxOffset& sp = *v.TxtSpacing();
    const int64_t ring = std::max(0, v.Bevel()->Width());
    const int64_t textW = int64_t(c.TextWidth(sample)) + sp.Left() + sp.Right();
    const int64_t textH = int64_t(c.TextHeight(QStringLiteral("0"))) + sp.Top() + sp.Bottom();
    int64_t w = std::max<int64_t>(0, textW) + 2 * ring, h = std::max<int64_t>(0, textH) + 2 * ring;
    const TKxText& cap = *v.Caption();
    if (cap.Visible() && !cap.Text().isEmpty()) {
        c.SetFont(*cap.Font());
        w = std::max<int64_t>(w, c.TextWidth(cap.Text()));
        h += c.TextHeight(cap.Text());
    }
    return KxSaturatedPoint(w, h);
}

}  // namespace

// --- TKxFlexMeter ------------------------------------------------------------------------

TKxFlexMeter::TKxFlexMeter(QWidget* parent, bool upright)
    : TKxAnalogGControl(parent),
      upright_(upright),
      bevelInner_(new TKxSBevel(this)),
      bevelOuter_(new TKxSBevel(this)),
      scale_(new TKxFlexScale(this)),
      fontUnit_(new TFont(this)),
      valInd_(new TKxValInd(this)) {
    BeginUpdate();
    setSizePolicy(upright ? QSizePolicy::Preferred : QSizePolicy::Expanding,
                  upright ? QSizePolicy::Expanding : QSizePolicy::Preferred);
    KxSetDefaultBevels(*bevelInner_, *bevelOuter_);
    TFont* f = scale_->Font();
    f->SetName(QStringLiteral("Arial"));
    f->SetSize(36);
    f->SetStyle(fsBold);
    f->SetColor(clBlack);
    scale_->StepLines()->Pen()->SetColor(clBlack);
    scale_->SubStepLines()->Pen()->SetColor(clBlack);
    scale_->SetSubStepsVis(4);
    fontUnit_->SetName(QStringLiteral("Arial"));
    fontUnit_->SetSize(10);
    fontUnit_->SetColor(clBlack);
}

TKxFlexMeter::~TKxFlexMeter() {
    DelControl(this);
}

void TKxFlexMeter::hookSettings() {
    const TNotifyEvent handler = [this](QObject* sender) { ParamChange(sender); };
    bevelInner_->SetOnChange(handler);
    bevelOuter_->SetOnChange(handler);
    scale_->SetOnChange(handler);
    fontUnit_->SetOnChange(handler);
    valInd_->SetOnChange(handler);
}

void TKxFlexMeter::Loaded() {
    hookSettings();
    TKxAnalogGControl::Loaded();
    EndUpdate();
}

void TKxFlexMeter::requestRepaint() {
    if (UpdateCount() == 0) Invalidate();
}

void TKxFlexMeter::SetBevelInner(const TKxSBevel* v) {
    if (v && v != bevelInner_) bevelInner_->Assign(v);
}
void TKxFlexMeter::SetBevelOuter(const TKxSBevel* v) {
    if (v && v != bevelOuter_) bevelOuter_->Assign(v);
}
void TKxFlexMeter::SetScale(const TKxFlexScale* v) {
    if (v && v != scale_) scale_->Assign(v);
}
void TKxFlexMeter::SetFontUnit(const TFont* v) {
    if (v && v != fontUnit_) fontUnit_->Assign(*v);
    requestRepaint();
}
void TKxFlexMeter::SetValInd(const TKxValInd* v) {
    if (v && v != valInd_) valInd_->Assign(v);
}

void TKxFlexMeter::SetPointerColor(TColor v) {
    if (v == pointerColor_) return;
    pointerColor_ = v;
    requestRepaint();
}

void TKxFlexMeter::SetOptions(TFlexMeterOptions v) {
    options_ = TFlexMeterOptions(v & kAllFlexOptions);
    // Clearing the option that made the pointer blink stops the blinking at once.
    if (blinking_) PointerFlash();
    requestRepaint();
}

void TKxFlexMeter::ParamChange(QObject* sender) {
    TKxAnalogGControl::ParamChange(sender);
    requestRepaint();
}

void TKxFlexMeter::LogScaleChanged() {
    TKxAnalogGControl::LogScaleChanged();  // a settings pass: ParamChange repaints
}

int32_t TKxFlexMeter::BandHeight() const {
    const int32_t d = WrapAdd(Div(tickLen_, 2), SectorSettings()->WidthOffset());
    return std::clamp(d, 1, std::max(1, tickLen_));
}

bool TKxFlexMeter::shown() const {
    return Visible() || Designing();
}

void TKxFlexMeter::Paint() {
    if (UpdateCount() > 0) return;
    lastDrawn_ = -1;
    composer_.Invalidate();
    ticks_.clear();
    step_ = 0;
    labelEvery_ = 1;
    labelH_ = labelW_ = tickLen_ = 0;
    showTicks_ = showSubTicks_ = false;
    background_.SetSize(0, 0);
    TRect r = ClientRect();
    TCanvas& c = Canvas();
    int32_t t = 0;
    if (HasOption(opBevelOuter)) {
        bevelOuter_->PaintFilledBevel(c, r);
        t = Div(bevelOuter_->Spacing(), 2);
    }
    // The names only where they leave room for the instrument above them.
    const TNameSizes names = MeasureNames(c);
    const int64_t namesH = (HasOption(opName1) ? int64_t(names.Name1H) : 0) +
                           (HasOption(opName2) ? int64_t(names.Name2H) : 0);
    // The names yield to the instrument: they stay only when the inner bevel and a band
    // deep enough for ticks remain above them.
    const int64_t inner = 2 * int64_t(bevelInner_->TotalWidth());
    const int64_t innerUsed = HasOption(opBevelInner) ? inner : 0;
    showNames_ = namesH > 0 && int64_t(r.Height()) - namesH >= innerUsed + 2 * kTickBand;
    if (showNames_) PaintNames(c, r, t, HasOption(opName1), HasOption(opName2), names);
    if (HasOption(opBevelInner) && r.Width() > inner && r.Height() > inner)
        bevelInner_->PaintFilledBevel(c, r);
    paintHeader(c, r);
    area_ = r;
    const int32_t u = upright_ ? r.Width() : r.Height();
    const int32_t along = upright_ ? r.Height() : r.Width();
    tooSmall_ = u < kMinBand || along < 2 * kMinBand;
    // A label between the ends may be wider than both: lay out again with smaller labels.
    int32_t cap = INT32_MAX;
    for (int i = 0; i < 4 && !tooSmall_; ++i) {
        layoutScale(c, cap);
        const int64_t room = upright_ ? int64_t(area_.Right) - labelTop_ : 0;
        if (tooSmall_ || !upright_ || labelH_ == 0 || labelW_ <= room) break;
        cap = int32_t(int64_t(labelH_) * std::max<int64_t>(0, room) / std::max(1, labelW_)) - 1;
    }
    if (tooSmall_) {
        strip_ = TRect{};
        return;
    }
    paintScale(c);
    GetBkUpImage(c, background_, area_);
    PointerFlash();  // a meter that was too small may have missed its overflow
    ValueChange();
}

void TKxFlexMeter::paintHeader(TCanvas& c, TRect& r) {
    showValue_ = showUnit_ = false;
    header_ = TRect{};
    const QString unit = SignalSettings()->ValueUnit();
    const bool wantValue = HasOption(opValue) && valInd_->Visible();
    const bool wantUnit = HasOption(opUnit) && !unit.isEmpty();
    if (!wantValue && !wantUnit) return;
    c.SetFont(*fontUnit_);
    const int64_t uw = wantUnit ? c.TextWidth(unit) : 0, uh = wantUnit ? c.TextHeight(unit) : 0;
    const int64_t e = uh / 3;
    const TPoint box = wantValue ? valIndSize(c, *valInd_) : TPoint{};
    const int64_t limit = int64_t(r.Height()) / (upright_ ? 4 : 3);
    auto fits = [&](int64_t w, int64_t h) { return w <= r.Width() && h + 2 <= limit; };
    if (wantValue && wantUnit && fits(box.X + e + uw, std::max<int64_t>(box.Y, uh))) {
        showValue_ = showUnit_ = true;
    } else if (wantUnit && fits(uw, uh)) {
        showUnit_ = true;
    } else if (wantValue && fits(box.X, box.Y)) {
        showValue_ = true;
    } else {
        return;
    }
    const int64_t h = std::max<int64_t>(showValue_ ? box.Y : 0, showUnit_ ? uh : 0);
    const int64_t w =
        (showValue_ ? box.X : 0) + (showValue_ && showUnit_ ? e : 0) + (showUnit_ ? uw : 0);
    const int64_t x = r.Left + (r.Width() - w) / 2;
    if (showValue_) valInd_->Draw(c, TPoint{Saturate(x), r.Top}, toTopLeft);
    if (showUnit_) {
        c.SetFont(*fontUnit_);
        c.Brush().SetStyle(bsClear);
        c.TextOut(Saturate(x + (showValue_ ? box.X + e : 0)), Saturate(r.Top + (h - uh) / 2), unit);
    }
    header_ = TRect{r.Left, r.Top, r.Right, Saturate(r.Top + h + 2)};
    r.Top = header_.Bottom;
}

QString TKxFlexMeter::labelText(double v) const {
    if (LogScale() && (v < 0.1 || v > 100000.0)) return FormatFloat(QStringLiteral("0e-0"), v);
    return FormatFloat(scale_->FormatStr(), v);
}

void TKxFlexMeter::chooseLabelFont(TCanvas& c, int32_t u, int32_t along, int32_t cap0) {
    labelH_ = labelW_ = 0;
    labelFont_.Assign(*scale_->Font());
    c.SetFont(labelFont_);
    const int32_t cap = c.TextHeight(QStringLiteral("0"));
    int32_t target = std::min({cap, cap0, Round(u * (upright_ ? 0.2 : 0.3))});
    const QString ends[2] = {labelText(SignalSettings()->ValueFrom()),
                             labelText(SignalSettings()->ValueTo())};
    int32_t em = target;
    for (int i = 0; i < 12; ++i) {
        if (target < kMinLabel || em < 1) return;
        labelFont_.SetHeight(-em);
        c.SetFont(labelFont_);
        const int32_t th = c.TextHeight(QStringLiteral("0"));
        if (th < kMinLabel) return;
        const int32_t w = std::max(c.TextWidth(ends[0]), c.TextWidth(ends[1]));
        if (th > target) {  // the em is smaller than the line: aim the line at the target
            em = std::min(em - 1, int32_t(int64_t(em) * target / std::max(1, th)));
            continue;
        }
        const int32_t g = std::max(1, Div(th, 5));
        // H: both end labels with a label pitch between them; V: the widest label beside
        // the pointer and the ticks, and two label pitches along.
        const double needAlong = upright_ ? kLabelPitch * th + th + 2 : kLabelPitch * w + w + 2;
        const int64_t needAcross =
            upright_ ? 2 * int64_t(tickLen_) + g + w : 2 * int64_t(tickLen_) + g + th;
        if (needAlong <= along && needAcross <= u) {
            labelH_ = th;
            labelW_ = w;
            return;
        }
        double ratio = needAlong > along ? along / needAlong : 1.0;
        if (needAcross > u)
            ratio = std::min(ratio, upright_ ? double(u - 2 * tickLen_ - g) / std::max(1, w)
                                             : double(u - 2 * tickLen_ - g) / std::max(1, th));
        const int32_t next = int32_t(std::floor(em * std::clamp(ratio, 0.0, 1.0)));
        em = std::min(em - 1, next);
        target = std::min(target, em + em / 4 + 1);
    }
}

int32_t TKxFlexMeter::posOf(double fraction) const {
    const double d = double(int64_t(scaleEnd_) - scaleStart_) * fraction;
    return Saturate(int64_t(scaleStart_) + Round64(std::clamp(d, -1e12, 1e12)));
}

void TKxFlexMeter::layoutScale(TCanvas& c, int32_t labelCap) {
    const TRect& a = area_;
    const int32_t u = upright_ ? a.Width() : a.Height();
    const int32_t along = upright_ ? a.Height() : a.Width();
    int32_t T = std::clamp(Round(u * (upright_ ? 0.15 : 0.2)), 2, 64);
    T = std::min(T, std::max(2, along / 4));
    tickLen_ = T;
    showTicks_ = u >= kTickBand;
    chooseLabelFont(c, u, along, labelCap);
    const int32_t k = Div(T, 2);
    int32_t g = labelH_ > 0 ? std::max(1, Div(labelH_, 5)) : 0;
    const int32_t labelAcross = upright_ ? labelW_ : labelH_;
    int64_t stack = T + (showTicks_ ? T : 0) + (labelH_ > 0 ? g + labelAcross : 0);
    if (stack > u) {
        labelH_ = labelW_ = 0;
        g = 0;
        stack = T + (showTicks_ ? T : 0);
    }
    if (stack > u) {
        showTicks_ = false;
        stack = T;
    }
    showSubTicks_ = showTicks_ && u >= kSubTickBand;
    const int32_t off = int32_t((u - stack) / 2);
    const int32_t labelAlong = labelH_ > 0 ? Div(upright_ ? labelH_ : labelW_, 2) : 0;
    // Room for a pointer at the stops (30 per mille beyond either end) and the end labels.
    const int32_t m = Saturate(std::max<int64_t>(k + int64_t(along) * 3 / 100, labelAlong) + 1);
    if (!upright_) {
        scaleStart_ = a.Left + m;
        scaleEnd_ = a.Right - 1 - m;
        strip_ = TRect{a.Left, a.Top + off, a.Right, a.Top + off + T};
        base_ = strip_.Bottom;
    } else {
        scaleStart_ = a.Bottom - 1 - m;
        scaleEnd_ = a.Top + m;
        strip_ = TRect{a.Left + off, a.Top, a.Left + off + T, a.Bottom};
        base_ = strip_.Right;
    }
    labelTop_ = base_ + (showTicks_ ? T : 1) + g;
    if (std::abs(int64_t(scaleEnd_) - scaleStart_) < 2) {
        tooSmall_ = true;
        return;
    }
    buildTicks(c);
}

void TKxFlexMeter::buildTicks(TCanvas& c) {
    ticks_.clear();
    const bool labels = labelH_ > 0;
    if (!showTicks_ && !labels) return;
    const double from = SignalSettings()->ValueFrom(), to = SignalSettings()->ValueTo();
    if (!std::isfinite(from) || !std::isfinite(to) || !(to > from)) {
        labelH_ = labelW_ = 0;
        return;
    }
    if (LogScale() && from > 0) {
        buildLog(c, from, to, labels);
    } else if (!buildLinear(c, from, to, labels)) {
        ticks_.clear();
    }
    if (!showTicks_)  // labels without ticks are not drawn: they would float
        ticks_.clear();
    if (std::none_of(ticks_.begin(), ticks_.end(), [](const TTick& t) { return t.Labelled; }))
        labelH_ = labelW_ = 0;
}

bool TKxFlexMeter::buildLinear(TCanvas& c, double from, double to, bool labels) {
    const double range = to - from;
    const double length = std::abs(double(int64_t(scaleEnd_) - scaleStart_));
    if (!(range > 0) || !std::isfinite(range)) return false;
    const double pxPerValue = length / range;
    c.SetFont(labelFont_);
    const double maxIndex = 1e15;  // beyond: a step would be lost in double precision
    // Widest label of the steps of size s labelled every n; -1 when too many to measure.
    auto widest = [&](double s, int32_t n) -> double {
        if (upright_) return labelH_;
        const double i0 = std::ceil(from / s - 1e-9), i1 = std::floor(to / s + 1e-9);
        if (i1 - i0 > 2000) return -1;
        int32_t w = 0;
        for (double i = i0; i <= i1; ++i)
            if (floorMod(int64_t(i), n) == 0) {
                const double v = std::abs(i * s) < s * 1e-9 ? 0.0 : i * s;
                w = std::max(w, c.TextWidth(labelText(v)));
            }
        return w;
    };
    double sub = 0, step = 0;
    int32_t per = 1, every = 1;
    const float at = scale_->SubStepAt();
    if (at > 0 && double(at) * scale_->StepMulti() * pxPerValue >= kMinTickPitch &&
        std::max(std::abs(from), std::abs(to)) / at < maxIndex) {
        sub = at;
        per = scale_->StepMulti();
        step = sub * per;
        if (labels) {
            const double w = widest(step, 1);
            every = w < 0 ? everyNth(step * pxPerValue, kLabelPitch * labelW_)
                          : everyNth(step * pxPerValue, kLabelPitch * w);
        }
    } else {
        double s = seriesAtLeast(kMinTickPitch / pxPerValue);
        for (int i = 0; i < 400; ++i, s = nextStep(s)) {
            if (!std::isfinite(s)) return false;
            if (std::max(std::abs(from), std::abs(to)) / s >= maxIndex) continue;
            if (!labels) break;
            const double w = widest(s, 1);
            if (w >= 0 && s * pxPerValue >= kLabelPitch * w) break;
        }
        if (!std::isfinite(s) || s * pxPerValue > length * 2) {
            // Not even the two ends fit a step: ticks only at the largest step that fits.
            s = seriesAtLeast(kMinTickPitch / pxPerValue);
            if (!std::isfinite(s)) return false;
            labelH_ = labelW_ = 0;
            labels = false;
        }
        step = s;
        const double e = std::pow(10.0, std::floor(std::log10(s) + 1e-9));
        const double mantissa = s / e;
        per = scale_->StepMulti() > 1 ? scale_->StepMulti()
                                      : (mantissa > 1.5 && mantissa < 3.5 ? 4 : 5);
        sub = step / per;
    }
    step_ = step;
    labelEvery_ = every;
    bool subVisible = showSubTicks_ && sub * pxPerValue >= scale_->SubStepsVis();
    if (!subVisible || (to - from) / sub > 20000) {
        // Sub-ticks that are not drawn are not walked either: a step split into very many
        // parts keeps its steps.
        subVisible = false;
        sub = step;
        per = 1;
    }
    const double i0 = std::ceil(from / sub - 1e-9), i1 = std::floor(to / sub + 1e-9);
    if (!(i1 >= i0) || i1 - i0 > 20000) return false;
    int32_t widestLabel = 0;
    c.SetFont(labelFont_);
    for (double i = i0; i <= i1; ++i) {
        const int64_t idx = int64_t(i);
        const bool isStep = floorMod(idx, per) == 0;
        if (!isStep && !subVisible) continue;
        TTick t;
        const double v = std::abs(i * sub) < sub * 1e-9 ? 0.0 : i * sub;
        t.Pos = posOf((v - from) / range);
        t.Step = isStep;
        t.Labelled = labels && isStep && floorMod(idx / per, every) == 0;
        if (t.Labelled) {
            t.Label = labelText(v);
            widestLabel = std::max(widestLabel, c.TextWidth(t.Label));
        }
        ticks_.push_back(std::move(t));
        if (int64_t(ticks_.size()) > kMaxTicks) return false;
    }
    if (labels) labelW_ = std::max(labelW_, widestLabel);
    return true;
}

void TKxFlexMeter::buildLog(TCanvas& c, double from, double to, bool labels) {
    const int32_t e0 = Round(std::log10(from)), e1 = Round(std::log10(to));
    const int32_t decades = e1 - e0;
    if (decades <= 0) return;
    const double length = std::abs(double(int64_t(scaleEnd_) - scaleStart_));
    const double pitch = length / decades;
    c.SetFont(labelFont_);
    int32_t widest = 0;
    if (labels)
        for (int32_t d = 0; d <= decades; ++d)
            widest = std::max(widest, c.TextWidth(labelText(std::pow(10.0, e0 + d))));
    const int32_t tickEvery = everyNth(pitch, kMinTickPitch);
    int32_t every = labels ? everyNth(pitch, kLabelPitch * (upright_ ? labelH_ : widest)) : 1;
    if (every > decades) labels = false;
    every = std::max(every, tickEvery);
    step_ = 10.0;
    labelEvery_ = every;
    const bool subVisible =
        showSubTicks_ && tickEvery == 1 && pitch * std::log10(10.0 / 9.0) >= scale_->SubStepsVis();
    int32_t widestLabel = 0;
    for (int32_t d = 0; d <= decades; ++d) {
        const bool labelled = labels && d % every == 0;
        if (d % tickEvery == 0 || labelled) {
            TTick t;
            t.Pos = posOf(double(d) / decades);
            t.Step = true;
            t.Labelled = labelled;
            if (labelled) {
                t.Label = labelText(std::pow(10.0, e0 + d));
                widestLabel = std::max(widestLabel, c.TextWidth(t.Label));
            }
            ticks_.push_back(std::move(t));
        }
        if (subVisible && d < decades)
            for (int m = 2; m <= 9; ++m) {
                TTick t;
                t.Pos = posOf((d + std::log10(double(m))) / decades);
                ticks_.push_back(std::move(t));
            }
    }
    if (labels) labelW_ = std::max(labelW_, widestLabel);
}

void TKxFlexMeter::paintScale(TCanvas& c) {
    // Nothing of the scale may leave the pointer area (labels moved by the offsets).
    const bool hadClip = c.HasClipRegion();
    const QRegion oldClip = c.ClipRegion();
    c.SetClipRegion(
        QRegion(area_.Left, area_.Top, std::max(0, area_.Width()), std::max(0, area_.Height())));
    const int32_t T = tickLen_, sub = std::max(1, Div(T, 2));
    if (showTicks_ && HasOption(opSector)) {
        const int32_t b = BandHeight();
        if (!upright_)
            KxDrawSectorBands(c,
                              TRect{scaleStart_, base_ + 1, scaleEnd_ + 1, WrapAdd(base_ + 1, b)},
                              *SectorSettings(), false);
        else
            KxDrawSectorBands(c,
                              TRect{base_ + 1, scaleEnd_, WrapAdd(base_ + 1, b), scaleStart_ + 1},
                              *SectorSettings(), true);
    }
    const int32_t maxPen = std::max(1, Div(T, 4));
    auto usePen = [&](const TKxLineSettings& line) {
        c.Pen().Assign(*line.Pen());
        c.Pen().SetWidth(std::clamp(line.Pen()->Width(), 1, maxPen));
    };
    c.Brush().SetStyle(bsClear);
    if (showTicks_ && scale_->StepLines()->Visible()) {
        usePen(*scale_->StepLines());
        if (!upright_) {
            c.MoveTo(scaleStart_, base_);
            c.LineTo(scaleEnd_ + 1, base_);
        } else {
            c.MoveTo(base_, scaleStart_);
            c.LineTo(base_, scaleEnd_ - 1);
        }
    }
    if (showTicks_) {
        for (const TTick& t : ticks_) {
            const TKxLineSettings& line = t.Step ? *scale_->StepLines() : *scale_->SubStepLines();
            if (!line.Visible()) continue;
            usePen(line);
            const int32_t len = t.Step ? T : sub;
            if (!upright_) {
                c.MoveTo(t.Pos, base_);
                c.LineTo(t.Pos, base_ + len);
            } else {
                c.MoveTo(base_, t.Pos);
                c.LineTo(base_ + len, t.Pos);
            }
        }
    }
    if (labelH_ > 0) {
        c.SetFont(labelFont_);
        c.Brush().SetStyle(bsClear);
        const toPos align = scale_->TextAlignment();
        const int32_t col = int32_t(align) % 3, row = int32_t(align) / 3;
        for (const TTick& t : ticks_) {
            if (!t.Labelled) continue;
            TRect cell;
            if (!upright_) {
                const int32_t l = t.Pos - Div(labelW_, 2);
                cell = TRect{l, labelTop_, l + labelW_, labelTop_ + labelH_};
            } else {
                const int32_t top = t.Pos - Div(labelH_, 2);
                cell = TRect{labelTop_, top, labelTop_ + labelW_, top + labelH_};
            }
            const int32_t x = col == 0   ? cell.Left
                              : col == 1 ? cell.Left + Div(labelW_, 2)
                                         : cell.Right;
            const int32_t y = row == 0   ? cell.Top
                              : row == 1 ? cell.Top + Div(labelH_, 2)
                                         : cell.Bottom;
            KxTextOut(c, WrapAdd(x, scale_->TextOffsetX()), WrapAdd(y, scale_->TextOffsetY()),
                      t.Label, align);
        }
    }
    if (hadClip)
        c.SetClipRegion(oldClip);
    else
        c.ClearClipRegion();
}

int32_t TKxFlexMeter::shapes(int32_t pos, int32_t minPos, int32_t maxPos, std::array<TPoint, 3>& p,
                             std::array<TPoint, 6>& m) const {
    const TRect a = area_;
    const int32_t T = tickLen_, k = Div(T, 2);
    const double f = double(float(double(int64_t(scaleEnd_) - scaleStart_) / 1000.0));
    if (!upright_) {
        const int32_t x0 = scaleStart_ - a.Left;
        auto at = [&](int32_t ppt) { return WrapAdd(x0, Round(f * ppt)); };
        const int32_t xp = at(pos), xmin = at(minPos), xmax = at(maxPos);
        const int32_t top = strip_.Top - a.Top, by = base_ - a.Top;
        p = {TPoint{xp - k, top}, TPoint{xp + k, top}, TPoint{xp, by}};
        m = {TPoint{xmin, by + 1}, TPoint{xmin, by + T}, TPoint{xmin - k, by + T},
             TPoint{xmax, by + 1}, TPoint{xmax, by + T}, TPoint{xmax + k, by + T}};
        return xp;
    }
    const int32_t y0 = scaleStart_ - a.Top;
    auto at = [&](int32_t ppt) { return WrapAdd(y0, Round(f * ppt)); };
    const int32_t yp = at(pos), ymin = at(minPos), ymax = at(maxPos);
    const int32_t left = strip_.Left - a.Left, bx = base_ - a.Left;
    p = {TPoint{left, yp - k}, TPoint{left, yp + k}, TPoint{bx, yp}};
    m = {TPoint{bx + 1, ymin}, TPoint{bx + T, ymin}, TPoint{bx + T, ymin + k},
         TPoint{bx + 1, ymax}, TPoint{bx + T, ymax}, TPoint{bx + T, ymax - k}};
    return yp;
}

void TKxFlexMeter::DrawPointer(TCanvas& canvas) {
    if (tooSmall_ || background_.Width() < 2) return;
    std::array<TPoint, 3> p{};
    std::array<TPoint, 6> m{};
    const int32_t minPos = std::clamp(MinPPT(), 0, 1000), maxPos = std::clamp(MaxPPT(), 0, 1000);
    lastDrawn_ = shapes(PointerPosition(), minPos, maxPos, p, m);
    const TPoint at{area_.Left, area_.Top};
    // Only an overflow blink changes the pointer's colour.
    composer_.Compose(canvas, *this, background_, at, p, m, minPos, maxPos,
                      blinking_ && HasOption(opOverflow) ? blinkColor_ : pointerColor_);
    for (size_t i = 0; i < 3; ++i)
        pointer_[i] = KxOffsetPoint(p[i], at.X, at.Y);
    for (size_t i = 0; i < 6; ++i)
        markers_[i] = KxOffsetPoint(m[i], at.X, at.Y);
}

void TKxFlexMeter::ValueChange() {
    ++drawing_;
    // An event handler may delete the meter; then there is nothing left to draw.
    QPointer<TKxFlexMeter> alive(this);
    TKxAnalogGControl::ValueChange();
    if (!alive) return;
    if (!tooSmall_ && background_.Width() >= 2 && shown() && UpdateCount() == 0) {
        if (showValue_) valInd_->DrawValue(Canvas(), Value());
        DrawPointer(Canvas());
    }
    --drawing_;
}

void TKxFlexMeter::OverflowChange(int32_t) {
    PointerFlash();
}

void TKxFlexMeter::LimitChange() {
    PointerFlash();
}

void TKxFlexMeter::PointerFlash() {
    if (tooSmall_) return;
    if (PointerAlarm(PointerPosition(), HasOption(opOverflow), HasOption(opLimit))) {
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

void TKxFlexMeter::WMFlash(TMessage& message) {
    if (tooSmall_ || !HasOption(opOverflow) || !Visible() || drawing_ > 0) return;
    if (background_.Width() < 2) return;
    blinkColor_ = message.LParam != 0 ? BlinkColor2() : BlinkColor1();
    // Straight onto the surface, clipped to the pointer area as the composition is.
    TCanvas& c = Canvas();
    const bool hadClip = c.HasClipRegion();
    const QRegion oldClip = c.ClipRegion();
    c.SetClipRegion(QRegion(area_.Left, area_.Top, area_.Width(), area_.Height()));
    c.Pen().SetMode(pmCopy);
    c.Pen().SetStyle(psSolid);
    c.Pen().SetWidth(1);
    c.Pen().SetColor(clBlack);
    c.Brush().SetStyle(bsSolid);
    c.Brush().SetColor(blinkColor_);
    c.Polygon(std::span<const TPoint>(pointer_.data(), 3));
    if (hadClip)
        c.SetClipRegion(oldClip);
    else
        c.ClearClipRegion();
}

// --- the two orientations ----------------------------------------------------------------

TKxFlexHMeter::TKxFlexHMeter(QWidget* parent) : TKxFlexMeter(parent, false) {
    SetBounds(x(), y(), 300, 150);
}

TKxFlexVMeter::TKxFlexVMeter(QWidget* parent) : TKxFlexMeter(parent, true) {
    SetBounds(x(), y(), 150, 300);
}

}  // namespace kx
