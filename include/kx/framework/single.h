#pragma once
// Narrowing a double result to single precision without leaving the defined range of the
// conversion: magnitudes beyond the largest float become an infinity of the same sign.
#include <cmath>
#include <limits>

namespace kx {

inline float ToSingle(double v) {
    constexpr double kMax = std::numeric_limits<float>::max();
    if (v > kMax) return std::numeric_limits<float>::infinity();
    if (v < -kMax) return -std::numeric_limits<float>::infinity();
    return static_cast<float>(v);
}

}  // namespace kx
