#pragma once
// Adjusters built on TKxAnalogCControl (dials, sliders): readings through SetValue(float),
// the Value property and SetDigit, with mouse drags and keys in between.
#include "feeder.h"

namespace kxsoak {

class TAdjusterFeeder : public TFeeder {
  public:
    bool Accepts(const QWidget* component) const override;
    void Feed(QWidget* component, TFeedContext& context) override;
    void Reshape(QWidget* component, TFeedContext& context) override;
};

}  // namespace kxsoak
