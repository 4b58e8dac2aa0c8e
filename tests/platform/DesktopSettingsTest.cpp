#include "platform/linux/DesktopSettings.h"

#include <QDBusVariant>

#include <gtest/gtest.h>

namespace hueshelf {
namespace {

using namespace Qt::StringLiterals;

// The value as the old Read call delivers it: the setting's variant inside the reply's variant.
QVariant twoLayers(const QVariant& value) {
    return QVariant::fromValue(QDBusVariant(QVariant::fromValue(QDBusVariant(value))));
}
QVariant oneLayer(const QVariant& value) {
    return QVariant::fromValue(QDBusVariant(value));
}

const QString appearance = u"org.freedesktop.appearance"_s;
const QString gnome = u"org.gnome.desktop.interface"_s;
const QString kde = u"org.kde.kdeglobals.KDE"_s;
const QString scheme = u"color-scheme"_s;
const QString factor = u"AnimationDurationFactor"_s;

// Each row on a fresh start: whether the value is taken, and what the desktop then asks for.
TEST(DesktopSettings, DecodesEachWatchedSettingAndIgnoresEverythingElse) {
    using enum ColorScheme;
    const std::tuple<QString, QString, QVariant, bool, DesktopPreferences> cases[] = {
        {appearance, scheme, twoLayers(1u), true, {dark, false}},
        {appearance, scheme, oneLayer(twoLayers(2u)), true, {light, false}},
        {appearance, scheme, twoLayers(1), true, {dark, false}},
        {appearance, scheme, twoLayers(7u), true, {}},
        {appearance, scheme, twoLayers(u"dark"_s), false, {}},
        {appearance, scheme, twoLayers(true), false, {}},
        {appearance, scheme, twoLayers(QVariant()), false, {}},
        {gnome, u"enable-animations"_s, twoLayers(false), true, {noPreference, true}},
        {gnome, u"enable-animations"_s, twoLayers(0u), false, {}},
        {kde, factor, twoLayers(0.0), true, {noPreference, true}},
        {kde, factor, twoLayers(0.5), true, {}},
        {kde, factor, twoLayers(u"0"_s), false, {}},
        {gnome, scheme, twoLayers(1u), false, {}},
    };
    for (const auto& [settingsNamespace, key, value, changed, expected] : cases) {
        SCOPED_TRACE(
            QString(settingsNamespace + u' ' + key + u' ' + value.toString()).toStdString());
        DesktopSettings::Values values;
        EXPECT_EQ(DesktopSettings::apply(values, settingsNamespace, key, value), changed);
        EXPECT_EQ(DesktopSettings::preferences(values), expected);
    }
}

TEST(DesktopSettings, EitherDesktopCanAskForLessMotionAndRepeatsChangeNothing) {
    DesktopSettings::Values values;
    EXPECT_TRUE(DesktopSettings::apply(values, kde, factor, oneLayer(0.0)));
    // GNOME's key still says animations are on; KDE's zero must not be outvoted by it.
    EXPECT_TRUE(DesktopSettings::apply(values, gnome, u"enable-animations"_s, oneLayer(true)));
    EXPECT_TRUE(DesktopSettings::preferences(values).reduceMotion);
    EXPECT_FALSE(DesktopSettings::apply(values, gnome, u"enable-animations"_s, oneLayer(true)));
    EXPECT_TRUE(DesktopSettings::apply(values, kde, factor, oneLayer(1.0)));
    EXPECT_FALSE(DesktopSettings::preferences(values).reduceMotion);
    // A later bad value keeps what was heard before.
    EXPECT_TRUE(DesktopSettings::apply(values, appearance, scheme, oneLayer(1u)));
    EXPECT_FALSE(DesktopSettings::apply(values, appearance, scheme, oneLayer(1.5)));
    EXPECT_EQ(DesktopSettings::preferences(values).colorScheme, ColorScheme::dark);
}

} // namespace
} // namespace hueshelf
