#pragma once
// Linear meters: TKxHMeter shows a reading on a straight horizontal scale with a
// triangular pointer that slides along it; TKxVMeter is its upright counterpart with a
// framed value readout above the scale. Both have optional coloured sector bands along
// the scale, markers at the recorded minimum and maximum, two name lines, the unit text,
// two bevels and a pointer that blinks on overflow (and, with opLimit, is put in the
// blink list on a limit violation).
//
// Layout (Paint), from the client rectangle inward: the outer bevel, the name lines at
// the bottom (Name2 lowest), TKxVMeter's value box at the top, the inner bevel; what is
// left is the pointer area, which holds the scale (ticks and labels by the scale engine),
// the sector bands, the pointer strip and the unit.
//  - TKxHMeter: the scale runs from m to the right edge less m + 1 (m = the larger of
//    the label width and the tick length T, halved). Without PosLeftTop the unit stands
//    at the top, the pointer points down onto the base line and the labels are below it;
//    with PosLeftTop the labels are at the top, the pointer points up from below the base
//    line and the unit stands under the pointer strip.
//  - TKxVMeter: the scale is centred on the whole control width, the lowest tick is the
//    range start; the pointer points right at the scale from its left (labels right), or
//    with PosLeftTop left at it from its right (labels left).
//  - Sector bands lie along the base line, a band height deep (SubStepLength +
//    SectorSettings.WidthOffset, at least 1): every sector with To > From, To > 0 and
//    From < 1000 is drawn, clipped to the first and last tick.
//
// Painting: Paint draws the static parts and caches the pointer area (the background).
// A reading composes the markers and the pointer on a work copy of that background,
// restoring only the areas the old and the new pointer and markers cover, and copies
// those areas to the surface: nothing else is repainted. TKxVMeter also repaints the
// number in its value box, off-screen and in one copy.
//
// Blinking: with opOverflow a reading beyond either end makes the pointer blink yellow
// and red; with opLimit a limit violation puts the meter in the blink list as well, but
// the pointer keeps its colour then (only opOverflow changes the colour). When the
// blinking stops, the pointer is redrawn at once in ScaleSettings.PointerColor.
//
// Choices where the classic behaviour is silent:
//  - The pointer shows readings beyond the range past the first or last tick, as far as
//    a stop 30 per mille beyond either end (PointerPosition), so infinite readings keep
//    it in sight; the markers stand at the recorded extremes (clamped to the range).
//  - Markers are half triangles beside the pointer strip on the scale's side, their
//    straight edge at the recorded position; outlined black, filled in MinColor /
//    MaxColor or in the sector colour of their position with UseSectorCol. TKxVMeter's
//    are the horizontal meter's turned upright.
//  - TKxVMeter's required size (AutoSize): the scale's length (ScaleMinLength) plus a tick
//    length, the names, the value box and the bevels high; the widest of the scale with
//    its pointer strip, the names and the value box with its unit wide.
//  - The value box is sized for SignalSettings.SampleValueText in FontValue; the number
//    is drawn right-aligned in FontValue, the unit in FontValue with the colour of Font.
//    At design time the box shows the sample text.
//  - A pointer area under 2 pixels in either direction counts as too small: no scale,
//    sectors, pointer or markers.
//  - At design time (Designing()) nothing blinks.
//  - Settings changes (ScaleSettings included) repaint the meter.
//  - Option enums are class-scoped (TKxHMeter::opUnit, TKxVMeter::opValue): each meter
//    numbers its options in its own order.
#include <array>

#include "kx/framework/analogcontrol.h"
#include "kx/framework/areacomposer.h"
#include "kx/framework/sbevel.h"
#include "kx/framework/scalesettings.h"
#include "kx/host/bitmap.h"

namespace kx {

// What the two meters share: the scale, bevels, pointer, markers and blinking.
class TKxLinearMeter : public TKxAnalogGControl {
    Q_OBJECT
    Q_PROPERTY(bool AutoSize READ AutoSize WRITE setAutoSize)
    Q_PROPERTY(kx::TKxSBevel* BevelInner READ BevelInner WRITE SetBevelInner DESIGNABLE false)
    Q_PROPERTY(kx::TKxSBevel* BevelOuter READ BevelOuter WRITE SetBevelOuter DESIGNABLE false)
    Q_PROPERTY(int Options READ Options WRITE setOptions)
    Q_PROPERTY(kx::TScaleSettings* ScaleSettings READ ScaleSettings WRITE SetScaleSettings
                   DESIGNABLE false)
  public:
    ~TKxLinearMeter() override;

