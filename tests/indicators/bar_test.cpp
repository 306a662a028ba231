// Bars: the plain bar and the bar instruments: sizes, layout, triangles, markers,
// blinking and what a reading repaints.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>

#include "common/ratio.h"
#include "kx/blink/flashtimer.h"
#include "kx/host/recordingcanvas.h"
#include "kx/indicators/bar.h"
#include "kx/indicators/barinstrument.h"

namespace kx {
namespace {

using Opt = TKxBarInstrument::THBarOption;
constexpr TKxBarInstrument::THBarOptions O(Opt o) {
    return TKxBarInstrument::BarOption(o);
}
constexpr TKxBarInstrument::THBarOptions kDefault = TKxBarInstrument::kDefaultOptions;
constexpr TKxBarInstrument::THBarOptions kAll = 0x7F;

class BarTest : public ::testing::Test {
  protected:
    void TearDown() override {
        ClearFlashList();
        SetFlashTickCounter(0);
    }
};

// Pixels that differ between two pictures of the same size, outside the given areas.
int changedOutside(const QImage& a, const QImage& b, std::initializer_list<TRect> areas) {
    int n = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) {
            bool inside = false;
            for (const TRect& r : areas)
                inside = inside || (x >= r.Left && x < r.Right && y >= r.Top && y < r.Bottom);
            if (!inside && a.pixel(x, y) != b.pixel(x, y)) ++n;
        }
    return n;
}

// --- TKxBar ------------------------------------------------------------------------------

TEST_F(BarTest, PlainBarGrowsToItsMinimumAndNeverShrinks) {
    const struct {
        const char* what;
        int32_t barBevel, outerSpacing, minHeight, w, h;
        int32_t expectW, expectH;
    } cases[] = {
        // 2 x (bar bevel + outer bevel) + minHeight high, 2 x outer + minWidth (25) wide.
        {"defaults, too small", 1, 5, 12, 10, 10, 39, 28},
        {"thick bevels", 3, 2, 12, 10, 10, 33, 26},
        {"large stays", 1, 5, 12, 200, 80, 200, 80},
        {"only too low", 1, 5, 12, 300, 5, 300, 28},
        {"absurd minimum: grows to the cap only", 1, 5, 1 << 30, 10, 10, 39, 4096},
        {"the cap does not shrink", 1, 5, 1 << 30, 10, 5000, 39, 5000},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        TKxBar bar;
        bar.BarSettings()->Bevel()->SetWidth(c.barBevel);
        bar.BevelOuter()->SetSpacing(c.outerSpacing);
        bar.BarSettings()->SetminHeight(c.minHeight);
        bar.SetBounds(0, 0, c.w, c.h);
        bar.Loaded();
        bar.PaintToSurface();
        EXPECT_EQ(bar.width(), c.expectW);
        EXPECT_EQ(bar.height(), c.expectH);
    }
}

TEST_F(BarTest, PlainBarDefaults) {
    TKxBar bar;
    EXPECT_EQ(bar.width(), 164);
    EXPECT_EQ(bar.height(), 28);
    EXPECT_EQ(bar.BarSettings()->minWidth(), 25);
    EXPECT_EQ(bar.BarSettings()->minHeight(), 12);
    EXPECT_EQ(bar.BarSettings()->BkBrightness(), 40.0f);
    EXPECT_TRUE(bar.BarSettings()->HasOption(TBarSettings::opValue));
    EXPECT_TRUE(bar.BarSettings()->HasOption(TBarSettings::opUnit));
    EXPECT_EQ(bar.BevelOuter()->TotalWidth(), 7);
}

TEST_F(BarTest, PlainBarFillsTheInsideOfItsBevels) {
    TKxBar bar;
    bar.BarSettings()->SetOptions(0);
    bar.Loaded();
    bar.SetValue(50.0f);
    bar.PaintToSurface();
    // 7 outer + 1 bar bevel on each side: the bar is 148 x 12 at (8, 8).
    EXPECT_EQ(bar.BarSettings()->BarRect, (TRect{8, 8, 156, 20}));
    EXPECT_EQ(bar.Surface().Pixel(8 + 73, 14), clLime);
    EXPECT_EQ(bar.Surface().Pixel(8 + 74, 14), clBlack);
    // A reading repaints the bar and nothing else.
    const QImage before = bar.Surface().Image().copy();
    bar.SetValue(80.0f);
    EXPECT_EQ(bar.Surface().Pixel(8 + 110, 14), clLime);
    EXPECT_EQ(changedOutside(before, bar.Surface().Image(), {bar.BarSettings()->BarRect}), 0);
}

TEST_F(BarTest, PlainBarColourAndBidirectionalOrigin) {
    TKxBar bar;
    bar.BarSettings()->SetOptions(TBarSettings::BarOption(TBarSettings::opUseSectorCol) |
                                  TBarSettings::BarOption(TBarSettings::opBidir));
    bar.SignalSettings()->SetValueFrom(-50.0f);
    bar.SignalSettings()->SetValueTo(50.0f);
    bar.Loaded();
    bar.PaintToSurface();
    EXPECT_EQ(bar.BarSettings()->BidirOrigin, 500);
    bar.SetValue(-40.0f);  // per mille 100: sector 1, left of the middle
    const int32_t y = 14, left = 8;
    const TColor s1 = bar.SectorSettings()->Sector1Color();
    EXPECT_EQ(bar.Surface().Pixel(left + 20, y), s1);
    EXPECT_EQ(bar.Surface().Pixel(left + 73, y), s1);
    EXPECT_EQ(bar.Surface().Pixel(left + 74, y), clBlack);
    EXPECT_EQ(bar.Surface().Pixel(left + 5, y), clBlack);
    bar.SetValue(40.0f);  // 900: sector 3, right of the middle
    const TColor s3 = bar.SectorSettings()->Sector3Color();
    EXPECT_EQ(bar.Surface().Pixel(left + 80, y), s3);
    EXPECT_EQ(bar.Surface().Pixel(left + 20, y), clBlack);
}

// --- sizes of the bar instruments ---------------------------------------------------------

std::unique_ptr<TKxBarInstrument> makeBar(bool upright) {
    if (upright) return std::make_unique<TKxVBar>();
    return std::make_unique<TKxHBar>();
}

struct SizeCase {
    bool upright;
    TKxBarInstrument::THBarOptions options;
    bool markers;
    int32_t w, h;
};

class BarAutoSize : public ::testing::TestWithParam<SizeCase> {};

// Names are 11 characters (77 x 14), the value sample "100.0" 35 x 14, the unit 7 wide;
// the bar bevel is 2 thick (bar 13 across), the outer bevel 8, the inner 3 (upright 8),
// the value bevel 2; the marker room is 9 + 2 = 11.
TEST_P(BarAutoSize, FollowsTheSizeRule) {
    const SizeCase& c = GetParam();
    auto bar = makeBar(c.upright);
    TRecordingCanvas rec;
    rec.CharWidth = 7;
    rec.LineHeight = 14;
    bar->SetCanvas(&rec);
    bar->SetOptions(c.options);
    bar->MinMax()->SetMinVisible(c.markers);
    bar->MinMax()->SetMaxVisible(c.markers);
    bar->CalcSize();
    EXPECT_EQ(bar->width(), c.w);
    EXPECT_EQ(bar->height(), c.h);
    bar->SetCanvas(nullptr);
}

INSTANTIATE_TEST_SUITE_P(
    Bars, BarAutoSize,
    ::testing::Values(
        // Horizontal: 100 + 15 for the triangles; 13 + names + value box + markers high.
        SizeCase{false, kDefault, true, 115, 71}, SizeCase{false, kDefault, false, 115, 60},
        SizeCase{false, kAll, true, 131, 93},
        SizeCase{false, 0, true, 111, 24},  // markers widen by their room
        SizeCase{false, 0, false, 100, 13}, SizeCase{false, O(Opt::opName1), false, 100, 27},
        // Upright: 100 + 15 high, the names' width; the bar and markers fit within.
        SizeCase{true, kDefault, true, 77, 167}, SizeCase{true, kAll, true, 109, 199},
        SizeCase{true, 0, true, 24, 111}, SizeCase{true, 0, false, 13, 100}));

TEST_F(BarTest, FixedSizeOnlyGrows) {
    TKxHBar bar;
    bar.SetKxAutoSize(false);
    bar.SetBounds(0, 0, 400, 200);
    bar.Loaded();
    bar.PaintToSurface();
    EXPECT_EQ(bar.width(), 400);
    EXPECT_EQ(bar.height(), 200);
    bar.SetBounds(0, 0, 20, 300);
    bar.PaintToSurface();
    EXPECT_GT(bar.width(), 20);
    EXPECT_EQ(bar.height(), 300);
}

// --- layout -------------------------------------------------------------------------------

TEST_F(BarTest, IndentsMakeRoomForTrianglesOrMarkers) {
    const struct {
        bool upright, overflow, markers;
        int32_t indent;
    } cases[] = {
        {false, true, true, 9},                             // (13 + 5) div 2
        {false, true, false, 9},  {false, false, true, 5},  // 11 div 2
        {false, false, false, 0}, {true, true, true, 9},
        {true, false, true, 5},   {true, false, false, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.upright << c.overflow << c.markers);
        auto bar = makeBar(c.upright);
        bar->SetOptions(c.overflow ? O(Opt::opOverflow) : 0);
        bar->MinMax()->SetMinVisible(c.markers);
        bar->MinMax()->SetMaxVisible(false);
        bar->Loaded();
        bar->PaintToSurface();
        const TRect f = bar->BarFrame();
        if (c.upright) {
            EXPECT_EQ(f.Top, c.indent);
            EXPECT_EQ(f.Bottom, bar->height() - c.indent);
            EXPECT_EQ(f.Width(), 13);
        } else {
            EXPECT_EQ(f.Left, c.indent);
            EXPECT_EQ(f.Right, bar->width() - c.indent);
            EXPECT_EQ(f.Height(), 13);
        }
        // The bar inside its 2-pixel bevel.
        EXPECT_EQ(bar->BarSettings()->BarRect.Left, f.Left + 2);
        EXPECT_EQ(bar->BarSettings()->BarRect.Bottom, f.Bottom - 2);
    }
}

TEST_F(BarTest, OverflowTrianglesStandAtBothEnds) {
    TKxHBar h;
    h.SetOptions(O(Opt::opOverflow));
    h.MinMax()->SetMinVisible(false);
    h.MinMax()->SetMaxVisible(false);
    h.Loaded();
    h.PaintToSurface();
    const int32_t top = h.BarFrame().Top, x1 = h.BarFrame().Right + 2;
    const std::array<TPoint, 8> expectH{
        TPoint{6, top},  TPoint{6, top + 12},  TPoint{0, top + 6},      TPoint{6, top},
        TPoint{x1, top}, TPoint{x1, top + 12}, TPoint{x1 + 6, top + 6}, TPoint{x1, top}};
    EXPECT_EQ(h.Triangles(), expectH);
    TKxVBar v;
    v.SetOptions(O(Opt::opOverflow));
    v.Loaded();
    v.PaintToSurface();
    const int32_t left = v.BarFrame().Left, y1 = v.BarFrame().Bottom + 2;
    const std::array<TPoint, 8> expectV{
        TPoint{left, 6},  TPoint{left + 12, 6},  TPoint{left + 6, 0},      TPoint{left, 6},
        TPoint{left, y1}, TPoint{left + 12, y1}, TPoint{left + 6, y1 + 6}, TPoint{left, y1}};
    EXPECT_EQ(v.Triangles(), expectV);
    // Markers move the upright bar left of the centre by half their room.
    EXPECT_EQ(left, (v.width() - 13 - 11) / 2 + 1);
}

TEST_F(BarTest, ValueBoxAndUnitSitAboveTheBar) {
    for (bool upright : {false, true}) {
        SCOPED_TRACE(upright);
        auto bar = makeBar(upright);
        bar->Loaded();
        bar->PaintToSurface();
        const TRect box = bar->ValueBox();
        EXPECT_GT(box.Width(), 0);
        EXPECT_LT(box.Bottom, bar->BarFrame().Top);
        EXPECT_GE(box.Left, 0);
        EXPECT_LE(box.Right, bar->width());
        // The readout shows the number in lime (smoothed) on the value bevel's black.
        int lime = 0;
        for (int32_t y = box.Top; y < box.Bottom; ++y)
            for (int32_t x = box.Left; x < box.Right; ++x) {
                const TColor p = bar->Surface().Pixel(x, y);
                lime += ((p >> 8) & 0xFF) > 100 && (p & 0xFF) < 60;
            }
        EXPECT_GT(lime, 10);
        bar->SetOptions(kDefault & ~O(Opt::opValue));
        bar->PaintToSurface();
        EXPECT_EQ(bar->ValueBox().Width(), 0);
    }
}

// --- readings ------------------------------------------------------------------------------

TEST_F(BarTest, AReadingRepaintsOnlyTheBarTheMarkersAndTheNumber) {
    for (bool upright : {false, true}) {
        SCOPED_TRACE(upright);
        auto bar = makeBar(upright);
        bar->Loaded();
        bar->SetValue(40.0f);
        bar->PaintToSurface();
        const QImage before = bar->Surface().Image().copy();
        bar->SetValue(45.0f);  // a new maximum
        EXPECT_NE(before, bar->Surface().Image());
        EXPECT_EQ(
            changedOutside(before, bar->Surface().Image(),
                           {bar->BarSettings()->BarRect, bar->ValueBox(), bar->MarkerStrip()}),
            0);
    }
}

TEST_F(BarTest, BarEndFollowsTheReading) {
    const struct {
        float value;
        int32_t along;  // per mille of the bar's length
    } cases[] = {{0.0f, 0}, {25.0f, 250}, {100.0f, 1000}, {150.0f, 1000}, {-20.0f, 0}};
    for (bool upright : {false, true})
        for (const auto& c : cases) {
            SCOPED_TRACE(testing::Message() << upright << " " << c.value);
            auto bar = makeBar(upright);
            bar->Loaded();
            bar->SetValue(c.value);
            bar->PaintToSurface();
            const TRect r = bar->BarSettings()->BarRect;
            const int32_t len = upright ? r.Height() : r.Width();
            const int32_t n = int32_t(std::lround(len * c.along / 1000.0));
            int32_t lit = 0;
            for (int32_t i = 0; i < len; ++i) {
                const TColor p = upright ? bar->Surface().Pixel(r.Left + 4, r.Bottom - 1 - i)
                                         : bar->Surface().Pixel(r.Left + i, r.Top + 4);
                lit += p == clLime;
            }
            EXPECT_EQ(lit, n);
        }
}

TEST_F(BarTest, MarkersStandAtTheExtremes) {
    TKxHBar h;
    h.Loaded();
    h.SetValue(20.0f);
    h.SetValue(80.0f);
    h.SetValue(50.0f);
    h.PaintToSurface();
    const TRect r = h.BarSettings()->BarRect;
    const int32_t a = r.Left + int32_t(std::lround(r.Width() * 0.2));
    const int32_t b = r.Left + int32_t(std::lround(r.Width() * 0.8));
    const auto& m = h.Markers();
    const int32_t top = h.MarkerStrip().Top, room = h.MarkerRoom();
    EXPECT_EQ(m[0], (TPoint{a, top}));
    EXPECT_EQ(m[1], (TPoint{a, top + room}));
    EXPECT_EQ(m[2], (TPoint{a - room / 2, top}));
    EXPECT_EQ(m[3], (TPoint{b, top}));
    EXPECT_EQ(m[4], (TPoint{b + room / 2, top}));
    EXPECT_EQ(m[5], (TPoint{b, top + room}));
    // Sector colours (20 % in sector 1, 80 % in sector 3), or their own.
    EXPECT_EQ(h.Surface().Pixel(a - 1, top + 2), h.SectorSettings()->Sector1Color());
    EXPECT_EQ(h.Surface().Pixel(b + 1, top + 2), h.SectorSettings()->Sector3Color());
    h.MinMax()->SetUseSectorCol(false);
    h.SetValue(51.0f);
    EXPECT_EQ(h.Surface().Pixel(a - 1, top + 2), clAqua);
    // Hidden markers leave the strip as it was painted.
    h.MinMax()->SetMinVisible(false);
    h.SetValue(52.0f);
    EXPECT_NE(h.Surface().Pixel(a - 1, top + 2), clAqua);
    EXPECT_EQ(h.Surface().Pixel(b + 1, top + 2), clAqua);
}

TEST_F(BarTest, UprightMarkersStandRightOfTheBar) {
    TKxVBar v;
    v.Loaded();
    v.SetValue(20.0f);
    v.SetValue(80.0f);
    v.PaintToSurface();
    const TRect r = v.BarSettings()->BarRect;
    const int32_t a = r.Bottom - int32_t(std::lround(r.Height() * 0.2));
    const int32_t b = r.Bottom - int32_t(std::lround(r.Height() * 0.8));
    const int32_t x = v.MarkerStrip().Left, room = v.MarkerRoom();
    EXPECT_EQ(x, v.BarFrame().Right);
    const auto& m = v.Markers();
    EXPECT_EQ(m[0], (TPoint{x + room, a}));
    EXPECT_EQ(m[1], (TPoint{x, a}));
    EXPECT_EQ(m[2], (TPoint{x + room, a + room / 2}));
    EXPECT_EQ(m[3], (TPoint{x + room, b}));
    EXPECT_EQ(m[4], (TPoint{x + room, b - room / 2}));
    EXPECT_EQ(m[5], (TPoint{x, b}));
}

// --- blinking -------------------------------------------------------------------------------

// The fill of triangle i (its centroid's pixel).
TColor triangleFill(const TKxBarInstrument& bar, int i) {
    const auto& t = bar.Triangles();
    const size_t k = size_t(4 * i);
    const int32_t x = (t[k].X + t[k + 1].X + t[k + 2].X) / 3;
    const int32_t y = (t[k].Y + t[k + 1].Y + t[k + 2].Y) / 3;
    return bar.Surface().Pixel(x, y);
}

bool inFlashList(const TKxFlashClient* c) {
    for (const auto& e : FlashList())
        if (e && e->Control == c) return true;
    return false;
}

TEST_F(BarTest, TheTriangleOnTheSideOfTheOverflowBlinks) {
    const struct {
        bool upright;
        float value;
        int blinking;  // which triangle
    } cases[] = {{false, -10.0f, 0}, {false, 120.0f, 1}, {true, -10.0f, 1}, {true, 120.0f, 0}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.upright << " " << c.value);
        auto bar = makeBar(c.upright);
        bar->Loaded();
        bar->PaintToSurface();
        const TColor face = ColorToRGB(clBtnFace);
        bar->SetValue(c.value);
        EXPECT_TRUE(bar->Blinking());
        EXPECT_TRUE(inFlashList(bar.get()));
        SetFlashTickCounter(15);  // the red phase
        RunFlashTick();
        EXPECT_EQ(triangleFill(*bar, c.blinking), clRed);
        EXPECT_EQ(triangleFill(*bar, 1 - c.blinking), face);
        SetFlashTickCounter(31);  // the yellow phase
        RunFlashTick();
        EXPECT_EQ(triangleFill(*bar, c.blinking), clYellow);
        bar->SetValue(50.0f);  // back in range: both quiet at once
        EXPECT_FALSE(bar->Blinking());
        EXPECT_FALSE(inFlashList(bar.get()));
        EXPECT_EQ(triangleFill(*bar, 0), face);
        EXPECT_EQ(triangleFill(*bar, 1), face);
        ClearFlashList();
    }
}

