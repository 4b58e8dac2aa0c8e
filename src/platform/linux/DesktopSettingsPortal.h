#pragma once

#include "platform/Platform.h"
#include "platform/linux/DesktopSettings.h"

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>

#include <functional>

namespace hueshelf {

// The desktop's look and motion wish, from the settings portal on the session bus. Start-up
// never waits for the portal: until it answers, and forever where there is none, the program's
// defaults hold.
class DesktopSettingsPortal final : public QObject {
    Q_OBJECT

public:
    explicit DesktopSettingsPortal(QDBusConnection bus = QDBusConnection::sessionBus(),
                                   QObject* parent = nullptr);

    DesktopPreferences preferences() const { return DesktopSettings::preferences(m_values); }
    // Called on the main thread whenever an answer or a change alters the preferences.
    void setChangedHandler(std::function<void()> handler) { m_changed = std::move(handler); }

private Q_SLOTS:
    // Connected by signature: QtDBus offers no typed connect for remote signals.
    void onSettingChanged(const QString& settingsNamespace, const QString& key,
                          const QDBusVariant& value);

private:
    void requestSetting(const QString& settingsNamespace, const QString& key);
    void take(const QString& settingsNamespace, const QString& key, const QVariant& value);

    QDBusConnection m_bus;
    DesktopSettings::Values m_values;
    std::function<void()> m_changed;
};

} // namespace hueshelf
