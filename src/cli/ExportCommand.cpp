#include "cli/Invocation.h"
#include "cli/PaletteLookup.h"
#include "exchange/PaletteFile.h"
#include "exchange/PaletteFileSave.h"
#include "model/StoreSession.h"

#include <QDateTime>

using namespace Qt::StringLiterals;

namespace hueshelf::cli {
namespace {

int runExport(Invocation& call) {
    const StoreSession session(StoreSession::Access::readOnly);
    const std::optional<QString> wanted = call.firstPositional();
    const std::optional<ColorTemplate> palette = PaletteLookup::resolve(session.storage(), wanted);
    if (!palette)
        return call.fail(PaletteLookup::notFoundMessage(wanted));

    const QDateTime now = QDateTime::currentDateTimeUtc();
    if (!call.arguments().has(u"output"_s)) {
        // The file is JSON already; --json changes nothing.
        call.out() << QString::fromUtf8(
            PaletteFile::exportBytes(palette->name, palette->colors, now));
        return ExitStatus::success;
    }

    // A script names its file exactly; the save dialog's extension rule is for people.
    const QString path = call.arguments().value(u"output"_s);
    if (const std::optional<QString> failure = PaletteFile::savePaletteFile(path, *palette, now))
        return call.fail(u"Couldn't save the palette: "_s + *failure);
    if (call.json())
        call.printJson(QJsonObject{{u"file"_s, path}, {u"name"_s, palette->name}});
    else
        call.out() << u"Palette saved: "_s << path << u'\n';
    return ExitStatus::success;
}

} // namespace

Command exportCommand() {
    return Command{
        .name = u"export"_s,
        .summary = u"Write a palette as a .hueshelf file"_s,
        .usage = u"export [PALETTE] [-o FILE] [--json]"_s,
        .description =
            u"Writes the palette (the active one by default) as a palette file: its name and\n"
            u"its colors with their names and groups, as JSON. Without -o the file goes to\n"
            u"standard output; with -o it is written to FILE atomically (an existing file is\n"
            u"replaced whole or left as it was). Anyone can open it with \"hueshelf import\" or\n"
            u"by dropping it on the bar.\n"
            u"\n"
            u"JSON with -o: {\"file\", \"name\"}.\n"_s,
        .options = {OptionSpec{.name = u"output"_s,
                               .shortName = u'o',
                               .arity = OptionArity::value,
                               .valueName = u"FILE"_s,
                               .help = u"write the file here instead of to standard output"_s}},
        .minPositionals = 0,
        .maxPositionals = 1,
        .takesJson = true,
        .handler = &runExport,
    };
}

} // namespace hueshelf::cli