TEST_F(BarTest, OptionsAndLimitsDecideWhatBlinks) {
    TKxHBar h;
    int limits = 0;
    QObject::connect(&h, &TKxAnalogGControl::OnLimit, [&] { ++limits; });
    h.Loaded();
    h.PaintToSurface();
    h.SetValue(95.0f);  // above the upper limit: an event, no blinking
    EXPECT_EQ(limits, 1);
    EXPECT_FALSE(h.Blinking());
    h.SetValue(130.0f);
    EXPECT_TRUE(h.Blinking());
    h.SetOptions(kDefault & ~O(Opt::opOverflow));  // clearing the option stops it
    EXPECT_FALSE(h.Blinking());
    EXPECT_FALSE(inFlashList(&h));
    h.SetOptions(kDefault);  // setting it while out of range starts it
    EXPECT_TRUE(h.Blinking());
    h.SetDesigning(true);  // never at design time
    h.SetOptions(kDefault);
    EXPECT_FALSE(h.Blinking());
}

// --- bad input --------------------------------------------------------------------------------

TEST_F(BarTest, ExtremeReadingsAndRangesDrawWithoutHarm) {
    const float inf = std::numeric_limits<float>::infinity();
    const float values[] = {std::nanf(""), inf, -inf, FLT_MAX, -FLT_MAX, 0.0f, 1e-30f};
    for (bool upright : {false, true})
        for (bool emptyRange : {false, true}) {
            SCOPED_TRACE(testing::Message() << upright << emptyRange);
            auto bar = makeBar(upright);
            if (emptyRange) bar->SignalSettings()->SetValueTo(0.0f);
            bar->Loaded();
            bar->PaintToSurface();
            for (float v : values) {
                bar->SetValue(v);
                bar->PaintToSurface();
                EXPECT_GE(bar->PPT(), 0);
                EXPECT_LE(bar->PPT(), 1000);
            }
            TKxBar plain;
            plain.Loaded();
            for (float v : values)
                plain.SetValue(v);
            plain.PaintToSurface();
        }
}

