#pragma once
// TScaleSettings: the look of an instrument scale (colour, font, steps, label formats,
// side of the labels) and the routines that size and draw it as a straight horizontal,
// straight vertical, round or dial scale. The owner passes its value range to a size
// operation whenever the range, the font or the step counts change, then calls the
// matching draw operation on every paint and reads the pixel extents back from the
// public fields, so that its pointer lands on exactly the pixels of the drawn steps.
//
// Arithmetic: sub-step and step widths (or angles) are single precision; positions are
// computed from them in double and rounded half to even (kx::Round). Integer halves
// truncate toward zero (kx::Div). Coordinates are summed in 64 bits and saturated to the
// int32 range, so absurd rectangles or fields give clipped but defined results.
//
// Step count n of every draw operation: LogSteps in logarithmic mode, Steps otherwise.
// Because LogSteps is a public field it is limited here to 1..kMaxScaleSteps (the size
// operations never produce anything outside 1..20).
//
// Straight scales (HorizScala / VertiScala):
//  - Horizontal: ScaleStart = Rect.Left, ScaleEnd = Round(Left + n * W); step i at
//    Round(Left + i * W); with PosLeftTop the base line lies at Top + H div 2 + TextGap +
//    StepLength, ticks point up and labels are anchored toMidCenter at Rect.Top; without
//    it the base line is Rect.Top, ticks point down and labels are anchored toTopCenter
//    at Top + StepLength + TextGap. Per step: tick (StepPenWidth), label, sub-ticks
//    (SubStepPenWidth). After the loop the last label and the last tick (StepPenWidth)
//    at ScaleEnd.
//  - Vertical: steps run from Rect.Top downward, step i at Round(Top + i * W). The first
//    value of the range is at the bottom: ScaleStart = Round(Top + n * W), the y of the
//    lowest tick (for any real height this is Rect.Bottom), and ScaleEnd =
//    Round(Bottom - n * W), the top tick. The base line is x = Rect.Right with
//    PosLeftTop (ticks point left, labels toMidRight at Right - StepLength - TextGap + 1)
//    and x = Rect.Left without it (ticks point right, labels toMidLeft at Left +
//    StepLength + TextGap). The line runs from ScaleStart up to ScaleEnd. Logarithmic
//    sub-ticks k = 0 .. SubSteps - 1 (k = SubSteps would need log10(0)).
//
// Round scales (RoundScala), all rotations KxRotate(p, M, angle, clockwise = true),
// angles in degrees, 0 straight up, growing clockwise:
//  - C = KxCenterPoint(Rect), stored in ScaleCenter; R = (width - 2 TextGap) div 2 -
//    MaxTextWidth div 2 + TextGap; ring centre M = (C.X, Cy) with Cy = Rect.Top + R +
//    MaxTextHeight div 2 (so the top label touches Rect.Top and a half circle fits a flat
//    rectangle). Ticks and labels lie on circles about M, stored in RingCenter: the
//    needle pivots there, not on ScaleCenter.
//  - Reference points above M: label (M.X, Cy - R); outer tick end (M.X, Cy - R +
//    TextGap); inner tick end (M.X, Cy - R + TextGap + StepLength); sub-tick end
//    (M.X, inner.Y - SubStepLength). Each is rotated once by StartAngle (rounded to whole
//    pixels), and each drawn point is that rotated point rotated again by its angle
//    within the scale: i * W for step i, Round(...) whole degrees for sub-ticks, and
//    AngleSpan for the last step.
//  - Sub-ticks k = 1 .. SubSteps - 1 in both modes; logarithmic ones at Round(a +
//    log10(k * 10 / SubSteps) * W). They are drawn with a 1-pixel pen from the inner
//    tick end outward.
//  - The last label is drawn only when AngleSpan != 360. Empty label tokens (a label
//    list cleared by ClearLabels, or a list shorter than the steps) draw nothing.
//  - Results: with h = R - MaxTextWidth div 2 and s = StepPenWidth div 2, Rect becomes
//    the square (M.X - h - s, Cy - h - s, M.X + h + s, Cy + h + s); with StepPenWidth 1
//    its right and bottom edges lie one pixel further out, so that its pixels
//    M.X - h .. M.X + h are symmetric about M. Either way Left + Width div 2 = M.X and
//    Top + Height div 2 = Cy: the needle field built from Rect pivots on the ring
//    centre. ArcRect = Rect shrunk by StepLength on every side, its bottom one lower.
//    ArcStart = inner end of the last tick, ArcEnd = outer end of the first tick: an Arc
//    (counter-clockwise) from ArcStart to ArcEnd covers the scale.
//  - StepLength = R div 8; SubStepLength = StepLength div 2 with StepPenWidth 1, else
//    Round(StepLength / 1.4).
//  - R < 1 (no room for a ring): nothing is drawn, StepLength and SubStepLength become
//    0, Rect and ArcRect become the empty rectangle at M and both arc points are M;
//    ScaleCenter and RingCenter as above.
//
// Dial scales (DialScala) put the ticks round a knob: same parameters, fields and rules
// as RoundScala except the geometry:
//  - M = KxCenterPoint(Rect) (both axes), Ro = KxGetRadius(Rect) (half the shorter
//    side). Labels on the circle of radius Rl = Ro - TextGap, outer tick ends on
//    Rt = Rl - TextGap, StepLength = Ro div 8 (SubStepLength as above), tick roots on
//    Ri = Rt - StepLength, sub-ticks from the roots outward. The knob radius is
//    Rk = Ri - EdgeMargin.
//  - Results: Rect = the knob square (M.X - Rk, M.Y - Rk, M.X + Rk + 1, M.Y + Rk + 1),
//    ArcRect = the square of the tick roots (M.X - Ri, M.Y - Ri, M.X + Ri + 1,
//    M.Y + Ri + 1), ArcStart / ArcEnd as for RoundScala, ScaleCenter = RingCenter = M.
//  - Rk < 1: nothing is drawn; results as for RoundScala without room.
//
// Logarithmic ranges: LogFrom / LogTo are the exponents of the nearest decades
// (KxRoundLogValue): a bound <= 0 or NaN counts as 1 (exponent 0), and the exponents are
// limited to -400..400 so the decade span cannot overflow. A descending range gives the
// labels KxLogRangeStr makes for it (one label); the steps then draw empty labels.
// Linear NaN bounds give whatever FormatFloat writes for NaN.
#include <QString>
#include <cstdint>

