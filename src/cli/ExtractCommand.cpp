#include "cli/CreatedPalette.h"
#include "cli/Invocation.h"
#include "cli/TextTable.h"
#include "color/ColorUtils.h"
#include "color/ExtractedSwatch.h"
#include "color/ExtractionRandom.h"
#include "color/ImageColorExtractor.h"
#include "model/StoreSession.h"

#include <QFileInfo>

#include <memory>

using namespace Qt::StringLiterals;

namespace hueshelf::cli {
namespace {

const QString defaultTemplateName = u"Extracted palette"_s;
// The bar's words for every image it can't use.
const QString failureMessage = u"Could not extract colors"_s;
constexpr int defaultMaxColors = 6;

int runExtract(Invocation& call) {
    const QString& path = call.positionals().constFirst();

    int maxColors = defaultMaxColors;
    if (call.arguments().has(u"max"_s)) {
        bool ok = false;
        maxColors = call.arguments().value(u"max"_s).toInt(&ok);
        if (!ok)
            return call.usageError(u"--max takes a whole number"_s);
    }
    std::unique_ptr<ExtractionRandom> random;
    if (call.arguments().has(u"seed"_s)) {
        bool ok = false;
        const quint64 seed = call.arguments().value(u"seed"_s).toULongLong(&ok);
        if (!ok)
            return call.usageError(u"--seed takes a whole number from 0 to 18446744073709551615"_s);
        random = std::make_unique<ExtractionRandom>(seed);
    } else {
        random = std::make_unique<ExtractionRandom>();
    }
    const std::optional<QString> name = CreatedPalette::wantedName(call, defaultTemplateName);
    if (!name)
        return ExitStatus::usage;

    const std::optional<QStringList> hexes =
        ImageColorExtractor::extractColors(path, maxColors, *random);
    if (!hexes || hexes->isEmpty()) {
        // The bar has one message for every failure; a script also wants to know a missing
        // file from an unreadable one.
        if (!QFileInfo(path).isFile())
            return call.fail(failureMessage + u": no such file: "_s + path);
        return call.fail(failureMessage);
    }

    if (call.arguments().has(u"create"_s)) {
        StoreSession session(StoreSession::Access::readWrite);
        return CreatedPalette::create(call, session, *name, confirmedColors(swatchesFor(*hexes)));
    }

    if (call.json()) {
        call.printJson(QJsonObject{{u"colors"_s, QJsonArray::fromStringList(*hexes)}});
        return ExitStatus::success;
    }
    TextTable rows;
    for (const QString& hex : *hexes)
        rows.addRow({hex, ColorUtils::colorName(hex)});
    call.out() << rows.render();
    return ExitStatus::success;
}

} // namespace

Command extractCommand() {
    return Command{
        .name = u"extract"_s,
        .summary = u"Pick the main colors of an image"_s,
        .usage = u"extract IMAGE [--max N] [--seed S] [--create [--name NAME]] [--json]"_s,
        .description =
            u"Reads a PNG, JPEG, HEIC/HEIF, WebP, TIFF, GIF or BMP image, scales it to 50x50\n"
            u"and clusters its pixels into up to N colors (6 by default), biggest first, keeping\n"
            u"only colors that differ visibly. Near-white and near-black pixels are left out\n"
            u"unless the image has nothing else. The clustering starts from random seeds, so\n"
            u"two runs may differ slightly; --seed S makes a run repeatable.\n"
            u"\n"
            u"With --create the colors become a new palette, named \"Extracted palette\" or NAME\n"
            u"(with \" 2\", \" 3\"... when taken), made active, and its stored record is printed.\n"
            u"\n"
            u"JSON: {\"colors\": [\"#RRGGBB\", ...]}.\n"_s,
        .options =
            QList<OptionSpec>{
                OptionSpec{.name = u"max"_s,
                           .shortName = {},
                           .arity = OptionArity::value,
                           .valueName = u"N"_s,
                           .help = u"at most N colors (6)"_s},
                OptionSpec{.name = u"seed"_s,
                           .shortName = {},
                           .arity = OptionArity::value,
                           .valueName = u"S"_s,
                           .help = u"seed of the random start, for repeatable runs"_s}} +
            CreatedPalette::options(u"add the colors as a new palette"_s),
        .minPositionals = 1,
        .maxPositionals = 1,
        .takesJson = true,
        .handler = &runExtract,
    };
}

} // namespace hueshelf::cli
