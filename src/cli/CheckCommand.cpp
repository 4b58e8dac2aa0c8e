#include "cli/CheckReport.h"
#include "cli/ColorArguments.h"
#include "cli/Invocation.h"
#include "cli/PaletteLookup.h"
#include "color/ColorUtils.h"
#include "exchange/PaletteFile.h"
#include "model/StoreSession.h"

#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace hueshelf::cli {
namespace {

struct CheckedColors {
    std::optional<QString> name;
    QList<ColorItem> colors;
};

// Colours named as a new blank palette names its colours: each the automatic name of its
// code, made unique among the names before it.
std::optional<CheckedColors> fromCodes(Invocation& call, int& status) {
    QStringList unreadable;
    QList<ColorItem> colors;
    QStringList names;
    for (const QString& input : call.arguments().values(u"colors"_s)) {
        const std::optional<QString> hex = ColorUtils::parseColorCode(input);
        if (!hex) {
            unreadable << input;
            continue;
        }
        const QString name = ColorUtils::uniqueName(ColorUtils::colorName(*hex), names);
        names << name;
        colors.append(ColorItem::make(name, *hex, true));
    }
    if (!unreadable.isEmpty()) {
        status = call.fail(ColorArguments::unreadableMessage(unreadable));
        return std::nullopt;
    }
    return CheckedColors{std::nullopt, colors};
}

std::optional<CheckedColors> fromFile(Invocation& call, int& status) {
    const QString path = call.arguments().value(u"file"_s);
    // The size is asked first, so a huge file is refused without being read.
    const QFileInfo info(path);
    if (info.exists() && info.size() > PaletteFile::maxFileSize) {
        status = call.fail(PaletteFile::tooLargeMessage());
        return std::nullopt;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        status = call.fail(u"HueShelf couldn't read that file. "_s + file.errorString());
        return std::nullopt;
    }
    const PaletteFileResult result = PaletteFile::parsePaletteFile(file.readAll());
    if (result.errorMessage) {
        status = call.fail(*result.errorMessage);
        return std::nullopt;
    }
    return CheckedColors{result.name, result.colors};
}

std::optional<CheckedColors> fromStore(Invocation& call, int& status) {
    const StoreSession session(StoreSession::Access::readOnly);
    const std::optional<QString> wanted = call.firstPositional();
    const std::optional<ColorTemplate> palette = PaletteLookup::resolve(session.storage(), wanted);
    if (!palette) {
        status = call.fail(PaletteLookup::notFoundMessage(wanted));
        return std::nullopt;
    }
    return CheckedColors{palette->name, palette->colors};
}

int runCheck(Invocation& call) {
    const bool hasFile = call.arguments().has(u"file"_s);
    const bool hasCodes = call.arguments().has(u"colors"_s);
    const int sources = int(hasFile) + int(hasCodes) + int(!call.positionals().isEmpty());
    if (sources > 1)
        return call.usageError(u"give one of PALETTE, --file or --colors"_s);

    int status = ExitStatus::success;
    const std::optional<CheckedColors> input = hasCodes  ? fromCodes(call, status)
                                               : hasFile ? fromFile(call, status)
                                                         : fromStore(call, status);
    if (!input)
        return status;

    const CheckReport report(input->name, input->colors);
    if (call.json())
        call.printJson(report.toJson());
    else
        call.out() << report.toText();
    // Finding issues is the command's answer, not a failure, unless the caller asks for one.
    if (call.arguments().has(u"strict"_s) && report.hasIssues())
        return ExitStatus::unusableInput;
    return ExitStatus::success;
}

} // namespace

Command checkCommand() {
    return Command{
        .name = u"check"_s,
        .summary = u"Check a palette: readability, look-alikes, near-duplicates, and fixes"_s,
        .usage = u"check [PALETTE | --file FILE | --colors CODE...] [--strict] [--json]"_s,
        .description =
            u"Runs the palette check on the palette named by PALETTE (its exact name, else its\n"
            u"id; the active palette when none is named), on a .hueshelf palette FILE, or on a\n"
            u"list of colors, named as a new blank palette names its colors. It lists dark\n"
            u"colors that don't read on the light ones, pairs that look the same to\n"
            u"color-blind readers and near-duplicates, each with the fix the check would make,\n"
            u"then the scheme, notes and a role for each color. Nothing is written.\n"
            u"\n"
            u"JSON: {\"name\" (null for --colors), \"colors\": [{\"name\", \"hex\", "
            u"\"isLocked\"}],\n"
            u"\"summary\", \"issues\": [{\"id\", \"kind\", \"level\" (readability), \"vision\"\n"
            u"(lookAlike), \"color\", \"other\", \"canFix\", \"text\", \"move\": {\"color\", "
            u"\"fromHex\",\n"
            u"\"toHex\", \"lightnessChange\"} or null, \"fixedHex\" or null}], \"midToneNotes\",\n"
            u"\"scheme\", \"schemeName\" or null, \"harmonyNotes\": [{\"type\", \"message\"}],\n"
            u"\"roles\": [{\"color\", \"role\"}]}. Colors are given by their place in \"colors\".\n"
            u"\n"
            u"The exit status is 0 whether or not issues were found; with --strict it is 1 when\n"
            u"there are issues.\n"_s,
        .options =
            {
                OptionSpec{u"file"_s, QChar(), OptionArity::value, u"FILE"_s,
                           u"check a .hueshelf palette file"_s},
                OptionSpec{u"colors"_s, QChar(), OptionArity::values, u"CODE"_s,
                           u"check these colors, read as pasted codes"_s},
                OptionSpec{u"strict"_s, QChar(), OptionArity::flag, QString(),
                           u"exit with status 1 when there are issues"_s},
            },
        .minPositionals = 0,
        .maxPositionals = 1,
        .takesJson = true,
        .handler = &runCheck,
    };
}

} // namespace hueshelf::cli
