// Gradient fills (drawn in the static background) and needle drawing (every reading).
#include <benchmark/benchmark.h>

#include "kx/drawing/arrows.h"
#include "kx/drawing/gradient.h"
#include "kx/host/bitmap.h"

namespace {

void BM_GradFill(benchmark::State& state) {
    const auto style = static_cast<kx::TGradientStyle>(state.range(0));
    const int32_t size = static_cast<int32_t>(state.range(1));
    kx::TBitmap target(size, size);
    for (auto _ : state) {
        kx::KxGradFill(target.Canvas(), {0, 0, size, size}, kx::RGB(226, 226, 226), kx::clBlack,
                       style);
        benchmark::DoNotOptimize(target.Image().constBits());
    }
    state.SetItemsProcessed(state.iterations() * size * size);
}
BENCHMARK(BM_GradFill)
    ->ArgNames({"style", "size"})
    ->Args({kx::gsHorizontal1, 200})
    ->Args({kx::gsElliptic1, 200})
    ->Args({kx::gsDiamond2, 200})
    ->Args({kx::gsTopLeft, 200})
    ->Args({kx::gsTopLeft, 30});

void BM_ArrowDraw(benchmark::State& state) {
    kx::TBitmap target(200, 200);
    kx::TArrowPoints field{}, work{};
    kx::KxArrowField(4, 0, {0, 0, 200, 200}, field, kx::kArrowPointsHigh);
    float angle = 0;
    for (auto _ : state) {
        kx::KxArrowDraw(target.Canvas(), angle, field, kx::kArrowPointsHigh, work,
                        kx::kArrowPointsHigh, true);
        angle += 1.5f;
    }
}
BENCHMARK(BM_ArrowDraw);

}  // namespace
