// Navigation instrument costs: a compass reading beside a plain copy of the control's
// pixels, and an attitude change of the course/attitude indicator (the whole face moves),
// to be read against BM_MeterPaint.
#include <benchmark/benchmark.h>

#include <memory>

#include "kx/navigation/compass.h"
#include "kx/navigation/vcind.h"

namespace kx {
namespace {

std::unique_ptr<TKxCompass> paintedCompass() {
    auto c = std::make_unique<TKxCompass>();
    c->Loaded();
    c->PaintToSurface();
    return c;
}

// The default compass (a needle over a fixed card) swinging a few degrees.
void BM_CompassReading(benchmark::State& state) {
    auto c = paintedCompass();
    float v = 40.0f;
    for (int i = 0; i < 100; ++i)
        c->SetValue(v += 0.05f);  // warm-up
    for (auto _ : state) {
        v = v >= 44.0f ? 40.0f : v + 0.7f;
        c->SetValue(v);
        benchmark::DoNotOptimize(c->Surface().Image().constBits());
    }
    state.counters["width"] = c->width();
    state.counters["height"] = c->height();
}
BENCHMARK(BM_CompassReading);

void BM_CompassCopy(benchmark::State& state) {
    const auto c = paintedCompass();
    TBitmap from(c->width(), c->height()), to(c->width(), c->height());
    for (auto _ : state) {
        to.Canvas().Draw(0, 0, from);
        benchmark::DoNotOptimize(to.Image().constBits());
    }
}
BENCHMARK(BM_CompassCopy);

// An attitude change of a default indicator moves the whole face: sky and ground, the
// ladder, the roll pointer. Two attitudes a few degrees apart alternate, so that every
// iteration redraws.
void BM_VCIndAttitude(benchmark::State& state) {
    auto v = std::make_unique<TKxVCInd>();
    v->Loaded();
    v->PaintToSurface();
    for (int i = 0; i < 10; ++i)  // warm-up: caches and glyphs
        v->SetAttitude(i % 2 ? 4.0f : 7.5f, i % 2 ? -10.0f : -14.0f);
    bool odd = false;
    for (auto _ : state) {
        odd = !odd;
        v->SetAttitude(odd ? 4.0f : 7.5f, odd ? -10.0f : -14.0f);
        benchmark::DoNotOptimize(v->Surface().Image().constBits());
    }
    state.counters["width"] = v->width();
    state.counters["height"] = v->height();
}
BENCHMARK(BM_VCIndAttitude);

}  // namespace
}  // namespace kx
