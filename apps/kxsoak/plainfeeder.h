#pragma once
// Components without a reading (bevels, panels, gradients, buttons, the trend printer):
// their stream is mouse and keyboard input, with property changes doing the rest.
#include "feeder.h"

namespace kxsoak {

class TPlainFeeder : public TFeeder {
  public:
    bool Accepts(const QWidget*) const override { return true; }
    void Feed(QWidget* component, TFeedContext& context) override;
    void Reshape(QWidget*, TFeedContext&) override {}
};

}  // namespace kxsoak
