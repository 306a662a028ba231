// Navigation instrument costs: a compass reading beside a plain copy of the control's
// pixels, and an attitude change of the course/attitude indicator (the whole face moves),
// to be read against BM_MeterPaint.
#include <benchmark/benchmark.h>

#include <memory>

#include "kx/navigation/compass.h"
#include "kx/navigation/vcind.h"
#include "readingbench.h"

namespace kx {
namespace {

// The default compass (a needle over a fixed card) swinging a few degrees; its limits
// stay where they are.
KX_READING_BENCHMARKS(Compass, TKxCompass, false);

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
