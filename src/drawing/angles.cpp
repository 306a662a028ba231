#include "kx/drawing/angles.h"

#include <cmath>
#include <numbers>

#include "kx/host/numeric.h"

namespace kx {
namespace {

constexpr double kDegPerRad = 57.29577951308232;
constexpr double kRadPerDeg = 0.017453292519943295;
// Keeps the vertical difference off zero; it shifts results slightly and is kept
// so that every scale and pointer lands on the same pixels.
constexpr double kVerticalBias = 0.0001;

}  // namespace

float KxGetAngle(TPoint m, TPoint p) {
    const double dx = WrapSub(p.X, m.X);
    const double dy = WrapSub(p.Y, m.Y);
    double a;
    if (p.Y == m.Y) {
        a = p.X > m.X ? std::numbers::pi / 2 : -std::numbers::pi / 2;
    } else if (p.Y > m.Y) {
        const double t = std::atan(dx / (dy + kVerticalBias));
        a = p.X <= m.X ? -std::numbers::pi - t : std::numbers::pi - t;
    } else {
        const double ux = WrapSub(m.X, p.X);
        a = std::atan(ux / (dy + kVerticalBias));
    }
    const float stored = static_cast<float>(a);
    return static_cast<float>(stored * kDegPerRad + 180);
}

TPoint KxRotate(TPoint p, TPoint m, float angle, bool clockwise) {
    const double dx = WrapSub(p.X, m.X);
    const double dy = WrapSub(p.Y, m.Y);
    const float r = static_cast<float>(angle * kRadPerDeg);
    // The sine and cosine of the single-precision angle, taken in double.
    const double c = std::cos(static_cast<double>(r));
    const double s = std::sin(static_cast<double>(r));
    double x;
    double y;
    if (clockwise) {
        x = dx * c - dy * s;
        y = dy * c + dx * s;
    } else {
        x = dx * c + dy * s;
        y = dy * c - dx * s;
    }
    return TPoint{WrapAdd(Round(x), m.X), WrapAdd(Round(y), m.Y)};
}

}  // namespace kx
