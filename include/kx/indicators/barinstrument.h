#pragma once
// Bar instruments: TKxHBar (horizontal) and TKxVBar (upright) show a reading as a bar
// (any style of TBarSettings) with two name lines, a framed value readout with its unit,
// overflow triangles at both ends of the bar that blink while the reading is out of
// range, and half-triangle markers at the recorded minimum and maximum.
//
// Layout (Paint), from the client rectangle inward: the outer bevel, the name lines at
// the bottom (Name2 lowest), the inner bevel, the value box at the top (centred, the
// unit to its right), then the bar in what is left:
//  - TKxHBar centres the bar vertically in the rest (with markers, m / 2 lower, leaving
//    the marker room above it), full width less the indents for the triangles;
//  - TKxVBar centres the bar horizontally on the whole control (with markers, m / 2 to
//    the left, leaving the marker room to its right) and runs it from below the value box
//    to the bottom, less the indents.
//  m = the marker room: BarSettings.minHeight (TKxVBar: minWidth) + 2 x the bar bevel's
//  spacing. With opOverflow the bar is indented by (bar thickness + 5) div 2 at both
//  ends for the triangles; without it but with markers by m div 2.
//
// Painting: Paint draws the static parts and caches the marker strip (the band beside
// the bar where the markers stand). A reading redraws only what moves, each in one copy:
// the markers (composed on a copy of the strip, and only when they moved), the bar
// (TBarSettings::PaintBar) and the number in the value box.
//
// Size (AutoSize): the required size follows the classic bar's rule; an auto-sized bar
// takes exactly that size, a fixed one only grows to it (never shrinks).
//
// Blinking: only the overflow state and opOverflow make a triangle blink (limits fire
// OnLimit but never blink a bar): below the range the triangle at the low end (left;
// bottom), above it the one at the high end (right; top), yellow and red in turn. Coming
// back into range restores both outlines at once.
//
// Choices where the classic behaviour is silent:
//  - The markers stand in the marker room beside the bar (TKxHBar: above it, TKxVBar: to
//    its right), each a half triangle whose straight edge is at the recorded position
//    and whose point touches the bar; the minimum's body lies towards the low end, the
//    maximum's towards the high end. They are outlined black (one pixel) and filled in
//    MinColor / MaxColor, or in the sector colour of their position with UseSectorCol.
//  - The value box is sized for SignalSettings.SampleValueText in FontValue; the number
//    in it is drawn in FontValue right-aligned, the unit in FontValue with the colour of
//    Font (as the classic bar does). At design time the box shows the sample text.
//  - A bidirectional bar (BarSettings opBidir) grows from the position of the value 0.
//  - TKxVBar's required width also holds the bar and the marker room inside the bevels.
//  - At design time (Designing()) nothing blinks.
//  - Showing or hiding the markers (MinMax.MinVisible, MaxVisible) re-lays the bar out,
//    since the markers take room beside it.
//  - Option enums are class-scoped (TKxHBar::opValue, ...): other instruments have
//    options of the same names with other bit numbers.
#include <array>

#include "kx/framework/analogcontrol.h"
#include "kx/framework/barsettings.h"
#include "kx/framework/sbevel.h"
#include "kx/host/bitmap.h"

namespace kx {

class TKxBarInstrument : public TKxAnalogGControl {
    Q_OBJECT
    Q_PROPERTY(bool AutoSize READ AutoSize WRITE setAutoSize)
    Q_PROPERTY(kx::TFont* FontValue READ FontValue WRITE SetFontValue DESIGNABLE false)
    Q_PROPERTY(kx::TBarSettings* BarSettings READ BarSettings WRITE SetBarSettings DESIGNABLE false)
    Q_PROPERTY(kx::TKxSBevel* BevelInner READ BevelInner WRITE SetBevelInner DESIGNABLE false)
    Q_PROPERTY(kx::TKxSBevel* BevelOuter READ BevelOuter WRITE SetBevelOuter DESIGNABLE false)
    Q_PROPERTY(kx::TKxSBevel* BevelValue READ BevelValue WRITE SetBevelValue DESIGNABLE false)
    Q_PROPERTY(int Options READ Options WRITE setOptions)
  public:
    enum THBarOption : int {
        opBevelInner,
        opBevelOuter,
        opValue,
        opName1,
        opName2,
        opOverflow,
        opUnit
    };
    using TVBarOption = THBarOption;
    // A set of options as bits (bit n = option n).
    using THBarOptions = uint8_t;
    using TVBarOptions = uint8_t;
    static constexpr THBarOptions BarOption(THBarOption o) { return THBarOptions(1u << o); }
    static constexpr THBarOptions kDefaultOptions =
        (1u << opValue) | (1u << opName1) | (1u << opName2) | (1u << opOverflow) | (1u << opUnit);

    ~TKxBarInstrument() override;

    bool AutoSize() const { return autoSize_; }
    void SetKxAutoSize(bool v);
    TFont* FontValue() const { return fontValue_; }
    // The settings setters copy the given object; null is ignored.
    void SetFontValue(const TFont* v);
    TBarSettings* BarSettings() const { return barSettings_; }
    void SetBarSettings(const TBarSettings* v);
    TKxSBevel* BevelInner() const { return bevelInner_; }
    void SetBevelInner(const TKxSBevel* v);
    TKxSBevel* BevelOuter() const { return bevelOuter_; }
    void SetBevelOuter(const TKxSBevel* v);
    TKxSBevel* BevelValue() const { return bevelValue_; }
    void SetBevelValue(const TKxSBevel* v);
    THBarOptions Options() const { return options_; }
    // Starts the blinking when opOverflow is set and the reading is out of range, stops
    // it when opOverflow is cleared; then repaints.
    void SetOptions(THBarOptions v);
    bool HasOption(THBarOption o) const { return options_ & BarOption(o); }

