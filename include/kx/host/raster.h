#pragma once
// The classic raster geometry, free of any surface: which pixels a one-pixel line, a
// closed outline, an ellipse, a rounded rectangle, an arc or a pie covers, and which
// spans a polygon fills. TCanvas puts these pixels down; keeping the geometry here lets
// it be tested and reused without a painter.
//
// Rules:
//  - Line: one pixel per step along the major axis; the minor coordinate is the ideal
//    line's, rounded to the nearest pixel, and a tie (exactly between two pixels) takes
//    the smaller coordinate whichever way the line runs. The end point is left out
//    unless asked for.
//  - Polygon fill: even-odd, sampled at integer pixel coordinates. On row y an edge
//    (x0,y0)-(x1,y1) counts when min(y0,y1) <= y < max(y0,y1) and crosses at
//    x0 + (y - y0)(x1 - x0)/(y1 - y0); between each pair a, b of the sorted crossings the
//    pixels a <= x < b are filled.
//  - Quadrant walk of a w x h box: an integer error-term walk from the right end of the
//    box's middle row upwards (box-relative points, y counted upwards from h div 2). For
//    eccentric boxes it may stop before reaching the top; that is part of the rule.
//  - Ellipses and rounded rectangles are one shape: the corner ellipse's walk placed in
//    the upper-right corner, mirrored left, then the doubled run mirrored down.
//  - Arcs and pies take the points of the full ellipse's outline between the indices of
//    the two radial points, counter-clockwise.
// Boxes are limited to kMaxCurveBox pixels in each direction (larger ones return no
// points, and the canvas falls back to an approximate curve), so that the integer walk
// cannot overflow and its point lists stay small.
#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

#include "kx/host/types.h"

namespace kx::raster {

constexpr int64_t kMaxCurveBox = 1 << 16;

// A horizontal run of pixels [X0, X1) on row Y.
struct TSpan {
    int32_t Y, X0, X1;
};

// The visible window [X0, X1) x [Y0, Y1) of a surface; lines step only through it.
struct TWindow {
    int64_t X0 = INT64_MIN / 4, Y0 = INT64_MIN / 4, X1 = INT64_MAX / 4, Y1 = INT64_MAX / 4;
};

// Calls plot(x, y) for every pixel of the one-pixel line from a to b that lies in window,
// in order. Steps outside the window's major-axis range are skipped arithmetically, so a
// line reaching far off the surface costs only its visible part.
template <class Plot>
void ForEachLinePixel(TPoint a, TPoint b, bool includeEnd, Plot&& plot, TWindow window = {}) {
    const int64_t dx = int64_t(b.X) - a.X, dy = int64_t(b.Y) - a.Y;
    const int64_t adx = dx < 0 ? -dx : dx, ady = dy < 0 ? -dy : dy;
    const int64_t longest = std::max(adx, ady);
    int64_t n = longest + (includeEnd ? 1 : 0);
    if (n == 0) return;
    const int64_t sx = dx < 0 ? -1 : 1, sy = dy < 0 ? -1 : 1;
    const bool xMajor = adx >= ady;
    const int64_t major = std::max<int64_t>(longest, 1);
    const int64_t twoMajor = 2 * major, twoDelta = 2 * (xMajor ? ady : adx);
    // Step i sits at minor offset floor((2 i d + c) / (2 major)): c = major - 1 rounds a
    // tie back towards the start (smaller coordinate when the minor axis grows), c =
    // major rounds it forward (smaller coordinate when the minor axis shrinks).
    const int64_t minorSign = xMajor ? sy : sx;
    const int64_t c = minorSign > 0 ? major - 1 : major;
    // The steps whose major coordinate lies inside the window.
    const int64_t m0 = xMajor ? a.X : a.Y, ms = xMajor ? sx : sy;
    const int64_t lo = xMajor ? window.X0 : window.Y0, hi = xMajor ? window.X1 : window.Y1;
    int64_t first = ms > 0 ? lo - m0 : m0 - hi + 1;
    const int64_t last = ms > 0 ? hi - m0 : m0 - lo + 1;
    first = std::max<int64_t>(first, 0);
    n = std::min(n, last);
    if (first >= n) return;
    const __int128 acc = __int128(c) + __int128(first) * twoDelta;
    const int64_t minorSteps = int64_t(acc / twoMajor);
    int64_t err = int64_t(acc - __int128(minorSteps) * twoMajor);
    int64_t x = xMajor ? a.X + sx * first : a.X + sx * minorSteps;
    int64_t y = xMajor ? a.Y + sy * minorSteps : a.Y + sy * first;
    for (int64_t i = first; i < n; ++i) {
        if (x >= window.X0 && x < window.X1 && y >= window.Y0 && y < window.Y1) plot(x, y);
        err += twoDelta;
        const bool stepMinor = err >= twoMajor;
        if (stepMinor) err -= twoMajor;
        if (xMajor) {
            x += sx;
            if (stepMinor) y += sy;
        } else {
            y += sy;
            if (stepMinor) x += sx;
        }
    }
}

// Appends the pixels of the polyline through pts (closed: back to the first point), each
// segment without its end point, so a vertex is painted by the segment leaving it.
void AppendPolylinePixels(std::span<const TPoint> pts, bool closed, std::vector<TPoint>& out,
                          TWindow window = {});

// Sorts pixels by row, then column, and removes repeats.
void SortUnique(std::vector<TPoint>& pixels);

// The even-odd fill of the polygon, as spans sorted by row, on rows clipTop..clipBottom-1
// only (so a polygon reaching far off the surface costs only its visible rows).
void PolygonSpans(std::span<const TPoint> pts, std::vector<TSpan>& out, int32_t clipTop = INT32_MIN,
                  int32_t clipBottom = INT32_MAX);

// The quadrant walk of a w x h box (box-relative; empty for w or h <= 0 or too large).
std::vector<TPoint> QuadrantWalk(int64_t w, int64_t h);

// The closed outline (vertices, counter-clockwise from the upper-right corner's right
// end) of the box l, t, r, b (normalised) with an ew x eh corner ellipse (clamped to the
// box); ew = r - l and eh = b - t give the ellipse. Empty when the box is empty or too
// large.
std::vector<TPoint> RoundRectOutline(int32_t l, int32_t t, int32_t r, int32_t b, int32_t ew,
                                     int32_t eh);

// The points of the counter-clockwise arc of the ellipse in l, t, r, b from the radial
// through p1 to the radial through p2 (equal radials: the whole ellipse); centre receives
// the ellipse's centre pixel. Empty when the box is empty or too large.
std::vector<TPoint> ArcPoints(int32_t l, int32_t t, int32_t r, int32_t b, TPoint p1, TPoint p2,
                              TPoint& centre);

// Spans that fill, on each row the outline pixels touch, the pixels from the leftmost to
// the rightmost (inclusive; shrunk by one on each side when inner is set).
void RowExtentSpans(const std::vector<TPoint>& sortedOutline, bool inner, std::vector<TSpan>& out);

}  // namespace kx::raster
