#include "sync/SyncFolder.h"
#include "sync/SyncLimits.h"
#include "sync/SyncUuidText.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

#include <limits>

namespace hueshelf::SyncFolder {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kJsonExtension(".json");
constexpr QByteArrayView kUtf8ByteOrderMark("\xEF\xBB\xBF");

std::optional<QJsonDocument> readJsonFile(const QString& path, qint64 sizeLimit) {
    QFile file(path);
    // Unbuffered: the bytes are read once, straight into the document's buffer.
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return std::nullopt;
    // The listing's size may be stale by now; the open file's is what will be read.
    if (file.size() > sizeLimit)
        return std::nullopt;
    QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return std::nullopt;
    // Some editors start a UTF-8 file with a byte order mark, which Qt's parser refuses.
    if (bytes.startsWith(kUtf8ByteOrderMark))
        bytes.remove(0, kUtf8ByteOrderMark.size());
    QJsonParseError error{};
    QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError)
        return std::nullopt;
    return document;
}

bool isTemplateFileName(const QString& name) {
    if (!name.endsWith(kJsonExtension))
        return false;
    return parseCanonicalUuid(QStringView(name).chopped(kJsonExtension.size())).has_value();
}

} // namespace

QList<SyncableTemplate> readTemplatesFolder(const QString& templatesFolder) {
    // QDir would take an empty path for the working directory.
    if (templatesFolder.isEmpty())
        return {};
    // Regular files only (and links to them): a directory can't be read, and a pipe would
    // block the read.
    const QFileInfoList entries = QDir(templatesFolder).entryInfoList(QDir::Files, QDir::Name);
    QList<SyncableTemplate> records;
    records.reserve(entries.size());
    for (const QFileInfo& entry : entries) {
        if (!isTemplateFileName(entry.fileName()))
            continue;
        if (entry.size() > SyncLimits::maxTemplateFileSize)
            continue;
        const std::optional<QJsonDocument> document =
            readJsonFile(entry.filePath(), SyncLimits::maxTemplateFileSize);
        if (!document || !document->isObject())
            continue;
        std::optional<SyncableTemplate> record = SyncableTemplate::fromJson(document->object());
        // A newer device's file is left alone: neither merged nor reported.
        if (!record || record->schemaVersion >= 3)
            continue;
        records.append(std::move(*record));
    }
    return records;
}

std::optional<SyncableTemplate> readTemplateFile(const QString& path) {
    const std::optional<QJsonDocument> document =
        readJsonFile(path, std::numeric_limits<qint64>::max());
    if (!document || !document->isObject())
        return std::nullopt;
    return SyncableTemplate::fromJson(document->object());
}

std::optional<SyncManifest> readManifest(const QString& syncFolder) {
    const std::optional<QJsonDocument> document =
        readJsonFile(manifestPath(syncFolder), std::numeric_limits<qint64>::max());
    if (!document || !document->isObject())
        return std::nullopt;
    return SyncManifest::fromJson(document->object());
}

} // namespace hueshelf::SyncFolder
