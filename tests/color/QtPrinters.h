#pragma once

#include <QString>

#include <ostream>

// Readable failure messages for Qt text in GoogleTest expectations.
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}
