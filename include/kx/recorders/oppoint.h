#pragma once
// TKxOperatingPoint: the current operating point (X, Y) of a machine shown as a marker
// over a picture of its characteristic curves, with an optional tail through the most
// recent positions. The picture (CharacteristicBMP) comes from the application; X and Y
// each have a TSignalSettings that maps engineering values (and raw digits) to the axis.
// The marker moves on the blink service's pulses every Interval milliseconds: setting a
// value only stores it, and the next pulse draws it.
//
// Painting. Paint draws the picture at (0, 0) (the control takes the picture's size) and
// then the points. The picture is the cached static part: a pulse copies the indicator
// area (IndRect enlarged by 5 pixels, the marker's margin) from the picture into an
// off-screen bitmap, which erases the previous marker and tail, draws tail and marker
// there and copies the bitmap to the surface in one copy; only that rectangle of the
// screen is updated. At a device ratio other than 1 Paint first draws the picture once
// onto the surface's grid, and pulses copy from that.
//
// Mapping. With the spans (Range) and ValueFrom of the two axes:
//     x‰ = Round(1000 / X span * (ValueX - X ValueFrom)), y‰ likewise,
// x‰ clamped to 0..1000; y‰ above 1000 becomes 1000, but a y‰ below 0 sets x‰ to 0 and
// stays negative, so a Y reading below its range shows at the left edge, below the area.
// In the indicator area's coordinates (W x H, the enlarged rectangle):
//     px = Round((W - 11) / 1000 * x‰) + 5,  py = Round((H - 11) / 1000 * (1000 - y‰)) + 5.
// So x‰ 0..1000 runs from IndRect.Left to IndRect.Right - 1, y‰ 1000..0 from IndRect.Top
// to IndRect.Bottom - 1.
//
// Each drawing of the points (every pulse, every Paint) stores (px, py) as the newest
// tail entry, draws the tail (when Tail) as a one-pixel polyline in TailColor through the
// first TailCount entries of the buffer, then the marker in Color, then moves the buffer
// one entry on (TailCount + 1, at most TailArraySize). The tail therefore shows the new
// position and the TailCount - 1 before it. A Paint counts as a drawing, so it adds an
// entry too. At design time a dotted rectangle in TailColor outlines IndRect.
//
// Choices where the classic component leaves them open:
//  - Marker: four strokes of a 3-pixel pen (round ends) on the axes through (px, py),
//    from 3 to 4 pixels off the centre each way. With the pen's ends they cover the
//    pixels 2..5 off the centre, 3 wide, leaving a 3 x 3 hole on the point itself, and
//    stay inside the 5-pixel margin, so the marker never leaves the indicator area.
//  - Setters of values and colours only store; the next pulse shows them (a repaint
//    would add a tail entry). At design time, where nothing pulses, they repaint. A
//    change of IndRect repaints (the old marker must go), so does a new picture.
//  - DigitX counts raw digits from the axis' ValueFrom: ValueX = ValueFrom + DigitX *
//    ValuePerDigit and DigitX = Round((ValueX - ValueFrom) * DigitPerValue), so the two
//    round-trip whatever DigitalFrom is. A change of an axis' settings derives the
//    digits anew from the values (the value is what the application gave).
//  - Without a picture a pulse does nothing (no marker, no tail entry). While the
//    control is hidden, or before the first Paint after an Invalidate, a pulse records
//    its entry but leaves the surface alone (the coming Paint draws everything).
//  - The subscription starts at Loaded (never while Designing) and ends in the
//    destructor; a pulse while Designing draws nothing.
//
// Bad input:
//  - A NaN ValueX or ValueY is ignored (nothing stored). An infinite or huge value
//    clamps like any value out of range (Round saturates); its digit saturates to the
//    int16 range.
//  - A zero span (possible with WriteRange or a copied range) gives x‰ (y‰) 0 without
//    dividing; an infinite span gives 0 as well. A reversed range (negative span) mirrors
//    the axis.
//  - Positions are computed in 64 bits and saturated to int32, so even the position of a
//    Y reading far below its range (py up to the int32 limit) is defined; lines run only
//    through the pixels they cover on the bitmap, and the marker is left out when it is
//    nowhere near it.
//  - IndRect larger than the picture, partly outside it or inverted: only the part of the
//    indicator area that lies on the picture (and the control) is read, drawn and copied;
//    positions keep following the formula for the whole area. An inverted or empty area
//    draws nothing but still records positions.
//  - An empty or unreadable picture shows "No CharacteristicBMP"; a picture too large to
//    allocate draws nothing. Fields of IndRect saturate to int16, so a picture wider or
//    taller than 32771 pixels gets IndRect's right (bottom) edge at 32767.
//  - TailArraySize is clamped to 2..32766, Interval accepts 50..32767 only (others are
//    ignored), DigitX/DigitY given as int saturate to the int16 range.
//
// Properties, in declaration order:
//  - Color (colour, yellow): the marker.
//  - CharacteristicBMP (QImage, empty): the picture. A non-empty one resizes the control
//    to its size and sets IndRect to its rectangle shrunk by 4 on every side; both
//    repaint. LoadCharacteristicBMP reads any file QImage reads. Not designable: Designer
//    has no image editor, so the application sets it, or names a file:
//  - CharacteristicFile (string, empty): setting it loads that file as the picture (a
//    relative name from the current folder), so a form made in Designer can bring its
//    picture along; a file that cannot be read leaves the picture empty. Setting the
//    picture directly clears the name.
//  - SignalSettingsX, SignalSettingsY (TSignalSettings, owned; flat as
//    SignalSettingsX_ValueTo, ...): the axes. The setters copy.
//  - ValueX, ValueY (single, 0): the operating point in engineering units.
//  - DigitX, DigitY (int16, 0): the same in raw digits (not stored in forms: they follow
//    from the values).
//  - IndRect (TIndRect, owned; flat as IndRect_Left, ...): the area the marker moves in.
//  - Tail (bool, true): draw the tail.
//  - TailArraySize (int16, 20): the tail's length; every set empties the tail.
//  - TailColor (colour, aqua): the tail and, at design time, the outline of IndRect.
//  - Interval (int16 ms, 1000): the pulse interval.
#include <QColor>
#include <QImage>
#include <QString>
#include <cstdint>
#include <vector>

