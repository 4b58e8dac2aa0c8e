#pragma once

#include "app/BarModel.h"
#include "app/StatusMenuModel.h"
#include "model/ColorStorage.h"
#include "platform/Platform.h"
#include "util/AppPaths.h"
#include "util/QtScheduler.h"

#include <QObject>
#include <QSettings>

#include <memory>

class QMenu;
class QSystemTrayIcon;

namespace hueshelf::app {

class FloatingWindow;

// Owns everything that lives as long as the process: the store, the bar and the tray icon.
class AppDelegate final : public QObject {
    Q_OBJECT
public:
    AppDelegate(const AppPaths& paths, std::unique_ptr<Platform> platform,
                QObject* parent = nullptr);
    ~AppDelegate() override;

    // Creates the tray icon where the desktop has a tray, and shows the bar.
    void start();
    void toggleBarVisibility();

    ColorStorage& storage() { return *m_storage; }
    FloatingWindow& window() { return *m_window; }
    bool hasTrayIcon() const { return m_trayIcon != nullptr; }

private:
    void showBar();
    void createTrayIcon();

    AppPaths m_paths;
    std::unique_ptr<Platform> m_platform;
    QtScheduler m_scheduler;
    QSettings m_settings;
    std::unique_ptr<ColorStorage> m_storage;
    std::unique_ptr<BarModel> m_barModel;
    std::unique_ptr<StatusMenuModel> m_statusMenu;
    std::unique_ptr<FloatingWindow> m_window;
    std::unique_ptr<QMenu> m_trayMenu;
    QSystemTrayIcon* m_trayIcon = nullptr;
};

} // namespace hueshelf::app
