#pragma once

#include "util/AppPaths.h"

#include <QProcessEnvironment>
#include <QString>

namespace hueshelf {

// Where the palettes and the program's own settings are kept for this run. A run started by the
// test harness (the environment names a test configuration) keeps everything in a directory of
// its own under the temporary directory, never in the user's.
struct StorageLocations {
    static inline const QString isolationVariable = QStringLiteral("XCTestConfigurationFilePath");

    bool isIsolated = false;
    QString prefsDir;
    // Shared with the other processes of the product.
    QString preferencesFile;
    // Where an older build kept the same file; read once by the migration.
    QString oldPreferencesFile;
    // The program's own keyed settings, also the fallback for palettes that could not be
    // written to the preferences file.
    QString settingsFile;

    // The environment is read here, once. `tempDir` is where an isolated run makes its
    // directory (the system's temporary directory unless a caller says otherwise); it is
    // created with its parents.
    static StorageLocations resolve(const AppPaths& paths, const QProcessEnvironment& env,
                                    const QString& tempDir = QString());
};

} // namespace hueshelf
