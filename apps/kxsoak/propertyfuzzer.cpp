#include "propertyfuzzer.h"

#include <QByteArrayList>
#include <QColor>
#include <QMetaEnum>
#include <QWidget>
#include <algorithm>

namespace kxsoak {

namespace {

// Paths on disk (the soak must not write files where it runs), the design-time switch
// and Qt's own window-level properties stay as they are.
bool Skipped(const QMetaProperty& property) {
    static const QByteArrayList skipped = {"FileName", "UseAppDir", "Designing",
                                           "CharacteristicFile"};
    const QByteArray name = property.name();
    return std::any_of(skipped.begin(), skipped.end(),
                       [&](const QByteArray& s) { return name.endsWith(s); });
}

bool IsFontSize(const QMetaProperty& property) {
    const QByteArray name = property.name();
    return name == "Size" || name.endsWith("_Size") || name == "Height" || name.endsWith("_Height");
}

bool IsSettingsObject(const QMetaProperty& property) {
    return property.metaType().flags().testFlag(QMetaType::PointerToQObject);
}

// The first property that belongs to the library rather than to Qt's own bases.
int FirstOwnProperty(const QObject* object) {
    return object->isWidgetType() ? QWidget::staticMetaObject.propertyCount()
                                  : QObject::staticMetaObject.propertyCount();
}

}  // namespace

std::vector<TPropertyFuzzer::TTarget> TPropertyFuzzer::Targets(QObject* object) const {
    std::vector<TTarget> targets;
    std::vector<QObject*> owners{object};
    for (size_t i = 0; i < owners.size() && i < 32; ++i) {
        QObject* owner = owners[i];
        const QMetaObject* meta = owner->metaObject();
        for (int p = FirstOwnProperty(owner); p < meta->propertyCount(); ++p) {
            const QMetaProperty property = meta->property(p);
            if (IsSettingsObject(property)) {
                // Owned settings objects only: a widget it points at (a print trend's
                // trend) belongs to somebody else.
                QObject* child = property.read(owner).value<QObject*>();
                if (child && !child->isWidgetType()) owners.push_back(child);
            } else if (property.isWritable() && !Skipped(property)) {
                targets.push_back({owner, property});
            }
        }
    }
    return targets;
}

void TPropertyFuzzer::ChangeOne(QObject* object) {
    const std::vector<TTarget> targets = Targets(object);
    if (targets.empty()) return;
    const TTarget& target = targets[size_t(pool_.Between(0, int(targets.size()) - 1))];
    Write(target.Owner, target.Property);
}

void TPropertyFuzzer::SweepEnumsAndBools(QObject* object) {
    for (const TTarget& target : Targets(object)) {
        const QMetaProperty& property = target.Property;
        if (property.isEnumType()) {
            const QMetaEnum keys = property.enumerator();
            for (int k = 0; k < keys.keyCount() && target.Owner; ++k) {
                property.write(target.Owner, keys.value(k));
            }
        } else if (property.metaType().id() == QMetaType::Bool) {
            for (int k = 0; k < 2 && target.Owner; ++k) {
                property.write(target.Owner, !property.read(target.Owner).toBool());
            }
        }
    }
}

void TPropertyFuzzer::ShortenLongTexts() {
    for (const TTarget& target : longTexts_) {
        if (target.Owner) target.Property.write(target.Owner, QStringLiteral("kPa"));
    }
    longTexts_.clear();
}

void TPropertyFuzzer::Write(QObject* owner, const QMetaProperty& property) {
    if (!owner) return;
    const QVariant value = RandomValue(property);
    if (!value.isValid()) return;
    property.write(owner, value);
    constexpr qsizetype kLongText = 256;
    if (value.metaType().id() == QMetaType::QString && value.toString().size() > kLongText)
        longTexts_.push_back({owner, property});
}

QVariant TPropertyFuzzer::RandomValue(const QMetaProperty& property) {
    if (property.isEnumType()) {
        const QMetaEnum keys = property.enumerator();
        return keys.value(pool_.Between(0, keys.keyCount() - 1));
    }
    if (IsFontSize(property)) return pool_.FontSize();
    switch (property.metaType().id()) {
        case QMetaType::Bool:
            return pool_.OneIn(2);
        case QMetaType::Int:
            return pool_.Int();
        case QMetaType::UInt:
            return pool_.UInt();
        case QMetaType::Float:
            return pool_.Float(3);
        case QMetaType::Double:
            return pool_.Double(3);
        case QMetaType::QString:
            return pool_.Text();
        case QMetaType::QColor:
            return pool_.Color();
        default:
            return {};  // fonts, pointers and the rest of Qt's types are not fuzzed
    }
}

}  // namespace kxsoak
