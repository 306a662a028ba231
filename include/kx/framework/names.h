#pragma once
// The two signal name lines that most instruments and adjusters show at their bottom.
#include <cstdint>

#include "kx/framework/signalsettings.h"
#include "kx/host/canvas.h"
#include "kx/host/graphics.h"

namespace kx {

struct TNameSizes {
    int32_t Name1W = 0, Name1H = 0, Name2W = 0, Name2H = 0;
};

// Both names measured in font.
TNameSizes KxMeasureNames(TCanvas& canvas, const TFont& font, const TSignalSettings& signal);
// Draws the chosen name lines in font with a clear brush, each centred in r (a name wider
// than r is cut to fit with "…") and t pixels
// below the bottom r is moved up to (Name2 lowest, Name1 above it).
void KxPaintNames(TCanvas& canvas, const TFont& font, const TSignalSettings& signal, TRect& r,
                  int32_t t, bool name1, bool name2, const TNameSizes& sizes);

}  // namespace kx
