// Thermometer costs: a reading on a default thermometer beside a plain copy of the
// control's pixels.
#include <benchmark/benchmark.h>

#include <memory>

#include "kx/blink/flashtimer.h"
#include "kx/indicators/thermometer.h"

namespace kx {
namespace {

std::unique_ptr<TKxThermometer> paintedThermometer() {
    auto t = std::make_unique<TKxThermometer>();
    t->SetLimitUpper(1000.0f);  // readings stay clear of alarms: no blinking colours
    t->SetLimitLower(-1000.0f);
    t->Loaded();
    t->PaintToSurface();
    return t;
}

void BM_ThermometerReading(benchmark::State& state) {
    auto t = paintedThermometer();
    float v = 40.0f;
    for (int i = 0; i < 100; ++i)
        t->SetValue(v += 0.05f);  // warm-up
    for (auto _ : state) {
        v = v >= 44.0f ? 40.0f : v + 0.7f;
        t->SetValue(v);
        benchmark::DoNotOptimize(t->Surface().Image().constBits());
    }
    state.counters["width"] = t->width();
    state.counters["height"] = t->height();
    ClearFlashList();
}
BENCHMARK(BM_ThermometerReading);

void BM_ThermometerCopy(benchmark::State& state) {
    const auto t = paintedThermometer();
    TBitmap from(t->width(), t->height()), to(t->width(), t->height());
    for (auto _ : state) {
        to.Canvas().Draw(0, 0, from);
        benchmark::DoNotOptimize(to.Image().constBits());
    }
}
BENCHMARK(BM_ThermometerCopy);

}  // namespace
}  // namespace kx
