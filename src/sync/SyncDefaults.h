#pragma once

#include "sync/SyncConfiguration.h"

#include <QSet>
#include <QSettings>
#include <QString>
#include <QUuid>

#include <optional>

namespace hueshelf {

// The sync state that this device keeps in its own settings store, beside the user defaults.
namespace SyncDefaults {

inline const QString configurationKey = QStringLiteral("hueshelf.syncConfiguration");
inline const QString pendingChangesKey = QStringLiteral("hueshelf.pendingTemplateChanges");

// The configuration's JSON, kept as text like the store's other JSON values; bytes that a hand
// or another build stored are read as well. None when the key is missing or the record fails
// any key: a new configuration is then made.
std::optional<SyncConfiguration> loadConfiguration(const QSettings& settings);
void storeConfiguration(QSettings& settings, const SyncConfiguration& configuration);

// The palettes whose last write to the folder failed, as a list of UUID texts (upper case,
// sorted). Entries that don't parse as a UUID are dropped on reading.
QSet<QUuid> loadPendingTemplateChanges(const QSettings& settings);
void storePendingTemplateChanges(QSettings& settings, const QSet<QUuid>& ids);

} // namespace SyncDefaults
} // namespace hueshelf
