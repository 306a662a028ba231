// The kept spot draws exactly what the sunken circle routine draws, whatever lies below.
#include <gtest/gtest.h>

#include "kx/drawing/shapes.h"
#include "kx/drawing/spot.h"
#include "kx/host/bitmap.h"

namespace kx {
namespace {

TEST(Spot, SameAsTheCircleRoutineAndMadeAgainOnChange) {
    TKxSpot spot;
    const struct {
        int32_t radius;
        TColor color;
        TPoint at;
    } cases[] = {{4, clGreen, {20, 20}}, {4, clGreen, {3, 37}},  // kept, near an edge
                 {4, clRed, {20, 20}},   {9, clRed, {15, 16}},   // made again
                 {2, clLime, {0, 0}},    {0, clBlue, {30, 5}}};
    for (const auto& t : cases) {
        TBitmap expected(40, 40), drawn(40, 40);
        for (TBitmap* b : {&expected, &drawn}) {
            b->Canvas().Brush().SetColor(clNavy);
            b->Canvas().FillRect(TRect{0, 0, 40, 40});
            b->Canvas().Brush().SetColor(clYellow);
            b->Canvas().FillRect(TRect{0, 0, 40, 20});  // two colours below the spot
        }
        KxCircleAtPoint(expected.Canvas(), t.at, t.radius, t.color, t.color);
        spot.Draw(drawn.Canvas(), t.at, t.radius, t.color);
        EXPECT_EQ(drawn.Image(), expected.Image()) << t.radius << " " << t.at.X << "," << t.at.Y;
    }
}

}  // namespace
}  // namespace kx
