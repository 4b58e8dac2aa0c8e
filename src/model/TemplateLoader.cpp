#include "model/TemplateLoader.h"

#include "model/FirstLaunchTemplates.h"
#include "model/PreferencesFile.h"
#include "model/PreferencesKeys.h"
#include "model/PreferencesMigration.h"
#include "model/SettingsStore.h"
#include "model/TemplateJson.h"

#include <QJsonObject>
#include <QJsonValue>

namespace hueshelf::TemplateLoader {

namespace {

std::optional<QString> textValue(const QJsonObject& object, const QString& key) {
    const QJsonValue value = object.value(key);
    if (!value.isString())
        return std::nullopt;
    return value.toString();
}

double stampOf(const std::optional<QJsonObject>& file) {
    if (!file)
        return 0.0;
    const QJsonValue value = file->value(PreferencesKeys::lastModified);
    return value.isDouble() ? value.toDouble() : 0.0;
}

// A stored palette list with its active id, when the list is there and decodes.
bool loadList(const std::optional<QByteArray>& data, const std::optional<QString>& activeText,
              const Clock& clock, LoadedTemplates& loaded) {
    if (!data)
        return false;
    std::optional<QList<ColorTemplate>> templates = TemplateJson::decodeTemplates(*data, clock);
    if (!templates)
        return false;
    loaded.templates = std::move(*templates);
    loaded.activeTemplateId = chooseActiveId(activeText, loaded.templates);
    loaded.dataHash = PreferencesFile::dataHash(*data);
    return true;
}

bool loadFromFile(const QJsonObject& file, const Clock& clock, LoadedTemplates& loaded) {
    return loadList(PreferencesFile::templatesData(file),
                    textValue(file, PreferencesKeys::activeTemplateId), clock, loaded);
}

bool loadFromSettings(const QSettings& settings, const Clock& clock, LoadedTemplates& loaded) {
    return loadList(SettingsStore::templatesData(settings),
                    SettingsStore::activeTemplateIdText(settings), clock, loaded);
}

void loadFirstLaunch(const Clock& clock, LoadedTemplates& loaded) {
    loaded.templates = firstLaunchTemplates(clock);
    // "Starter" comes first.
    loaded.activeTemplateId = loaded.templates.constFirst().id;
    loaded.dataHash = 0;
}

} // namespace

QUuid chooseActiveId(const std::optional<QString>& storedText,
                     const QList<ColorTemplate>& templates) {
    if (storedText) {
        if (const std::optional<QUuid> stored = TemplateJson::uuidFromText(*storedText)) {
            for (const ColorTemplate& palette : templates) {
                if (palette.id == *stored)
                    return *stored;
            }
        }
    }
    if (!templates.isEmpty())
        return templates.constFirst().id;
    return QUuid::createUuid();
}

LoadedTemplates load(const QString& preferencesFile, const QSettings& settings,
                     const Clock& clock) {
    LoadedTemplates loaded;
    const std::optional<QJsonObject> file = PreferencesFile::read(preferencesFile);
    const bool fromFile = file && loadFromFile(*file, clock, loaded);
    if (!fromFile && !loadFromSettings(settings, clock, loaded))
        loadFirstLaunch(clock, loaded);
    // The stamp of the file as read, whichever source gave the palettes: it is what a later
    // write compares against to tell whether someone else wrote since.
    loaded.baselineStamp = stampOf(file);
    loaded.shadowState = SettingsStore::loadShadowState(settings);
    return loaded;
}

LoadedTemplates loadAtStart(const StorageLocations& locations, QSettings& settings,
                            const Clock& clock) {
    migrateFromOldBundleId(locations, settings);
    return load(locations.preferencesFile, settings, clock);
}

} // namespace hueshelf::TemplateLoader
