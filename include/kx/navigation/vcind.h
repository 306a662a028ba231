#pragma once
// TKxVCInd: the course/attitude indicator. A round artificial horizon shows pitch and
// roll (sky above and ground below a horizon line that moves with the pitch and turns
// with the roll, a pitch ladder moving with it, a fixed vehicle symbol in the middle, a
// roll scale on the bezel ring with a pointer), a course box above it and a deviation
// strip below it. Four readings, each with its own signal settings:
//  - Deviation is the value model's reading (Value, SignalSettings: range, limits,
//    sectors, overflow, minimum and maximum, hint, names): the deviation strip's needle
//    stands at its per-mille position; Deviation() and DeviationSettings() are other
//    names for Value() and SignalSettings().
//  - Pitch (PitchSettings): the span ValueFrom..ValueTo is what the window's diameter
//    shows, so it sets the ladder's pixels per degree; ValueFrom at the window's top
//    edge, ValueTo at its bottom edge when the pitch is the middle of the span.
//  - Roll (RollSettings): the roll scale's ticks cover ValueFrom..ValueTo.
//  - Course (CourseSettings): one turn is ValueFrom..ValueTo (0..360 by default); the
//    course box shows the course in CourseSettings.ValueFormat with its ValueUnit.
// ValueFormat, ValueUnit and Name1 of each settings object make the accessible text
// ("Pitch 5.0°; Roll -12.0°; Course 273°; Deviation 0.5"; see vcindaccessible.h).
//
// Layout (Paint), from the client rectangle inward: the outer bevel, the name lines at
// the bottom (Name2 lowest, from SignalSettings), the inner bevel; what is left is the
// instrument area A:
//  - three parts are stacked top to bottom and the block is centred in A, 2 pixels
//    apart: the course box, the face and the deviation strip, each centred across A;
//  - the course box (opCourse): a line of FontValue high and as wide as the course's
//    sample text (CourseSettings.SampleValueText + ValueUnit) plus 2 pixels on either
//    side, framed by one black pixel; left out when A is less than three boxes high or
//    narrower than the box;
//  - the deviation strip (opDeviation): A's width, 2 T + 3 high, T = A's smaller side
//    div 20 clamped to 3..10: the markers' row (T), the track (a black line with dots at
//    0, 250, 500, 750 and 1000 per mille and the sector bands under it with opSector),
//    the needle's row (T + 2); left out when A is less than 6 T high;
//  - the face: a square D = the smaller of A's width and what the box and the strip
//    leave of its height. Its circle is the bezel ring, b = max(1, D div 10) wide, in
//    ColorBezel with the roll ticks in white (opRollScale); inside it the window,
//    D - 2 b across, shows the horizon, the ladder (opPitchLadder) and the symbol;
//  - the deviation track runs from the window's left to its right (x0 .. x1 = the
//    face's Left + b .. Right - b - 1); the needle's apex is at
//    x0 + Round(f * PointerPosition()), f = (x1 - x0) / 1000 in single precision.
//
// The horizon, in the window's centre c with radius Rw = window side div 2: the card
// (horizon, ladder, roll pointer) is turned by -Roll (a bank to the right turns it
// anti-clockwise, as the world seen from the cockpit); along the card's up axis the
// horizon is h = Round((Pitch - mid) * D' / span) pixels below c (mid the middle of
// PitchSettings' range, span = ValueTo - ValueFrom, D' = 2 Rw): the pitch range's start
// (per mille 0) puts the horizon on the window's top edge, its middle (500) through c,
// its end (1000) on the bottom edge. Ladder lines every 5 degrees from -90 to 90 are
// 10 degrees apart long (Rw * 0.5, labelled with the unsigned angle on both sides in
// Font, white) and half that length between; only lines closer to c than 0.7 Rw are
// drawn, so the ladder keeps clear of the roll pointer. The
// roll pointer is a triangle in ColorSymbol, apex at the window's rim, at the angle
// -Roll from straight up; a roll of the range's start (per mille 0) puts it at the
// start's mirror image on the scale.
//
// Painting: Paint draws the static parts once and caches A as the background, plus an
// overlay of the face (the bezel ring with the roll scale and the symbol over a
// transparent window). A reading composes only what it moves on a work copy and puts
// it on the surface in one copy: Pitch, Roll or SetAttitude the face square (sky fill,
// ground polygon, ladder, the overlay, the roll pointer); Course the course box;
// Deviation (Value) the deviation strip (markers and needle). Settings changes repaint.
//
// Blinking: with opOverflow a deviation beyond either end makes the needle blink
// yellow and red (BlinkColor1/2); with opLimit a limit violation puts the indicator in
// the blink list as well, but only opOverflow changes the needle's colour. When the
// blinking stops the needle is redrawn at once in PointerColor. At design time nothing
// blinks.
//
// Published properties, in declaration order (besides those of TKxAnalogGControl):
//   BevelInner     TKxSBevel   lowered, inner line (the linear meters' defaults)
//   BevelOuter     TKxSBevel   raised, outer line
//   ColorBezel     TColor      RGB(48, 48, 48): the ring round the window
//   ColorGround    TColor      RGB(140, 90, 40)
//   ColorSky       TColor      RGB(40, 130, 220)
//   ColorSymbol    TColor      clYellow: the vehicle symbol and the roll pointer
//   Course         float       0
//   CourseSettings TSignalSettings  0..360, "000", unit "°", Name1 "Course"
//   FontValue      TFont       Arial 10 bold, black: the course box
//   Options        int         all bits (kAllVCIndOptions)
//   Pitch          float       0
//   PitchSettings  TSignalSettings  -30..30, "##0.0", unit "°", Name1 "Pitch"
//   PointerColor   TColor      clBlack: the deviation needle
//   Roll           float       0
//   RollSettings   TSignalSettings  -60..60, "##0.0", unit "°", Name1 "Roll"
// Name2 of the three is empty. SignalSettings (the deviation, whose Name1 and Name2 are
// the instrument's names at the bottom) defaults to -2..2, "##0.0", no unit; Value 0,
// LimitLower -2, LimitUpper 2. Size 220 x 220.
//
// Options (TVCIndOption, bit n = option n): opBevelInner, opBevelOuter, opName1,
// opName2, opOverflow, opLimit, opSector, opCourse, opDeviation, opRollScale,
// opPitchLadder.
//
// Choices where nothing prescribes the behaviour:
//  - The value model carries the deviation, the one reading with ends that mean
//    overflow; the circular course and the attitude have their own setters.
//  - Pitch is clamped to -90..90 (a pitch past the vertical is a roll of 180 and a
//    pitch on the other side, which the reading's source reports so); at +90 the
//    window is all sky, at -90 all ground, with the default range.
//  - Roll wraps into (-180, 180] (190 becomes -170, -180 becomes 180).
//  - Course wraps into CourseSettings' turn [ValueFrom, ValueFrom + |span|): 370
//    becomes 10 and -10 becomes 350 with the defaults.
//  - Ladder labels are drawn upright at their turned places (turned text is slower
//    and reads worse at small sizes); labels that reach over the ring are cut by it.
//  - An inverted pitch range (ValueFrom > ValueTo) turns the ladder upside down; the
//    roll range only limits which ticks are drawn (0, 10, 20, 30, 45, 60 and 90 each
//    side; 0 always).
//  - The deviation's minimum and maximum markers are half triangles above the track at
//    the recorded extremes (clamped to the range), outlined black, in MinColor /
//    MaxColor or with UseSectorCol in the sector colour of their position.
//  - Of the pitch, roll and course settings only the range, the format, the unit and
//    Name1 are used (no digits, no logarithmic mapping).
//  - The course box is drawn in the readout style of TKxValInd but formats with
//    CourseSettings (format and unit), so it is drawn by KxDrawNumberBox.
//  - Too small: an instrument area under 2 pixels either way, or a window radius
//    under 4 pixels: nothing but bevels and names is drawn and readings draw nothing;
//    ladder labels need a window radius of 24 and 10 degrees of ladder at least a text
//    line plus 2 pixels apart.
//
// Bad input: a NaN Pitch, Roll or Course is ignored (nothing changes, no event); an
// infinite Pitch clamps to ±90; an infinite Roll or Course, which has no direction, is
// ignored. Deviation follows the value model (NaN ignored, infinities pinned at the
// PointerPosition stops -30 and 1030). Ranges of any size (also tiny, huge or
// inverted) give defined, saturated geometry; nothing is drawn outside the control.
#include <array>

