#pragma once
// TKxCompass: a compass rose that shows a heading. A card with ticks every 5 and 10
// degrees, labels every 30 degrees (N, E, S and W at the cardinal points, the other
// labels in tens of degrees: 3, 6, 12, 15, ... 33) and optional intercardinal letters;
// either a heading needle over a fixed card (the default) or, with opRotatingCard, a card
// that turns so that the heading stands at the top under a fixed lubber mark. A course
// marker (the "bug") the application sets stands on the rim; a boxed readout below the
// face shows the heading as a number with the unit beside it.
//
// Headings: every reading (SetValue, setValue, PostValue and the Value SetDigit derives)
// is wrapped into [0, 360) before it reaches the value model: -1 becomes 359, 361 becomes
// 1, 720 and -0 become 0. The value range is fixed at 0..360 (SignalSettings.ValueFrom 0,
// ValueTo 360): a settings pass that finds another range writes 0..360 back, so a range
// the application sets is ignored. DigitalFrom/DigitalTo stay free and only change the
// resolution of Digit; SetDigit beyond the digit range wraps like a heading (with the
// default 0..1000 digits, Digit 1250 is heading 90 and Digit 250). LogScale is refused:
// switching it on is undone at once (a heading of 0 comes back as 0.001, which the value
// model's switch gave it on the way).
//
// Layout (Paint), from the client rectangle inward:
//  - the outer bevel (opBevelOuter, filled);
//  - the name lines at the bottom (opName1, opName2; Name2 lowest), in Font;
//  - the readout (opReadout) at the bottom of what is left: a box sized for
//    SignalSettings.SampleValueText in FontValue, framed by BevelValue, centred, with the
//    unit (opUnit, SignalSettings.ValueUnit in Font) to its right, and
//    BevelOuter.Spacing above it. The unit is left out when it does not fit beside the
//    box; the whole readout when the box is wider than the area or takes more than a
//    third of its height;
//  - the inner bevel (opBevelInner, filled) around the rest: the face area (FaceArea);
//  - the face: the largest square centred in the face area (FaceRect), of side D and
//    radius R = (D - 1) div 2 about its centre C (KxCenterPoint). From the rim inward: the
//    marker ring of width B = max(3, R div 10) for the course bug, the min/max markers
//    and the lubber mark; the card, a circle of radius Rc = R - B - 1 in CardColor,
//    outlined in ScaleSettings.Color when ScaleSettings.DrawLine is set; the ticks
//    standing inward from the card's edge, every 10 degrees T = max(2, Rc div 8) long
//    with a pen of max(1, Rc div 50), every 5 degrees max(1, T div 2) long with a
//    one-pixel pen; the labels, upright, centred on a ring of radius
//    Rl = Rc - T - 2 - max(label width, label height) div 2 in ScaleSettings.Font
//    (cardinal letters in CardinalColor, numbers in ScaleSettings.Color); with
//    opIntercardinal NE, SE, SW and NW in ScaleSettings.Color on an inner ring of radius
//    Ri = Rl - max(label width, label height) - (their widest width) div 2.
//  - The needle (fixed card): the toolkit's arrow of kind 4 (a shaft with a head,
//    KxArrowField) for a radius Rn = Rc - T - 1, pivoting at C, its tip on the inner ends
//    of the 10-degree ticks, filled in ScaleSettings.PointerColor and outlined in
//    ScaleSettings.Color, with a centre cap of radius max(2, Rn div 12) in
//    ScaleSettings.Color over it.
//  - The course bug: a notched block B wide each side of the course direction filling
//    the marker ring, in CourseColor outlined black. The min/max markers: half triangles
//    in the marker ring, their straight edge on the recorded extreme's direction
//    (MinPPT / MaxPPT as per mille of the circle), the minimum's body anticlockwise of it,
//    the maximum's clockwise; filled in MinColor / MaxColor or, with UseSectorCol, in the
//    colour of the sector that holds the extreme; outlined black.
//  - The lubber mark (opRotatingCard): a triangle in ScaleSettings.PointerColor from the
//    marker ring at the top down to the tick ends, with the centre cap at C.
//  Angles are degrees clockwise from straight up. On a fixed card a direction d stands at
//  d; on a rotating card at d - heading, and the needle is replaced by the lubber mark.
//
// What a reading redraws: Paint caches the face square (without needle, bug and markers;
// with the card on a fixed card) as the background. A reading composes on a work copy of
// it: on a fixed card only the rectangles that the old and the new needle, bug and markers
// cover are restored, redrawn and copied to the surface; on a rotating card the card turns,
// so the whole face square is composed and copied in one copy. The number in the readout
// is repainted off-screen and put in its box in one copy. Nothing else is repainted.
// SetCourse redraws the same way (it never repaints the static parts).
//
// Published properties, in declaration order (besides those of TKxAnalogGControl):
//  BevelInner      TKxSBevel*   lowered, blInner (Spacing 5, Width 2)
//  BevelOuter      TKxSBevel*   raised, blOuter (Spacing 5, Width 2)
//  BevelValue      TKxSBevel*   the readout's frame: lowered, Width 2, Spacing 0, Color
//                               clBlack (the box's fill)
//  CardColor       TColor       clWhite
//  CardinalColor   TColor       clRed: N, E, S and W
//  Course          Single       0: the bug's direction, wrapped like a heading; NaN and
//                               +-Inf are ignored
//  CourseColor     TColor       clFuchsia
//  FontValue       TFont*       "System" 10, clLime: the readout's number
//  Options         int          kDefaultOptions (below)
//  ScaleSettings   TScaleSettings*  the card: Color (ticks, numbers, rim, outlines)
//                               clBlack, Font ("Arial" 11) for the labels, PointerColor
//                               clBlue (needle, lubber mark), DrawLine (the rim) true.
//                               Steps, SubSteps, PosLeftTop and the value formats are not
//                               used: a compass card is always the same.
// Defaults changed from the value model's: SignalSettings ValueTo 360, ValueFormat "000",
// ValueUnit "°", Name1 "Heading", Name2 ""; Value 0; LimitUpper 360 and LimitLower -1
// (no heading is ever beyond them); MinMax.MinVisible and MaxVisible false. Size 200 x 250.
//
// Options (TCompassOption, bit n = option n): opBevelInner, opBevelOuter, opName1,
// opName2, opUnit, opReadout, opCourse (the bug), opRotatingCard, opIntercardinal.
// kDefaultOptions: opBevelInner, opBevelOuter, opName1, opUnit, opReadout, opCourse.
//
// Choices:
//  - Nothing blinks: a wrapped heading never leaves the range, so the value model never
//    reports an overflow; limits on a circular quantity make no sense as a band, so the
//    default limits lie outside every heading. An application that sets limits (or uses
//    the sectors as heading bands over 0..1000 per mille of the circle) still gets
//    OnLimit and OnSectorChange from the value model; the compass draws neither.
//  - The readout shows Value in SignalSettings.ValueFormat; a heading that the format
//    rounds up to 360 (359.6 in "000") reads as 0 does ("000"), since 360 is north. A
//    number wider than the box shows as '#'. At design time it shows the heading too.
//  - The labels stay upright on a rotating card (only their places turn), so they read
//    at every heading.
//  - No AutoSize: the face takes the largest square that fits; a non-square control
//    leaves bevel surface beside or above and below it.
//  - The extremes of a circular quantity mean little (a turn through north jumps from
//    359 to 0), so the min/max markers are off by default.
//  - Labels need room: they are drawn only when Rl >= 2 label heights and the 30-degree
//    arc at Rl (Rl div 2) is at least the widest label plus 2; below that the card shows
//    only its ticks. The intercardinal letters need the labels and Ri - (their widest
//    width) div 2 >= the centre cap's radius + 2, so they keep clear of the cap.
//  - Too small: a face area under 2 pixels either way, or a face side D under kMinFace
//    (40), draws no card, needle, bug or markers; bevels, names and readout are drawn.
//  - The settings setters copy the given object; null is ignored. Settings changes
//    repaint the compass once it is loaded.
//  - Accessibility: the value model's interface reads Name1 and ValueText with the unit
//    ("Heading", "273 °"); it formats plainly, so a heading that rounds up to 360 reads
//    "360 °" there while the readout shows "000".
//
// Bad input: NaN and +-Inf readings are ignored like NaN (fmod gives NaN for them):
// nothing changes and no event fires; the same for Course. Huge finite readings wrap
// exactly (fmod is exact: 1e9 is 280). Sizes from 1 x 1 up draw
// without leaving the control; coordinates saturate or wrap as the drawing toolkit does.
#include <array>