// Bevel spacings at the int32 limits give bars as thick or thin as 32 bits allow; the
// triangles and markers around them saturate instead of overflowing.
TEST_F(BarTest, AbsurdBevelSpacingsDrawWithoutOverflow) {
    for (bool upright : {false, true})
        for (int32_t spacing : {INT32_MIN, INT32_MAX, INT32_MAX / 2, -1000000}) {
            SCOPED_TRACE(testing::Message() << upright << " " << spacing);
            auto bar = makeBar(upright);
            bar->SetOptions(kAll);
            bar->MinMax()->SetMinVisible(true);
            bar->MinMax()->SetMaxVisible(true);
            bar->BarSettings()->Bevel()->SetSpacing(spacing);
            bar->Loaded();
            bar->PaintToSurface();
            bar->SetValue(1e9f);
            bar->PaintToSurface();
            EXPECT_EQ(bar->PPT(), 1000);
        }
}

TEST_F(BarTest, TinyAndHugeNamesStayDefined) {
    TKxHBar h;
    h.SetKxAutoSize(false);
    h.SignalSettings()->SetName1(QString(300, QChar('W')));
    h.SetBounds(0, 0, 1, 1);
    h.Loaded();
    h.PaintToSurface();
    EXPECT_GT(h.width(), 300);  // a fixed size grows to hold its contents
    TKxHBar a;
    a.SignalSettings()->SetName1(QString(300, QChar('W')));
    a.Loaded();
    a.PaintToSurface();
    EXPECT_GE(a.BarFrame().Left, 0);
    EXPECT_LE(a.BarFrame().Right, a.width());
}

