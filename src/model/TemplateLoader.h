#pragma once

#include "model/LoadedTemplates.h"
#include "model/StorageLocations.h"
#include "util/Clock.h"

#include <QList>
#include <QSettings>
#include <QString>
#include <QUuid>

#include <optional>

namespace hueshelf {

// The load at start: synchronous, and it never writes palettes. The preferences file wins
// whenever it can be read and holds a decodable palette list, even if the settings hold a
// newer fallback; otherwise the settings' list; otherwise the first-launch palettes. An empty
// list is a list, not a first launch.
namespace TemplateLoader {

// The migration, then everything the store starts from.
LoadedTemplates loadAtStart(const StorageLocations& locations, QSettings& settings,
                            const Clock& clock);

// The palettes, the active id, the data hash and the file's stamp, then the shadow state.
LoadedTemplates load(const QString& preferencesFile, const QSettings& settings, const Clock& clock);

// The stored id if it is text in the canonical form and names a palette of the list; else the
// first palette's; else, for an empty list, a fresh one.
QUuid chooseActiveId(const std::optional<QString>& storedText,
                     const QList<ColorTemplate>& templates);

} // namespace TemplateLoader
} // namespace hueshelf
