#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <vector>

#include "scale_util.h"

namespace kx {
namespace {

using namespace kx::test;
using Fixture = ScaleFixture;

TEST(ScaleSettings, StepSettersCheckRangeButNeverCompare) {
    struct Case {
        bool sub;
        int32_t value;
        bool notifies;
        int32_t after;
    } cases[] = {
        {false, 0, false, 5}, {false, 21, false, 5}, {false, -3, false, 5}, {false, 5, true, 5},
        {false, 1, true, 1},  {false, 20, true, 20}, {true, 0, false, 2},   {true, 11, false, 2},
        {true, 2, true, 2},   {true, 1, true, 1},    {true, 10, true, 10},
    };
    for (const auto& c : cases) {
        TScaleSettings s;
        int changes = 0;
        s.SetOnChange([&](QObject* sender) {
            EXPECT_EQ(sender, &s);
            ++changes;
        });
        c.sub ? s.SetSubSteps(c.value) : s.SetSteps(c.value);
        EXPECT_EQ(changes, c.notifies ? 1 : 0) << (c.sub ? "SubSteps " : "Steps ") << c.value;
        EXPECT_EQ(c.sub ? s.SubSteps() : s.Steps(), c.after) << c.value;
    }
}

TEST(ScaleSettings, FontIsOwnedAndReportsThroughChange) {
    TScaleSettings s;
    EXPECT_EQ(S(s.Font()->Name()), "Arial");
    EXPECT_EQ(s.Font()->Size(), 14);
    std::vector<QObject*> senders;
    s.SetOnChange([&](QObject* sender) { senders.push_back(sender); });
    s.Font()->SetSize(10);
    TFont other;
    other.SetName("Courier New");
    s.SetFont(&other);
    s.SetFont(nullptr);
    ASSERT_EQ(senders.size(), 2u);
    EXPECT_EQ(senders[0], &s);
    EXPECT_EQ(senders[1], &s);
    EXPECT_EQ(S(s.Font()->Name()), "Courier New");
    EXPECT_NE(s.Font(), &other);
}

TEST(ScaleSettings, AssignToGoesThroughTheSettersInOrder) {
    TScaleSettings src;
    src.SetColor(clRed);
    src.SetDrawLine(false);
    src.Font()->SetName("Courier New");
    src.SetPointerColor(clBlue);
    src.SetPosLeftTop(true);
    src.SetSteps(7);
    src.SetSubSteps(4);
    src.SetValueFormat("0.0");
    src.SetValueFormatLog("0.0e+0");

    TScaleSettings dst;
    // At each notification: how many properties, in the documented order, already hold
    // the source's value.
    std::vector<int> progress;
    dst.SetOnChange([&](QObject*) {
        const bool done[] = {dst.Color() == clRed,
                             !dst.DrawLine(),
                             dst.Font()->Name() == u"Courier New",
                             dst.PointerColor() == clBlue,
                             dst.PosLeftTop(),
                             dst.Steps() == 7,
                             dst.SubSteps() == 4,
                             dst.ValueFormat() == u"0.0",
                             dst.ValueFormatLog() == u"0.0e+0"};
        int n = 0;
        while (n < 9 && done[n])
            ++n;
        for (int k = n; k < 9; ++k)
            EXPECT_FALSE(done[k]) << "property " << k << " set early";
        progress.push_back(n);
    });
    dst.Assign(&src);
    EXPECT_EQ(progress, (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8, 9}));

