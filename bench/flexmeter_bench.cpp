// Flex meter costs: a reading on a default horizontal flex meter beside a plain copy of
// the control's pixels.
#include <benchmark/benchmark.h>

#include <memory>

#include "kx/blink/flashtimer.h"
#include "kx/indicators/flexmeter.h"

namespace kx {
namespace {

std::unique_ptr<TKxFlexHMeter> paintedMeter() {
    auto m = std::make_unique<TKxFlexHMeter>();
    m->SetLimitUpper(1000.0f);  // readings stay clear of alarms: no blinking colours
    m->SetLimitLower(-1000.0f);
    m->Loaded();
    m->PaintToSurface();
    return m;
}

void BM_FlexHMeterReading(benchmark::State& state) {
    auto m = paintedMeter();
    float v = 40.0f;
    for (int i = 0; i < 100; ++i)
        m->SetValue(v += 0.05f);  // warm-up
    for (auto _ : state) {
        v = v >= 44.0f ? 40.0f : v + 0.7f;
        m->SetValue(v);
        benchmark::DoNotOptimize(m->Surface().Image().constBits());
    }
    state.counters["width"] = m->width();
    state.counters["height"] = m->height();
    ClearFlashList();
}
BENCHMARK(BM_FlexHMeterReading);

void BM_FlexHMeterCopy(benchmark::State& state) {
    const auto m = paintedMeter();
    TBitmap from(m->width(), m->height()), to(m->width(), m->height());
    for (auto _ : state) {
        to.Canvas().Draw(0, 0, from);
        benchmark::DoNotOptimize(to.Image().constBits());
    }
}
BENCHMARK(BM_FlexHMeterCopy);

}  // namespace
}  // namespace kx
