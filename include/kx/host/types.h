#pragma once
// Integer geometry of the classic host API: X grows to the right, Y downwards.
#include <cstdint>

namespace kx {

struct TPoint {
    int32_t X = 0;
    int32_t Y = 0;
    friend bool operator==(const TPoint&, const TPoint&) = default;
};

struct TRect {
    static constexpr int32_t Span(int32_t from, int32_t to) {
        const int64_t d = int64_t(to) - from;
        return d > INT32_MAX ? INT32_MAX : d < INT32_MIN ? INT32_MIN : int32_t(d);
    }
    int32_t Left = 0;
    int32_t Top = 0;
    int32_t Right = 0;
    int32_t Bottom = 0;
    // Saturated: a rectangle spanning more than the int32 range (absurd bevels or offsets)
    // reports the largest width rather than overflowing.
    int32_t Width() const { return Span(Left, Right); }
    int32_t Height() const { return Span(Top, Bottom); }
    friend bool operator==(const TRect&, const TRect&) = default;
};

inline TPoint Point(int32_t x, int32_t y) {
    return TPoint{x, y};
}
inline TRect Rect(int32_t l, int32_t t, int32_t r, int32_t b) {
    return TRect{l, t, r, b};
}
inline TRect Bounds(int32_t l, int32_t t, int32_t w, int32_t h) {
    return TRect{l, t, l + w, t + h};
}

}  // namespace kx
