#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <optional>

namespace hueshelf {

// The preferences file that this program shares with the other processes of the product: one
// JSON object whose keys belong to several writers, so every write starts from what is on disk
// and keeps the keys it doesn't know.
namespace PreferencesFile {

// The file as it is on disk now (never a cached copy); none when it is missing, unreadable or
// not a JSON object.
std::optional<QJsonObject> read(const QString& path);

// Replaces the file atomically: written aside, then renamed into place, so a reader (or a
// crash) sees the old file or the new one, never a mixture. Creates the directory if needed.
bool write(const QString& path, const QJsonObject& object);
bool writeBytes(const QString& path, const QByteArray& bytes);

// The bytes write() puts on disk for an object.
QByteArray serialise(const QJsonObject& object);

// The palette list of a read file as bytes: the compact serialisation of its "colorTemplates"
// array. None when the key is missing or holds anything but an array.
std::optional<QByteArray> templatesData(const QJsonObject& file);

// The hash by which a run recognises palette bytes it has already seen or written. Only ever
// compared within one run, never stored, so it is keyed afresh in every process.
qint64 dataHash(const QByteArray& templatesData);

} // namespace PreferencesFile
} // namespace hueshelf
