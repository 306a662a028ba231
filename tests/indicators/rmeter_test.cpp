// Round meters: layout, sectors, needle, marks and blinking.
#include <gtest/gtest.h>

#include <QHBoxLayout>
#include <QPainter>
#include <QRegularExpression>
#include <algorithm>
#include <functional>
#include <memory>

#include "kx/blink/flashtimer.h"
#include "kx/host/recordingcanvas.h"
#include "kx/indicators/rmeter.h"

namespace kx {
namespace {

std::unique_ptr<TKxRMeter> makeMeter(TMeterType type) {
    switch (type) {
        case Kx120Meter:
            return std::make_unique<TKx120Meter>();
        case Kx180Meter:
            return std::make_unique<TKx180Meter>();
        default:
            return std::make_unique<TKx270Meter>();
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
        // 10 label heights wide; (140 - 21) / aspect + 14 high. Without bevels there is
        // no room to spare: the 270-degree meter grows by the last pixel row of its bottom
        // labels, the 180-degree one by the pixel its right label would lose, on each side.
        SizeCase{Kx270Meter, 0, 140, 116},       // 100.85 + 14, and 1
        SizeCase{Kx180Meter, 0, 142, 74},        // 73.5 rounds to even
        SizeCase{Kx120Meter, 0, 140, 62},        // 61.6
        SizeCase{Kx270Meter, kNames, 140, 144},  // names add their heights only
        SizeCase{Kx270Meter, RMeterOption(opBevelOuter), 156, 131},
        SizeCase{Kx270Meter, kBevels, 172, 147}, SizeCase{Kx270Meter, kAllRMeterOptions, 172, 175},
        SizeCase{Kx180Meter, kAllRMeterOptions, 172, 134},
        SizeCase{Kx120Meter, kAllRMeterOptions, 172, 122}));

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
    // Saturated at the int32 range.
    EXPECT_EQ(TKxRMeter::Widen120(TRect{INT32_MIN + 5, 0, INT32_MAX - 5, 10}),
              (TRect{INT32_MIN, 0, INT32_MAX, 10}));
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

INSTANTIATE_TEST_SUITE_P(
    RMeter, RMeterSectorArc,
    ::testing::Values(SectorCase{0, 333, true, 225, 90}, SectorCase{334, 666, true, 315, 90},
                      SectorCase{667, 1000, true, 405, 90},
                      SectorCase{-50, 100, true, 225, 27},   // from the start
                      SectorCase{900, 1200, true, 468, 27},  // to the end
                      SectorCase{0, 5, true, 225, 1}, SectorCase{0, 4, false, 0, 0},
                      SectorCase{-10, 0, false, 0, 0}, SectorCase{1000, 1100, false, 0, 0},
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
    for (int i = clip; i < unclip; ++i) {
        const TCanvasCall& c = p.rec.Calls()[size_t(i)];
        if (c.Op != "Pie") continue;
        pies.push_back(c.BrushColor);
        EXPECT_EQ(c.PenColor, c.BrushColor);  // no outline of another colour
    }
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
    meter.SetValue(50.0f);        // the middle of 225..495 degrees is straight up
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

// Any meter painted through a recording canvas with the fixed metrics (7 x 14 per
// character); no pixels.
struct MeterPaint {
    std::unique_ptr<TKxRMeter> meter;
    TRecordingCanvas rec;
    MeterPaint(TMeterType type, const std::function<void(TKxRMeter&)>& setup)
        : meter(makeMeter(type)) {
        rec.CharWidth = 7;
        rec.LineHeight = 14;
        meter->SetCanvas(&rec);
        if (setup) setup(*meter);
        meter->Loaded();
        meter->PaintToSurface();
    }
    ~MeterPaint() { meter->SetCanvas(nullptr); }
    static TRect box(const TCanvasCall& c) {
        return TRect{c.Args[0], c.Args[1], c.Args[0] + 7 * int32_t(c.Text.size()), c.Args[1] + 14};
    }
    // A name, or a name cut short with "…" to fit the meter.
    bool isName(const TCanvasCall& c) const {
        for (const QString& name :
             {meter->SignalSettings()->Name1(), meter->SignalSettings()->Name2()}) {
            if (c.Text == name) return true;
            if (c.Text.endsWith(u'…') && name.startsWith(c.Text.chopped(1))) return true;
        }
        return false;
    }
    std::vector<TRect> names() const {
        std::vector<TRect> out;
        for (const TCanvasCall& c : rec.CallsOf("TextOut"))
            if (isName(c)) out.push_back(box(c));
        return out;
    }
    bool isUnit(const TCanvasCall& c) const {
        return c.Text == meter->SignalSettings()->ValueUnit();
    }
    // The scale's labels: every text but the names and the unit.
    std::vector<TRect> labels() const {
        std::vector<TRect> out;
        for (const TCanvasCall& c : rec.CallsOf("TextOut"))
            if (!isName(c) && !isUnit(c)) out.push_back(box(c));
        return out;
    }
    std::vector<TCanvasCall> unitCalls() const {
        std::vector<TCanvasCall> out;
        for (const TCanvasCall& c : rec.CallsOf("TextOut"))
            if (isUnit(c)) out.push_back(c);
        return out;
    }
};

bool inside(const TRect& r, const TRect& area) {
    return r.Left >= area.Left && r.Top >= area.Top && r.Right <= area.Right &&
           r.Bottom <= area.Bottom;
}
bool overlap(const TRect& a, const TRect& b) {
    return a.Left < b.Right && b.Left < a.Right && a.Top < b.Bottom && b.Top < a.Bottom;
}
std::string str(const TRect& r) {
    return "(" + std::to_string(r.Left) + "," + std::to_string(r.Top) + "," +
           std::to_string(r.Right) + "," + std::to_string(r.Bottom) + ")";
}

struct ExtremeCase {
    const char* name;
    bool autoSized;
    std::function<void(TKxRMeter&)> setup;
};

void fixedSize(TKxRMeter& m, int w, int h) {
    m.SetKxAutoSize(false);
    m.SetBounds(0, 0, w, h);
}

const ExtremeCase kExtremes[] = {
    {"defaults", true, {}},
    {"long Name1", true, [](TKxRMeter& m) { m.SignalSettings()->SetName1(QString(45, 'N')); }},
    {"long names", true,
     [](TKxRMeter& m) {
         m.SignalSettings()->SetName1(QString(45, 'N'));
         m.SignalSettings()->SetName2(QString(45, 'M'));
     }},
    {"long unit", true, [](TKxRMeter& m) { m.SignalSettings()->SetValueUnit(QString(30, 'u')); }},
    {"fixed 300 x 120", false, [](TKxRMeter& m) { fixedSize(m, 300, 120); }},
    {"fixed 120 x 300", false, [](TKxRMeter& m) { fixedSize(m, 120, 300); }},
    {"fixed 800 x 800", false, [](TKxRMeter& m) { fixedSize(m, 800, 800); }},
    {"fixed 120 x 80 with a long name", false,
     [](TKxRMeter& m) {
         m.SignalSettings()->SetName1(QString(45, 'N'));
         fixedSize(m, 120, 80);
     }},
    {"negative range", true,
     [](TKxRMeter& m) {
         m.SignalSettings()->SetValueFrom(-1000.0f);
         m.SignalSettings()->SetValueTo(-10.0f);
         m.SetValue(-500.0f);
     }},
    {"logarithmic range", true,
     [](TKxRMeter& m) {
         m.SignalSettings()->SetValueTo(1e5f);
         m.SignalSettings()->SetValueFrom(1e-3f);
         m.SetLogScale(true);
     }},
    {"wide labels", true, [](TKxRMeter& m) { m.SignalSettings()->SetValueTo(1e7f); }},
    {"far above the range", true, [](TKxRMeter& m) { m.SetValue(1e9f); }},
    {"far below the range", true, [](TKxRMeter& m) { m.SetValue(-1e9f); }},
    {"no bevels", true,
     [](TKxRMeter& m) {
         m.SetOptions(kAllRMeterOptions & ~RMeterOption(opBevelInner) &
                      ~RMeterOption(opBevelOuter));
     }},
    {"outer bevel only", true,
     [](TKxRMeter& m) { m.SetOptions(kAllRMeterOptions & ~RMeterOption(opBevelInner)); }},
};

// Whatever the texts, sizes and ranges: the scale's labels, ticks, base arc and unit stay in
// the scale area, the area stays on the control and above the names, and an auto-sized
// meter keeps its labels apart.
TEST_F(RMeterTest, ScaleUnitAndNamesNeverOverlapOrLeaveTheControl) {
    for (TMeterType type : {Kx120Meter, Kx180Meter, Kx270Meter}) {
        for (const ExtremeCase& k : kExtremes) {
            SCOPED_TRACE(std::string(k.name) + ", type " + std::to_string(type));
            MeterPaint p(type, k.setup);
            const TKxRMeter& m = *p.meter;
            const TRect area = m.ScaleArea();
            ASSERT_TRUE(inside(area, m.ClientRect())) << str(area);
            const std::vector<TRect> labels = p.labels();
            if (k.autoSized) {
                EXPECT_FALSE(labels.empty());  // a fixed size may have no room
            }
            for (const TRect& l : labels)
                EXPECT_TRUE(inside(l, area)) << str(l) << " in " << str(area);
            for (const TRect& n : p.names())
                EXPECT_TRUE(inside(n, m.ClientRect())) << str(n);
            for (const TCanvasCall& c : p.rec.Calls()) {
                if (c.Op == "LineTo" || c.Op == "MoveTo") {
                    const int reach = c.PenWidth / 2;
                    EXPECT_TRUE(inside(TRect{c.Args[0] - reach, c.Args[1] - reach,
                                             c.Args[0] + reach + 1, c.Args[1] + reach + 1},
                                       area))
                        << c.ToString().toStdString();
                } else if (c.Op == "Arc") {
                    EXPECT_TRUE(
                        inside(TRect{c.Args[4], c.Args[5], c.Args[4] + 1, c.Args[5] + 1}, area));
                    EXPECT_TRUE(
                        inside(TRect{c.Args[6], c.Args[7], c.Args[6] + 1, c.Args[7] + 1}, area));
                } else if (c.Op == "TextOut" && p.isName(c)) {
                    EXPECT_GE(c.Args[1], area.Bottom);
                    EXPECT_LE(c.Args[1] + 14, m.height());
                }
            }
            for (const TCanvasCall& u : p.unitCalls()) {
                EXPECT_TRUE(inside(MeterPaint::box(u), area));
                for (const TRect& l : labels)
                    EXPECT_FALSE(overlap(MeterPaint::box(u), l)) << str(l);
            }
            if (!k.autoSized) continue;
            for (size_t i = 0; i < labels.size(); ++i) {
                for (size_t j = i + 1; j < labels.size(); ++j) {
                    if (labels[i] == labels[j]) continue;  // the same label drawn again
                    EXPECT_FALSE(overlap(labels[i], labels[j])) << str(labels[i]) << str(labels[j]);
                }
            }
        }
    }
}

// A name wider than the scale widens the meter (by both bevels and once more by the
// inner one) but not its height; the scale keeps at least its size, centred.
TEST_F(RMeterTest, LongNameCentresTheScaleWithoutShrinkingIt) {
    for (TMeterType type : {Kx120Meter, Kx180Meter, Kx270Meter}) {
        SCOPED_TRACE(type);
        MeterPaint plain(type, {});
        MeterPaint named(type,
                         [](TKxRMeter& m) { m.SignalSettings()->SetName1(QString(45, 'N')); });
        EXPECT_EQ(named.meter->width(), 16 + 16 + 16 + 45 * 7);
        EXPECT_EQ(named.meter->height(), plain.meter->height());
        const TRect a = plain.meter->ScaleRect(), b = named.meter->ScaleRect();
        EXPECT_GE(b.Width(), a.Width());
        EXPECT_LE(b.Width(), a.Width() * 3 / 2);
        EXPECT_NEAR(b.Left + b.Width() / 2, named.meter->width() / 2, 1);
        EXPECT_EQ(b.Top, a.Top);
    }
}

// A fixed size too low for the scale shrinks the scale to the height there is.
TEST_F(RMeterTest, LowFixedSizeShrinksTheScaleToFit) {
    MeterPaint wide(Kx270Meter, [](TKxRMeter& m) { fixedSize(m, 400, 400); });
    MeterPaint low(Kx270Meter, [](TKxRMeter& m) { fixedSize(m, 400, 200); });
    // 200 - 16 - 28 - 16 = 140 rows for the scale: about the default scale, centred.
    EXPECT_LT(low.meter->ScaleRect().Width(), wide.meter->ScaleRect().Width());
    EXPECT_GT(low.meter->ScaleRect().Width(), 80);
    const TRect sr = low.meter->ScaleRect();
    EXPECT_NEAR(sr.Left + sr.Width() / 2, 200, 1);
    int bottom = 0;
    for (const TRect& l : low.labels())
        bottom = std::max(bottom, l.Bottom);
    EXPECT_LE(bottom, low.meter->ScaleArea().Bottom);
    EXPECT_GT(bottom, low.meter->ScaleArea().Bottom - 10);  // the scale takes the height
}

TEST_F(RMeterTest, WideLabelsWidenAnAutoSizedMeter) {
    MeterPaint plain(Kx270Meter, {});
    MeterPaint wide(Kx270Meter, [](TKxRMeter& m) { m.SignalSettings()->SetValueTo(1e7f); });
    EXPECT_GT(wide.meter->width(), plain.meter->width() + 50);
    EXPECT_GT(wide.meter->height(), plain.meter->height() + 50);
    // The bare base class has no sweep: its labels share one place whatever the width.
    TKxRMeter bare;
    TRecordingCanvas rec;
    bare.SetCanvas(&rec);
    bare.Loaded();
    bare.PaintToSurface();
    EXPECT_EQ(bare.width(), 10 * 13 + 32);  // 10 label heights and the bevels
    bare.SetCanvas(nullptr);
}

TEST_F(RMeterTest, BaseArcStaysWithoutSectors) {
    const struct {
        TRMeterOptions options;
        bool drawLine;
        size_t arcs, pies;
    } cases[] = {
        {kAllRMeterOptions, true, 1, 3},
        {kAllRMeterOptions & ~RMeterOption(opSector), true, 1, 0},
        {kAllRMeterOptions & ~RMeterOption(opSector), false, 0, 0},
        {kAllRMeterOptions, false, 0, 3},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(c.options) + (c.drawLine ? " line" : " no line"));
        MeterPaint p(Kx180Meter, [&](TKxRMeter& m) {
            m.SetOptions(c.options);
            m.ScaleSettings()->SetDrawLine(c.drawLine);
        });
        const auto arcs = p.rec.CallsOf("Arc");
        EXPECT_EQ(arcs.size(), c.arcs);
        EXPECT_EQ(p.rec.CallsOf("Pie").size(), c.pies);
        if (arcs.empty()) continue;
        // From the inner end of the last tick back to the outer end of the first.
        const TScaleSettings& s = *p.meter->ScaleSettings();
        EXPECT_EQ(
            arcs[0].Args,
            (std::vector<int32_t>{s.ArcRect.Left, s.ArcRect.Top, s.ArcRect.Right, s.ArcRect.Bottom,
                                  s.ArcStart.X, s.ArcStart.Y, s.ArcEnd.X, s.ArcEnd.Y}));
        EXPECT_EQ(arcs[0].PenColor, clBlack);
        EXPECT_EQ(arcs[0].BrushStyle, bsClear);
    }
}

TEST_F(RMeterTest, UnitTextPlacementAndOmission) {
    const struct {
        TMeterType type;
        bool option;
        int chars;
        bool shown;
    } cases[] = {
        {Kx270Meter, true, 4, true},   {Kx180Meter, true, 4, true},
        {Kx120Meter, true, 4, true},   {Kx270Meter, false, 4, false},
        {Kx180Meter, false, 4, false}, {Kx270Meter, true, 14, false},  // runs into "0" and "100"
        {Kx270Meter, true, 30, false},                                 // wider than the scale area
        {Kx180Meter, true, 30, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(c.type) + ", " + std::to_string(c.chars) + " characters");
        MeterPaint p(c.type, [&](TKxRMeter& m) {
            m.SignalSettings()->SetValueUnit(QString(c.chars, 'u'));
            if (!c.option) m.SetOptions(kAllRMeterOptions & ~RMeterOption(opUnit));
        });
        const auto units = p.unitCalls();
        EXPECT_EQ(p.meter->UnitShown(), c.shown);
        ASSERT_EQ(units.size(), c.shown ? 1u : 0u);
        if (!c.shown) continue;
        const TKxRMeter& m = *p.meter;
        const TRect sr = m.ScaleRect();
        const int w = 7 * c.chars;
        EXPECT_EQ(units[0].Args[0], sr.Left + (sr.Width() - w) / 2);
        // 270 degrees: Round((width - label width) / 1.18 - label height); the others a
        // third of the scale down less half a label height.
        const int y = c.type == Kx270Meter ? int(std::nearbyint((m.width() - 21) / 1.18 - 14))
                                           : sr.Top + int(std::nearbyint(sr.Width() / 3.0 - 7));
        EXPECT_EQ(units[0].Args[1], y);
        EXPECT_EQ(units[0].FontName, "System");
        EXPECT_EQ(units[0].FontHeight, -13);  // 10 points
        EXPECT_EQ(units[0].FontColor, clBlack);
        EXPECT_EQ(units[0].BrushStyle, bsClear);
    }
}

TEST_F(RMeterTest, UnitFollowsTheNarrowedScale) {
    // On the 270-degree meter the unit's height comes from the control width; with a long
    // name that width would put it off the control, so it follows the scale instead.
    MeterPaint p(Kx270Meter, [](TKxRMeter& m) { m.SignalSettings()->SetName1(QString(45, 'N')); });
    MeterPaint plain(Kx270Meter, {});
    ASSERT_EQ(p.unitCalls().size(), 1u);
    const TCanvasCall a = plain.unitCalls()[0], b = p.unitCalls()[0];
    const TRect sa = plain.meter->ScaleRect(), sb = p.meter->ScaleRect();
    EXPECT_EQ(b.Args[0], sb.Left + (sb.Width() - 7) / 2);
    EXPECT_NEAR(b.Args[1], a.Args[1] + (sb.Width() - sa.Width()) / 1.18, 2);
}

TEST_F(RMeterTest, AreaUnderTwoPixelsIsTooSmall) {
    // All options: 16 for the outer bevel, 28 for the names, 16 for the inner bevel.
    const struct {
        int w, h;
        bool tooSmall;
    } cases[] = {{200, 60, true}, {200, 61, true},  {200, 62, false},
                 {33, 200, true}, {34, 200, false}, {200, 200, false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(c.w) + " x " + std::to_string(c.h));
        MeterPaint p(Kx180Meter, [&](TKxRMeter& m) { fixedSize(m, c.w, c.h); });
        EXPECT_EQ(p.meter->TooSmall(), c.tooSmall);
        if (c.tooSmall) {
            EXPECT_TRUE(p.labels().empty());
            EXPECT_FALSE(p.meter->UnitShown());
            EXPECT_TRUE(p.rec.CallsOf("Pie").empty());
            EXPECT_EQ(p.meter->LastDrawnPosition(), -1);
        }
    }
    MeterPaint roomy(Kx180Meter, [](TKxRMeter& m) { fixedSize(m, 200, 200); });
    EXPECT_FALSE(roomy.labels().empty());
    EXPECT_TRUE(roomy.meter->UnitShown());
}

TEST_F(RMeterTest, SettingsSettersIgnoreNull) {
    TKx270Meter m;
    m.Loaded();
    m.ScaleSettings()->SetSteps(7);
    m.FontUnit()->SetSize(20);
    m.BevelInner()->SetSpacing(9);
    m.BevelOuter()->SetSpacing(8);
    m.ArrowSettings()->SetShape(5);
    EXPECT_NO_THROW(m.SetScaleSettings(nullptr));
    EXPECT_NO_THROW(m.SetFontUnit(nullptr));
    EXPECT_NO_THROW(m.SetBevelInner(nullptr));
    EXPECT_NO_THROW(m.SetBevelOuter(nullptr));
    EXPECT_NO_THROW(m.SetArrowSettings(nullptr));
    EXPECT_EQ(m.ScaleSettings()->Steps(), 7);
    EXPECT_EQ(m.FontUnit()->Size(), 20);
    EXPECT_EQ(m.BevelInner()->Spacing(), 9);
    EXPECT_EQ(m.BevelOuter()->Spacing(), 8);
    EXPECT_EQ(m.ArrowSettings()->Shape(), 5);
    // Another object's settings are copied, not adopted.
    TKx180Meter other;
    other.ScaleSettings()->SetSteps(3);
    other.FontUnit()->SetSize(12);
    m.SetScaleSettings(other.ScaleSettings());
    m.SetFontUnit(other.FontUnit());
    EXPECT_EQ(m.ScaleSettings()->Steps(), 3);
    EXPECT_EQ(m.FontUnit()->Size(), 12);
    EXPECT_NE(m.ScaleSettings(), other.ScaleSettings());
}

TEST_F(RMeterTest, UnitFontDefaults) {
    TKx120Meter m;
    EXPECT_EQ(m.FontUnit()->Name(), "System");
    EXPECT_EQ(m.FontUnit()->Size(), 10);
    EXPECT_EQ(m.FontUnit()->Color(), clBlack);
}

// The centre caps: kinds 1, 3, 6 and 7 have a second, smaller cap over the first.
TEST_F(RMeterTest, NeedleCentreCaps) {
    const struct {
        int kind;
        bool secondCap;
    } cases[] = {{0, false}, {1, true}, {3, true}, {4, false}, {5, false}, {6, true}, {7, true}};
    for (TMeterType type : {Kx120Meter, Kx180Meter, Kx270Meter}) {
        for (const auto& c : cases) {
            SCOPED_TRACE("type " + std::to_string(type) + ", kind " + std::to_string(c.kind));
            auto owned = makeMeter(type);
            TKxRMeter& m = *owned;
            m.ArrowSettings()->SetShape(c.kind);
            m.ArrowSettings()->SetColorCP1Brush(clAqua);
            m.ArrowSettings()->SetColorCP1Pen(clAqua);
            m.ArrowSettings()->SetColorCP2Brush(clFuchsia);
            m.ArrowSettings()->SetColorCP2Pen(clFuchsia);
            m.SetLimitUpper(200.0f);
            m.SetValue(50.0f);       // straight up
            fixedSize(m, 400, 400);  // caps large enough to tell apart
            m.Loaded();
            m.PaintToSurface();
            const TPoint pivot{m.ScaleRect().Left + m.ArrowField()[1].X,
                               m.ScaleRect().Top + m.ArrowField()[1].Y};
            const TColor centre = m.Surface().Pixel(pivot.X, pivot.Y);
            EXPECT_EQ(centre == clFuchsia, c.secondCap) << std::hex << centre;
            // The first cap shows round the second (alone, radius 2, for kinds 0, 4 and 5).
            const int r1 = ArrowStyleByte(m.ArrowField()[0], 4);
            ASSERT_GE(r1, c.secondCap ? 8 : 2);
            EXPECT_EQ(m.Surface().Pixel(pivot.X + (c.secondCap ? r1 / 2 : 0), pivot.Y), clAqua);
        }
    }
}

// A needle turned far past the arc's ends stays inside the scale area: off the names.
TEST_F(RMeterTest, NeedleNeverCrossesTheNames) {
    for (TMeterType type : {Kx120Meter, Kx180Meter, Kx270Meter}) {
        SCOPED_TRACE(type);
        auto m = makeMeter(type);
        m->SetOptions(kAllRMeterOptions & ~RMeterOption(opBevelInner));
        m->SetLimitUpper(1e9f);
        m->Loaded();
        m->PaintToSurface();
        const QImage before = m->Surface().Image().copy();
        const int top = m->ScaleArea().Bottom;
        for (float v : {-1e9f, 1e9f, 0.0f, 100.0f, 50.0f}) {
            m->SetValue(v);
            for (int y = top; y < m->height(); ++y)
                for (int x = 0; x < m->width(); ++x)
                    ASSERT_EQ(m->Surface().Image().pixel(x, y), before.pixel(x, y))
                        << v << " at " << x << "," << y;
        }
    }
}

// A canvas aimed at the surface keeps drawing into it when the meter sizes itself anew.
TEST_F(RMeterTest, CanvasAimedAtTheSurfaceSurvivesAutoSizing) {
    TKx270Meter m;
    TRecordingCanvas rec(&m.SurfaceImage());
    m.SetCanvas(&rec);
    m.Loaded();
    m.PaintToSurface();
    const int before = m.width();
    m.SignalSettings()->SetName1(QString(45, 'N'));
    m.PaintToSurface();  // grows, then draws into the new surface
    EXPECT_GT(m.width(), before);
    EXPECT_NE(qAlpha(m.Surface().Image().pixel(m.width() - 3, 3)), 0);
    m.SetCanvas(nullptr);
}

// Construction runs in an update phase: nothing repaints until Loaded ends it, then every
// settings object the meter owns repaints it when changed.
TEST_F(RMeterTest, SettingsChangesRepaintOnceLoaded) {
    const struct {
        const char* name;
        std::function<void(TKxRMeter&, int)> change;
    } cases[] = {
        {"ArrowSettings", [](TKxRMeter& m, int i) { m.ArrowSettings()->SetShape(i); }},
        {"FontUnit", [](TKxRMeter& m, int i) { m.FontUnit()->SetSize(12 + i); }},
        {"BevelInner", [](TKxRMeter& m, int i) { m.BevelInner()->SetSpacing(6 + i); }},
        {"BevelOuter", [](TKxRMeter& m, int i) { m.BevelOuter()->SetSpacing(6 + i); }},
        {"ScaleSettings", [](TKxRMeter& m, int i) { m.ScaleSettings()->SetColor(TColor(i)); }},
        {"Options", [](TKxRMeter& m, int i) { m.SetOptions(TRMeterOptions(i)); }},
        {"AutoSize", [](TKxRMeter& m, int i) { m.SetKxAutoSize(i == 2); }},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        TKx180Meter m;
        EXPECT_EQ(m.UpdateCount(), 1);
        m.SetRedrawNeeded(false);
        c.change(m, 1);
        EXPECT_FALSE(m.RedrawNeeded());  // still constructing
        m.Loaded();
        EXPECT_EQ(m.UpdateCount(), 0);
        m.PaintToSurface();
        m.SetRedrawNeeded(false);
        c.change(m, 2);
        EXPECT_TRUE(m.RedrawNeeded());
    }
}

// The scale area: inside the inner bevel's frame, else inside the outer bevel's frame and
// above the names (which start half the outer spacing below the instrument rectangle).
TEST_F(RMeterTest, ScaleAreaFollowsBevelsAndNames) {
    constexpr TRMeterOptions all = kAllRMeterOptions;
    constexpr TRMeterOptions inner = RMeterOption(opBevelInner), outer = RMeterOption(opBevelOuter);
    const struct {
        const char* name;
        TRMeterOptions options;
        int outerSpacing;
        TRect area;
    } cases[] = {
        {"everything", all, 5, {11, 11, 189, 161}},
        {"no inner bevel", all & ~inner, 5, {3, 3, 197, 166}},
        {"no inner bevel, wide spacing", all & ~inner, 8, {3, 3, 197, 165}},
        {"no inner bevel, no names", all & ~inner & ~kNames, 5, {3, 3, 197, 197}},
        {"inner bevel only", all & ~outer, 5, {3, 3, 197, 169}},
        {"no bevels", all & ~inner & ~outer, 5, {0, 0, 200, 172}},
        {"nothing round it", all & ~inner & ~outer & ~kNames, 5, {0, 0, 200, 200}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        MeterPaint p(Kx270Meter, [&](TKxRMeter& m) {
            m.SetOptions(c.options);
            m.BevelOuter()->SetSpacing(c.outerSpacing);
            fixedSize(m, 200, 200);
        });
        EXPECT_EQ(p.meter->ScaleArea(), c.area);
    }
}

// Without bevels and names an auto-sized 180-degree meter is just as wide as its scale:
// the outermost labels, at 9 and 3 o'clock, touch the control's edges.
TEST_F(RMeterTest, BareAutoSizedMeterFitsItsScaleExactly) {
    const struct {
        TMeterType type;
        float from, to;
    } cases[] = {{Kx180Meter, 0, 100}, {Kx180Meter, -100, 0}};
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(c.type) + ": " + std::to_string(c.from));
        MeterPaint p(c.type, [&](TKxRMeter& m) {
            m.SetOptions(kAllRMeterOptions & ~RMeterOption(opBevelInner) &
                         ~RMeterOption(opBevelOuter) & ~kNames);
            m.SignalSettings()->SetValueFrom(c.from);
            m.SignalSettings()->SetValueTo(c.to);
        });
        int left = INT32_MAX, right = INT32_MIN, bottom = INT32_MIN;
        for (const TRect& l : p.labels()) {
            left = std::min(left, l.Left);
            right = std::max(right, l.Right);
            bottom = std::max(bottom, l.Bottom);
        }
        EXPECT_GE(left, 0);
        EXPECT_LE(right, p.meter->width());
        EXPECT_LE(bottom, p.meter->height());
        EXPECT_TRUE(left == 0 || right == p.meter->width() || bottom == p.meter->height())
            << left << " " << right << " " << bottom;
    }
}

// The marks stand at the rim of the scale square, pointing inward, at the angle of the
// recorded minimum and maximum.
TEST_F(RMeterTest, MarksStandAtTheRimAtTheirReadings) {
    for (TMeterType type : {Kx120Meter, Kx180Meter, Kx270Meter}) {
        SCOPED_TRACE(type);
        auto m = makeMeter(type);
        m->Loaded();
        m->SetValue(20.0f);
        m->SetValue(70.0f);
        m->PaintToSurface();
        const TPoint pivot = m->ArrowField()[1];
        const double r = m->ScaleRect().Width() / 2;
        const auto& marks = m->MarkerPolygons();
        const struct {
            size_t rim;
            int ppt;
        } ends[] = {{1, m->MinPPT()}, {4, m->MaxPPT()}};
        EXPECT_EQ(ends[0].ppt, 200);
        EXPECT_EQ(ends[1].ppt, 700);
        for (const auto& e : ends) {
            const TPoint p = marks[e.rim];
            const double dx = p.X - pivot.X, dy = p.Y - pivot.Y;
            EXPECT_NEAR(std::hypot(dx, dy), r - 1, 1.5);
            double angle = std::atan2(dx, -dy) * 180 / 3.14159265358979;
            const double want = m->StartAngle() + m->SweepAngle() * e.ppt / 1000.0;
            angle += 360 * std::round((want - angle) / 360);
            EXPECT_NEAR(angle, want, 1.5);
            // The tip lies a step length and more further in.
            const TPoint tip = marks[e.rim - 1];
            EXPECT_LT(std::hypot(tip.X - pivot.X, tip.Y - pivot.Y),
                      r - m->ScaleSettings()->StepLength);
        }
    }
}

// An auto-sized meter follows a change of height alone (its width stays).
TEST_F(RMeterTest, AutoSizeFollowsAHeightChangeAlone) {
    MeterPaint m(Kx270Meter, nullptr);
    const int32_t w = m.meter->width(), h = m.meter->height();
    m.meter->SetOptions(kAllRMeterOptions & ~RMeterOption(opName2));
    m.meter->CalcSize();
    EXPECT_EQ(m.meter->width(), w);
    EXPECT_EQ(m.meter->height(), h - 14);
}

// A fixed size too small for any ring draws no scale at all, not a speck of one.
TEST_F(RMeterTest, NoRoomForARingDrawsNoScale) {
    MeterPaint m(Kx270Meter, [](TKxRMeter& mt) { fixedSize(mt, 60, 60); });
    EXPECT_TRUE(m.labels().empty());
    EXPECT_TRUE(m.rec.CallsOf("LineTo").empty());
}

// Marks that move with every new extreme leave no trace behind.
TEST_F(PaintedMeter, MovingMarksLeaveNoTrace) {
    meter.SetLimitUpper(200.0f);
    meter.SetLimitLower(-200.0f);
    for (const float v : {60.0f, 50.0f, 40.0f, 30.0f, 70.0f, 80.0f, 90.0f}) {
        meter.SetValue(v);
        const QImage composed = meter.Surface().Image().copy();
        meter.Invalidate();
        meter.PaintToSurface();
        EXPECT_TRUE(composed == meter.Surface().Image()) << v;
    }
}

TEST_F(RMeterTest, LongSecondNameWidensTheMeter) {
    TKx270Meter m;
    TRecordingCanvas rec;
    rec.CharWidth = 7;
    rec.LineHeight = 14;
    m.SetCanvas(&rec);
    m.SignalSettings()->SetName2(QString(40, 'x'));
    m.SetOptions(RMeterOption(opName2) | RMeterOption(opBevelOuter));
    m.CalcSize();
    EXPECT_EQ(m.width(), 16 + 280);
    m.SetCanvas(nullptr);
}

// The flat meters compose their needle down to the bottom of the scale area, where the
// pivot's caps sit; the 270-degree meter in its scale square.
TEST_F(RMeterTest, ComposeAreaOfTheFlatMetersReachesTheAreaBottom) {
    for (TMeterType type : {Kx120Meter, Kx180Meter, Kx270Meter}) {
        MeterPaint p(type, nullptr);
        if (type == Kx270Meter) {
            EXPECT_LT(p.meter->ScaleRect().Bottom, p.meter->ScaleArea().Bottom);
        } else {
            EXPECT_EQ(p.meter->ScaleRect().Bottom, p.meter->ScaleArea().Bottom) << type;
        }
    }
}

TEST_F(PaintedMeter, TheRangeStartDoesNotBlink) {
    meter.SetLimitLower(-10.0f);
    meter.SetLimitUpper(200.0f);
    meter.SetValue(0.0f);
    EXPECT_EQ(meter.NeedlePosition(), 0);
    EXPECT_FALSE(meter.Blinking());
    meter.SetValue(100.0f);
    EXPECT_FALSE(meter.Blinking());
}

// Reaching the range start across the lower limit (with only overflows blinking) is no
// overflow.
TEST_F(PaintedMeter, CrossingTheLowerLimitAtTheRangeStartDoesNotBlink) {
    meter.SetOptions(kAllRMeterOptions & ~RMeterOption(opLimit));
    meter.PaintToSurface();
    meter.SetValue(0.0f);
    EXPECT_TRUE(meter.LowerExceeded());
    EXPECT_FALSE(meter.Blinking());
}

}  // namespace
}  // namespace kx