    void setAutoSize(bool v) { SetKxAutoSize(v); }
    void setOptions(int v) { SetOptions(THBarOptions(v)); }

    KX_FLAT_FONT(FontValue, FontValue())
    KX_FLAT_BARSETTINGS(BarSettings, BarSettings())
    KX_FLAT_SBEVEL(BevelInner, BevelInner())
    KX_FLAT_SBEVEL(BevelOuter, BevelOuter())
    KX_FLAT_SBEVEL(BevelValue, BevelValue())

    void Loaded() override;
    // Measures the texts and applies the required size (see above).
    void CalcSize();
    // The two overflow triangles in c1 and c2 (pen clBtnShadow): clBtnFace is a quiet
    // outline.
    void DrawOverflow(TCanvas& canvas, TColor c1, TColor c2);

    // Geometry of the last Paint.
    // The bar with its own bevel, and the bar inside it (BarSettings.BarRect).
    TRect BarFrame() const { return barFrame_; }
    TRect ValueBox() const { return valueBox_; }
    TRect MarkerStrip() const { return strip_; }
    int32_t MarkerRoom() const { return markerRoom_; }
    // Four points each, the first repeated at the end.
    const std::array<TPoint, 8>& Triangles() const { return triangles_; }
    // The minimum and the maximum marker as last drawn, in control coordinates.
    const std::array<TPoint, 6>& Markers() const { return markers_; }
    // Whether the control is in the blink list.
    bool Blinking() const { return blinking_; }

  protected:
    explicit TKxBarInstrument(QWidget* parent);
    void ParamChange(QObject* sender) override;
    void LogScaleChanged() override;
    void Paint() override;
    void ValueChange() override;
    void OverflowChange(int32_t ppt) override;
    void MinMaxChange(QObject* sender) override;
    void WMFlash(TMessage& message) override;

    struct TTexts {
        TNameSizes names;
        int32_t valueW = 0, valueH = 0, unitW = 0, unitH = 0;
    };
    const TTexts& Texts() const { return text_; }
    bool MarkersShown() const;
    // The bar's minimum size across (minHeight or minWidth), and its thickness across
    // with its bevel.
    virtual int32_t barAcross() const = 0;
    int32_t barThickness() const;
    virtual void requiredSize(int32_t& w, int32_t& h) const = 0;
    // From the area left below the value box (r, from y down): barFrame_, triangles_
    // and strip_.
    virtual void placeBar(const TRect& r, int32_t y) = 0;
    // The two markers in strip coordinates for the positions a and b along the bar.
    virtual void markerShapes(int32_t a, int32_t b, std::array<TPoint, 6>& m) const = 0;
    // A distance along the bar from its low end, as a coordinate in the strip.
    virtual int32_t alongToStrip(int32_t along) const = 0;
    // Which triangle blinks for the reading now: 0 the first, 1 the second.
    virtual int32_t blinkingTriangle() const = 0;
    void setTriangle(size_t index, std::array<TPoint, 4> points);

  private:
    void requestRepaint();
    void hookSettings();
    int32_t paintValueBox(const TRect& r);
    void drawMarkers();
    void drawValue();
    void startOrStopBlinking();

    bool autoSize_ = true;
    TFont* fontValue_;
    TBarSettings* barSettings_;
    TKxSBevel* bevelInner_;
    TKxSBevel* bevelOuter_;
    TKxSBevel* bevelValue_;
    THBarOptions options_ = kDefaultOptions;

    TTexts text_;
    int32_t markerRoom_ = 0;
    TRect valueBox_{};
    TBitmap stripImage_;
    TBitmap work_;
    TBitmap number_;
    bool laidOut_ = false;
    bool markersLaidOut_ = false;  // whether the last Paint made room for the markers
    bool blinking_ = false;
    std::array<TPoint, 6> markers_{};
    // What the markers showed last (positions and colours; clNone: hidden).
    struct TMarkState {
        int32_t a = -1, b = -1;
        TColor minColor = clNone, maxColor = clNone;
        bool operator==(const TMarkState&) const = default;
    };
    TMarkState lastMarks_{};
    bool marksValid_ = false;

  protected:
    // Set by placeBar.
    TRect barFrame_{};
    TRect strip_{};
    std::array<TPoint, 8> triangles_{};
};

class TKxHBar : public TKxBarInstrument {
    Q_OBJECT
  public:
    explicit TKxHBar(QWidget* parent = nullptr);

  protected:
    int32_t barAcross() const override;
    void requiredSize(int32_t& w, int32_t& h) const override;
    void placeBar(const TRect& r, int32_t y) override;
    void markerShapes(int32_t a, int32_t b, std::array<TPoint, 6>& m) const override;
    int32_t alongToStrip(int32_t along) const override;
    int32_t blinkingTriangle() const override;
};

class TKxVBar : public TKxBarInstrument {
    Q_OBJECT
  public:
    explicit TKxVBar(QWidget* parent = nullptr);

  protected:
    int32_t barAcross() const override;
    void requiredSize(int32_t& w, int32_t& h) const override;
    void placeBar(const TRect& r, int32_t y) override;
    void markerShapes(int32_t a, int32_t b, std::array<TPoint, 6>& m) const override;
    int32_t alongToStrip(int32_t along) const override;
    int32_t blinkingTriangle() const override;
};

}  // namespace kx
