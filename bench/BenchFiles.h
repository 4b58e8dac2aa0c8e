#pragma once

#include <QByteArray>
#include <QFile>
#include <QSaveFile>
#include <QString>

namespace hueshelf::bench {

// The floors of the file benchmarks: the least any read or atomic save of the same bytes costs.

inline QByteArray fileBytes(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// The plain atomic replacement of a file (written aside, renamed into place).
inline bool plainAtomicWrite(const QString& path, const QByteArray& bytes) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    if (file.write(bytes) != bytes.size()) {
        file.cancelWriting();
        return false;
    }
    return file.commit();
}

} // namespace hueshelf::bench
