#include "kx/framework/bevelpaint.h"

#include <algorithm>

#include "kx/drawing/colors.h"
#include "kx/drawing/geometry.h"

namespace kx {
namespace {
bool ringFits(const TRect& r) {
    return r.Right > r.Left && r.Bottom > r.Top;
}

// Rings beyond the rectangle draw nothing, so a huge width costs no loop.
int32_t drawableRings(const TRect& r, int32_t width) {
    if (!ringFits(r)) return 0;
    const int64_t shortSide = std::min(int64_t(r.Right) - r.Left, int64_t(r.Bottom) - r.Top);
    return int32_t(std::min<int64_t>(width, (shortSide + 1) / 2));
}

constexpr int64_t kMaxCornerReach = 32768;

// Corner size of the ring `inset` pixels inside the outermost one.
int32_t cornerAt(int32_t size, int32_t inset) {
    return int32_t(std::max<int64_t>(0, int64_t(size) - 2 * int64_t(inset)));
}
}  // namespace

void KxRingColors(const TKxRingColors& c, bool raised, int32_t width, int32_t i, TColor& topLeft,
                  TColor& bottomRight) {
    if (raised) {
        topLeft = KxCalcColor(c.HighlightFrom, c.HighlightTo, width, i);
        bottomRight = KxCalcColor(c.ShadowFrom, c.ShadowTo, width, i);
    } else {
        topLeft = KxCalcColor(c.ShadowTo, c.ShadowFrom, width, i);
        bottomRight = KxCalcColor(c.HighlightTo, c.HighlightFrom, width, i);
    }
}

void KxPaintGradFrame(TCanvas& canvas, TRect& rect, bool raised, bool fill, TColor fillColor,
                      const TKxRingColors& colors, int32_t width) {
    if (fill) {
        canvas.Pen().SetWidth(1);
        canvas.Pen().SetColor(fillColor);
        canvas.Brush().SetColor(fillColor);
        canvas.Brush().SetStyle(bsSolid);
        canvas.Rectangle(rect);
    }
    if (width < 1) return;
    const TRect outer = rect;
    const auto [first, last] = canvas.RingsOnSurface(outer, drawableRings(outer, width));
    for (int32_t k = first; k < last; ++k) {
        TColor tl, br;
        KxRingColors(colors, raised, width, k + 1, tl, br);
        TRect ring = outer;
        KxBorder(ring, k);
        canvas.Frame3D(ring, tl, br, 1);
    }
    rect = outer;
    KxBorder(rect, width);
}

QRegion KxLowerRightRegion(const TRect& r, const TRect& within) {
    QRegion region;
    if (!ringFits(r)) return region;
    const int64_t w = int64_t(r.Right) - r.Left, h = int64_t(r.Bottom) - r.Top;
    const int64_t rowEnd = std::min<int64_t>(h, int64_t(within.Bottom) - r.Top);
    const int64_t columnEnd = std::min<int64_t>(r.Right, within.Right);
    for (int64_t row = std::max<int64_t>(0, int64_t(within.Top) - r.Top); row < rowEnd; ++row) {
        // Pixel column x (from Left) is on the lower-right side when
        // x * (h - 1) >= (h - 1 - row) * (w - 1).
        int64_t first = 0;
        if (h > 1) {
            const int64_t need = (h - 1 - row) * (w - 1);
            first = (need + (h - 2)) / (h - 1);  // ceiling, need >= 0
        }
        const int64_t x = std::max<int64_t>(r.Left + first, within.Left);
        if (x < columnEnd) region += QRect(int(x), int(r.Top + row), int(columnEnd - x), 1);
    }
    return region;
}

QRegion KxLowerRightRegion(const TRect& r) {
    return KxLowerRightRegion(r, r);
}

void KxPaintRoundGradFrame(TCanvas& canvas, TRect& rect, bool raised, const TKxRingColors& colors,
                           int32_t width, int32_t a, int32_t b) {
    if (width < 1) return;
    const TRect outer = rect;
    const bool hadClip = canvas.HasClipRegion();
    const QRegion oldClip = canvas.ClipRegion();
    canvas.Pen().SetWidth(1);
    canvas.Brush().SetStyle(bsClear);
    // A corner reaches half its ellipse inward; corners larger than any surface are
    // counted as reaching that far only.
    const int32_t reach = int32_t(std::min<int64_t>(std::max(a, b) / 2 + 1, kMaxCornerReach));
    const auto [first, last] = canvas.RingsOnSurface(outer, drawableRings(outer, width), reach);
    const TRect within = canvas.ReachRect();
    for (int32_t k = first; k < last; ++k) {
        TColor tl, br;
        KxRingColors(colors, raised, width, k + 1, tl, br);
        TRect ring = outer;
        KxBorder(ring, k);
        const int32_t cw = cornerAt(a, k), ch = cornerAt(b, k);
        canvas.Pen().SetColor(tl);
        canvas.RoundRect(ring.Left, ring.Top, ring.Right, ring.Bottom, cw, ch);
        const QRegion half = KxLowerRightRegion(ring, within);
        canvas.SetClipRegion(hadClip ? half.intersected(oldClip) : half);
        canvas.Pen().SetColor(br);
        canvas.RoundRect(ring.Left, ring.Top, ring.Right, ring.Bottom, cw, ch);
        if (hadClip) {
            canvas.SetClipRegion(oldClip);
        } else {
            canvas.ClearClipRegion();
        }
    }
    rect = outer;
    KxBorder(rect, width);
}

}  // namespace kx
