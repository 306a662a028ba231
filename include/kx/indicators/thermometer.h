#pragma once
// TKxThermometer: an upright glass tube with a rounded top and a bulb at the bottom,
// filled from the bulb up to the reading in the liquid colour, with a straight scale
// beside it, half-triangle markers at the recorded minimum and maximum on the tube's
// other side, the unit at the top, two name lines at the bottom and two bevels.
//
// Layout (Paint), from the client rectangle inward: the outer bevel (opBevelOuter), the
// name lines at the bottom (Name2 lowest, each centred, in Font), the inner bevel
// (opBevelInner, filled), the unit (opUnit, FontUnit, centred on the control) at the top
// of what is left; the rest is the instrument area. In it, one block is centred
// horizontally: the marker room (T + 2 wide), the tube (TubeWidth), a gap of 2 and the
// scale (ScaleSettings.ScaleThickness wide, labels away from the tube); with
// ScaleSettings.PosLeftTop the block is mirrored (scale left, markers right).
//  T = ScaleSettings.StepLength, H = ScaleSettings.MaxTextHeight (after CalcSize).
//  - TubeWidth = max(4, Round(H * 0.6)); the bulb is a circle of 2 x TubeWidth centred
//    under the tube, its bottom at the area's bottom; the tube's top is a half circle at
//    the area's top.
//  - The scale runs along the tube between the cap and the bulb, shortened so that 30
//    per mille of its length stays free above the top tick and below the bottom tick
//    (L = (room) x 1000 / 1060, room = bulb top - cap bottom); the top tick lies at
//    least H div 2 below the area's top so the top label stays inside.
//  - The liquid column fills the tube's bore (the tube less a wall of TubeWidth div 5,
//    at least 1, on each side) from the bulb up to the level of the reading: the level
//    of per mille p is ScaleStart - Round(f x p), f = (ScaleStart - ScaleEnd) / 1000.
//    Readings beyond the range stop at PointerPosition's stops: 30 per mille above the
//    top tick, or 30 per mille below the bottom tick (just above the bulb).
//  - Markers: half triangles whose horizontal edge lies at the recorded position and
//    whose point, T away from their upright edge, ends 2 pixels from the tube; the
//    minimum's body lies below its edge, the maximum's above. Outlined black, filled in
//    MinColor / MaxColor, or with MinMax.UseSectorCol in the sector colour of their
//    position; each only when MinVisible / MaxVisible. They stand at the recorded
//    extremes clamped to the range.
//
// Painting: Paint draws the static parts (bevels, names, unit, glass tube with its
// shading, the bulb full of liquid, the scale) and caches the instrument's moving strip
// (markers and tube) as the background. A reading composes on a work copy of it,
// restoring only the rows between the old and the new level of the column and the old
// and new markers (only when they moved or changed colour), then copies just those
// rectangles to the surface. The bulb is redrawn (with the whole strip) only when the
// liquid's colour changes (a sector change with opSectorColor); the whole column is
// recomposed when blinking starts or stops.
//
// Blinking: with opOverflow a reading beyond either end, with opLimit a reading beyond
// LimitUpper / LimitLower make the column (tube part, not the bulb) blink yellow and red
// (blink service, code 4). Unlike the linear meter's pointer, the column changes colour
// on a limit violation too, since it has nothing else to show it with. When the blinking
// stops the column is redrawn at once in its liquid colour. At design time nothing
// blinks.
//
// Published properties, in declaration order (besides those of TKxAnalogGControl):
//  - BevelInner (TKxSBevel: lowered, Spacing 5, Width 2, line blInner)
//  - BevelOuter (TKxSBevel: raised, Spacing 5, Width 2, line blOuter)
//  - FontUnit (TFont: "System", 10 points, clBlack)
//  - LiquidColor (TColor, clRed)
//  - TubeColor (TColor, clWhite): the glass; its edges are shaded towards clGray
//  - Options (int, bits of TThermometerOption: all but opSectorColor)
//  - ScaleSettings (TScaleSettings, its own defaults; PointerColor is not used)
// Default size 130 x 280 (room for the default scale font); there is no AutoSize.
//
// Options (bit n = option n): opBevelInner, opBevelOuter, opUnit, opName1, opName2,
// opOverflow, opLimit, opSectorColor (the liquid takes the colour of the sector that
// holds the reading, LiquidColor outside the sectors).
//
// Too small: the instrument area is too small when it is narrower than the block or
// lower than the cap, the bulb and a scale of 20 pixels. Then no tube, scale, column or
// markers are drawn and nothing blinks; bevels, names and unit still are.
//
// Bad input: a NaN reading is ignored by the value model; +-Inf and far out-of-range
// readings hold the column at the stops and blink as an overflow. Logarithmic and
// negative ranges only change the labels and positions. Sizes from 1 x 1 to
// 4000 x 4000 are safe; all layout sums saturate.
#include <array>

#include "kx/framework/analogcontrol.h"
#include "kx/framework/areacomposer.h"
#include "kx/framework/sbevel.h"
#include "kx/framework/scalesettings.h"
#include "kx/host/bitmap.h"

