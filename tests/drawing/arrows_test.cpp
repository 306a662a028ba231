#include <gtest/gtest.h>

#include "kx/drawing/arrows.h"
#include "kx/host/recordingcanvas.h"

namespace kx {
namespace {

using Points = std::vector<TPoint>;

std::array<int32_t, 4> HeaderOf(TPoint h) {
    return {ArrowPointCount(h), ArrowStyleByte(h, 1), ArrowStyleByte(h, 4), ArrowStyleByte(h, 5)};
}

Points Drawn(const TRecordingCanvas& canvas) {
    Points out;
    for (const auto& call : canvas.CallsOf("Polygon"))
        for (size_t i = 0; i + 1 < call.Args.size(); i += 2)
            out.push_back({call.Args[i], call.Args[i + 1]});
    return out;
}

TEST(Arrows, HeaderBytes) {
    TArrowPoints pts{};
    pts[0] = TPoint{int32_t(0xAABBCCDDu), int32_t(0x11223344u)};
    KxArrowSettings(pts, kArrowPointsHigh, 264, 1, 2, 3);
    // N keeps its low byte; bytes 2, 3, 6 and 7 stay as they were.
    EXPECT_EQ(uint32_t(pts[0].X), 0xAABB0108u);
    EXPECT_EQ(uint32_t(pts[0].Y), 0x11220302u);
    EXPECT_EQ(HeaderOf(pts[0]), (std::array{8, 1, 2, 3}));
    EXPECT_EQ(ArrowStyleByte(pts[0], 7), 0x11);
    EXPECT_EQ(ArrowStyleByte(pts[0], 8), 0);
    KxArrowSettings({}, 0, 4, 0, 0, 0);  // nothing to write
}

TEST(Arrows, FieldOfEveryKind) {
    // Width 100: r = 50, a = 5, b = 3; pivot (50, 50), tip (50, 0).
    struct Case {
        int32_t kind;
        std::array<int32_t, 4> header;
        Points outline;  // points 2 .. N
    } cases[] = {
        {0, {4, 0, 2, 0}, {{45, 55}, {55, 55}, {50, 0}}},
        {1, {4, 0, 7, 3}, {{47, 50}, {53, 50}, {50, 0}}},
        {2, {4, 0, 0, 0}, {{45, 20}, {55, 20}, {50, 0}}},
        {3, {4, 0, 5, 3}, {{47, 60}, {53, 60}, {50, 0}, {47, 0}}},  // index 5 beyond N
        {4, {8, 0, 2, 0}, {{47, 55}, {53, 55}, {53, 15}, {60, 15}, {50, 0}, {40, 15}, {47, 15}}},
        {5, {6, 0, 2, 0}, {{45, 55}, {55, 55}, {55, 10}, {50, 0}, {45, 10}}},
        {6, {5, 1, 8, 3}, {{49, 60}, {51, 60}, {51, 0}, {49, 0}}},
        {7, {6, 0, 3, 2}, {{45, 50}, {42, 60}, {58, 60}, {55, 50}, {50, 0}}},
        {8, {4, 0, 2, 0}, {{45, 55}, {55, 55}, {50, 0}}},
        {-1, {4, 0, 2, 0}, {{45, 55}, {55, 55}, {50, 0}}},
    };
    for (const Case& c : cases) {
        TArrowPoints pts{};
        KxArrowField(c.kind, 17, {20, 30, 120, 200}, pts, kArrowPointsHigh);
        EXPECT_EQ(HeaderOf(pts[0]), c.header) << c.kind;
        EXPECT_EQ(pts[1], (TPoint{50, 50}));
        EXPECT_EQ(Points(pts.begin() + 2, pts.begin() + 2 + c.outline.size()), c.outline) << c.kind;
        // Drawn unturned: exactly points 2 .. N (kind 3: a triangle).
        TRecordingCanvas canvas;
        TArrowPoints work{};
        KxArrowDraw(canvas, 0, pts, kArrowPointsHigh, work, kArrowPointsHigh, true);
        EXPECT_EQ(Drawn(canvas), Points(pts.begin() + 2, pts.begin() + 1 + c.header[0]));
    }
    // Kind 1's style byte a + a div 2 keeps its low byte: a = 175 gives 262 -> 6.
    TArrowPoints pts{};
    KxArrowField(1, 0, {0, 0, 3500, 10}, pts, kArrowPointsHigh);
    EXPECT_EQ(ArrowStyleByte(pts[0], 4), 6);
}

TEST(Arrows, DrawTurnsAboutThePivot) {
    TArrowPoints field{};
    KxArrowField(4, 0, {0, 0, 100, 100}, field, kArrowPointsHigh);
    // Offsets from (50, 50) turned exactly.
    const auto turned = [&](auto f) {
        Points out;
        for (size_t i = 2; i < field.size(); ++i) {
            const TPoint d = f(field[i].X - 50, field[i].Y - 50);
            out.push_back({50 + d.X, 50 + d.Y});
        }
        return out;
    };
    struct Case {
        float angle;
        bool clockwise;
        Points want;
    } cases[] = {
        {0, false, turned([](int x, int y) {
             return TPoint{x, y};
         })},
        {90, true, turned([](int x, int y) {
             return TPoint{-y, x};
         })},
        {90, false, turned([](int x, int y) {
             return TPoint{y, -x};
         })},
        {180, true, turned([](int x, int y) {
             return TPoint{-x, -y};
         })},
        {180, false, turned([](int x, int y) {
             return TPoint{-x, -y};
         })},
    };
    for (const Case& c : cases) {
        TRecordingCanvas canvas;
        TArrowPoints work{};
        KxArrowDraw(canvas, c.angle, field, kArrowPointsHigh, work, kArrowPointsHigh, c.clockwise);
        EXPECT_EQ(Drawn(canvas), c.want) << c.angle << " " << c.clockwise;
        EXPECT_EQ(work[0], field[0]);
        EXPECT_EQ(work[1], field[1]);
        EXPECT_EQ(Points(work.begin() + 2, work.end()), c.want);
    }
    // In place: the tip (r, 0) at 90 degrees clockwise points right, (2r, r).
    KxArrowDraw(*std::make_unique<TRecordingCanvas>(), 90, field, 8, field, 8, true);
    EXPECT_EQ(field[6], (TPoint{100, 50}));
    EXPECT_EQ(field[2], (TPoint{45, 47}));
}

TEST(Arrows, BoundsAreNeverExceeded) {
    // Kind 4 into five points: only indices 0 .. 4 are written.
    std::array<TPoint, 5> small{};
    KxArrowField(4, 0, {0, 0, 100, 100}, small, 8);
    EXPECT_EQ(ArrowPointCount(small[0]), 8);
    EXPECT_EQ(small[4], (TPoint{53, 15}));
    // The declared high index bounds it as well.
    TArrowPoints field{};
    KxArrowField(4, 0, {0, 0, 100, 100}, field, 3);
    EXPECT_EQ(field[4], TPoint{});
    KxArrowField(4, 0, {0, 0, 100, 100}, field, kArrowPointsHigh);

    // N = 8 but the source holds five points, or the target four: N is cut down.
    TRecordingCanvas canvas;
    TArrowPoints work{};
    KxArrowDraw(canvas, 0, small, 8, work, kArrowPointsHigh, true);
    EXPECT_EQ(Drawn(canvas), (Points{{47, 55}, {53, 55}, {53, 15}}));
    std::array<TPoint, 4> target{};
    TRecordingCanvas canvas2;
    KxArrowDraw(canvas2, 0, field, kArrowPointsHigh, target, 100, true);
    EXPECT_EQ(Drawn(canvas2).size(), 2u);

    // Lists without a pivot do nothing; N < 2 copies the header and pivot only.
    TRecordingCanvas canvas3;
    std::array<TPoint, 1> one{};
    KxArrowDraw(canvas3, 0, field, kArrowPointsHigh, one, 0, true);
    KxArrowDraw(canvas3, 0, field, -5, work, kArrowPointsHigh, true);
    std::array<TPoint, 3> flat{};
    KxArrowSettings(flat, 2, 1, 0, 0, 0);
    flat[1] = {7, 8};
    KxArrowDraw(canvas3, 0, flat, 2, work, kArrowPointsHigh, true);
    EXPECT_TRUE(canvas3.Calls().empty());
    EXPECT_EQ(work[1], (TPoint{7, 8}));
    KxArrowField(4, 0, {0, 0, 100, 100}, {}, 8);
}

}  // namespace
}  // namespace kx
