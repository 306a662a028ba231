#include <gtest/gtest.h>

#include <limits>

#include "kx/drawing/text.h"
#include "kx/host/recordingcanvas.h"
#include "qstring_print.h"

namespace kx {
namespace {

// 10-pixel characters, 13-pixel lines, and a pen and brush the routines must not touch.
class TextCanvas : public TRecordingCanvas {
  public:
    TextCanvas() {
        CharWidth = 10;
        Pen().SetColor(clRed);
        Brush().SetStyle(bsClear);
    }
    ~TextCanvas() override {
        EXPECT_EQ(Pen().Color(), clRed);
        EXPECT_EQ(Brush().Style(), bsClear);
    }
};

TEST(Text, TextOutAnchorsTheBoundingBox) {
    // "abcd" is 40 x 13, anchored at (100, 50); outside the nine it lands at (0, 0).
    const QString want[] = {"100,50", "80,50",  "60,50", "100,44", "80,44",
                            "60,44",  "100,37", "80,37", "60,37",  "0,0"};
    for (int32_t pos = 0; pos <= 9; ++pos) {
        TextCanvas canvas;
        KxTextOut(canvas, 100, 50, "abcd", toPos(pos));
        EXPECT_EQ(canvas.Log(), QStringList{"TextOut(" + want[pos] + ",'abcd')"}) << pos;
    }
}

TEST(Text, MultiLineBlockAnchoring) {
    // Line step 13 + 2; n = number of "|".
    struct Case {
        const char* text;
        toPos pos;
        QStringList log;
    } cases[] = {
        // The block moves up by (15 * 2) div 2, each line again by 13 div 2.
        {"a|b|c",
         toMidLeft,
         {"TextOut(100,79,'a')", "TextOut(100,94,'b')", "TextOut(100,109,'c')"}},
        {"a|bb|c", toBotRight, {"TextOut(90,57,'a')", "TextOut(80,72,'bb')", "TextOut(90,87,'c')"}},
        {"a|b", toMidCenter, {"TextOut(95,87,'a')", "TextOut(95,102,'b')"}},
        // A trailing "|" moves the block but draws no line; an empty line keeps its place.
        {"a|b|", toBotLeft, {"TextOut(100,57,'a')", "TextOut(100,72,'b')"}},
        {"a||c",
         toTopLeft,
         {"TextOut(100,100,'a')", "TextOut(100,115,'')", "TextOut(100,130,'c')"}},
        {"", toMidCenter, {}},
    };
    for (const Case& c : cases) {
        TextCanvas canvas;
        KxTextOutMultiLine(canvas, 100, 100, 2, c.text, c.pos);
        EXPECT_EQ(canvas.Log(), c.log) << c.text;
    }
}

TEST(Text, EmbossedPassesAndFinalColour) {
    for (bool is3D : {true, false}) {
        TextCanvas single, multi;
        KxTextOut3D(single, 100, 50, clNavy, clWhite, clGray, "ab", toTopCenter, is3D);
        KxTextOutMultiLine3D(multi, 10, 20, 0, clNavy, clWhite, clGray, "a|b", toTopLeft, is3D);
        QStringList got, want;
        for (const auto& call : single.Calls())
            got << call.ToString() + QString::number(call.FontColor);
        for (const auto& call : multi.Calls())
            got << call.ToString() + QString::number(call.FontColor);
        const auto pass = [&](const char* text, TColor colour) {
            want << text + QString::number(colour);
        };
        if (is3D) pass("TextOut(91,51,'ab')", clGray), pass("TextOut(89,49,'ab')", clWhite);
        pass("TextOut(90,50,'ab')", clNavy);
        if (is3D) pass("TextOut(11,21,'a')", clGray), pass("TextOut(9,19,'a')", clWhite);
        pass("TextOut(10,20,'a')", clNavy);
        if (is3D) pass("TextOut(11,34,'b')", clGray), pass("TextOut(9,32,'b')", clWhite);
        pass("TextOut(10,33,'b')", clNavy);
        EXPECT_EQ(got, want);
        EXPECT_EQ(single.Font().Color(), clNavy);
        EXPECT_EQ(multi.Font().Color(), clNavy);
    }
}

TEST(Text, MaxTokenSize) {
    struct Case {
        const char* text;
        QChar sep;
        int32_t width;
    } cases[] = {
        {"10;200;5;", u';', 30},
        {"10;200;5", u';', 30},
        {"10;5;200", u';', 10},  // a wider rest takes the last token's width, not its own
        {"abc", u';', 0},
        {"", u';', 0},
        {"Tank|level 1|", u'|', 70},
    };
    for (const Case& c : cases) {
        TextCanvas canvas;
        int32_t w = -1, h = -1;
        if (c.sep == u';')
            KxGetMaxTokenSize(canvas, w, h, c.text);
        else
            KxGetMaxTokenSize2(canvas, w, h, c.text, c.sep);
        EXPECT_EQ(w, c.width) << c.text;
        EXPECT_EQ(h, 13);
    }
}

TEST(Text, RotTextOutAlignsAndTurnsTheReferencePoint) {
    // Anchor (100, 100). The middle alignments move the point up by 13 div 2 before it
    // is turned; at 90 degrees clockwise (100, 94) lands on (106, 100).
    const uint32_t align[] = {0, 6, 2, 0, 6, 2, 24, 14, 10};
    for (int32_t pos = 0; pos < 9; ++pos) {
        const bool mid = pos >= 3 && pos <= 5;
        for (float angle : {0.0f, 90.0f}) {
            TextCanvas canvas;
            canvas.Font().SetOrientation(150);
            KxRotTextOut(canvas, {100, 100}, angle, "abc", toPos(pos));
            ASSERT_EQ(canvas.Calls().size(), 1u);
            const TCanvasCall& call = canvas.Calls()[0];
            const std::vector<int32_t> at = !mid         ? std::vector{100, 100}
                                            : angle == 0 ? std::vector{100, 94}
                                                         : std::vector{106, 100};
            EXPECT_EQ(call.Args, at) << pos << " " << angle;
            EXPECT_EQ(call.TextAlign, align[pos]);
            EXPECT_EQ(call.FontOrientation, angle == 0 ? 0 : -900);
            EXPECT_EQ(canvas.TextAlign(), align[pos]);    // stays in force
            EXPECT_EQ(canvas.Font().Orientation(), 150);  // the font comes back
        }
    }
    // Tenths are truncated; outside the nine the alignment is left alone.
    TextCanvas canvas;
    canvas.SetTextAlign(TA_CENTER | TA_BOTTOM);
    KxRotTextOut(canvas, {10, 20}, -45.67f, "x", toPos(99));
    KxRotTextOut(canvas, {10, 20}, 12.34f, "x", toPos(99));
    KxRotTextOut(canvas, {10, 20}, std::numeric_limits<float>::infinity(), "x", toMidLeft);
    EXPECT_EQ(canvas.Calls()[0].FontOrientation, 456);
    EXPECT_EQ(canvas.Calls()[1].FontOrientation, -123);
    EXPECT_EQ(canvas.Calls()[2].FontOrientation, 0);
    EXPECT_EQ(canvas.Log(),
              (QStringList{"TextOut(10,20,'x')", "TextOut(10,20,'x')", "TextOut(10,20,'x')"}));
    EXPECT_EQ(canvas.Calls()[1].TextAlign, TA_CENTER | TA_BOTTOM);
    EXPECT_EQ(canvas.TextAlign(), TA_LEFT | TA_TOP);  // set by the last call
}

TEST(Text, ElideLinesShortensEachLineToTheWidth) {
    // Seven pixels per character; the ellipsis is one character.
    const struct {
        const char* text;
        int32_t width;
        QString expected;
    } cases[] = {
        {"Pump", 28, "Pump"},
        {"Pump", 27, QString::fromUtf8("Pu\u2026")},
        {"Pump", 7, QString::fromUtf8("\u2026")},
        {"Pump", 6, ""},
        {"Pump|on", 21, QString::fromUtf8("Pu\u2026|on")},
        {"Main pump|B", 14, QString::fromUtf8("M\u2026|B")},
        {"", 0, ""},
        {"x", -5, ""},
    };
    for (const auto& t : cases) {
        TRecordingCanvas c;
        EXPECT_EQ(KxElideLines(c, QString::fromUtf8(t.text), u'|', t.width), t.expected)
            << t.text << " " << t.width;
    }
}

}  // namespace
}  // namespace kx
