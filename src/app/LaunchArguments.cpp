#include "app/LaunchArguments.h"

#include "exchange/LinkImport.h"

#include <QDir>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace hueshelf::app {

namespace {

// As the desktop's file type matches them: by the end of the name, in any letter case.
const QString paletteFileEnding = u".hueshelf"_s;

// The web page of a link only hands its fragment to the program's scheme; the program does the
// same with a web link it is given. A link without a fragment stays without a payload, and so
// gets the alert every unreadable link gets.
QString ownSchemeForm(const QString& webLink) {
    const qsizetype hash = webLink.indexOf(u'#');
    return u"hueshelf://import"_s + (hash < 0 ? QString() : webLink.mid(hash));
}

// A file path, or nothing when the argument is a URL of some other kind.
QString localPath(const QString& argument, const QString& workingDir) {
    if (argument.startsWith(u"file:", Qt::CaseInsensitive))
        return QUrl(argument).toLocalFile();
    // Anything else with a scheme ("mailto:", "https://...") is no file. A single letter before
    // the colon is a drive, not a scheme.
    const QUrl url(argument);
    if (url.isValid() && url.scheme().size() > 1)
        return {};
    return QDir(workingDir).absoluteFilePath(argument);
}

} // namespace

LaunchArguments LaunchArguments::classify(const QStringList& arguments, const QString& workingDir) {
    LaunchArguments sorted;
    for (const QString& argument : arguments) {
        if (LinkImport::isOwnSchemeLink(argument)) {
            sorted.links.append(argument);
            continue;
        }
        if (LinkImport::isWebLink(argument)) {
            sorted.links.append(ownSchemeForm(argument));
            continue;
        }
        const QString path = argument.isEmpty() ? QString() : localPath(argument, workingDir);
        if (!path.isEmpty() && path.endsWith(paletteFileEnding, Qt::CaseInsensitive))
            sorted.files.append(QDir::cleanPath(path));
        else
            sorted.ignored.append(argument);
    }
    return sorted;
}

QStringList LaunchArguments::handOver() const {
    return links + files;
}

QString LaunchArguments::ignoredMessage(const QString& argument) {
    return u"hueshelf: ignoring \""_s + argument + u"\": not a palette link or a .hueshelf file"_s;
}

} // namespace hueshelf::app
