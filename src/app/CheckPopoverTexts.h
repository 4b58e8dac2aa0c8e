#pragma once

#include "color/ColorUtils.h"

#include <QString>

namespace hueshelf::app::CheckPopoverTexts {

using namespace Qt::StringLiterals;

// Verdict page.
inline const QString addColorsFirst = u"Add a few colors first."_s;
inline const QString looksGood = u"Looks good. Everything reads, nothing looks alike."_s;
inline const QString detailsButton = u"Details"_s;

// Rows.
inline const QString fixButton = u"Fix"_s;
inline const QString fixTint = u"#3B8077"_s;
inline const QString undoButton = u"Undo"_s;
inline const QString settledIcon = u"checkmark.circle.fill"_s;
inline const QString costIcon = u"exclamationmark.circle"_s;
inline constexpr ColorUtils::DisplayColor settledIconColor{0.36, 0.68, 0.42, 1.0};
inline constexpr double rowDividerOpacity = 0.6;
inline const QString seenAsSuffix = u" as they see it"_s;
inline const QString seenAsNowSuffix = u" as they see it now"_s;

// Details page.
inline const QString backButton = u"Back to Check"_s;
inline const QString detailsTitle = u"Details"_s;
inline const QString everyPairTitle = u"Every pair"_s;
inline const QString showGrid = u"Show the grid"_s;
inline const QString hideGrid = u"Hide"_s;
inline const QString othersSeeTitle = u"How others see it"_s;
inline const QString worthKnowingTitle = u"Worth knowing"_s;
inline const QString nothingToAdd =
    u"Nothing to add. There's a dark color to read as text and the colors sit well together."_s;
inline const QString nameByRoleButton = u"Name every color by its role"_s;
inline const QString nameByRoleHelp =
    u"Renames each color for the job it does, like Primary, Background or Accent"_s;

// Page transition and the fix's own animation.
inline constexpr double animationSeconds = 0.18;

} // namespace hueshelf::app::CheckPopoverTexts
