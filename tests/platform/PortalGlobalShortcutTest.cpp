#include "platform/linux/PortalGlobalShortcut.h"

#include "PlatformTestApplication.h"
#include "PrivateBus.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusVirtualObject>

#include <gtest/gtest.h>

namespace hueshelf {
namespace {

using namespace Qt::StringLiterals;

const QString portalPath = u"/org/freedesktop/portal/desktop"_s;
const QString shortcutsInterface = u"org.freedesktop.portal.GlobalShortcuts"_s;

// The GlobalShortcuts portal as a desktop ships it, at the level of raw messages: requests
// answer through a Response signal at the path the caller predicted, sent here before the
// call's own reply, as a fast portal may.
class FakeShortcutsPortal final : public QDBusVirtualObject {
public:
    explicit FakeShortcutsPortal(QDBusConnection bus) : m_bus(std::move(bus)) {}

    uint bindResponse = 0;
    QString boundId;
    QString preferredTrigger;
    QString session;
    int closedSessions = 0;

    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.member() == u"Close" && message.path() == session) {
            ++closedSessions;
            connection.send(message.createReply());
            return true;
        }
        if (message.interface() != shortcutsInterface)
            return false;
        const QList<QVariant> arguments = message.arguments();
        const QVariantMap options = qdbus_cast<QVariantMap>(arguments.constLast());
        const QString sender = message.service().mid(1).replace(u'.', u'_');
        const QString request = u"/org/freedesktop/portal/desktop/request/"_s + sender + u'/' +
                                options.value(u"handle_token"_s).toString();
        if (message.member() == u"CreateSession") {
            session = u"/org/freedesktop/portal/desktop/session/"_s + sender + u'/' +
                      options.value(u"session_handle_token"_s).toString();
            respond(request, 0, {{u"session_handle"_s, session}});
        } else if (message.member() == u"BindShortcuts") {
            const QDBusArgument shortcuts = arguments.at(1).value<QDBusArgument>();
            shortcuts.beginArray();
            while (!shortcuts.atEnd()) {
                QVariantMap properties;
                shortcuts.beginStructure();
                shortcuts >> boundId >> properties;
                shortcuts.endStructure();
                preferredTrigger = properties.value(u"preferred_trigger"_s).toString();
            }
            shortcuts.endArray();
            respond(request, bindResponse, {});
        } else {
            return false;
        }
        connection.send(message.createReply(QVariant::fromValue(QDBusObjectPath(request))));
        return true;
    }

    void activate(const QString& id, const QString& inSession) {
        QDBusMessage signal =
            QDBusMessage::createSignal(portalPath, shortcutsInterface, u"Activated"_s);
        signal << QVariant::fromValue(QDBusObjectPath(inSession)) << id
               << QVariant::fromValue(qulonglong{1}) << QVariantMap();
        m_bus.send(signal);
    }

private:
    void respond(const QString& request, uint response, const QVariantMap& results) {
        QDBusMessage signal =
            QDBusMessage::createSignal(request, u"org.freedesktop.portal.Request"_s, u"Response"_s);
        signal << response << results;
        m_bus.send(signal);
    }

    QDBusConnection m_bus;
};

class PortalGlobalShortcutTest : public ::testing::Test {
protected:
    void SetUp() override {
        testing::platformTestApplication();
        m_bus = std::make_unique<testing::PrivateBus>();
        if (!m_bus->isRunning())
            GTEST_SKIP() << "no dbus-daemon to run a private bus";
        QDBusConnection service = m_bus->service();
        m_portal = std::make_unique<FakeShortcutsPortal>(service);
        ASSERT_TRUE(
            service.registerVirtualObject(portalPath, m_portal.get(), QDBusConnection::SubPath));
        ASSERT_TRUE(service.registerService(u"org.freedesktop.portal.Desktop"_s));
    }
    std::unique_ptr<testing::PrivateBus> m_bus;
    std::unique_ptr<FakeShortcutsPortal> m_portal;
};

TEST_F(PortalGlobalShortcutTest, BindsTheToggleAndHearsOnlyItsOwnActivations) {
    PortalGlobalShortcut shortcut(m_bus->client());
    int activations = 0;
    std::optional<bool> bound;
    shortcut.setBoundHandler([&bound](bool value) { bound = value; });
    shortcut.bind([&activations] { ++activations; });
    EXPECT_FALSE(shortcut.isBound());
    ASSERT_TRUE(testing::processEventsUntil([&] { return bound.has_value(); }));
    EXPECT_TRUE(*bound);
    EXPECT_TRUE(shortcut.isBound());
    EXPECT_EQ(m_portal->boundId, u"toggle-bar");
    EXPECT_EQ(m_portal->preferredTrigger, u"CTRL+SHIFT+b");

    // Another shortcut id and another session are not the toggle; the signals keep their order.
    m_portal->activate(u"something-else"_s, m_portal->session);
    m_portal->activate(u"toggle-bar"_s, m_portal->session + u"x");
    m_portal->activate(u"toggle-bar"_s, m_portal->session);
    ASSERT_TRUE(testing::processEventsUntil([&] { return activations > 0; }));
    EXPECT_EQ(activations, 1);

    shortcut.unbind();
    EXPECT_FALSE(shortcut.isBound());
    ASSERT_TRUE(testing::processEventsUntil([&] { return m_portal->closedSessions == 1; }));
}

TEST_F(PortalGlobalShortcutTest, AShortcutTheUserDeclinedIsNotBound) {
    m_portal->bindResponse = 1;
    PortalGlobalShortcut shortcut(m_bus->client());
    std::optional<bool> bound;
    shortcut.setBoundHandler([&bound](bool value) { bound = value; });
    shortcut.bind([] {});
    ASSERT_TRUE(testing::processEventsUntil([&] { return bound.has_value(); }));
    EXPECT_FALSE(*bound);
    EXPECT_FALSE(shortcut.isBound());
}

TEST_F(PortalGlobalShortcutTest, NoPortalMeansNotBound) {
    // Another name owns nothing here: the calls fail and the binding reports so.
    ASSERT_TRUE(m_bus->service().unregisterService(u"org.freedesktop.portal.Desktop"_s));
    PortalGlobalShortcut shortcut(m_bus->client());
    std::optional<bool> bound;
    shortcut.setBoundHandler([&bound](bool value) { bound = value; });
    shortcut.bind([] {});
    ASSERT_TRUE(testing::processEventsUntil([&] { return bound.has_value(); }));
    EXPECT_FALSE(*bound);
}

} // namespace
} // namespace hueshelf
