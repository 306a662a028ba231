// The simulator's waves, its seeded random walk, and writes to its signals.
#include <gtest/gtest.h>

#include <cmath>

#include "simulatorsource.h"

namespace kx::panel {
namespace {

SimSignal signal(Wave w, double period, double amplitude, double offset) {
    SimSignal s;
    s.Shape = w;
    s.PeriodS = period;
    s.Amplitude = amplitude;
    s.Offset = offset;
    return s;
}

TEST(Simulator, WavesOverOnePeriod) {
    struct Case {
        SimSignal s;
        double t, expected;
    };
    const Case cases[] = {
        {signal(Wave::Sine, 4, 2, 10), 0, 10},     {signal(Wave::Sine, 4, 2, 10), 1, 12},
        {signal(Wave::Sine, 4, 2, 10), 3, 8},      {signal(Wave::Sine, 4, 2, 10), 5, 12},
        {signal(Wave::Ramp, 10, 8, 1), 0, 1},      {signal(Wave::Ramp, 10, 8, 1), 2.5, 5},
        {signal(Wave::Ramp, 10, 8, 1), 5, 9},      {signal(Wave::Ramp, 10, 8, 1), 7.5, 5},
        {signal(Wave::Square, 2, 3, 1), 0, 4},     {signal(Wave::Square, 2, 3, 1), 0.99, 4},
        {signal(Wave::Square, 2, 3, 1), 1, -2},    {signal(Wave::Square, 2, 3, 1), 2, 4},
        {signal(Wave::Constant, 2, 3, 7), 1.3, 7}, {signal(Wave::RandomWalk, 2, 3, 7), 1.3, 7},
    };
    for (const Case& c : cases)
        EXPECT_NEAR(SimulatorSource::WaveAt(c.s, c.t), c.expected, 1e-12)
            << int(c.s.Shape) << " " << c.t;
}

QList<double> run(const SimSignal& s, int samples) {
    SimulatorSource sim("sim", 10, {{"w", s}});
    QList<double> values;
    QObject::connect(&sim, &Source::valueArrived,
                     [&](const QString&, const SourceValue& v) { values << v.Number; });
    for (int i = 0; i < samples; ++i)
        sim.Sample();
    return values;
}

TEST(Simulator, RandomWalkIsSeededAndBounded) {
    SimSignal s = signal(Wave::RandomWalk, 1, 5, 50);
    s.Step = 2;
    s.Seed = 42;
    const QList<double> a = run(s, 2000), b = run(s, 2000);
    EXPECT_EQ(a, b);
    s.Seed = 43;
    EXPECT_NE(run(s, 2000), a);
    double lo = 1e9, hi = -1e9;
    for (int i = 0; i < a.size(); ++i) {
        lo = std::min(lo, a[i]);
        hi = std::max(hi, a[i]);
        if (i > 0) {
            EXPECT_LE(std::fabs(a[i] - a[i - 1]), 2.0);
        }
    }
    EXPECT_GE(lo, 45.0);
    EXPECT_LE(hi, 55.0);
    EXPECT_LT(lo, 47.0);  // it does wander
    EXPECT_GT(hi, 53.0);
}

TEST(Simulator, SamplesStandForTheirTime) {
    // At 10 Hz the n-th sample is t = n / 10 s, whatever the timer did.
    const QList<double> v = run(signal(Wave::Ramp, 2, 10, 0), 11);
    ASSERT_EQ(v.size(), 11);
    EXPECT_DOUBLE_EQ(v[0], 0.0);
    EXPECT_DOUBLE_EQ(v[5], 5.0);
    EXPECT_DOUBLE_EQ(v[10], 10.0);  // the top of the ramp
}

TEST(Simulator, WritesMoveTheOffset) {
    SimulatorSource sim("sim", 10, {{"sp", signal(Wave::Constant, 1, 0, 3)}});
    double last = 0;
    QObject::connect(&sim, &Source::valueArrived,
                     [&](const QString&, const SourceValue& v) { last = v.Number; });
    EXPECT_TRUE(sim.Write("sp", SourceValue::FromNumber(60)));
    sim.Sample();
    EXPECT_EQ(last, 60.0);
    EXPECT_FALSE(sim.Write("nope", SourceValue::FromNumber(1)));
    EXPECT_FALSE(sim.Write("sp", SourceValue::FromNumber(std::nan(""))));
    EXPECT_FALSE(sim.Write("sp", SourceValue::FromWords({1})));
}

TEST(Simulator, ConnectedWhileRunning) {
    SimulatorSource sim("sim", 1000, {{"a", signal(Wave::Sine, 1, 1, 0)}});
    EXPECT_EQ(sim.ConnectionState(), Source::State::Stopped);
    sim.Start();
    EXPECT_EQ(sim.ConnectionState(), Source::State::Connected);
    EXPECT_TRUE(sim.HasData());  // the first sample comes at once
    sim.Stop();
    EXPECT_EQ(sim.ConnectionState(), Source::State::Stopped);
}

}  // namespace
}  // namespace kx::panel
