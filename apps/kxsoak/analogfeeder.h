#pragma once
// Indicators built on TKxAnalogGControl: readings through SetValue(float),
// setValue(double), the "value" property, SetDigit, and bursts of PostValue from a
// worker thread.
#include "feeder.h"

namespace kxsoak {

class TAnalogFeeder : public TFeeder {
  public:
    bool Accepts(const QWidget* component) const override;
    void Feed(QWidget* component, TFeedContext& context) override;
    void Reshape(QWidget* component, TFeedContext& context) override;
};

// Posts count readings to component from a worker thread while the GUI thread keeps
// handling events, then waits for the last one to apply. Deletions are held back
// meanwhile: the component must outlive the thread that posts to it.
void PostBurst(QWidget* component, TFeedContext& context, int count);

}  // namespace kxsoak
