#include <gtest/gtest.h>

#include <functional>

#include "drawing/gradient.h"
#include "host/bitmap.h"
#include "host/recordingcanvas.h"

namespace kx {
namespace {

constexpr TColor kFrom = RGB(10, 200, 40);
constexpr TColor kTo = RGB(250, 20, 40);
constexpr TColor kGround = RGB(1, 2, 3);

// A 60 x 40 gradient drawn at (5, 7) on a ground colour, read back in gradient
// coordinates.
class Gradient {
  public:
    static constexpr int32_t W = 60, H = 40, X = 5, Y = 7;
    explicit Gradient(TGradientStyle style, int32_t w = W, int32_t h = H) : bmp_(w + 10, h + 14) {
        TCanvas& c = bmp_.Canvas();
        c.Pen().SetColor(kGround);
        c.Brush().SetColor(kGround);
        c.Rectangle(0, 0, w + 10, h + 14);
        KxGradFill(c, {X, Y, X + w, Y + h}, kFrom, kTo, style);
        w_ = w;
        h_ = h;
    }
    TColor At(int32_t x, int32_t y) const { return bmp_.Pixel(X + x, Y + y); }
    bool GroundOutside() const {
        for (int32_t y = 0; y < bmp_.Height(); ++y)
            for (int32_t x = 0; x < bmp_.Width(); ++x) {
                const bool inside = x >= X && x < X + w_ && y >= Y && y < Y + h_;
                if (!inside && bmp_.Pixel(x, y) != kGround) return false;
            }
        return true;
    }

