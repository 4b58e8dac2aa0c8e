#include "aitools/AIToolConfigWriter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

using namespace Qt::StringLiterals;

namespace hueshelf::AIToolConfigWriter {

namespace {

PlatformError fileError(const QString& what, const QString& path, const QString& reason) {
    return PlatformError{what + u' ' + QDir::toNativeSeparators(path) + u": "_s + reason};
}

} // namespace

QString backupPath(const QString& path) {
    return path + u".hueshelf-backup";
}

AIToolFailure backupOnce(const QString& path) {
    const QString backup = backupPath(path);
    if (QFileInfo::exists(backup) || !QFileInfo::exists(path))
        return std::nullopt;
    QFile original(path);
    if (!original.copy(backup))
        return fileError(u"Couldn't copy"_s, path, original.errorString());
    return std::nullopt;
}

AIToolFailure writeAtomically(const QByteArray& data, const QString& path) {
    const QString parent = QFileInfo(path).absolutePath();
    if (!QDir().mkpath(parent))
        return PlatformError{u"Couldn't create the folder "_s + QDir::toNativeSeparators(parent)};
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return fileError(u"Couldn't write"_s, path, file.errorString());
    if (file.write(data) != data.size()) {
        file.cancelWriting();
        return fileError(u"Couldn't write"_s, path, file.errorString());
    }
    if (!file.commit())
        return fileError(u"Couldn't write"_s, path, file.errorString());
    return std::nullopt;
}

} // namespace hueshelf::AIToolConfigWriter
