#include "soakapplication.h"

#include <QEvent>

namespace kxsoak {

bool TSoakApplication::notify(QObject* receiver, QEvent* event) {
    const QEvent::Type type = event->type();
    const bool painting =
        type == QEvent::Paint || type == QEvent::UpdateRequest || type == QEvent::Expose;
    if (!painting) return QApplication::notify(receiver, event);
    ++paintDepth_;
    const bool handled = QApplication::notify(receiver, event);
    --paintDepth_;
    return handled;
}

}  // namespace kxsoak
