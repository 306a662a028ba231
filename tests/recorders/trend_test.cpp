// The trend's record rules: recording ticks, the flow bound, separators, conversions,
// extremes, the record information and the settings' limits.
#include <QAccessible>
#include <cmath>
#include <functional>
#include <limits>
#include <set>
#include <string>
#include <vector>

#include "recorders/trend_fixture.h"

namespace kx::test {
namespace {

constexpr int S = -1;  // a separator in Ch1()

TEST_F(TrendTest, Defaults) {
    TKxTrend t;
    EXPECT_TRUE(t.StartRecording());
    EXPECT_TRUE(t.Flow());
    EXPECT_EQ(t.Interval(), 1000u);
    EXPECT_EQ(t.Interval2(), 250u);
    EXPECT_EQ(t.MaxRecords(), 2000);
    EXPECT_EQ(t.GridXPixel(), 60);
    EXPECT_EQ(t.GridYSteps(), 10);
    EXPECT_EQ(t.FillChannelNo(), 0);
    EXPECT_EQ(t.Options(), TrendOpt(opCaption) | TrendOpt(opGrid) | TrendOpt(opCursorOnRec) |
                               TrendOpt(opSeparator) | TrendOpt(opTime) | TrendOpt(opLeftScale) |
                               TrendOpt(opRightScale));
    EXPECT_EQ(t.ColorCursorLine(), clLime);
    EXPECT_EQ(t.CursorLinePenMode(), pmNotMask);
    EXPECT_TRUE(t.CursorLine());
    EXPECT_EQ(t.ColorGrid(), clBtnShadow);
    EXPECT_EQ(t.ColorSeparator(), clBtnHighlight);
    EXPECT_EQ(t.ColorTime(), clBtnHighlight);
    EXPECT_EQ(t.AbsScaleCh(), 1);
    EXPECT_EQ(t.LeftScaleCh(), 0);
    EXPECT_EQ(t.ZoomY(), 1.0f);
    EXPECT_EQ(t.SeparatorMarker(), 0.0);
    EXPECT_EQ(t.RecordCount(), 0);
    // Not subscribed before it is loaded.
    EXPECT_TRUE(FlashList().empty());
    t.Loaded();
    ASSERT_EQ(FlashList().size(), 1u);
    EXPECT_EQ(FlashList()[0]->IntervalTime, 1000);
}

// Each setter ignores values below its minimum and stores the others.
TEST_F(TrendTest, SettersKeepTheirBounds) {
    struct Case {
        const char* what;
        std::function<void(TKxTrend&)> set;
        std::function<int64_t(const TKxTrend&)> get;
        int64_t expected;
    };
    const std::vector<Case> cases = {
        {"Interval 99", [](TKxTrend& t) { t.SetInterval(99); },
         [](auto& t) { return t.Interval(); }, 1000},
        {"Interval 100", [](TKxTrend& t) { t.SetInterval(100); },
         [](auto& t) { return t.Interval(); }, 100},
        {"Interval2 99", [](TKxTrend& t) { t.SetInterval2(99); },
         [](auto& t) { return t.Interval2(); }, 250},
        {"Interval2 100", [](TKxTrend& t) { t.SetInterval2(100); },
         [](auto& t) { return t.Interval2(); }, 100},
        {"MaxRecords 99", [](TKxTrend& t) { t.SetMaxRecords(99); },
         [](auto& t) { return t.MaxRecords(); }, 2000},
        {"MaxRecords 100", [](TKxTrend& t) { t.SetMaxRecords(100); },
         [](auto& t) { return t.MaxRecords(); }, 100},
        {"GridXPixel 29", [](TKxTrend& t) { t.SetGridXPixel(29); },
         [](auto& t) { return t.GridXPixel(); }, 60},
        {"GridXPixel 30", [](TKxTrend& t) { t.SetGridXPixel(30); },
         [](auto& t) { return t.GridXPixel(); }, 30},
        {"GridYSteps 0", [](TKxTrend& t) { t.SetGridYSteps(0); },
         [](auto& t) { return t.GridYSteps(); }, 10},
        {"GridYSteps 11", [](TKxTrend& t) { t.SetGridYSteps(11); },
         [](auto& t) { return t.GridYSteps(); }, 10},
        {"GridYSteps 1", [](TKxTrend& t) { t.SetGridYSteps(1); },
         [](auto& t) { return t.GridYSteps(); }, 1},
        {"FillChannelNo 9", [](TKxTrend& t) { t.SetFillChannelNo(9); },
         [](auto& t) { return t.FillChannelNo(); }, 0},
        {"FillChannelNo -1", [](TKxTrend& t) { t.SetFillChannelNo(-1); },
         [](auto& t) { return t.FillChannelNo(); }, 0},
        {"FillChannelNo 8", [](TKxTrend& t) { t.SetFillChannelNo(8); },
         [](auto& t) { return t.FillChannelNo(); }, 8},
        {"AbsScaleCh 9", [](TKxTrend& t) { t.SetAbsScaleCh(9); },
         [](auto& t) { return t.AbsScaleCh(); }, 1},
        {"LeftScaleCh 8", [](TKxTrend& t) { t.SetLeftScaleCh(8); },
         [](auto& t) { return t.LeftScaleCh(); }, 8},
        {"LeftScaleCh -1", [](TKxTrend& t) { t.SetLeftScaleCh(-1); },
         [](auto& t) { return t.LeftScaleCh(); }, 0},
        {"AbsScaleCh 0", [](TKxTrend& t) { t.SetAbsScaleCh(0); },
         [](auto& t) { return t.AbsScaleCh(); }, 0},
        {"CursorLinePenMode 99", [](TKxTrend& t) { t.setCursorLinePenMode(99); },
         [](auto& t) { return t.CursorLinePenMode(); }, pmNotMask},
        {"CursorLinePenMode -1", [](TKxTrend& t) { t.setCursorLinePenMode(-1); },
         [](auto& t) { return t.CursorLinePenMode(); }, pmNotMask},
        {"CursorLinePenMode pmBlack", [](TKxTrend& t) { t.setCursorLinePenMode(pmBlack); },
         [](auto& t) { return t.CursorLinePenMode(); }, pmBlack},
        {"CursorLinePenMode pmNotXor", [](TKxTrend& t) { t.setCursorLinePenMode(pmNotXor); },
         [](auto& t) { return t.CursorLinePenMode(); }, pmNotXor},
        {"Options high bits", [](TKxTrend& t) { t.SetOptions(0xFFFFFFFFu); },
         [](auto& t) { return t.Options(); }, 0x7FF},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        TKxTrend t;
        c.set(t);
        EXPECT_EQ(c.get(t), c.expected);
    }
}

TEST_F(TrendTest, ZoomStaysWithinItsRange) {
    struct Case {
        float start;
        int steps;  // > 0 zoom out, < 0 zoom in
        float set;  // applied through SetZoomY when not 0
        float expected;
    };
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const Case cases[] = {
        {10.0f, 1, 0, 10.0f}, {0.1f, -1, 0, 0.1f},   {1.0f, 0, 0.05f, 1.0f}, {1.0f, 0, 10.5f, 1.0f},
        {1.0f, 0, nan, 1.0f}, {1.0f, 0, 2.5f, 2.5f}, {9.95f, 1, 0, 10.0f},   {0.15f, -1, 0, 0.1f},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.start);
        trend->SetZoomY(c.start);
        if (c.set != 0) trend->SetZoomY(c.set);
        for (int i = 0; i < c.steps; ++i)
            trend->ZoomYOut();
        for (int i = 0; i > c.steps; --i)
            trend->ZoomYIn();
        EXPECT_FLOAT_EQ(trend->ZoomY(), c.expected);
    }
}

// The tick that finds last = MaxRecords deletes the oldest records down to MaxRecords -
// GridXPixel - 1 and then appends its own.
TEST_F(TrendTest, FlowDeletesTheOldestRecordsAtTheBound) {
    AddDigits(2001);
    std::vector<std::string> events;
    QObject::connect(trend.get(), &TKxTrend::OnMaxRecords,
                     [&] { events.push_back("max " + std::to_string(trend->RecordCount())); });
    QObject::connect(trend.get(), &TKxTrend::OnRecNoChanged,
                     [&] { events.push_back("count " + std::to_string(trend->RecordCount())); });
    QObject::connect(trend.get(), &TKxTrend::OnInterval, [&] { events.push_back("interval"); });
    Tick();
    EXPECT_EQ(trend->RecordCount(), 1942);
    EXPECT_EQ((std::vector<std::string>{"max 2001", "count 1941", "count 1942", "interval"}),
              events);
    EXPECT_EQ(trend->Records()[0].Ch[0], 60);  // records 0..59 went
    // The view restarts at 0 and then follows the newest record one division at a time.
    const int32_t first = trend->FirstDisplayedRecord();
    EXPECT_EQ(first % 60, 0);
    EXPECT_LE(1941 - first, trend->DisplayableRecords());
    EXPECT_GT(1941 - (first - 60), trend->DisplayableRecords());
}

TEST_F(TrendTest, WithoutFlowTheStoreGrows) {
    trend->SetFlow(false);
    AddDigits(2001);
    int maxEvents = 0;
    QObject::connect(trend.get(), &TKxTrend::OnMaxRecords, [&] { ++maxEvents; });
    Tick(100);
    EXPECT_EQ(trend->RecordCount(), 2101);
    EXPECT_EQ(maxEvents, 0);
}

TEST_F(TrendTest, TicksRecordTheChannelsAbsoluteDigits) {
    trend->Channel1()->SetDigitalFrom(-100);
    trend->Channel1()->SetDigitalTo(900);
    trend->Channel1()->SetValue(50.0f);  // digit -100 + 50 * 10 = 400, absolute 500
    trend->Channel2()->SetDigit(7);
    Tick();
    ASSERT_EQ(trend->RecordCount(), 1);
    EXPECT_EQ(trend->Records()[0].Ch[0], 500);
    EXPECT_EQ(trend->Records()[0].Ch[1], 7);
    EXPECT_EQ(trend->Records()[0].Time, FakeClock().Now());
    trend->Channel2()->SetDigit(9);  // any change refreshes the next record
    Tick();
    EXPECT_EQ(trend->Records()[1].Ch[1], 9);
}

TEST_F(TrendTest, StartingInsertsSeparatorsBeforeTheNewestRecord) {
    struct Case {
        int records;
        std::vector<int> expected;
    };
    const Case cases[] = {
        {0, {}},
        {1, {0}},
        {2, {0, S, S, S, S, S, 1}},
        {3, {0, 1, S, S, S, S, S, 2}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.records);
        SetUp();
        AddDigits(c.records);
        trend->SetStartRecording(true);
        EXPECT_EQ(Ch1(), c.expected);
        EXPECT_EQ(SubscribedCode(), 1000);
        if (c.records >= 2) {
            // Separators carry the digits of the record before them.
            EXPECT_EQ(trend->Records()[c.records - 1].Ch[0], c.records - 2);
            EXPECT_EQ(trend->Records()[c.records - 1].Time, 0.0);
        }
        trend->SetStartRecording(false);
        EXPECT_EQ(SubscribedCode(), -1);
    }
}

TEST_F(TrendTest, SeparatorsOnlyWithTheOption) {
    AddDigits(3);
    trend->SetOptions(trend->Options() & ~TrendOpt(opSeparator));
    trend->SetStartRecording(true);
    EXPECT_EQ(Ch1(), (std::vector<int>{0, 1, 2}));
    trend->AddSeparator(3);  // beyond the last record
    trend->AddSeparator(0);  // no record before it
    trend->SetOptions(trend->Options() | TrendOpt(opSeparator));
    trend->AddSeparator(3);
    trend->AddSeparator(0);
    EXPECT_EQ(Ch1(), (std::vector<int>{0, 1, 2}));
}

TEST_F(TrendTest, AddingIsRefusedWhileRecording) {
    AddDigits(2);
    trend->SetStartRecording(true);
    const int32_t before = trend->RecordCount();
    EXPECT_FALSE(trend->AddValue(1, 2, 3, 4, 5, 6, 7, 8));
    EXPECT_FALSE(trend->AddDigit(1, 2, 3, 4, 5, 6, 7, 8));
    EXPECT_EQ(trend->RecordCount(), before);
}

// AddValue keeps the added |ValueFrom| and wraps to 16 bits; AddDigit clamps.
TEST_F(TrendTest, AddValueAndAddDigitEncoding) {
    struct Case {
        const char* what;
        float valueFrom, valueTo;
        int digitalFrom;
        bool byValue;
        double input;
        int stored;
        int readDigit;
        float readValue;
    };
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const Case cases[] = {
        {"plain", 0, 100, 0, true, 50, 500, 500, 50},
        {"negative start adds |from|", -50, 50, 0, true, 0, 1000, 1000, 50},
        {"wraps above 65535", 0, 100, 0, true, 10000, 34464, 34464, 3446.4f},
        {"wraps below 0", 0, 100, 0, true, -1, 65526, 65526, 6552.6f},
        {"NaN stores 0", 0, 100, 0, true, nan, 0, 0, 0},
        {"half rounds to even", 0, 100, 0, true, 0.25, 2, 2, 0.2f},
        {"digit with offset", 0, 100, -100, false, 5, 105, 5, 20.5f},
        {"digit clamped high", 0, 100, 0, false, 70000, 65535, 65535, 6553.5f},
        {"digit clamped low", 0, 100, -100, false, -500, 0, -100, 10},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        SetUp();
        TChSettings* ch = trend->Channel1();
        ch->SetValueTo(c.valueTo);
        ch->SetValueFrom(c.valueFrom);
        ch->SetDigitalFrom(c.digitalFrom);
        ch->SetDigitalTo(c.digitalFrom + 1000);
        if (c.byValue)
            ASSERT_TRUE(trend->AddValue(float(c.input), 0, 0, 0, 0, 0, 0, 0));
        else
            ASSERT_TRUE(trend->AddDigit(int(c.input), 0, 0, 0, 0, 0, 0, 0));
        EXPECT_EQ(trend->Records()[0].Ch[0], c.stored);
        TDateTime t = -1;
        std::array<int32_t, 8> digits{};
        std::array<float, 8> values{};
        ASSERT_TRUE(trend->ReadDigit(0, t, digits));
        EXPECT_EQ(digits[0], c.readDigit);
        ASSERT_TRUE(trend->ReadValue(0, t, values));
        EXPECT_FLOAT_EQ(values[0], c.readValue);
        EXPECT_EQ(t, FakeClock().Now());
    }
}

TEST_F(TrendTest, ReadsOutsideTheStoreLeaveTheirArgumentsAlone) {
    AddDigits(2);
    for (int32_t index : {-1, 2, std::numeric_limits<int32_t>::max()}) {
        TDateTime t = 123.0;
        std::array<int32_t, 8> d;
        d.fill(7);
        std::array<float, 8> v;
        v.fill(7.0f);
        EXPECT_FALSE(trend->ReadRecTime(index, t));
        EXPECT_FALSE(trend->ReadDigit(index, t, d));
        EXPECT_FALSE(trend->ReadValue(index, t, v));
        EXPECT_EQ(t, 123.0);
        EXPECT_EQ(d[0], 7);
        EXPECT_EQ(v[0], 7.0f);
    }
    EXPECT_EQ(trend->DigitToValue(0, 5), 0.0f);
    EXPECT_EQ(trend->DigitToValue(9, 5), 0.0f);
    EXPECT_EQ(trend->ValueToDigit(9, 5), 0);
    EXPECT_FLOAT_EQ(trend->DigitToValue(8, 5), 0.5f);
    EXPECT_EQ(trend->ValueToDigit(8, 0.5f), 5);
}

TEST_F(TrendTest, RecordInfoCountsASingleRecordAsNone) {
    int events = 0;
    QObject::connect(trend.get(), &TKxTrend::OnRecNoChanged, [&] { ++events; });
    TRecInfo* info = trend->RecordInfo();
    AddDigits(1);
    EXPECT_EQ(info->TotalRecords(), 0u);
    EXPECT_EQ(info->FirstRecord(), 0.0);
    const TDateTime first = trend->Records()[0].Time;
    AddDigits(1);
    EXPECT_EQ(info->TotalRecords(), 2u);
    EXPECT_EQ(info->FirstRecord(), first);
    EXPECT_EQ(info->LastRecord(), FakeClock().Now());
    EXPECT_EQ(events, 2);
    trend->DeleteRecords(1);
    EXPECT_EQ(info->TotalRecords(), 0u);
    EXPECT_EQ(events, 3);
}

TEST_F(TrendTest, FindMinMax) {
    struct Case {
        const char* what;
        std::vector<int> ch1;  // S: a separator block (five records) before the next one
        int first, last;       // -2: the last record
        bool ok;
        float min, max;
        int minAt, maxAt;  // record index whose time is reported; -1: the separator time 0
    };
    const Case cases[] = {
        {"whole store, ties keep the earlier", {4, 2, 2, 8, 8}, 0, -2, true, 0.2f, 0.8f, 1, 3},
        {"seeded from the first record", {9, 5, 7}, 1, -2, true, 0.5f, 0.7f, 1, 2},
        {"seeded from a separator", {5, S, 7}, 1, -2, true, 0.5f, 0.7f, -1, 6},
        {"separators are skipped", {5, S, 7}, 0, -2, true, 0.5f, 0.7f, 0, 6},
        {"first below 0", {1, 2}, -1, 1, false, 0, 0, 0, 0},
        {"last beyond the store", {1, 2}, 0, 2, false, 0, 0, 0, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        SetUp();
        for (int d : c.ch1) {
            if (d == S) continue;
            FakeClock().SetNow(FakeClock().Now() + 1.0 / 86400.0);
            trend->AddDigit(d, 0, 0, 0, 0, 0, 0, 0);
        }
        for (size_t i = 0; i < c.ch1.size(); ++i)
            if (c.ch1[i] == S) trend->AddSeparator(int32_t(i));
        const int32_t last = c.last == -2 ? trend->RecordCount() - 1 : c.last;
        TMinMax* mm = trend->MinMax(1);
        ASSERT_EQ(trend->FindMinMax(c.first, last), c.ok);
        if (!c.ok) continue;
        EXPECT_FLOAT_EQ(mm->Min(), c.min);
        EXPECT_FLOAT_EQ(mm->Max(), c.max);
        auto timeOf = [&](int i) { return i < 0 ? 0.0 : trend->Records()[i].Time; };
        EXPECT_EQ(mm->MinDateTime(), timeOf(c.minAt));
        EXPECT_EQ(mm->MaxDateTime(), timeOf(c.maxAt));
    }
    EXPECT_EQ(trend->MinMax(0), nullptr);
    EXPECT_EQ(trend->MinMax(9), nullptr);
}

TEST_F(TrendTest, DeleteRecordsNeedsACountWithinTheStore) {
    AddDigits(5);
    trend->DeleteRecords(5);
    EXPECT_EQ(trend->RecordCount(), 5);
    trend->DeleteRecords(4);
    EXPECT_EQ(Ch1(), (std::vector<int>{4}));
    trend->DeleteRecords(-3);
    EXPECT_EQ(trend->RecordCount(), 1);
}

TEST_F(TrendTest, ClearRecordsKeepsRecording) {
    trend->SetStartRecording(true);
    Tick(3);
    trend->ClearRecords();
    EXPECT_EQ(trend->RecordCount(), 0);
    EXPECT_TRUE(trend->StartRecording());
    EXPECT_EQ(SubscribedCode(), 1000);
    EXPECT_EQ(trend->RecordInfo()->FirstDisplayedRec(), 0);
    Tick();
    EXPECT_EQ(Ch1(), (std::vector<int>{0}));  // no separator after a clear
}

TEST_F(TrendTest, Interval2RecordsForItsTicksThenReturns) {
    AddDigits(2);
    trend->SetStartRecording(true);  // 0 S S S S S 1
    trend->RunInterval2(3);          // 0 S*5 S*5 1
    EXPECT_TRUE(trend->Interval2Active());
    EXPECT_EQ(SubscribedCode(), 250);
    EXPECT_EQ(trend->RecordCount(), 12);
    Tick(2);
    EXPECT_EQ(SubscribedCode(), 250);
    EXPECT_EQ(trend->RecordCount(), 14);
    Tick();
    EXPECT_FALSE(trend->Interval2Active());
    EXPECT_EQ(SubscribedCode(), 1000);
    // The return adds a block before the last record and then the tick's own record.
    std::vector<int> expected = {0, S, S, S, S, S, S, S, S, S, S, 1, 0, S, S, S, S, S, 0, 0};
    EXPECT_EQ(Ch1(), expected);
    trend->SetStartRecording(false);
    trend->RunInterval2(3);  // only while recording
    EXPECT_FALSE(trend->Interval2Active());
}

TEST_F(TrendTest, ChangingTheIntervalWhileRecording) {
    AddDigits(2);
    trend->SetStartRecording(true);
    const int32_t before = trend->RecordCount();
    trend->SetInterval(500);
    EXPECT_EQ(SubscribedCode(), 500);
    EXPECT_EQ(trend->RecordCount(), before + 5);
    trend->SetInterval(500);  // unchanged: nothing
    EXPECT_EQ(trend->RecordCount(), before + 5);
    trend->SetStartRecording(false);
    trend->SetInterval(700);
    EXPECT_EQ(SubscribedCode(), -1);
    EXPECT_EQ(trend->RecordCount(), before + 5);
}

TEST_F(TrendTest, DesigningNeitherSubscribesNorRecords) {
    trend->SetDesigning(true);
    trend->SetStartRecording(true);
    EXPECT_EQ(SubscribedCode(), -1);
    Tick();
    EXPECT_EQ(trend->RecordCount(), 0);
}

TEST_F(TrendTest, DestroyingUnsubscribes) {
    trend->SetStartRecording(true);
    Tick(3);
    ASSERT_EQ(SubscribedCode(), 1000);
    trend.reset();
    EXPECT_TRUE(FlashList().empty());
}

TEST_F(TrendTest, MoveXSwitchesFlowOffAndStaysInTheStore) {
    Paint();
    AddDigits(1000);
    struct Case {
        int dx;
        int first;
    };
    const Case cases[] = {{100, 100}, {-30, 70}, {2000, 1000 - 60 - 1}, {-5000, 0}, {930, 930}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.dx);
        trend->SetFlow(true);
        trend->MoveX(c.dx);
        EXPECT_FALSE(trend->Flow());
        EXPECT_EQ(trend->FirstDisplayedRecord(), c.first);
    }
}

// The settings setters copy; null and the object itself change nothing.
TEST_F(TrendTest, SettingsSettersCopyAndIgnoreNull) {
    TTrendLimit limit;
    limit.SetValue(42.0f);
    TFont font;
    font.SetSize(17);
    TKxSBevel bevel;
    bevel.SetWidth(7);
    struct Case {
        const char* what;
        std::function<void(TKxTrend&)> copy, none, self;
        std::function<bool(const TKxTrend&)> copied;
    };
    const Case cases[] = {
        {"LimitUpper", [&](TKxTrend& t) { t.SetLimitUpper(&limit); },
         [](TKxTrend& t) { t.SetLimitUpper(nullptr); },
         [](TKxTrend& t) { t.SetLimitUpper(t.LimitUpper()); },
         [](const TKxTrend& t) { return t.LimitUpper()->Value() == 42.0f; }},
        {"LimitLower", [&](TKxTrend& t) { t.SetLimitLower(&limit); },
         [](TKxTrend& t) { t.SetLimitLower(nullptr); },
         [](TKxTrend& t) { t.SetLimitLower(t.LimitLower()); },
         [](const TKxTrend& t) { return t.LimitLower()->Value() == 42.0f; }},
        {"Font", [&](TKxTrend& t) { t.SetFont(&font); }, [](TKxTrend& t) { t.SetFont(nullptr); },
         [](TKxTrend& t) { t.SetFont(t.Font()); },
         [](const TKxTrend& t) { return t.Font()->Size() == 17; }},
        {"CaptionFont", [&](TKxTrend& t) { t.SetCaptionFont(&font); },
         [](TKxTrend& t) { t.SetCaptionFont(nullptr); },
         [](TKxTrend& t) { t.SetCaptionFont(t.CaptionFont()); },
         [](const TKxTrend& t) { return t.CaptionFont()->Size() == 17; }},
        {"BevelOuter", [&](TKxTrend& t) { t.SetBevelOuter(&bevel); },
         [](TKxTrend& t) { t.SetBevelOuter(nullptr); },
         [](TKxTrend& t) { t.SetBevelOuter(t.BevelOuter()); },
         [](const TKxTrend& t) { return t.BevelOuter()->Width() == 7; }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        TKxTrend t;
        c.none(t);
        c.self(t);
        EXPECT_FALSE(c.copied(t));
        c.copy(t);
        EXPECT_TRUE(c.copied(t));
        c.none(t);
        c.self(t);
        EXPECT_TRUE(c.copied(t));
    }
}

TEST_F(TrendTest, ChannelSettersCopyAndIgnoreNull) {
    TChSettings source;
    source.SetValueTo(500.0f);
    source.SetColor(clNavy);
    trend->SetChannel(3, &source);
    EXPECT_EQ(trend->Channel3()->ValueTo(), 500.0f);
    EXPECT_EQ(trend->Channel3()->Color(), clNavy);
    trend->SetChannel(3, nullptr);
    trend->SetChannel(9, &source);
    EXPECT_EQ(trend->Channel(9), nullptr);
    EXPECT_EQ(trend->Channel(0), nullptr);
    // Channels start in distinct colours.
    std::set<TColor> colors;
    for (int ch = 1; ch <= 8; ++ch)
        colors.insert(trend->Channel(ch)->Color());
    EXPECT_EQ(colors.size(), 8u);
}

// Assistive tools hear the caption, the newest values and whether the trend records or a
// limit is passed.
TEST_F(TrendTest, Accessibility) {
    QAccessibleInterface* a = QAccessible::queryAccessibleInterface(trend.get());
    ASSERT_TRUE(a);
    EXPECT_EQ(a->role(), QAccessible::Chart);
    trend->setObjectName(QStringLiteral("trend1"));
    EXPECT_EQ(a->text(QAccessible::Name), QStringLiteral("trend1"));
    trend->SetCaption(QStringLiteral("Reactor"));
    EXPECT_EQ(a->text(QAccessible::Name), QStringLiteral("Reactor"));
    EXPECT_EQ(a->text(QAccessible::Value), QString());
    EXPECT_EQ(a->text(QAccessible::Description), QStringLiteral("stopped"));
    for (int ch = 3; ch <= 8; ++ch)
        trend->Channel(ch)->SetVisible(false);
    trend->Channel1()->SetValueUnit(QStringLiteral("bar"));
    trend->AddDigit(905, 120, 0, 0, 0, 0, 0, 0);
    EXPECT_EQ(a->text(QAccessible::Value), QStringLiteral("Ch1 90.5 bar; Ch2 12.0 %"));
    trend->LimitUpper()->SetValue(90.0f);
    trend->LimitUpper()->SetEnabled(true);
    EXPECT_EQ(a->text(QAccessible::Description), QStringLiteral("stopped, upper limit exceeded"));
    trend->LimitUpper()->SetEnabled(false);
    trend->LimitLower()->SetValue(95.0f);
    trend->LimitLower()->SetEnabled(true);
    trend->SetStartRecording(true);
    EXPECT_EQ(a->text(QAccessible::Description), QStringLiteral("recording, lower limit exceeded"));
    trend->setAccessibleDescription(QStringLiteral("Line 2"));
    EXPECT_TRUE(a->text(QAccessible::Description).startsWith(QStringLiteral("Line 2, ")));
}

}  // namespace
}  // namespace kx::test
