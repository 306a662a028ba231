#pragma once
// Flex meters: TKxFlexHMeter and TKxFlexVMeter show a reading on a straight scale with a
// triangular pointer, like the linear meters, but they are never auto-sized: they lay
// their scale, pointer and texts out to whatever size the layout gives them, from a
// few pixels up to wall-sized panels. Tick lengths, the pointer and the label size follow
// the control's size; the label step is chosen anew (1-2-5 series) so that labels never
// overlap at any length.
//
// Layout (Paint), from the client rectangle inward:
//  1. The outer bevel (opBevelOuter), filled.
//  2. The name lines at the bottom (opName1, opName2; Name2 lowest), in Font, when they
//     leave the inner bevel (with opBevelInner) and 2 x kTickBand pixels of height above
//     them; else neither: the names yield to the instrument.
//  3. The inner bevel (opBevelInner), filled, when it leaves a non-empty inside.
//  4. The header at the top of what is left: the value box (ValInd, opValue and
//     ValInd.Visible) with the unit (opUnit, FontUnit) e pixels to its right (e = the
//     unit's height div 3), the pair centred; without the box the unit alone, centred.
//     The header is ValInd's box height (or the unit's) + 2 high; it takes the first of
//     box and unit, the unit alone, the box alone that is no wider than the rest and no
//     higher than a third (TKxFlexHMeter) / a quarter (TKxFlexVMeter) of it.
//  5. The rest is the pointer area (PointerArea(), cached as the background). Across the
//     scale it is the band of depth u (TKxFlexHMeter: its height; TKxFlexVMeter: its
//     width); along the scale it is the length A.
// In the pointer area, from the pointer's side to the labels' side, stand the pointer
// strip (T deep), the base line, the ticks (T long, sub-ticks T div 2) with the sector
// bands along the base line, a gap g = max(1, Hl div 5) and the labels (Hl high); the
// stack is centred across the band. TKxFlexHMeter: pointer above, tip down, labels below;
// range start on the left. TKxFlexVMeter: pointer on the left, tip right, labels on the
// right; range start at the bottom.
//  - T = clamp(Round(u x 0.2), 2, 64) (TKxFlexHMeter), clamp(Round(u x 0.15), 2, 64)
//    (TKxFlexVMeter); the pointer is T deep and T wide (half-width k = T div 2).
//  - Label height Hl starts at Round(u x 0.3) (H) / Round(u x 0.2) (V), at most the pixel
//    height of Scale.Font (whose Size therefore caps the labels' growth; face, style and
//    colour come from it too). It shrinks until the two end labels fit along the scale
//    with 1.4 label widths between them (H), or until the widest label fits across beside
//    the ticks (V; when a label between the ends is wider, the layout runs again with
//    smaller labels). Labels under kMinLabel pixels high are left out.
//  - The first and last ticks (ScaleStart/ScaleEnd) stand in from the ends of the area by
//    m = max(k + 3% of A, half the label extent along the scale) + 1, so that a pointer
//    at either stop (-30 / 1030 per mille) stays in sight.
// Too small (TooSmall()): a band under kMinBand or a length under 2 x kMinBand pixels:
// then only the bevels, names and header are drawn, no scale and no pointer. Otherwise
// the parts go in this order as the control shrinks: first the labels (see Hl), then the
// sub-ticks (band under kSubTickBand, or closer than Scale.SubStepsVis pixels), then the
// scale (band under kTickBand: base line and ticks go, the pointer stays).
//
// Scale (TKxFlexScale):
//  - Steps (labelled, long ticks): with Scale.SubStepAt = 0 the smallest step of the
//    1-2-5 series (... 0.5, 1, 2, 5, 10 ...) at which the labels keep 1.4 label extents
//    (TKxFlexHMeter: widths, TKxFlexVMeter: heights) apart; without labels, at which the
//    ticks stay at least kMinTickPitch pixels apart. Ticks stand at the multiples of the
//    step within the range, so the range ends are not necessarily labelled. Sub-ticks
//    divide a step into Scale.StepMulti parts when that is > 1, else into its series'
//    natural parts (5 for a 1 or 5 step, 4 for a 2 step).
//  - With Scale.SubStepAt > 0 sub-ticks stand every SubStepAt and steps every StepMulti
//    sub-ticks; when those steps' labels would overlap, only every n-th step is labelled
//    (n from 1, 2, 5, 10, ...); steps closer than kMinTickPitch fall back to automatic.
//  - More than 20000 sub-ticks over the range are not drawn: the steps stay alone.
//  - Logarithmic (LogScale): steps on the decades, every n-th one labelled (n from
//    1, 2, 5, 10, ...); sub-ticks at 2..9 of each decade when their closest pair is at
//    least Scale.SubStepsVis apart. Labels between 0.1 and 100000 use FormatStr, the others
//    the exponent form "0e-0".
//  - Ticks are drawn with Scale.StepLines.Pen / SubStepLines.Pen (width at most T div 2,
//    at least 1), the base line with the step pen, when the lines are Visible.
//  - Labels: FormatFloat(Scale.FormatStr, value) in the label font. Each label has a cell
//    (H: the widest label's width centred on its tick, Hl high; V: the widest label's
//    width beside the ticks, Hl high centred on its tick); Scale.TextAlignment picks the
//    point of the cell the text is anchored at (toMidCenter: centred in it), then
//    TextOffsetX/Y shift it. Labels are clipped to the pointer area.
//  - Scale.Angle and AngleMode are not used: labels are always upright.
//  - Sector bands (opSector): along the base line on the ticks' side, SubStepLength +
//    SectorSettings.WidthOffset deep (at least 1), clipped to the first and last tick, by
//    KxDrawSectorBands.
//
// Painting: Paint draws the static parts and caches the pointer area. A reading
// (ValueChange) redraws the number in the value box (ValInd.DrawValue, off-screen, one
// copy) and composes the pointer and markers on a work copy of the cached area, restoring
// only what the old and new pointer and markers covered, and copies those rectangles to
// the surface; nothing else is repainted. Settings changes repaint everything.
//
// Pointer and markers: the pointer is an isosceles triangle T deep and T wide, filled in
// PointerColor (blink colours while an overflow blinks), outlined black; its tip is on
// the base line at the reading's position, which is held at the stops -30 and 1030 per
// mille (PointerPosition): a pointer beyond the range stands past the end ticks, in the
// margin kept for it. The markers of the recorded minimum and maximum
// (MinMax.MinVisible / MaxVisible, clamped to the range) are half triangles in the tick
// zone, their straight edge at the position and T long, k wide; the minimum's body
// towards the range start, the maximum's towards the end; outlined black, filled in
// MinColor / MaxColor, or with MinMax.UseSectorCol in the sector colour of their position.
//
// Blinking: with opOverflow a reading beyond either end makes the pointer blink yellow and
// red (BlinkColor1 / BlinkColor2) through the blink service; with opLimit a limit
// violation subscribes as well but the pointer keeps its colour (as the linear meters).
// When blinking stops, the pointer is redrawn at once in PointerColor. At design time
// nothing blinks.
//
// Published properties, in declaration order (besides those of TKxAnalogGControl):
//  - BevelInner (TKxSBevel): lowered, Spacing 5, Width 2, blInner.
//  - BevelOuter (TKxSBevel): raised, Spacing 5, Width 2, blOuter.
//  - Options (int, the bits of TFlexMeterOption): all nine.
//  - Scale (TKxFlexScale): Font Arial 36 bold black (the largest label size), FormatStr
//    "##0.#", StepLines black pen 2, SubStepLines black pen 1, TextAlignment toMidCenter,
//    offsets 0, SubStepAt 0 (automatic), StepMulti 1 (natural sub-division), SubStepsVis 4.
//  - FontUnit (TFont): Arial 10, black.
//  - PointerColor (TColor): clLime.
//  - ValInd (TKxValInd): its own defaults (Arial 10 bold lime on black, "##0.0").
// Sizes: TKxFlexHMeter 300 x 150, size policy Expanding x Preferred; TKxFlexVMeter
// 150 x 300, Preferred x Expanding. sizeHint is the current size.
//
// Options (TFlexMeterOption, bit n = option n): opBevelInner, opBevelOuter, opUnit,
// opName1, opName2, opOverflow, opLimit, opSector, opValue.
//
// Bad input: NaN readings are ignored by the value model; infinite and far out-of-range
// readings stand at the stops (-30 / 1030 per mille). A range that is empty, reversed or
// not finite draws the base line without ticks or labels; a range so wide or so far from
// zero that a step is lost in float precision draws at most one tick per kMinTickPitch
// pixels. All pixel arithmetic saturates, so any size from 1 x 1 to 4000 x 4000 and any
// bevel width stay inside the control.
#include <array>
#include <vector>

