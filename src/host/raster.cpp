#include "kx/host/raster.h"

#include <algorithm>

#include "kx/host/numeric.h"

namespace kx::raster {
namespace {

bool tooLarge(int64_t w, int64_t h) {
    return w > kMaxCurveBox || h > kMaxCurveBox;
}

// ceil(num / den) for den > 0, exact in integers.
int64_t ceilDiv(int64_t num, int64_t den) {
    const int64_t q = num / den;
    return (num % den != 0 && num > 0) ? q + 1 : q;
}

// Appends run mirrored by map, in reverse order; skipFirst drops the first mirrored point
// (the middle point of an odd span, which the mirror would repeat).
template <class Map>
void appendMirrored(std::vector<TPoint>& pts, size_t count, bool skipFirst, Map map) {
    for (size_t i = count; i-- > 0;) {
        if (skipFirst && i == count - 1) continue;
        pts.push_back(map(pts[i]));
    }
}

// The index of a radial point (relative to the centre, y up) in the 4n-point
// counter-clockwise outline of the walk p.
int64_t radialIndex(int64_t x, int64_t y, const std::vector<TPoint>& p) {
    const int64_t n = int64_t(p.size());
    auto first = [&](auto&& hit) {
        for (int64_t j = 0; j < n; ++j)
            if (hit(int64_t(p[size_t(j)].X), int64_t(p[size_t(j)].Y))) return j;
        return n;
    };
    if (y >= 0 && x >= 0) return first([&](int64_t px, int64_t py) { return px * y <= py * x; });
    if (y >= 0) return 2 * n - first([&](int64_t px, int64_t py) { return px * y < py * -x; });
    if (x >= 0) return 4 * n - first([&](int64_t px, int64_t py) { return px * -y <= py * x; });
    return 2 * n + first([&](int64_t px, int64_t py) { return px * -y < py * -x; });
}

}  // namespace

void AppendPolylinePixels(std::span<const TPoint> pts, bool closed, std::vector<TPoint>& out,
                          TWindow window) {
    const size_t n = pts.size();
    if (n < 2) return;
    const size_t segments = closed ? n : n - 1;
    for (size_t i = 0; i < segments; ++i)
        ForEachLinePixel(
            pts[i], pts[(i + 1) % n], false,
            [&](int64_t x, int64_t y) {
                out.push_back(TPoint{int32_t(x), int32_t(y)});
            },
            window);
}

void SortUnique(std::vector<TPoint>& pixels) {
    std::sort(pixels.begin(), pixels.end(),
              [](const TPoint& a, const TPoint& b) { return a.Y != b.Y ? a.Y < b.Y : a.X < b.X; });
    pixels.erase(
        std::unique(pixels.begin(), pixels.end(),
                    [](const TPoint& a, const TPoint& b) { return a.X == b.X && a.Y == b.Y; }),
        pixels.end());
}

void PolygonSpans(std::span<const TPoint> pts, std::vector<TSpan>& out, int32_t clipTop,
                  int32_t clipBottom) {
    if (pts.size() < 3) return;
    int32_t top = pts[0].Y, bottom = pts[0].Y;
    for (const TPoint& p : pts) {
        top = std::min(top, p.Y);
        bottom = std::max(bottom, p.Y);
    }
    std::vector<int64_t> xs;
    for (int64_t y = std::max(top, clipTop); y < std::min(bottom, clipBottom); ++y) {
        xs.clear();
        for (size_t i = 0; i < pts.size(); ++i) {
            const TPoint a = pts[i], b = pts[(i + 1) % pts.size()];
            if (y < std::min(a.Y, b.Y) || y >= std::max(a.Y, b.Y)) continue;
            int64_t num = (y - a.Y) * (int64_t(b.X) - a.X), den = int64_t(b.Y) - a.Y;
            if (den < 0) {
                num = -num;
                den = -den;
            }
            // The first pixel at or right of the crossing.
            xs.push_back(a.X + ceilDiv(num, den));
        }
        std::sort(xs.begin(), xs.end());
        for (size_t k = 0; k + 1 < xs.size(); k += 2)
            if (xs[k] < xs[k + 1])
                out.push_back(TSpan{int32_t(y), int32_t(xs[k]), int32_t(xs[k + 1])});
    }
}

std::vector<TPoint> QuadrantWalk(int64_t w, int64_t h) {
    std::vector<TPoint> pts;
    if (w <= 0 || h <= 0 || tooLarge(w, h)) return pts;
    const int64_t a = w - 1, b = h - 1, bOdd = b % 2;
    int64_t x = a, y = h / 2;
    int64_t dx = 4 * b * b * (1 - a), dy = 4 * a * a * (1 + bOdd);
    int64_t err = dx + dy + a * a * bOdd;
    // Each pass steps x or y; the cap only guards against a walk that would not advance.
    for (int64_t guard = 2 * (w + h) + 4; x >= w / 2 && guard > 0; --guard) {
        pts.push_back(TPoint{int32_t(x), int32_t(y)});
        const int64_t e2 = 2 * err;
        const bool stepX = e2 >= dx, stepY = e2 <= dy;
        if (stepX) {
            --x;
            dx += 8 * b * b;
            err += dx;
        }
        if (stepY) {
            ++y;
            dy += 8 * a * a;
            err += dy;
        }
        if (!stepX && !stepY) break;
    }
    return pts;
}

std::vector<TPoint> RoundRectOutline(int32_t l, int32_t t, int32_t r, int32_t b, int32_t ew,
                                     int32_t eh) {
    const int64_t bw = int64_t(r) - l, bh = int64_t(b) - t;
    ew = int32_t(std::clamp<int64_t>(ew, 0, bw));
    eh = int32_t(std::clamp<int64_t>(eh, 0, bh));
    std::vector<TPoint> pts;
    if (bw <= 0 || bh <= 0 || tooLarge(bw, bh)) return pts;
    // Mirroring sums two corners: in 64 bits and saturated, for corners near the limits.
    for (const TPoint& p : QuadrantWalk(ew, eh))
        pts.push_back(TPoint{r - ew + p.X, Saturate(int64_t(t) + eh - 1 - p.Y)});
    const size_t quarter = pts.size();
    appendMirrored(pts, quarter, ew % 2 == 1 && ew == bw, [&](TPoint p) {
        return TPoint{Saturate(int64_t(l) + r - 1 - p.X), p.Y};
    });
    const size_t half = pts.size();
    appendMirrored(pts, half, eh % 2 == 1 && eh == bh, [&](TPoint p) {
        return TPoint{p.X, Saturate(int64_t(t) + b - 1 - p.Y)};
    });
    return pts;
}

std::vector<TPoint> ArcPoints(int32_t l, int32_t t, int32_t r, int32_t b, TPoint p1, TPoint p2,
                              TPoint& centre) {
    std::vector<TPoint> out;
    const int64_t w = int64_t(r) - l, h = int64_t(b) - t;
    std::vector<TPoint> p = QuadrantWalk(w, h);
    if (p.empty()) return out;
    const int64_t n = int64_t(p.size()), hw = w / 2, hh = h / 2;
    for (TPoint& q : p)
        q = TPoint{int32_t(q.X - hw), int32_t(q.Y - hh)};
    const int64_t cx = l + hw, cy = t + hh;
    centre = TPoint{int32_t(cx), int32_t(cy)};
    const int64_t start = radialIndex(p1.X - cx, cy - p1.Y, p);
    int64_t end = radialIndex(p2.X - cx, cy - p2.Y, p);
    if (end <= start) end += 4 * n;
    const int64_t right = r - 1 - hw, lower = b - 1 - hh;
    out.reserve(size_t(end - start));
    for (int64_t i = start; i < end; ++i) {
        const int64_t k = (i / n) % 4, j = i % n;
        const TPoint& pj = p[size_t(j)];
        const TPoint& pm = p[size_t(n - 1 - j)];
        int64_t x = 0, y = 0;
        switch (k) {
            case 0:
                x = cx + pj.X, y = lower - pj.Y;
                break;
            case 1:
                x = right - pm.X, y = lower - pm.Y;
                break;
            case 2:
                x = right - pj.X, y = cy + pj.Y;
                break;
            default:
                x = cx + pm.X, y = cy + pm.Y;
                break;
        }
        out.push_back(TPoint{int32_t(x), int32_t(y)});
    }
    return out;
}

void RowExtentSpans(const std::vector<TPoint>& sorted, bool inner, std::vector<TSpan>& out) {
    for (size_t i = 0; i < sorted.size();) {
        size_t j = i;
        while (j + 1 < sorted.size() && sorted[j + 1].Y == sorted[i].Y)
            ++j;
        int64_t x0 = sorted[i].X, x1 = int64_t(sorted[j].X) + 1;
        if (inner) {
            ++x0;
            --x1;
        }
        if (x0 < x1) out.push_back(TSpan{sorted[i].Y, int32_t(x0), int32_t(x1)});
        i = j + 1;
    }
}

}  // namespace kx::raster
