#pragma once
// The angle convention of the drawing toolkit, used by every round scale, pointer
// and knob.
//
// KxGetAngle measures in degrees with 0 pointing straight down from the centre,
// growing clockwise on the screen: down 0, left 90, up 180, right 270.
// KxRotate turns a point about a centre; with clockwise = true a point right of
// the centre turned by 90 degrees ends below it (Y grows downwards).
#include "kx/host/types.h"

namespace kx {

// Direction of p seen from m, in degrees, 0 <= result < 360 except for the
// rounding of the single-precision result next to 0 and 360 (p straight below m
// gives -5.0e-6, a consequence of the stored single-precision angle). p == m
// gives 90. The 0.0001 added to the vertical difference is part of the result
// (up-left at 45 degrees gives 134.9997, not 135).
float KxGetAngle(TPoint m, TPoint p);

// p turned about m by angle degrees. The angle is turned into radians in single
// precision, and each coordinate offset is rounded (half to even) on its own
// before m is added. A NaN or infinite angle leaves no direction to turn to: the
// offsets round to 0 and the result is m. Offsets beyond the int32 range saturate;
// adding m wraps in 32 bits.
TPoint KxRotate(TPoint p, TPoint m, float angle, bool clockwise);

}  // namespace kx
