#pragma once
// The framed value readout that bars and upright meters show above their bar or scale:
// a number in a box with a bevel, and the unit beside it.
#include <QString>

#include "kx/framework/sbevel.h"
#include "kx/host/canvas.h"
#include "kx/host/graphics.h"

namespace kx {

struct TKxValueBox {
    TRect Frame;   // the box with its bevel
    TRect Number;  // where the number goes: inside the bevel, e in from both sides
};

// Lays the box out at r.Top, centred in r with room for the unit: its left edge at
// r.Left + (r.Width - valueW - unitW - e) div 2 - e, valueW + 2 e wide and valueH high
// inside the bevel. Paints the bevel filled, then the unit (when not empty) in font with
// textColor and a clear brush, e to the right of the bevel's inside, level with its top.
TKxValueBox KxPaintValueBox(TCanvas& canvas, const TRect& r, const TKxSBevel& bevel,
                            const TFont& font, TColor textColor, const QString& unit,
                            int32_t valueW, int32_t unitW, int32_t valueH, int32_t e);

// A value box measured for the adjusters: sized for sample in fontValue, margin e =
// the text height div 3, the unit (may be empty) in unitFont.
struct TKxValueBoxSize {
    int32_t W = 0, H = 0, M = 0, U = 0;  // sample width and height, margin, unit width
    int32_t BoxW = 0;                    // the box with its bevel
    int32_t BoxH = 0;                    // the box with its bevel
    QString Unit;
};
TKxValueBoxSize KxMeasureValueBox(TCanvas& canvas, const TFont& fontValue, const QString& sample,
                                  const TFont& unitFont, const QString& unit,
                                  const TKxSBevel& bevel);
// Paints the measured box at r.Top (KxPaintValueBox); a unit that does not fit beside
// the box within r is left out. Returns where the number goes.
TRect KxPaintFittedValueBox(TCanvas& canvas, const TRect& r, const TKxValueBoxSize& size,
                            const TKxSBevel& bevel, const TFont& unitFont);

}  // namespace kx
