#pragma once
// JSON pointer lookup (RFC 6901): "" is the whole document, "/a/0/b" walks object keys and
// array indices; "~1" in a key stands for "/" and "~0" for "~". An array index is "0" or
// a number without leading zeros inside the array; "-" (one past the end) and anything
// else name nothing. A pointer that does not start with "/" (and is not empty), a key
// that is missing or a step into a number or string give no value.
#include <QJsonValue>
#include <QString>
#include <optional>

namespace kx::panel {

std::optional<QJsonValue> ResolveJsonPointer(const QJsonValue& root, const QString& pointer);

}  // namespace kx::panel
