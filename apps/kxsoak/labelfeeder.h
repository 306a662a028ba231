#pragma once
// The status label: its reading is Digit, the index of the text shown; the texts change
// now and then.
#include "feeder.h"

namespace kxsoak {

class TLabelFeeder : public TFeeder {
  public:
    bool Accepts(const QWidget* component) const override;
    void Feed(QWidget* component, TFeedContext& context) override;
    void Reshape(QWidget* component, TFeedContext& context) override;
};

}  // namespace kxsoak
