#include "platform/linux/LinuxPlatform.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QSysInfo>

namespace hueshelf {

std::unique_ptr<Platform> createPlatform(const AppPaths& paths) {
    return std::make_unique<LinuxPlatform>(paths);
}

LinuxPlatform::LinuxPlatform(const AppPaths& paths) : m_paths(paths) {}

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

// Not yet asked of the desktop: until the portal is read, the program's own defaults hold.
DesktopPreferences LinuxPlatform::desktopPreferences() const {
    return {};
}

void LinuxPlatform::setDesktopPreferencesChangedHandler(std::function<void()> handler) {
    m_preferencesChanged = std::move(handler);
}

bool LinuxPlatform::registerGlobalShortcut(std::function<void()>) {
    return false;
}

void LinuxPlatform::unregisterGlobalShortcut() {}

bool LinuxPlatform::hasGlobalShortcut() const {
    return false;
}

bool LinuxPlatform::setLaunchAtLogin(bool) {
    return false;
}

bool LinuxPlatform::openUrl(const QUrl& url) {
    return QDesktopServices::openUrl(url);
}

} // namespace hueshelf
