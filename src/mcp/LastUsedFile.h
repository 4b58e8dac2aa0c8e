#pragma once

#include <QString>

namespace hueshelf::mcp {

// The server's side of the last-used file (tool id to milliseconds since 1970), which the AI
// tools panel reads for its "Last used" notes: the panel only reads it, this server is its
// only writer. Where it lives and how it is read belong to the connector.
namespace LastUsedFile {

// Puts `nowMs` under `clientId` and keeps the other tools' times. A file that the connector
// can't read (not a JSON object, or any value not a number) is replaced by one that holds this
// tool alone. Written atomically; false when the write failed.
bool record(const QString& path, const QString& clientId, double nowMs);

} // namespace LastUsedFile
} // namespace hueshelf::mcp
