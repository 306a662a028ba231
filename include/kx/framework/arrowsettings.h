#pragma once
// TArrowSettings: shape and colours of a meter pointer and its two centre caps.
#include <cstdint>

#include "kx/framework/flatproperty.h"
#include "kx/framework/persistent.h"
#include "kx/host/color.h"

namespace kx {

class TArrowSettings : public TKxPersistent {
    Q_OBJECT
    Q_PROPERTY(int Shape READ Shape WRITE SetShape)
    Q_PROPERTY(int ColorPen READ ColorPen WRITE SetColorPen)
    Q_PROPERTY(int ColorBrush READ ColorBrush WRITE SetColorBrush)
    Q_PROPERTY(int ColorCP1Pen READ ColorCP1Pen WRITE SetColorCP1Pen)
    Q_PROPERTY(int ColorCP1Brush READ ColorCP1Brush WRITE SetColorCP1Brush)
    Q_PROPERTY(int ColorCP2Pen READ ColorCP2Pen WRITE SetColorCP2Pen)
    Q_PROPERTY(int ColorCP2Brush READ ColorCP2Brush WRITE SetColorCP2Brush)
  public:
    explicit TArrowSettings(QObject* parent = nullptr) : TKxPersistent(parent) {}

    // The pointer shape number; any value is stored (the arrow builder decides what an
    // unknown shape draws).
    int32_t Shape() const { return shape_; }
    void SetShape(int32_t v);
    TColor ColorPen() const { return colorPen_; }
    void SetColorPen(TColorArg v);
    TColor ColorBrush() const { return colorBrush_; }
    void SetColorBrush(TColorArg v);
    TColor ColorCP1Pen() const { return colorCP1Pen_; }
    void SetColorCP1Pen(TColorArg v);
    TColor ColorCP1Brush() const { return colorCP1Brush_; }
    void SetColorCP1Brush(TColorArg v);
    TColor ColorCP2Pen() const { return colorCP2Pen_; }
    void SetColorCP2Pen(TColorArg v);
    TColor ColorCP2Brush() const { return colorCP2Brush_; }
    void SetColorCP2Brush(TColorArg v);

    // To another TArrowSettings: the seven fields directly, then one Change on the
    // destination (even when nothing differed).
    void AssignTo(TKxPersistent* dest) const override;

  private:
    int32_t shape_ = 0;
    TColor colorPen_ = clBlack;
    TColor colorBrush_ = clLime;
    TColor colorCP1Pen_ = clBlack;
    TColor colorCP1Brush_ = clBlack;
    TColor colorCP2Pen_ = clBlack;
    TColor colorCP2Brush_ = clBtnFace;
};

// The flat properties of a TArrowSettings (see flatproperty.h).
#define KX_FLAT_ARROWSETTINGS(Prefix, Object)                    \
    KX_FLAT(int, Prefix##_Shape, Object, Shape)                  \
    KX_FLAT_COLOR(Prefix##_ColorPen, Object, ColorPen)           \
    KX_FLAT_COLOR(Prefix##_ColorBrush, Object, ColorBrush)       \
    KX_FLAT_COLOR(Prefix##_ColorCP1Pen, Object, ColorCP1Pen)     \
    KX_FLAT_COLOR(Prefix##_ColorCP1Brush, Object, ColorCP1Brush) \
    KX_FLAT_COLOR(Prefix##_ColorCP2Pen, Object, ColorCP2Pen)     \
    KX_FLAT_COLOR(Prefix##_ColorCP2Brush, Object, ColorCP2Brush)

}  // namespace kx
