#pragma once

#include <QList>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <functional>

class QSettings;

namespace hueshelf::app {

// The alert behind "Allow the Keyboard Shortcut (⌃⇧B)…": why Control-Shift-B isn't heard from
// other programs on this desktop and how to change that. Plain data; the widget layer shows it.
class ShortcutPermissionModel {
public:
    // What kept the shortcut from being registered.
    enum class Obstacle {
        // An X11 session: the passive grab failed, so another program holds the key.
        keyTaken,
        // A Wayland session without a global-shortcut service.
        noShortcutService,
    };

    struct Command {
        QString program;
        QStringList arguments;
        friend bool operator==(const Command&, const Command&) = default;
    };

    // Starts a program without waiting for it; false when it could not be started.
    using Launcher = std::function<bool(const QString& program, const QStringList& arguments)>;

    static Obstacle obstacleFor(const QProcessEnvironment& env);
    // The programs that open this desktop's keyboard-shortcut settings, best first; empty on a
    // desktop we don't know.
    static QList<Command> keyboardSettingsCommands(const QProcessEnvironment& env);

    // The launcher defaults to a detached process.
    ShortcutPermissionModel(QSettings& settings, const QProcessEnvironment& env,
                            Launcher launcher = {});

    QString title() const;
    QString text() const;
    QString openSettingsButton() const;
    QString notNowButton() const;

    // Remembers that the prompt was shown; called as the alert appears.
    void markShown();
    // The first button: the first of the desktop's settings programs that starts. False when
    // none could be started (or none is known); then nothing happened.
    bool openSettings() const;

private:
    QSettings& m_settings;
    Obstacle m_obstacle;
    QList<Command> m_commands;
    Launcher m_launcher;
};

} // namespace hueshelf::app
