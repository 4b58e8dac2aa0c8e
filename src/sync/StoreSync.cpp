#include "sync/StoreSync.h"

#include "model/ColorStorage.h"
#include "sync/SyncConversion.h"
#include "sync/SyncFolder.h"
#include "sync/SyncManager.h"

#include <QHash>
#include <QPointer>
#include <QSet>

#include <utility>

namespace hueshelf {

using namespace Qt::StringLiterals;

namespace {

const QString kAppearanceModeKey = u"appearanceMode"_s;
const QString kDefaultAppearanceMode = u"system"_s;

} // namespace

StoreSync::StoreSync(ColorStorage& storage, SyncManager& sync, IoQueue& ioQueue,
                     QSettings& settings, Clock& clock, Scheduler& scheduler, QObject* parent)
    : QObject(parent), m_storage(storage), m_sync(sync), m_ioQueue(ioQueue), m_settings(settings),
      m_clock(clock), m_scheduler(scheduler) {
    // The store holds the push back itself while a pass runs; the look here covers a pass
    // that began between the write and its completion.
    connect(&m_storage, &ColorStorage::templatesWritten, this, [this] {
        if (!m_storage.isSyncing())
            pushToCloud();
    });
    connect(&m_storage, &ColorStorage::templateDeleted, this, &StoreSync::templateDeleted);
}

StoreSync::~StoreSync() {
    m_cloudSyncTimer.cancel();
}

void StoreSync::start() {
    fullSync();
    m_sync.setOnSyncFolderChanged([guard = QPointer<StoreSync>(this)] {
        if (guard)
            guard->pullFromCloud();
    });
    startCloudSyncTimer();
}

void StoreSync::templateDeleted(const QUuid& id) {
    // A palette deleted while the folder is away leaves no deletion record, and one that never
    // reached the folder has no file to mark: either way it is simply gone here.
    if (m_sync.isEnabled() && m_sync.checkFolderAvailability())
        static_cast<void>(m_sync.markTemplateDeleted(id));
}

void StoreSync::noteSynced(const QUuid& id, double lastModified, const QString& contentHash,
                           qint64 revision) {
    m_storage.setTemplateLastModified(id, lastModified);
    m_storage.setShadowState(id, ShadowTemplateState{contentHash, revision, m_clock.nowMs()});
}

void StoreSync::recordSynced(const QUuid& id, double lastModified, const QString& contentHash,
                             qint64 revision) {
    noteSynced(id, lastModified, contentHash, revision);
    m_storage.saveShadowState();
}

// --- Push --------------------------------------------------------------------------------------

void StoreSync::pushToCloud() {
    if (!m_sync.isEnabled())
        return;
    if (!m_sync.checkFolderAvailability()) {
        for (const ColorTemplate& palette : m_storage.templates())
            m_sync.addPendingChange(palette.id);
        m_storage.setCloudSyncStatus(CloudSyncStatus::failed(m_clock.nowMs()));
        return;
    }
    m_storage.setCloudSyncStatus(CloudSyncStatus::syncing());

    // Only the creation of each palette is kept from the folder; of two files with one id
    // inside, the later in file order counts.
    QHash<QUuid, std::pair<double, QString>> createdInFolder;
    QList<SyncableTemplate> inFolder = m_sync.readTemplatesFolder();
    createdInFolder.reserve(inFolder.size());
    for (SyncableTemplate& record : inFolder)
        createdInFolder.insert(record.id, {record.createdAt, std::move(record.createdBy)});
    inFolder.clear();

    const QString device = m_sync.deviceId();
    int failures = 0;
    bool anySynced = false;
    // Every palette, changed or not: a write that failed last time is retried by this one,
    // and a palette deleted elsewhere but still alive here comes back everywhere.
    const QList<ColorTemplate> templates = m_storage.templates();
    for (const ColorTemplate& palette : templates) {
        SyncableTemplate record = syncableFrom(palette, device);
        // The hash of what is written, not of what was last stamped: the edit that follows a
        // save may not be stamped yet.
        record.contentHash = syncableContentHash(record.name, record.colors);
        if (const auto found = createdInFolder.constFind(palette.id);
            found != createdInFolder.cend()) {
            record.createdAt = found->first;
            record.createdBy = found->second;
        }
        record.lastModified = m_clock.nowMs();
        record.modifiedBy = device;
        if (m_sync.writeTemplate(record)) {
            ++failures;
            m_sync.addPendingChange(palette.id);
            continue;
        }
        noteSynced(palette.id, record.lastModified, record.contentHash, record.revision);
        anySynced = true;
        m_sync.removePendingChange(palette.id);
    }
    // The shadow state is stored once for the whole pass rather than after each file: every
    // store encodes the whole map, which made a push quadratic in the number of palettes
    // (minutes of main-thread time at 10,000). Nothing reads the stored copy while the pass
    // runs on the main thread, so what is stored at the end is the same.
    if (anySynced)
        m_storage.saveShadowState();

    SyncableSettings settings;
    const QString mode = m_settings.value(kAppearanceModeKey).toString();
    settings.appearanceMode = mode.isEmpty() ? kDefaultAppearanceMode : mode;
    settings.activeTemplateId = uuidText(m_storage.activeTemplateId());
    settings.lastModified = m_clock.nowMs();
    settings.modifiedBy = device;
    // No device reads it back yet; a failure here costs nothing.
    static_cast<void>(m_sync.writeSettings(settings));

    const double now = m_clock.nowMs();
    m_sync.setLastSyncTime(now);
    m_storage.setCloudSyncStatus(failures > 0 ? CloudSyncStatus::failed(now)
                                              : CloudSyncStatus::synced());
    m_sync.updateStatusAfterPush(failures);
}

// --- Pull and full sync ------------------------------------------------------------------------

void StoreSync::readFolderThen(void (StoreSync::*finish)(const QList<SyncableTemplate>&)) {
    m_ioQueue.run([folder = m_sync.templatesFolderPath(), guard = QPointer<StoreSync>(this),
                   finish]() -> IoQueue::MainThreadStep {
        QList<SyncableTemplate> records =
            folder ? SyncFolder::readTemplatesFolder(*folder) : QList<SyncableTemplate>();
        return [guard, finish, records = std::move(records)] {
            if (StoreSync* self = guard.data())
                (self->*finish)(records);
        };
    });
}

void StoreSync::pullFromCloud() {
    if (!m_sync.isEnabled() || !m_sync.checkFolderAvailability())
        return;
    // A pass already holds the list, and the store's own write in flight must not be merged
    // against a folder that doesn't show it yet.
    if (m_storage.isSyncing() || m_storage.savingCount() > 0)
        return;
    m_storage.setSyncing(true);
    m_storage.setCloudSyncStatus(CloudSyncStatus::syncing());
    readFolderThen(&StoreSync::finishPull);
}

void StoreSync::finishPull(const QList<SyncableTemplate>& records) {
    applyRemoteTemplates(records);
    m_sync.setLastSyncTime(m_clock.nowMs());
    m_storage.setSyncing(false);
    if (m_storage.cloudSyncStatus().state == CloudSyncStatus::State::syncing)
        m_storage.setCloudSyncStatus(CloudSyncStatus::synced());
    if (m_sync.syncStatus().kind == SyncStatus::Kind::syncing)
        m_sync.setSyncStatus(SyncStatus::synced());
    Q_EMIT passFinished();
}

void StoreSync::fullSync() {
    if (!m_sync.isEnabled())
        return;
    if (!m_sync.checkFolderAvailability()) {
        m_storage.setCloudSyncStatus(CloudSyncStatus::failed(m_clock.nowMs()));
        return;
    }
    // Unlike a pull it doesn't wait for a running pass: the user asked for this one.
    m_storage.setSyncing(true);
    m_storage.setCloudSyncStatus(CloudSyncStatus::syncing());
    readFolderThen(&StoreSync::finishFullSync);
}

void StoreSync::finishFullSync(const QList<SyncableTemplate>& records) {
    applyRemoteTemplates(records);
    removeDuplicateTemplates();
    uploadLocalOnlyTemplates(records);
    m_sync.setLastSyncTime(m_clock.nowMs());
    m_storage.setSyncing(false);
    m_storage.setCloudSyncStatus(CloudSyncStatus::synced());
    Q_EMIT passFinished();
}

void StoreSync::uploadLocalOnlyTemplates(const QList<SyncableTemplate>& records) {
    QSet<QUuid> known;
    // Deletion records count as known: a palette deleted elsewhere is not uploaded again here.
    for (const SyncableTemplate& record :
         records.isEmpty() ? m_sync.readTemplatesFolder() : records)
        known.insert(record.id);
    const QString device = m_sync.deviceId();
    bool anySynced = false;
    const QList<ColorTemplate> templates = m_storage.templates();
    for (const ColorTemplate& palette : templates) {
        if (known.contains(palette.id))
            continue;
        const SyncableTemplate record = syncableFrom(palette, device);
        if (m_sync.writeTemplate(record))
            continue;
        noteSynced(palette.id, record.lastModified, record.contentHash, record.revision);
        anySynced = true;
    }
    // Once for the pass, as in the push: at the first set-up every palette is uploaded.
    if (anySynced)
        m_storage.saveShadowState();
}

// --- The store's timer -------------------------------------------------------------------------

void StoreSync::startCloudSyncTimer() {
    // Only at start: a device that turns sync on later lives on the folder events, the poll
    // and its saves until the next launch.
    if (!m_sync.isEnabled() || m_cloudSyncTimer.isActive())
        return;
    m_cloudSyncTimer = m_scheduler.scheduleRepeating(cloudSyncIntervalSeconds,
                                                     [guard = QPointer<StoreSync>(this)] {
                                                         if (guard)
                                                             guard->cloudSyncTick();
                                                     });
}

void StoreSync::cloudSyncTick() {
    if (!m_sync.isEnabled())
        return;
    if (!m_sync.pollBackoff().allowsCheckAt(m_clock.nowMs()))
        return;
    if (!m_sync.checkFolderAvailability())
        return;
    // After the status change that the check may have deferred.
    m_scheduler.scheduleAfter(0.0, [guard = QPointer<StoreSync>(this)] {
        StoreSync* self = guard.data();
        if (self != nullptr && !self->m_storage.isSyncing())
            self->pullFromCloud();
    });
}

} // namespace hueshelf
