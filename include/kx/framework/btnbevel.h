#pragma once
// TKxBtnBevel: the graded frame of a button, raised when up and lowered when pressed.
#include <cstdint>

#include "kx/framework/bevelpaint.h"
#include "kx/framework/persistent.h"
#include "kx/host/canvas.h"
#include "kx/host/color.h"

namespace kx {

class TKxBtnBevel : public TKxPersistent {
    Q_OBJECT
    Q_PROPERTY(int ShadowColFrom READ ShadowColFrom WRITE SetShadowColFrom)
    Q_PROPERTY(int ShadowColTo READ ShadowColTo WRITE SetShadowColTo)
    Q_PROPERTY(int HighlightColFrom READ HighlightColFrom WRITE SetHighlightColFrom)
    Q_PROPERTY(int HighlightColTo READ HighlightColTo WRITE SetHighlightColTo)
    Q_PROPERTY(int Width READ Width WRITE SetWidth)
  public:
    explicit TKxBtnBevel(QObject* parent = nullptr) : TKxPersistent(parent) {}

    TColor ShadowColFrom() const { return shadowColFrom_; }
    void SetShadowColFrom(TColorArg v);
    TColor ShadowColTo() const { return shadowColTo_; }
    void SetShadowColTo(TColorArg v);
    TColor HighlightColFrom() const { return highlightColFrom_; }
    void SetHighlightColFrom(TColorArg v);
    TColor HighlightColTo() const { return highlightColTo_; }
    void SetHighlightColTo(TColorArg v);
    // Negative widths are ignored; 0 draws no rings.
    int32_t Width() const { return width_; }
    void SetWidth(int32_t v);

    // The graded frame in the button colours (see KxPaintGradFrame); shrinks rect by
    // Width.
    void PaintBevel(TCanvas& canvas, TRect& rect, bool raised, bool fill, TColor fillColor) const;

    // To another TKxBtnBevel: the five fields directly, then one Change.
    void AssignTo(TKxPersistent* dest) const override;

  private:
    TColor shadowColFrom_ = clBlack;
    TColor shadowColTo_ = clBtnShadow;
    TColor highlightColFrom_ = 0x00D2D2D2;
    TColor highlightColTo_ = clBtnHighlight;
    int32_t width_ = 2;
};

}  // namespace kx