#include "kx/framework/flatproperty.h"
#include "kx/framework/persistent.h"
#include "kx/host/canvas.h"
#include "kx/host/color.h"
#include "kx/host/graphics.h"
#include "kx/host/types.h"

namespace kx {

// Upper bound on the steps a draw operation runs (see above).
constexpr int32_t kMaxScaleSteps = 1000;

class TScaleSettings : public TKxPersistent {
    Q_OBJECT
    Q_PROPERTY(int Color READ Color WRITE SetColor)
    Q_PROPERTY(int PointerColor READ PointerColor WRITE SetPointerColor)
    Q_PROPERTY(bool DrawLine READ DrawLine WRITE SetDrawLine)
    Q_PROPERTY(kx::TFont* Font READ Font WRITE SetFont)
    Q_PROPERTY(bool PosLeftTop READ PosLeftTop WRITE SetPosLeftTop)
    Q_PROPERTY(int Steps READ Steps WRITE SetSteps)
    Q_PROPERTY(int SubSteps READ SubSteps WRITE SetSubSteps)
    Q_PROPERTY(QString ValueFormat READ ValueFormat WRITE SetValueFormat)
    Q_PROPERTY(QString ValueFormatLog READ ValueFormatLog WRITE SetValueFormatLog)
  public:
    explicit TScaleSettings(QObject* parent = nullptr);

    TColor Color() const { return color_; }
    void SetColor(TColorArg v);
    TColor PointerColor() const { return pointerColor_; }
    void SetPointerColor(TColorArg v);
    bool DrawLine() const { return drawLine_; }
    void SetDrawLine(bool v);
    // The owned font ("Arial", 14 points); never null. Its changes call Change (with
    // this object as sender).
    TFont* Font() const { return font_; }
    // Copies font into the owned one, which then reports the change; null is ignored.
    void SetFont(const TFont* font);
    bool PosLeftTop() const { return posLeftTop_; }
    void SetPosLeftTop(bool v);
    int32_t Steps() const { return steps_; }
    // 1..20; stored and notified even when unchanged; other values are ignored.
    void SetSteps(int32_t v);
    int32_t SubSteps() const { return subSteps_; }
    // 1..10; stored and notified even when unchanged; other values are ignored.
    void SetSubSteps(int32_t v);
    QString ValueFormat() const { return valueFormat_; }
    void SetValueFormat(const QString& v);
    QString ValueFormatLog() const { return valueFormatLog_; }
    void SetValueFormatLog(const QString& v);

    // To another TScaleSettings through its setters, in the order Color, DrawLine,
    // Font, PointerColor, PosLeftTop, Steps, SubSteps, ValueFormat, ValueFormatLog (so
    // the destination notifies at least for Font, Steps and SubSteps).
    void AssignTo(TKxPersistent* dest) const override;

