#pragma once

#include "model/ColorTemplate.h"
#include "util/AppPaths.h"

#include <QByteArray>
#include <QJsonValue>
#include <QList>
#include <QProcessEnvironment>
#include <QStringList>
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

// One run of one of our programs as a child in `home`, fed `input` and then the end of input.
struct ChildRun {
    int status = -1; // -1: crashed or hung (and killed)
    QByteArray out;
    QByteArray err;
};
ChildRun runChild(const QString& program, const QStringList& arguments, const QString& home,
                  const QByteArray& input);

// A preferences file as another process of the product writes it: the palettes, the active id
// (if defined) and a key of another writer ("helperState"). False when it can't be written.
bool seedPreferences(const QString& path, const QList<ColorTemplate>& templates,
                     const QJsonValue& active = {});

} // namespace hueshelf::testing
