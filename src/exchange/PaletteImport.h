#pragma once

#include "model/ColorStorage.h"
#include "util/Clock.h"
#include "util/Scheduler.h"

#include <QString>
#include <QStringList>
#include <QUuid>

#include <optional>

namespace hueshelf {

// How opening one palette file ended. The bar shows `message` as a toast (the importer has
// already posted it) or, for a failure, in the "Couldn't open that file" alert; the command
// line prints it.
struct PaletteImportOutcome {
    enum class Kind { imported, alreadyHave, failed };

    Kind kind = Kind::failed;
    QString message;
    // The palette made or found, now the active one; absent on failure.
    std::optional<QUuid> templateId;
};

// Opening a palette file dropped on the bar (or named on the command line).
namespace PaletteImport {

// A file's palette name among the existing ones: kept if free, otherwise followed by " (1)",
// " (2)", ... whichever is free first. Compared exactly, case included.
QString uniqueImportedName(const QString& name, const QStringList& existingNames);

// Reads the file and adds its palette, or makes the identical palette already in `storage`
// active instead. Nothing in the store changes unless every step of reading has passed. A
// file the file system reports as larger than the limit is refused without being read. The
// toast follows on the scheduler's next turn; `isOneOfSeveral` adds that only this file was
// taken.
PaletteImportOutcome importPaletteFile(const QString& path, bool isOneOfSeveral,
                                       ColorStorage& storage, Scheduler& scheduler, Clock& clock);

} // namespace PaletteImport
} // namespace hueshelf
