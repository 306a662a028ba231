#pragma once
// TBarSettings: draws a measured value as a bar inside a rectangle: a solid bar, a chain
// of LEDs, a single marker or a bar in the sector colours, with the value text printed
// across it in inverting ink so that it stays readable over any colour. The owner sets
// BarRect, BarColor, the texts, the sector copy and BidirOrigin, then calls PaintBar with
// the per-mille position of the reading.
//
// Painting: the bar is composed off-screen in a bitmap of BarRect's size and drawn onto
// the canvas in one copy, so a bar updated at a high rate never flickers. The work
// bitmaps are kept between paints (they are re-made only when the size or the canvas's
// device grid changes); they share the canvas's device grid, so the copy is pixel for
// pixel on high-DPI surfaces too.
//
// Geometry (BarWidth x BarHeight = BarRect's size; a bar wider than high is horizontal
// and grows to the right, any other grows upwards from the bottom):
//  - along the bar, per mille p lies at Round(p * f) with f = length / 1000 (double;
//    upright: that many pixels up from the bottom edge);
//  - bsBar: the span [start, Round(PPT * f)) with start = Round(BidirOrigin * f) under
//    opBidir, else 0 (a start past the end fills between the two);
//  - bsPoint: a marker 3 pixels long at Round(PPT * (length - 3) / 1000);
//  - bsMultiColor: the sector bands (undimmed) up to Round(PPT * f);
//  - bsLED_Bar: n = length div 4 segments k = 0..n of 3 lit pixels and a gap, at 4k + 1
//    (upright: counted up from the bottom); segment k stands for p = Round(k / n * 1000).
//  - DrawSector paints seven bands over 0..1000: the gaps before, between and after the
//    three sectors in the background colour, the sectors in their colours; the last gap
//    (after sector 3) is painted only when Sector1From < 1000. Bands are clamped to
//    0..1000; an empty or reversed band paints nothing.
//
// Choices where the classic behaviour is silent or broken:
//  - An LED segment within the value whose position lies in no sector shows the bar
//    colour (Color, or BarColor with opUseSectorCol); taken literally it would show the
//    background colour and look unlit.
//  - A bar under 4 pixels long draws no LED segments (there is no segment to divide).
//  - PPT and BidirOrigin are clamped to 0..1000 before they are used.
//  - The value text is drawn horizontally, centred, also on an upright bar. A text wider
//    than the bar drops the unit; when the value alone is still wider, no text is drawn
//    (a number cut at both ends would read as another number).
//  - LED segments beyond the value are BkColor; with BkAuto, the colour of their sector
//    (BkColor outside the sectors) dimmed by BkBrightness.
//  - BkBrightness: NaN is ignored (it would turn every dimmed colour black by accident).
#include <QString>
#include <cstdint>

#include "kx/framework/flatproperty.h"
#include "kx/framework/persistent.h"
#include "kx/framework/sbevel.h"
#include "kx/framework/sectorsettings.h"
#include "kx/host/bitmap.h"
#include "kx/host/color.h"
#include "kx/host/graphics.h"
#include "kx/host/types.h"

namespace kx {

class TBarSettings : public TKxPersistent {
    Q_OBJECT
    Q_PROPERTY(int Style READ Style WRITE setStyle)
    Q_PROPERTY(kx::TFont* Font READ Font WRITE SetFont DESIGNABLE false)
    Q_PROPERTY(int Options READ Options WRITE setOptions)
    Q_PROPERTY(int Color READ Color WRITE SetColor)
    Q_PROPERTY(int BkColor READ BkColor WRITE SetBkColor)
    Q_PROPERTY(double BkBrightness READ bkBrightness WRITE setBkBrightness)
    Q_PROPERTY(bool BkAuto READ BkAuto WRITE SetBkAuto)
    Q_PROPERTY(kx::TKxSBevel* Bevel READ Bevel WRITE SetBevel DESIGNABLE false)
    Q_PROPERTY(int minHeight READ minHeight WRITE SetminHeight)
    Q_PROPERTY(int minWidth READ minWidth WRITE SetminWidth)
  public:
    // A fixed underlying type: any int converts to it without undefined behaviour.
    enum TBarStyle : int32_t { bsBar, bsLED_Bar, bsPoint, bsMultiColor };
    Q_ENUM(TBarStyle)
    // Class-scoped: other instruments have options of these names with other bits.
    enum TBarOption : int { opValue, opUnit, opUseSectorCol, opBidir };
    // A set of TBarOption as bits (bit n = option n).
    using TBarOptions = uint8_t;
    static constexpr TBarOptions BarOption(TBarOption o) { return TBarOptions(1u << o); }

    explicit TBarSettings(QObject* parent = nullptr);
    ~TBarSettings() override;

