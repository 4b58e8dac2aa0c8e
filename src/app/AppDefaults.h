#pragma once

#include <QString>

class QSettings;

namespace hueshelf::AppDefaults {

inline const QString defaultCopyFormat = QStringLiteral("hex");
inline constexpr bool expandTextPreviewByDefault = true;

// The first step of a launch. A settings file has no layer of registered defaults beneath the
// user's values, so the defaults are written into it, each only where the key is absent: every
// reader, including the bar's reread of a file another writer changed, then finds the same
// value without having to know the default, and a value the user chose is never touched.
void registerDefaults(QSettings& settings);

} // namespace hueshelf::AppDefaults
