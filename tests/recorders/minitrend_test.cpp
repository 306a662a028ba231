// The mini trend: recording on the blink service and by the application, the bounded
// store, where a record is drawn, what a tick redraws and copies, and that flowing gives
// the pixels of a full drawing.
#include <gtest/gtest.h>

#include <QWidget>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <vector>

#include "common/flash_util.h"
#include "common/ratio.h"
#include "common/test_env.h"
#include "kx/blink/flashtimer.h"
#include "kx/drawing/text.h"
#include "kx/host/recordingcanvas.h"
#include "kx/recorders/minitrend.h"

namespace kx {
namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInf = std::numeric_limits<float>::infinity();

class MiniTrend : public ::testing::Test {
  protected:
    void SetUp() override {
        test::ResetEnvironment();
        m_ = std::make_unique<TKxMiniTrend>(&form_);
        m_->SetBounds(0, 0, 52, 22);  // a one-pixel bevel around a 50 x 20 curve area
        m_->Loaded();
        m_->PaintToSurface();
    }
    void TearDown() override {
        m_.reset();
        ClearFlashList();
    }
    TColor at(int32_t column, int32_t row) const {
        const TRect a = m_->CurveArea();
        return m_->Surface().Pixel(a.Left + column, a.Top + row);
    }

