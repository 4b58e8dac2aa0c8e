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

TEST(XdgAutostart, QuotesTheExecutableByTheDesktopEntryRules) {
    const struct {
        const char* description;
        QString path;
        QString exec;
    } cases[] = {
        {"plain path stays bare", u"/usr/bin/hueshelf"_s, u"/usr/bin/hueshelf"_s},
        {"space", u"/opt/Hue Shelf/hueshelf"_s, u"\"/opt/Hue Shelf/hueshelf\""_s},
        {"double quote", u"/opt/a\"b/hueshelf"_s, u"\"/opt/a\\\\\"b/hueshelf\""_s},
        {"dollar and backtick", u"/opt/$x`y/hueshelf"_s, u"\"/opt/\\\\$x\\\\`y/hueshelf\""_s},
        {"backslash", u"/opt/a\\b/hueshelf"_s, u"\"/opt/a\\\\\\\\b/hueshelf\""_s},
        {"single quote needs quotes only", u"/opt/it's/hueshelf"_s, u"\"/opt/it's/hueshelf\""_s},
        {"percent is no field code", u"/opt/100%/hueshelf"_s, u"/opt/100%%/hueshelf"_s},
        {"non-ASCII is kept", u"/home/zoë/hueshelf"_s, u"/home/zoë/hueshelf"_s},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.description);
        EXPECT_EQ(XdgAutostart::execArgument(c.path), c.exec);
    }
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
    EXPECT_EQ(parsed.value(u"Name"_s).toString(), u"HueShelf");
    EXPECT_EQ(parsed.value(u"Icon"_s).toString(), u"io.hueshelf.Hueshelf");
    EXPECT_EQ(parsed.value(u"X-GNOME-Autostart-enabled"_s).toString(), u"true");
    QFile file(entry);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray text = file.readAll();
    EXPECT_TRUE(text.startsWith("[Desktop Entry]\n"));
    EXPECT_TRUE(text.contains((u"\nExec=\"" + executable + u"\"\n").toUtf8()));

    // Disabling twice is fine: a missing entry is what was asked.
    ASSERT_TRUE(autostart.setEnabled(false));
    EXPECT_FALSE(QFile::exists(entry));
    EXPECT_TRUE(autostart.setEnabled(false));
}

TEST(XdgAutostart, RefusesAndChangesNothingWhenTheFolderCannotBeMade) {
    testing::TempHome home;
    const QString blocker = configHome(home) + u"/autostart";
    {
        QFile file(blocker);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("not a folder");
    }
    const auto listing = [&] {
        return QDir(configHome(home)).entryList(QDir::NoDotAndDotDot | QDir::AllEntries);
    };
    const QStringList before = listing();
    XdgAutostart autostart(configHome(home), u"/usr/bin/hueshelf"_s);
    EXPECT_FALSE(autostart.setEnabled(true));
    EXPECT_FALSE(autostart.isEnabled());
    EXPECT_EQ(listing(), before);
    EXPECT_EQ(QFileInfo(blocker).size(), 12);
}

} // namespace
} // namespace hueshelf
