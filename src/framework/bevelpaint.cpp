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
    const int32_t rings = drawableRings(rect, width);
    for (int32_t i = 1; i <= rings; ++i) {
        TColor tl, br;
        KxRingColors(colors, raised, width, i, tl, br);
        canvas.Frame3D(rect, tl, br, 1);
    }
    rect = outer;
    KxBorder(rect, width);
}

QRegion KxLowerRightRegion(const TRect& r) {
    QRegion region;
    if (!ringFits(r)) return region;
    const int64_t w = int64_t(r.Right) - r.Left, h = int64_t(r.Bottom) - r.Top;
    for (int64_t row = 0; row < h; ++row) {
        // Pixel column x (from Left) is on the lower-right side when
        // x * (h - 1) >= (h - 1 - row) * (w - 1).
        int64_t first = 0;
        if (h > 1) {
            const int64_t need = (h - 1 - row) * (w - 1);
            first = (need + (h - 2)) / (h - 1);  // ceiling, need >= 0
        }
        region += QRect(int(r.Left + first), int(r.Top + row), int(w - first), 1);
    }
    return region;
}

void KxPaintRoundGradFrame(TCanvas& canvas, TRect& rect, bool raised, const TKxRingColors& colors,
                           int32_t width, int32_t a, int32_t b) {
    if (width < 1) return;
    const TRect outer = rect;
    const bool hadClip = canvas.HasClipRegion();
    const QRegion oldClip = canvas.ClipRegion();
    canvas.Pen().SetWidth(1);
    canvas.Brush().SetStyle(bsClear);
    const int32_t rings = drawableRings(rect, width);
    TRect ring = rect;
    for (int32_t i = 1; i <= rings; ++i) {
        TColor tl, br;
        KxRingColors(colors, raised, width, i, tl, br);
        const int32_t cw = cornerAt(a, i - 1), ch = cornerAt(b, i - 1);
        canvas.Pen().SetColor(tl);
        canvas.RoundRect(ring.Left, ring.Top, ring.Right, ring.Bottom, cw, ch);
        const QRegion half = KxLowerRightRegion(ring);
        canvas.SetClipRegion(hadClip ? half.intersected(oldClip) : half);
        canvas.Pen().SetColor(br);
        canvas.RoundRect(ring.Left, ring.Top, ring.Right, ring.Bottom, cw, ch);
        if (hadClip) {
            canvas.SetClipRegion(oldClip);
        } else {
            canvas.ClearClipRegion();
        }
        KxBorder(ring, 1);
    }
    rect = outer;
    KxBorder(rect, width);
}

}  // namespace kx
