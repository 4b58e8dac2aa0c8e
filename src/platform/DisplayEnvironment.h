#pragma once

#include <QProcessEnvironment>
#include <QString>

#include <optional>

namespace hueshelf::DisplayEnvironment {

// The Qt platform plugin the bar must run on, or none to leave Qt's choice alone. Wayland lets
// no client place its own window or keep it above others, so the bar asks for X11 (directly or
// through XWayland) unless the user picked a plugin themselves.
std::optional<QString> requiredQpaPlatform(const QProcessEnvironment& env);

// A one-line explanation when there is no display the bar could appear on; none when there is.
std::optional<QString> missingDisplayMessage(const QProcessEnvironment& env);

} // namespace hueshelf::DisplayEnvironment
