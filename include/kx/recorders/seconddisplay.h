#pragma once
// TKxSecondDisplay: the base of the small text instruments that change once per
// wall-clock second (the operating-hour counter and the clock): two bevels, a text area
// inside them and a subscription to the blink service's second pulses.
//
// Painting: Paint draws the outer and then the inner bevel (each filled with its Color)
// and keeps the area inside them as TextRect. PaintText draws only that area: the text
// is composed in a bitmap of TextRect's size on the inner bevel's Color and copied to
// the surface in one copy, so a second pulse never touches the bevels, and a text wider
// than the area is cut at its edges instead of running over the frame. Where the text
// stands inside the area is the descendant's (TextPosition). Paint covers every pixel of
// the control (the outer bevel fills it first), so the control paints opaquely and Qt
// never repaints what lies behind it. TextRect never reaches beyond the control, even
// when negative spacings or offsets make the frame grow outwards, so the text bitmap is
// at most the control's size.
//
// Defaults: BevelOuter raised, width 1, spacing 1, no lines; BevelInner lowered, width
// 1, spacing 0, no lines; Font face "System".
#include "kx/framework/control.h"
#include "kx/framework/flatproperty.h"
#include "kx/framework/sbevel.h"
#include "kx/host/bitmap.h"
#include "kx/host/graphics.h"

namespace kx {

class TKxSecondDisplay : public TKxGraphicControl {
    Q_OBJECT
    Q_PROPERTY(kx::TKxSBevel* BevelInner READ BevelInner WRITE SetBevelInner DESIGNABLE false)
    Q_PROPERTY(kx::TKxSBevel* BevelOuter READ BevelOuter WRITE SetBevelOuter DESIGNABLE false)
    Q_PROPERTY(kx::TFont* Font READ Font WRITE SetFont DESIGNABLE false)
  public:
    ~TKxSecondDisplay() override;

    // The setters copy the given object; null is ignored.
    TKxSBevel* BevelInner() const { return bevelInner_; }
    void SetBevelInner(const TKxSBevel* v);
    TKxSBevel* BevelOuter() const { return bevelOuter_; }
    void SetBevelOuter(const TKxSBevel* v);
    TFont* Font() const { return font_; }
    void SetFont(const TFont* v);

    KX_FLAT_SBEVEL(BevelInner, BevelInner())
    KX_FLAT_SBEVEL(BevelOuter, BevelOuter())
    KX_FLAT_FONT(Font, Font())

    // The text as it is shown now.
    virtual QString Text() const = 0;
    // The area inside the bevels, as the last Paint laid it out.
    TRect TextRect() const { return textRect_; }
    // Whether the control is in the blink service's second list.
    bool Subscribed() const { return subscribed_; }

  protected:
    explicit TKxSecondDisplay(QWidget* parent);
    void ParamChange(QObject* sender) override;
    void Paint() override;
    // Redraws the text area alone (see above); nothing when it is empty.
    void PaintText();
    // Where text of width w and height h stands inside an area of width aw and height ah.
    virtual TPoint TextPosition(int32_t w, int32_t h, int32_t aw, int32_t ah) const = 0;
    // Joins or leaves the second pulses (never twice).
    void SubscribeSeconds(bool on);

  private:
    TKxSBevel* bevelInner_;
    TKxSBevel* bevelOuter_;
    TFont* font_;
    TRect textRect_{};
    TBitmap textBitmap_;
    bool subscribed_ = false;
};

}  // namespace kx
