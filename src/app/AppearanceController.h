#pragma once

#include "platform/Platform.h"

#include <QObject>
#include <QString>

class QSettings;

namespace hueshelf::app {

// How the program looks and moves: the user's choice where there is one, the desktop's
// otherwise. The rules are pure so they can be checked without a desktop.
namespace AppearanceRules {

// "light" and "dark" force a look; any other mode ("system", unknown text) follows the desktop.
ColorScheme effectiveColorScheme(const QString& appearanceMode, ColorScheme desktop);
// "on" and "off" override the desktop; any other text follows it.
bool effectiveReduceMotion(const QString& reduceMotionOverride, bool desktop);

} // namespace AppearanceRules

// Holds the effective look and motion wish and says when either changes, whether the desktop
// changed its mind or the user chose in the menu. The settings are read afresh on every
// question, since another writer may have changed the file.
class AppearanceController final : public QObject {
    Q_OBJECT
public:
    // Takes over the platform's desktop-preferences handler.
    AppearanceController(QSettings& settings, Platform& platform, QObject* parent = nullptr);
    ~AppearanceController() override;

    // The stored mode as written ("system" when absent), unknown text included.
    QString appearanceMode() const;
    // Stores the mode and tells the views if the effective look changed.
    void setAppearanceMode(const QString& mode);

    ColorScheme colorScheme() const;
    bool reduceMotion() const;

    // Looks again at the settings and the desktop; emits changed() if the outcome differs.
    void refresh();

Q_SIGNALS:
    void changed();

private:
    QSettings& m_settings;
    Platform& m_platform;
    ColorScheme m_lastScheme;
    bool m_lastReduceMotion;
};

} // namespace hueshelf::app
