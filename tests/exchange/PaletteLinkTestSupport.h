#pragma once

#include "../color/QtPrinters.h"
#include "exchange/PaletteLink.h"

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