    QWidget form_;
    std::unique_ptr<TKxMiniTrend> m_;
};

TEST_F(MiniTrend, SettersKeepTheirRanges) {
    EXPECT_TRUE(m_->StartRecording());
    EXPECT_EQ(m_->Interval(), 1000u);
    EXPECT_EQ(m_->MaxRecords(), 200);
    EXPECT_EQ(m_->ChannelCount(), 1);
    EXPECT_EQ(m_->Color(), clBlack);
    EXPECT_FALSE(m_->ShowLastValue());
    EXPECT_EQ(m_->CurveArea(), (TRect{1, 1, 51, 21}));
    EXPECT_EQ(m_->ValueArea(), TRect{});
    EXPECT_EQ(m_->Baseline(), 19);
    EXPECT_EQ(m_->BevelOuter()->Style(), TKxSBevel::bsLowered);
    EXPECT_EQ(m_->BevelOuter()->BevelLine(), TKxSBevel::blNone);
    EXPECT_EQ(m_->BevelOuter()->Spacing(), 0);
    EXPECT_EQ(m_->Font()->Name(), QStringLiteral("Arial"));
    EXPECT_EQ(m_->Font()->Size(), 8);
    const TColor colors[] = {clLime, clYellow, clAqua, clFuchsia};
    for (int ch = 1; ch <= 4; ++ch)
        EXPECT_EQ(m_->Channel(ch)->Color(), colors[ch - 1]) << ch;
    // No settings object: ignored.
    m_->SetFont(nullptr);
    m_->SetBevelOuter(nullptr);
    m_->SetChannel(1, nullptr);

    m_->SetInterval(99);
    m_->SetMaxRecords(9);
    m_->SetChannelCount(0);
    m_->SetChannelCount(5);
    EXPECT_EQ(m_->Interval(), 1000u);
    EXPECT_EQ(m_->MaxRecords(), 200);
    EXPECT_EQ(m_->ChannelCount(), 1);
    m_->SetInterval(100);
    m_->SetMaxRecords(10);
    m_->SetChannelCount(4);
    EXPECT_EQ(m_->Interval(), 100u);
    EXPECT_EQ(m_->MaxRecords(), 10);
    EXPECT_EQ(m_->ChannelCount(), 4);
    EXPECT_EQ(m_->Channel(0), nullptr);
    EXPECT_EQ(m_->Channel(5), nullptr);
    EXPECT_EQ(m_->Channel(4), m_->Channel4());
}

TEST_F(MiniTrend, RecordsEveryIntervalWhileStarted) {
    const TFlash* s = test::Subscription(m_.get());
    ASSERT_TRUE(s);
    EXPECT_EQ(s->IntervalTime, 1000);
    int intervals = 0;
    QObject::connect(m_.get(), &TKxMiniTrend::OnInterval, [&](QObject* sender) {
        EXPECT_EQ(sender, m_.get());
        ++intervals;
    });
    m_->Channel1()->SetValue(42.0f);
    m_->Channel2()->SetDigit(-5);     // below the range: clamped to 0
    m_->Channel3()->SetDigit(70000);  // beyond 16 bits: clamped, not cut
    m_->Channel4()->SetValue(100.0f);
    test::FakeClock().SetNow(45001.5);
    test::FakeClock().SetTicks(999);
    RunFlashTick();
    EXPECT_EQ(m_->RecordCount(), 0);
    test::FakeClock().SetTicks(1000);
    RunFlashTick();
    ASSERT_EQ(m_->RecordCount(), 1);
    EXPECT_EQ(intervals, 1);
    const TSignRec& r = m_->Records()[0];
    EXPECT_EQ(r.Time, 45001.5);
    EXPECT_EQ(r.Ch[0], 420);
    EXPECT_EQ(r.Ch[1], 0);
    EXPECT_EQ(r.Ch[2], 65535);
    EXPECT_EQ(r.Ch[3], 1000);
    EXPECT_EQ(r.Ch[4], 0);

    // A new interval moves the subscription; stopping ends it, and pulses record nothing.
    m_->SetInterval(250);
    ASSERT_TRUE(test::Subscription(m_.get()));
    EXPECT_EQ(test::Subscription(m_.get())->IntervalTime, 250);
    m_->SetStartRecording(false);
    EXPECT_FALSE(test::Subscription(m_.get()));
    test::FakeClock().SetTicks(5000);
    RunFlashTick();
    EXPECT_EQ(m_->RecordCount(), 1);
    m_->SetStartRecording(true);
    EXPECT_TRUE(test::Subscription(m_.get()));
}

TEST_F(MiniTrend, SubscribesOnlyOnceLoadedAndNeverWhileDesigning) {
    const struct {
        const char* name;
        bool designing, start;
        bool subscribed;
    } cases[] = {
        {"run time", false, true, true},
        {"stopped", false, false, false},
        {"designing", true, true, false},
    };
    for (const auto& c : cases) {
        TKxMiniTrend t(&form_);
        t.SetDesigning(c.designing);
        t.SetStartRecording(c.start);
        EXPECT_FALSE(test::Subscription(&t)) << c.name << ": before Loaded";
        t.Loaded();
        EXPECT_EQ(test::Subscription(&t) != nullptr, c.subscribed) << c.name;
    }
    // Destruction ended the subscriptions of the others.
    for (const auto& e : FlashList())
        EXPECT_TRUE(!e || e->Control == m_.get());
}

TEST_F(MiniTrend, AddValueStoresWhatSetValueWouldRecord) {
    EXPECT_FALSE(m_->AddValue(1.0f));  // refused while recording
    EXPECT_EQ(m_->RecordCount(), 0);
    m_->SetStartRecording(false);
    const struct {
        const char* name;
        int32_t digitalFrom, digitalTo;
        float valueFrom, valueTo;
        float v;
        uint16_t digit;
    } cases[] = {
        {"mid range", 0, 1000, 0.0f, 100.0f, 50.0f, 500},
        {"digit offset", 100, 1100, 0.0f, 100.0f, 50.0f, 500},
        {"value offset", 0, 1000, -50.0f, 50.0f, 0.0f, 500},
        {"beyond the top", 0, 1000, 0.0f, 100.0f, 200.0f, 2000},
        {"below the bottom", 0, 1000, 0.0f, 100.0f, -5.0f, 0},
        {"NaN", 0, 1000, 0.0f, 100.0f, kNaN, 0},
        {"NaN with digit offset", -100, 900, 0.0f, 100.0f, kNaN, 0},
        {"infinite", 0, 1000, 0.0f, 100.0f, kInf, 65535},
        {"minus infinite", 0, 1000, 0.0f, 100.0f, -kInf, 0},
    };
    for (const auto& c : cases) {
        TChSettings* ch = m_->Channel2();
        ch->SetDigitalFrom(c.digitalFrom);
        ch->SetDigitalTo(c.digitalTo);
        ch->SetValueTo(c.valueTo);
        ch->SetValueFrom(c.valueFrom);
        ASSERT_TRUE(m_->AddValue(0.0f, c.v)) << c.name;
        EXPECT_EQ(m_->Records()[m_->Records().Last()].Ch[1], c.digit) << c.name;
        if (std::isfinite(c.v)) {
            // The recording path gives the same digit.
            ch->SetValue(-12345.0f);
            ch->SetValue(c.v);
            EXPECT_EQ(std::clamp(ch->AbsDigit(), 0, 65535), c.digit) << c.name;
        }
    }
    // Values not given are 0; a value reads back as added, on the digit grid.
    m_->Channel2()->SetDigitalFrom(0);
    m_->Channel2()->SetDigitalTo(1000);
    m_->Channel2()->SetValueFrom(-50.0f);
    ASSERT_TRUE(m_->AddValue(12.34f, 7.0f));
    TDateTime time = 0;
    std::array<float, 4> values{};
    ASSERT_TRUE(m_->ReadValue(m_->RecordCount() - 1, time, values));
    EXPECT_FLOAT_EQ(values[0], 12.3f);
    EXPECT_NEAR(values[1], 7.0f, 1e-5f);
    EXPECT_FLOAT_EQ(values[2], 0.0f);
    EXPECT_EQ(time, test::FakeClock().Now());
    values = {9, 9, 9, 9};
    EXPECT_FALSE(m_->ReadValue(-1, time, values));
    EXPECT_FALSE(m_->ReadValue(m_->RecordCount(), time, values));
    EXPECT_EQ(values[0], 9.0f);
}

TEST_F(MiniTrend, TheStoreDropsItsOldestRecords) {
    m_->SetStartRecording(false);
    m_->SetMaxRecords(10);
    for (int i = 0; i < 15; ++i)
        ASSERT_TRUE(m_->AddValue(float(i)));
    ASSERT_EQ(m_->RecordCount(), 10);
    EXPECT_EQ(m_->Records()[0].Ch[0], 50);  // the sixth added
    EXPECT_EQ(m_->Records()[9].Ch[0], 140);
    m_->SetMaxRecords(200);
    EXPECT_EQ(m_->RecordCount(), 10);
    // Lowering the bound drops at once and keeps the newest.
    m_->SetMaxRecords(11);
    m_->AddValue(20.0f);
    m_->SetMaxRecords(10);
    ASSERT_EQ(m_->RecordCount(), 10);
    EXPECT_EQ(m_->Records()[0].Ch[0], 60);
    EXPECT_EQ(m_->Records()[9].Ch[0], 200);
    m_->ClearRecords();
    EXPECT_EQ(m_->RecordCount(), 0);
}

TEST_F(MiniTrend, RecordsStandInTheirColumnsAtTheirDigits) {
    m_->SetStartRecording(false);
    const QImage before = m_->Surface().Image().copy();
    const struct {
        float value;
        int32_t row;  // 19 - Round(digit * 19 / 1000), pinned to 0..19
    } points[] = {{50.0f, 9}, {0.0f, 19}, {100.0f, 0}, {150.0f, 0}, {-10.0f, 19}, {10.0f, 17}};
    // A lone first record is a point.
    m_->AddValue(50.0f);
    EXPECT_EQ(at(0, 9), clLime);
    m_->ClearRecords();
    m_->PaintToSurface();
    // A flat run of three records per value, so that each middle column holds one point.
    int32_t column = 0;
    for (const auto& p : points)
        for (int i = 0; i < 3; ++i)
            m_->AddValue(p.value);
    for (const auto& p : points) {
        const int32_t middle = column + 1;
        EXPECT_EQ(m_->DigitY(1, m_->Records()[middle].Ch[0]), p.row) << p.value;
        for (int32_t row = 0; row < 20; ++row)
            EXPECT_EQ(at(middle, row), row == p.row ? clLime : clBlack)
                << p.value << " row " << row;
        column += 3;
    }
    // The newest point is drawn; the columns right of it are background.
    EXPECT_EQ(at(17, 17), clLime);
    for (int32_t row = 0; row < 20; ++row)
        EXPECT_EQ(at(18, row), clBlack) << row;
    // The bevel frame is untouched by the curves.
    const QImage after = m_->Surface().Image();
    for (int y = 0; y < after.height(); ++y)
        for (int x : {0, after.width() - 1})
            EXPECT_EQ(after.pixel(x, y), before.pixel(x, y)) << x << "," << y;
}

TEST_F(MiniTrend, ATickCopiesOnlyTheColumnsThatChanged) {
    const struct {
        const char* name;
        int32_t penWidth;
        bool lastValue;
        QStringList copies;
    } cases[] = {
        // The previous newest column (2) and the new one (3), at x = 1 + column.
        {"thin pen", 1, false, {"CopyRect(3,1,5,21,2,0,4,20)"}},
        // PenWidth / 2 + 1 more either side.
        {"wide pen", 3, false, {"CopyRect(1,1,7,21,0,0,6,20)"}},
        {"with the value strip", 1, true, {"CopyRect(3,1,5,21,2,0,4,20)", "Draw(%1,1,%2,20)"}},
    };
    for (const auto& c : cases) {
        test::FakeClock().SetTicks(0);
        TKxMiniTrend t(&form_);
        t.SetBounds(0, 0, 102, 22);
        t.Channel1()->SetPenWidth(c.penWidth);
        t.SetShowLastValue(c.lastValue);
        t.Loaded();
        TRecordingCanvas rec(&t.SurfaceImage());
        t.SetCanvas(&rec);
        t.PaintToSurface();
        for (int i = 0; i < 3; ++i) {
            test::FakeClock().SetTicks(1000u * (i + 1));
            RunFlashTick();
        }
        rec.ClearCalls();
        t.Channel1()->SetValue(60.0f);
        test::FakeClock().SetTicks(4000);
        RunFlashTick();
        ASSERT_EQ(t.RecordCount(), 4) << c.name;
        QStringList expected = c.copies;
        if (c.lastValue) {
            const TRect v = t.ValueArea();
            ASSERT_GT(v.Right, v.Left) << c.name;
            expected[1] = expected[1].arg(v.Left).arg(v.Right - v.Left);
        }
        QStringList copies = rec.Log("CopyRect") + rec.Log("Draw");
        EXPECT_EQ(copies, expected) << c.name;
        // Nothing else is drawn on the surface: bevel and background stay.
        EXPECT_EQ(rec.Calls().size(), size_t(expected.size())) << c.name;
        t.SetCanvas(nullptr);
        ClearFlashList();
    }
}

// Feeds the same values to an incrementally drawn mini trend and checks, after every
// record, that its surface equals a full drawing of the same records.
TEST_F(MiniTrend, FlowingGivesThePixelsOfAFullDrawing) {
    const struct {
        const char* name;
        double ratio;
        int32_t width, maxRecords, channels;
        int32_t pens[4];
        int clearAt;  // the record before which both are cleared, -1: never
    } cases[] = {
        {"view full first, thin pens", 1.0, 32, 200, 2, {1, 1, 1, 1}, -1},
        // A clear keeps counting records, so the first one after it is drawn anew.
        {"store full first, cleared", 1.0, 62, 25, 1, {1, 1, 1, 1}, 40},
        {"wide pens over each other", 1.0, 32, 200, 4, {3, 5, 1, 2}, -1},
        {"double ratio", 2.0, 32, 200, 2, {1, 3, 1, 1}, -1},
        {"fractional ratio redraws", 1.5, 32, 200, 2, {2, 1, 1, 1}, -1},
    };
    for (const auto& c : cases) {
        auto setUp = [&](TKxMiniTrend& t) {
            t.SetBounds(0, 0, c.width, 24);
            t.SetStartRecording(false);
            t.SetMaxRecords(c.maxRecords);
            t.SetChannelCount(c.channels);
            for (int ch = 1; ch <= 4; ++ch)
                t.Channel(ch)->SetPenWidth(c.pens[ch - 1]);
            t.Loaded();
            t.PaintToSurface();
        };
        test::AtRatio<TKxMiniTrend> live(c.ratio, &form_), full(c.ratio, &form_);
        setUp(live);
        setUp(full);
        int mismatches = 0;
        for (int i = 0; i < 90 && mismatches == 0; ++i) {
            // Steep and flat stretches, each channel its own.
            auto v = [i](int ch) {
                return float(50.0 +
                             45.0 * std::sin(i * (0.3 + 0.4 * ch)) * ((i / 7) % 2 ? 1 : 0.2));
            };
            if (i == c.clearAt) {
                live.ClearRecords();
                live.PaintToSurface();
                full.ClearRecords();
            }
            ASSERT_TRUE(live.AddValue(v(1), v(2), v(3), v(4)));
            full.AddValue(v(1), v(2), v(3), v(4));
            full.Invalidate();
            full.PaintToSurface();
            if (live.Surface().Image() != full.Surface().Image()) {
                ++mismatches;
                ADD_FAILURE() << c.name << ": differs after record " << i;
            }
        }
        EXPECT_EQ(live.FirstDisplayedRecord(), std::max(0, live.RecordCount() - (c.width - 2)))
            << c.name;
    }
}

TEST_F(MiniTrend, ASettingChangeRepaints) {
    // One pixel per change that the next paint must reach (channel 1 stands at row 4,
    // channel 2 at row 15); a setter that forgets to repaint leaves it as it was.
    TChSettings red;
    red.SetColor(clRed);
    TKxSBevel none;
    none.SetWidth(0);
    const struct {
        const char* name;
        std::function<void(TKxMiniTrend&)> change;
        int32_t column, row;
        TColor after;
    } cases[] = {
        {"background colour", [](TKxMiniTrend& t) { t.SetColor(clNavy); }, 2, 10, clNavy},
        {"more channels show their history", [](TKxMiniTrend& t) { t.SetChannelCount(2); }, 2, 15,
         clYellow},
        {"channel colour", [](TKxMiniTrend& t) { t.Channel1()->SetColor(clRed); }, 2, 4, clRed},
        {"channel assigned", [&](TKxMiniTrend& t) { t.SetChannel1(&red); }, 2, 4, clRed},
        {"channel hidden", [](TKxMiniTrend& t) { t.Channel1()->SetVisible(false); }, 2, 4, clBlack},
        {"channel range", [](TKxMiniTrend& t) { t.Channel1()->SetDigitalTo(2000); }, 2, 11, clLime},
        {"pen width", [](TKxMiniTrend& t) { t.Channel1()->SetPenWidth(3); }, 2, 3, clLime},
        {"fewer records kept", [](TKxMiniTrend& t) { t.SetMaxRecords(10); }, 11, 4, clBlack},
        {"bevel taken away", [](TKxMiniTrend& t) { t.BevelOuter()->SetWidth(0); }, -1, -1, clBlack},
        {"bevel assigned", [&](TKxMiniTrend& t) { t.SetBevelOuter(&none); }, -1, -1, clBlack},
    };
    for (const auto& c : cases) {
        SetUp();
        m_->SetStartRecording(false);
        for (int i = 0; i < 12; ++i)
            m_->AddValue(80.0f, 20.0f);
        const TColor before = at(c.column, c.row);
        ASSERT_NE(before, c.after) << c.name;
        c.change(*m_);
        m_->PaintToSurface();
        EXPECT_EQ(m_->Surface().Pixel(1 + c.column, 1 + c.row), c.after) << c.name;
    }
}

TEST_F(MiniTrend, DigitYFillsTheHeightWithTheDigitRange) {
    const struct {
        const char* name;
        int ch;
        int32_t height;  // of the control: the curve area is 2 less, the baseline 3 less
        int32_t digitalFrom, digitalTo, digit;
        int32_t y;
    } cases[] = {
        {"middle", 1, 22, 0, 1000, 500, 9},
        {"top", 1, 22, 0, 1000, 1000, 0},
        {"beyond the top stays on the edge", 1, 22, 0, 1000, 2000, 0},
        {"digit offset does not move stored digits", 1, 22, 100, 1100, 1000, 0},
        {"two rows, top", 1, 4, 0, 1000, 1000, 0},
        {"two rows, below half", 1, 4, 0, 1000, 400, 1},
        {"two rows, above half", 1, 4, 0, 1000, 600, 0},
        {"one row", 1, 3, 0, 1000, 1000, 0},
        {"one digit range, top", 1, 22, 0, 1, 1, 0},
        {"one digit range, bottom", 1, 22, 0, 1, 0, 19},
        {"empty digit range", 1, 22, 10, 10, 500, 19},
        {"reversed digit range", 1, 22, 100, 50, 500, 19},
        {"no channel 0", 0, 22, 0, 1000, 1000, 19},
        {"no channel 5", 5, 22, 0, 1000, 1000, 19},
    };
    for (const auto& c : cases) {
        TKxMiniTrend t(&form_);
        t.SetBounds(0, 0, 52, c.height);
        t.Channel1()->SetDigitalTo(c.digitalTo);
        t.Channel1()->SetDigitalFrom(c.digitalFrom);
        t.PaintToSurface();
        EXPECT_EQ(t.Baseline(), c.height - 3) << c.name;
        EXPECT_EQ(t.DigitY(c.ch, c.digit), c.y) << c.name;
    }
}

TEST_F(MiniTrend, PenWidthsOutside1To32DrawOnePixelWide) {
    const struct {
        int32_t penWidth;
        int32_t rows, reach;
    } cases[] = {{1, 1, 0},  {3, 3, 2},  {32, 20, 17}, {0, 1, 0},
                 {-3, 1, 0}, {33, 1, 0}, {1000, 1, 0}};
    m_->SetStartRecording(false);
    for (int i = 0; i < 12; ++i)
        m_->AddValue(50.0f);
    for (const auto& c : cases) {
        m_->Channel1()->SetPenWidth(c.penWidth);
        m_->PaintToSurface();
        EXPECT_EQ(m_->PenReach(), c.reach) << c.penWidth;
        int32_t rows = 0;
        for (int32_t row = 0; row < 20; ++row)
            rows += at(5, row) == clLime;
        EXPECT_EQ(rows, c.rows) << c.penWidth;
        EXPECT_EQ(at(5, 9), clLime) << c.penWidth;
    }
}

TEST_F(MiniTrend, TheValueStripIsAsWideAsTheWidestRangeEndOfTheDrawnChannels) {
    const struct {
        const char* name;
        int32_t channels;
        float from1, to1;
        const char* format1;
        float to2;
        int fontSize;
        const char* widest;
    } cases[] = {
        {"default range", 1, 0.0f, 100.0f, "", 100.0f, 8, "100"},
        {"wide top", 1, 0.0f, 12345.0f, "", 100.0f, 8, "12345"},
        {"negative bottom", 1, -250.0f, 100.0f, "", 100.0f, 8, "-250"},
        {"channel format", 1, 0.0f, 100.0f, "0.00", 100.0f, 8, "100.00"},
        {"second channel wider", 2, 0.0f, 100.0f, "", 99999.0f, 8, "99999.0"},
        {"a channel not drawn does not count", 1, 0.0f, 100.0f, "", 99999.0f, 8, "100"},
        {"font assigned", 1, 0.0f, 100.0f, "", 100.0f, 14, "100"},
    };
    for (const auto& c : cases) {
        TKxMiniTrend t(&form_);
        t.SetBounds(0, 0, 200, 40);
        t.SetShowLastValue(true);
        t.SetChannelCount(c.channels);
        t.Channel1()->SetValueTo(c.to1);
        t.Channel1()->SetValueFrom(c.from1);
        t.Channel1()->SetValueFormat(c.format1);
        t.Channel2()->SetValueTo(c.to2);
        TFont font;
        font.SetName(QStringLiteral("Arial"));
        font.SetSize(c.fontSize);
        t.SetFont(&font);
        t.PaintToSurface();
        t.Canvas().SetFont(font);
        const TRect v = t.ValueArea();
        EXPECT_EQ(v, (TRect{199 - t.Canvas().TextWidth(c.widest) - 4, 1, 199, 39})) << c.name;
        EXPECT_EQ(t.CurveArea(), (TRect{1, 1, v.Left, 39})) << c.name;
    }
}

TEST_F(MiniTrend, TheValueStripNeedsHalfTheWidthAndOneLine) {
    m_->Canvas().SetFont(*m_->Font());
    const int32_t stripW = m_->Canvas().TextWidth(QStringLiteral("100.0")) + 4;
    const int32_t lineH = m_->Canvas().TextHeight(QStringLiteral("0"));
    const struct {
        const char* name;
        int32_t innerW, innerH;
        bool shown;
    } cases[] = {
        {"half the width and one line", 2 * stripW, lineH, true},
        {"less than half the width left", 2 * stripW - 2, lineH, false},
        {"a row short of a line", 2 * stripW, lineH - 1, false},
    };
    for (const auto& c : cases) {
        TKxMiniTrend t(&form_);
        t.SetBounds(0, 0, c.innerW + 2, c.innerH + 2);
        t.SetShowLastValue(true);
        t.PaintToSurface();
        const TRect strip{1 + c.innerW - stripW, 1, 1 + c.innerW, 1 + c.innerH};
        EXPECT_EQ(t.ValueArea(), c.shown ? strip : TRect{}) << c.name;
        EXPECT_EQ(t.CurveArea().Right, c.shown ? strip.Left : 1 + c.innerW) << c.name;
    }
}

// The strip as the newest record should show it: the background, then one line per
// visible drawn channel, in its colour, right-aligned 2 pixels inside the strip's edge.
struct StripLine {
    QString text;
    TColor color;
};
int stripMismatches(TKxMiniTrend& t, const std::vector<StripLine>& lines) {
    const TRect v = t.ValueArea();
    TBitmap expected(v.Right - v.Left, v.Bottom - v.Top);
    TCanvas& c = expected.Canvas();
    c.Brush().SetColor(t.Color());
    c.FillRect(TRect{0, 0, expected.Width(), expected.Height()});
    c.SetFont(*t.Font());
    c.Brush().SetStyle(bsClear);
    const int32_t lineH = c.TextHeight(QStringLiteral("0"));
    for (size_t i = 0; i < lines.size(); ++i) {
        c.Font().SetColor(lines[i].color);
        KxTextOut(c, expected.Width() - 2, int32_t(i) * lineH, lines[i].text, toTopRight);
    }
    int mismatches = 0;
    for (int32_t y = 0; y < expected.Height(); ++y)
        for (int32_t x = 0; x < expected.Width(); ++x)
            mismatches += t.Surface().Pixel(v.Left + x, v.Top + y) != expected.Pixel(x, y);
    return mismatches;
}

TEST_F(MiniTrend, TheValueStripShowsTheNewestRecordOneLinePerVisibleChannel) {
    m_->Canvas().SetFont(*m_->Font());
    const int32_t lineH = m_->Canvas().TextHeight(QStringLiteral("0"));
    const struct {
        const char* name;
        int32_t channels;
        bool visible1;
        const char* format1;
        std::vector<StripLine> lines;
    } cases[] = {
        {"one channel", 1, true, "", {{"12", clLime}}},
        {"two lines fill the height", 2, true, "", {{"12", clLime}, {"88.0", clYellow}}},
        {"lines below the height left out", 4, true, "", {{"12", clLime}, {"88.0", clYellow}}},
        {"hidden channel skipped", 3, false, "", {{"88.0", clYellow}, {"45.5", clAqua}}},
        {"channel format", 1, true, "0.00", {{"12.00", clLime}}},
    };
    for (const auto& c : cases) {
        TKxMiniTrend t(&form_);
        t.SetBounds(0, 0, 200, 2 * lineH + 2);
        t.SetStartRecording(false);
        t.SetChannelCount(c.channels);
        t.Channel1()->SetVisible(c.visible1);
        t.Channel1()->SetValueFormat(c.format1);
        t.PaintToSurface();
        t.SetShowLastValue(true);
        t.PaintToSurface();
        ASSERT_GT(t.ValueArea().Right, t.ValueArea().Left) << c.name;
        EXPECT_EQ(stripMismatches(t, {}), 0) << c.name << ": no record, no text";
        // A tick updates the strip without a full paint.
        t.AddValue(3.0f, 4.0f, 5.0f, 6.0f);
        t.AddValue(12.0f, 88.0f, 45.5f, 7.0f);
        EXPECT_EQ(stripMismatches(t, c.lines), 0) << c.name;
    }
}

TEST_F(MiniTrend, DegenerateSizesRecordAndDrawOnlyTheBackground) {
    const struct {
        const char* name;
        int32_t width, height;
        TRect area;
    } cases[] = {
        {"1 x 1", 1, 1, {1, 1, 1, 1}},
        {"no height", 40, 0, {1, 1, 39, 1}},
        {"bevel only", 2, 2, {1, 1, 1, 1}},
        {"one row", 40, 3, {1, 1, 39, 2}},
        {"very wide", 20000, 5, {1, 1, 19999, 4}},
    };
    for (const auto& c : cases) {
        TKxMiniTrend t(&form_);
        t.SetBounds(0, 0, c.width, c.height);
        t.SetStartRecording(false);
        t.SetShowLastValue(true);
        t.Loaded();
        t.PaintToSurface();
        for (int i = 0; i < 12; ++i)
            ASSERT_TRUE(t.AddValue(float(i * 9), kNaN)) << c.name;
        t.PaintToSurface();
        EXPECT_EQ(t.RecordCount(), 12) << c.name;
        const TRect a = t.CurveArea();
        EXPECT_EQ(std::max(a.Right - a.Left, 0), c.area.Right - c.area.Left) << c.name;
        EXPECT_EQ(std::max(a.Bottom - a.Top, 0), c.area.Bottom - c.area.Top) << c.name;
        if (a.Bottom - a.Top == 1) {
            EXPECT_EQ(t.Surface().Pixel(a.Left + 11, a.Top), clLime);
        }
    }
}

// Bevel spacings at the int32 limits put the inner edges there too: the areas saturate
// instead of overflowing, and recording goes on.
TEST_F(MiniTrend, AbsurdBevelSpacingsDrawWithoutOverflow) {
    for (const int32_t spacing : {INT32_MIN, INT32_MIN / 2, INT32_MAX}) {
        TKxMiniTrend t(&form_);
        t.SetBounds(0, 0, 60, 20);
        t.SetStartRecording(false);
        t.SetShowLastValue(true);
        t.BevelOuter()->SetSpacing(spacing);
        t.Loaded();
        t.PaintToSurface();
        for (int i = 0; i < 3; ++i)
            ASSERT_TRUE(t.AddValue(float(i), kNaN)) << spacing;
        t.PaintToSurface();
        EXPECT_EQ(t.RecordCount(), 3) << spacing;
        EXPECT_LE(t.CurveArea().Left, t.CurveArea().Right) << spacing;
    }
}

}  // namespace
}  // namespace kx
