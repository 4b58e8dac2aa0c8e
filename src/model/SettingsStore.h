#pragma once

#include "model/ShadowTemplateState.h"
#include "model/StorageLocations.h"

#include <QByteArray>
#include <QMap>
#include <QSettings>
#include <QString>
#include <QUuid>

#include <memory>
#include <optional>

namespace hueshelf {

// The program's own keyed settings: one INI file that only this program reads. It holds the
// user's choices, the shadow state of the cloud sync, the migration marker, and the palettes
// whenever a write of the shared preferences file failed. JSON is kept there as compact text.
namespace SettingsStore {

// The settings of this run. An isolated run starts from empty settings: its file is emptied
// the first time it is opened in the process, and only then.
std::unique_ptr<QSettings> open(const StorageLocations& locations);

// The fallback of a failed palette write, synchronised at once: the program may be about to
// quit, and the in-memory list is the only other copy.
void storeTemplates(QSettings& settings, const QByteArray& json, const QString& activeTemplateId,
                    double nowMs);
// The palette bytes kept by a fallback write, as stored; none when the key is absent.
std::optional<QByteArray> templatesData(const QSettings& settings);
// The active id kept beside them when it is text; none otherwise.
std::optional<QString> activeTemplateIdText(const QSettings& settings);

void storeShadowState(QSettings& settings, const QByteArray& json);
// A missing key or a map that doesn't decode gives an empty map: the next sync then treats
// every palette as never synced.
QMap<QUuid, ShadowTemplateState> loadShadowState(const QSettings& settings);

} // namespace SettingsStore
} // namespace hueshelf