#include "kx/framework/analogcontrol.h"
#include "kx/framework/sbevel.h"
#include "kx/framework/signalsettings.h"
#include "kx/host/bitmap.h"

namespace kx {

class TKxVCInd : public TKxAnalogGControl {
    Q_OBJECT
    Q_PROPERTY(kx::TKxSBevel* BevelInner READ BevelInner WRITE SetBevelInner DESIGNABLE false)
    Q_PROPERTY(kx::TKxSBevel* BevelOuter READ BevelOuter WRITE SetBevelOuter DESIGNABLE false)
    Q_PROPERTY(QColor ColorBezel READ QColorBezel WRITE setColorBezel)
    Q_PROPERTY(QColor ColorGround READ QColorGround WRITE setColorGround)
    Q_PROPERTY(QColor ColorSky READ QColorSky WRITE setColorSky)
    Q_PROPERTY(QColor ColorSymbol READ QColorSymbol WRITE setColorSymbol)
    Q_PROPERTY(double Course READ Course WRITE setCourse)
    Q_PROPERTY(kx::TSignalSettings* CourseSettings READ CourseSettings WRITE SetCourseSettings
                   DESIGNABLE false)
    Q_PROPERTY(kx::TFont* FontValue READ FontValue WRITE SetFontValue DESIGNABLE false)
    Q_PROPERTY(int Options READ Options WRITE setOptions)
    Q_PROPERTY(double Pitch READ Pitch WRITE setPitch)
    Q_PROPERTY(kx::TSignalSettings* PitchSettings READ PitchSettings WRITE SetPitchSettings
                   DESIGNABLE false)
    Q_PROPERTY(QColor PointerColor READ QPointerColor WRITE setPointerColor)
    Q_PROPERTY(double Roll READ Roll WRITE setRoll)
    Q_PROPERTY(
        kx::TSignalSettings* RollSettings READ RollSettings WRITE SetRollSettings DESIGNABLE false)
  public:
    enum TVCIndOption : int {
        opBevelInner,
        opBevelOuter,
        opName1,
        opName2,
        opOverflow,
        opLimit,
        opSector,
        opCourse,
        opDeviation,
        opRollScale,
        opPitchLadder
    };
    using TVCIndOptions = uint16_t;
    static constexpr TVCIndOptions VCIndOption(TVCIndOption o) { return TVCIndOptions(1u << o); }
    static constexpr TVCIndOptions kAllVCIndOptions = 0x7FF;
    // The pitch a reading is clamped to, either way.
    static constexpr float kMaxPitch = 90.0f;

