#pragma once
// Round meters: a needle turning over a circular-arc scale (120, 180 or 270 degrees),
// with optional bevels, two name lines, a unit text, three coloured sectors, min/max
// marks and a needle that blinks on overflow or limit violation.
//
// Layout: CalcSize measures the texts and, with AutoSize, sizes the meter; Paint lays out
// from the client rectangle inward: the outer bevel, the name lines at the bottom (Name2
// lowest), the inner bevel, then the scale in what is left. The scale area (ScaleArea) is
// the space inside the inner bevel's frame (without one, inside the outer bevel's frame
// and above the names); scale, sectors, base line, unit, needle and marks keep to it.
//
// Painting: Paint draws the static parts into the surface and keeps a copy of the scale
// area (the background). A reading composes the marks and the needle on a work copy of
// that background and puts the changed area on the surface in one copy; only the area
// covered by the old and the new needle and marks is restored and copied, so a reading
// costs a fraction of a full copy of the scale area.
//
// Where the classic sizing would draw over the names or off the control, this meter
// departs from it; everywhere else it draws exactly the classic picture:
//  - The scale is drawn for the rectangle the classic layout gives it when everything it
//    draws (labels, ticks, sectors, base line) fits in the scale area. Otherwise (names
//    wider than the scale, a fixed size lower than the scale needs) it is drawn for the
//    widest rectangle, centred on the classic one and with the same top, whose scale
//    fits, by height as well as width; with no room for any ring it draws nothing.
//  - An auto-sized meter makes its scale 10 label heights wide, or wider where labels
//    would come closer than a quarter of their height (wide labels, many steps), and
//    grows its height (and for the 120-degree scale, which is wider than its area, its
//    width) until that scale fits in the scale area. A fixed size keeps whatever labels
//    the scale engine draws for it, crowded or not.
//  - The needle and the marks are shown only inside the scale area, so a needle past
//    the arc's ends never crosses a bevel or a name.
//  - The base arc is drawn (with DrawLine) also when opSector is off; the classic meter
//    loses it with the sectors, which leaves the ticks floating.
//  - The unit is left out when its text rectangle would overlap a label or leave the
//    scale area. On the 270-degree meter its height follows the control width the
//    classic sizing would give the narrowed scale.
//
// Other choices where the classic behaviour is silent:
//  - ScaleSettings changes repaint the meter like every other settings object.
//  - The marks are outlined with a black one-pixel pen (the work canvas state is reset
//    for every composition).
//  - The needle shows readings outside the range past the arc's ends, as far as a stop
//    30 per mille beyond either end (NeedlePosition), like the pin of a real meter.
//  - Every full Paint ends with a reading evaluation, so OnValueChange fires then too;
//    keep its handlers light and leave geometry alone in them.
//  - Clearing opOverflow or opLimit while the needle blinks for that reason stops it.
//  - At design time (Designing()) the needle never blinks.
//  - A sector whose extent rounds to 0 degrees is skipped like a too-short one.
//  - The header style bytes of the needle field mean: byte 1 = the outline takes the
//    blink colour too, byte 4 = radius of the first centre cap, byte 5 = of the second.
//  - The settings setters (SetArrowSettings, SetFontUnit, SetBevelInner, SetBevelOuter,
//    SetScaleSettings) copy the given object; null is ignored.
//  - An area for the scale under 2 pixels wide or high counts as too small: no scale,
//    sectors, unit, needle or marks.
#include <array>
#include <vector>

#include "kx/drawing/arrows.h"
#include "kx/framework/analogcontrol.h"
#include "kx/framework/arrowsettings.h"
#include "kx/framework/sbevel.h"
#include "kx/framework/scalesettings.h"
#include "kx/host/bitmap.h"

