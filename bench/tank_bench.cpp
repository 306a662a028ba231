// Tank costs: a reading on a default tank beside a plain copy of the control's pixels.
#include <benchmark/benchmark.h>

#include <memory>

#include "kx/blink/flashtimer.h"
#include "kx/indicators/tank.h"

namespace kx {
namespace {

std::unique_ptr<TKxTank> paintedTank() {
    auto t = std::make_unique<TKxTank>();
    t->SetLimitUpper(1000.0f);  // readings stay clear of alarms: no blinking colours
    t->SetLimitLower(-1000.0f);
    t->Loaded();
    t->PaintToSurface();
    return t;
}

void BM_TankReading(benchmark::State& state) {
    auto t = paintedTank();
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
BENCHMARK(BM_TankReading);

void BM_TankCopy(benchmark::State& state) {
    const auto t = paintedTank();
    TBitmap from(t->width(), t->height()), to(t->width(), t->height());
    for (auto _ : state) {
        to.Canvas().Draw(0, 0, from);
        benchmark::DoNotOptimize(to.Image().constBits());
    }
}
BENCHMARK(BM_TankCopy);

}  // namespace
}  // namespace kx
