#include "platform/linux/PortalGlobalShortcut.h"

#include "platform/linux/PortalNames.h"
#include "platform/linux/PortalRequest.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>

namespace hueshelf {

using namespace Qt::StringLiterals;

namespace {
const QString shortcutsInterface = u"org.freedesktop.portal.GlobalShortcuts"_s;
const QString sessionInterface = u"org.freedesktop.portal.Session"_s;
const QString toggleBarId = u"toggle-bar"_s;

// One entry of BindShortcuts' a(sa{sv}).
struct PortalShortcut {
    QString id;
    QVariantMap properties;
};
} // namespace

} // namespace hueshelf

Q_DECLARE_METATYPE(hueshelf::PortalShortcut)

namespace hueshelf {

namespace {
QDBusArgument& operator<<(QDBusArgument& argument, const PortalShortcut& shortcut) {
    argument.beginStructure();
    argument << shortcut.id << shortcut.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, PortalShortcut& shortcut) {
    argument.beginStructure();
    argument >> shortcut.id >> shortcut.properties;
    argument.endStructure();
    return argument;
}

QString sessionHandle(const QVariant& value) {
    if (value.metaType() == QMetaType::fromType<QDBusObjectPath>())
        return value.value<QDBusObjectPath>().path();
    return value.toString();
}
} // namespace

PortalGlobalShortcut::PortalGlobalShortcut(QDBusConnection bus, QObject* parent)
    : QObject(parent), m_bus(std::move(bus)) {}

PortalGlobalShortcut::~PortalGlobalShortcut() {
    unbind();
}

void PortalGlobalShortcut::bind(std::function<void()> onActivated) {
    unbind();
    m_onActivated = std::move(onActivated);
    if (!m_bus.isConnected()) {
        setBound(false);
        return;
    }
    createSession();
}

void PortalGlobalShortcut::createSession() {
    const QString token = PortalRequest::newToken();
    QDBusMessage call = QDBusMessage::createMethodCall(Portal::service, Portal::path,
                                                       shortcutsInterface, u"CreateSession"_s);
    call << QVariantMap{{u"handle_token"_s, token},
                        {u"session_handle_token"_s, PortalRequest::newToken()}};
    const int generation = m_generation;
    PortalRequest::send(
        m_bus, call, token,
        [this, generation](uint response, const QVariantMap& results) {
            if (generation != m_generation)
                return;
            m_session = sessionHandle(results.value(u"session_handle"_s));
            if (response != Portal::success || m_session.isEmpty()) {
                setBound(false);
                return;
            }
            bindShortcuts();
        },
        this);
}

void PortalGlobalShortcut::bindShortcuts() {
    qDBusRegisterMetaType<PortalShortcut>();
    qDBusRegisterMetaType<QList<PortalShortcut>>();
    // Activations name the session; subscribe before the portal can send one.
    qRegisterMetaType<QDBusObjectPath>();
    m_bus.connect(Portal::service, Portal::path, shortcutsInterface, u"Activated"_s, this,
                  SLOT(onActivated(QDBusObjectPath, QString, qulonglong, QVariantMap)));

    const QString token = PortalRequest::newToken();
    QDBusMessage call = QDBusMessage::createMethodCall(Portal::service, Portal::path,
                                                       shortcutsInterface, u"BindShortcuts"_s);
    const QList<PortalShortcut> shortcuts{{toggleBarId,
                                           {{u"description"_s, u"Show or hide the bar"_s},
                                            {u"preferred_trigger"_s, u"CTRL+SHIFT+b"_s}}}};
    call << QVariant::fromValue(QDBusObjectPath(m_session)) << QVariant::fromValue(shortcuts)
         << QString() << QVariantMap{{u"handle_token"_s, token}};
    const int generation = m_generation;
    PortalRequest::send(
        m_bus, call, token,
        [this, generation](uint response, const QVariantMap&) {
            if (generation == m_generation)
                setBound(response == Portal::success);
        },
        this);
}

void PortalGlobalShortcut::unbind() {
    ++m_generation;
    m_onActivated = nullptr;
    m_bound = false;
    if (m_session.isEmpty())
        return;
    m_bus.disconnect(Portal::service, Portal::path, shortcutsInterface, u"Activated"_s, this,
                     SLOT(onActivated(QDBusObjectPath, QString, qulonglong, QVariantMap)));
    // Closing the session releases the binding; nobody waits for the answer.
    m_bus.send(
        QDBusMessage::createMethodCall(Portal::service, m_session, sessionInterface, u"Close"_s));
    m_session.clear();
}

void PortalGlobalShortcut::setBound(bool bound) {
    m_bound = bound;
    if (m_boundChanged)
        m_boundChanged(bound);
}

void PortalGlobalShortcut::onActivated(const QDBusObjectPath& session, const QString& shortcutId,
                                       qulonglong, const QVariantMap&) {
    if (m_bound && session.path() == m_session && shortcutId == toggleBarId && m_onActivated)
        m_onActivated();
}

} // namespace hueshelf