#include "kx/framework/analogcontrol.h"
#include "kx/framework/areacomposer.h"
#include "kx/framework/sbevel.h"
#include "kx/framework/scalesettings.h"
#include "kx/host/bitmap.h"

namespace kx {

class TKxCompass : public TKxAnalogGControl {
    Q_OBJECT
    Q_PROPERTY(kx::TKxSBevel* BevelInner READ BevelInner WRITE SetBevelInner DESIGNABLE false)
    Q_PROPERTY(kx::TKxSBevel* BevelOuter READ BevelOuter WRITE SetBevelOuter DESIGNABLE false)
    Q_PROPERTY(kx::TKxSBevel* BevelValue READ BevelValue WRITE SetBevelValue DESIGNABLE false)
    Q_PROPERTY(QColor CardColor READ QCardColor WRITE SetQCardColor)
    Q_PROPERTY(QColor CardinalColor READ QCardinalColor WRITE SetQCardinalColor)
    Q_PROPERTY(double Course READ course WRITE setCourse)
    Q_PROPERTY(QColor CourseColor READ QCourseColor WRITE SetQCourseColor)
    Q_PROPERTY(kx::TFont* FontValue READ FontValue WRITE SetFontValue DESIGNABLE false)
    Q_PROPERTY(int Options READ Options WRITE setOptions)
    Q_PROPERTY(kx::TScaleSettings* ScaleSettings READ ScaleSettings WRITE SetScaleSettings
                   DESIGNABLE false)
  public:
    enum TCompassOption : int {
        opBevelInner,
        opBevelOuter,
        opName1,
        opName2,
        opUnit,
        opReadout,
        opCourse,
        opRotatingCard,
        opIntercardinal
    };
    // A set of TCompassOption as bits (bit n = option n).
    using TCompassOptions = uint16_t;
    static constexpr TCompassOptions CompassOption(TCompassOption o) {
        return TCompassOptions(1u << o);
    }
    static constexpr TCompassOptions kDefaultOptions = (1u << opBevelInner) | (1u << opBevelOuter) |
                                                       (1u << opName1) | (1u << opUnit) |
                                                       (1u << opReadout) | (1u << opCourse);
    static constexpr TCompassOptions kAllOptions = 0x1FF;
    // The smallest face side that shows a card.
    static constexpr int32_t kMinFace = 40;