namespace kx {

class TKxThermometer : public TKxAnalogGControl {
    Q_OBJECT
    Q_PROPERTY(kx::TKxSBevel* BevelInner READ BevelInner WRITE SetBevelInner DESIGNABLE false)
    Q_PROPERTY(kx::TKxSBevel* BevelOuter READ BevelOuter WRITE SetBevelOuter DESIGNABLE false)
    Q_PROPERTY(kx::TFont* FontUnit READ FontUnit WRITE SetFontUnit DESIGNABLE false)
    Q_PROPERTY(QColor LiquidColor READ QLiquidColor WRITE setLiquidColor)
    Q_PROPERTY(QColor TubeColor READ QTubeColor WRITE setTubeColor)
    Q_PROPERTY(int Options READ Options WRITE setOptions)
    Q_PROPERTY(kx::TScaleSettings* ScaleSettings READ ScaleSettings WRITE SetScaleSettings
                   DESIGNABLE false)
  public:
    enum TThermometerOption : int {
        opBevelInner,
        opBevelOuter,
        opUnit,
        opName1,
        opName2,
        opOverflow,
        opLimit,
        opSectorColor
    };
    using TThermometerOptions = uint16_t;
    static constexpr TThermometerOptions ThermometerOption(TThermometerOption o) {
        return TThermometerOptions(1u << o);
    }
    static constexpr TThermometerOptions kAllThermometerOptions = 0xFF;
    static constexpr TThermometerOptions kDefaultOptions = 0x7F;

    explicit TKxThermometer(QWidget* parent = nullptr);
    ~TKxThermometer() override;

    // The settings setters copy the given object; null is ignored.
    TKxSBevel* BevelInner() const { return bevelInner_; }
    void SetBevelInner(const TKxSBevel* v);
    TKxSBevel* BevelOuter() const { return bevelOuter_; }
    void SetBevelOuter(const TKxSBevel* v);
    TFont* FontUnit() const { return fontUnit_; }
    void SetFontUnit(const TFont* v);
    TColor LiquidColor() const { return liquidColor_; }
    void SetLiquidColor(TColorArg v);
    TColor TubeColor() const { return tubeColor_; }
    void SetTubeColor(TColorArg v);
    TThermometerOptions Options() const { return options_; }
    void SetOptions(TThermometerOptions v);
    bool HasOption(TThermometerOption o) const { return options_ & ThermometerOption(o); }
    TScaleSettings* ScaleSettings() const { return scaleSettings_; }
    void SetScaleSettings(const TScaleSettings* v);

    // The colours as Designer and uic see them (system colours included).
    QColor QLiquidColor() const { return EncodeQColor(liquidColor_); }
    void setLiquidColor(const QColor& v) { SetLiquidColor(v); }
    QColor QTubeColor() const { return EncodeQColor(tubeColor_); }
    void setTubeColor(const QColor& v) { SetTubeColor(v); }
    void setOptions(int v) { SetOptions(TThermometerOptions(v)); }

    KX_FLAT_SBEVEL(BevelInner, BevelInner())
    KX_FLAT_SBEVEL(BevelOuter, BevelOuter())
    KX_FLAT_FONT(FontUnit, FontUnit())
    KX_FLAT_SCALESETTINGS(ScaleSettings, ScaleSettings())

    void Loaded() override;
    // Measures names, unit and scale.
    void CalcSize();
    // Composes column and markers on the background; copies what changed to canvas.
    void DrawColumn(TCanvas& canvas);

    // Geometry and state of the last Paint and reading, in control coordinates.
    TRect InstrumentArea() const { return area_; }
    TRect Tube() const { return tube_; }  // the glass, cap included, down to the bulb
    TRect Bore() const { return bore_; }  // where the column can stand
    TRect Bulb() const { return bulb_; }
    TRect ScaleRect() const { return scaleRect_; }
    bool TooSmall() const { return tooSmall_; }
    // The column's top row of the last reading; -1 until one is drawn.
    int32_t Level() const { return level_; }
    // The level for a per-mille position (stops not applied).
    int32_t LevelOf(int32_t ppt) const;
    const std::array<TPoint, 6>& Markers() const { return markers_; }
    bool Blinking() const { return blinking_; }
    // The colour of the liquid for the current reading (sector colour or LiquidColor).
    TColor CurrentLiquidColor() const;
    const TBitmap& Background() const { return background_; }

  protected:
    void ParamChange(QObject* sender) override;
    void LogScaleChanged() override;
    void Paint() override;
    void ValueChange() override;
    void OverflowChange(int32_t ppt) override;
    void LimitChange() override;
    void WMFlash(TMessage& message) override;

  private:
    void requestRepaint();
    void flash();
    void paintBulb(TCanvas& canvas, const TRect& bulb, TColor liquid);
    // The column from level down into the bulb; canvas's (0, 0) lies at origin.
    void paintLiquid(TCanvas& canvas, TPoint origin, TColor color, int32_t level,
                     bool shaded) const;
    bool shown() const { return Visible() || Designing(); }

    TKxSBevel* bevelInner_;
    TKxSBevel* bevelOuter_;
    TFont* fontUnit_;
    TColor liquidColor_ = clRed;
    TColor tubeColor_ = clWhite;
    TThermometerOptions options_ = kDefaultOptions;
    TScaleSettings* scaleSettings_;

    TNameSizes names_;
    int32_t unitW_ = 0, unitH_ = 0;
    TRect area_{}, strip_{}, tube_{}, bore_{}, bulb_{}, scaleRect_{};
    bool tooSmall_ = false;
    TBitmap background_;  // the strip: markers' room and tube, bulb in bulbColor_
    TKxAreaComposer composer_;
    TColor bulbColor_ = clRed;
    std::array<TPoint, 6> markers_{};
    std::array<TRect, 3> lastDirty_{};  // column band, min marker, max marker (strip)
    std::array<TColor, 2> lastMarkColor_{};
    int32_t level_ = -1;
    bool blinking_ = false;
    TColor blinkColor_ = clRed;
    int32_t drawing_ = 0;  // depth of ValueChange runs (they nest on new extremes)
};

}  // namespace kx
