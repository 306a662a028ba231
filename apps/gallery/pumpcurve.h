#pragma once
// A centrifugal pump for the operating-point display: its head curves at three speeds
// (the affinity laws: the head scales with the square of the speed), the curve of the
// pipe system it feeds, and where the two meet at a given speed.
#include <QImage>
#include <QPointF>
#include <QRect>

namespace kxgallery {

struct PumpChart {
    static constexpr double kFlowMax = 30.0;  // m³/h, the X axis
    static constexpr double kHeadMax = 50.0;  // m, the Y axis
    QImage picture;
    QRect plot;  // the axes' area in the picture: flow 0 at its left, head 0 at its bottom
};

// The chart on a dark background, size w x h.
PumpChart DrawPumpChart(int w, int h);
// The operating point (flow, head) at a relative speed (1 = full speed, at least 0.5).
QPointF PumpOperatingPoint(double speed);

}  // namespace kxgallery
