#include <gtest/gtest.h>

#include <functional>

#include "kx/drawing/gradient.h"
#include "kx/host/bitmap.h"
#include "kx/host/recordingcanvas.h"
#include "qstring_print.h"

namespace kx {
namespace {

constexpr TColor kFrom = RGB(10, 200, 40);
constexpr TColor kTo = RGB(250, 20, 40);
constexpr TColor kGround = RGB(1, 2, 3);
constexpr int32_t W = 60, H = 40;

// A W x H gradient drawn at (5, 7) on a ground colour, read in gradient coordinates.
class Gradient {
  public:
    explicit Gradient(TGradientStyle style) : bmp_(W + 10, H + 14) {
        TCanvas& c = bmp_.Canvas();
        c.Pen().SetColor(kGround);
        c.Brush().SetColor(kGround);
        c.Rectangle(0, 0, W + 10, H + 14);
        KxGradFill(c, {5, 7, 5 + W, 7 + H}, kFrom, kTo, style);
    }
    TColor At(int32_t x, int32_t y) const { return bmp_.Pixel(5 + x, 7 + y); }
    bool GroundOutside() const {
        for (int32_t y = 0; y < bmp_.Height(); ++y)
            for (int32_t x = 0; x < bmp_.Width(); ++x)
                if ((x < 5 || x >= 5 + W || y < 7 || y >= 7 + H) && bmp_.Pixel(x, y) != kGround)
                    return false;
        return true;
    }

