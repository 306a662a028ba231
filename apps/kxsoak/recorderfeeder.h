#pragma once
// The trend and the mini trend: channel values through each channel's settings object,
// recording switched on and off (the blink service's interval pulses record), records
// added by hand while stopped, the view moved and zoomed.
//
// A recorder keeps what it records until the application clears it (the store is
// bounded only by MaxRecords with Flow), so Settle empties the store before memory is
// measured: records are data, not a leak.
#include "feeder.h"

namespace kxsoak {

class TRecorderFeeder : public TFeeder {
  public:
    bool Accepts(const QWidget* component) const override;
    void Feed(QWidget* component, TFeedContext& context) override;
    void Reshape(QWidget* component, TFeedContext& context) override;
    void Settle(QWidget* component) override;
};

}  // namespace kxsoak
