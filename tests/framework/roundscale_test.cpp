#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "kx/drawing/geometry.h"
#include "scale_util.h"

namespace kx {
namespace {

using namespace kx::test;
using Fixture = ScaleFixture;

std::vector<Seg> SegsOfWidth(const TRecordingCanvas& c, int32_t width) {
    std::vector<Seg> out;
    for (const Seg& s : Segments(c))
        if (s.width == width) out.push_back(s);
    return out;
}

// The reference points of a ring as the layout rules put them: straight above the ring
// centre, then turned by the start angle.
struct Ring {
    TPoint m, label, outer, inner, sub;
};
Ring RoundRing(const TScaleSettings& s, const TRect& r, int32_t start) {
    const int32_t radius = (r.Width() - 2 * s.TextGap) / 2 - s.MaxTextWidth / 2 + s.TextGap;
    const int32_t cy = r.Top + radius + s.MaxTextHeight / 2;
    const TPoint m{r.Left + r.Width() / 2, cy};
    const int32_t stepLength = radius / 8;
    const int32_t subLength =
        s.StepPenWidth == 1 ? stepLength / 2 : int32_t(std::nearbyint(stepLength / 1.4));
    const int32_t labelY = cy - radius;
    const int32_t innerY = labelY + s.TextGap + stepLength;
    return {m, Turn({m.X, labelY}, m, start), Turn({m.X, labelY + s.TextGap}, m, start),
            Turn({m.X, innerY}, m, start), Turn({m.X, innerY - subLength}, m, start)};
}

// A 270-degree scale from half past seven in a 140-pixel square, 14-pixel labels:
// gap 11, R = (140 - 22) div 2 - 10 + 11 = 60, ring centre (70, 0 + 60 + 7),
// step length 7, sub-step length 3.
TEST(RoundScala, ThreeQuarterScaleLayout) {
    Fixture f;
    f.RSize();
    TRect r = Rect(0, 0, 140, 140);
    f.scale.RoundScala(f.canvas, r, 225, 270);

    EXPECT_EQ(f.scale.StepLength, 7);
    EXPECT_EQ(f.scale.SubStepLength, 3);
    EXPECT_EQ(f.scale.RingCenter, Point(70, 67));
    EXPECT_EQ(f.scale.ScaleCenter, Point(70, 70));  // the rectangle's centre

    const std::vector<Text> texts = Texts(f.canvas);
    ASSERT_EQ(texts.size(), 6u);
    // Label 0 at (70, 7) turned by 225: (28, 109); anchored mid-centre.
    EXPECT_EQ(texts[0], (Text{{25, 102}, "0"}));
    // Label 1 at 54 degrees further: (11, 58).
    EXPECT_EQ(texts[1], (Text{{4, 51}, "20"}));
    // The last at 270 degrees further, mirrored: (112, 109).
    EXPECT_EQ(texts[5], (Text{{102, 102}, "100"}));

    const std::vector<Seg> ticks = SegsOfWidth(f.canvas, 1);
    // 6 step ticks and 5 sub-ticks, all 1 pixel wide; the first step tick from the outer
    // end (70, 18) to the inner end (70, 25), both turned by 225.
    ASSERT_EQ(ticks.size(), 11u);
    EXPECT_EQ(ticks[0], (Seg{{35, 102}, {40, 97}, 1}));
    // Its sub-tick at 27 degrees, from the inner end out by 3.
    EXPECT_EQ(ticks[1], (Seg{{30, 80}, {27, 81}, 1}));

    // Results: half side 60 - 21 div 2 = 50 round the ring centre, one more to the right
    // and bottom for the thin pen.
    EXPECT_EQ(r, Rect(20, 17, 121, 118));
    EXPECT_EQ(f.scale.ArcRect, Rect(27, 24, 114, 112));
    EXPECT_EQ(f.scale.ArcEnd, Point(35, 102));    // outer end of the first tick
    EXPECT_EQ(f.scale.ArcStart, Point(100, 97));  // inner end of the last tick
    EXPECT_EQ(ticks.back(), (Seg{{105, 102}, {100, 97}, 1}));
}

TEST(RoundScala, DrawsLabelTickAndSubTicksStepByStep) {
    Fixture f;
    f.RSize();
    TRect r = Rect(0, 0, 140, 140);
    f.scale.RoundScala(f.canvas, r, 225, 270);
    QString ops;
    for (const auto& call : f.canvas.Calls()) {
        ops += call.Op.left(1);
        EXPECT_EQ(call.BrushStyle, bsClear);
        EXPECT_EQ(S(call.FontName), "Arial");
    }
    // TextOut, MoveTo, LineTo: label, tick and sub-tick for each step; the last
    // label and tick alone.
    EXPECT_EQ(S(ops), "TMLMLTMLMLTMLMLTMLMLTMLMLTML");
}

TEST(RoundScala, StepAnglesStayFractionalWhileSubTickAnglesRound) {
    // A 600-pixel square puts the tick ends some 240 pixels out, where half a degree
    // moves a point by two pixels.
    const TRect area = Rect(0, 0, 600, 600);
    {
        // 7 steps over 270 degrees: steps every 38.571430 degrees, unrounded.
        Fixture f(14, 7, 1);
        f.RSize();
        TRect r = area;
        f.scale.RoundScala(f.canvas, r, 225, 270);
        const Ring g = RoundRing(f.scale, area, 225);
        const std::vector<Seg> ticks = SegsOfWidth(f.canvas, 1);
        ASSERT_EQ(ticks.size(), 8u);
        const float stepAngle = float(270.0 / 7);
        for (int i = 0; i < 7; ++i) {
            const double a = float(i * double(stepAngle));
            EXPECT_EQ(ticks[i], (Seg{Turn(g.outer, g.m, a), Turn(g.inner, g.m, a), 1})) << i;
        }
        ASSERT_NE(Turn(g.outer, g.m, 38.571430), Turn(g.outer, g.m, 39));
    }
    {
        // 10 steps of 4 over 270 degrees: sub-steps 6.75 degrees apart, drawn at whole
        // degrees rounded half to even: 7, 14, 20, then 34, 40, 47.
        Fixture f(14, 10, 4);
        f.RSize();
        TRect r = area;
        f.scale.RoundScala(f.canvas, r, 225, 270);
        const Ring g = RoundRing(f.scale, area, 225);
        const std::vector<Seg> segs = SegsOfWidth(f.canvas, 1);
        const double expected[2][3] = {{7, 14, 20}, {34, 40, 47}};
        for (int i = 0; i < 2; ++i) {
            for (int k = 0; k < 3; ++k) {
                const double a = expected[i][k];
                EXPECT_EQ(segs[i * 4 + 1 + k], (Seg{Turn(g.inner, g.m, a), Turn(g.sub, g.m, a), 1}))
                    << "step " << i << " sub " << k + 1;
            }
        }
        ASSERT_NE(Turn(g.inner, g.m, 40), Turn(g.inner, g.m, 40.5));
    }
}

TEST(RoundScala, FullCircleOmitsTheLastLabel) {
    struct Case {
        int32_t span;
        size_t labels;
    } cases[] = {{360, 5}, {359, 6}, {270, 6}, {120, 6}};
    for (const auto& c : cases) {
        Fixture f;
        f.RSize();
        TRect r = Rect(0, 0, 200, 200);
        f.scale.RoundScala(f.canvas, r, 0, c.span);
        const std::vector<Text> texts = Texts(f.canvas);
        EXPECT_EQ(texts.size(), c.labels) << c.span;
        EXPECT_EQ(S(texts.back().text), c.labels == 5 ? "80" : "100") << c.span;
        // The last tick is drawn either way.
        size_t stepTicks = 0;
        for (const Seg& s : Segments(f.canvas)) {
            const double len = std::hypot(s.b.X - s.a.X, s.b.Y - s.a.Y);
            if (std::abs(len - f.scale.StepLength) < 1.5) ++stepTicks;
        }
        EXPECT_EQ(stepTicks, 6u) << c.span;
    }
}

TEST(RoundScala, WidePenResults) {
    // 28-pixel labels: pen 2, gap max(21, 28) div 2 + 1 = 15, R = 85 - 10 + 15 = 90,
    // ring centre (100, 90 + 14), step length 11, sub-step length Round(11 / 1.4) = 8.
    Fixture f(28);
    f.RSize();
    TRect r = Rect(0, 0, 200, 200);
    f.scale.RoundScala(f.canvas, r, 225, 270);
    EXPECT_EQ(f.scale.StepPenWidth, 2);
    EXPECT_EQ(f.scale.StepLength, 11);
    EXPECT_EQ(f.scale.SubStepLength, 8);
    EXPECT_EQ(f.scale.RingCenter, Point(100, 104));
    // Half side 80, plus 2 div 2.
    EXPECT_EQ(r, Rect(19, 23, 181, 185));
    EXPECT_EQ(f.scale.ArcRect, Rect(30, 34, 170, 175));
    EXPECT_EQ(SegsOfWidth(f.canvas, 2).size(), 6u);
    EXPECT_EQ(SegsOfWidth(f.canvas, 1).size(), 5u);
    const Ring g = RoundRing(f.scale, Rect(0, 0, 200, 200), 225);
    EXPECT_EQ(f.scale.ArcEnd, g.outer);
    EXPECT_EQ(f.scale.ArcStart, Turn(g.inner, g.m, 270));
}

TEST(RoundScala, ReturnedSquareIsCentredOnTheRing) {
    // The needle built on the returned square pivots at Left + Width div 2,
    // Top + Width div 2: that must be the centre the labels were turned about.
    struct Case {
        TRect rect;
        int32_t lineHeight, start, span;
    } cases[] = {
        {Rect(0, 0, 140, 140), 14, 225, 270},  {Rect(0, 0, 200, 110), 14, 270, 180},
        {Rect(13, 7, 250, 260), 28, 225, 270}, {Rect(-40, 5, 181, 90), 14, 300, 120},
        {Rect(0, 0, 101, 101), 21, 0, 360},
    };
    for (const auto& c : cases) {
        Fixture f(c.lineHeight);
        f.RSize();
        TRect r = c.rect;
        f.scale.RoundScala(f.canvas, r, c.start, c.span);
        const TPoint m = f.scale.RingCenter;
        SCOPED_TRACE(std::to_string(c.rect.Width()) + "x" + std::to_string(c.rect.Height()));
        EXPECT_EQ(r.Width(), r.Height());
        EXPECT_EQ(r.Left + r.Width() / 2, m.X);
        EXPECT_EQ(r.Top + r.Width() / 2, m.Y);
        // Every label centre lies R from the ring centre.
        const Ring g = RoundRing(f.scale, c.rect, c.start);
        EXPECT_EQ(g.m, m);
        const double radius = std::hypot(g.label.X - m.X, g.label.Y - m.Y);
        for (const Text& t : Texts(f.canvas)) {
            const int32_t w = 7 * int32_t(t.text.size());
            const TPoint centre{t.at.X + w / 2, t.at.Y + c.lineHeight / 2};
            EXPECT_NEAR(std::hypot(centre.X - m.X, centre.Y - m.Y), radius, 1.5) << S(t.text);
        }
    }
}

TEST(RoundScala, HalfCircleCentreSitsLow) {
    // A flat area: the ring centre is R + 7 below the top, not the area's centre.
    Fixture f;
    f.RSize();
    TRect r = Rect(0, 0, 200, 110);
    f.scale.RoundScala(f.canvas, r, 270, 180);
    EXPECT_EQ(f.scale.RingCenter, Point(100, 97));
    EXPECT_EQ(f.scale.ScaleCenter, Point(100, 55));
    const std::vector<Text> texts = Texts(f.canvas);
    ASSERT_EQ(texts.size(), 6u);
    EXPECT_EQ(texts.front(), (Text{{7, 90}, "0"}));     // 9 o'clock, (10, 97)
    EXPECT_EQ(texts.back(), (Text{{180, 90}, "100"}));  // 3 o'clock, (190, 97)
    EXPECT_EQ(r, Rect(20, 17, 181, 178));
}

TEST(RoundScala, LogarithmicLabelsAndSubTicks) {
    Fixture f(14, 5, 10);
    f.scale.LogScale = true;
    f.RSize(1, 1000);
    EXPECT_EQ(f.scale.LogSteps, 3);
    const TRect area = Rect(0, 0, 600, 600);
    TRect r = area;
    f.scale.RoundScala(f.canvas, r, 225, 270);
    QStringList labels;
    for (const Text& t : Texts(f.canvas))
        labels << t.text;
    EXPECT_EQ(labels, (QStringList{"1e0", "1e1", "1e2", "1e3"}));
    // 90 degrees per decade: sub-ticks at Round(90 * log10(k)), k = 1..9.
    const Ring g = RoundRing(f.scale, area, 225);
    const std::vector<Seg> segs = SegsOfWidth(f.canvas, 1);
    const double angles[] = {0, 27, 43, 54, 63, 70, 76, 81, 86};
    for (int k = 0; k < 9; ++k)
        EXPECT_EQ(segs[1 + k], (Seg{Turn(g.inner, g.m, angles[k]), Turn(g.sub, g.m, angles[k]), 1}))
            << "k = " << k + 1;
    for (int k = 0; k < 9; ++k)
        EXPECT_EQ(segs[11 + k].a, Turn(g.inner, g.m, 90 + angles[k])) << "k = " << k + 1;
}

TEST(RoundScala, WithoutLabelsTheTicksReachTheRim) {
    Fixture f;
    f.RSize();
    f.scale.ClearLabels();
    TRect r = Rect(0, 0, 100, 100);
    f.scale.RoundScala(f.canvas, r, 0, 360);
    EXPECT_TRUE(Texts(f.canvas).empty());
    EXPECT_EQ(f.scale.RingCenter, Point(50, 50));
    // R = 50, step length 6: the first tick from the top edge down.
    const std::vector<Seg> segs = Segments(f.canvas);
    ASSERT_FALSE(segs.empty());
    EXPECT_EQ(segs[0], (Seg{{50, 0}, {50, 6}, 1}));
    EXPECT_EQ(r, Rect(0, 0, 101, 101));
}

TEST(RoundScala, NoRoomDrawsNothing) {
    for (const TRect& rect :
         {Rect(0, 0, 0, 0), Rect(0, 0, 20, 20), Rect(0, 0, 30, 30), Rect(50, 50, 10, 10)}) {
        Fixture f;
        f.RSize();
        TRect r = rect;
        f.scale.RoundScala(f.canvas, r, 225, 270);
        EXPECT_TRUE(f.canvas.Calls().empty()) << rect.Left << "," << rect.Right;
        const TPoint m = f.scale.RingCenter;
        EXPECT_EQ(r, Rect(m.X, m.Y, m.X, m.Y));
        EXPECT_EQ(f.scale.ScaleCenter, KxCenterPoint(rect));
        EXPECT_EQ(f.scale.ArcRect, r);
        EXPECT_EQ(f.scale.ArcStart, m);
        EXPECT_EQ(f.scale.StepLength, 0);
    }
}

TEST(RoundScala, ExtremeRectanglesStayDefined) {
    const TRect cases[] = {Rect(INT32_MIN, 0, INT32_MAX, 10), Rect(0, INT32_MIN, 10, INT32_MAX),
                           Rect(INT32_MAX - 5, INT32_MAX - 5, INT32_MAX, INT32_MAX)};
    for (const TRect& c : cases) {
        Fixture f;
        f.RSize();
        TRect r = c;
        f.scale.RoundScala(f.canvas, r, 225, 270);
        r = c;
        f.scale.DialScala(f.canvas, r, -90, INT32_MAX);
        EXPECT_LE(r.Left, r.Right);
    }
}

// A dial in a 200-pixel square, 14-pixel labels (gap 11, edge margin 3): centre
// (100, 100), outer radius 100, step length 12, labels on radius 89, tick ends on 78,
// tick roots on 66, knob radius 63.
TEST(DialScala, TicksStandOutsideTheKnob) {
    Fixture f;
    f.RSize();
    TRect r = Rect(0, 0, 200, 200);
    f.scale.DialScala(f.canvas, r, 225, 270);
    EXPECT_EQ(f.scale.RingCenter, Point(100, 100));
    EXPECT_EQ(f.scale.ScaleCenter, Point(100, 100));
    EXPECT_EQ(f.scale.StepLength, 12);
    EXPECT_EQ(f.scale.SubStepLength, 6);
    EXPECT_EQ(r, Rect(37, 37, 164, 164));
    EXPECT_EQ(f.scale.ArcRect, Rect(34, 34, 167, 167));
    const std::vector<Text> texts = Texts(f.canvas);
    ASSERT_EQ(texts.size(), 6u);
    EXPECT_EQ(texts[0], (Text{{34, 156}, "0"}));  // (100, 11) turned by 225: (37, 163)
    const std::vector<Seg> segs = Segments(f.canvas);
    EXPECT_EQ(segs[0], (Seg{{45, 155}, {53, 147}, 1}));
    EXPECT_EQ(f.scale.ArcEnd, Point(45, 155));
    EXPECT_EQ(f.scale.ArcStart, Point(147, 147));
}

TEST(DialScala, GeometryFollowsTheShorterSide) {
    struct Case {
        TRect rect;
        bool labels;
        TRect knob, arc;
        size_t texts;
    } cases[] = {
        {Rect(0, 0, 300, 200), true, Rect(87, 37, 214, 164), Rect(84, 34, 217, 167), 6},
        {Rect(0, 0, 200, 300), true, Rect(37, 87, 164, 214), Rect(34, 84, 167, 217), 6},
        // Without labels the ticks start at the rim: roots on 88, knob radius 85.
        {Rect(0, 0, 200, 200), false, Rect(15, 15, 186, 186), Rect(12, 12, 189, 189), 0},
        // Too small for labels, ticks and a knob.
        {Rect(0, 0, 40, 40), true, Rect(20, 20, 20, 20), Rect(20, 20, 20, 20), 0},
    };
    for (const auto& c : cases) {
        Fixture f;
        f.RSize();
        if (!c.labels) f.scale.ClearLabels();
        TRect r = c.rect;
        f.scale.DialScala(f.canvas, r, 225, 270);
        SCOPED_TRACE(std::to_string(c.rect.Width()) + "x" + std::to_string(c.rect.Height()));
        EXPECT_EQ(r, c.knob);
        EXPECT_EQ(f.scale.ArcRect, c.arc);
        EXPECT_EQ(Texts(f.canvas).size(), c.texts);
        EXPECT_EQ(r.Left + r.Width() / 2, f.scale.RingCenter.X);
        EXPECT_EQ(r.Top + r.Height() / 2, f.scale.RingCenter.Y);
    }
}

}  // namespace
}  // namespace kx
