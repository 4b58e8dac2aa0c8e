#pragma once

#include <QString>

namespace hueshelf::AIToolSettingsKeys {

// The palette the AI tools are given, as upper-case UUID text, in the settings store. The panel
// writes it; the companion server reads it (falling back to the active palette).
inline const QString brandTemplateId = QStringLiteral("brandTemplateId");

} // namespace hueshelf::AIToolSettingsKeys