    // Equal settings still notify for the font, the steps and the sub-steps.
    progress.clear();
    dst.Assign(&src);
    EXPECT_EQ(progress.size(), 3u);
}

TEST(ScaleSettings, AssignFromAnotherClassIsAConversionError) {
    TScaleSettings s;
    TKxPersistent other;
    EXPECT_THROW(s.Assign(&other), EConvertError);
    EXPECT_THROW(s.AssignTo(&other), EConvertError);
}

TEST(ScaleSettings, LogScaleStepsFallOnWholeDecades) {
    // steps, decades, log steps
    const int32_t cases[][3] = {
        // clang-format off
        {5, 6, 3}, {5, 7, 1}, {1, 4, 1}, {4, 4, 4}, {5, 0, 1}, {20, 0, 1}, {0, 6, 1}, {-5, 6, 1},
        {20, 12, 12}, {7, 12, 6}, {5, -6, 3}, {2, 9, 1}, {20, 97, 1}, {20, 40, 20}, {3, 2, 2},
        {20, INT_MIN, 16}, {INT_MAX, 1000003, 1000003},
        // clang-format on
    };
    for (const auto& c : cases)
        EXPECT_EQ(TScaleSettings::CalcLogScaleSteps(c[0], c[1]), c[2]) << c[0] << ", " << c[1];
}

TEST(ScaleSettings, LinearLabelsRunWithTheScale) {
    Fixture f;
    f.scale.SetColor(clNavy);
    f.scale.CalcSize(f.canvas, 0, 100);
    EXPECT_EQ(S(f.scale.Labels), "100;80;60;40;20;0;");
    // The labels were measured in the scale's font; the pen takes the scale colour.
    EXPECT_EQ(S(f.canvas.Font().Name()), "Arial");
    EXPECT_EQ(f.canvas.Pen().Color(), clNavy);
    f.scale.CalcHSize(f.canvas, 0, 100);
    EXPECT_EQ(S(f.scale.Labels), "0;20;40;60;80;100;");
    f.scale.CalcRSize(f.canvas, 0, 100);
    EXPECT_EQ(S(f.scale.Labels), "0;20;40;60;80;100;");
    f.scale.SetSteps(2);
    f.scale.SetValueFormat("0.0");
    f.scale.CalcSize(f.canvas, -1, 1);
    EXPECT_EQ(S(f.scale.Labels), "1.0;0.0;-1.0;");
}

TEST(ScaleSettings, SizeOperationsMeasureTheLabels) {
    // Labels "100" are 21 wide with 7-pixel characters.
    struct Case {
        const char* op;
        int32_t lineHeight;
        int32_t penWidth, stepLength, subStepLength, textGap, thickness, minLength, margin;
    } cases[] = {
        // 14 high: a thin pen, and the thin-pen rule for the sub-step length.
        {"V", 14, 1, 10, 5, 4, 21 + 10 + 4, 98, 3},
        {"H", 14, 1, 10, 5, 2, 7 + 10 + 2, 147, 3},
        // 28 high: pen 2, sub-step Round(20 / 1.4).
        {"V", 28, 2, 20, 14, 9, 21 + 20 + 9, 196, 4},
        {"H", 28, 2, 20, 14, 5, 14 + 20 + 5, 147, 4},
        // Halves round to even: 7 / 14 = 0.5 -> pen 0; 35 / 14 = 2.5 -> pen 2.
        {"V", 7, 0, 5, 4, 2, 21 + 5 + 2, 49, 3},
        {"H", 35, 2, 25, 18, 7, 17 + 25 + 7, 147, 4},
        // 21 / 14 = 1.5 -> pen 2 (and 15 / 1.4 = 10.7 -> 11).
        {"V", 21, 2, 15, 11, 7, 21 + 15 + 7, 147, 4},
    };
    for (const auto& c : cases) {
        Fixture f(c.lineHeight);
        const bool vertical = c.op[0] == 'V';
        vertical ? f.scale.CalcSize(f.canvas, 0, 100) : f.scale.CalcHSize(f.canvas, 0, 100);
        SCOPED_TRACE(std::string(c.op) + " " + std::to_string(c.lineHeight));
        EXPECT_EQ(f.scale.MaxTextWidth, 21);
        EXPECT_EQ(f.scale.MaxTextHeight, c.lineHeight);
        EXPECT_EQ(f.scale.StepPenWidth, c.penWidth);
        EXPECT_EQ(f.scale.StepLength, c.stepLength);
        EXPECT_EQ(f.scale.SubStepLength, c.subStepLength);
        EXPECT_EQ(f.scale.TextGap, c.textGap);
        EXPECT_EQ(f.scale.ScaleThickness, c.thickness);
        EXPECT_EQ(f.scale.ScaleMinLength, c.minLength);
        EXPECT_EQ(f.scale.EdgeMargin, c.margin);
        EXPECT_EQ(f.scale.LineWidth, c.penWidth);
    }
}

TEST(ScaleSettings, RoundSizeOperation) {
    struct Case {
        int32_t lineHeight;
        double from, to;
        int32_t width, penWidth, textGap, margin;
    } cases[] = {
        {14, 0, 100, 21, 1, 11, 3},   // the wider label decides the gap
        {28, 0, 100, 21, 2, 15, 4},   // the taller label decides it
        {14, -10, 10, 21, 1, 11, 3},  // "-10"
        // The labels run 1 + 5 * -0.2f = -1.5e-8, printed "0" (not "-0"), then 0.2 ... 1.
        {14, 0, 1, 7, 1, 8, 3},
    };
    for (const auto& c : cases) {
        Fixture f(c.lineHeight);
        f.scale.CalcRSize(f.canvas, c.from, c.to);
        EXPECT_EQ(f.scale.MaxTextWidth, c.width) << c.from << ".." << c.to;
        EXPECT_EQ(f.scale.StepPenWidth, c.penWidth);
        EXPECT_EQ(f.scale.TextGap, c.textGap);
        EXPECT_EQ(f.scale.EdgeMargin, c.margin);
    }
}

TEST(ScaleSettings, LogRangesUseDecadeExponents) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    struct Case {
        double from, to;
        int32_t logFrom, logTo, logSteps;
        const char* vertical;
        const char* horizontal;
    } cases[] = {
        {1, 1e6, 0, 6, 3, "1e6;1e4;1e2;1e0;", "1e0;1e2;1e4;1e6;"},
        {1, 1000, 0, 3, 3, "1e3;1e2;1e1;1e0;", "1e0;1e1;1e2;1e3;"},
        {0.01, 1e5, -2, 5, 1, "1e5;1e-2;", "1e-2;1e5;"},
        {3.2, 310, 1, 2, 1, "1e2;1e1;", "1e1;1e2;"},
        // Bounds without a logarithm count as 1.
        {0, 100, 0, 2, 2, "1e2;1e1;1e0;", "1e0;1e1;1e2;"},
        {-5, nan, 0, 0, 1, "1e0;", "1e0;"},
        // An infinite bound stops at the limit exponent.
        {1, inf, 0, 400, 5, nullptr, nullptr},
    };
    for (const auto& c : cases) {
        Fixture f;
        f.scale.LogScale = true;
        SCOPED_TRACE(std::to_string(c.from) + ".." + std::to_string(c.to));
        f.scale.CalcSize(f.canvas, c.from, c.to);
        EXPECT_EQ(f.scale.LogFrom, c.logFrom);
        EXPECT_EQ(f.scale.LogTo, c.logTo);
        EXPECT_EQ(f.scale.LogSteps, c.logSteps);
        if (c.vertical) {
            EXPECT_EQ(S(f.scale.Labels), c.vertical);
        }
        f.scale.CalcHSize(f.canvas, c.from, c.to);
        if (c.horizontal) {
            EXPECT_EQ(S(f.scale.Labels), c.horizontal);
        }
        // The step count of the extents follows the log steps.
        EXPECT_EQ(f.scale.ScaleMinLength,
                  std::lround(f.scale.MaxTextWidth * f.scale.LogSteps * 1.4));
    }
}

