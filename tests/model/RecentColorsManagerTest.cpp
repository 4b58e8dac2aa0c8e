// The recent colours.

#include "model/RecentColorsManager.h"

#include "ModelTestSupport.h"
#include "TempHome.h"
#include "model/PreferencesKeys.h"

#include <QSettings>

#include <gtest/gtest.h>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

TEST(RecentColorsManager, KeepsEightSpellingsOfOneColourOnceAndLoadsOnlyValidOnes) {
    TempHome home;
    const QString path = home.paths().configDir + u"/hueshelf.conf"_s;
    {
        QSettings settings(path, QSettings::IniFormat);
        RecentColorsManager recent(settings);
        for (int i = 1; i <= 9; ++i)
            recent.record(u"#00000"_s + QString::number(i));
        recent.record(u" 000005\n"_s);
        recent.record(u"hello"_s); // not checked here, dropped at the next load
        int changes = 0;
        QObject::connect(&recent, &RecentColorsManager::recentHexesChanged, [&] { ++changes; });
        recent.record(u"#hello"_s);
        EXPECT_EQ(changes, 1) << "the front entry recorded again is still announced";
        EXPECT_EQ(recent.recentHexes().join(u' '),
                  u"#HELLO #000005 #000009 #000008 #000007 #000006 #000004 #000003"_s);
        EXPECT_EQ(settings.value(PreferencesKeys::recentColors).toStringList(),
                  recent.recentHexes());
        // A longer list written by another version: read, filtered, neither cut nor written.
        settings.setValue(PreferencesKeys::recentColors,
                          u"#12345| ##abcdef\n|fff|#0a0b0c|#GGGGGG|#1|#111111|#222222|#333333|"
                          u"#444444|#555555|#666666|#777777"_s.split(u'|'));
    }
    QSettings settings(path, QSettings::IniFormat);
    const QStringList before = settings.value(PreferencesKeys::recentColors).toStringList();
    EXPECT_EQ(RecentColorsManager(settings).recentHexes().join(u' '),
              u"#ABCDEF #0A0B0C #111111 #222222 #333333 #444444 #555555 #666666 #777777"_s);
    EXPECT_EQ(settings.value(PreferencesKeys::recentColors).toStringList(), before);
}

} // namespace
} // namespace hueshelf::testing
