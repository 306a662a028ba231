#pragma once
// A control that reports another device pixel ratio, as on a high-DPI screen.
#include <QPaintDevice>
#include <QWidget>
#include <cmath>

namespace kx::test {

template <class T>
class AtRatio : public T {
  public:
    explicit AtRatio(double r, QWidget* parent = nullptr) : T(parent), ratio(r) {}
    double ratio;

  protected:
    int metric(QPaintDevice::PaintDeviceMetric m) const override {
        if (m == QPaintDevice::PdmDevicePixelRatioScaled)
            return int(ratio * QPaintDevice::devicePixelRatioFScale());
        if (m == QPaintDevice::PdmDevicePixelRatio) return int(std::ceil(ratio));
        return T::metric(m);
    }
};

}  // namespace kx::test
