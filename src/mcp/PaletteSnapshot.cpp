#include "mcp/PaletteSnapshot.h"

using namespace Qt::StringLiterals;

namespace hueshelf::mcp {

namespace {

const ColorTemplate* withId(const QList<ColorTemplate>& templates, const QUuid& id) {
    for (const ColorTemplate& palette : templates) {
        if (palette.id == id)
            return &palette;
    }
    return nullptr;
}

} // namespace

std::optional<ColorTemplate> PaletteSnapshot::chosen() const {
    if (brandId) {
        if (const ColorTemplate* palette = withId(templates, *brandId))
            return *palette;
    }
    if (const ColorTemplate* palette = withId(templates, activeId))
        return *palette;
    // The load always names an active palette when there is one; this only guards a list
    // that came some other way.
    if (!templates.isEmpty())
        return templates.constFirst();
    return std::nullopt;
}

PaletteSnapshot::ChosenBy PaletteSnapshot::chosenBy() const {
    return brandId && withId(templates, *brandId) ? ChosenBy::setting : ChosenBy::active;
}

bool PaletteSnapshot::isChosen(const ColorTemplate& palette) const {
    const std::optional<ColorTemplate> pick = chosen();
    return pick && pick->id == palette.id;
}

std::optional<ColorTemplate> PaletteSnapshot::findById(const QString& idText) const {
    const QUuid id = QUuid::fromString(idText.trimmed());
    if (id.isNull())
        return std::nullopt;
    if (const ColorTemplate* palette = withId(templates, id))
        return *palette;
    return std::nullopt;
}

std::optional<ColorTemplate> PaletteSnapshot::findByName(const QString& name) const {
    for (const Qt::CaseSensitivity sensitivity : {Qt::CaseSensitive, Qt::CaseInsensitive}) {
        for (const ColorTemplate& palette : templates) {
            if (palette.name.compare(name, sensitivity) == 0)
                return palette;
        }
    }
    return std::nullopt;
}

QString chosenByIdentifier(PaletteSnapshot::ChosenBy chosenBy) {
    return chosenBy == PaletteSnapshot::ChosenBy::setting ? u"setting"_s : u"active"_s;
}

} // namespace hueshelf::mcp
