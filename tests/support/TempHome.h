#pragma once

#include "util/AppPaths.h"

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

} // namespace hueshelf::testing
