#include "cli/PaletteLookup.h"

#include "model/TemplateJson.h"

using namespace Qt::StringLiterals;

namespace hueshelf::cli::PaletteLookup {

std::optional<ColorTemplate> find(const QList<ColorTemplate>& templates, const QString& nameOrId) {
    for (const ColorTemplate& palette : templates) {
        if (palette.name == nameOrId)
            return palette;
    }
    if (const std::optional<QUuid> id = TemplateJson::uuidFromText(nameOrId))
        return byId(templates, *id);
    return std::nullopt;
}

std::optional<ColorTemplate> byId(const QList<ColorTemplate>& templates, const QUuid& id) {
    for (const ColorTemplate& palette : templates) {
        if (palette.id == id)
            return palette;
    }
    return std::nullopt;
}

std::optional<ColorTemplate> resolve(const ColorStorage& storage,
                                     const std::optional<QString>& nameOrId) {
    if (nameOrId)
        return find(storage.templates(), *nameOrId);
    return storage.activeTemplate();
}

QString notFoundMessage(const std::optional<QString>& nameOrId) {
    if (!nameOrId)
        return u"There is no active palette: the store holds no palettes"_s;
    return u"No palette is named \""_s + *nameOrId + u"\" or has that id"_s;
}

} // namespace hueshelf::cli::PaletteLookup
