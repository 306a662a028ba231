#pragma once
// Integer and rectangle geometry shared by every control.
//
// Rectangles are taken as they are: none of these routines normalises a rectangle
// whose Right < Left or Bottom < Top. Coordinate sums and differences are computed
// in wrapping 32-bit arithmetic, as the classic 32-bit code does, so extreme
// coordinates give a wrapped (but defined) result instead of undefined behaviour.
#include <cstddef>
#include <cstdint>

#include "kx/host/types.h"

namespace kx {

// Left + width div 2, Top + height div 2 (division truncating toward zero).
TPoint KxCenterPoint(const TRect& r);
// Half the shorter side, truncated: width div 2 when width <= height, else height div 2.
int32_t KxGetRadius(const TRect& r);
// X in [Left, Right) and Y in [Top, Bottom]: the right edge is outside, the bottom
// edge inside. Layouts depend on this asymmetry.
bool KxInRect(int32_t x, int32_t y, const TRect& r);
// Tests against the circle centred in the rectangle (centre in floating point)
// whose diameter is the rectangle's width; the height only moves the centre.
bool KxInCircle(int32_t x, int32_t y, const TRect& r);
// a lies inside b, edges included.
bool KxRectInRect(const TRect& a, const TRect& b);
// All four coordinates equal.
bool KxRectIsRect(const TRect& a, const TRect& b);
// r = the overlap of a and b (always written). False only when r.Left > r.Right or
// r.Top > r.Bottom, so rectangles that merely touch intersect in an empty r.
bool KxRectIntersection(const TRect& a, const TRect& b, TRect& r);
// Keeps Left and Top and cuts the longer side down to the shorter one.
TRect KxMakeSquare(const TRect& r);
// The largest square centred in r (offsets by div 2 of each side).
TRect KxMakeCenterSquare(const TRect& r);
// Grows r so that it includes (x, y).
void KxGetMaxRect(int32_t x, int32_t y, TRect& r);
// How far a one-pixel outline and the rounding of its vertices reach past a polygon's
// vertices: the margin for KxPointsBounds when a redraw must cover such a polygon.
constexpr int32_t kKxOutlineReach = 2;
// The smallest rectangle whose edges hold the n points (n >= 1), grown by margin on
// every side (wrapping).
TRect KxPointsBounds(const TPoint* p, size_t n, int32_t margin);
// Right <= Left or Bottom <= Top: the rectangle covers no pixel.
bool KxIsEmptyRect(const TRect& r);
// The smallest rectangle holding both, edges of an empty one included: an empty strip
// still marks the rows or columns it lies on.
TRect KxUnionRect(const TRect& a, const TRect& b);
// The smallest rectangle holding the pixels of both: an empty one adds nothing (it would
// otherwise drag the union out to its corner).
TRect KxUnionArea(const TRect& a, const TRect& b);
// r moved by (dx, dy), wrapping.
TRect KxOffsetRect(const TRect& r, int32_t dx, int32_t dy);
TPoint KxOffsetPoint(TPoint p, int32_t dx, int32_t dy);
// A point from 64-bit sums of coordinates, each clipped to the int32 range.
TPoint KxSaturatedPoint(int64_t x, int64_t y);
// Moves every edge inward by n (a negative n grows the rectangle).
void KxBorder(TRect& r, int32_t n);
// Moves the edges inward by l, t, r, b respectively.
void KxMultiBorder(TRect& rect, int32_t l, int32_t t, int32_t r, int32_t b);
// The same as KxMultiBorder, returning the shrunk copy and leaving rect alone.
TRect KxMultiBorderRect(const TRect& rect, int32_t l, int32_t t, int32_t r, int32_t b);

int32_t KxMinInt(int32_t a, int32_t b);
int32_t KxMaxInt(int32_t a, int32_t b);
// KxMaxInt(KxMinInt(value, max), min): a clamp that yields min when min > max.
int32_t KxMinMaxInt(int32_t value, int32_t min, int32_t max);
// The span b - a of a range given by two bounds, except 0 when a >= 0 and b <= 0.
// The difference wraps in 32 bits.
int32_t CalcTotalDigit(int32_t a, int32_t b);

}  // namespace kx
