#include "platform/linux/LinuxPlatform.h"

#include "PlatformTestApplication.h"
#include "TempHome.h"

#include <QFile>

#include <gtest/gtest.h>

namespace hueshelf {
namespace {

using namespace Qt::StringLiterals;

TEST(LinuxPlatform, KeepsTheLoginEntryBesideItsOwnConfigFolder) {
    testing::platformTestApplication();
    testing::TempHome home;
    ASSERT_TRUE(home.isValid());
    const auto platform = createPlatform(home.paths());
    const QString entry = home.path() + u"/.config/autostart/io.hueshelf.Hueshelf.desktop";

    ASSERT_TRUE(platform->setLaunchAtLogin(true));
    QFile file(entry);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    EXPECT_TRUE(text.contains(u"\nExec=" + QCoreApplication::applicationFilePath() + u'\n'))
        << text.toStdString();
    ASSERT_TRUE(platform->setLaunchAtLogin(false));
    EXPECT_FALSE(QFile::exists(entry));
}

// Off the X server there is no way to hear the key from outside, and the platform says so.
TEST(LinuxPlatform, ReportsTheGlobalShortcutAsItIs) {
    testing::platformTestApplication();
    testing::TempHome home;
    const auto platform = createPlatform(home.paths());
    const bool onX11 = QGuiApplication::platformName() == u"xcb";
    EXPECT_EQ(platform->registerGlobalShortcut([] {}), onX11);
    EXPECT_EQ(platform->hasGlobalShortcut(), onX11);
    platform->unregisterGlobalShortcut();
    EXPECT_FALSE(platform->hasGlobalShortcut());
}

} // namespace
} // namespace hueshelf
