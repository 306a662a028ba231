// The operating-hour counter: normalising and stepping, counting on the blink service's
// second pulses (a simulated day without drift), zero and limit with their options and
// event order, the text, what a pulse redraws, and the INI file with malformed values.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QFile>
#include <QTemporaryDir>
#include <QWidget>
#include <functional>
#include <memory>

#include "common/test_env.h"
#include "kx/blink/flashtimer.h"
#include "kx/recorders/ophourcounter.h"

namespace kx {
namespace {

using C = TKxOpHourCounter;

struct Hms {
    int32_t h, m, s;
    bool operator==(const Hms&) const = default;
};

Hms countOf(const C& c) {
    return {c.Hours(), c.Minutes(), c.Seconds()};
}

TEST(TimeArithmetic, NormaliseCarriesOnlyUpwards) {
    const struct {
        Hms in, out;
    } cases[] = {{{0, 0, 3725}, {1, 2, 5}},
                 {{0, 59, 60}, {1, 0, 0}},
                 {{1, 120, 0}, {3, 0, 0}},
                 {{0, 0, 59}, {0, 0, 59}},
                 {{-1, 70, 0}, {0, 10, 0}},
                 {{0, -5, 61}, {0, -4, 1}},
                 {{5, 0, -7}, {5, 0, -7}},
                 {{INT32_MAX, 60, 0}, {INT32_MAX, 0, 0}},
                 {{0, INT32_MAX, INT32_MAX}, {35791394, 7, 7}}};
    for (const auto& c : cases) {
        Hms v = c.in;
        KxNormaliseTime(v.h, v.m, v.s);
        EXPECT_EQ(v, c.out) << c.in.h << ":" << c.in.m << ":" << c.in.s;
    }
    TTimeSetting t;
    int changes = 0;
    t.SetOnChange([&](QObject*) { ++changes; });
    t.SetSec(90);
    t.SetSec(30);  // already 30 after the carry: no change
    EXPECT_EQ((Hms{t.Hour(), t.Min(), t.Sec()}), (Hms{0, 1, 30}));
    EXPECT_EQ(changes, 1);
}

TEST(TimeArithmetic, OneSecondSteps) {
    const struct {
        Hms in, up, down;
    } cases[] = {{{0, 0, 0}, {0, 0, 1}, {-1, 59, 59}},
                 {{0, 59, 59}, {1, 0, 0}, {0, 59, 58}},
                 {{2, 0, 0}, {2, 0, 1}, {1, 59, 59}},
                 {{0, 5, 0}, {0, 5, 1}, {0, 4, 59}},
                 {{INT32_MAX, 59, 59}, {INT32_MAX, 0, 0}, {INT32_MAX, 59, 58}},
                 {{INT32_MIN, 0, 0}, {INT32_MIN, 0, 1}, {INT32_MIN, 59, 59}}};
    for (const auto& c : cases) {
        Hms up = c.in, down = c.in;
        C::IncSec(up.h, up.m, up.s);
        C::DecSec(down.h, down.m, down.s);
        EXPECT_EQ(up, c.up) << c.in.h << ":" << c.in.m << ":" << c.in.s;
        EXPECT_EQ(down, c.down) << c.in.h << ":" << c.in.m << ":" << c.in.s;
    }
}

class Counter : public ::testing::Test {
  protected:
    void SetUp() override {
        test::ResetEnvironment();
        ClearFlashList();
        delete FlashTimerInstance();
        c_ = std::make_unique<C>(&form_);
        c_->Loaded();
        c_->PaintToSurface();
        QObject::connect(c_.get(), &C::OnZero, [this] { events_.push_back(text('Z')); });
        QObject::connect(c_.get(), &C::OnLimit, [this] { events_.push_back(text('L')); });
    }
    void TearDown() override {
        c_.reset();
        ClearFlashList();
    }
    std::string text(char what) const {
        return what + std::to_string(c_->Hours()) + ":" + std::to_string(c_->Minutes()) + ":" +
               std::to_string(c_->Seconds());
    }
    // n wall-clock seconds, each served by one tick.
    void Seconds(int n) {
        for (int i = 0; i < n; ++i) {
            test::FakeClock().Advance(1000);
            RunFlashTick();
        }
    }
    // Limit and preset 0:0:0 would fire at once; most tests want them out of the way.
    void FarLimit() { c_->Limit()->SetHour(1000000); }

