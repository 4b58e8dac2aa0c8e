#pragma once

#include "model/ColorItem.h"

#include <QList>
#include <QString>

namespace hueshelf {

// The text that the content hash digests. Separators are not escaped: a "|" or ":" in a name
// simply flows into the text, and other devices rely on exactly this form.
QString contentHashText(const QString& name, const QList<ColorItem>& colors);

// First 8 bytes of the SHA-256 of contentHashText, as 16 lower-case hex digits. The palette's
// id, lock, stamps and revision take no part; a colour's lock and group do.
QString computeContentHash(const QString& name, const QList<ColorItem>& colors);

} // namespace hueshelf
