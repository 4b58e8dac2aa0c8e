#pragma once

#include "model/ColorItem.h"
#include "model/PaletteGroups.h"

#include <QHash>
#include <QList>
#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <QUuid>

// A short text form of grouped palettes and runs, so group cases read as tables.
//
// A palette is a list of colour names separated by blanks. "Label|b" starts a group named
// Label at b, "|b" an unnamed group, and a trailing "!" locks the colour: "a b! Brand|c d".
// Runs are written as name[ids]: "[a b] Brand[c d] [e]". Ids follow from the names, so the
// same name always means the same colour.
namespace hueshelf::testing {

using namespace Qt::StringLiterals;

inline QHash<QUuid, QString>& notationNames() {
    static QHash<QUuid, QString> names;
    return names;
}

inline QUuid idFor(const QString& name) {
    static const QUuid space = QUuid::fromString(u"6f1d3c52-8e0b-4a53-9b59-0f4a3f9b8c21"_s);
    const QUuid id = QUuid::createUuidV5(space, name);
    notationNames().insert(id, name);
    return id;
}

inline QString nameFor(const QUuid& id) {
    return notationNames().value(id, u"?"_s);
}

inline QList<ColorItem> colorsFrom(const QString& layout) {
    QList<ColorItem> colors;
    for (QString token : layout.split(u' ', Qt::SkipEmptyParts)) {
        ColorItem color;
        const qsizetype bar = token.indexOf(u'|');
        if (bar >= 0) {
            color.dividerBefore = true;
            color.dividerLabel = token.left(bar);
            token = token.mid(bar + 1);
        }
        if (token.endsWith(u'!')) {
            color.isLocked = true;
            token.chop(1);
        }
        color.id = idFor(token);
        color.name = token;
        color.hex = u"#"_s + QString::number(colors.size() + 1).rightJustified(6, u'0');
        colors.append(color);
    }
    return colors;
}

// The notation of a colour list; stale labels (a label without its divider) show as "~label".
inline QString layoutOf(const QList<ColorItem>& colors) {
    QStringList tokens;
    for (const ColorItem& color : colors) {
        QString token;
        if (color.dividerBefore)
            token = color.dividerLabel + u'|';
        token += color.name;
        if (color.isLocked)
            token += u'!';
        if (!color.dividerBefore && !color.dividerLabel.isEmpty())
            token += u'~' + color.dividerLabel;
        tokens << token;
    }
    return tokens.join(u' ');
}

inline QList<PaletteGroups::Run> runsFrom(const QString& text) {
    static const QRegularExpression pattern(u"([^\\[\\] ]*)\\[([^\\]]*)\\]"_s);
    QList<PaletteGroups::Run> runs;
    for (const QRegularExpressionMatch& match : pattern.globalMatch(text)) {
        PaletteGroups::Run run{match.captured(1), {}};
        for (const QString& name : match.captured(2).split(u' ', Qt::SkipEmptyParts))
            run.ids.append(idFor(name));
        runs.append(run);
    }
    return runs;
}

inline QString namesOf(const QList<QUuid>& ids) {
    QStringList names;
    for (const QUuid& id : ids)
        names << nameFor(id);
    return names.join(u' ');
}

inline QString runsText(const QList<PaletteGroups::Run>& runs) {
    QStringList parts;
    for (const PaletteGroups::Run& run : runs)
        parts << run.name + u'[' + namesOf(run.ids) + u']';
    return parts.join(u' ');
}

} // namespace hueshelf::testing
