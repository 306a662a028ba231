// The canvas's hot path: composing a needle on a copy of a cached background, beside a
// plain copy of the same pixels.
#include <benchmark/benchmark.h>

#include "kx/drawing/arrows.h"
#include "kx/host/bitmap.h"

namespace kx {
namespace {

void fillBackground(TBitmap& b) {
    b.Canvas().Brush().SetColor(0xE0E0E0);
    b.Canvas().FillRect(TRect{0, 0, b.Width(), b.Height()});
    b.Canvas().Brush().SetColor(clWhite);
    b.Canvas().Ellipse(10, 10, 240, 240);
}

void BM_NeedleCompose(benchmark::State& state) {
    TBitmap background(250, 250), work(250, 250), surface(250, 250);
    fillBackground(background);
    TArrowPoints field{}, turned{};
    KxArrowField(4, 0, TRect{0, 0, 250, 250}, field, kArrowPointsHigh);
    float angle = 0.0f;
    for (auto _ : state) {
        angle = angle >= 270.0f ? 0.0f : angle + 1.5f;
        work.Canvas().Draw(0, 0, background);
        work.Canvas().Pen().SetColor(clBlack);
        work.Canvas().Brush().SetColor(clLime);
        KxArrowDraw(work.Canvas(), angle, field, kArrowPointsHigh, turned, kArrowPointsHigh, true);
        surface.Canvas().Draw(0, 0, work);
        benchmark::DoNotOptimize(surface.Image().constBits());
    }
}
BENCHMARK(BM_NeedleCompose);

void BM_Copy250(benchmark::State& state) {
    TBitmap background(250, 250), surface(250, 250);
    fillBackground(background);
    for (auto _ : state) {
        surface.Canvas().Draw(0, 0, background);
        benchmark::DoNotOptimize(surface.Image().constBits());
    }
}
BENCHMARK(BM_Copy250);

}  // namespace
}  // namespace kx
