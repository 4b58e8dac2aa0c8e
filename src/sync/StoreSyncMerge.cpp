#include "model/ColorStorage.h"
#include "sync/StoreSync.h"
#include "sync/SyncConversion.h"
#include "sync/SyncManager.h"

#include <QHash>
#include <QSet>
#include <QStringList>

#include <algorithm>

namespace hueshelf {

using namespace Qt::StringLiterals;

namespace {

const QString kConflictSuffix = u" (Conflict)"_s;

QString nameAndHex(const QString& name, const QString& hex) {
    return name + u':' + hex;
}

// The colours as a set of name and code, order and repeats not counting, with the palette's
// name, in one text that two palettes share exactly when the guard against doubles would call
// them the same. Lengths go in front of the parts so that no name can pass for another split.
template <typename Color>
QString doubleKey(const QString& name, const QList<Color>& colors) {
    QStringList parts;
    parts.reserve(colors.size());
    for (const Color& color : colors) {
        const QString part = nameAndHex(color.name, color.hex);
        parts.append(QString::number(part.size()) + u':' + part);
    }
    parts.sort();
    parts.removeDuplicates();
    return QString::number(name.size()) + u':' + name + u'|' + parts.join(QString());
}

// The palettes of the working copy by that key, counted: every newcomer from the folder asks
// whether it doubles one, and scanning them all each time would make a pull quadratic.
class DoublesIndex {
public:
    bool contains(const QList<ColorTemplate>& working, const SyncableTemplate& record) {
        if (!m_built) {
            m_built = true;
            for (const ColorTemplate& palette : working)
                add(palette);
        }
        return m_counts.value(doubleKey(record.name, record.colors)) > 0;
    }

    void add(const ColorTemplate& palette) {
        if (m_built)
            ++m_counts[doubleKey(palette.name, palette.colors)];
    }

