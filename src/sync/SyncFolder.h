#pragma once

#include "sync/SyncManifest.h"
#include "sync/SyncableSettings.h"
#include "sync/SyncableTemplate.h"

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QUuid>

#include <optional>

namespace hueshelf {

// The files of the sync folder, below the folder that the user chose:
//
//   HueShelf Sync/manifest.json        one SyncManifest
//   HueShelf Sync/settings.json        one SyncableSettings
//   HueShelf Sync/templates/ID.json    one SyncableTemplate per palette, ID in upper case
//
// Every file is UTF-8 JSON, pretty-printed with sorted keys, replaced in one atomic write.
// Readers are tolerant: a broken file costs only itself. Writers hand their failure back as a
// message, the text of a SyncError::writeError.
namespace SyncFolder {

inline const QString folderName = QStringLiteral("HueShelf Sync");
inline const QString manifestFileName = QStringLiteral("manifest.json");
inline const QString settingsFileName = QStringLiteral("settings.json");
inline const QString templatesFolderName = QStringLiteral("templates");

// "ID.json" with the id in canonical upper-case form: 36 characters and the extension.
QString templateFileName(const QUuid& id);
QString manifestPath(const QString& syncFolder);
QString settingsPath(const QString& syncFolder);
QString templatesFolderPath(const QString& syncFolder);
QString templateFilePath(const QString& templatesFolder, const QUuid& id);

// The bytes of a file: pretty-printed, keys sorted.
QByteArray encode(const QJsonObject& object);

// --- Reading ---------------------------------------------------------------------------------

// Every readable palette record in a templates folder, in file-name order. A folder that is
// missing or can't be listed gives an empty list. Only files named "<UUID>.json" (in any case
// the UUID reader takes) are considered; one above 1,048,576 bytes is skipped unread, one that
// doesn't read or decode is skipped silently, and so is a record of schema version 3 or above,
// which belongs to a newer device. The id inside a file is not compared with its name. The
// files are shared out among the calling thread and whatever threads of the global pool are
// free at the call; it returns once every file is read.
QList<SyncableTemplate> readTemplatesFolder(const QString& templatesFolder);

// One palette file as it stands, with no filter on schema version; none when it doesn't exist,
// is above 1,048,576 bytes (as in a pass), or doesn't read or decode.
std::optional<SyncableTemplate> readTemplateFile(const QString& path);

// The manifest of a sync folder; none on any failure.
std::optional<SyncManifest> readManifest(const QString& syncFolder);

// --- Writing ---------------------------------------------------------------------------------

// Each returns none on success, else the reason. The folders must exist already: a folder that
// has gone away is a failure, not something to quietly create again. So is an empty or relative
// folder path, which would otherwise land in the working directory.
std::optional<QString> writeManifest(const SyncManifest& manifest, const QString& syncFolder);
std::optional<QString> writeSettings(const SyncableSettings& settings, const QString& syncFolder);
// Writes "ID.json" over whatever is there, a deletion record or another device's file alike.
std::optional<QString> writeTemplate(const SyncableTemplate& record,
                                     const QString& templatesFolder);
// The atomic replacement under all of them: written aside, then renamed into place, so a
// reader on this or another device sees the old file or the new one, never a mixture.
std::optional<QString> writeFileAtomically(const QString& path, const QByteArray& bytes);

} // namespace SyncFolder
} // namespace hueshelf
