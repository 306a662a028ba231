#include "kx/blink/ticksource.h"

#include <QCoreApplication>
#include <QTimer>
#include <limits>

namespace kx {
namespace {

class TTimerTickSource : public TKxTickSource {
  public:
    TTimerTickSource() {
        timer_.setTimerType(Qt::PreciseTimer);
        QObject::connect(&timer_, &QTimer::timeout, [this] {
            // Copy: the tick may destroy this source together with its callback.
            const std::function<void()> tick = onTick_;
            if (tick) tick();
        });
    }
    void Start(uint32_t intervalMs, std::function<void()> onTick) override {
        onTick_ = std::move(onTick);
        timer_.stop();
        if (!QCoreApplication::instance()) return;
        constexpr uint32_t maxMs = static_cast<uint32_t>(std::numeric_limits<int>::max());
        timer_.start(static_cast<int>(intervalMs < maxMs ? intervalMs : maxMs));
    }
    void Stop() override { timer_.stop(); }
    bool Active() const override { return timer_.isActive(); }

  private:
    QTimer timer_;
    std::function<void()> onTick_;
};

TTickSourceFactory& InstalledFactory() {
    static TTickSourceFactory factory;
    return factory;
}

}  // namespace

void TManualTickSource::Start(uint32_t intervalMs, std::function<void()> onTick) {
    interval_ = intervalMs;
    onTick_ = std::move(onTick);
    active_ = true;
    ++starts_;
}

void TManualTickSource::Stop() {
    active_ = false;
}

void TManualTickSource::Fire() {
    if (!active_) return;
    const std::function<void()> tick = onTick_;
    if (tick) tick();
}

std::unique_ptr<TKxTickSource> CreateTickSource() {
    const TTickSourceFactory& factory = InstalledFactory();
    if (factory) {
        if (std::unique_ptr<TKxTickSource> source = factory()) return source;
    }
    return std::make_unique<TTimerTickSource>();
}

void SetTickSourceFactory(TTickSourceFactory factory) {
    InstalledFactory() = std::move(factory);
}

}  // namespace kx