    QWidget form_;
    std::unique_ptr<C> c_;
    std::vector<std::string> events_;
};

TEST_F(Counter, Defaults) {
    EXPECT_EQ(c_->width(), 113);
    EXPECT_EQ(c_->height(), 24);
    EXPECT_FALSE(c_->Count());
    EXPECT_FALSE(c_->CountDown());
    EXPECT_EQ(c_->Indicate(), C::oiHourMinSec);
    EXPECT_EQ(c_->HourDigits(), 4);
    EXPECT_EQ(c_->IniSettings()->FileName(), "KxksApp.ini");
    EXPECT_EQ(c_->Font()->Name(), "System");
    EXPECT_EQ(c_->Text(), "0000h:00m:00s");
    EXPECT_FALSE(c_->Subscribed());
}

TEST_F(Counter, CountsUpOnSecondPulsesAndStops) {
    FarLimit();
    c_->SetTime(0, 59, 57);
    c_->SetCount(true);
    EXPECT_TRUE(c_->Subscribed());
    Seconds(3);
    EXPECT_EQ(countOf(*c_), (Hms{1, 0, 0}));
    EXPECT_EQ(c_->Text(), "0001h:00m:00s");
    c_->SetCount(false);
    EXPECT_FALSE(c_->Subscribed());
    Seconds(5);
    EXPECT_EQ(countOf(*c_), (Hms{1, 0, 0}));
}

TEST_F(Counter, ASimulatedDayHasNoDrift) {
    FarLimit();
    c_->hide();  // a hidden counter counts without drawing
    c_->SetCount(true);
    // A 5-second stall is worked off one pulse per tick.
    test::FakeClock().Advance(5000);
    for (int i = 0; i < 4; ++i)
        RunFlashTick();
    EXPECT_GE(c_->Seconds(), 4);
    // Then ticks every 250 ms for the rest of the day, and one more so that the last
    // boundary is not left to the rounding of the clock's sums.
    for (int i = 0; i < (86400 - 5) * 4 + 1; ++i) {
        test::FakeClock().Advance(250);
        RunFlashTick();
    }
    EXPECT_EQ(countOf(*c_), (Hms{24, 0, 0}));
}

TEST_F(Counter, CountDownToZeroStopsOrPresets) {
    FarLimit();
    c_->SetTime(0, 0, 2);
    c_->SetCountDown(true);
    c_->SetCount(true);
    Seconds(3);
    EXPECT_EQ(countOf(*c_), (Hms{0, 0, 0}));
    EXPECT_TRUE(c_->ZeroFlag());
    EXPECT_FALSE(c_->Subscribed());
    EXPECT_EQ(events_, std::vector<std::string>{"Z0:0:0"});

    // With a preset the count jumps to it and keeps counting down.
    events_.clear();
    c_->SetOptions(C::Option(C::opPresetOnZero));
    c_->PresetValue()->SetValue(0, 1, 0);
    c_->SetTime(0, 0, 1);
    c_->SetCount(false);
    c_->SetCount(true);
    Seconds(3);
    EXPECT_EQ(countOf(*c_), (Hms{0, 0, 58}));
    EXPECT_TRUE(c_->Subscribed());
    EXPECT_EQ(events_, std::vector<std::string>{"Z0:1:0"});
}

TEST_F(Counter, PresetThatIsZeroStopsTheCount) {
    FarLimit();
    c_->SetOptions(C::Option(C::opPresetOnZero));
    c_->SetCountDown(true);
    c_->SetTime(0, 0, 1);
    c_->SetCount(true);
    Seconds(2);
    EXPECT_FALSE(c_->Subscribed());
    EXPECT_EQ(events_.size(), 1u);
}

TEST_F(Counter, CountDownAloneNeverStartsCounting) {
    c_->SetCountDown(true);
    c_->SetCountDown(false);
    EXPECT_FALSE(c_->Subscribed());
    c_->SetCount(true);
    c_->SetCountDown(true);  // changes the direction only
    EXPECT_TRUE(c_->Subscribed());
}

TEST_F(Counter, SettingsAreCopied) {
    TTimeSetting limit, preset;
    limit.SetValue(1, 2, 3);
    preset.SetValue(0, 0, 90);
    c_->SetLimit(&limit);
    c_->SetPresetValue(&preset);
    EXPECT_EQ((Hms{c_->Limit()->Hour(), c_->Limit()->Min(), c_->Limit()->Sec()}), (Hms{1, 2, 3}));
    EXPECT_EQ((Hms{c_->PresetValue()->Hour(), c_->PresetValue()->Min(), c_->PresetValue()->Sec()}),
              (Hms{0, 1, 30}));
    c_->SetLimit(nullptr);  // ignored
    EXPECT_EQ(c_->Limit()->Hour(), 1);
}

TEST_F(Counter, ClearingCountDownRestartsAStoppedCount) {
    FarLimit();
    c_->SetCountDown(true);
    c_->SetTime(0, 0, 1);
    c_->SetCount(true);
    Seconds(1);
    ASSERT_FALSE(c_->Subscribed());
    c_->SetCountDown(false);
    EXPECT_TRUE(c_->Subscribed());
    Seconds(2);
    EXPECT_EQ(countOf(*c_), (Hms{0, 0, 2}));
}

TEST_F(Counter, LimitFiresOncePerCrossing) {
    c_->Limit()->SetValue(0, 0, 10);
    c_->SetTime(0, 0, 1);
    c_->SetCount(true);
    Seconds(69);  // to 0:01:10
    EXPECT_EQ(events_, (std::vector<std::string>{"L0:0:10", "L0:1:10"}));
}

TEST_F(Counter, LimitComparesEachPartByItself) {
    c_->Limit()->SetValue(1, 30, 0);
    const struct {
        Hms t;
        bool fires;
    } cases[] = {{{2, 0, 0}, false},
                 {{2, 30, 0}, true},
                 {{2, 45, 0}, false},  // latched
                 {{0, 45, 0}, false},
                 {{1, 30, 0}, true}};
    for (const auto& c : cases) {
        events_.clear();
        c_->SetTime(c.t.h, c.t.m, c.t.s);
        EXPECT_EQ(events_.size(), c.fires ? 1u : 0u) << c.t.h << ":" << c.t.m;
    }
}

TEST_F(Counter, LimitOptions) {
    const struct {
        C::TOpHrOptions options;
        Hms after;
        bool subscribed;
    } cases[] = {{0, {0, 0, 7}, true},
                 {C::Option(C::opResetOnLimit), {0, 0, 2}, true},
                 {C::Option(C::opStopOnLimit), {0, 0, 5}, false}};
    for (const auto& c : cases) {
        events_.clear();
        SetUp();
        c_->Limit()->SetValue(0, 0, 5);
        c_->SetOptions(c.options);
        c_->SetTime(0, 0, 1);
        c_->SetCount(true);
        Seconds(6);
        EXPECT_EQ(countOf(*c_), c.after) << int(c.options);
        EXPECT_EQ(c_->Subscribed(), c.subscribed) << int(c.options);
        EXPECT_EQ(events_.front(), "L0:0:5");
    }
}

TEST_F(Counter, DefaultLimitFiresOnceAtTheFirstCheck) {
    c_->SetTime(0, 0, 1);
    c_->SetTime(0, 0, 2);
    EXPECT_EQ(events_, std::vector<std::string>{"L0:0:1"});
}

TEST_F(Counter, HandlersMayDeleteTheCounter) {
    const TKxFlashClient* gone = c_.get();
    QObject::connect(c_.get(), &C::OnZero, [this] { c_.reset(); });
    c_->SetCountDown(true);
    c_->SetTime(0, 0, 1);
    c_->SetCount(true);
    Seconds(2);
    EXPECT_EQ(c_, nullptr);
    for (const auto& e : FlashList())
        EXPECT_NE(e->Control, gone);
}

TEST_F(Counter, Text) {
    FarLimit();
    const struct {
        C::TOpHrIndicate indicate;
        int digits;
        const char* sepHour;
        const char* sepChar;
        Hms t;
        const char* text;
    } cases[] = {{C::oiHourMinSec, 4, "h", ":", {12, 5, 7}, "0012h:05m:07s"},
                 {C::oiHourMin, 4, "h", ":", {12, 5, 7}, "0012h:05m"},
                 {C::oiHour, 4, "h", ":", {12, 5, 7}, "0012h"},
                 {C::oiHour, 2, "h", ":", {12345, 0, 1}, "12345h"},  // never cut
                 {C::oiHour, -3, "h", ":", {7, 0, 1}, "7h"},
                 {C::oiHourMin, 0, "%d", " ", {3, 4, 5}, "3%d 04m"},
                 {C::oiHour, 99, "", "", {1, 0, 0}, "00000000000000000000000000000001"}};
    for (const auto& c : cases) {
        c_->SetIndicate(c.indicate);
        c_->SetHourDigits(c.digits);
        c_->SetSeparatorHour(c.sepHour);
        c_->SetSeparatorChar(c.sepChar);
        c_->SetTime(c.t.h, c.t.m, c.t.s);
        EXPECT_EQ(c_->Text(), c.text);
    }
}

// Text pixels inside r: anything but the white background (text is smoothed).
int inkIn(const TBitmap& b, TRect r) {
    int n = 0;
    for (int y = r.Top; y < r.Bottom; ++y)
        for (int x = r.Left; x < r.Right; ++x)
            n += b.Pixel(x, y) != 0xFFFFFF;
    return n;
}

TEST_F(Counter, APulseRedrawsOnlyTheTextArea) {
    FarLimit();
    c_->SetCount(true);
    const TRect r = c_->TextRect();
    EXPECT_EQ(r, (TRect{3, 3, 110, 21}));  // outer 1 + 1 spacing, inner 1
    const QImage before = c_->Surface().Image();
    // Marks outside and inside the text area: a pulse must keep the outer one only.
    c_->Canvas().SetPixel(1, 1, clRed);
    c_->Canvas().SetPixel(r.Left, r.Top, clRed);
    Seconds(1);
    EXPECT_EQ(c_->Surface().Pixel(1, 1), clRed);
    EXPECT_EQ(c_->Surface().Pixel(r.Left, r.Top), 0xFFFFFF);  // clWindow
    EXPECT_GT(inkIn(c_->Surface(), r), 0);
    EXPECT_NE(c_->Surface().Image(), before);
}

TEST_F(Counter, FrameAndFontChangesRepaint) {
    FarLimit();
    const std::function<void()> changes[] = {
        [&] { c_->BevelOuter()->SetWidth(3); }, [&] { c_->BevelInner()->SetColor(clYellow); },
        [&] { c_->Font()->SetSize(12); }, [&] { c_->SetSeparatorChar(" "); },
        [&] { c_->SetIndicate(C::oiHour); }};
    for (const auto& change : changes) {
        c_->PaintToSurface();
        const QImage before = c_->Surface().Image();
        change();
        c_->PaintToSurface();
        EXPECT_NE(c_->Surface().Image(), before) << &change - changes;
    }
}

TEST_F(Counter, FrameAndFontSettersCopy) {
    TKxSBevel bevel;
    bevel.SetWidth(4);
    TFont font;
    font.SetSize(20);
    c_->SetBevelOuter(&bevel);
    c_->SetBevelInner(&bevel);
    c_->SetFont(&font);
    EXPECT_EQ(c_->BevelOuter()->Width(), 4);
    EXPECT_EQ(c_->BevelInner()->Width(), 4);
    EXPECT_EQ(c_->Font()->Size(), 20);
    TIniSettings ini;
    ini.SetSection("Copied");
    c_->SetIniSettings(&ini);
    EXPECT_EQ(c_->IniSettings()->Section(), "Copied");
    c_->SetBevelOuter(nullptr);  // ignored
    c_->SetBevelInner(nullptr);
    c_->SetFont(nullptr);
    c_->SetIniSettings(nullptr);
    c_->SetLimit(nullptr);
    c_->SetPresetValue(nullptr);
    EXPECT_EQ(c_->BevelOuter()->Width(), 4);
    EXPECT_TRUE(c_->testAttribute(Qt::WA_OpaquePaintEvent));  // the frame covers it all
}

TEST_F(Counter, TextIsCentredOrCutAtTheRight) {
    FarLimit();
    c_->PaintToSurface();
    const TRect r = c_->TextRect();
    auto inkColumns = [&](int& first, int& last) {
        first = last = -1;
        for (int x = r.Left; x < r.Right; ++x)
            if (inkIn(c_->Surface(), TRect{x, r.Top, x + 1, r.Bottom})) {
                if (first < 0) first = x;
                last = x;
            }
    };
    int first = 0, last = 0;
    inkColumns(first, last);
    EXPECT_LE(std::abs((first - r.Left) - (r.Right - 1 - last)), 2);  // centred
    c_->SetHourDigits(30);
    c_->PaintToSurface();
    inkColumns(first, last);
    EXPECT_LE(first, r.Left + 1);  // too wide: starts at the left edge
    // Cut at the area's edge: the frame beside it is untouched.
    for (int y = r.Top; y < r.Bottom; ++y)
        EXPECT_EQ(c_->Surface().Pixel(r.Right, y), c_->Surface().Pixel(r.Right, r.Top)) << y;
    EXPECT_GE(last, r.Right - 3);
}

TEST_F(Counter, WhatAssistiveToolsLearn) {
    QAccessibleInterface* a = QAccessible::queryAccessibleInterface(c_.get());
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(a->role(), QAccessible::Indicator);
    EXPECT_EQ(a->text(QAccessible::Name), "operating-hour counter");
    c_->setObjectName("P1");
    EXPECT_EQ(a->text(QAccessible::Name), "P1");
    c_->setAccessibleName("Pump hours");
    EXPECT_EQ(a->text(QAccessible::Name), "Pump hours");
    const struct {
        Hms t;
        bool count;
        const char* value;
        const char* description;
    } cases[] = {{{0, 0, 5}, false, "0000h:00m:05s", "stopped"},
                 {{0, 0, 5}, true, "0000h:00m:05s", "counting"},
                 {{0, 0, 10}, true, "0000h:00m:10s", "counting, limit reached"},
                 {{0, 0, 0}, true, "0000h:00m:00s", "stopped, zero"}};
    c_->Limit()->SetValue(0, 0, 10);
    for (const auto& c : cases) {
        c_->SetCount(false);
        c_->SetCount(c.count);
        c_->SetTime(c.t.h, c.t.m, c.t.s);
        EXPECT_EQ(a->text(QAccessible::Value), c.value);
        EXPECT_EQ(a->text(QAccessible::Description), c.description);
    }
    c_->setAccessibleDescription("Main pump");
    EXPECT_EQ(a->text(QAccessible::Description), "Main pump, stopped, zero");
}

class CounterIni : public Counter {
  protected:
    void SetUp() override {
        Counter::SetUp();
        c_->IniSettings()->SetUseAppDir(false);
        c_->IniSettings()->SetFileName(dir_.filePath("k.ini"));
        c_->IniSettings()->SetSection("Pump");
    }
    void Write(const QByteArray& text) {
        QFile f(dir_.filePath("k.ini"));
        ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
        f.write(text);
    }
    QByteArray Read() {
        QFile f(dir_.filePath("k.ini"));
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
    QTemporaryDir dir_;
};

TEST_F(CounterIni, MalformedValuesReadAsTheyAre) {
    FarLimit();
    const struct {
        const char* file;
        Hms loaded;
    } cases[] = {
        {"[Pump]\nh=12\nm=5\ns=7\n", {12, 5, 7}},     {"[Pump]\nh=-3\nm=0\ns=0\n", {-3, 0, 0}},
        {"[Pump]\nh=abc\nm=70\ns=99\n", {0, 70, 99}},  // no normalising on read
        {"[Pump]\nh=99999999999\n", {0, 0, 0}},       {"[Other]\nh=5\n", {0, 0, 0}},
        {"\xFF\xFE garbage \0 [Pump\n", {0, 0, 0}}};
    for (const auto& c : cases) {
        c_->SetTime(1, 1, 1);
        Write(c.file);
        c_->LoadFromIni();
        EXPECT_FALSE(c_->IniSettings()->LastError());
        EXPECT_EQ(countOf(*c_), c.loaded) << c.file;
    }
    // A negative hour counts as zero at the next check.
    Write("[Pump]\nh=-3\n");
    c_->LoadFromIni();
    c_->CheckTime();
    EXPECT_EQ(countOf(*c_), (Hms{0, 0, 0}));
    EXPECT_TRUE(c_->ZeroFlag());
}

TEST_F(CounterIni, SavesKeepOtherContent) {
    FarLimit();
    Write("; plant\n[Fan]\nh=1\n");
    c_->SetTime(3, 4, 5);
    c_->SaveToIni();
    EXPECT_FALSE(c_->IniSettings()->LastError());
    EXPECT_EQ(Read(), QByteArray("; plant\n[Fan]\nh=1\n\n[Pump]\nh=3\nm=4\ns=5\n"));
}

TEST_F(CounterIni, AutoLoadSaveAcrossRunsAndEveryInterval) {
    FarLimit();
    Write("[Pump]\nh=100\nm=0\ns=0\n");
    auto run = std::make_unique<C>(&form_);
    run->Limit()->SetHour(1000000);
    run->IniSettings()->Assign(c_->IniSettings());
    run->IniSettings()->SetAutoLoadSave(true);
    run->SetSaveInterval(3);
    run->Loaded();
    EXPECT_EQ(run->Hours(), 100);
    run->SetCount(true);
    Seconds(2);
    EXPECT_EQ(Read(), QByteArray("[Pump]\nh=100\nm=0\ns=0\n"));
    Seconds(1);
    EXPECT_EQ(Read(), QByteArray("[Pump]\nh=100\nm=0\ns=3\n"));
    Seconds(1);
    run.reset();  // the end of the run saves
    EXPECT_EQ(Read(), QByteArray("[Pump]\nh=100\nm=0\ns=4\n"));
}

}  // namespace
}  // namespace kx
