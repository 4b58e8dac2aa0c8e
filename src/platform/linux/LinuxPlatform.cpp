#include "platform/linux/LinuxPlatform.h"

#include "platform/linux/ScreenSamplerOverlay.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QGuiApplication>
#include <QSysInfo>

namespace hueshelf {

std::unique_ptr<Platform> createPlatform(const AppPaths& paths) {
    return std::make_unique<LinuxPlatform>(paths);
}

namespace {
// An AppImage runs from a mount that changes with every start; the image itself is what login
// must start again.
QString executableToStart() {
    const QString appImage = qEnvironmentVariable("APPIMAGE");
    if (!appImage.isEmpty() && QDir::isAbsolutePath(appImage))
        return appImage;
    return QCoreApplication::applicationFilePath();
}

bool isWaylandSession() {
    return qEnvironmentVariable("XDG_SESSION_TYPE") == u"wayland" ||
           !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}
} // namespace

// The portal is asked at once but answers later, so construction costs start-up no round trip.
LinuxPlatform::LinuxPlatform(const AppPaths& paths)
    : m_paths(paths), m_settingsPortal(std::make_unique<DesktopSettingsPortal>()),
      m_autostart(QDir::cleanPath(paths.configDir + u"/.."), executableToStart()) {}

QString LinuxPlatform::platformName() const {
    return QStringLiteral("linux");
}

QString LinuxPlatform::hostName() const {
    return QSysInfo::machineHostName();
}

void LinuxPlatform::setClipboardText(const QString& text) {
    QClipboard* clipboard = QGuiApplication::clipboard();
    clipboard->clear(QClipboard::Clipboard);
    clipboard->setText(text, QClipboard::Clipboard);
}

QString LinuxPlatform::clipboardText() const {
    return QGuiApplication::clipboard()->text(QClipboard::Clipboard);
}

DesktopPreferences LinuxPlatform::desktopPreferences() const {
    return m_settingsPortal->preferences();
}

void LinuxPlatform::setDesktopPreferencesChangedHandler(std::function<void()> handler) {
    m_settingsPortal->setChangedHandler(std::move(handler));
}

// The portal answers later, possibly after asking the user; hasGlobalShortcut() turns true once
// it has bound the shortcut.
bool LinuxPlatform::registerGlobalShortcut(std::function<void()> onActivated) {
    unregisterGlobalShortcut();
    if (isWaylandSession()) {
        if (!m_portalShortcut)
            m_portalShortcut = std::make_unique<PortalGlobalShortcut>();
        m_portalShortcut->bind(onActivated);
    }
    if (!X11GlobalShortcut::isAvailable())
        return false;
    return m_x11Shortcut.registerShortcut(std::move(onActivated));
}

void LinuxPlatform::unregisterGlobalShortcut() {
    m_x11Shortcut.unregisterShortcut();
    if (m_portalShortcut)
        m_portalShortcut->unbind();
}

bool LinuxPlatform::hasGlobalShortcut() const {
    return m_x11Shortcut.isRegistered() || (m_portalShortcut && m_portalShortcut->isBound());
}

bool LinuxPlatform::setLaunchAtLogin(bool enabled) {
    return m_autostart.setEnabled(enabled);
}

bool LinuxPlatform::openUrl(const QUrl& url) {
    return QDesktopServices::openUrl(url);
}

// The portal first, where one runs, since on Wayland nothing else may see the screen; the
// overlay of still pictures where none does.
void LinuxPlatform::pickScreenColor(ColorPicked done) {
    if (!m_colorPicker) {
        m_colorPicker = std::make_unique<PortalColorPicker>([](ColorPicked fallbackDone) {
            ScreenSamplerOverlay::pickFromScreens(std::move(fallbackDone));
        });
    }
    m_colorPicker->pick(std::move(done));
}

} // namespace hueshelf
