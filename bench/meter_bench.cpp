// Round meter costs: a reading, a full paint, and a panel of 100 meters at 50 Hz,
// beside a plain copy of the same pixels.
#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>
#include <vector>

#include "kx/blink/flashtimer.h"
#include "kx/indicators/rmeter.h"

namespace kx {
namespace {

std::unique_ptr<TKx270Meter> paintedMeter() {
    auto m = std::make_unique<TKx270Meter>();
    m->SetKxAutoSize(false);    // exactly 252 x 252, the meter's initial size
    m->SetLimitUpper(1000.0f);  // readings stay clear of alarms: no blinking colours
    m->SetLimitLower(-1000.0f);
    m->Loaded();
    m->PaintToSurface();
    return m;
}

void BM_MeterReading(benchmark::State& state) {
    auto m = paintedMeter();
    float v = 40.0f;
    for (auto _ : state) {
        v = v >= 60.0f ? 40.0f : v + 0.7f;
        m->SetValue(v);
        benchmark::DoNotOptimize(m->Surface().Image().constBits());
    }
    state.counters["width"] = m->width();
    state.counters["height"] = m->height();
}
BENCHMARK(BM_MeterReading);

void BM_MeterPaint(benchmark::State& state) {
    auto m = paintedMeter();
    for (auto _ : state) {
        m->Invalidate();
        m->PaintToSurface();
        benchmark::DoNotOptimize(m->Surface().Image().constBits());
    }
}
BENCHMARK(BM_MeterPaint);

void BM_Copy252(benchmark::State& state) {
    TBitmap from(252, 252), to(252, 252);
    for (auto _ : state) {
        to.Canvas().Draw(0, 0, from);
        benchmark::DoNotOptimize(to.Image().constBits());
    }
}
BENCHMARK(BM_Copy252);

// One simulated second of a 100-meter panel: every meter gets a new reading 50 times.
void BM_Panel100(benchmark::State& state) {
    std::vector<std::unique_ptr<TKx270Meter>> meters;
    for (int i = 0; i < 100; ++i)
        meters.push_back(paintedMeter());
    int64_t tick = 0;
    for (auto _ : state) {
        for (int round = 0; round < 50; ++round, ++tick) {
            for (size_t i = 0; i < meters.size(); ++i) {
                const double t = double(tick) * 0.02 + double(i) * 0.37;
                meters[i]->SetValue(float(50.0 + 35.0 * std::sin(t * 0.8)));
            }
        }
    }
    ClearFlashList();
}
BENCHMARK(BM_Panel100)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace kx
