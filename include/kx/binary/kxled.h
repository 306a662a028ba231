#pragma once
// TKxLED: a lamp with a caption beside, above or below it. It shows Checked of the binary
// base (status word, groups, modes and blinking: see binarycontrol.h). It is windowless:
// it never takes the focus and its surface is transparent outside the lamp and the text,
// so it sits on whatever its parent paints.
//
// Properties in declaration order (the base's are listed in binarycontrol.h):
//   Caption       text, the object name until assigned; "|" separates lines
//   Font, ParentFont   ParentFont true
//   Checked, Flashing, Frequency, StatusInt, StatusBit, GroupIndex, Mode (mIndicator)
//   LED           TLED (owned): Shape sRound, ColorOn lime, ColorOff clBtnFace, 13 x 13;
//                 published flat as LED_Shape, LED_ColorOn, LED_ColorOff, LED_Width,
//                 LED_Height; any change repaints
//   LED_Position  TLEDPos, lpLeft: the side of the control the lamp sits on
//   Spacing       int32, 5: pixels between lamp and caption (negative values are kept and
//                 move the caption towards or over the lamp; the caption's position
//                 saturates at the int32 range)
// Initial size 73 x 33.
//
// Layout (Layout()): the lamp is w x h = LED.Width x LED.Height, a round lamp
// max(w, h) square. With cx = width div 2, cy = height div 2:
//   lpLeft    lamp (0, cy - h div 2, w, +h); caption at (lamp right + Spacing, cy), mid left
//   lpRight   lamp (width - w, cy - h div 2, width, +h); caption at (lamp left - Spacing, cy),
//             mid right
//   lpTop     lamp (cx - w div 2, 0, +w, h); caption at (cx, lamp bottom + Spacing), top centre
//   lpBottom  lamp (cx - w div 2, height - h, +w, height); caption at (cx, lamp top -
//             Spacing), bottom centre
// The caption lines are one block anchored there (KxTextOutMultiLine, line spacing 0),
// drawn transparently in Font. The control does not size itself: a caption line wider
// than the room on its side (to the control's edge beside the lamp, the control's width
// above or below it) is shortened with "…", so it never runs off the control.
//
// Painting: Paint draws the caption, then keeps two pictures of the lamp's rectangle, lit
// and dark, each the lamp drawn over what lies under it, and puts the current one on the
// surface. A status change or a blink phase copies the other picture into the lamp's
// rectangle of the last layout (and the pixel column and row after it, which the
// parallelogram outlines reach) in one copy, nothing else; a blink phase that arrives
// while Paint runs draws nothing. Lamps are drawn while the control is Visible() (shown
// or not yet shown) or at design time.
#include "kx/drawing/text.h"
#include "kx/framework/binarycontrol.h"
#include "kx/framework/led.h"
#include "kx/host/bitmap.h"

namespace kx {

class TKxLED : public TKxBinGControl {
    Q_OBJECT
  public:
    enum TLEDPos : int { lpLeft, lpRight, lpTop, lpBottom };
    Q_ENUM(TLEDPos)

  private:
    Q_PROPERTY(kx::TLED* LED READ LED WRITE SetLED DESIGNABLE false)
    Q_PROPERTY(TLEDPos LED_Position READ LED_Position WRITE SetLED_Position)
    Q_PROPERTY(int Spacing READ Spacing WRITE SetSpacing)

  public:
    // Where the lamp and the caption go in a control of the current size.
    struct TLayout {
        TRect Lamp;
        TPoint CaptionAt;
        toPos CaptionPos;
    };

    explicit TKxLED(QWidget* parent = nullptr);
    ~TKxLED() override;

    TLED* LED() const { return led_; }
    // Copies (null is ignored).
    void SetLED(const TLED* v);
    TLEDPos LED_Position() const { return position_; }
    // Values outside the four are ignored.
    void SetLED_Position(TLEDPos p);
    int32_t Spacing() const { return spacing_; }
    void SetSpacing(int32_t s);

    TLayout Layout() const;
    // The caption as the last Paint measured it: widest line and block height.
    int32_t CaptionWidth() const { return captionWidth_; }
    int32_t CaptionHeight() const { return captionHeight_; }

    KX_FLAT_LED(LED, LED())
    void setLED_Position(TLEDPos p) { SetLED_Position(p); }
    void setSpacing(int s) { SetSpacing(s); }

  protected:
    void Paint() override;
    void ParamChange(QObject* sender) override;
    void StatusChanged() override;
    void Flash(bool on) override;

  private:
    void drawLamp(bool on);
    void cacheLamps(TCanvas& canvas);
    TRect lampArea() const;

    TLED* led_;
    TBitmap lampOn_;
    TBitmap lampOff_;
    TLEDPos position_ = lpLeft;
    int32_t spacing_ = 5;
    int32_t captionWidth_ = 0;
    int32_t captionHeight_ = 0;
    bool painting_ = false;
};

inline constexpr auto lpLeft = TKxLED::lpLeft;
inline constexpr auto lpRight = TKxLED::lpRight;
inline constexpr auto lpTop = TKxLED::lpTop;
inline constexpr auto lpBottom = TKxLED::lpBottom;

}  // namespace kx
