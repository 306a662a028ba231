#pragma once
// Mouse and keyboard as the user would give them: a press, a drag and a release at random
// points, or a key pressed and released. Handlers may delete the component on the way;
// the rest of the gesture is then dropped.
#include <QWidget>

#include "valuepool.h"

namespace kxsoak {

void SendRandomInput(QWidget* component, TValuePool& pool);

}  // namespace kxsoak
