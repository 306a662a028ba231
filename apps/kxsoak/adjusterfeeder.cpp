#include "adjusterfeeder.h"

#include "inputdriver.h"
#include "kx/framework/adjuster.h"
#include "rangeshaper.h"

namespace kxsoak {

bool TAdjusterFeeder::Accepts(const QWidget* component) const {
    return qobject_cast<const kx::TKxAnalogCControl*>(component) != nullptr;
}

void TAdjusterFeeder::Feed(QWidget* component, TFeedContext& context) {
    auto* adjuster = qobject_cast<kx::TKxAnalogCControl*>(component);
    TValuePool& pool = context.Pool;
    switch (context.Step % 4) {
        case 0:
            adjuster->SetValue(pool.Float());
            break;
        case 1:
            adjuster->setProperty("Value", pool.Double());
            break;
        case 2:
            adjuster->SetDigit(pool.Int());
            break;
        default:
            if (pool.OneIn(4)) {
                SendRandomInput(adjuster, pool);
            } else {
                adjuster->SetValue(pool.Wave(context.Step));
            }
            break;
    }
}

void TAdjusterFeeder::Reshape(QWidget* component, TFeedContext& context) {
    if (context.Pool.OneIn(3)) {
        RestoreRange(component, "SignalSettings");
    } else {
        ReshapeRange(component, "SignalSettings", context.Pool);
    }
}

}  // namespace kxsoak
