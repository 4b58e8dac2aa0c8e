#pragma once

#include "platform/Platform.h"

namespace hueshelf {

class LinuxPlatform final : public Platform {
public:
    explicit LinuxPlatform(const AppPaths& paths);

    QString platformName() const override;
    QString hostName() const override;
    void setClipboardText(const QString& text) override;
    QString clipboardText() const override;

    DesktopPreferences desktopPreferences() const override;
    void setDesktopPreferencesChangedHandler(std::function<void()> handler) override;
    bool registerGlobalShortcut(std::function<void()> onActivated) override;
    void unregisterGlobalShortcut() override;
    bool hasGlobalShortcut() const override;
    bool setLaunchAtLogin(bool enabled) override;
    bool openUrl(const QUrl& url) override;

private:
    AppPaths m_paths;
    std::function<void()> m_preferencesChanged;
};

} // namespace hueshelf
