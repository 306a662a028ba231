#pragma once
// The gallery's plant colours: muted sector colours that read well next to the blink
// colours (yellow, red).
#include "kx/host/color.h"

namespace kxgallery {

inline constexpr kx::TColor kNormal = kx::RGB(88, 178, 92);
inline constexpr kx::TColor kWarning = kx::RGB(245, 190, 45);
inline constexpr kx::TColor kAlarm = kx::RGB(222, 64, 54);
inline constexpr kx::TColor kCold = kx::RGB(84, 142, 222);

}  // namespace kxgallery