    // The largest s with 1 < s <= steps that divides decades (a negative span counts by
    // its size); 1 when decades is 0, steps < 2 or there is no such s.
    static int32_t CalcLogScaleSteps(int32_t steps, int32_t decades);

    // Size operations: labels, label extents, tick measures, gap and extents.
    void CalcSize(TCanvas& canvas, double valueFrom, double valueTo);   // vertical
    void CalcHSize(TCanvas& canvas, double valueFrom, double valueTo);  // horizontal
    // Round: ascending labels, StepPenWidth, TextGap = max(w, h) div 2 + 1, EdgeMargin;
    // the tick lengths are set by the draw operation. Also LineWidth = StepPenWidth.
    void CalcRSize(TCanvas& canvas, double valueFrom, double valueTo);
    // A round or dial scale without labels: call after CalcRSize. Empties Labels and
    // sets MaxTextWidth, MaxTextHeight and TextGap to 0, so the ticks reach the rim.
    void ClearLabels();

    void HorizScala(TCanvas& canvas, const TRect& rect);
    void VertiScala(TCanvas& canvas, const TRect& rect);
    void RoundScala(TCanvas& canvas, TRect& rect, int32_t startAngle, int32_t angleSpan);
    void DialScala(TCanvas& canvas, TRect& rect, int32_t startAngle, int32_t angleSpan);

    // Computed fields, written by the size and draw operations and read by the owner.
    bool LogScale = false;  // set by the owner
    int32_t StepLength = 14;
    int32_t SubStepLength = 7;
    int32_t StepPenWidth = 2;
    int32_t SubStepPenWidth = 1;
    int32_t TextGap = 4;
    QString Labels;
    int32_t MaxTextWidth = 0;
    int32_t MaxTextHeight = 0;
    int32_t ScaleThickness = 0;  // across the scale (straight scales)
    int32_t ScaleMinLength = 0;  // along the scale (straight scales)
    int32_t EdgeMargin = 4;      // StepPenWidth div 2 + 3
    int32_t ScaleStart = 0;      // pixel of the first value (straight scales)
    int32_t ScaleEnd = 0;        // pixel of the last value (straight scales)
    int32_t LogFrom = 0;
    int32_t LogTo = 0;
    int32_t LogSteps = 1;
    // Round and dial results (see above).
    TPoint ScaleCenter;  // centre of the rectangle handed to RoundScala / DialScala
    TPoint RingCenter;   // centre of the circles of ticks and labels (the needle's pivot)
    TRect ArcRect;
    TPoint ArcStart;  // inner end of the last tick
    TPoint ArcEnd;    // outer end of the first tick
    // Pen width of the base line or arc the owner draws; the size operations set it to
    // StepPenWidth, an owner may overwrite it afterwards.
    int32_t LineWidth = 2;

  private:
    void hookFont();
    int32_t stepCount() const;
    // Steps 1 to 3 of every size operation.
    void prepareLabels(TCanvas& canvas, double valueFrom, double valueTo, bool vertical);
    // StepPenWidth, StepLength, SubStepLength, EdgeMargin from MaxTextHeight.
    void straightMeasures();
    void setRoundTickLengths(int32_t radius);
    void prepareCanvas(TCanvas& canvas) const;
    struct RingGeometry;
    void drawRing(TCanvas& canvas, const RingGeometry& g, int32_t startAngle, int32_t angleSpan);
    void noRoom(TRect& rect, TPoint centre);

    TColor color_ = clBlack;
    TColor pointerColor_ = clLime;
    bool drawLine_ = true;
    TFont* font_;  // child of this object
    bool posLeftTop_ = false;
    int32_t steps_ = 5;
    int32_t subSteps_ = 2;
    QString valueFormat_ = QStringLiteral("##0");
    QString valueFormatLog_ = QStringLiteral("0e-0");
};

// The flat properties of a TScaleSettings (see flatproperty.h).
#define KX_FLAT_SCALESETTINGS(Prefix, Object)                   \
    KX_FLAT_COLOR(Prefix##_Color, Object, Color)                \
    KX_FLAT_COLOR(Prefix##_PointerColor, Object, PointerColor)  \
    KX_FLAT(bool, Prefix##_DrawLine, Object, DrawLine)          \
    KX_FLAT_FONT(Prefix##_Font, (Object)->Font())               \
    KX_FLAT(bool, Prefix##_PosLeftTop, Object, PosLeftTop)      \
    KX_FLAT(int, Prefix##_Steps, Object, Steps)                 \
    KX_FLAT(int, Prefix##_SubSteps, Object, SubSteps)           \
    KX_FLAT(QString, Prefix##_ValueFormat, Object, ValueFormat) \
    KX_FLAT(QString, Prefix##_ValueFormatLog, Object, ValueFormatLog)

}  // namespace kx
