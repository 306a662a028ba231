#pragma once
// Anchored text output: one line, embossed, multi-line ("|" separates lines) and
// rotated, plus the measuring of ";"-separated label lists. Everything draws with the
// canvas's current font; none of these routines touches the canvas's pen or brush.
#include <QChar>
#include <QString>
#include <cstdint>

#include "kx/host/bitmap.h"
#include "kx/host/canvas.h"
#include "kx/host/types.h"

namespace kx {

// The anchor point is the named place of the text's bounding box. Values outside the
// nine are accepted (the underlying type is fixed) and handled as each routine says.
enum toPos : int32_t {
    toTopLeft,
    toTopCenter,
    toTopRight,
    toMidLeft,
    toMidCenter,
    toMidRight,
    toBotLeft,
    toBotCenter,
    toBotRight
};

// width = TextWidth(text), height = TextHeight(text), half = (width div 2, height div 2).
void KxGetTextSize(TCanvas& canvas, int32_t& width, int32_t& height, TPoint& half,
                   const QString& text);

// height = TextHeight of the whole text; width = the widest ";"-terminated token. The
// text after the last separator is compared too, but when it is wider the width becomes
// that of the last token taken before it (0 when there was no separator at all): lists
// made by this library end in a separator, so the rest is empty and plays no part. A
// text without a separator therefore measures as width 0.
void KxGetMaxTokenSize(TCanvas& canvas, int32_t& width, int32_t& height, const QString& text);
// The same with a given separator.
void KxGetMaxTokenSize2(TCanvas& canvas, int32_t& width, int32_t& height, const QString& text,
                        QChar separator);

// The lines of text (separated by separator) each shortened to at most width pixels: a
// line that is wider loses characters from its end and gets "…" instead; a line where
// not even "…" fits becomes empty. Texts that fit come back unchanged.
QString KxElideLines(TCanvas& canvas, const QString& text, QChar separator, int32_t width);

// One line with its bounding box anchored at (x, y) by pos. A pos outside the nine
// draws the text with its top-left corner at (0, 0).
void KxTextOut(TCanvas& canvas, int32_t x, int32_t y, const QString& text, toPos pos);

// With is3D: shadow pass at (x + 1, y + 1), light pass at (x - 1, y - 1); always a final
// pass in textColor at (x, y). Each pass sets Font().Color; it stays at textColor.
void KxTextOut3D(TCanvas& canvas, int32_t x, int32_t y, TColor textColor, TColor lightColor,
                 TColor shadowColor, const QString& text, toPos pos, bool is3D);

// Lines separated by "|", each TextHeight("X") + lineSpacing below the previous one.
// The block is anchored as a whole (middle: y - (step * n) div 2, bottom: y - step * n,
// n = number of "|"), then each line again by pos through KxTextOut. A trailing "|"
// counts in n but draws no empty line; an empty text draws nothing. A pos outside the
// nine keeps the block at y (as the top alignments do) and each line draws at (0, 0).
void KxTextOutMultiLine(TCanvas& canvas, int32_t x, int32_t y, int32_t lineSpacing,
                        const QString& text, toPos pos);
// The same, each line drawn with the passes of KxTextOut3D.
void KxTextOutMultiLine3D(TCanvas& canvas, int32_t x, int32_t y, int32_t lineSpacing,
                          TColor textColor, TColor lightColor, TColor shadowColor,
                          const QString& text, toPos pos, bool is3D);

// One line turned by angle degrees (positive = clockwise on the screen) about anchor.
// Draws with a copy of the canvas font whose Orientation is -Trunc(angle * 10) tenths
// and restores the previous font afterwards. The canvas text alignment is set to the
// classic value of pos (top-left 0, top-centre 6, top-right 2; the middle ones the same
// with the reference point moved up by TextHeight div 2 before turning; bottom-left 24 =
// baseline, bottom-centre 14 and bottom-right 10 = bottom edge) and stays in force
// afterwards. A pos outside the nine leaves the alignment as it is and draws at the
// anchor. A NaN or infinite angle draws the text unturned with its reference point at
// the anchor.
void KxRotTextOut(TCanvas& canvas, TPoint anchor, float angle, const QString& text, toPos pos);

// A number in its box, as readouts repaint it on every reading: box filled with fill, the
// text in font right-aligned with its right end at box.Right - rightInset and its top at
// box.Top, composed in cache (made box-sized on canvas's device grid) and put on canvas
// in one copy, so a fast-changing number never flickers. A text wider than the room left
// of box.Right - rightInset shows as a row of '#' filling that room instead (a number cut
// at the edge would read as another number). An empty box draws nothing.
void KxDrawNumberBox(TCanvas& canvas, TBitmap& cache, const TRect& box, TColor fill,
                     const TFont& font, const QString& text, int32_t rightInset = 0);

}  // namespace kx
