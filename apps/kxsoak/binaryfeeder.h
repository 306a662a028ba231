#pragma once
// On/off elements built on TKxBinGControl (LEDs, switches, colour bit buttons): checked
// state, status words and clicks, with flashing, groups and modes reshaped now and then.
#include "feeder.h"

namespace kxsoak {

class TBinaryFeeder : public TFeeder {
  public:
    bool Accepts(const QWidget* component) const override;
    void Feed(QWidget* component, TFeedContext& context) override;
    void Reshape(QWidget* component, TFeedContext& context) override;
};

}  // namespace kxsoak
