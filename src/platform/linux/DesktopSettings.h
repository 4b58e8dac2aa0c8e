#pragma once

#include "platform/Platform.h"

#include <QString>
#include <QVariant>

#include <optional>

namespace hueshelf::DesktopSettings {

// What the desktop has said so far about the settings the bar follows. Each stays unset until
// the desktop names it, so one desktop's silence never overrules another's answer.
struct Values {
    std::optional<ColorScheme> colorScheme;
    std::optional<bool> gnomeAnimationsEnabled;
    std::optional<double> kdeAnimationDurationFactor;

    friend bool operator==(const Values&, const Values&) = default;
};

// The settings asked for at start, as (namespace, key) pairs.
struct Key {
    const char16_t* settingsNamespace;
    const char16_t* key;
};
inline constexpr Key watchedKeys[] = {
    {u"org.freedesktop.appearance", u"color-scheme"},
    {u"org.gnome.desktop.interface", u"enable-animations"},
    {u"org.kde.kdeglobals.KDE", u"AnimationDurationFactor"},
};

// The value inside however many variant layers the portal wrapped it in.
QVariant unwrap(const QVariant& value);

// Takes one setting as the portal reports it. Settings that are not watched, and values of a
// type the key never has, leave the values as they were; the answer tells whether they changed.
bool apply(Values& values, const QString& settingsNamespace, const QString& key,
           const QVariant& value);

DesktopPreferences preferences(const Values& values);

} // namespace hueshelf::DesktopSettings
