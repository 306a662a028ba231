#include "kx/drawing/colors.h"

#include "kx/host/numeric.h"

namespace kx {

TColor KxSetBrightness(TColor color, float percent) {
    const float f = static_cast<float>(percent / 100.0);
    auto scale = [f](uint8_t component) { return Round(component * static_cast<double>(f)); };
    return RGB(scale(GetRValue(color)), scale(GetGValue(color)), scale(GetBValue(color)));
}

TColor KxCalcColor(TColor c1, TColor c2, int32_t steps, int32_t i) {
    const TColor from = ColorToRGB(c1);
    const TColor to = ColorToRGB(c2);
    if (from == to) return c1;
    if (steps == 0) steps = 1;
    auto blend = [steps, i](int32_t a, int32_t b) {
        const double d = b - a;
        return WrapAdd(a, Round(d / steps * i));
    };
    return RGB(blend(GetRValue(from), GetRValue(to)), blend(GetGValue(from), GetGValue(to)),
               blend(GetBValue(from), GetBValue(to)));
}

}  // namespace kx
