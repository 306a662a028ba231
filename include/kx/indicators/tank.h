#pragma once
// TKxTank: a vessel whose liquid level shows the reading. The vessel is an upright
// cylinder with domed ends or a rectangular tank, shaded across its width like a 3-D
// body (dark edges, a highlight left of the centre), the liquid shaded the same way.
// Beside it stand an optional scale, the markers of the recorded minimum and maximum and,
// across it, the two limit lines; a boxed readout with the unit sits above or below it,
// the two name lines at the bottom.
//
// Layout (Paint), from the client rectangle inward: the outer bevel, the name lines at
// the bottom (Name2 lowest, PaintNames), the readout row (the TKxValInd box, and the unit
// in Font 3 pixels to its right, the pair centred) at the top or, without ValueTop, at the
// bottom, 3 pixels away from the rest, the inner bevel; what is left is the instrument
// area (Area()). In it, 3 pixels in from each side, left to right: the vessel, a 2-pixel
// gap, the marker column (StepLength + 2 wide), a 2-pixel gap and the scale
// (ScaleSettings.ScaleThickness wide, VertiScala, labels to the right); with
// ScaleSettings.PosLeftTop the row is mirrored (scale with its labels left, marker
// column, vessel). Without opScale the vessel takes the scale's room too.
//  - The vessel (Vessel()) is as high as the area less 3 pixels at both ends. Its ends
//    (each EndHeight() high) are half ellipses on the cylinder and flat on the
//    rectangular tank; between them lies the straight part, whose bottom and top rows are
//    the reading's 0 and 1000 per mille (the scale's lowest and highest ticks). An end is
//    at least 3 / 106 of the vessel high, so the stops at -30 and 1030 per mille stay
//    inside the vessel; the cylinder's domes are at least a fifth of its width high.
//    With a scale the straight part keeps half a label height (+ 1) from the area's
//    edges, so the end labels stay inside.
//  - The vessel is outlined one pixel wide in a darkened TankColor; its inside is shaded
//    column by column in TankColor (empty) or the liquid colour (full).
//  - The liquid fills the vessel's inside from the level row down: level row =
//    bottom of the straight part - Round(f x position), f = straight length / 1000 in
//    single precision, position = PointerPosition() (so beyond the range the level stops
//    30 per mille past either end), held inside the vessel. The level row and the row
//    below it are the surface band, a lighter shade of the liquid.
//  - With opLimitLines each limit whose per-mille position lies in 0..1000 is a one-pixel
//    line across the vessel's inside, 2 pixels past its outline on both sides, in
//    LimitLowerColor / LimitUpperColor, over the liquid and the empty part alike.
//  - Markers: half triangles in the marker column, their point towards the vessel, their
//    straight edge at the recorded position (clamped to 0..1000); the minimum's body
//    lies below that edge, the maximum's above it. Outlined black, filled in MinColor /
//    MaxColor or, with UseSectorCol, the sector colour of their position; shown by
//    MinMax.MinVisible / MaxVisible.
//
// Painting: Paint draws the static parts (bevels, names, readout frame and unit, scale,
// the empty vessel, the limit lines) once and caches the instrument area (Background())
// and the vessel drawn full of liquid (FullVessel()). A reading composes on a work copy
// of the area: the rows of the vessel between the old and the new level (surface bands
// included) are copied from the two caches (above the new level from the empty one, from
// it down from the full one), the surface band is drawn, the markers are restored and
// redrawn where they moved; each changed rectangle then goes to the surface in one copy,
// and the number is redrawn in its box (TKxValInd::DrawValue, one copy). Nothing else is
// repainted. Only a change of the liquid's colour (opSector, on a sector transition)
// re-renders the full cache and copies the whole vessel.
//
// Blinking: with opOverflow a reading beyond either end makes the surface band blink
// yellow and red (BlinkColor1/2); with opLimit a limit violation puts the tank in the
// blink list as well, and the band blinks too when opOverflow is set (as the linear
// meters' pointer does). When the blinking stops the band is redrawn at once in its own
// colour. At design time (Designing()) nothing blinks.
//
// Published properties, in declaration order (besides those of TKxAnalogGControl):
//  - BevelInner (TKxSBevel): bsLowered, blInner, Spacing 5, Width 2.
//  - BevelOuter (TKxSBevel): bsRaised, blOuter, Spacing 5, Width 2.
//  - LiquidColor (TColor): RGB(30, 110, 220).
//  - LimitLowerColor (TColor): RGB(255, 140, 0).
//  - LimitUpperColor (TColor): clRed.
//  - Options (int, TTankOption bits): all but opSector.
//  - ScaleSettings (TScaleSettings): the scale engine's defaults, its font Arial 10.
//  - TankColor (TColor): clSilver, the empty vessel.
//  - TankShape (int, TTankShape): tsCylinder; other values are ignored.
//  - ValInd (TKxValInd): the readout box; its FormatStr formats the number and sizes the
//    box (unless SampleText is set), its Font, Color, Bevel, Caption and offsets apply.
//  - ValueTop (bool): true, the readout row above the vessel; false puts it below.
// The colours are also published as Qt-style lower-case setters for uic, and the settings
// objects flat (BevelInner_Width, ScaleSettings_Steps, ValInd_FormatStr, ...).
//
// Options (TTankOption, bit n = option n): opBevelInner, opBevelOuter, opName1, opName2,
// opUnit (the unit beside the box, or alone in the readout row), opValue (the box),
// opScale, opLimitLines, opSector (the liquid takes the colour of the sector that holds
// the reading, LiquidColor outside the sectors), opOverflow, opLimit.
//
// Choices:
//  - The tank has no AutoSize: the vessel takes whatever room the control gives it.
//    Default size 140 x 240.
//  - The readout row is left out when it is wider than the room inside the outer bevel
//    or higher than a third of it. The scale is left out when the vessel would be
//    narrower than 8 pixels with it, or when the straight part is shorter than the
//    scale's ScaleMinLength (its labels would overlap).
//  - Too small: a vessel under 5 pixels wide or with a straight part under 2 pixels high
//    (or an area under 2 pixels either way) draws no vessel, liquid, markers or
//    limit lines and does not blink; the static parts that fit are drawn.
//  - Settings changes (every owned object, the colours, shape and options) repaint the
//    tank; a change of a limit repaints it when the limit lines are shown.
//  - The liquid colour follows the sectors only with opSector; then a reading that moves
//    into another sector redraws the whole vessel (the only reading that does).
//
// Bad input: NaN readings are ignored by the value model; infinite and far out-of-range
// readings put the level at the stops (-30 / 1030 per mille); descending, empty and
// logarithmic ranges give defined positions; all geometry is saturated 32-bit arithmetic,
// so sizes from 1 x 1 to 4000 x 4000 draw inside the control. Bevels with negative spacings
// widen the inner rectangle; the vessel is laid out in its overlap with the control.
#include <array>
#include <vector>

