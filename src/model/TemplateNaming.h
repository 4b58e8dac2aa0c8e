#pragma once

#include <QString>
#include <QStringList>

namespace hueshelf {

// Naming rules for palettes made by the store. Colour names have their own rule
// (ColorUtils::uniqueName); palette files and links have theirs.
namespace TemplateNaming {

// "Palette " and the count of palettes plus one.
QString blankTemplateName(qsizetype templateCount);

// Compared exactly, case included, with no trimming: a free name stays as it is, otherwise
// " 2", " 3", ... is appended, taking the first free one.
QString uniqueTemplateName(const QString& wanted, const QStringList& existingNames);

// Blanks as the rename popover understands them: spaces and tabs, not line ends.
QString trimmedOfBlanks(const QString& text);

} // namespace TemplateNaming
} // namespace hueshelf
