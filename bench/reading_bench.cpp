#include <benchmark/benchmark.h>

#include <QObject>

#include "kx/framework/analogcontrol.h"

namespace {

// One reading of the value model with default settings and the automatic hint on (all
// parts, so the text and the tool tip are made anew): from setting Value to the end of
// OnValueChange, nothing painted. The values cycle inside
// sector 2 and inside the recorded extremes, so every iteration is a real change that
// crosses no state boundary.
void BM_Reading(benchmark::State& state) {
    kx::TKxAnalogGControl control;
    control.Loaded();
    int64_t events = 0;
    QObject::connect(&control, &kx::TKxAnalogGControl::OnValueChange,
                     [&events](QObject*) { ++events; });
    control.SetValue(40.0f);
    control.SetValue(60.0f);
    const float values[] = {45.0f, 47.5f, 52.25f, 55.0f};
    size_t i = 0;
    for (auto _ : state) {
        control.SetValue(values[i]);
        i = (i + 1) & 3;
    }
    benchmark::DoNotOptimize(events);
    // Every reading has rebuilt the hint and the tool tip.
    if (!control.Hint().startsWith(QStringLiteral("Value= ")) || control.toolTip().isEmpty())
        state.SkipWithError("no hint");
}
BENCHMARK(BM_Reading);

}  // namespace
