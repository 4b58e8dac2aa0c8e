#include "app/AppDelegate.h"

#include "aitools/AIToolConnector.h"
#include "aitools/AIToolRegistry.h"
#include "app/FloatingWindow.h"
#include "app/MenuFiller.h"
#include "app/PaletteGlyph.h"
#include "model/SettingsStore.h"
#include "model/TemplateLoader.h"
#include "sync/QtFolderWatch.h"
#include "sync/WriterIoQueue.h"
#include "util/Clock.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QMenu>
#include <QScreen>
#include <QSystemTrayIcon>
#include <QThreadPool>

namespace hueshelf::app {

namespace {

// Below the top edge, clear of panels and menu bars, where the bar first appears.
constexpr int kDefaultTopOffset = 90;

} // namespace

AppDelegate::AppDelegate(const AppPaths& paths, std::unique_ptr<Platform> platform,
                         const QProcessEnvironment& env, QObject* parent)
    : QObject(parent), m_paths(paths), m_platform(std::move(platform)),
      m_locations(StorageLocations::resolve(paths, env)),
      m_settings(SettingsStore::open(m_locations)) {
    Clock& clock = SystemClock::instance();
    m_storage = std::make_unique<ColorStorage>(
        clock, m_scheduler, TemplateLoader::loadAtStart(m_locations, *m_settings, clock));
    m_writer = std::make_unique<PreferencesWriter>(m_locations.preferencesFile, *m_settings);
    m_storage->setWriter(m_writer.get());
    // The store's creation ends by looking out for other processes: the start-up poll, then the
    // watch on the preferences directory (or the slow poll where it can't be watched). Unlike
    // the preferences folder of other desktops, ours may not exist before the first save, and a
    // missing directory would leave only the slow poll.
    QDir().mkpath(m_locations.prefsDir);
    m_monitor = std::make_unique<ExternalChangeMonitor>(
        *m_storage, clock, m_scheduler, m_locations.preferencesFile, m_locations.prefsDir);
    m_monitor->start();

    // The end of the store's start: a full sync when a folder is set up, then the folder's
    // triggers, the store's own timer and a push after every save.
    m_syncManager = std::make_unique<SyncManager>(
        clock, m_scheduler, *m_settings, m_platform->hostName(), QStringLiteral(HUESHELF_VERSION),
        std::make_unique<QtFolderWatch>());
    m_syncIoQueue = std::make_unique<WriterIoQueue>(*m_writer);
    m_storeSync = std::make_unique<StoreSync>(*m_storage, *m_syncManager, *m_syncIoQueue,
                                              *m_settings, clock, m_scheduler);
    m_storeSync->start();
    if (const auto* application = qobject_cast<QGuiApplication*>(QCoreApplication::instance())) {
        connect(application, &QGuiApplication::applicationStateChanged, this,
                [this](Qt::ApplicationState state) {
                    // Another device may have written while this one was in the background.
                    if (state == Qt::ApplicationActive && m_syncManager->isEnabled())
                        m_storeSync->fullSync();
                });
    }

    m_barModel = std::make_unique<BarModel>(*m_storage, *m_platform, *m_settings);
    m_window = std::make_unique<FloatingWindow>(*m_barModel);

    if (const QCoreApplication* application = QCoreApplication::instance())
        connect(application, &QCoreApplication::aboutToQuit, this,
                &AppDelegate::applicationWillTerminate);
}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationWillTerminate() {
    m_storage->saveTemplates();
    m_writer->drain();
    m_settings->sync();
    m_monitor->stop();
}

void AppDelegate::start() {
    const bool hasTray = QSystemTrayIcon::isSystemTrayAvailable();
    StatusMenuModel::Actions actions;
    actions.isBarVisible = [this] { return m_window->isVisible(); };
    actions.quit = [] { QApplication::quit(); };
    // Without a tray, a hidden bar could not be brought back, so only the tray may hide it.
    if (hasTray)
        actions.toggleBar = [this] { toggleBarVisibility(); };
    m_statusMenu = std::make_unique<StatusMenuModel>(*m_storage, std::move(actions));

    if (hasTray)
        createTrayIcon();
    else
        m_window->setMenuProvider([this] { return m_statusMenu->build(); });
    healAIToolEntries();
    showBar();
}

void AppDelegate::healAIToolEntries() {
    // A copy of the program that was moved points its tools' entries at itself without being
    // asked; what could not be put right is for the panel to tell. A copy without its server
    // beside it (a partial build) would point them at nothing, so it leaves them alone.
    const AIToolConnector connector = AIToolConnector::forCurrentProcess(m_paths);
    if (!QFileInfo(connector.binaryPath).isExecutable())
        return;
    const QString home = m_paths.home;
    QThreadPool::globalInstance()->start([connector, home] {
        connector.healAll(AIToolRegistry::allTools(home, QStringLiteral("/Applications")));
    });
}

void AppDelegate::createTrayIcon() {
    m_trayMenu = std::make_unique<QMenu>();
    connect(m_trayMenu.get(), &QMenu::aboutToShow, this,
            [this] { fillMenu(*m_trayMenu, m_statusMenu->build()); });
    // Some trays read the menu before its first opening, so it must not start out empty.
    fillMenu(*m_trayMenu, m_statusMenu->build());

    m_trayIcon = new QSystemTrayIcon(paletteGlyphIcon(), this);
    m_trayIcon->setToolTip(QStringLiteral("HueShelf"));
    m_trayIcon->setContextMenu(m_trayMenu.get());
    connect(m_trayIcon, &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                if (reason == QSystemTrayIcon::Trigger)
                    toggleBarVisibility();
            });
    m_trayIcon->show();
}

void AppDelegate::toggleBarVisibility() {
    if (m_window->isVisible())
        m_window->hide();
    else
        showBar();
}

void AppDelegate::showBar() {
    if (!m_window->isVisible() && !m_window->testAttribute(Qt::WA_Moved)) {
        m_window->adjustSize();
        if (const QScreen* screen = QGuiApplication::primaryScreen()) {
            const QRect area = screen->availableGeometry();
            m_window->move(area.center().x() - m_window->width() / 2,
                           area.top() + kDefaultTopOffset);
        }
    }
    m_window->show();
    m_window->raise();
}

} // namespace hueshelf::app