#include "kx/framework/control.h"
#include "kx/framework/flatproperty.h"
#include "kx/framework/persistent.h"
#include "kx/framework/signalsettings.h"
#include "kx/framework/single.h"
#include "kx/host/bitmap.h"
#include "kx/host/graphics.h"

namespace kx {

// The indicator rectangle in control pixels, each edge a 16-bit signed number (wider
// values saturate).
class TIndRect : public TKxPersistent {
    Q_OBJECT
    Q_PROPERTY(int Left READ Left WRITE SetLeft)
    Q_PROPERTY(int Top READ Top WRITE SetTop)
    Q_PROPERTY(int Right READ Right WRITE SetRight)
    Q_PROPERTY(int Bottom READ Bottom WRITE SetBottom)
  public:
    explicit TIndRect(QObject* parent = nullptr) : TKxPersistent(parent) {}

    int16_t Left() const { return left_; }
    void SetLeft(int32_t v);
    int16_t Top() const { return top_; }
    void SetTop(int32_t v);
    int16_t Right() const { return right_; }
    void SetRight(int32_t v);
    int16_t Bottom() const { return bottom_; }
    void SetBottom(int32_t v);

    // All four edges at once, then one Change when any differs.
    void SetxyRect(const TRect& r);
    TRect GetxyRect() const { return TRect{left_, top_, right_, bottom_}; }

    // To another TIndRect: the four edges, then one Change on the destination.
    void AssignTo(TKxPersistent* dest) const override;

