// The gear dial: turns across the range, turning by mouse the short way round, the mark,
// the knurls' shading, the turn counter and what a reading redraws.
#include <gtest/gtest.h>

#include <QWidget>
#include <cmath>
#include <functional>
#include <memory>

#include "adjuster_fixture.h"
#include "common/ratio.h"
#include "common/test_env.h"
#include "kx/adjusters/geardial.h"
#include "kx/drawing/angles.h"
#include "kx/drawing/colors.h"

namespace kx {
namespace {

using test::AtAngle;
using test::Mouse;

class GearDial : public ::testing::Test {
  protected:
    void SetUp() override {
        test::ResetEnvironment();
        g_ = std::make_unique<TKxGearDial>(&form_);
        g_->SetBounds(0, 0, 200, 260);
        g_->Loaded();
        g_->PaintToSurface();
    }
    TKxGearDial& g() { return *g_; }
    QWidget form_;
    std::unique_ptr<TKxGearDial> g_;
};

TEST(GearDialDefaults, PropertiesAndTheirBounds) {
    test::ResetEnvironment();
    TKxGearDial g;
    EXPECT_EQ(QSize(g.width(), g.height()), QSize(113, 161));
    EXPECT_EQ(g.Options(), TKxGearDial::kAllOptions);
    EXPECT_EQ(g.Turns(), 10);
    EXPECT_EQ(g.Teeth(), 36);
    EXPECT_EQ(g.KnobColor(), clBtnFace);
    EXPECT_EQ(g.BevelOuter()->Spacing(), 5);
    EXPECT_EQ(g.FontValue()->Color(), clLime);
    const struct {
        int32_t value, turns, teeth;
    } sets[] = {// applied in turn; turns take 1..1000, teeth 8..180
                {0, 10, 36}, {7, 7, 36},      {181, 181, 36}, {1001, 181, 36},
                {8, 8, 8},   {1000, 1000, 8}, {-5, 1000, 8},  {180, 180, 180}};
    for (const auto& t : sets) {
        g.SetTurns(t.value);
        g.SetTeeth(t.value);
        EXPECT_EQ(g.Turns(), t.turns) << t.value;
        EXPECT_EQ(g.Teeth(), t.teeth) << t.value;
    }
    g.SetOptions(0xFF);
    EXPECT_EQ(g.Options(), TKxGearDial::kAllOptions);
}

TEST_F(GearDial, TheRangeSpansItsTurns) {
    const struct {
        int32_t turns, digit;
        double angle;
        int32_t count;
    } cases[] = {{10, 0, 0.0, 0},    {10, 500, 1800.0, 5}, {10, 1000, 3600.0, 10},
                 {10, 25, 90.0, 0},  {10, 99, 356.4, 0},   {10, 100, 360.0, 1},
                 {1, 500, 180.0, 0}, {1, 1000, 360.0, 1},  {3, 999, 1078.92, 2}};
    for (const auto& t : cases) {
        g().SetTurns(t.turns);
        g().SetDigit(t.digit);
        EXPECT_NEAR(g().TotalAngle(), t.angle, 1e-9) << t.turns << " " << t.digit;
        EXPECT_EQ(g().TurnCount(), t.count) << t.turns << " " << t.digit;
    }
    // A range of one digit: one end or the other.
    g().SignalSettings()->SetDigitalTo(1);
    g().SetTurns(2);
    g().SetDigit(1);
    EXPECT_DOUBLE_EQ(g().TotalAngle(), 720.0);
    // Digits counted from DigitalFrom.
    g().SignalSettings()->SetDigitalFrom(100);
    g().SignalSettings()->SetDigitalTo(1100);
    g().SetTurns(10);
    g().SetDigit(600);
    EXPECT_DOUBLE_EQ(g().TotalAngle(), 1800.0);
    g().SignalSettings()->SetDigitalFrom(0);
    g().SignalSettings()->SetDigitalTo(1000);
    // Changing the turns turns the wheel at once.
    g().SetTurns(10);
    g().SetDigit(500);
    g().SetTurns(4);
    EXPECT_DOUBLE_EQ(g().TotalAngle(), 720.0);
}

TEST_F(GearDial, DragsTurnTheShortWayRoundAndStopAtTheEnds) {
    const struct {
        const char* name;
        int32_t from;
        double press;  // mouse angle, 0 down, clockwise
        std::vector<double> moves;
        int32_t expect;
    } cases[] = {
        {"a quarter clockwise", 0, 180.0, {210.0, 240.0, 270.0}, 25},
        {"a whole turn", 300, 0.0, {90.0, 180.0, 270.0, 360.0}, 400},
        // Back 20 degrees and on 40 across the seam below: never the long way round.
        {"across the seam below", 100, 0.0, {340.0, 20.0}, 106},
        {"half back", 500, 180.0, {150.0, 120.0, 90.0, 60.0, 30.0, 0.0}, 450},
        {"below the start", 10, 0.0, {-90.0, -180.0, -270.0, -360.0, -450.0, -540.0}, 0},
        {"beyond the end", 990, 0.0, {90.0, 180.0, 270.0, 360.0, 450.0}, 1000},
        {"a press alone", 333, 45.0, {45.0}, 333},
    };
    for (const auto& t : cases) {
        g().SetDigit(t.from);
        const TPoint c = g().KnobCentre();
        Mouse(&g(), QEvent::MouseButtonPress, AtAngle(c, t.press));
        ASSERT_TRUE(g().Sliding()) << t.name;
        for (double a : t.moves)
            Mouse(&g(), QEvent::MouseMove, AtAngle(c, a, 5000.0));
        EXPECT_EQ(g().Digit(), t.expect) << t.name;
        Mouse(&g(), QEvent::MouseButtonRelease, AtAngle(c, t.moves.back()));
    }
}

TEST_F(GearDial, SlowTurnsAddUpWhenADigitSpansManyDegrees) {
    g().SignalSettings()->SetDigitalTo(10);  // 360 degrees a digit over ten turns
    g().SetDigit(0);
    const TPoint c = g().KnobCentre();
    Mouse(&g(), QEvent::MouseButtonPress, AtAngle(c, 0.0));
    for (int i = 1; i <= 36; ++i) {
        Mouse(&g(), QEvent::MouseMove, AtAngle(c, 10.0 * i, 5000.0));
        // Half way (180 degrees) the mouse's rounding decides; either side is certain.
        if (i != 18) {
            EXPECT_EQ(g().Digit(), i < 18 ? 0 : 1) << i;
        }
    }
    Mouse(&g(), QEvent::MouseButtonRelease, AtAngle(c, 0.0));
}

TEST_F(GearDial, TheMarkTurnsWithTheWheel) {
    const TPoint c = g().KnobCentre();
    g().SetDigit(0);
    EXPECT_EQ(g().MarkPoint().X, c.X);
    EXPECT_LT(g().MarkPoint().Y, c.Y);
    const int32_t distance = c.Y - g().MarkPoint().Y;
    EXPECT_EQ(distance, g().KnobRect().Width() / 2 - g().RimDepth() - g().MarkRadius() - 3);
    EXPECT_EQ(g().Surface().Pixel(g().MarkPoint().X, g().MarkPoint().Y), clGreen);
    g().SetDigit(25);  // a quarter turn: the mark stands right of the centre
    EXPECT_EQ(g().MarkPoint(), (TPoint{c.X + distance, c.Y}));
    EXPECT_EQ(g().Surface().Pixel(c.X + distance, c.Y), clGreen);
    g().SetDigit(125);  // a turn and a quarter: the same place
    EXPECT_EQ(g().MarkPoint(), (TPoint{c.X + distance, c.Y}));
    g().setEnabled(false);
    EXPECT_EQ(g().Surface().Pixel(c.X + distance, c.Y), ColorToRGB(clBtnShadow));
}

TEST_F(GearDial, KnurlsAreLitFromTheUpperLeft) {
    // One digit a degree: digit d turns the wheel by d degrees.
    g().SignalSettings()->SetDigitalTo(3600);
    const TPoint c = g().KnobCentre();
    const int32_t inner = g().KnobRect().Width() / 2 - g().RimDepth() + 1;
    const auto knurlAt = [&](float angle) {
        const TPoint p = KxRotate(TPoint{c.X, c.Y - inner}, c, angle, true);
        return g().Surface().Pixel(p.X, p.Y);
    };
    const TColor light = ColorToRGB(clBtnHighlight), dark = ColorToRGB(clBtnShadow);
    const TColor rim = KxSetBrightness(ColorToRGB(clBtnFace), 80.0f);
    const struct {
        int32_t digit;
        float angle;
        TColor colour;
    } cases[] = {
        // Knurls every 10 degrees; the one at 40 is lit by cos(40 - 315) = 0.087: step 54.
        {0, 320.0f, light},
        {0, 140.0f, dark},
        {0, 40.0f, KxCalcColor(clBtnShadow, clBtnHighlight, 100, 54)},
        // Turned by 5 degrees: the knurls have moved off 320 onto 315, lit fully.
        {5, 320.0f, rim},
        {5, 315.0f, light},
        {5, 135.0f, dark},
        {5, 140.0f, rim},
    };
    for (const auto& t : cases) {
        g().SetDigit(t.digit);
        EXPECT_EQ(knurlAt(t.angle), t.colour) << t.digit << " " << t.angle;
    }
    // On a knob this big each knurl is two pixels wide: the steep one at 320 degrees has
    // its second line one pixel to the right.
    g().SetDigit(0);
    const TPoint p = KxRotate(TPoint{c.X, c.Y - inner}, c, 320.0f, true);
    EXPECT_EQ(g().Surface().Pixel(p.X + 1, p.Y), light);
    EXPECT_NE(g().Surface().Pixel(p.X - 1, p.Y), light);
}

TEST_F(GearDial, TheFaceIsShadedFromTheUpperLeft) {
    const TRect k = g().KnobRect();
    const int32_t q = (k.Width() / 2 - g().RimDepth()) / 2;
    const TPoint c = g().KnobCentre();
    const TColor upperLeft = g().Surface().Pixel(c.X - q, c.Y - q);
    const TColor lowerRight = g().Surface().Pixel(c.X + q, c.Y + q);
    EXPECT_NE(upperLeft, KxSetBrightness(ColorToRGB(clBtnFace), 80.0f));
    EXPECT_GT(GetRValue(upperLeft), GetRValue(lowerRight));
}

TEST(GearDialLayout, RimAndMarkFollowTheKnobsSize) {
    test::ResetEnvironment();
    QWidget form;
    // The knob is the rest's smaller side less 4; the outer bevel takes 8 a side.
    const struct {
        int width;
        int32_t knob, rim, mark;
    } cases[] = {{35, 0, 0, 0}, {36, 16, 3, 2}, {56, 36, 3, 2}, {60, 40, 4, 2}, {216, 196, 19, 9}};
    for (const auto& t : cases) {
        TKxGearDial g(&form);
        g.SetBounds(0, 0, t.width, 600);
        g.Loaded();
        g.PaintToSurface();
        EXPECT_EQ(g.KnobRect().Width(), t.knob) << t.width;
        if (t.knob == 0) continue;
        EXPECT_EQ(g.RimDepth(), t.rim) << t.width;
        EXPECT_EQ(g.MarkRadius(), t.mark) << t.width;
    }
}

TEST_F(GearDial, AReadingRedrawsOnlyTheKnobAndTheNumber) {
    g().SetDigit(100);
    const QImage before = g().Surface().Image().copy();
    g().SetDigit(733);
    int changed = 0;
    EXPECT_TRUE(test::ChangesOnlyIn(before, g().Surface().Image(), changed, g().KnobRect(),
                                    g().ValueBoxRect()));
    EXPECT_GT(changed, 0);
    g().SetDigit(100);
    EXPECT_EQ(g().Surface().Image(), before);
}

TEST_F(GearDial, TheTurnCounterStandsInTheMiddleWhenItFits) {
    const auto centreInk = [&] {
        // The pixels that differ from the face without the counter, near the centre.
        g().SetDigit(500);
        const QImage with = g().Surface().Image().copy();
        g().SetOptions(TKxGearDial::kAllOptions & ~TKxGearDial::GearOption(TKxGearDial::opTurns));
        g().PaintToSurface();
        g().SetDigit(500);
        const QImage without = g().Surface().Image().copy();
        g().SetOptions(TKxGearDial::kAllOptions);
        const TPoint c = g().KnobCentre();
        int near = 0, far = 0;
        for (int y = 0; y < with.height(); ++y)
            for (int x = 0; x < with.width(); ++x)
                if (with.pixel(x, y) != without.pixel(x, y))
                    ++(std::abs(x - c.X) <= 12 && std::abs(y - c.Y) <= 12 ? near : far);
        return std::pair{near, far};
    };
    const auto [near, far] = centreInk();
    EXPECT_GT(near, 0);
    EXPECT_EQ(far, 0);
    // A knob of 40 pixels has no room for it.
    g().SetBounds(0, 0, 60, 161);
    g().PaintToSurface();
    ASSERT_EQ(g().KnobRect().Width(), 40);
    EXPECT_EQ(centreInk().first, 0);
}

TEST_F(GearDial, TheLayoutGivesWayToTheKnob) {
    g().SignalSettings()->SetName1("A very long name for the setpoint of the second heater");
    for (QSize s : {QSize(5, 5), QSize(30, 30), QSize(60, 80), QSize(40, 200), QSize(300, 60),
                    QSize(113, 161), QSize(600, 600)}) {
        g().SetBounds(0, 0, s.width(), s.height());
        g().PaintToSurface();
        const std::string at = std::to_string(s.width()) + "x" + std::to_string(s.height());
        const TRect knob = g().KnobRect(), box = g().ValueBoxRect();
        if (knob.Right <= knob.Left) {
            EXPECT_EQ(g().HitRect, TRect{}) << at;
            g().SetDigit(500);  // nothing to draw into
            continue;
        }
        EXPECT_GE(knob.Width(), TKxGearDial::kMinKnob) << at;
        EXPECT_EQ(knob.Width(), knob.Height()) << at;
        EXPECT_GE(knob.Left, 0) << at;
        EXPECT_LE(knob.Right, s.width()) << at;
        EXPECT_LE(knob.Bottom, s.height()) << at;
        if (box.Right > box.Left) {
            EXPECT_GE(knob.Top, box.Bottom) << at;
        }
    }
}

TEST_F(GearDial, SettingsChangesRepaintTheWhole) {
    const struct {
        const char* name;
        std::function<void()> change;
    } cases[] = {
        {"turns", [&] { g().SetTurns(3); }},
        {"teeth", [&] { g().SetTeeth(12); }},
        {"knob colour", [&] { g().SetKnobColor(clSilver); }},
        {"options", [&] { g().SetOptions(0); }},
        {"value bevel", [&] { g().BevelValue()->SetWidth(3); }},
        {"value font", [&] { g().FontValue()->SetSize(14); }},
        {"signal", [&] { g().SignalSettings()->SetName1("Heater"); }},
    };
    for (const auto& t : cases) {
        g().PaintToSurface();
        g().SetRedrawNeeded(false);
        t.change();
        EXPECT_TRUE(g().RedrawNeeded()) << t.name;
    }
    g().PaintToSurface();
    g().SetRedrawNeeded(false);
    g().SetTurns(g().Turns());
    g().SetTeeth(g().Teeth());
    g().SetKnobColor(g().KnobColor());
    EXPECT_FALSE(g().RedrawNeeded());
}

TEST(GearDialHiDpi, AReadingMatchesAFullPaint) {
    test::ResetEnvironment();
    for (double ratio : {1.0, 1.5, 2.0}) {
        test::AtRatio<TKxGearDial> g(ratio);
        g.Loaded();
        g.PaintToSurface();
        g.SetValue(63.0f);
        const QImage read = g.Surface().Image().copy();
        g.Invalidate();
        g.PaintToSurface();
        EXPECT_EQ(read, g.Surface().Image()) << ratio;
    }
}

TEST_F(GearDial, TheKnobIsCentredAndItsRimThin) {
    g().SetBounds(0, 0, 400, 200);  // wider than high: the knob stands in the middle
    g().PaintToSurface();
    EXPECT_NEAR(g().KnobCentre().X, 200, 1);
    // The rim's outline is one pixel: the pixel inside it is the rim's own colour.
    const TPoint c = g().KnobCentre();
    const int32_t top = g().KnobRect().Top;
    const TColor rim = KxSetBrightness(ColorToRGB(clBtnFace), 80.0f);
    EXPECT_EQ(g().Surface().Pixel(c.X + 2, top), ColorToRGB(clBtnShadow));
    EXPECT_EQ(g().Surface().Pixel(c.X + 2, top + 1), rim);
}

TEST(GearDialLayout, KnurlsAreDoubledFromSixtyPixels) {
    test::ResetEnvironment();
    QWidget form;
    const TColor light = ColorToRGB(clBtnHighlight);
    for (const auto& [width, doubled] : {std::pair{80, true}, std::pair{79, false}}) {
        TKxGearDial g(&form);
        g.SetBounds(0, 0, width, 600);
        g.Loaded();
        g.PaintToSurface();
        g.SetDigit(0);
        const TPoint c = g.KnobCentre();
        const int32_t inner = g.KnobRect().Width() / 2 - g.RimDepth() + 1;
        const TPoint p = KxRotate(TPoint{c.X, c.Y - inner}, c, 320.0f, true);
        ASSERT_EQ(g.Surface().Pixel(p.X, p.Y), light) << width;
        EXPECT_EQ(g.Surface().Pixel(p.X + 1, p.Y) == light, doubled) << width;
    }
}

}  // namespace
}  // namespace kx
