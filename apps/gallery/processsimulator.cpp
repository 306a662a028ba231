#include "processsimulator.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kxgallery {
namespace {

constexpr uint32_t kFallbackSeed = 0x9E3779B9u;
// How fast the noise follows its random targets per step: small values give a slow,
// wandering noise rather than jitter.
constexpr double kNoiseSmoothing = 0.25;
// Higher powers make the surges shorter.
constexpr double kSurgeSharpness = 6.0;

}  // namespace

ProcessSignal::ProcessSignal(const ProcessProfile& profile, uint32_t seed, double startTime)
    : profile_(profile),
      state_(seed == 0 ? kFallbackSeed : seed),
      time_(std::isfinite(startTime) ? startTime : 0.0) {
    fraction_ = compute();
}

double ProcessSignal::nextRandom() {
    // xorshift32: tiny, portable and good enough for a wobbling needle.
    state_ ^= state_ << 13;
    state_ ^= state_ >> 17;
    state_ ^= state_ << 5;
    return double(state_) / 2147483648.0 - 1.0;
}

double ProcessSignal::compute() const {
    double f = profile_.base;
    for (const Wave& w : profile_.waves) {
        if (w.period <= 0.0) continue;
        f += w.amplitude * std::sin(2.0 * std::numbers::pi * time_ / w.period + w.phase);
    }
    const Surge& s = profile_.surge;
    if (s.period > 0.0) {
        const double x = std::sin(2.0 * std::numbers::pi * time_ / s.period + s.phase);
        if (x > 0.0) f += s.amplitude * std::pow(x, kSurgeSharpness);
    }
    return f + profile_.noise * noise_;
}

double ProcessSignal::Advance(double dt) {
    if (std::isfinite(dt) && dt > 0.0) time_ += dt;
    noise_ += kNoiseSmoothing * (nextRandom() - noise_);
    fraction_ = compute();
    return fraction_;
}

double ValueAt(double fraction, double from, double to, bool logarithmic) {
    if (logarithmic && from > 0.0 && to > 0.0) return from * std::pow(to / from, fraction);
    return from + (to - from) * fraction;
}

}  // namespace kxgallery