  private:
    int16_t left_ = 0;
    int16_t top_ = 0;
    int16_t right_ = 0;
    int16_t bottom_ = 0;
};

// The flat properties of a TIndRect (see flatproperty.h).
#define KX_FLAT_INDRECT(Prefix, Object)         \
    KX_FLAT(int, Prefix##_Left, Object, Left)   \
    KX_FLAT(int, Prefix##_Top, Object, Top)     \
    KX_FLAT(int, Prefix##_Right, Object, Right) \
    KX_FLAT(int, Prefix##_Bottom, Object, Bottom)

class TKxOperatingPoint : public TKxGraphicControl {
    Q_OBJECT
    Q_PROPERTY(QColor Color READ color WRITE setColor)
    Q_PROPERTY(
        QImage CharacteristicBMP READ CharacteristicBMP WRITE SetCharacteristicBMP DESIGNABLE false)
    Q_PROPERTY(QString CharacteristicFile READ CharacteristicFile WRITE setCharacteristicFile)
    Q_PROPERTY(kx::TSignalSettings* SignalSettingsX READ SignalSettingsX WRITE SetSignalSettingsX
                   DESIGNABLE false)
    Q_PROPERTY(kx::TSignalSettings* SignalSettingsY READ SignalSettingsY WRITE SetSignalSettingsY
                   DESIGNABLE false)
    Q_PROPERTY(double ValueX READ ValueX WRITE setValueX)
    Q_PROPERTY(double ValueY READ ValueY WRITE setValueY)
    Q_PROPERTY(int DigitX READ DigitX WRITE setDigitX STORED false)
    Q_PROPERTY(int DigitY READ DigitY WRITE setDigitY STORED false)
    Q_PROPERTY(kx::TIndRect* IndRect READ IndRect WRITE SetIndRect DESIGNABLE false)
    Q_PROPERTY(bool Tail READ Tail WRITE setTail)
    Q_PROPERTY(int TailArraySize READ TailArraySize WRITE setTailArraySize)
    Q_PROPERTY(QColor TailColor READ tailColor WRITE setTailColor)
    Q_PROPERTY(int Interval READ Interval WRITE setInterval)

  public:
    static constexpr int32_t kMinTailArraySize = 2;
    static constexpr int32_t kMaxTailArraySize = 32766;
    static constexpr int32_t kMinInterval = 50;
    // The indicator area's margin around IndRect, and the pixels of the picture IndRect
    // keeps free on every side.
    static constexpr int32_t kMargin = 5;
    static constexpr int32_t kPictureInset = 4;
    static const QString kNoBitmapText;

    explicit TKxOperatingPoint(QWidget* parent = nullptr);
    ~TKxOperatingPoint() override;

    // ---- Properties -----------------------------------------------------------------------
    TColor Color() const { return color_; }
    void SetColor(TColorArg c);
    const QImage& CharacteristicBMP() const { return picture_.Image(); }
    void SetCharacteristicBMP(const QImage& image);
    // Reads the picture from a file in any format QImage reads. On failure (no such file,
    // not an image) the picture becomes empty and the result is false.
    bool LoadCharacteristicBMP(const QString& fileName);
    const QString& CharacteristicFile() const { return pictureFile_; }
    void SetCharacteristicFile(const QString& fileName);
    void setCharacteristicFile(const QString& fileName) { SetCharacteristicFile(fileName); }
    TSignalSettings* SignalSettingsX() const { return axisX_; }
    void SetSignalSettingsX(const TSignalSettings* v);
    TSignalSettings* SignalSettingsY() const { return axisY_; }
    void SetSignalSettingsY(const TSignalSettings* v);
    float ValueX() const { return valueX_; }
    void SetValueX(float v);
    float ValueY() const { return valueY_; }
    void SetValueY(float v);
    int16_t DigitX() const { return digitX_; }
    void SetDigitX(int16_t d);
    int16_t DigitY() const { return digitY_; }
    void SetDigitY(int16_t d);
    kx::TIndRect* IndRect() const { return indRect_; }
    void SetIndRect(const kx::TIndRect* v);
    bool Tail() const { return tail_; }
    void SetTail(bool b);
    int16_t TailArraySize() const { return tailArraySize_; }
    void SetTailArraySize(int32_t n);
    TColor TailColor() const { return tailColor_; }
    void SetTailColor(TColorArg c);
    int16_t Interval() const { return interval_; }
    void SetInterval(int32_t ms);

    KX_FLAT_SIGNALSETTINGS(SignalSettingsX, SignalSettingsX())
    KX_FLAT_SIGNALSETTINGS(SignalSettingsY, SignalSettingsY())
    KX_FLAT_INDRECT(IndRect, IndRect())

    // Qt-style names for uic, which calls "set" + the property name.
    QColor color() const { return EncodeQColor(color_); }
    void setColor(const QColor& c) { SetColor(c); }
    void setValueX(double v) { SetValueX(ToSingle(v)); }
    void setValueY(double v) { SetValueY(ToSingle(v)); }
    void setDigitX(int d) { SetDigitX(SaturateDigit(d)); }
    void setDigitY(int d) { SetDigitY(SaturateDigit(d)); }
    void setTail(bool b) { SetTail(b); }
    void setTailArraySize(int n) { SetTailArraySize(n); }
    QColor tailColor() const { return EncodeQColor(tailColor_); }
    void setTailColor(const QColor& c) { SetTailColor(c); }
    void setInterval(int ms) { SetInterval(ms); }

    // ---- Tail and geometry ------------------------------------------------------------------
    // Valid entries of the tail buffer (0..TailArraySize).
    int32_t TailCount() const { return tailCount_; }
    // Entry i of the tail buffer (0..TailArraySize + 1), in indicator-area coordinates;
    // entry 0 is the newest position. Outside the buffer: (0, 0).
    TPoint TailPoint(int32_t i) const;
    // IndRect enlarged by the marker's margin, in control pixels.
    TRect IndicatorArea() const;
    // (x‰, y‰) of the current values, clamped as described above.
    TPoint PerMille() const;
    // The same before clamping: outside 0..1000 a value lies outside its axis.
    TPoint UnclampedPerMille() const;
    // (px, py) of a per-mille pair in an indicator area of width x height pixels.
    static TPoint PointPosition(TPoint perMille, int32_t width, int32_t height);
    // The off-screen bitmap of the last drawing of the points (the part of the indicator
    // area on the picture); empty when none of it was.
    const TBitmap& IndicatorBitmap() const { return work_; }
    bool Subscribed() const { return subscribed_; }

    // Draws the points (see above) unless a drawing is in progress or there is no
    // picture; the blink service's pulses call it.
    void DrawPoints();

    void Loaded() override;
    void WMFlash(TMessage& message) override;
    void Invalidate() override;

    static int16_t SaturateDigit(int64_t d);

  protected:
    void ParamChange(QObject* sender) override;
    void Paint() override;

  private:
    QString pictureFile_;
    void drawPoints(bool fromPaint);
    // Stores (x, y) as the newest entry and, with a canvas, draws tail and marker on it;
    // origin is the indicator-area position of the canvas's (0, 0).
    void drawPoint(TCanvas* canvas, TPoint origin, int32_t x, int32_t y, bool tail);
    void movePoints();
    void putOnSurface(const TRect& shown, bool fromPaint);
    // The picture on the surface's grid: the picture itself at its ratio, else the copy
    // Paint made.
    TBitmap& staticPart();
    void repaintWhileDesigning();
    void subscribe();
    void deriveDigits();

    TColor color_ = clYellow;
    TBitmap picture_;
    TBitmap scaledPicture_;
    bool scaledStale_ = true;
    TSignalSettings* axisX_;
    TSignalSettings* axisY_;
    float valueX_ = 0.0f;
    float valueY_ = 0.0f;
    int16_t digitX_ = 0;
    int16_t digitY_ = 0;
    kx::TIndRect* indRect_;
    bool tail_ = true;
    int16_t tailArraySize_ = 20;
    TColor tailColor_ = clAqua;
    int16_t interval_ = 1000;

    std::vector<TPoint> tailPoints_;
    std::vector<TPoint> polyline_;  // the tail moved to the bitmap, kept to reuse its room
    int32_t tailCount_ = 0;
    TBitmap work_;
    bool drawing_ = false;
    bool laidOut_ = false;
    bool subscribed_ = false;
};

}  // namespace kx
