#pragma once
// Simulated process readings for the gallery. A reading is expressed as a fraction of
// the instrument's range (0 = range start, 1 = range end): a slow operating point plus
// three slow sines plus a little smoothed, seeded noise. Fractions outside 0..1 are
// intended: the process leaves the range now and then so that overflow shows.
//
// Everything is deterministic: the same profile, seed and sequence of steps give the
// same readings on every machine (own generator, no library distributions).
#include <array>
#include <cstdint>

namespace kxgallery {

struct Wave {
    double amplitude = 0.0;  // fraction of the range
    double period = 1.0;     // seconds; values <= 0 keep the wave still
    double phase = 0.0;      // radians at time 0
};

// A short excursion once per period: amplitude * max(0, sin(...))^6, so the process
// spends most of the period unaffected and peaks briefly (a negative amplitude dips).
struct Surge {
    double amplitude = 0.0;
    double period = 1.0;  // seconds; values <= 0 switch the surge off
    double phase = 0.0;
};

struct ProcessProfile {
    double base = 0.5;  // operating point, fraction of the range
    std::array<Wave, 3> waves{};
    double noise = 0.0;  // amplitude of the smoothed noise, fraction of the range
    Surge surge{};
};

class ProcessSignal {
  public:
    // The process starts at `startTime` seconds; seed 0 is replaced by a fixed seed.
    ProcessSignal(const ProcessProfile& profile, uint32_t seed, double startTime = 0.0);

    // Advances by dt seconds (negative dt counts as 0) and returns the new fraction.
    double Advance(double dt);
    double Fraction() const { return fraction_; }
    double Time() const { return time_; }
    const ProcessProfile& Profile() const { return profile_; }

  private:
    double compute() const;
    double nextRandom();  // uniform in [-1, 1)

    ProcessProfile profile_;
    uint32_t state_;
    double time_;
    double noise_ = 0.0;
    double fraction_;
};

// The engineering value at `fraction` of the range from..to. A logarithmic range is
// interpolated in decades; it needs from > 0 and to > 0 and otherwise falls back to
// the linear mapping.
double ValueAt(double fraction, double from, double to, bool logarithmic);

}  // namespace kxgallery
