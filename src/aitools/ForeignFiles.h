#pragma once

#include "aitools/ForeignJson.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace hueshelf::ForeignFiles {

// The file's bytes, or nothing if it can't be read (missing, a directory, no permission).
std::optional<QByteArray> readBytes(const QString& path);

// The file as UTF-8 text, or nothing if it can't be read or isn't valid UTF-8. A leading
// byte-order mark stays in the text, so that writing the text back keeps the file's bytes.
std::optional<QString> readUtf8Text(const QString& path);

// The file as strict JSON whose root is an object, or nothing for any failure.
std::optional<ForeignJson> readJsonObject(const QString& path);

} // namespace hueshelf::ForeignFiles