TEST_F(BarTest, DesignTimeShowsTheSampleValue) {
    TKxVBar v;
    v.SetDesigning(true);
    v.SignalSettings()->SetValueTo(1000.0f);
    v.Loaded();
    v.PaintToSurface();
    EXPECT_EQ(v.SignalSettings()->SampleValueText(), QStringLiteral("1000.0"));
    const QImage designed = v.Surface().Image().copy();
    v.SetValue(5.0f);  // re-lays out; the readout keeps the sample
    v.PaintToSurface();
    const TRect box = v.ValueBox();
    EXPECT_EQ(
        changedOutside(designed, v.Surface().Image(), {v.BarSettings()->BarRect, v.MarkerStrip()}),
        0);
    EXPECT_GT(box.Width(), 0);
}

// --- settings and geometry details -------------------------------------------------------

TEST_F(BarTest, EverySettingsObjectRepaintsOnceLoaded) {
    using Touch = std::function<void(TKxBarInstrument&)>;
    const std::pair<const char*, Touch> cases[] = {
        {"FontValue",
         [](TKxBarInstrument& b) { b.FontValue()->SetSize(b.FontValue()->Size() + 1); }},
        {"BarSettings", [](TKxBarInstrument& b) { b.BarSettings()->SetminWidth(120); }},
        {"BevelInner",
         [](TKxBarInstrument& b) { b.BevelInner()->SetWidth(b.BevelInner()->Width() + 1); }},
        {"BevelOuter",
         [](TKxBarInstrument& b) { b.BevelOuter()->SetWidth(b.BevelOuter()->Width() + 1); }},
        {"BevelValue",
         [](TKxBarInstrument& b) { b.BevelValue()->SetWidth(b.BevelValue()->Width() + 1); }},
        {"LogScale", [](TKxBarInstrument& b) { b.SetLogScale(!b.LogScale()); }},
        {"AutoSize", [](TKxBarInstrument& b) { b.SetKxAutoSize(!b.AutoSize()); }},
        {"Options", [](TKxBarInstrument& b) { b.SetOptions(b.Options() ^ 1); }},
    };
    for (bool upright : {false, true})
        for (const auto& [what, touch] : cases) {
            SCOPED_TRACE(testing::Message() << upright << " " << what);
            auto bar = makeBar(upright);
            bar->SetRedrawNeeded(false);
            touch(*bar);
            EXPECT_FALSE(bar->RedrawNeeded());  // still constructing
            bar->Loaded();
            bar->PaintToSurface();
            bar->SetRedrawNeeded(false);
            touch(*bar);
            EXPECT_TRUE(bar->RedrawNeeded());
        }
}