#include "kx/framework/analogcontrol.h"
#include "kx/framework/sbevel.h"
#include "kx/framework/scalesettings.h"
#include "kx/framework/valind.h"
#include "kx/host/bitmap.h"

namespace kx {

class TKxTank : public TKxAnalogGControl {
    Q_OBJECT
    Q_PROPERTY(kx::TKxSBevel* BevelInner READ BevelInner WRITE SetBevelInner DESIGNABLE false)
    Q_PROPERTY(kx::TKxSBevel* BevelOuter READ BevelOuter WRITE SetBevelOuter DESIGNABLE false)
    Q_PROPERTY(QColor LiquidColor READ QLiquidColor WRITE setLiquidColor)
    Q_PROPERTY(QColor LimitLowerColor READ QLimitLowerColor WRITE setLimitLowerColor)
    Q_PROPERTY(QColor LimitUpperColor READ QLimitUpperColor WRITE setLimitUpperColor)
    Q_PROPERTY(int Options READ Options WRITE setOptions)
    Q_PROPERTY(kx::TScaleSettings* ScaleSettings READ ScaleSettings WRITE SetScaleSettings
                   DESIGNABLE false)
    Q_PROPERTY(QColor TankColor READ QTankColor WRITE setTankColor)
    Q_PROPERTY(int TankShape READ TankShape WRITE setTankShape)
    Q_PROPERTY(kx::TKxValInd* ValInd READ ValInd WRITE SetValInd DESIGNABLE false)
    Q_PROPERTY(bool ValueTop READ ValueTop WRITE setValueTop)
  public:
    enum TTankShape : int32_t { tsCylinder, tsRectangular };
    Q_ENUM(TTankShape)
    enum TTankOption : int {
        opBevelInner,
        opBevelOuter,
        opName1,
        opName2,
        opUnit,
        opValue,
        opScale,
        opLimitLines,
        opSector,
        opOverflow,
        opLimit
    };
    Q_ENUM(TTankOption)
    using TTankOptions = uint16_t;
    static constexpr TTankOptions TankOption(TTankOption o) { return TTankOptions(1u << o); }
    static constexpr TTankOptions kAllTankOptions = 0x7FF;
    static constexpr TTankOptions kDefaultTankOptions = kAllTankOptions & ~(1u << opSector);