    explicit TKxCompass(QWidget* parent = nullptr);
    ~TKxCompass() override;

    // The settings setters copy the given object; null is ignored.
    TKxSBevel* BevelInner() const { return bevelInner_; }
    void SetBevelInner(const TKxSBevel* v);
    TKxSBevel* BevelOuter() const { return bevelOuter_; }
    void SetBevelOuter(const TKxSBevel* v);
    TKxSBevel* BevelValue() const { return bevelValue_; }
    void SetBevelValue(const TKxSBevel* v);
    TColor CardColor() const { return cardColor_; }
    void SetCardColor(TColorArg v);
    TColor CardinalColor() const { return cardinalColor_; }
    void SetCardinalColor(TColorArg v);
    float Course() const { return course_; }
    // Wrapped into [0, 360); NaN and +-Inf are ignored. Redraws the moving parts only.
    void SetCourse(float v);
    TColor CourseColor() const { return courseColor_; }
    void SetCourseColor(TColorArg v);
    TFont* FontValue() const { return fontValue_; }
    void SetFontValue(const TFont* v);
    TCompassOptions Options() const { return options_; }
    void SetOptions(TCompassOptions v);
    bool HasOption(TCompassOption o) const { return options_ & CompassOption(o); }
    TScaleSettings* ScaleSettings() const { return scaleSettings_; }
    void SetScaleSettings(const TScaleSettings* v);

