#pragma once

#include "model/StorageLocations.h"

#include <QSettings>

namespace hueshelf {

// An older build kept the palettes under another file name. The first load of a normal run
// copies that file to the current name when only the old one exists, and then never looks
// again: the marker in the settings is set whether or not there was anything to copy. The old
// file stays where it is, for a downgrade. Isolated runs skip all of it.
void migrateFromOldBundleId(const StorageLocations& locations, QSettings& settings);

} // namespace hueshelf
