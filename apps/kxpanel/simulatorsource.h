#pragma once
// The built-in simulator: named signals (sine, ramp, random walk, square, constant; see
// bindingsfile.h for their parameters) sampled rate_hz times a second on a timer and
// published by name. It is connected from Start() to Stop().
//
// Time is the simulator's own: the n-th sample stands for n / rate_hz seconds, so a run
// gives the same values whatever the timer's jitter, and a random walk with the same seed
// the same path. Writing to a signal sets its offset (the centre of its wave, the value of
// a constant), as a setpoint the operator moves; writes to unknown names fail.
#include <QMap>
#include <QTimer>
#include <random>

#include "bindingsfile.h"
#include "source.h"

namespace kx::panel {

class SimulatorSource : public Source {
    Q_OBJECT
  public:
    SimulatorSource(const QString& name, int rateHz, const QMap<QString, SimSignal>& signalMap,
                    QObject* parent = nullptr);

    void Start() override;
    void Stop() override;
    bool Write(const QString& address, const SourceValue& value) override;

    // The value of a periodic wave at t seconds (random walk and constant: the offset).
    static double WaveAt(const SimSignal& s, double t);
    // One sample of every signal, as the timer takes it.
    void Sample();
    int64_t SampleCount() const { return samples_; }

  private:
    struct Channel {
        SimSignal Signal;
        double Walk = 0.0;
        std::mt19937 Random;
    };
    double next(Channel& c, double t);

    int rateHz_;
    QMap<QString, Channel> channels_;
    QTimer timer_;
    int64_t samples_ = 0;
};

}  // namespace kx::panel
