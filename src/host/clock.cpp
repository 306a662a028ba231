#include "kx/host/clock.h"

#include <QDateTime>
#include <QElapsedTimer>

namespace kx {
namespace {

class TSystemClock : public TClock {
  public:
    TSystemClock() { timer_.start(); }
    uint32_t TickCount() override { return static_cast<uint32_t>(timer_.elapsed()); }
    TDateTime Now() override { return DateTimeFromQDateTime(QDateTime::currentDateTime()); }

  private:
    QElapsedTimer timer_;
};

TClock*& installed() {
    static TClock* clock = nullptr;
    return clock;
}

}  // namespace

TClock& Clock() {
    static TSystemClock system;
    TClock* c = installed();
    return c ? *c : system;
}

void SetClock(TClock* clock) {
    installed() = clock;
}

void TFakeClock::Advance(uint32_t ms) {
    ticks_ += ms;
    now_ += ms / MSecsPerDay;
}

}  // namespace kx
