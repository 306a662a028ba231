// Thin lines land on the same pixels whether written directly or through the painter
// (clipped or combined), for every octant.
#include <gtest/gtest.h>

#include "kx/host/bitmap.h"

namespace kx {
namespace {

std::vector<TPoint> linePixels(TPoint from, TPoint to, bool combined) {
    TBitmap b(41, 41);
    TCanvas& c = b.Canvas();
    if (combined) {
        c.Pen().SetMode(pmXor);
        c.Pen().SetColor(clWhite);  // white xor white = black
    } else {
        c.Pen().SetColor(clBlack);
    }
    c.MoveTo(from.X, from.Y);
    c.LineTo(to.X, to.Y);
    std::vector<TPoint> out;
    for (int y = 0; y < b.Height(); ++y)
        for (int x = 0; x < b.Width(); ++x)
            if (b.Pixel(x, y) == clBlack) out.push_back(TPoint{x, y});
    return out;
}

TEST(CanvasLines, DirectAndCombinedPathsAgreeInEveryOctant) {
    const TPoint centre{20, 20};
    const TPoint ends[] = {{37, 25}, {25, 37}, {15, 37}, {3, 25},  {3, 15},
                           {15, 3},  {25, 3},  {37, 15}, {36, 36}, {4, 36}};
    for (const TPoint& e : ends) {
        const auto direct = linePixels(centre, e, false);
        EXPECT_EQ(direct, linePixels(centre, e, true)) << e.X << "," << e.Y;
        // One pixel per step along the major axis, the end point left out.
        const size_t steps = size_t(std::max(std::abs(e.X - centre.X), std::abs(e.Y - centre.Y)));
        EXPECT_EQ(direct.size(), steps) << e.X << "," << e.Y;
    }
}

TEST(CanvasLines, ClippedLineStopsAtTheRegion) {
    TBitmap b(20, 5);
    b.Canvas().SetClipRegion(TCanvas::RectRegion(TRect{5, 0, 10, 5}));
    b.Canvas().MoveTo(0, 2);
    b.Canvas().LineTo(20, 2);
    EXPECT_EQ(b.Pixel(4, 2), clWhite);
    EXPECT_EQ(b.Pixel(5, 2), clBlack);
    EXPECT_EQ(b.Pixel(9, 2), clBlack);
    EXPECT_EQ(b.Pixel(10, 2), clWhite);
}

}  // namespace
}  // namespace kx
