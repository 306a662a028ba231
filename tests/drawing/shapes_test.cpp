#include <gtest/gtest.h>

#include "drawing/shapes.h"
#include "host/recordingcanvas.h"

namespace kx {
namespace {

QString Frame(int32_t l, int32_t t, int32_t r, int32_t b, TColor top, TColor bottom) {
    return QString("Frame3D(%1,%2,%3,%4,%5,%6,1)").arg(l).arg(t).arg(r).arg(b).arg(top).arg(bottom);
}

TEST(Shapes, BtnBevelFramesAndResult) {
    struct Case {
        bool raised, fill;
        QStringList log;
    } cases[] = {
        {true,
         false,
         {Frame(0, 0, 20, 10, clBtnHighlight, clBlack),
          Frame(1, 1, 19, 9, kBevelGrey, clBtnShadow)}},
        {false,
         false,
         {Frame(0, 0, 20, 10, clBlack, clBtnHighlight),
          Frame(1, 1, 19, 9, clBtnShadow, kBevelGrey)}},
        {true,
         true,
         {"Rectangle(0,0,20,10)", Frame(0, 0, 20, 10, clBtnHighlight, clBlack),
          Frame(1, 1, 19, 9, kBevelGrey, clBtnShadow)}},
    };
    for (const Case& c : cases) {
        TRecordingCanvas canvas;
        canvas.Brush().SetStyle(bsClear);
        TRect r{0, 0, 20, 10};
        KxBtnBevel(canvas, r, c.raised, c.fill, clYellow);
        EXPECT_EQ(canvas.Log(), c.log);
        EXPECT_EQ(r, (TRect{2, 2, 18, 8}));
        if (c.fill) {
            EXPECT_EQ(canvas.Calls()[0].BrushColor, clYellow);
            EXPECT_EQ(canvas.Calls()[0].BrushStyle, bsSolid);
        }
    }
}

TEST(Shapes, Ellipse3DSequence) {
    for (bool raised : {true, false}) {
        TRecordingCanvas canvas;
        canvas.Pen().SetWidth(4);
        canvas.Brush().SetStyle(bsClear);
        TRect r{0, 0, 21, 21};
        KxEllipse3D(canvas, r, clRed, raised);
        EXPECT_EQ(canvas.Log(),
                  (QStringList{"Ellipse(0,0,21,21)", "Ellipse(0,0,19,19)", "Ellipse(1,1,19,19)"}));
        const TColor first = raised ? clBtnShadow : clBtnHighlight;
        const TColor second = raised ? clBtnHighlight : clBtnShadow;
        const TColor want[] = {first, second, clRed};
        for (size_t i = 0; i < 3; ++i) {
            const auto& call = canvas.Calls()[i];
            EXPECT_EQ(call.PenColor, want[i]);
            EXPECT_EQ(call.BrushColor, want[i]);
            EXPECT_EQ(call.BrushStyle, bsSolid);
            EXPECT_EQ(call.PenWidth, 1);
        }
        EXPECT_EQ(r, (TRect{1, 1, 19, 19}));
    }
}

TEST(Shapes, CircleAtPointIsSunk) {
    TRecordingCanvas canvas;
    KxCircleAtPoint(canvas, {50, 40}, 5, clRed, clLime);
    EXPECT_EQ(canvas.Log(), (QStringList{"Ellipse(45,35,56,46)", "Arc(45,35,56,46,57,35,45,46)"}));
    const auto& calls = canvas.Calls();
    EXPECT_EQ(calls[0].PenColor, clBtnHighlight);  // the pen colour argument never shows
    EXPECT_EQ(calls[0].BrushColor, clLime);
    EXPECT_EQ(calls[1].PenColor, clBtnShadow);
}

TEST(Shapes, ThumbBoxes) {
    struct Case {
        int32_t size;
        bool vertical;
        TColor color;
        TRect box, inner, grip;
        TColor line;
    } cases[] = {
        // Horizontal 20: half width Round(4.0) = 4, half height 10; 20 div 25 = 0.
        {20, false, clRed, {46, 40, 55, 61}, {47, 41, 54, 60}, {48, 42, 53, 59}, clBlack},
        // Vertical 30: half width 15, half height Round(6.0) = 6; 30 div 25 = 1.
        {30, true, clBtnShadow, {35, 44, 66, 57}, {36, 45, 65, 56}, {38, 47, 63, 54}, clBtnShadow},
        // 12 * 0.2 = 2.4 rounds to 2.
        {12, false, clBlue, {48, 44, 53, 57}, {49, 45, 52, 56}, {50, 46, 51, 55}, clBlack},
    };
    for (const Case& c : cases) {
        TRecordingCanvas canvas;
        KxThumb(canvas, {50, 50}, c.size, 99, c.vertical, c.color);
        const auto rect = [](const TRect& r) {
            return QString("Rectangle(%1,%2,%3,%4)")
                .arg(r.Left)
                .arg(r.Top)
                .arg(r.Right)
                .arg(r.Bottom);
        };
        const TRect& b = c.box;
        const TRect& i = c.inner;
        EXPECT_EQ(
            canvas.Log(),
            (QStringList{rect(b), Frame(b.Left, b.Top, b.Right, b.Bottom, clBtnShadow, c.line),
                         Frame(i.Left, i.Top, i.Right, i.Bottom, clBtnHighlight, clBtnShadow),
                         rect(c.grip)}))
            << c.size;
        const auto& calls = canvas.Calls();
        EXPECT_EQ(calls[0].PenColor, clBtnFace);
        EXPECT_EQ(calls[0].BrushColor, clBtnFace);
        EXPECT_EQ(calls[3].PenColor, c.line);
        EXPECT_EQ(calls[3].BrushColor, c.color);
        EXPECT_EQ(calls[3].BrushStyle, bsSolid);
    }
}

TEST(Shapes, HPointerTip) {
    struct Case {
        TRect r;
        int32_t position;
        int32_t tip;
    } cases[] = {
        {{10, 20, 210, 40}, 500, 110},
        {{10, 20, 210, 40}, 0, 10},
        {{10, 20, 210, 40}, 1000, 210},
        // 25 / 1000 in single precision is a little above 0.025: 2.50000004 rounds up.
        {{0, 20, 25, 40}, 100, 3},
        // Half-even where the product is exact: 0.5 * 5 = 2.5 gives 2.
        {{0, 20, 500, 40}, 5, 2},
    };
    for (const Case& c : cases) {
        TRecordingCanvas canvas;
        KxDrawHPointer(canvas, c.r, c.position, 4, 7, false);
        EXPECT_EQ(
            canvas.Log(),
            QStringList{
                QString("Polygon(%1,20,%2,27,%3,27)").arg(c.tip).arg(c.tip + 4).arg(c.tip - 4)})
            << c.position;
    }
}

TEST(Shapes, RoundSectorRadials) {
    struct Case {
        float start, sweep;
        QString pie;
    } cases[] = {
        {0, 90, "Pie(0,0,100,100,100,50,50,0)"},
        {90, 90, "Pie(0,0,100,100,50,100,100,50)"},
        {-90, 180, "Pie(0,0,100,100,100,50,0,50)"},
        {45, 45, "Pie(0,0,100,100,100,50,85,15)"},
    };
    for (const Case& c : cases) {
        TRecordingCanvas canvas;
        KxRoundSector(canvas, {0, 0, 100, 100}, c.start, c.sweep);
        EXPECT_EQ(canvas.Log(), QStringList{c.pie}) << c.start << " " << c.sweep;
    }
}

TEST(Shapes, RoundSectorFillsTwelveToThree) {
    TBitmap bmp(100, 100);
    TCanvas& c = bmp.Canvas();
    c.Pen().SetColor(clBlack);
    c.Brush().SetColor(clRed);
    KxRoundSector(c, {0, 0, 100, 100}, 0, 90);
    EXPECT_EQ(bmp.Pixel(70, 30), clRed);
    EXPECT_EQ(bmp.Pixel(30, 30), clWhite);
    EXPECT_EQ(bmp.Pixel(70, 70), clWhite);
    EXPECT_EQ(bmp.Pixel(30, 70), clWhite);
}

TEST(Shapes, CircleGradFillLines) {
    TRecordingCanvas canvas;
    const TColor from = RGB(0, 100, 200);
    const TColor to = RGB(156, 100, 44);
    KxCircleGradFill(canvas, {10, 20, 110, 120}, from, to);
    const auto& calls = canvas.Calls();
    ASSERT_GE(calls.size(), 2u);
    EXPECT_EQ(calls.front().ToString(), "SetClipRegion(10,20,110,120)");
    EXPECT_EQ(calls.back().Op, "ClearClipRegion");
    EXPECT_FALSE(canvas.HasClipRegion());
    const auto moves = canvas.CallsOf("MoveTo");
    const auto lines = canvas.CallsOf("LineTo");
    // k = Round(22.000000000000004) = 22, n = 2 * 78 = 156: lines 0 .. 156.
    ASSERT_EQ(moves.size(), 157u);
    ASSERT_EQ(lines.size(), 157u);
    EXPECT_EQ(moves[0].Args, (std::vector<int32_t>{31, 20}));
    EXPECT_EQ(lines[0].Args, (std::vector<int32_t>{9, 42}));
    EXPECT_EQ(moves[156].Args, (std::vector<int32_t>{187, 20}));
    EXPECT_EQ(lines[156].Args, (std::vector<int32_t>{9, 198}));
    // One colour step per line here (dR = 156, dB = -156), from `from` to `to`.
    EXPECT_EQ(lines[0].PenColor, from);
    EXPECT_EQ(lines[1].PenColor, RGB(1, 100, 199));
    EXPECT_EQ(lines[78].PenColor, RGB(78, 100, 122));
    EXPECT_EQ(lines[156].PenColor, to);
    EXPECT_EQ(lines[0].PenWidth, 1);
}

TEST(Shapes, CircleGradFillQuirksAndClip) {
    // Right and bottom exchanged for the clip ellipse: (0, 0, 50, 100) for a 100 x 50 rect.
    TRecordingCanvas canvas;
    canvas.SetClipRegion(TCanvas::RectRegion({0, 0, 5, 5}));
    canvas.ClearCalls();
    KxCircleGradFill(canvas, {0, 0, 100, 50}, clBlack, clWhite);
    EXPECT_EQ(canvas.Calls().front().ToString(), "SetClipRegion(0,0,50,100)");
    // The previous clip is not restored.
    EXPECT_FALSE(canvas.HasClipRegion());

    // Half steps round to even: dR = 1 over n = 2 gives 0, 0 (0.5 -> 0), 1.
    TRecordingCanvas small;
    KxCircleGradFill(small, {0, 0, 1, 1}, RGB(10, 0, 0), RGB(11, 0, 0));
    const auto lines = small.CallsOf("LineTo");
    ASSERT_EQ(lines.size(), 3u);  // w = 1, k = 0, n = 2
    EXPECT_EQ(GetRValue(lines[0].PenColor), 10);
    EXPECT_EQ(GetRValue(lines[1].PenColor), 10);
    EXPECT_EQ(GetRValue(lines[2].PenColor), 11);

    TRecordingCanvas empty;
    KxCircleGradFill(empty, {0, 0, -10, -10}, clBlack, clWhite);
    EXPECT_EQ(empty.Log(), (QStringList{"SetClipRegion(0,0,0,0)", "ClearClipRegion()"}));
}

TEST(Shapes, CircleGradFillPixels) {
    TBitmap bmp(100, 100);
    KxCircleGradFill(bmp.Canvas(), {0, 0, 100, 100}, clBlack, clWhite);
    // Corners lie outside the circle; the shade grows along the main diagonal.
    EXPECT_EQ(bmp.Pixel(1, 1), clWhite);
    EXPECT_EQ(bmp.Pixel(98, 98), clWhite);
    int last = -1;
    for (int32_t d = 20; d <= 80; d += 5) {
        const int v = GetRValue(bmp.Pixel(d, d));
        EXPECT_GT(v, last) << d;
        EXPECT_EQ(bmp.Pixel(d, d), RGB(v, v, v));
        last = v;
    }
    EXPECT_FALSE(bmp.Canvas().HasClipRegion());
}

TEST(Shapes, BkUpImageCopiesTheVisiblePart) {
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

    // Partly outside the clip: only the visible part lands, at its offset in R.
    c.SetClipRegion(TCanvas::RectRegion({15, 8, 40, 30}));
    TBitmap part;
    GetBkUpImage(c, part, {10, 5, 20, 12});
    ASSERT_EQ(part.Width(), 10);
    ASSERT_EQ(part.Height(), 7);
    EXPECT_EQ(part.Pixel(5, 3), RGB(15, 8, 7));
    EXPECT_EQ(part.Pixel(9, 6), RGB(19, 11, 7));
    EXPECT_EQ(part.Pixel(4, 3), clWhite);
    EXPECT_EQ(part.Pixel(5, 2), clWhite);
}

TEST(Shapes, BkUpImageOutsideTheClipLeavesTheBitmap) {
    TBitmap screen(40, 30);
    screen.Canvas().SetClipRegion(TCanvas::RectRegion({0, 0, 10, 10}));
    TBitmap saved(3, 4);
    saved.Canvas().SetPixel(1, 1, clRed);
    GetBkUpImage(screen.Canvas(), saved, {20, 20, 30, 25});
    EXPECT_EQ(saved.Width(), 3);
    EXPECT_EQ(saved.Height(), 4);
    EXPECT_EQ(saved.Pixel(1, 1), clRed);
}

}  // namespace
}  // namespace kx