TEST_F(BarTest, SettingsSettersCopyAndIgnoreNull) {
    TKxHBar h;
    h.SetFontValue(nullptr);
    h.SetBarSettings(nullptr);
    h.SetBevelInner(nullptr);
    h.SetBevelOuter(nullptr);
    h.SetBevelValue(nullptr);
    EXPECT_EQ(h.FontValue()->Size(), 10);
    TKxSBevel bevel;
    bevel.SetWidth(6);
    h.SetBevelValue(&bevel);
    EXPECT_EQ(h.BevelValue()->Width(), 6);
    EXPECT_NE(h.BevelValue(), &bevel);
    TBarSettings bars;
    bars.SetStyle(bsPoint);
    h.SetBarSettings(&bars);
    EXPECT_EQ(h.BarSettings()->Style(), bsPoint);
    TKxBar plain;
    plain.SetBarSettings(nullptr);
    plain.SetBevelOuter(nullptr);
    plain.SetBarSettings(&bars);
    EXPECT_EQ(plain.BarSettings()->Style(), bsPoint);
}

// With fixed metrics: the value box centred with its unit, inside a 2-pixel bevel.
TEST_F(BarTest, ValueBoxGeometry) {
    TKxHBar h;
    TRecordingCanvas rec;
    rec.CharWidth = 7;
    rec.LineHeight = 14;
    h.SetCanvas(&rec);
    h.Loaded();
    h.PaintToSurface();
    // Width 115; e = 14 div 6 = 2; left = (115 - 35 - 7 - 2) div 2 - 2 = 33; the box is
    // 35 + 4 + 4 wide and 14 + 4 high; the number goes inside the bevel, e in from its
    // sides; the unit e to the right of the bevel's inside.
    EXPECT_EQ(h.width(), 115);
    EXPECT_EQ(h.ValueBox(), (TRect{37, 2, 72, 16}));  // 35 wide: the sample "100.0"
    bool unit = false;
    for (const TCanvasCall& c : rec.CallsOf(QStringLiteral("TextOut")))
        if (c.Text == QStringLiteral("%")) {
            unit = true;
            EXPECT_EQ(c.Args, (std::vector<int32_t>{76, 2}));
        }
    EXPECT_TRUE(unit);
    // The bar's frame stands below the box and the inner bevel's spacing, centred in the rest.
    EXPECT_GE(h.BarFrame().Top, 18);
    h.SetCanvas(nullptr);
}