namespace kx {

enum TMeterType : int { Kx360Meter, Kx270Meter, Kx180Meter, Kx120Meter };
enum TRMeterOption : int {
    opBevelInner,
    opBevelOuter,
    opName1,
    opName2,
    opOverflow,
    opLimit,
    opSector,
    opUnit
};
// A set of TRMeterOption as bits (bit n = option n).
using TRMeterOptions = uint8_t;
constexpr TRMeterOptions RMeterOption(TRMeterOption o) {
    return TRMeterOptions(1u << o);
}
constexpr TRMeterOptions kAllRMeterOptions = 0xFF;

class TKxRMeter : public TKxAnalogGControl {
    Q_OBJECT
    Q_PROPERTY(bool AutoSize READ AutoSize WRITE setAutoSize)
    Q_PROPERTY(kx::TArrowSettings* ArrowSettings READ ArrowSettings WRITE SetArrowSettings
                   DESIGNABLE false)
    Q_PROPERTY(kx::TFont* FontUnit READ FontUnit WRITE SetFontUnit DESIGNABLE false)
    Q_PROPERTY(kx::TKxSBevel* BevelInner READ BevelInner WRITE SetBevelInner DESIGNABLE false)
    Q_PROPERTY(kx::TKxSBevel* BevelOuter READ BevelOuter WRITE SetBevelOuter DESIGNABLE false)
    Q_PROPERTY(int Options READ Options WRITE setOptions)
    Q_PROPERTY(kx::TScaleSettings* ScaleSettings READ ScaleSettings WRITE SetScaleSettings
                   DESIGNABLE false)
  public:
    explicit TKxRMeter(QWidget* parent = nullptr);
    ~TKxRMeter() override;

    bool AutoSize() const { return autoSize_; }
    void SetKxAutoSize(bool v);
    TArrowSettings* ArrowSettings() const { return arrowSettings_; }
    void SetArrowSettings(const TArrowSettings* v);
    TFont* FontUnit() const { return fontUnit_; }
    void SetFontUnit(const TFont* v);
    TKxSBevel* BevelInner() const { return bevelInner_; }
    void SetBevelInner(const TKxSBevel* v);
    TKxSBevel* BevelOuter() const { return bevelOuter_; }
    void SetBevelOuter(const TKxSBevel* v);
    TRMeterOptions Options() const { return options_; }
    void SetOptions(TRMeterOptions v);
    bool HasOption(TRMeterOption o) const { return options_ & RMeterOption(o); }
    TScaleSettings* ScaleSettings() const { return scaleSettings_; }
    void SetScaleSettings(const TScaleSettings* v);

    // Qt-style names for uic, which calls "set" + the property name.
    void setAutoSize(bool v) { SetKxAutoSize(v); }
    void setOptions(int v) { SetOptions(TRMeterOptions(v)); }

    // The owned settings objects as flat properties (ArrowSettings_Shape,
    // BevelOuter_Offset_Top, ScaleSettings_Font_Size, ...; see flatproperty.h).
    KX_FLAT_ARROWSETTINGS(ArrowSettings, ArrowSettings())
    KX_FLAT_FONT(FontUnit, FontUnit())
    KX_FLAT_SBEVEL(BevelInner, BevelInner())
    KX_FLAT_SBEVEL(BevelOuter, BevelOuter())
    KX_FLAT_SCALESETTINGS(ScaleSettings, ScaleSettings())

    void Loaded() override;
    // Measures the texts and, with AutoSize, works out the size and applies it.
    void CalcSize();
    // The sector ring and the scale outline into r2.
    void DrawRSector(TCanvas& canvas, const TRect& r2);
    // Marks and needle composed on the background and copied onto canvas (when given).
    void DrawPointer(TCanvas* canvas, TColor color);

    // The needle's per-mille position: the reading's unclamped position, held by the
    // stops at -30 and 1030.
    int32_t NeedlePosition() const;
    // The 120-degree meter's widening of its scale area: the left edge moves out by
    // width div 20, then the right edge by the widened width div 20.
    static TRect Widen120(TRect r);
    // The start angle and extent of a sector drawn on a scale from startAngle over
    // sweepAngle degrees; false for a sector that is skipped.
    static bool SectorArc(int32_t from, int32_t to, int32_t startAngle, int32_t sweepAngle,
                          int32_t& start, int32_t& extent);

    TMeterType MeterType() const { return meterType_; }
    int32_t StartAngle() const { return startAngle_; }
    int32_t SweepAngle() const { return sweepAngle_; }
    float AspectFactor() const { return aspect_; }
    bool TooSmall() const { return tooSmall_; }
    bool Blinking() const { return blinking_; }
    TColor BlinkColor() const { return blinkColor_; }
    TRect ScaleRect() const { return scaleRect_; }
    // The area inside the inner bevel (or the outer one) and above the names that the
    // scale, the unit, the needle and the marks keep to (from the last Paint).
    TRect ScaleArea() const { return area_; }
    // Whether the last Paint drew the unit text.
    bool UnitShown() const { return unitShown_; }
    int32_t LastDrawnPosition() const { return lastDrawn_; }
    const TArrowPoints& ArrowField() const { return arrow_; }
    // The minimum and maximum marks as last drawn (three points each).
    const std::array<TPoint, 6>& MarkerPolygons() const { return markers_; }
    const TBitmap& Background() const { return background_; }

