#include "AppTestSupport.h"
#include "TempHome.h"
#include "app/AppDefaults.h"
#include "app/AppSettingsKeys.h"
#include "app/AppearanceController.h"
#include "app/AppearancePalette.h"
#include "app/ShortcutPermissionAlert.h"
#include "app/ShortcutPermissionModel.h"
#include "platform/fake/FakePlatform.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QPalette>
#include <QSettings>
#include <QTimer>

#include <gtest/gtest.h>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;

class AppSettingsFixture : public ::testing::Test {
protected:
    void SetUp() override { testing::ensureApplication(); }
    QString path() const { return home.path() + u"/hueshelf.conf"_s; }

    testing::TempHome home;
    QSettings settings{path(), QSettings::IniFormat};
    FakePlatform platform;
};

using Appearance = AppSettingsFixture;

// The user's mode beats the desktop; "system" and text no menu writes follow it.
TEST(AppearanceRules, ModeOverDesktop) {
    using enum ColorScheme;
    const struct {
        QString mode;
        ColorScheme desktop;
        ColorScheme effective;
    } cases[] = {
        {u"light"_s, dark, light},
        {u"dark"_s, light, dark},
        {u"dark"_s, noPreference, dark},
        {u"system"_s, dark, dark},
        {u"system"_s, noPreference, noPreference},
        {u""_s, light, light},
        {u"Dark"_s, light, light},
        {u"sepia"_s, noPreference, noPreference},
    };
    for (const auto& c : cases)
        EXPECT_EQ(AppearanceRules::effectiveColorScheme(c.mode, c.desktop), c.effective)
            << c.mode.toStdString();
}

TEST(AppearanceRules, ReduceMotionOverride) {
    const struct {
        QString override;
        bool desktop;
        bool effective;
    } cases[] = {
        {u"on"_s, false, true},    {u"off"_s, true, false}, {u""_s, true, true},
        {u""_s, false, false},     {u"ON"_s, false, false}, {u"true"_s, false, false},
        {u"follow"_s, true, true},
    };
    for (const auto& c : cases)
        EXPECT_EQ(AppearanceRules::effectiveReduceMotion(c.override, c.desktop), c.effective)
            << c.override.toStdString();
}

// Views hear of a change of the outcome only: a desktop change hidden by an override, or a
// mode stored again, says nothing.
TEST_F(Appearance, NotifiesWhenTheOutcomeChanges) {
    AppearanceController controller(settings, platform);
    int changes = 0;
    QObject::connect(&controller, &AppearanceController::changed, [&changes] { ++changes; });

    platform.changeDesktopPreferences({ColorScheme::dark, false});
    EXPECT_EQ(controller.colorScheme(), ColorScheme::dark);
    EXPECT_EQ(changes, 1);

    controller.setAppearanceMode(u"dark"_s);
    EXPECT_EQ(changes, 1);
    controller.setAppearanceMode(u"light"_s);
    EXPECT_EQ(controller.colorScheme(), ColorScheme::light);
    EXPECT_EQ(changes, 2);
    platform.changeDesktopPreferences({ColorScheme::noPreference, false});
    EXPECT_EQ(changes, 2);

    platform.changeDesktopPreferences({ColorScheme::noPreference, true});
    EXPECT_TRUE(controller.reduceMotion());
    EXPECT_EQ(changes, 3);
    settings.setValue(AppSettingsKeys::reduceMotion, u"off"_s);
    controller.refresh();
    EXPECT_FALSE(controller.reduceMotion());
    EXPECT_EQ(changes, 4);
    controller.refresh();
    EXPECT_EQ(changes, 4);
}

// A controller that is gone no longer hears the desktop.
TEST_F(Appearance, LetsGoOfTheDesktopWhenDestroyed) {
    int changes = 0;
    {
        AppearanceController controller(settings, platform);
        QObject::connect(&controller, &AppearanceController::changed, [&changes] { ++changes; });
    }
    platform.changeDesktopPreferences({ColorScheme::dark, true});
    EXPECT_EQ(changes, 0);
}

