#pragma once
// For benchmarks: nothing ticks by itself and time stands still unless the benchmark
// moves it (the blink service on a manual tick source, a fake clock in force).
#include <memory>

#include "kx/blink/flashtimer.h"
#include "kx/blink/ticksource.h"
#include "kx/host/clock.h"

namespace kx {

class TQuietBlink {
  public:
    TQuietBlink() {
        SetTickSourceFactory([] { return std::make_unique<TManualTickSource>(); });
        SetClock(&clock_);
    }
    ~TQuietBlink() {
        ClearFlashList();
        SetClock(nullptr);
        SetTickSourceFactory({});
    }
    TQuietBlink(const TQuietBlink&) = delete;
    TQuietBlink& operator=(const TQuietBlink&) = delete;
    TFakeClock& Clock() { return clock_; }

  private:
    TFakeClock clock_;
};

}  // namespace kx
