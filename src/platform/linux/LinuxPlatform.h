#pragma once

#include "platform/Platform.h"
#include "platform/linux/DesktopSettingsPortal.h"
#include "platform/linux/PortalColorPicker.h"
#include "platform/linux/PortalGlobalShortcut.h"
#include "platform/linux/X11GlobalShortcut.h"
#include "platform/linux/XdgAutostart.h"

#include <memory>

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
    void pickScreenColor(ColorPicked done) override;

private:
    AppPaths m_paths;
    std::unique_ptr<DesktopSettingsPortal> m_settingsPortal;
    X11GlobalShortcut m_x11Shortcut;
    // Only in a Wayland session, where X11 grabs hear keys only while an X11 window has focus.
    std::unique_ptr<PortalGlobalShortcut> m_portalShortcut;
    XdgAutostart m_autostart;
    // Made at the first pick: most runs never pick and need not touch the session bus for it.
    std::unique_ptr<PortalColorPicker> m_colorPicker;
};

} // namespace hueshelf
