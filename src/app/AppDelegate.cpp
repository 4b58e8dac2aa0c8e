#include "app/AppDelegate.h"

#include "aitools/AIToolConnector.h"
#include "aitools/AIToolRegistry.h"
#include "app/AppDefaults.h"
#include "app/AppSettingsKeys.h"
#include "app/AppearancePalette.h"
#include "app/ApplicationIcon.h"
#include "app/BarPosition.h"
#include "app/BarTooltip.h"
#include "app/BarTooltipController.h"
#include "app/BarWindowEffects.h"
#include "app/ChromeSyncWait.h"
#include "app/ExtractPaletteModel.h"
#include "app/ExtractPalettePopover.h"
#include "app/FloatingHueShelfView.h"
#include "app/FloatingWindow.h"
#include "app/KeyboardModality.h"
#include "app/LaunchArguments.h"
#include "app/MenuFiller.h"
#include "app/ShortcutKeyFilter.h"
#include "app/ShortcutPermissionAlert.h"
#include "app/ToastWindow.h"
#include "app/TooltipWindow.h"
#include "browser/NativeMessagingManifest.h"
#include "exchange/PaletteFileTexts.h"
#include "exchange/PaletteImport.h"
#include "model/RecentColorsManager.h"
#include "model/SettingsStore.h"
#include "model/TemplateLoader.h"
#include "sync/CloudServiceDetector.h"
#include "sync/QtFolderWatch.h"
#include "sync/WriterIoQueue.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCursor>
#include <QDir>
#include <QFileInfo>
#include <QMenu>
#include <QMessageBox>
#include <QPropertyAnimation>
#include <QScreen>
#include <QSystemTrayIcon>
#include <QTextStream>
#include <QThreadPool>

