#include "analogfeeder.h"

#include <QCoreApplication>
#include <QPointer>
#include <atomic>
#include <thread>
#include <vector>

#include "kx/framework/analogcontrol.h"
#include "rangeshaper.h"

namespace kxsoak {

namespace {

kx::TKxAnalogGControl* AsAnalog(QWidget* component) {
    return qobject_cast<kx::TKxAnalogGControl*>(component);
}

}  // namespace

bool TAnalogFeeder::Accepts(const QWidget* component) const {
    return qobject_cast<const kx::TKxAnalogGControl*>(component) != nullptr;
}

void TAnalogFeeder::Feed(QWidget* component, TFeedContext& context) {
    kx::TKxAnalogGControl* analog = AsAnalog(component);
    TValuePool& pool = context.Pool;
    switch (context.Step % 5) {
        case 0:
            analog->SetValue(pool.Float());
            break;
        case 1:
            analog->setValue(pool.Double());
            break;
        case 2:
            analog->setProperty("value", pool.Double());
            break;
        case 3:
            analog->SetValue(pool.Wave(context.Step));
            break;
        default:
            analog->SetDigit(pool.Int());
            break;
    }
}

void TAnalogFeeder::Reshape(QWidget* component, TFeedContext& context) {
    TValuePool& pool = context.Pool;
    if (pool.OneIn(8)) {
        PostBurst(component, context, 256);
        return;
    }
    if (pool.OneIn(3)) {
        RestoreRange(component, "SignalSettings");
        return;
    }
    ReshapeRange(component, "SignalSettings", pool);
    component->setProperty(pool.OneIn(2) ? "LimitUpper" : "LimitLower", pool.Double(3));
}

void PostBurst(QWidget* component, TFeedContext& context, int count) {
    kx::TKxAnalogGControl* analog = AsAnalog(component);
    if (!analog) return;
    std::vector<double> readings;
    for (int i = 0; i < count; ++i)
        readings.push_back(context.Pool.Double());
    context.Hub.SetArmed(false);
    std::atomic<bool> done{false};
    std::thread worker([&] {
        for (double v : readings)
            analog->PostValue(v);
        done = true;
    });
    while (!done)
        QCoreApplication::processEvents();
    worker.join();
    QCoreApplication::processEvents();  // the last queued application
    context.Hub.SetArmed(true);
}

}  // namespace kxsoak
