#pragma once

#include "mcp/PaletteSnapshot.h"
#include "model/ColorItem.h"
#include "model/ColorTemplate.h"
#include "util/AppPaths.h"

#include <QList>
#include <QProcessEnvironment>
#include <QString>

namespace hueshelf::mcp {

// The palette store, opened for each call exactly as a command of the command line opens it:
// the server lives as long as the AI tool that started it, and the user keeps editing in the
// bar meanwhile, so nothing is kept from one call to the next.
class PaletteSource {
public:
    // `env` decides, as for the bar, whether this is an isolated run.
    PaletteSource(AppPaths paths, QProcessEnvironment env);

    // A read-only look: it writes nothing, not even a directory.
    PaletteSnapshot read() const;

    // The palette added through the store's own createTemplate (unique name, made active,
    // saved through the read-merge-write that a running bar takes in), as the file holds it
    // once the save is there.
    ColorTemplate create(const QString& wantedName, const QList<ColorItem>& colors) const;

private:
    AppPaths m_paths;
    QProcessEnvironment m_env;
};

} // namespace hueshelf::mcp
