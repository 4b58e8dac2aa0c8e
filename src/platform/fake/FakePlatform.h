#pragma once

#include "platform/Platform.h"

#include <QStringList>

namespace hueshelf {

// Records what the shell asked of the desktop, so rules above it can be tested without one.
class FakePlatform final : public Platform {
public:
    QString platformName() const override { return QStringLiteral("linux"); }
    QString hostName() const override { return m_hostName; }
    void setClipboardText(const QString& text) override;
    QString clipboardText() const override { return m_clipboard; }

    void setHostName(const QString& name) { m_hostName = name; }
    // Every text the shell put on the clipboard, oldest first.
    const QStringList& clipboardHistory() const { return m_history; }

private:
    QString m_hostName = QStringLiteral("test-host");
    QString m_clipboard;
    QStringList m_history;
};

} // namespace hueshelf
