// Lines, curves and polygons beyond the reference rasters: tie symmetry, outlines written
// once in combining modes, clipping, small and huge boxes.
#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <set>

#include "kx/host/bitmap.h"
#include "kx/host/raster.h"

namespace kx {
namespace {

using Pixels = std::set<std::pair<int, int>>;

Pixels linePixels(TPoint a, TPoint b, bool withEnd) {
    Pixels s;
    raster::ForEachLinePixel(a, b, withEnd, [&](int64_t x, int64_t y) {
        s.insert({int(x), int(y)});
    });
    return s;
}

TEST(CanvasCurves, LineTiesTakeTheSmallerCoordinate) {
    const struct {
        TPoint from, to;
        Pixels expected;
    } cases[] = {
        {{12, 12}, {16, 10}, {{12, 12}, {13, 11}, {14, 11}, {15, 10}}},
        {{12, 12}, {10, 16}, {{12, 12}, {11, 13}, {11, 14}, {10, 15}}},
        {{12, 12}, {16, 14}, {{12, 12}, {13, 12}, {14, 13}, {15, 13}}},
        {{16, 10}, {12, 12}, {{16, 10}, {15, 10}, {14, 11}, {13, 11}}},
        {{12, 12}, {12, 12}, {}},
    };
    for (const auto& c : cases) {
        TBitmap b(24, 24);
        b.Canvas().MoveTo(c.from.X, c.from.Y);
        b.Canvas().LineTo(c.to.X, c.to.Y);
        Pixels got;
        for (int y = 0; y < 24; ++y)
            for (int x = 0; x < 24; ++x)
                if (b.Pixel(x, y) == clBlack) got.insert({x, y});
        EXPECT_EQ(got, c.expected)
            << c.from.X << "," << c.from.Y << " -> " << c.to.X << "," << c.to.Y;
        EXPECT_EQ(b.Canvas().PenPos(), c.to);
    }
}

// Because ties go to the smaller coordinate in both directions, a line and its reverse
// cover the same pixels once both end points are counted.
TEST(CanvasCurves, LineAndItsReverseCoverTheSamePixels) {
    std::mt19937 rng(7);
    std::uniform_int_distribution<int> coord(-20, 20);
    for (int i = 0; i < 2000; ++i) {
        const TPoint a{coord(rng), coord(rng)}, b{coord(rng), coord(rng)};
        ASSERT_EQ(linePixels(a, b, true), linePixels(b, a, true))
            << a.X << "," << a.Y << " " << b.X << "," << b.Y;
    }
}

// Shapes drawn with a clear brush in pmXor must change exactly the pixels that pmCopy
// paints, each once (white xor white = black), however their edges coincide.
TEST(CanvasCurves, OutlinesAreWrittenOnceInCombiningModes) {
    const struct {
        const char* what;
        std::function<void(TCanvas&)> draw;
    } shapes[] = {
        {"rectangle 1 wide", [](TCanvas& c) { c.Rectangle(3, 2, 4, 12); }},
        {"rectangle 1 high", [](TCanvas& c) { c.Rectangle(2, 3, 12, 4); }},
        {"ellipse 3 wide", [](TCanvas& c) { c.Ellipse(2, 2, 5, 14); }},
        {"ellipse", [](TCanvas& c) { c.Ellipse(1, 1, 18, 12); }},
        {"round rect", [](TCanvas& c) { c.RoundRect(1, 1, 18, 14, 7, 9); }},
        {"pie with equal radials", [](TCanvas& c) { c.Pie(1, 1, 17, 17, 20, 9, 20, 9); }},
        {"arc", [](TCanvas& c) { c.Arc(1, 1, 17, 15, 0, 0, 17, 0); }},
        {"polygon folding back",
         [](TCanvas& c) {
             const TPoint p[] = {{2, 2}, {15, 2}, {8, 2}, {8, 12}};
             c.Polygon(p);
         }},
        {"polyline over itself",
         [](TCanvas& c) {
             const TPoint p[] = {{2, 5}, {15, 5}, {6, 5}, {6, 14}, {6, 1}};
             c.Polyline(p);
         }},
    };
    for (const auto& s : shapes) {
        TBitmap copy(20, 20), xored(20, 20);
        copy.Canvas().Brush().SetStyle(bsClear);
        s.draw(copy.Canvas());
        TCanvas& x = xored.Canvas();
        x.Brush().SetStyle(bsClear);
        x.Pen().SetMode(pmXor);
        x.Pen().SetColor(clWhite);
        s.draw(x);
        for (int py = 0; py < 20; ++py)
            for (int px = 0; px < 20; ++px)
                ASSERT_EQ(xored.Pixel(px, py), copy.Pixel(px, py))
                    << s.what << " at " << px << "," << py;
    }
}

TEST(CanvasCurves, Frame3DSecondColourOwnsThinRings) {
    const struct {
        TRect r;
        int width;
        const char* rows;
    } cases[] = {
        {{1, 0, 2, 4}, 1, ".o.\n.o.\n.o.\n.o.\n"},  // one pixel wide
        {{0, 1, 3, 2}, 1, "...\nooo\n...\n...\n"},  // one pixel high
        {{0, 0, 3, 3}, 2, "##o\n#oo\nooo\n...\n"},  // the inner ring is one pixel
        {{0, 0, 3, 4}, 5, "##o\n#oo\n#oo\nooo\n"},  // more rings than fit
    };
    for (const auto& c : cases) {
        for (TPenMode mode : {pmCopy, pmXor}) {
            TBitmap b(3, 4);
            b.Canvas().Pen().SetMode(mode);
            TRect r = c.r;
            // In xor white turns into the complement: black for white, cyan for red.
            const TColor first = mode == pmCopy ? clBlack : clWhite;
            const TColor second = mode == pmCopy ? clRed : TColor(0x00FFFF00);
            b.Canvas().Frame3D(r, first, second, c.width);
            std::string rows;
            for (int y = 0; y < 4; ++y) {
                for (int x = 0; x < 3; ++x) {
                    const TColor p = b.Pixel(x, y);
                    rows += p == clWhite                                 ? '.'
                            : p == clBlack                               ? '#'
                            : p == (mode == pmCopy ? clRed : 0x000000FF) ? 'o'
                                                                         : '?';
                }
                rows += '\n';
            }
            EXPECT_EQ(rows, c.rows) << "mode " << mode;
        }
    }
}

TEST(CanvasCurves, SmallAndDegenerateBoxes) {
    const struct {
        const char* what;
        std::function<void(TCanvas&)> draw;
        TRect ink;  // bounds of what is drawn; empty when nothing
        TColor centre;
    } cases[] = {
        {"ellipse 1 wide is the pen's box",
         [](TCanvas& c) { c.Ellipse(3, 2, 4, 9); },
         {3, 2, 4, 9},
         clBlack},
        {"ellipse 2 high is the pen's box",
         [](TCanvas& c) { c.Ellipse(2, 3, 9, 5); },
         {2, 3, 9, 5},
         clBlack},
        {"ellipse 2 wide without pen is the brush's box",
         [](TCanvas& c) {
             c.Pen().SetStyle(psClear);
             c.Ellipse(3, 2, 5, 9);
         },
         {3, 2, 5, 9},
         clRed},
        {"swapped corners", [](TCanvas& c) { c.Ellipse(9, 9, 1, 1); }, {1, 1, 9, 9}, clRed},
        {"empty ellipse", [](TCanvas& c) { c.Ellipse(4, 4, 4, 9); }, {}, clWhite},
        {"empty arc", [](TCanvas& c) { c.Arc(4, 4, 9, 4, 0, 0, 1, 1); }, {}, clWhite},
        {"empty pie", [](TCanvas& c) { c.Pie(4, 4, 4, 4, 0, 0, 1, 1); }, {}, clWhite},
        {"round rect with a 2-pixel corner is a rectangle",
         [](TCanvas& c) { c.RoundRect(1, 1, 9, 9, 2, 8); },
         {1, 1, 9, 9},
         clRed},
    };
    for (const auto& c : cases) {
        TBitmap b(12, 12);
        b.Canvas().Brush().SetColor(clRed);
        c.draw(b.Canvas());
        TRect ink{12, 12, 0, 0};
        for (int y = 0; y < 12; ++y)
            for (int x = 0; x < 12; ++x)
                if (b.Pixel(x, y) != clWhite)
                    ink = TRect{std::min(ink.Left, x), std::min(ink.Top, y),
                                std::max(ink.Right, x + 1), std::max(ink.Bottom, y + 1)};
        if (c.ink.Width() == 0) {
            EXPECT_GT(ink.Left, ink.Right) << c.what;
            continue;
        }
        EXPECT_EQ(ink, c.ink) << c.what;
        EXPECT_EQ(b.Pixel((c.ink.Left + c.ink.Right) / 2, (c.ink.Top + c.ink.Bottom) / 2), c.centre)
            << c.what;
    }
}

TEST(CanvasCurves, RoundRectWithTheWholeBoxAsCornerIsTheEllipse) {
    TBitmap a(30, 30), b(30, 30);
    a.Canvas().Brush().SetColor(clRed);
    b.Canvas().Brush().SetColor(clRed);
    a.Canvas().RoundRect(2, 3, 27, 21, 100, 100);
    b.Canvas().Ellipse(2, 3, 27, 21);
    EXPECT_TRUE(a.Image() == b.Image());
}

// A clip region keeps exactly the unclipped picture's pixels inside it.
TEST(CanvasCurves, ClippingCutsTheSamePicture) {
    const std::function<void(TCanvas&)> shapes[] = {
        [](TCanvas& c) { c.Ellipse(1, 2, 27, 25); },
        [](TCanvas& c) { c.RoundRect(1, 2, 27, 25, 11, 7); },
        [](TCanvas& c) { c.Pie(0, 0, 28, 28, 28, 0, 0, 20); },
        [](TCanvas& c) { c.Arc(0, 0, 28, 28, 0, 28, 28, 14); },
        [](TCanvas& c) {
            const TPoint p[] = {{1, 1}, {26, 8}, {3, 26}, {20, 20}};
            c.Polygon(p);
        },
    };
    const QRegion clip = QRegion(5, 0, 9, 28) + QRegion(0, 10, 28, 4);
    for (size_t i = 0; i < std::size(shapes); ++i) {
        TBitmap full(28, 28), clipped(28, 28);
        full.Canvas().Brush().SetColor(clRed);
        clipped.Canvas().Brush().SetColor(clRed);
        shapes[i](full.Canvas());
        clipped.Canvas().SetClipRegion(clip);
        shapes[i](clipped.Canvas());
        for (int y = 0; y < 28; ++y)
            for (int x = 0; x < 28; ++x)
                ASSERT_EQ(clipped.Pixel(x, y),
                          clip.contains(QPoint(x, y)) ? full.Pixel(x, y) : clWhite)
                    << "shape " << i << " at " << x << "," << y;
    }
}

// Coordinates far off the surface cost only what is visible and never overflow.
TEST(CanvasCurves, HugeCoordinatesDrawWithoutHarm) {
    TBitmap b(40, 40);
    TCanvas& c = b.Canvas();
    c.Brush().SetColor(clRed);
    const TPoint far[] = {{-2000000000, 20}, {2000000000, -2000000000}, {2000000000, 2000000000}};
    c.Polygon(far);
    EXPECT_EQ(b.Pixel(39, 20), clRed);
    c.Ellipse(-100000, -100000, 100000, 100000);  // beyond the exact walk: Qt's curve
    EXPECT_EQ(b.Pixel(20, 20), clRed);
    c.Arc(INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX, 0, 0, 5, 5);
    c.Pie(-5, -5, 70000, 70000, 0, 0, 5, 5);
    c.RoundRect(INT32_MIN, 0, INT32_MAX, 30, INT32_MAX, INT32_MIN);
    c.MoveTo(INT32_MIN, INT32_MIN);
    c.LineTo(INT32_MAX, INT32_MAX);
    TRect r{0, 0, 10, 10};
    c.Frame3D(r, clBlack, clRed, INT32_MAX);
    EXPECT_EQ(r.Left, INT32_MAX);
}

TEST(CanvasCurves, WidePenOutlinesStayRoundAndCentred) {
    TBitmap b(30, 30);
    b.Canvas().Pen().SetWidth(3);
    b.Canvas().Brush().SetStyle(bsClear);
    b.Canvas().Ellipse(5, 5, 25, 25);
    // Centred on the one-pixel outline: one pixel beyond the box on each side.
    EXPECT_EQ(b.Pixel(4, 15), clBlack);
    EXPECT_EQ(b.Pixel(25, 14), clBlack);
    EXPECT_EQ(b.Pixel(3, 15), clWhite);
    EXPECT_EQ(b.Pixel(15, 15), clWhite);
    EXPECT_EQ(b.Pixel(5, 5), clWhite);  // round, not square corners
}

}  // namespace
}  // namespace kx
