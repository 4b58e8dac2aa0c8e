#include "platform/linux/PortalColorPicker.h"

#include "PlatformTestApplication.h"
#include "PrivateBus.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusVirtualObject>

#include <gtest/gtest.h>

#include <initializer_list>

namespace hueshelf {
namespace {

using namespace Qt::StringLiterals;

const QString portalPath = u"/org/freedesktop/portal/desktop"_s;
const QString portalService = u"org.freedesktop.portal.Desktop"_s;

// The portal's `color` result: normally a (ddd) structure.
QVariantMap colorResult(std::initializer_list<double> components) {
    QDBusArgument argument;
    argument.beginStructure();
    for (const double component : components)
        argument << component;
    argument.endStructure();
    return {{u"color"_s, QVariant::fromValue(argument)}};
}

// The Screenshot portal at the level of raw messages. PickColor replies with the request handle
// and answers through a Response signal there: at once, sent before the reply as a fast portal
// may, or when the test says so, as a portal does once the user clicked. Or it fails the call,
// as a portal does that has no PickColor.
class FakeScreenshotPortal final : public QDBusVirtualObject {
public:
    explicit FakeScreenshotPortal(QDBusConnection bus) : m_bus(std::move(bus)) {}

    enum class Mode { answerAtOnce, holdAnswer, failCall };
    Mode mode = Mode::answerAtOnce;
    uint response = 0;
    QVariantMap results;
    int calls = 0;
    QString parentWindow;
    QString heldRequest;

    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.interface() != u"org.freedesktop.portal.Screenshot" ||
            message.member() != u"PickColor")
            return false;
        ++calls;
        if (mode == Mode::failCall) {
            connection.send(message.createErrorReply(u"org.freedesktop.DBus.Error.UnknownMethod"_s,
                                                     u"No such method"_s));
            return true;
        }
        const QList<QVariant> arguments = message.arguments();
        parentWindow = arguments.value(0).toString();
        const QVariantMap options = qdbus_cast<QVariantMap>(arguments.value(1));
        const QString request = u"/org/freedesktop/portal/desktop/request/"_s +
                                message.service().mid(1).replace(u'.', u'_') + u'/' +
                                options.value(u"handle_token"_s).toString();
        if (mode == Mode::answerAtOnce)
            respond(request);
        else
            heldRequest = request;
        connection.send(message.createReply(QVariant::fromValue(QDBusObjectPath(request))));
        return true;
    }

    void respond(const QString& request) {
        QDBusMessage signal =
            QDBusMessage::createSignal(request, u"org.freedesktop.portal.Request"_s, u"Response"_s);
        signal << response << results;
        m_bus.send(signal);
    }

private:
    QDBusConnection m_bus;
};

// Records every answer and every time the overlay would have been shown; the stand-in overlay
// answers later with a colour of its own, as the real one does after a click.
struct PickRecord {
    std::vector<std::optional<SampledColor>> answers;
    int fallbacks = 0;
};

const SampledColor overlayColor{0.5, 0.25, 0.125};

PortalColorPicker::Fallback recordingFallback(PickRecord& record) {
    return [&record](Platform::ColorPicked done) {
        ++record.fallbacks;
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), [done] { done(overlayColor); }, Qt::QueuedConnection);
    };
}

Platform::ColorPicked recordingDone(PickRecord& record) {
    return [&record](std::optional<SampledColor> color) { record.answers.push_back(color); };
}

class PortalColorPickerTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (!bus.isRunning())
            GTEST_SKIP() << "no dbus-daemon to run a private bus";
        ASSERT_TRUE(service.registerVirtualObject(portalPath, &portal, QDBusConnection::SubPath));
        ASSERT_TRUE(service.registerService(portalService));
    }

    // Picks once and waits for the answer; the event loop then runs a little longer, so that a
    // second answer would be seen too.
    PickRecord pickOnce(QDBusConnection client) {
        PickRecord record;
        PortalColorPicker picker(recordingFallback(record), std::move(client));
        picker.pick(recordingDone(record));
        EXPECT_TRUE(picker.isPicking());
        EXPECT_TRUE(record.answers.empty()) << "answered before the event loop ran";
        testing::processEventsUntil([&] { return !record.answers.empty(); });
        testing::processEventsUntil([] { return false; }, 100);
        EXPECT_FALSE(picker.isPicking());
        return record;
    }

    testing::PrivateBus bus;
    QDBusConnection service = bus.service();
    FakeScreenshotPortal portal{service};
};

