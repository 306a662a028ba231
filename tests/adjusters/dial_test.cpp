// The dial: layout, the pointer marks, what a reading redraws, and turning by mouse
// across the bottom gap.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QMouseEvent>
#include <QWidget>
#include <climits>
#include <cmath>
#include <functional>
#include <memory>

#include "adjuster_fixture.h"
#include "common/ratio.h"
#include "common/test_env.h"
#include "kx/adjusters/dial.h"
#include "kx/drawing/geometry.h"
#include "kx/host/recordingcanvas.h"

namespace kx {
namespace {

using test::AtAngle;
using test::Mouse;

class Dial : public ::testing::Test {
  protected:
    void SetUp() override {
        test::ResetEnvironment();
        d_ = std::make_unique<TKxDial>(&form_);
        d_->SetBounds(0, 0, 200, 260);
        d_->Loaded();
        d_->PaintToSurface();
    }
    QWidget form_;
    std::unique_ptr<TKxDial> d_;
};

TEST_F(Dial, DragsTurnThePointerAndNeverJumpTheGap) {
    const struct {
        const char* name;
        int32_t from;      // digit before
        double press, to;  // mouse angles
        int32_t expect;
        int steps;  // the pointer re-reads its angle from each new digit, so small steps
                    // round on the way: exact results come from one step
    } cases[] = {
        {"to 135 degrees", 0, 45.0, 180.0, 500, 1},
        {"a quarter up", 500, 180.0, 270.0, 833, 1},
        {"back down", 500, 180.0, 90.0, 167, 1},
        {"beyond the end stops at 270", 900, 270.0, 330.0, 1000, 6},
        // Through the bottom gap (mouse angles past 360 or below 0) the pointer stays put.
        {"across the gap from the end", 1000, 315.0, 420.0, 1000, 12},
        {"across the gap from the start", 0, 45.0, -60.0, 0, 12},
        {"a press alone changes nothing", 333, 180.0, 180.0, 333, 3},
    };
    for (const auto& t : cases) {
        d_->SetDigit(t.from);
        const TPoint c = d_->FaceCentre();
        Mouse(d_.get(), QEvent::MouseButtonPress, AtAngle(c, t.press));
        ASSERT_TRUE(d_->Sliding()) << t.name;
        // Several small steps, as a real drag sends them, far out for exact directions.
        const int steps = t.steps;
        for (int i = 1; i <= steps; ++i)
            Mouse(d_.get(), QEvent::MouseMove,
                  AtAngle(c, t.press + (t.to - t.press) * i / steps, 5000.0));
        EXPECT_EQ(d_->Digit(), t.expect) << t.name;
        Mouse(d_.get(), QEvent::MouseButtonRelease, AtAngle(c, t.to));
    }
}

TEST_F(Dial, AJumpOverTheGapInOneStepIsUnwrapped) {
    d_->SetDigit(1000);
    const TPoint c = d_->FaceCentre();
    Mouse(d_.get(), QEvent::MouseButtonPress, AtAngle(c, 315.0));
    // +90 through the gap, not -270: the pointer stays at its end.
    Mouse(d_.get(), QEvent::MouseMove, AtAngle(c, 45.0, 5000.0));
    EXPECT_EQ(d_->Digit(), 1000);
    EXPECT_FLOAT_EQ(d_->PointerAngle(), 270.0f);
    // Turning back moves it at once: -45, then -60 back through the gap.
    Mouse(d_.get(), QEvent::MouseMove, AtAngle(c, 0.0, 5000.0));
    EXPECT_EQ(d_->Digit(), 833);
    Mouse(d_.get(), QEvent::MouseMove, AtAngle(c, 300.0, 5000.0));
    EXPECT_EQ(d_->Digit(), 611);
}

TEST_F(Dial, PointerFollowsTheValueAndStartsLowerLeft) {
    const struct {
        float value;
        float angle;
    } cases[] = {{0.0f, 0.0f}, {50.0f, 135.0f}, {100.0f, 270.0f}, {25.0f, 67.5f}};
    for (const auto& t : cases) {
        d_->SetValue(t.value);
        EXPECT_FLOAT_EQ(d_->PointerAngle(), t.angle) << t.value;
    }
    // At 0 the spot lies lower left of the centre, at 135 degrees straight above it.
    d_->SetValue(0.0f);
    const TPoint c = d_->FaceCentre();
    const TPoint start = d_->PointerPoints().at(0);
    EXPECT_LT(start.X, c.X);
    EXPECT_GT(start.Y, c.Y);
    d_->SetValue(50.0f);
    const TPoint top = d_->PointerPoints().at(0);
    EXPECT_EQ(top.X, c.X);
    EXPECT_LT(top.Y, c.Y);
}

TEST_F(Dial, PointerMarksInTheirColours) {
    d_->SetValue(50.0f);  // straight up
    const TPoint c = d_->FaceCentre();
    const TRect face = d_->FaceRect();
    const int32_t radius = KxGetRadius(face);
    // dpRound: a spot centred R - 4 - 3 from the centre, filled with ColorNonFocus.
    EXPECT_EQ(d_->PointerPoints().at(0), (TPoint{c.X, c.Y - (radius - 4 - 3)}));
    EXPECT_EQ(d_->Surface().Pixel(c.X, c.Y - (radius - 7)), clGreen);
    // dpLine: two pixels wide from R - 3 to R - 3 - 16.
    d_->SetPointerType(TKxDial::dpLine);
    d_->PaintToSurface();
    const auto line = d_->PointerPoints();
    ASSERT_EQ(line.size(), 2u);
    // Turned to the start and back to the top, each end may be a pixel off its ideal.
    EXPECT_NEAR(line[0].Y, c.Y - (radius - 3), 1);
    EXPECT_NEAR(line[1].Y, c.Y - (radius - 19), 1);
    EXPECT_NEAR(line[0].X, c.X, 1);
    const int32_t midY = (line[0].Y + line[1].Y) / 2;
    int green = 0;
    for (int x = c.X - 3; x <= c.X + 3; ++x)
        green += d_->Surface().Pixel(x, midY) == clGreen;
    EXPECT_EQ(green, 2);
    // dpTriangle: black outline, filled with the colour.
    d_->SetPointerType(TKxDial::dpTriangle);
    d_->PaintToSurface();
    const auto tri = d_->PointerPoints();
    ASSERT_EQ(tri.size(), 3u);
    EXPECT_NEAR(tri[1].X, c.X - 4, 1);
    EXPECT_NEAR(tri[2].X, c.X + 4, 1);
    EXPECT_NEAR(tri[2].Y, tri[1].Y, 1);
    EXPECT_NEAR(tri[1].Y, c.Y - (radius - 11), 1);
    EXPECT_EQ(d_->Surface().Pixel(tri[0].X, tri[0].Y + 1), clBlack);
    EXPECT_EQ(d_->Surface().Pixel(c.X, tri[1].Y - 2), clGreen);
    // Disabled: the button shadow.
    d_->setEnabled(false);
    EXPECT_EQ(d_->Surface().Pixel(c.X, tri[1].Y - 2), ColorToRGB(clBtnShadow));
}

TEST_F(Dial, AReadingRedrawsOnlyTheFaceAndTheNumber) {
    d_->SetValue(10.0f);
    const QImage before = d_->Surface().Image().copy();
    d_->SetValue(70.0f);
    int changed = 0;
    EXPECT_TRUE(test::ChangesOnlyIn(before, d_->Surface().Image(), changed, d_->FaceRect(),
                                    d_->ValueBoxRect()));
    EXPECT_GT(changed, 0);
    // The new number is drawn: the box changed too.
    int inBox = 0;
    const TRect box = d_->ValueBoxRect();
    for (int y = box.Top; y < box.Bottom; ++y)
        for (int x = box.Left; x < box.Right; ++x)
            inBox += before.pixel(x, y) != d_->Surface().Image().pixel(x, y);
    EXPECT_GT(inBox, 0);
}

TEST_F(Dial, LayoutGivesWayToTheFace) {
    d_->SignalSettings()->SetName1("Setpoint");
    d_->PaintToSurface();
    const TRect withBox = d_->FaceRect();
    EXPECT_GE(withBox.Top, d_->ValueBoxRect().Bottom);
    d_->SetOptions(TKxDial::kAllOptions & ~TKxDial::DialOption(TKxDial::opValue));
    d_->PaintToSurface();
    EXPECT_EQ(d_->ValueBoxRect(), TRect{});
    EXPECT_LT(d_->FaceRect().Top, withBox.Top);  // the face moves up
    // Tiny controls: no part overlaps another and nothing leaves the control.
    d_->SetOptions(TKxDial::kAllOptions);
    for (QSize s : {QSize(30, 30), QSize(60, 80), QSize(40, 200), QSize(300, 60), QSize(5, 5),
                    QSize(113, 161)}) {
        d_->SetBounds(0, 0, s.width(), s.height());
        d_->PaintToSurface();
        const TRect face = d_->FaceRect(), box = d_->ValueBoxRect();
        if (box.Right > box.Left) {
            EXPECT_GE(face.Top, box.Bottom) << s.width() << "x" << s.height();
            EXPECT_GE(box.Left, 0);
            EXPECT_LE(box.Right, s.width());
        }
        d_->SetValue(float(s.width() % 100));
    }
}

TEST_F(Dial, KeysAndWheelTurnThePointer) {
    d_->SetDigit(500);
    QKeyEvent up(QEvent::KeyPress, Qt::Key_PageUp, Qt::NoModifier);
    QCoreApplication::sendEvent(d_.get(), &up);
    EXPECT_EQ(d_->Digit(), 510);
    EXPECT_FLOAT_EQ(d_->PointerAngle(), 510 * 270 / 1000.0f);
    EXPECT_EQ(d_->ValueText(), "51.0");
}

TEST(DialDefaults, PropertiesAndTheirBounds) {
    test::ResetEnvironment();
    TKxDial d;
    EXPECT_EQ(d.width(), 113);
    EXPECT_EQ(d.height(), 161);
    EXPECT_EQ(d.Options(), TKxDial::kAllOptions);
    EXPECT_EQ(d.PointerType(), TKxDial::dpRound);
    EXPECT_EQ(d.PointerSize(), 8);
    EXPECT_EQ(d.BevelOuter()->Spacing(), 5);
    EXPECT_EQ(d.BevelOuter()->Width(), 2);
    EXPECT_EQ(d.BevelOuter()->BevelLine(), TKxSBevel::blOuter);
    EXPECT_EQ(d.BevelValue()->Width(), 2);
    EXPECT_EQ(d.BevelValue()->Color(), clBlack);
    EXPECT_EQ(d.BevelValue()->Spacing(), 0);
    EXPECT_EQ(d.BevelDial()->ColorShadowFrom(), clBtnHighlight);
    EXPECT_EQ(d.BevelDial()->Spacing(), 1);
    EXPECT_EQ(d.FontValue()->Color(), clLime);
    EXPECT_EQ(d.FontValue()->Size(), 10);
    EXPECT_EQ(d.FontValue()->Name(), QStringLiteral("System"));
    EXPECT_EQ(d.ScaleSettings()->Font()->Size(), 8);
    EXPECT_EQ(d.Font()->Size(), 10);
    for (int32_t size : {0, -1, 101}) {
        d.SetPointerSize(size);
        EXPECT_EQ(d.PointerSize(), 8) << size;
    }
    d.SetPointerSize(1);
    EXPECT_EQ(d.PointerSize(), 1);
    d.SetPointerType(TKxDial::TDialPointer(3));
    d.SetPointerType(TKxDial::TDialPointer(-1));
    EXPECT_EQ(d.PointerType(), TKxDial::dpRound);
    d.SetOptions(0xFF);
    EXPECT_EQ(d.Options(), TKxDial::kAllOptions);
}

TEST_F(Dial, SettingsChangesRepaintTheWhole) {
    const struct {
        const char* name;
        std::function<void()> change;
    } cases[] = {
        {"outer bevel", [&] { d_->BevelOuter()->SetWidth(3); }},
        {"value bevel", [&] { d_->BevelValue()->SetColor(clNavy); }},
        {"dial bevel", [&] { d_->BevelDial()->SetSpacing(2); }},
        {"value font", [&] { d_->FontValue()->SetSize(12); }},
        {"scale", [&] { d_->ScaleSettings()->SetSteps(4); }},
        {"signal", [&] { d_->SignalSettings()->SetName1("Flow"); }},
        {"pointer type", [&] { d_->SetPointerType(TKxDial::dpLine); }},
        {"pointer size", [&] { d_->SetPointerSize(5); }},
        {"options", [&] { d_->SetOptions(TKxDial::DialOption(TKxDial::opScale)); }},
    };
    for (const auto& t : cases) {
        d_->PaintToSurface();
        d_->SetRedrawNeeded(false);
        t.change();
        EXPECT_TRUE(d_->RedrawNeeded()) << t.name;
    }
    d_->PaintToSurface();
    d_->SetRedrawNeeded(false);
    d_->SetPointerType(TKxDial::dpLine);
    d_->SetPointerSize(5);
    EXPECT_FALSE(d_->RedrawNeeded());
}

TEST_F(Dial, ExactLayoutWithFixedTextMetrics) {
    // 7-pixel characters, 13-pixel lines: the value box holds "100.0" (35 wide, margins of
    // 13 div 3 = 4) with "bar" beside it; the outer bevel takes 8 pixels a side.
    const QStringList bottom = {"TextOut(18,142,'SignalName2')", "TextOut(42,129,'Flow')"};
    const QStringList labels = {"TextOut(27,98,'0')",  "TextOut(13,66,'20')",
                                "TextOut(32,39,'40')", "TextOut(66,39,'60')",
                                "TextOut(85,66,'80')", "TextOut(72,98,'100')"};
    const struct {
        const char* name;
        TKxDial::TDialOptions options;
        TRect face, box;
        QStringList text;
    } cases[] = {
        {"defaults",
         TKxDial::kAllOptions,
         {39, 61, 74, 96},
         {28, 10, 63, 23},
         QStringList{"TextOut(71,10,'bar')"} + bottom + labels},
        // Without labels the ticks reach the square's rim and the knob grows.
        {"no scale text",
         TKxDial::kAllOptions & ~TKxDial::DialOption(TKxDial::opScaleText),
         {17, 39, 96, 118},
         {28, 10, 63, 23},
         QStringList{"TextOut(71,10,'bar')"} + bottom},
        {"no scale",
         TKxDial::kAllOptions & ~TKxDial::DialOption(TKxDial::opScale),
         {10, 32, 103, 125},
         {28, 10, 63, 23},
         QStringList{"TextOut(71,10,'bar')"} + bottom},
        {"no unit",
         TKxDial::kAllOptions & ~TKxDial::DialOption(TKxDial::opUnit),
         {39, 61, 74, 96},
         {39, 10, 74, 23},
         bottom + labels},
        {"no names",
         TKxDial::kAllOptions & ~TKxDial::DialOption(TKxDial::opName1) &
             ~TKxDial::DialOption(TKxDial::opName2),
         {},
         {28, 10, 63, 23},
         {}},
    };
    for (const auto& t : cases) {
        TKxDial d(&form_);
        d.SignalSettings()->SetName1("Flow");
        d.SignalSettings()->SetValueUnit("bar");
        d.SetOptions(t.options);
        d.Loaded();
        TRecordingCanvas rec(&d.SurfaceImage());
        d.SetCanvas(&rec);
        d.PaintToSurface();
        if (t.face.Right > 0) {
            EXPECT_EQ(d.FaceRect(), t.face) << t.name;
            EXPECT_EQ(rec.Log("TextOut"), t.text) << t.name;
        } else {
            // Without names the area below the box is taller than wide: the face keeps
            // its size and moves to the middle.
            EXPECT_EQ(d.FaceRect().Width(), 35) << t.name;
            EXPECT_GT(d.FaceRect().Top, 61) << t.name;
            EXPECT_EQ(rec.Log("TextOut").filter("Signal").size(), 0) << t.name;
        }
        EXPECT_EQ(d.ValueBoxRect(), t.box) << t.name;
        d.SetCanvas(nullptr);
    }
    // Without the outer bevel the box starts at the top and the whole control is filled.
    TKxDial d(&form_);
    d.SetOptions(TKxDial::kAllOptions & ~TKxDial::DialOption(TKxDial::opBevelOuter));
    d.SetBounds(0, 0, 113, 161);
    d.SignalSettings()->SetValueUnit("bar");
    d.Loaded();
    TRecordingCanvas rec(&d.SurfaceImage());
    d.SetCanvas(&rec);
    d.PaintToSurface();
    EXPECT_EQ(d.ValueBoxRect(), (TRect{28, 2, 63, 15}));
    EXPECT_EQ(d.Surface().Pixel(0, 0), ColorToRGB(d.BevelOuter()->Color()));
    d.SetCanvas(nullptr);
}

TEST(DialHiDpi, AReadingMatchesAFullPaint) {
    test::ResetEnvironment();
    for (double ratio : {1.0, 1.5, 2.0})
        for (auto pointer : {TKxDial::dpRound, TKxDial::dpLine, TKxDial::dpTriangle}) {
            test::AtRatio<TKxDial> d(ratio);
            d.SetPointerType(pointer);
            d.Loaded();
            d.PaintToSurface();
            d.SetValue(63.0f);
            const QImage read = d.Surface().Image().copy();
            d.Invalidate();
            d.PaintToSurface();
            EXPECT_EQ(read, d.Surface().Image()) << ratio << " " << pointer;
        }
}

TEST_F(Dial, SettingsObjectsAreCopiedAndNullIsIgnored) {
    TKxSBevel bevel;
    bevel.SetWidth(4);
    d_->SetBevelOuter(&bevel);
    d_->SetBevelValue(&bevel);
    d_->SetBevelDial(&bevel);
    EXPECT_EQ(d_->BevelOuter()->Width(), 4);
    EXPECT_EQ(d_->BevelValue()->Width(), 4);
    EXPECT_EQ(d_->BevelDial()->Width(), 4);
    TScaleSettings scale;
    scale.SetSteps(7);
    d_->SetScaleSettings(&scale);
    EXPECT_EQ(d_->ScaleSettings()->Steps(), 7);
    TFont font;
    font.SetSize(20);
    d_->SetFontValue(&font);
    EXPECT_EQ(d_->FontValue()->Size(), 20);
    d_->SetBevelOuter(nullptr);
    d_->SetBevelValue(nullptr);
    d_->SetBevelDial(nullptr);
    d_->SetScaleSettings(nullptr);
    d_->SetFontValue(nullptr);
    d_->SetBevelValue(d_->BevelValue());
    d_->SetScaleSettings(d_->ScaleSettings());
    EXPECT_EQ(d_->BevelValue()->Width(), 4);
    EXPECT_EQ(d_->ScaleSettings()->Steps(), 7);
}

TEST_F(Dial, TheValueBoxAndItsUnitNeedTheirWidth) {
    // Fixed metrics: the box is 35 + 2 x 2 + 2 x 4 = 47 wide, the unit 4 + 21 more; the
    // outer bevel takes 16 of the control's width.
    const struct {
        int width;
        bool box, unit;
    } cases[] = {{62, false, false}, {63, true, false}, {87, true, false}, {88, true, true}};
    for (const auto& t : cases) {
        TKxDial d(&form_);
        d.SignalSettings()->SetValueUnit("bar");
        d.SetBounds(0, 0, t.width, 300);
        d.Loaded();
        TRecordingCanvas rec(&d.SurfaceImage());
        d.SetCanvas(&rec);
        d.PaintToSurface();
        EXPECT_EQ(d.ValueBoxRect().Right > d.ValueBoxRect().Left, t.box) << t.width;
        EXPECT_EQ(rec.Log("TextOut").filter("'bar'").size(), t.unit ? 1 : 0) << t.width;
        if (t.box && !t.unit) {
            // Centred alone: (width - 16 - 35 - 4) div 2 - 4 from the bevel's inside, plus
            // the value bevel and the margin.
            EXPECT_EQ(d.ValueBoxRect().Left, 8 + (t.width - 16 - 35 - 4) / 2 - 4 + 2 + 4)
                << t.width;
        }
        d.SetCanvas(nullptr);
    }
}

TEST_F(Dial, TheRoundMarkSitsOnItsCentre) {
    d_->SetValue(0.0f);
    const QImage atStart = d_->Surface().Image().copy();
    d_->SetValue(50.0f);
    const QImage atTop = d_->Surface().Image().copy();
    const TPoint spot = d_->PointerPoints().at(0);
    const TPoint c = d_->FaceCentre();
    // The pixels the mark changes in the upper half of the face, where only it moved.
    TRect ink{INT_MAX, INT_MAX, INT_MIN, INT_MIN};
    for (int y = d_->FaceRect().Top; y < c.Y; ++y)
        for (int x = d_->FaceRect().Left; x < d_->FaceRect().Right; ++x)
            if (atStart.pixel(x, y) != atTop.pixel(x, y)) {
                ink.Left = std::min(ink.Left, x);
                ink.Top = std::min(ink.Top, y);
                ink.Right = std::max(ink.Right, x + 1);
                ink.Bottom = std::max(ink.Bottom, y + 1);
            }
    ASSERT_LT(ink.Left, ink.Right);
    EXPECT_LE(std::abs((ink.Left + ink.Right - 1) - 2 * spot.X), 1);
    EXPECT_LE(std::abs((ink.Top + ink.Bottom - 1) - 2 * spot.Y), 1);
    EXPECT_GE(ink.Right - ink.Left, 2 * 4 + 1);
}

TEST_F(Dial, TheMarksSizeTheRingAndTheCentring) {
    // The round mark's radius is half the pointer size: its centre R - radius - 3 inside.
    d_->SetPointerSize(12);
    d_->PaintToSurface();
    d_->SetValue(50.0f);
    const TPoint c = d_->FaceCentre();
    const int32_t radius = KxGetRadius(d_->FaceRect());
    EXPECT_EQ(d_->PointerPoints().at(0), (TPoint{c.X, c.Y - (radius - 6 - 3)}));
    // The ring is outlined in the button shadow.
    EXPECT_EQ(d_->Surface().Pixel(c.X, d_->FaceRect().Top), ColorToRGB(clBtnShadow));
    // Back to the round mark after another one.
    d_->SetPointerType(TKxDial::dpLine);
    d_->SetPointerType(TKxDial::dpRound);
    EXPECT_EQ(d_->PointerType(), TKxDial::dpRound);
    // A wide control centres the face.
    d_->SetBounds(0, 0, 400, 200);
    d_->PaintToSurface();
    EXPECT_NEAR(d_->FaceCentre().X, 200, 1);
}

TEST(DialLayout, NamesAndValueBoxGiveWayAtExactHeights) {
    // Fixed metrics: 8 pixels of bevel a side, names 13 each, the value box 17 + 5; the
    // face needs 12 pixels of height.
    test::ResetEnvironment();
    QWidget form;
    const struct {
        int height;
        TKxDial::TDialOption off;  // an option left out (opScale: none that matters here)
        int names;
        bool box;
    } cases[] = {
        {76, TKxDial::opScale, 2, true},  {75, TKxDial::opScale, 0, true},   // 60 - 26 - 22
        {63, TKxDial::opName1, 1, true},  {62, TKxDial::opName1, 0, true},   // Name2 alone
        {63, TKxDial::opName2, 1, true},  {62, TKxDial::opName2, 0, true},   // Name1 alone
        {54, TKxDial::opValue, 2, false}, {53, TKxDial::opValue, 0, false},  // 38 - 26
        {50, TKxDial::opScale, 0, true},  {49, TKxDial::opScale, 0, false},  // 34 - 22
    };
    for (const auto& t : cases) {
        TKxDial d(&form);
        d.SetBounds(0, 0, 113, t.height);
        d.SetOptions(TKxDial::kAllOptions & ~TKxDial::DialOption(t.off));
        d.Loaded();
        TRecordingCanvas rec(&d.SurfaceImage());
        d.SetCanvas(&rec);
        d.PaintToSurface();
        EXPECT_EQ(rec.Log("TextOut").filter("SignalName").size(), t.names)
            << t.height << " " << t.off;
        EXPECT_EQ(d.ValueBoxRect().Right > d.ValueBoxRect().Left, t.box) << t.height;
        d.SetCanvas(nullptr);
    }
}

TEST(DialDefaults, ConstructionIsOneUpdatePhase) {
    test::ResetEnvironment();
    TKxDial d;
    EXPECT_EQ(d.Font()->Name(), QStringLiteral("MS Sans Serif"));
    d.SetRedrawNeeded(false);
    d.SetPointerSize(5);  // stored, no repaint before the control is loaded
    EXPECT_FALSE(d.RedrawNeeded());
    d.Loaded();
    d.PaintToSurface();
    d.SetRedrawNeeded(false);
    d.SetColorFocus(clRed);
    EXPECT_TRUE(d.RedrawNeeded());
    d.SetRedrawNeeded(false);
    d.SetColorNonFocus(clBlue);
    EXPECT_TRUE(d.RedrawNeeded());
}

}  // namespace
}  // namespace kx
