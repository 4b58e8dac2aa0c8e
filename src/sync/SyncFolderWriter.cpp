#include "sync/SyncFolder.h"

#include <QFileInfo>
#include <QSaveFile>

namespace hueshelf::SyncFolder {

using namespace Qt::StringLiterals;

std::optional<QString> writeFileAtomically(const QString& path, const QByteArray& bytes) {
    const auto failure = [&path](const QString& reason) {
        return std::optional<QString>(QFileInfo(path).fileName() + u": "_s + reason);
    };
    // A folder path that was never set would put the file in the working directory.
    if (QFileInfo(path).isRelative())
        return failure(u"no sync folder"_s);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return failure(file.errorString());
    if (file.write(bytes) != bytes.size()) {
        const QString reason = file.errorString();
        file.cancelWriting();
        return failure(reason);
    }
    if (!file.commit())
        return failure(file.errorString());
    return std::nullopt;
}

std::optional<QString> writeManifest(const SyncManifest& manifest, const QString& syncFolder) {
    return writeFileAtomically(manifestPath(syncFolder), encode(manifest.toJson()));
}

std::optional<QString> writeSettings(const SyncableSettings& settings, const QString& syncFolder) {
    return writeFileAtomically(settingsPath(syncFolder), encode(settings.toJson()));
}

std::optional<QString> writeTemplate(const SyncableTemplate& record,
                                     const QString& templatesFolder) {
    return writeFileAtomically(templateFilePath(templatesFolder, record.id),
                               encode(record.toJson()));
}

} // namespace hueshelf::SyncFolder
