#include "TempHome.h"

#include "model/StorageLocations.h"

#include <QDir>

namespace hueshelf::testing {

TempHome::TempHome() {
    const QString home = m_dir.path();
    m_paths = AppPaths::forHome(home, home + u"/.config", home + u"/.local/share");
    QDir().mkpath(m_paths.configDir);
    QDir().mkpath(m_paths.dataDir);
}

QProcessEnvironment childEnvironment(const QString& home) {
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("HOME"), home);
    env.insert(QStringLiteral("XDG_CONFIG_HOME"), home + u"/.config");
    env.insert(QStringLiteral("XDG_DATA_HOME"), home + u"/.local/share");
    env.remove(StorageLocations::isolationVariable);
    env.remove(QStringLiteral("DISPLAY"));
    env.remove(QStringLiteral("WAYLAND_DISPLAY"));
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("no-such-platform"));
    return env;
}

} // namespace hueshelf::testing
