#include "app/AppearanceController.h"

#include "app/AppSettingsKeys.h"

#include <QSettings>

using namespace Qt::StringLiterals;

namespace hueshelf::app {

namespace AppearanceRules {

ColorScheme effectiveColorScheme(const QString& appearanceMode, ColorScheme desktop) {
    if (appearanceMode == u"light"_s)
        return ColorScheme::light;
    if (appearanceMode == u"dark"_s)
        return ColorScheme::dark;
    return desktop;
}

bool effectiveReduceMotion(const QString& reduceMotionOverride, bool desktop) {
    if (reduceMotionOverride == u"on"_s)
        return true;
    if (reduceMotionOverride == u"off"_s)
        return false;
    return desktop;
}

} // namespace AppearanceRules

AppearanceController::AppearanceController(QSettings& settings, Platform& platform, QObject* parent)
    : QObject(parent), m_settings(settings), m_platform(platform), m_lastScheme(colorScheme()),
      m_lastReduceMotion(reduceMotion()) {
    m_platform.setDesktopPreferencesChangedHandler([this] { refresh(); });
}

AppearanceController::~AppearanceController() {
    // The platform outlives this object and must not call back into it.
    m_platform.setDesktopPreferencesChangedHandler({});
}

QString AppearanceController::appearanceMode() const {
    return m_settings.value(AppSettingsKeys::appearanceMode, u"system"_s).toString();
}

void AppearanceController::setAppearanceMode(const QString& mode) {
    m_settings.setValue(AppSettingsKeys::appearanceMode, mode);
    refresh();
}

ColorScheme AppearanceController::colorScheme() const {
    return AppearanceRules::effectiveColorScheme(appearanceMode(),
                                                 m_platform.desktopPreferences().colorScheme);
}

bool AppearanceController::reduceMotion() const {
    return AppearanceRules::effectiveReduceMotion(
        m_settings.value(AppSettingsKeys::reduceMotion).toString(),
        m_platform.desktopPreferences().reduceMotion);
}

void AppearanceController::refresh() {
    const ColorScheme scheme = colorScheme();
    const bool motion = reduceMotion();
    if (scheme == m_lastScheme && motion == m_lastReduceMotion)
        return;
    m_lastScheme = scheme;
    m_lastReduceMotion = motion;
    Q_EMIT changed();
}

} // namespace hueshelf::app
