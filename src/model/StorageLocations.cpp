#include "model/StorageLocations.h"

#include <QCoreApplication>
#include <QDir>

namespace hueshelf {

using namespace Qt::StringLiterals;

StorageLocations StorageLocations::resolve(const AppPaths& paths, const QProcessEnvironment& env,
                                           const QString& tempDir) {
    StorageLocations locations;
    locations.isIsolated = env.contains(isolationVariable);
    if (locations.isIsolated) {
        const QString root = tempDir.isEmpty() ? QDir::tempPath() : tempDir;
        locations.prefsDir = QDir::cleanPath(root + u"/HueshelfTests-"_s +
                                             QString::number(QCoreApplication::applicationPid()));
        QDir().mkpath(locations.prefsDir);
        locations.settingsFile = locations.prefsDir + u"/hueshelf-tests.conf"_s;
    } else {
        locations.prefsDir = paths.configDir;
        locations.settingsFile = paths.configDir + u"/hueshelf.conf"_s;
    }
    locations.preferencesFile = locations.prefsDir + u"/io.hueshelf.Hueshelf.json"_s;
    // The migration never runs in an isolated run, so the old name only matters in a normal
    // one; it sits beside the new file either way.
    locations.oldPreferencesFile = locations.prefsDir + u"/hueshelf.Hueshelf.json"_s;
    return locations;
}

} // namespace hueshelf