// Two steps of two sub-steps over 0..100 on (10, 20, 110, 60), 14-pixel labels:
// step length 10, sub-step length 5, gap 2; steps at 10, 60, 110.
TEST(HorizScala, LabelsBelowTheBaseLine) {
    Fixture f;
    f.scale.SetSteps(2);
    f.Horiz(Rect(10, 20, 110, 60));
    EXPECT_EQ(f.scale.ScaleStart, 10);
    EXPECT_EQ(f.scale.ScaleEnd, 110);
    const std::vector<Seg> segs = {
        {{10, 20}, {110, 20}, 1},                                                     // base line
        {{10, 20}, {10, 30}, 1},   {{10, 20}, {10, 25}, 1}, {{35, 20}, {35, 25}, 1},  // step 0
        {{60, 20}, {60, 30}, 1},   {{60, 20}, {60, 25}, 1}, {{85, 20}, {85, 25}, 1},  // step 1
        {{110, 20}, {110, 30}, 1},                                                    // last
    };
    EXPECT_EQ(Segments(f.canvas), segs);
    // Anchored top-centre at y = 20 + 10 + 2.
    const std::vector<Text> texts = {{{7, 32}, "0"}, {{53, 32}, "50"}, {{100, 32}, "100"}};
    EXPECT_EQ(Texts(f.canvas), texts);
    // Ticks, label and sub-ticks alternate step by step.
    const QStringList ops = f.canvas.Log();
    EXPECT_EQ(ops.indexOf("TextOut(7,32,'0')"), 4);
    EXPECT_EQ(ops.indexOf("TextOut(100,32,'100')"), ops.size() - 3);
}

