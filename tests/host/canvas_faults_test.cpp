// Canvas behaviour at its edges: degenerate polygons, the first row and column, text
// after copies and rotations, copies under a clip, other image formats, and curves at a
// device pixel ratio moved across the surface.
#include <gtest/gtest.h>

#include <QImage>
#include <climits>
#include <functional>

#include "kx/host/bitmap.h"

namespace kx {
namespace {

TEST(CanvasEdges, TwoPointPolygonDrawsItsSegment) {
    TBitmap b(20, 20);
    TCanvas& c = b.Canvas();
    c.Pen().SetColor(clBlack);
    const TPoint pts[] = {{2, 5}, {12, 5}};
    c.Polygon(pts);
    EXPECT_EQ(b.Pixel(2, 5), clBlack);
    EXPECT_EQ(b.Pixel(7, 5), clBlack);
    EXPECT_EQ(b.Pixel(7, 6), clWhite);
}

TEST(CanvasEdges, PolygonFillReachesTheFirstRowAndColumn) {
    TBitmap b(20, 20);
    TCanvas& c = b.Canvas();
    c.Pen().SetStyle(psClear);
    c.Brush().SetColor(clRed);
    const TPoint pts[] = {{-5, -5}, {15, -5}, {15, 15}, {-5, 15}};
    c.Polygon(pts);
    EXPECT_EQ(b.Pixel(0, 0), clRed);
    EXPECT_EQ(b.Pixel(10, 0), clRed);
    EXPECT_EQ(b.Pixel(0, 10), clRed);
    EXPECT_EQ(b.Pixel(15, 10), clWhite);
}

// Text is blended over what lies beneath even right after a bitmap copy: every pixel
// stays opaque.
TEST(CanvasEdges, TextAfterACopyBlendsOverTheBackground) {
    TBitmap b(80, 30), small(4, 4);
    TCanvas& c = b.Canvas();
    c.Brush().SetColor(clYellow);
    c.FillRect(TRect{0, 0, 80, 30});
    c.Draw(70, 20, small);
    c.Brush().SetStyle(bsClear);
    c.Font().SetSize(14);
    c.TextOut(2, 2, QStringLiteral("Wg8"));
    int ink = 0;
    for (int y = 0; y < 30; ++y)
        for (int x = 0; x < 80; ++x) {
            EXPECT_EQ(qAlpha(b.Image().pixel(x, y)), 255) << x << "," << y;
            ink += b.Pixel(x, y) != clYellow && b.Pixel(x, y) != clWhite;
        }
    EXPECT_GT(ink, 20);
}

// A turned text leaves the canvas unturned for the next plain text.
TEST(CanvasEdges, RotatedTextDoesNotTurnTheNextText) {
    TBitmap plain(120, 60), after(120, 60);
    plain.Canvas().TextOut(10, 30, QStringLiteral("Flow"));
    TCanvas& c = after.Canvas();
    c.Font().SetOrientation(900);
    c.TextOut(80, 50, QStringLiteral("x"));
    c.Font().SetOrientation(0);
    c.TextOut(10, 30, QStringLiteral("Flow"));
    // The plain text's area, left of the turned one, is the same as on a fresh canvas.
    for (int y = 0; y < 60; ++y)
        for (int x = 0; x < 60; ++x)
            EXPECT_EQ(after.Pixel(x, y), plain.Pixel(x, y)) << x << "," << y;
}

TEST(CanvasEdges, CopiesKeepToTheClipRegion) {
    TBitmap b(40, 40), red(40, 40);
    red.Canvas().Brush().SetColor(clRed);
    red.Canvas().FillRect(TRect{0, 0, 40, 40});
    TCanvas& c = b.Canvas();
    c.SetClipRegion(QRegion(10, 10, 10, 10));
    c.Draw(0, 0, red);
    c.CopyRect(TRect{0, 0, 40, 40}, red.Canvas(), TRect{0, 0, 40, 40});
    EXPECT_EQ(b.Pixel(15, 15), clRed);
    EXPECT_EQ(b.Pixel(5, 5), clWhite);
    EXPECT_EQ(b.Pixel(25, 25), clWhite);
}

// A canvas on an image of another format draws the same colours.
TEST(CanvasEdges, OtherImageFormatsGetTheSameColours) {
    for (QImage::Format f : {QImage::Format_RGB888, QImage::Format_RGB16, QImage::Format_ARGB32}) {
        SCOPED_TRACE(int(f));
        QImage img(20, 20, f);
        img.fill(Qt::white);
        TCanvas c(&img);
        c.Pen().SetColor(clBlack);
        c.MoveTo(2, 5);
        c.LineTo(12, 5);
        c.Pen().SetStyle(psClear);
        c.Brush().SetColor(clBlue);
        c.Rectangle(2, 8, 12, 14);
        c.Release();
        EXPECT_EQ(img.pixelColor(5, 5), QColor(Qt::black));
        EXPECT_EQ(img.pixelColor(5, 10), QColor(Qt::blue));
        EXPECT_EQ(img.pixelColor(5, 15), QColor(Qt::white));
        EXPECT_EQ(img.pixelColor(12, 5), QColor(Qt::white));
    }
}

// At a device pixel ratio, a curve moved by whole logical pixels moves by whole device
// pixels and keeps its shape, at the surface's edges too.
TEST(CanvasEdges, ScaledCurvesMoveWithoutChangingShape) {
    using Draw = std::function<void(TCanvas&, int, int)>;
    const std::pair<const char*, Draw> shapes[] = {
        {"ellipse", [](TCanvas& c, int x, int y) { c.Ellipse(x, y, x + 17, y + 11); }},
        {"arc", [](TCanvas& c, int x, int y) { c.Arc(x, y, x + 17, y + 13, x + 17, y, x, y); }},
        {"pie",
         [](TCanvas& c, int x, int y) { c.Pie(x, y, x + 15, y + 15, x + 15, y + 3, x, y + 15); }},
        {"roundrect", [](TCanvas& c, int x, int y) { c.RoundRect(x, y, x + 16, y + 12, 8, 6); }},
    };
    for (const auto& [name, draw] : shapes) {
        SCOPED_TRACE(name);
        TBitmap a, b;
        for (TBitmap* bmp : {&a, &b}) {
            bmp->SetDeviceGrid(2.0);
            bmp->SetSize(40, 40);
            bmp->Canvas().Pen().SetColor(clBlack);
            bmp->Canvas().Brush().SetColor(clRed);
        }
        draw(a.Canvas(), 3, 2);
        draw(b.Canvas(), 3 + 10, 2 + 20);
        for (int y = 0; y < 30; ++y)
            for (int x = 0; x < 40; ++x)
                ASSERT_EQ(a.Image().pixel(x, y), b.Image().pixel(x + 20, y + 40)) << x << "," << y;
        // Cut by the left edge: the part on the surface is the same part of the shape.
        TBitmap cut;
        cut.SetDeviceGrid(2.0);
        cut.SetSize(40, 40);
        cut.Canvas().Pen().SetColor(clBlack);
        cut.Canvas().Brush().SetColor(clRed);
        draw(cut.Canvas(), -2, 2);
        for (int y = 0; y < 30; ++y)
            for (int x = 0; x < 20; ++x)
                ASSERT_EQ(cut.Image().pixel(x, y), a.Image().pixel(x + 10, y)) << x << "," << y;
    }
}

TEST(CanvasEdges, BlacknessAndWhitenessCopies) {
    TBitmap b(20, 20), src(20, 20);
    b.Canvas().Brush().SetColor(clRed);
    b.Canvas().FillRect(TRect{0, 0, 20, 20});
    b.Canvas().SetCopyMode(cmBlackness);
    b.Canvas().CopyRect(TRect{0, 0, 10, 10}, src.Canvas(), TRect{0, 0, 10, 10});
    b.Canvas().SetCopyMode(cmWhiteness);
    b.Canvas().CopyRect(TRect{10, 10, 20, 20}, src.Canvas(), TRect{0, 0, 10, 10});
    EXPECT_EQ(b.Pixel(5, 5), clBlack);
    EXPECT_EQ(b.Pixel(15, 15), clWhite);
    EXPECT_EQ(b.Pixel(15, 5), clRed);
}

// Wide pens: a width of 2 is two pixels thick; open shapes stay unfilled whatever the
// brush; arcs are drawn.
TEST(CanvasEdges, WidePens) {
    TBitmap line(20, 20);
    line.Canvas().Pen().SetWidth(2);
    line.Canvas().MoveTo(2, 10);
    line.Canvas().LineTo(18, 10);
    int rows = 0;
    for (int y = 0; y < 20; ++y)
        rows += line.Pixel(10, y) == clBlack;
    EXPECT_EQ(rows, 2);

    TBitmap vee(40, 40);
    TCanvas& c = vee.Canvas();
    c.Brush().SetColor(clRed);
    c.Pen().SetWidth(3);
    const TPoint pts[] = {{5, 5}, {20, 35}, {35, 5}};
    c.Polyline(pts);
    EXPECT_EQ(vee.Pixel(20, 15), clWhite);  // inside the V
    EXPECT_EQ(vee.Pixel(20, 34), clBlack);

    TBitmap ring(40, 40);
    ring.Canvas().Pen().SetWidth(2);
    ring.Canvas().Brush().SetStyle(bsClear);
    ring.Canvas().Ellipse(5, 5, 35, 35);
    int across = 0;
    for (int x = 0; x < 40; ++x)
        across += ring.Pixel(x, 20) == clBlack;
    EXPECT_EQ(across, 4);  // two pixels on each side

    TBitmap arc(40, 40);
    arc.Canvas().Pen().SetWidth(3);
    arc.Canvas().Arc(5, 5, 35, 35, 35, 20, 5, 20);  // the upper half
    EXPECT_EQ(arc.Pixel(20, 5), clBlack);
    EXPECT_EQ(arc.Pixel(20, 34), clWhite);
}

// At ratio 2 a one-pixel arc is two device pixels thick, like every outline there.
TEST(CanvasEdges, ScaledArcIsTwoDevicePixelsThick) {
    TBitmap b;
    b.SetDeviceGrid(2.0);
    b.SetSize(40, 40);
    b.Canvas().Arc(5, 5, 35, 35, 35, 20, 5, 20);
    int thick = 0;
    for (int y = 0; y < 80; ++y)
        thick += FromQRgb(b.Image().pixel(40, y)) == clBlack;
    EXPECT_EQ(thick, 2);
}

// Bitmaps that share a grid draw a wide line to the same device pixels, whatever their
// origin on it (fractional ratio).
TEST(CanvasEdges, WideLinesKeepToTheSharedGrid) {
    TBitmap whole, part;
    whole.SetDeviceGrid(1.5);
    whole.SetSize(60, 60);
    part.SetDeviceGrid(1.5, TPoint{7, 9});
    part.SetSize(40, 40);
    for (TBitmap* b : {&whole, &part})
        b->Canvas().Pen().SetWidth(3);
    whole.Canvas().MoveTo(12, 21);
    whole.Canvas().LineTo(40, 33);
    part.Canvas().MoveTo(12 - 7, 21 - 9);
    part.Canvas().LineTo(40 - 7, 33 - 9);
    const int ox = whole.Canvas().DeviceX(7), oy = whole.Canvas().DeviceY(9);
    for (int y = 0; y < part.Image().height(); ++y)
        for (int x = 0; x < part.Image().width(); ++x)
            ASSERT_EQ(part.Image().pixel(x, y), whole.Image().pixel(x + ox, y + oy))
                << x << "," << y;
}

TEST(CanvasEdges, NarrowEllipsesKeepTheirFill) {
    TBitmap b(20, 20);
    b.Canvas().Brush().SetColor(clRed);
    b.Canvas().Ellipse(2, 2, 5, 18);  // 3 wide: an outline and a column of fill
    int red = 0;
    for (int y = 0; y < 20; ++y)
        red += b.Pixel(3, y) == clRed;
    EXPECT_GT(red, 5);
}

TEST(CanvasEdges, TextFarOffTheSurfaceDrawsNothing) {
    const struct {
        int32_t x, y;
        uint32_t align;
    } cases[] = {{INT_MAX, 5, 0},           {INT_MIN, 5, TA_RIGHT}, {5, INT_MAX, TA_BOTTOM},
                 {5, INT_MIN, TA_BASELINE}, {INT_MAX, INT_MAX, 0},  {-100000000, 3, TA_CENTER}};
    for (const auto& t : cases) {
        TBitmap b(40, 20);
        const QImage before = b.Image().copy();
        b.Canvas().SetTextAlign(t.align);
        b.Canvas().Brush().SetColor(clRed);
        b.Canvas().TextOut(t.x, t.y, QStringLiteral("Wg8"));
        EXPECT_EQ(b.Image(), before) << t.x << " " << t.y;
    }
}

// A size whose pixels cannot be allocated leaves an empty bitmap that takes drawing and
// copies without effect, and the bitmap recovers at the next size that fits.
TEST(CanvasEdges, UnallocatableSizeLeavesAnEmptyBitmap) {
    const struct {
        int32_t Width, Height;
    } cases[] = {{100000, 100000}, {INT_MAX, 2}, {INT_MAX, INT_MAX}};
    for (const auto& size : cases) {
        SCOPED_TRACE(testing::Message() << size.Width << "x" << size.Height);
        TBitmap b(10, 10);
        b.Canvas().Brush().SetColor(clRed);
        b.Canvas().FillRect(TRect{0, 0, 10, 10});
        b.SetSize(size.Width, size.Height);
        EXPECT_TRUE(b.Empty());
        EXPECT_EQ(b.Width(), size.Width);
        b.Canvas().FillRect(TRect{0, 0, 50, 50});
        b.Canvas().TextOut(0, 0, "text");
        // Nothing can be seen, so a frame of any width costs nothing.
        const TRect plane{INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX};
        EXPECT_EQ(b.Canvas().RingsOnSurface(plane, INT32_MAX), std::make_pair(0, 0));
        TRect framed = plane;
        b.Canvas().Frame3D(framed, clRed, clBlue, INT32_MAX);
        TBitmap target(20, 20);
        target.Canvas().Draw(0, 0, b);
        EXPECT_EQ(target.Pixel(5, 5), clWhite);
        b.SetSize(4, 4);
        ASSERT_FALSE(b.Empty());
        EXPECT_EQ(b.Pixel(3, 3), clWhite);
    }
}

TEST(CanvasEdges, RectangleExtentsSaturateInsteadOfOverflowing) {
    const struct {
        TRect r;
        int32_t width, height;
    } cases[] = {
        {{0, 0, 10, 20}, 10, 20},
        {{10, 20, 0, 0}, -10, -20},
        {{-2147483643, INT_MIN, 2147483644, INT_MAX}, INT_MAX, INT_MAX},
        {{INT_MAX, INT_MAX, INT_MIN, INT_MIN}, INT_MIN, INT_MIN},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.r.Width(), c.width);
        EXPECT_EQ(c.r.Height(), c.height);
    }
}

}  // namespace
}  // namespace kx
