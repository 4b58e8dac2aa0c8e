#include "platform/linux/X11GlobalShortcut.h"

#include "PlatformTestApplication.h"
#include "platform/linux/ShortcutKey.h"
#include "platform/linux/X11Keymap.h"

#include <QGuiApplication>
#include <QProcess>
#include <QStandardPaths>

#include <gtest/gtest.h>

#include <cstdlib>
#include <xcb/xcb.h>

namespace hueshelf {
namespace {

using namespace Qt::StringLiterals;

bool type(const char* keys) {
    return testing::xdotool({u"key"_s, QString::fromLatin1(keys)});
}

int waitForCount(const int& count, int wanted) {
    testing::processEventsUntil([&] { return count >= wanted; });
    return count;
}

class X11GlobalShortcutTest : public ::testing::Test {
protected:
    void SetUp() override {
        const QString reason = testing::x11SkipReason();
        if (!reason.isEmpty())
            GTEST_SKIP() << reason.toStdString();
    }
};

// Presses that must not count are each followed by one that must: the server keeps the order,
// so the count shows whether the first was heard.
TEST_F(X11GlobalShortcutTest, HearsTheShortcutInEveryLockStateAndNothingElse) {
    X11GlobalShortcut shortcut;
    int count = 0;
    ASSERT_TRUE(X11GlobalShortcut::isAvailable());
    ASSERT_TRUE(shortcut.registerShortcut([&count] { ++count; }));
    // Each press with the count it leaves; the locks toggle between presses of the shortcut.
    const QString presses = u"ctrl+shift+b=1 ctrl+b=1 shift+b=1 ctrl+shift+n=1 ctrl+shift+b=2 "
                            u"Num_Lock=2 ctrl+shift+b=3 Caps_Lock=3 ctrl+shift+alt+b=4 Num_Lock=4 "
                            u"ctrl+shift+super+b=5 Caps_Lock=5"_s;
    for (const QString& press : presses.split(u' ')) {
        SCOPED_TRACE(press.toStdString());
        const int countAfter = press.section(u'=', 1).toInt();
        const bool counts = countAfter > count;
        ASSERT_TRUE(type(press.section(u'=', 0, 0).toLatin1().constData()));
        if (counts) {
            EXPECT_EQ(waitForCount(count, countAfter), countAfter);
        }
    }
    shortcut.unregisterShortcut();
    EXPECT_FALSE(shortcut.isRegistered());
    ASSERT_TRUE(type("ctrl+shift+b"));
    ASSERT_TRUE(shortcut.registerShortcut([&count] { ++count; }));
    ASSERT_TRUE(type("ctrl+shift+b"));
    EXPECT_EQ(waitForCount(count, 6), 6);
}

TEST_F(X11GlobalShortcutTest, AKeyHeldByAnotherProgramIsNotRegisteredAndNothingStaysGrabbed) {
    xcb_connection_t* other = xcb_connect(nullptr, nullptr);
    ASSERT_EQ(xcb_connection_has_error(other), 0);
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(other)).data->root;
    const std::uint8_t keycode = X11Keymap::keycodeFor(other, ShortcutKey::letterBKeysym);
    ASSERT_NE(keycode, 0);
    const auto grab = [&](std::uint16_t modifiers) {
        xcb_generic_error_t* error = xcb_request_check(
            other, xcb_grab_key_checked(other, 1, root, modifiers, keycode, XCB_GRAB_MODE_ASYNC,
                                        XCB_GRAB_MODE_ASYNC));
        std::free(error);
        return error == nullptr;
    };
    // The other program holds only the CapsLock variant, so a careless registration would
    // keep the rest.
    const std::uint16_t ctrlShift = ShortcutKey::controlMask | ShortcutKey::shiftMask;
    ASSERT_TRUE(grab(ctrlShift | ShortcutKey::lockMask));

    X11GlobalShortcut shortcut;
    EXPECT_FALSE(shortcut.registerShortcut([] {}));
    EXPECT_FALSE(shortcut.isRegistered());
    EXPECT_TRUE(grab(ctrlShift));
    EXPECT_TRUE(grab(ctrlShift | ShortcutKey::mod2Mask));

    // Once the other program lets go, the key can be had; holding only Control-Alt-Shift-B
    // it takes that combination but not the shortcut.
    xcb_ungrab_key(other, XCB_GRAB_ANY, root, XCB_MOD_MASK_ANY);
    ASSERT_TRUE(grab(ctrlShift | ShortcutKey::mod1Mask));
    EXPECT_TRUE(shortcut.registerShortcut([] {}));
    shortcut.unregisterShortcut();
    xcb_disconnect(other);
}

} // namespace
} // namespace hueshelf
