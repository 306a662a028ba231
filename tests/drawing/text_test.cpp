#include <gtest/gtest.h>

#include <limits>

#include "drawing/text.h"
#include "host/bitmap.h"
#include "host/recordingcanvas.h"

namespace kx {
namespace {

// A recording canvas with 10-pixel characters and 13-pixel lines.
class TextCanvas : public TRecordingCanvas {
  public:
    TextCanvas() {
        CharWidth = 10;
        LineHeight = 13;
        Pen().SetColor(clRed);
        Pen().SetWidth(3);
        Brush().SetColor(clLime);
        Brush().SetStyle(bsClear);
    }
    // The pen and brush are never the text routines' business.
    void ExpectPenAndBrushUntouched() const {
        EXPECT_EQ(Pen().Color(), clRed);
        EXPECT_EQ(Pen().Width(), 3);
        EXPECT_EQ(Brush().Color(), clLime);
        EXPECT_EQ(Brush().Style(), bsClear);
    }
};

TEST(Text, TextOutAnchorsTheBoundingBox) {
    // "abcd" is 40 wide and 13 high; anchor (100, 50).
    struct Case {
        toPos pos;
        int32_t x, y;
    } cases[] = {
        {toTopLeft, 100, 50},  {toTopCenter, 80, 50}, {toTopRight, 60, 50}, {toMidLeft, 100, 44},
        {toMidCenter, 80, 44}, {toMidRight, 60, 44},  {toBotLeft, 100, 37}, {toBotCenter, 80, 37},
        {toBotRight, 60, 37},  {toPos(9), 0, 0},      {toPos(-1), 0, 0},
    };
    for (const Case& c : cases) {
        TextCanvas canvas;
        KxTextOut(canvas, 100, 50, "abcd", c.pos);
        ASSERT_EQ(canvas.Calls().size(), 1u);
        EXPECT_EQ(canvas.Log(), QStringList{QString("TextOut(%1,%2,'abcd')").arg(c.x).arg(c.y)})
            << int(c.pos);
        canvas.ExpectPenAndBrushUntouched();
    }
}

TEST(Text, HalvesTruncate) {
    // 3 characters = 30 wide, so centre moves by 15; a 13 high text moves up by 6.
    TextCanvas canvas;
    KxTextOut(canvas, 0, 0, "abc", toMidCenter);
    EXPECT_EQ(canvas.Log(), QStringList{"TextOut(-15,-6,'abc')"});
    int32_t w = 0, h = 0;
    TPoint half;
    canvas.CharWidth = 7;
    KxGetTextSize(canvas, w, h, half, "abc");
    EXPECT_EQ(w, 21);
    EXPECT_EQ(h, 13);
    EXPECT_EQ(half, (TPoint{10, 6}));
}

TEST(Text, TextOut3DPassesAndFinalColour) {
    for (bool is3D : {true, false}) {
        TextCanvas canvas;
        KxTextOut3D(canvas, 100, 50, clNavy, clWhite, clGray, "ab", toTopCenter, is3D);
        const auto calls = canvas.CallsOf("TextOut");
        std::vector<std::tuple<int32_t, int32_t, TColor>> got;
        for (const auto& c : calls)
            got.emplace_back(c.Args[0], c.Args[1], c.FontColor);
        std::vector<std::tuple<int32_t, int32_t, TColor>> want;
        if (is3D) want = {{91, 51, clGray}, {89, 49, clWhite}};
        want.emplace_back(90, 50, clNavy);
        EXPECT_EQ(got, want) << is3D;
        EXPECT_EQ(canvas.Font().Color(), clNavy);
        canvas.ExpectPenAndBrushUntouched();
    }
}

TEST(Text, MultiLineBlockAnchoring) {
    // step = 13 + spacing 2 = 15.
    struct Case {
        const char* text;
        toPos pos;
        QStringList log;
    } cases[] = {
        // Middle: the block moves up by (15 * 2) div 2; each line again by 13 div 2.
        {"a|b|c",
         toMidLeft,
         {"TextOut(100,79,'a')", "TextOut(100,94,'b')", "TextOut(100,109,'c')"}},
        {"a|b|c",
         toTopLeft,
         {"TextOut(100,100,'a')", "TextOut(100,115,'b')", "TextOut(100,130,'c')"}},
        {"a|bb|c", toBotRight, {"TextOut(90,57,'a')", "TextOut(80,72,'bb')", "TextOut(90,87,'c')"}},
        {"a|b", toMidCenter, {"TextOut(95,87,'a')", "TextOut(95,102,'b')"}},  // 15 div 2 = 7
        // A trailing "|" moves the block but draws no empty line.
        {"a|b|", toBotLeft, {"TextOut(100,57,'a')", "TextOut(100,72,'b')"}},
        {"a|b|", toTopLeft, {"TextOut(100,100,'a')", "TextOut(100,115,'b')"}},
        // An empty line in the middle keeps its place.
        {"a||c",
         toTopLeft,
         {"TextOut(100,100,'a')", "TextOut(100,115,'')", "TextOut(100,130,'c')"}},
        {"", toMidCenter, {}},
        // Outside the nine: block at y, each line at (0, 0).
        {"a|b", toPos(12), {"TextOut(0,0,'a')", "TextOut(0,0,'b')"}},
    };
    for (const Case& c : cases) {
        TextCanvas canvas;
        KxTextOutMultiLine(canvas, 100, 100, 2, c.text, c.pos);
        EXPECT_EQ(canvas.Log(), c.log) << c.text << " " << int(c.pos);
        canvas.ExpectPenAndBrushUntouched();
    }
}

TEST(Text, MultiLine3DDrawsThreePassesPerLine) {
    TextCanvas canvas;
    KxTextOutMultiLine3D(canvas, 10, 20, 0, clBlack, clWhite, clGray, "a|b", toTopLeft, true);
    EXPECT_EQ(canvas.Log(),
              (QStringList{"TextOut(11,21,'a')", "TextOut(9,19,'a')", "TextOut(10,20,'a')",
                           "TextOut(11,34,'b')", "TextOut(9,32,'b')", "TextOut(10,33,'b')"}));
    std::vector<TColor> colours;
    for (const auto& c : canvas.Calls())
        colours.push_back(c.FontColor);
    EXPECT_EQ(colours, (std::vector<TColor>{clGray, clWhite, clBlack, clGray, clWhite, clBlack}));
    EXPECT_EQ(canvas.Font().Color(), clBlack);

    TextCanvas flat;
    KxTextOutMultiLine3D(flat, 10, 20, 0, clMaroon, clWhite, clGray, "a|b", toTopLeft, false);
    EXPECT_EQ(flat.Log(), (QStringList{"TextOut(10,20,'a')", "TextOut(10,33,'b')"}));
    EXPECT_EQ(flat.Font().Color(), clMaroon);
}

TEST(Text, MaxTokenSize) {
    // 10-pixel characters.
    struct Case {
        const char* text;
        int32_t width;
    } cases[] = {
        {"10;200;5;", 30},
        {"10;200;5", 30},  // the rest "5" is narrower: no effect
        // A wider rest takes the width of the last token taken, not its own.
        {"10;5;200", 10},
        {"1000;5;200", 40},  // the rest is not wider than 40
        {"abc", 0},          // no separator: the last token is empty
        {"", 0},
        {";", 0},
    };
    for (const Case& c : cases) {
        TextCanvas canvas;
        int32_t w = -1, h = -1;
        KxGetMaxTokenSize(canvas, w, h, c.text);
        EXPECT_EQ(w, c.width) << c.text;
        EXPECT_EQ(h, 13);
    }
    TextCanvas canvas;
    int32_t w = 0, h = 0;
    KxGetMaxTokenSize2(canvas, w, h, "Tank|level 1|", u'|');
    EXPECT_EQ(w, 70);
    KxGetMaxTokenSize2(canvas, w, h, "10;200;5;", u'|');
    EXPECT_EQ(w, 0);
    EXPECT_TRUE(canvas.Calls().empty());
}

TEST(Text, RotTextOutAlignmentAndReferencePoint) {
    // Text height 13: the middle alignments move the reference point up by 6 before
    // it is turned about the anchor (100, 100).
    struct Case {
        toPos pos;
        uint32_t align;
        int32_t x0, y0;    // angle 0
        int32_t x90, y90;  // angle 90, clockwise
    } cases[] = {
        {toTopLeft, 0, 100, 100, 100, 100},   {toTopCenter, 6, 100, 100, 100, 100},
        {toTopRight, 2, 100, 100, 100, 100},  {toMidLeft, 0, 100, 94, 106, 100},
        {toMidCenter, 6, 100, 94, 106, 100},  {toMidRight, 2, 100, 94, 106, 100},
        {toBotLeft, 24, 100, 100, 100, 100},  {toBotCenter, 14, 100, 100, 100, 100},
        {toBotRight, 10, 100, 100, 100, 100},
    };
    for (const Case& c : cases) {
        for (float angle : {0.0f, 90.0f}) {
            TextCanvas canvas;
            canvas.SetTextAlign(TA_RIGHT | TA_BASELINE);
            KxRotTextOut(canvas, {100, 100}, angle, "abc", c.pos);
            const auto calls = canvas.CallsOf("TextOut");
            ASSERT_EQ(calls.size(), 1u);
            const bool turned = angle != 0;
            EXPECT_EQ(calls[0].Args,
                      (std::vector<int32_t>{turned ? c.x90 : c.x0, turned ? c.y90 : c.y0}))
                << int(c.pos) << " " << angle;
            EXPECT_EQ(calls[0].TextAlign, c.align);
            EXPECT_EQ(calls[0].FontOrientation, turned ? -900 : 0);
            // The alignment stays; the font comes back as it was.
            EXPECT_EQ(canvas.TextAlign(), c.align);
            EXPECT_EQ(canvas.Font().Orientation(), 0);
            canvas.ExpectPenAndBrushUntouched();
        }
    }
}

TEST(Text, RotTextOutOrientationTruncatesTenths) {
    struct Case {
        float angle;
        int32_t orientation;
    } cases[] = {{12.34f, -123},
                 {-45.67f, 456},
                 {0.09f, 0},
                 {-359.99f, 3599},
                 {std::numeric_limits<float>::quiet_NaN(), 0}};
    for (const Case& c : cases) {
        TextCanvas canvas;
        canvas.Font().SetOrientation(150);
        canvas.Font().SetColor(clTeal);
        KxRotTextOut(canvas, {10, 10}, c.angle, "x", toTopLeft);
        ASSERT_EQ(canvas.Calls().size(), 1u);
        EXPECT_EQ(canvas.Calls()[0].FontOrientation, c.orientation) << c.angle;
        EXPECT_EQ(canvas.Calls()[0].FontColor, clTeal);
        EXPECT_EQ(canvas.Font().Orientation(), 150);
    }
    // Outside the nine: the alignment is left alone and the text drawn at the anchor.
    TextCanvas canvas;
    canvas.SetTextAlign(TA_CENTER | TA_BOTTOM);
    KxRotTextOut(canvas, {10, 20}, 30, "x", toPos(99));
    EXPECT_EQ(canvas.Log(), QStringList{"TextOut(10,20,'x')"});
    EXPECT_EQ(canvas.TextAlign(), TA_CENTER | TA_BOTTOM);
}

// Bounding box of the pixels that are not white.
TRect InkBounds(const TBitmap& bmp) {
    TRect r{bmp.Width(), bmp.Height(), -1, -1};
    for (int32_t y = 0; y < bmp.Height(); ++y)
        for (int32_t x = 0; x < bmp.Width(); ++x)
            if (bmp.Pixel(x, y) != clWhite) {
                r.Left = std::min(r.Left, x);
                r.Top = std::min(r.Top, y);
                r.Right = std::max(r.Right, x + 1);
                r.Bottom = std::max(r.Bottom, y + 1);
            }
    return r;
}

TEST(Text, RotatedTextRunsDownwardsFromTheAnchor) {
    TBitmap bmp(200, 200);
    TCanvas& c = bmp.Canvas();
    c.Font().SetName("Arial");
    c.Font().SetSize(12);
    c.Font().SetColor(clBlack);
    c.Brush().SetStyle(bsClear);
    const QString text = "HHHHHHHH";
    const int32_t w = c.TextWidth(text);
    KxRotTextOut(c, {100, 50}, 90, text, toTopLeft);
    const TRect ink = InkBounds(bmp);
    ASSERT_GT(ink.Right, ink.Left);
    // Turned clockwise: the text runs down from the anchor, its top to the right, so
    // its body lies left of the anchor column.
    EXPECT_GT(ink.Height(), 3 * ink.Width());
    EXPECT_GE(ink.Top, 50);
    EXPECT_LE(ink.Top, 53);
    EXPECT_NEAR(ink.Bottom, 50 + w, 3);
    EXPECT_LE(ink.Right, 101);
    EXPECT_EQ(c.Font().Orientation(), 0);
}

}  // namespace
}  // namespace kx
