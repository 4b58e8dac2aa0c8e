#include "model/TemplateMerge.h"

#include "model/ContentHash.h"

#include <QHash>
#include <QSet>
#include <QUuid>

namespace hueshelf {

namespace {

// The first palette of each id; later duplicates are never looked at, as a plain search in
// list order would not find them either.
QHash<QUuid, const ColorTemplate*> indexById(const QList<ColorTemplate>& templates) {
    QHash<QUuid, const ColorTemplate*> index;
    index.reserve(templates.size());
    for (const ColorTemplate& palette : templates) {
        if (!index.contains(palette.id))
            index.insert(palette.id, &palette);
    }
    return index;
}

// Recomputed, never the stored hash: another writer may hash differently or not at all, and
// between an edit and its save the stored one lags behind the content.
QString freshHash(const ColorTemplate& palette) {
    return computeContentHash(palette.name, palette.colors);
}

// A tie goes to the other process: its write is the newer fact on disk.
const ColorTemplate& laterOf(const ColorTemplate& local, const ColorTemplate& incoming) {
    return incoming.updatedAt >= local.updatedAt ? incoming : local;
}

const ColorTemplate& resolve(const ColorTemplate& local, const ColorTemplate& incoming,
                             const ColorTemplate* base) {
    if (!base)
        return laterOf(local, incoming);
    const QString baseHash = freshHash(*base);
    const QString incomingHash = freshHash(incoming);
    if (incomingHash == baseHash)
        return local;
    if (freshHash(local) == baseHash)
        return incoming;
    return laterOf(local, incoming);
}

} // namespace

QList<ColorTemplate> mergeTemplates(const QList<ColorTemplate>& base,
                                    const QList<ColorTemplate>& local,
                                    const QList<ColorTemplate>& incoming, double baseStamp,
                                    double incomingStamp) {
    if (!(incomingStamp > baseStamp))
        return local;

    const QHash<QUuid, const ColorTemplate*> baseById = indexById(base);
    const QHash<QUuid, const ColorTemplate*> incomingById = indexById(incoming);

    QList<ColorTemplate> merged;
    merged.reserve(local.size() + incoming.size());
    QSet<QUuid> localIds;
    localIds.reserve(local.size());
    for (const ColorTemplate& palette : local) {
        localIds.insert(palette.id);
        const ColorTemplate* remote = incomingById.value(palette.id);
        // Missing from the other side's write: a deletion there is not honoured, the palette
        // stays and the next save writes it back.
        if (!remote) {
            merged.append(palette);
            continue;
        }
        merged.append(resolve(palette, *remote, baseById.value(palette.id)));
    }

    for (const ColorTemplate& palette : incoming) {
        // Known to the base but gone here: deleted on this side, and it stays deleted.
        if (localIds.contains(palette.id) || baseById.contains(palette.id))
            continue;
        merged.append(palette);
        // A duplicate id further down the incoming list must not be appended twice.
        localIds.insert(palette.id);
    }
    return merged;
}

} // namespace hueshelf
