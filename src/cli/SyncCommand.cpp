#include "cli/Invocation.h"
#include "cli/TextTable.h"
#include "cli/TimeText.h"
#include "model/StoreSession.h"
#include "sync/CloudServiceDetector.h"
#include "sync/FolderWatch.h"
#include "sync/InlineIoQueue.h"
#include "sync/StoreSync.h"
#include "sync/SyncManager.h"
#include "util/Clock.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QSysInfo>

#include <memory>

using namespace Qt::StringLiterals;

namespace hueshelf::cli {
namespace {

// A command ends long before a watch or a timer could matter: nothing is watched, and delayed
// work (the poll, a deferred status line) never runs. What a command reports is decided on the
// spot.
class NoFolderWatch final : public FolderWatch {
public:
    bool start(const QString&, Handler) override { return false; }
    void stop() override {}
    bool isWatching() const override { return false; }
};

class NeverScheduler final : public Scheduler {
public:
    TaskHandle scheduleAfter(double, Task) override { return {}; }
    TaskHandle scheduleRepeating(double, Task) override { return {}; }
};

// The folder's manager over a store session, as the bar has them, without its watch and timers.
struct SyncSession {
    explicit SyncSession(StoreSession::Access access)
        : store(access),
          manager(SystemClock::instance(), scheduler, store.settings(), QSysInfo::machineHostName(),
                  QStringLiteral(HUESHELF_VERSION), std::make_unique<NoFolderWatch>()) {}