// Light and dark are set palettes; no preference gives back what the application had before
// any was set.
TEST_F(Appearance, PalettesSwitchAndRestore) {
    const QPalette original = QApplication::palette();
    applyAppearance(ColorScheme::light);
    EXPECT_GT(QApplication::palette().color(QPalette::Window).lightness(), 200);
    EXPECT_LT(QApplication::palette().color(QPalette::WindowText).lightness(), 80);
    applyAppearance(ColorScheme::dark);
    EXPECT_LT(QApplication::palette().color(QPalette::Window).lightness(), 80);
    EXPECT_GT(QApplication::palette().color(QPalette::WindowText).lightness(), 200);
    applyAppearance(ColorScheme::noPreference);
    for (const QPalette::ColorRole role :
         {QPalette::Window, QPalette::WindowText, QPalette::Base, QPalette::Highlight})
        EXPECT_EQ(QApplication::palette().color(role), original.color(role)) << role;
}

using Defaults = AppSettingsFixture;

// Written where absent, never over what the user or another writer left, whatever its type.
TEST_F(Defaults, FillOnlyWhatIsAbsent) {
    AppDefaults::registerDefaults(settings);
    EXPECT_EQ(settings.value(AppSettingsKeys::defaultCopyFormat), u"hex"_s);
    EXPECT_TRUE(settings.value(AppSettingsKeys::expandTextPreviewByDefault).toBool());

    settings.clear();
    settings.setValue(AppSettingsKeys::defaultCopyFormat, u"tailwind"_s);
    settings.setValue(AppSettingsKeys::expandTextPreviewByDefault, false);
    settings.sync();
    QSettings reread(path(), QSettings::IniFormat);
    AppDefaults::registerDefaults(reread);
    EXPECT_EQ(reread.value(AppSettingsKeys::defaultCopyFormat), u"tailwind"_s);
    EXPECT_FALSE(reread.value(AppSettingsKeys::expandTextPreviewByDefault).toBool());
    EXPECT_FALSE(reread.contains(AppSettingsKeys::startHidden));
}

QProcessEnvironment environment(const QList<std::pair<QString, QString>>& values) {
    QProcessEnvironment env;
    for (const auto& [name, value] : values)
        env.insert(name, value);
    return env;
}

using Permission = AppSettingsFixture;

TEST(ShortcutPermission, ObstacleFromTheSession) {
    using Obstacle = ShortcutPermissionModel::Obstacle;
    const std::pair<QList<std::pair<QString, QString>>, Obstacle> cases[] = {
        {{{u"XDG_SESSION_TYPE"_s, u"x11"_s}, {u"DISPLAY"_s, u":0"_s}}, Obstacle::keyTaken},
        {{{u"XDG_SESSION_TYPE"_s, u"wayland"_s}}, Obstacle::noShortcutService},
        // The bar's own QT_QPA_PLATFORM=xcb doesn't make the session X11.
        {{{u"WAYLAND_DISPLAY"_s, u"wayland-0"_s}, {u"QT_QPA_PLATFORM"_s, u"xcb"_s}},
         Obstacle::noShortcutService},
        {{}, Obstacle::keyTaken},
    };
    for (const auto& [values, obstacle] : cases)
        EXPECT_EQ(ShortcutPermissionModel::obstacleFor(environment(values)), obstacle);
}

TEST(ShortcutPermission, KeyboardSettingsPerDesktop) {
    using Commands = QList<ShortcutPermissionModel::Command>;
    const std::pair<QString, Commands> cases[] = {
        {u"KDE"_s,
         {{u"systemsettings"_s, {u"kcm_keys"_s}}, {u"systemsettings5"_s, {u"kcm_keys"_s}}}},
        {u"ubuntu:GNOME"_s, {{u"gnome-control-center"_s, {u"keyboard"_s}}}},
        {u"gnome"_s, {{u"gnome-control-center"_s, {u"keyboard"_s}}}},
        {u"XFCE"_s, {{u"xfce4-keyboard-settings"_s, {}}}},
        {u"X-Cinnamon"_s, {{u"cinnamon-settings"_s, {u"keyboard"_s}}}},
        {u"KDEish"_s, {}},
        {u""_s, {}},
    };
    for (const auto& [desktop, commands] : cases)
        EXPECT_EQ(ShortcutPermissionModel::keyboardSettingsCommands(
                      environment({{u"XDG_CURRENT_DESKTOP"_s, desktop}})),
                  commands)
            << desktop.toStdString();
}

