#include "platform/linux/LinuxPlatform.h"

#include "PlatformTestApplication.h"
#include "TempHome.h"

#include <QFile>

#include <gtest/gtest.h>

namespace hueshelf {
namespace {

using namespace Qt::StringLiterals;

// The login entry sits beside the program's own config folder. Off the X server there is no way
// to hear the key from outside, and the platform says so.
TEST(LinuxPlatform, KeepsTheLoginEntryAndReportsTheGlobalShortcutAsItIs) {
    testing::platformTestApplication();
    testing::TempHome home;
    const auto platform = createPlatform(home.paths());
    QFile entry(home.path() + u"/.config/autostart/io.hueshelf.Hueshelf.desktop");
    ASSERT_TRUE(platform->setLaunchAtLogin(true));
    ASSERT_TRUE(entry.open(QIODevice::ReadOnly));
    EXPECT_TRUE(entry.readAll().contains(
        (u"\nExec=" + QCoreApplication::applicationFilePath() + u'\n').toUtf8()));
    ASSERT_TRUE(platform->setLaunchAtLogin(false));
    EXPECT_FALSE(entry.exists());

    const bool onX11 = QGuiApplication::platformName() == u"xcb";
    EXPECT_EQ(platform->registerGlobalShortcut([] {}), onX11);
    EXPECT_EQ(platform->hasGlobalShortcut(), onX11);
    platform->unregisterGlobalShortcut();
    EXPECT_FALSE(platform->hasGlobalShortcut());
}

} // namespace
} // namespace hueshelf
