#include "kx/recorders/trendaccessible.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QStringList>

#include "kx/host/formatfloat.h"
#include "kx/recorders/oppoint.h"
#include "kx/recorders/oppointaccessible.h"
#include "kx/recorders/seconddisplay.h"
#include "kx/recorders/seconddisplayaccessible.h"
#include "kx/recorders/trend.h"

namespace kx {
namespace {

QString tr(const char* text) {
    return QCoreApplication::translate("KxAccessible", text);
}

// The value a stored digit stands for, as the cursor readout reports it.
float storedValue(const TChSettings& c, uint16_t digit) {
    return static_cast<float>(double(c.ValueFrom()) + double(digit) * c.ValuePerDigit());
}

QString newestValues(const TKxTrend& t) {
    if (t.RecordCount() == 0) return {};
    const TSignRec& r = t.Records()[t.RecordCount() - 1];
    QStringList parts;
    for (int ch = 1; ch <= TKxTrend::kChannels; ++ch) {
        const TChSettings& c = *t.Channel(ch);
        if (!c.Visible()) continue;
        const QString format =
            c.ValueFormat().isEmpty() ? QStringLiteral("##0.#") : c.ValueFormat();
        QString part = QStringLiteral("Ch%1 %2").arg(ch).arg(
            FormatFloat(format, storedValue(c, r.Ch[ch - 1])));
        if (!c.ValueUnit().isEmpty()) part += QLatin1Char(' ') + c.ValueUnit();
        parts << part;
    }
    return parts.join(QStringLiteral("; "));
}

QString alarmState(const TKxTrend& t) {
    QString s = t.StartRecording() ? tr("recording") : tr("stopped");
    if (t.RecordCount() == 0) return s;
    const int ch = t.AbsScaleCh() >= 1 ? t.AbsScaleCh() : 1;
    const float v = storedValue(*t.Channel(ch), t.Records()[t.RecordCount() - 1].Ch[ch - 1]);
    if (t.LimitUpper()->Enabled() && v > t.LimitUpper()->Value())
        s += QStringLiteral(", ") + tr("upper limit exceeded");
    else if (t.LimitLower()->Enabled() && v < t.LimitLower()->Value())
        s += QStringLiteral(", ") + tr("lower limit exceeded");
    return s;
}

}  // namespace

TKxTrendAccessible::TKxTrendAccessible(TKxTrend* trend)
    : QAccessibleWidget(trend, QAccessible::Chart) {}

TKxTrend* TKxTrendAccessible::trend() const {
    return qobject_cast<TKxTrend*>(object());
}

QString TKxTrendAccessible::text(QAccessible::Text t) const {
    const TKxTrend* tr = trend();
    if (!tr) return QAccessibleWidget::text(t);
    switch (t) {
        case QAccessible::Name:
            if (!tr->accessibleName().isEmpty()) return tr->accessibleName();
            if (!tr->Caption().isEmpty()) return tr->Caption();
            return tr->objectName();
        case QAccessible::Value:
            return newestValues(*tr);
        case QAccessible::Description: {
            const QString own = tr->accessibleDescription();
            return own.isEmpty() ? alarmState(*tr) : own + QStringLiteral(", ") + alarmState(*tr);
        }
        case QAccessible::Help:
            return tr->whatsThis().isEmpty() ? tr->toolTip() : tr->whatsThis();
        default:
            return QAccessibleWidget::text(t);
    }
}

QAccessibleInterface* KxRecorderAccessibleFactory(const QString&, QObject* object) {
    if (auto* t = qobject_cast<TKxTrend*>(object)) return new TKxTrendAccessible(t);
    if (auto* d = qobject_cast<TKxSecondDisplay*>(object)) return new TKxSecondDisplayAccessible(d);
    if (auto* o = qobject_cast<TKxOperatingPoint*>(object))
        return new TKxOperatingPointAccessible(o);
    return nullptr;
}

void KxInstallRecorderAccessibility() {
    QAccessible::installFactory(&KxRecorderAccessibleFactory);
}

}  // namespace kx
