#pragma once
// The numeric edits: values through Value and its integer, single, hexadecimal and binary
// views, and entries typed and confirmed with Enter (bad ones included), with the notation
// and the limits changed now and then.
#include "feeder.h"

namespace kxsoak {

class TNumEditFeeder : public TFeeder {
  public:
    bool Accepts(const QWidget* component) const override;
    void Feed(QWidget* component, TFeedContext& context) override;
    void Reshape(QWidget* component, TFeedContext& context) override;
};

}  // namespace kxsoak
