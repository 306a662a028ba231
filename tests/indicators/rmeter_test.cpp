// Round meters: layout, sectors, needle, marks and blinking.
#include <gtest/gtest.h>

#include <QHBoxLayout>
#include <QRegularExpression>
#include <functional>
#include <memory>

#include "blink/flashtimer.h"
#include "host/recordingcanvas.h"
#include "indicators/rmeter.h"

namespace kx {
namespace {

std::unique_ptr<TKxRMeter> makeMeter(TMeterType type) {
    switch (type) {
        case Kx120Meter: return std::make_unique<TKx120Meter>();
        case Kx180Meter: return std::make_unique<TKx180Meter>();
        default: return std::make_unique<TKx270Meter>();
    }
}

class RMeterTest : public ::testing::Test {
protected:
    void TearDown() override {
        ClearFlashList();
        SetFlashTickCounter(0);
    }
};

struct SizeCase {
    TMeterType type;
    TRMeterOptions options;
    int32_t width, height;
};

class RMeterAutoSize : public ::testing::TestWithParam<SizeCase> {};

// Labels "0".."100" measure 21 x 14 with the fixed metrics; names are 11 characters
// (77 pixels) and 14 high; both bevels are 5 + 2 + 1 = 8 thick.
TEST_P(RMeterAutoSize, FollowsTheLayoutRules) {
    const SizeCase& c = GetParam();
    auto m = makeMeter(c.type);
    TRecordingCanvas rec;
    rec.CharWidth = 7;
    rec.LineHeight = 14;
    m->SetCanvas(&rec);
    m->SetOptions(c.options);
    m->CalcSize();
    EXPECT_EQ(m->width(), c.width);
    EXPECT_EQ(m->height(), c.height);
    m->SetCanvas(nullptr);
}

constexpr TRMeterOptions kNames = RMeterOption(opName1) | RMeterOption(opName2);
constexpr TRMeterOptions kBevels = RMeterOption(opBevelInner) | RMeterOption(opBevelOuter);

INSTANTIATE_TEST_SUITE_P(
    RMeter, RMeterAutoSize,
    ::testing::Values(
        // 10 label heights wide; (140 - 21) / aspect + 14 high.
        SizeCase{Kx270Meter, 0, 140, 115},       // 100.85 + 14
        SizeCase{Kx180Meter, 0, 140, 74},        // 73.5 rounds to even
        SizeCase{Kx120Meter, 0, 140, 62},        // 61.6
        SizeCase{Kx270Meter, kNames, 140, 143},  // names add their heights only
        SizeCase{Kx270Meter, RMeterOption(opBevelOuter), 156, 131},
        SizeCase{Kx270Meter, kBevels, 172, 147},
        SizeCase{Kx270Meter, kAllRMeterOptions, 172, 175}));

TEST_F(RMeterTest, NamesWiderThanTheScaleWidenTheMeter) {
    TKx270Meter m;
    TRecordingCanvas rec;
    rec.CharWidth = 7;
    rec.LineHeight = 14;
    m.SetCanvas(&rec);
    m.SignalSettings()->SetName1(QString(40, 'x'));  // 280 pixels
    m.SetOptions(RMeterOption(opName1) | RMeterOption(opBevelOuter));
    m.CalcSize();
    EXPECT_EQ(m.width(), 16 + 280);
    m.SetCanvas(nullptr);
}

TEST_F(RMeterTest, Widen120GrowsLeftThenRightByTheWidenedWidth) {
    EXPECT_EQ(TKxRMeter::Widen120(TRect{10, 0, 410, 100}), (TRect{-10, 0, 431, 100}));
    EXPECT_EQ(TKxRMeter::Widen120(TRect{0, 0, 19, 10}), (TRect{0, 0, 19, 10}));
}

struct SectorCase {
    int32_t from, to;
    bool drawn;
    int32_t start, extent;
};

class RMeterSectorArc : public ::testing::TestWithParam<SectorCase> {};

// On the 270-degree scale (start 225, 0.27 degrees per mille as a single).
TEST_P(RMeterSectorArc, SkipsAndClampsSectors) {
    const SectorCase& c = GetParam();
    int32_t start = -1, extent = -1;
    EXPECT_EQ(TKxRMeter::SectorArc(c.from, c.to, 225, 270, start, extent), c.drawn);
    if (c.drawn) {
        EXPECT_EQ(start, c.start);
        EXPECT_EQ(extent, c.extent);
    }
}

INSTANTIATE_TEST_SUITE_P(RMeter, RMeterSectorArc,
                         ::testing::Values(SectorCase{0, 333, true, 225, 90},
                                           SectorCase{334, 666, true, 315, 90},
                                           SectorCase{667, 1000, true, 405, 90},
                                           SectorCase{-50, 100, true, 225, 27},  // from the start
                                           SectorCase{900, 1200, true, 468, 27},  // to the end
                                           SectorCase{0, 5, true, 225, 1},
                                           SectorCase{0, 4, false, 0, 0},
                                           SectorCase{-10, 0, false, 0, 0},
                                           SectorCase{1000, 1100, false, 0, 0},
                                           SectorCase{500, 498, false, 0, 0}));

// A loaded 270-degree meter painted through a recording canvas (no pixels).
struct RecordedPaint {
    TKx270Meter meter;
    TRecordingCanvas rec;
    explicit RecordedPaint(const std::function<void(TKx270Meter&)>& setup = {}) {
        rec.CharWidth = 7;
        rec.LineHeight = 14;
        meter.SetCanvas(&rec);
        if (setup) setup(meter);
        meter.Loaded();
        meter.PaintToSurface();
    }
    ~RecordedPaint() { meter.SetCanvas(nullptr); }
};

TEST_F(RMeterTest, Name2IsTheLowestLine) {
    RecordedPaint p;
    int y1 = -1, y2 = -1;
    for (const TCanvasCall& c : p.rec.CallsOf("TextOut")) {
        if (c.Text == "SignalName1") y1 = c.Args[1];
        if (c.Text == "SignalName2") y2 = c.Args[1];
    }
    ASSERT_GE(y1, 0);
    EXPECT_EQ(y2, y1 + 14);
}

TEST_F(RMeterTest, SectorsAreClippedToTheRingAndTheArcLiesOnTop) {
    RecordedPaint p([](TKx270Meter& m) {
        m.SectorSettings()->SetSector2From(334);
        m.SectorSettings()->SetSector2To(336);  // too short: skipped
    });
    const QStringList log = p.rec.Log();
    const int clip = log.indexOf(QRegularExpression("SetClipRegion\\(.*"));
    const int unclip = log.indexOf(QRegularExpression("ClearClipRegion\\(.*"));
    ASSERT_GE(clip, 0);
    ASSERT_GT(unclip, clip);
    std::vector<TColor> pies;
    for (int i = clip; i < unclip; ++i)
        if (p.rec.Calls()[size_t(i)].Op == "Pie") pies.push_back(p.rec.Calls()[size_t(i)].BrushColor);
    EXPECT_EQ(pies, (std::vector<TColor>{clYellow, clRed}));
    const int arc = log.indexOf(QRegularExpression("Arc\\(.*"), unclip);
    EXPECT_GT(arc, unclip);
}

TEST_F(RMeterTest, NegativeSectorOffsetRedrawsTheScaleOverTheSectors) {
    auto labelsAfterSectors = [](int offset) {
        RecordedPaint p([offset](TKx270Meter& m) { m.SectorSettings()->SetOffset(offset); });
        const QStringList log = p.rec.Log();
        const int unclip = log.indexOf(QRegularExpression("ClearClipRegion\\(.*"));
        if (unclip < 0) return -1;
        int n = 0;
        for (int i = unclip; i < log.size(); ++i)
            if (p.rec.Calls()[size_t(i)].Op == "TextOut" && p.rec.Calls()[size_t(i)].Text == "50")
                ++n;
        return n;
    };
    EXPECT_EQ(labelsAfterSectors(0), 0);
    EXPECT_EQ(labelsAfterSectors(-8), 1);
}

// A loaded, painted 270-degree meter drawing real pixels.
class PaintedMeter : public RMeterTest {
protected:
    void SetUp() override {
        meter.Loaded();
        meter.PaintToSurface();
    }
    // Surface pixel at distance d from the pivot in the direction of the given scale
    // angle (degrees clockwise from 12 o'clock).
    TColor pixelAlong(double angle, double d) {
        const TPoint pivot = meter.ArrowField()[1];
        const double rad = angle * 3.14159265358979 / 180.0;
        const int x = meter.ScaleRect().Left + pivot.X + int(std::lround(d * std::sin(rad)));
        const int y = meter.ScaleRect().Top + pivot.Y - int(std::lround(d * std::cos(rad)));
        return meter.Surface().Pixel(x, y);
    }
    TColor markerPixel(int first) {
        const auto& m = meter.MarkerPolygons();
        const int x = (m[size_t(first)].X + m[size_t(first) + 1].X + m[size_t(first) + 2].X) / 3;
        const int y = (m[size_t(first)].Y + m[size_t(first) + 1].Y + m[size_t(first) + 2].Y) / 3;
        return meter.Surface().Pixel(meter.ScaleRect().Left + x, meter.ScaleRect().Top + y);
    }
    double radius() const { return meter.ScaleRect().Width() / 2.0; }
    TKx270Meter meter;
};

TEST_F(PaintedMeter, NeedleFollowsTheReading) {
    meter.SetLimitUpper(200.0f);  // no alarm, so no blinking colours
    meter.SetValue(50.0f);  // the middle of 225..495 degrees is straight up
    EXPECT_EQ(pixelAlong(0, radius() * 0.5), clLime);
    EXPECT_NE(pixelAlong(90, radius() * 0.5), clLime);
    meter.SetValue(100.0f);  // the end of the arc
    EXPECT_EQ(pixelAlong(135, radius() * 0.5), clLime);
    EXPECT_NE(pixelAlong(0, radius() * 0.5), clLime);
    EXPECT_EQ(meter.LastDrawnPosition(), 1000);
}

TEST_F(PaintedMeter, OverflowTurnsTheNeedlePastTheArcAndBlinks) {
    meter.SetValue(150.0f);
    EXPECT_EQ(meter.PPT(), 1000);
    EXPECT_EQ(meter.NeedlePosition(), 1030);
    EXPECT_TRUE(meter.Blinking());
    // 1030 per mille of 270 degrees beyond the start at 225.
    EXPECT_EQ(pixelAlong(225 + 278.1, radius() * 0.5), clRed);
    EXPECT_NE(pixelAlong(135, radius() * 0.5), clRed);
}

TEST_F(PaintedMeter, BlinkingStartsAndStopsWithOverflowAndLimits) {
    auto subscribed = [this] {
        for (const auto& e : FlashList())
            if (e && e->Control == &meter) return e->IntervalTime;
        return int64_t(-1);
    };
    EXPECT_FALSE(meter.Blinking());
    meter.SetValue(-20.0f);
    EXPECT_TRUE(meter.Blinking());
    EXPECT_EQ(subscribed(), 4);
    // Bit 4 of the tick counter: 16 sets it (red phase), 32 clears it (yellow phase).
    SetFlashTickCounter(15);
    RunFlashTick();
    EXPECT_EQ(meter.BlinkColor(), clRed);
    SetFlashTickCounter(31);
    RunFlashTick();
    EXPECT_EQ(meter.BlinkColor(), clYellow);
    EXPECT_EQ(pixelAlong(225 - 8.1, radius() * 0.5), clYellow);
    meter.SetValue(50.0f);
    EXPECT_FALSE(meter.Blinking());
    EXPECT_EQ(subscribed(), -1);
    meter.SetValue(95.0f);  // above the upper limit
    EXPECT_TRUE(meter.Blinking());
    meter.SetValue(90.0f);  // equal to the limit is no alarm
    EXPECT_FALSE(meter.Blinking());
}

TEST_F(PaintedMeter, OptionsDecideWhatBlinks) {
    meter.SetOptions(kAllRMeterOptions & ~RMeterOption(opOverflow) & ~RMeterOption(opLimit));
    meter.PaintToSurface();
    meter.SetValue(150.0f);
    EXPECT_FALSE(meter.Blinking());
    EXPECT_EQ(pixelAlong(225 + 278.1, radius() * 0.5), clLime);  // past the arc all the same
    meter.SetOptions(kAllRMeterOptions & ~RMeterOption(opOverflow));
    meter.PaintToSurface();
    meter.SetValue(95.0f);
    EXPECT_TRUE(meter.Blinking());  // the limit still blinks
}

TEST_F(PaintedMeter, MarksTakeTheirSectorColourOrTheirOwn) {
    meter.SetValue(20.0f);
    meter.SetValue(80.0f);
    EXPECT_EQ(markerPixel(0), clYellow);  // minimum at 200 per mille: sector 1
    EXPECT_EQ(markerPixel(3), clRed);     // maximum at 800: sector 3
    meter.MinMax()->SetUseSectorCol(false);
    meter.SetValue(70.0f);
    EXPECT_EQ(markerPixel(0), clAqua);
    EXPECT_EQ(markerPixel(3), clAqua);
    meter.MinMax()->SetMaxVisible(false);
    meter.SetValue(60.0f);
    EXPECT_NE(markerPixel(3), clAqua);
}

TEST_F(PaintedMeter, AReadingRestoresWhatTheOldNeedleCovered) {
    meter.SetValue(50.0f);
    meter.SetValue(51.0f);
    meter.SetValue(10.0f);
    EXPECT_NE(pixelAlong(0, radius() * 0.5), clLime);  // no trace left straight up
}

TEST_F(RMeterTest, SectorRoundingToNoDegreesIsSkipped) {
    int32_t start = 0, extent = 0;
    // 120 degrees: 14 per mille is 1.68 degrees, 4 per mille would be 0.48.
    EXPECT_TRUE(TKxRMeter::SectorArc(-10, 14, 300, 120, start, extent));
    EXPECT_FALSE(TKxRMeter::SectorArc(-10, 4, 300, 120, start, extent));
}

TEST_F(PaintedMeter, ClearingTheBlinkingOptionStopsTheBlinking) {
    meter.SetLimitUpper(200.0f);  // overflow only, no limit alarm
    meter.SetValue(150.0f);
    ASSERT_TRUE(meter.Blinking());
    meter.SetOptions(kAllRMeterOptions & ~RMeterOption(opOverflow));
    EXPECT_FALSE(meter.Blinking());
    EXPECT_TRUE(FlashList().empty());
}

TEST_F(PaintedMeter, ReadingsWhileHiddenShowWhenShownAgain) {
    meter.SetLimitUpper(200.0f);
    meter.SetValue(50.0f);
    meter.hide();
    meter.SetValue(100.0f);
    meter.show();
    meter.PaintToSurface();
    EXPECT_EQ(pixelAlong(135, radius() * 0.5), clLime);
    EXPECT_NE(pixelAlong(0, radius() * 0.5), clLime);
    meter.hide();
}

TEST_F(PaintedMeter, PaintDuringAnUpdatePhaseKeepsThePicture) {
    meter.BeginUpdate();
    meter.Invalidate();
    meter.PaintToSurface();
    EXPECT_EQ(qAlpha(meter.Surface().Image().pixel(5, 5)), 255);
    meter.EndUpdate();
}

TEST_F(PaintedMeter, OverflowHandlerMayReenterWithANewReading) {
    QObject::connect(&meter, &TKxAnalogGControl::OnOverflow, [this](QObject*, int ppt) {
        if (ppt < 0) meter.SetValue(50.0f);
    });
    meter.SetValue(-20.0f);
    EXPECT_EQ(meter.Value(), 50.0f);
    EXPECT_EQ(meter.PPT(), 500);
}

TEST_F(RMeterTest, HandlerMayDeleteTheMeter) {
    auto* m = new TKx270Meter;
    m->Loaded();
    m->PaintToSurface();
    QObject::connect(m, &TKxAnalogGControl::OnValueChange, [m](QObject*) { delete m; });
    m->SetValue(70.0f);  // must not touch the deleted meter (the sanitizer run checks)
    SUCCEED();
}

TEST_F(RMeterTest, AutoSizedMeterSitsInALayoutAtItsOwnSize) {
    QWidget panel;
    auto* layout = new QHBoxLayout(&panel);
    auto* m = new TKx180Meter;
    layout->addWidget(m);
    panel.resize(600, 400);
    m->Loaded();
    m->PaintToSurface();  // works out the auto size
    panel.grab();         // lets the layout place it
    EXPECT_EQ(m->size(), m->sizeHint());
    EXPECT_LT(m->width(), 600);
}

TEST_F(RMeterTest, TooSmallMeterDrawsNoNeedle) {
    TKx270Meter m;
    m.SetKxAutoSize(false);
    m.Loaded();
    m.SetBounds(0, 0, 30, 30);
    m.PaintToSurface();
    EXPECT_TRUE(m.TooSmall());
    m.SetValue(70.0f);  // nothing to draw, nothing crashes
    EXPECT_EQ(m.LastDrawnPosition(), -1);
}

}  // namespace
}  // namespace kx