  private:
    TBitmap bmp_;
};

// Between the two colours: R rises from 10 to 250, G falls from 200 to 20, B stays.
bool Between(TColor c) {
    return GetRValue(c) >= 10 && GetRValue(c) <= 250 && GetGValue(c) >= 20 && GetGValue(c) <= 200 &&
           GetBValue(c) == 40;
}

TEST(Gradient, EveryStyleRunsFromFirstToSecondColour) {
    const auto toCentre = [](int32_t i) { return TPoint{i, i * 19 / 29}; };  // (0,0)..(29,19)
    const auto row = [](int32_t y) { return [y](int32_t i) { return TPoint{i, y}; }; };
    const auto col = [](int32_t x) { return [x](int32_t i) { return TPoint{x, i}; }; };
    struct Case {
        TGradientStyle style;
        std::function<TPoint(int32_t)> path;  // from a `from` pixel to a `to` pixel
        int32_t length;
        bool startsAtFrom;  // the circumscribing styles start outside the area
    } cases[] = {
        {gsHorizontal1, col(30), H, true},
        {gsHorizontal2, col(7), H / 2, true},  // rows 19 and 20 are the middle
        {gsHorizontal3, col(3), H, true},
        {gsVertical1, row(5), W, true},
        {gsVertical2, row(33), W / 2, true},
        {gsVertical3, row(0), W, true},
        {gsElliptic1, row(19), 30, true},
        {gsElliptic2, toCentre, 30, false},
        {gsElliptic3, toCentre, 30, false},
        {gsRectangle, toCentre, 30, true},
        {gsDiamond1, row(19), 30, true},
        {gsDiamond2, toCentre, 30, false},
        {gsTopLeft,
         [](int32_t i) {
             return i < W ? TPoint{i, 0} : TPoint{W - 1, i - W + 1};
         },
         W + H - 1, true},
        {gsTopRight,
         [](int32_t i) {
             return i < H ? TPoint{W - 1, i} : TPoint{W + H - 2 - i, H - 1};
         },
         W + H - 1, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.style);
        Gradient g(c.style);
        if (c.startsAtFrom) {
            EXPECT_EQ(g.At(c.path(0).X, c.path(0).Y), kFrom);
        }
        const TPoint end = c.path(c.length - 1);
        EXPECT_EQ(g.At(end.X, end.Y), kTo) << end.X << "," << end.Y;
        TColor prev = g.At(c.path(0).X, c.path(0).Y);
        for (int32_t i = 1; i < c.length; ++i) {
            const TPoint p = c.path(i);
            const TColor now = g.At(p.X, p.Y);
            ASSERT_GE(GetRValue(now), GetRValue(prev)) << p.X << "," << p.Y;
            ASSERT_LE(GetGValue(now), GetGValue(prev)) << p.X << "," << p.Y;
            prev = now;
        }
        // No holes and no spill.
        for (int32_t y = 0; y < H; ++y)
            for (int32_t x = 0; x < W; ++x)
                ASSERT_TRUE(Between(g.At(x, y))) << x << "," << y;
        EXPECT_TRUE(g.GroundOutside());
    }
}

TEST(Gradient, EdgeToMiddleAndCircumscribingShapes) {
    for (TGradientStyle s : {gsHorizontal2, gsVertical2, gsRectangle}) {
        Gradient g(s);
        for (int32_t y = 0; y < H; ++y)
            for (int32_t x = 0; x < W; ++x)
                ASSERT_EQ(g.At(x, y), g.At(W - 1 - x, H - 1 - y)) << s << " " << x << "," << y;
    }
    // The inscribed shapes leave the corners in `from`; the circumscribing ones pass
    // through the corners, so a pixel near one is already shaded.
    for (TGradientStyle s : {gsElliptic1, gsDiamond1, gsElliptic2, gsElliptic3, gsDiamond2}) {
        Gradient g(s);
        const bool inscribed = s == gsElliptic1 || s == gsDiamond1;
        EXPECT_EQ(g.At(3, 2) == kFrom, inscribed) << s;
        EXPECT_EQ(g.At(W - 4, H - 3) == kFrom, inscribed) << s;
        EXPECT_EQ(g.At(30, 20), kTo) << s;
    }
}

TEST(Gradient, EqualStepsPerColumn) {
    // Vertical3, 100 wide: `from` up to column 33, then 67 columns in 66 steps of 2.
    TBitmap bmp(100, 3);
    KxGradFill(bmp.Canvas(), {0, 0, 100, 3}, clBlack, RGB(132, 0, 0), gsVertical3);
    for (auto [x, r] : {std::pair{0, 0}, {33, 0}, {34, 2}, {66, 66}, {98, 130}, {99, 132}})
        EXPECT_EQ(bmp.Pixel(x, 2), RGB(r, 0, 0)) << x;
    // 8 wide: the run is columns 2 .. 6; the column after it takes `to`.
    TBitmap narrow(8, 1);
    KxGradFill(narrow.Canvas(), {0, 0, 8, 1}, clBlack, RGB(8, 0, 0), gsVertical3);
    // Horizontal1 over 5 rows: steps of 0.5 round half to even.
    TBitmap rows(1, 5);
    KxGradFill(rows.Canvas(), {0, 0, 1, 5}, RGB(100, 0, 0), RGB(102, 0, 0), gsHorizontal1);
    const int32_t narrowWant[] = {0, 0, 0, 2, 4, 6, 8, 8};
    const int32_t rowsWant[] = {100, 100, 101, 102, 102};
    for (int32_t i = 0; i < 8; ++i)
        EXPECT_EQ(GetRValue(narrow.Pixel(i, 0)), narrowWant[i]) << i;
    for (int32_t i = 0; i < 5; ++i)
        EXPECT_EQ(GetRValue(rows.Pixel(0, i)), rowsWant[i]) << i;
}

TEST(Gradient, EqualColoursDegenerateAreasAndTheTargetCanvas) {
    TRecordingCanvas rec;
    rec.Pen().SetColor(clRed);
    rec.Brush().SetStyle(bsClear);
    KxGradFill(rec, {2, 3, 12, 13}, clBtnFace, clBlue, gsDiamond2);
    EXPECT_EQ(rec.Log(), QStringList{"StretchDraw(2,3,12,13)"});  // only the finished bitmap
    EXPECT_EQ(rec.Pen().Color(), clRed);
    EXPECT_EQ(rec.Brush().Style(), bsClear);
    for (TRect r : {TRect{0, 0, 0, 10}, TRect{10, 10, 0, 0}, TRect{INT32_MIN, 0, INT32_MAX, 9}})
        KxGradFill(rec, r, clBlack, clWhite, gsVertical1);
    EXPECT_EQ(rec.Calls().size(), 1u);

    // A system colour equal to its RGB value: one plain fill.
    TBitmap same(10, 10);
    KxGradFill(same.Canvas(), {0, 0, 10, 10}, clBtnShadow, ColorToRGB(clBtnShadow), gsElliptic1);
    for (int32_t y = 0; y < 10; ++y)
        for (int32_t x = 0; x < 10; ++x)
            ASSERT_EQ(same.Pixel(x, y), ColorToRGB(clBtnShadow));

    // Tiny areas in every style (and one unknown style, plain `from`).
    for (int32_t s = 0; s <= 14; ++s)
        for (auto [w, h] : {std::pair{1, 1}, {2, 1}, {1, 3}, {2, 2}}) {
            TBitmap bmp(w, h);
            KxGradFill(bmp.Canvas(), {0, 0, w, h}, kFrom, kTo, TGradientStyle(s));
            for (int32_t y = 0; y < h; ++y)
                for (int32_t x = 0; x < w; ++x) {
                    EXPECT_TRUE(Between(bmp.Pixel(x, y))) << s << " " << x << "," << y;
                    if (s == 14) {
                        EXPECT_EQ(bmp.Pixel(x, y), kFrom);
                    }
                }
        }
}

}  // namespace
}  // namespace kx
