#pragma once
// TKxBevelSettings: the colours and width of a graded frame. SwapColors turns a raised
// frame into a sunken one.
#include <cstdint>

#include "kx/framework/persistent.h"
#include "kx/host/color.h"

namespace kx {

class TKxBevelSettings : public TKxPersistent {
    Q_OBJECT
    Q_PROPERTY(int ColorFrom READ ColorFrom WRITE SetColorFrom)
    Q_PROPERTY(int ColorTo READ ColorTo WRITE SetColorTo)
    Q_PROPERTY(int Width READ Width WRITE SetWidth)
  public:
    explicit TKxBevelSettings(QObject* parent = nullptr) : TKxPersistent(parent) {}

    TColor ColorFrom() const { return colorFrom_; }
    void SetColorFrom(TColorArg v);
    TColor ColorTo() const { return colorTo_; }
    void SetColorTo(TColorArg v);
    // Any value is stored; the painters draw no ring for a width below 1.
    int32_t Width() const { return width_; }
    void SetWidth(int32_t v);

    // Exchanges the two colours and always notifies, even when they are equal.
    void SwapColors();

    // To another TKxBevelSettings: the three fields directly, then one Change.
    void AssignTo(TKxPersistent* dest) const override;

  private:
    TColor colorFrom_ = clWhite;
    TColor colorTo_ = 0x00737373;
    int32_t width_ = 2;
};

}  // namespace kx
