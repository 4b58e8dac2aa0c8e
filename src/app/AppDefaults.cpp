#include "app/AppDefaults.h"

#include "app/AppSettingsKeys.h"

#include <QSettings>

namespace hueshelf::AppDefaults {

namespace {

void writeIfAbsent(QSettings& settings, const QString& key, const QVariant& value) {
    if (!settings.contains(key))
        settings.setValue(key, value);
}

} // namespace

void registerDefaults(QSettings& settings) {
    writeIfAbsent(settings, AppSettingsKeys::expandTextPreviewByDefault,
                  expandTextPreviewByDefault);
    writeIfAbsent(settings, AppSettingsKeys::defaultCopyFormat, defaultCopyFormat);
}

} // namespace hueshelf::AppDefaults