    explicit TKxVCInd(QWidget* parent = nullptr);
    ~TKxVCInd() override;

    // The settings setters copy the given object; null is ignored.
    TKxSBevel* BevelInner() const { return bevelInner_; }
    void SetBevelInner(const TKxSBevel* v);
    TKxSBevel* BevelOuter() const { return bevelOuter_; }
    void SetBevelOuter(const TKxSBevel* v);
    TColor ColorBezel() const { return colorBezel_; }
    void SetColorBezel(TColorArg c);
    TColor ColorGround() const { return colorGround_; }
    void SetColorGround(TColorArg c);
    TColor ColorSky() const { return colorSky_; }
    void SetColorSky(TColorArg c);
    TColor ColorSymbol() const { return colorSymbol_; }
    void SetColorSymbol(TColorArg c);
    float Course() const { return course_; }
    // Wraps into the course's turn; NaN and infinities are ignored. When the wrapped
    // course differs: store, redraw the course box, OnCourseChange.
    void SetCourse(float v);
    TSignalSettings* CourseSettings() const { return courseSettings_; }
    void SetCourseSettings(const TSignalSettings* v);
    TFont* FontValue() const { return fontValue_; }
    void SetFontValue(const TFont* v);
    TVCIndOptions Options() const { return options_; }
    void SetOptions(TVCIndOptions v);
    bool HasOption(TVCIndOption o) const { return options_ & VCIndOption(o); }
    float Pitch() const { return pitch_; }
    // Clamped to ±kMaxPitch; NaN ignored. When it differs: store, redraw the face,
    // OnAttitudeChange.
    void SetPitch(float v);
    TSignalSettings* PitchSettings() const { return pitchSettings_; }
    void SetPitchSettings(const TSignalSettings* v);
    TColor PointerColor() const { return pointerColor_; }
    void SetPointerColor(TColorArg c);
    float Roll() const { return roll_; }
    // Wrapped into (-180, 180]; NaN and infinities ignored. As SetPitch otherwise.
    void SetRoll(float v);
    TSignalSettings* RollSettings() const { return rollSettings_; }
    void SetRollSettings(const TSignalSettings* v);
    // Pitch and roll at once, with one redraw of the face and at most one
    // OnAttitudeChange; each is checked and mapped as its own setter does.
    void SetAttitude(float pitch, float roll);

    float Deviation() const { return Value(); }
    void SetDeviation(float v) { SetValue(v); }
    TSignalSettings* DeviationSettings() const { return SignalSettings(); }

