#include "platform/DisplayEnvironment.h"

namespace hueshelf::DisplayEnvironment {

std::optional<QString> requiredQpaPlatform(const QProcessEnvironment& env) {
    if (env.contains(QStringLiteral("QT_QPA_PLATFORM")))
        return std::nullopt;
    return QStringLiteral("xcb");
}

std::optional<QString> missingDisplayMessage(const QProcessEnvironment& env) {
    const QString chosen = env.value(QStringLiteral("QT_QPA_PLATFORM"));
    // Plugins such as offscreen or vnc bring their own surface; only the X11 route needs DISPLAY.
    if (!chosen.isEmpty() && !chosen.startsWith(u"xcb"))
        return std::nullopt;
    if (!env.value(QStringLiteral("DISPLAY")).isEmpty())
        return std::nullopt;
    if (!env.value(QStringLiteral("WAYLAND_DISPLAY")).isEmpty())
        return QStringLiteral("hueshelf: this Wayland session has no X11 display (DISPLAY is not "
                              "set); the bar needs X11 or XWayland");
    return QStringLiteral("hueshelf: no display to show the bar on (DISPLAY is not set); "
                          "commands such as `hueshelf color` work without one");
}

} // namespace hueshelf::DisplayEnvironment
