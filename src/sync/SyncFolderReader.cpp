#include "sync/SyncFolder.h"
#include "sync/SyncLimits.h"
#include "sync/SyncUuidText.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QJsonDocument>
#include <QSemaphore>
#include <QThread>
#include <QThreadPool>

#include <algorithm>
#include <atomic>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

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

// One listed palette file as a pass takes it: none when it is too large, unreadable, not a
// record, or a newer device's.
std::optional<SyncableTemplate> readListedTemplate(const QString& path) {
    const std::optional<QJsonDocument> document =
        readJsonFile(path, SyncLimits::maxTemplateFileSize);
    if (!document || !document->isObject())
        return std::nullopt;
    std::optional<SyncableTemplate> record = SyncableTemplate::fromJson(document->object());
    // A newer device's file is left alone: neither merged nor reported.
    if (!record || record->schemaVersion >= 3)
        return std::nullopt;
    return record;
}

// Fewer files than this per thread are not worth waking a thread for.
constexpr qsizetype kFilesPerHelper = 32;

// Calls `readAt(i)` once for every index below `count`: on this thread, and on as many threads
// of the global pool as are free at this moment and the machine has cores for. A busy pool only
// means fewer helpers, never a wait for one to start. `readAt` must be safe to run on several
// indexes at once.
template <typename ReadAt>
void readInParallel(qsizetype count, const ReadAt& readAt) {
    std::atomic<qsizetype> next{0};
    const auto work = [&next, count, &readAt] {
        for (qsizetype i = next.fetch_add(1, std::memory_order_relaxed); i < count;
             i = next.fetch_add(1, std::memory_order_relaxed))
            readAt(i);
    };
    QThreadPool* pool = QThreadPool::globalInstance();
    const qsizetype wanted =
        std::min<qsizetype>(QThread::idealThreadCount() - 1, count / kFilesPerHelper);
    // Shared, so that a helper still leaving release() never touches a semaphore that this
    // frame has already let go of.
    const auto finished = std::make_shared<QSemaphore>();
    int helpers = 0;
    for (; helpers < wanted; ++helpers) {
        const bool started = pool->tryStart([&work, finished] {
            work();
            finished->release();
        });
        if (!started)
            break;
    }
    work();
    finished->acquire(helpers);
}

} // namespace

QList<SyncableTemplate> readTemplatesFolder(const QString& templatesFolder) {
    // QDir would take an empty path for the working directory.
    if (templatesFolder.isEmpty())
        return {};
    // Regular files only (and links to them): a directory can't be read, and a pipe would
    // block the read. The size limit is checked on the opened file, which is the one read.
    QStringList names;
    QDirIterator entries(templatesFolder, QDir::Files);
    while (entries.hasNext()) {
        entries.next();
        if (isTemplateFileName(entries.fileName()))
            names.append(entries.fileName());
    }
    // The order of QDir::Name, code unit by code unit, without the file information that
    // QDir builds for every entry to sort by it.
    std::sort(names.begin(), names.end());
    const QDir folder(templatesFolder);
    QStringList paths;
    paths.reserve(names.size());
    for (const QString& name : std::as_const(names))
        paths.append(folder.filePath(name));
    // Each file is read and decoded on its own, so the files are shared among threads; each
    // result keeps its place, and the list keeps the files' order.
    std::vector<std::optional<SyncableTemplate>> read(std::size_t(paths.size()));
    readInParallel(paths.size(), [&paths, &read](qsizetype i) {
        read[std::size_t(i)] = readListedTemplate(paths.at(i));
    });
    QList<SyncableTemplate> records;
    records.reserve(paths.size());
    for (std::optional<SyncableTemplate>& record : read) {
        if (record)
            records.append(std::move(*record));
    }
    return records;
}

std::optional<SyncableTemplate> readTemplateFile(const QString& path) {
    // The same bound as a pass: a file that a pass skips can't be found here either, and a huge
    // one isn't read into memory on the main thread.
    const std::optional<QJsonDocument> document =
        readJsonFile(path, SyncLimits::maxTemplateFileSize);
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