// The texts say what is true on this session; the prompt is remembered; "Open Settings" tries
// the desktop's programs in order until one starts, and does nothing on an unknown desktop.
TEST_F(Permission, AlertTextsAndOpenSettings) {
    QStringList started;
    int refusals = 1;
    const auto launcher = [&](const QString& program, const QStringList& arguments) {
        if (refusals-- > 0)
            return false;
        started << program + u' ' + arguments.join(u' ');
        return true;
    };
    ShortcutPermissionModel kde(
        settings,
        environment({{u"XDG_CURRENT_DESKTOP"_s, u"KDE"_s}, {u"XDG_SESSION_TYPE"_s, u"x11"_s}}),
        launcher);
    EXPECT_EQ(kde.title(), u"Turn on the keyboard shortcut?"_s);
    EXPECT_TRUE(kde.text().startsWith(u"⌃⇧B shows and hides HueShelf from any app, which "_s));
    EXPECT_TRUE(kde.text().contains(u"another one does"_s));
    EXPECT_TRUE(kde.text().contains(u"\n\nEverything else works without it"_s));
    EXPECT_TRUE(kde.text().endsWith(u"then restart HueShelf."_s));
    EXPECT_EQ(kde.openSettingsButton(), u"Open Settings"_s);
    EXPECT_EQ(kde.notNowButton(), u"Not Now"_s);
    EXPECT_FALSE(settings.value(AppSettingsKeys::accessibilityPromptShown, false).toBool());
    kde.markShown();
    EXPECT_TRUE(settings.value(AppSettingsKeys::accessibilityPromptShown, false).toBool());
    EXPECT_TRUE(kde.openSettings());
    EXPECT_EQ(started, QStringList{u"systemsettings5 kcm_keys"_s});

    const ShortcutPermissionModel unknown(
        settings, environment({{u"WAYLAND_DISPLAY"_s, u"wayland-0"_s}}), launcher);
    EXPECT_TRUE(unknown.text().contains(u"Wayland session"_s));
    EXPECT_FALSE(unknown.text().contains(u"another one does"_s));
    EXPECT_FALSE(unknown.openSettings());
    EXPECT_EQ(started.size(), 1);
}

// The alert remembers itself before it asks, and only its first button opens anything.
TEST_F(Permission, AlertAsksAndOpensOnlyOnTheFirstButton) {
    int launches = 0;
    ShortcutPermissionModel model(settings, environment({{u"XDG_CURRENT_DESKTOP"_s, u"GNOME"_s}}),
                                  [&launches](const QString&, const QStringList&) {
                                      ++launches;
                                      return true;
                                  });
    for (const QString& button : {u"Not Now"_s, u"Open Settings"_s}) {
        QStringList seen;
        QTimer::singleShot(0, [&] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            seen << box->text() << box->informativeText().left(4);
            for (QAbstractButton* candidate : box->buttons())
                seen << candidate->text();
            for (QAbstractButton* candidate : box->buttons())
                if (candidate->text() == button)
                    candidate->click();
        });
        showShortcutPermissionAlert(model);
        EXPECT_EQ(seen, (QStringList{u"Turn on the keyboard shortcut?"_s, u"⌃⇧B "_s,
                                     u"Open Settings"_s, u"Not Now"_s}));
        EXPECT_TRUE(settings.value(AppSettingsKeys::accessibilityPromptShown).toBool());
    }
    EXPECT_EQ(launches, 1);
}

} // namespace
} // namespace hueshelf::app
