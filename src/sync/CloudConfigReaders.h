#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

namespace hueshelf {

// Readers of the settings files that the sync clients on Linux keep about their folders. These
// files belong to other programs and may be of any version, half-written or not what their name
// says: a reader takes what it can use and otherwise gives nothing, never fails. Paths that come
// out are absolute and clean, with a leading "~" taken as `home`; anything relative is dropped,
// since it would be read against our working directory, not the client's.
namespace CloudConfigReaders {

// Settings files are small; anything bigger is not the file we are looking for.
inline constexpr qint64 maxFileBytes = 1024 * 1024;

// The contents of a regular file of at most `maxFileBytes`. A directory, a pipe or a device
// gives nothing (a pipe would block the read).
std::optional<QByteArray> readSmallFile(const QString& path);

// "~" and "~/..." expanded against `home`, cleaned; empty if the result is not absolute.
QString absoluteFromConfig(const QString& path, const QString& home);

// Dropbox's info.json: the "path" of the "personal" account, then of the "business" one.
QStringList dropboxFolders(const QByteArray& infoJson, const QString& home);

// The onedrive client's config: the last `sync_dir = "..."` line that isn't a comment.
std::optional<QString> oneDriveSyncDir(const QByteArray& config, const QString& home);

// nextcloud.cfg: every `...\localPath=` value in file order. Read line by line, since the
// backslashes in its keys are not what a general INI reader expects.
QStringList nextcloudFolders(const QByteArray& config, const QString& home);

// Syncthing's config.xml: the `path` of each `<folder>` directly under `<configuration>`, in
// file order. The `<folder>` under `<defaults>` is a template, not a folder. A file that isn't
// well-formed gives nothing at all.
QStringList syncthingFolders(const QByteArray& configXml, const QString& home);

} // namespace CloudConfigReaders
} // namespace hueshelf
