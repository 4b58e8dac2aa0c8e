#include "cli/BarArguments.h"

#include <QFileInfo>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace hueshelf::cli::BarArguments {

bool isLink(const QString& argument) {
    return argument.startsWith(u"hueshelf:", Qt::CaseInsensitive) ||
           argument.startsWith(u"https://", Qt::CaseInsensitive);
}

bool isExistingFile(const QString& argument) {
    if (argument.isEmpty())
        return false;
    QString path = argument;
    // Desktop launchers hand over files as URLs.
    if (argument.startsWith(u"file://", Qt::CaseInsensitive))
        path = QUrl(argument).toLocalFile();
    if (path.isEmpty())
        return false;
    const QFileInfo info(path);
    return info.exists() && !info.isDir();
}

bool isBarArgument(const QString& argument) {
    return isLink(argument) || isExistingFile(argument);
}

std::optional<QString> firstNonBarArgument(const QStringList& arguments) {
    for (const QString& argument : arguments) {
        if (!isBarArgument(argument))
            return argument;
    }
    return std::nullopt;
}

} // namespace hueshelf::cli::BarArguments
