#include "platform/linux/DesktopSettingsPortal.h"

#include "platform/linux/PortalNames.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace hueshelf {

namespace {
const QString settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");
} // namespace

DesktopSettingsPortal::DesktopSettingsPortal(QDBusConnection bus, QObject* parent)
    : QObject(parent), m_bus(std::move(bus)) {
    if (!m_bus.isConnected())
        return;
    // QtDBus finds the slot's argument types by name, and a type's name is known only once it
    // was registered; without this the subscription fails unless something else did it first.
    qRegisterMetaType<QDBusVariant>();
    m_bus.connect(Portal::service, Portal::path, settingsInterface,
                  QStringLiteral("SettingChanged"), this,
                  SLOT(onSettingChanged(QString, QString, QDBusVariant)));
    for (const DesktopSettings::Key& key : DesktopSettings::watchedKeys)
        requestSetting(QString::fromUtf16(key.settingsNamespace), QString::fromUtf16(key.key));
}

void DesktopSettingsPortal::requestSetting(const QString& settingsNamespace, const QString& key) {
    // Read is the call every portal version has; ReadOne would save one variant layer only.
    QDBusMessage call = QDBusMessage::createMethodCall(Portal::service, Portal::path,
                                                       settingsInterface, QStringLiteral("Read"));
    call << settingsNamespace << key;
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, settingsNamespace, key](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                const QDBusMessage reply = finished->reply();
                // No portal, or a desktop that does not know the key: the defaults stay.
                if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
                    return;
                take(settingsNamespace, key, reply.arguments().constFirst());
            });
}

void DesktopSettingsPortal::onSettingChanged(const QString& settingsNamespace, const QString& key,
                                             const QDBusVariant& value) {
    take(settingsNamespace, key, QVariant::fromValue(value));
}

void DesktopSettingsPortal::take(const QString& settingsNamespace, const QString& key,
                                 const QVariant& value) {
    const DesktopPreferences before = preferences();
    if (!DesktopSettings::apply(m_values, settingsNamespace, key, value))
        return;
    if (preferences() != before && m_changed)
        m_changed();
}

} // namespace hueshelf
