#pragma once
// TKxDial: a round knob with which the operator sets a value. A pointer mark on a round
// face turns over a 270-degree sweep from lower left over the top to lower right, with a
// scale round the face, a value box with unit above it and the signal names below. Value
// model, keys, wheel and the start of a drag come from TKxAnalogCControl (adjuster.h).
//
// Properties in declaration order, after the frame's (framedadjuster.h: BevelOuter,
// BevelValue, FontValue, Options):
//   BevelDial     TKxSBevel: ColorShadowFrom clBtnHighlight, ColorShadowTo clBtnShadow,
//                 BevelLine blOuter, PenColor clBtnShadow, Spacing 1: the face's ring
//   ScaleSettings TScaleSettings: font size 8: the scale round the face
//   PointerType   TDialPointer, dpRound: dpRound, dpLine or dpTriangle
//   PointerSize   int32, 8 (1..100; other values are ignored)
// Options: all seven, opBevelOuter, opUnit, opValue, opName1, opName2, opScale,
// opScaleText.
// Initial size 113 x 161.
//
// Layout (Paint), from the outside in:
//  - the frame (adjusterframe.h): BevelOuter filled (without opBevelOuter the whole
//    control takes its colour); with opValue, the value box at the top, centred with
//    room for the unit (opUnit, in Font, right of the box): the sample value text in
//    FontValue sets its size; with opName1/opName2, the names at the bottom in Font,
//    centred (Name2 lowest);
//  - the largest square that fits the rest, centred; with opScale the dial scale runs
//    round it (labels with opScaleText) and the face is the knob square inside the ticks,
//    without opScale the face is the square less 2 pixels each side;
//  - the face: BevelDial as a round bevel. A face smaller than 8 pixels is not drawn and
//    the dial shows no pointer.
// In a control too small for all of it, the parts give way to the face so that nothing
// overlaps: a unit that does not fit beside the box is left out; the names are left out
// when they would leave less than 12 pixels for the face; then the value box, when it is
// wider than the control or would leave less than that.
// Pointer marks, laid out at the top of the face and turned to the sweep's start; R is
// the face's radius, s = PointerSize:
//   dpRound     a sunken spot of radius max(2, s div 2) whose centre lies
//               R - radius - 3 from the face's centre;
//   dpLine      a line of width 2 from R - 3 to max(1, R - 3 - 2 s) from the centre;
//   dpTriangle  a triangle with its tip at R - 3 and a base s wide at R - 3 - s, black
//               outline.
// The mark's colour is ColorFocus with the focus, ColorNonFocus without, clBtnShadow while
// disabled.
//
// A reading (or focus change) composes the mark on a copy of the face's background and
// puts the face on the surface in one copy; the value box's digits are drawn in one copy
// too. Nothing else is redrawn.
//
// Turning by mouse: a press on the face starts a drag; each move adds the change of the
// mouse's direction seen from the face's centre to the pointer's angle. A change of more
// than 200 degrees has crossed the bottom gap and is unwrapped, so the pointer never jumps
// across the gap; the angle stays within 0..270, and the digit follows as
// DigitalFrom + Round(TotalDigit x (angle + 0.0001) / 270). A press or move that does not
// change the mouse's direction leaves the value alone (with more digits than per-mille
// steps, re-reading the pointer's angle would otherwise move the value by a click).
#include "kx/adjusters/framedadjuster.h"
#include "kx/drawing/spot.h"
#include "kx/framework/sbevel.h"
#include "kx/framework/scalesettings.h"
#include "kx/host/bitmap.h"

namespace kx {

class TKxDial : public TKxFramedAdjuster {
    Q_OBJECT
  public:
    enum TDialOption : int {
        opBevelOuter,
        opUnit,
        opValue,
        opName1,
        opName2,
        opScale,
        opScaleText
    };
    Q_ENUM(TDialOption)
    using TDialOptions = uint8_t;
    static constexpr TDialOptions DialOption(TDialOption o) { return TDialOptions(1u << o); }
    static constexpr TDialOptions kAllOptions = 127;
    enum TDialPointer : int { dpRound, dpLine, dpTriangle };
    Q_ENUM(TDialPointer)

  private:
    Q_PROPERTY(kx::TKxSBevel* BevelDial READ BevelDial WRITE SetBevelDial DESIGNABLE false)
    Q_PROPERTY(kx::TScaleSettings* ScaleSettings READ ScaleSettings WRITE SetScaleSettings
                   DESIGNABLE false)
    Q_PROPERTY(TDialPointer PointerType READ PointerType WRITE setPointerType)
    Q_PROPERTY(int PointerSize READ PointerSize WRITE setPointerSize)

  public:
    static constexpr int32_t kStartAngle = 225;
    static constexpr int32_t kSweep = 270;
    static constexpr int32_t kMinFace = 8;

    explicit TKxDial(QWidget* parent = nullptr);

    TKxSBevel* BevelDial() const { return bevelDial_; }
    void SetBevelDial(const TKxSBevel* v);
    bool HasOption(TDialOption o) const { return HasOptionBit(o); }
    TScaleSettings* ScaleSettings() const { return scaleSettings_; }
    void SetScaleSettings(const TScaleSettings* v);
    TDialPointer PointerType() const { return pointerType_; }
    void SetPointerType(TDialPointer p);
    int32_t PointerSize() const { return pointerSize_; }
    void SetPointerSize(int32_t s);

    // Layout results of the last Paint.
    TRect FaceRect() const { return face_; }
    TPoint FaceCentre() const { return centre_; }
    // Degrees from the sweep's start, 0..270.
    float PointerAngle() const { return angle_; }
    // The mark's points for the current angle: the spot's centre (dpRound), the line's
    // ends (dpLine) or the triangle (dpTriangle).
    std::vector<TPoint> PointerPoints() const;

    void Loaded() override;

    void setPointerType(TDialPointer p) { SetPointerType(p); }
    void setPointerSize(int s) { SetPointerSize(s); }

    KX_FLAT_SBEVEL(BevelDial, BevelDial())
    KX_FLAT_SCALESETTINGS(ScaleSettings, ScaleSettings())

  protected:
    void Paint() override;
    void ValueChange() override;
    void MouseSlide(Qt::KeyboardModifiers shift, int32_t x, int32_t y, TPoint lastPos) override;
    void mousePressEvent(QMouseEvent* e) override;

  private:
    void layoutPointer();
    void drawPointer();

    TKxSBevel* bevelDial_;
    TScaleSettings* scaleSettings_;
    TBitmap background_;
    TBitmap work_;
    TKxSpot spot_;
    TRect face_{};
    TPoint centre_{};
    std::vector<TPoint> reference_;  // the mark's points at the sweep's start
    int32_t spotRadius_ = 4;
    float angle_ = 0.0f;
    float lastMouseAngle_ = 0.0f;
    int32_t pointerSize_ = 8;
    TDialPointer pointerType_ = dpRound;
    bool painted_ = false;
};

}  // namespace kx