  protected:
    void configure(TMeterType type, int32_t start, int32_t sweep, float aspect, int32_t width,
                   int32_t height, int32_t steps);
    void ParamChange(QObject* sender) override;
    void LogScaleChanged() override;
    void Paint() override;
    void ValueChange() override;
    void OverflowChange(int32_t ppt) override;
    void LimitChange() override;
    void WMFlash(TMessage& message) override;
    // Starts or stops blinking according to the overflow and limit states.
    void PointerFlash();

  private:
    struct TextSizes {
        TNameSizes names;
        int32_t unitW = 0, unitH = 0;
    };
    void requestRepaint();
    void hookSettings();
    struct TSectorSpan {
        int32_t from, to;
        TColor color;
    };
    std::array<TSectorSpan, 3> sectorList() const;
    // The width of an auto-sized scale: 10 label heights, or wider until no two labels
    // run into each other.
    int32_t naturalScaleWidth();
    // For a control with the given client rectangle: the rectangle left for the scale
    // inside the bevels and above the names, and the area the scale may use.
    void frameFor(const TRect& client, TRect& instrument, TRect& area) const;
    // Everything the scale, its sectors and its base line draw for the input rectangle.
    class TExtentCanvas;
    void scaleExtent(TExtentCanvas& e, const TRect& in);
    // The input rectangle itself when its scale fits in the scale area, else the widest
    // one centred in it whose scale fits.
    TRect fitScale(const TRect& in);
    void paintNames(TRect& r, int32_t textOffset);
    void paintScale(TRect& r);
    void drawBaseLine(TCanvas& canvas, const TRect& r2);
    void paintUnit(const TRect& r);
    void buildNeedleField();
    void buildMarkerTemplate();
    struct TComposeAreas {
        TRect needle, min, max;
        TColor minColor = clNone, maxColor = clNone;  // clNone: not shown
    };
    TComposeAreas composeAreas(float angle, float minAngle, float maxAngle);
    void drawMarks(TCanvas& w);
    void drawNeedle(TCanvas& w, float angle);

    bool autoSize_ = true;
    TArrowSettings* arrowSettings_;
    TFont* fontUnit_;
    TKxSBevel* bevelInner_;
    TKxSBevel* bevelOuter_;
    TScaleSettings* scaleSettings_;
    TRMeterOptions options_ = kAllRMeterOptions;

    TMeterType meterType_ = Kx360Meter;
    int32_t startAngle_ = 0;
    int32_t sweepAngle_ = 0;
    float aspect_ = 1.0f;
    TextSizes text_;
    TRect scaleRect_;
    TRect area_;                     // where scale, unit, needle and marks may draw
    int32_t narrowedBy_ = 0;         // how much narrower the scale is than the sizing made it
    std::vector<TRect> labelBoxes_;  // the labels as drawn by the last Paint
    bool unitShown_ = false;
    bool tooSmall_ = false;
    TBitmap background_;
    TBitmap work_;
    TArrowPoints arrow_{};
    TArrowPoints needle_{};
    std::array<TPoint, 6> markerTemplate_{};
    std::array<TPoint, 6> markers_{};
    bool blinking_ = false;
    TColor blinkColor_ = clRed;
    int32_t drawingNeedle_ = 0;  // depth of ValueChange runs (they nest on new extremes)
    int32_t lastDrawn_ = -1;
    TComposeAreas last_{};
    bool lastBoundsValid_ = false;
};

class TKx120Meter : public TKxRMeter {
    Q_OBJECT
  public:
    explicit TKx120Meter(QWidget* parent = nullptr);
};

class TKx180Meter : public TKxRMeter {
    Q_OBJECT
  public:
    explicit TKx180Meter(QWidget* parent = nullptr);
};

class TKx270Meter : public TKxRMeter {
    Q_OBJECT
  public:
    explicit TKx270Meter(QWidget* parent = nullptr);
};

}  // namespace kx
