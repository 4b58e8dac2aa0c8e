#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <optional>

namespace hueshelf {

// Registers the browser helper with Chrome and Chromium as a native-messaging host, so that the
// paired extension can start it. The helper talks to the extension and writes the shared
// preferences file; the application only says where the helper is.
namespace NativeMessagingManifest {

inline const QString fileName = QStringLiteral("io.hueshelf.hueshelf.json");
inline const QString hostName = QStringLiteral("io.hueshelf.hueshelf");
inline const QString description = QStringLiteral("HueShelf Native Messaging Host");
inline const QString hostType = QStringLiteral("stdio");
inline const QString helperExecutableName = QStringLiteral("hueshelf-helper");
// The ids of the extension this build is paired with, in the order they are written.
inline const QStringList allowedOrigins{
    QStringLiteral("chrome-extension://aaaabbbbccccddddeeeeffffgggghhhh/"),
    QStringLiteral("chrome-extension://iiiijjjjkkkkllllmmmmnnnnoooopppp/")};

enum class Outcome {
    current, // the manifest already names this helper; the file was not touched
    written, // written afresh
    failed,  // the directory or the file could not be made; nothing is said
};

// Both browsers' host directories under the user's configuration home ($XDG_CONFIG_HOME or
// ~/.config), Chrome's first.
QStringList hostDirectories(const QString& configHome);

// The helper beside the running program, if there is one: absolute path of the file
// `hueshelf-helper` in `binaryDir`.
std::optional<QString> helperPath(const QString& binaryDir);

// The manifest's content for a helper at `helperPath`.
QJsonObject manifest(const QString& helperPath);

// One directory: leaves a manifest that names `helperPath` alone (whatever else it holds),
// otherwise makes the directory and writes the file atomically.
Outcome ensureIn(const QString& directory, const QString& helperPath);

// At every launch: when the helper is installed beside the program, each browser's manifest is
// made to point at it. Without a helper nothing is written or removed. Failures only cost the
// bridge, so they are dropped.
void ensure(const QString& configHome, const QString& binaryDir);

} // namespace NativeMessagingManifest
} // namespace hueshelf