    bool AutoSize() const { return autoSize_; }
    void SetKxAutoSize(bool v);
    // The settings setters copy the given object; null is ignored.
    TKxSBevel* BevelInner() const { return bevelInner_; }
    void SetBevelInner(const TKxSBevel* v);
    TKxSBevel* BevelOuter() const { return bevelOuter_; }
    void SetBevelOuter(const TKxSBevel* v);
    TScaleSettings* ScaleSettings() const { return scaleSettings_; }
    void SetScaleSettings(const TScaleSettings* v);
    // The options as bits; each meter names its own (TKxHMeter::THMeterOption, ...).
    uint16_t Options() const { return options_; }
    void SetOptions(uint16_t v);

    void setAutoSize(bool v) { SetKxAutoSize(v); }
    void setOptions(int v) { SetOptions(uint16_t(v)); }

    KX_FLAT_SBEVEL(BevelInner, BevelInner())
    KX_FLAT_SBEVEL(BevelOuter, BevelOuter())
    KX_FLAT_SCALESETTINGS(ScaleSettings, ScaleSettings())

    void Loaded() override;
    // Measures the texts and the scale and, with AutoSize, applies the required size.
    virtual void CalcSize() = 0;
    // Composes markers and pointer on the background and copies what changed to canvas.
    void DrawPointer(TCanvas& canvas);

    // Geometry and state of the last Paint and reading.
    TRect PointerArea() const { return area_; }
    TRect ScaleRect() const { return scaleRect_; }
    TRect PointerStrip() const { return strip_; }
    bool TooSmall() const { return tooSmall_; }
    // The pointer and the two markers (three points each), in control coordinates.
    const std::array<TPoint, 3>& Pointer() const { return pointer_; }
    const std::array<TPoint, 6>& Markers() const { return markers_; }
    // The pointer's x (TKxHMeter) or y (TKxVMeter) in the pointer area; -1 after a Paint
    // until the next reading, and after blinking stops.
    int32_t LastDrawnPosition() const { return lastDrawn_; }
    bool Blinking() const { return blinking_; }
    TColor BlinkColor() const { return blinkColor_; }
    const TBitmap& Background() const { return background_; }
    // The depth of the sector bands.
    int32_t BandHeight() const;

  protected:
    // The roles of the options; each meter maps them to its own bits.
    enum TRole : int {
        rBevelInner,
        rBevelOuter,
        rUnit,
        rName1,
        rName2,
        rOverflow,
        rLimit,
        rSector,
        rValue
    };
    explicit TKxLinearMeter(QWidget* parent);
    virtual bool has(TRole role) const = 0;
    void ParamChange(QObject* sender) override;
    void LogScaleChanged() override;
    void Paint() override;
    void ValueChange() override;
    void OverflowChange(int32_t ppt) override;
    void LimitChange() override;
    void WMFlash(TMessage& message) override;
    // Starts or stops blinking according to the overflow and limit states.
    void PointerFlash();

    // The meter's own parts of Paint: lays out from r (inside the outer bevel, above the
    // names) and draws the scale; sets area_, scaleRect_, strip_ and tooSmall_.
    virtual void paintInstrument(TRect& r) = 0;
    // The pointer and markers for the pointer position, minimum and maximum (per mille),
    // in pointer-area coordinates; returns the pointer's x or y.
    virtual int32_t shapes(int32_t pos, int32_t minPos, int32_t maxPos,
                           std::array<TPoint, 3>& pointer, std::array<TPoint, 6>& marks) const = 0;
    // What the meter redraws on a reading besides the pointer (TKxVMeter: the number).
    virtual void drawReadout() {}
    // Hooks the meter's own settings objects to handler (from Loaded).
    virtual void hookOwn(const TNotifyEvent& handler) = 0;

    void requestRepaint();
    const TNameSizes& names() const { return names_; }
    void setNames(const TNameSizes& n) { names_ = n; }
    // The pointer area and whether it is too small (see above).
    void setArea(const TRect& area, bool tooSmall);
    TRect scaleRect_{};
    TRect strip_{};

  private:
    void hookSettings();
    bool shown() const;

