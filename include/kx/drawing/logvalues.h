#pragma once
// Logarithms and powers for logarithmic scales.
//
// Intermediates are computed in long double (the extended precision of the x87
// FPU where available) and the result rounded to double once, so that exact
// powers of ten stay exact: KxPower(10, 2) is 100, not 100.00000000000004, and
// KxLog10(1000) is 3.
#include <cstdint>

namespace kx {

// ln(x) / ln(10). x = 0 gives -inf, x < 0 or NaN gives NaN, +inf gives +inf.
double KxLog10(double x);

// exp(exponent * ln(base)). Defined for base > 0; a base <= 0 (or NaN) has no real
// logarithm and gives 0.0, never NaN and never a floating-point trap.
double KxPower(double base, double exponent);

// Rounds value to the nearest decade on the logarithmic scale: exponent =
// Round(KxLog10(value)) (half to even), result = KxPower(10, exponent). A value
// <= 0 is taken as 1 (exponent 0, result 1). A NaN value also gives exponent 0 and
// result 1; +inf saturates the exponent at the int32 maximum and gives +inf.
double KxRoundLogValue(double value, int32_t& exponent);

}  // namespace kx
