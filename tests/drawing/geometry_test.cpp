#include "kx/drawing/geometry.h"

#include <gtest/gtest.h>

#include <climits>
#include <vector>

namespace kx {
namespace {

TEST(Geometry, CentreAndRadiusTruncateTowardZero) {
    struct Case {
        TRect r;
        TPoint centre;
        int32_t radius;
    } cases[] = {
        // clang-format off
        {{0, 0, 10, 10}, {5, 5}, 5}, {{0, 0, 11, 11}, {5, 5}, 5}, {{3, 7, 14, 20}, {8, 13}, 5},
        {{-11, -11, 0, 0}, {-6, -6}, 5}, {{0, 0, 31, 40}, {15, 20}, 15},
        {{0, 0, 40, 31}, {20, 15}, 15}, {{0, 0, 0, 10}, {0, 5}, 0},
        // A negative span halves toward zero, not toward minus infinity.
        {{0, 0, -3, -3}, {-1, -1}, -1}, {{0, 0, -7, 10}, {-3, 5}, -3}, {{10, 10, 0, 0}, {5, 5}, -5},
        // The full int32 span wraps to -1 instead of overflowing.
        {{INT_MIN, 0, INT_MAX, 0}, {INT_MIN, 0}, 0},
        // clang-format on
    };
    for (const auto& c : cases) {
        EXPECT_EQ(KxCenterPoint(c.r), c.centre) << c.r.Left << "," << c.r.Right;
        EXPECT_EQ(KxGetRadius(c.r), c.radius) << c.r.Left << "," << c.r.Right;
    }
}

TEST(Geometry, InRectExcludesRightEdgeButIncludesBottomEdge) {
    const TRect r{10, 20, 30, 40};
    struct Case {
        int32_t x, y;
        bool expected;
    } cases[] = {{10, 20, true},  {29, 40, true},  {30, 30, false}, {9, 30, false},
                 {20, 19, false}, {20, 41, false}, {30, 40, false}};
    for (const auto& c : cases)
        EXPECT_EQ(KxInRect(c.x, c.y, r), c.expected) << c.x << "," << c.y;
}

TEST(Geometry, InCircleUsesTheWidthAsDiameter) {
    struct Case {
        TRect r;
        int32_t x, y;
        bool expected;
    } cases[] = {
        // clang-format off
        // 100 x 50: centre (50, 25), radius 50 in every direction.
        {{0, 0, 100, 50}, 0, 25, true}, {{0, 0, 100, 50}, -1, 25, false},
        {{0, 0, 100, 50}, 50, -24, true}, {{0, 0, 100, 50}, 50, -26, false},
        {{0, 0, 100, 50}, 85, 59, true}, {{0, 0, 100, 50}, 86, 60, false},
        // 50 x 100: centre (25, 50) but still radius 25 only.
        {{0, 0, 50, 100}, 25, 24, false}, {{0, 0, 50, 100}, 25, 26, true},
        // Odd width: the centre is at half pixels.
        {{0, 0, 5, 5}, 0, 2, false}, {{0, 0, 5, 5}, 1, 1, true},
        {{10, 10, 15, 15}, 11, 11, true}, {{10, 10, 15, 15}, 10, 12, false},
        // clang-format on
    };
    for (const auto& c : cases)
        EXPECT_EQ(KxInCircle(c.x, c.y, c.r), c.expected)
            << c.r.Right << "x" << c.r.Bottom << " at " << c.x << "," << c.y;
}

TEST(Geometry, RectInRectAndRectIsRect) {
    const TRect b{0, 0, 100, 50};
    struct Case {
        TRect a;
        bool inside;
    } cases[] = {
        {{0, 0, 100, 50}, true},   {{10, 10, 20, 20}, true}, {{-1, 0, 100, 50}, false},
        {{0, -1, 100, 50}, false}, {{0, 0, 101, 50}, false}, {{0, 0, 100, 51}, false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(KxRectInRect(c.a, b), c.inside) << c.a.Left;
    EXPECT_TRUE(KxRectIsRect(b, TRect{0, 0, 100, 50}));
    for (const TRect& other :
         {TRect{1, 0, 100, 50}, TRect{0, 1, 100, 50}, TRect{0, 0, 99, 50}, TRect{0, 0, 100, 49}})
        EXPECT_FALSE(KxRectIsRect(b, other));
}

TEST(Geometry, RectIntersectionAlwaysWritesTheResult) {
    struct Case {
        TRect a, b;
        bool expected;
        TRect r;
    } cases[] = {
        {{0, 0, 10, 10}, {5, 5, 20, 20}, true, {5, 5, 10, 10}},
        // Sharing an edge only: a zero-width intersection still counts.
        {{0, 0, 10, 10}, {10, 0, 20, 10}, true, {10, 0, 10, 10}},
        {{0, 0, 10, 10}, {10, 10, 20, 20}, true, {10, 10, 10, 10}},
        // Disjoint: false, with the crossed-over rectangle written anyway.
        {{0, 0, 10, 10}, {11, 0, 20, 10}, false, {11, 0, 10, 10}},
        {{0, 0, 10, 10}, {0, 12, 10, 20}, false, {0, 12, 10, 10}},
    };
    for (const auto& c : cases) {
        TRect r{-99, -99, -99, -99};
        EXPECT_EQ(KxRectIntersection(c.a, c.b, r), c.expected) << c.b.Left << "," << c.b.Top;
        EXPECT_EQ(r, c.r) << c.b.Left << "," << c.b.Top;
    }
}

TEST(Geometry, Squares) {
    struct Case {
        TRect r, square, centred;
    } cases[] = {
        {{0, 0, 10, 21}, {0, 0, 10, 10}, {0, 5, 10, 15}},
        {{3, 0, 24, 10}, {3, 0, 13, 10}, {8, 0, 18, 10}},
        {{0, 0, 20, 11}, {0, 0, 11, 11}, {5, 0, 16, 11}},
        {{4, 4, 9, 9}, {4, 4, 9, 9}, {4, 4, 9, 9}},
        {{-10, -20, 0, 0}, {-10, -20, 0, -10}, {-10, -15, 0, -5}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(KxMakeSquare(c.r), c.square) << c.r.Right << "x" << c.r.Bottom;
        EXPECT_EQ(KxMakeCenterSquare(c.r), c.centred) << c.r.Right << "x" << c.r.Bottom;
    }
}

TEST(Geometry, GetMaxRectGrowsToIncludeEachPoint) {
    TRect r{5, 5, 5, 5};
    struct Step {
        int32_t x, y;
        TRect after;
    } steps[] = {
        {7, 5, {5, 5, 7, 5}}, {3, 9, {3, 5, 7, 9}},   {4, 6, {3, 5, 7, 9}},
        {3, 1, {3, 1, 7, 9}}, {8, 10, {3, 1, 8, 10}}, {-2, -3, {-2, -3, 8, 10}},
    };
    for (const auto& s : steps) {
        KxGetMaxRect(s.x, s.y, r);
        EXPECT_EQ(r, s.after) << s.x << "," << s.y;
    }
}

TEST(Geometry, Borders) {
    TRect r{10, 20, 110, 220};
    KxBorder(r, 3);
    EXPECT_EQ(r, (TRect{13, 23, 107, 217}));
    KxBorder(r, -5);
    EXPECT_EQ(r, (TRect{8, 18, 112, 222}));
    KxMultiBorder(r, 1, 2, 3, 4);
    EXPECT_EQ(r, (TRect{9, 20, 109, 218}));
    EXPECT_EQ(KxMultiBorderRect(TRect{0, 0, 50, 40}, 1, 2, 3, 4), (TRect{1, 2, 47, 36}));
    TRect extreme{INT_MIN, 0, INT_MAX, 0};
    KxBorder(extreme, -1);
    EXPECT_EQ(extreme, (TRect{INT_MAX, -1, INT_MIN, 1}));
}

TEST(Geometry, PointsBoundsHoldEveryPointAndTheMargin) {
    struct Case {
        std::vector<TPoint> points;
        int32_t margin;
        TRect expected;
    } cases[] = {
        // clang-format off
        // Edges through the extreme points (not one past them), then the margin.
        {{{5, 7}}, 0, {5, 7, 5, 7}},
        {{{5, 7}}, 2, {3, 5, 7, 9}},
        {{{10, 0}, {0, 10}, {20, 10}}, 0, {0, 0, 20, 10}},
        {{{10, 0}, {0, 10}, {20, 10}}, kKxOutlineReach, {-2, -2, 22, 12}},
        {{{-4, 9}, {3, -8}, {-1, 2}, {6, 1}}, 1, {-5, -9, 7, 10}},
        // A negative margin shrinks.
        {{{0, 0}, {10, 10}}, -3, {3, 3, 7, 7}},
        // Extreme coordinates wrap instead of overflowing.
        {{{INT_MAX, 0}, {INT_MIN, 0}}, 1, {INT_MAX, -1, INT_MIN, 1}},
        // clang-format on
    };
    for (const auto& c : cases)
        EXPECT_EQ(KxPointsBounds(c.points.data(), c.points.size(), c.margin), c.expected)
            << c.points.size() << " points, margin " << c.margin;
}

TEST(Geometry, UnionKeepsOrDropsEmptyRectangles) {
    struct Case {
        TRect a, b, rect, area;
        bool aEmpty;
    } cases[] = {
        // clang-format off
        {{0, 0, 10, 10}, {5, 5, 20, 15}, {0, 0, 20, 15}, {0, 0, 20, 15}, false},
        {{5, 5, 6, 6}, {-3, 8, 1, 9}, {-3, 5, 6, 9}, {-3, 5, 6, 9}, false},
        // A zero-height strip still marks its rows in the rectangle union ...
        {{2, 30, 8, 30}, {2, 10, 8, 12}, {2, 10, 8, 30}, {2, 10, 8, 12}, true},
        // ... and the all-zero "nothing" rectangle would drag the union to the origin.
        {{}, {40, 50, 60, 70}, {0, 0, 60, 70}, {40, 50, 60, 70}, true},
        {{40, 50, 60, 70}, {}, {0, 0, 60, 70}, {40, 50, 60, 70}, false},
        // Inverted rectangles count as empty.
        {{10, 10, 5, 20}, {0, 0, 1, 1}, {0, 0, 5, 20}, {0, 0, 1, 1}, true},
        {{10, 20, 20, 10}, {0, 0, 1, 1}, {0, 0, 20, 10}, {0, 0, 1, 1}, true},
        // Both empty: the area union is the second.
        {{}, {3, 3, 3, 9}, {0, 0, 3, 9}, {3, 3, 3, 9}, true},
        // clang-format on
    };
    for (const auto& c : cases) {
        EXPECT_EQ(KxIsEmptyRect(c.a), c.aEmpty) << c.a.Left << "," << c.a.Top;
        EXPECT_EQ(KxUnionRect(c.a, c.b), c.rect) << c.a.Left << "," << c.a.Top;
        EXPECT_EQ(KxUnionArea(c.a, c.b), c.area) << c.a.Left << "," << c.a.Top;
        EXPECT_EQ(KxUnionRect(c.b, c.a), c.rect) << "swapped " << c.a.Left;
    }
}

TEST(Geometry, OffsetsMoveEveryCoordinateAndWrap) {
    struct Case {
        TRect r;
        int32_t dx, dy;
        TRect expected;
    } cases[] = {
        {{0, 0, 10, 20}, 5, -7, {5, -7, 15, 13}},
        {{-5, -5, 5, 5}, 0, 0, {-5, -5, 5, 5}},
        {{INT_MAX - 1, 0, INT_MAX, 1}, 2, INT_MIN, {INT_MIN, INT_MIN, INT_MIN + 1, INT_MIN + 1}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(KxOffsetRect(c.r, c.dx, c.dy), c.expected) << c.dx << "," << c.dy;
        const TPoint tl = KxOffsetPoint(TPoint{c.r.Left, c.r.Top}, c.dx, c.dy);
        EXPECT_EQ(tl, (TPoint{c.expected.Left, c.expected.Top})) << c.dx << "," << c.dy;
    }
}

TEST(Geometry, IntegerHelpers) {
    EXPECT_EQ(KxMinInt(-3, 2), -3);
    EXPECT_EQ(KxMaxInt(-3, 2), 2);
    // value, min, max, result: a reversed range gives its first bound.
    const int32_t clamps[][4] = {{5, 0, 10, 5}, {-3, 0, 10, 0}, {11, 0, 10, 10}, {5, 10, 0, 10}};
    for (const auto& c : clamps)
        EXPECT_EQ(KxMinMaxInt(c[0], c[1], c[2]), c[3]) << c[0];
    const int32_t spans[][3] = {
        {-10, 5, 15}, {-10, -5, 5},          {8, 2, -6}, {5, -3, 0}, {0, 7, 7},
        {-1, 0, 1},   {INT_MIN, INT_MAX, -1}};
    for (const auto& s : spans)
        EXPECT_EQ(CalcTotalDigit(s[0], s[1]), s[2]) << s[0] << "," << s[1];
}

}  // namespace
}  // namespace kx
