#pragma once
// TKxOffset: four margins (top, left, right, bottom) by which an owner shrinks a
// drawing rectangle, e.g. the room an instrument keeps inside its bevel.
#include <cstdint>

#include "kx/framework/flatproperty.h"
#include "kx/framework/persistent.h"
#include "kx/host/types.h"

namespace kx {

class TKxOffset : public TKxPersistent {
    Q_OBJECT
    Q_PROPERTY(int Top READ Top WRITE SetTop)
    Q_PROPERTY(int Left READ Left WRITE SetLeft)
    Q_PROPERTY(int Right READ Right WRITE SetRight)
    Q_PROPERTY(int Bottom READ Bottom WRITE SetBottom)
  public:
    explicit TKxOffset(QObject* parent = nullptr) : TKxPersistent(parent) {}

    int32_t Top() const { return top_; }
    void SetTop(int32_t v);
    int32_t Left() const { return left_; }
    void SetLeft(int32_t v);
    int32_t Right() const { return right_; }
    void SetRight(int32_t v);
    int32_t Bottom() const { return bottom_; }
    void SetBottom(int32_t v);

    // Stores all four margins at once without any notification; owners use it for
    // margins they compute themselves.
    void Write(int32_t top, int32_t left, int32_t right, int32_t bottom);
    // The rectangle shrunk by the margins (left edge moved right by Left, and so on).
    // Negative margins grow it. The object is not changed.
    TRect SetOffset(const TRect& rect) const;

    // To another TKxOffset: the four margins directly, then one Change on the
    // destination (even when nothing differed).
    void AssignTo(TKxPersistent* dest) const override;

  private:
    int32_t top_ = 0;
    int32_t left_ = 0;
    int32_t right_ = 0;
    int32_t bottom_ = 0;
};

// The flat properties of a TKxOffset (see flatproperty.h).
#define KX_FLAT_OFFSET(Prefix, Object)          \
    KX_FLAT(int, Prefix##_Top, Object, Top)     \
    KX_FLAT(int, Prefix##_Left, Object, Left)   \
    KX_FLAT(int, Prefix##_Right, Object, Right) \
    KX_FLAT(int, Prefix##_Bottom, Object, Bottom)

}  // namespace kx
