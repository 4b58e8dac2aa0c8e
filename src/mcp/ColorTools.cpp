#include "color/ColorCodeInput.h"
#include "color/ColorUtils.h"
#include "mcp/JsonSchema.h"
#include "mcp/ToolCatalog.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace hueshelf::mcp::ToolCatalog {

namespace {

// The WCAG 2 thresholds. Large text is 18 pt, or 14 pt bold, and up.
constexpr double aaNormal = 4.5;
constexpr double aaLarge = 3.0;
constexpr double aaaNormal = 7.0;
constexpr double aaaLarge = 4.5;

// People read "4.49:1" as failing 4.5, so the shown ratio is cut, never rounded up; the pass
// marks are decided on the exact ratio.
double shownRatio(double ratio) {
    return std::floor(ratio * 100.0) / 100.0;
}

// Divided rather than multiplied by a step, so the number prints without a tail of digits.
double toTenths(double value) {
    return std::round(value * 10.0) / 10.0;
}

// One colour argument, read, or the mistake recorded.
std::optional<QString> readColor(ToolArguments& arguments, const QString& name) {
    const std::optional<QString> text = arguments.requiredText(name);
    if (!text)
        return std::nullopt;
    std::optional<QString> hex = ColorCodeInput::read(*text);
    if (!hex)
        arguments.fail(ColorCodeInput::unreadableSentence(*text));
    return hex;
}

ToolResult contrastOf(const QString& foreground, const QString& background) {
    const double ratio = ColorUtils::contrastRatio(*ColorUtils::relativeLuminance(foreground),
                                                   *ColorUtils::relativeLuminance(background));
    const bool passesAaNormal = ratio >= aaNormal;
    // A foreground that falls short gets the nearest lightness of its own hue that reads.
    const std::optional<QString> suggestion =
        passesAaNormal ? std::nullopt
                       : ColorUtils::adjustedForContrast(foreground, background, aaNormal);
    return ToolResult::success(QJsonObject{
        {u"foreground"_s, foreground},
        {u"background"_s, background},
        {u"ratio"_s, shownRatio(ratio)},
        {u"level"_s, ColorUtils::contrastLevelIdentifier(ColorUtils::contrastLevelForRatio(ratio))},
        {u"passes"_s, QJsonObject{{u"aaNormalText"_s, passesAaNormal},
                                  {u"aaLargeText"_s, ratio >= aaLarge},
                                  {u"aaaNormalText"_s, ratio >= aaaNormal},
                                  {u"aaaLargeText"_s, ratio >= aaaLarge}}},
        {u"suggestedForeground"_s,
         suggestion ? QJsonValue(*suggestion) : QJsonValue(QJsonValue::Null)},
    });
}

} // namespace

McpTool checkContrast() {
    const QString forms = ColorCodeInput::formsText();
    const QJsonObject passes = JsonSchema::object(
        {
            {u"aaNormalText"_s, JsonSchema::boolean(u"WCAG AA for normal text: 4.5:1"_s)},
            {u"aaLargeText"_s, JsonSchema::boolean(u"WCAG AA for large text: 3:1"_s)},
            {u"aaaNormalText"_s, JsonSchema::boolean(u"WCAG AAA for normal text: 7:1"_s)},
            {u"aaaLargeText"_s, JsonSchema::boolean(u"WCAG AAA for large text: 4.5:1"_s)},
        },
        {u"aaNormalText"_s, u"aaLargeText"_s, u"aaaNormalText"_s, u"aaaLargeText"_s});
    return McpTool{
        .name = u"check_contrast"_s,
        .title = u"Check contrast"_s,
        .description =
            u"Computes the WCAG contrast ratio of a text color on a background color and "
            u"which WCAG levels it passes (AA: 4.5:1 for normal text, 3:1 for large text; "
            u"AAA: 7:1 and 4.5:1). When it fails AA for normal text, suggests the nearest "
            u"lightness of the text color that passes. Use before pairing text and "
            u"background colors."_s,
        .inputSchema = JsonSchema::closedObject(
            {
                {u"foreground"_s, JsonSchema::string(u"The text color. "_s + forms)},
                {u"background"_s, JsonSchema::string(u"The background color. "_s + forms)},
            },
            {u"foreground"_s, u"background"_s}),
        .outputSchema = JsonSchema::object(
            {
                {u"foreground"_s, JsonSchema::string(u"The text color as #RRGGBB"_s)},
                {u"background"_s, JsonSchema::string(u"The background color as #RRGGBB"_s)},
                {u"ratio"_s, JsonSchema::number(u"The contrast ratio, cut to two decimals"_s)},
                {u"level"_s,
                 JsonSchema::stringEnum({u"readable"_s, u"lowContrast"_s, u"poor"_s},
                                        u"HueShelf's reading level: readable from 4.5, lowContrast "
                                        u"(large text only) from 3, poor below"_s)},
                {u"passes"_s, passes},
                {u"suggestedForeground"_s,
                 JsonSchema::nullable(JsonSchema::string(
                     u"When AA for normal text fails: the text color with its lightness "
                     u"changed just enough to pass; null otherwise or when none passes"_s))},
            },
            {u"foreground"_s, u"background"_s, u"ratio"_s, u"level"_s, u"passes"_s,
             u"suggestedForeground"_s}),
        .isReadOnly = true,
        .call =
            [](ToolArguments& arguments) {
                arguments.allowOnly({u"foreground"_s, u"background"_s});
                const std::optional<QString> foreground = readColor(arguments, u"foreground"_s);
                const std::optional<QString> background = readColor(arguments, u"background"_s);
                if (arguments.failed())
                    return ToolResult::failure(arguments.problem());
                return contrastOf(*foreground, *background);
            },
    };
}

