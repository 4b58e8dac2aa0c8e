#include "cli/ColorArguments.h"
#include "cli/Invocation.h"
#include "cli/TextTable.h"
#include "color/ColorUtils.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace hueshelf::cli {
namespace {

constexpr double defaultTarget = 4.5;

// Any finite ratio is a question with an answer: one above 21 (black on white) is simply never
// reached, one of 1 or less always is.
std::optional<double> readTarget(const QString& text) {
    bool ok = false;
    const double target = text.trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(target))
        return std::nullopt;
    return target;
}

// People read "4.49:1" as failing 4.5, so the shown ratio is cut, never rounded up.
QString shownRatio(double ratio) {
    return QString::number(std::floor(ratio * 100.0 + 1e-9) / 100.0, 'f', 2) + u":1"_s;
}

int runContrast(Invocation& call) {
    double target = defaultTarget;
    if (call.arguments().has(u"target"_s)) {
        const QString text = call.arguments().value(u"target"_s);
        const std::optional<double> read = readTarget(text);
        if (!read) {
            return call.usageError(u"--target needs a contrast ratio such as 4.5, not \""_s + text +
                                   u'"');
        }
        target = *read;
    }

    const QString& foregroundInput = call.positionals().at(0);
    const QString& backgroundInput = call.positionals().at(1);
    const std::optional<QString> foreground = ColorUtils::parseColorCode(foregroundInput);
    const std::optional<QString> background = ColorUtils::parseColorCode(backgroundInput);
    const std::optional<double> foregroundLuminance =
        foreground ? ColorUtils::relativeLuminance(*foreground) : std::nullopt;
    const std::optional<double> backgroundLuminance =
        background ? ColorUtils::relativeLuminance(*background) : std::nullopt;
    if (!foregroundLuminance || !backgroundLuminance) {
        QStringList unreadable;
        if (!foregroundLuminance)
            unreadable << foregroundInput;
        if (!backgroundLuminance)
            unreadable << backgroundInput;
        return call.fail(ColorArguments::unreadableMessage(unreadable));
    }

    const double ratio = ColorUtils::contrastRatio(*foregroundLuminance, *backgroundLuminance);
    const ColorUtils::ContrastLevel level = ColorUtils::contrastLevel(*foreground, *background);
    const std::optional<QString> adjusted =
        ColorUtils::adjustedForContrast(*foreground, *background, target);

    if (call.json()) {
        call.printJson(QJsonObject{
            {u"foreground"_s, *foreground},
            {u"background"_s, *background},
            {u"ratio"_s, ratio},
            {u"level"_s, ColorUtils::contrastLevelIdentifier(level)},
            {u"adjustedForeground"_s, adjusted ? QJsonValue(*adjusted) : QJsonValue::Null},
        });
        return ExitStatus::success;
    }

    const QString targetText = QString::number(target) + u":1"_s;
    TextTable rows;
    rows.addRow({u"foreground"_s, *foreground});
    rows.addRow({u"background"_s, *background});
    rows.addRow({u"ratio"_s, shownRatio(ratio)});
    rows.addRow({u"level"_s, ColorUtils::badgeText(level)});
    const QString adjustedText = adjusted ? QString(*adjusted + u" reaches "_s + targetText)
                                          : QString(u"no lightness of it reaches "_s + targetText);
    rows.addRow({u"adjusted"_s, adjustedText});
    call.out() << rows.render();
    return ExitStatus::success;
}

} // namespace

Command contrastCommand() {
    return Command{
        .name = u"contrast"_s,
        .summary = u"Check how well a text color reads on a background"_s,
        .usage = u"contrast FOREGROUND BACKGROUND [--target RATIO] [--json]"_s,
        .description =
            u"Prints the WCAG contrast ratio of the two colors, its reading level (readable\n"
            u"from 4.5, OK for headings from 3.0, hard to read below), and the foreground with\n"
            u"its lightness adjusted so that it reaches the target ratio on the background.\n"
            u"\n"
            u"JSON: {\"foreground\", \"background\", \"ratio\", \"level\", "
            u"\"adjustedForeground\"}\n"
            u"with the canonical codes, level \"readable\", \"lowContrast\" or \"poor\", and\n"
            u"adjustedForeground null when no lightness reaches the target.\n"_s,
        .options = {OptionSpec{
            .name = u"target"_s,
            .shortName = {},
            .arity = OptionArity::value,
            .valueName = u"RATIO"_s,
            .help = u"Contrast ratio the adjusted foreground must reach (default 4.5)"_s,
        }},
        .minPositionals = 2,
        .maxPositionals = 2,
        .takesJson = true,
        .handler = &runContrast,
    };
}

} // namespace hueshelf::cli
