// Linear meters: sizes, sector bands, pointer and markers, blinking and what a reading
// repaints.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>

#include "common/ratio.h"
#include "kx/blink/flashtimer.h"
#include "kx/host/recordingcanvas.h"
#include "kx/indicators/linearmeter.h"

namespace kx {
namespace {

class LinearMeterTest : public ::testing::Test {
  protected:
    void TearDown() override {
        ClearFlashList();
        SetFlashTickCounter(0);
    }
};

std::unique_ptr<TKxLinearMeter> makeMeter(bool upright) {
    if (upright) return std::make_unique<TKxVMeter>();
    return std::make_unique<TKxHMeter>();
}

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

bool inFlashList(const TKxFlashClient* c) {
    for (const auto& e : FlashList())
        if (e && e->Control == c) return true;
    return false;
}

// --- sizes ---------------------------------------------------------------------------------

struct SizeCase {
    bool upright;
    uint16_t options;
    int32_t w, h;
};

class LinearMeterAutoSize : public ::testing::TestWithParam<SizeCase> {};

// With fixed metrics (7 x 14 per character) labels "0".."100" are 21 x 14: ticks 10 long,
// the horizontal scale 19 deep and 147 long, the vertical one 35 wide and 98 long; names
// are 77 wide, both bevels 8 thick, the value box 35 + 4 wide with a 2-pixel bevel.
TEST_P(LinearMeterAutoSize, FollowsTheSizeRule) {
    const SizeCase& c = GetParam();
    auto m = makeMeter(c.upright);
    TRecordingCanvas rec;
    rec.CharWidth = 7;
    rec.LineHeight = 14;
    m->SetCanvas(&rec);
    m->SetOptions(c.options);
    m->CalcSize();
    EXPECT_EQ(m->width(), c.w);
    EXPECT_EQ(m->height(), c.h);
    m->SetCanvas(nullptr);
}

constexpr uint16_t H(TKxHMeter::THMeterOption o) {
    return TKxHMeter::HMeterOption(o);
}
constexpr uint16_t V(TKxVMeter::TKxVMeterOption o) {
    return TKxVMeter::VMeterOption(o);
}

INSTANTIATE_TEST_SUITE_P(
    LinearMeters, LinearMeterAutoSize,
    ::testing::Values(
        // Horizontal: bevels + scale depth + T/2 + label height/2 (+ names, + unit/2) high;
        // the scale's length (or the names) wide.
        SizeCase{false, TKxHMeter::kAllHMeterOptions, 179, 98}, SizeCase{false, 0, 147, 31},
        SizeCase{false, H(TKxHMeter::opName1), 147, 45},
        SizeCase{false, H(TKxHMeter::opUnit), 147, 38},
        SizeCase{false, H(TKxHMeter::opBevelOuter), 163, 47},
        // Upright: the scale's length + T + 1 (+ names, + value box) high; the scale with
        // half a tick for the pointer strip, the names or the value box wide.
        SizeCase{true, TKxVMeter::kAllVMeterOptions, 93, 192}, SizeCase{true, 0, 40, 109},
        SizeCase{true, V(TKxVMeter::opValue), 51, 132},
        SizeCase{true, V(TKxVMeter::opValue) | V(TKxVMeter::opUnit), 58, 132}));

TEST_F(LinearMeterTest, FixedSizeIsKept) {
    for (bool upright : {false, true}) {
        auto m = makeMeter(upright);
        m->SetKxAutoSize(false);
        m->SetBounds(0, 0, 400, 300);
        m->Loaded();
        m->PaintToSurface();
        EXPECT_EQ(m->width(), 400);
        EXPECT_EQ(m->height(), 300);
    }
}

TEST_F(LinearMeterTest, Defaults) {
    TKxHMeter h;
    EXPECT_EQ(h.width(), 263);
    EXPECT_EQ(h.height(), 118);
    EXPECT_EQ(h.Options(), TKxHMeter::kAllHMeterOptions);
    EXPECT_EQ(h.FontUnit()->Size(), 10);
    EXPECT_EQ(h.FontUnit()->Name(), QStringLiteral("System"));
    EXPECT_EQ(h.FontUnit()->Color(), clBlack);
    EXPECT_TRUE(h.AutoSize());
    TKxVMeter v;
    EXPECT_EQ(v.width(), 98);
    EXPECT_EQ(v.height(), 273);
    EXPECT_EQ(v.Options(), TKxVMeter::kAllVMeterOptions);
    EXPECT_EQ(v.FontValue()->Color(), clLime);
    EXPECT_EQ(v.FontValue()->Name(), QStringLiteral("System"));
    EXPECT_EQ(v.FontValue()->Size(), 10);
    EXPECT_EQ(v.BevelValue()->Color(), clBlack);
    EXPECT_EQ(v.BevelValue()->Width(), 2);
    for (TKxLinearMeter* m : {static_cast<TKxLinearMeter*>(&h), static_cast<TKxLinearMeter*>(&v)}) {
        EXPECT_EQ(m->BevelInner()->Spacing(), 5);
        EXPECT_EQ(m->BevelInner()->Width(), 2);
        EXPECT_EQ(m->BevelInner()->BevelLine(), blInner);
        EXPECT_EQ(m->BevelOuter()->BevelLine(), blOuter);
        EXPECT_EQ(m->BevelOuter()->Width(), 2);
    }
}

// --- sector bands --------------------------------------------------------------------------

TEST_F(LinearMeterTest, SectorBandsAreClippedToTheScale) {
    const struct {
        int32_t from, to;
        bool drawn;
        int32_t a, b;  // the band's rectangle along the scale (clear pen: fills a .. b - 2)
    } cases[] = {
        {100, 300, true, 100, 301}, {-50, 200, true, 0, 201},  {800, 1200, true, 800, 1001},
        {0, 1, true, 0, 2},         {500, 500, false, 0, 0},   {600, 400, false, 0, 0},
        {-100, 0, false, 0, 0},     {1000, 1100, false, 0, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.from << ".." << c.to);
        TKxHMeter h;
        TSectorSettings& s = *h.SectorSettings();
        s.SetSector1From(c.from), s.SetSector1To(c.to);
        s.SetSector2From(2000), s.SetSector2To(2000);  // out of the way
        s.SetSector3From(2000), s.SetSector3To(2000);
        TRecordingCanvas rec;
        h.DrawHSector(rec, TRect{10, 5, 1010, 9});
        const auto rects = rec.CallsOf(QStringLiteral("Rectangle"));
        ASSERT_EQ(rects.size(), c.drawn ? 1u : 0u);
        if (!c.drawn) continue;
        EXPECT_EQ(rects[0].Args, (std::vector<int32_t>{10 + c.a, 5, 10 + c.b, 9}));
        EXPECT_EQ(rects[0].PenStyle, psClear);
        EXPECT_EQ(rects[0].BrushColor, s.Sector1Color());
    }
}

TEST_F(LinearMeterTest, UprightSectorBandsGrowFromTheBottom) {
    TKxVMeter v;
    TSectorSettings& s = *v.SectorSettings();
    s.SetSector1From(0), s.SetSector1To(250);
    s.SetSector2From(2000), s.SetSector2To(2000);
    s.SetSector3From(-20), s.SetSector3To(1100);
    TRecordingCanvas rec;
    v.DrawVSector(rec, TRect{0, 0, 8, 1000});
    const auto rects = rec.CallsOf(QStringLiteral("Rectangle"));
    ASSERT_EQ(rects.size(), 2u);
    EXPECT_EQ(rects[0].Args, (std::vector<int32_t>{0, 1001, 8, 750}));
    EXPECT_EQ(rects[1].Args, (std::vector<int32_t>{0, 1001, 8, 0}));
}

// --- pointer ---------------------------------------------------------------------------------

struct PointerCase {
    bool upright, leftTop;
    float value;
    int32_t position;  // per mille the tip stands at
};

class LinearMeterPointer : public ::testing::TestWithParam<PointerCase> {
  protected:
    void TearDown() override { ClearFlashList(); }
};

TEST_P(LinearMeterPointer, TipStandsAtTheReading) {
    const PointerCase& c = GetParam();
    auto m = makeMeter(c.upright);
    m->ScaleSettings()->SetPosLeftTop(c.leftTop);
    m->SetLimitUpper(1e6f);
    m->SetLimitLower(-1e6f);
    m->Loaded();
    m->SetValue(c.value);
    m->PaintToSurface();
    const TScaleSettings& s = *m->ScaleSettings();
    const int32_t T = s.StepLength;
    const float f = float(s.ScaleEnd - s.ScaleStart) / 1000.0f;
    const int32_t at = s.ScaleStart + int32_t(std::nearbyint(double(f) * c.position));
    const auto& p = m->Pointer();
    const TRect strip = m->PointerStrip();
    if (!c.upright) {
        EXPECT_EQ(p[2].X, at);
        EXPECT_EQ(p[0].X, at - T / 2);
        EXPECT_EQ(p[1].X, at + T / 2);
        EXPECT_EQ(p[2].Y, c.leftTop ? strip.Bottom - 2 - T : strip.Top + T);
    } else {
        EXPECT_EQ(p[2].Y, at);
        EXPECT_EQ(p[2].X, c.leftTop ? strip.Right - 1 - T : strip.Left + T);
    }
    // The pointer's colour is the scale's pointer colour.
    const int32_t cx = (p[0].X + p[1].X + p[2].X) / 3, cy = (p[0].Y + p[1].Y + p[2].Y) / 3;
    if (c.position >= 0 && c.position <= 1000) {
        EXPECT_EQ(m->Surface().Pixel(cx, cy), s.PointerColor());
    }
}

INSTANTIATE_TEST_SUITE_P(
    LinearMeters, LinearMeterPointer,
    ::testing::Values(PointerCase{false, false, 0.0f, 0}, PointerCase{false, false, 50.0f, 500},
                      PointerCase{false, false, 100.0f, 1000},
                      PointerCase{false, false, 102.0f, 1020},
                      PointerCase{false, false, 500.0f, 1030},  // held by the stop
                      PointerCase{false, true, 25.0f, 250}, PointerCase{false, true, -10.0f, -30},
                      PointerCase{true, false, 0.0f, 0}, PointerCase{true, false, 75.0f, 750},
                      PointerCase{true, false, 1e30f, 1030}, PointerCase{true, true, 100.0f, 1000},
                      PointerCase{true, true, -2.0f, -20}));

TEST_F(LinearMeterTest, MarkersStandAtTheExtremesOnTheScaleSide) {
    TKxHMeter h;
    h.SetLimitUpper(1e6f);
    h.Loaded();
    h.SetValue(20.0f);
    h.SetValue(80.0f);
    h.SetValue(50.0f);
    h.PaintToSurface();
    const TScaleSettings& s = *h.ScaleSettings();
    const int32_t T = s.StepLength, k = T / 2;
    const float f = float(s.ScaleEnd - s.ScaleStart) / 1000.0f;
    const int32_t a = s.ScaleStart + int32_t(std::nearbyint(double(f) * 200));
    const int32_t b = s.ScaleStart + int32_t(std::nearbyint(double(f) * 800));
    const int32_t my = h.PointerStrip().Bottom + k + 3;
    const std::array<TPoint, 6> expected{TPoint{a, my}, TPoint{a - k, my}, TPoint{a, my - T},
                                         TPoint{b, my}, TPoint{b + k, my}, TPoint{b, my - T}};
    EXPECT_EQ(h.Markers(), expected);
    // Sector colours with UseSectorCol (20 % lies in sector 1, 80 % in sector 3).
    EXPECT_EQ(h.Surface().Pixel(a - 1, my - 2), h.SectorSettings()->Sector1Color());
    EXPECT_EQ(h.Surface().Pixel(b + 1, my - 2), h.SectorSettings()->Sector3Color());
    h.MinMax()->SetUseSectorCol(false);
    h.SetValue(51.0f);
    EXPECT_EQ(h.Surface().Pixel(a - 1, my - 2), clAqua);
}

// --- readings --------------------------------------------------------------------------------

TEST_F(LinearMeterTest, AReadingRepaintsOnlyThePointerAreaAndTheNumber) {
    for (bool upright : {false, true}) {
        SCOPED_TRACE(upright);
        auto m = makeMeter(upright);
        m->Loaded();
        m->SetValue(40.0f);
        m->PaintToSurface();
        const QImage before = m->Surface().Image().copy();
        m->SetValue(47.0f);
        EXPECT_NE(before, m->Surface().Image());
        const TRect box = upright ? static_cast<TKxVMeter*>(m.get())->ValueBox() : TRect{};
        EXPECT_EQ(changedOutside(before, m->Surface().Image(), {m->PointerArea(), box}), 0);
        EXPECT_GE(m->LastDrawnPosition(), 0);
    }
}

TEST_F(LinearMeterTest, ReadingsRestoreWhatTheOldPointerCovered) {
    for (bool upright : {false, true}) {
        auto m = makeMeter(upright);
        m->SetLimitUpper(1e6f);
        m->Loaded();
        m->PaintToSurface();
        for (float v : {10.0f, 90.0f, 33.0f, 61.0f}) {
            m->SetValue(v);
            const QImage composed = m->Surface().Image().copy();
            m->Invalidate();
            m->PaintToSurface();
            EXPECT_TRUE(composed == m->Surface().Image()) << upright << " " << v;
        }
    }
}

TEST_F(LinearMeterTest, UprightValueBoxShowsTheReading) {
    TKxVMeter v;
    v.Loaded();
    v.SetValue(12.5f);
    v.PaintToSurface();
    const TRect box = v.ValueBox();
    ASSERT_GT(box.Width(), 0);
    const QImage a = v.Surface().Image().copy();
    v.SetValue(88.5f);
    int changed = 0;
    for (int32_t y = box.Top; y < box.Bottom; ++y)
        for (int32_t x = box.Left; x < box.Right; ++x)
            changed += a.pixel(x, y) != v.Surface().Image().pixel(x, y);
    EXPECT_GT(changed, 10);
    v.SetOptions(TKxVMeter::kAllVMeterOptions & ~V(TKxVMeter::opValue));
    v.PaintToSurface();
    EXPECT_EQ(v.ValueBox().Width(), 0);
}

// --- blinking --------------------------------------------------------------------------------

TColor pointerFill(const TKxLinearMeter& m) {
    const auto& p = m.Pointer();
    return m.Surface().Pixel((p[0].X + p[1].X + p[2].X) / 3, (p[0].Y + p[1].Y + p[2].Y) / 3);
}

TEST_F(LinearMeterTest, OverflowBlinksYellowAndRedAndStopsInThePointerColour) {
    for (bool upright : {false, true}) {
        SCOPED_TRACE(upright);
        auto m = makeMeter(upright);
        m->Loaded();
        m->PaintToSurface();
        m->SetValue(130.0f);
        EXPECT_TRUE(m->Blinking());
        EXPECT_TRUE(inFlashList(m.get()));
        SetFlashTickCounter(15);
        RunFlashTick();
        EXPECT_EQ(pointerFill(*m), clRed);
        SetFlashTickCounter(31);
        RunFlashTick();
        EXPECT_EQ(pointerFill(*m), clYellow);
        m->SetValue(50.0f);
        EXPECT_FALSE(m->Blinking());
        EXPECT_FALSE(inFlashList(m.get()));
        EXPECT_EQ(pointerFill(*m), m->ScaleSettings()->PointerColor());
        ClearFlashList();
    }
}

TEST_F(LinearMeterTest, LimitAloneBlinksWithoutChangingTheColour) {
    TKxHMeter h;
    h.SetOptions(TKxHMeter::kAllHMeterOptions & ~H(TKxHMeter::opOverflow));
    h.Loaded();
    h.PaintToSurface();
    h.SetValue(95.0f);  // above the upper limit of 90
    EXPECT_TRUE(h.Blinking());
    EXPECT_TRUE(inFlashList(&h));
    SetFlashTickCounter(15);
    RunFlashTick();
    EXPECT_EQ(pointerFill(h), h.ScaleSettings()->PointerColor());
    h.SetValue(96.0f);
    EXPECT_EQ(pointerFill(h), h.ScaleSettings()->PointerColor());
    h.SetOptions(0);  // clearing the option stops it
    EXPECT_FALSE(h.Blinking());
    EXPECT_FALSE(inFlashList(&h));
}

TEST_F(LinearMeterTest, NothingBlinksAtDesignTime) {
    TKxVMeter v;
    v.SetDesigning(true);
    v.Loaded();
    v.PaintToSurface();
    v.SetValue(150.0f);
    v.PaintToSurface();
    EXPECT_FALSE(v.Blinking());
    EXPECT_FALSE(inFlashList(&v));
}

// --- bad input and extremes ------------------------------------------------------------------

TEST_F(LinearMeterTest, ExtremeReadingsAndRangesDrawWithoutHarm) {
    const float inf = std::numeric_limits<float>::infinity();
    const float values[] = {std::nanf(""), inf, -inf, FLT_MAX, -FLT_MAX, 0.0f};
    for (bool upright : {false, true})
        for (int range = 0; range < 3; ++range) {
            auto m = makeMeter(upright);
            if (range == 1) m->SignalSettings()->SetValueTo(0.0f);
            if (range == 2) {
                m->SignalSettings()->SetValueFrom(1e-3f);
                m->SetLogScale(true);
            }
            m->Loaded();
            m->PaintToSurface();
            for (float v : values) {
                m->SetValue(v);
                m->PaintToSurface();
                EXPECT_GE(m->PointerPosition(), -30);
                EXPECT_LE(m->PointerPosition(), 1030);
            }
        }
}

TEST_F(LinearMeterTest, TooSmallMeterDrawsNoScaleOrPointer) {
    for (bool upright : {false, true}) {
        auto m = makeMeter(upright);
        m->SetKxAutoSize(false);
        m->SetBounds(0, 0, 30, 30);
        m->Loaded();
        m->PaintToSurface();
        EXPECT_TRUE(m->TooSmall());
        EXPECT_EQ(m->Background().Width(), 0);
        m->SetValue(200.0f);  // no blinking either
        EXPECT_FALSE(m->Blinking());
        m->SetBounds(0, 0, 400, 400);  // room again: the overflow shows
        m->PaintToSurface();
        EXPECT_FALSE(m->TooSmall());
        EXPECT_TRUE(m->Blinking());
        ClearFlashList();
    }
}

TEST_F(LinearMeterTest, SettingsChangesRepaintOnceLoaded) {
    using Touch = std::function<void(TKxLinearMeter&)>;
    const std::pair<const char*, Touch> cases[] = {
        {"ScaleSettings", [](TKxLinearMeter& m) { m.ScaleSettings()->SetSteps(4); }},
        {"BevelInner", [](TKxLinearMeter& m) { m.BevelInner()->SetWidth(3); }},
        {"BevelOuter", [](TKxLinearMeter& m) { m.BevelOuter()->SetWidth(3); }},
        {"Options", [](TKxLinearMeter& m) { m.SetOptions(1); }},
        {"AutoSize", [](TKxLinearMeter& m) { m.SetKxAutoSize(false); }},
        {"LogScale", [](TKxLinearMeter& m) { m.SetLogScale(true); }},
        {"own font",
         [](TKxLinearMeter& m) {
             if (auto* h = qobject_cast<TKxHMeter*>(&m)) h->FontUnit()->SetSize(13);
             if (auto* v = qobject_cast<TKxVMeter*>(&m)) v->FontValue()->SetSize(13);
         }},
    };
    for (bool upright : {false, true})
        for (const auto& [what, touch] : cases) {
            SCOPED_TRACE(testing::Message() << upright << " " << what);
            auto m = makeMeter(upright);
            m->Loaded();
            m->PaintToSurface();
            m->SetRedrawNeeded(false);
            touch(*m);
            EXPECT_TRUE(m->RedrawNeeded());
        }
    TKxVMeter v;
    v.Loaded();
    v.PaintToSurface();
    v.SetRedrawNeeded(false);
    v.BevelValue()->SetWidth(4);
    EXPECT_TRUE(v.RedrawNeeded());
    EXPECT_EQ(v.ScaleSettings()->LogScale, false);
    v.SetLogScale(true);
    EXPECT_TRUE(v.ScaleSettings()->LogScale);
}

TEST_F(LinearMeterTest, SettingsSettersCopyAndIgnoreNull) {
    TKxVMeter v;
    v.SetBevelInner(nullptr);
    v.SetBevelOuter(nullptr);
    v.SetScaleSettings(nullptr);
    v.SetFontValue(nullptr);
    v.SetBevelValue(nullptr);
    TScaleSettings s;
    s.SetSteps(7);
    v.SetScaleSettings(&s);
    EXPECT_EQ(v.ScaleSettings()->Steps(), 7);
    TKxHMeter h;
    h.SetFontUnit(nullptr);
    TFont f;
    f.SetSize(17);
    h.SetFontUnit(&f);
    EXPECT_EQ(h.FontUnit()->Size(), 17);
}

// --- layout details --------------------------------------------------------------------------

struct Recorded {
    std::unique_ptr<TKxLinearMeter> meter;
    TRecordingCanvas rec;
    Recorded(bool upright, const std::function<void(TKxLinearMeter&)>& setup)
        : meter(makeMeter(upright)) {
        rec.CharWidth = 7;
        rec.LineHeight = 14;
        meter->SetCanvas(&rec);
        if (setup) setup(*meter);
        meter->Loaded();
        meter->PaintToSurface();
    }
    ~Recorded() { meter->SetCanvas(nullptr); }
    TCanvasCall text(const QString& t) const {
        for (const TCanvasCall& c : rec.CallsOf(QStringLiteral("TextOut")))
            if (c.Text == t) return c;
        return {};
    }
};

TEST_F(LinearMeterTest, NamesSitHalfTheOuterSpacingLow) {
    for (bool upright : {false, true}) {
        Recorded r(upright, nullptr);
        const int32_t h = r.meter->height();
        // Inside the outer bevel (8) the names take the last 28 rows; t = 5 div 2.
        EXPECT_EQ(r.text(QStringLiteral("SignalName2")).Args.at(1), h - 8 - 14 + 2) << upright;
        EXPECT_EQ(r.text(QStringLiteral("SignalName1")).Args.at(1), h - 8 - 28 + 2) << upright;
    }
}

TEST_F(LinearMeterTest, UnitLinePushesTheScaleDown) {
    Recorded r(false,
               [](TKxLinearMeter& m) { m.SetOptions(TKxHMeter::HMeterOption(TKxHMeter::opUnit)); });
    // Round(14 / 1.8) + 10 div 2 + 1 below the top.
    EXPECT_EQ(r.meter->ScaleRect().Top, 8 + 5 + 1);
    EXPECT_EQ(r.meter->PointerStrip().Top, 14 - 5 + 1);
}

TEST_F(LinearMeterTest, UprightScaleStartsBelowTheValueBox) {
    Recorded r(true, [](TKxLinearMeter& m) {
        m.SetOptions(V(TKxVMeter::opValue) | V(TKxVMeter::opBevelOuter));
    });
    auto* v = static_cast<TKxVMeter*>(r.meter.get());
    // The box's bevel (2) and the outer bevel's spacing (5) below the number.
    EXPECT_EQ(v->PointerArea().Top, v->ValueBox().Bottom + 2 + 5);
}

TEST_F(LinearMeterTest, UprightStripWithLabelsLeft) {
    Recorded r(true, [](TKxLinearMeter& m) { m.ScaleSettings()->SetPosLeftTop(true); });
    const TRect s = r.meter->PointerStrip(), sc = r.meter->ScaleRect();
    const int32_t half = r.meter->ScaleSettings()->StepLength / 2;
    EXPECT_EQ(s.Bottom, sc.Bottom + half + 1);
    EXPECT_EQ(s.Top, sc.Top - half);
    EXPECT_EQ(s.Left, sc.Right - half);
}

TEST_F(LinearMeterTest, AutoSizeFollowsAHeightChangeAlone) {
    for (bool upright : {false, true}) {
        Recorded r(upright, [](TKxLinearMeter& m) {
            m.SignalSettings()->SetName1(QStringLiteral("x"));
            m.SetOptions(0);
        });
        const int32_t w = r.meter->width(), h = r.meter->height();
        r.meter->SetOptions(upright ? V(TKxVMeter::opName1) : H(TKxHMeter::opName1));
        r.meter->CalcSize();
        EXPECT_EQ(r.meter->width(), w) << upright;
        EXPECT_EQ(r.meter->height(), h + 14) << upright;
    }
}

// More steps lengthen the scale: the horizontal meter widens, the upright one grows.
TEST_F(LinearMeterTest, AutoSizeFollowsTheScaleLength) {
    for (bool upright : {false, true}) {
        Recorded r(upright, [](TKxLinearMeter& m) { m.SetOptions(0); });
        const int32_t w = r.meter->width(), h = r.meter->height();
        r.meter->ScaleSettings()->SetSteps(10);
        r.meter->CalcSize();
        EXPECT_EQ(r.meter->width(), upright ? w : w + 147) << upright;
        EXPECT_EQ(r.meter->height(), upright ? h + 98 : h) << upright;
    }
}

TEST_F(LinearMeterTest, UprightBandsLieAlongTheBaseLine) {
    for (bool leftTop : {false, true}) {
        Recorded r(true,
                   [leftTop](TKxLinearMeter& m) { m.ScaleSettings()->SetPosLeftTop(leftTop); });
        const TRect sc = r.meter->ScaleRect();
        const int32_t band = r.meter->BandHeight();
        int bands = 0;
        for (const TCanvasCall& c : r.rec.CallsOf(QStringLiteral("Rectangle"))) {
            if (c.PenStyle != psClear) continue;
            ++bands;
            EXPECT_EQ(c.Args[0], leftTop ? sc.Right - band + 1 : sc.Left);
            EXPECT_EQ(c.Args[2], leftTop ? sc.Right : sc.Left + band);
        }
        EXPECT_EQ(bands, 3) << leftTop;
    }
}

// An overflow alone (limits far away) starts and stops the blinking.
TEST_F(LinearMeterTest, OverflowAloneBlinks) {
    for (bool upright : {false, true}) {
        auto m = makeMeter(upright);
        m->SetLimitUpper(1e6f);
        m->SetLimitLower(-1e6f);
        m->Loaded();
        m->PaintToSurface();
        m->SetValue(130.0f);
        EXPECT_TRUE(m->Blinking()) << upright;
        m->SetValue(50.0f);
        EXPECT_FALSE(m->Blinking()) << upright;
        m->SetValue(-5.0f);
        EXPECT_TRUE(m->Blinking()) << upright;
        ClearFlashList();
    }
}

TEST_F(LinearMeterTest, LabelsOnTopPutBandsAndMarkersBelowTheBaseLine) {
    Recorded r(false, [](TKxLinearMeter& m) { m.ScaleSettings()->SetPosLeftTop(true); });
    const TRect sc = r.meter->ScaleRect();
    const int32_t band = r.meter->BandHeight();
    int bands = 0;
    for (const TCanvasCall& c : r.rec.CallsOf(QStringLiteral("Rectangle")))
        if (c.PenStyle == psClear) {
            ++bands;
            EXPECT_EQ(c.Args[1], sc.Bottom - band + 2);
            EXPECT_EQ(c.Args[3], sc.Bottom + 1);
        }
    EXPECT_EQ(bands, 3);
    TKxHMeter h;
    h.ScaleSettings()->SetPosLeftTop(true);
    h.Loaded();
    h.SetValue(30.0f);
    h.PaintToSurface();
    const auto& m = h.Markers();
    const int32_t k = h.ScaleSettings()->StepLength / 2;
    const int32_t my = h.PointerStrip().Top - k - 3;
    EXPECT_EQ(m[0].Y, my);
    EXPECT_EQ(m[2].Y, my + h.ScaleSettings()->StepLength);
    EXPECT_EQ(m[1].X, m[0].X - k);
}

TEST_F(LinearMeterTest, UprightAutoSizeFollowsAWidthChangeAlone) {
    Recorded r(true, [](TKxLinearMeter& m) {
        m.SetOptions(V(TKxVMeter::opValue) | V(TKxVMeter::opUnit));
        m.SignalSettings()->SetValueUnit(QStringLiteral("x"));
    });
    const int32_t w = r.meter->width(), h = r.meter->height();
    r.meter->SignalSettings()->SetValueUnit(QString(20, QChar('x')));
    r.meter->CalcSize();
    EXPECT_EQ(r.meter->width(), w + 19 * 7);
    EXPECT_EQ(r.meter->height(), h);
}

TEST_F(LinearMeterTest, AnAreaUnderTwoPixelsEitherWayIsTooSmall) {
    const struct {
        bool upright;
        int32_t w, h;
        bool small;
    } cases[] = {{false, 300, 1, true}, {false, 1, 300, true}, {false, 300, 80, false},
                 {true, 300, 8, true},  {true, 1, 400, true},  {true, 120, 400, false}};
    for (const auto& c : cases) {
        auto m = makeMeter(c.upright);
        m->SetOptions(0);
        m->SetKxAutoSize(false);
        m->SetBounds(0, 0, c.w, c.h);
        m->Loaded();
        m->PaintToSurface();
        EXPECT_EQ(m->TooSmall(), c.small) << c.upright << " " << c.w << "x" << c.h;
    }
}

TEST_F(LinearMeterTest, BandHeightIsAtLeastOnePixel) {
    TKxHMeter h;
    h.Loaded();
    h.PaintToSurface();
    EXPECT_EQ(h.BandHeight(), h.ScaleSettings()->SubStepLength);
    h.SectorSettings()->SetWidthOffset(2);
    EXPECT_EQ(h.BandHeight(), h.ScaleSettings()->SubStepLength + 2);
    h.SectorSettings()->SetWidthOffset(-100);
    EXPECT_EQ(h.BandHeight(), 1);
}

// --- high-DPI --------------------------------------------------------------------------------

template <class T>
void expectReadingsMatchFullPaints(double ratio) {
    test::AtRatio<T> m(ratio);
    m.SetLimitUpper(1e6f);
    m.Loaded();
    m.PaintToSurface();
    EXPECT_EQ(m.SurfaceRatio(), ratio);
    for (const float v : {10.0f, 47.0f, 83.0f, 52.0f}) {
        m.SetValue(v);
        const QImage composed = m.Surface().Image().copy();
        m.Invalidate();
        m.PaintToSurface();
        EXPECT_TRUE(composed == m.Surface().Image()) << ratio << " " << v;
    }
}

TEST_F(LinearMeterTest, ReadingsComposeTheSamePixelsAsAFullPaintAtEveryRatio) {
    for (double ratio : {1.5, 2.0}) {
        expectReadingsMatchFullPaints<TKxHMeter>(ratio);
        expectReadingsMatchFullPaints<TKxVMeter>(ratio);
    }
}

}  // namespace
}  // namespace kx