McpTool convertColor() {
    QStringList formatNames;
    JsonSchema::Properties formatProperties;
    for (const ColorUtils::CopyFormat format : ColorUtils::allCopyFormats()) {
        const QString identifier = ColorUtils::copyFormatIdentifier(format);
        formatNames << identifier;
        formatProperties.append(
            {identifier, JsonSchema::string(ColorUtils::copyFormatLabel(format))});
    }
    return McpTool{
        .name = u"convert_color"_s,
        .title = u"Convert a color"_s,
        .description =
            u"Converts one color code into every format HueShelf copies: hex, hex without "
            u"\"#\", CSS rgb(), CSS hsl(), a CSS custom property and a Tailwind class; also "
            u"gives the color's descriptive name and its RGB and HSL numbers. Give \"name\" "
            u"to name the CSS custom property."_s,
        .inputSchema = JsonSchema::closedObject(
            {
                {u"color"_s, JsonSchema::string(ColorCodeInput::formsText())},
                {u"name"_s, JsonSchema::string(u"The name for the CSS custom property; "
                                               u"the color's descriptive name by default"_s)},
            },
            {u"color"_s}),
        .outputSchema = JsonSchema::object(
            {
                {u"input"_s, JsonSchema::string()},
                {u"hex"_s, JsonSchema::string(u"#RRGGBB"_s)},
                {u"name"_s, JsonSchema::string(u"The color's descriptive name"_s)},
                {u"rgb"_s, JsonSchema::object({{u"r"_s, JsonSchema::integer()},
                                               {u"g"_s, JsonSchema::integer()},
                                               {u"b"_s, JsonSchema::integer()}},
                                              {u"r"_s, u"g"_s, u"b"_s}, u"0 to 255"_s)},
                {u"hsl"_s, JsonSchema::object({{u"h"_s, JsonSchema::number(u"degrees"_s)},
                                               {u"s"_s, JsonSchema::number(u"percent"_s)},
                                               {u"l"_s, JsonSchema::number(u"percent"_s)}},
                                              {u"h"_s, u"s"_s, u"l"_s})},
                {u"formats"_s, JsonSchema::object(formatProperties, formatNames)},
            },
            {u"input"_s, u"hex"_s, u"name"_s, u"rgb"_s, u"hsl"_s, u"formats"_s}),
        .isReadOnly = true,
        .call =
            [](ToolArguments& arguments) {
                arguments.allowOnly({u"color"_s, u"name"_s});
                const std::optional<QString> input = arguments.requiredText(u"color"_s);
                const std::optional<QString> wantedName = arguments.optionalText(u"name"_s);
                const std::optional<QString> hex =
                    input ? ColorCodeInput::read(*input) : std::nullopt;
                if (input && !hex)
                    arguments.fail(ColorCodeInput::unreadableSentence(*input));
                if (arguments.failed())
                    return ToolResult::failure(arguments.problem());

                const QString name = ColorUtils::colorName(*hex);
                const QString variableName =
                    wantedName && !wantedName->trimmed().isEmpty() ? wantedName->trimmed() : name;
                QJsonObject formats;
                for (const ColorUtils::CopyFormat format : ColorUtils::allCopyFormats())
                    formats.insert(ColorUtils::copyFormatIdentifier(format),
                                   ColorUtils::formattedCode(*hex, format, variableName));
                const ColorUtils::RGB rgb = *ColorUtils::hexToRGB(*hex);
                const ColorUtils::HSL hsl = *ColorUtils::hexToHSL(*hex);
                return ToolResult::success(QJsonObject{
                    {u"input"_s, *input},
                    {u"hex"_s, *hex},
                    {u"name"_s, name},
                    {u"rgb"_s, QJsonObject{{u"r"_s, rgb.r}, {u"g"_s, rgb.g}, {u"b"_s, rgb.b}}},
                    {u"hsl"_s, QJsonObject{{u"h"_s, toTenths(hsl.h)},
                                           {u"s"_s, toTenths(hsl.s * 100.0)},
                                           {u"l"_s, toTenths(hsl.l * 100.0)}}},
                    {u"formats"_s, formats},
                });
            },
    };
}

} // namespace hueshelf::mcp::ToolCatalog
