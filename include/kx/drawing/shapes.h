#pragma once
// Small shapes with the chiselled 3-D look: button bevels, embossed ellipses, sunken
// spots, slider knobs, a triangular pointer, pie sectors, a round diagonal gradient, and
// the saving of the background under a moving part. They leave the canvas pen and brush
// as they last set them.
#include <cstdint>

#include "kx/host/bitmap.h"
#include "kx/host/canvas.h"
#include "kx/host/color.h"
#include "kx/host/types.h"

namespace kx {

// The light grey of the inner bevel ring.
constexpr TColor kBevelGrey = RGB(210, 210, 210);

// Two frames: raised = highlight/black then grey/shadow; pressed = black/highlight then
// shadow/grey. With fill, first a Rectangle(r) with a solid brush in color (the pen is
// the caller's). r comes back shrunk by 2 on every side.
void KxBtnBevel(TCanvas& canvas, TRect& r, bool raised, bool fill, TColor color);

// Embossed ellipse: the full box in the first colour, (L, T, R - 2, B - 2) in the second
// (raised: shadow then highlight, so the highlight sits at the upper left), then the face
// (L + 1, T + 1, R - 2, B - 2) in color. r becomes the face's rectangle.
void KxEllipse3D(TCanvas& canvas, TRect& r, TColor color, bool raised);

// Sunken round spot of radius radius at p, filled with fillColor. The outline is the
// button highlight with a shadow arc over the upper-left half; penColor is set and at
// once replaced, so it has no visible effect.
void KxCircleAtPoint(TCanvas& canvas, TPoint p, int32_t radius, TColor penColor, TColor fillColor);

// Slider knob centred at p: a box of half sizes (Round(size * 0.2), size div 2) -
// swapped when vertical - with two 3-D frames and a grip in color, inset by
// size div 25 more. The grip outline is the button shadow when color is clBtnShadow,
// black otherwise.
void KxThumb(TCanvas& canvas, TPoint p, int32_t size, int32_t unused, bool vertical, TColor color);

// Triangle pointing up with its tip at (r.Left + Round(s * position), r.Top), s = width /
// 1000 in single precision, base halfWidth to each side at r.Top + height.
void KxDrawHPointer(TCanvas& canvas, const TRect& r, int32_t position, int32_t halfWidth,
                    int32_t height, bool unused);

// Pie over r covering sweep degrees clockwise from start degrees clockwise from twelve
// o'clock (angles in single precision; a sweep of 0 or 360 gives the whole ellipse, as
// the canvas's Pie does for equal radials).
void KxRoundSector(TCanvas& canvas, const TRect& r, float start, float sweep);

// Round gradient shaded diagonally from `from` at the upper left to `to` at the lower
// right: 45-degree lines i = 0 .. n, n = 2 * (w - k) (1 when w = k), k = Round(w * 0.22),
// w = r's width, each in from + Round(i * d / n) per component (single-precision
// increments, low byte kept). Clipped to the ellipse of (Left, Top, Bottom, Right) - right
// and bottom exchanged, without effect for the squares callers pass - and all clipping is
// removed afterwards (a previous clip region is not restored). A width below 0 draws no
// line but still sets and clears the clip.
void KxCircleGradFill(TCanvas& canvas, const TRect& r, TColor from, TColor to);

// The focus mark of a control that takes the keyboard: a one-pixel frame just inside r
// whose every other pixel (starting at the top-left corner) is set in color. Changes only
// the brush (solid, color).
void KxDrawFocusFrame(TCanvas& canvas, const TRect& r, TColor color);

// Saves what the canvas shows under r: I = ClipRect() intersected with r; when they do
// not intersect, nothing happens (the bitmap is untouched). Otherwise the bitmap is sized
// to r and I is copied to (I.Left - r.Left, I.Top - r.Top) in it; the rest of the bitmap
// keeps its pixels. The bitmap takes the canvas's device grid (r's top-left corner as its
// origin), so at any device pixel ratio the copy is pixel for pixel; a bitmap that had
// another ratio is white outside I.
void GetBkUpImage(TCanvas& canvas, TBitmap& bitmap, const TRect& r);

}  // namespace kx
