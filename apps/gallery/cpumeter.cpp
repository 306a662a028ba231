#include "cpumeter.h"

#include <QElapsedTimer>
#include <algorithm>
#include <ctime>

namespace kxgallery {

CpuMeter::CpuMeter(double window, Clock cpu, Clock wall)
    : window_(std::max(window, 0.0)), cpu_(std::move(cpu)), wall_(std::move(wall)) {
    if (!cpu_) cpu_ = [] { return double(std::clock()) / CLOCKS_PER_SEC; };
    if (!wall_) {
        wall_ = [timer = QElapsedTimer()]() mutable {
            if (!timer.isValid()) timer.start();
            return double(timer.nsecsElapsed()) * 1e-9;
        };
    }
}

double CpuMeter::Sample() {
    const Point now{cpu_(), wall_()};
    points_.push_back(now);
    // Keep the newest point older than the window as the base of the average.
    while (points_.size() > 2 && now.wall - points_[1].wall >= window_)
        points_.pop_front();
    const Point& base = points_.front();
    const double wall = now.wall - base.wall;
    if (wall <= 0.0) return 0.0;
    return std::max(0.0, 100.0 * (now.cpu - base.cpu) / wall);
}

QString CpuMeter::Text(double percent) {
    return QStringLiteral("CPU %1 %").arg(percent, 0, 'f', 1);
}

}  // namespace kxgallery