namespace hueshelf::app {

AppDelegate::AppDelegate(const AppPaths& paths, std::unique_ptr<Platform> platform,
                         const QProcessEnvironment& env, QObject* parent)
    : AppDelegate(paths, std::move(platform), env, Services{}, parent) {}

AppDelegate::AppDelegate(const AppPaths& paths, std::unique_ptr<Platform> platform,
                         const QProcessEnvironment& env, const Services& services, QObject* parent)
    : QObject(parent), m_paths(paths), m_platform(std::move(platform)), m_services(services),
      m_locations(StorageLocations::resolve(paths, env)),
      m_settings(SettingsStore::open(m_locations)) {
    if (m_services.scheduler) {
        m_scheduler = m_services.scheduler;
    } else {
        m_ownScheduler = std::make_unique<QtScheduler>();
        m_scheduler = m_ownScheduler.get();
    }
    m_clock = m_services.clock ? m_services.clock : &SystemClock::instance();
    Clock& clock = *m_clock;
    Scheduler& scheduler = *m_scheduler;

    m_storage = std::make_unique<ColorStorage>(
        clock, scheduler, TemplateLoader::loadAtStart(m_locations, *m_settings, clock));
    m_writer = std::make_unique<PreferencesWriter>(m_locations.preferencesFile, *m_settings);
    m_storage->setWriter(m_writer.get());
    // The store's creation ends by looking out for other processes: the start-up poll, then the
    // watch on the preferences directory (or the slow poll where it can't be watched). Unlike
    // the preferences folder of other desktops, ours may not exist before the first save, and a
    // missing directory would leave only the slow poll.
    QDir().mkpath(m_locations.prefsDir);
    m_monitor = std::make_unique<ExternalChangeMonitor>(
        *m_storage, clock, scheduler, m_locations.preferencesFile, m_locations.prefsDir);
    m_monitor->start();

    // The end of the store's start: a full sync when a folder is set up, then the folder's
    // triggers, the store's own timer and a push after every save.
    m_syncManager = std::make_unique<SyncManager>(
        clock, scheduler, *m_settings, m_platform->hostName(), QStringLiteral(HUESHELF_VERSION),
        std::make_unique<QtFolderWatch>());
    m_syncIoQueue = std::make_unique<WriterIoQueue>(*m_writer);
    m_storeSync = std::make_unique<StoreSync>(*m_storage, *m_syncManager, *m_syncIoQueue,
                                              *m_settings, clock, scheduler);
    m_storeSync->start();
    if (const auto* application = qobject_cast<QGuiApplication*>(QCoreApplication::instance())) {
        connect(application, &QGuiApplication::applicationStateChanged, this,
                [this](Qt::ApplicationState state) {
                    // Another device may have written while this one was in the background.
                    if (state == Qt::ApplicationActive && m_syncManager->isEnabled())
                        m_storeSync->fullSync();
                });
    }

    m_appearance = std::make_unique<AppearanceController>(*m_settings, *m_platform);
    m_recentColors = std::make_unique<RecentColorsManager>(*m_settings);
    // The overlays first: the bar's gestures speak through the toasts and hush the tooltips.
    createOverlays(clock, scheduler);
    m_extractPalette = std::make_unique<ExtractPaletteModel>(*m_storage, scheduler);
    createBar(clock, scheduler);
    m_extractPopover = std::make_unique<ExtractPalettePopover>(*m_extractPalette);
    m_extractPopover->setAnchor([this] { return m_window->frameGeometry(); });
    m_positionStore = std::make_unique<BarPositionStore>(*m_settings, m_locations.isIsolated);
    createBarVisibility(scheduler);
    createAuxiliaryWindows(env);
    m_shortcutPermission = std::make_unique<ShortcutPermissionModel>(*m_settings, env);
    m_chromeSyncWait = std::make_unique<ChromeSyncWait>(*m_storage, *m_monitor, scheduler);

    if (const QCoreApplication* application = QCoreApplication::instance())
        connect(application, &QCoreApplication::aboutToQuit, this,
                &AppDelegate::applicationWillTerminate);
}

AppDelegate::~AppDelegate() = default;

void AppDelegate::createBar(Clock& clock, Scheduler& scheduler) {
    BarModel::Services services{*m_storage,      *m_platform,     *m_settings,
                                *m_recentColors, *m_toastManager, scheduler};
    services.tooltips = m_tooltipController.get();
    services.sync = m_syncManager.get();
    services.syncNow = [this] { m_storeSync->fullSync(); };
    services.reduceMotion = [this] { return m_appearance->reduceMotion(); };
    services.importFile = [this](const QString& path, bool isOneOfSeveral) {
        openPaletteFile(path, isOneOfSeveral);
    };
    services.extractImage = [this](const QString& path) { m_extractPalette->start(path); };
    services.clock = &clock;
    m_barModel = std::make_unique<BarModel>(services);
    m_window = std::make_unique<FloatingWindow>(*m_barModel);
    FloatingHueShelfView& view = m_window->view();
    connect(&view, &FloatingHueShelfView::minimizeRequested, this, &AppDelegate::hideToMenuBar);
    connect(&view, &FloatingHueShelfView::saveFailed, this, [this](const QString& message) {
        showAlert(
            LinkAlert{PaletteFileTexts::saveAlertTitle, message, PaletteFileTexts::alertButton});
    });
}

void AppDelegate::createOverlays(Clock& clock, Scheduler& scheduler) {
    m_toastManager = std::make_unique<ToastManager>(scheduler, [this] {
        return ToastManager::BarState{m_window->frameGeometry(), m_window->isVisible()};
    });
    m_toastWindow = std::make_unique<ToastWindow>(*m_toastManager);
    // The store and the popovers announce without a view at hand; the bar shows it as a toast.
    connect(m_storage.get(), &ColorStorage::announced, m_toastManager.get(),
            &ToastManager::announce);
    m_tooltipWindow = std::make_unique<TooltipWindow>();
    m_tooltipController =
        std::make_unique<BarTooltipController>(scheduler, clock, *m_tooltipWindow);
    m_barTooltip = std::make_unique<BarTooltip>(*m_tooltipController);
}

void AppDelegate::createBarVisibility(Scheduler& scheduler) {
    BarVisibilityController::Effects effects = barWindowEffects(*m_window, scheduler);
    effects.reduceMotion = [this] { return m_appearance->reduceMotion(); };
    effects.trayIconGeometry = [this]() -> std::optional<QRect> {
        if (!m_trayIcon)
            return std::nullopt;
        return m_trayIcon->geometry();
    };
    effects.setIconHighlighted = [this](bool on) {
        if (!m_trayIcon)
            return;
        QColor plate = QGuiApplication::palette().color(QPalette::Highlight);
        plate.setAlphaF(0.55f);
        m_trayIcon->setIcon(on ? highlightedApplicationIcon(plate) : applicationIcon());
    };
    effects.afterShow = [this] {
        if (m_hooks.afterShow && m_firstBarShown)
            m_hooks.afterShow();
    };
    m_visibility = std::make_unique<BarVisibilityController>(std::move(effects), scheduler);
}

void AppDelegate::createAuxiliaryWindows(const QProcessEnvironment& env) {
    m_auxWindows = std::make_unique<AuxiliaryWindows>(AuxiliaryWindowsContext{
        .storage = *m_storage,
        .sync = *m_syncManager,
        .settings = *m_settings,
        .platform = *m_platform,
        .clock = *m_clock,
        .scheduler = *m_scheduler,
        .connector = AIToolConnector::forPaths(
            m_paths, QDir(binaryDir()).absoluteFilePath(QStringLiteral("hueshelf-mcp"))),
        .toolTable =
            [home = m_paths.home] {
                return AIToolRegistry::allTools(home, QStringLiteral("/Applications"));
            },
        .detector = CloudServiceDetector(CloudServiceRoots::forCurrentUser(env)),
        .pickFolder = {},
        .showLinkAlert = [this](const LinkAlert& alert) { showAlert(alert); },
    });
    connect(m_auxWindows.get(), &AuxiliaryWindows::barShowRequested, this, [this] { showBar(); });
    m_hooks.openPaletteLink = [this](const QString& link) { m_auxWindows->openPaletteLink(link); };
}

QString AppDelegate::binaryDir() const {
    return m_services.binaryDir.isEmpty() ? QCoreApplication::applicationDirPath()
                                          : m_services.binaryDir;
}

bool AppDelegate::isWaitingForBrowserHelper() const {
    return m_chromeSyncWait->isRunning();
}

void AppDelegate::start() {
    // 1. Defaults that other readers of the settings file rely on.
    registerDefaults();
    // 2. Focus rings follow the keyboard from the first key on.
    startKeyboardModality();
    // 3. The browser helper's registration, before anything could start it.
    ensureNativeMessagingManifest();
    // 4. AI tool entries of a moved program, in the background.
    healAIToolEntries();
    // 5.-9. The bar at its remembered place, in the chosen look, laid out but invisible.
    createInvisibleBar();
    // 10. The bar stays invisible until the browser helper had its moment, at most 2 seconds.
    startChromeSyncWait();
    // 11. From now on every move of the bar is remembered (the launch placement is not a move).
    m_window->setPositionStore(m_positionStore.get());
    // 12. The tray icon, or the bar's own menu where the desktop has no tray.
    createStatusItem();
    // 13. Control-Shift-B, in the program's windows and from anywhere.
    installHotKeys();
}

void AppDelegate::installHotKeys() {
    m_shortcutFilter = std::make_unique<ShortcutKeyFilter>([this] { m_visibility->toggle(); });
    qApp->installEventFilter(m_shortcutFilter.get());
    m_platform->registerGlobalShortcut([this] { m_visibility->toggle(); });
}

void AppDelegate::registerDefaults() {
    AppDefaults::registerDefaults(*m_settings);
}

void AppDelegate::startKeyboardModality() {
    KeyboardModality::shared().startMonitoring();
}

void AppDelegate::ensureNativeMessagingManifest() {
    // The browsers' directories sit beside ours in the configuration home.
    const QString configHome = QFileInfo(m_paths.configDir).absolutePath();
    NativeMessagingManifest::ensure(configHome, binaryDir());
}

void AppDelegate::healAIToolEntries() {
    // A copy of the program that was moved points its tools' entries at itself without being
    // asked; what could not be put right is for the panel to tell. A copy without its server
    // beside it (a partial build) would point them at nothing, so it leaves them alone.
    const AIToolConnector connector = AIToolConnector::forPaths(
        m_paths, QDir(binaryDir()).absoluteFilePath(QStringLiteral("hueshelf-mcp")));
    if (!QFileInfo(connector.binaryPath).isExecutable())
        return;
    const QString home = m_paths.home;
    QThreadPool::globalInstance()->start([connector, home] {
        connector.healAll(AIToolRegistry::allTools(home, QStringLiteral("/Applications")));
    });
}

void AppDelegate::createInvisibleBar() {
    m_window->adjustSize();
    m_window->move(
        BarPosition::launchOrigin(desktopScreens(), m_window->size(), m_positionStore->load()));
    applyAppearance(m_appearance->colorScheme());
    connect(m_appearance.get(), &AppearanceController::changed, this,
            [this] { applyAppearance(m_appearance->colorScheme()); });
    // Shown at no opacity: the window exists, is placed and laid out, and nobody sees it yet.
    m_window->setWindowOpacity(0.0);
    m_window->show();
}

void AppDelegate::startChromeSyncWait() {
    m_chromeSyncWait->start([this] { showFirstBar(); });
}

void AppDelegate::showFirstBar() {
    // The wait has ended the store's start-up poll with it.
    m_firstBarShown = true;
    if (m_settings->value(AppSettingsKeys::startHidden, false).toBool()) {
        // Ready at full opacity for the first time the user asks for it.
        m_window->hide();
        m_window->setWindowOpacity(1.0);
    } else {
        m_fadeIn = new QPropertyAnimation(m_window.get(), "windowOpacity", m_window.get());
        m_fadeIn->setDuration(firstShowFadeMs);
        m_fadeIn->setStartValue(0.0);
        m_fadeIn->setEndValue(1.0);
        connect(m_fadeIn, &QPropertyAnimation::finished, this, [this] {
            if (m_hooks.afterShow)
                m_hooks.afterShow();
        });
        m_fadeIn->start(QAbstractAnimation::DeleteWhenStopped);
    }
    const auto pending = std::exchange(m_pendingArguments, {});
    for (const auto& [arguments, workingDir] : pending)
        openArguments(arguments, workingDir);
}

void AppDelegate::createStatusItem() {
    const bool hasTray = QSystemTrayIcon::isSystemTrayAvailable();
    StatusMenuModel::Actions actions;
    actions.isBarVisible = [this] { return m_window->isVisible(); };
    actions.quit = [] { QApplication::quit(); };
    // Without a tray, a hidden bar could not be brought back, so only the tray may hide it.
    if (hasTray)
        actions.toggleBar = [this] { toggleBarVisibility(); };
    actions.openAIToolsWindow = [this] { m_auxWindows->showAIToolsPanel(); };
    actions.openShortcutPermission = [this] {
        showShortcutPermissionAlert(*m_shortcutPermission, m_window.get());
    };
    actions.openSyncSettings = [this] { m_auxWindows->showSyncSettings(); };
    actions.resetBarPosition = [this] { resetBarPosition(); };
    actions.openAboutWindow = [this] { m_auxWindows->showAbout(); };
    actions.openWhatsNewWindow = [this] { m_auxWindows->showWhatsNew(); };
    m_statusMenu = std::make_unique<StatusMenuModel>(*m_storage, *m_settings, *m_platform,
                                                     *m_appearance, std::move(actions));

    if (hasTray)
        createTrayIcon();
    else
        m_window->setMenuProvider([this] { return m_statusMenu->build(); });
}

void AppDelegate::createTrayIcon() {
    m_trayMenu = std::make_unique<QMenu>();
    connect(m_trayMenu.get(), &QMenu::aboutToShow, this,
            [this] { fillMenu(*m_trayMenu, m_statusMenu->build()); });
    // Some trays read the menu before its first opening, so it must not start out empty.
    fillMenu(*m_trayMenu, m_statusMenu->build());

    m_trayIcon = new QSystemTrayIcon(applicationIcon(), this);
    m_trayIcon->setToolTip(QStringLiteral("HueShelf"));
    m_trayIcon->setContextMenu(m_trayMenu.get());
    connect(m_trayIcon, &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                switch (
                    StatusMenuModel::clickAction(reason, QGuiApplication::keyboardModifiers())) {
                case StatusMenuModel::ClickAction::openMenu:
                    m_trayMenu->popup(QCursor::pos());
                    break;
                case StatusMenuModel::ClickAction::toggleBar:
                    toggleBarVisibility();
                    break;
                case StatusMenuModel::ClickAction::none:
                    break;
                }
            });
    m_trayIcon->show();
}