    StoreSession store;
    NeverScheduler scheduler;
    InlineIoQueue ioQueue;
    SyncManager manager;
};

QJsonValue optionalText(const std::optional<QString>& text) {
    return text ? QJsonValue(*text) : QJsonValue(QJsonValue::Null);
}

QJsonObject statusJson(const SyncManager& manager) {
    const SyncConfiguration& configuration = manager.configuration();
    QJsonArray pending;
    QStringList ids;
    for (const QUuid& id : manager.pendingTemplateChanges())
        ids << uuidText(id);
    ids.sort();
    for (const QString& id : std::as_const(ids))
        pending.append(id);
    return QJsonObject{
        {u"isEnabled"_s, manager.isEnabled()},
        {u"status"_s, manager.syncStatus().text()},
        {u"service"_s, optionalText(configuration.cloudService)},
        {u"folder"_s, optionalText(configuration.syncFolderPath)},
        {u"deviceId"_s, configuration.deviceId},
        {u"deviceName"_s, configuration.deviceName},
        {u"lastSyncTime"_s, manager.lastSyncTime() ? QJsonValue(*manager.lastSyncTime())
                                                   : QJsonValue(QJsonValue::Null)},
        {u"pendingChanges"_s, pending},
    };
}

int printStatus(Invocation& call, const SyncManager& manager) {
    if (call.json()) {
        call.printJson(statusJson(manager));
        return ExitStatus::success;
    }
    const SyncConfiguration& configuration = manager.configuration();
    TextTable rows;
    rows.addRow({u"status"_s, manager.syncStatus().text()});
    if (configuration.cloudService)
        rows.addRow({u"service"_s, *configuration.cloudService});
    if (configuration.syncFolderPath)
        rows.addRow({u"folder"_s, *configuration.syncFolderPath});
    if (manager.lastSyncTime())
        rows.addRow({u"last synced"_s, timeText(*manager.lastSyncTime())});
    if (!manager.pendingTemplateChanges().isEmpty())
        rows.addRow({u"waiting"_s, QString::number(manager.pendingTemplateChanges().size()) +
                                       u" palette(s) not yet in the folder"_s});
    rows.addRow({u"device"_s, configuration.deviceName + u" ("_s + configuration.deviceId + u')'});
    call.out() << rows.render();
    return ExitStatus::success;
}

int runStatus(Invocation& call) {
    const SyncSession session(StoreSession::Access::readOnly);
    return printStatus(call, session.manager);
}

int runServices(Invocation& call) {
    const CloudServiceDetector detector(
        CloudServiceRoots::forCurrentUser(StoreSession::environment()));
    const QList<DetectedCloudService> services = detector.detectServices();
    const std::optional<FoundSyncFolder> existing =
        CloudServiceDetector::findExistingSyncFolder(services);
    if (call.json()) {
        QJsonArray found;
        for (const DetectedCloudService& service : services)
            found.append(QJsonObject{{u"name"_s, cloudServiceName(service.service)},
                                     {u"path"_s, service.path}});
        QJsonValue sync(QJsonValue::Null);
        if (existing)
            sync = QJsonObject{{u"service"_s, cloudServiceName(existing->service.service)},
                               {u"path"_s, existing->syncFolderPath}};
        call.printJson(QJsonObject{{u"services"_s, found}, {u"existingSyncFolder"_s, sync}});
        return ExitStatus::success;
    }
    if (services.isEmpty()) {
        call.out() << u"No cloud storage folders found. \"hueshelf sync setup DIR\" takes any "
                      u"folder that a sync client replicates.\n"_s;
        return ExitStatus::success;
    }
    TextTable rows;
    for (const DetectedCloudService& service : services) {
        const bool holdsSync = existing && existing->service == service;
        rows.addRow({cloudServiceName(service.service), service.path,
                     holdsSync ? u"holds a HueShelf Sync folder"_s : QString()});
    }
    call.out() << rows.render();
    return ExitStatus::success;
}

int runJoin(Invocation& call, bool create) {
    if (call.positionals().size() != 2)
        return call.usageError(create ? u"sync setup needs the folder to set up in"_s
                                      : u"sync connect needs the folder that holds the sync "
                                        u"folder"_s);
    const QString folder = QFileInfo(call.positionals().at(1)).absoluteFilePath();
    SyncSession session(StoreSession::Access::readWrite);
    const std::optional<QString> service = CloudServiceDetector::serviceName(folder);
    const std::optional<SyncError> error = create
                                               ? session.manager.setupSync(folder, service)
                                               : session.manager.connectToExisting(folder, service);
    if (error)
        return call.fail(error->description());
    session.store.close();
    if (call.json())
        return printStatus(call, session.manager);
    call.out() << (create ? u"Sync set up in "_s : u"Connected to "_s)
               << session.manager.syncFolderPath().value_or(folder)
               << (service ? QString(u" ("_s + *service + u')') : QString()) << u".\n"_s
               << u"Run \"hueshelf sync now\" to bring the palettes together.\n"_s;
    return ExitStatus::success;
}

int runDisable(Invocation& call) {
    SyncSession session(StoreSession::Access::readWrite);
    const bool wasEnabled = session.manager.isEnabled();
    session.manager.disableSync();
    session.store.close();
    if (call.json())
        return printStatus(call, session.manager);
    call.out() << (wasEnabled ? u"Sync disabled. The folder and its files stay where they are.\n"_s
                              : u"Sync was not enabled.\n"_s);
    return ExitStatus::success;
}

int runNow(Invocation& call) {
    SyncSession session(StoreSession::Access::readWrite);
    SyncManager& manager = session.manager;
    if (!manager.isEnabled())
        return call.fail(SyncError::notConfigured().description());
    if (!manager.checkFolderAvailability())
        return call.fail(SyncError::folderNotFound().description() + u": "_s +
                         manager.syncFolderPath().value_or(QString()));

    StoreSync storeSync(session.store.storage(), manager, session.ioQueue, session.store.settings(),
                        SystemClock::instance(), session.scheduler);
    // The palettes of a first launch live only in memory until the first save; a pass would
    // upload them under ids the next run no longer has, and every run would add another copy.
    if (!QFileInfo::exists(session.store.locations().preferencesFile))
        session.store.storage().saveTemplates();
    const qsizetype before = session.store.storage().templates().size();
    // The bar's button reads, merges and uploads what the folder lacks; a command run on
    // purpose also writes back every palette, as the next save would.
    storeSync.fullSync();
    storeSync.pushToCloud();
    // Merges are saved through the store's writer; wait until they are in the file (a completed
    // save pushes once more, which finds nothing new).
    session.store.close();

    if (call.json())
        return printStatus(call, manager);
    const qsizetype after = session.store.storage().templates().size();
    call.out() << manager.syncStatus().text() << u": "_s << after << u" palette(s)"_s;
    if (after != before)
        call.out() << u" ("_s << (after > before ? u"+"_s : QString()) << (after - before)
                   << u" from the folder)"_s;
    call.out() << u'\n';
    return manager.syncStatus().kind == SyncStatus::Kind::error ? ExitStatus::unusableInput
                                                                : ExitStatus::success;
}

int runSync(Invocation& call) {
    const QString what = call.positionals().constFirst();
    const bool takesFolder = what == u"setup"_s || what == u"connect"_s;
    if (!takesFolder && call.positionals().size() > 1)
        return call.usageError(u"sync "_s + what + u" takes no folder"_s);
    if (what == u"status"_s)
        return runStatus(call);
    if (what == u"services"_s)
        return runServices(call);
    if (what == u"setup"_s)
        return runJoin(call, true);
    if (what == u"connect"_s)
        return runJoin(call, false);
    if (what == u"disable"_s)
        return runDisable(call);
    if (what == u"now"_s)
        return runNow(call);
    return call.usageError(u"unknown sync command \""_s + what + u'"');
}

} // namespace

Command syncCommand() {
    return Command{
        .name = u"sync"_s,
        .summary = u"Sync palettes between devices through a cloud folder"_s,
        .usage = u"sync status [--json]\n"
                 u"sync services [--json]\n"
                 u"sync setup DIR [--json]\n"
                 u"sync connect DIR [--json]\n"
                 u"sync disable [--json]\n"
                 u"sync now [--json]"_s,
        .description =
            u"Devices never talk to each other: they meet in a folder \"HueShelf Sync\" inside a\n"
            u"folder that a cloud client (Dropbox, OneDrive, Google Drive, Nextcloud,\n"
            u"Syncthing...) replicates, one small file per palette.\n"
            u"\n"
            u"  status    whether sync is on, its folder, this device, palettes still waiting\n"
            u"  services  the cloud folders found on this machine, and any sync folder in them\n"
            u"  setup     makes DIR/HueShelf Sync (or joins the one there) and turns sync on\n"
            u"  connect   joins the sync folder another device made in DIR\n"
            u"  disable   turns sync off here; the folder and its files stay\n"
            u"  now       reads and merges the folder, then writes every palette to it\n"
            u"\n"
            u"JSON: status, setup, connect, disable and now print {\"isEnabled\", \"status\",\n"
            u"\"service\", \"folder\", \"deviceId\", \"deviceName\", \"lastSyncTime\",\n"
            u"\"pendingChanges\"}; services prints {\"services\": [{\"name\", \"path\"}],\n"
            u"\"existingSyncFolder\": {\"service\", \"path\"} | null}.\n"_s,
        .options = {},
        .minPositionals = 1,
        .maxPositionals = 2,
        .takesJson = true,
        .handler = &runSync,
    };
}

} // namespace hueshelf::cli
