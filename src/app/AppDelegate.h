#pragma once

#include "app/BarModel.h"
#include "app/StatusMenuModel.h"
#include "model/ColorStorage.h"
#include "model/ExternalChangeMonitor.h"
#include "model/PreferencesWriter.h"
#include "model/StorageLocations.h"
#include "platform/Platform.h"
#include "sync/IoQueue.h"
#include "sync/StoreSync.h"
#include "sync/SyncManager.h"
#include "util/AppPaths.h"
#include "util/QtScheduler.h"

#include <QObject>
#include <QProcessEnvironment>
#include <QSettings>

#include <memory>

class QMenu;
class QSystemTrayIcon;

namespace hueshelf::app {

class FloatingWindow;

// Owns everything that lives as long as the process: the store with its settings and writer,
// the bar and the tray icon. The store is loaded from disk as the delegate is made; when the
// application is about to quit, a last save is written and waited for.
class AppDelegate final : public QObject {
    Q_OBJECT
public:
    // The environment is read once, here: it tells whether this is an isolated (test) run.
    AppDelegate(const AppPaths& paths, std::unique_ptr<Platform> platform,
                const QProcessEnvironment& env = QProcessEnvironment::systemEnvironment(),
                QObject* parent = nullptr);
    ~AppDelegate() override;

    // Creates the tray icon where the desktop has a tray, and shows the bar.
    void start();
    void toggleBarVisibility();

    ColorStorage& storage() { return *m_storage; }
    PreferencesWriter& preferencesWriter() { return *m_writer; }
    ExternalChangeMonitor& externalChangeMonitor() { return *m_monitor; }
    SyncManager& syncManager() { return *m_syncManager; }
    StoreSync& storeSync() { return *m_storeSync; }
    QSettings& settings() { return *m_settings; }
    const StorageLocations& storageLocations() const { return m_locations; }
    FloatingWindow& window() { return *m_window; }
    bool hasTrayIcon() const { return m_trayIcon != nullptr; }

    // The end of the run: save, wait until the file work is done, synchronise the settings.
    void applicationWillTerminate();

private:
    void showBar();
    void createTrayIcon();
    void healAIToolEntries();

    AppPaths m_paths;
    std::unique_ptr<Platform> m_platform;
    QtScheduler m_scheduler;
    StorageLocations m_locations;
    std::unique_ptr<QSettings> m_settings;
    std::unique_ptr<ColorStorage> m_storage;
    // Other processes' writes to the preferences file, merged into the store.
    std::unique_ptr<ExternalChangeMonitor> m_monitor;
    // The cloud folder shared with other devices; folder reads queue behind the file work.
    std::unique_ptr<SyncManager> m_syncManager;
    std::unique_ptr<IoQueue> m_syncIoQueue;
    std::unique_ptr<StoreSync> m_storeSync;
    std::unique_ptr<BarModel> m_barModel;
    std::unique_ptr<StatusMenuModel> m_statusMenu;
    std::unique_ptr<FloatingWindow> m_window;
    std::unique_ptr<QMenu> m_trayMenu;
    QSystemTrayIcon* m_trayIcon = nullptr;
    // Last, so it goes first: its final completions still reach the store and the views.
    std::unique_ptr<PreferencesWriter> m_writer;
};

} // namespace hueshelf::app
