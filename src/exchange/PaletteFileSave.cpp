#include "exchange/PaletteFileSave.h"

#include "exchange/PaletteFile.h"

#include <QSaveFile>

namespace hueshelf::PaletteFile {

std::optional<QString> savePaletteFile(const QString& path, const ColorTemplate& palette,
                                       const QDateTime& now) {
    const QByteArray bytes = exportBytes(palette.name, palette.colors, now);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return file.errorString();
    if (file.write(bytes) != bytes.size()) {
        const QString error = file.errorString();
        file.cancelWriting();
        return error;
    }
    if (!file.commit())
        return file.errorString();
    return std::nullopt;
}

} // namespace hueshelf::PaletteFile
