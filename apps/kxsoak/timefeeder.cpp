#include "timefeeder.h"

#include "kx/recorders/kxclock.h"
#include "kx/recorders/ophourcounter.h"

namespace kxsoak {

bool TTimeFeeder::Accepts(const QWidget* component) const {
    return qobject_cast<const kx::TKxSecondDisplay*>(component) != nullptr;
}

void TTimeFeeder::Prepare(QWidget* component) {
    if (auto* counter = qobject_cast<kx::TKxOpHourCounter*>(component)) {
        counter->IniSettings()->SetUseAppDir(false);
        counter->IniSettings()->SetFileName(folder_.filePath("soak.ini"));
    }
}

void TTimeFeeder::Feed(QWidget*, TFeedContext& context) {
    context.Blink.Tick(context.Pool.OneIn(500) ? 3600u * 1000u : 1000u);
}

void TTimeFeeder::Reshape(QWidget* component, TFeedContext& context) {
    TValuePool& pool = context.Pool;
    auto* counter = qobject_cast<kx::TKxOpHourCounter*>(component);
    if (!counter) return;  // the clock's settings are all properties
    switch (pool.Between(0, 2)) {
        case 0:
            counter->SetCount(!pool.OneIn(4));
            break;
        case 1:
            counter->SetCountDown(pool.OneIn(2));
            break;
        default:
            counter->SetTime(pool.Int(), pool.Int(), pool.Int());
            break;
    }
}

}  // namespace kxsoak
