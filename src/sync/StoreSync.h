#pragma once

#include "model/ColorTemplate.h"
#include "model/ShadowTemplateState.h"
#include "sync/IoQueue.h"
#include "sync/SyncResult.h"
#include "sync/SyncableTemplate.h"
#include "util/Clock.h"
#include "util/Scheduler.h"

#include <QList>
#include <QObject>
#include <QSettings>
#include <QUuid>

#include <optional>

namespace hueshelf {

class ColorStorage;
class SyncManager;

// The store's half of the sync engine: what to push, how to merge what another device wrote,
// what counts as a conflict, and the store's own timer. It works on the store through the
// store's public operations and on the folder only through the SyncManager, so the store
// itself never learns that a folder exists.
//
// Made after both and started once; from then on every completed save pushes, every deleted
// palette leaves a deletion record, and the manager's triggers end in a pull.
// Everything runs on the main thread, apart from the folder reads of a pull or a full sync,
// which go to the io queue and come back.
class StoreSync final : public QObject {
    Q_OBJECT

public:
    static constexpr double cloudSyncIntervalSeconds = 10.0;

    // `settings` is read for the appearance mode that travels in settings.json.
    StoreSync(ColorStorage& storage, SyncManager& sync, IoQueue& ioQueue, QSettings& settings,
              Clock& clock, Scheduler& scheduler, QObject* parent = nullptr);
    ~StoreSync() override;

    // The end of the store's start: the first full sync, the handler of folder changes, and
    // the 10-second timer if sync is on at this moment.
    void start();

    // --- Decisions -----------------------------------------------------------------------

    // The verdict on one palette found on both sides, by the shadow of the last agreement, or
    // by the clocks where there is none.
    SyncResult resolveSync(const ColorTemplate& local, const SyncableTemplate& remote) const;
    // The same decision with the shadow entry given.
    static SyncResult resolveSync(const ColorTemplate& local, const SyncableTemplate& remote,
                                  const std::optional<ShadowTemplateState>& shadow);
    // Folds the folder's records into the store: deletions first-come, verdicts per palette,
    // conflict copies, newcomers unless they double a palette already here.
    void applyRemoteTemplates(const QList<SyncableTemplate>& records);
    // Removes all but one of each set of palettes with equal names and colours; the oldest
    // survives, and of equal ages the later in the list.
    void removeDuplicateTemplates();

    // --- Passes --------------------------------------------------------------------------

    // Writes every palette and the settings; the end of every completed save.
    void pushToCloud();
    // Reads the folder and merges, unless sync is off, the folder is away, a pass is running
    // or a save is still in flight.
    void pullFromCloud();
    // Reads, merges, removes doubles and uploads what the folder lacks: at start, on
    // activation and from the bar's sync button.
    void fullSync();
    // Writes the palettes whose ids are not among `records` (read from the folder when empty).
    void uploadLocalOnlyTemplates(const QList<SyncableTemplate>& records);

    // The store's timer: started once, only if sync is on; ticks while sync is off do nothing.
    void startCloudSyncTimer();
    bool hasCloudSyncTimer() const { return m_cloudSyncTimer.isActive(); }

Q_SIGNALS:
    // A pull or a full sync has merged what it read and ended.
    void passFinished();

private:
    void cloudSyncTick();
    void templateDeleted(const QUuid& id);
    void finishPull(const QList<SyncableTemplate>& records);
    void finishFullSync(const QList<SyncableTemplate>& records);
    // Reads the templates folder on the io queue, then hands the records to `finish` here.
    void readFolderThen(void (StoreSync::*finish)(const QList<SyncableTemplate>&));
    // The palette's agreement with the folder: its time and shadow entry. recordSynced also
    // stores the shadow state at once.
    void noteSynced(const QUuid& id, double lastModified, const QString& contentHash,
                    qint64 revision);
    void recordSynced(const QUuid& id, double lastModified, const QString& contentHash,
                      qint64 revision);
    // Publishes a changed list with a valid active id and writes it without stamping.
    void publish(const QList<ColorTemplate>& templates);

    ColorStorage& m_storage;
    SyncManager& m_sync;
    IoQueue& m_ioQueue;
    QSettings& m_settings;
    Clock& m_clock;
    Scheduler& m_scheduler;
    TaskHandle m_cloudSyncTimer;
};

} // namespace hueshelf
