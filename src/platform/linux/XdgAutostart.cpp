#include "platform/linux/XdgAutostart.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>

namespace hueshelf {

using namespace Qt::StringLiterals;

namespace {
const QString entryName = u"io.hueshelf.Hueshelf.desktop"_s;

// Characters that make an argument need quotes in an Exec line.
bool isReserved(QChar c) {
    return u" \t\n\"'\\><~|&;$*?#()`"_s.contains(c);
}
} // namespace

XdgAutostart::XdgAutostart(QString configHome, QString executable)
    : m_configHome(std::move(configHome)), m_executable(std::move(executable)) {}

QString XdgAutostart::entryPath() const {
    return m_configHome + u"/autostart/" + entryName;
}

bool XdgAutostart::isEnabled() const {
    return QFileInfo(entryPath()).isFile();
}

bool XdgAutostart::setEnabled(bool enabled) {
    const QString path = entryPath();
    if (!enabled) {
        const QFileInfo info(path);
        if (!info.exists() && !info.isSymLink())
            return true;
        return QFile::remove(path);
    }
    if (m_executable.isEmpty() || !QDir().mkpath(m_configHome + u"/autostart"))
        return false;
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write(entryText(m_executable).toUtf8());
    return file.commit();
}

QString XdgAutostart::execArgument(const QString& argument) {
    // First the Exec rules: inside double quotes, ", `, $ and \ take a backslash.
    QString quoted;
    const bool needsQuotes =
        argument.isEmpty() || std::any_of(argument.begin(), argument.end(), isReserved);
    if (needsQuotes) {
        quoted += u'"';
        for (const QChar c : argument) {
            if (c == u'"' || c == u'`' || c == u'$' || c == u'\\')
                quoted += u'\\';
            quoted += c;
        }
        quoted += u'"';
    } else {
        quoted = argument;
    }
    // Then the rules of every string value: backslashes doubled, control characters escaped,
    // and % doubled so that no part of a path reads as a field code.
    QString value;
    for (const QChar c : quoted) {
        if (c == u'\\')
            value += u"\\\\";
        else if (c == u'\n')
            value += u"\\n";
        else if (c == u'\t')
            value += u"\\t";
        else if (c == u'\r')
            value += u"\\r";
        else if (c == u'%')
            value += u"%%";
        else
            value += c;
    }
    return value;
}

QString XdgAutostart::entryText(const QString& executable) {
    return u"[Desktop Entry]\n"
           u"Type=Application\n"
           u"Name=HueShelf\n"
           u"Comment=A floating colour-palette bar\n"
           u"Exec="_s +
           execArgument(executable) +
           u"\n"
           u"Icon=io.hueshelf.Hueshelf\n"
           u"Terminal=false\n"
           u"X-GNOME-Autostart-enabled=true\n"_s;
}

} // namespace hueshelf
