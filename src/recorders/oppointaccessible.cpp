#include "kx/recorders/oppointaccessible.h"

#include <QCoreApplication>

#include "kx/host/formatfloat.h"
#include "kx/recorders/oppoint.h"

namespace kx {
namespace {

QString kxTr(const char* text) {
    return QCoreApplication::translate("KxAccessible", text);
}

QString axisText(const TSignalSettings& s, float value, const char* fallback) {
    const QString format = s.ValueFormat().isEmpty() ? QStringLiteral("##0.#") : s.ValueFormat();
    QString t = (s.Name1().isEmpty() ? QString::fromLatin1(fallback) : s.Name1()) +
                QLatin1Char(' ') + FormatFloat(format, double(value));
    if (!s.ValueUnit().isEmpty()) t += QLatin1Char(' ') + s.ValueUnit();
    return t;
}

bool outside(int32_t perMille) {
    return perMille < 0 || perMille > 1000;
}

}  // namespace

TKxOperatingPointAccessible::TKxOperatingPointAccessible(TKxOperatingPoint* display)
    : QAccessibleWidget(display, QAccessible::Indicator) {}

TKxOperatingPoint* TKxOperatingPointAccessible::display() const {
    return qobject_cast<TKxOperatingPoint*>(object());
}

QString TKxOperatingPointAccessible::text(QAccessible::Text t) const {
    const TKxOperatingPoint* d = display();
    if (!d) return QAccessibleWidget::text(t);
    switch (t) {
        case QAccessible::Name:
            if (!d->accessibleName().isEmpty()) return d->accessibleName();
            if (!d->objectName().isEmpty()) return d->objectName();
            return kxTr("operating point");
        case QAccessible::Value:
            return axisText(*d->SignalSettingsX(), d->ValueX(), "X") + QStringLiteral("; ") +
                   axisText(*d->SignalSettingsY(), d->ValueY(), "Y");
        case QAccessible::Description: {
            const TPoint pm = d->UnclampedPerMille();
            const QString s = outside(pm.X) || outside(pm.Y) ? kxTr("out of range") : kxTr("normal");
            const QString own = d->accessibleDescription();
            return own.isEmpty() ? s : own + QStringLiteral(", ") + s;
        }
        case QAccessible::Help:
            return d->whatsThis().isEmpty() ? d->toolTip() : d->whatsThis();
        default:
            return QAccessibleWidget::text(t);
    }
}

}  // namespace kx
