#pragma once
// Lets GoogleTest print QStrings (and lists of them) as text in failure messages.
#include <QString>
#include <ostream>

inline void PrintTo(const QString& s, std::ostream* os) {
    *os << '"' << s.toStdString() << '"';
}
