#pragma once
// TKxValueInd: a numeric readout instrument. It shows the reading as a number in a large
// font inside a dark, sunken value box, the unit beside it, two name lines at the bottom
// and two bevels. The digits can take the colour of the sector the reading lies in, and
// they blink on an overflow or a limit violation.
//
// Layout (Paint), from the client rectangle inward: the outer bevel (opBevelOuter), the
// name lines at the bottom (Name2 lowest, each centred, in Font), the inner bevel
// (opBevelInner, filled); what is left is the display area. In it stands one block,
// centred both ways: the value box and, with opUnit and a non-empty unit, e pixels to its
// right the unit in FontUnit, its bottom level with the bottom of the number.
//  - The number field (NumberRect) is as wide as SignalSettings.SampleValueText and as
//    high as a line of it in FontValue; the value box is the field widened by e on both
//    sides and framed by BevelValue (filled with BevelValue.Color): e = the text height
//    div 6 (the room a right-aligned number keeps from the frame).
//  - A block larger than the display area is cut to it (the box keeps its left edge
//    at the area's left then); the number field is never larger than the area.
//
// A reading redraws only the number field: the number (ValueText, i.e. FormatFloat with
// SignalSettings.ValueFormat; at design time SampleValueText) right-aligned in FontValue
// on a copy of the cached field background, put on the surface in one copy. A number
// wider than its field shows as a row of '#' (a cut number would read as another one).
//
// Colour of the digits: BlinkColor1 / BlinkColor2 in turn while blinking; else, with
// opSectorColor, the colour of the sector (1, 2 or 3) that holds the reading; else
// FontValue's colour.
//
// Blinking: with opOverflow a reading beyond either end of the range, with opLimit a
// reading beyond LimitUpper / LimitLower makes the digits blink yellow and red (the blink
// service's square wave, code 4). Unlike the meters, a limit violation changes the colour
// too: a readout has nothing else to show it with. When the blinking stops, the number is
// redrawn at once in its normal colour. At design time nothing blinks.
//
// Size: with AutoSize the control takes exactly the required size: the block's width
// (or the widest name) plus both bevels wide, the value box's height plus the names and
// both bevels high. Without AutoSize the size is kept as it is.
//
// Published properties, in declaration order (besides those of TKxAnalogGControl):
//  - AutoSize (bool, false)
//  - BevelInner (TKxSBevel: lowered, Spacing 5, Width 2, line blInner)
//  - BevelOuter (TKxSBevel: raised, Spacing 5, Width 2, line blOuter)
//  - BevelValue (TKxSBevel: lowered, Spacing 0, Width 2, Color clBlack, line blNone)
//  - FontValue (TFont: "Arial", 18 points, bold, clLime)
//  - FontUnit (TFont: "Arial", 10 points, clBlack)
//  - Options (int, bits of TValueIndOption: all but opSectorColor)
// Default size 160 x 96.
//
// Options (bit n = option n): opBevelInner, opBevelOuter, opUnit, opName1, opName2,
// opOverflow, opLimit, opSectorColor.
//
// Choices:
//  - The digits blink rather than the box: the box keeps its colour so the number stays
//    readable in both phases.
//  - The unit sits beside the number, not below it: a readout is usually wider than high.
//  - Settings changes (fonts, bevels, signal settings) repaint the readout.
//
// Bad input: a NaN reading is ignored by the value model; an infinite or far out-of-range
// reading is shown as FormatFloat formats it (or as '#' when too wide) and blinks as an
// overflow. A display area under 2 pixels either way is too small: no box, no number and
// no blinking (bevels and names are still drawn). Sizes up to 4000 x 4000 and any font
// size are safe; all layout sums saturate.
#include "kx/framework/analogcontrol.h"
#include "kx/framework/sbevel.h"
#include "kx/host/bitmap.h"