TEST(HorizScala, LabelsAboveTheBaseLine) {
    Fixture f;
    f.scale.SetSteps(2);
    f.scale.SetPosLeftTop(true);
    f.scale.SetDrawLine(false);
    f.Horiz(Rect(10, 20, 110, 60));
    // Base line at 20 + 14 div 2 + 2 + 10 = 39, ticks pointing up; no line drawn.
    const std::vector<Seg> segs = {
        {{10, 39}, {10, 29}, 1},   {{10, 39}, {10, 34}, 1}, {{35, 39}, {35, 34}, 1},
        {{60, 39}, {60, 29}, 1},   {{60, 39}, {60, 34}, 1}, {{85, 39}, {85, 34}, 1},
        {{110, 39}, {110, 29}, 1},
    };
    EXPECT_EQ(Segments(f.canvas), segs);
    // Centred on Rect.Top.
    const std::vector<Text> texts = {{{7, 13}, "0"}, {{53, 13}, "50"}, {{100, 13}, "100"}};
    EXPECT_EQ(Texts(f.canvas), texts);
}

TEST(HorizScala, StepPositionsKeepSinglePrecisionAndRoundHalfToEven) {
    struct Case {
        TRect rect;
        int32_t steps, subSteps;
        std::vector<int32_t> stepX;  // steps 0..n-1, then the end
        std::vector<int32_t> subX;   // all sub-ticks in drawing order
    } cases[] = {
        // 100 / 6 in single precision: 16.666666, steps at 43.33, 76.67, 110.
        {Rect(10, 0, 110, 40), 3, 2, {10, 43, 77, 110}, {10, 27, 43, 60, 77, 93}},
        // Steps 2.5 apart: 2.5 -> 2, and from 1: 3.5 -> 4.
        {Rect(0, 0, 5, 40), 2, 1, {0, 2, 5}, {0, 2}},
        {Rect(1, 0, 6, 40), 2, 1, {1, 4, 6}, {1, 4}},
        // An empty rectangle stacks everything at its left edge.
        {Rect(30, 0, 30, 40), 2, 2, {30, 30, 30}, {30, 30, 30, 30}},
    };
    for (const auto& c : cases) {
        Fixture f;
        f.scale.SetSteps(c.steps);
        f.scale.SetSubSteps(c.subSteps);
        f.scale.SetDrawLine(false);
        f.Horiz(c.rect);
        std::vector<int32_t> stepX, subX;
        for (const Seg& s : Segments(f.canvas))
            (s.b.Y - s.a.Y == f.scale.StepLength ? stepX : subX).push_back(s.a.X);
        EXPECT_EQ(stepX, c.stepX) << c.rect.Width();
        EXPECT_EQ(subX, c.subX) << c.rect.Width();
        EXPECT_EQ(f.scale.ScaleEnd, c.stepX.back());
    }
}

TEST(HorizScala, LogSubTicksMarkTheDecade) {
    Fixture f;
    f.scale.LogScale = true;
    f.scale.SetSubSteps(10);
    f.scale.SetDrawLine(false);
    f.Horiz(Rect(0, 0, 200, 40), 1, 100);
    ASSERT_EQ(f.scale.LogSteps, 2);
    std::vector<int32_t> subX;
    for (const Seg& s : Segments(f.canvas))
        if (s.b.Y - s.a.Y == f.scale.SubStepLength) subX.push_back(s.a.X);
    // 100 pixels per decade: Round(100 * log10(k)) for k = 1..10, then the next decade.
    const std::vector<int32_t> expected = {0,   30,  48,  60,  70,  78,  85,  90,  95,  100,
                                           100, 130, 148, 160, 170, 178, 185, 190, 195, 200};
    EXPECT_EQ(subX, expected);
    const std::vector<Text> texts = Texts(f.canvas);
    ASSERT_EQ(texts.size(), 3u);
    EXPECT_EQ(S(texts[2].text), "1e2");
}

TEST(HorizScala, PenWidthsFollowTheLabelHeight) {
    Fixture f(28);
    f.scale.SetSteps(1);
    f.Horiz(Rect(0, 0, 100, 60));
    std::vector<int32_t> widths;
    for (const Seg& s : Segments(f.canvas))
        widths.push_back(s.width);
    // Base line, step tick, two sub-ticks, last tick.
    EXPECT_EQ(widths, (std::vector<int32_t>{2, 2, 1, 1, 2}));
    for (const auto& call : f.canvas.Calls()) {
        EXPECT_EQ(call.BrushStyle, bsClear) << S(call.ToString());
        EXPECT_EQ(call.PenColor, clBlack);
    }
}

