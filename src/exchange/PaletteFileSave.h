#pragma once

#include "model/ColorTemplate.h"

#include <QDateTime>
#include <QString>

#include <optional>

namespace hueshelf::PaletteFile {

// Writes the palette's file to `path` as it stands (the caller has already given it its
// extension), atomically: a file that was there before is either replaced whole or left
// alone. Answers nothing on success and the file system's description of the failure
// otherwise, for the "Couldn't save the palette" alert.
std::optional<QString> savePaletteFile(const QString& path, const ColorTemplate& palette,
                                       const QDateTime& now);

} // namespace hueshelf::PaletteFile
