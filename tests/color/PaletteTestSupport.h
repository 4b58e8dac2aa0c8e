#pragma once

#include "QtPrinters.h"
#include "color/PaletteCheck.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QUuid>

#include <vector>

namespace hueshelf::testing_palette {

using namespace Qt::StringLiterals;

// Ids with lower-case letters in them, so that the upper-casing of issue ids shows.
inline QUuid idFor(int n) {
    return QUuid::fromString(u"c0de0000-0000-4000-8abc-%1"_s.arg(n, 12, 10, QChar(u'0')));
}

// What the id of colour n must print as inside an issue id.
inline QString idText(int n) {
    return u"C0DE0000-0000-4000-8ABC-%1"_s.arg(n, 12, 10, QChar(u'0'));
}

inline ColorItem colorItem(int n, const QString& hex, bool locked = false) {
    ColorItem item;
    item.id = idFor(n);
    item.name = u"C%1"_s.arg(n);
    item.hex = hex;
    item.isLocked = locked;
    return item;
}

// "a b c" as {"a", "b", "c"}: keeps tables of codes on one line.
inline QStringList words(const QString& text) {
    return text.split(u' ', Qt::SkipEmptyParts);
}

// Colours C0, C1, ... with ids idFor(0), idFor(1), ...
inline QList<ColorItem> palette(const QStringList& hexes) {
    QList<ColorItem> colors;
    for (qsizetype i = 0; i < hexes.size(); ++i) {
        colors.append(colorItem(static_cast<int>(i), hexes.at(i)));
    }
    return colors;
}

inline QStringList idsOf(const std::vector<PaletteCheck::Issue>& issues) {
    QStringList ids;
    for (const PaletteCheck::Issue& issue : issues) {
        ids.append(issue.id);
    }
    return ids;
}

inline QString readId(int n) {
    return u"read-"_s + idText(n);
}
inline QString dupeId(int i, int j) {
    return u"dupe-"_s + idText(i) + u'-' + idText(j);
}
inline QString lookId(int i, int j) {
    return u"look-"_s + idText(i) + u'-' + idText(j);
}

} // namespace hueshelf::testing_palette

inline void PrintTo(const QStringList& list, std::ostream* out) {
    *out << '[';
    for (qsizetype i = 0; i < list.size(); ++i) {
        *out << (i ? ", " : "") << '"' << list.at(i).toStdString() << '"';
    }
    *out << ']';
}