    TBarStyle Style() const { return style_; }
    // Values outside the four styles are ignored.
    void SetStyle(TBarStyle v);
    // The value text's font (colour clBtnHighlight; the text is drawn in that colour
    // whatever the font's own, so that it inverts what lies beneath).
    TFont* Font() const { return font_; }
    // Copies font into the owned one (a null font is ignored), then notifies.
    void SetFont(const TFont* font);
    TBarOptions Options() const { return options_; }
    void SetOptions(TBarOptions v);
    bool HasOption(TBarOption o) const { return options_ & BarOption(o); }
    TColor Color() const { return color_; }
    void SetColor(TColorArg v);
    TColor BkColor() const { return bkColor_; }
    void SetBkColor(TColorArg v);
    float BkBrightness() const { return bkBrightness_; }
    void SetBkBrightness(float v);
    bool BkAuto() const { return bkAuto_; }
    void SetBkAuto(bool v);
    // Owned; its changes reach these settings. The setter copies (null is ignored).
    TKxSBevel* Bevel() const { return bevel_; }
    void SetBevel(const TKxSBevel* v);
    int32_t minHeight() const { return minHeight_; }
    // Accepted only when > 0; stores and notifies without comparing.
    void SetminHeight(int32_t v);
    int32_t minWidth() const { return minWidth_; }
    void SetminWidth(int32_t v);

    // Qt-style names for uic and the property system.
    void setStyle(int v) { SetStyle(TBarStyle(v)); }
    void setOptions(int v) { SetOptions(TBarOptions(v)); }
    double bkBrightness() const { return double(bkBrightness_); }
    void setBkBrightness(double v) { SetBkBrightness(float(v)); }

    // Fields the owner sets before painting.
    TRect BarRect{};
    TSectorSettings* SectorSettings;  // owned; the sectors of BkAuto, bsMultiColor, LEDs
    TColor BarColor = clLime;         // the colour used with opUseSectorCol
    QString ValueText;
    QString UnitText;
    int32_t BidirOrigin = 0;  // per mille: where a bidirectional bar starts
    // Derived from BarRect at each PaintBar.
    int32_t BarWidth = 0;
    int32_t BarHeight = 0;

    // Composes the bar for the position ppt (per mille) and draws it at BarRect.
    void PaintBar(TCanvas& canvas, int32_t ppt);
    // Only the sector background (dimmed) into BarRect.
    void Paint(TCanvas& canvas, int32_t ppt, const TSectorSettings& sectors);
    // The seven bands over rect (vertical when rect is higher than wide), dimmed by
    // BkBrightness when dim.
    void DrawSector(TCanvas& canvas, const TRect& rect, int32_t ppt, const TSectorSettings& sectors,
                    bool dim) const;
    void DrawHSector(TCanvas& canvas, const TRect& rect, const TSectorSettings& sectors,
                     bool dim) const;
    void DrawVSector(TCanvas& canvas, const TRect& rect, const TSectorSettings& sectors,
                     bool dim) const;

    // The colour of LED segment k of n for the reading at ppt (see above).
    TColor LedColor(int32_t k, int32_t n, int32_t ppt) const;

    // To another TBarSettings: every published setting, then one Change.
    void AssignTo(TKxPersistent* dest) const override;

  private:
    void hookOwned();
    void paintBar(bool vertical, int32_t ppt);
    void drawBands(TCanvas& canvas, const TRect& rect, const TSectorSettings& sectors, bool dim,
                   bool vertical) const;
    void drawText();
    // The span [a, b) along the bar as a rectangle of the work bitmap.
    TRect span(bool vertical, int32_t a, int32_t b) const;
    void prepare(TBitmap& bitmap, const TCanvas& canvas) const;

    TBarStyle style_ = bsBar;
    TFont* font_;
    TBarOptions options_ = 0;
    TColor color_ = clLime;
    TColor bkColor_ = clBlack;
    float bkBrightness_ = 0.0f;
    bool bkAuto_ = false;
    TKxSBevel* bevel_;
    int32_t minHeight_ = 5;
    int32_t minWidth_ = 5;

    // Work bitmaps: the bar, the sector strip of bsMultiColor, the text.
    TBitmap bar_;
    TBitmap strip_;
    TBitmap text_;
};

using TBarStyle = TBarSettings::TBarStyle;
inline constexpr TBarStyle bsBar = TBarSettings::bsBar;
inline constexpr TBarStyle bsLED_Bar = TBarSettings::bsLED_Bar;
inline constexpr TBarStyle bsPoint = TBarSettings::bsPoint;
inline constexpr TBarStyle bsMultiColor = TBarSettings::bsMultiColor;

// The flat properties of a TBarSettings (see flatproperty.h).
#define KX_FLAT_BARSETTINGS(Prefix, Object)                                    \
    KX_FLAT_ENUM(Prefix##_Style, Object, Style, ::kx::TBarSettings::TBarStyle, \
                 ::kx::TBarSettings::bsMultiColor)                             \
    KX_FLAT_FONT(Prefix##_Font, (Object)->Font())                              \
    KX_FLAT(int, Prefix##_Options, Object, Options)                            \
    KX_FLAT_COLOR(Prefix##_Color, Object, Color)                               \
    KX_FLAT_COLOR(Prefix##_BkColor, Object, BkColor)                           \
    KX_FLAT_SINGLE(Prefix##_BkBrightness, Object, BkBrightness)                \
    KX_FLAT(bool, Prefix##_BkAuto, Object, BkAuto)                             \
    KX_FLAT_SBEVEL(Prefix##_Bevel, (Object)->Bevel())                          \
    KX_FLAT(int, Prefix##_minHeight, Object, minHeight)                        \
    KX_FLAT(int, Prefix##_minWidth, Object, minWidth)

}  // namespace kx
