#pragma once

#include "model/ColorItem.h"

#include <QByteArray>
#include <QDateTime>
#include <QJsonObject>
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

// --- Writing ---------------------------------------------------------------------------------

inline const QString fileExtension = QStringLiteral("hueshelf");
inline const QString fileVersion = QStringLiteral("2.0");

// The file's object: the name, every colour in order (code as stored, name, and a divider only
// where there is one), the moment of saving in UTC to the second, and the version. The writer
// has no limits of its own; the reader's limits are the ones that count.
QJsonObject exportDictionary(const QString& name, const QList<ColorItem>& colors,
                             const QDateTime& date);
// The object as a file's bytes: UTF-8, pretty-printed, keys sorted.
QByteArray exportBytes(const QString& name, const QList<ColorItem>& colors, const QDateTime& date);

// A file name without extension: the nine characters that file systems refuse become "-",
// blanks and dashes are trimmed from both ends, and "Palette" stands in for nothing.
QString suggestedFileName(const QString& paletteName);
// What the save dialog's name field starts with: the suggested name and ".hueshelf", unless the
// name already ends in it.
QString saveDialogFileName(const QString& paletteName);
// The chosen path, made to end in ".hueshelf": kept if its extension already is that in any
// case, otherwise its extension (if any) is replaced. "Brand.json" becomes "Brand.hueshelf".
QString withFileExtension(const QString& chosenPath);

// Whether a dropped file is read as a palette file: its extension, lower-cased, is "hueshelf".
bool isPaletteFilePath(const QString& path);

} // namespace PaletteFile
} // namespace hueshelf
