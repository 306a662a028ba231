#include "inputdriver.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <array>

namespace kxsoak {

namespace {

QPointF RandomPoint(const QWidget* component, TValuePool& pool) {
    return QPointF(pool.Between(-2, component->width() + 2),
                   pool.Between(-2, component->height() + 2));
}

void SendMouse(QWidget* component, QEvent::Type type, const QPointF& at) {
    const Qt::MouseButtons held =
        type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, at, component->mapToGlobal(at), Qt::LeftButton, held, Qt::NoModifier);
    QCoreApplication::sendEvent(component, &event);
}

void Drag(QWidget* component, TValuePool& pool) {
    QPointer<QWidget> alive(component);
    SendMouse(component, QEvent::MouseButtonPress, RandomPoint(component, pool));
    for (int i = 0; i < 3 && alive; ++i) {
        SendMouse(alive, QEvent::MouseMove, RandomPoint(alive, pool));
    }
    if (alive) SendMouse(alive, QEvent::MouseButtonRelease, RandomPoint(alive, pool));
}

void PressKey(QWidget* component, TValuePool& pool) {
    static constexpr std::array kKeys = {Qt::Key_Up,       Qt::Key_Down, Qt::Key_PageUp,
                                         Qt::Key_PageDown, Qt::Key_Home, Qt::Key_End,
                                         Qt::Key_Space,    Qt::Key_Left, Qt::Key_Right};
    const Qt::Key key = kKeys[size_t(pool.Between(0, int(kKeys.size()) - 1))];
    QPointer<QWidget> alive(component);
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
    QCoreApplication::sendEvent(component, &press);
    if (!alive) return;
    QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier);
    QCoreApplication::sendEvent(alive, &release);
}

}  // namespace

void SendRandomInput(QWidget* component, TValuePool& pool) {
    if (pool.OneIn(2)) {
        Drag(component, pool);
    } else {
        PressKey(component, pool);
    }
}

}  // namespace kxsoak
