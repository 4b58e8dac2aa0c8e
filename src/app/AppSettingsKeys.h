#pragma once

#include <QString>

// The user's choices in the program's own settings file. Other helpers of the program read
// some of them too, so the names never change.
namespace hueshelf::AppSettingsKeys {

inline const QString launchAtLogin = QStringLiteral("launchAtLogin");
inline const QString startHidden = QStringLiteral("startHidden");
// "system", "light" or "dark"; anything else looks like "system".
inline const QString appearanceMode = QStringLiteral("appearanceMode");
// One of the copy-format identifiers.
inline const QString defaultCopyFormat = QStringLiteral("defaultCopyFormat");
inline const QString expandTextPreviewByDefault = QStringLiteral("expandTextPreviewByDefault");
inline const QString lastSeenWhatsNewVersion = QStringLiteral("lastSeenWhatsNewVersion");
inline const QString hasSeenWelcome = QStringLiteral("hasSeenWelcome");
inline const QString accessibilityPromptShown = QStringLiteral("accessibilityPromptShown");
// A map of "x" and "y": where the bar was last left.
inline const QString barPosition = QStringLiteral("HueShelfPosition");
// "on" or "off" overrides the desktop's wish for less motion; absent or anything else follows
// the desktop. Set by hand: no menu offers it.
inline const QString reduceMotion = QStringLiteral("reduceMotion");

} // namespace hueshelf::AppSettingsKeys
