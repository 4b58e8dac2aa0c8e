#pragma once

#include "model/ColorTemplate.h"

#include <QList>
#include <QString>
#include <QUuid>

#include <optional>

namespace hueshelf::mcp {

// The palettes as the preferences file held them when a call asked, with the two choices that
// point into them: the palette on the bar and the one the user chose for AI tools.
struct PaletteSnapshot {
    // Where the palette that a tool calls "chosen" came from.
    enum class ChosenBy {
        setting, // the user's pick for AI tools
        active,  // no pick that exists: the palette on the bar
    };

    QList<ColorTemplate> templates;
    QUuid activeId;
    // The settings value "brandTemplateId" when it reads as an id.
    std::optional<QUuid> brandId;

    // The user's pick for AI tools, else the active palette; none when there are no palettes
    // at all. A stored pick is only a hint: the palette may have been deleted since.
    std::optional<ColorTemplate> chosen() const;
    ChosenBy chosenBy() const;
    bool isChosen(const ColorTemplate& palette) const;
    bool isActive(const ColorTemplate& palette) const { return palette.id == activeId; }

    // The id as text in any case, with or without braces.
    std::optional<ColorTemplate> findById(const QString& idText) const;
    // The exact name first, then the same name in any case; the first in gallery order wins.
    std::optional<ColorTemplate> findByName(const QString& name) const;
};

QString chosenByIdentifier(PaletteSnapshot::ChosenBy chosenBy);

} // namespace hueshelf::mcp
