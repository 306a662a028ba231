#pragma once
// Pointer ("arrow") outlines of the round meters: built once per size as a point list
// pointing straight up in a local square, then turned to the pointer's angle and filled.
//
// Point list layout:
//   [0]      header: byte 0 = N, the index of the last outline point; bytes 1, 4 and 5
//            = three style bytes kept for the caller. The bytes are those of the point
//            read as X (bytes 0..3, least significant first) then Y (bytes 4..7); the
//            other bytes are left as they were.
//   [1]      the rotation centre
//   [2 .. N] the outline, in drawing order
//
// Every routine takes the list with its high index, as the classic open arrays did. The
// usable high index is the smaller of that index and the span's last index, and no
// routine reads or writes beyond it: outline points that do not fit are not written, and
// KxArrowDraw turns and fills only the points 2 .. min(N, both usable high indices).
#include <array>
#include <cstdint>
#include <span>

#include "kx/host/canvas.h"
#include "kx/host/types.h"

namespace kx {

// Nine points hold the largest outline (kind 4, N = 8).
using TArrowPoints = std::array<TPoint, 9>;
constexpr int32_t kArrowPointsHigh = 8;

// Byte 0 of the header: N.
int32_t ArrowPointCount(TPoint header);
// Byte index (0 .. 7) of the header; other indices give 0.
uint8_t ArrowStyleByte(TPoint header, int32_t index);

// Writes byte 0 = n, byte 1 = b1, byte 4 = b4, byte 5 = b5 (low bytes) into points[0];
// high is not needed for that. An empty span is left alone.
void KxArrowSettings(std::span<TPoint> points, int32_t high, int32_t n, uint8_t b1, uint8_t b4,
                     uint8_t b5);

// The outline of kind (0 .. 7; any other value is kind 0) for a field of width
// r.Right - r.Left: r = width div 2, a = r div 10, b = r div 16, pivot (r, r), tip (r, 0),
// in the square (0, 0) .. (2r, 2r). Kind 3 writes a fourth outline point at index 5,
// beyond its N = 4, which is never drawn.
void KxArrowField(int32_t kind, int32_t unused, const TRect& r, std::span<TPoint> points,
                  int32_t high);

// target[0] and target[1] = source's header and pivot; target[2 .. N] = source's outline
// turned by angle degrees about the pivot (KxRotate), then Polygon(target[2 .. N]) with
// the caller's pen and brush. source and target may be the same list. When either list
// holds fewer than two points nothing happens; with N < 2 (after the bounds above) only
// the header and pivot are copied and nothing is drawn.
void KxArrowDraw(TCanvas& canvas, float angle, std::span<const TPoint> source, int32_t sourceHigh,
                 std::span<TPoint> target, int32_t targetHigh, bool clockwise);

}  // namespace kx
