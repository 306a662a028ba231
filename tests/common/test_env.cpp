#include "common/test_env.h"

#include "kx/host/color.h"
#include "kx/host/formatsettings.h"

namespace kx::test {

TFakeClock& FakeClock() {
    static TFakeClock clock;
    return clock;
}

void ResetEnvironment() {
    SetSystemColorsFollowPalette(true);
    ResetSystemColors();
    SetFormatSettings(DefaultFormatSettings());
    FakeClock().SetTicks(0);
    FakeClock().SetNow(45000.0);
    SetClock(&FakeClock());
}

}  // namespace kx::test
