#include "cli/CreatedPalette.h"
#include "cli/Invocation.h"
#include "cli/PaletteLookup.h"
#include "cli/TextTable.h"
#include "color/DarkVersion.h"
#include "model/StoreSession.h"

using namespace Qt::StringLiterals;

namespace hueshelf::cli {
namespace {

int runDark(Invocation& call) {
    const bool creating = call.arguments().has(u"create"_s);
    StoreSession session(creating ? StoreSession::Access::readWrite
                                  : StoreSession::Access::readOnly);
    const std::optional<QString> wanted = call.firstPositional();
    const std::optional<ColorTemplate> palette = PaletteLookup::resolve(session.storage(), wanted);
    if (!palette)
        return call.fail(PaletteLookup::notFoundMessage(wanted));

    const std::optional<QString> name =
        CreatedPalette::wantedName(call, DarkVersion::defaultName(palette->name));
    if (!name)
        return ExitStatus::usage;

    if (creating) {
        return CreatedPalette::create(call, session, *name,
                                      DarkVersion::darkPaletteColors(palette->colors));
    }

    const QList<ColorItem> dark = DarkVersion::darkVersion(palette->colors);
    if (call.json()) {
        QJsonArray colors;
        for (const ColorItem& color : dark)
            colors.append(QJsonObject{{u"name"_s, color.name}, {u"hex"_s, color.hex}});
        call.printJson(QJsonObject{{u"colors"_s, colors}});
        return ExitStatus::success;
    }

    TextTable rows;
    for (qsizetype i = 0; i < dark.size(); ++i)
        rows.addRow({palette->colors.at(i).hex, u"->"_s, dark.at(i).hex, dark.at(i).name});
    call.out() << rows.render();
    return ExitStatus::success;
}

} // namespace

Command darkCommand() {
    return Command{
        .name = u"dark"_s,
        .summary = u"Make the dark version of a palette"_s,
        .usage = u"dark [PALETTE] [--create [--name NAME]] [--json]"_s,
        .description =
            u"Inverts each color's lightness (kept between 0.04 and 0.96), then moves the colors\n"
            u"that became dark, the backgrounds, until the light ones read on them at 4.5:1\n"
            u"where that is possible. PALETTE is a stored palette's exact name, else its id;\n"
            u"without it, the active palette. The palette itself is not changed.\n"
            u"\n"
            u"With --create the dark version becomes a new palette, named after the palette with\n"
            u"\" (Dark)\" or NAME (with \" 2\", \" 3\"... when taken), without its locks, made\n"
            u"active, and its stored record is printed.\n"
            u"\n"
            u"JSON: {\"colors\": [{\"name\", \"hex\"}]}.\n"_s,
        .options = CreatedPalette::options(u"add the dark version as a new palette"_s),
        .minPositionals = 0,
        .maxPositionals = 1,
        .takesJson = true,
        .handler = &runDark,
    };
}

} // namespace hueshelf::cli
