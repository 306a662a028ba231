// Bar costs: a reading on a default upright bar, with and without its value text, beside
// a plain copy of the control's pixels.
#include <benchmark/benchmark.h>

#include <memory>

#include "kx/blink/flashtimer.h"
#include "kx/indicators/barinstrument.h"

namespace kx {
namespace {

std::unique_ptr<TKxVBar> paintedBar(bool valueText) {
    auto b = std::make_unique<TKxVBar>();
    if (!valueText) b->SetOptions(TKxVBar::kDefaultOptions & ~TKxVBar::BarOption(TKxVBar::opValue));
    b->SetLimitUpper(1000.0f);
    b->SetLimitLower(-1000.0f);
    b->Loaded();
    b->PaintToSurface();
    return b;
}

// Readings move between two values a few per cent apart, after a warm-up.
void readings(benchmark::State& state, TKxVBar& b) {
    float v = 40.0f;
    for (int i = 0; i < 100; ++i)
        b.SetValue(v += 0.05f);
    for (auto _ : state) {
        v = v >= 44.0f ? 40.0f : v + 0.7f;
        b.SetValue(v);
        benchmark::DoNotOptimize(b.Surface().Image().constBits());
    }
    state.counters["width"] = b.width();
    state.counters["height"] = b.height();
    ClearFlashList();
}

void BM_BarReading(benchmark::State& state) {
    auto b = paintedBar(false);
    readings(state, *b);
}
BENCHMARK(BM_BarReading);

void BM_BarReadingText(benchmark::State& state) {
    auto b = paintedBar(true);
    readings(state, *b);
}
BENCHMARK(BM_BarReadingText);

void BM_BarCopy(benchmark::State& state) {
    const auto b = paintedBar(false);
    TBitmap from(b->width(), b->height()), to(b->width(), b->height());
    for (auto _ : state) {
        to.Canvas().Draw(0, 0, from);
        benchmark::DoNotOptimize(to.Image().constBits());
    }
}
BENCHMARK(BM_BarCopy);

}  // namespace
}  // namespace kx
