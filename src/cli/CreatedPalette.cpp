#include "cli/CreatedPalette.h"

#include "cli/Invocation.h"
#include "cli/PaletteLookup.h"
#include "cli/TextTable.h"
#include "model/StoreSession.h"
#include "model/StoreTexts.h"
#include "model/TemplateJson.h"
#include "model/TemplateNaming.h"

using namespace Qt::StringLiterals;

namespace hueshelf::cli::CreatedPalette {

QList<OptionSpec> options(const QString& createHelp) {
    return {OptionSpec{.name = u"create"_s,
                       .shortName = {},
                       .arity = OptionArity::flag,
                       .valueName = {},
                       .help = createHelp},
            OptionSpec{.name = u"name"_s,
                       .shortName = {},
                       .arity = OptionArity::value,
                       .valueName = u"NAME"_s,
                       .help = u"the new palette's name"_s}};
}

std::optional<QString> wantedName(Invocation& call, const QString& defaultName) {
    const bool creating = call.arguments().has(u"create"_s);
    if (!call.arguments().has(u"name"_s))
        return defaultName;
    if (!creating) {
        call.usageError(u"--name names the palette that --create makes"_s);
        return std::nullopt;
    }
    const QString name = TemplateNaming::trimmedOfBlanks(call.arguments().value(u"name"_s));
    if (name.isEmpty()) {
        call.usageError(u"--name needs a name that is not blank"_s);
        return std::nullopt;
    }
    return name;
}

int create(Invocation& call, StoreSession& session, const QString& wantedName,
           const QList<ColorItem>& colors) {
    ColorStorage& storage = session.storage();
    const ColorTemplate added = storage.createTemplate(wantedName, colors);
    session.close();

    // The record as the file now holds it, after any merge with another process's write.
    const ColorTemplate palette =
        PaletteLookup::byId(storage.templates(), added.id).value_or(added);
    if (call.json()) {
        call.printJson(TemplateJson::templateToJson(palette));
        return ExitStatus::success;
    }
    call.out() << StoreTexts::createdAnnouncement(palette.name) << u'\n';
    TextTable rows(u"  "_s);
    for (const ColorItem& color : palette.colors)
        rows.addRow({color.hex, color.name});
    call.out() << rows.render();
    return ExitStatus::success;
}

} // namespace hueshelf::cli::CreatedPalette