// What the portal answers decides between a colour, nothing, and the overlay: a user who
// cancelled the portal's picker is not shown a second one. The last rows take the portal away.
TEST_F(PortalColorPickerTest, AnswersWithThePortalsColourItsCancelOrTheOverlay) {
    using Mode = FakeScreenshotPortal::Mode;
    enum class Bus { withPortal, withoutPortal, disconnected };
    const struct {
        const char* name;
        Bus where;
        Mode mode;
        uint response;
        QVariantMap results;
        std::optional<SampledColor> expected;
        int fallbacks;
    } cases[] = {
        // clang-format off
        {"picked", Bus::withPortal, Mode::answerAtOnce, 0, colorResult({0.2, 1.0, 0.0}),
         SampledColor{0.2, 1.0, 0.0}, 0},
        {"out of range", Bus::withPortal, Mode::answerAtOnce, 0, colorResult({-0.1, 1.5, 0.5}),
         SampledColor{-0.1, 1.5, 0.5}, 0},
        {"no colour", Bus::withPortal, Mode::answerAtOnce, 0, {}, std::nullopt, 0},
        {"two components", Bus::withPortal, Mode::answerAtOnce, 0, colorResult({0.1, 0.2}),
         std::nullopt, 0},
        {"colour as text", Bus::withPortal, Mode::answerAtOnce, 0,
         {{u"color"_s, u"#FF0000"_s}}, std::nullopt, 0},
        {"cancelled", Bus::withPortal, Mode::answerAtOnce, 1, {}, std::nullopt, 0},
        {"portal gave up", Bus::withPortal, Mode::answerAtOnce, 2, {}, overlayColor, 1},
        {"no PickColor", Bus::withPortal, Mode::failCall, 0, {}, overlayColor, 1},
        {"no portal", Bus::withoutPortal, Mode::answerAtOnce, 0, {}, overlayColor, 1},
        {"no bus", Bus::disconnected, Mode::answerAtOnce, 0, {}, overlayColor, 1},
        // clang-format on
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        portal.mode = c.mode;
        portal.response = c.response;
        portal.results = c.results;
        if (c.where != Bus::withPortal)
            service.unregisterService(portalService);
        const int callsBefore = portal.calls;
        const PickRecord record = pickOnce(
            c.where == Bus::disconnected ? QDBusConnection(u"never-connected"_s) : bus.client());
        EXPECT_EQ(portal.calls, callsBefore + (c.where == Bus::withPortal ? 1 : 0));
        EXPECT_EQ(portal.parentWindow, QString());
        ASSERT_EQ(record.answers.size(), 1u);
        EXPECT_EQ(record.answers.front(), c.expected);
        EXPECT_EQ(record.fallbacks, c.fallbacks);
    }
}

// While the portal's picker is up, a second pick is answered with nothing and never reaches the
// portal; the first still gets its colour, and after it a new pick starts again.
TEST_F(PortalColorPickerTest, ASecondPickWhileOneRunsGetsNothing) {
    portal.mode = FakeScreenshotPortal::Mode::holdAnswer;
    portal.results = colorResult({0, 0, 1});
    PickRecord first;
    PickRecord second;
    PortalColorPicker picker(recordingFallback(first), bus.client());
    picker.pick(recordingDone(first));
    picker.pick(recordingDone(second));
    ASSERT_TRUE(testing::processEventsUntil(
        [&] { return !second.answers.empty() && !portal.heldRequest.isEmpty(); }));
    EXPECT_EQ(second.answers, (std::vector<std::optional<SampledColor>>{std::nullopt}));
    EXPECT_TRUE(first.answers.empty());
    EXPECT_TRUE(picker.isPicking());
    EXPECT_EQ(portal.calls, 1);

    portal.respond(portal.heldRequest);
    ASSERT_TRUE(testing::processEventsUntil([&] { return !first.answers.empty(); }));
    EXPECT_EQ(first.answers, (std::vector<std::optional<SampledColor>>{SampledColor{0, 0, 1}}));
    EXPECT_FALSE(picker.isPicking());

    picker.pick(recordingDone(second));
    EXPECT_TRUE(testing::processEventsUntil([&] { return portal.calls == 2; }));
    EXPECT_TRUE(picker.isPicking());
}

} // namespace
} // namespace hueshelf
