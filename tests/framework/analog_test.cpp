// The analog value model: evaluation order and transitions of a reading, extremes,
// limits, overflow, settings passes, the logarithmic mapping, hints and design time.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QHelpEvent>
#include <QPointer>
#include <QToolTip>
#include <algorithm>
#include <cmath>
#include <limits>

#include "analog_probe.h"
#include "common/test_env.h"
#include "kx/host/formatsettings.h"

namespace kx {
namespace {

using test::AnalogProbe;

constexpr float kInf = std::numeric_limits<float>::infinity();

QStringList L(std::initializer_list<const char*> items) {
    QStringList l;
    for (const char* i : items)
        l << QString::fromUtf8(i);
    return l;
}

TEST(AnalogControl, ConstructorChecksTheLimitsOnce) {
    AnalogProbe c;
    // Both flags are forced on and the first check clears them.
    EXPECT_FALSE(c.UpperExceeded());
    EXPECT_FALSE(c.LowerExceeded());
    EXPECT_EQ(c.PPT(), 500);
    EXPECT_EQ(c.LimitUpperPPT(), 900);
    EXPECT_EQ(c.LimitLowerPPT(), 100);
    EXPECT_EQ(c.Font()->Name(), QStringLiteral("Arial"));
    EXPECT_EQ(c.Font()->Size(), 8);
    EXPECT_EQ(c.HintOptions(), kAllHintOptions);
    EXPECT_FALSE(c.testAttribute(Qt::WA_OpaquePaintEvent));
}

// Settings objects given to the control are copied into its own ones, which stay hooked
// to it; nothing else is taken over.
TEST(AnalogControl, AssignedSettingsObjectsAreCopied) {
    AnalogProbe c;
    c.LoadQuiet();
    TSignalSettings signal;
    signal.SetValueTo(200.0f);
    TSectorSettings sectors;
    sectors.SetSector2Color(clBlue);
    TMinMax minMax;
    minMax.SetMaxColor(clFuchsia);
    TFont font;
    font.SetSize(14);

    c.SetSignalSettings(&signal);
    EXPECT_EQ(c.SignalSettings()->ValueTo(), 200.0f);
    EXPECT_EQ(c.Digit(), 250);
    EXPECT_NE(c.SignalSettings(), &signal);
    c.SetSectorSettings(&sectors);
    EXPECT_EQ(c.SectorSettings()->Sector2Color(), clBlue);
    EXPECT_EQ(c.Take(), L({"Settings", "Settings"}));
    // The copied record is empty: the evaluation it triggers records the reading (now at
    // PPT 250 in sector 1) as both extremes.
    c.SetMinMax(&minMax);
    EXPECT_EQ(c.MinMax()->MaxColor(), clFuchsia);
    EXPECT_EQ(c.Take(),
              L({"MinMax", "Sector(100,enter)", "Sector(010,leave)", "MinMax", "Value", "Value"}));
    EXPECT_EQ(c.MinMax()->Max(), 50.0f);
    c.SetFont(&font);
    EXPECT_EQ(c.Font()->Size(), 14);
    EXPECT_EQ(c.Take(), L({"Settings"}));

    // Null and the control's own objects change nothing.
    c.SetSignalSettings(nullptr);
    c.SetSignalSettings(c.SignalSettings());
    c.SetSectorSettings(nullptr);
    c.SetSectorSettings(c.SectorSettings());
    c.SetMinMax(nullptr);
    c.SetMinMax(c.MinMax());
    c.SetFont(nullptr);
    c.SetFont(c.Font());
    EXPECT_TRUE(c.log.isEmpty());
}

// Value and Digit in both directions over a digit span that does not start at 0.
TEST(AnalogControl, DigitSpansWithAnOffset) {
    const struct {
        bool log;
        float value;
        int32_t digit;
    } cases[] = {
        {false, 0.0f, 200},   {false, 50.0f, 700},   {false, 100.0f, 1200},
        {false, -10.0f, 100}, {true, 1.0f, 200},     {true, 10.0f, 533},
        {true, 100.0f, 867},  {true, 1000.0f, 1200}, {true, 0.1f, -133},
    };
    for (const auto& t : cases) {
        SCOPED_TRACE(testing::Message() << (t.log ? "log " : "linear ") << t.value);
        AnalogProbe c;
        c.LoadQuiet();
        c.SignalSettings()->SetDigitalTo(1200);
        c.SignalSettings()->SetDigitalFrom(200);
        if (t.log) {
            c.SignalSettings()->SetValueFrom(1.0f);
            c.SignalSettings()->SetValueTo(1000.0f);
            c.SetLogScale(true);
        }
        c.SetValue(t.value);
        EXPECT_EQ(c.Digit(), t.digit);
        c.SetDigit(t.digit + 1);
        c.SetDigit(t.digit);
        EXPECT_NEAR(c.Value(), t.value, 0.01f * std::max(1.0f, t.value));
    }
}

// One reading after another from a primed control (Value 50, sector 2, no alarms).
struct ReadingStep {
    float value;
    QStringList log;
    int32_t ppt;
    bool high;
    bool low;
    TColor color;
};

TEST(AnalogControl, ReadingsFireTransitionsInOrder) {
    const float aboveUpper = std::nextafter(90.0f, kInf);
    const float belowLower = std::nextafter(10.0f, -kInf);
    const ReadingStep steps[] = {
        {33.3f, L({"Sector(100,enter)", "Sector(010,leave)", "Value"}), 333, false, false,
         clYellow},
        {33.4f, L({"Sector(100,leave)", "Sector(010,enter)", "Value"}), 334, false, false, clGreen},
        {90.0f, L({"Sector(010,leave)", "Sector(001,enter)", "Value"}), 900, false, false, clRed},
        {aboveUpper, L({"limitHook", "Limit(0,1)", "Value"}), 900, false, false, clRed},
        {100.0f, L({"Value"}), 1000, false, false, clRed},
        {100.1f, L({"Sector(001,leave)", "overflowHook(1001,PPT=1001)", "Overflow(1001)", "Value"}),
         1000, true, false, clRed},
        {101.0f, L({"Value"}), 1000, true, false, clRed},
        {50.0f,
         L({"Sector(010,enter)", "limitHook", "Limit(0,0)", "overflowHook(500,PPT=500)",
            "Overflow(500)", "Value"}),
         500, false, false, clGreen},
        {-5.0f,
         L({"Sector(010,leave)", "limitHook", "Limit(1,0)", "overflowHook(-50,PPT=-50)",
            "Overflow(-50)", "Value"}),
         0, false, true, clGreen},
        {200.0f,
         L({"limitHook", "Limit(0,1)", "overflowHook(2000,PPT=2000)", "Overflow(2000)", "Value"}),
         1000, true, false, clGreen},
        {10.0f,
         L({"Sector(100,enter)", "limitHook", "Limit(0,0)", "overflowHook(100,PPT=100)",
            "Overflow(100)", "Value"}),
         100, false, false, clYellow},
        {belowLower, L({"limitHook", "Limit(1,0)", "Value"}), 100, false, false, clYellow},
    };
    AnalogProbe c;
    c.LoadQuiet();
    for (const ReadingStep& s : steps) {
        SCOPED_TRACE(s.value);
        c.SetValue(s.value);
        EXPECT_EQ(c.Take(), s.log);
        EXPECT_EQ(c.PPT(), s.ppt);
        EXPECT_EQ(c.OverflowHigh(), s.high);
        EXPECT_EQ(c.OverflowLow(), s.low);
        EXPECT_EQ(c.SectorColor(), s.color);
    }
}

TEST(AnalogControl, DigitAndTextsFollowTheReading) {
    AnalogProbe c;
    c.LoadQuiet();
    c.SetValue(33.3f);
    EXPECT_EQ(c.Digit(), 333);
    EXPECT_EQ(c.ValueText(), QStringLiteral("33.3"));
    EXPECT_EQ(c.DigitText(), QStringLiteral("333"));
    c.Take();
    c.SetValue(33.3f);
    c.SetDigit(333);
    EXPECT_TRUE(c.log.isEmpty());  // nothing changed
    c.SetDigit(-1250);             // not clamped either way
    EXPECT_FLOAT_EQ(c.Value(), -125.0f);
    EXPECT_EQ(c.DigitText(), QStringLiteral("-1250"));
    EXPECT_EQ(c.PPT(), 0);
    // A new picture applies from the next reading on.
    c.SignalSettings()->SetValueFormat(QStringLiteral("0.00 'u'"));
    c.SetValue(7.5f);
    EXPECT_EQ(c.ValueText(), QStringLiteral("7.50 u"));
    EXPECT_EQ(c.Digit(), 75);
}

TEST(AnalogControl, FirstReadingAfterLoadedRecordsBothExtremesButOnlyMaxNotifies) {
    test::FakeClock().SetNow(45000.5);
    AnalogProbe c;
    c.Loaded();
    EXPECT_EQ(c.MinMax()->Min(), TMinMax::kNoMin);
    EXPECT_EQ(c.MinMax()->Max(), TMinMax::kNoMax);
    c.traceEvaluation = true;
    c.SetValue(60.0f);
    // The new maximum re-enters the evaluation; the nested OnValueChange comes first.
    EXPECT_EQ(c.Take(), L({">eval", "Sector(010,enter)", "MinMax", ">eval", "Value", "<eval",
                           "Value", "<eval"}));
    EXPECT_EQ(c.MinMax()->Min(), 60.0f);
    EXPECT_EQ(c.MinMax()->Max(), 60.0f);
    EXPECT_EQ(c.MinPPT(), 600);
    EXPECT_EQ(c.MaxPPT(), 600);
    EXPECT_EQ(c.MinMax()->MinDateTime(), 45000.5);
    EXPECT_EQ(c.MinMax()->MaxDateTime(), 45000.5);

    test::FakeClock().SetNow(45001.0);
    c.SetValue(40.0f);
    EXPECT_EQ(c.Take(), L({">eval", "MinMax", ">eval", "Value", "<eval", "Value", "<eval"}));
    EXPECT_EQ(c.MinMax()->Min(), 40.0f);
    EXPECT_EQ(c.MinPPT(), 400);
    EXPECT_EQ(c.MinMax()->MinDateTime(), 45001.0);
    EXPECT_EQ(c.MinMax()->MaxDateTime(), 45000.5);

    c.SetValue(50.0f);  // inside the extremes
    EXPECT_EQ(c.Take(), L({">eval", "Value", "<eval"}));
}

TEST(AnalogControl, LoadedDiscardsExtremesReadWithTheForm) {
    AnalogProbe c;
    c.SetValue(70.0f);  // before Loaded: tracked against the initial sentinels
    EXPECT_EQ(c.MinMax()->Max(), 70.0f);
    c.Loaded();
    EXPECT_EQ(c.MinMax()->Min(), TMinMax::kNoMin);
    EXPECT_EQ(c.MinMax()->Max(), TMinMax::kNoMax);
}

TEST(AnalogControl, RestoringAndResettingExtremes) {
    test::FakeClock().SetNow(45000.25);
    AnalogProbe c;
    c.LoadQuiet();
    c.SetMax(80.0f, 44000.5);
    EXPECT_EQ(c.Take(), L({"MinMax", "Value"}));
    EXPECT_EQ(c.MaxPPT(), 800);
    EXPECT_EQ(c.MinMax()->MaxDateTime(), 44000.5);
    c.SetMax(80.0f, 1.0);
    c.SetMin(std::nanf(""), 1.0);
    c.SetMax(std::nanf(""), 1.0);
    EXPECT_TRUE(c.log.isEmpty());
    c.SetMin(-20.0f, 44000.75);  // position not clamped
    EXPECT_EQ(c.MinPPT(), -200);
    EXPECT_EQ(c.MinMax()->MinDateTime(), 44000.75);
    c.Take();

    c.ResetMinMax();
    EXPECT_EQ(c.Take(), L({"MinMax", "Value", "Value"}));
    EXPECT_EQ(c.MinMax()->Min(), 50.0f);
    EXPECT_EQ(c.MinMax()->Max(), 50.0f);
    EXPECT_EQ(c.MinPPT(), 500);
    EXPECT_EQ(c.MaxPPT(), 500);
    EXPECT_EQ(c.MinMax()->MinDateTime(), 45000.25);

    // A setting of the record itself notifies like an extreme.
    c.MinMax()->SetMaxColor(clFuchsia);
    EXPECT_EQ(c.Take(), L({"MinMax", "Value"}));
}

TEST(AnalogControl, LimitsAreStrictAndReevaluateAtOnce) {
    AnalogProbe c;
    c.LoadQuiet();
    c.SetLimitUpper(50.0f);  // equal to the reading: no alarm
    EXPECT_EQ(c.Take(), L({"Value"}));
    EXPECT_EQ(c.LimitUpperPPT(), 500);
    c.SetLimitUpper(40.0f);
    EXPECT_EQ(c.Take(), L({"limitHook", "Limit(0,1)", "Value"}));
    EXPECT_TRUE(c.UpperExceeded());
    c.SetLimitLower(60.0f);
    EXPECT_EQ(c.Take(), L({"limitHook", "Limit(1,1)", "Value"}));
    c.SetLimitUpper(std::nanf(""));
    EXPECT_TRUE(c.log.isEmpty());
    EXPECT_EQ(c.LimitUpper(), 40.0f);

    c.SetLimitLower(0.0f);
    EXPECT_EQ(c.LimitLower(), 0.0001f);
    EXPECT_EQ(c.LimitLowerPPT(), 0);
    EXPECT_EQ(c.Take(), L({"limitHook", "Limit(0,1)", "Value"}));
}

TEST(AnalogControl, SettingsChangesReachParamChangeOnlyAfterLoaded) {
    AnalogProbe c;
    c.SignalSettings()->SetValueTo(200.0f);
    EXPECT_TRUE(c.log.isEmpty());
    EXPECT_EQ(c.Digit(), 500);

    c.Loaded();
    c.SignalSettings()->SetValueTo(400.0f);
    // The digit follows at once; the reading is evaluated only by the next one.
    EXPECT_EQ(c.Take(), L({"Settings"}));
    EXPECT_EQ(c.lastParamSender, c.SignalSettings());
    EXPECT_EQ(c.Digit(), 125);
    EXPECT_EQ(c.PPT(), 500);

    c.Font()->SetSize(12);
    EXPECT_EQ(c.lastParamSender, c.Font());
    c.SectorSettings()->SetSector2Color(clBlue);
    EXPECT_EQ(c.lastParamSender, c.SectorSettings());
    EXPECT_EQ(c.Take(), L({"Settings", "Settings"}));
}

TEST(AnalogControl, UpdatePhaseCoalescesSettingsIntoOnePass) {
    AnalogProbe c;
    c.Loaded();
    c.BeginUpdate();
    c.BeginUpdate();
    c.SignalSettings()->SetValueTo(200.0f);
    c.SignalSettings()->SetName1(QStringLiteral("Flow"));
    c.SectorSettings()->SetSector1Color(clBlue);
    c.Font()->SetSize(10);
    c.EndUpdate();
    EXPECT_TRUE(c.log.isEmpty());
    EXPECT_EQ(c.Digit(), 500);
    c.EndUpdate();
    EXPECT_EQ(c.Take(), L({"Settings"}));
    EXPECT_EQ(c.lastParamSender, &c);
    EXPECT_EQ(c.Digit(), 250);
}

TEST(AnalogControl, DesignTimeSettersRelayOutInsteadOfEvaluating) {
    AnalogProbe c;
    c.Loaded();
    c.SetDesigning(true);
    c.SetValue(70.0f);
    EXPECT_EQ(c.Take(), L({"Settings"}));
    EXPECT_EQ(c.Digit(), 700);
    EXPECT_EQ(c.PPT(), 500);
    c.SetDigit(150);
    EXPECT_EQ(c.Take(), L({"Settings"}));
    EXPECT_EQ(c.Value(), 15.0f);

    // An evaluation at design time neither records extremes nor builds a hint.
    c.SetLimitUpper(95.0f);
    EXPECT_EQ(c.Take(), L({"Sector(100,enter)", "Value"}));
    EXPECT_EQ(c.PPT(), 150);
    EXPECT_EQ(c.MinPPT(), 150);
    EXPECT_EQ(c.MaxPPT(), 150);
    EXPECT_EQ(c.MinMax()->Min(), TMinMax::kNoMin);
    EXPECT_EQ(c.MinMax()->Max(), TMinMax::kNoMax);
    EXPECT_TRUE(c.Hint().isEmpty());
}

TEST(AnalogControl, PositionChangeIsReportedWithTheNextReading) {
    QWidget parent;
    AnalogProbe c(&parent);
    c.LoadQuiet();
    c.SetBounds(12, 7, 40, 30);
    EXPECT_TRUE(c.log.isEmpty());
    c.SetValue(55.0f);
    EXPECT_EQ(c.Take(), L({"Position", "Value"}));
    c.SetValue(56.0f);
    EXPECT_EQ(c.Take(), L({"Value"}));
}

// A handler may delete the control at any event of a reading; the reading then ends
// there without touching the control again.
TEST(AnalogControl, HandlerMayDeleteTheControl) {
    const struct {
        const char* event;
        float value;  // a first reading that fires the event
        QStringList log;
    } cases[] = {
        {"sector", 20.0f, L({"sector"})},
        {"limit", 95.0f, L({"sector", "limit"})},
        {"overflow", 150.0f, L({"limit", "overflow"})},
        {"minmax", 60.0f, L({"sector", "minmax"})},
        {"value", 60.0f, L({"sector", "minmax", "value"})},
    };
    for (const auto& t : cases) {
        SCOPED_TRACE(t.event);
        QPointer<TKxAnalogGControl> c = new TKxAnalogGControl;
        c->Loaded();
        QStringList log;
        const auto on = [&log, &c, &t](const char* event) {
            log << QString::fromUtf8(event);
            if (qstrcmp(event, t.event) == 0) delete c.data();
        };
        QObject::connect(c, &TKxAnalogGControl::OnSectorChange,
                         [&on](QObject*, bool, bool, bool, bool) { on("sector"); });
        QObject::connect(c, &TKxAnalogGControl::OnLimit,
                         [&on](QObject*, bool, bool) { on("limit"); });
        QObject::connect(c, &TKxAnalogGControl::OnOverflow,
                         [&on](QObject*, int) { on("overflow"); });
        QObject::connect(c, &TKxAnalogGControl::OnMinMaxChange, [&on](QObject*) { on("minmax"); });
        QObject::connect(c, &TKxAnalogGControl::OnValueChange, [&on](QObject*) { on("value"); });
        c->SetValue(t.value);
        EXPECT_TRUE(c.isNull());
        EXPECT_EQ(log, t.log);
    }
}

TEST(AnalogControl, NaNIsIgnoredAndInfinityIsAnOverflow) {
    AnalogProbe c;
    c.LoadQuiet();
    c.SetValue(std::nanf(""));
    EXPECT_TRUE(c.log.isEmpty());
    EXPECT_EQ(c.Value(), 50.0f);
    EXPECT_EQ(c.Digit(), 500);

    c.SetValue(kInf);
    EXPECT_EQ(c.Take(), L({"Sector(010,leave)", "limitHook", "Limit(0,1)",
                           "overflowHook(2147483647,PPT=2147483647)", "Overflow(2147483647)",
                           "MinMax", "Value", "Value"}));
    EXPECT_EQ(c.Digit(), std::numeric_limits<int32_t>::max());
    EXPECT_EQ(c.PPT(), 1000);
    EXPECT_EQ(c.ValueText(), QStringLiteral("INF"));
    EXPECT_EQ(c.MinMax()->Max(), kInf);

    c.SetValue(-kInf);
    EXPECT_EQ(c.Take(), L({"limitHook", "Limit(1,0)", "overflowHook(-2147483648,PPT=-2147483648)",
                           "Overflow(-2147483648)", "MinMax", "Value", "Value"}));
    EXPECT_EQ(c.PPT(), 0);
    EXPECT_TRUE(c.OverflowLow());
}

// Digit spans and digits at the ends of the int32 range: every position is defined and
// clamped, whatever the span arithmetic gives.
TEST(AnalogControl, ExtremeDigitRangesStayDefined) {
    const struct {
        int32_t from, to, digit;
    } cases[] = {
        {-2000000000, 2000000000, std::numeric_limits<int32_t>::max()},
        {-2000000000, 2000000000, std::numeric_limits<int32_t>::min()},
        {0, 0, 5},  // empty span
        {0, 0, 0},
        {std::numeric_limits<int32_t>::min(), -1, std::numeric_limits<int32_t>::max()},
    };
    for (const auto& t : cases) {
        SCOPED_TRACE(t.digit);
        AnalogProbe c;
        c.LoadQuiet();
        c.SignalSettings()->SetDigitalFrom(t.from);
        c.SignalSettings()->SetDigitalTo(t.to);
        c.SetDigit(t.digit);
        c.SetValue(1e30f);
        c.SetValue(-1e30f);
        EXPECT_GE(c.PPT(), 0);
        EXPECT_LE(c.PPT(), 1000);
        EXPECT_FALSE(c.OverflowHigh() && c.OverflowLow());
    }
}

TEST(AnalogControl, LogarithmicMappingBetweenValueAndDigit) {
    AnalogProbe c;
    c.LoadQuiet();
    c.SignalSettings()->SetValueFrom(1.0f);
    c.SignalSettings()->SetValueTo(1000.0f);
    c.SetLogScale(true);
    EXPECT_DOUBLE_EQ(c.LogFactor(), 1000.0 / 3.0);
    EXPECT_EQ(c.LogOffset(), 0.0);
    EXPECT_EQ(c.Digit(), 566);  // 50 is 1.699 decades up

    const struct {
        float value;
        int32_t digit;
    } toDigit[] = {{1.0f, 0},     {10.0f, 333},    {31.622776f, 500},
                   {100.0f, 667}, {1000.0f, 1000}, {2000.0f, 1100}};
    for (const auto& t : toDigit) {
        c.SetValue(t.value);
        EXPECT_EQ(c.Digit(), t.digit) << t.value;
    }
    const struct {
        int32_t digit;
        float value;
    } toValue[] = {{0, 1.0f}, {500, 31.622776f}, {1000, 1000.0f}, {-1000, 0.001f}};
    for (const auto& t : toValue) {
        c.SetDigit(t.digit);
        EXPECT_FLOAT_EQ(c.Value(), t.value) << t.digit;
    }

    // Non-positive readings are dropped silently.
    c.Take();
    c.SetValue(0.0f);
    c.SetValue(-3.0f);
    EXPECT_TRUE(c.log.isEmpty());

    // A digit far below the range underflows the value to 0; the next settings pass
    // replaces it by 1.
    c.SetDigit(std::numeric_limits<int32_t>::min());
    EXPECT_EQ(c.Value(), 0.0f);
    c.SignalSettings()->SetName1(QStringLiteral("Level"));
    EXPECT_EQ(c.Value(), 1.0f);
    EXPECT_EQ(c.Digit(), 0);

    c.SetValue(10.0f);
    c.SetLogScale(false);
    EXPECT_EQ(c.Digit(), 9);  // linear over 1..1000
    EXPECT_FALSE(c.SignalSettings()->LogScale());
    EXPECT_FALSE(c.SectorSettings()->LogScale());
}

// Switching on rounds both bounds to their decades by direct assignment, whatever the
// setters would refuse, and reports it in one settings pass.
TEST(AnalogControl, SwitchingToLogarithmicRoundsTheBoundsInOnePass) {
    const struct {
        float from, to, value;
        float newFrom, newTo, newValue;
        double logFactor, logOffset;
        int32_t digit;
    } cases[] = {
        // Both bounds on one decade: an empty range, LogFactor falls back to TotalDigit.
        {80.0f, 100.0f, 50.0f, 100.0f, 100.0f, 50.0f, 1000.0, -2.0, -301},
        {100.0f, 120.0f, 50.0f, 100.0f, 100.0f, 50.0f, 1000.0, -2.0, -301},
        {1.0f, 1000.0f, 50.0f, 1.0f, 1000.0f, 50.0f, 1000.0 / 3.0, 0.0, 566},
        {0.5f, 5.0f, 50.0f, 1.0f, 10.0f, 50.0f, 1000.0, 0.0, 1699},
        {-20.0f, 2500.0f, 50.0f, 0.001f, 1000.0f, 50.0f, 1000.0 / 6.0, 3.0, 783},
        {3.0f, 40000.0f, 0.0f, 1.0f, 100000.0f, 0.001f, 200.0, 0.0, -600},
        {-100.0f, -10.0f, -50.0f, 0.001f, 1.0f, 0.001f, 1000.0 / 3.0, 3.0, 0},
    };
    for (const auto& t : cases) {
        SCOPED_TRACE(testing::Message() << t.from << ".." << t.to);
        AnalogProbe c;
        c.LoadQuiet();
        c.SignalSettings()->SetValueTo(t.to);
        c.SignalSettings()->SetValueFrom(t.from);
        c.SetValue(t.value);
        c.Take();
        c.SetLogScale(true);
        EXPECT_EQ(c.Take(), L({"Settings"}));
        EXPECT_EQ(c.lastParamSender, &c);
        EXPECT_EQ(c.SignalSettings()->ValueFrom(), t.newFrom);
        EXPECT_EQ(c.SignalSettings()->ValueTo(), t.newTo);
        EXPECT_EQ(c.Value(), t.newValue);
        EXPECT_NEAR(c.LogFactor(), t.logFactor, 1e-6 * t.logFactor);
        EXPECT_NEAR(c.LogOffset(), t.logOffset, 1e-6);
        EXPECT_EQ(c.Digit(), t.digit);
        EXPECT_TRUE(c.SignalSettings()->LogScale());
        EXPECT_TRUE(c.SectorSettings()->LogScale());
    }
}

TEST(AnalogControl, SwitchingScaleDuringAnUpdatePhaseWaitsForItsEnd) {
    AnalogProbe c;
    c.LoadQuiet();
    c.SignalSettings()->SetValueFrom(8.0f);
    c.Take();
    c.BeginUpdate();
    c.SetLogScale(true);
    EXPECT_TRUE(c.log.isEmpty());
    EXPECT_EQ(c.SignalSettings()->ValueFrom(), 10.0f);
    EXPECT_EQ(c.Digit(), 699);  // derived at once: log10(50 / 10) of two decades
    c.EndUpdate();
    EXPECT_EQ(c.Take(), L({"Settings"}));
    c.SetLogScale(false);
    EXPECT_EQ(c.Take(), L({"Settings"}));
    EXPECT_EQ(c.Digit(), 444);  // linear over 10..100
}

// --- hint ------------------------------------------------------------------------------

THintOptions Opts(std::initializer_list<THintOption> list) {
    THintOptions s = 0;
    for (THintOption o : list)
        s |= HintOption(o);
    return s;
}

TEST(AnalogControl, HintTextFollowsTheOptions) {
    const QString all = QStringLiteral(
        "Value= 57.0 %\rMIN= 42.0 % 3/15/2023 6:00:00 PM\rMAX= 57.0 % 3/16/2023 6:00:00 "
        "AM\rSignalName1\rSignalName2");
    const struct {
        THintOptions options;
        QString hint;
    } cases[] = {
        {Opts({hoAutoHint}), QString()},
        {Opts({hoAutoHint, hoValue}), QStringLiteral("Value= 57.0 %")},
        {Opts({hoAutoHint, hoMin}), QStringLiteral("MIN= 42.0 %")},
        {Opts({hoAutoHint, hoMin, hoMinMaxDate}), QStringLiteral("MIN= 42.0 % 3/15/2023")},
        {Opts({hoAutoHint, hoMin, hoMinMaxTime}), QStringLiteral("MIN= 42.0 % 6:00:00 PM")},
        {Opts({hoAutoHint, hoMax, hoMinMaxDate, hoMinMaxTime}),
         QStringLiteral("MAX= 57.0 % 3/16/2023 6:00:00 AM")},
        {Opts({hoAutoHint, hoName2, hoName1}), QStringLiteral("SignalName1\rSignalName2")},
        {Opts({hoAutoHint, hoName2, hoValue}), QStringLiteral("Value= 57.0 %\rSignalName2")},
        {Opts({hoAutoHint, hoMax, hoMin}), QStringLiteral("MIN= 42.0 %\rMAX= 57.0 %")},
        {kAllHintOptions, all},
        {Opts({hoValue, hoMin, hoMax, hoName1, hoName2}), QString()},
    };
    for (const auto& t : cases) {
        SCOPED_TRACE(int(t.options));
        AnalogProbe c;
        c.Loaded();
        c.SetHintOptions(t.options);
        test::FakeClock().SetNow(45000.75);
        c.SetValue(42.0f);
        test::FakeClock().SetNow(45001.25);
        c.SetValue(57.0f);
        EXPECT_EQ(c.Hint(), t.hint);
        EXPECT_EQ(c.property("Hint").toString(), t.hint);
    }
}

TEST(AnalogControl, RemovingAutoHintKeepsTheLastText) {
    AnalogProbe c;
    c.LoadQuiet();
    c.SetHintOptions(Opts({hoAutoHint, hoValue}));
    c.SetValue(42.0f);
    c.SetHintOptions(Opts({hoValue}));
    c.SetValue(43.0f);
    EXPECT_EQ(c.Hint(), QStringLiteral("Value= 42.0 %"));
    c.Take();
    // Adding it back evaluates the reading, which rebuilds the hint.
    c.SetHintOptions(Opts({hoAutoHint, hoValue, hoName2}));
    EXPECT_EQ(c.Take(), L({"Value"}));
    EXPECT_EQ(c.Hint(), QStringLiteral("Value= 43.0 %\rSignalName2"));
    // Changing other options only stores them.
    c.SetHintOptions(Opts({hoAutoHint}));
    EXPECT_TRUE(c.log.isEmpty());
    EXPECT_EQ(c.Hint(), QStringLiteral("Value= 43.0 %\rSignalName2"));
}

// An assigned text, whichever way it comes, is the hint (and the tool tip) until the
// next reading replaces it; even an empty one or the same one once more.
TEST(AnalogControl, AssignedHintStandsUntilTheNextReading) {
    using Assign = void (*)(AnalogProbe&, const QString&);
    const struct {
        const char* how;
        Assign assign;
        QString text;
        QString hint;
        QString tip;
    } cases[] = {
        {"SetHint", [](AnalogProbe& c, const QString& t) { c.SetHint(t); }, "manual", "manual",
         "manual"},
        {"SetHint", [](AnalogProbe& c, const QString& t) { c.SetHint(t); }, "", "", ""},
        {"SetHint", [](AnalogProbe& c, const QString& t) { c.SetHint(t); }, "a\rb\r\nc",
         "a\rb\r\nc", "a\nb\nc"},
        {"property", [](AnalogProbe& c, const QString& t) { c.setProperty("Hint", t); },
         "by property", "by property", "by property"},
        {"property", [](AnalogProbe& c, const QString& t) { c.setProperty("Hint", t); }, "", "",
         ""},
        {"setToolTip", [](AnalogProbe& c, const QString& t) { c.setToolTip(t); }, "tip", "tip",
         "tip"},
        {"setToolTip", [](AnalogProbe& c, const QString& t) { c.setToolTip(t); }, "", "", ""},
        {"setToolTip", [](AnalogProbe& c, const QString& t) { c.setToolTip(t); }, "a\nb", "a\nb",
         "a\nb"},
        {"setToolTip", [](AnalogProbe& c, const QString& t) { c.setToolTip(t); }, "a\rb", "a\rb",
         "a\nb"},
    };
    for (const auto& t : cases) {
        SCOPED_TRACE(testing::Message() << t.how << " \"" << t.text.toStdString() << '"');
        AnalogProbe c;
        c.Loaded();
        c.SetHintOptions(Opts({hoAutoHint, hoValue, hoName1}));
        c.SetValue(42.0f);
        for (int round = 0; round < 2; ++round) {  // the same string object both times
            t.assign(c, t.text);
            EXPECT_EQ(c.Hint(), t.hint);
            EXPECT_EQ(c.toolTip(), t.tip);
            c.SetValue(43.0f + round);
            const QString value = QStringLiteral("Value= %1.0 %").arg(43 + round);
            EXPECT_EQ(c.Hint(), value + QStringLiteral("\rSignalName1"));
            EXPECT_EQ(c.toolTip(), value + QStringLiteral("\nSignalName1"));
        }
    }
}

TEST(AnalogControl, AssignedHintStaysWithoutAutoHint) {
    AnalogProbe c;
    c.LoadQuiet();
    c.SetHintOptions(Opts({hoValue}));
    c.setToolTip(QStringLiteral("fixed"));
    c.SetValue(42.0f);
    c.ResetMinMax();
    EXPECT_EQ(c.Hint(), QStringLiteral("fixed"));
    EXPECT_EQ(c.toolTip(), QStringLiteral("fixed"));
    c.SetDesigning(true);
    c.SetHintOptions(kAllHintOptions);
    c.SetValue(43.0f);
    EXPECT_EQ(c.Hint(), QStringLiteral("fixed"));
}

// What the control shows when the pointer rests on it: the tool tip, with line breaks.
TEST(AnalogControl, ToolTipEventShowsTheHintWithLineBreaks) {
    QWidget window;
    window.resize(200, 200);
    AnalogProbe c(&window);
    c.SetBounds(10, 10, 100, 100);
    c.Loaded();
    c.SetHintOptions(Opts({hoAutoHint, hoValue, hoName2}));
    c.SetValue(42.0f);
    window.show();
    const auto hover = [&c] {
        QHelpEvent e(QEvent::ToolTip, QPoint(5, 5), c.mapToGlobal(QPoint(5, 5)));
        QCoreApplication::sendEvent(&c, &e);
        return QToolTip::isVisible() ? QToolTip::text() : QString();
    };
    const QString shown = QStringLiteral("Value= 42.0 %\nSignalName2");
    EXPECT_EQ(hover(), shown);
    // Without ShowHint the control leaves the tip alone.
    c.SetShowHint(false);
    c.SetHint(QStringLiteral("one\rtwo"));
    EXPECT_EQ(hover(), shown);
    c.SetShowHint(true);
    EXPECT_EQ(hover(), QStringLiteral("one\ntwo"));
    // An empty hint takes the tip away (after the tip's own fade-out delay).
    c.SetHint(QString());
    hover();
    QElapsedTimer waited;
    waited.start();
    while (QToolTip::isVisible() && waited.elapsed() < 3000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    EXPECT_FALSE(QToolTip::isVisible());
}

// The extremes' parts follow every new extreme, restored or reset ones included.
TEST(AnalogControl, HintFollowsTheExtremes) {
    using Step = void (*)(AnalogProbe&);
    const struct {
        Step step;
        const char* hint;
    } steps[] = {
        {[](AnalogProbe& c) { c.SetValue(55.0f); }, "MIN= 55.0 %\rMAX= 55.0 %"},
        {[](AnalogProbe& c) { c.SetValue(40.0f); }, "MIN= 40.0 %\rMAX= 55.0 %"},
        {[](AnalogProbe& c) { c.SetValue(45.0f); }, "MIN= 40.0 %\rMAX= 55.0 %"},
        {[](AnalogProbe& c) { c.SetValue(60.0f); }, "MIN= 40.0 %\rMAX= 60.0 %"},
        {[](AnalogProbe& c) { c.ResetMinMax(); }, "MIN= 60.0 %\rMAX= 60.0 %"},
        {[](AnalogProbe& c) { c.SetMin(12.5f, 45000.5); }, "MIN= 12.5 %\rMAX= 60.0 %"},
        {[](AnalogProbe& c) { c.SetMax(70.0f, 45000.5); }, "MIN= 12.5 %\rMAX= 70.0 %"},
    };
    AnalogProbe c;
    c.Loaded();
    c.SetHintOptions(Opts({hoAutoHint, hoMin, hoMax}));
    for (const auto& s : steps) {
        s.step(c);
        EXPECT_EQ(c.Hint(), QString::fromUtf8(s.hint));
    }
}

// Each reading formats the whole hint with the settings of its moment: a change made
// afterwards shows from the next reading on, never half in the current text.
TEST(AnalogControl, HintIsFormattedAtTheReading) {
    using Step = void (*)(AnalogProbe&);
    const auto none = [](AnalogProbe&) {};
    const QString value = QStringLiteral("Value= 1050.0 %\r");
    const QString names = QStringLiteral("\rSignalName1\rSignalName2");
    const struct {
        const char* name;
        Step prepare;
        Step change;
        QString hint;  // after the next reading
    } cases[] = {
        {"decimal separator", none, [](AnalogProbe&) { FormatSettings().DecimalSeparator = ','; },
         "Value= 1050,0 %\rMIN= 1042,5 % 3/15/2023 6:00:00 PM\rMAX= 1057,5 % 3/16/2023 "
         "6:00:00 AM" +
             names},
        {"thousand separator",
         [](AnalogProbe& c) { c.SignalSettings()->SetValueFormat(QStringLiteral("#,##0.0")); },
         [](AnalogProbe&) { FormatSettings().ThousandSeparator = '.'; },
         "Value= 1.050.0 %\rMIN= 1.042.5 % 3/15/2023 6:00:00 PM\rMAX= 1.057.5 % 3/16/2023 "
         "6:00:00 AM" +
             names},
        {"date separator", none, [](AnalogProbe&) { FormatSettings().DateSeparator = '-'; },
         value + "MIN= 1042.5 % 3-15-2023 6:00:00 PM\rMAX= 1057.5 % 3-16-2023 6:00:00 AM" + names},
        {"time separator", none, [](AnalogProbe&) { FormatSettings().TimeSeparator = '.'; },
         value + "MIN= 1042.5 % 3/15/2023 6.00.00 PM\rMAX= 1057.5 % 3/16/2023 6.00.00 AM" + names},
        {"date picture", none,
         [](AnalogProbe&) { FormatSettings().ShortDateFormat = QStringLiteral("yyyy/mm/dd"); },
         value + "MIN= 1042.5 % 2023/03/15 6:00:00 PM\rMAX= 1057.5 % 2023/03/16 6:00:00 AM" +
             names},
        {"time picture", none,
         [](AnalogProbe&) { FormatSettings().LongTimeFormat = QStringLiteral("hh:nn"); },
         value + "MIN= 1042.5 % 3/15/2023 18:00\rMAX= 1057.5 % 3/16/2023 06:00" + names},
        {"pm text", none,
         [](AnalogProbe&) { FormatSettings().TimePMString = QStringLiteral("pm"); },
         value + "MIN= 1042.5 % 3/15/2023 6:00:00 pm\rMAX= 1057.5 % 3/16/2023 6:00:00 AM" + names},
        {"am text", none,
         [](AnalogProbe&) { FormatSettings().TimeAMString = QStringLiteral("am"); },
         value + "MIN= 1042.5 % 3/15/2023 6:00:00 PM\rMAX= 1057.5 % 3/16/2023 6:00:00 am" + names},
        {"month name",
         [](AnalogProbe&) { FormatSettings().ShortDateFormat = QStringLiteral("d mmm"); },
         [](AnalogProbe&) { FormatSettings().ShortMonthNames[2] = QStringLiteral("Mrz"); },
         value + "MIN= 1042.5 % 15 Mrz 6:00:00 PM\rMAX= 1057.5 % 16 Mrz 6:00:00 AM" + names},
        {"day name",
         [](AnalogProbe&) { FormatSettings().ShortDateFormat = QStringLiteral("ddd d"); },
         [](AnalogProbe&) {
             FormatSettings().ShortDayNames[3] = QStringLiteral("Mi");
             FormatSettings().ShortDayNames[4] = QStringLiteral("Do");
         },
         value + "MIN= 1042.5 % Mi 15 6:00:00 PM\rMAX= 1057.5 % Do 16 6:00:00 AM" + names},
        {"unit", none, [](AnalogProbe& c) { c.SignalSettings()->SetValueUnit("bar"); },
         "Value= 1050.0 bar\rMIN= 1042.5 bar 3/15/2023 6:00:00 PM\rMAX= 1057.5 bar 3/16/2023 "
         "6:00:00 AM" +
             names},
        {"picture", none,
         [](AnalogProbe& c) { c.SignalSettings()->SetValueFormat(QStringLiteral("0.00")); },
         "Value= 1050.00 %\rMIN= 1042.50 % 3/15/2023 6:00:00 PM\rMAX= 1057.50 % 3/16/2023 "
         "6:00:00 AM" +
             names},
        {"names", none,
         [](AnalogProbe& c) {
             c.SignalSettings()->SetName1("Pump");
             c.SignalSettings()->SetName2("");
         },
         value + "MIN= 1042.5 % 3/15/2023 6:00:00 PM\rMAX= 1057.5 % 3/16/2023 6:00:00 AM\rPump\r"},
        {"options", none,
         [](AnalogProbe& c) {
             c.SetHintOptions(Opts({hoAutoHint, hoValue, hoMin, hoMax, hoMinMaxTime}));
         },
         value + "MIN= 1042.5 % 6:00:00 PM\rMAX= 1057.5 % 6:00:00 AM"},
        {"value part off", none,
         [](AnalogProbe& c) { c.SetHintOptions(kAllHintOptions & ~HintOption(hoValue)); },
         "MIN= 1042.5 % 3/15/2023 6:00:00 PM\rMAX= 1057.5 % 3/16/2023 6:00:00 AM" + names},
        {"unit with a line break", none,
         [](AnalogProbe& c) { c.SignalSettings()->SetValueUnit("k\r\ng"); },
         "Value= 1050.0 k\r\ng\rMIN= 1042.5 k\r\ng 3/15/2023 6:00:00 PM\rMAX= 1057.5 k\r\ng "
         "3/16/2023 6:00:00 AM" +
             names},
        {"time stamps", none,
         [](AnalogProbe& c) {
             c.MinMax()->SetMinDateTime(45100.5);
             c.MinMax()->SetMaxDateTime(45200.25);
         },
         value + "MIN= 1042.5 % 6/23/2023 12:00:00 PM\rMAX= 1057.5 % 10/1/2023 6:00:00 AM" + names},
    };
    for (const auto& t : cases) {
        SCOPED_TRACE(t.name);
        test::ResetEnvironment();
        AnalogProbe c;
        c.Loaded();
        t.prepare(c);
        test::FakeClock().SetNow(45000.75);
        c.SetValue(1042.5f);
        test::FakeClock().SetNow(45001.25);
        c.SetValue(1057.5f);
        c.SetValue(1049.0f);
        const QString before = c.Hint();
        const QString tipBefore = c.toolTip();
        t.change(c);
        EXPECT_EQ(c.Hint(), before);
        EXPECT_EQ(c.toolTip(), tipBefore);
        c.SetValue(1050.0f);
        EXPECT_EQ(c.Hint(), t.hint);
        QString tip = t.hint;
        tip.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
        EXPECT_EQ(c.toolTip(), tip.replace(QLatin1Char('\r'), QLatin1Char('\n')));
    }
}

}  // namespace
}  // namespace kx
