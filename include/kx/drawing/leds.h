#pragma once
// The eight lamp outlines in which every LED is drawn.
#include <cstdint>

#include "kx/host/canvas.h"
#include "kx/host/color.h"
#include "kx/host/types.h"

namespace kx {

enum TLEDShape : int32_t {
    sRound,
    sArrowLeft,
    sArrowRight,
    sArrowUp,
    sArrowDown,
    sRectangle,
    sDiamondLeft,
    sDiamondRight
};

// Draws the shape filling r with pen = outline (width 1) and brush colour = fill. The
// triangles end one pixel short of the right and bottom edges; the parallelograms reach
// them. sRound adds a highlight arc over the upper-left quarter (pen clBtnHighlight,
// width (R - L) div 8, on r shrunk by (R - L) div 5) and leaves the pen so. A shape
// outside the eight only sets the pen and brush.
void KxDrawLED(TCanvas& canvas, const TRect& r, TLEDShape shape, TColor outline, TColor fill);

}  // namespace kx
