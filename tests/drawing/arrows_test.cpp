#include <gtest/gtest.h>

#include "drawing/arrows.h"
#include "host/recordingcanvas.h"

namespace kx {
namespace {

using Points = std::vector<TPoint>;

struct Header {
    int32_t n, b1, b4, b5;
    friend bool operator==(const Header&, const Header&) = default;
};

Header HeaderOf(TPoint h) {
    return {ArrowPointCount(h), ArrowStyleByte(h, 1), ArrowStyleByte(h, 4), ArrowStyleByte(h, 5)};
}

TEST(Arrows, SettingsPackTheHeaderBytes) {
    TArrowPoints pts{};
    pts[0] = TPoint{int32_t(0xAABBCCDDu), int32_t(0x11223344u)};
    KxArrowSettings(pts, kArrowPointsHigh, 8, 1, 2, 3);
    // Bytes 2, 3, 6 and 7 are left as they were.
    EXPECT_EQ(uint32_t(pts[0].X), 0xAABB0108u);
    EXPECT_EQ(uint32_t(pts[0].Y), 0x11220302u);
    EXPECT_EQ(HeaderOf(pts[0]), (Header{8, 1, 2, 3}));
    EXPECT_EQ(ArrowStyleByte(pts[0], 3), 0xAA);
    EXPECT_EQ(ArrowStyleByte(pts[0], 7), 0x11);
    EXPECT_EQ(ArrowStyleByte(pts[0], 8), 0);
    EXPECT_EQ(ArrowStyleByte(pts[0], -1), 0);
    // N keeps its low byte only.
    KxArrowSettings(pts, 0, 260, 255, 0, 0);
    EXPECT_EQ(ArrowPointCount(pts[0]), 4);
    EXPECT_EQ(ArrowStyleByte(pts[0], 1), 255);
    KxArrowSettings(std::span<TPoint>(), 0, 4, 0, 0, 0);  // nothing to write, no crash
}

TEST(Arrows, FieldOfEveryKind) {
    // Width 100: r = 50, a = 5, b = 3. Pivot (50, 50), tip (50, 0).
    struct Case {
        int32_t kind;
        Header header;
        Points outline;  // points 2 .. N
    } cases[] = {
        {0, {4, 0, 2, 0}, {{45, 55}, {55, 55}, {50, 0}}},
        {1, {4, 0, 7, 3}, {{47, 50}, {53, 50}, {50, 0}}},
        {2, {4, 0, 0, 0}, {{45, 20}, {55, 20}, {50, 0}}},
        {3, {4, 0, 5, 3}, {{47, 60}, {53, 60}, {50, 0}}},
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
        EXPECT_EQ(pts[1], (TPoint{50, 50})) << c.kind;
        const Points outline(pts.begin() + 2, pts.begin() + 2 + c.outline.size());
        EXPECT_EQ(outline, c.outline) << c.kind;
    }
    // Kind 3 writes a fourth point beyond N.
    TArrowPoints pts{};
    KxArrowField(3, 0, {0, 0, 100, 100}, pts, kArrowPointsHigh);
    EXPECT_EQ(pts[5], (TPoint{47, 0}));
    // Kind 1's style byte a + a div 2 keeps its low byte: width 3500, a = 175, 262 -> 6.
    KxArrowField(1, 0, {0, 0, 3500, 10}, pts, kArrowPointsHigh);
    EXPECT_EQ(ArrowStyleByte(pts[0], 4), 6);
}

Points Drawn(const TRecordingCanvas& canvas) {
    const auto polys = canvas.CallsOf("Polygon");
    if (polys.size() != 1) return {};
    Points out;
    for (size_t i = 0; i + 1 < polys[0].Args.size(); i += 2)
        out.push_back({polys[0].Args[i], polys[0].Args[i + 1]});
    return out;
}

TEST(Arrows, DrawTurnsAboutThePivot) {
    TArrowPoints field{};
    KxArrowField(4, 0, {0, 0, 100, 100}, field, kArrowPointsHigh);
    const Points up(field.begin() + 2, field.end());
    // Offsets from the pivot (50, 50) turned exactly.
    const auto turned = [&](auto f) {
        Points out;
        for (const TPoint& p : up) {
            const TPoint d = f(p.X - 50, p.Y - 50);
            out.push_back({50 + d.X, 50 + d.Y});
        }
        return out;
    };
    struct Case {
        float angle;
        bool clockwise;
        Points want;
    } cases[] = {
        {0, true, up},
        {0, false, up},
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
    // The tip (r, 0) at 90 degrees clockwise points right: (2r, r).
    TRecordingCanvas canvas;
    TArrowPoints work{};
    KxArrowDraw(canvas, 90, field, kArrowPointsHigh, work, kArrowPointsHigh, true);
    EXPECT_EQ(work[6], (TPoint{100, 50}));
}

TEST(Arrows, DrawUsesNOnly) {
    // Kind 3 has four outline points written but N = 4: a triangle.
    TArrowPoints field{};
    KxArrowField(3, 0, {0, 0, 100, 100}, field, kArrowPointsHigh);
    TRecordingCanvas canvas;
    TArrowPoints work{};
    KxArrowDraw(canvas, 0, field, kArrowPointsHigh, work, kArrowPointsHigh, true);
    EXPECT_EQ(Drawn(canvas), (Points{{47, 60}, {53, 60}, {50, 0}}));
    EXPECT_EQ(work[5], TPoint{});  // not copied
}

TEST(Arrows, DrawInPlace) {
    TArrowPoints pts{};
    KxArrowField(0, 0, {0, 0, 100, 100}, pts, kArrowPointsHigh);
    TRecordingCanvas canvas;
    KxArrowDraw(canvas, 90, pts, kArrowPointsHigh, pts, kArrowPointsHigh, true);
    EXPECT_EQ(Drawn(canvas), (Points{{45, 45}, {45, 55}, {100, 50}}));
}

TEST(Arrows, BoundsAreNeverExceeded) {
    // A field of kind 4 in a list of five points: only indices 0 .. 4 are written.
    std::array<TPoint, 5> small{};
    KxArrowField(4, 0, {0, 0, 100, 100}, small, 8);
    EXPECT_EQ(ArrowPointCount(small[0]), 8);
    EXPECT_EQ(small[4], (TPoint{53, 15}));
    // The declared high index counts too.
    TArrowPoints field{};
    KxArrowField(4, 0, {0, 0, 100, 100}, field, 3);
    EXPECT_EQ(field[3], (TPoint{53, 55}));
    EXPECT_EQ(field[4], TPoint{});

    // N = 8 but the source holds five points: points 2 .. 4 are drawn.
    TRecordingCanvas canvas;
    TArrowPoints work{};
    KxArrowDraw(canvas, 0, small, 8, work, kArrowPointsHigh, true);
    EXPECT_EQ(Drawn(canvas), (Points{{47, 55}, {53, 55}, {53, 15}}));
    // The target bounds N as well.
    std::array<TPoint, 4> target{};
    TRecordingCanvas canvas2;
    KxArrowDraw(canvas2, 0, field, kArrowPointsHigh, target, 100, true);
    EXPECT_EQ(Drawn(canvas2).size(), 2u);

    // Too short lists do nothing; N < 2 copies the header and pivot only.
    TRecordingCanvas canvas3;
    std::array<TPoint, 1> one{};
    KxArrowDraw(canvas3, 0, field, kArrowPointsHigh, one, 0, true);
    KxArrowDraw(canvas3, 0, one, 0, work, kArrowPointsHigh, true);
    KxArrowDraw(canvas3, 0, field, -5, work, kArrowPointsHigh, true);
    std::array<TPoint, 3> flat{};
    KxArrowSettings(flat, 2, 1, 0, 0, 0);
    flat[1] = {7, 8};
    KxArrowDraw(canvas3, 0, flat, 2, work, kArrowPointsHigh, true);
    EXPECT_TRUE(canvas3.Calls().empty());
    EXPECT_EQ(work[1], (TPoint{7, 8}));
    KxArrowField(4, 0, {0, 0, 100, 100}, std::span<TPoint>(), 8);
}

}  // namespace
}  // namespace kx
