#pragma once
// TKxDial: a round knob with which the operator sets a value. A pointer mark on a round
// face turns over a 270-degree sweep from lower left over the top to lower right, with a
// scale round the face, a value box with unit above it and the signal names below. Value
// model, keys, wheel and the start of a drag come from TKxAnalogCControl (adjuster.h).
//
// Properties in declaration order (besides the base's):
//   BevelOuter    TKxSBevel: Spacing 5, BevelLine blOuter, Width 2: the frame of the whole
//   BevelValue    TKxSBevel: Style bsLowered, Width 2, Color black, Spacing 0: the value box
//   BevelDial     TKxSBevel: ColorShadowFrom clBtnHighlight, ColorShadowTo clBtnShadow,
//                 BevelLine blOuter, PenColor clBtnShadow, Spacing 1: the face's ring
//   FontValue     TFont: lime, "System", 10 points: the value box's digits
//   Options       TDialOptions, all seven: opBevelOuter, opUnit, opValue, opName1,
//                 opName2, opScale, opScaleText
//   ScaleSettings TScaleSettings: font size 8: the scale round the face
//   PointerType   TDialPointer, dpRound: dpRound, dpLine or dpTriangle
//   PointerSize   int32, 8 (1..100; other values are ignored)
// Initial size 113 x 161.
//
// Layout (Paint), from the outside in:
//  - BevelOuter filled (without opBevelOuter the whole control takes its colour);
//  - with opValue, the value box at the top, centred with room for the unit (opUnit, in
//    Font, right of the box): the sample value text in FontValue sets its size;
//  - with opName1/opName2, the names at the bottom in Font, centred (Name2 lowest);
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
#include "kx/framework/adjuster.h"
#include "kx/framework/sbevel.h"
#include "kx/framework/scalesettings.h"
#include "kx/host/bitmap.h"

namespace kx {

class TKxDial : public TKxAnalogCControl {
    Q_OBJECT
  public:
    enum TDialOption { opBevelOuter, opUnit, opValue, opName1, opName2, opScale, opScaleText };
    Q_ENUM(TDialOption)
    using TDialOptions = uint8_t;
    static constexpr TDialOptions DialOption(TDialOption o) { return TDialOptions(1u << o); }
    static constexpr TDialOptions kAllOptions = 127;
    enum TDialPointer { dpRound, dpLine, dpTriangle };
    Q_ENUM(TDialPointer)

  private:
    Q_PROPERTY(kx::TKxSBevel* BevelOuter READ BevelOuter WRITE SetBevelOuter DESIGNABLE false)
    Q_PROPERTY(kx::TKxSBevel* BevelValue READ BevelValue WRITE SetBevelValue DESIGNABLE false)
    Q_PROPERTY(kx::TKxSBevel* BevelDial READ BevelDial WRITE SetBevelDial DESIGNABLE false)
    Q_PROPERTY(kx::TFont* FontValue READ FontValue WRITE SetFontValue DESIGNABLE false)
    Q_PROPERTY(int Options READ Options WRITE setOptions)
    Q_PROPERTY(kx::TScaleSettings* ScaleSettings READ ScaleSettings WRITE SetScaleSettings
                   DESIGNABLE false)
    Q_PROPERTY(TDialPointer PointerType READ PointerType WRITE setPointerType)
    Q_PROPERTY(int PointerSize READ PointerSize WRITE setPointerSize)

  public:
    static constexpr int32_t kStartAngle = 225;
    static constexpr int32_t kSweep = 270;
    static constexpr int32_t kMinFace = 8;

    explicit TKxDial(QWidget* parent = nullptr);

    TKxSBevel* BevelOuter() const { return bevelOuter_; }
    void SetBevelOuter(const TKxSBevel* v);
    TKxSBevel* BevelValue() const { return bevelValue_; }
    void SetBevelValue(const TKxSBevel* v);
    TKxSBevel* BevelDial() const { return bevelDial_; }
    void SetBevelDial(const TKxSBevel* v);
    TFont* FontValue() const { return fontValue_; }
    void SetFontValue(const TFont* f);
    TDialOptions Options() const { return options_; }
    void SetOptions(TDialOptions o);
    bool HasOption(TDialOption o) const { return options_ & DialOption(o); }
    TScaleSettings* ScaleSettings() const { return scaleSettings_; }
    void SetScaleSettings(const TScaleSettings* v);
    TDialPointer PointerType() const { return pointerType_; }
    void SetPointerType(TDialPointer p);
    int32_t PointerSize() const { return pointerSize_; }
    void SetPointerSize(int32_t s);

    // Layout results of the last Paint.
    TRect FaceRect() const { return face_; }
    TPoint FaceCentre() const { return centre_; }
    TRect ValueBoxRect() const { return number_; }
    // Degrees from the sweep's start, 0..270.
    float PointerAngle() const { return angle_; }
    // The mark's points for the current angle: the spot's centre (dpRound), the line's
    // ends (dpLine) or the triangle (dpTriangle).
    std::vector<TPoint> PointerPoints() const;

    void Loaded() override;

    void setOptions(int o) { SetOptions(TDialOptions(o)); }
    void setPointerType(TDialPointer p) { SetPointerType(p); }
    void setPointerSize(int s) { SetPointerSize(s); }

    KX_FLAT_SBEVEL(BevelOuter, BevelOuter())
    KX_FLAT_SBEVEL(BevelValue, BevelValue())
    KX_FLAT_SBEVEL(BevelDial, BevelDial())
    KX_FLAT_FONT(FontValue, FontValue())
    KX_FLAT_SCALESETTINGS(ScaleSettings, ScaleSettings())

  protected:
    void Paint() override;
    void ParamChange(QObject* sender) override;
    void ValueChange() override;
    void MouseSlide(Qt::KeyboardModifiers shift, int32_t x, int32_t y, TPoint lastPos) override;
    void mousePressEvent(QMouseEvent* e) override;

  private:
    struct TBoxSize {
        int32_t W = 0, H = 0, M = 0, U = 0;  // sample text, its height, margin, unit
        int32_t BoxW = 0;                    // the box with its bevel
        int32_t Height = 0;                  // the box and the spacing below it
        QString Unit;
    };
    void requestRepaint();
    TBoxSize measureValueBox(TCanvas& c) const;
    TRect paintValueBox(TCanvas& c, TRect r, const TBoxSize& box);
    void layoutPointer();
    void drawPointer();
    void drawSpot(TCanvas& canvas, TPoint p, TColor color);

    TKxSBevel* bevelOuter_;
    TKxSBevel* bevelValue_;
    TKxSBevel* bevelDial_;
    TFont* fontValue_;
    TScaleSettings* scaleSettings_;
    TBitmap background_;
    TBitmap work_;
    TBitmap numberCache_;
    TBitmap spot_;  // the round mark, kept for its colour and size
    TColor spotColor_ = clNone;
    TRect face_{};
    TRect number_{};
    TPoint centre_{};
    std::vector<TPoint> reference_;  // the mark's points at the sweep's start
    int32_t spotRadius_ = 4;
    float angle_ = 0.0f;
    float lastMouseAngle_ = 0.0f;
    int32_t pointerSize_ = 8;
    TDialOptions options_ = kAllOptions;
    TDialPointer pointerType_ = dpRound;
    bool painted_ = false;
};

}  // namespace kx
