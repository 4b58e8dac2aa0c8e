#pragma once

#include <QString>

namespace hueshelf {

// Starting with the desktop session through an XDG autostart entry, which every desktop that
// follows the freedesktop rules reads at login.
class XdgAutostart {
public:
    // configHome is $XDG_CONFIG_HOME; executable is the program to start at login.
    XdgAutostart(QString configHome, QString executable);

    // Writes or removes the entry. False when that could not be done; then nothing changed.
    bool setEnabled(bool enabled);
    bool isEnabled() const;
    QString entryPath() const;

    // The entry that starts the given executable.
    static QString entryText(const QString& executable);
    // One argument of an Exec line: quoted where the Desktop Entry rules ask for it, and
    // escaped for a string value of the file.
    static QString execArgument(const QString& argument);

private:
    QString m_configHome;
    QString m_executable;
};

} // namespace hueshelf
