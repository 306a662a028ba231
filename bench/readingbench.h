#pragma once
// The two measurements every instrument benchmark makes: a reading on a default, painted
// control, and a plain copy of a bitmap of the control's size to read it against.
#include <benchmark/benchmark.h>

#include <memory>

#include "kx/blink/flashtimer.h"
#include "kx/host/bitmap.h"

namespace kx {

// A default control, loaded and painted. With limitsAside its limits move far out of the
// way, so that the readings raise no alarm and nothing blinks.
template <class T>
std::unique_ptr<T> PaintedForBench(bool limitsAside) {
    auto c = std::make_unique<T>();
    if (limitsAside) {
        c->SetLimitUpper(1000.0f);
        c->SetLimitLower(-1000.0f);
    }
    c->Loaded();
    c->PaintToSurface();
    return c;
}

// Readings a few per cent apart, each a real change, after a warm-up.
template <class T>
void BenchReading(benchmark::State& state, bool limitsAside) {
    auto c = PaintedForBench<T>(limitsAside);
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
    ClearFlashList();
}

// The floor a reading is measured against: one copy of the control's pixels.
template <class T>
void BenchCopy(benchmark::State& state, bool limitsAside) {
    const auto c = PaintedForBench<T>(limitsAside);
    TBitmap from(c->width(), c->height()), to(c->width(), c->height());
    for (auto _ : state) {
        to.Canvas().Draw(0, 0, from);
        benchmark::DoNotOptimize(to.Image().constBits());
    }
}

}  // namespace kx

// BM_<Name>Reading and BM_<Name>Copy for the control class Type (see above for limitsAside).
#define KX_READING_BENCHMARKS(Name, Type, limitsAside) \
    void BM_##Name##Reading(benchmark::State& state) { \
        ::kx::BenchReading<Type>(state, limitsAside);  \
    }                                                  \
    BENCHMARK(BM_##Name##Reading);                     \
    void BM_##Name##Copy(benchmark::State& state) {    \
        ::kx::BenchCopy<Type>(state, limitsAside);     \
    }                                                  \
    BENCHMARK(BM_##Name##Copy)
