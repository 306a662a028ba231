#pragma once
// The frame the adjusters paint round their moving part: the outer bevel (or a plain fill
// in its colour), the value box with its unit at the top and the name lines at the bottom.
//
// In a control too small for all of it the parts give way to the middle, so that nothing
// overlaps: a unit that does not fit beside the box is left out; the names are left out
// when they would leave less than MinRest pixels of height; then the value box, when it
// is wider than the control or would leave less than that.
#include <QString>

#include "kx/framework/sbevel.h"
#include "kx/framework/signalsettings.h"
#include "kx/host/canvas.h"
#include "kx/host/graphics.h"

namespace kx {

struct TKxAdjusterFrameParts {
    const TKxSBevel& Outer;
    bool OuterBevel;  // false: the whole control is filled in Outer's colour
    const TKxSBevel& ValueBevel;
    const TFont& FontValue;  // the digits
    const TFont& Font;       // unit and names
    const TSignalSettings& Signal;
    bool Value, Unit, Name1, Name2;
    int32_t MinRest;  // the height the middle needs at least
};

struct TKxAdjusterFrame {
    TRect Rest;    // what is left for the moving part
    TRect Number;  // where the number goes; empty without a value box
};

TKxAdjusterFrame KxPaintAdjusterFrame(TCanvas& canvas, const TRect& client,
                                      const TKxAdjusterFrameParts& parts);

}  // namespace kx
