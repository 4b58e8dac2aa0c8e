#include "TempHome.h"

#include <QDir>

namespace hueshelf::testing {

TempHome::TempHome() {
    const QString home = m_dir.path();
    m_paths = AppPaths::forHome(home, home + u"/.config", home + u"/.local/share");
    QDir().mkpath(m_paths.configDir);
    QDir().mkpath(m_paths.dataDir);
}

} // namespace hueshelf::testing