void AppDelegate::toggleBarVisibility() {
    m_visibility->toggleFromMenuBar();
}

void AppDelegate::hideToMenuBar() {
    m_visibility->hideToMenuBar();
}

void AppDelegate::resetBarPosition() {
    m_positionStore->remove();
    // The move this causes stores the key again, so it exists afterwards.
    m_window->move(BarPosition::resetOrigin(desktopScreens().mainFrame, m_window->size()));
}

void AppDelegate::showBar() {
    m_visibility->showBar(false);
}

void AppDelegate::openArguments(const QStringList& arguments, const QString& workingDir) {
    if (!m_firstBarShown) {
        m_pendingArguments.append({arguments, workingDir});
        return;
    }
    const LaunchArguments sorted = LaunchArguments::classify(arguments, workingDir);
    QTextStream err(stderr);
    for (const QString& ignored : sorted.ignored)
        err << LaunchArguments::ignoredMessage(ignored) << Qt::endl;
    for (const QString& link : sorted.links) {
        if (m_hooks.openPaletteLink)
            m_hooks.openPaletteLink(link);
        else
            err << "hueshelf: this build can't preview palette links yet" << Qt::endl;
    }
    // Like a drop of several files on the bar: the first is taken and the toast says so.
    if (!sorted.files.isEmpty())
        openPaletteFile(sorted.files.constFirst(), sorted.files.size() > 1);
}

