#include <gtest/gtest.h>

#include "kx/drawing/shapes.h"
#include "kx/host/bitmap.h"
#include "kx/host/recordingcanvas.h"
#include "qstring_print.h"

namespace kx {
namespace {

QString Frame(TRect r, TColor top, TColor bottom) {
    return QString::asprintf("Frame3D(%d,%d,%d,%d,%d,%d,1)", r.Left, r.Top, r.Right, r.Bottom, top,
                             bottom);
}
QString Rect(const char* op, TRect r) {
    return QString::asprintf("%s(%d,%d,%d,%d)", op, r.Left, r.Top, r.Right, r.Bottom);
}

TEST(Shapes, BtnBevel) {
    const TRect outer{0, 0, 20, 10}, ring{1, 1, 19, 9};
    struct Case {
        bool raised, fill;
        QStringList log;
    } cases[] = {
        {true,
         false,
         {Frame(outer, clBtnHighlight, clBlack), Frame(ring, kBevelGrey, clBtnShadow)}},
        {false,
         true,
         {Rect("Rectangle", outer), Frame(outer, clBlack, clBtnHighlight),
          Frame(ring, clBtnShadow, kBevelGrey)}},
    };
    for (const Case& c : cases) {
        TRecordingCanvas canvas;
        canvas.Brush().SetStyle(bsClear);
        TRect r = outer;
        KxBtnBevel(canvas, r, c.raised, c.fill, clYellow);
        EXPECT_EQ(canvas.Log(), c.log);
        EXPECT_EQ(r, (TRect{2, 2, 18, 8}));
        if (c.fill) {
            EXPECT_EQ(canvas.Calls()[0].BrushStyle, bsSolid);
        }
    }
}

TEST(Shapes, Ellipse3DAndCircleAtPoint) {
    for (bool raised : {true, false}) {
        TRecordingCanvas canvas;
        canvas.Pen().SetWidth(4);
        TRect r{0, 0, 21, 21};
        KxEllipse3D(canvas, r, clRed, raised);
        EXPECT_EQ(canvas.Log(),
                  (QStringList{"Ellipse(0,0,21,21)", "Ellipse(0,0,19,19)", "Ellipse(1,1,19,19)"}));
        const TColor shadow = clBtnShadow, light = clBtnHighlight;
        const TColor want[] = {raised ? shadow : light, raised ? light : shadow, clRed};
        for (size_t i = 0; i < 3; ++i) {
            EXPECT_EQ(canvas.Calls()[i].PenColor, want[i]);
            EXPECT_EQ(canvas.Calls()[i].BrushColor, want[i]);
            EXPECT_EQ(canvas.Calls()[i].PenWidth, 1);
        }
        EXPECT_EQ(r, (TRect{1, 1, 19, 19}));
    }
    TRecordingCanvas canvas;
    KxCircleAtPoint(canvas, {50, 40}, 5, clRed, clLime);
    EXPECT_EQ(canvas.Log(), (QStringList{"Ellipse(45,35,56,46)", "Arc(45,35,56,46,57,35,45,46)"}));
    EXPECT_EQ(canvas.Calls()[0].PenColor, clBtnHighlight);  // the pen argument never shows
    EXPECT_EQ(canvas.Calls()[0].BrushColor, clLime);
    EXPECT_EQ(canvas.Calls()[1].PenColor, clBtnShadow);
}

TEST(Shapes, ThumbBoxes) {
    struct Case {
        int32_t size;
        bool vertical;
        TColor color, line;
        TRect box, grip;
    } cases[] = {
        // Half width Round(4.0), half height 10; 20 div 25 = 0.
        {20, false, clRed, clBlack, {46, 40, 55, 61}, {48, 42, 53, 59}},
        // Half width 15, half height Round(6.0); 30 div 25 = 1; a shadow grip keeps a
        // shadow outline.
        {30, true, clBtnShadow, clBtnShadow, {35, 44, 66, 57}, {38, 47, 63, 54}},
    };
    for (const Case& c : cases) {
        TRecordingCanvas canvas;
        KxThumb(canvas, {50, 50}, c.size, 99, c.vertical, c.color);
        const TRect& b = c.box;
        EXPECT_EQ(canvas.Log(),
                  (QStringList{Rect("Rectangle", b), Frame(b, clBtnShadow, c.line),
                               Frame({b.Left + 1, b.Top + 1, b.Right - 1, b.Bottom - 1},
                                     clBtnHighlight, clBtnShadow),
                               Rect("Rectangle", c.grip)}));
        EXPECT_EQ(canvas.Calls()[0].BrushColor, clBtnFace);
        EXPECT_EQ(canvas.Calls()[3].PenColor, c.line);
        EXPECT_EQ(canvas.Calls()[3].BrushColor, c.color);
    }
}

TEST(Shapes, HPointerTip) {
    struct Case {
        TRect r;
        int32_t position, tip;
    } cases[] = {
        {{10, 20, 210, 40}, 500, 110},
        {{10, 20, 210, 40}, 1000, 210},
        {{0, 20, 25, 40}, 100, 3},  // 0.025f is a little above 0.025: 2.50000004 rounds up
        {{0, 20, 500, 40}, 5, 2},   // an exact 2.5 goes to even
    };
    for (const Case& c : cases) {
        TRecordingCanvas canvas;
        KxDrawHPointer(canvas, c.r, c.position, 4, 7, false);
        EXPECT_EQ(
            canvas.Log(),
            QStringList{
                QString("Polygon(%1,20,%2,27,%3,27)").arg(c.tip).arg(c.tip + 4).arg(c.tip - 4)});
    }
}

TEST(Shapes, RoundSector) {
    struct Case {
        float start, sweep;
        QString pie;
    } cases[] = {
        {0, 90, "Pie(0,0,100,100,100,50,50,0)"},
        {-90, 180, "Pie(0,0,100,100,100,50,0,50)"},
        {45, 45, "Pie(0,0,100,100,99,50,85,15)"},  // turned on from the rounded (85, 15)
    };
    for (const Case& c : cases) {
        TRecordingCanvas canvas;
        KxRoundSector(canvas, {0, 0, 100, 100}, c.start, c.sweep);
        EXPECT_EQ(canvas.Log(), QStringList{c.pie});
    }
}

TEST(Shapes, CircleGradFill) {
    TRecordingCanvas canvas;
    canvas.SetClipRegion(TCanvas::RectRegion({0, 0, 5, 5}));
    canvas.ClearCalls();
    KxCircleGradFill(canvas, {10, 20, 110, 120}, RGB(0, 100, 200), RGB(156, 100, 44));
    // Right and bottom exchanged: the clip ellipse is (10, 20, 120, 110).
    EXPECT_EQ(canvas.Calls().front().ToString(), "SetClipRegion(10,20,120,110)");
    EXPECT_EQ(canvas.Calls().back().Op, "ClearClipRegion");
    EXPECT_FALSE(canvas.HasClipRegion());  // the earlier clip is not restored
    const auto moves = canvas.CallsOf("MoveTo");
    const auto lines = canvas.CallsOf("LineTo");
    // k = 22, n = 2 * 78: lines 0 .. 156, one colour step each.
    ASSERT_EQ(moves.size(), 157u);
    ASSERT_EQ(lines.size(), 157u);
    EXPECT_EQ(moves[0].Args, (std::vector<int32_t>{31, 20}));
    EXPECT_EQ(lines[0].Args, (std::vector<int32_t>{9, 42}));
    EXPECT_EQ(moves[156].Args, (std::vector<int32_t>{187, 20}));
    EXPECT_EQ(lines[156].Args, (std::vector<int32_t>{9, 198}));
    EXPECT_EQ(lines[0].PenColor, RGB(0, 100, 200));
    EXPECT_EQ(lines[78].PenColor, RGB(78, 100, 122));
    EXPECT_EQ(lines[156].PenColor, RGB(156, 100, 44));

    // Width 1: k = 0, n = 2, single-precision steps of 0.5 rounding to even.
    TRecordingCanvas small;
    KxCircleGradFill(small, {0, 0, 1, 1}, RGB(10, 0, 0), RGB(11, 0, 0));
    const auto smallLines = small.CallsOf("LineTo");
    ASSERT_EQ(smallLines.size(), 3u);
    EXPECT_EQ(smallLines[1].PenColor, RGB(10, 0, 0));
    EXPECT_EQ(smallLines[2].PenColor, RGB(11, 0, 0));
}

// Lines the surface cannot show are skipped without changing a pixel: a view of part of
// a face equals that part of the whole face, and a face far larger than its surface
// takes no longer than a small one.
TEST(Shapes, CircleGradFillDrawsOnlyWhatTheSurfaceShows) {
    const TColor from = RGB(0, 100, 200), to = RGB(156, 100, 44);
    TBitmap whole(40, 40);
    KxCircleGradFill(whole.Canvas(), {0, 0, 40, 40}, from, to);
    for (const int32_t d : {0, -7, -13, -20}) {
        TBitmap part(20, 20);
        KxCircleGradFill(part.Canvas(), {d, d, 40 + d, 40 + d}, from, to);
        int differing = 0;
        for (int32_t y = 0; y < 20; ++y)
            for (int32_t x = 0; x < 20; ++x)
                differing += part.Pixel(x, y) != whole.Pixel(x - d, y - d);
        EXPECT_EQ(differing, 0) << "shift " << d;
    }
    // The surface at the centre of a face 10^9 across: halfway between the colours.
    TBitmap huge(20, 20);
    KxCircleGradFill(huge.Canvas(), {-500000000, -500000000, 500000000, 500000000}, from, to);
    const TColor mid = huge.Pixel(10, 10);
    EXPECT_EQ(GetGValue(mid), 100);
    EXPECT_NEAR(GetRValue(mid), 78, 2);
    EXPECT_NEAR(GetBValue(mid), 122, 2);
    EXPECT_FALSE(huge.Canvas().HasClipRegion());
    // A bitmap whose pixels could not be had shows nothing: no line is drawn at all.
    TBitmap none(10, 10);
    none.SetSize(100000, 100000);
    ASSERT_TRUE(none.Empty());
    KxCircleGradFill(none.Canvas(), {-500000000, -500000000, 500000000, 500000000}, from, to);
}

TEST(Shapes, BkUpImage) {
    TBitmap screen(40, 30);
    TCanvas& c = screen.Canvas();
    for (int32_t y = 0; y < 30; ++y)
        for (int32_t x = 0; x < 40; ++x)
            c.SetPixel(x, y, RGB(x, y, 7));
    TBitmap saved;
    GetBkUpImage(c, saved, {10, 5, 20, 12});
    ASSERT_EQ(saved.Width(), 10);
    ASSERT_EQ(saved.Height(), 7);
    EXPECT_EQ(saved.Pixel(0, 0), RGB(10, 5, 7));
    EXPECT_EQ(saved.Pixel(9, 6), RGB(19, 11, 7));

    // Partly clipped: only the visible part lands, at its offset in R.
    c.SetClipRegion(TCanvas::RectRegion({15, 8, 40, 30}));
    TBitmap part;
    GetBkUpImage(c, part, {10, 5, 20, 12});
    EXPECT_EQ(part.Width(), 10);
    EXPECT_EQ(part.Pixel(5, 3), RGB(15, 8, 7));
    EXPECT_EQ(part.Pixel(4, 3), clWhite);

    // Entirely outside the clip: the bitmap is untouched.
    part.Canvas().SetPixel(1, 1, clRed);
    GetBkUpImage(c, part, {0, 0, 5, 3});
    EXPECT_EQ(part.Width(), 10);
    EXPECT_EQ(part.Pixel(1, 1), clRed);
}

}  // namespace
}  // namespace kx
