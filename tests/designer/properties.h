#pragma once
// The published properties that the library's classes declare (TKxControl and below),
// read generically, for comparing components made in different ways.
#include <QMetaProperty>
#include <QObject>
#include <QString>
#include <QVariant>
#include <map>
#include <string>

namespace kx::test {

// Name -> value of every readable property declared from the class named `root` down,
// leaving out object pointers (the settings objects, whose fields are published flat).
inline std::map<QString, QVariant> KxProperties(const QObject& object,
                                                const char* root = "kx::TKxControl") {
    std::map<QString, QVariant> values;
    const QMetaObject* meta = object.metaObject();
    const QMetaObject* base = meta;
    while (base && qstrcmp(base->className(), root) != 0)
        base = base->superClass();
    if (!base) return values;
    for (int i = base->propertyOffset(); i < meta->propertyCount(); ++i) {
        const QMetaProperty p = meta->property(i);
        if (p.metaType().flags() & QMetaType::PointerToQObject) continue;
        values[QString::fromLatin1(p.name())] = p.read(&object);
    }
    return values;
}

// "Name: a != b" for each property whose values differ (or that only one side has),
// one per line; empty when they agree.
inline std::string DiffProperties(const std::map<QString, QVariant>& a,
                                  const std::map<QString, QVariant>& b) {
    std::string diff;
    auto text = [](const std::map<QString, QVariant>& m, const QString& name) {
        const auto it = m.find(name);
        return it == m.end() ? QStringLiteral("(none)") : it->second.toString();
    };
    std::map<QString, bool> names;
    for (const auto& [name, value] : a)
        names[name] = true;
    for (const auto& [name, value] : b)
        names[name] = true;
    for (const auto& [name, unused] : names) {
        const auto ia = a.find(name);
        const auto ib = b.find(name);
        if (ia != a.end() && ib != b.end() && ia->second == ib->second) continue;
        diff += (name + QStringLiteral(": ") + text(a, name) + QStringLiteral(" != ") +
                 text(b, name) + QLatin1Char('\n'))
                    .toStdString();
    }
    return diff;
}

}  // namespace kx::test
