#pragma once

#include "QtPrinters.h"
#include "color/PaletteCheck.h"

#include <QStringList>
#include <QUuid>

#include <vector>

namespace hueshelf::testing_palette {

using namespace Qt::StringLiterals;

// Ids with lower-case letters in them, so that the upper-casing of issue ids shows.
inline QUuid idFor(int n) {
    return QUuid::fromString(u"c0de0000-0000-4000-8abc-%1"_s.arg(n, 12, 10, QChar(u'0')));
}

// "a b c" as {"a", "b", "c"}: keeps tables of codes on one line.
inline QStringList words(const QString& text) {
    return text.split(u' ', Qt::SkipEmptyParts);
}

// Colours C0, C1, ... with ids idFor(0), idFor(1), ...
inline QList<ColorItem> palette(const QStringList& hexes) {
    QList<ColorItem> colors;
    for (qsizetype i = 0; i < hexes.size(); ++i)
        colors.append({idFor(int(i)), u"C%1"_s.arg(i), hexes.at(i), false, false, false, {}});
    return colors;
}

inline QStringList hexesOf(const QList<ColorItem>& colors) {
    QStringList hexes;
    for (const ColorItem& color : colors)
        hexes.append(color.hex);
    return hexes;
}

inline QStringList idsOf(const std::vector<PaletteCheck::Issue>& issues) {
    QStringList ids;
    for (const PaletteCheck::Issue& issue : issues)
        ids.append(issue.id);
    return ids;
}

} // namespace hueshelf::testing_palette
