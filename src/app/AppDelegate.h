#pragma once

#include "app/AppearanceController.h"
#include "app/AuxiliaryWindows.h"
#include "app/BarModel.h"
#include "app/BarPositionStore.h"
#include "app/BarVisibilityController.h"
#include "app/PaletteLinkOpenModel.h"
#include "app/ShortcutPermissionModel.h"
#include "app/StatusMenuModel.h"
#include "app/ToastManager.h"
#include "model/ColorStorage.h"
#include "model/ExternalChangeMonitor.h"
#include "model/PreferencesWriter.h"
#include "model/RecentColorsManager.h"
#include "model/StorageLocations.h"
#include "platform/Platform.h"
#include "sync/IoQueue.h"
#include "sync/StoreSync.h"
#include "sync/SyncManager.h"
#include "util/AppPaths.h"
#include "util/Clock.h"
#include "util/QtScheduler.h"

#include <QDir>
#include <QObject>
#include <QPointer>
#include <QProcessEnvironment>
#include <QPropertyAnimation>
#include <QSettings>
#include <QStringList>

#include <functional>
#include <memory>

class QMenu;
class QSystemTrayIcon;

namespace hueshelf::app {

class BarTooltip;
class BarTooltipController;
class ChromeSyncWait;
class ExtractPaletteModel;
class ExtractPalettePopover;
class FloatingWindow;
class ShortcutKeyFilter;
class ToastWindow;
class TooltipWindow;

// Owns everything that lives as long as the process: the store with its settings and writer,
// the bar and the tray icon. The store is loaded from disk as the delegate is made; `start` runs
// the launch up to the first shown bar, and when the application is about to quit, a last save
// is written and waited for.
class AppDelegate final : public QObject {
    Q_OBJECT
public:
    // What a test puts in place of the real thing; empty members mean the real one.
    struct Services {
        Scheduler* scheduler = nullptr;
        Clock* clock = nullptr;
        // Where the helper programs (hueshelf-helper, hueshelf-mcp) are looked for: beside the
        // running executable.
        QString binaryDir;
    };

    // Where the shell's other parts plug in.
    struct Hooks {
        // A palette link in the program's own scheme, to be previewed (or refused with the
        // alert) by the link window.
        std::function<void(const QString& link)> openPaletteLink;
        // "Couldn't open that file" and the like; a plain message box when unset.
        std::function<void(const LinkAlert& alert)> showAlert;
        // The welcome and What's New decision: after the first bar has faded in (not when it
        // starts hidden), and after every later show.
        std::function<void()> afterShow;
    };

    static constexpr int firstShowFadeMs = 150;

    // The environment is read once, here: it tells whether this is an isolated (test) run.
    AppDelegate(const AppPaths& paths, std::unique_ptr<Platform> platform,
                const QProcessEnvironment& env = QProcessEnvironment::systemEnvironment(),
                QObject* parent = nullptr);
    AppDelegate(const AppPaths& paths, std::unique_ptr<Platform> platform,
                const QProcessEnvironment& env, const Services& services,
                QObject* parent = nullptr);
    ~AppDelegate() override;

    Hooks& hooks() { return m_hooks; }

    // The launch, in order, up to the invisible bar waiting for the browser helper; the bar
    // fades in when the wait ends.
    void start();
    // The tray icon and the menu item: a bar that shrank into the icon grows out of it again.
    void toggleBarVisibility();
    // The bar's own hide button: the bar shrinks into the tray icon, or says how to get it back.
    void hideToMenuBar();
    // "Move the Bar Back to the Middle".
    void resetBarPosition();

    // Links and files from the command line or from a second launch. Before the first bar is
    // shown they are kept until then, so that they meet the store the helper may still write.
    void openArguments(const QStringList& arguments,
                       const QString& workingDir = QDir::currentPath());

    ColorStorage& storage() { return *m_storage; }
    PreferencesWriter& preferencesWriter() { return *m_writer; }
    ExternalChangeMonitor& externalChangeMonitor() { return *m_monitor; }
    SyncManager& syncManager() { return *m_syncManager; }
    StoreSync& storeSync() { return *m_storeSync; }
    QSettings& settings() { return *m_settings; }
    const StorageLocations& storageLocations() const { return m_locations; }
    FloatingWindow& window() { return *m_window; }
    AppearanceController& appearance() { return *m_appearance; }
    BarVisibilityController& barVisibility() { return *m_visibility; }
    ToastManager& toastManager() { return *m_toastManager; }
    BarTooltipController& tooltipController() { return *m_tooltipController; }
    AuxiliaryWindows& auxiliaryWindows() { return *m_auxWindows; }
    // The menu the tray icon (or, without a tray, the bar) opens, as it would be built now.
    QList<MenuEntry> statusMenu() const { return m_statusMenu->build(); }
    bool hasTrayIcon() const { return m_trayIcon != nullptr; }
    bool isWaitingForBrowserHelper() const;
    bool isFirstBarShown() const { return m_firstBarShown; }
    // The fade of the first showing while it runs.
    QPropertyAnimation* firstShowAnimation() const { return m_fadeIn; }

