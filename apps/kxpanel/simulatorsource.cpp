#include "simulatorsource.h"

#include <cmath>
#include <numbers>

namespace kx::panel {

SimulatorSource::SimulatorSource(const QString& name, int rateHz,
                                 const QMap<QString, SimSignal>& signalMap, QObject* parent)
    : Source(name, parent), rateHz_(std::clamp(rateHz, 1, 1000)) {
    for (auto it = signalMap.begin(); it != signalMap.end(); ++it)
        channels_.insert(it.key(),
                         Channel{it.value(), it.value().Offset, std::mt19937(it.value().Seed)});
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.setInterval(1000 / rateHz_);
    connect(&timer_, &QTimer::timeout, this, &SimulatorSource::Sample);
}

void SimulatorSource::Start() {
    setState(State::Connected);
    Sample();
    timer_.start();
}

void SimulatorSource::Stop() {
    timer_.stop();
    setState(State::Stopped);
}

bool SimulatorSource::Write(const QString& address, const SourceValue& value) {
    auto it = channels_.find(address);
    if (it == channels_.end() || value.IsWords || !std::isfinite(value.Number)) return false;
    it->Signal.Offset = value.Number;
    if (it->Signal.Shape == Wave::RandomWalk) it->Walk = value.Number;
    return true;
}

double SimulatorSource::WaveAt(const SimSignal& s, double t) {
    const double phase = std::fmod(t / s.PeriodS, 1.0);
    switch (s.Shape) {
        case Wave::Sine:
            return s.Offset + s.Amplitude * std::sin(2.0 * std::numbers::pi * phase);
        case Wave::Ramp:
            return s.Offset + s.Amplitude * (phase < 0.5 ? 2.0 * phase : 2.0 - 2.0 * phase);
        case Wave::Square:
            return s.Offset + (phase < 0.5 ? s.Amplitude : -s.Amplitude);
        case Wave::RandomWalk:
        case Wave::Constant:
            break;
    }
    return s.Offset;
}

double SimulatorSource::next(Channel& c, double t) {
    if (c.Signal.Shape != Wave::RandomWalk) return WaveAt(c.Signal, t);
    std::uniform_real_distribution<double> step(-c.Signal.Step, c.Signal.Step);
    const double span = std::fabs(c.Signal.Amplitude);
    c.Walk = std::clamp(c.Walk + step(c.Random), c.Signal.Offset - span, c.Signal.Offset + span);
    return c.Walk;
}

void SimulatorSource::Sample() {
    const double t = double(samples_) / rateHz_;
    ++samples_;
    for (auto it = channels_.begin(); it != channels_.end(); ++it)
        publish(it.key(), SourceValue::FromNumber(next(*it, t)));
}

}  // namespace kx::panel
