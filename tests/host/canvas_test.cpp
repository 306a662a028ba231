// Pixel tests of the classic raster rules.
#include <gtest/gtest.h>

#include "common/pixels.h"

#include "kx/host/bitmap.h"

namespace kx {
namespace {

// Renders into a white bitmap and returns the picture as rows of '.' (white),
// '#' (black) and 'o' (any other colour).
class Picture {
  public:
    Picture(int w, int h) : bmp_(w, h) {}
    TCanvas& C() { return bmp_.Canvas(); }
    TBitmap& B() { return bmp_; }
    std::string Rows() const {
        std::string s;
        for (int y = 0; y < bmp_.Height(); ++y) {
            for (int x = 0; x < bmp_.Width(); ++x) {
                TColor c = bmp_.Pixel(x, y);
                s += c == clWhite ? '.' : c == clBlack ? '#' : 'o';
            }
            s += '\n';
        }
        return s;
    }
    // Bounding box of all non-white pixels, as L, T, R, B (exclusive).
    TRect Bounds() const { return test::InkBounds(bmp_); }

  private:
    TBitmap bmp_;
};

TEST(Canvas, RectanglesCoverLeftToRightMinusOne) {
    const struct {
        const char* what;
        TPenStyle pen;
        TBrushStyle brush;
        bool fillRect;
        const char* rows;
    } cases[] = {
        {"outline and fill", psSolid, bsSolid, false,
         "........\n"
         ".#####..\n"
         ".#ooo#..\n"
         ".#ooo#..\n"
         ".#####..\n"
         "........\n"},
        // Without a pen the fill stops one pixel short of the outline's far edges.
        {"clear pen", psClear, bsSolid, false,
         "........\n"
         ".oooo...\n"
         ".oooo...\n"
         ".oooo...\n"
         "........\n"
         "........\n"},
        {"clear brush", psSolid, bsClear, false,
         "........\n"
         ".#####..\n"
         ".#...#..\n"
         ".#...#..\n"
         ".#####..\n"
         "........\n"},
        {"FillRect", psSolid, bsSolid, true,
         "........\n"
         ".ooooo..\n"
         ".ooooo..\n"
         ".ooooo..\n"
         ".ooooo..\n"
         "........\n"},
    };
    for (const auto& c : cases) {
        Picture p(8, 6);
        p.C().Pen().SetStyle(c.pen);
        p.C().Brush().SetColor(clRed);
        p.C().Brush().SetStyle(c.brush);
        if (c.fillRect) {
            p.C().FillRect(TRect{1, 1, 6, 5});
            p.C().FillRect(TRect{6, 5, 0, 0});  // inverted: nothing
        } else {
            p.C().Rectangle(1, 1, 6, 5);
        }
        EXPECT_EQ(p.Rows(), c.rows) << c.what;
    }
}

// The end point of a line is never painted.
TEST(Canvas, LineToLeavesTheEndPoint) {
    const struct {
        TPoint from, to;
        const char* rows;
    } cases[] = {
        {{0, 0}, {5, 0}, "#####.\n......\n......\n......\n"},
        {{5, 1}, {0, 1}, "......\n.#####\n......\n......\n"},
        {{1, 0}, {1, 3}, ".#....\n.#....\n.#....\n......\n"},
        {{0, 0}, {3, 3}, "#.....\n.#....\n..#...\n......\n"},
        {{0, 0}, {4, 2}, "##....\n..##..\n......\n......\n"},
        {{2, 2}, {2, 2}, "......\n......\n......\n......\n"},
    };
    for (const auto& c : cases) {
        Picture p(6, 4);
        p.C().MoveTo(c.from.X, c.from.Y);
        p.C().LineTo(c.to.X, c.to.Y);
        EXPECT_EQ(p.Rows(), c.rows) << c.to.X << "," << c.to.Y;
        EXPECT_EQ(p.C().PenPos(), c.to);
    }
    Picture p(6, 4);
    const TPoint pts[] = {{0, 0}, {4, 0}, {4, 3}};
    p.C().Polyline(pts);
    EXPECT_EQ(p.Rows(), "#####.\n....#.\n....#.\n......\n");
}

TEST(Canvas, WidePenLineIsCentredWithRoundEnds) {
    Picture p(20, 11);
    p.C().Pen().SetWidth(3);
    p.C().MoveTo(5, 5);
    p.C().LineTo(14, 5);
    TRect b = p.Bounds();
    EXPECT_EQ(b.Top, 4);
    EXPECT_EQ(b.Bottom, 7);
    EXPECT_LE(b.Left, 4);    // the round end reaches past the start point
    EXPECT_GE(b.Right, 16);  // and past the end point
}

TEST(Canvas, EllipseUsesBoundingBoxMinusOne) {
    Picture p(30, 20);
    p.C().Brush().SetColor(clRed);
    p.C().Ellipse(2, 3, 22, 15);
    EXPECT_EQ(p.Bounds(), (TRect{2, 3, 22, 15}));
    EXPECT_EQ(p.B().Pixel(12, 9), clRed);
    EXPECT_EQ(p.B().Pixel(2, 9), clBlack);
    EXPECT_EQ(p.B().Pixel(21, 9), clBlack);
    EXPECT_EQ(p.B().Pixel(12, 3), clBlack);
    EXPECT_EQ(p.B().Pixel(12, 14), clBlack);
}

TEST(Canvas, ArcRunsCounterClockwiseFromStartToEnd) {
    // Start at 3 o'clock, end at 12 o'clock: the upper-right quarter only, without the
    // points from the end radial on (the top pixel and its neighbour stay white).
    Picture p(21, 21);
    p.C().Arc(0, 0, 21, 21, 30, 10, 10, -10);
    TRect b = p.Bounds();
    EXPECT_EQ(b.Left, 12);
    EXPECT_EQ(b.Top, 0);
    EXPECT_EQ(b.Right, 21);
    EXPECT_LE(b.Bottom, 12);
    // Swapped points give the other three quarters.
    Picture q(21, 21);
    q.C().Arc(0, 0, 21, 21, 10, -10, 30, 10);
    EXPECT_EQ(q.Bounds(), (TRect{0, 0, 21, 21}));
    EXPECT_EQ(q.B().Pixel(18, 3), clWhite);
}

TEST(Canvas, PieFillsSectorAndOutlinesRadii) {
    Picture p(21, 21);
    p.C().Pen().SetStyle(psClear);
    p.C().Brush().SetColor(clBlack);
    // From 12 o'clock counter-clockwise to 9 o'clock: the upper-left quarter.
    p.C().Pie(0, 0, 21, 21, 10, -10, -10, 10);
    EXPECT_EQ(p.B().Pixel(5, 5), clBlack);
    EXPECT_EQ(p.B().Pixel(15, 5), clWhite);
    EXPECT_EQ(p.B().Pixel(5, 15), clWhite);
    EXPECT_EQ(p.B().Pixel(15, 15), clWhite);
}

TEST(Canvas, PolygonFillsAlternateAndOutlinesEveryVertex) {
    Picture p(8, 8);
    p.C().Brush().SetColor(clRed);
    const TPoint tri[] = {{1, 1}, {6, 1}, {6, 6}};
    p.C().Polygon(tri);
    EXPECT_EQ(p.B().Pixel(1, 1), clBlack);
    EXPECT_EQ(p.B().Pixel(6, 1), clBlack);
    EXPECT_EQ(p.B().Pixel(6, 6), clBlack);
    EXPECT_EQ(p.B().Pixel(5, 3), clRed);
    EXPECT_EQ(p.Bounds(), (TRect{1, 1, 7, 7}));
}

TEST(Canvas, PolygonAlternateRuleLeavesOverlapHollow) {
    // A pentagram drawn in one stroke: the inner pentagon is covered twice and stays empty.
    Picture p(41, 41);
    p.C().Pen().SetStyle(psClear);
    p.C().Brush().SetColor(clBlack);
    const TPoint star[] = {{20, 0}, {32, 38}, {1, 14}, {39, 14}, {8, 38}};
    p.C().Polygon(star);
    EXPECT_EQ(p.B().Pixel(20, 22), clWhite);
    EXPECT_EQ(p.B().Pixel(20, 6), clBlack);
}

// First colour on the left and top, second on the right and bottom and the two
// off-diagonal corners, ring by ring; the rectangle shrinks by the width.
TEST(Canvas, Frame3DColoursRingsAndShrinks) {
    const struct {
        int size, width;
        const char* rows;
    } cases[] = {
        {5, 1,
         "####o\n"
         "#...o\n"
         "#...o\n"
         "#...o\n"
         "ooooo\n"},
        {6, 2,
         "#####o\n"
         "####oo\n"
         "##..oo\n"
         "##..oo\n"
         "#ooooo\n"
         "oooooo\n"},
    };
    for (const auto& c : cases) {
        Picture p(c.size, c.size);
        TRect r{0, 0, c.size, c.size};
        p.C().Frame3D(r, clBlack, clRed, c.width);
        EXPECT_EQ(p.Rows(), c.rows);
        EXPECT_EQ(r, (TRect{c.width, c.width, c.size - c.width, c.size - c.width}));
        EXPECT_EQ(p.C().Pen().Color(), clRed);
        EXPECT_EQ(p.C().Pen().Width(), 1);
    }
}

TEST(Canvas, PenModesCombinePenWithDestination) {
    const TColor dst = 0x123456, pen = 0x00FF0F;
    const struct {
        TPenMode mode;
        TColor expected;
    } cases[] = {{pmCopy, pen},       {pmXor, dst ^ pen},   {pmNotMask, ~(dst & pen) & 0xFFFFFF},
                 {pmMask, dst & pen}, {pmMerge, dst | pen}, {pmNot, ~dst & 0xFFFFFF},
                 {pmNop, dst},        {pmBlack, 0x000000},  {pmWhite, 0xFFFFFF}};
    for (const auto& c : cases) {
        TBitmap b(4, 4);
        b.Canvas().Brush().SetColor(dst);
        b.Canvas().FillRect(TRect{0, 0, 4, 4});
        b.Canvas().Pen().SetColor(pen);
        b.Canvas().Pen().SetMode(c.mode);
        b.Canvas().MoveTo(0, 1);
        b.Canvas().LineTo(4, 1);
        EXPECT_EQ(b.Pixel(2, 1), c.expected) << c.mode;
        EXPECT_EQ(b.Pixel(2, 2), dst);
        EXPECT_EQ(qAlpha(b.Image().pixel(2, 1)), 255);
    }
}

TEST(Canvas, XorTwiceRestores) {
    TBitmap b(10, 10);
    b.Canvas().Brush().SetColor(0x336699);
    b.Canvas().FillRect(TRect{0, 0, 10, 10});
    b.Canvas().Pen().SetMode(pmXor);
    b.Canvas().Pen().SetColor(clWhite);
    b.Canvas().Brush().SetColor(clWhite);
    b.Canvas().Rectangle(2, 2, 8, 8);
    EXPECT_EQ(b.Pixel(4, 4), 0x336699 ^ 0xFFFFFF);
    b.Canvas().Rectangle(2, 2, 8, 8);
    for (int y = 0; y < 10; ++y)
        for (int x = 0; x < 10; ++x)
            ASSERT_EQ(b.Pixel(x, y), 0x336699) << x << "," << y;
}

TEST(Canvas, CopyRectSrcInvertXorsSource) {
    TBitmap src(4, 4), dst(4, 4);
    src.Canvas().Brush().SetColor(0x0000FF);
    src.Canvas().FillRect(TRect{0, 0, 4, 4});
    dst.Canvas().Brush().SetColor(0x00FF00);
    dst.Canvas().FillRect(TRect{0, 0, 4, 4});
    dst.Canvas().SetCopyMode(cmSrcInvert);
    dst.Canvas().CopyRect(TRect{0, 0, 2, 2}, src.Canvas(), TRect{0, 0, 2, 2});
    EXPECT_EQ(dst.Pixel(1, 1), 0x00FFFF);
    EXPECT_EQ(dst.Pixel(3, 3), 0x00FF00);
    dst.Canvas().SetCopyMode(cmSrcCopy);
    dst.Canvas().CopyRect(TRect{2, 2, 4, 4}, src.Canvas(), TRect{0, 0, 2, 2});
    EXPECT_EQ(dst.Pixel(3, 3), 0x0000FF);
}

TEST(Canvas, CopyRectClipsToBothImages) {
    TBitmap src(4, 4), dst(4, 4);
    src.Canvas().Brush().SetColor(clBlack);
    src.Canvas().FillRect(TRect{0, 0, 4, 4});
    dst.Canvas().CopyRect(TRect{2, 2, 8, 8}, src.Canvas(), TRect{-2, -2, 4, 4});
    EXPECT_EQ(dst.Pixel(3, 3), clWhite);  // came from outside the source
    dst.Canvas().CopyRect(TRect{-1, -1, 3, 3}, src.Canvas(), TRect{0, 0, 4, 4});
    EXPECT_EQ(dst.Pixel(0, 0), clBlack);
    EXPECT_EQ(dst.Pixel(3, 3), clWhite);
}

TEST(Canvas, DrawCopiesOpaqueAndBlendsTransparent) {
    TBitmap src(2, 2), dst(4, 4);
    src.ClearTransparent();
    dst.Canvas().Draw(1, 1, src);
    EXPECT_EQ(qAlpha(dst.Image().pixel(1, 1)), 0);  // opaque copy takes the pixels as they are
    TBitmap dst2(4, 4);
    src.SetTransparent(true);
    dst2.Canvas().Draw(1, 1, src);
    EXPECT_EQ(dst2.Pixel(1, 1), clWhite);
}

TEST(Canvas, StretchDrawScalesWithoutSmoothing) {
    TBitmap src(2, 1), dst(4, 2);
    src.Canvas().SetPixel(0, 0, clBlack);
    src.Canvas().SetPixel(1, 0, clRed);
    dst.Canvas().StretchDraw(TRect{0, 0, 4, 2}, src);
    EXPECT_EQ(dst.Pixel(0, 0), clBlack);
    EXPECT_EQ(dst.Pixel(1, 1), clBlack);
    EXPECT_EQ(dst.Pixel(2, 0), clRed);
    EXPECT_EQ(dst.Pixel(3, 1), clRed);
}

TEST(Canvas, ClipRegionDifferenceMakesRing) {
    Picture p(21, 21);
    QRegion outer = TCanvas::EllipticRegion(TRect{0, 0, 21, 21});
    QRegion inner = TCanvas::EllipticRegion(TRect{5, 5, 16, 16});
    p.C().SetClipRegion(outer.subtracted(inner));
    EXPECT_EQ(p.C().ClipRect().Right, 21);
    EXPECT_EQ(p.C().ClipRect().Left, 0);
    p.C().Brush().SetColor(clBlack);
    p.C().FillRect(TRect{0, 0, 21, 21});
    EXPECT_EQ(p.B().Pixel(10, 10), clWhite);  // hole
    EXPECT_EQ(p.B().Pixel(0, 0), clWhite);    // outside the ellipse
    EXPECT_EQ(p.B().Pixel(10, 2), clBlack);   // ring
    p.C().ClearClipRegion();
    p.C().FillRect(TRect{0, 0, 21, 21});
    EXPECT_EQ(p.B().Pixel(10, 10), clBlack);
    EXPECT_EQ(p.C().ClipRect(), (TRect{0, 0, 21, 21}));
}

// On a 100 x 100 surface (or clip rectangle), which ring insets can be seen.
TEST(Canvas, RingsOnSurfaceAreThoseThatCanTouchIt) {
    constexpr int32_t G = 1000000000;
    const struct {
        TRect r;
        int32_t count, reach;
        TRect clip;  // empty: none
        std::pair<int32_t, int32_t> want;
    } cases[] = {
        {{0, 0, 100, 100}, 10, 0, {}, {0, 10}},
        {{0, 0, 100, 100}, 0, 0, {}, {0, 0}},
        {{0, 0, 100, 100}, -5, 0, {}, {0, 0}},
        {{-G, -G, G, G}, INT32_MAX, 0, {}, {G - 100, G}},
        {{-G, 0, 100, 100}, 1000, 0, {}, {0, 100}},
        {{200, 0, 300, 100}, 50, 0, {}, {0, 0}},  // off the surface
        {{-1000, -1000, 1100, 1100}, 2000, 0, {}, {1000, 1100}},
        {{-1000, -1000, 1100, 1100}, 2000, 50, {}, {950, 1100}},
        {{-1000, -1000, 1100, 1100}, 1050, 0, {}, {1000, 1050}},
        {{0, 0, 100, 100}, 50, 0, {40, 40, 60, 60}, {40, 50}},
        {{INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX}, INT32_MAX, INT32_MAX, {}, {0, INT32_MAX}},
    };
    for (const auto& c : cases) {
        TBitmap bmp(100, 100);
        if (c.clip.Right > c.clip.Left) bmp.Canvas().SetClipRegion(TCanvas::RectRegion(c.clip));
        EXPECT_EQ(bmp.Canvas().RingsOnSurface(c.r, c.count, c.reach), c.want)
            << c.r.Left << "," << c.r.Top << "," << c.r.Right << "," << c.r.Bottom << " n "
            << c.count << " reach " << c.reach;
    }
    // Without a surface nothing can be ruled out.
    const TCanvas bare;
    EXPECT_EQ(bare.RingsOnSurface(TRect{-G, -G, G, G}, 7), std::make_pair(0, 7));
}

// A frame far larger than the surface paints exactly what a modest one with the same
// visible edges paints, and still shrinks its rectangle by the full width.
TEST(Canvas, Frame3DFarBeyondTheSurfaceDrawsWhatAModestOneDraws) {
    constexpr int32_t G = 1000000000;
    const struct {
        TRect huge;
        int32_t hugeWidth;
        TRect modest;
        int32_t modestWidth;
    } cases[] = {
        {{5, 5, G, G}, INT32_MAX, {5, 5, 100, 100}, 100},
        {{-G, -G, 15, 15}, INT32_MAX, {-100, -100, 15, 15}, 200},
        {{-2 * G, 3, 2 * G, 17}, G, {-100, 3, 100, 17}, 100},
        {{-G, -G, G, G}, INT32_MAX, {-100, -100, 100, 100}, 200},
    };
    for (const auto& c : cases) {
        Picture huge(20, 20), modest(20, 20);
        TRect h = c.huge, m = c.modest;
        huge.C().Frame3D(h, clRed, clBlue, c.hugeWidth);
        modest.C().Frame3D(m, clRed, clBlue, c.modestWidth);
        EXPECT_EQ(test::ColourRows(huge.B()), test::ColourRows(modest.B()))
            << c.huge.Left << "," << c.huge.Top;
        EXPECT_NE(huge.Bounds(), TRect{}) << c.huge.Left << "," << c.huge.Top;
        EXPECT_EQ(int64_t(h.Left),
                  std::min<int64_t>(int64_t(c.huge.Left) + c.hugeWidth, INT32_MAX));
    }
}

// Ellipses far larger than any surface still clip like ellipses where a surface can be.
TEST(Canvas, HugeEllipticRegionsKeepTheirEdgeNearTheOrigin) {
    const struct {
        TRect box;
        TPoint inside, outside;
    } cases[] = {
        // Left edge through (0, 0), radius 10^6: at y = 5000 the edge is at x = 12.5.
        {{0, -1000000, 2000000, 1000000}, {30, 5000}, {5, 5000}},
        {{0, -1000000, 2000000, 1000000}, {10, 0}, {-10, 0}},
        // Top edge through (0, 0), radius 10^8.
        {{-100000000, 0, 100000000, 200000000}, {0, 10}, {0, -10}},
        // The whole 32-bit plane: everything near the origin is inside.
        {{INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX}, {0, 0}, {INT32_MIN, INT32_MIN}},
    };
    for (const auto& c : cases) {
        const QRegion r = TCanvas::EllipticRegion(c.box);
        EXPECT_TRUE(r.contains(QPoint(c.inside.X, c.inside.Y))) << c.box.Left << "," << c.box.Top;
        EXPECT_FALSE(r.contains(QPoint(c.outside.X, c.outside.Y)))
            << c.box.Left << "," << c.box.Top;
    }
    // Up to the size Qt builds itself the region is Qt's ellipse, pixel for pixel.
    EXPECT_EQ(TCanvas::EllipticRegion(TRect{32000, -32768, 32768, -32000}),
              QRegion(QRect(32000, -32768, 768, 768), QRegion::Ellipse));
}

TEST(Canvas, TextOutAnchorsTopLeftAndPaintsCellWithSolidBrush) {
    Picture p(80, 30);
    p.C().Font().SetName("Arial");
    p.C().Font().SetSize(10);
    p.C().Font().SetColor(clBlack);
    p.C().Brush().SetColor(clRed);
    p.C().TextOut(5, 4, "Hg");
    const int w = p.C().TextWidth("Hg"), h = p.C().TextHeight("Hg");
    EXPECT_GT(w, 8);
    EXPECT_GT(h, 10);
    EXPECT_EQ(p.Bounds(), (TRect{5, 4, 5 + w, 4 + h}));
    Picture q(80, 30);
    q.C().Font().SetName("Arial");
    q.C().Font().SetSize(10);
    q.C().Brush().SetStyle(bsClear);
    q.C().TextOut(5, 4, "Hg");
    TRect b = q.Bounds();
    EXPECT_GE(b.Left, 5);
    EXPECT_GE(b.Top, 4);
    EXPECT_LE(b.Bottom, 4 + h);
}

TEST(Canvas, RotatedTextTurnsAboutReferencePoint) {
    Picture p(60, 60);
    p.C().Font().SetName("Arial");
    p.C().Font().SetSize(12);
    p.C().Brush().SetStyle(bsClear);
    p.C().Font().SetOrientation(-900);  // clockwise by 90 degrees: runs downwards
    p.C().TextOut(30, 5, "HHH");
    TRect b = p.Bounds();
    EXPECT_LE(b.Right, 31);
    EXPECT_GT(b.Height(), b.Width());
    EXPECT_GE(b.Top, 4);
}

TEST(Canvas, FontSizeUsesNinetySixDpi) {
    TFont f;
    f.SetSize(8);
    EXPECT_EQ(f.Height(), -11);
    f.SetSize(14);
    EXPECT_EQ(f.Height(), -19);
    EXPECT_EQ(f.Size(), 14);
    EXPECT_EQ(TFont::MapFamily("Arial"), "Liberation Sans");
    EXPECT_EQ(TFont::MapFamily("System"), "Liberation Sans");
    EXPECT_EQ(TFont::MapFamily("Courier New"), "Liberation Mono");
}

TEST(Canvas, ChangeNotificationsFireOnlyOnChange) {
    TPen pen;
    int n = 0;
    QObject* sender = nullptr;
    pen.SetOnChange([&](QObject* s) {
        ++n;
        sender = s;
    });
    pen.SetColor(clRed);
    pen.SetColor(clRed);
    pen.SetWidth(1);
    pen.SetWidth(0);  // taken as 1
    EXPECT_EQ(n, 1);
    EXPECT_EQ(sender, &pen);
    TBrush brush;
    int m = 0;
    brush.SetOnChange([&](QObject*) { ++m; });
    brush.SetStyle(bsClear);
    brush.SetColor(clWhite);  // same colour, but makes the brush solid again
    EXPECT_EQ(brush.Style(), bsSolid);
    EXPECT_EQ(m, 2);
}

TEST(Canvas, PixelOutsideIsInvalidAndNothingCrashes) {
    TBitmap b(3, 3);
    EXPECT_EQ(b.Pixel(-1, 0), -1);
    EXPECT_EQ(b.Pixel(3, 0), -1);
    b.Canvas().SetPixel(10, 10, clBlack);
    b.Canvas().Rectangle(100000, 100000, -100000, -100000);
    b.Canvas().Ellipse(0, 0, 0, 0);
    b.Canvas().Polygon({});
    TBitmap empty;
    empty.Canvas().Rectangle(0, 0, 5, 5);
    empty.Canvas().TextOut(0, 0, "x");
    b.Canvas().Draw(0, 0, empty);
}

}  // namespace
}  // namespace kx