TEST_F(BarTest, MarkerAtTheRangeStartSitsOnTheBarsFirstPixel) {
    TKxHBar h;
    h.BarSettings()->SetminWidth(1200);  // long enough for one per mille to be a pixel
    h.Loaded();
    h.SetValue(0.0f);
    h.SetValue(100.0f);
    h.PaintToSurface();
    EXPECT_EQ(h.Markers()[0].X, h.BarSettings()->BarRect.Left);
    EXPECT_EQ(h.Markers()[3].X, h.BarSettings()->BarRect.Right);
}

TEST_F(BarTest, MarkerRoomAndStripGeometry) {
    TKxHBar h;
    TRecordingCanvas rec;
    rec.CharWidth = 7;
    rec.LineHeight = 14;
    h.SetCanvas(&rec);
    h.SetKxAutoSize(false);
    h.SetBounds(0, 0, 200, 100);
    h.Loaded();
    h.PaintToSurface();
    // Below the value box (bottom 18, no inner spacing) down to the names at 100 - 28:
    // room = 72 - 18 - 13 = 41; with markers the bar stands (41 + 11) div 2 lower.
    EXPECT_EQ(h.BarFrame().Top, 18 + 26);
    EXPECT_EQ(h.MarkerStrip(), (TRect{h.BarFrame().Left - 6, h.BarFrame().Top - 11,
                                      h.BarFrame().Right + 6, h.BarFrame().Top}));
    h.MinMax()->SetMinVisible(false);
    h.MinMax()->SetMaxVisible(false);
    h.PaintToSurface();
    EXPECT_EQ(h.BarFrame().Top, 18 + 20);
    h.SetCanvas(nullptr);
}

