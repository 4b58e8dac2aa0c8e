#pragma once

#include "model/ColorItem.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

namespace hueshelf {

// What reading a palette file gives: a name and its colours, or the message that says why not.
struct PaletteFileResult {
    std::optional<QString> name;
    QList<ColorItem> colors;
    std::optional<QString> errorMessage;
};

// The `.hueshelf` palette file: a small JSON object of a name and colours that carries one
// palette between machines and people. It holds names and codes only; ids, locks and dates are
// given fresh when it is read.
namespace PaletteFile {

inline constexpr qint64 maxFileSize = 1048576; // a file of exactly this size is read
inline constexpr int maxNameLength = 100;      // user-perceived characters
inline constexpr int maxColorCount = 200;      // entries, skipped ones included
inline constexpr int maxColorNameLength = 100;
inline constexpr int maxDividerLabelLength = 40;

QString tooLargeMessage();    // "File is too large. Maximum size is 1 MB."
QString notAPaletteMessage(); // "That isn't a HueShelf palette file."

// The file's bytes to a palette, or to the message of the first rule it breaks. No side
// effects beyond the fresh ids of the colours.
PaletteFileResult parsePaletteFile(const QByteArray& data);

// A file's colour code: blanks trimmed, one "#" dropped, three or six hex digits (three are
// widened), as "#RRGGBB"; absent for anything else.
std::optional<QString> normalizeFileHex(const QString& text);

} // namespace PaletteFile
} // namespace hueshelf
