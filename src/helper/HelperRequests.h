#pragma once

#include "util/AppPaths.h"

#include <QJsonObject>
#include <QProcessEnvironment>

namespace hueshelf::helper {

// The helper's requests, version 1 of its protocol with the extension: one request object in,
// one reply object out, with the request's "id" carried back unchanged.
//
// Every request opens the palette store afresh, exactly as a command of the command line does,
// so edits made in the bar since the last request are seen, and every edit is a normal save
// (stamped, merged with what another process wrote, written atomically) that a running bar
// takes in as an outside change.
class HelperRequests {
public:
    static constexpr int protocolVersion = 1;

    // `env` decides, as for the bar, whether this is an isolated run.
    HelperRequests(AppPaths paths, QProcessEnvironment env);

    QJsonObject handle(const QJsonObject& request) const;

private:
    QJsonObject palettes() const;
    QJsonObject addColor(const QJsonObject& request) const;
    QJsonObject createPalette(const QJsonObject& request) const;

    AppPaths m_paths;
    QProcessEnvironment m_env;
};

} // namespace hueshelf::helper
