#include "platform/linux/DesktopSettingsPortal.h"

#include "PlatformTestApplication.h"
#include "PrivateBus.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QHash>

#include <gtest/gtest.h>

namespace hueshelf {
namespace {

using namespace Qt::StringLiterals;

const QString service = u"org.freedesktop.portal.Desktop"_s;
const QString path = u"/org/freedesktop/portal/desktop"_s;
const QString interface = u"org.freedesktop.portal.Settings"_s;

// A settings portal as the desktops ship it: Read answers in two variant layers and an unknown
// key is an error.
class FakeSettingsPortal : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    QHash<QString, QVariant> values;

public Q_SLOTS:
    QDBusVariant Read(const QString& settingsNamespace, const QString& key) {
        const auto found = values.constFind(settingsNamespace + u'/' + key);
        if (found == values.constEnd()) {
            sendErrorReply(u"org.freedesktop.portal.Error.NotFound"_s,
                           u"Requested setting not found"_s);
            return {};
        }
        return QDBusVariant(QVariant::fromValue(QDBusVariant(*found)));
    }
};

void emitSettingChanged(QDBusConnection bus, const QString& settingsNamespace, const QString& key,
                        const QVariant& value) {
    QDBusMessage signal = QDBusMessage::createSignal(path, interface, u"SettingChanged"_s);
    signal << settingsNamespace << key << QVariant::fromValue(QDBusVariant(value));
    bus.send(signal);
}

class DesktopSettingsPortalTest : public ::testing::Test {
protected:
    void SetUp() override {
        testing::platformTestApplication();
        m_bus = std::make_unique<testing::PrivateBus>();
        if (!m_bus->isRunning())
            GTEST_SKIP() << "no dbus-daemon to run a private bus";
    }
    std::unique_ptr<testing::PrivateBus> m_bus;
};

TEST_F(DesktopSettingsPortalTest, KeepsTheDefaultsWithoutABusOrAPortal) {
    DesktopSettingsPortal detached(QDBusConnection(u"never-connected"_s));
    EXPECT_EQ(detached.preferences(), DesktopPreferences{});

    int calls = 0;
    DesktopSettingsPortal portal(m_bus->client());
    portal.setChangedHandler([&calls] { ++calls; });
    // Each Read fails at once on a bus without the portal; a round trip of our own proves the
    // answers were handled.
    const QDBusMessage ping = m_bus->client().call(
        QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                       u"org.freedesktop.DBus"_s, u"GetId"_s));
    ASSERT_EQ(ping.type(), QDBusMessage::ReplyMessage);
    QCoreApplication::processEvents();
    EXPECT_EQ(portal.preferences(), DesktopPreferences{});
    EXPECT_EQ(calls, 0);
}

TEST_F(DesktopSettingsPortalTest, ReadsAtStartWithoutWaitingAndFollowsChanges) {
    FakeSettingsPortal fake;
    fake.values.insert(u"org.freedesktop.appearance/color-scheme"_s, 1u);
    fake.values.insert(u"org.gnome.desktop.interface/enable-animations"_s, false);
    QDBusConnection serviceBus = m_bus->service();
    ASSERT_TRUE(serviceBus.registerObject(path, &fake, QDBusConnection::ExportAllSlots));
    ASSERT_TRUE(serviceBus.registerService(service));

    int calls = 0;
    DesktopSettingsPortal portal(m_bus->client());
    portal.setChangedHandler([&calls] { ++calls; });
    // Construction sent the questions but did not wait for the answers.
    EXPECT_EQ(portal.preferences(), DesktopPreferences{});

    const DesktopPreferences darkAndCalm{ColorScheme::dark, true};
    ASSERT_TRUE(testing::processEventsUntil([&] { return portal.preferences() == darkAndCalm; }));
    EXPECT_GE(calls, 1);

    // An unrelated setting is not news; the change after it is, and exactly once.
    const int before = calls;
    emitSettingChanged(serviceBus, u"org.freedesktop.appearance"_s, u"accent-color"_s, 3u);
    emitSettingChanged(serviceBus, u"org.freedesktop.appearance"_s, u"color-scheme"_s, 2u);
    ASSERT_TRUE(testing::processEventsUntil([&] { return calls > before; }));
    EXPECT_EQ(calls, before + 1);
    EXPECT_EQ(portal.preferences(), (DesktopPreferences{ColorScheme::light, true}));

    emitSettingChanged(serviceBus, u"org.gnome.desktop.interface"_s, u"enable-animations"_s, true);
    ASSERT_TRUE(testing::processEventsUntil([&] { return calls > before + 1; }));
    EXPECT_EQ(portal.preferences(), (DesktopPreferences{ColorScheme::light, false}));
}

} // namespace
} // namespace hueshelf

#include "DesktopSettingsPortalTest.moc"
