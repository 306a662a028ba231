#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

#include "meterpresets.h"
#include "processsimulator.h"

namespace kxgallery {
namespace {

constexpr double kDt = 0.05;

TEST(ProcessSignal, SameSeedGivesSameReadingsOtherSeedDiffers) {
    const ProcessProfile p{0.5, {{{0.2, 7.0, 0.3}, {0.1, 3.0, 1.0}, {0.05, 1.0, 2.0}}}, 0.02};
    ProcessSignal a(p, 7, 12.5), b(p, 7, 12.5), c(p, 8, 12.5);
    bool differs = false;
    for (int i = 0; i < 500; ++i) {
        const double fa = a.Advance(kDt);
        ASSERT_EQ(fa, b.Advance(kDt)) << "step " << i;
        differs = differs || fa != c.Advance(kDt);
    }
    EXPECT_TRUE(differs);
}

TEST(ProcessSignal, StartTimeShiftsThePhaseOfTheWaves) {
    // Without noise a signal started at t0 reads what one started at 0 reads at t0.
    const ProcessProfile p{0.4, {{{0.3, 8.0, 0.0}, {}, {}}}, 0.0};
    ProcessSignal late(p, 1, 2.0), early(p, 1, 0.0);
    for (int i = 0; i < 40; ++i)
        early.Advance(kDt);
    EXPECT_NEAR(late.Fraction(), early.Fraction(), 1e-9);
    EXPECT_NEAR(late.Fraction(), 0.4 + 0.3 * std::sin(2.0 * std::numbers::pi * 2.0 / 8.0), 1e-9);
}

TEST(ProcessSignal, BadStepsDoNotMoveTime) {
    const ProcessProfile p{0.5, {{{0.2, 4.0, 0.0}, {}, {}}}, 0.0};
    ProcessSignal s(p, 3, 1.0);
    for (double dt : {-1.0, 0.0, std::numeric_limits<double>::quiet_NaN(),
                      std::numeric_limits<double>::infinity()}) {
        s.Advance(dt);
        EXPECT_EQ(s.Time(), 1.0) << dt;
        EXPECT_TRUE(std::isfinite(s.Fraction()));
    }
    ProcessSignal nanStart(p, 3, std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(nanStart.Time(), 0.0);
}

// Every gallery process must move smoothly, leave the range now and then (so that
// overflow shows) but spend most of its time inside it.
class GalleryProcess : public ::testing::TestWithParam<size_t> {};

TEST_P(GalleryProcess, IsSmoothCrossesTheLimitsAndLeavesTheRangeNowAndThen) {
    const MeterPreset& preset = GalleryMeters().at(GetParam());
    ProcessSignal s(preset.process, 99, 0.0);
    constexpr int kSteps = 20 * 60 * 10;  // ten minutes at 20 steps per second
    const auto fractionOf = [&](double v) {
        const double from = preset.from, to = preset.to;
        if (preset.logarithmic) return std::log(v / from) / std::log(to / from);
        return (v - from) / (to - from);
    };
    const double lowerLimit = fractionOf(preset.limitLower);
    const double upperLimit = fractionOf(preset.limitUpper);
    int outside = 0, belowLimit = 0, aboveLimit = 0;
    double previous = s.Fraction(), largestStep = 0.0, lowest = 1.0, highest = 0.0;
    for (int i = 0; i < kSteps; ++i) {
        const double f = s.Advance(kDt);
        largestStep = std::max(largestStep, std::abs(f - previous));
        lowest = std::min(lowest, f);
        highest = std::max(highest, f);
        outside += (f < 0.0 || f > 1.0) ? 1 : 0;
        belowLimit += f < lowerLimit ? 1 : 0;
        aboveLimit += f > upperLimit ? 1 : 0;
        previous = f;
    }
    EXPECT_LT(largestStep, 0.05) << preset.name1.toStdString();
    EXPECT_GT(outside, 0) << preset.name1.toStdString();
    EXPECT_LT(outside, kSteps / 5) << preset.name1.toStdString();
    EXPECT_GT(belowLimit, 0) << preset.name1.toStdString();
    EXPECT_GT(aboveLimit, 0) << preset.name1.toStdString();
    EXPECT_GT(lowest, -0.25) << preset.name1.toStdString();
    EXPECT_LT(highest, 1.25) << preset.name1.toStdString();
}

INSTANTIATE_TEST_SUITE_P(AllMeters, GalleryProcess,
                         ::testing::Range(size_t(0), GalleryMeters().size()));

TEST(ValueAt, MapsFractionsOntoLinearAndLogarithmicRanges) {
    struct Case {
        double fraction, from, to;
        bool log;
        double expected;
    };
    const Case cases[] = {
        {0.0, 0.0, 16.0, false, 0.0},     {1.0, 0.0, 16.0, false, 16.0},
        {0.25, 0.0, 16.0, false, 4.0},    {-0.1, 0.0, 250.0, false, -25.0},
        {1.1, 0.0, 250.0, false, 275.0},  {0.5, 1.0, 10000.0, true, 100.0},
        {0.25, 1.0, 10000.0, true, 10.0}, {-0.25, 1.0, 10000.0, true, 0.1},
        {1.25, 1.0, 10000.0, true, 1e5},  {0.5, 0.0, 100.0, true, 50.0},  // start 0: linear
        {0.5, -10.0, 10.0, true, 0.0},                                    // negative: linear
    };
    for (const Case& c : cases)
        EXPECT_NEAR(ValueAt(c.fraction, c.from, c.to, c.log), c.expected,
                    1e-9 * std::max(1.0, std::abs(c.expected)))
            << c.fraction << " of " << c.from << ".." << c.to << (c.log ? " log" : "");
}

}  // namespace
}  // namespace kxgallery
