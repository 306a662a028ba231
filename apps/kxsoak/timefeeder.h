#pragma once
// The once-a-second displays (clock, operating-hour counter): their reading is the time,
// so feeding them means moving the fake clock a second on, now and then an hour (the
// service then works the backlog off), with counting switched on and off.
#include <QTemporaryDir>

#include "feeder.h"

namespace kxsoak {

class TTimeFeeder : public TFeeder {
  public:
    bool Accepts(const QWidget* component) const override;
    // Points the counter's INI file into a temporary folder.
    void Prepare(QWidget* component) override;
    void Feed(QWidget* component, TFeedContext& context) override;
    void Reshape(QWidget* component, TFeedContext& context) override;

  private:
    QTemporaryDir folder_;
};

}  // namespace kxsoak
