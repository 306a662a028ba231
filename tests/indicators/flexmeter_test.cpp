// Flex meters: geometry of pointer and ticks, layouts from 1 x 1 to 4000 x 4000, the
// order in which parts give way, label spacing, bad readings, blinking and what a reading
// repaints.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <set>

#include "common/flash_util.h"
#include "kx/blink/flashtimer.h"
#include "kx/host/numeric.h"
#include "kx/indicators/flexmeter.h"

namespace kx {
namespace {

constexpr float kInf = std::numeric_limits<float>::infinity();

class FlexMeterTest : public ::testing::Test {
  protected:
    void TearDown() override {
        ClearFlashList();
        SetFlashTickCounter(0);
    }
};

std::unique_ptr<TKxFlexMeter> makeMeter(bool upright, int w, int h) {
    std::unique_ptr<TKxFlexMeter> m;
    if (upright)
        m = std::make_unique<TKxFlexVMeter>();
    else
        m = std::make_unique<TKxFlexHMeter>();
    m->SetBounds(0, 0, w, h);
    m->Loaded();
    return m;
}

bool inside(const TRect& outer, const TRect& r) {
    return r.Left >= outer.Left && r.Top >= outer.Top && r.Right <= outer.Right &&
           r.Bottom <= outer.Bottom;
}

int changedOutside(const QImage& a, const QImage& b, std::initializer_list<TRect> areas) {
    int n = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) {
            bool in = false;
            for (const TRect& r : areas)
                in = in || (x >= r.Left && x < r.Right && y >= r.Top && y < r.Bottom);
            if (!in && a.pixel(x, y) != b.pixel(x, y)) ++n;
        }
    return n;
}

// The pointer's tip (H: x, V: y) in control pixels.
int32_t tip(const TKxFlexMeter& m, bool upright) {
    return upright ? m.Pointer()[2].Y : m.Pointer()[2].X;
}

TColor pointerFill(const TKxFlexMeter& m) {
    const auto& p = m.Pointer();
    return m.Surface().Pixel((p[0].X + p[1].X + p[2].X) / 3, (p[0].Y + p[1].Y + p[2].Y) / 3);
}

// --- pointer geometry ------------------------------------------------------------------------

struct PosCase {
    float value;
    int32_t position;  // per mille along the scale, after the stops
};

class FlexPointer : public ::testing::TestWithParam<std::tuple<bool, PosCase>> {
  protected:
    void TearDown() override { ClearFlashList(); }
};

TEST_P(FlexPointer, TipStandsOnTheScaleAtThePosition) {
    const auto [upright, c] = GetParam();
    auto m = upright ? makeMeter(true, 150, 300) : makeMeter(false, 300, 150);
    m->SetLimitLower(-1e30f);  // no limit blink: the pointer keeps its colour
    m->SetLimitUpper(1e30f);
    m->PaintToSurface();
    m->SetValue(c.value);
    const int32_t s = m->ScaleStart(), e = m->ScaleEnd();
    const float f = float(double(e - s) / 1000.0);
    EXPECT_EQ(tip(*m, upright), s + Round(double(f) * c.position));
    // The tip touches the base line; the triangle is T deep and T wide.
    const auto& p = m->Pointer();
    const int32_t T = m->TickLength(), k = T / 2;
    if (!upright) {
        EXPECT_EQ(p[2].Y, m->BaseLine());
        EXPECT_EQ(p[0].Y, m->BaseLine() - T);
        EXPECT_EQ(p[1].X - p[0].X, 2 * k);
    } else {
        EXPECT_EQ(p[2].X, m->BaseLine());
        EXPECT_EQ(p[0].X, m->BaseLine() - T);
        EXPECT_EQ(p[1].Y - p[0].Y, 2 * k);
    }
    // The pointer is drawn in its colour where it stands inside the area.
    if (c.position >= 0 && c.position <= 1000) {
        EXPECT_EQ(pointerFill(*m), m->PointerColor());
    }
}

INSTANTIATE_TEST_SUITE_P(
    Positions, FlexPointer,
    ::testing::Combine(::testing::Bool(),
                       ::testing::Values(PosCase{0, 0}, PosCase{50, 500}, PosCase{100, 1000},
                                         PosCase{101, 1010}, PosCase{250, 1030}, PosCase{-2, -20},
                                         PosCase{-1e9f, -30}, PosCase{kInf, 1030},
                                         PosCase{-kInf, -30})));

TEST_F(FlexMeterTest, EndTicksStandAtTheScaleEndsAndStepsAreEven) {
    for (bool upright : {false, true}) {
        SCOPED_TRACE(upright);
        auto m = upright ? makeMeter(true, 150, 300) : makeMeter(false, 300, 150);
        m->PaintToSurface();
        std::vector<TKxFlexMeter::TTick> steps;
        for (const auto& t : m->Ticks())
            if (t.Step) steps.push_back(t);
        ASSERT_GE(steps.size(), 3u);
        EXPECT_EQ(steps.front().Pos, m->ScaleStart());
        EXPECT_EQ(steps.back().Pos, m->ScaleEnd());
        EXPECT_EQ(steps.front().Label, QStringLiteral("0"));
        EXPECT_EQ(steps.back().Label, QStringLiteral("100"));
        const double pitch = double(m->ScaleEnd() - m->ScaleStart()) / (steps.size() - 1);
        for (size_t i = 0; i < steps.size(); ++i)
            EXPECT_NEAR(steps[i].Pos, m->ScaleStart() + pitch * i, 0.5);
    }
}

// --- layouts at every size -------------------------------------------------------------------

struct LayoutCase {
    bool upright;
    int w, h;
    bool tooSmall, ticks, labels;
};

class FlexLayout : public ::testing::TestWithParam<LayoutCase> {
  protected:
    void TearDown() override { ClearFlashList(); }
};

TEST_P(FlexLayout, PartsFitTheControlAndLabelsNeverOverlap) {
    const LayoutCase& c = GetParam();
    auto m = makeMeter(c.upright, c.w, c.h);
    m->PaintToSurface();
    m->SetValue(75);
    EXPECT_EQ(m->TooSmall(), c.tooSmall);
    EXPECT_EQ(m->ShowsTicks(), c.ticks);
    EXPECT_EQ(m->LabelHeight() > 0, c.labels);
    const TRect client = m->ClientRect();
    EXPECT_TRUE(inside(client, m->HeaderRect()));
    if (m->TooSmall()) return;
    const TRect a = m->PointerArea();
    EXPECT_TRUE(inside(client, a));
    EXPECT_TRUE(inside(a, m->PointerStrip()));
    if (m->LabelHeight() > 0) {
        EXPECT_GE(m->LabelHeight(), TKxFlexMeter::kMinLabel);
    }
    int32_t last = INT32_MIN;
    for (const auto& t : m->Ticks()) {
        // Along: within the scale; labelled steps at least a label extent apart.
        const int32_t along = c.upright ? -t.Pos : t.Pos;
        EXPECT_GE(along, c.upright ? -m->ScaleStart() : m->ScaleStart());
        EXPECT_LE(along, c.upright ? -m->ScaleEnd() : m->ScaleEnd());
        if (!t.Labelled) continue;
        if (last != INT32_MIN) {
            EXPECT_GT(along - last, c.upright ? m->LabelHeight() : m->LabelWidth())
                << t.Label.toStdString();
        }
        last = along;
    }
    // Across: pointer, ticks and labels inside the area.
    const int32_t T = m->TickLength();
    const int64_t labelsEnd = int64_t(m->BaseLine()) + T + (m->LabelHeight() > 0 ? 1 : 0) +
                              (c.upright ? m->LabelWidth() : m->LabelHeight());
    if (m->ShowsTicks()) {
        EXPECT_LE(labelsEnd, c.upright ? a.Right : a.Bottom);
    }
}

INSTANTIATE_TEST_SUITE_P(Sizes, FlexLayout,
                         ::testing::Values(LayoutCase{false, 1, 1, true, false, false},
                                           LayoutCase{true, 1, 1, true, false, false},
                                           LayoutCase{false, 40, 20, true, false, false},
                                           LayoutCase{true, 20, 40, true, false, false},
                                           LayoutCase{false, 120, 60, false, true, false},
                                           LayoutCase{true, 60, 120, false, true, false},
                                           LayoutCase{false, 300, 150, false, true, true},
                                           LayoutCase{true, 150, 300, false, true, true},
                                           LayoutCase{false, 2000, 400, false, true, true},
                                           LayoutCase{true, 400, 2000, false, true, true},
                                           LayoutCase{false, 4000, 4000, false, true, true},
                                           LayoutCase{true, 4000, 4000, false, true, true},
                                           LayoutCase{false, 4000, 60, false, true, false},
                                           LayoutCase{false, 60, 4000, false, true, false},
                                           LayoutCase{true, 4000, 60, false, true, true}));

// As the band shrinks, the parts go in a fixed order and never come back at a smaller
// size: labels, then sub-ticks, then ticks, then everything.
TEST_F(FlexMeterTest, PartsGiveWayInOrderAsTheMeterShrinks) {
    for (bool upright : {false, true}) {
        SCOPED_TRACE(upright);
        int tier = 4;  // 4 labels, 3 sub-ticks, 2 ticks, 1 pointer only, 0 too small
        for (int across = 200; across >= 1; across -= 3) {
            auto m = upright ? makeMeter(true, across, 400) : makeMeter(false, 600, across);
            m->SetOptions(0);  // no bevels, names or header: the band is the control
            m->PaintToSurface();
            const int now = m->TooSmall()           ? 0
                            : !m->ShowsTicks()      ? 1
                            : !m->ShowsSubTicks()   ? 2
                            : m->LabelHeight() == 0 ? 3
                                                    : 4;
            EXPECT_LE(now, tier) << across;
            tier = now;
            if (across < TKxFlexMeter::kMinBand) {
                EXPECT_EQ(now, 0) << across;
            }
            if (across >= TKxFlexMeter::kSubTickBand) {
                EXPECT_GE(now, 3) << across;
            }
        }
        EXPECT_EQ(tier, 0);
    }
}

TEST_F(FlexMeterTest, HeaderAndNamesYieldToTheInstrument) {
    struct Case {
        int h;
        bool value, unit, names;
    };
    for (const Case c : {Case{150, true, true, true}, Case{90, false, false, true},
                         Case{60, false, false, false}}) {
        auto m = makeMeter(false, 300, c.h);
        m->PaintToSurface();
        EXPECT_EQ(m->ShowsValue(), c.value) << c.h;
        EXPECT_EQ(m->ShowsUnit(), c.unit) << c.h;
        EXPECT_EQ(m->ShowsNames(), c.names) << c.h;
        EXPECT_FALSE(m->TooSmall()) << c.h;
    }
}

// --- steps -----------------------------------------------------------------------------------

struct StepCase {
    float from, to;
    float subStepAt;
    int32_t stepMulti;
    bool log;
    double step;
    int32_t labelEvery;
};

class FlexSteps : public ::testing::TestWithParam<StepCase> {
  protected:
    void TearDown() override { ClearFlashList(); }
};

TEST_P(FlexSteps, StepsFollowTheSeriesOrTheScaleSettings) {
    const StepCase& c = GetParam();
    auto m = makeMeter(false, 600, 150);
    if (c.log) m->SetLogScale(true);
    m->SignalSettings()->SetValueTo(c.to);
    m->SignalSettings()->SetValueFrom(c.from);
    if (c.subStepAt > 0) m->Scale()->SetSubStepAt(c.subStepAt);
    m->Scale()->SetStepMulti(c.stepMulti);
    m->PaintToSurface();
    EXPECT_DOUBLE_EQ(m->StepValue(), c.step);
    EXPECT_EQ(m->LabelEvery(), c.labelEvery);
    // Sub-ticks stand between the steps, never on them.
    std::set<int32_t> stepsAt;
    for (const auto& t : m->Ticks())
        if (t.Step) stepsAt.insert(t.Pos);
    for (const auto& t : m->Ticks())
        if (!t.Step) {
            EXPECT_EQ(stepsAt.count(t.Pos), 0u) << t.Pos;
        }
}

INSTANTIATE_TEST_SUITE_P(
    Scales, FlexSteps,
    ::testing::Values(StepCase{0, 100, 0, 1, false, 10, 1}, StepCase{-1, 1, 0, 1, false, 0.2, 1},
                      StepCase{-273.15f, 1234.5f, 0, 1, false, 200, 1},
                      StepCase{0, 1e6f, 0, 1, false, 500000, 1},
                      StepCase{0, 100, 5, 2, false, 10, 1}, StepCase{0, 100, 1, 2, false, 2, 5},
                      StepCase{0, 100, 0.001f, 1, false, 10, 1},  // too fine: automatic
                      StepCase{0.001f, 1e6f, 0, 1, true, 10, 2},
                      StepCase{1e-30f, 1e30f, 0, 1, true, 10, 20}));

TEST_F(FlexMeterTest, SubTicksNeedSubStepsVisPixels) {
    auto m = makeMeter(false, 600, 150);
    m->PaintToSurface();
    const auto count = [&] {
        return std::count_if(m->Ticks().begin(), m->Ticks().end(),
                             [](const auto& t) { return !t.Step; });
    };
    ASSERT_GT(count(), 0);
    m->Scale()->SetSubStepsVis(1000);
    m->PaintToSurface();
    EXPECT_EQ(count(), 0);
}

// --- readings --------------------------------------------------------------------------------

TEST_F(FlexMeterTest, BadReadingsDrawWithinTheArea) {
    for (bool upright : {false, true}) {
        for (QSize size : {QSize(1, 1), QSize(40, 20), QSize(300, 150), QSize(4000, 400)}) {
            auto m = makeMeter(upright, size.width(), size.height());
            m->PaintToSurface();
            for (float v : {std::nanf(""), kInf, -kInf, 1e38f, -1e38f, 50.0f}) {
                m->SetValue(v);
                if (!m->TooSmall()) {
                    const auto& p = m->Pointer();
                    for (const auto& q : p)
                        EXPECT_TRUE(std::abs(q.X) < 100000);
                }
            }
            EXPECT_EQ(m->Value(), 50.0f);
        }
    }
}

TEST_F(FlexMeterTest, NaNIsIgnoredAndInfinityStopsAtTheEnd) {
    auto m = makeMeter(false, 300, 150);
    m->PaintToSurface();
    m->SetValue(20);
    const QImage before = m->Surface().Image().copy();
    m->SetValue(std::nanf(""));
    EXPECT_EQ(m->Value(), 20.0f);
    EXPECT_EQ(before, m->Surface().Image());
    m->SetValue(kInf);
    EXPECT_EQ(m->PointerPosition(), 1030);
    EXPECT_TRUE(m->Blinking());
}

TEST_F(FlexMeterTest, AReadingRepaintsOnlyThePointerAreaAndTheNumber) {
    for (bool upright : {false, true}) {
        SCOPED_TRACE(upright);
        auto m = upright ? makeMeter(true, 150, 300) : makeMeter(false, 300, 150);
        m->PaintToSurface();
        const QImage before = m->Surface().Image().copy();
        m->SetValue(20);
        EXPECT_NE(before, m->Surface().Image());
        EXPECT_EQ(changedOutside(before, m->Surface().Image(),
                                 {m->PointerArea(), m->ValInd()->TextRect()}),
                  0);
    }
}

TEST_F(FlexMeterTest, ComposedReadingsEqualAFullRepaint) {
    for (bool upright : {false, true}) {
        auto m = upright ? makeMeter(true, 150, 300) : makeMeter(false, 300, 150);
        m->PaintToSurface();
        for (float v : {30.0f, 80.0f, 10.0f, 120.0f, 55.0f}) {
            m->SetValue(v);
            ClearFlashList();
            const QImage composed = m->Surface().Image().copy();
            m->PaintToSurface();
            EXPECT_TRUE(composed == m->Surface().Image()) << upright << " " << v;
        }
    }
}

TEST_F(FlexMeterTest, OverflowBlinksYellowAndRedAndStopsInThePointerColour) {
    for (bool upright : {false, true}) {
        SCOPED_TRACE(upright);
        auto m = upright ? makeMeter(true, 150, 300) : makeMeter(false, 300, 150);
        m->PaintToSurface();
        m->SetValue(130.0f);
        EXPECT_TRUE(m->Blinking());
        EXPECT_NE(test::Subscription(m.get()), nullptr);
        SetFlashTickCounter(15);
        RunFlashTick();
        EXPECT_EQ(pointerFill(*m), clRed);
        SetFlashTickCounter(31);
        RunFlashTick();
        EXPECT_EQ(pointerFill(*m), clYellow);
        m->SetValue(50.0f);
        EXPECT_FALSE(m->Blinking());
        EXPECT_EQ(test::Subscription(m.get()), nullptr);
        EXPECT_EQ(pointerFill(*m), m->PointerColor());
    }
}

TEST_F(FlexMeterTest, NothingBlinksAtDesignTime) {
    auto m = makeMeter(false, 300, 150);
    m->SetDesigning(true);
    m->PaintToSurface();
    m->SetValue(130.0f);
    EXPECT_FALSE(m->Blinking());
    EXPECT_EQ(test::Subscription(m.get()), nullptr);
}

TEST_F(FlexMeterTest, MarkersStandAtTheRecordedExtremes) {
    auto m = makeMeter(false, 300, 150);
    m->MinMax()->SetUseSectorCol(false);
    m->PaintToSurface();
    m->SetValue(20);
    m->SetValue(80);
    m->SetValue(50);
    const float f = float(double(m->ScaleEnd() - m->ScaleStart()) / 1000.0);
    const auto& mk = m->Markers();
    EXPECT_EQ(mk[0].X, m->ScaleStart() + Round(double(f) * 200));
    EXPECT_EQ(mk[3].X, m->ScaleStart() + Round(double(f) * 800));
    // The minimum's body lies towards the range start, the maximum's towards the end.
    EXPECT_LT(mk[2].X, mk[0].X);
    EXPECT_GT(mk[5].X, mk[3].X);
    EXPECT_EQ(m->Surface().Pixel(mk[0].X - 2, mk[2].Y - 2), m->MinMax()->MinColor());
}

TEST_F(FlexMeterTest, Defaults) {
    TKxFlexHMeter h;
    EXPECT_EQ(h.width(), 300);
    EXPECT_EQ(h.height(), 150);
    EXPECT_EQ(h.sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    TKxFlexVMeter v;
    EXPECT_EQ(v.width(), 150);
    EXPECT_EQ(v.height(), 300);
    EXPECT_EQ(v.sizePolicy().verticalPolicy(), QSizePolicy::Expanding);
    EXPECT_EQ(h.Options(), TKxFlexMeter::kAllFlexOptions);
    EXPECT_EQ(h.PointerColor(), clLime);
    EXPECT_EQ(h.Scale()->SubStepsVis(), 4);
    EXPECT_EQ(h.Scale()->Font()->Size(), 36);
    EXPECT_EQ(h.BevelInner()->BevelLine(), blInner);
    EXPECT_EQ(h.BevelOuter()->BevelLine(), blOuter);
}

}  // namespace
}  // namespace kx
