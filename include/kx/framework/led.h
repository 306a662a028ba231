#pragma once
// TLED: the lamp of a binary control: shape, on/off colours and size. The owner sets
// the drawing rectangle during its layout; Draw paints the lamp into it.
#include <cstdint>

#include "kx/drawing/leds.h"
#include "kx/framework/flatproperty.h"
#include "kx/framework/persistent.h"
#include "kx/host/canvas.h"
#include "kx/host/color.h"
#include "kx/host/types.h"

namespace kx {

class TLED : public TKxPersistent {
    Q_OBJECT
    Q_PROPERTY(int Shape READ Shape WRITE SetShapeValue)
    Q_PROPERTY(int ColorOn READ ColorOn WRITE SetColorOn)
    Q_PROPERTY(int ColorOff READ ColorOff WRITE SetColorOff)
    Q_PROPERTY(int Width READ Width WRITE SetWidth)
    Q_PROPERTY(int Height READ Height WRITE SetHeight)
  public:
    static constexpr int32_t kMinSize = 4;
    static constexpr int32_t kMaxSize = 80;

    explicit TLED(QObject* parent = nullptr) : TKxPersistent(parent) {}

    TLEDShape Shape() const { return shape_; }
    // Values outside the eight shapes are ignored.
    void SetShape(TLEDShape v);
    void SetShapeValue(int v);
    TColor ColorOn() const { return colorOn_; }
    void SetColorOn(TColorArg v);
    TColor ColorOff() const { return colorOff_; }
    void SetColorOff(TColorArg v);
    // Width and Height accept only 4..80; anything else is ignored silently.
    int32_t Width() const { return width_; }
    void SetWidth(int32_t v);
    int32_t Height() const { return height_; }
    void SetHeight(int32_t v);

    // The drawing rectangle, set by the owner's layout; not a published property.
    TRect Rect;

    // Draws the lamp into Rect, outlined in the button shadow colour and filled with
    // ColorOn or ColorOff.
    void Draw(TCanvas& canvas, bool on) const { DrawIn(canvas, Rect, on); }
    // The same into another rectangle (a cached picture of the lamp).
    void DrawIn(TCanvas& canvas, const TRect& rect, bool on) const;

    // To another TLED: the five published fields directly (not Rect, which belongs to
    // the owner's layout), then one Change.
    void AssignTo(TKxPersistent* dest) const override;

  private:
    TLEDShape shape_ = sRound;
    TColor colorOn_ = clLime;
    TColor colorOff_ = clBtnFace;
    int32_t width_ = 13;
    int32_t height_ = 13;
};

// The flat properties of a TLED (see flatproperty.h).
#define KX_FLAT_LED(Prefix, Object)                                                   \
    KX_FLAT_ENUM(Prefix##_Shape, Object, Shape, ::kx::TLEDShape, ::kx::sDiamondRight) \
    KX_FLAT_COLOR(Prefix##_ColorOn, Object, ColorOn)                                  \
    KX_FLAT_COLOR(Prefix##_ColorOff, Object, ColorOff)                                \
    KX_FLAT(int, Prefix##_Width, Object, Width)                                       \
    KX_FLAT(int, Prefix##_Height, Object, Height)

}  // namespace kx
