#include "cli/ColorArguments.h"
#include "cli/CreatedPalette.h"
#include "cli/Invocation.h"
#include "cli/TextTable.h"
#include "color/ColorUtils.h"
#include "color/SchemeGenerator.h"
#include "model/StoreSession.h"

using namespace Qt::StringLiterals;

namespace hueshelf::cli {
namespace {

using SchemeGenerator::SchemeStyle;

const QString defaultTemplateName = u"My color scheme"_s;

int runScheme(Invocation& call) {
    const QString& input = call.positionals().constFirst();
    SchemeStyle style = SchemeStyle::warm;
    if (call.arguments().has(u"style"_s)) {
        const QString text = call.arguments().value(u"style"_s);
        const std::optional<SchemeStyle> chosen = SchemeGenerator::styleFromIdentifier(text);
        if (!chosen)
            return call.usageError(u"--style takes warm, cool or neutral, not \""_s + text + u'"');
        style = *chosen;
    }
    const std::optional<QString> name = CreatedPalette::wantedName(call, defaultTemplateName);
    if (!name)
        return ExitStatus::usage;

    // The window keeps the typed text as "Primary"; a script gets the canonical code.
    const std::optional<QString> primary = ColorUtils::parseColorCode(input);
    const std::optional<SchemeGenerator::GeneratedScheme> scheme =
        primary ? SchemeGenerator::generateScheme(*primary, style) : std::nullopt;
    if (!scheme)
        return call.fail(ColorArguments::unreadableMessage({input}));

    if (call.arguments().has(u"create"_s)) {
        StoreSession session(StoreSession::Access::readWrite);
        return CreatedPalette::create(call, session, *name,
                                      SchemeGenerator::schemePaletteColors(scheme->colors));
    }

    if (call.json()) {
        QJsonArray colors;
        for (const SchemeGenerator::GeneratedColor& color : scheme->colors)
            colors.append(QJsonObject{
                {u"role"_s, color.role}, {u"hex"_s, color.hex}, {u"name"_s, color.name}});
        call.printJson(QJsonObject{{u"colors"_s, colors}, {u"allReadable"_s, scheme->allReadable}});
        return ExitStatus::success;
    }

    TextTable rows;
    for (const SchemeGenerator::GeneratedColor& color : scheme->colors)
        rows.addRow({color.role, color.hex, color.name});
    call.out() << rows.render()
               << (scheme->allReadable ? u"All text combinations readable"_s
                                       : u"Some contrast issues remain"_s)
               << u'\n';
    return ExitStatus::success;
}

} // namespace

Command schemeCommand() {
    return Command{
        .name = u"scheme"_s,
        .summary = u"Generate a six-color scheme from one color"_s,
        .usage = u"scheme CODE [--style warm|cool|neutral] [--create [--name NAME]] [--json]"_s,
        .description =
            u"Derives Primary, Header, Accent, Background, Surface and Text from the color in\n"
            u"the chosen style (warm by default), then lightens or darkens Text and Header until\n"
            u"they read on both backgrounds at 4.5:1 where that is possible. Primary is the\n"
            u"canonical form of CODE. Each color is named after its look.\n"
            u"\n"
            u"With --create the scheme becomes a new palette, named \"My color scheme\" or NAME\n"
            u"(with \" 2\", \" 3\"... when taken), made active, and its stored record is printed.\n"
            u"\n"
            u"JSON: {\"colors\": [{\"role\", \"hex\", \"name\"}], \"allReadable\"}.\n"_s,
        .options = QList<OptionSpec>{OptionSpec{.name = u"style"_s,
                                                .shortName = {},
                                                .arity = OptionArity::value,
                                                .valueName = u"STYLE"_s,
                                                .help = u"warm, cool or neutral"_s}} +
                   CreatedPalette::options(u"add the scheme as a new palette"_s),
        .minPositionals = 1,
        .maxPositionals = 1,
        .takesJson = true,
        .handler = &runScheme,
    };
}

} // namespace hueshelf::cli
