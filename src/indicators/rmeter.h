#pragma once
// Round meters: a needle turning over a circular-arc scale, with optional bevels, two
// name lines, a unit text, three coloured sectors, min/max marks and a needle that
// blinks on overflow or limit violation.
//
// Painting: Paint draws the static parts into the surface and keeps a copy of the scale
// area (the background). A reading composes the marks and the needle on a work copy of
// that background and puts the changed area on the surface in one copy; only the area
// covered by the old and the new needle and marks is restored and copied, so a reading
// costs a fraction of a full copy of the scale area.
//
// Choices where the classic behaviour is silent:
//  - ScaleSettings changes repaint the meter like every other settings object.
//  - The marks are outlined with a black one-pixel pen (the work canvas state is reset
//    for every composition).
//  - The needle shows readings outside the range past the arc's ends, as far as a stop
//    30 per mille beyond either end (NeedlePosition), like the pin of a real meter.
//  - Every full Paint ends with a reading evaluation, so OnValueChange fires then too;
//    keep its handlers light and leave geometry alone in them.
//  - Clearing opOverflow or opLimit while the needle blinks for that reason stops it.
//  - A sector whose extent rounds to 0 degrees is skipped like a too-short one.
//  - The header style bytes of the needle field mean: byte 1 = the outline takes the
//    blink colour too, byte 4 = radius of the first centre cap, byte 5 = of the second.
#include <array>

#include "drawing/arrows.h"
#include "framework/analogcontrol.h"
#include "framework/arrowsettings.h"
#include "framework/sbevel.h"
#include "framework/scalesettings.h"
#include "host/bitmap.h"

namespace kx {

enum TMeterType { Kx360Meter, Kx270Meter, Kx180Meter, Kx120Meter };
enum TRMeterOption { opBevelInner, opBevelOuter, opName1, opName2, opOverflow, opLimit, opSector,
                     opUnit };
// A set of TRMeterOption as bits (bit n = option n).
using TRMeterOptions = uint8_t;
constexpr TRMeterOptions RMeterOption(TRMeterOption o) { return TRMeterOptions(1u << o); }
constexpr TRMeterOptions kAllRMeterOptions = 0xFF;

class TKxRMeter : public TKxAnalogGControl {
    Q_OBJECT
    Q_PROPERTY(bool AutoSize READ AutoSize WRITE SetKxAutoSize)
    Q_PROPERTY(kx::TArrowSettings* ArrowSettings READ ArrowSettings WRITE SetArrowSettings)
    Q_PROPERTY(kx::TFont* FontUnit READ FontUnit WRITE SetFontUnit)
    Q_PROPERTY(kx::TKxSBevel* BevelInner READ BevelInner WRITE SetBevelInner)
    Q_PROPERTY(kx::TKxSBevel* BevelOuter READ BevelOuter WRITE SetBevelOuter)
    Q_PROPERTY(int Options READ Options WRITE SetOptions)
    Q_PROPERTY(kx::TScaleSettings* ScaleSettings READ ScaleSettings WRITE SetScaleSettings)
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

    void Loaded() override;
    // Measures the texts and works out the size; applies it with AutoSize.
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
        int32_t name1W = 0, name1H = 0, name2W = 0, name2H = 0, unitW = 0, unitH = 0;
    };
    void requestRepaint();
    void hookSettings();
    void paintNames(TRect& r, int32_t textOffset);
    void paintScale(TRect& r);
    void paintUnit(const TRect& r);
    void buildNeedleField();
    void buildMarkerTemplate();
    TColor markerColor(int32_t ppt, bool useSectorColor, TColor own) const;
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
