#include "browser/NativeMessagingManifest.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSaveFile>

using namespace Qt::StringLiterals;

namespace hueshelf::NativeMessagingManifest {

namespace {

// Only the path matters: a manifest that finds the helper works, whatever else is stale in it.
bool namesHelper(const QString& manifestPath, const QString& helperPath) {
    QFile file(manifestPath);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll());
    if (!document.isObject())
        return false;
    const QJsonValue path = document.object().value(u"path"_s);
    return path.isString() && path.toString() == helperPath;
}

} // namespace

QStringList hostDirectories(const QString& configHome) {
    const QDir root(configHome);
    return {root.filePath(u"google-chrome/NativeMessagingHosts"_s),
            root.filePath(u"chromium/NativeMessagingHosts"_s)};
}

std::optional<QString> helperPath(const QString& binaryDir) {
    const QFileInfo helper(QDir(binaryDir).filePath(helperExecutableName));
    if (!helper.isFile())
        return std::nullopt;
    return helper.absoluteFilePath();
}

QJsonObject manifest(const QString& helperPath) {
    return QJsonObject{{u"name"_s, hostName},
                       {u"description"_s, description},
                       {u"path"_s, helperPath},
                       {u"type"_s, hostType},
                       {u"allowed_origins"_s, QJsonArray::fromStringList(allowedOrigins)}};
}

Outcome ensureIn(const QString& directory, const QString& helperPath) {
    const QString manifestPath = QDir(directory).filePath(fileName);
    if (namesHelper(manifestPath, helperPath))
        return Outcome::current;
    if (!QDir().mkpath(directory))
        return Outcome::failed;
    // QJsonDocument writes an object's keys in sorted order.
    QSaveFile file(manifestPath);
    if (!file.open(QIODevice::WriteOnly))
        return Outcome::failed;
    file.write(QJsonDocument(manifest(helperPath)).toJson(QJsonDocument::Indented));
    return file.commit() ? Outcome::written : Outcome::failed;
}

void ensure(const QString& configHome, const QString& binaryDir) {
    const std::optional<QString> helper = helperPath(binaryDir);
    if (!helper)
        return;
    for (const QString& directory : hostDirectories(configHome))
        static_cast<void>(ensureIn(directory, *helper));
}

} // namespace hueshelf::NativeMessagingManifest
