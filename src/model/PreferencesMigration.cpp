#include "model/PreferencesMigration.h"

#include "model/PreferencesKeys.h"

#include <QFile>
#include <QFileInfo>

namespace hueshelf {

void migrateFromOldBundleId(const StorageLocations& locations, QSettings& settings) {
    if (locations.isIsolated)
        return;
    if (settings.value(PreferencesKeys::didMigrate, false).toBool())
        return;
    if (!QFileInfo::exists(locations.preferencesFile) &&
        QFileInfo::exists(locations.oldPreferencesFile)) {
        // A failed copy is dropped: the load then falls back like for any missing file.
        QFile::copy(locations.oldPreferencesFile, locations.preferencesFile);
    }
    settings.setValue(PreferencesKeys::didMigrate, true);
}

} // namespace hueshelf
