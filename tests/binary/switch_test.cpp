// The switches and the colour bit button: operation by mouse and keyboard, geometry, and
// what a state change or blink phase redraws.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWidget>
#include <climits>
#include <functional>
#include <memory>

#include "binary_fixture.h"
#include "common/test_env.h"
#include "kx/binary/colbitbtn.h"
#include "kx/binary/kxled.h"
#include "kx/binary/leverswitch.h"
#include "kx/binary/rockerswitch.h"
#include "kx/drawing/colors.h"
#include "kx/host/recordingcanvas.h"

namespace kx {
namespace {

void Click(QWidget* w) {
    const QPointF p(w->width() / 2, w->height() / 2);
    QMouseEvent press(QEvent::MouseButtonPress, p, p, Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(w, &press);
    QMouseEvent release(QEvent::MouseButtonRelease, p, p, Qt::LeftButton, Qt::NoButton,
                        Qt::NoModifier);
    QCoreApplication::sendEvent(w, &release);
}

void Space(QWidget* w) {
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier);
    QCoreApplication::sendEvent(w, &press);
    QKeyEvent release(QEvent::KeyRelease, Qt::Key_Space, Qt::NoModifier);
    QCoreApplication::sendEvent(w, &release);
}

// Pixels of two images that differ, as a bounding box (empty when none).
TRect Changed(const QImage& a, const QImage& b) {
    TRect r{a.width(), a.height(), 0, 0};
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            if (a.pixel(x, y) != b.pixel(x, y)) {
                r.Left = std::min(r.Left, x);
                r.Top = std::min(r.Top, y);
                r.Right = std::max(r.Right, x + 1);
                r.Bottom = std::max(r.Bottom, y + 1);
            }
    return r.Right > r.Left ? r : TRect{};
}

bool Inside(const TRect& inner, const TRect& outer) {
    return inner.Left >= outer.Left && inner.Top >= outer.Top && inner.Right <= outer.Right &&
           inner.Bottom <= outer.Bottom;
}

using Switches = test::BinaryFixture;

using TFactory = std::function<TKxBinGControl*(QWidget*)>;
const struct TKind {
    const char* name;
    TFactory make;
    int32_t width, height;
} kKinds[] = {
    {"rocker", [](QWidget* p) { return new TKxRockerSwitch(p); }, 41, 65},
    {"toggle", [](QWidget* p) { return new TKxToggleSwitch(p); }, 49, 97},
    {"colbit", [](QWidget* p) { return new TKxColBitBtn(p); }, 75, 25},
};

TEST_F(Switches, DefaultsFocusAndOperation) {
    for (const auto& k : kKinds) {
        std::unique_ptr<TKxBinGControl> c(k.make(&form_));
        EXPECT_EQ(c->width(), k.width) << k.name;
        EXPECT_EQ(c->height(), k.height) << k.name;
        EXPECT_EQ(c->focusPolicy(), Qt::StrongFocus) << k.name;
        EXPECT_EQ(c->Mode(), mSwitch) << k.name;
        Click(c.get());
        EXPECT_TRUE(c->Checked()) << k.name;
        Space(c.get());
        EXPECT_FALSE(c->Checked()) << k.name;
        c->SetMode(mButton);
        QKeyEvent press(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier);
        QCoreApplication::sendEvent(c.get(), &press);
        EXPECT_TRUE(c->Checked()) << k.name;
        QKeyEvent release(QEvent::KeyRelease, Qt::Key_Space, Qt::NoModifier);
        QCoreApplication::sendEvent(c.get(), &release);
        EXPECT_FALSE(c->Checked()) << k.name;
        c->SetMode(mIndicator);
        Click(c.get());
        EXPECT_FALSE(c->Checked()) << k.name;
    }
}

TEST_F(Switches, AStateChangeRedrawsOnlyTheBodyAndShowsTheState) {
    for (const auto& k : kKinds) {
        std::unique_ptr<TKxBinGControl> c(k.make(&form_));
        c->SetCaption("Main");
        c->PaintToSurface();
        const QImage off = c->Surface().Image().copy();
        c->SetChecked(true);
        const QImage on = c->Surface().Image().copy();
        const TRect changed = Changed(off, on);
        EXPECT_NE(changed, TRect{}) << k.name;
        TRect body{0, 0, c->width(), c->height()};
        if (auto* s = dynamic_cast<TKxCustomSwitch*>(c.get())) body = s->BodyRect();
        EXPECT_TRUE(Inside(changed, body)) << k.name;
        // Back off gives the first picture again.
        c->SetChecked(false);
        EXPECT_EQ(Changed(off, c->Surface().Image()), TRect{}) << k.name;
        // A full repaint in the on state gives the same picture as the state change.
        c->SetChecked(true);
        c->Invalidate();
        c->PaintToSurface();
        EXPECT_EQ(Changed(on, c->Surface().Image()), TRect{}) << k.name;
    }
}

TEST_F(Switches, BlinkPhasesAlternateTheLitColour) {
    for (const auto& k : kKinds) {
        std::unique_ptr<TKxBinGControl> c(k.make(&form_));
        c->SetFlashing(true);
        c->SetChecked(true);
        c->PaintToSurface();
        const QImage lit = c->Surface().Image().copy();
        TMessage dark{KX_WM_FLASH, 0, 0, 0};
        c->WMFlash(dark);
        const QImage unlit = c->Surface().Image().copy();
        EXPECT_NE(Changed(lit, unlit), TRect{}) << k.name;
        TMessage bright{KX_WM_FLASH, 0, 1, 0};
        c->WMFlash(bright);
        EXPECT_EQ(Changed(lit, c->Surface().Image()), TRect{}) << k.name;
    }
}

TEST_F(Switches, RockerHalvesSplitThePivotAndShowThePressedSide) {
    const struct {
        TRect body;
        bool vertical;
        TRect on, off;
    } cases[] = {
        {{0, 0, 37, 48}, true, {2, 2, 35, 24}, {2, 24, 35, 46}},
        {{0, 0, 37, 49}, true, {2, 2, 35, 25}, {2, 25, 35, 47}},
        {{3, 3, 63, 30}, false, {33, 5, 61, 28}, {5, 5, 33, 28}},
        {{0, 0, 61, 20}, false, {30, 2, 59, 18}, {2, 2, 30, 18}},
    };
    for (const auto& t : cases) {
        const auto [on, off] = TKxRockerSwitch::Halves(t.body, t.vertical);
        EXPECT_EQ(on, t.on);
        EXPECT_EQ(off, t.off);
    }
    TKxRockerSwitch r(&form_);
    r.SetCaption("");
    r.SetColorOn(clRed);
    r.SetChecked(true);
    r.PaintToSurface();
    const auto [on, off] = TKxRockerSwitch::Halves(r.BodyRect(), true);
    // The pressed on half is darker than its colour, the raised off half shows Color.
    const TColor pressedRed = KxSetBrightness(ColorToRGB(clRed), 80.0f);
    EXPECT_EQ(r.Surface().Pixel(on.Left + 3, on.Bottom - 4), pressedRed);
    EXPECT_EQ(r.Surface().Pixel(off.Left + 3, off.Bottom - 4), ColorToRGB(clBtnFace));
    // The left edge of a raised half is the highlight, of a pressed one black.
    EXPECT_EQ(r.Surface().Pixel(off.Left, off.Top + 3), ColorToRGB(clBtnHighlight));
    EXPECT_EQ(r.Surface().Pixel(on.Left, on.Top + 3), ColorToRGB(clBlack));
    r.SetOrientation(orHorizontal);
    EXPECT_TRUE(r.RedrawNeeded());
}

TEST_F(Switches, LeverReachesTheOnEndWithoutCoveringTheLegends) {
    TKxToggleSwitch t(&form_);
    t.SetCaption("");
    for (auto orientation : {orVertical, orHorizontal})
        for (int size : {30, 41, 60, 81, 200}) {
            t.SetOrientation(orientation);
            t.SetBounds(0, 0, orientation == orVertical ? size / 2 + 4 : size, size);
            t.PaintToSurface();
            TCanvas& c = t.Canvas();
            const auto g = t.Geometry(c, t.BodyRect());
            for (bool on : {true, false}) {
                const TPoint ball = t.BallCentre(g, on);
                const int32_t b = g.BallRadius;
                const TRect knob{ball.X - b, ball.Y - b, ball.X + b + 1, ball.Y + b + 1};
                EXPECT_TRUE(Inside(knob, t.BodyRect())) << size << " " << orientation;
                EXPECT_GE(g.Reach, g.NutRadius);
                if (!g.LegendOn && !g.LegendOff) continue;
                // The legends lie between the ball and the plate's edge.
                const int32_t th = c.TextHeight("ON"), tw = c.TextWidth("OFF");
                if (orientation == orVertical)
                    EXPECT_GE(knob.Top, g.Plate.Top + th + 1) << size;
                else
                    EXPECT_GE(knob.Left, g.Plate.Left + tw + 1) << size;
            }
        }
    // Tiny switches draw what fits, inside the control.
    for (int size : {1, 5, 12, 20}) {
        t.SetBounds(0, 0, size, size);
        t.SetChecked(!t.Checked());
        t.PaintToSurface();
    }
    // At its default size the toggle shows both legends, also with a caption.
    TKxToggleSwitch d(&form_);
    d.SetCaption("Pump");
    d.PaintToSurface();
    const auto g = d.Geometry(d.Canvas(), d.BodyRect());
    EXPECT_TRUE(g.LegendOn);
    EXPECT_TRUE(g.LegendOff);
    const TPoint up = d.BallCentre(g, true), down = d.BallCentre(g, false);
    EXPECT_LT(up.Y, g.Centre.Y);
    EXPECT_GT(down.Y, g.Centre.Y);
    d.SetChecked(true);
    EXPECT_EQ(d.Surface().Pixel(up.X, up.Y), ColorToRGB(clLime));
}

TEST_F(Switches, CaptionGivesWayToTheBody) {
    TKxRockerSwitch r(&form_);
    r.SetCaption("Pump");
    r.PaintToSurface();
    EXPECT_LT(r.BodyRect().Bottom, r.height() - TKxCustomSwitch::kFocusMargin);
    const TRect withCaption = r.BodyRect();
    r.SetBounds(0, 0, 41, 20);  // too low for a caption and a body
    r.PaintToSurface();
    EXPECT_EQ(r.BodyRect(), (TRect{2, 2, 39, 18}));
    r.SetBounds(0, 0, 41, 65);
    r.SetCaption("");
    r.PaintToSurface();
    EXPECT_EQ(r.BodyRect(), (TRect{2, 2, 39, 63}));
    EXPECT_LT(withCaption.Bottom, r.BodyRect().Bottom);
}

TEST_F(Switches, ColourBitButtonsEditAStatusWord) {
    std::vector<TKxColBitBtn*> row;
    for (int i = 0; i < 4; ++i) {
        auto* b = new TKxColBitBtn(&form_);
        b->SetStatusBit(i);
        b->SetGroupIndex(7);
        row.push_back(b);
    }
    Click(row[1]);
    Click(row[3]);
    EXPECT_EQ(row[0]->StatusInt(), 10);
    for (auto* b : row)
        b->SetMode(mRadioButton);
    Click(row[2]);
    for (auto* b : row)
        EXPECT_EQ(b->StatusInt(), 4);
    row[2]->PaintToSurface();
    const TRect f = row[2]->FaceRect();
    EXPECT_EQ(f, (TRect{2, 2, 73, 23}));
    EXPECT_EQ(row[2]->Surface().Pixel(f.Left + 2, f.Bottom - 2), ColorToRGB(clLime));
    row[1]->PaintToSurface();
    EXPECT_EQ(row[1]->FaceRect(), (TRect{2, 2, 73, 23}));
    EXPECT_EQ(row[1]->Surface().Pixel(4, 20), ColorToRGB(clBtnFace));
    row[1]->SetBevelWidth(9);
    EXPECT_EQ(row[1]->BevelWidth(), 2);
    row[1]->SetBevelWidth(0);
    row[1]->PaintToSurface();
    EXPECT_EQ(row[1]->FaceRect(), (TRect{0, 0, 75, 25}));
}

TEST_F(Switches, ASwitchDrivesALamp) {
    TKxToggleSwitch sw(&form_);
    TKxLED lamp(&form_);
    QObject::connect(&sw, &TKxBinGControl::OnStatusChanged, &lamp,
                     [&] { lamp.SetChecked(sw.Checked()); });
    Click(&sw);
    EXPECT_TRUE(lamp.Checked());
    Space(&sw);
    EXPECT_FALSE(lamp.Checked());
}

TEST_F(Switches, ExtremeSizesTextsAndSpacingsDrawSafely) {
    const QString longText = QString(5000, QLatin1Char('W')) + "|" + QString(3, QLatin1Char('|'));
    const QSize sizes[] = {{0, 0}, {1, 1}, {3, 200}, {2000, 12}, {15, 15}};
    std::vector<TKind> kinds(std::begin(kKinds), std::end(kKinds));
    kinds.push_back({"led", [](QWidget* p) { return new TKxLED(p); }, 73, 33});
    for (const auto& k : kinds)
        for (const QSize& s : sizes)
            for (const QString& caption : {QString(), longText, QString("|||")}) {
                std::unique_ptr<TKxBinGControl> c(k.make(&form_));
                c->SetCaption(caption);
                c->SetBounds(0, 0, s.width(), s.height());
                c->SetStatusInt(int32_t(0x80000001));
                c->SetFlashing(true);
                c->PaintToSurface();
                TMessage dark{KX_WM_FLASH, 0, 0, 0};
                c->WMFlash(dark);
                c->SetChecked(false);
                EXPECT_EQ(c->Surface().Width(), s.width()) << k.name;
            }
    TKxLED led(&form_);
    led.SetCaption(longText);
    for (int32_t spacing : {INT_MAX, INT_MIN, -100})
        for (auto pos : {lpLeft, lpRight, lpTop, lpBottom}) {
            led.SetSpacing(spacing);
            led.SetLED_Position(pos);
            led.PaintToSurface();
        }
}

TEST_F(Switches, SettersRepaintOnlyOnChange) {
    TKxToggleSwitch s(&form_);
    s.PaintToSurface();
    const struct {
        const char* name;
        std::function<void()> same, other;
    } cases[] = {
        {"Orientation", [&] { s.SetOrientation(s.Orientation()); },
         [&] { s.SetOrientation(orHorizontal); }},
        {"Color", [&] { s.SetColor(s.Color()); }, [&] { s.SetColor(clRed); }},
        {"ColorOn", [&] { s.SetColorOn(s.ColorOn()); }, [&] { s.SetColorOn(clRed); }},
        {"ColorOff", [&] { s.SetColorOff(s.ColorOff()); }, [&] { s.SetColorOff(clRed); }},
        {"CaptionOn", [&] { s.SetCaptionOn(s.CaptionOn()); }, [&] { s.SetCaptionOn("UP"); }},
        {"CaptionOff", [&] { s.SetCaptionOff(s.CaptionOff()); }, [&] { s.SetCaptionOff("DN"); }},
    };
    for (const auto& t : cases) {
        s.SetRedrawNeeded(false);
        t.same();
        EXPECT_FALSE(s.RedrawNeeded()) << t.name;
        t.other();
        EXPECT_TRUE(s.RedrawNeeded()) << t.name;
    }
    s.SetRedrawNeeded(false);
    s.SetOrientation(TKxCustomSwitch::TOrientation(5));
    EXPECT_FALSE(s.RedrawNeeded());
    EXPECT_EQ(s.Orientation(), orHorizontal);
}

TEST_F(Switches, LegendsAreDrawnOnlyWhenTheyFit) {
    const struct {
        TPoint at;
        TRect room;
        bool drawn;
    } cases[] = {
        {{20, 20}, {0, 0, 40, 40}, true},  // "ON": 14 x 13 around (20, 20)
        {{7, 20}, {0, 0, 40, 40}, true},   // touching the left edge
        {{6, 20}, {0, 0, 40, 40}, false},  // one pixel over it
        {{20, 6}, {0, 0, 40, 40}, true},   {{20, 5}, {0, 0, 40, 40}, false},
        {{33, 33}, {0, 0, 40, 40}, true},  {{34, 20}, {0, 0, 40, 40}, false},
        {{20, 34}, {0, 0, 40, 40}, false},
    };
    for (const auto& t : cases) {
        TRecordingCanvas rec;
        EXPECT_EQ(KxTextOutIfFits(rec, t.at, "ON", t.room), t.drawn) << t.at.X << "," << t.at.Y;
        EXPECT_EQ(rec.CallsOf("TextOut").size(), t.drawn ? 1u : 0u);
    }
    TRecordingCanvas rec;
    EXPECT_FALSE(KxTextOutIfFits(rec, {20, 20}, "", TRect{0, 0, 40, 40}));
}

TEST_F(Switches, ANarrowBodyStillDraws) {
    TKxRockerSwitch r(&form_);
    r.SetCaption("");
    r.SetBounds(0, 0, 5, 30);
    r.PaintToSurface();
    EXPECT_EQ(r.BodyRect(), (TRect{2, 2, 3, 28}));
    EXPECT_NE(qAlpha(r.Surface().Image().pixel(2, 10)), 0);
}

}  // namespace
}  // namespace kx
