#pragma once
// Mouse events and directions for the adjuster tests.
#include <QCoreApplication>
#include <QImage>
#include <QMouseEvent>
#include <QWidget>
#include <cmath>

#include "kx/drawing/geometry.h"
#include "kx/host/graphics.h"

namespace kx::test {

// A point at mouse angle alpha (0 down, growing clockwise) and distance d from c.
inline QPoint AtAngle(TPoint c, double alpha, double d = 20.0) {
    const double rad = alpha * M_PI / 180.0;
    return QPoint(int(std::lround(c.X - d * std::sin(rad))),
                  int(std::lround(c.Y + d * std::cos(rad))));
}

// A press, move or release of the left button at p.
inline void Mouse(QWidget* w, QEvent::Type type, QPoint p) {
    const Qt::MouseButton b = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    const Qt::MouseButtons held =
        type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent e(type, QPointF(p), w->mapToGlobal(QPointF(p)), b, held, Qt::NoModifier);
    QCoreApplication::sendEvent(w, &e);
}

// Whether every pixel that differs between before and after lies in one of the areas;
// counts the differing pixels in changed.
template <class... Rects>
bool ChangesOnlyIn(const QImage& before, const QImage& after, int& changed, Rects... areas) {
    changed = 0;
    bool inside = true;
    for (int y = 0; y < after.height(); ++y)
        for (int x = 0; x < after.width(); ++x)
            if (before.pixel(x, y) != after.pixel(x, y)) {
                ++changed;
                inside = inside && (KxInRect(x, y, areas) || ...);
            }
    return inside;
}

}  // namespace kx::test
