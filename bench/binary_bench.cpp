// Binary element costs: a status word spread over a group of 32 LEDs, and one blink tick
// that flips 1000 lamps.
#include <benchmark/benchmark.h>

#include <QWidget>
#include <memory>
#include <vector>

#include "kx/binary/kxled.h"
#include "kx/blink/flashtimer.h"

namespace kx {
namespace {

// n painted LEDs in one window, bits 0..n-1 of group g (no group for g = 0).
std::vector<TKxLED*> leds(QWidget& form, int n, int32_t g) {
    std::vector<TKxLED*> out;
    for (int i = 0; i < n; ++i) {
        auto* led = new TKxLED(&form);
        led->SetCaption(QStringLiteral("Bit %1").arg(i));
        led->SetStatusBit(i % 32);
        led->SetGroupIndex(g);
        led->Loaded();
        led->PaintToSurface();
        out.push_back(led);
    }
    return out;
}

// Setting the word on one LED of a 32-bit group; every LED changes and has drawn its
// lamp when the call returns.
void BM_StatusWord32(benchmark::State& state) {
    QWidget form;
    const auto group = leds(form, 32, 1);
    bool odd = false;
    for (auto _ : state) {
        odd = !odd;
        group[5]->SetStatusInt(odd ? int32_t(0x55555555) : int32_t(0xAAAAAAAA));
        benchmark::DoNotOptimize(group[31]->Surface().Image().constBits());
    }
}
BENCHMARK(BM_StatusWord32);

// One tick of the blink service in which 1000 checked, flashing LEDs change phase and
// draw their lamps.
void BM_Blink1000Leds(benchmark::State& state) {
    QWidget form;
    auto all = leds(form, 1000, 0);
    for (auto* led : all) {
        led->SetFrequency(ff8Hz);
        led->SetFlashing(true);
        led->SetChecked(true);
    }
    bool dark = true;
    for (auto _ : state) {
        // ff8Hz follows bit 2 of the tick counter: 3 -> 4 lights, 7 -> 8 darkens.
        dark = !dark;
        SetFlashTickCounter(dark ? 7 : 3);
        RunFlashTick();
        benchmark::DoNotOptimize(all.back()->Surface().Image().constBits());
    }
    ClearFlashList();
}
BENCHMARK(BM_Blink1000Leds)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace kx