    // Qt-style names for uic and the colour properties as QColor.
    void setOptions(int v) { SetOptions(TCompassOptions(v)); }
    double course() const { return course_; }
    void setCourse(double v) { SetCourse(ToSingle(v)); }
    QColor QCardColor() const { return EncodeQColor(cardColor_); }
    void SetQCardColor(const QColor& c) { SetCardColor(c); }
    QColor QCardinalColor() const { return EncodeQColor(cardinalColor_); }
    void SetQCardinalColor(const QColor& c) { SetCardinalColor(c); }
    QColor QCourseColor() const { return EncodeQColor(courseColor_); }
    void SetQCourseColor(const QColor& c) { SetCourseColor(c); }

    KX_FLAT_SBEVEL(BevelInner, BevelInner())
    KX_FLAT_SBEVEL(BevelOuter, BevelOuter())
    KX_FLAT_SBEVEL(BevelValue, BevelValue())
    KX_FLAT_FONT(FontValue, FontValue())
    KX_FLAT_SCALESETTINGS(ScaleSettings, ScaleSettings())

    void Loaded() override;

    // A heading wrapped into [0, 360) (-0 and 360 give 0); NaN for NaN and +-Inf.
    static float WrapHeading(float v);
    // The readout's text for the current heading (see Choices).
    QString ReadoutText() const;

    // Geometry of the last Paint, in control coordinates.
    TRect FaceArea() const { return area_; }
    TRect FaceRect() const { return face_; }
    TPoint Center() const { return center_; }
    int32_t CardRadius() const { return cardR_; }
    int32_t MarkerRing() const { return ring_; }
    // The inside of the readout's frame (empty without a readout).
    TRect ReadoutBox() const { return readoutBox_; }
    bool TooSmall() const { return tooSmall_; }
    bool LabelsShown() const { return labelsShown_; }
    // State of the last composition: the card's turn and the needle's direction (degrees
    // clockwise; the needle's is -1 on a rotating card), the shapes in control coordinates
    // (the needle has 7 points; unused points of a shape repeat its last one).
    float CardAngle() const { return cardAngle_; }
    float NeedleAngle() const { return needleAngle_; }
    const std::array<TPoint, 7>& Needle() const { return needle_; }
    const std::array<TPoint, 5>& Bug() const { return bug_; }
    const std::array<TPoint, 6>& Markers() const { return markers_; }
    const TBitmap& Background() const { return background_; }
    // Composes the moving parts on the background and copies what changed to canvas.
    void DrawPointer(TCanvas& canvas);

  protected:
    void ParamChange(QObject* sender) override;
    void LogScaleChanged() override;
    void Paint() override;
    void ValueChange() override;
    float NormalizeReading(float v) const override { return WrapHeading(v); }

  private:
    struct TShapes;
    void requestRepaint();
    bool shown() const;
    void keepRange();
    // The card in face coordinates turned by rotation degrees.
    void drawCard(TCanvas& c, float rotation);
    void shapesFor(TShapes& s) const;
    void drawReadout();
    int32_t capRadius() const;

    TKxSBevel* bevelInner_;
    TKxSBevel* bevelOuter_;
    TKxSBevel* bevelValue_;
    TColor cardColor_ = clWhite;
    TColor cardinalColor_ = clRed;
    float course_ = 0.0f;
    TColor courseColor_ = clFuchsia;
    TFont* fontValue_;
    TCompassOptions options_ = kDefaultOptions;
    TScaleSettings* scaleSettings_;

    TRect area_{};
    TRect face_{};
    TPoint center_{};  // in control coordinates
    int32_t faceR_ = 0, cardR_ = 0, ring_ = 0, tick_ = 0, needleR_ = 0;
    int32_t labelW_ = 0, labelH_ = 0, labelR_ = 0, interR_ = 0;
    bool labelsShown_ = false, interShown_ = false;
    TRect readoutBox_{};
    bool tooSmall_ = true;
    TBitmap background_;
    TKxAreaComposer composer_;
    TBitmap number_;
    float cardAngle_ = 0.0f;
    float needleAngle_ = 0.0f;
    std::array<TPoint, 7> needle_{};
    std::array<TPoint, 5> bug_{};
    std::array<TPoint, 6> markers_{};
    std::array<TRect, 4> lastDirty_{};
};

}  // namespace kx
