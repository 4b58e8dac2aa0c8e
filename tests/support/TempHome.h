#pragma once

#include "util/AppPaths.h"

#include <QProcessEnvironment>
#include <QTemporaryDir>

namespace hueshelf::testing {

// A throw-away home with the XDG directories inside it, so no test ever touches the real one.
class TempHome {
public:
    TempHome();
    const AppPaths& paths() const { return m_paths; }
    QString path() const { return m_dir.path(); }
    bool isValid() const { return m_dir.isValid(); }

private:
    QTemporaryDir m_dir;
    AppPaths m_paths;
};

// The environment of one of our programs started as a child in the throw-away `home`: the
// process's own, with the home and its XDG folders pointed there, not an isolated run (the child
// must read and write the home), and no display; the platform plugin is one that doesn't exist,
// so a child that tries to start the GUI aborts instead of quietly working.
QProcessEnvironment childEnvironment(const QString& home);

} // namespace hueshelf::testing
