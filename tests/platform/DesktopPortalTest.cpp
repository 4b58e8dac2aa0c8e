#include "PlatformTestApplication.h"
#include "PrivateBus.h"
#include "platform/linux/DesktopSettingsPortal.h"
#include "platform/linux/PortalGlobalShortcut.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QHash>

#include <gtest/gtest.h>

namespace hueshelf {
namespace {

using namespace Qt::StringLiterals;

const QString portalPath = u"/org/freedesktop/portal/desktop"_s;
const QString shortcutsInterface = u"org.freedesktop.portal.GlobalShortcuts"_s;
const QString settingsInterface = u"org.freedesktop.portal.Settings"_s;

// The desktop portal as the desktops ship it, at the level of raw messages. Settings' Read
// answers in two variant layers and an unknown key is an error. GlobalShortcuts' requests answer
// through a Response signal at the path the caller predicted, sent here before the call's own
// reply, as a fast portal may.
class FakePortal final : public QDBusVirtualObject {
public:
    explicit FakePortal(QDBusConnection bus) : m_bus(std::move(bus)) {}

    QHash<QString, QVariant> settings;
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
        const QList<QVariant> arguments = message.arguments();
        if (message.interface() == settingsInterface && message.member() == u"Read") {
            const QString key =
                arguments.value(0).toString() + u'/' + arguments.value(1).toString();
            connection.send(
                settings.contains(key)
                    ? message.createReply(QVariant::fromValue(
                          QDBusVariant(QVariant::fromValue(QDBusVariant(settings[key])))))
                    : message.createErrorReply(u"org.freedesktop.portal.Error.NotFound"_s,
                                               u"Requested setting not found"_s));
            return true;
        }
        if (message.interface() != shortcutsInterface)
            return false;
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

    void settingChanged(const QString& settingsNamespace, const QString& key,
                        const QVariant& value) {
        QDBusMessage signal =
            QDBusMessage::createSignal(portalPath, settingsInterface, u"SettingChanged"_s);
        signal << settingsNamespace << key << QVariant::fromValue(QDBusVariant(value));
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

class Portal : public ::testing::Test {
protected:
    void SetUp() override {
        if (!bus.isRunning())
            GTEST_SKIP() << "no dbus-daemon to run a private bus";
        ASSERT_TRUE(service.registerVirtualObject(portalPath, &portal, QDBusConnection::SubPath));
        ASSERT_TRUE(service.registerService(u"org.freedesktop.portal.Desktop"_s));
    }
    // A round trip to the portal's connection: every signal it sent before is here by then.
    void roundTrip() {
        bus.client().call(QDBusMessage::createMethodCall(u"org.freedesktop.portal.Desktop"_s,
                                                         portalPath, u"org.freedesktop.DBus.Peer"_s,
                                                         u"Ping"_s));
    }

    testing::PrivateBus bus;
    QDBusConnection service = bus.service();
    FakePortal portal{service};
};

// Construction sends the questions without waiting for the answers; without a portal, or
// before it answers, the defaults hold.
TEST_F(Portal, DesktopSettingsAreReadAtStartAndFollowed) {
    EXPECT_EQ(DesktopSettingsPortal(QDBusConnection(u"never-connected"_s)).preferences(),
              DesktopPreferences{});
    portal.settings.insert(u"org.freedesktop.appearance/color-scheme"_s, 1u);
    portal.settings.insert(u"org.gnome.desktop.interface/enable-animations"_s, false);
    int calls = 0;
    DesktopSettingsPortal settings(bus.client());
    settings.setChangedHandler([&calls] { ++calls; });
    EXPECT_EQ(settings.preferences(), DesktopPreferences{});
    const DesktopPreferences darkAndCalm{ColorScheme::dark, true};
    ASSERT_TRUE(testing::processEventsUntil([&] { return settings.preferences() == darkAndCalm; }));

    // An unrelated setting is not news; the change after it is, and exactly once.
    const int before = calls;
    portal.settingChanged(u"org.freedesktop.appearance"_s, u"accent-color"_s, 3u);
    portal.settingChanged(u"org.freedesktop.appearance"_s, u"color-scheme"_s, 2u);
    roundTrip();
    ASSERT_TRUE(testing::processEventsUntil([&] { return calls > before; }));
    EXPECT_EQ(calls, before + 1);
    EXPECT_EQ(settings.preferences(), (DesktopPreferences{ColorScheme::light, true}));
}

TEST_F(Portal, TheToggleIsBoundHearsOnlyItsOwnActivationsAndTakesNoForNo) {
    PortalGlobalShortcut shortcut(bus.client());
    int activations = 0;
    std::optional<bool> bound;
    shortcut.setBoundHandler([&bound](bool value) { bound = value; });
    const auto bind = [&] {
        bound.reset();
        shortcut.bind([&activations] { ++activations; });
        EXPECT_FALSE(shortcut.isBound()) << "not before the portal answers";
        return testing::processEventsUntil([&] { return bound.has_value(); });
    };
    ASSERT_TRUE(bind());
    EXPECT_TRUE(*bound);
    EXPECT_TRUE(shortcut.isBound());
    EXPECT_EQ(portal.boundId, u"toggle-bar");
    EXPECT_EQ(portal.preferredTrigger, u"CTRL+SHIFT+b");

    // Another shortcut id and another session are not the toggle; the signals keep their order.
    portal.activate(u"something-else"_s, portal.session);
    portal.activate(u"toggle-bar"_s, portal.session + u"x");
    portal.activate(u"toggle-bar"_s, portal.session);
    roundTrip();
    ASSERT_TRUE(testing::processEventsUntil([&] { return activations > 0; }));
    EXPECT_EQ(activations, 1);
    shortcut.unbind();
    ASSERT_TRUE(testing::processEventsUntil([&] { return portal.closedSessions == 1; }));

    // The user declines the binding, then no portal owns the name: neither binds.
    portal.bindResponse = 1;
    ASSERT_TRUE(bind());
    EXPECT_FALSE(*bound);
    ASSERT_TRUE(bus.service().unregisterService(u"org.freedesktop.portal.Desktop"_s));
    ASSERT_TRUE(bind());
    EXPECT_FALSE(*bound);
    EXPECT_FALSE(shortcut.isBound());
}

} // namespace
} // namespace hueshelf
