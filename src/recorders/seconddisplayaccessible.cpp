#include "kx/recorders/seconddisplayaccessible.h"

#include <QCoreApplication>

#include "kx/recorders/kxclock.h"
#include "kx/recorders/ophourcounter.h"

namespace kx {
namespace {

QString kxTr(const char* text) {
    return QCoreApplication::translate("KxAccessible", text);
}

QString counterState(const TKxSecondDisplay& d) {
    const auto* c = qobject_cast<const TKxOpHourCounter*>(&d);
    if (!c) return {};
    QString s = c->Subscribed() ? kxTr("counting") : kxTr("stopped");
    if (c->LimitLatch()) s += QStringLiteral(", ") + kxTr("limit reached");
    if (c->ZeroFlag()) s += QStringLiteral(", ") + kxTr("zero");
    return s;
}

}  // namespace

TKxSecondDisplayAccessible::TKxSecondDisplayAccessible(TKxSecondDisplay* display)
    : QAccessibleWidget(display, QAccessible::Indicator) {}

TKxSecondDisplay* TKxSecondDisplayAccessible::display() const {
    return qobject_cast<TKxSecondDisplay*>(object());
}

QString TKxSecondDisplayAccessible::text(QAccessible::Text t) const {
    const TKxSecondDisplay* d = display();
    if (!d) return QAccessibleWidget::text(t);
    switch (t) {
        case QAccessible::Name:
            if (!d->accessibleName().isEmpty()) return d->accessibleName();
            if (!d->objectName().isEmpty()) return d->objectName();
            return qobject_cast<const TKxClock*>(d) ? kxTr("clock") : kxTr("operating-hour counter");
        case QAccessible::Value:
            return d->Text();
        case QAccessible::Description: {
            const QString own = d->accessibleDescription(), s = counterState(*d);
            if (own.isEmpty() || s.isEmpty()) return own + s;
            return own + QStringLiteral(", ") + s;
        }
        case QAccessible::Help:
            return d->whatsThis().isEmpty() ? d->toolTip() : d->whatsThis();
        default:
            return QAccessibleWidget::text(t);
    }
}

}  // namespace kx
