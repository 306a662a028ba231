// The instrument bevel and the button bevel: frame width, painting order, ring colours.
#include <gtest/gtest.h>

#include <string>

#include "common/pixels.h"
#include "kx/framework/bevelpaint.h"
#include "kx/framework/btnbevel.h"
#include "kx/framework/sbevel.h"
#include "kx/host/bitmap.h"
#include "kx/host/recordingcanvas.h"

namespace kx {
namespace {

// Distinct grey levels so that every ring colour is recognisable.
constexpr TColor kShadowFrom = 0x000000;
constexpr TColor kShadowTo = 0x646464;  // 100
constexpr TColor kHighFrom = 0xC8C8C8;  // 200
constexpr TColor kHighTo = 0xFAFAFA;    // 250
constexpr TColor kGrey25 = 0x323232;    // halfway 0 .. 100
constexpr TColor kGrey225 = 0xE1E1E1;   // halfway 200 .. 250

void UseTestColors(TKxSBevel& b) {
    b.SetColorShadowFrom(kShadowFrom);
    b.SetColorShadowTo(kShadowTo);
    b.SetColorHighLightFrom(kHighFrom);
    b.SetColorHighLightTo(kHighTo);
}

void UseTestColors(TKxBtnBevel& b) {
    b.SetShadowColFrom(kShadowFrom);
    b.SetShadowColTo(kShadowTo);
    b.SetHighlightColFrom(kHighFrom);
    b.SetHighlightColTo(kHighTo);
}

QString Frame(int l, int t, int r, int b, TColor tl, TColor br) {
    return QString::asprintf("Frame3D(%d,%d,%d,%d,%d,%d,1)", l, t, r, b, tl, br);
}

// TotalWidth is what PaintBevel takes from each side before the Offset.
TEST(SBevel, TotalWidthMatchesTheAreaPaintBevelTakes) {
    const struct {
        TBevelLine Line;
        int Spacing, Width, Total;
    } cases[] = {{blNone, 5, 2, 7}, {blOuter, 5, 2, 8}, {blInner, 5, 2, 8}, {blBoth, 5, 2, 9},
                 {blNone, 0, 0, 0}, {blBoth, 0, 0, 2},  {blInner, 3, 6, 10}};
    for (const auto& c : cases) {
        TKxSBevel bevel;
        bevel.SetBevelLine(c.Line);
        bevel.SetSpacing(c.Spacing);
        bevel.SetWidth(c.Width);
        EXPECT_EQ(bevel.TotalWidth(), c.Total) << int(c.Line) << " " << c.Spacing << " " << c.Width;
        TRecordingCanvas canvas;
        TRect r{0, 0, 100, 60};
        bevel.PaintBevel(canvas, r);
        EXPECT_EQ(r, (TRect{c.Total, c.Total, 100 - c.Total, 60 - c.Total}));
    }
}

TEST(SBevel, TotalWidthIsCurrentWhenTheHandlerRuns) {
    TKxSBevel bevel;
    EXPECT_EQ(bevel.TotalWidth(), 7);
    std::vector<int> seen;
    bevel.SetOnChange([&](QObject* sender) {
        EXPECT_EQ(sender, &bevel);
        seen.push_back(bevel.TotalWidth());
    });
    bevel.SetBevelLine(blBoth);
    bevel.SetSpacing(1);
    bevel.SetWidth(4);
    bevel.Offset()->SetTop(20);  // the offset is not part of the frame width
    EXPECT_EQ(seen, (std::vector<int>{9, 5, 7, 7}));
}

TEST(SBevel, ObjectSettersCopyAndNotifyThroughTheNestedObject) {
    TKxSBevel bevel;
    int changes = 0;
    bevel.SetOnChange([&](QObject*) { ++changes; });
    TKxOffset offset;
    offset.Write(1, 2, 3, 4);
    bevel.SetOffset(&offset);
    EXPECT_EQ(changes, 1);
    EXPECT_NE(bevel.Offset(), &offset);
    EXPECT_EQ(bevel.Offset()->Bottom(), 4);
    bevel.SetOffset(bevel.Offset());
    bevel.SetOffset(nullptr);
    EXPECT_EQ(changes, 1);

    TKxGradSettings grad;
    grad.SetVisible(true);
    grad.SetStyle(gsTopRight);
    changes = 0;
    bevel.SetSurfaceGrad(&grad);  // two properties differ, plus the closing Change
    EXPECT_EQ(changes, 3);
    EXPECT_EQ(bevel.SurfaceGrad()->Style(), gsTopRight);
}

TEST(SBevel, PaintBevelDrawsInTheDocumentedOrder) {
    TKxSBevel bevel;
    UseTestColors(bevel);
    bevel.SetBevelLine(blBoth);
    bevel.SetPenColor(clRed);
    bevel.Offset()->Write(1, 2, 3, 4);
    TRecordingCanvas canvas;
    TRect r{0, 0, 100, 60};
    bevel.PaintBevel(canvas, r);
    EXPECT_EQ(r, (TRect{9 + 2, 9 + 1, 91 - 3, 51 - 4}));
    EXPECT_EQ(canvas.Log(), (QStringList{Frame(1, 1, 99, 59, kGrey225, kGrey25),
                                         Frame(2, 2, 98, 58, kHighTo, kShadowTo),
                                         "Rectangle(3,3,97,57)", "Rectangle(0,0,100,60)"}));
    for (const TCanvasCall& c : canvas.CallsOf("Rectangle")) {
        EXPECT_EQ(c.PenColor, clRed);
        EXPECT_EQ(c.PenWidth, 1);
        EXPECT_EQ(c.BrushStyle, bsClear);
    }
}

TEST(SBevel, LinesOnlyWhereBevelLineAsksForThem) {
    struct Case {
        TBevelLine Line;
        QStringList Rectangles;
    };
    for (const Case& c : {Case{blNone, {}}, Case{blOuter, {"Rectangle(0,0,50,40)"}},
                          Case{blInner, {"Rectangle(2,2,48,38)"}}}) {
        TKxSBevel bevel;
        bevel.SetBevelLine(c.Line);
        TRecordingCanvas canvas;
        TRect r{0, 0, 50, 40};
        bevel.PaintBevel(canvas, r);
        EXPECT_EQ(canvas.Log("Rectangle"), c.Rectangles) << int(c.Line);
        const auto frames = canvas.CallsOf("Frame3D");
        ASSERT_EQ(frames.size(), 2u);
        EXPECT_EQ(frames[0].Args[0], c.Line == blOuter ? 1 : 0);
    }
}

// The ring colours for both the instrument bevel and the button bevel, which share
// the frame painter.
TEST(RingColors, FollowTheBlendOfEachPair) {
    const QStringList raised = {Frame(0, 0, 20, 10, kGrey225, kGrey25),
                                Frame(1, 1, 19, 9, kHighTo, kShadowTo)};
    const QStringList lowered = {Frame(0, 0, 20, 10, kGrey25, kGrey225),
                                 Frame(1, 1, 19, 9, kShadowFrom, kHighFrom)};
    // Thirds of 0 .. 100 round to 33 and 67; of 200 .. 250 to 217 and 233.
    const QStringList three = {Frame(0, 0, 20, 10, 0xD9D9D9, 0x212121),
                               Frame(1, 1, 19, 9, 0xE9E9E9, 0x434343),
                               Frame(2, 2, 18, 8, kHighTo, kShadowTo)};
    const struct {
        bool Button, Raised;
        int Width;
        QStringList Frames;
    } cases[] = {{false, true, 2, raised},  {false, false, 2, lowered}, {true, true, 2, raised},
                 {true, false, 2, lowered}, {false, true, 3, three},    {false, true, 0, {}},
                 {true, false, 0, {}}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.Button << c.Raised << c.Width);
        TRecordingCanvas canvas;
        TRect r{0, 0, 20, 10};
        if (c.Button) {
            TKxBtnBevel b;
            UseTestColors(b);
            b.SetWidth(c.Width);
            b.PaintBevel(canvas, r, c.Raised, false, clRed);
        } else {
            TKxSBevel b;
            UseTestColors(b);
            b.SetWidth(c.Width);
            b.PaintGradBevel(canvas, r, c.Raised, false, clRed);
        }
        EXPECT_EQ(canvas.Log(), c.Frames);
        EXPECT_EQ(r, (TRect{c.Width, c.Width, 20 - c.Width, 10 - c.Width}));
    }
}

TEST(RingColors, FillPaintsTheWholeRectFirst) {
    TKxBtnBevel btn;
    UseTestColors(btn);
    TRecordingCanvas canvas;
    TRect r{0, 0, 10, 8};
    btn.PaintBevel(canvas, r, true, true, clRed);
    const TCanvasCall& fill = canvas.Calls().front();
    EXPECT_EQ(fill.ToString(), "Rectangle(0,0,10,8)");
    EXPECT_EQ(fill.PenColor, clRed);
    EXPECT_EQ(fill.BrushColor, clRed);
    EXPECT_EQ(fill.BrushStyle, bsSolid);
    EXPECT_EQ(canvas.CallsOf("Frame3D").size(), 2u);
}

// A ring width far beyond the rectangle still shrinks the rectangle by the full width
// and draws only the rings that fit.
TEST(RingColors, HugeWidthDrawsOnlyWhatFits) {
    TKxSBevel bevel;
    bevel.SetWidth(1000000000);
    TRecordingCanvas canvas;
    TRect r{0, 0, 10, 6};
    bevel.PaintGradBevel(canvas, r, true, false, clRed);
    EXPECT_EQ(canvas.CallsOf("Frame3D").size(), 3u);
    EXPECT_EQ(r, (TRect{1000000000, 1000000000, 10 - 1000000000, 6 - 1000000000}));
}

// Frames far wider and larger than the surface paint what modest ones with the same
// visible edges paint, and take no longer.
TEST(RingColors, FramesFarBeyondTheSurfaceDrawWhatModestOnesDraw) {
    constexpr int32_t G = 1000000000;
    const TKxRingColors colors{kShadowFrom, kShadowTo, kHighFrom, kHighTo};
    const struct {
        bool round;
        TRect huge, modest;
    } cases[] = {
        {false, {5, 5, G, G}, {5, 5, 100, 100}},
        {false, {-G, 3, 15, 17}, {-100, 3, 15, 17}},
        {false, {-G, -G, 12, G}, {-100, -100, 12, 100}},
        // Far-off rounded corners move the near ones by rounding: no picture to compare.
        {true, {5, 5, 1000, 1000}, {5, 5, 100, 100}},
        {true, {-1000, 3, 15, 17}, {-100, 3, 15, 17}},
        {true, {-G, -G, G, G}, {}},
    };
    for (const auto& c : cases) {
        TBitmap huge(20, 20), modest(20, 20);
        TRect h = c.huge, m = c.modest;
        if (c.round) {
            KxPaintRoundGradFrame(huge.Canvas(), h, true, colors, G, 12, 12);
            KxPaintRoundGradFrame(modest.Canvas(), m, true, colors, G, 12, 12);
        } else {
            KxPaintGradFrame(huge.Canvas(), h, false, false, clRed, colors, G);
            KxPaintGradFrame(modest.Canvas(), m, false, false, clRed, colors, G);
        }
        if (c.modest.Right > c.modest.Left) {
            EXPECT_EQ(test::ColourRows(huge), test::ColourRows(modest))
                << c.round << " " << c.huge.Left;
        }
        EXPECT_NE(huge.Pixel(10, 10), clWhite) << c.round << " " << c.huge.Left;
        EXPECT_EQ(h.Top, c.huge.Top + G) << c.round << " " << c.huge.Left;
    }
}

TEST(FilledBevel, FillsWithColorOrTheSurfaceGradient) {
    TKxSBevel bevel;
    UseTestColors(bevel);
    bevel.SetBevelLine(blBoth);
    bevel.SetColor(clYellow);
    bevel.SetPenColor(clBlack);
    {
        TBitmap bmp(40, 30);
        TRect r{0, 0, 40, 30};
        bevel.PaintFilledBevel(bmp.Canvas(), r);
        EXPECT_EQ(r, (TRect{9, 9, 31, 21}));
        EXPECT_EQ(bmp.Pixel(0, 0), clBlack);     // outer line
        EXPECT_EQ(bmp.Pixel(3, 10), clBlack);    // inner line
        EXPECT_EQ(bmp.Pixel(6, 6), clYellow);    // spacing
        EXPECT_EQ(bmp.Pixel(20, 15), clYellow);  // surface
        EXPECT_EQ(bmp.Pixel(1, 1), kGrey225);    // first ring
    }
    bevel.SurfaceGrad()->SetColorFrom(clRed);
    bevel.SurfaceGrad()->SetColorTo(clBlue);
    bevel.SurfaceGrad()->SetVisible(true);  // gsHorizontal1: top to bottom
    {
        TBitmap bmp(40, 30);
        TRect r{0, 0, 40, 30};
        bevel.PaintFilledBevel(bmp.Canvas(), r);
        EXPECT_EQ(bmp.Pixel(9, 9), clRed);
        EXPECT_EQ(bmp.Pixel(30, 20), clBlue);
        EXPECT_EQ(bmp.Pixel(8, 8), clYellow);
        EXPECT_EQ(bmp.Pixel(31, 21), clYellow);
    }
}

TEST(RoundBevel, RoundedRingsAndLinesWithShrinkingCorners) {
    TKxSBevel bevel;
    UseTestColors(bevel);
    bevel.SetBevelLine(blBoth);
    bevel.SetColor(clYellow);
    bevel.SetPenColor(clRed);
    TRecordingCanvas canvas;
    TRect r{0, 0, 40, 30};
    bevel.PaintRoundBevel(canvas, r, 12, 12);
    EXPECT_EQ(r, (TRect{9, 9, 31, 21}));
    EXPECT_EQ(canvas.Log("RoundRect"),
              (QStringList{"RoundRect(0,0,40,30,12,12)",                                // fill
                           "RoundRect(1,1,39,29,10,10)", "RoundRect(1,1,39,29,10,10)",  // ring 1
                           "RoundRect(2,2,38,28,8,8)", "RoundRect(2,2,38,28,8,8)",      // ring 2
                           "RoundRect(3,3,37,27,6,6)",                                  // inner
                           "RoundRect(0,0,40,30,12,12)"}));                             // outer
    const auto rr = canvas.CallsOf("RoundRect");
    EXPECT_EQ(rr[0].BrushColor, clYellow);
    EXPECT_EQ(rr[0].BrushStyle, bsSolid);
    EXPECT_EQ(rr[1].PenColor, kGrey225);
    EXPECT_EQ(rr[2].PenColor, kGrey25);
    EXPECT_EQ(rr[3].PenColor, kHighTo);
    EXPECT_EQ(rr[4].PenColor, kShadowTo);
    EXPECT_EQ(rr[5].PenColor, clRed);
    EXPECT_EQ(rr[5].BrushStyle, bsClear);
    EXPECT_FALSE(canvas.HasClipRegion());
}

TEST(RoundBevel, PixelsAndTheCallersClipSurvive) {
    TBitmap bmp(40, 30);
    TCanvas& c = bmp.Canvas();
    const QRegion clip(0, 0, 40, 30);
    c.SetClipRegion(clip);
    TKxSBevel bevel;
    UseTestColors(bevel);
    bevel.SetColor(clYellow);
    TRect r{0, 0, 40, 30};
    bevel.PaintRoundBevel(c, r, 12, 12);
    EXPECT_TRUE(c.HasClipRegion());
    EXPECT_EQ(c.ClipRegion(), clip);
    EXPECT_EQ(bmp.Pixel(0, 0), clWhite);  // outside the rounded corner
    EXPECT_EQ(bmp.Pixel(20, 0), kGrey225);
    EXPECT_EQ(bmp.Pixel(0, 15), kGrey225);
    EXPECT_EQ(bmp.Pixel(20, 29), kGrey25);
    EXPECT_EQ(bmp.Pixel(39, 15), kGrey25);
    EXPECT_EQ(bmp.Pixel(20, 1), kHighTo);
    EXPECT_EQ(bmp.Pixel(20, 28), kShadowTo);
    EXPECT_EQ(bmp.Pixel(20, 15), clYellow);
}

TEST(LowerRightRegion, SplitsAlongTheAntiDiagonal) {
    const QRegion reg = KxLowerRightRegion(TRect{0, 0, 5, 3});
    std::string s;
    for (int y = 0; y < 3; ++y) {
        for (int x = 0; x < 5; ++x)
            s += reg.contains(QPoint(x, y)) ? 'B' : 'A';
        s += '\n';
    }
    EXPECT_EQ(s,
              "AAAAB\n"
              "AABBB\n"
              "BBBBB\n");
    EXPECT_TRUE(KxLowerRightRegion(TRect{5, 5, 5, 9}).isEmpty());
}

TEST(GradBitmap, FilledOnEveryChangeOnlyWhenSwitchedOn) {
    TKxSBevel bevel;
    bevel.SetColorShadowFrom(clRed);
    EXPECT_EQ(bevel.GradBitmap(), nullptr);
    bevel.UseGradBitmap = true;
    bevel.SetColorShadowTo(clBlue);
    const TBitmap* bmp = bevel.GradBitmap();
    ASSERT_NE(bmp, nullptr);
    EXPECT_EQ(bmp->Width(), 30);
    EXPECT_EQ(bmp->Height(), 30);
    EXPECT_EQ(bmp->Pixel(0, 0), clRed);
    EXPECT_EQ(bmp->Pixel(29, 29), clBlue);
    bevel.SetColorShadowFrom(clLime);
    EXPECT_EQ(bevel.GradBitmap(), bmp);  // made once, refilled
    EXPECT_EQ(bmp->Pixel(0, 0), clLime);
}

}  // namespace
}  // namespace kx
