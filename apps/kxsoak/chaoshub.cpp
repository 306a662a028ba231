#include "chaoshub.h"

#include <QMetaMethod>
#include <QWidget>

#include "soakapplication.h"

namespace kxsoak {

TChaosHub::TChaosHub(TValuePool& pool, TComponents components)
    : pool_(pool), components_(std::move(components)) {}

void TChaosHub::Watch(QWidget* component) {
    const QMetaMethod slot = metaObject()->method(metaObject()->indexOfSlot("onSignal()"));
    const QMetaObject* meta = component->metaObject();
    // QObject's own signals (destroyed, objectNameChanged) are left out: deleting from
    // destroyed() is not an event handler of the component.
    for (int m = QObject::staticMetaObject.methodCount(); m < meta->methodCount(); ++m) {
        const QMetaMethod method = meta->method(m);
        if (method.methodType() == QMetaMethod::Signal) connect(component, method, this, slot);
    }
}

void TChaosHub::onSignal() {
    ++signals_;
    auto* sender = qobject_cast<QWidget*>(QObject::sender());
    if (!armed_ || !sender || !pool_.OneIn(oneIn_)) return;
    ++deletions_;
    // Inside a paint (the indicators evaluate their reading when they repaint, and that
    // fires their events) only a deferred deletion is safe.
    if (pool_.OneIn(2) || TSoakApplication::Painting()) {
        sender->deleteLater();
        return;
    }
    // Qt cannot delete a widget in the middle of a focus change, and a signal may fire
    // inside one (an edit checks its entry when it loses the focus), so only siblings that
    // never take the focus go at once.
    for (QWidget* other : components_()) {
        if (other != sender && other->focusPolicy() == Qt::NoFocus) {
            delete other;
            return;
        }
    }
    sender->deleteLater();
}

}  // namespace kxsoak
