// One wall-clock second on a panel of 100 operating-hour counters and a clock: the blink
// service's second pulse reaches each, every one counts and redraws its text, and the
// shown window's repaint runs through Qt's paint path.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QWidget>
#include <memory>
#include <vector>

#include "kx/recorders/kxclock.h"
#include "kx/recorders/ophourcounter.h"
#include "quietblink.h"

namespace kx {
namespace {

// screen: the window is shown and its repaint is served after each pulse; otherwise
// only the surfaces are drawn.
void counterSecond(benchmark::State& state, bool screen) {
    TQuietBlink quiet;
    auto form = std::make_unique<QWidget>();
    form->resize(10 * 115, 11 * 26);
    std::vector<TKxOpHourCounter*> counters;
    for (int i = 0; i < 100; ++i) {
        auto* c = new TKxOpHourCounter(form.get());
        c->move((i % 10) * 115, (i / 10) * 26);
        c->Limit()->SetHour(1000000);
        c->SetTime(i * 10, 0, 0);
        c->SetCount(true);
        counters.push_back(c);
    }
    auto* clock = new TKxClock(form.get());
    clock->move(0, 10 * 26);
    clock->Loaded();
    for (TKxOpHourCounter* c : counters)
        c->PaintToSurface();
    clock->PaintToSurface();
    if (screen) form->show();
    QApplication::processEvents();
    for (auto _ : state) {
        quiet.Clock().Advance(1000);
        RunFlashTick();
        if (screen) QApplication::processEvents();
    }
    benchmark::DoNotOptimize(counters.front()->Seconds());
    state.counters["controls"] = 101;
    form.reset();
}
void BM_CounterSecond(benchmark::State& state) {
    counterSecond(state, true);
}
void BM_CounterSecondSurface(benchmark::State& state) {
    counterSecond(state, false);
}
BENCHMARK(BM_CounterSecond)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_CounterSecondSurface)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace kx