    // Qt-style names for uic.
    QColor QColorBezel() const { return EncodeQColor(colorBezel_); }
    QColor QColorGround() const { return EncodeQColor(colorGround_); }
    QColor QColorSky() const { return EncodeQColor(colorSky_); }
    QColor QColorSymbol() const { return EncodeQColor(colorSymbol_); }
    QColor QPointerColor() const { return EncodeQColor(pointerColor_); }
    void setColorBezel(const QColor& c) { SetColorBezel(c); }
    void setColorGround(const QColor& c) { SetColorGround(c); }
    void setColorSky(const QColor& c) { SetColorSky(c); }
    void setColorSymbol(const QColor& c) { SetColorSymbol(c); }
    void setPointerColor(const QColor& c) { SetPointerColor(c); }
    void setCourse(double v) { SetCourse(ToSingle(v)); }
    void setPitch(double v) { SetPitch(ToSingle(v)); }
    void setRoll(double v) { SetRoll(ToSingle(v)); }
    void setOptions(int v) { SetOptions(TVCIndOptions(v)); }

    KX_FLAT_SBEVEL(BevelInner, BevelInner())
    KX_FLAT_SBEVEL(BevelOuter, BevelOuter())
    KX_FLAT_SIGNALSETTINGS(CourseSettings, CourseSettings())
    KX_FLAT_FONT(FontValue, FontValue())
    KX_FLAT_SIGNALSETTINGS(PitchSettings, PitchSettings())
    KX_FLAT_SIGNALSETTINGS(RollSettings, RollSettings())

    void Loaded() override;

    // Geometry and state of the last Paint and readings, in control coordinates.
    TRect InstrumentArea() const { return area_; }
    TRect CourseBox() const { return courseBox_; }
    TRect DeviationStrip() const { return devStrip_; }
    TRect FaceRect() const { return face_; }
    TRect WindowRect() const { return window_; }
    bool TooSmall() const { return tooSmall_; }
    // The horizon's offset along the card's up axis (pixels below the window's centre,
    // before clamping for drawing) and the card's turn in degrees (-Roll).
    int32_t HorizonOffset() const;
    float CardAngle() const { return -roll_; }
    // The horizon line's two ends on a circle of 2 Rw round the centre, the roll
    // pointer (apex first) and the deviation needle (apex first) of the last drawing.
    const std::array<TPoint, 2>& Horizon() const { return horizon_; }
    const std::array<TPoint, 3>& RollPointer() const { return rollPointer_; }
    const std::array<TPoint, 3>& Needle() const { return needle_; }
    // The deviation track's ends (pixels, inclusive) of the last Paint.
    int32_t TrackLeft() const { return trackL_; }
    int32_t TrackRight() const { return trackR_; }
    bool Blinking() const { return blinking_; }
    // The course text as the box shows it (format and unit).
    QString CourseText() const;
    const TBitmap& Background() const { return background_; }

  signals:
    void OnAttitudeChange(QObject* sender);
    void OnCourseChange(QObject* sender);

  protected:
    void ParamChange(QObject* sender) override;
    void Paint() override;
    void ValueChange() override;
    void OverflowChange(int32_t ppt) override;
    void LimitChange() override;
    void WMFlash(TMessage& message) override;

  private:
    void hookSettings();
    void requestRepaint();
    bool canDraw() const;
    void layout(TRect r);
    void paintStatic(TCanvas& c);
    void makeOverlay();
    // Compose on the work copy and copy the part to the surface.
    void drawFace();
    void drawCourse();
    void drawDeviation();
    void composeFace(TCanvas& w);
    void composeDeviation(TCanvas& w);
    void putOnSurface(const TRect& r);
    void pointerFlash();
    void attitudeChanged();
    TPoint toWork(TPoint p) const;

    TKxSBevel* bevelInner_;
    TKxSBevel* bevelOuter_;
    TColor colorBezel_;
    TColor colorGround_;
    TColor colorSky_;
    TColor colorSymbol_ = clYellow;
    float course_ = 0.0f;
    TSignalSettings* courseSettings_;
    TFont* fontValue_;
    TVCIndOptions options_ = kAllVCIndOptions;
    float pitch_ = 0.0f;
    TSignalSettings* pitchSettings_;
    TColor pointerColor_ = clBlack;
    float roll_ = 0.0f;
    TSignalSettings* rollSettings_;

    TNameSizes names_;
    TRect area_{};
    TRect courseBox_{};
    TRect devStrip_{};
    TRect face_{};
    TRect window_{};
    int32_t ring_ = 0;
    int32_t tick_ = 0;  // T of the deviation strip
    int32_t trackL_ = 0, trackR_ = 0, trackY_ = 0;
    bool tooSmall_ = true;
    TBitmap background_;  // the instrument area
    TBitmap work_;
    TBitmap overlay_;  // the face square: ring, ticks and symbol round a clear window
    TBitmap numberCache_;
    std::array<TPoint, 2> horizon_{};
    std::array<TPoint, 3> rollPointer_{};
    std::array<TPoint, 3> needle_{};
    TRect lastNeedle_{};
    bool blinking_ = false;
    TColor blinkColor_ = clRed;
    int32_t drawing_ = 0;
};

}  // namespace kx
