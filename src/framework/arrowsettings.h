#pragma once
// TArrowSettings: shape and colours of a meter pointer and its two centre caps.
#include <cstdint>

#include "framework/persistent.h"
#include "host/color.h"

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
    void SetColorPen(TColor v);
    TColor ColorBrush() const { return colorBrush_; }
    void SetColorBrush(TColor v);
    TColor ColorCP1Pen() const { return colorCP1Pen_; }
    void SetColorCP1Pen(TColor v);
    TColor ColorCP1Brush() const { return colorCP1Brush_; }
    void SetColorCP1Brush(TColor v);
    TColor ColorCP2Pen() const { return colorCP2Pen_; }
    void SetColorCP2Pen(TColor v);
    TColor ColorCP2Brush() const { return colorCP2Brush_; }
    void SetColorCP2Brush(TColor v);

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

}  // namespace kx
