#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "drawing/angles.h"

namespace kx {
namespace {

TEST(Angles, GetAngleRunsClockwiseFromStraightDown) {
    const TPoint m{100, 50};
    struct Case {
        int32_t dx, dy;
        float degrees;
    } cases[] = {
        {0, 10, 0},   {-10, 10, 45}, {-10, 0, 90}, {-10, -10, 135}, {0, -10, 180},  {10, -10, 225},
        {10, 0, 270}, {10, 10, 315}, {0, 0, 90},   {-1000, 1, 90},  {1, 1000, 360},
    };
    for (const auto& c : cases) {
        const float a = KxGetAngle(m, TPoint{m.X + c.dx, m.Y + c.dy});
        EXPECT_NEAR(a, c.degrees, 0.3) << c.dx << "," << c.dy;
    }
}

TEST(Angles, GetAngleKeepsTheVerticalBiasAndSingleAngle) {
    // The 0.0001 added to the vertical difference and the single-precision angle
    // show in the last digits; scales and pointers rely on these exact values.
    struct Case {
        TPoint m, p;
        float degrees;
    } cases[] = {
        {{0, 0}, {0, 10}, -5.008956e-06f}, {{0, 0}, {-10, 10}, 44.999714f},
        {{0, 0}, {-10, -10}, 134.99971f},  {{0, 0}, {10, -10}, 225.00029f},
        {{0, 0}, {10, 10}, 315.00027f},    {{100, 50}, {103, 43}, 203.19888f},
        {{0, 0}, {-1000, 1}, 89.942696f},  {{0, 0}, {0, 0}, 90.0f},
        {{0, 0}, {10, 0}, 270.0f},         {{0, 0}, {0, -10}, 180.0f},
    };
    for (const auto& c : cases)
        EXPECT_FLOAT_EQ(KxGetAngle(c.m, c.p), c.degrees) << c.p.X << "," << c.p.Y;
}

TEST(Angles, RotateFullCircleBothDirections) {
    const TPoint m{100, 200};
    struct Case {
        TPoint p;
        bool clockwise;
        TPoint expected[9];  // 0, 45, ..., 360 degrees
    } cases[] = {
        {{110, 200},
         true,
         {{110, 200},
          {107, 207},
          {100, 210},
          {93, 207},
          {90, 200},
          {93, 193},
          {100, 190},
          {107, 193},
          {110, 200}}},
        {{110, 200},
         false,
         {{110, 200},
          {107, 193},
          {100, 190},
          {93, 193},
          {90, 200},
          {93, 207},
          {100, 210},
          {107, 207},
          {110, 200}}},
        {{110, 205},
         true,
         {{110, 205},
          {104, 211},
          {95, 210},
          {89, 204},
          {90, 195},
          {96, 189},
          {105, 190},
          {111, 196},
          {110, 205}}},
        {{110, 205},
         false,
         {{110, 205},
          {111, 196},
          {105, 190},
          {96, 189},
          {90, 195},
          {89, 204},
          {95, 210},
          {104, 211},
          {110, 205}}},
    };
    for (const auto& c : cases)
        for (int k = 0; k <= 8; ++k) {
            const TPoint r = KxRotate(c.p, m, 45.0f * k, c.clockwise);
            EXPECT_EQ(r, c.expected[k]) << c.p.Y << (c.clockwise ? " cw " : " ccw ") << 45 * k;
        }
}

TEST(Angles, RotatePinsPrecisionAndRounding) {
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
    };
    for (const auto& c : cases)
        EXPECT_EQ(KxRotate(c.p, c.m, c.angle, c.clockwise), c.expected)
            << c.p.X << " by " << c.angle;
}

TEST(Angles, RotateByNonFiniteAngleGivesTheCentre) {
    const TPoint m{-7, 12};
    for (float angle :
         {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
          -std::numeric_limits<float>::infinity()})
        for (bool clockwise : {true, false})
            EXPECT_EQ(KxRotate(TPoint{30, 40}, m, angle, clockwise), m);
}

}  // namespace
}  // namespace kx
