#include "kx/navigation/vcindaccessible.h"

#include <QCoreApplication>

#include "kx/host/formatfloat.h"
#include "kx/navigation/vcind.h"

namespace kx {

namespace {

QString kxTr(const char* text) {
    return QCoreApplication::translate("KxAccessible", text);
}

QString readingText(const TSignalSettings& s, float value, const QString& name) {
    const QString format = s.ValueFormat().isEmpty() ? QStringLiteral("##0.#") : s.ValueFormat();
    QString t = name + QLatin1Char(' ') + FormatFloat(format, double(value));
    const QString& unit = s.ValueUnit();
    if (unit.isEmpty()) return t;
    // "5.0°" and "50%" read as one; "3 m" needs its space.
    if (unit.at(0).isLetterOrNumber()) t += QLatin1Char(' ');
    return t + unit;
}

}  // namespace

QString KxVCIndValueText(const TKxVCInd& d) {
    const QString sep = QStringLiteral("; ");
    auto name = [](const TSignalSettings& s, const char* word) {
        return s.Name1().isEmpty() ? kxTr(word) : s.Name1();
    };
    // The deviation's names are the instrument's own (shown under it), so it keeps its word.
    return readingText(*d.PitchSettings(), d.Pitch(), name(*d.PitchSettings(), "Pitch")) + sep +
           readingText(*d.RollSettings(), d.Roll(), name(*d.RollSettings(), "Roll")) + sep +
           readingText(*d.CourseSettings(), d.Course(), name(*d.CourseSettings(), "Course")) + sep +
           readingText(*d.DeviationSettings(), d.Deviation(), kxTr("Deviation"));
}

TKxVCIndAccessible::TKxVCIndAccessible(TKxVCInd* indicator) : TKxAnalogAccessible(indicator) {}

QString TKxVCIndAccessible::text(QAccessible::Text t) const {
    const auto* d = qobject_cast<const TKxVCInd*>(control());
    if (t == QAccessible::Value && d) return KxVCIndValueText(*d);
    return TKxAnalogAccessible::text(t);
}

QAccessibleInterface* KxVCIndAccessibleFactory(const QString&, QObject* object) {
    if (auto* d = qobject_cast<TKxVCInd*>(object)) return new TKxVCIndAccessible(d);
    return nullptr;
}

void KxInstallVCIndAccessibility() {
    QAccessible::installFactory(&KxVCIndAccessibleFactory);
}

}  // namespace kx
