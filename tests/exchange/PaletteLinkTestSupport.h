#pragma once

#include "exchange/PaletteLink.h"

#include <QString>
#include <QStringList>

#include <ostream>

namespace hueshelf::PaletteLink {

// Readable failure messages for the codec's values (found by argument-dependent lookup).
inline void PrintTo(LinkError error, std::ostream* out) {
    *out << caseName(error).toStdString();
}
inline void PrintTo(const Palette& palette, std::ostream* out) {
    *out << '"' << palette.name.toStdString() << "\" [";
    for (const Color& color : palette.colors) {
        *out << (color.dividerBefore ? " |" + color.dividerLabel.toStdString() + "|" : " ")
             << color.name.toStdString() << ':' << color.hex.toStdString();
    }
    *out << " ]";
}
template <typename T>
void PrintTo(const Result<T>& result, std::ostream* out) {
    if (result)
        PrintTo(*result, out);
    else
        PrintTo(result.error(), out);
}

} // namespace hueshelf::PaletteLink

namespace hueshelf::testing {

inline QString repeated(const QString& text, int times) {
    return text.repeated(times);
}

// A complete link around a payload.
inline QString linkOf(const QString& payload) {
    return PaletteLink::linkPrefix() + payload;
}

// `count` valid colour fields joined by commas: "C0:000000,C1:000000,...".
inline QString colorFields(int count) {
    QStringList fields;
    for (int i = 0; i < count; ++i)
        fields.append(QStringLiteral("C") + QString::number(i) + QStringLiteral(":000000"));
    return fields.join(u',');
}

} // namespace hueshelf::testing
