#include "util/AppPaths.h"

#include <QDir>

namespace hueshelf {

namespace {
QString xdgRoot(const QProcessEnvironment& env, const QString& variable, const QString& fallback) {
    const QString value = env.value(variable);
    // The XDG rules say a relative value is invalid and must be ignored.
    if (!value.isEmpty() && QDir::isAbsolutePath(value))
        return QDir::cleanPath(value);
    return fallback;
}
} // namespace

AppPaths AppPaths::fromEnvironment(const QProcessEnvironment& env) {
    QString home = env.value(QStringLiteral("HOME"));
    if (home.isEmpty())
        home = QDir::homePath();
    return forHome(home, xdgRoot(env, QStringLiteral("XDG_CONFIG_HOME"), home + u"/.config"),
                   xdgRoot(env, QStringLiteral("XDG_DATA_HOME"), home + u"/.local/share"));
}

AppPaths AppPaths::forHome(const QString& home, const QString& xdgConfigHome,
                           const QString& xdgDataHome) {
    return AppPaths{home, xdgConfigHome + u"/hueshelf", xdgDataHome + u"/hueshelf"};
}

} // namespace hueshelf
