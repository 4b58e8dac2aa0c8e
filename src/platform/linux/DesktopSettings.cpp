#include "platform/linux/DesktopSettings.h"

#include <QDBusVariant>
#include <QMetaType>

namespace hueshelf::DesktopSettings {

namespace {

// Deep enough for the two layers of the old Read call and one more than any portal uses.
constexpr int maximumLayers = 4;

bool isInteger(const QVariant& value) {
    switch (value.metaType().id()) {
    case QMetaType::UChar:
    case QMetaType::UShort:
    case QMetaType::Short:
    case QMetaType::UInt:
    case QMetaType::Int:
    case QMetaType::ULongLong:
    case QMetaType::LongLong:
        return true;
    default:
        return false;
    }
}

std::optional<ColorScheme> colorSchemeFrom(const QVariant& value) {
    if (!isInteger(value))
        return std::nullopt;
    switch (value.toLongLong()) {
    case 1:
        return ColorScheme::dark;
    case 2:
        return ColorScheme::light;
    default:
        // Values a later portal may add mean nothing to the bar yet.
        return ColorScheme::noPreference;
    }
}

template <typename T>
bool store(std::optional<T>& field, std::optional<T> value) {
    if (!value || field == value)
        return false;
    field = value;
    return true;
}

} // namespace

QVariant unwrap(const QVariant& value) {
    QVariant inner = value;
    for (int layer = 0;
         layer < maximumLayers && inner.metaType() == QMetaType::fromType<QDBusVariant>(); ++layer)
        inner = inner.value<QDBusVariant>().variant();
    return inner;
}

bool apply(Values& values, const QString& settingsNamespace, const QString& key,
           const QVariant& value) {
    const QVariant plain = unwrap(value);
    if (settingsNamespace == u"org.freedesktop.appearance" && key == u"color-scheme")
        return store(values.colorScheme, colorSchemeFrom(plain));
    if (settingsNamespace == u"org.gnome.desktop.interface" && key == u"enable-animations") {
        if (plain.metaType() != QMetaType::fromType<bool>())
            return false;
        return store(values.gnomeAnimationsEnabled, std::optional<bool>(plain.toBool()));
    }
    if (settingsNamespace == u"org.kde.kdeglobals.KDE" && key == u"AnimationDurationFactor") {
        if (plain.metaType() != QMetaType::fromType<double>() && !isInteger(plain))
            return false;
        return store(values.kdeAnimationDurationFactor, std::optional<double>(plain.toDouble()));
    }
    return false;
}

DesktopPreferences preferences(const Values& values) {
    DesktopPreferences result;
    result.colorScheme = values.colorScheme.value_or(ColorScheme::noPreference);
    result.reduceMotion =
        values.gnomeAnimationsEnabled == false || values.kdeAnimationDurationFactor == 0.0;
    return result;
}

} // namespace hueshelf::DesktopSettings