    void remove(const ColorTemplate& palette) {
        if (!m_built)
            return;
        const auto found = m_counts.find(doubleKey(palette.name, palette.colors));
        if (found != m_counts.end() && --*found == 0)
            m_counts.erase(found);
    }

private:
    QHash<QString, int> m_counts;
    // Built at the first newcomer, from the working copy as it is then; a pull that brings
    // only known ids never pays for it.
    bool m_built = false;
};

// The signature of the clean-up after a full sync: name and sorted colours, repeats counted.
QString duplicateSignature(const ColorTemplate& palette) {
    QStringList colors;
    colors.reserve(palette.colors.size());
    for (const ColorItem& color : palette.colors)
        colors.append(nameAndHex(color.name, color.hex));
    colors.sort();
    return palette.name + u"::"_s + colors.join(u'|');
}

// Each id with the place where it first stands.
QHash<QUuid, qsizetype> firstPlaces(const QList<ColorTemplate>& templates) {
    QHash<QUuid, qsizetype> places;
    places.reserve(templates.size());
    for (qsizetype i = templates.size() - 1; i >= 0; --i)
        places.insert(templates.at(i).id, i);
    return places;
}

qsizetype indexOf(const QList<ColorTemplate>& templates, const QUuid& id) {
    for (qsizetype i = 0; i < templates.size(); ++i) {
        if (templates.at(i).id == id)
            return i;
    }
    return -1;
}

} // namespace

SyncResult StoreSync::resolveSync(const ColorTemplate& local, const SyncableTemplate& remote,
                                  const std::optional<ShadowTemplateState>& shadow) {
    const QString& localHash = local.contentHash;
    const QString& remoteHash = remote.contentHash;
    // The revision takes no part: two devices count revisions independently.
    if (shadow) {
        const bool localUnchanged = localHash == shadow->contentHash;
        const bool remoteUnchanged = remoteHash == shadow->contentHash;
        if (localUnchanged && remoteUnchanged)
            return SyncResult::noChange();
        if (localUnchanged)
            return SyncResult::acceptRemote(remote);
        if (remoteUnchanged)
            return SyncResult::acceptLocal(local);
        if (localHash == remoteHash)
            return SyncResult::noChange();
        return SyncResult::conflict(local, remote);
    }
    // Never agreed on: the later writer wins, and equal times with different content can't be
    // decided.
    if (remote.lastModified < local.updatedAt)
        return SyncResult::acceptLocal(local);
    if (local.updatedAt < remote.lastModified)
        return SyncResult::acceptRemote(remote);
    if (localHash == remoteHash)
        return SyncResult::noChange();
    return SyncResult::conflict(local, remote);
}

SyncResult StoreSync::resolveSync(const ColorTemplate& local,
                                  const SyncableTemplate& remote) const {
    const auto shadow = m_storage.shadowState().constFind(local.id);
    return resolveSync(local, remote,
                       shadow == m_storage.shadowState().cend()
                           ? std::nullopt
                           : std::optional<ShadowTemplateState>(*shadow));
}

void StoreSync::applyRemoteTemplates(const QList<SyncableTemplate>& records) {
    QList<ColorTemplate> working = m_storage.templates();
    // The ids of the working copy, each with its first place in it: a pull looks up every
    // palette of the folder.
    QHash<QUuid, qsizetype> places = firstPlaces(working);
    QList<SyncConflict> conflicts;
    DoublesIndex doubles;

    for (const SyncableTemplate& record : records) {
        if (record.deleted) {
            if (!places.contains(record.id))
                continue;
            // A deletion always wins, whatever was edited here meanwhile.
            working.removeIf([&](const ColorTemplate& palette) {
                if (palette.id != record.id)
                    return false;
                doubles.remove(palette);
                return true;
            });
            // The palettes behind it have moved up.
            places = firstPlaces(working);
            m_storage.removeShadowState(record.id);
            m_storage.saveShadowState();
            continue;
        }

        if (const auto place = places.constFind(record.id); place != places.cend()) {
            const qsizetype index = *place;
            const SyncResult result = resolveSync(working.at(index), record);
            if (result.kind == SyncResult::Kind::acceptRemote) {
                doubles.remove(working.at(index));
                working[index] = toColorTemplate(record);
                doubles.add(working.at(index));
                recordSynced(record.id, record.lastModified, record.contentHash, record.revision);
            } else if (result.kind == SyncResult::Kind::conflict) {
                const ColorTemplate local = working.at(index);
                const double now = m_clock.nowMs();
                // The local version keeps its place and id; the next push writes it over the
                // file, and the remote version lives on beside it under a name of its own.
                const ColorTemplate copy = ColorTemplate::makeNew(
                    record.name + kConflictSuffix, toColorTemplate(record).colors, now);
                working.append(copy);
                doubles.add(copy);
                places.insert(copy.id, working.size() - 1);
                m_storage.setShadowState(
                    record.id, ShadowTemplateState{local.contentHash, local.revision, now});
                m_storage.saveShadowState();
                m_storage.setShadowState(
                    record.id, ShadowTemplateState{record.contentHash, record.revision, now});
                m_storage.saveShadowState();
                conflicts.append(
                    SyncConflict::templateModified(syncableFrom(local, m_sync.deviceId()), record));
            }
            continue;
        }

        if (doubles.contains(working, record))
            continue;
        working.append(toColorTemplate(record));
        doubles.add(working.constLast());
        places.insert(record.id, working.size() - 1);
        recordSynced(record.id, record.lastModified, record.contentHash, record.revision);
    }

    // Narrow equality on purpose: a remote change of locks, naming flags or groups alone is
    // not taken over, though its shadow moved on, and the next push writes the local version
    // back over it.
    if (working != m_storage.templates())
        publish(working);
    if (!conflicts.isEmpty())
        m_storage.setPendingConflicts(conflicts);
}

void StoreSync::removeDuplicateTemplates() {
    const QList<ColorTemplate> templates = m_storage.templates();
    const auto lastModified = [this](const QUuid& id) {
        return m_storage.templateLastModified().value(id, 0.0);
    };
    // By position rather than id, so two entries of one id can't take each other along.
    QHash<QString, qsizetype> kept;
    QList<bool> removed(templates.size(), false);
    for (qsizetype current = 0; current < templates.size(); ++current) {
        const QString signature = duplicateSignature(templates.at(current));
        const auto found = kept.find(signature);
        if (found == kept.end()) {
            kept.insert(signature, current);
            continue;
        }
        const qsizetype earlier = *found;
        if (lastModified(templates.at(earlier).id) < lastModified(templates.at(current).id)) {
            removed[current] = true;
        } else {
            removed[earlier] = true;
            *found = current;
        }
    }
    if (!removed.contains(true))
        return;

    QList<ColorTemplate> remaining;
    for (qsizetype i = 0; i < templates.size(); ++i) {
        if (!removed.at(i)) {
            remaining.append(templates.at(i));
            continue;
        }
        // The removed palette's file stays in the folder; the merge's guard against doubles
        // keeps it from coming back.
        m_storage.removeShadowState(templates.at(i).id);
        m_storage.saveShadowState();
    }
    publish(remaining);
}

void StoreSync::publish(const QList<ColorTemplate>& templates) {
    m_storage.setTemplates(templates);
    if (indexOf(templates, m_storage.activeTemplateId()) < 0)
        m_storage.setActiveTemplateId(templates.isEmpty() ? QUuid::createUuid()
                                                          : templates.constFirst().id);
    // Not saveTemplates: the merge itself must not raise any revision.
    m_storage.saveTemplatesWithoutStamping();
}

} // namespace hueshelf
