#include "model/PaletteGroups.h"

#include <QHash>

#include <algorithm>

namespace hueshelf::PaletteGroups {

QList<Run> runs(const QList<ColorItem>& colors) {
    QList<Run> result{Run{}};
    for (const ColorItem& color : colors) {
        if (color.dividerBefore)
            result.append(Run{color.dividerLabel, {}});
        result.last().ids.append(color.id);
    }
    return result;
}

QList<ColorItem> applied(const QList<Run>& runs, const QList<ColorItem>& colors) {
    // Positions of each id in the palette, in order. Ids are unique in a healthy palette, but a
    // damaged one must not lose a colour either: each mention of an id in the runs claims the
    // next colour of that id that no earlier mention claimed.
    QHash<QUuid, QList<qsizetype>> unclaimed;
    for (qsizetype i = 0; i < colors.size(); ++i)
        unclaimed[colors.at(i).id].append(i);

    struct Placed {
        QString name;
        QList<qsizetype> positions;
    };
    QList<Placed> placed;
    placed.reserve(std::max<qsizetype>(runs.size(), 1));
    for (const Run& run : runs) {
        Placed entry{run.name, {}};
        for (const QUuid& id : run.ids) {
            const auto found = unclaimed.find(id);
            if (found == unclaimed.end() || found->isEmpty())
                continue;
            entry.positions.append(found->takeFirst());
        }
        placed.append(std::move(entry));
    }
    if (placed.isEmpty())
        placed.append(Placed{});

    QList<bool> isClaimed(colors.size(), true);
    for (const QList<qsizetype>& positions : std::as_const(unclaimed))
        for (const qsizetype position : positions)
            isClaimed[position] = false;
    for (qsizetype i = 0; i < colors.size(); ++i)
        if (!isClaimed.at(i))
            placed.first().positions.append(i);

    QList<ColorItem> result;
    result.reserve(colors.size());
    qsizetype newIndex = 0;
    for (qsizetype r = 0; r < placed.size(); ++r) {
        const Placed& run = placed.at(r);
        if (r > 0 && run.positions.isEmpty())
            continue; // a group that lost its last colour goes, name and all
        for (qsizetype k = 0; k < run.positions.size(); ++k) {
            ColorItem color = colors.at(run.positions.at(k));
            if (k > 0) {
                color.dividerBefore = false;
                color.dividerLabel.clear();
            } else if (newIndex > 0) {
                color.dividerBefore = true;
                color.dividerLabel = run.name;
            } else {
                // A name on run 0 can only live on as a divider on the first colour; it is read
                // back as a group of its own.
                color.dividerBefore = !run.name.isEmpty();
                color.dividerLabel = run.name;
            }
            result.append(color);
        }
        ++newIndex;
    }
    return result;
}

QList<OverflowSection> overflowSections(const QList<ColorItem>& colors,
                                        qsizetype firstHiddenIndex) {
    const qsizetype firstHidden = std::max<qsizetype>(firstHiddenIndex, 0);
    if (firstHidden >= colors.size())
        return {};

    QList<OverflowSection> sections;
    const QList<Run> all = runs(colors);
    // Runs hold the colours in palette order, so a running position tells which are hidden.
    qsizetype position = 0;
    for (qsizetype i = 0; i < all.size(); ++i) {
        const Run& run = all.at(i);
        QList<QUuid> filtered;
        for (const QUuid& id : run.ids) {
            if (position >= firstHidden)
                filtered.append(id);
            ++position;
        }
        if (filtered.isEmpty())
            continue;

        const bool isGroup = i > 0 || !run.name.isEmpty();
        QString title = !run.name.isEmpty() ? run.name : i > 0 ? unnamedGroupTitle : ungroupedTitle;
        if (isGroup && filtered.size() < run.ids.size())
            title += continuedSuffix; // the group began on the visible part of the bar
        sections.append(OverflowSection{title, filtered, run.ids});
    }
    return sections;
}

QList<Run> removeGroup(qsizetype index, const QList<Run>& runs) {
    if (index < 1 || index >= runs.size())
        return runs;
    QList<Run> result = runs;
    const Run removed = result.takeAt(index);
    result.first().ids.append(removed.ids);
    return result;
}

QList<Run> movedColor(const QUuid& id, qsizetype target, const std::optional<QUuid>& before,
                      const QList<Run>& runs) {
    QList<Run> result = runs;
    for (Run& run : result)
        run.ids.removeAll(id);
    if (target < 0 || target >= result.size())
        return result;

    QList<QUuid>& ids = result[target].ids;
    const qsizetype at = before ? ids.indexOf(*before) : -1;
    if (at >= 0)
        ids.insert(at, id);
    else
        ids.append(id);
    return result;
}

} // namespace hueshelf::PaletteGroups
