#pragma once
// TKxGearDial: a multi-turn knob for fine setting. A knurled wheel, lit from the upper
// left, turns several times across the range, so that one turn covers only a part of it;
// a sunken mark on its face shows the wheel's position and the number in the middle
// counts the whole turns. The value box with its unit stands at the top and the names at
// the bottom, as on the dial. Value model, keys and wheel come from TKxAnalogCControl
// (adjuster.h).
//
// Properties in declaration order, after the frame's (framedadjuster.h: BevelOuter,
// BevelValue, FontValue, Options):
//   Turns       int32, 10 (1..1000; other values are ignored): turns across the range
//   Teeth       int32, 36 (8..180; other values are ignored): knurls round the rim
//   KnobColor   TColor, clBtnFace: the colour the face is shaded towards
// Options: all six, opBevelOuter, opUnit, opValue, opName1, opName2, opTurns (the turn
// counter).
// Initial size 113 x 161.
//
// Layout (Paint): the frame of every adjuster (adjusterframe.h), then the largest square
// that fits the rest, centred and 2 pixels in from it: the knob. A knob smaller than 16
// pixels is not drawn. R is the knob's radius (side div 2), k = max(3, side div 10) the
// depth of the knurled rim:
//  - the rim: a disc in KnobColor at 80 % brightness with a clBtnShadow outline;
//  - the face: the knob less k on every side, shaded diagonally from clBtnHighlight at
//    the upper left to KnobColor (KxCircleGradFill), clBtnShadow outline;
//  - Teeth radial knurls on the rim from R - k + 1 to R - 2 from the centre, turned with
//    the wheel, each shaded by its direction: 100 % clBtnHighlight facing the upper left,
//    clBtnShadow facing the lower right (KxCalcColor over 100 steps, 50 + 50 cos of the
//    angle from the upper left); on knobs of 60 pixels and more each knurl is doubled by
//    a second line one pixel to its right (steep knurls) or below it (flat ones);
//  - the mark: a sunken spot (KxCircleAtPoint) of radius max(2, (R - k) div 8) whose
//    centre lies R - k - radius - 3 from the centre, in ColorFocus with the focus,
//    ColorNonFocus without, clBtnShadow while disabled;
//  - with opTurns, the whole turns done (0..Turns) in Font, centred, when the text fits
//    in the face less the mark (its width and height at most R - k - 2 x radius - 4).
//
// The wheel's angle is TotalAngle mod 360, TotalAngle = Turns x 360 x (Digit -
// DigitalFrom) / TotalDigit in double (0 for an empty range), 0 straight up, clockwise.
//
// A reading (or focus change) composes knurls, mark and counter on a copy of the knob's
// background and puts the knob on the surface in one copy; the value box's digits are
// drawn in one copy too. Nothing else is redrawn.
//
// Turning by mouse: a press on the knob starts a drag; each move adds the change of the
// mouse's direction seen from the knob's centre, taken the short way round (-180..180),
// to the drag's angle, which stays within 0..Turns x 360; the digit follows as
// DigitalFrom + Round(TotalDigit x angle / (Turns x 360)). The drag's angle is kept
// between moves, so slow turns add up even when a digit spans many degrees.
#include "kx/adjusters/framedadjuster.h"
#include "kx/drawing/spot.h"
#include "kx/host/bitmap.h"

namespace kx {

class TKxGearDial : public TKxFramedAdjuster {
    Q_OBJECT
  public:
    enum TGearOption : int { opBevelOuter, opUnit, opValue, opName1, opName2, opTurns };
    Q_ENUM(TGearOption)
    using TGearOptions = uint8_t;
    static constexpr TGearOptions GearOption(TGearOption o) { return TGearOptions(1u << o); }
    static constexpr TGearOptions kAllOptions = 63;

  private:
    Q_PROPERTY(int Turns READ Turns WRITE setTurns)
    Q_PROPERTY(int Teeth READ Teeth WRITE setTeeth)
    Q_PROPERTY(QColor KnobColor READ QKnobColor WRITE setKnobColor)

  public:
    static constexpr int32_t kMinKnob = 16;

    explicit TKxGearDial(QWidget* parent = nullptr);

    // The settings setters copy the given object; null is ignored.
    bool HasOption(TGearOption o) const { return HasOptionBit(o); }
    int32_t Turns() const { return turns_; }
    void SetTurns(int32_t v);
    int32_t Teeth() const { return teeth_; }
    void SetTeeth(int32_t v);
    TColor KnobColor() const { return knobColor_; }
    void SetKnobColor(TColorArg c);

    // Layout results of the last Paint; an empty knob when it was too small.
    TRect KnobRect() const { return knob_; }
    TPoint KnobCentre() const { return centre_; }
    int32_t RimDepth() const { return rim_; }
    // Degrees from the range's start, 0..Turns x 360, and the whole turns done.
    double TotalAngle() const { return total_; }
    int32_t TurnCount() const;
    // The mark's centre and radius for the current value.
    TPoint MarkPoint() const;
    int32_t MarkRadius() const { return markRadius_; }

    void setTurns(int v) { SetTurns(v); }
    void setTeeth(int v) { SetTeeth(v); }
    QColor QKnobColor() const { return EncodeQColor(knobColor_); }
    void setKnobColor(const QColor& c) { SetKnobColor(c); }

  protected:
    void Paint() override;
    void ValueChange() override;
    void MouseSlide(Qt::KeyboardModifiers shift, int32_t x, int32_t y, TPoint lastPos) override;
    void mousePressEvent(QMouseEvent* e) override;

  private:
    void paintRim(TCanvas& c);
    void paintFace(TCanvas& b);
    void drawMoving();
    void drawTeeth(TCanvas& w, TPoint m);
    void drawCounter(TCanvas& w, TPoint m);
    double angleOf(int32_t digit) const;

    TKxSpot spot_;
    TBitmap background_;
    TBitmap work_;
    TRect knob_{};
    TPoint centre_{};
    double total_ = 0.0;
    double dragAngle_ = 0.0;  // the drag's own angle, kept between moves
    float lastMouseAngle_ = 0.0f;
    int32_t rim_ = 3;
    int32_t markRadius_ = 2;
    int32_t turns_ = 10;
    int32_t teeth_ = 36;
    TColor knobColor_ = clBtnFace;
    bool painted_ = false;
};

}  // namespace kx
