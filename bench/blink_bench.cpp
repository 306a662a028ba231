#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

#include "kx/blink/flashtimer.h"

namespace {

class TCountingClient : public kx::TKxFlashClient {
  public:
    ~TCountingClient() override { kx::DelControl(this); }
    void WMFlash(kx::TMessage& message) override { count += message.LParam; }
    int64_t count = 0;
};

// One tick of the blink service with 1000 square-wave subscribers: every fourth
// uses code 2, the others codes 3..6. The counter alternates between ticks to 4
// and to 0, so exactly the 250 code-2 entries change state on every measured tick
// while the other 750 only test their bit.
void BM_BlinkTick(benchmark::State& state) {
    kx::SetTickSourceFactory([] { return std::make_unique<kx::TManualTickSource>(); });
    std::vector<std::unique_ptr<TCountingClient>> clients;
    for (int i = 0; i < 1000; ++i) {
        clients.push_back(std::make_unique<TCountingClient>());
        const int64_t code = i % 4 == 0 ? 2 : 3 + (i / 4) % 4;
        kx::AddControl(clients.back().get(), code);
    }
    bool on = false;
    for (auto _ : state) {
        kx::SetFlashTickCounter(on ? 4294967295u : 3u);
        kx::RunFlashTick();
        on = !on;
    }
    int64_t pulses = 0;
    for (const auto& c : clients)
        pulses += c->count;
    benchmark::DoNotOptimize(pulses);
    state.counters["flips/tick"] = 250;
    clients.clear();
    kx::ClearFlashList();
    kx::SetFlashTickCounter(0);
    kx::SetTickSourceFactory({});
}
BENCHMARK(BM_BlinkTick)->Unit(benchmark::kMicrosecond);

}  // namespace