TEST_F(BarTest, LongSecondNameWidensTheBar) {
    for (bool upright : {false, true}) {
        auto bar = makeBar(upright);
        TRecordingCanvas rec;
        rec.CharWidth = 7;
        rec.LineHeight = 14;
        bar->SetCanvas(&rec);
        bar->SignalSettings()->SetName2(QString(40, QChar('x')));
        bar->CalcSize();
        EXPECT_EQ(bar->width(), 280) << upright;
        bar->SetCanvas(nullptr);
    }
}

TEST_F(BarTest, NoTrianglesBeforeTheFirstPaintAndNoneWhileHidden) {
    TKxHBar h;
    TBitmap target(50, 50);
    h.DrawOverflow(target.Canvas(), clRed, clRed);  // not laid out yet: nothing
    EXPECT_EQ(target.Pixel(0, 0), clWhite);
    h.Loaded();
    h.PaintToSurface();
    h.SetValue(150.0f);
    SetFlashTickCounter(15);
    RunFlashTick();
    h.hide();
    const QImage before = h.Surface().Image().copy();
    h.SetValue(50.0f);  // back in range while hidden: nothing is drawn
    EXPECT_EQ(before, h.Surface().Image());
}

// A bar bevel absurd enough to make the bar 0 thick still keeps the triangles' indent.
TEST_F(BarTest, UprightBarOfNoThicknessKeepsItsIndent) {
    TKxVBar v;
    v.BarSettings()->SetminWidth(10);
    v.BarSettings()->Bevel()->SetSpacing(-6);  // thickness -5 on each side
    v.Loaded();
    v.PaintToSurface();
    EXPECT_EQ(v.BarFrame().Width(), 0);
    // Below the value box (its bevel 2) and the inner bevel's spacing 5: (0 + 5) div 2.
    EXPECT_EQ(v.BarFrame().Top, v.ValueBox().Bottom + 2 + 5 + 2);
}

// --- high-DPI ----------------------------------------------------------------------------

TEST_F(BarTest, BidirectionalInstrumentBarGrowsFromZero) {
    TKxHBar h;
    h.BarSettings()->SetOptions(TBarSettings::BarOption(TBarSettings::opBidir));
    h.SignalSettings()->SetValueFrom(-50.0f);
    h.SignalSettings()->SetValueTo(50.0f);
    h.Loaded();
    h.PaintToSurface();
    EXPECT_EQ(h.BarSettings()->BidirOrigin, 500);
    h.SetValue(-25.0f);
    const TRect r = h.BarSettings()->BarRect;
    const int32_t y = (r.Top + r.Bottom) / 2;
    EXPECT_EQ(h.Surface().Pixel(r.Left + r.Width() / 2 - 2, y), clLime);
    EXPECT_EQ(h.Surface().Pixel(r.Left + 2, y), clBlack);
}

TEST_F(BarTest, UnitStandsOnAClearBackground) {
    TKxHBar h;
    h.SignalSettings()->SetValueUnit(QStringLiteral("mmmm"));
    h.Loaded();
    h.PaintToSurface();
    // The unit's cell right of the value box: ink on the transparent surface, not a
    // filled cell.
    const TRect box = h.ValueBox();
    int ink = 0, all = 0;
    for (int32_t y = box.Top; y < box.Bottom; ++y)
        for (int32_t x = box.Right + 6; x < box.Right + 30; ++x, ++all)
            ink += qAlpha(h.Surface().Image().pixel(x, y)) == 255;
    EXPECT_LT(ink, all * 8 / 10);
    EXPECT_GT(ink, 0);
}

TEST_F(BarTest, NewExtremesDoNotRelayOutTheBar) {
    TKxHBar h;
    h.Loaded();
    h.PaintToSurface();
    h.SetRedrawNeeded(false);
    h.SetValue(20.0f);
    h.SetValue(80.0f);
    EXPECT_FALSE(h.RedrawNeeded());
    h.MinMax()->SetMaxVisible(false);  // still one marker: no new room
    EXPECT_FALSE(h.RedrawNeeded());
    h.MinMax()->SetMinVisible(false);
    EXPECT_TRUE(h.RedrawNeeded());
}