    explicit TKxTank(QWidget* parent = nullptr);
    ~TKxTank() override;

    // The settings setters copy the given object; null is ignored.
    TKxSBevel* BevelInner() const { return bevelInner_; }
    void SetBevelInner(const TKxSBevel* v);
    TKxSBevel* BevelOuter() const { return bevelOuter_; }
    void SetBevelOuter(const TKxSBevel* v);
    TColor LiquidColor() const { return liquidColor_; }
    void SetLiquidColor(TColorArg v);
    TColor LimitLowerColor() const { return limitLowerColor_; }
    void SetLimitLowerColor(TColorArg v);
    TColor LimitUpperColor() const { return limitUpperColor_; }
    void SetLimitUpperColor(TColorArg v);
    TTankOptions Options() const { return options_; }
    // Clearing the option that made the tank blink stops the blinking at once.
    void SetOptions(TTankOptions v);
    bool HasOption(TTankOption o) const { return options_ & TankOption(o); }
    TScaleSettings* ScaleSettings() const { return scaleSettings_; }
    void SetScaleSettings(const TScaleSettings* v);
    TColor TankColor() const { return tankColor_; }
    void SetTankColor(TColorArg v);
    TTankShape TankShape() const { return tankShape_; }
    void SetTankShape(TTankShape v);
    TKxValInd* ValInd() const { return valInd_; }
    void SetValInd(const TKxValInd* v);
    bool ValueTop() const { return valueTop_; }
    void SetValueTop(bool v);

    // Qt-style names for uic, which calls "set" + the property name.
    QColor QLiquidColor() const { return EncodeQColor(LiquidColor()); }
    void setLiquidColor(const QColor& v) { SetLiquidColor(v); }
    QColor QLimitLowerColor() const { return EncodeQColor(LimitLowerColor()); }
    void setLimitLowerColor(const QColor& v) { SetLimitLowerColor(v); }
    QColor QLimitUpperColor() const { return EncodeQColor(LimitUpperColor()); }
    void setLimitUpperColor(const QColor& v) { SetLimitUpperColor(v); }
    void setOptions(int v) { SetOptions(TTankOptions(v)); }
    QColor QTankColor() const { return EncodeQColor(TankColor()); }
    void setTankColor(const QColor& v) { SetTankColor(v); }
    void setTankShape(int v) {
        if (v == tsCylinder || v == tsRectangular) SetTankShape(TTankShape(v));
    }
    void setValueTop(bool v) { SetValueTop(v); }

    KX_FLAT_SBEVEL(BevelInner, BevelInner())
    KX_FLAT_SBEVEL(BevelOuter, BevelOuter())
    KX_FLAT_SCALESETTINGS(ScaleSettings, ScaleSettings())
    KX_FLAT(QString, ValInd_FormatStr, ValInd(), FormatStr)
    KX_FLAT_COLOR(ValInd_Color, ValInd(), Color)
    KX_FLAT_FONT(ValInd_Font, ValInd()->Font())
    KX_FLAT(int, ValInd_OffsetX, ValInd(), OffsetX)
    KX_FLAT(int, ValInd_OffsetY, ValInd(), OffsetY)

    void Loaded() override;

