#include "kx/drawing/logvalues.h"

#include <cmath>

#include "kx/host/numeric.h"

namespace kx {

double KxLog10(double x) {
    return static_cast<double>(std::log(static_cast<long double>(x)) / std::log(10.0L));
}

double KxPower(double base, double exponent) {
    if (!(base > 0)) return 0.0;
    return static_cast<double>(
        std::exp(static_cast<long double>(exponent) * std::log(static_cast<long double>(base))));
}

double KxRoundLogValue(double value, int32_t& exponent) {
    if (value <= 0) value = 1;
    exponent = Round(KxLog10(value));
    return KxPower(10, exponent);
}

}  // namespace kx