  private:
    TBitmap bmp_;
    int32_t w_ = 0, h_ = 0;
};

// Between the two colours per component: R rises, G falls, B stays.
bool Between(TColor c) {
    return GetRValue(c) >= 10 && GetRValue(c) <= 250 && GetGValue(c) >= 20 && GetGValue(c) <= 200 &&
           GetBValue(c) == 40;
}

struct StyleCase {
    TGradientStyle style;
    const char* name;
    // A path of pixels from a `from` pixel to a `to` pixel.
    std::function<TPoint(int32_t i)> path;
    int32_t length;
};

std::vector<StyleCase> StyleCases() {
    constexpr int32_t W = Gradient::W, H = Gradient::H;
    const auto diagonalToCentre = [](int32_t i) {  // (0, 0) .. (29, 19)
        return TPoint{i, i * 19 / 29};
    };
    return {
        {gsHorizontal1, "Horizontal1",
         [](int32_t i) {
             return TPoint{30, i};
         },
         H},
        {gsHorizontal2, "Horizontal2",
         [](int32_t i) {
             return TPoint{7, i};
         },
         (H - 1) / 2 + 1},
        {gsHorizontal3, "Horizontal3",
         [](int32_t i) {
             return TPoint{3, i};
         },
         H},
        {gsVertical1, "Vertical1",
         [](int32_t i) {
             return TPoint{i, 5};
         },
         W},
        {gsVertical2, "Vertical2",
         [](int32_t i) {
             return TPoint{i, 33};
         },
         (W - 1) / 2 + 1},
        {gsVertical3, "Vertical3",
         [](int32_t i) {
             return TPoint{i, 0};
         },
         W},
        {gsElliptic1, "Elliptic1",
         [](int32_t i) {
             return TPoint{i, 19};
         },
         30},
        {gsElliptic2, "Elliptic2", diagonalToCentre, 30},
        {gsElliptic3, "Elliptic3", diagonalToCentre, 30},
        {gsRectangle, "Rectangle", diagonalToCentre, 30},
        {gsDiamond1, "Diamond1",
         [](int32_t i) {
             return TPoint{i, 19};
         },
         30},
        {gsDiamond2, "Diamond2", diagonalToCentre, 30},
        {gsTopLeft, "TopLeft",
         [](int32_t i) {
             return i < W ? TPoint{i, 0} : TPoint{W - 1, i - W + 1};
         },
         W + H - 1},
        {gsTopRight, "TopRight",
         [](int32_t i) {
             return i < H ? TPoint{W - 1, i} : TPoint{W - 1 - (i - H + 1), H - 1};
         },
         W + H - 1},
    };
}

TEST(Gradient, EveryStyleRunsFromFirstToSecondColour) {
    for (const StyleCase& c : StyleCases()) {
        SCOPED_TRACE(c.name);
        Gradient g(c.style);
        EXPECT_EQ(g.At(c.path(0).X, c.path(0).Y), kFrom);
        const TPoint end = c.path(c.length - 1);
        EXPECT_EQ(g.At(end.X, end.Y), kTo) << end.X << "," << end.Y;
        // Monotonic along the path, never leaving the span of the two colours.
        TColor prev = kFrom;
        for (int32_t i = 1; i < c.length; ++i) {
            const TPoint p = c.path(i);
            const TColor now = g.At(p.X, p.Y);
            ASSERT_TRUE(Between(now)) << p.X << "," << p.Y << " " << std::hex << now;
            ASSERT_GE(GetRValue(now), GetRValue(prev)) << p.X << "," << p.Y;
            ASSERT_LE(GetGValue(now), GetGValue(prev)) << p.X << "," << p.Y;
            prev = now;
        }
        // No hole: every pixel of the area lies between the colours, nothing spills.
        for (int32_t y = 0; y < Gradient::H; ++y)
            for (int32_t x = 0; x < Gradient::W; ++x)
                ASSERT_TRUE(Between(g.At(x, y))) << x << "," << y;
        EXPECT_TRUE(g.GroundOutside());
    }
}

TEST(Gradient, SymmetricStylesAreMirrored) {
    for (TGradientStyle s : {gsHorizontal2, gsVertical2, gsRectangle}) {
        Gradient g(s);
        for (int32_t y = 0; y < Gradient::H; ++y)
            for (int32_t x = 0; x < Gradient::W; ++x)
                ASSERT_EQ(g.At(x, y), g.At(Gradient::W - 1 - x, Gradient::H - 1 - y))
                    << s << " " << x << "," << y;
    }
    // The edges keep `from` in the edge-to-middle styles.
    Gradient h(gsHorizontal2);
    EXPECT_EQ(h.At(10, 0), kFrom);
    EXPECT_EQ(h.At(10, Gradient::H - 1), kFrom);
    EXPECT_EQ(h.At(10, 20), kTo);
    Gradient v(gsVertical2);
    EXPECT_EQ(v.At(Gradient::W - 1, 3), kFrom);
    EXPECT_EQ(v.At(30, 3), kTo);
}

TEST(Gradient, CircumscribingStylesShadeTheCorners) {
    // Elliptic1 and Diamond1 leave the corners in `from`; the circumscribing variants
    // put the corners on their outermost shape, so the next shape is near them.
    for (TGradientStyle s : {gsElliptic1, gsElliptic2, gsElliptic3, gsDiamond1, gsDiamond2}) {
        Gradient g(s);
        EXPECT_EQ(g.At(0, 0), kFrom) << s;
        EXPECT_EQ(g.At(29, 19), kTo) << s;
    }
    // Along the top edge the inscribed ellipse stays `from` over a longer stretch.
    Gradient inscribed(gsElliptic1), outside(gsElliptic2);
    EXPECT_EQ(inscribed.At(8, 0), kFrom);
    EXPECT_NE(outside.At(8, 0), kFrom);
}

TEST(Gradient, Vertical3Columns) {
    // 100 wide: the run starts at column 33 and covers 67 columns, 66 steps of 2.
    TBitmap bmp(100, 5);
    KxGradFill(bmp.Canvas(), {0, 0, 100, 5}, clBlack, RGB(132, 0, 0), gsVertical3);
    struct Col {
        int32_t x, r;
    } cols[] = {{0, 0}, {32, 0}, {33, 0}, {34, 2}, {66, 66}, {98, 130}, {99, 132}};
    for (const Col& c : cols) {
        EXPECT_EQ(bmp.Pixel(c.x, 0), RGB(c.r, 0, 0)) << c.x;
        EXPECT_EQ(bmp.Pixel(c.x, 4), RGB(c.r, 0, 0)) << c.x;
    }
    // 8 wide: start 2, Round(5.36) = 5 columns (2..6), the last column takes `to`.
    TBitmap narrow(8, 1);
    KxGradFill(narrow.Canvas(), {0, 0, 8, 1}, clBlack, RGB(8, 0, 0), gsVertical3);
    const int32_t want[] = {0, 0, 0, 2, 4, 6, 8, 8};
    for (int32_t x = 0; x < 8; ++x)
        EXPECT_EQ(narrow.Pixel(x, 0), RGB(want[x], 0, 0)) << x;
}

TEST(Gradient, EqualStepsRoundHalfToEven) {
    // 5 rows, 4 steps of 0.5 per row: 0, 0.5, 1, 1.5, 2 round to 0, 0, 1, 2, 2.
    TBitmap bmp(3, 5);
    KxGradFill(bmp.Canvas(), {0, 0, 3, 5}, RGB(100, 0, 0), RGB(102, 0, 0), gsHorizontal1);
    const int32_t want[] = {100, 100, 101, 102, 102};
    for (int32_t y = 0; y < 5; ++y)
        EXPECT_EQ(bmp.Pixel(1, y), RGB(want[y], 0, 0)) << y;
}

TEST(Gradient, EqualColoursAndSystemColours) {
    TRecordingCanvas rec;
    rec.Pen().SetColor(clRed);
    rec.Brush().SetStyle(bsClear);
    KxGradFill(rec, {2, 3, 12, 13}, clBtnFace, ColorToRGB(clBtnFace), gsDiamond2);
    // The target canvas only receives the finished bitmap.
    EXPECT_EQ(rec.Log(), QStringList{"StretchDraw(2,3,12,13)"});
    EXPECT_EQ(rec.Pen().Color(), clRed);
    EXPECT_EQ(rec.Brush().Style(), bsClear);

    TBitmap bmp(10, 10);
    KxGradFill(bmp.Canvas(), {0, 0, 10, 10}, clBtnShadow, clBtnShadow, gsElliptic1);
    for (int32_t y = 0; y < 10; ++y)
        for (int32_t x = 0; x < 10; ++x)
            ASSERT_EQ(bmp.Pixel(x, y), ColorToRGB(clBtnShadow));

    TBitmap sys(10, 10);
    KxGradFill(sys.Canvas(), {0, 0, 10, 10}, clBtnHighlight, clBtnShadow, gsVertical1);
    EXPECT_EQ(sys.Pixel(0, 5), ColorToRGB(clBtnHighlight));
    EXPECT_EQ(sys.Pixel(9, 5), ColorToRGB(clBtnShadow));
}

TEST(Gradient, DegenerateRectangles) {
    const TRect rects[] = {{0, 0, 0, 10},
                           {0, 0, 10, 0},
                           {10, 10, 0, 0},
                           {-5, 0, -10, 5},
                           {INT32_MIN, 0, INT32_MAX, 10}};
    for (const TRect& r : rects) {
        TRecordingCanvas rec;
        KxGradFill(rec, r, clBlack, clWhite, gsVertical1);
        EXPECT_TRUE(rec.Calls().empty()) << r.Left << "," << r.Right;
    }
    // Tiny areas in every style and an unknown style: filled, within the colours.
    for (int32_t s = 0; s <= 14; ++s) {
        for (const auto& size :
             {std::pair{1, 1}, std::pair{2, 1}, std::pair{1, 3}, std::pair{2, 2}}) {
            TBitmap bmp(size.first, size.second);
            KxGradFill(bmp.Canvas(), {0, 0, size.first, size.second}, kFrom, kTo,
                       TGradientStyle(s));
            if (s == 14) EXPECT_EQ(bmp.Pixel(size.first - 1, size.second - 1), kFrom);
            for (int32_t y = 0; y < size.second; ++y)
                for (int32_t x = 0; x < size.first; ++x)
                    EXPECT_TRUE(Between(bmp.Pixel(x, y))) << s << " " << x << "," << y;
        }
    }
}

TEST(Gradient, WideAreasKeepTheirShapes) {
    // Elliptic3 stays round: on a wide area the same colour lies at the same distance
    // from the centre horizontally and vertically.
    TBitmap bmp(121, 41);
    KxGradFill(bmp.Canvas(), {0, 0, 121, 41}, clBlack, clWhite, gsElliptic3);
    EXPECT_EQ(bmp.Pixel(60 + 15, 20), bmp.Pixel(60, 20 + 15));
    EXPECT_EQ(bmp.Pixel(60 - 15, 20), bmp.Pixel(60, 20 - 15));
    EXPECT_EQ(bmp.Pixel(60, 20), clWhite);
}

}  // namespace
}  // namespace kx
