#pragma once
// Colour arithmetic. Components are rebuilt from their low bytes: results wrap
// modulo 256 rather than saturate.
#include <cstdint>

#include "kx/host/color.h"

namespace kx {

// Scales Red, Green and Blue by percent / 100 (the factor rounded to single
// precision, each product rounded half to even) and keeps the low byte of each:
// (200, 100, 0) by 150 % gives (44, 150, 0). The colour is scaled as its raw bits,
// so a system colour is not resolved first and its top byte is dropped. A negative
// product wraps (-1 becomes 255); a NaN factor gives 0 components; an infinite one
// saturates before the low byte is taken.
TColor KxSetBrightness(TColor color, float percent);

// The i-th colour of a linear blend from c1 towards c2 in steps steps: each
// component is c1's + Round(difference / steps * i) in double, low byte kept.
// Both colours are resolved with ColorToRGB; when they resolve to the same colour
// the result is c1 exactly as passed (a system colour stays a system colour).
// steps = 0 counts as 1. i is not limited to 0..steps: values outside
// extrapolate and wrap modulo 256 (the rounded step saturates at the int32 range).
TColor KxCalcColor(TColor c1, TColor c2, int32_t steps, int32_t i);

}  // namespace kx
