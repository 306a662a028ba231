#pragma once
// The process's CPU load as a user reads it: the CPU time all threads used over the last
// few seconds of wall time, in per cent of one core ("CPU 4.2 %"). The clocks are
// injectable so that the arithmetic is testable; by default they are the process CPU
// clock (std::clock) and a monotonic wall clock.
#include <QString>
#include <deque>
#include <functional>

namespace kxgallery {

class CpuMeter {
  public:
    using Clock = std::function<double()>;  // seconds
    // Averages over `window` seconds of wall time (at least one sample apart).
    explicit CpuMeter(double window = 3.0, Clock cpu = {}, Clock wall = {});

    // Takes a sample and returns the load since the oldest sample inside the window, in
    // per cent of one core; 0 before two samples lie apart in time.
    double Sample();
    // "CPU 4.2 %".
    static QString Text(double percent);

  private:
    struct Point {
        double cpu, wall;
    };
    double window_;
    Clock cpu_, wall_;
    std::deque<Point> points_;
};

}  // namespace kxgallery
