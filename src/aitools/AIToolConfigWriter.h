#pragma once

#include "aitools/AITool.h"
#include "aitools/AIToolError.h"
#include "aitools/ForeignJson.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace hueshelf::AIToolConfigWriter {

// Edits other programs' settings files: adds or removes one server entry and leaves every other
// setting of the user's as it was. A file that isn't understood is refused, never rewritten; a
// file is copied aside before the program first changes it; every write replaces the file in
// one atomic step. All operations are synchronous and take absolute file paths.

// The name of the entry in every file and on every command line.
inline QString serverName() {
    return QStringLiteral("hueshelf");
}

// The path the first-touch copy of `path` goes to: the whole file name plus ".hueshelf-backup".
QString backupPath(const QString& path);

// Copies the file to `backupPath` unless the copy exists already or the file doesn't exist.
// The copy is thus the file as it was before the program first changed it, and stays so.
[[nodiscard]] AIToolFailure backupOnce(const QString& path);

// The one way anything is written: creates the missing parent folders, then writes beside the
// target and renames over it, so nobody reads a half-written file. A symbolic link at `path`
// is written through, and an existing file keeps its permissions; a read-only file is refused.
[[nodiscard]] AIToolFailure writeAtomically(const QByteArray& data, const QString& path);

// The server entry of `style`: "args" ["--client", clientId], "command", plus "type": "stdio"
// for VS Code and "source": "custom" for Zed.
ForeignJson makeEntry(AIToolRegistry::EntryStyle style, const QString& command,
                      const QString& clientId);

// Puts `entry` at root → `topKey` → `name`, replacing an entry of that name whole. A missing or
// empty file counts as a new one (no backup is taken); a file that isn't strict JSON with an
// object root fails with WriteError::fileNotParseable and is left untouched, without backup, and
// one that exists but can't be read (no permission, a folder) fails with a PlatformError. A
// value at `topKey` that isn't an object is replaced by one (the backup still holds it). The
// file is written back pretty-printed with sorted keys (see ForeignJson::prettyPrinted).
[[nodiscard]] AIToolFailure mergeJSONEntry(const QString& path, const QString& topKey,
                                           const QString& name, const ForeignJson& entry);

// Takes `name` out of root → `topKey`; the object stays, even if empty. A missing file, or one
// without that entry, is success and stays untouched. An empty or unparseable file, or one
// whose root isn't an object, fails with fileNotParseable.
[[nodiscard]] AIToolFailure removeJSONEntry(const QString& path, const QString& topKey,
                                            const QString& name);

// "[mcp_servers.<name>]", the first line of the TOML block.
QString tomlHeader(const QString& name);

// The three lines of the TOML block, each ended by a line feed. Backslashes, then double quotes
// in the command and arguments get a backslash; nothing else is escaped.
QString tomlBlock(const QString& name, const QString& command, const QStringList& args);

// `text` without the block "[mcp_servers.<name>]": the header line (compared trimmed of spaces
// and tabs, so a header followed by a comment or a carriage return isn't one) and every line
// after it up to the next line that starts with "[" (trimmed), which stays; so a sub-table such
// as "[mcp_servers.<name>.env]" survives. Every block of that name goes. Lines outside stay
// exactly as they came; trailing empty lines are reduced to at most one final line feed.
QString strippedTOML(const QString& text, const QString& name);

// Moves the block to the end of the file, after one blank line, replacing any block of that
// name. A file that exists but can't be read as UTF-8 text is the user's all the same: it is
// refused (a PlatformError) and left as it is, never replaced.
[[nodiscard]] AIToolFailure writeTOMLEntry(const QString& path, const QString& name,
                                           const QString& command, const QStringList& args);

// Takes the block out. An unreadable file, or one without the block, is success and stays
// untouched; a file that held only the block stays, empty.
[[nodiscard]] AIToolFailure removeTOMLEntry(const QString& path, const QString& name);

} // namespace hueshelf::AIToolConfigWriter
