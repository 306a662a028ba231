// Adjuster costs: one drag step (a mouse move event to the surface holding the new
// pointer) on a default dial, alone and driving a default round meter, beside a plain copy
// of the dial's pixels; the same step on a default gear dial and horizontal slider.
#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QMouseEvent>
#include <cmath>
#include <memory>

#include "kx/adjusters/dial.h"
#include "kx/adjusters/geardial.h"
#include "kx/adjusters/slider.h"
#include "kx/blink/flashtimer.h"
#include "kx/indicators/rmeter.h"

namespace kx {
namespace {

std::unique_ptr<TKxDial> paintedDial() {
    auto d = std::make_unique<TKxDial>();
    d->Loaded();
    d->PaintToSurface();
    return d;
}

// The mouse at angle alpha (degrees, 0 down, clockwise) far from the face's centre.
QPointF at(const TKxDial& d, double alpha) {
    const TPoint c = d.FaceCentre();
    const double r = alpha * M_PI / 180.0;
    return QPointF(c.X - 400.0 * std::sin(r), c.Y + 400.0 * std::cos(r));
}

void send(QWidget& d, QEvent::Type type, QPointF p) {
    const Qt::MouseButton b = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent e(type, p, p, b, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&d, &e);
}

// Drags between two directions a few per cent of the sweep apart, after a warm-up.
void drag(benchmark::State& state, TKxDial& d) {
    d.SetValue(50.0f);
    const TPoint c = d.FaceCentre();
    send(d, QEvent::MouseButtonPress, QPointF(c.X, c.Y - 3));
    double alpha = 160.0;
    for (int i = 0; i < 100; ++i)
        send(d, QEvent::MouseMove, at(d, alpha += 0.1));
    for (auto _ : state) {
        alpha = alpha >= 175.0 ? 160.0 : alpha + 1.1;
        send(d, QEvent::MouseMove, at(d, alpha));
        benchmark::DoNotOptimize(d.Surface().Image().constBits());
    }
    send(d, QEvent::MouseButtonRelease, at(d, alpha));
    state.counters["width"] = d.width();
    state.counters["height"] = d.height();
}

void BM_DialDrag(benchmark::State& state) {
    auto d = paintedDial();
    drag(state, *d);
}
BENCHMARK(BM_DialDrag);

void BM_DialDragLinked(benchmark::State& state) {
    auto d = paintedDial();
    TKx270Meter meter;
    meter.Loaded();
    meter.PaintToSurface();
    d->SetValueIndicator(&meter);
    drag(state, *d);
    ClearFlashList();
}
BENCHMARK(BM_DialDragLinked);

void BM_DialCopy(benchmark::State& state) {
    const auto d = paintedDial();
    TBitmap from(d->width(), d->height()), to(d->width(), d->height());
    for (auto _ : state) {
        to.Canvas().Draw(0, 0, from);
        benchmark::DoNotOptimize(to.Image().constBits());
    }
}
BENCHMARK(BM_DialCopy);

// A gear dial turned back and forth by a few degrees a step, about a tenth of a turn.
void BM_GearDialDrag(benchmark::State& state) {
    TKxGearDial g;
    g.Loaded();
    g.PaintToSurface();
    g.SetValue(50.0f);
    const TPoint c = g.KnobCentre();
    const auto far = [&](double alpha) {
        const double r = alpha * M_PI / 180.0;
        return QPointF(c.X - 400.0 * std::sin(r), c.Y + 400.0 * std::cos(r));
    };
    send(g, QEvent::MouseButtonPress, QPointF(c.X, c.Y - 3));
    double alpha = 180.0;
    for (auto _ : state) {
        alpha = alpha >= 216.0 ? 180.0 : alpha + 3.7;
        send(g, QEvent::MouseMove, far(alpha));
        benchmark::DoNotOptimize(g.Surface().Image().constBits());
    }
    send(g, QEvent::MouseButtonRelease, far(alpha));
}
BENCHMARK(BM_GearDialDrag);

// A slider's thumb dragged back and forth over a few per cent of its track.
void BM_SliderDrag(benchmark::State& state) {
    TKxHSlider s;
    s.Loaded();
    s.PaintToSurface();
    s.SetValue(50.0f);
    const TRect t = s.ThumbRect();
    const double y = (t.Top + t.Bottom) / 2, x0 = (t.Left + t.Right) / 2;
    send(s, QEvent::MouseButtonPress, QPointF(x0, y));
    double dx = 0.0;
    for (auto _ : state) {
        dx = dx >= 10.0 ? 0.0 : dx + 1.0;
        send(s, QEvent::MouseMove, QPointF(x0 + dx, y));
        benchmark::DoNotOptimize(s.Surface().Image().constBits());
    }
    send(s, QEvent::MouseButtonRelease, QPointF(x0, y));
}
BENCHMARK(BM_SliderDrag);

}  // namespace
}  // namespace kx
