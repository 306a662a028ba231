#include "binaryfeeder.h"

#include "inputdriver.h"
#include "kx/framework/binarycontrol.h"

namespace kxsoak {

bool TBinaryFeeder::Accepts(const QWidget* component) const {
    return qobject_cast<const kx::TKxBinGControl*>(component) != nullptr;
}

void TBinaryFeeder::Feed(QWidget* component, TFeedContext& context) {
    auto* element = qobject_cast<kx::TKxBinGControl*>(component);
    TValuePool& pool = context.Pool;
    switch (context.Step % 4) {
        case 0:
            element->SetChecked(!element->Checked());
            break;
        case 1:
            element->SetStatusInt(pool.Int());
            break;
        case 2:
            element->setProperty("Checked", pool.OneIn(2));
            break;
        default:
            SendRandomInput(element, pool);
            break;
    }
}

void TBinaryFeeder::Reshape(QWidget* component, TFeedContext& context) {
    auto* element = qobject_cast<kx::TKxBinGControl*>(component);
    TValuePool& pool = context.Pool;
    switch (pool.Between(0, 4)) {
        case 0:
            element->SetFlashing(!pool.OneIn(4));  // mostly on, so that blinking runs
            break;
        case 1:
            element->SetFrequencyValue(pool.Between(-1, 6));  // two out of range
            break;
        case 2:
            element->SetMode(kx::TKxBinGControl::TMode(pool.Between(0, 3)));
            break;
        case 3:
            element->SetGroupIndex(pool.Between(-1, 2));
            break;
        default:
            element->SetStatusBit(pool.Between(-1, 32));
            break;
    }
}

}  // namespace kxsoak
