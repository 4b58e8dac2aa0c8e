#include "platform/linux/XdgAutostart.h"

#include "TempHome.h"

#include <QDir>
#include <QFile>
#include <QSettings>

#include <gtest/gtest.h>

namespace hueshelf {
namespace {

using namespace Qt::StringLiterals;

QString configHome(const testing::TempHome& home) {
    return QDir::cleanPath(home.paths().configDir + u"/..");
}

// The Exec rules first (quotes, and a backslash before " ` $ \), then the string rules of every
// value (backslashes doubled, % doubled so that no part of a path reads as a field code).
TEST(XdgAutostart, QuotesTheExecutableByTheDesktopEntryRules) {
    const std::pair<QString, QString> cases[] = {
        {u"/usr/bin/hueshelf"_s, u"/usr/bin/hueshelf"_s},
        {u"/opt/Hue Shelf/hueshelf"_s, u"\"/opt/Hue Shelf/hueshelf\""_s},
        {u"/opt/a\"b/hueshelf"_s, u"\"/opt/a\\\\\"b/hueshelf\""_s},
        {u"/opt/$x`y/hueshelf"_s, u"\"/opt/\\\\$x\\\\`y/hueshelf\""_s},
        {u"/opt/a\\b/hueshelf"_s, u"\"/opt/a\\\\\\\\b/hueshelf\""_s},
        {u"/opt/it's/hueshelf"_s, u"\"/opt/it's/hueshelf\""_s},
        {u"/opt/100%/hueshelf"_s, u"/opt/100%%/hueshelf"_s},
    };
    for (const auto& [path, exec] : cases)
        EXPECT_EQ(XdgAutostart::execArgument(path), exec) << path.toStdString();
}

TEST(XdgAutostart, WritesTheEntryAndRemovesIt) {
    testing::TempHome home;
    const QString executable = home.path() + u"/My Apps/hueshelf";
    XdgAutostart autostart(configHome(home), executable);
    const QString entry = configHome(home) + u"/autostart/io.hueshelf.Hueshelf.desktop";
    ASSERT_EQ(autostart.entryPath(), entry);
    ASSERT_TRUE(autostart.setEnabled(true));
    EXPECT_TRUE(autostart.isEnabled());
    // Read back as a desktop would; the quotes are part of the Exec value.
    QSettings parsed(entry, QSettings::IniFormat);
    parsed.beginGroup(u"Desktop Entry"_s);
    EXPECT_EQ(parsed.value(u"Type"_s).toString(), u"Application");
    EXPECT_EQ(parsed.value(u"Icon"_s).toString(), u"io.hueshelf.Hueshelf");
    QFile file(entry);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray text = file.readAll();
    EXPECT_TRUE(text.startsWith("[Desktop Entry]\n"));
    EXPECT_TRUE(text.contains((u"\nExec=\"" + executable + u"\"\n").toUtf8()));
    // Disabling twice is fine: a missing entry is what was asked.
    ASSERT_TRUE(autostart.setEnabled(false));
    EXPECT_FALSE(QFile::exists(entry));
    EXPECT_TRUE(autostart.setEnabled(false));

    // A file where the folder should be: refused, and nothing changes.
    QFile blocker(configHome(home) + u"/autostart");
    ASSERT_TRUE(QDir(configHome(home) + u"/autostart").removeRecursively());
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.write("not a folder");
    blocker.close();
    EXPECT_FALSE(autostart.setEnabled(true));
    EXPECT_FALSE(autostart.isEnabled());
    EXPECT_EQ(QFileInfo(blocker).size(), 12);
}

} // namespace
} // namespace hueshelf
