#pragma once
// The graded 3-D frame shared by the instrument bevel and the button bevel: rings of
// one pixel, each with its own top-left and bottom-right colour blended between a
// highlight pair and a shadow pair.
#include <cstdint>

#include "kx/host/canvas.h"
#include "kx/host/color.h"
#include "kx/host/types.h"

namespace kx {

struct TKxRingColors {
    TColor ShadowFrom = clBtnShadow;
    TColor ShadowTo = clBtnShadow;
    TColor HighlightFrom = clBtnHighlight;
    TColor HighlightTo = clBtnHighlight;
};

// The colours of ring i (1 = outermost) of a frame `width` rings wide, each
// KxCalcColor(from, to, width, i):
//  raised:  top-left HighlightFrom..HighlightTo, bottom-right ShadowFrom..ShadowTo;
//  lowered: top-left ShadowTo..ShadowFrom, bottom-right HighlightTo..HighlightFrom
//  (the lowered frame swaps both the roles and the direction of the pairs).
void KxRingColors(const TKxRingColors& colors, bool raised, int32_t width, int32_t i,
                  TColor& topLeft, TColor& bottomRight);

// Draws the frame into rect and shrinks rect by width (nothing when width < 1).
// With fill, the whole rect is first painted in fillColor (pen width 1, pen and solid
// brush in fillColor, Rectangle). Each ring is one Frame3D of width 1. Rings that no
// longer fit into the shrinking rectangle are not drawn, nor are rings that cannot touch
// the canvas (TCanvas::RingsOnSurface), but rect still ends up shrunk by the full width.
void KxPaintGradFrame(TCanvas& canvas, TRect& rect, bool raised, bool fill, TColor fillColor,
                      const TKxRingColors& colors, int32_t width);

// The rounded variant: each ring is a RoundRect outline (clear brush) whose corner
// ellipse is a x b for the outermost ring and 2 pixels smaller per ring inward (never
// below 0). The top-left half of a ring is drawn in its top-left colour and the
// bottom-right half, cut along the diagonal from the bottom-left to the top-right
// corner (both corner pixels included), in its bottom-right colour; the cut is made
// with a clip region intersected with the canvas's own, which is restored afterwards.
// Shrinks rect by width.
void KxPaintRoundGradFrame(TCanvas& canvas, TRect& rect, bool raised, const TKxRingColors& colors,
                           int32_t width, int32_t a, int32_t b);

// The region of rect's pixels on or below-right of the diagonal from its bottom-left
// to its top-right pixel; the second form keeps only those inside `within`, so a huge
// rectangle costs no more than the part of it that can be seen.
QRegion KxLowerRightRegion(const TRect& rect);
QRegion KxLowerRightRegion(const TRect& rect, const TRect& within);

}  // namespace kx
