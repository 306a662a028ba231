// The analog value model: evaluation order and transitions of a reading, extremes,
// limits, overflow, settings passes, the logarithmic mapping, hints and design time.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "analog_probe.h"
#include "common/test_env.h"

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

TEST(AnalogControl, SwitchingToLogarithmicReplacesNonPositiveBounds) {
    // from 0 means the untouched default (an exact 0 set later would become 1e-6).
    const struct {
        float from, to, value;
        float newFrom, newTo, newValue;
    } cases[] = {
        {0.0f, 100.0f, -5.0f, 0.001f, 100.0f, 0.001f},
        {-20.0f, 2500.0f, 50.0f, 0.001f, 1000.0f, 50.0f},
        {3.0f, 40000.0f, 0.0f, 1.0f, 100000.0f, 0.001f},
    };
    for (const auto& t : cases) {
        SCOPED_TRACE(t.from);
        AnalogProbe c;
        c.LoadQuiet();
        if (t.from != 0.0f) c.SignalSettings()->SetValueFrom(t.from);
        c.SignalSettings()->SetValueTo(t.to);
        c.SetValue(t.value);
        c.Take();
        c.SetLogScale(true);
        EXPECT_EQ(c.SignalSettings()->ValueFrom(), t.newFrom);
        EXPECT_EQ(c.SignalSettings()->ValueTo(), t.newTo);
        EXPECT_EQ(c.Value(), t.newValue);
        EXPECT_TRUE(c.SignalSettings()->LogScale());
        EXPECT_TRUE(c.SectorSettings()->LogScale());
        ASSERT_FALSE(c.log.isEmpty());
        EXPECT_EQ(c.log.last(), QStringLiteral("Settings"));
    }
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

TEST(AnalogControl, HintShowsTheStateOfTheLastReading) {
    AnalogProbe c;
    c.Loaded();
    c.SetHintOptions(Opts({hoAutoHint, hoValue, hoName1}));
    c.SetValue(42.0f);
    // A settings change alone does not rebuild the hint, even when it is first read
    // afterwards.
    c.SignalSettings()->SetName1(QStringLiteral("Pump"));
    c.SignalSettings()->SetValueUnit(QStringLiteral("bar"));
    EXPECT_EQ(c.Hint(), QStringLiteral("Value= 42.0 %\rSignalName1"));
    c.SetValue(43.0f);
    EXPECT_EQ(c.Hint(), QStringLiteral("Value= 43.0 bar\rPump"));
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

TEST(AnalogControl, HintSetByHandStandsUntilTheNextReading) {
    AnalogProbe c;
    c.Loaded();
    c.SetHintOptions(Opts({hoAutoHint, hoValue}));
    c.SetValue(42.0f);
    c.SetHint(QStringLiteral("manual"));
    EXPECT_EQ(c.Hint(), QStringLiteral("manual"));
    c.SetValue(43.0f);
    EXPECT_EQ(c.Hint(), QStringLiteral("Value= 43.0 %"));
    c.SetValue(44.0f);
    c.setProperty("Hint", QStringLiteral("by property"));
    EXPECT_EQ(c.Hint(), QStringLiteral("by property"));
    c.SetValue(45.0f);
    EXPECT_EQ(c.Hint(), QStringLiteral("Value= 45.0 %"));
}

}  // namespace
}  // namespace kx
