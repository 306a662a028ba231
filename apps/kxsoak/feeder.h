#pragma once
// A feeder knows the value model of one family of components: how a reading reaches it,
// which settings reshape its range, and which state grows by design (stored records)
// and is reset before memory is measured.
#include <QWidget>
#include <cstdint>

#include "blinkdriver.h"
#include "chaoshub.h"
#include "valuepool.h"

namespace kxsoak {

struct TFeedContext {
    TValuePool& Pool;
    TBlinkDriver& Blink;
    TChaosHub& Hub;
    int64_t Step = 0;  // index of the reading being fed
};

class TFeeder {
  public:
    virtual ~TFeeder() = default;
    virtual bool Accepts(const QWidget* component) const = 0;
    // Runs once for every component made, before it is fed.
    virtual void Prepare(QWidget* /*component*/) {}
    // One reading through the family's own value API. The component may be deleted by
    // the time it returns (a handler of its signals); callers hold it in a QPointer.
    virtual void Feed(QWidget* component, TFeedContext& context) = 0;
    // Family settings that move the range or the mode: extreme and reversed ranges, log
    // scales, recording on and off.
    virtual void Reshape(QWidget* component, TFeedContext& context) = 0;
    // Empties what the application is meant to bound itself (a recorder's store).
    virtual void Settle(QWidget* /*component*/) {}
};

}  // namespace kxsoak