// Two steps of two sub-steps over 0..100 on (10, 20, 50, 120), 14-pixel labels: step
// length 10, sub-step length 5, gap 4; steps at 20, 70, 120 from the top.
TEST(VertiScala, LabelsRightOfTheTicks) {
    Fixture f;
    f.scale.SetSteps(2);
    f.Verti(Rect(10, 20, 50, 120));
    EXPECT_EQ(f.scale.ScaleStart, 120);  // the first value, at the bottom
    EXPECT_EQ(f.scale.ScaleEnd, 20);
    const std::vector<Seg> segs = {
        {{10, 120}, {10, 20}, 1}, {{10, 20}, {20, 20}, 1},   {{10, 20}, {15, 20}, 1},
        {{10, 45}, {15, 45}, 1},  {{10, 70}, {20, 70}, 1},   {{10, 70}, {15, 70}, 1},
        {{10, 95}, {15, 95}, 1},  {{10, 120}, {20, 120}, 1},
    };
    EXPECT_EQ(Segments(f.canvas), segs);
    // Mid-left at x = 10 + 10 + 4.
    const std::vector<Text> texts = {{{24, 13}, "100"}, {{24, 63}, "50"}, {{24, 113}, "0"}};
    EXPECT_EQ(Texts(f.canvas), texts);
}

TEST(VertiScala, LabelsLeftOfTheTicks) {
    Fixture f;
    f.scale.SetSteps(2);
    f.scale.SetPosLeftTop(true);
    f.Verti(Rect(10, 20, 50, 120));
    const std::vector<Seg> segs = {
        {{50, 120}, {50, 20}, 1}, {{50, 20}, {40, 20}, 1},   {{50, 20}, {45, 20}, 1},
        {{50, 45}, {45, 45}, 1},  {{50, 70}, {40, 70}, 1},   {{50, 70}, {45, 70}, 1},
        {{50, 95}, {45, 95}, 1},  {{50, 120}, {40, 120}, 1},
    };
    EXPECT_EQ(Segments(f.canvas), segs);
    // Mid-right at x = 50 - 10 - 4 + 1 = 37.
    const std::vector<Text> texts = {{{16, 13}, "100"}, {{23, 63}, "50"}, {{30, 113}, "0"}};
    EXPECT_EQ(Texts(f.canvas), texts);
}

TEST(VertiScala, LogSubTicksAreMirrored) {
    Fixture f;
    f.scale.LogScale = true;
    f.scale.SetSubSteps(10);
    f.scale.SetDrawLine(false);
    f.Verti(Rect(0, 0, 40, 200), 1, 100);
    EXPECT_EQ(S(f.scale.Labels), "1e2;1e1;1e0;");
    std::vector<int32_t> subY;
    for (const Seg& s : Segments(f.canvas))
        if (s.b.X - s.a.X == f.scale.SubStepLength) subY.push_back(s.a.Y);
    // Within each 100-pixel decade: 100 - Round(100 * log10(10 - k)), k = 0..9.
    const std::vector<int32_t> expected = {0,   5,   10,  15,  22,  30,  40,  52,  70,  100,
                                           100, 105, 110, 115, 122, 130, 140, 152, 170, 200};
    EXPECT_EQ(subY, expected);
}

TEST(ScaleSettings, OutOfRangeLogStepsStayBounded) {
    struct Case {
        int32_t logSteps;
        size_t ticks;
    } cases[] = {{0, 2}, {-4, 2}, {3, 4}, {INT_MAX, size_t(kMaxScaleSteps) + 1}};
    for (const auto& c : cases) {
        Fixture f;
        f.scale.LogScale = true;
        f.scale.SetSubSteps(1);
        f.scale.SetDrawLine(false);
        f.scale.CalcHSize(f.canvas, 1, 100);
        f.scale.LogSteps = c.logSteps;
        f.canvas.ClearCalls();
        f.scale.HorizScala(f.canvas, Rect(0, 0, 100, 40));
        size_t ticks = 0;
        for (const Seg& s : Segments(f.canvas))
            if (s.b.Y - s.a.Y == f.scale.StepLength) ++ticks;
        EXPECT_EQ(ticks, c.ticks) << c.logSteps;
    }
}

TEST(ScaleSettings, NaNRangeDrawsWithoutFailing) {
    Fixture f;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    f.scale.CalcSize(f.canvas, nan, nan);
    EXPECT_EQ(f.scale.Labels.count(';'), 6);
    f.scale.VertiScala(f.canvas, Rect(0, 0, 40, 100));
    f.scale.CalcHSize(f.canvas, 0, nan);
    f.scale.HorizScala(f.canvas, Rect(INT_MIN, INT_MIN, INT_MAX, INT_MAX));
    EXPECT_EQ(f.scale.ScaleStart, INT_MIN);
}

}  // namespace
}  // namespace kx
