// Bevel frames: drawn with every static repaint of nearly every instrument.
#include <benchmark/benchmark.h>

#include "kx/framework/sbevel.h"
#include "kx/host/bitmap.h"

namespace {

// range(0): 0 PaintBevel, 1 PaintFilledBevel with gradient, 2 PaintRoundBevel.
void BM_SBevelPaint(benchmark::State& state) {
    const int64_t variant = state.range(0);
    kx::TBitmap target(200, 200);
    kx::TKxSBevel bevel;
    bevel.SetBevelLine(kx::blBoth);
    bevel.SetWidth(4);
    bevel.SurfaceGrad()->SetVisible(true);
    for (auto _ : state) {
        kx::TRect r{0, 0, 200, 200};
        if (variant == 0) bevel.PaintBevel(target.Canvas(), r);
        if (variant == 1) bevel.PaintFilledBevel(target.Canvas(), r);
        if (variant == 2) bevel.PaintRoundBevel(target.Canvas(), r, 20, 20);
        benchmark::DoNotOptimize(r);
    }
}
BENCHMARK(BM_SBevelPaint)->ArgName("variant")->DenseRange(0, 2);

}  // namespace
