#pragma once
// The blink service on a fake clock: every tick source the library makes is a manual
// one, and Tick advances the fake clock and fires them all, so blink phases, second
// pulses and recording intervals run as fast as the soak can tick.
#include <cstdint>

#include "kx/host/clock.h"

namespace kxsoak {

class TBlinkDriver {
  public:
    // Installs the fake clock and the manual tick sources; the destructor restores both.
    TBlinkDriver();
    ~TBlinkDriver();
    TBlinkDriver(const TBlinkDriver&) = delete;
    TBlinkDriver& operator=(const TBlinkDriver&) = delete;

    // Advances the clock by ms milliseconds and fires every active source once.
    void Tick(uint32_t ms = 16);
    int64_t Ticks() const { return ticks_; }

  private:
    kx::TFakeClock clock_;
    int64_t ticks_ = 0;
};

}  // namespace kxsoak