void AppDelegate::openPaletteFile(const QString& path, bool isOneOfSeveral) {
    const PaletteImportOutcome outcome =
        PaletteImport::importPaletteFile(path, isOneOfSeveral, *m_storage, *m_scheduler, *m_clock);
    if (outcome.kind == PaletteImportOutcome::Kind::failed) {
        showAlert(LinkAlert{PaletteFileTexts::openAlertTitle, outcome.message,
                            PaletteFileTexts::alertButton});
        return;
    }
    // A file opened from outside lands on the bar, where its toast stands.
    showBar();
}

void AppDelegate::showAlert(const LinkAlert& alert) {
    if (m_hooks.showAlert) {
        m_hooks.showAlert(alert);
        return;
    }
    auto* box = new QMessageBox(QMessageBox::Warning, alert.title, alert.text, QMessageBox::Ok);
    box->button(QMessageBox::Ok)->setText(alert.button);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

void AppDelegate::applicationWillTerminate() {
    // 1. The last save, and the file work drained behind it.
    m_storage->saveTemplates();
    m_writer->drain();
    // 2. The settings file.
    m_settings->sync();
    // 3. The wait at start, if the run ends during it.
    m_chromeSyncWait->stop();
    // 4. The monitors: the hot keys, the bar's move observer and the store's watch.
    m_platform->unregisterGlobalShortcut();
    if (m_shortcutFilter)
        qApp->removeEventFilter(m_shortcutFilter.get());
    m_window->setPositionStore(nullptr);
    m_monitor->stop();
}

} // namespace hueshelf::app
