#include "model/RecentColorsManager.h"

#include "TempHome.h"
#include "model/PreferencesKeys.h"

#include <QFile>
#include <QSettings>

#include <gtest/gtest.h>

namespace hueshelf {
namespace {

using namespace Qt::StringLiterals;

class RecentColorsManagerTest : public ::testing::Test {
protected:
    QString settingsPath() const { return home.paths().configDir + u"/hueshelf.conf"_s; }
    std::unique_ptr<QSettings> openSettings() const {
        return std::make_unique<QSettings>(settingsPath(), QSettings::IniFormat);
    }
    QStringList stored() const {
        return openSettings()->value(PreferencesKeys::recentColors).toStringList();
    }

    testing::TempHome home;
};

TEST_F(RecentColorsManagerTest, SpellingsOfOneColourCollapseToOneEntryAtTheFront) {
    auto settings = openSettings();
    RecentColorsManager recent(*settings);
    recent.record(u"#00FF00"_s);
    recent.record(u"ffa69e"_s);
    recent.record(u" #FFA69E \n"_s);
    recent.record(u"#ffa69e"_s);
    EXPECT_EQ(recent.recentHexes(), (QStringList{u"#FFA69E"_s, u"#00FF00"_s}));
    settings->sync();
    EXPECT_EQ(stored(), recent.recentHexes());
}

TEST_F(RecentColorsManagerTest, AFrontEntryRecordedAgainIsStillWrittenAndAnnounced) {
    auto settings = openSettings();
    RecentColorsManager recent(*settings);
    recent.record(u"#111111"_s);
    settings->remove(PreferencesKeys::recentColors);
    int changes = 0;
    QObject::connect(&recent, &RecentColorsManager::recentHexesChanged, [&] { ++changes; });
    recent.record(u"#111111"_s);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(recent.recentHexes(), QStringList{u"#111111"_s});
    EXPECT_EQ(settings->value(PreferencesKeys::recentColors).toStringList(),
              QStringList{u"#111111"_s});
}

TEST_F(RecentColorsManagerTest, ANinthColourPushesOutTheOldest) {
    auto settings = openSettings();
    RecentColorsManager recent(*settings);
    for (int i = 1; i <= 9; ++i)
        recent.record(u"#00000"_s + QString::number(i));
    ASSERT_EQ(recent.recentHexes().size(), RecentColorsManager::limit);
    EXPECT_EQ(recent.recentHexes().first(), u"#000009"_s);
    EXPECT_EQ(recent.recentHexes().last(), u"#000002"_s);
    EXPECT_FALSE(recent.recentHexes().contains(u"#000001"_s));
    // Picking an older entry moves it forward without pushing anything out.
    recent.record(u"#000005"_s);
    EXPECT_EQ(recent.recentHexes().size(), RecentColorsManager::limit);
    EXPECT_EQ(recent.recentHexes().first(), u"#000005"_s);
}

TEST_F(RecentColorsManagerTest, RecordDoesNotValidateButTheNextLoadDrops) {
    {
        auto settings = openSettings();
        RecentColorsManager recent(*settings);
        recent.record(u"#ABCDEF"_s);
        recent.record(u"hello"_s);
        EXPECT_EQ(recent.recentHexes(), (QStringList{u"#HELLO"_s, u"#ABCDEF"_s}));
    }
    auto settings = openSettings();
    RecentColorsManager reloaded(*settings);
    EXPECT_EQ(reloaded.recentHexes(), QStringList{u"#ABCDEF"_s});
}

TEST_F(RecentColorsManagerTest, LoadKeepsOnlySixHexDigitsAndNeitherTruncatesNorWrites) {
    const QStringList written = {
        u"#12345"_s,  u"hello"_s,   u" ##abcdef\n"_s, u"#1234567"_s, u"fff"_s,
        u"#0a0b0c"_s, u"#GGGGGG"_s, u"#111111"_s,     u"#222222"_s,  u"#333333"_s,
        u"#444444"_s, u"#555555"_s, u"#666666"_s,     u"#777777"_s,  u"12 456"_s,
    };
    openSettings()->setValue(PreferencesKeys::recentColors, written);
    auto settings = openSettings();
    RecentColorsManager recent(*settings);
    EXPECT_EQ(recent.recentHexes(),
              (QStringList{u"#ABCDEF"_s, u"#0A0B0C"_s, u"#111111"_s, u"#222222"_s, u"#333333"_s,
                           u"#444444"_s, u"#555555"_s, u"#666666"_s, u"#777777"_s}));
    EXPECT_EQ(stored(), written);
}

TEST_F(RecentColorsManagerTest, MissingOrSingleEntriesLoad) {
    {
        auto settings = openSettings();
        EXPECT_TRUE(RecentColorsManager(*settings).recentHexes().isEmpty());
    }
    // A file edited by hand may hold a plain value instead of a list.
    QFile file(settingsPath());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[General]\nhueshelf.recentColors=\"#a1b2c3\"\n");
    file.close();
    auto settings = openSettings();
    EXPECT_EQ(RecentColorsManager(*settings).recentHexes(), QStringList{u"#A1B2C3"_s});
}

} // namespace
} // namespace hueshelf
