#pragma once

#include "model/ColorItem.h"

#include <QList>
#include <QString>
#include <QUuid>

#include <optional>

namespace hueshelf {

// Groups are not stored as such: a palette stays one flat list, and a group is the run of
// colours from one with `dividerBefore` up to the next. These pure functions read that list
// into runs, write runs back, and name the bar's overflow sections. All of them are total, and
// none of them can make a colour disappear.
namespace PaletteGroups {

using namespace Qt::StringLiterals;

// Run 0 holds the colours ahead of the first divider and always exists; every later run is a
// group, named after the label of its first colour.
struct Run {
    QString name;
    QList<QUuid> ids;

    friend bool operator==(const Run&, const Run&) = default;
};

struct OverflowSection {
    QString title;
    QList<QUuid> ids;    // the run's hidden colours, in order
    QList<QUuid> allIDs; // the whole run, hidden or not

    friend bool operator==(const OverflowSection&, const OverflowSection&) = default;
};

inline const QString ungroupedTitle = u"Not in a group"_s;
inline const QString unnamedGroupTitle = u"Unnamed group"_s;
inline const QString continuedSuffix = u" \u2014 continued"_s;

// At least one run; a first colour with a divider gives an empty run 0 in front of it.
QList<Run> runs(const QList<ColorItem>& colors);

// The colours in the runs' order, with dividers and labels rewritten to match. Ids the palette
// doesn't hold are ignored, colours no run holds join the end of run 0, and a group left
// without colours vanishes. A name on run 0 becomes a divider on the first colour.
QList<ColorItem> applied(const QList<Run>& runs, const QList<ColorItem>& colors);

// The sections of the overflow list for the colours from `firstHiddenIndex` on (a negative
// index hides every colour).
QList<OverflowSection> overflowSections(const QList<ColorItem>& colors, qsizetype firstHiddenIndex);

// The group's colours join the end of run 0. Run 0 itself and indexes out of range leave the
// list as it is.
QList<Run> removeGroup(qsizetype index, const QList<Run>& runs);

// Takes the id out of every run and puts it into `target`, in front of `before` if that stands
// there, else at the end. A target out of range leaves the id in no run, so `applied` returns
// the colour to the end of run 0.
QList<Run> movedColor(const QUuid& id, qsizetype target, const std::optional<QUuid>& before,
                      const QList<Run>& runs);

} // namespace PaletteGroups
} // namespace hueshelf
