#pragma once
// Where the blink ticks come from: a precise timer on the GUI thread in the
// application, a hand-fired source in tests and benchmarks.
#include <cstdint>
#include <functional>
#include <memory>

namespace kx {

class TKxTickSource {
  public:
    virtual ~TKxTickSource() = default;
    // (Re)starts ticking every intervalMs milliseconds; each tick calls onTick on
    // the GUI thread. A running source is restarted with the new interval.
    virtual void Start(uint32_t intervalMs, std::function<void()> onTick) = 0;
    // Stops ticking; a stopped source may be started again.
    virtual void Stop() = 0;
    virtual bool Active() const = 0;
};

// A source that ticks only when told to, for deterministic tests and benchmarks.
class TManualTickSource : public TKxTickSource {
  public:
    void Start(uint32_t intervalMs, std::function<void()> onTick) override;
    void Stop() override;
    bool Active() const override { return active_; }
    // Runs one tick synchronously when active; does nothing when stopped. The tick
    // may destroy this source.
    void Fire();
    // The interval of the last Start.
    uint32_t Interval() const { return interval_; }
    // How often Start was called, to tell a restart from no change.
    int StartCount() const { return starts_; }

  private:
    std::function<void()> onTick_;
    uint32_t interval_ = 0;
    int starts_ = 0;
    bool active_ = false;
};

using TTickSourceFactory = std::function<std::unique_ptr<TKxTickSource>()>;

// Makes a new source with the factory in force: by default a precise QTimer. That
// one ticks only while a QCoreApplication exists (it stays inactive when started
// without one) and clamps intervals above 2147483647 ms to that value.
std::unique_ptr<TKxTickSource> CreateTickSource();
// Installs a process-wide factory (tests, benchmarks); an empty one restores the
// default. Sources already made are not affected.
void SetTickSourceFactory(TTickSourceFactory factory);

}  // namespace kx
