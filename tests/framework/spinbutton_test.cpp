// The repeating speed button and the spin button, driven with real mouse and key events
// and a hand-stepped blink service: repeat timing, the end of a hold in every way, the
// face pixel for pixel, the button layout, the focus hand-over and the events.
#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "common/test_env.h"
#include "kx/blink/flashtimer.h"
#include "kx/drawing/shapes.h"
#include "kx/framework/spinbutton.h"
#include "kx/host/color.h"

namespace kx {
namespace {

void Mouse(QWidget* w, QEvent::Type type, QPoint p, Qt::MouseButton b = Qt::LeftButton) {
    // A move carries the held left button; a release leaves nothing held.
    const bool move = type == QEvent::MouseMove;
    const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton
                                  : move                             ? Qt::LeftButton
                                                                     : Qt::MouseButtons(b);
    QMouseEvent e(type, QPointF(p), w->mapToGlobal(QPointF(p)), move ? Qt::NoButton : b, held,
                  Qt::NoModifier);
    QCoreApplication::sendEvent(w, &e);
}
void Press(QWidget* w, Qt::MouseButton b = Qt::LeftButton) {
    Mouse(w, QEvent::MouseButtonPress, {2, 2}, b);
}
void Release(QWidget* w, QPoint p = {2, 2}) {
    Mouse(w, QEvent::MouseButtonRelease, p);
}
void Key(QWidget* w, int key) {
    QKeyEvent e(QEvent::KeyPress, key, Qt::NoModifier);
    QCoreApplication::sendEvent(w, &e);
}

bool Subscribed(const TKxFlashClient* control) {
    for (const auto& e : FlashList())
        if (e->Control == control) return true;
    return false;
}

class SpinButton : public ::testing::Test {
  protected:
    void SetUp() override {
        SetTickSourceFactory([] { return std::make_unique<TManualTickSource>(); });
        ClearFlashList();
        delete FlashTimerInstance();
        test::FakeClock().SetTicks(1000);
    }
    void TearDown() override {
        ClearFlashList();
        delete FlashTimerInstance();
        SetTickSourceFactory({});
    }
    // Runs the blink service for ms milliseconds in its 16 ms ticks.
    static void Run(uint32_t ms) {
        for (uint32_t t = 16; t <= ms; t += 16) {
            test::FakeClock().Advance(16);
            RunFlashTick();
        }
        test::FakeClock().Advance(ms % 16);
    }
    // The click times (ms after the press) of a hold of holdMs, release included.
    static std::vector<uint32_t> Hold(TKxTimerSpeedBtn& b, uint32_t holdMs) {
        std::vector<uint32_t> times;
        const uint32_t t0 = test::FakeClock().TickCount();
        const auto c = QObject::connect(&b, &QAbstractButton::clicked, [&] {
            times.push_back(test::FakeClock().TickCount() - t0);
        });
        Press(&b);
        Run(holdMs);
        Release(&b);
        QObject::disconnect(c);
        return times;
    }
    QWidget form_;
};

TEST_F(SpinButton, RepeatsAfterTheStartDelayAtTheInterval) {
    const struct {
        int32_t interval;
        uint32_t delay;
        bool enabled;
        uint32_t hold;
        std::vector<uint32_t> clicks;
    } cases[] = {
        {100, 500, true, 450, {450}},
        {100, 500, true, 700, {512, 608, 700}},
        {20, 0, true, 250, {112, 208, 250}},  // 20 is ignored: 100 stays
        {50, 0, true, 200, {64, 112, 160, 200}},
        {100, 500, false, 700, {700}},
        {100, 0xFFFFFFFFu, true, 700, {700}},  // a "negative" delay never elapses
        {100, 0x80000000u, true, 700, {700}},
    };
    for (const auto& c : cases) {
        TKxTimerSpeedBtn b(&form_);
        b.SetInterval(c.interval);
        b.SetStartDelay(c.delay);
        b.SetTimerEnabled(c.enabled);
        EXPECT_EQ(Hold(b, c.hold), c.clicks) << c.interval << " " << c.delay << " " << c.hold;
        EXPECT_FALSE(Subscribed(&b));
    }
}

TEST_F(SpinButton, PressSubscribesWithTheIntervalAndTakesNextTime) {
    TKxTimerSpeedBtn b(&form_);
    Press(&b, Qt::RightButton);
    EXPECT_FALSE(b.Repeating());
    Press(&b);
    ASSERT_EQ(FlashList().size(), 1u);
    EXPECT_EQ(FlashList()[0]->IntervalTime, 100);
    EXPECT_EQ(b.NextTime(), 1500u);
    b.SetStartDelay(50);  // the delay in force at the press holds
    EXPECT_EQ(b.NextTime(), 1500u);
    b.SetInterval(250);
    b.SetInterval(49);
    EXPECT_EQ(FlashList()[0]->IntervalTime, 250);
    Release(&b);
    EXPECT_TRUE(FlashList().empty());
}

TEST_F(SpinButton, EveryWayAHoldEndsLeavesTheBlinkService) {
    form_.show();
    const struct {
        const char* name;
        std::function<void(TKxTimerSpeedBtn*&)> end;
        int clicks;
        bool down;  // still held afterwards
    } cases[] = {
        {"release", [](auto*& b) { Release(b); }, 1, false},
        {"release outside",
         [](auto*& b) {
             Release(b, {-3, 40});
         },
         0, false},
        {"disable", [](auto*& b) { b->setEnabled(false); }, 0, false},
        {"hide", [](auto*& b) { b->hide(); }, 0, false},
        {"timer off", [](auto*& b) { b->SetTimerEnabled(false); }, 0, true},
        {"destroy", [](auto*& b) { delete b, b = nullptr; }, 0, false},
    };
    for (const auto& c : cases) {
        auto* b = new TKxTimerSpeedBtn(&form_);
        b->show();
        const TKxFlashClient* address = b;
        int clicks = 0;
        QObject::connect(b, &QAbstractButton::clicked, [&] { ++clicks; });
        Press(b);
        Run(200);
        c.end(b);
        Run(1000);
        EXPECT_EQ(clicks, c.clicks) << c.name;
        EXPECT_FALSE(Subscribed(address)) << c.name;
        if (b) {
            EXPECT_EQ(b->isDown(), c.down) << c.name;
        }
        delete b;
    }
}

TEST_F(SpinButton, DraggingOffPausesTheRepeats) {
    TKxTimerSpeedBtn b(&form_);
    int clicks = 0;
    QObject::connect(&b, &QAbstractButton::clicked, [&] { ++clicks; });
    Press(&b);
    Run(520);
    EXPECT_EQ(clicks, 1);
    Mouse(&b, QEvent::MouseMove, {-5, -5});
    Run(300);
    EXPECT_EQ(clicks, 1);
    EXPECT_TRUE(b.Repeating());
    Mouse(&b, QEvent::MouseMove, {3, 3});
    Run(100);
    EXPECT_EQ(clicks, 2);
}

TEST_F(SpinButton, DelayCountsFromThePressAcrossTheTickWrap) {
    const struct {
        uint32_t pressTick, delay, elapsed;
        int clicks;
    } cases[] = {
        {0xFFFFFF00u, 500, 112, 0},
        {0xFFFFFF00u, 500, 500, 1},
        {1000, 500, 499, 0},
        {1000, 500, 500, 1},
        {1000, 0, 0, 1},
    };
    for (const auto& c : cases) {
        TKxTimerSpeedBtn b(&form_);
        b.SetStartDelay(c.delay);
        int clicks = 0;
        QObject::connect(&b, &QAbstractButton::clicked, [&] { ++clicks; });
        test::FakeClock().SetTicks(c.pressTick);
        Press(&b);
        EXPECT_EQ(b.NextTime(), c.pressTick + c.delay);
        test::FakeClock().Advance(c.elapsed);
        TMessage m{KX_WM_FLASH, 1, 0, 0};
        b.WMFlash(m);
        EXPECT_EQ(clicks, c.clicks) << c.pressTick << " " << c.elapsed;
    }
}

TEST_F(SpinButton, DrawsBevelAndArrowPerState) {
    // The face inside the bevel (columns 2..12, rows 3..8) and the outer corners:
    // H highlight, K black, S shadow, . face, # button text.
    const struct {
        TKxTimerSpeedBtn::TArrowGlyph glyph;
        int height;
        bool down, enabled;
        const char* corners;  // top-left, bottom-right
        const char* face;
    } cases[] = {
        {TKxTimerSpeedBtn::agUp, 12, false, true, "HK",
         "........... .....#..... ....###.... ...#####... ..#######.. ..........."},
        {TKxTimerSpeedBtn::agUp, 12, true, true, "KH",
         "........... ........... ......#.... .....###... ....#####.. ...#######."},
        {TKxTimerSpeedBtn::agUp, 12, false, false, "HK",
         "........... .....S..... ....SSS.... ...SSSSS... ..SSSSSSS.. ...HHHHHHH."},
        {TKxTimerSpeedBtn::agDown, 13, false, true, "HK",
         "........... ..#######.. ...#####... ....###.... .....#..... ..........."},
    };
    const auto colour = [](char ch) {
        const TColor named[] = {clBtnHighlight, clBlack, clBtnShadow, clBtnText, clBtnFace};
        return ColorToRGB(named[std::string_view("HKS#.").find(ch)]);
    };
    for (const auto& c : cases) {
        TKxTimerSpeedBtn b(&form_);
        b.resize(15, c.height);
        b.SetArrowGlyph(c.glyph);
        b.setDown(c.down);
        b.setEnabled(c.enabled);
        b.PaintToSurface();
        const TBitmap& s = b.Surface();
        EXPECT_EQ(s.Pixel(0, 0), colour(c.corners[0])) << &c - cases;
        EXPECT_EQ(s.Pixel(14, c.height - 1), colour(c.corners[1])) << &c - cases;
        for (int y = 3; y <= 8; ++y)
            for (int x = 2; x <= 12; ++x)
                ASSERT_EQ(s.Pixel(x, y), colour(c.face[(y - 3) * 12 + x - 2]))
                    << &c - cases << " at " << x << "," << y;
        // The screen shows exactly the bitmap.
        EXPECT_EQ(b.grab().toImage().convertToFormat(s.Image().format()), s.Image());
    }
}

TEST_F(SpinButton, LaysOutItsButtons) {
    const struct {
        int w, h;
        int width, upHeight, downHeight;
    } cases[] = {
        {15, 24, 15, 12, 12}, {10, 24, 15, 12, 12}, {15, 25, 15, 12, 13},     {40, 0, 40, 0, 0},
        {20, 1, 20, 0, 1},    {-5, -5, 15, 0, 0},   {15, 1001, 15, 500, 501},
    };
    for (const auto& c : cases) {
        TKxSpinButton s(&form_);
        s.SetBounds(3, 4, c.w, c.h);
        EXPECT_EQ(s.geometry(), QRect(3, 4, c.width, std::max(c.h, 0))) << c.w << "x" << c.h;
        EXPECT_EQ(s.UpButton()->geometry(), QRect(0, 0, c.width, c.upHeight));
        EXPECT_EQ(s.DownButton()->geometry(), QRect(0, c.upHeight, c.width, c.downHeight));
    }
    // Shown, a plain resize takes the same path.
    TKxSpinButton s(&form_);
    EXPECT_EQ(s.size(), QSize(15, 24));
    form_.show();
    s.resize(10, 25);
    EXPECT_EQ(s.size(), QSize(15, 25));
    EXPECT_EQ(s.DownButton()->geometry(), QRect(0, 12, 15, 13));
}

TEST_F(SpinButton, ForwardsIntervalAndStartDelayToBothButtons) {
    TKxSpinButton s(&form_);
    EXPECT_EQ(s.Interval(), 100);
    EXPECT_EQ(s.StartDelay(), 500);
    EXPECT_FALSE(s.TabStop());
    EXPECT_EQ(s.focusPolicy(), Qt::NoFocus);
    EXPECT_EQ(s.UpButton()->ArrowGlyph(), TKxTimerSpeedBtn::agUp);
    EXPECT_EQ(s.DownButton()->ArrowGlyph(), TKxTimerSpeedBtn::agDown);
    const struct {
        int interval, delay;
        int readInterval;
        uint32_t buttonDelay;
    } cases[] = {{20, 0, 100, 0}, {50, 250, 50, 250}, {49, -1, 50, 0xFFFFFFFFu}};
    for (const auto& c : cases) {
        s.setProperty("Interval", c.interval);
        s.setProperty("StartDelay", c.delay);
        EXPECT_EQ(s.Interval(), c.readInterval);
        EXPECT_EQ(s.StartDelay(), c.delay);
        for (TKxTimerSpeedBtn* b : {s.UpButton(), s.DownButton()}) {
            EXPECT_EQ(b->Interval(), c.readInterval);
            EXPECT_EQ(b->StartDelay(), c.buttonDelay);
        }
    }
}

TEST_F(SpinButton, ClicksKeysAndRepeatsReportTheirEvents) {
    TKxSpinButton s(&form_);
    std::string log;
    QObject::connect(&s, &TKxSpinButton::OnUpClick, [&](QObject* sender) {
        EXPECT_EQ(sender, &s);
        log += 'U';
    });
    QObject::connect(&s, &TKxSpinButton::OnDownClick, [&](QObject* sender) {
        EXPECT_EQ(sender, &s);
        log += 'D';
    });
    Press(s.UpButton());
    Release(s.UpButton());
    Press(s.DownButton());
    Release(s.DownButton());
    Key(&s, Qt::Key_Up);
    Key(&s, Qt::Key_Down);
    Key(&s, Qt::Key_Left);
    EXPECT_EQ(log, "UDUD");
    log.clear();
    EXPECT_EQ(Hold(*s.DownButton(), 700).size(), 3u);
    EXPECT_EQ(log, "DDD");

    log.clear();
    s.setEnabled(false);
    EXPECT_FALSE(s.UpButton()->isEnabled());
    EXPECT_FALSE(s.DownButton()->isEnabled());
    Press(s.UpButton());
    Release(s.UpButton());
    Key(&s, Qt::Key_Up);
    s.DownButton()->Click();
    EXPECT_EQ(log, "");
    EXPECT_TRUE(FlashList().empty());
    s.setEnabled(true);
    EXPECT_TRUE(s.UpButton()->isEnabled());
    EXPECT_TRUE(s.DownButton()->isEnabled());
}

TEST_F(SpinButton, LeftPressHandsTheFocusOver) {
    // Focus owner afterwards: F the focus control, S the spin button, O the other edit.
    const struct {
        bool focusControl;
        Qt::FocusPolicy policy;
        bool enabled, startOnFocusControl, spinTabStop;
        Qt::MouseButton button;
        char owner;
    } cases[] = {
        {true, Qt::StrongFocus, true, false, false, Qt::LeftButton, 'F'},
        {true, Qt::StrongFocus, true, false, true, Qt::LeftButton, 'F'},
        {true, Qt::ClickFocus, true, false, false, Qt::LeftButton, 'O'},
        {true, Qt::ClickFocus, true, false, true, Qt::LeftButton, 'S'},
        {true, Qt::StrongFocus, false, false, true, Qt::LeftButton, 'S'},
        {true, Qt::StrongFocus, true, true, false, Qt::LeftButton, 'F'},
        {true, Qt::StrongFocus, true, true, true, Qt::LeftButton, 'S'},
        {false, Qt::StrongFocus, true, false, false, Qt::LeftButton, 'O'},
        {true, Qt::StrongFocus, true, false, true, Qt::RightButton, 'O'},
    };
    form_.resize(200, 100);
    form_.show();
    QApplication::setActiveWindow(&form_);
    for (const auto& c : cases) {
        QLineEdit other(&form_), target(&form_);
        TKxSpinButton s(&form_);
        QWidget* const owners[] = {&target, &s, &other};
        for (QWidget* w : owners)
            w->show();
        target.setFocusPolicy(c.policy);
        target.setEnabled(c.enabled);
        if (c.focusControl) s.SetFocusControl(&target);
        s.SetTabStop(c.spinTabStop);
        (c.startOnFocusControl ? target : other).setFocus();
        Press(s.UpButton(), c.button);
        Release(s.UpButton());
        EXPECT_EQ(QApplication::focusWidget(), owners[std::string("FSO").find(c.owner)])
            << &c - cases;
    }
    auto* target = new QLineEdit(&form_);
    TKxSpinButton s(&form_);
    s.SetFocusControl(target);
    delete target;
    EXPECT_EQ(s.FocusControl(), nullptr);
}

TEST_F(SpinButton, DestroyedWhileHeldLeavesNoSubscription) {
    auto* s = new TKxSpinButton(&form_);
    Press(s->UpButton());
    Run(600);
    delete s;
    EXPECT_TRUE(FlashList().empty());
    Run(500);

    // A handler that destroys the spin button from inside a repeat.
    s = new TKxSpinButton(&form_);
    int ups = 0;
    QObject::connect(s, &TKxSpinButton::OnUpClick, [&] {
        ++ups;
        delete s;
    });
    Press(s->UpButton());
    Run(1000);
    EXPECT_EQ(ups, 1);
    EXPECT_TRUE(FlashList().empty());
}

TEST_F(SpinButton, ButtonsAreNamedForScreenReaders) {
    TKxSpinButton s;
    EXPECT_EQ(s.UpButton()->accessibleName(), QStringLiteral("Up"));
    EXPECT_EQ(s.DownButton()->accessibleName(), QStringLiteral("Down"));
}

TEST_F(SpinButton, SpeedButtonsTakeNoFocusAndKeepValidGlyphs) {
    TKxTimerSpeedBtn b;
    EXPECT_EQ(b.focusPolicy(), Qt::NoFocus);  // a speed button never takes the focus
    b.SetArrowGlyph(TKxTimerSpeedBtn::agUp);
    for (int bad : {-1, 3, 99}) {
        b.SetArrowGlyph(TKxTimerSpeedBtn::TArrowGlyph(bad));
        EXPECT_EQ(b.ArrowGlyph(), TKxTimerSpeedBtn::agUp) << bad;
    }
}

}  // namespace
}  // namespace kx
