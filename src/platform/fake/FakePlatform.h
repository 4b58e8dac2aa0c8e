#pragma once

#include "platform/Platform.h"

#include <QList>
#include <QStringList>
#include <QUrl>

namespace hueshelf {

// Records what the shell asked of the desktop, and lets a test play the desktop's part, so
// rules above it can be tested without one.
class FakePlatform final : public Platform {
public:
    QString platformName() const override { return QStringLiteral("linux"); }
    QString hostName() const override { return m_hostName; }
    void setClipboardText(const QString& text) override;
    QString clipboardText() const override { return m_clipboard; }

    DesktopPreferences desktopPreferences() const override { return m_preferences; }
    void setDesktopPreferencesChangedHandler(std::function<void()> handler) override {
        m_preferencesChanged = std::move(handler);
    }

    bool registerGlobalShortcut(std::function<void()> onActivated) override;
    void unregisterGlobalShortcut() override { m_shortcut = nullptr; }
    bool hasGlobalShortcut() const override { return m_shortcut != nullptr; }

    bool setLaunchAtLogin(bool enabled) override;
    bool openUrl(const QUrl& url) override;
    void pickScreenColor(ColorPicked done) override;

    void setHostName(const QString& name) { m_hostName = name; }
    // Every text the shell put on the clipboard, oldest first.
    const QStringList& clipboardHistory() const { return m_history; }

    // The desktop changes its look or its motion wish; the shell hears of it as it would.
    void changeDesktopPreferences(const DesktopPreferences& preferences);
    // Whether a global shortcut can be had at all on this fake desktop.
    void setGlobalShortcutAvailable(bool available) { m_shortcutAvailable = available; }
    // The user presses Control-Shift-B in another application.
    void pressGlobalShortcut();

    void setLaunchAtLoginFails(bool fails) { m_launchAtLoginFails = fails; }
    bool isLaunchAtLoginRegistered() const { return m_launchAtLogin; }

    const QList<QUrl>& openedUrls() const { return m_openedUrls; }

    // How many times the shell asked for a pick, and whether one waits for the user.
    int pickRequestCount() const { return m_pickRequests; }
    bool isPicking() const { return static_cast<bool>(m_pickDone); }
    // The user ends the waiting pick: a colour, or nothing for a cancel.
    void finishPick(std::optional<SampledColor> color);

private:
    QString m_hostName = QStringLiteral("test-host");
    QString m_clipboard;
    QStringList m_history;
    DesktopPreferences m_preferences;
    std::function<void()> m_preferencesChanged;
    bool m_shortcutAvailable = true;
    std::function<void()> m_shortcut;
    bool m_launchAtLoginFails = false;
    bool m_launchAtLogin = false;
    QList<QUrl> m_openedUrls;
    int m_pickRequests = 0;
    ColorPicked m_pickDone;
};

} // namespace hueshelf
