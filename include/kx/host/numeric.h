#pragma once
// Classic arithmetic: Round is half-to-even, Trunc and Div truncate toward zero.
// No conversion here is undefined: a NaN becomes 0 and out-of-range values saturate.
#include <cmath>
#include <cstdint>
#include <limits>

namespace kx {

// Saturating conversion of an already integral double to int32.
inline int32_t SaturateToInt32(double v) {
    if (std::isnan(v)) return 0;
    if (v >= 2147483647.0) return std::numeric_limits<int32_t>::max();
    if (v <= -2147483648.0) return std::numeric_limits<int32_t>::min();
    return static_cast<int32_t>(v);
}

// A 64-bit sum or product of coordinates, clipped to the int32 range.
inline int32_t Saturate(int64_t v) {
    if (v > std::numeric_limits<int32_t>::max()) return std::numeric_limits<int32_t>::max();
    if (v < std::numeric_limits<int32_t>::min()) return std::numeric_limits<int32_t>::min();
    return static_cast<int32_t>(v);
}

inline int64_t SaturateToInt64(double v) {
    if (std::isnan(v)) return 0;
    if (v >= 9223372036854775807.0) return std::numeric_limits<int64_t>::max();
    if (v <= -9223372036854775808.0) return std::numeric_limits<int64_t>::min();
    return static_cast<int64_t>(v);
}

// Round half to even (the processor's default rounding), saturated to int32.
inline int32_t Round(double v) {
    return SaturateToInt32(std::nearbyint(v));
}
inline int64_t Round64(double v) {
    return SaturateToInt64(std::nearbyint(v));
}

inline int32_t Trunc(double v) {
    return SaturateToInt32(std::trunc(v));
}
inline int64_t Trunc64(double v) {
    return SaturateToInt64(std::trunc(v));
}

// Integer division truncating toward zero; division by zero yields 0 and
// INT_MIN div -1 yields INT_MIN instead of trapping.
inline int32_t Div(int32_t a, int32_t b) {
    if (b == 0) return 0;
    if (b == -1) return static_cast<int32_t>(0u - static_cast<uint32_t>(a));
    return a / b;
}
inline int32_t Mod(int32_t a, int32_t b) {
    if (b == 0 || b == -1) return 0;
    return a % b;
}

// Wrapping integer arithmetic, as the classic 32-bit code computes it.
inline int32_t WrapAdd(int32_t a, int32_t b) {
    return static_cast<int32_t>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
}
inline int32_t WrapSub(int32_t a, int32_t b) {
    return static_cast<int32_t>(static_cast<uint32_t>(a) - static_cast<uint32_t>(b));
}

}  // namespace kx
