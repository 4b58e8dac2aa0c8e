#include "cli/ColorArguments.h"
#include "cli/Invocation.h"
#include "cli/TextTable.h"
#include "color/ColorUtils.h"

using namespace Qt::StringLiterals;

namespace hueshelf::cli {
namespace {

int runShades(Invocation& call) {
    const QString& input = call.positionals().constFirst();
    const std::optional<QString> hex = ColorUtils::parseColorCode(input);
    // The ladder of the canonical code, so its base step holds that code and not the input.
    const std::vector<ColorUtils::ShadeStep> ladder =
        hex ? ColorUtils::shadeLadder(*hex) : std::vector<ColorUtils::ShadeStep>{};
    if (ladder.empty())
        return call.fail(ColorArguments::unreadableMessage({input}));

    if (call.json()) {
        QJsonArray array;
        for (const ColorUtils::ShadeStep& step : ladder) {
            array.append(QJsonObject{
                {u"label"_s, step.label},
                {u"hex"_s, step.hex},
                {u"isBase"_s, step.isBase},
            });
        }
        call.printJson(array);
        return ExitStatus::success;
    }

    TextTable rows;
    for (const ColorUtils::ShadeStep& step : ladder) {
        rows.addRow({QString::number(step.label).rightJustified(3), step.hex,
                     step.isBase ? u"base"_s : QString()});
    }
    call.out() << rows.render();
    return ExitStatus::success;
}

} // namespace

Command shadesCommand() {
    return Command{
        .name = u"shades"_s,
        .summary = u"Print the shade ladder of a color, 50 to 900"_s,
        .usage = u"shades CODE [--json]"_s,
        .description =
            u"Prints ten shades with the color's own hue and saturation, from lightness 0.95\n"
            u"(50) down to 0.10 (900). The step nearest to the color's own lightness is the\n"
            u"base and holds the color's canonical code.\n"
            u"\n"
            u"JSON: an array of ten {\"label\", \"hex\", \"isBase\"}.\n"_s,
        .options = {},
        .minPositionals = 1,
        .maxPositionals = 1,
        .takesJson = true,
        .handler = &runShades,
    };
}

} // namespace hueshelf::cli
