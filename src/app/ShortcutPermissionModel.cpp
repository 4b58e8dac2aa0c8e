#include "app/ShortcutPermissionModel.h"

#include "app/AppSettingsKeys.h"

#include <QProcess>
#include <QSettings>

using namespace Qt::StringLiterals;

namespace hueshelf::app {

namespace {

// XDG_CURRENT_DESKTOP is a colon-separated list ("ubuntu:GNOME"); any part may name it.
bool desktopIs(const QProcessEnvironment& env, const QString& name) {
    const QStringList parts = env.value(u"XDG_CURRENT_DESKTOP"_s).split(u':', Qt::SkipEmptyParts);
    for (const QString& part : parts) {
        if (part.compare(name, Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

} // namespace

ShortcutPermissionModel::Obstacle
ShortcutPermissionModel::obstacleFor(const QProcessEnvironment& env) {
    // The bar itself runs through XWayland there, so the Qt platform says nothing about the
    // session: its own variables do.
    if (env.value(u"XDG_SESSION_TYPE"_s) == u"wayland"_s ||
        !env.value(u"WAYLAND_DISPLAY"_s).isEmpty())
        return Obstacle::noShortcutService;
    return Obstacle::keyTaken;
}

QList<ShortcutPermissionModel::Command>
ShortcutPermissionModel::keyboardSettingsCommands(const QProcessEnvironment& env) {
    if (desktopIs(env, u"KDE"_s))
        // Plasma 5 ships the launcher under both names, Plasma 6 under the first only.
        return {{u"systemsettings"_s, {u"kcm_keys"_s}}, {u"systemsettings5"_s, {u"kcm_keys"_s}}};
    if (desktopIs(env, u"GNOME"_s) || desktopIs(env, u"Unity"_s))
        return {{u"gnome-control-center"_s, {u"keyboard"_s}}};
    if (desktopIs(env, u"X-Cinnamon"_s) || desktopIs(env, u"Cinnamon"_s))
        return {{u"cinnamon-settings"_s, {u"keyboard"_s}}};
    if (desktopIs(env, u"XFCE"_s))
        return {{u"xfce4-keyboard-settings"_s, {}}};
    if (desktopIs(env, u"MATE"_s))
        return {{u"mate-keybinding-properties"_s, {}}};
    return {};
}

ShortcutPermissionModel::ShortcutPermissionModel(QSettings& settings,
                                                 const QProcessEnvironment& env, Launcher launcher)
    : m_settings(settings), m_obstacle(obstacleFor(env)), m_commands(keyboardSettingsCommands(env)),
      m_launcher(std::move(launcher)) {
    if (!m_launcher)
        m_launcher = [](const QString& program, const QStringList& arguments) {
            return QProcess::startDetached(program, arguments);
        };
}

QString ShortcutPermissionModel::title() const {
    return u"Turn on the keyboard shortcut?"_s;
}

QString ShortcutPermissionModel::text() const {
    const QString reason =
        m_obstacle == Obstacle::keyTaken
            ? u" shows and hides HueShelf from any app, which works only while no other program "
              u"holds Control-Shift-B, and another one does."_s
            : u" shows and hides HueShelf from any app, which this Wayland session allows only "
              u"through a global-shortcut service, and it offers none."_s;
    const QString remedy =
        m_obstacle == Obstacle::keyTaken
            ? u"To turn it on, free Control-Shift-B in that program or in your desktop's "
              u"keyboard settings, then restart HueShelf."_s
            : u"To turn it on, use a desktop that offers global shortcuts (such as KDE Plasma) "
              u"or an X11 session, then restart HueShelf."_s;
    return u"⌃⇧B"_s + reason +
           u"\n\nEverything else works without it, and HueShelf's own windows still hear the "
           u"shortcut. "_s +
           remedy;
}

QString ShortcutPermissionModel::openSettingsButton() const {
    return u"Open Settings"_s;
}

QString ShortcutPermissionModel::notNowButton() const {
    return u"Not Now"_s;
}

void ShortcutPermissionModel::markShown() {
    m_settings.setValue(AppSettingsKeys::accessibilityPromptShown, true);
}

bool ShortcutPermissionModel::openSettings() const {
    for (const Command& command : m_commands) {
        if (m_launcher(command.program, command.arguments))
            return true;
    }
    return false;
}

} // namespace hueshelf::app