    // The end of the run: save, wait until the file work is done, synchronise the settings,
    // stop the wait and the monitors.
    void applicationWillTerminate();

private:
    QString binaryDir() const;
    void registerDefaults();
    void startKeyboardModality();
    void ensureNativeMessagingManifest();
    void healAIToolEntries();
    void createInvisibleBar();
    void startChromeSyncWait();
    void createStatusItem();
    void createTrayIcon();
    void installHotKeys();
    void showFirstBar();
    // The animated show of a link's palette or an opened file (it grows from the icon only if
    // the bar last shrank there).
    void showBar();
    void createOverlays(Clock& clock, Scheduler& scheduler);
    void createBar(Clock& clock, Scheduler& scheduler);
    void createBarVisibility(Scheduler& scheduler);
    void createAuxiliaryWindows(const QProcessEnvironment& env);
    void openPaletteFile(const QString& path, bool isOneOfSeveral);
    void showAlert(const LinkAlert& alert);

    AppPaths m_paths;
    std::unique_ptr<Platform> m_platform;
    Services m_services;
    std::unique_ptr<QtScheduler> m_ownScheduler;
    Scheduler* m_scheduler = nullptr;
    Clock* m_clock = nullptr;
    StorageLocations m_locations;
    std::unique_ptr<QSettings> m_settings;
    std::unique_ptr<ColorStorage> m_storage;
    // Other processes' writes to the preferences file, merged into the store.
    std::unique_ptr<ExternalChangeMonitor> m_monitor;
    // The cloud folder shared with other devices; folder reads queue behind the file work.
    std::unique_ptr<SyncManager> m_syncManager;
    std::unique_ptr<IoQueue> m_syncIoQueue;
    std::unique_ptr<StoreSync> m_storeSync;
    // The colours last copied, for the editor's strip.
    std::unique_ptr<RecentColorsManager> m_recentColors;
    // A dropped image on its way to a palette.
    std::unique_ptr<ExtractPaletteModel> m_extractPalette;
    std::unique_ptr<ExtractPalettePopover> m_extractPopover;
    std::unique_ptr<BarModel> m_barModel;
    // The user's look (settings) over the desktop's; the menu changes it.
    std::unique_ptr<AppearanceController> m_appearance;
    std::unique_ptr<ShortcutPermissionModel> m_shortcutPermission;
    std::unique_ptr<StatusMenuModel> m_statusMenu;
    std::unique_ptr<FloatingWindow> m_window;
    // Where the bar was last put by hand ("HueShelfPosition").
    std::unique_ptr<BarPositionStore> m_positionStore;
    std::unique_ptr<BarVisibilityController> m_visibility;
    // Control-Shift-B inside the program's own windows; the global one is the platform's.
    std::unique_ptr<ShortcutKeyFilter> m_shortcutFilter;
    // One toast at a time over the bar, and one shared tooltip window for every control.
    std::unique_ptr<ToastManager> m_toastManager;
    std::unique_ptr<ToastWindow> m_toastWindow;
    std::unique_ptr<TooltipWindow> m_tooltipWindow;
    std::unique_ptr<BarTooltipController> m_tooltipController;
    std::unique_ptr<BarTooltip> m_barTooltip;
    // About, What's New, the AI tools panel, cloud sync settings and the link preview.
    std::unique_ptr<AuxiliaryWindows> m_auxWindows;
    std::unique_ptr<QMenu> m_trayMenu;
    QSystemTrayIcon* m_trayIcon = nullptr;
    // The wait for the browser helper at start (chromeSyncTimer).
    std::unique_ptr<ChromeSyncWait> m_chromeSyncWait;
    QPointer<QPropertyAnimation> m_fadeIn;
    bool m_firstBarShown = false;
    // Arguments that arrived before the first bar was shown, with the folder they came from.
    QList<std::pair<QStringList, QString>> m_pendingArguments;
    Hooks m_hooks;
    // Last, so it goes first: its final completions still reach the store and the views.
    std::unique_ptr<PreferencesWriter> m_writer;
};

} // namespace hueshelf::app
