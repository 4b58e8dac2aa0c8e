#include "model/UnreadablePreferences.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace hueshelf::UnreadablePreferences {

using namespace Qt::StringLiterals;

namespace {

bool alreadyKept(const QDir& dir, const QString& pattern, const QByteArray& bytes) {
    const QFileInfoList copies = dir.entryInfoList({pattern}, QDir::Files | QDir::Hidden);
    for (const QFileInfo& copy : copies) {
        if (copy.size() != bytes.size())
            continue;
        QFile file(copy.absoluteFilePath());
        if (file.open(QIODevice::ReadOnly) && file.readAll() == bytes)
            return true;
    }
    return false;
}

} // namespace

bool preserve(const QString& path, const QByteArray& bytes, double nowMs) {
    const QFileInfo info(path);
    const QDir dir = info.absoluteDir();
    const QString prefix = info.fileName() + u".unreadable-"_s;
    if (alreadyKept(dir, prefix + u'*', bytes))
        return true;

    // Two different contents kept within the same millisecond must not overwrite each other.
    auto stamp = static_cast<qint64>(nowMs);
    while (dir.exists(prefix + QString::number(stamp)))
        ++stamp;
    QSaveFile copy(dir.filePath(prefix + QString::number(stamp)));
    if (!copy.open(QIODevice::WriteOnly))
        return false;
    if (copy.write(bytes) != bytes.size()) {
        copy.cancelWriting();
        return false;
    }
    return copy.commit();
}

} // namespace hueshelf::UnreadablePreferences
