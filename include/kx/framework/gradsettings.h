#pragma once
// TKxGradSettings: a colour gradient (from, to, style) that can be switched on and off.
#include "kx/drawing/gradient.h"
#include "kx/framework/flatproperty.h"
#include "kx/framework/persistent.h"
#include "kx/host/color.h"

namespace kx {

class TKxGradSettings : public TKxPersistent {
    Q_OBJECT
    Q_PROPERTY(int ColorFrom READ ColorFrom WRITE SetColorFrom)
    Q_PROPERTY(int ColorTo READ ColorTo WRITE SetColorTo)
    Q_PROPERTY(bool Visible READ Visible WRITE SetVisible)
    Q_PROPERTY(int Style READ Style WRITE SetStyleValue)
  public:
    explicit TKxGradSettings(QObject* parent = nullptr) : TKxPersistent(parent) {}

    TColor ColorFrom() const { return colorFrom_; }
    void SetColorFrom(TColorArg v);
    TColor ColorTo() const { return colorTo_; }
    void SetColorTo(TColorArg v);
    bool Visible() const { return visible_; }
    void SetVisible(bool v);
    TGradientStyle Style() const { return style_; }
    void SetStyle(TGradientStyle v);
    // The property's integer view; values outside the gradient styles are ignored.
    void SetStyleValue(int v);

    // To another TKxGradSettings: through the four setters (ColorFrom, ColorTo,
    // Visible, Style), so one Change per property that differed, then one more Change.
    void AssignTo(TKxPersistent* dest) const override;

  private:
    TColor colorFrom_ = 0x00E2E2E2;
    TColor colorTo_ = 0x008F8F8F;
    bool visible_ = false;
    TGradientStyle style_ = gsHorizontal1;
};

// The flat properties of a TKxGradSettings (see flatproperty.h).
#define KX_FLAT_GRADSETTINGS(Prefix, Object)             \
    KX_FLAT_COLOR(Prefix##_ColorFrom, Object, ColorFrom) \
    KX_FLAT_COLOR(Prefix##_ColorTo, Object, ColorTo)     \
    KX_FLAT(bool, Prefix##_Visible, Object, Visible)     \
    KX_FLAT_ENUM(Prefix##_Style, Object, Style, ::kx::TGradientStyle, ::kx::gsTopRight)

}  // namespace kx
