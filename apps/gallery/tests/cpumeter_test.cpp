#include <gtest/gtest.h>

#include "cpumeter.h"

namespace kxgallery {
namespace {

TEST(CpuMeter, AveragesTheLoadOverItsWindow) {
    double cpu = 0.0, wall = 100.0;
    CpuMeter m(
        3.0, [&] { return cpu; }, [&] { return wall; });
    EXPECT_EQ(m.Sample(), 0.0);  // one sample: no interval yet
    const struct {
        double cpuStep, wallStep, expected;
    } steps[] = {
        {0.1, 1.0, 10.0},               // 0.1 s of CPU in 1 s
        {0.3, 1.0, 20.0},               // 0.4 in 2
        {0.2, 1.0, 20.0},               // 0.6 in 3
        {0.0, 1.0, 50.0 / 3.0},         // the window slides: 0.5 in 3
        {0.0, 1.0, 0.2 / 3.0 * 100.0},  // 0.2 in 3
        {0.0, 0.0, 0.2 / 3.0 * 100.0},  // no time passed: the same window
        {1.5, 1.0, (1.5 + 0.0) / 3.0 * 100.0},
    };
    for (const auto& s : steps) {
        cpu += s.cpuStep;
        wall += s.wallStep;
        EXPECT_NEAR(m.Sample(), s.expected, 1e-9) << cpu << " " << wall;
    }
}

TEST(CpuMeter, NeverNegativeAndReadsAsText) {
    double cpu = 5.0, wall = 0.0;
    CpuMeter m(
        3.0, [&] { return cpu; }, [&] { return wall; });
    m.Sample();
    cpu = 4.0;  // a clock that steps back counts as idle
    wall = 1.0;
    EXPECT_EQ(m.Sample(), 0.0);
    EXPECT_EQ(CpuMeter::Text(4.24), QStringLiteral("CPU 4.2 %"));
    EXPECT_EQ(CpuMeter::Text(0.0), QStringLiteral("CPU 0.0 %"));
    // The default clocks run.
    CpuMeter real;
    real.Sample();
    EXPECT_GE(real.Sample(), 0.0);
}

}  // namespace
}  // namespace kxgallery