namespace kx {

class TKxValueInd : public TKxAnalogGControl {
    Q_OBJECT
    Q_PROPERTY(bool AutoSize READ AutoSize WRITE setAutoSize)
    Q_PROPERTY(kx::TKxSBevel* BevelInner READ BevelInner WRITE SetBevelInner DESIGNABLE false)
    Q_PROPERTY(kx::TKxSBevel* BevelOuter READ BevelOuter WRITE SetBevelOuter DESIGNABLE false)
    Q_PROPERTY(kx::TKxSBevel* BevelValue READ BevelValue WRITE SetBevelValue DESIGNABLE false)
    Q_PROPERTY(kx::TFont* FontValue READ FontValue WRITE SetFontValue DESIGNABLE false)
    Q_PROPERTY(kx::TFont* FontUnit READ FontUnit WRITE SetFontUnit DESIGNABLE false)
    Q_PROPERTY(int Options READ Options WRITE setOptions)
  public:
    enum TValueIndOption : int {
        opBevelInner,
        opBevelOuter,
        opUnit,
        opName1,
        opName2,
        opOverflow,
        opLimit,
        opSectorColor
    };
    using TValueIndOptions = uint16_t;
    static constexpr TValueIndOptions ValueIndOption(TValueIndOption o) {
        return TValueIndOptions(1u << o);
    }
    static constexpr TValueIndOptions kAllValueIndOptions = 0xFF;
    static constexpr TValueIndOptions kDefaultOptions = 0x7F;

    explicit TKxValueInd(QWidget* parent = nullptr);
    ~TKxValueInd() override;

    bool AutoSize() const { return autoSize_; }
    void SetKxAutoSize(bool v);
    // The settings setters copy the given object; null is ignored.
    TKxSBevel* BevelInner() const { return bevelInner_; }
    void SetBevelInner(const TKxSBevel* v);
    TKxSBevel* BevelOuter() const { return bevelOuter_; }
    void SetBevelOuter(const TKxSBevel* v);
    TKxSBevel* BevelValue() const { return bevelValue_; }
    void SetBevelValue(const TKxSBevel* v);
    TFont* FontValue() const { return fontValue_; }
    void SetFontValue(const TFont* v);
    TFont* FontUnit() const { return fontUnit_; }
    void SetFontUnit(const TFont* v);
    TValueIndOptions Options() const { return options_; }
    void SetOptions(TValueIndOptions v);
    bool HasOption(TValueIndOption o) const { return options_ & ValueIndOption(o); }

    void setAutoSize(bool v) { SetKxAutoSize(v); }
    void setOptions(int v) { SetOptions(TValueIndOptions(v)); }

    KX_FLAT_SBEVEL(BevelInner, BevelInner())
    KX_FLAT_SBEVEL(BevelOuter, BevelOuter())
    KX_FLAT_SBEVEL(BevelValue, BevelValue())
    KX_FLAT_FONT(FontValue, FontValue())
    KX_FLAT_FONT(FontUnit, FontUnit())

    void Loaded() override;
    // Measures names, sample number and unit; with AutoSize applies the required size.
    void CalcSize();
    // Redraws the number field (composed off-screen, one copy to canvas).
    void DrawNumber(TCanvas& canvas);

    // Geometry and state of the last Paint and reading.
    TRect DisplayArea() const { return area_; }
    TRect ValueBox() const { return box_; }       // with its bevel
    TRect NumberRect() const { return number_; }  // inside the bevel
    TRect UnitRect() const { return unit_; }      // empty without a unit
    bool TooSmall() const { return tooSmall_; }
    bool Blinking() const { return blinking_; }
    // The colour the digits were last drawn in.
    TColor DigitColor() const { return digitColor_; }
    // The size AutoSize applies (valid after CalcSize).
    QSize RequiredSize() const { return required_; }

  protected:
    void ParamChange(QObject* sender) override;
    void Paint() override;
    void ValueChange() override;
    void OverflowChange(int32_t ppt) override;
    void LimitChange() override;
    void WMFlash(TMessage& message) override;

  private:
    void requestRepaint();
    void flash();
    TColor normalColor() const;
    bool shown() const { return Visible() || Designing(); }

    bool autoSize_ = false;
    TKxSBevel* bevelInner_;
    TKxSBevel* bevelOuter_;
    TKxSBevel* bevelValue_;
    TFont* fontValue_;
    TFont* fontUnit_;
    TValueIndOptions options_ = kDefaultOptions;

    TNameSizes names_;
    int32_t valueW_ = 0, valueH_ = 0, unitW_ = 0, unitH_ = 0;
    QSize required_;
    TRect area_{}, box_{}, number_{}, unit_{};
    bool tooSmall_ = false;
    TBitmap background_;
    TBitmap work_;
    bool blinking_ = false;
    TColor blinkColor_ = clRed;
    TColor digitColor_ = clLime;
    int32_t drawing_ = 0;  // depth of ValueChange runs (they nest on new extremes)
};

}  // namespace kx
