#include <gtest/gtest.h>

#include <limits>

#include "kx/drawing/angles.h"

namespace kx {
namespace {

TEST(Angles, GetAngleRunsClockwiseFromStraightDownWithBiasAndSingleAngle) {
    // The 0.0001 added to the vertical difference and the single-precision angle show in
    // the last digits; scales and pointers rely on these exact values.
    struct Case {
        TPoint m, p;
        float degrees;
    } cases[] = {
        {{0, 0}, {0, 10}, -5.008956e-06f},  {{0, 0}, {-10, 10}, 44.999714f},
        {{0, 0}, {-10, 0}, 90.0f},          {{0, 0}, {-10, -10}, 134.99971f},
        {{0, 0}, {0, -10}, 180.0f},         {{0, 0}, {10, -10}, 225.00029f},
        {{0, 0}, {10, 0}, 270.0f},          {{0, 0}, {10, 10}, 315.00027f},
        {{100, 50}, {103, 43}, 203.19888f}, {{0, 0}, {-1000, 1}, 89.942696f},
        {{0, 0}, {1, 1000}, 359.94272f},    {{0, 0}, {0, 0}, 90.0f},
    };
    for (const auto& c : cases)
        EXPECT_FLOAT_EQ(KxGetAngle(c.m, c.p), c.degrees) << c.p.X << "," << c.p.Y;
}

TEST(Angles, RotateFullCircleBothDirections) {
    // x, y clockwise at 0, 45, ..., 360 degrees; counter-clockwise visits the same
    // points in reverse order.
    const TPoint m{100, 200};
    struct Case {
        TPoint p;
        int32_t cw[18];
    } cases[] = {
        {{110, 200},
         {110, 200, 107, 207, 100, 210, 93, 207, 90, 200, 93, 193, 100, 190, 107, 193, 110, 200}},
        {{110, 205},
         {110, 205, 104, 211, 95, 210, 89, 204, 90, 195, 96, 189, 105, 190, 111, 196, 110, 205}},
    };
    for (const auto& c : cases)
        for (int k = 0; k <= 8; ++k) {
            const TPoint cw{c.cw[2 * k], c.cw[2 * k + 1]}, ccw{c.cw[16 - 2 * k], c.cw[17 - 2 * k]};
            EXPECT_EQ(KxRotate(c.p, m, 45.0f * k, true), cw) << c.p.Y << " cw " << 45 * k;
            EXPECT_EQ(KxRotate(c.p, m, 45.0f * k, false), ccw) << c.p.Y << " ccw " << 45 * k;
        }
}

TEST(Angles, RotatePinsPrecisionAndRounding) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float inf = std::numeric_limits<float>::infinity();
    struct Case {
        TPoint p, m;
        float angle;
        bool clockwise;
        TPoint expected;
    } cases[] = {
        {{10, 0}, {0, 0}, 90, true, {0, 10}},
        {{10, 0}, {0, 0}, 90, false, {0, -10}},
        {{10, 0}, {0, 0}, -90, true, {0, -10}},
        // The angle is turned into radians in single precision: cos(90 degrees)
        // is then -4.37e-8, which a long radius makes visible.
        {{100000000, 0}, {0, 0}, 90, true, {-4, 100000000}},
        // The offset 0.49999997 is rounded before the centre is added; adding
        // first would round the odd centre up to 1073741826.
        {{1073741826, 0}, {1073741825, 0}, 60, true, {1073741825, 1}},
        {{7, 0}, {0, 0}, 30, true, {6, 4}},
        // A non-finite angle gives the centre.
        {{30, 40}, {-7, 12}, nan, true, {-7, 12}},
        {{30, 40}, {-7, 12}, inf, false, {-7, 12}},
        {{30, 40}, {-7, 12}, -inf, true, {-7, 12}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(KxRotate(c.p, c.m, c.angle, c.clockwise), c.expected)
            << c.p.X << " by " << c.angle;
}

}  // namespace
}  // namespace kx
