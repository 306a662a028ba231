#pragma once
// TKxSpot: the sunken round spot of KxCircleAtPoint kept as a picture, for marks that move
// (a knob's mark is the same picture at every angle). Drawing it again is one transparent
// copy instead of an ellipse and an arc.
#include "kx/host/bitmap.h"
#include "kx/host/canvas.h"

namespace kx {

class TKxSpot {
  public:
    // As KxCircleAtPoint(canvas, p, radius, color, color), pixel for pixel. The picture is
    // made again when radius or color change; on a scaled grid (device ratio other than
    // 1) its pixels would not meet the canvas's, so the spot is drawn there directly.
    void Draw(TCanvas& canvas, TPoint p, int32_t radius, TColor color);

  private:
    TBitmap picture_;
    int32_t radius_ = -1;
    TColor color_ = clNone;
};

}  // namespace kx
