#include "platform/linux/LinuxPlatform.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QSysInfo>

namespace hueshelf {

std::unique_ptr<Platform> createPlatform() {
    return std::make_unique<LinuxPlatform>();
}

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

} // namespace hueshelf
