// The canvas at device pixel ratios above 1: the mapping of logical geometry onto device
// pixels, and crisp curves and text.
#include <gtest/gtest.h>

#include <functional>

#include "common/pixels.h"

#include "kx/host/bitmap.h"

namespace kx {
namespace {

// A white bitmap of logical size w x h at the given ratio, black pen, red brush.
struct Scaled {
    Scaled(int w, int h, double ratio, TPoint origin = {}) {
        bmp.SetDeviceGrid(ratio, origin);
        bmp.SetSize(w, h);
        bmp.Canvas().Brush().SetColor(clRed);
    }
    TCanvas& C() { return bmp.Canvas(); }
    TColor Device(int x, int y) const { return FromQRgb(bmp.Image().pixel(x, y)); }
    // The device pixels as rows of '.' white, '#' black, 'o' red, '?' anything else.
    std::string Rows() const {
        std::string s;
        for (int y = 0; y < bmp.Image().height(); ++y) {
            for (int x = 0; x < bmp.Image().width(); ++x) {
                const TColor c = Device(x, y);
                s += c == clWhite ? '.' : c == clBlack ? '#' : c == clRed ? 'o' : '?';
            }
            s += '\n';
        }
        return s;
    }
    TBitmap bmp;
};

// Aligned 2 x 2 blocks whose four device pixels are not all alike: a pixel-doubled
// picture has none.
int mixedBlocks(const QImage& img) {
    int n = 0;
    for (int y = 0; y + 1 < img.height(); y += 2)
        for (int x = 0; x + 1 < img.width(); x += 2) {
            const QRgb p = img.pixel(x, y);
            if (img.pixel(x + 1, y) != p || img.pixel(x, y + 1) != p ||
                img.pixel(x + 1, y + 1) != p)
                ++n;
        }
    return n;
}

TEST(CanvasHiDpi, LogicalCoordinatesMapByRoundingHalfToEven) {
    const struct {
        double ratio;
        TPoint origin;
        int32_t x, device;
    } cases[] = {
        {1.0, {7, 7}, 5, 5},
        {2.0, {0, 0}, 5, 10},
        {2.0, {0, 0}, -3, -6},
        {1.5, {0, 0}, 1, 2},    // 1.5 -> 2
        {1.5, {0, 0}, 3, 4},    // 4.5 -> 4
        {1.5, {0, 0}, 5, 8},    // 7.5 -> 8
        {1.5, {0, 0}, -1, -2},  // -1.5 -> -2
        {1.5, {1, 1}, 1, 1},    // 3 - 2: the grid of a bitmap cut out at 1
        {1.5, {1, 1}, 2, 2},    // 4.5 -> 4, - 2
        {1.25, {0, 0}, 2, 2},   // 2.5 -> 2
        {2.0, {0, 0}, INT32_MAX, INT32_MAX},
        {2.0, {0, 0}, INT32_MIN, INT32_MIN},
    };
    for (const auto& c : cases) {
        TBitmap b;
        b.SetDeviceGrid(c.ratio, c.origin);
        EXPECT_EQ(b.Canvas().DeviceX(c.x), c.device) << c.ratio << " " << c.x;
        EXPECT_EQ(b.Canvas().DeviceY(c.x), c.device) << c.ratio << " " << c.x;
    }
}

TEST(CanvasHiDpi, BitmapsAreLogicalOutsideAndDeviceSizedInside) {
    const struct {
        double ratio;
        TPoint origin;
        int32_t w, h;
        QSize device;
        double keptRatio;
    } cases[] = {
        {2.0, {}, 10, 4, {20, 8}, 2.0},   {1.5, {}, 5, 3, {8, 4}, 1.5},  // 7.5 -> 8, 4.5 -> 4
        {1.5, {1, 0}, 5, 3, {7, 4}, 1.5},                                // 9 - 2
        {0.0, {}, 5, 3, {5, 3}, 1.0},                                    // invalid: 1
        {qQNaN(), {}, 5, 3, {5, 3}, 1.0},                                // invalid: 1
        {100.0, {}, 2, 1, {16, 8}, 8.0},                                 // clamped
    };
    for (const auto& c : cases) {
        TBitmap b;
        b.SetDeviceGrid(c.ratio, c.origin);
        b.SetSize(c.w, c.h);
        EXPECT_EQ(b.Width(), c.w);
        EXPECT_EQ(b.Height(), c.h);
        EXPECT_EQ(b.Image().size(), c.device) << c.ratio;
        EXPECT_EQ(b.DeviceRatio(), c.keptRatio);
        EXPECT_EQ(b.Canvas().ClipRect(), (TRect{0, 0, c.w, c.h}));
    }
    // A new ratio re-creates the pixels white; Assign copies the grid.
    TBitmap a(4, 4);
    a.Canvas().Brush().SetColor(clRed);
    a.Canvas().FillRect(TRect{0, 0, 4, 4});
    a.SetDeviceGrid(2.0);
    EXPECT_EQ(a.Image().size(), QSize(8, 8));
    EXPECT_EQ(a.Pixel(3, 3), clWhite);
    TBitmap copy;
    copy.Assign(a);
    EXPECT_EQ(copy.DeviceRatio(), 2.0);
    EXPECT_EQ(copy.Width(), 4);
    EXPECT_EQ(copy.Image().size(), QSize(8, 8));
}

TEST(CanvasHiDpi, RectanglesSpansAndLinesCoverTheMappedPixels) {
    const struct {
        const char* what;
        double ratio;
        std::function<void(TCanvas&)> draw;
        const char* rows;
    } cases[] = {
        {"FillRect at 1.5: [2, 4) x [0, 3)", 1.5,
         [](TCanvas& c) {
             c.FillRect(TRect{1, 0, 3, 2});
         },
         "..oo..\n"
         "..oo..\n"
         "..oo..\n"},
        {"clear-pen rectangle stops one logical pixel short", 2.0,
         [](TCanvas& c) {
             c.Pen().SetStyle(psClear);
             c.Rectangle(0, 0, 3, 2);
         },
         "oooo..\n"
         "oooo..\n"
         "......\n"
         "......\n"},
        {"outline is a ring two device pixels thick", 2.0,
         [](TCanvas& c) { c.Rectangle(0, 0, 3, 2); },
         "######\n"
         "######\n"
         "######\n"
         "######\n"},
        {"outline around a fill", 2.0, [](TCanvas& c) { c.Rectangle(0, 0, 3, 3); },
         "######\n"
         "######\n"
         "##oo##\n"
         "##oo##\n"},
        {"outline at 1.5 is one device pixel", 1.5, [](TCanvas& c) { c.Rectangle(0, 0, 4, 2); },
         "######\n"
         "#oooo#\n"
         "######\n"},
        {"horizontal line at 2 is two device rows, end left out", 2.0,
         [](TCanvas& c) {
             c.MoveTo(0, 1);
             c.LineTo(2, 1);
         },
         "......\n"
         "......\n"
         "####..\n"
         "####..\n"},
        {"vertical line grows to the right", 2.0,
         [](TCanvas& c) {
             c.MoveTo(1, 0);
             c.LineTo(1, 2);
         },
         "..##..\n"
         "..##..\n"
         "..##..\n"
         "..##..\n"},
        {"diagonal line grows downwards", 2.0,
         [](TCanvas& c) {
             c.MoveTo(0, 0);
             c.LineTo(2, 2);
         },
         "#.....\n"
         "##....\n"
         ".##...\n"
         "..##..\n"},
        {"line at 1.5 between the mapped points", 1.5,
         [](TCanvas& c) {
             c.MoveTo(0, 1);
             c.LineTo(3, 1);
         },
         "......\n"
         "......\n"
         "####..\n"},
        {"Frame3D rings by the rectangle rule", 2.0,
         [](TCanvas& c) {
             TRect r{0, 0, 3, 2};
             c.Frame3D(r, clBlack, clRed, 1);
         },
         "####oo\n"
         "####oo\n"
         "oooooo\n"
         "oooooo\n"},
        {"SetPixel sets the one device pixel at the mapped position", 2.0,
         [](TCanvas& c) { c.SetPixel(1, 1, clBlack); },
         "......\n"
         "......\n"
         "..#...\n"
         "......\n"},
    };
    for (const auto& c : cases) {
        Scaled s(c.ratio == 2.0 ? 3 : 4, 2, c.ratio);
        c.draw(s.C());
        EXPECT_EQ(s.Rows(), c.rows) << c.what;
    }
}

TEST(CanvasHiDpi, PixelReadsTheDevicePixelAtTheMappedPosition) {
    Scaled s(4, 4, 1.5);
    s.bmp.MutableImage().setPixel(2, 4, 0xFF0000FFu);  // blue at device (2, 4)
    EXPECT_EQ(s.C().Pixel(1, 3), clBlue);              // (1.5, 4.5) -> (2, 4)
    EXPECT_EQ(s.bmp.Pixel(1, 3), clBlue);
    EXPECT_EQ(s.C().Pixel(1, 2), clWhite);  // (2, 3)
    EXPECT_EQ(s.C().Pixel(4, 0), -1);       // device 6: off the 6-pixel image
    EXPECT_EQ(s.C().Pixel(-1, 0), -1);
}

// At whole ratios the fills of shapes without an outline are the ratio-1 fills of the
// scaled shapes: the walk and the polygon rule run on the mapped coordinates.
TEST(CanvasHiDpi, FillsRunOnTheMappedShape) {
    const struct {
        const char* what;
        std::function<void(TCanvas&, int)> draw;  // draws with coordinates times k
    } cases[] = {
        {"ellipse", [](TCanvas& c, int k) { c.Ellipse(1 * k, 2 * k, 14 * k, 11 * k); }},
        {"round rect",
         [](TCanvas& c, int k) { c.RoundRect(1 * k, 1 * k, 15 * k, 12 * k, 6 * k, 5 * k); }},
        {"pie", [](TCanvas& c, int k) { c.Pie(0, 0, 15 * k, 13 * k, 15 * k, 0, 0, 13 * k); }},
        {"polygon",
         [](TCanvas& c, int k) {
             const TPoint pts[] = {{1 * k, 1 * k}, {14 * k, 4 * k}, {3 * k, 12 * k}};
             c.Polygon(pts);
         }},
    };
    for (const auto& c : cases) {
        Scaled hi(16, 14, 2.0);
        TBitmap flat(32, 28);
        flat.Canvas().Brush().SetColor(clRed);
        hi.C().Pen().SetStyle(psClear);
        flat.Canvas().Pen().SetStyle(psClear);
        c.draw(hi.C(), 1);
        c.draw(flat.Canvas(), 2);
        EXPECT_TRUE(hi.bmp.Image() == flat.Image()) << c.what;
    }
}

TEST(CanvasHiDpi, CurvesAreDrawnAtDeviceResolution) {
    Scaled s(20, 16, 2.0);
    s.C().Brush().SetStyle(bsClear);
    s.C().Ellipse(1, 1, 19, 15);
    const QImage& img = s.bmp.Image();
    // Exactly the mapped box, and not a picture of 2 x 2 blocks.
    EXPECT_EQ(test::InkBounds(s.bmp), (TRect{1, 1, 19, 15}));
    EXPECT_GT(mixedBlocks(img), 10);
    // The outline is two device pixels thick on every side, growing inwards.
    EXPECT_EQ(s.Rows().substr(size_t(16 * 41), 41),
              "..##................................##..\n");  // middle row 16
    for (int x = 19; x <= 20; ++x) {
        EXPECT_EQ(s.Device(x, 2), clBlack);
        EXPECT_EQ(s.Device(x, 3), clBlack);
        EXPECT_EQ(s.Device(x, 4), clWhite);
    }
    // The fill meets the ring without a gap.
    Scaled f(20, 16, 2.0);
    f.C().Ellipse(1, 1, 19, 15);
    for (int y = 0; y < 32; ++y) {
        std::string row;
        for (int x = 0; x < 40; ++x)
            row += f.Device(x, y) == clWhite ? '.' : 'x';
        const size_t a = row.find('x'), b = row.rfind('x');
        if (a == std::string::npos) continue;
        EXPECT_EQ(row.substr(a, b - a + 1).find('.'), std::string::npos) << "row " << y;
    }
    // At 1.5 the outline stays one device pixel and the box is mapped.
    Scaled h(20, 16, 1.5);
    h.C().Brush().SetStyle(bsClear);
    h.C().Ellipse(1, 1, 19, 15);
    EXPECT_EQ(test::InkBounds(h.bmp), (TRect{1, 1, 19, 15}));
    int inkInMiddleRow = 0;
    for (int x = 0; x < h.bmp.Image().width(); ++x)
        inkInMiddleRow += h.Device(x, 12) == clBlack;
    EXPECT_EQ(inkInMiddleRow, 2);
}

TEST(CanvasHiDpi, ThickArcsKeepToTheirSector) {
    // A quarter arc from 3 o'clock to 12 o'clock: the upper right quadrant only.
    Scaled s(20, 20, 2.0);
    s.C().Arc(0, 0, 20, 20, 20, 10, 10, 0);
    const TRect ink = test::InkBounds(s.bmp);
    EXPECT_GE(ink.Left, 9);
    EXPECT_LE(ink.Bottom, 11);
    EXPECT_EQ(ink.Right, 20);
    EXPECT_EQ(ink.Top, 0);
    // Two device pixels thick at the top and at the right end.
    EXPECT_EQ(s.Device(20, 0), clBlack);
    EXPECT_EQ(s.Device(20, 1), clBlack);
    EXPECT_EQ(s.Device(20, 2), clWhite);
    EXPECT_EQ(s.Device(19, 0), clWhite);  // left of the 12 o'clock radial
    EXPECT_EQ(s.Device(25, 0), clWhite);
    EXPECT_EQ(s.Device(25, 1), clBlack);
    EXPECT_EQ(s.Device(25, 2), clBlack);
    EXPECT_EQ(s.Device(25, 3), clWhite);
    EXPECT_EQ(s.Device(39, 17), clBlack);
    EXPECT_EQ(s.Device(38, 17), clBlack);
    EXPECT_EQ(s.Device(37, 17), clWhite);
    // A pie adds its radii and fills inside.
    Scaled p(20, 20, 2.0);
    p.C().Pie(0, 0, 20, 20, 20, 10, 10, 0);
    EXPECT_EQ(p.Device(28, 12), clRed);
    EXPECT_EQ(p.Device(12, 28), clWhite);
    EXPECT_EQ(p.Device(19, 15), clWhite);  // the vertical radius, two pixels thick
    EXPECT_EQ(p.Device(20, 15), clBlack);
    EXPECT_EQ(p.Device(21, 15), clBlack);
    EXPECT_EQ(p.Device(22, 15), clRed);
}

TEST(CanvasHiDpi, WidePensScaleTheirWidth) {
    Scaled s(20, 11, 2.0);
    s.C().Pen().SetWidth(3);
    s.C().MoveTo(5, 5);
    s.C().LineTo(14, 5);
    const TRect b = test::InkBounds(s.bmp);
    // Six device pixels across, centred on the logical row's centre (device 11).
    int column = 0;
    for (int y = 0; y < 22; ++y)
        column += s.Device(19, y) == clBlack;
    EXPECT_EQ(column, 6);
    EXPECT_EQ(s.Device(19, 8), clBlack);
    EXPECT_EQ(s.Device(19, 13), clBlack);
    EXPECT_GE(b.Left, 3);
    EXPECT_LE(b.Right, 17);
}

TEST(CanvasHiDpi, CopiesMapTheirRectangles) {
    // The same ratio: pixel for pixel.
    Scaled src(6, 4, 2.0), dst(6, 4, 2.0);
    src.C().FillRect(TRect{1, 1, 3, 3});
    dst.C().CopyRect(TRect{3, 0, 5, 2}, src.C(), TRect{1, 1, 3, 3});
    EXPECT_EQ(test::InkBounds(dst.bmp), (TRect{3, 0, 5, 2}));
    EXPECT_EQ(dst.Device(6, 0), clRed);
    EXPECT_EQ(dst.Device(9, 3), clRed);
    EXPECT_EQ(dst.Device(10, 3), clWhite);
    // From a ratio-1 bitmap: each pixel scaled to the mapped rectangle.
    TBitmap flat(2, 2);
    flat.MutableImage().setPixel(0, 0, 0xFF000000u);
    Scaled d2(4, 4, 2.0);
    d2.C().CopyRect(TRect{1, 1, 3, 3}, flat.Canvas(), TRect{0, 0, 2, 2});
    EXPECT_EQ(d2.Rows(),
              "........\n"
              "........\n"
              "..##....\n"
              "..##....\n"
              "........\n"
              "........\n"
              "........\n"
              "........\n");
    // Draw: the same ratio at the mapped position, another ratio scaled.
    Scaled d3(4, 4, 2.0);
    d3.C().Draw(1, 0, flat);
    EXPECT_EQ(test::InkBounds(d3.bmp), (TRect{1, 0, 2, 1}));
    EXPECT_EQ(d3.Device(3, 1), clBlack);
    Scaled piece(1, 1, 2.0);
    piece.C().Brush().SetColor(clBlack);
    piece.C().FillRect(TRect{0, 0, 1, 1});
    piece.bmp.MutableImage().setPixel(1, 1, 0xFFFF0000u);
    Scaled d4(4, 4, 2.0);
    d4.C().Draw(2, 1, piece.bmp);
    EXPECT_EQ(d4.Device(4, 2), clBlack);
    EXPECT_EQ(d4.Device(5, 3), clRed);  // the device pixel itself, not scaled
}

// Bitmaps cut out of a surface at a fractional ratio share its grid, so a round trip
// through them is exact even where logical pixels are one device pixel wide.
TEST(CanvasHiDpi, CutOutBitmapsShareTheSurfaceGrid) {
    Scaled surface(9, 7, 1.5);
    surface.C().Ellipse(0, 0, 9, 7);
    const QImage before = surface.bmp.Image().copy();
    for (const TPoint at : {TPoint{1, 1}, TPoint{2, 3}, TPoint{3, 2}}) {
        TBitmap part;
        part.SetDeviceGrid(1.5, at);
        part.SetSize(5, 3);
        const TRect area{at.X, at.Y, at.X + 5, at.Y + 3};
        part.Canvas().CopyRect(TRect{0, 0, 5, 3}, surface.C(), area);
        EXPECT_EQ(part.Image().size(),
                  QSize(surface.C().DeviceX(area.Right) - surface.C().DeviceX(area.Left),
                        surface.C().DeviceY(area.Bottom) - surface.C().DeviceY(area.Top)));
        surface.C().Brush().SetColor(clBlue);
        surface.C().FillRect(area);
        surface.C().CopyRect(area, part.Canvas(), TRect{0, 0, 5, 3});
        EXPECT_TRUE(surface.bmp.Image() == before) << at.X << "," << at.Y;
    }
}

TEST(CanvasHiDpi, ClipRegionsAreLogical) {
    Scaled s(4, 3, 2.0);
    s.C().SetClipRegion(QRegion(1, 1, 2, 1));
    EXPECT_EQ(s.C().ClipRect(), (TRect{1, 1, 3, 2}));
    s.C().FillRect(TRect{0, 0, 4, 3});
    s.C().SetPixel(0, 0, clBlack);  // outside: nothing
    EXPECT_EQ(s.Rows(),
              "........\n"
              "........\n"
              "..oooo..\n"
              "..oooo..\n"
              "........\n"
              "........\n");
    s.C().ClearClipRegion();
    EXPECT_EQ(s.C().ClipRect(), (TRect{0, 0, 4, 3}));
}

// Glyphs are rasterized at device resolution: edges step by single device pixels, and
// the picture is not the ratio-1 one scaled up.
TEST(CanvasHiDpi, TextIsCrisp) {
    for (const double ratio : {2.0, 1.5}) {
        TBitmap flat(60, 30);
        Scaled hi(60, 30, ratio);
        for (TCanvas* c : {&flat.Canvas(), &hi.C()}) {
            c->Font().SetName(QStringLiteral("Arial"));
            c->Font().SetSize(16);
            c->Font().SetColor(clBlack);
            c->Brush().SetStyle(bsClear);
            c->TextOut(4, 2, QStringLiteral("AVW"));
        }
        const QImage& img = hi.bmp.Image();
        const QImage doubled =
            flat.Image().scaled(img.size(), Qt::IgnoreAspectRatio, Qt::FastTransformation);
        EXPECT_FALSE(img == doubled) << ratio;
        // The ink lies where the logical text does, in device pixels.
        const TRect logical = test::InkBounds(flat);
        const TRect device = test::InkBounds(hi.bmp);  // logical Pixel() samples
        EXPECT_NEAR(device.Left, logical.Left, 1) << ratio;
        EXPECT_NEAR(device.Right, logical.Right, 1) << ratio;
        if (ratio == 2.0) {
            EXPECT_GT(mixedBlocks(img), 20);
            // A slanted stroke of the A steps by one device pixel on some rows.
            int singleSteps = 0;
            int previous = -1;
            for (int y = 0; y < img.height(); ++y) {
                int first = -1;
                for (int x = 0; x < img.width() && first < 0; ++x)
                    if (qGray(img.pixel(x, y)) < 128) first = x;
                if (first >= 0 && previous >= 0 && std::abs(first - previous) == 1) ++singleSteps;
                previous = first;
            }
            EXPECT_GT(singleSteps, 3);
        }
    }
    // Metrics stay logical.
    TBitmap flat(4, 4);
    Scaled hi(4, 4, 2.0);
    EXPECT_EQ(flat.Canvas().TextWidth(QStringLiteral("AVW")),
              hi.C().TextWidth(QStringLiteral("AVW")));
    EXPECT_EQ(flat.Canvas().TextHeight(QStringLiteral("AVW")),
              hi.C().TextHeight(QStringLiteral("AVW")));
}

}  // namespace
}  // namespace kx