TEST_F(BarTest, BevelsAndNamesSetTheWidthOfNarrowBars) {
    const struct {
        bool upright;
        TKxBarInstrument::THBarOptions options;
        int32_t name1;  // characters
        int32_t width;
    } cases[] = {
        // Both bevels (16 + 6) and the inner bevel once more: 28, more than 1 + 16.
        {false, O(Opt::opBevelOuter) | O(Opt::opBevelInner), 0, 28},
        // The name inside both bevels: 16 + 16 + 10 x 7.
        {true, O(Opt::opBevelOuter) | O(Opt::opBevelInner) | O(Opt::opName1), 10, 102},
    };
    for (const auto& c : cases) {
        auto bar = makeBar(c.upright);
        TRecordingCanvas rec;
        rec.CharWidth = 7;
        rec.LineHeight = 14;
        bar->SetCanvas(&rec);
        bar->BarSettings()->SetminWidth(1);
        bar->BarSettings()->SetminHeight(1);
        bar->MinMax()->SetMinVisible(false);
        bar->MinMax()->SetMaxVisible(false);
        bar->SignalSettings()->SetName1(QString(c.name1, QChar('n')));
        bar->SetOptions(c.options);
        bar->CalcSize();
        EXPECT_EQ(bar->width(), c.width) << c.upright;
        bar->SetCanvas(nullptr);
    }
}

TEST_F(BarTest, UprightMarkerStripGeometry) {
    TKxVBar v;
    v.Loaded();
    v.PaintToSurface();
    const TRect f = v.BarFrame();
    EXPECT_EQ(v.MarkerStrip(), (TRect{f.Right, f.Top - 6, f.Right + 11, f.Bottom + 6}));
}

TEST_F(BarTest, InstrumentDefaultsAndCopies) {
    TKxVBar v;
    EXPECT_EQ(v.width(), 67);
    EXPECT_EQ(v.height(), 165);
    EXPECT_EQ(v.BevelValue()->Color(), clBlack);
    TFont big;
    big.SetSize(19);
    v.SetFontValue(&big);
    EXPECT_EQ(v.FontValue()->Size(), 19);
    EXPECT_NE(v.FontValue(), &big);
}

TEST_F(BarTest, NamesAndValueBoxSetTheSizes) {
    for (bool upright : {false, true}) {
        SCOPED_TRACE(upright);
        auto bar = makeBar(upright);
        TRecordingCanvas rec;
        rec.CharWidth = 7;
        rec.LineHeight = 14;
        bar->SetCanvas(&rec);
        bar->SignalSettings()->SetName2(QStringLiteral("x"));
        bar->SetOptions(O(Opt::opBevelOuter) | O(Opt::opValue) | O(Opt::opUnit));
        bar->SignalSettings()->SetValueUnit(QString(30, QChar('u')));
        bar->CalcSize();
        // The value box with its unit: 16 + 35 + 210 + 4 + 14 div 3.
        EXPECT_EQ(bar->width(), 16 + 35 + 210 + 4 + 4);
        const int32_t h = bar->height();
        bar->SetOptions(bar->Options() | O(Opt::opName2));  // one short line: taller only
        bar->CalcSize();
        EXPECT_EQ(bar->width(), 16 + 35 + 210 + 4 + 4);
        EXPECT_EQ(bar->height(), h + 14);
        // The name sits half the outer spacing below its line's top.
        bar->Loaded();
        bar->PaintToSurface();
        bool found = false;
        for (const TCanvasCall& c : rec.CallsOf(QStringLiteral("TextOut")))
            if (c.Text == QStringLiteral("x")) {
                found = true;
                EXPECT_EQ(c.Args.at(1), bar->height() - 8 - 14 + 2);
            }
        EXPECT_TRUE(found);
        bar->SetCanvas(nullptr);
    }
}

// A reading composes the bar, markers and number off-screen; at any ratio that must give
// the very pixels of a full repaint at the same reading.
template <class T>
void expectReadingsMatchFullPaints(double ratio) {
    test::AtRatio<T> c(ratio);
    c.Loaded();
    c.PaintToSurface();
    EXPECT_EQ(c.SurfaceRatio(), ratio);
    for (const float v : {10.0f, 47.0f, 83.0f, 52.0f, 130.0f}) {
        c.SetValue(v);
        const QImage composed = c.Surface().Image().copy();
        c.Invalidate();
        c.PaintToSurface();
        EXPECT_TRUE(composed == c.Surface().Image()) << ratio << " " << v;
    }
    ClearFlashList();
}

TEST_F(BarTest, ReadingsComposeTheSamePixelsAsAFullPaintAtEveryRatio) {
    for (double ratio : {1.0, 1.5, 2.0}) {
        expectReadingsMatchFullPaints<TKxBar>(ratio);
        expectReadingsMatchFullPaints<TKxHBar>(ratio);
        expectReadingsMatchFullPaints<TKxVBar>(ratio);
    }
}

}  // namespace
}  // namespace kx
