#pragma once
// The one source of time: 32-bit milliseconds and the wall clock. Tests install a
// fake clock so that blinking, time stamps and pulses are deterministic.
#include <cstdint>

#include "kx/host/datetime.h"

namespace kx {

class TClock {
  public:
    virtual ~TClock() = default;
    // Milliseconds since an arbitrary start; wraps at 2^32 like GetTickCount.
    virtual uint32_t TickCount() = 0;
    // Local wall-clock time.
    virtual TDateTime Now() = 0;
};

// The clock in force. Never null: the system clock unless a test installed another.
TClock& Clock();
// Installs a clock (not owned) or, with nullptr, restores the system clock.
void SetClock(TClock* clock);

inline uint32_t GetTickCount() {
    return Clock().TickCount();
}
inline TDateTime Now() {
    return Clock().Now();
}

// A manually stepped clock for tests and benchmarks.
class TFakeClock : public TClock {
  public:
    uint32_t TickCount() override { return ticks_; }
    TDateTime Now() override { return now_; }
    void SetTicks(uint32_t t) { ticks_ = t; }
    void SetNow(TDateTime d) { now_ = d; }
    // Advances both the tick count and the wall clock by ms milliseconds.
    void Advance(uint32_t ms);

  private:
    uint32_t ticks_ = 0;
    TDateTime now_ = 45000.0;  // 2023-03-15, a fixed day
};

}  // namespace kx
