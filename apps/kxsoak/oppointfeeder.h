#pragma once
// The operating point: a reading is a pair, ValueX and ValueY, each on its own range.
#include "feeder.h"

namespace kxsoak {

class TOpPointFeeder : public TFeeder {
  public:
    bool Accepts(const QWidget* component) const override;
    void Feed(QWidget* component, TFeedContext& context) override;
    void Reshape(QWidget* component, TFeedContext& context) override;
};

}  // namespace kxsoak
