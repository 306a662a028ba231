#include "blinkdriver.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "kx/blink/ticksource.h"

namespace kxsoak {

namespace {

// Sources alive now; a tick may destroy any of them (a handler deletes a component).
std::vector<kx::TManualTickSource*>& LiveSources() {
    static std::vector<kx::TManualTickSource*> sources;
    return sources;
}

class TSoakTickSource : public kx::TManualTickSource {
  public:
    TSoakTickSource() { LiveSources().push_back(this); }
    ~TSoakTickSource() override { std::erase(LiveSources(), this); }
};

bool IsLive(kx::TManualTickSource* source) {
    const auto& live = LiveSources();
    return std::find(live.begin(), live.end(), source) != live.end();
}

}  // namespace

TBlinkDriver::TBlinkDriver() {
    kx::SetClock(&clock_);
    kx::SetTickSourceFactory([] { return std::make_unique<TSoakTickSource>(); });
}

TBlinkDriver::~TBlinkDriver() {
    kx::SetTickSourceFactory({});
    kx::SetClock(nullptr);
}

void TBlinkDriver::Tick(uint32_t ms) {
    clock_.Advance(ms);
    ++ticks_;
    // A snapshot: sources made during the tick wait for the next one, destroyed ones
    // are skipped.
    const std::vector<kx::TManualTickSource*> snapshot = LiveSources();
    for (kx::TManualTickSource* source : snapshot) {
        if (IsLive(source)) source->Fire();
    }
}

}  // namespace kxsoak
