#pragma once

#include <QProcessEnvironment>
#include <QString>

namespace hueshelf {

// Where the program keeps and finds things. Built once from the environment for a real run and
// handed down; tests build one over a temporary home so the real one is never touched.
struct AppPaths {
    QString home;
    QString configDir; // $XDG_CONFIG_HOME/hueshelf
    QString dataDir;   // $XDG_DATA_HOME/hueshelf

    // XDG rules: XDG_CONFIG_HOME and XDG_DATA_HOME when set and absolute, else ~/.config and
    // ~/.local/share.
    static AppPaths fromEnvironment(const QProcessEnvironment& env);
    // The application folders inside the given XDG roots.
    static AppPaths forHome(const QString& home, const QString& xdgConfigHome,
                            const QString& xdgDataHome);
};

} // namespace hueshelf
