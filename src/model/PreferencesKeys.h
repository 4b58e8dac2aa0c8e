#pragma once

#include <QString>

// The keys shared with other processes of the product in the preferences file, and the
// program's own keys in the settings (fallback) store.
namespace hueshelf::PreferencesKeys {

inline const QString templates = QStringLiteral("colorTemplates");          // storageKey
inline const QString activeTemplateId = QStringLiteral("activeTemplateId"); // activeKey
inline const QString lastModified = QStringLiteral("colorLastModified");    // lastModifiedKey
inline const QString schemaVersion = QStringLiteral("schemaVersion");       // schemaVersionKey
inline constexpr int currentSchemaVersion = 2;

inline const QString shadowState = QStringLiteral("hueshelf.shadowState"); // shadowStateKey
inline const QString didMigrate = QStringLiteral("hueshelf.didMigrateFromOldBundleId");
inline const QString recentColors = QStringLiteral("hueshelf.recentColors");

} // namespace hueshelf::PreferencesKeys
