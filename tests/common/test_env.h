#pragma once
// Pinned environment for every test program: offscreen platform, classic system
// colours, C-locale format settings and a fake clock that tests may step.
#include "kx/host/clock.h"

namespace kx::test {

// The fake clock installed for the whole test program.
TFakeClock& FakeClock();
// Restores the pinned palette, format settings and clock state.
void ResetEnvironment();

}  // namespace kx::test
