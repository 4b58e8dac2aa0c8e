#include "model/SettingsStore.h"

#include "model/PreferencesKeys.h"
#include "model/TemplateJson.h"

#include <QDir>
#include <QFileInfo>
#include <QMutex>
#include <QMutexLocker>
#include <QSet>
#include <QVariant>

namespace hueshelf::SettingsStore {

namespace {

// Text is what this program writes; bytes are what QSettings gives back for a value that a
// hand or an older build stored as a byte array. Anything else (a number, a list split at
// commas) is not JSON of ours.
std::optional<QByteArray> jsonText(const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::QString:
        return value.toString().toUtf8();
    case QMetaType::QByteArray:
        return value.toByteArray();
    default:
        return std::nullopt;
    }
}

// Once per process and file: a second opening in the same run must see what the first wrote.
bool claimFirstUse(const QString& path) {
    static QMutex mutex;
    static QSet<QString> used;
    const QMutexLocker locker(&mutex);
    if (used.contains(path))
        return false;
    used.insert(path);
    return true;
}

} // namespace

std::unique_ptr<QSettings> open(const StorageLocations& locations) {
    QDir().mkpath(QFileInfo(locations.settingsFile).absolutePath());
    auto settings = std::make_unique<QSettings>(locations.settingsFile, QSettings::IniFormat);
    if (locations.isIsolated &&
        claimFirstUse(QFileInfo(locations.settingsFile).absoluteFilePath())) {
        settings->clear();
        settings->sync();
    }
    return settings;
}

void storeTemplates(QSettings& settings, const QByteArray& json, const QString& activeTemplateId,
                    double nowMs) {
    settings.setValue(PreferencesKeys::templates, QString::fromUtf8(json));
    settings.setValue(PreferencesKeys::activeTemplateId, activeTemplateId);
    settings.setValue(PreferencesKeys::lastModified, nowMs);
    settings.sync();
}

std::optional<QByteArray> templatesData(const QSettings& settings) {
    return jsonText(settings.value(PreferencesKeys::templates));
}

std::optional<QString> activeTemplateIdText(const QSettings& settings) {
    const QVariant value = settings.value(PreferencesKeys::activeTemplateId);
    if (value.typeId() != QMetaType::QString)
        return std::nullopt;
    return value.toString();
}

void storeShadowState(QSettings& settings, const QByteArray& json) {
    settings.setValue(PreferencesKeys::shadowState, QString::fromUtf8(json));
}

QMap<QUuid, ShadowTemplateState> loadShadowState(const QSettings& settings) {
    const std::optional<QByteArray> json = jsonText(settings.value(PreferencesKeys::shadowState));
    if (!json)
        return {};
    return TemplateJson::decodeShadowStates(*json).value_or(QMap<QUuid, ShadowTemplateState>());
}

} // namespace hueshelf::SettingsStore
