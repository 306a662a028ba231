#include "kx/framework/scalesettings.h"

#include <algorithm>
#include <cstdlib>

#include "kx/drawing/angles.h"
#include "kx/drawing/geometry.h"
#include "kx/drawing/logvalues.h"
#include "kx/drawing/strings.h"
#include "kx/drawing/text.h"
#include "kx/framework/setfield.h"
#include "kx/host/numeric.h"

namespace kx {
namespace {

// Decade exponents beyond this carry no drawable meaning; the bound keeps the span of
// two exponents far from the int32 limits.
constexpr int32_t kMaxLogExponent = 400;

int32_t sat(int64_t v) {
    return static_cast<int32_t>(std::clamp<int64_t>(v, INT32_MIN, INT32_MAX));
}

int32_t decadeExponent(double value) {
    int32_t e = 0;
    KxRoundLogValue(value, e);
    return std::clamp(e, -kMaxLogExponent, kMaxLogExponent);
}

void line(TCanvas& canvas, TPoint a, TPoint b) {
    canvas.MoveTo(a.X, a.Y);
    canvas.LineTo(b.X, b.Y);
}

// log10 of the k-th of subSteps marks within a decade (k * 10 / subSteps in 1..10).
double decadeMark(int32_t k, int32_t subSteps) {
    return KxLog10(double(k) * 10 / subSteps);
}

}  // namespace

// The four reference points of a ring, straight above its centre.
struct TScaleSettings::RingGeometry {
    TPoint centre;
    int32_t labelY;
    int32_t outerY;
    int32_t innerY;
    int32_t subY;
};

TScaleSettings::TScaleSettings(QObject* parent) : TKxPersistent(parent), font_(new TFont(this)) {
    font_->SetName(QStringLiteral("Arial"));
    font_->SetSize(14);
    hookFont();
}

void TScaleSettings::hookFont() {
    font_->SetOnChange([this](QObject*) { Change(); });
}

void TScaleSettings::SetColor(TColorArg v) {
    SetField(*this, color_, v);
}
void TScaleSettings::SetPointerColor(TColorArg v) {
    SetField(*this, pointerColor_, v);
}
void TScaleSettings::SetDrawLine(bool v) {
    SetField(*this, drawLine_, v);
}
void TScaleSettings::SetPosLeftTop(bool v) {
    SetField(*this, posLeftTop_, v);
}
void TScaleSettings::SetValueFormat(const QString& v) {
    SetField(*this, valueFormat_, v);
}
void TScaleSettings::SetValueFormatLog(const QString& v) {
    SetField(*this, valueFormatLog_, v);
}

void TScaleSettings::SetFont(const TFont* font) {
    if (font) font_->Assign(*font);
}

void TScaleSettings::SetSteps(int32_t v) {
    if (v < 1 || v > 20) return;
    steps_ = v;
    Change();
}

void TScaleSettings::SetSubSteps(int32_t v) {
    if (v < 1 || v > 10) return;
    subSteps_ = v;
    Change();
}

void TScaleSettings::AssignTo(TKxPersistent* dest) const {
    auto* d = qobject_cast<TScaleSettings*>(dest);
    if (!d) return TKxPersistent::AssignTo(dest);
    d->SetColor(color_);
    d->SetDrawLine(drawLine_);
    d->SetFont(font_);
    d->SetPointerColor(pointerColor_);
    d->SetPosLeftTop(posLeftTop_);
    d->SetSteps(steps_);
    d->SetSubSteps(subSteps_);
    d->SetValueFormat(valueFormat_);
    d->SetValueFormatLog(valueFormatLog_);
}

int32_t TScaleSettings::CalcLogScaleSteps(int32_t steps, int32_t decades) {
    if (decades == 0 || steps < 2) return 1;
    // Divisors come in pairs (d, span / d); walking up to the square root finds the
    // largest one within steps without trying every candidate.
    const int64_t span = std::llabs(int64_t(decades));
    int64_t best = 1;
    for (int64_t d = 1; d * d <= span; ++d) {
        if (span % d != 0) continue;
        for (int64_t s : {d, span / d})
            if (s > best && s <= steps) best = s;
    }
    return static_cast<int32_t>(best);
}

int32_t TScaleSettings::stepCount() const {
    const int32_t n = LogScale ? LogSteps : steps_;
    return std::clamp(n, 1, kMaxScaleSteps);
}

void TScaleSettings::prepareLabels(TCanvas& canvas, double valueFrom, double valueTo,
                                   bool vertical) {
    canvas.SetFont(*font_);
    canvas.Pen().SetColor(color_);
    if (LogScale) {
        LogFrom = decadeExponent(valueFrom);
        LogTo = decadeExponent(valueTo);
        LogSteps = CalcLogScaleSteps(steps_, LogTo - LogFrom);
        Labels = KxLogRangeStr(LogFrom, LogTo, LogSteps, valueFormatLog_, vertical);
    } else if (vertical) {
        Labels = KxRangeStr(valueFrom, valueTo, steps_, valueFormat_);
    } else {
        Labels = KxRangeStr(valueTo, valueFrom, steps_, valueFormat_);
    }
    KxGetMaxTokenSize(canvas, MaxTextWidth, MaxTextHeight, Labels);
}

void TScaleSettings::straightMeasures() {
    const double h = MaxTextHeight;
    StepPenWidth = Round(h / 14);
    StepLength = Round(h / 1.4);
    SubStepLength = StepPenWidth == 1 ? Div(StepLength, 2) : Round(StepLength / 1.4);
    EdgeMargin = Div(StepPenWidth, 2) + 3;
    LineWidth = StepPenWidth;
}

void TScaleSettings::CalcSize(TCanvas& canvas, double valueFrom, double valueTo) {
    prepareLabels(canvas, valueFrom, valueTo, true);
    straightMeasures();
    const int32_t h = MaxTextHeight;
    TextGap = Div(h, 3);
    ScaleThickness = sat(int64_t(MaxTextWidth) + StepLength + TextGap);
    ScaleMinLength = Round(double(h) * stepCount() * 1.4);
}

void TScaleSettings::CalcHSize(TCanvas& canvas, double valueFrom, double valueTo) {
    prepareLabels(canvas, valueFrom, valueTo, false);
    straightMeasures();
    const int32_t h = MaxTextHeight;
    TextGap = Div(h, 5);
    ScaleThickness = sat(int64_t(Div(h, 2)) + StepLength + TextGap);
    ScaleMinLength = Round(double(MaxTextWidth) * stepCount() * 1.4);
}

void TScaleSettings::CalcRSize(TCanvas& canvas, double valueFrom, double valueTo) {
    prepareLabels(canvas, valueFrom, valueTo, false);
    StepPenWidth = Round(double(MaxTextHeight) / 14);
    TextGap = sat(int64_t(Div(std::max(MaxTextWidth, MaxTextHeight), 2)) + 1);
    EdgeMargin = Div(StepPenWidth, 2) + 3;
    LineWidth = StepPenWidth;
}

void TScaleSettings::ClearLabels() {
    Labels.clear();
    MaxTextWidth = 0;
    MaxTextHeight = 0;
    TextGap = 0;
}

void TScaleSettings::prepareCanvas(TCanvas& canvas) const {
    canvas.SetFont(*font_);
    canvas.Pen().SetColor(color_);
    canvas.Brush().SetStyle(bsClear);
}

void TScaleSettings::HorizScala(TCanvas& canvas, const TRect& rect) {
    const int32_t n = stepCount();
    const int32_t subs = subSteps_;
    prepareCanvas(canvas);
    canvas.Pen().SetWidth(StepPenWidth);

    const float w = float((double(rect.Right) - rect.Left) / (double(n) * subs));
    const float stepW = float(double(w) * subs);
    ScaleStart = rect.Left;
    ScaleEnd = Round(rect.Left + double(n) * stepW);

    int32_t y;
    int32_t labelY;
    int32_t dir;
    toPos pos;
    if (posLeftTop_) {
        y = sat(int64_t(rect.Top) + Div(MaxTextHeight, 2) + TextGap + StepLength);
        labelY = rect.Top;
        dir = -1;
        pos = toMidCenter;
    } else {
        y = rect.Top;
        labelY = sat(int64_t(rect.Top) + StepLength + TextGap);
        dir = 1;
        pos = toTopCenter;
    }
    const int32_t stepEnd = sat(int64_t(y) + int64_t(dir) * StepLength);
    const int32_t subEnd = sat(int64_t(y) + int64_t(dir) * SubStepLength);
    if (drawLine_) line(canvas, {ScaleStart, y}, {ScaleEnd, y});

    QString labels = Labels;
    for (int32_t i = 0; i < n; ++i) {
        const double base = double(i) * stepW;
        const int32_t x = Round(rect.Left + base);
        canvas.Pen().SetWidth(StepPenWidth);
        line(canvas, {x, y}, {x, stepEnd});
        KxTextOut(canvas, x, labelY, KxStrToken(labels, u';'), pos);
        canvas.Pen().SetWidth(SubStepPenWidth);
        if (LogScale) {
            for (int32_t k = 1; k <= subs; ++k) {
                const int32_t xs =
                    sat(int64_t(rect.Left) + Round(decadeMark(k, subs) * stepW + base));
                line(canvas, {xs, y}, {xs, subEnd});
            }
        } else {
            for (int32_t k = 0; k < subs; ++k) {
                const int32_t xs = Round(rect.Left + double(k) * w + base);
                line(canvas, {xs, y}, {xs, subEnd});
            }
        }
    }
    KxTextOut(canvas, ScaleEnd, labelY, KxStrToken(labels, u';'), pos);
    canvas.Pen().SetWidth(StepPenWidth);
    line(canvas, {ScaleEnd, y}, {ScaleEnd, stepEnd});
}

void TScaleSettings::VertiScala(TCanvas& canvas, const TRect& rect) {
    const int32_t n = stepCount();
    const int32_t subs = subSteps_;
    prepareCanvas(canvas);
    canvas.Pen().SetWidth(StepPenWidth);

    const float w = float((double(rect.Bottom) - rect.Top) / (double(n) * subs));
    const float stepW = float(double(w) * subs);
    ScaleStart = Round(rect.Top + double(n) * stepW);
    ScaleEnd = Round(rect.Bottom - double(n) * stepW);

    int32_t x;
    int32_t labelX;
    int32_t dir;
    toPos pos;
    if (posLeftTop_) {
        x = rect.Right;
        labelX = sat(int64_t(rect.Right) - StepLength - TextGap + 1);
        dir = -1;
        pos = toMidRight;
    } else {
        x = rect.Left;
        labelX = sat(int64_t(rect.Left) + StepLength + TextGap);
        dir = 1;
        pos = toMidLeft;
    }
    const int32_t stepEnd = sat(int64_t(x) + int64_t(dir) * StepLength);
    const int32_t subEnd = sat(int64_t(x) + int64_t(dir) * SubStepLength);
    if (drawLine_) line(canvas, {x, ScaleStart}, {x, ScaleEnd});

    QString labels = Labels;
    for (int32_t i = 0; i < n; ++i) {
        const double base = double(i) * stepW;
        const int32_t y = Round(rect.Top + base);
        canvas.Pen().SetWidth(StepPenWidth);
        line(canvas, {x, y}, {stepEnd, y});
        KxTextOut(canvas, labelX, y, KxStrToken(labels, u';'), pos);
        canvas.Pen().SetWidth(SubStepPenWidth);
        if (LogScale) {
            // Values fall downward, so the decade's marks are mirrored from the step below.
            const int32_t next = Round(rect.Top + double(i + 1) * stepW);
            for (int32_t k = 0; k < subs; ++k) {
                const int32_t ys = sat(int64_t(next) - Round(decadeMark(subs - k, subs) * stepW));
                line(canvas, {x, ys}, {subEnd, ys});
            }
        } else {
            for (int32_t k = 0; k < subs; ++k) {
                const int32_t ys = Round(rect.Top + double(k) * w + base);
                line(canvas, {x, ys}, {subEnd, ys});
            }
        }
    }
    KxTextOut(canvas, labelX, ScaleStart, KxStrToken(labels, u';'), pos);
    canvas.Pen().SetWidth(StepPenWidth);
    line(canvas, {x, ScaleStart}, {stepEnd, ScaleStart});
}

void TScaleSettings::setRoundTickLengths(int32_t radius) {
    StepLength = Div(radius, 8);
    SubStepLength = StepPenWidth == 1 ? Div(StepLength, 2) : Round(StepLength / 1.4);
}

void TScaleSettings::noRoom(TRect& rect, TPoint centre) {
    StepLength = 0;
    SubStepLength = 0;
    ScaleCenter = KxCenterPoint(rect);
    RingCenter = centre;
    rect = TRect{centre.X, centre.Y, centre.X, centre.Y};
    ArcRect = rect;
    ArcStart = centre;
    ArcEnd = centre;
}

void TScaleSettings::drawRing(TCanvas& canvas, const RingGeometry& g, int32_t startAngle,
                              int32_t angleSpan) {
    const int32_t n = stepCount();
    const int32_t subs = subSteps_;
    const TPoint m = g.centre;
    auto turned = [&](int32_t y) { return KxRotate(TPoint{m.X, y}, m, float(startAngle), true); };
    const TPoint label = turned(g.labelY);
    const TPoint outer = turned(g.outerY);
    const TPoint inner = turned(g.innerY);
    const TPoint sub = turned(g.subY);
    auto at = [&](TPoint p, float angle) { return KxRotate(p, m, angle, true); };

    const float w = float(double(angleSpan) / (double(n) * subs));
    const float stepW = float(double(subs) * w);
    QString labels = Labels;
    auto drawLabel = [&](float angle) {
        const QString text = KxStrToken(labels, u';');
        if (text.isEmpty()) return;
        const TPoint p = at(label, angle);
        KxTextOut(canvas, p.X, p.Y, text, toMidCenter);
    };
    auto drawTick = [&](float angle) {
        canvas.Pen().SetWidth(StepPenWidth);
        line(canvas, at(outer, angle), at(inner, angle));
    };

    for (int32_t i = 0; i < n; ++i) {
        const float a = float(double(i) * stepW);
        drawLabel(a);
        drawTick(a);
        canvas.Pen().SetWidth(1);
        for (int32_t k = 1; k < subs; ++k) {
            const double offset = LogScale ? decadeMark(k, subs) * stepW : double(k) * w;
            const float angle = float(Round(double(a) + offset));
            line(canvas, at(inner, angle), at(sub, angle));
        }
    }
    if (angleSpan != 360) drawLabel(float(angleSpan));
    drawTick(float(angleSpan));

    RingCenter = m;
    ArcStart = at(inner, float(angleSpan));
    ArcEnd = outer;
}

void TScaleSettings::RoundScala(TCanvas& canvas, TRect& rect, int32_t startAngle,
                                int32_t angleSpan) {
    prepareCanvas(canvas);
    const TPoint c = KxCenterPoint(rect);
    const int64_t width = int64_t(rect.Right) - rect.Left;
    const int32_t r = sat((width - 2 * int64_t(TextGap)) / 2 - Div(MaxTextWidth, 2) + TextGap);
    const int32_t cy = sat(int64_t(rect.Top) + r + Div(MaxTextHeight, 2));
    const TPoint m{c.X, cy};
    setRoundTickLengths(r);
    const int64_t half = int64_t(r) - Div(MaxTextWidth, 2);
    if (half < 1 || int64_t(r) - TextGap - StepLength < 0) return noRoom(rect, m);

    RingGeometry g;
    g.centre = m;
    g.labelY = sat(int64_t(cy) - r);
    g.outerY = sat(int64_t(g.labelY) + TextGap);
    g.innerY = sat(int64_t(g.outerY) + StepLength);
    g.subY = sat(int64_t(g.innerY) - SubStepLength);
    drawRing(canvas, g, startAngle, angleSpan);
    ScaleCenter = c;

    const int64_t s = half + Div(StepPenWidth, 2);
    const int32_t grow = StepPenWidth == 1 ? 1 : 0;
    rect = TRect{sat(m.X - s), sat(m.Y - s), sat(m.X + s + grow), sat(m.Y + s + grow)};
    ArcRect = KxMultiBorderRect(rect, StepLength, StepLength, StepLength, StepLength);
    ArcRect.Bottom = sat(int64_t(ArcRect.Bottom) + 1);
}

void TScaleSettings::DialScala(TCanvas& canvas, TRect& rect, int32_t startAngle,
                               int32_t angleSpan) {
    prepareCanvas(canvas);
    const TPoint m = KxCenterPoint(rect);
    const int32_t outerRadius = KxGetRadius(rect);
    setRoundTickLengths(outerRadius);
    const int64_t labelR = int64_t(outerRadius) - TextGap;
    const int64_t tickR = labelR - TextGap;
    const int64_t rootR = tickR - StepLength;
    const int64_t knobR = rootR - EdgeMargin;
    if (knobR < 1) return noRoom(rect, m);

    RingGeometry g;
    g.centre = m;
    g.labelY = sat(m.Y - labelR);
    g.outerY = sat(m.Y - tickR);
    g.innerY = sat(m.Y - rootR);
    g.subY = sat(int64_t(g.innerY) - SubStepLength);
    drawRing(canvas, g, startAngle, angleSpan);
    ScaleCenter = m;

    auto square = [&](int64_t radius) {
        return TRect{sat(m.X - radius), sat(m.Y - radius), sat(m.X + radius + 1),
                     sat(m.Y + radius + 1)};
    };
    rect = square(knobR);
    ArcRect = square(rootR);
}

}  // namespace kx