    // Geometry and state of the last Paint and reading, in control coordinates.
    TRect Area() const { return area_; }
    // The vessel with its outline.
    TRect Vessel() const { return vessel_; }
    // Rows of the straight part's top (1000 per mille) and bottom (0 per mille).
    int32_t LevelTop() const { return levelTop_; }
    int32_t LevelBottom() const { return levelBottom_; }
    int32_t EndHeight() const { return endHeight_; }
    TRect MarkerColumn() const { return markerColumn_; }
    TRect ScaleRect() const { return scaleRect_; }
    // The readout's number box of the last Paint (empty: none drawn).
    TRect ValueBox() const { return valueBox_; }
    bool TooSmall() const { return tooSmall_; }
    // The level row (the top row of the liquid, the surface band's first row) for a
    // per-mille position, held between the first inside row (full) and the bottom outline
    // row (empty).
    int32_t LevelRow(int32_t ppt) const;
    // The inside of the vessel on row y: columns [first, second); empty outside it.
    std::pair<int32_t, int32_t> Inside(int32_t y) const;
    // The level row of the last reading drawn; -1 after a Paint until the next one.
    int32_t LastLevel() const { return lastLevel_; }
    // The two markers (three points each) as last drawn.
    const std::array<TPoint, 6>& Markers() const { return markers_; }
    // The liquid colour the full cache was drawn in (clNone before the first reading).
    TColor LiquidShown() const { return fullColor_; }
    bool Blinking() const { return blinking_; }
    TColor BlinkColor() const { return blinkColor_; }
    const TBitmap& Background() const { return background_; }
    const TBitmap& FullVessel() const { return full_; }
    // The shade of column x (0 .. width - 1) of a body width pixels across in base.
    static TColor Shade(TColor base, int32_t x, int32_t width);

  protected:
    void ParamChange(QObject* sender) override;
    void LogScaleChanged() override;
    void Paint() override;
    void ValueChange() override;
    void OverflowChange(int32_t ppt) override;
    void LimitChange() override;
    void WMFlash(TMessage& message) override;

  private:
    struct TRowSpan {
        int32_t Outer0 = 0, Outer1 = 0;  // the vessel with its outline
        int32_t In0 = 0, In1 = 0;        // its inside
    };
    void hookSettings();
    void requestRepaint();
    bool shown() const;
    void measure(TCanvas& c);
    void layoutVessel(const TRect& area);
    void paintVessel(TCanvas& c, TPoint at, TColor base);
    void paintLimitLines(TCanvas& c, TPoint at);
    void renderFull(TColor liquid);
    TColor liquidNow() const;
    void drawLevel(TCanvas& canvas);
    void drawNumber();
    void fillBand(TCanvas& c, TPoint at, int32_t level, TColor color) const;
    void startOrStopBlinking();

    TKxSBevel* bevelInner_;
    TKxSBevel* bevelOuter_;
    TColor liquidColor_;
    TColor limitLowerColor_;
    TColor limitUpperColor_ = clRed;
    TTankOptions options_ = kDefaultTankOptions;
    TScaleSettings* scaleSettings_;
    TColor tankColor_ = clSilver;
    TTankShape tankShape_ = tsCylinder;
    TKxValInd* valInd_;
    bool valueTop_ = true;

    // Layout of the last Paint.
    TNameSizes names_;
    int32_t unitW_ = 0, unitH_ = 0;
    TRect area_{}, vessel_{}, markerColumn_{}, scaleRect_{}, valueBox_{};
    int32_t levelTop_ = 0, levelBottom_ = 0, endHeight_ = 0;
    bool tooSmall_ = true;
    bool leftTop_ = false;
    std::vector<TRowSpan> rows_;                   // one per vessel row, from vessel_.Top
    int32_t paintedLower_ = 0, paintedUpper_ = 0;  // limit positions in the caches
    // Caches and composition.
    TBitmap background_;  // the instrument area, vessel empty
    TBitmap full_;        // the vessel's box, full of liquid
    TBitmap slab_;        // the column shading of one body
    TBitmap work_;        // the instrument area as composed
    TColor fullColor_ = clNone;
    int32_t lastLevel_ = -1;
    std::array<TPoint, 6> markers_{};
    std::array<TRect, 2> lastMarks_{};
    // What the markers showed last (rows and fill colours; clNone: hidden).
    struct TMarkState {
        int32_t MinY = 0, MaxY = 0;
        TColor MinColor = clNone, MaxColor = clNone;
        bool operator==(const TMarkState&) const = default;
    };
    TMarkState lastMarkState_{};
    bool blinking_ = false;
    TColor blinkColor_ = clRed;
    int32_t drawing_ = 0;  // depth of ValueChange runs (they nest on new extremes)
};

}  // namespace kx