    bool autoSize_ = true;
    TKxSBevel* bevelInner_;
    TKxSBevel* bevelOuter_;
    TScaleSettings* scaleSettings_;
    uint16_t options_ = 0;

    TNameSizes names_;
    TRect area_{};
    bool tooSmall_ = false;
    TBitmap background_;
    TKxPointerComposer composer_;
    std::array<TPoint, 3> pointer_{};
    std::array<TPoint, 6> markers_{};
    bool blinking_ = false;
    TColor blinkColor_ = clRed;
    int32_t lastDrawn_ = -1;
    int32_t drawing_ = 0;  // depth of ValueChange runs (they nest on new extremes)
};

class TKxHMeter : public TKxLinearMeter {
    Q_OBJECT
    Q_PROPERTY(kx::TFont* FontUnit READ FontUnit WRITE SetFontUnit DESIGNABLE false)
  public:
    enum THMeterOption : int {
        opBevelInner,
        opBevelOuter,
        opUnit,
        opName1,
        opName2,
        opOverflow,
        opLimit,
        opSector
    };
    using THMeterOptions = uint16_t;
    static constexpr THMeterOptions HMeterOption(THMeterOption o) {
        return THMeterOptions(1u << o);
    }
    static constexpr THMeterOptions kAllHMeterOptions = 0xFF;

    explicit TKxHMeter(QWidget* parent = nullptr);

    TFont* FontUnit() const { return fontUnit_; }
    void SetFontUnit(const TFont* v);
    bool HasOption(THMeterOption o) const { return Options() & HMeterOption(o); }
    KX_FLAT_FONT(FontUnit, FontUnit())

    void CalcSize() override;
    // The sector bands into s (clipped to 0..1000 of its width).
    void DrawHSector(TCanvas& canvas, const TRect& s);

  protected:
    bool has(TRole role) const override;
    void paintInstrument(TRect& r) override;
    int32_t shapes(int32_t pos, int32_t minPos, int32_t maxPos, std::array<TPoint, 3>& pointer,
                   std::array<TPoint, 6>& marks) const override;
    void hookOwn(const TNotifyEvent& handler) override;

  private:
    TFont* fontUnit_;
    int32_t unitW_ = 0, unitH_ = 0;
};

class TKxVMeter : public TKxLinearMeter {
    Q_OBJECT
    Q_PROPERTY(kx::TFont* FontValue READ FontValue WRITE SetFontValue DESIGNABLE false)
    Q_PROPERTY(kx::TKxSBevel* BevelValue READ BevelValue WRITE SetBevelValue DESIGNABLE false)
  public:
    enum TKxVMeterOption : int {
        opBevelInner,
        opBevelOuter,
        opValue,
        opName1,
        opName2,
        opOverflow,
        opLimit,
        opSector,
        opUnit
    };
    using TKxVMeterOptions = uint16_t;
    static constexpr TKxVMeterOptions VMeterOption(TKxVMeterOption o) {
        return TKxVMeterOptions(1u << o);
    }
    static constexpr TKxVMeterOptions kAllVMeterOptions = 0x1FF;

    explicit TKxVMeter(QWidget* parent = nullptr);

    TFont* FontValue() const { return fontValue_; }
    void SetFontValue(const TFont* v);
    TKxSBevel* BevelValue() const { return bevelValue_; }
    void SetBevelValue(const TKxSBevel* v);
    bool HasOption(TKxVMeterOption o) const { return Options() & VMeterOption(o); }
    KX_FLAT_FONT(FontValue, FontValue())
    KX_FLAT_SBEVEL(BevelValue, BevelValue())

    void CalcSize() override;
    // The sector bands into s, growing upwards from its bottom.
    void DrawVSector(TCanvas& canvas, const TRect& s);
    // The number's box (inside the value bevel) of the last Paint.
    TRect ValueBox() const { return valueBox_; }

  protected:
    bool has(TRole role) const override;
    void paintInstrument(TRect& r) override;
    int32_t shapes(int32_t pos, int32_t minPos, int32_t maxPos, std::array<TPoint, 3>& pointer,
                   std::array<TPoint, 6>& marks) const override;
    void drawReadout() override;
    void hookOwn(const TNotifyEvent& handler) override;

  private:
    TFont* fontValue_;
    TKxSBevel* bevelValue_;
    int32_t valueW_ = 0, valueH_ = 0, unitW_ = 0;
    TRect valueBox_{};
    TBitmap number_;
};

}  // namespace kx
