#include "oppointfeeder.h"

#include "kx/recorders/oppoint.h"
#include "rangeshaper.h"

namespace kxsoak {

bool TOpPointFeeder::Accepts(const QWidget* component) const {
    return qobject_cast<const kx::TKxOperatingPoint*>(component) != nullptr;
}

void TOpPointFeeder::Feed(QWidget* component, TFeedContext& context) {
    auto* point = qobject_cast<kx::TKxOperatingPoint*>(component);
    TValuePool& pool = context.Pool;
    const bool wave = context.Step % 3 != 0;
    point->SetValueX(wave ? pool.Wave(context.Step) : pool.Float());
    point->SetValueY(wave ? pool.Wave(context.Step + 1000) : pool.Float());
}

void TOpPointFeeder::Reshape(QWidget* component, TFeedContext& context) {
    TValuePool& pool = context.Pool;
    const QByteArray prefix = pool.OneIn(2) ? "SignalSettingsX" : "SignalSettingsY";
    if (pool.OneIn(3)) {
        RestoreRange(component, prefix);
    } else {
        ReshapeRange(component, prefix, pool);
    }
}

}  // namespace kxsoak
