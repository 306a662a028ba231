#include "kx/drawing/arrows.h"

#include <algorithm>

#include "kx/drawing/angles.h"
#include "kx/host/numeric.h"

namespace kx {
namespace {

// The last index that both the declared high index and the span allow; -1 for none.
int32_t UsableHigh(size_t size, int32_t high) {
    const int64_t last = static_cast<int64_t>(size) - 1;
    return static_cast<int32_t>(std::min<int64_t>(high, last));
}

uint32_t SetByte(uint32_t word, int shift, uint8_t value) {
    return (word & ~(0xFFu << shift)) | (uint32_t{value} << shift);
}

}  // namespace

int32_t ArrowPointCount(TPoint header) {
    return ArrowStyleByte(header, 0);
}

uint8_t ArrowStyleByte(TPoint header, int32_t index) {
    if (index < 0 || index > 7) return 0;
    const uint32_t word = static_cast<uint32_t>(index < 4 ? header.X : header.Y);
    return static_cast<uint8_t>(word >> (8 * (index % 4)));
}

void KxArrowSettings(std::span<TPoint> points, int32_t /*high*/, int32_t n, uint8_t b1, uint8_t b4,
                     uint8_t b5) {
    if (points.empty()) return;
    TPoint& h = points[0];
    uint32_t x = static_cast<uint32_t>(h.X);
    uint32_t y = static_cast<uint32_t>(h.Y);
    x = SetByte(SetByte(x, 0, static_cast<uint8_t>(n)), 8, b1);
    y = SetByte(SetByte(y, 0, b4), 8, b5);
    h.X = static_cast<int32_t>(x);
    h.Y = static_cast<int32_t>(y);
}

void KxArrowField(int32_t kind, int32_t /*unused*/, const TRect& rect, std::span<TPoint> points,
                  int32_t high) {
    // Halving first keeps every coordinate below within 32 bits.
    const int32_t r = Div(WrapSub(rect.Right, rect.Left), 2);
    const int32_t a = Div(r, 10);
    const int32_t b = Div(r, 16);
    const int32_t last = UsableHigh(points.size(), high);
    auto put = [&](int32_t index, int32_t x, int32_t y) {
        if (index <= last) points[static_cast<size_t>(index)] = TPoint{x, y};
    };
    auto header = [&](int32_t n, int32_t b1, int32_t b4, int32_t b5) {
        if (last >= 0)
            KxArrowSettings(points, high, n, static_cast<uint8_t>(b1), static_cast<uint8_t>(b4),
                            static_cast<uint8_t>(b5));
    };
    put(1, r, r);
    switch (kind) {
        case 1:
            header(4, 0, a + Div(a, 2), 3);
            put(2, r - b, r);
            put(3, r + b, r);
            put(4, r, 0);
            break;
        case 2:
            header(4, 0, 0, 0);
            put(2, r - a, 4 * a);
            put(3, r + a, 4 * a);
            put(4, r, 0);
            break;
        case 3:
            header(4, 0, a, 3);
            put(2, r - b, r + 2 * a);
            put(3, r + b, r + 2 * a);
            put(4, r, 0);
            put(5, r - b, 0);  // beyond N: written, never drawn
            break;
        case 4:
            header(8, 0, 2, 0);
            put(2, r - b, r + a);
            put(3, r + b, r + a);
            put(4, r + b, 3 * a);
            put(5, r + 2 * a, 3 * a);
            put(6, r, 0);
            put(7, r - 2 * a, 3 * a);
            put(8, r - b, 3 * a);
            break;
        case 5:
            header(6, 0, 2, 0);
            put(2, r - a, r + a);
            put(3, r + a, r + a);
            put(4, r + a, 2 * a);
            put(5, r, 0);
            put(6, r - a, 2 * a);
            break;
        case 6:
            header(5, 1, 8, 3);
            put(2, r - 1, r + 2 * a);
            put(3, r + 1, r + 2 * a);
            put(4, r + 1, 0);
            put(5, r - 1, 0);
            break;
        case 7:
            header(6, 0, b, 2);
            put(2, r - a, r);
            put(3, r - a - b, r + 2 * a);
            put(4, r + a + b, r + 2 * a);
            put(5, r + a, r);
            put(6, r, 0);
            break;
        default:
            header(4, 0, 2, 0);
            put(2, r - a, r + a);
            put(3, r + a, r + a);
            put(4, r, 0);
            break;
    }
}

void KxArrowDraw(TCanvas& canvas, float angle, std::span<const TPoint> source, int32_t sourceHigh,
                 std::span<TPoint> target, int32_t targetHigh, bool clockwise) {
    const int32_t srcLast = UsableHigh(source.size(), sourceHigh);
    const int32_t dstLast = UsableHigh(target.size(), targetHigh);
    if (srcLast < 1 || dstLast < 1) return;
    // A working copy lets source and target be the same list. N is one byte, so 256
    // points always suffice.
    std::array<TPoint, 256> copy;
    const int32_t count = std::min<int32_t>(srcLast + 1, int32_t(copy.size()));
    std::copy_n(source.begin(), count, copy.begin());
    target[0] = copy[0];
    target[1] = copy[1];
    const int32_t n = std::min({ArrowPointCount(copy[0]), srcLast, dstLast});
    if (n < 2) return;
    for (int32_t i = 2; i <= n; ++i)
        target[size_t(i)] = KxRotate(copy[size_t(i)], copy[1], angle, clockwise);
    canvas.Polygon(target.subspan(2, size_t(n) - 1));
}

}  // namespace kx
