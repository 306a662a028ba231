#include "plainfeeder.h"

#include "inputdriver.h"

namespace kxsoak {

void TPlainFeeder::Feed(QWidget* component, TFeedContext& context) {
    if (context.Step % 4 == 0) SendRandomInput(component, context.Pool);
}

}  // namespace kxsoak
