#pragma once
// Two-colour gradients over a rectangle.
//
// The gradient is drawn into a temporary bitmap of the rectangle's size W x H and then
// copied onto the canvas with StretchDraw(rect, bitmap); the canvas's own pen, brush and
// clipping are neither used nor changed. W <= 0 or H <= 0 draws nothing.
//
// Colours: both are resolved with ColorToRGB. Equal colours give one filled rectangle.
// Otherwise every style draws a run of primitives (lines or filled shapes) i = 0 .. n
// with n >= 1: primitive 0 is exactly `from`, primitive n exactly `to`, and primitive i
// is from + Round(inc * i) per component, inc = difference / n kept in single
// precision, the low byte kept (as KxSetBrightness wraps). So every style runs from the
// first colour to the second in equal per-component steps.
//
// Geometry, in bitmap coordinates (columns 0 .. W-1, rows 0 .. H-1):
//  - The Vertical styles draw vertical lines (MoveTo(x, 0), LineTo(x, H)), one per column,
//    so the colour changes from left to right; the Horizontal styles are the same with
//    horizontal lines (MoveTo(0, y), LineTo(W, y)), one per row, changing top to bottom.
//    gsVertical1: column x is primitive x, n = W - 1: `from` at the left edge, `to` at
//      the right one.
//    gsVertical2: columns x and W-1-x are primitive x for x = 0 .. (W-1) div 2,
//      n = (W-1) div 2: `from` at both edges, `to` in the middle column (or the middle
//      two columns when W is even).
//    gsVertical3: the left third, columns 0 .. s-1 with s = W div 3, is filled with
//      `from`; then c = Round(W * 0.67) columns (at least 1, at most W - s) starting at
//      column s: column s + i is primitive i, n = c - 1, so the first line at column s is
//      `from`; any columns after the run (when the rounding leaves one) take `to`.
//    gsHorizontal1/2/3: the same along the rows: 1 top to bottom, 2 `from` at the top
//      and bottom edges to `to` in the middle, 3 `from` over the top third and the run
//      over the rest.
//  - The concentric styles first fill the whole bitmap with `from` (this colours what
//    the outermost shape leaves, e.g. the corners outside an inscribed ellipse), then
//    draw filled shapes (pen and brush in the step colour) on boxes (ix, iy, W - ix,
//    H - iy) around the centre. The insets run from an outer (x0, y0) to the innermost
//    (mx, my) = (max(0, (W-3) div 2), max(0, (H-3) div 2)), a box of 3 or 4 pixels a
//    side where the area has them (a smaller ellipse or diamond would miss the centre
//    pixel): ix = x0 + Round((mx - x0) * i / n), iy likewise. The number of steps is the
//    number of colour steps (the largest component difference), but no more than the
//    number of distinct insets max(mx - x0, my - y0), and at least 1.
//    gsElliptic1: Ellipse, x0 = y0 = 0: the outermost is the inscribed ellipse.
//    gsElliptic2: Ellipse, x0 = -Round(W * (sqrt 2 - 1) / 2), y0 likewise: the outermost
//      passes through the corners, so the corners are shaded too.
//    gsElliptic3: circles: x0 = Round((W - D) / 2), y0 = Round((H - D) / 2), D = the
//      diagonal sqrt(W^2 + H^2): the outermost is the circle through the corners, and
//      the shapes stay round on a wide or tall area.
//    gsRectangle: Rectangle, x0 = y0 = 0.
//    gsDiamond1: Polygon through the box's edge midpoints, (cx, top), (right - 1, cy),
//      (cx, bottom - 1), (left, cy) with (cx, cy) = ((W-1) div 2, (H-1) div 2);
//      x0 = y0 = 0.
//    gsDiamond2: the same with x0 = -(W div 2), y0 = -(H div 2): the outermost diamond
//      passes through the corners.
//  - The diagonal styles draw 45-degree lines, one per diagonal of pixels, n = W + H - 2:
//    gsTopLeft: line s holds the pixels with x + y = s, `from` at the top-left corner,
//      `to` at the bottom-right one.
//    gsTopRight: line s holds the pixels with (W - 1 - x) + y = s, `from` at the
//      top-right corner, `to` at the bottom-left one.
//  A line run of a single line (an area one pixel across, or two for the edge-to-middle
//  styles) keeps n = 1, so that line is `from`; concentric shapes on an area too small
//  to shrink (4 pixels or less each way) draw `from` and then `to` on the same box. A
//  style value outside the fourteen fills the bitmap with `from`.
#include <cstdint>

#include "kx/host/canvas.h"
#include "kx/host/color.h"
#include "kx/host/types.h"

namespace kx {

enum TGradientStyle : int32_t {
    gsHorizontal1,
    gsHorizontal2,
    gsHorizontal3,
    gsVertical1,
    gsVertical2,
    gsVertical3,
    gsElliptic1,
    gsElliptic2,
    gsElliptic3,
    gsRectangle,
    gsDiamond1,
    gsDiamond2,
    gsTopLeft,
    gsTopRight
};

void KxGradFill(TCanvas& canvas, const TRect& rect, TColor colorFrom, TColor colorTo,
                TGradientStyle style);

}  // namespace kx
