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

TEST(DesktopSettings, DecodesEachWatchedSettingAndIgnoresEverythingElse) {
    const DesktopPreferences none{};
    const DesktopPreferences dark{ColorScheme::dark, false};
    const DesktopPreferences light{ColorScheme::light, false};
    const DesktopPreferences calm{ColorScheme::noPreference, true};
    const struct {
        const char* description;
        QString settingsNamespace;
        QString key;
        QVariant value;
        bool changed;
        DesktopPreferences expected;
    } cases[] = {
        {"dark from Read", appearance, u"color-scheme"_s, twoLayers(1u), true, dark},
        {"light from ReadOne", appearance, u"color-scheme"_s, oneLayer(2u), true, light},
        {"light in a third layer", appearance, u"color-scheme"_s, oneLayer(twoLayers(2u)), true,
         light},
        {"dark as a signed integer", appearance, u"color-scheme"_s, twoLayers(1), true, dark},
        {"no preference is an answer too", appearance, u"color-scheme"_s, twoLayers(0u), true,
         none},
        {"an unknown scheme means no preference", appearance, u"color-scheme"_s, twoLayers(7u),
         true, none},
        {"scheme as text is not a scheme", appearance, u"color-scheme"_s, twoLayers(u"dark"_s),
         false, none},
        {"scheme as a bool is not a scheme", appearance, u"color-scheme"_s, twoLayers(true), false,
         none},
        {"animations off", gnome, u"enable-animations"_s, twoLayers(false), true, calm},
        {"animations as a number are ignored", gnome, u"enable-animations"_s, twoLayers(0u), false,
         none},
        {"KDE factor zero", kde, u"AnimationDurationFactor"_s, twoLayers(0.0), true, calm},
        {"KDE factor slow", kde, u"AnimationDurationFactor"_s, twoLayers(0.5), true, none},
        {"KDE factor as text is ignored", kde, u"AnimationDurationFactor"_s, twoLayers(u"0"_s),
         false, none},
        {"a key of another namespace", gnome, u"color-scheme"_s, twoLayers(1u), false, none},
        {"an empty variant", appearance, u"color-scheme"_s, twoLayers(QVariant()), false, none},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.description);
        DesktopSettings::Values values;
        EXPECT_EQ(DesktopSettings::apply(values, c.settingsNamespace, c.key, c.value), c.changed);
        EXPECT_EQ(DesktopSettings::preferences(values), c.expected);
    }
}

TEST(DesktopSettings, EitherDesktopCanAskForLessMotionAndRepeatsChangeNothing) {
    DesktopSettings::Values values;
    EXPECT_TRUE(DesktopSettings::apply(values, kde, u"AnimationDurationFactor"_s, oneLayer(0.0)));
    // GNOME's key still says animations are on; KDE's zero must not be outvoted by it.
    EXPECT_TRUE(DesktopSettings::apply(values, gnome, u"enable-animations"_s, oneLayer(true)));
    EXPECT_TRUE(DesktopSettings::preferences(values).reduceMotion);
    EXPECT_FALSE(DesktopSettings::apply(values, gnome, u"enable-animations"_s, oneLayer(true)));

    EXPECT_TRUE(DesktopSettings::apply(values, kde, u"AnimationDurationFactor"_s, oneLayer(1.0)));
    EXPECT_FALSE(DesktopSettings::preferences(values).reduceMotion);

    // A later bad value keeps what was heard before.
    EXPECT_TRUE(DesktopSettings::apply(values, appearance, u"color-scheme"_s, oneLayer(1u)));
    EXPECT_FALSE(DesktopSettings::apply(values, appearance, u"color-scheme"_s, oneLayer(1.5)));
    EXPECT_EQ(DesktopSettings::preferences(values).colorScheme, ColorScheme::dark);
}

} // namespace
} // namespace hueshelf
