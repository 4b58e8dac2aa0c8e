#include "app/AppDelegate.h"

#include "app/FloatingWindow.h"
#include "app/MenuFiller.h"
#include "app/PaletteGlyph.h"
#include "model/FirstLaunchTemplates.h"
#include "util/Clock.h"

#include <QApplication>
#include <QMenu>
#include <QScreen>
#include <QSystemTrayIcon>

namespace hueshelf::app {

namespace {

// Below the top edge, clear of panels and menu bars, where the bar first appears.
constexpr int kDefaultTopOffset = 90;

LoadedTemplates startingTemplates() {
    // Nothing is read from disk yet: until the preferences file is loaded here, every run
    // starts from the first-launch palettes, with the first of them active.
    LoadedTemplates loaded;
    loaded.templates = firstLaunchTemplates(SystemClock::instance());
    if (!loaded.templates.isEmpty())
        loaded.activeTemplateId = loaded.templates.constFirst().id;
    return loaded;
}

} // namespace

AppDelegate::AppDelegate(const AppPaths& paths, std::unique_ptr<Platform> platform, QObject* parent)
    : QObject(parent), m_paths(paths), m_platform(std::move(platform)),
      m_settings(paths.configDir + u"/hueshelf.conf", QSettings::IniFormat) {
    m_storage =
        std::make_unique<ColorStorage>(SystemClock::instance(), m_scheduler, startingTemplates());
    m_barModel = std::make_unique<BarModel>(*m_storage, *m_platform, m_settings);
    m_window = std::make_unique<FloatingWindow>(*m_barModel);
}

AppDelegate::~AppDelegate() = default;

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
    showBar();
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
