#include "exchange/LinkImport.h"

#include "exchange/PaletteFileTexts.h"
#include "exchange/PaletteIdentity.h"
#include "model/ColorStorage.h"

#include <QUrl>

namespace hueshelf::LinkImport {

bool isOwnSchemeLink(const QString& text) {
    const QUrl url(text);
    return url.scheme().toLower() == QStringLiteral("hueshelf") &&
           url.host().toLower() == QStringLiteral("import");
}

bool isWebLink(const QString& text) {
    const QUrl url(text);
    return url.scheme().toLower() == QStringLiteral("https") &&
           url.host().toLower() == PaletteLink::linkHost().toLower() &&
           url.path().startsWith(QStringLiteral("/p/"));
}

PaletteImportOutcome addDecodedPalette(ColorStorage& storage, const PaletteLink::Palette& palette,
                                       double nowMs) {
    // The candidate keeps the link's own name: the search is for that name, not a freed one.
    const ColorTemplate candidate = PaletteLink::makeTemplate(palette, {}, nowMs);
    if (const std::optional<QUuid> existing =
            findIdenticalPalette(candidate.name, candidate.colors, storage.templates())) {
        storage.selectTemplate(*existing);
        return PaletteImportOutcome{PaletteImportOutcome::Kind::alreadyHave,
                                    PaletteFileTexts::alreadyHave, existing};
    }

    QStringList names;
    names.reserve(storage.templates().size());
    for (const ColorTemplate& existing : storage.templates())
        names.append(existing.name);
    const ColorTemplate added = PaletteLink::makeTemplate(palette, names, nowMs);
    storage.addTemplate(added);
    return PaletteImportOutcome{PaletteImportOutcome::Kind::imported,
                                PaletteFileTexts::importedAnnouncement(added.name, false),
                                added.id};
}

} // namespace hueshelf::LinkImport
