// A reading's cost on a real screen path: 100 instruments of one kind in a grid window,
// shown on the offscreen platform (a real backing store and Qt's repaint path), each given
// a new reading 50 times, with the event loop serving the repaint after each round. One
// iteration is one simulated second at 50 Hz; its CPU time is the figure to read (100 ms
// of CPU per simulated second is 10% of one core).
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QGridLayout>
#include <QWidget>
#include <cmath>
#include <memory>
#include <vector>

#include "kx/indicators/barinstrument.h"
#include "kx/indicators/linearmeter.h"
#include "kx/indicators/rmeter.h"
#include "quietblink.h"

namespace kx {
namespace {

template <class T>
void screen100(benchmark::State& state, int w, int h) {
    TQuietBlink quiet;
    auto window = std::make_unique<QWidget>();
    auto* grid = new QGridLayout(window.get());
    grid->setSpacing(2);
    grid->setContentsMargins(2, 2, 2, 2);
    std::vector<T*> controls;
    for (int i = 0; i < 100; ++i) {
        auto* c = new T;
        c->SetKxAutoSize(false);
        c->SetBounds(0, 0, w, h);
        c->setFixedSize(w, h);
        c->SetLimitUpper(1000.0f);  // no alarms: nothing blinks
        c->SetLimitLower(-1000.0f);
        grid->addWidget(c, i / 10, i % 10);
        controls.push_back(c);
    }
    window->show();
    for (T* c : controls)
        c->Loaded();
    QApplication::processEvents();
    int64_t tick = 0;
    for (auto _ : state) {
        for (int round = 0; round < 50; ++round, ++tick) {
            for (size_t i = 0; i < controls.size(); ++i) {
                // A sine sweep: the needles move by several degrees per reading.
                const double t = double(tick) * 0.02 + double(i) * 0.37;
                controls[i]->SetValue(float(50.0 + 35.0 * std::sin(t * 6.0)));
            }
            QApplication::processEvents();
        }
    }
    state.counters["readings/s"] = 5000;
    window.reset();
}

void BM_Screen100(benchmark::State& state) {
    screen100<TKx270Meter>(state, 120, 120);
}
void BM_Screen100VBar(benchmark::State& state) {
    screen100<TKxVBar>(state, 60, 160);
}
void BM_Screen100HMeter(benchmark::State& state) {
    screen100<TKxHMeter>(state, 160, 70);
}
BENCHMARK(BM_Screen100)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Screen100VBar)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Screen100HMeter)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace kx
