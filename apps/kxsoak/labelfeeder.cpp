#include "labelfeeder.h"

#include "kx/decoration/kxlabel.h"

namespace kxsoak {

bool TLabelFeeder::Accepts(const QWidget* component) const {
    return qobject_cast<const kx::TKxLabel*>(component) != nullptr;
}

void TLabelFeeder::Feed(QWidget* component, TFeedContext& context) {
    TValuePool& pool = context.Pool;
    component->setProperty("Digit", pool.OneIn(8) ? pool.Int() : pool.Between(0, 33));
}

void TLabelFeeder::Reshape(QWidget* component, TFeedContext& context) {
    TValuePool& pool = context.Pool;
    if (pool.OneIn(3)) {
        component->setProperty("DigitText", "RUNNING;FAULT;;MAINTENANCE;" + pool.Text());
    } else {
        component->setProperty(pool.OneIn(2) ? "DigitText" : "DefaultText", pool.Text());
    }
}

}  // namespace kxsoak
