#pragma once

#include "app/MenuEntry.h"

#include <QList>
#include <QSystemTrayIcon>
#include <QUrl>

#include <functional>

class QSettings;

namespace hueshelf {
class ColorStorage;
class Platform;
} // namespace hueshelf

namespace hueshelf::app {

class AppearanceController;

// The status menu, built afresh on every opening so that its check marks, its list of palettes
// and the shortcut item are never stale. The settings it shows are read and written here; what
// opens a window or moves the bar is left to the owner through the actions.
class StatusMenuModel {
public:
    struct Actions {
        std::function<bool()> isBarVisible;
        // Absent where nothing could bring a hidden bar back (no tray icon): then the menu
        // offers no way to hide it.
        std::function<void()> toggleBar;
        std::function<void()> openAIToolsWindow;
        // Shows the alert that explains the missing global shortcut.
        std::function<void()> openShortcutPermission;
        std::function<void()> openSyncSettings;
        std::function<void()> resetBarPosition;
        std::function<void()> openAboutWindow;
        std::function<void()> openWhatsNewWindow;
        std::function<void()> quit;
    };

    StatusMenuModel(ColorStorage& storage, QSettings& settings, Platform& platform,
                    AppearanceController& appearance, Actions actions);

    QList<MenuEntry> build() const;

    // What a click on the tray icon asks for. Every left click toggles the bar: the second of
    // two quick ones arrives as a double click and toggles again, as the user asked twice.
    // Control and a left click ask for the menu, as a right click does (which the tray opens
    // by itself).
    enum class ClickAction { none, toggleBar, openMenu };
    static ClickAction clickAction(QSystemTrayIcon::ActivationReason reason,
                                   Qt::KeyboardModifiers modifiers);

    // Where "Check for Updates…" leads: packages are updated by the system's package manager,
    // so the program only shows where new versions are published.
    static QUrl downloadPageUrl();

private:
    MenuEntry palettesSubmenu() const;
    MenuEntry settingsSubmenu() const;
    MenuEntry appearanceSubmenu() const;
    MenuEntry copyFormatSubmenu() const;
    void toggleLaunchAtLogin() const;
    void toggleStartHidden() const;

    ColorStorage& m_storage;
    QSettings& m_settings;
    Platform& m_platform;
    AppearanceController& m_appearance;
    Actions m_actions;
};

} // namespace hueshelf::app
