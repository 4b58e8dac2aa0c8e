#pragma once

#include "model/ColorItem.h"

#include <QString>

namespace hueshelf {

// The whole rule of generated colour names, for the swatch editor's working copy. Nothing
// renames colours in the background; these run only on the user's own edits.
namespace AutoNaming {

// The name after the code changed: colorName(newHex) while auto-named (no de-duplication),
// otherwise the name as it is. The editor calls this only for a readable code.
QString nameAfterCodeChange(const QString& currentName, bool isAutoNamed, const QString& newHex);

// The flag after the user typed a name: it stays on only while the typed text equals
// colorName(currentHex). Once off, it stays off.
bool isAutoNamedAfterTyping(bool isAutoNamed, const QString& typedName, const QString& currentHex);

// Both rules applied to a colour record in place.
void applyCodeChange(ColorItem& color, const QString& newHex);
void applyTypedName(ColorItem& color, const QString& typedName);

} // namespace AutoNaming
} // namespace hueshelf