#include "kx/framework/analogcontrol.h"
#include "kx/framework/areacomposer.h"
#include "kx/framework/customscale.h"
#include "kx/framework/flatproperty.h"
#include "kx/framework/sbevel.h"
#include "kx/framework/valind.h"
#include "kx/host/bitmap.h"

namespace kx {

// The flat properties of a TKxFlexScale (see flatproperty.h); the tick pens are edited
// through their colour and width.
#define KX_FLAT_FLEXSCALE(Prefix, Object)                                                      \
    KX_FLAT_FONT(Prefix##_Font, (Object)->Font())                                              \
    KX_FLAT(QString, Prefix##_FormatStr, Object, FormatStr)                                    \
    KX_FLAT_COLOR(Prefix##_StepLines_Pen_Color, (Object)->StepLines()->Pen(), Color)           \
    KX_FLAT(int, Prefix##_StepLines_Pen_Width, (Object)->StepLines()->Pen(), Width)            \
    KX_FLAT(bool, Prefix##_StepLines_Visible, (Object)->StepLines(), Visible)                  \
    KX_FLAT_COLOR(Prefix##_SubStepLines_Pen_Color, (Object)->SubStepLines()->Pen(), Color)     \
    KX_FLAT(int, Prefix##_SubStepLines_Pen_Width, (Object)->SubStepLines()->Pen(), Width)      \
    KX_FLAT(bool, Prefix##_SubStepLines_Visible, (Object)->SubStepLines(), Visible)            \
    KX_FLAT_ENUM(Prefix##_TextAlignment, Object, TextAlignment, ::kx::toPos, ::kx::toBotRight) \
    KX_FLAT(int, Prefix##_TextOffsetX, Object, TextOffsetX)                                    \
    KX_FLAT(int, Prefix##_TextOffsetY, Object, TextOffsetY)                                    \
    KX_FLAT_SINGLE(Prefix##_SubStepAt, Object, SubStepAt)                                      \
    KX_FLAT(int, Prefix##_StepMulti, Object, StepMulti)                                        \
    KX_FLAT(int, Prefix##_SubStepsVis, Object, SubStepsVis)

// What both flex meters share; each orientation supplies its layout and shapes.
class TKxFlexMeter : public TKxAnalogGControl {
    Q_OBJECT
    Q_PROPERTY(kx::TKxSBevel* BevelInner READ BevelInner WRITE SetBevelInner DESIGNABLE false)
    Q_PROPERTY(kx::TKxSBevel* BevelOuter READ BevelOuter WRITE SetBevelOuter DESIGNABLE false)
    Q_PROPERTY(int Options READ Options WRITE setOptions)
    Q_PROPERTY(kx::TKxFlexScale* Scale READ Scale WRITE SetScale DESIGNABLE false)
    Q_PROPERTY(kx::TFont* FontUnit READ FontUnit WRITE SetFontUnit DESIGNABLE false)
    Q_PROPERTY(QColor PointerColor READ pointerColor WRITE setPointerColor)
    Q_PROPERTY(kx::TKxValInd* ValInd READ ValInd WRITE SetValInd DESIGNABLE false)
  public:
    enum TFlexMeterOption : int {
        opBevelInner,
        opBevelOuter,
        opUnit,
        opName1,
        opName2,
        opOverflow,
        opLimit,
        opSector,
        opValue
    };
    using TFlexMeterOptions = uint16_t;
    static constexpr TFlexMeterOptions FlexOption(TFlexMeterOption o) {
        return TFlexMeterOptions(1u << o);
    }
    static constexpr TFlexMeterOptions kAllFlexOptions = 0x1FF;

    // The documented size thresholds, in pixels.
    static constexpr int32_t kMinBand = 6;       // below: too small
    static constexpr int32_t kTickBand = 12;     // below: no base line or ticks
    static constexpr int32_t kSubTickBand = 20;  // below: no sub-ticks
    static constexpr int32_t kMinLabel = 8;      // smallest label height drawn
    static constexpr int32_t kMinTickPitch = 4;  // closest steps
    static constexpr int32_t kMaxTicks = 4000;   // sanity bound of one scale's ticks

    ~TKxFlexMeter() override;

    // The settings setters copy the given object; null is ignored.
    TKxSBevel* BevelInner() const { return bevelInner_; }
    void SetBevelInner(const TKxSBevel* v);
    TKxSBevel* BevelOuter() const { return bevelOuter_; }
    void SetBevelOuter(const TKxSBevel* v);
    TFlexMeterOptions Options() const { return options_; }
    // Stores (only the nine bits), stops a blink whose option was cleared, repaints.
    void SetOptions(TFlexMeterOptions v);
    bool HasOption(TFlexMeterOption o) const { return options_ & FlexOption(o); }
    TKxFlexScale* Scale() const { return scale_; }
    void SetScale(const TKxFlexScale* v);
    TFont* FontUnit() const { return fontUnit_; }
    void SetFontUnit(const TFont* v);
    TColor PointerColor() const { return pointerColor_; }
    void SetPointerColor(TColor v);
    TKxValInd* ValInd() const { return valInd_; }
    void SetValInd(const TKxValInd* v);

    void setOptions(int v) { SetOptions(TFlexMeterOptions(v)); }
    QColor pointerColor() const { return EncodeQColor(pointerColor_); }
    void setPointerColor(const QColor& c) { SetPointerColor(DecodeQColor(c)); }

    KX_FLAT_SBEVEL(BevelInner, BevelInner())
    KX_FLAT_SBEVEL(BevelOuter, BevelOuter())
    KX_FLAT_FLEXSCALE(Scale, Scale())
    KX_FLAT_FONT(FontUnit, FontUnit())

    void Loaded() override;
    // Composes markers and pointer on the background and copies what changed to canvas.
    void DrawPointer(TCanvas& canvas);

    // One tick of the last layout: its position along the scale in control pixels, and
    // whether it is a step (long tick) and carries a label.
    struct TTick {
        int32_t Pos = 0;
        bool Step = false;
        bool Labelled = false;
        QString Label;
    };
    // Geometry and state of the last Paint and reading (control coordinates).
    TRect PointerArea() const { return area_; }
    TRect HeaderRect() const { return header_; }
    // The pointer strip: where the pointer runs, T deep, the length of the area.
    TRect PointerStrip() const { return strip_; }
    // The base line's coordinate across (H: y, V: x); the first and last tick along.
    int32_t BaseLine() const { return base_; }
    int32_t ScaleStart() const { return scaleStart_; }
    int32_t ScaleEnd() const { return scaleEnd_; }
    int32_t TickLength() const { return tickLen_; }
    // Label pixel height (0: no labels) and the widest label's width.
    int32_t LabelHeight() const { return labelH_; }
    int32_t LabelWidth() const { return labelW_; }
    bool TooSmall() const { return tooSmall_; }
    bool ShowsTicks() const { return showTicks_; }
    bool ShowsSubTicks() const { return showSubTicks_; }
    bool ShowsValue() const { return showValue_; }
    bool ShowsUnit() const { return showUnit_; }
    bool ShowsNames() const { return showNames_; }
    const std::vector<TTick>& Ticks() const { return ticks_; }
    // The step's value (0 without ticks) and the labelled steps' interval in steps.
    double StepValue() const { return step_; }
    int32_t LabelEvery() const { return labelEvery_; }
    // The pointer and the two markers (three points each), in control coordinates.
    const std::array<TPoint, 3>& Pointer() const { return pointer_; }
    const std::array<TPoint, 6>& Markers() const { return markers_; }
    // The pointer's tip along the scale in the pointer area; -1 after a Paint until the
    // next reading, and after blinking stops.
    int32_t LastDrawnPosition() const { return lastDrawn_; }
    bool Blinking() const { return blinking_; }
    TColor BlinkColor() const { return blinkColor_; }
    const TBitmap& Background() const { return background_; }
    int32_t BandHeight() const;

  protected:
    TKxFlexMeter(QWidget* parent, bool upright);
    void ParamChange(QObject* sender) override;
    void LogScaleChanged() override;
    void Paint() override;
    void ValueChange() override;
    void OverflowChange(int32_t ppt) override;
    void LimitChange() override;
    void WMFlash(TMessage& message) override;
    void PointerFlash();

  private:
    void hookSettings();
    void requestRepaint();
    bool shown() const;
    void paintHeader(TCanvas& c, TRect& r);
    void layoutScale(TCanvas& c, int32_t labelCap);
    void chooseLabelFont(TCanvas& c, int32_t u, int32_t along, int32_t cap);
    void buildTicks(TCanvas& c);
    bool buildLinear(TCanvas& c, double from, double to, bool labels);
    void buildLog(TCanvas& c, double from, double to, bool labels);
    QString labelText(double v) const;
    int32_t posOf(double fraction) const;
    void paintScale(TCanvas& c);
    int32_t shapes(int32_t pos, int32_t minPos, int32_t maxPos, std::array<TPoint, 3>& p,
                   std::array<TPoint, 6>& m) const;

    const bool upright_;
    TKxSBevel* bevelInner_;
    TKxSBevel* bevelOuter_;
    TKxFlexScale* scale_;
    TFont* fontUnit_;
    TColor pointerColor_ = clLime;
    TKxValInd* valInd_;
    TFlexMeterOptions options_ = kAllFlexOptions;

    TFont labelFont_;
    TRect area_{}, header_{}, strip_{};
    int32_t base_ = 0, scaleStart_ = 0, scaleEnd_ = 0, tickLen_ = 0;
    int32_t labelH_ = 0, labelW_ = 0, labelTop_ = 0;
    bool tooSmall_ = true, showTicks_ = false, showSubTicks_ = false;
    bool showValue_ = false, showUnit_ = false, showNames_ = false;
    std::vector<TTick> ticks_;
    double step_ = 0;
    int32_t labelEvery_ = 1;

    TBitmap background_;
    TKxPointerComposer composer_;
    std::array<TPoint, 3> pointer_{};
    std::array<TPoint, 6> markers_{};
    bool blinking_ = false;
    TColor blinkColor_ = clRed;
    int32_t lastDrawn_ = -1;
    int32_t drawing_ = 0;  // depth of ValueChange runs (they nest on new extremes)
};

class TKxFlexHMeter : public TKxFlexMeter {
    Q_OBJECT
  public:
    explicit TKxFlexHMeter(QWidget* parent = nullptr);
};

class TKxFlexVMeter : public TKxFlexMeter {
    Q_OBJECT
  public:
    explicit TKxFlexVMeter(QWidget* parent = nullptr);
};

}  // namespace kx
