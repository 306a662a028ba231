#include "jsonpointer.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>

namespace kx::panel {
namespace {

// "~0" last: the other order would turn "~01" into "/" instead of "~1".
QString unescape(QString token) {
    return token.replace(QLatin1String("~1"), QLatin1String("/"))
        .replace(QLatin1String("~0"), QLatin1String("~"));
}

std::optional<qsizetype> arrayIndex(const QString& token, qsizetype size) {
    if (token.isEmpty() || token.size() > 10) return std::nullopt;
    if (token.size() > 1 && token.front() == QLatin1Char('0')) return std::nullopt;
    for (QChar c : token)
        if (c < QLatin1Char('0') || c > QLatin1Char('9')) return std::nullopt;
    const qsizetype i = token.toLongLong();
    if (i >= size) return std::nullopt;
    return i;
}

}  // namespace

std::optional<QJsonValue> ResolveJsonPointer(const QJsonValue& root, const QString& pointer) {
    if (pointer.isEmpty()) return root;
    if (pointer.front() != QLatin1Char('/')) return std::nullopt;
    QJsonValue at = root;
    const QStringList tokens = pointer.mid(1).split(QLatin1Char('/'));
    for (const QString& raw : tokens) {
        const QString token = unescape(raw);
        if (at.isObject()) {
            const QJsonObject o = at.toObject();
            const auto it = o.constFind(token);
            if (it == o.constEnd()) return std::nullopt;
            at = it.value();
        } else if (at.isArray()) {
            const QJsonArray a = at.toArray();
            const auto i = arrayIndex(token, a.size());
            if (!i) return std::nullopt;
            at = a.at(*i);
        } else {
            return std::nullopt;
        }
    }
    return at;
}

}  // namespace kx::panel
