#include "cli/CheckReport.h"
#include "color/ColorCodeInput.h"
#include "color/ColorVisionSimulation.h"
#include "color/PaletteCheck.h"
#include "mcp/JsonSchema.h"
#include "mcp/PaletteArgument.h"
#include "mcp/PaletteJson.h"
#include "mcp/PaletteSource.h"
#include "mcp/ToolCatalog.h"

#include <QJsonValue>

using namespace Qt::StringLiterals;

namespace hueshelf::mcp::ToolCatalog {

namespace {

QJsonObject colorJson(const ColorItem& color) {
    return QJsonObject{{u"name"_s, color.name}, {u"hex"_s, color.hex}};
}

QJsonObject issueJson(const PaletteCheck::Issue& issue) {
    QJsonObject object{
        {u"id"_s, issue.id},
        {u"kind"_s, cli::CheckReport::kindIdentifier(issue.kind)},
        {u"color"_s, colorJson(issue.color)},
        {u"other"_s, colorJson(issue.other)},
        {u"text"_s, issue.text},
    };
    if (const auto* readability = std::get_if<PaletteCheck::Readability>(&issue.kind)) {
        object.insert(u"level"_s, ColorUtils::contrastLevelIdentifier(readability->level));
        object.insert(u"ratio"_s, PaletteCheck::pairRatio(issue.color.hex, issue.other.hex));
    }
    if (const auto* lookAlike = std::get_if<PaletteCheck::LookAlike>(&issue.kind))
        object.insert(u"vision"_s, ColorVisionSimulation::identifier(lookAlike->vision));
    return object;
}

QJsonObject outputSchema() {
    const QJsonObject color =
        JsonSchema::object({{u"name"_s, JsonSchema::string()}, {u"hex"_s, JsonSchema::string()}},
                           {u"name"_s, u"hex"_s});
    const QJsonObject issue = JsonSchema::object(
        {
            {u"id"_s, JsonSchema::string(u"Stable key of the issue"_s)},
            {u"kind"_s, JsonSchema::stringEnum(
                            {u"readability"_s, u"lookAlike"_s, u"nearDuplicate"_s},
                            u"readability: dark text that reads badly on a light color of the "
                            u"palette; lookAlike: two colors that look alike to color-blind "
                            u"people; nearDuplicate: two colors that are almost the same"_s)},
            {u"color"_s, color},
            {u"other"_s, color},
            {u"text"_s, JsonSchema::string(u"The issue in HueShelf's words, for the user"_s)},
            {u"level"_s, JsonSchema::stringEnum({u"lowContrast"_s, u"poor"_s},
                                                u"Readability only: lowContrast is enough for "
                                                u"large text, poor is not"_s)},
            {u"ratio"_s, JsonSchema::number(u"Readability only: the WCAG contrast ratio"_s)},
            {u"vision"_s,
             JsonSchema::stringEnum({u"protanopia"_s, u"deuteranopia"_s, u"tritanopia"_s},
                                    u"Look-alikes only: the color vision under which the two "
                                    u"collapse"_s)},
        },
        {u"id"_s, u"kind"_s, u"color"_s, u"other"_s, u"text"_s});
    return JsonSchema::object(
        {
            {u"palette"_s, JsonSchema::nullable(JsonSchema::string(
                               u"The checked palette's name; null for a list of colors"_s))},
            {u"colors"_s, JsonSchema::array(color, u"The colors that were checked"_s)},
            {u"summary"_s, JsonSchema::string()},
            {u"issues"_s, JsonSchema::array(issue)},
            {u"worthKnowing"_s,
             JsonSchema::array(JsonSchema::string(),
                               u"Notes on the palette as a whole: its color scheme, missing "
                               u"dark colors, mid-tones, harmony"_s)},
        },
        {u"palette"_s, u"colors"_s, u"summary"_s, u"issues"_s, u"worthKnowing"_s});
}

// A list of codes given instead of a palette: each colour named as the bar would name it.
std::optional<QList<ColorItem>> colorsFromCodes(ToolArguments& arguments, const QJsonArray& list) {
    if (list.isEmpty()) {
        arguments.fail(u"The list \"colors\" is empty; give at least one color code."_s);
        return std::nullopt;
    }
    QList<ColorItem> colors;
    QStringList names;
    for (const QJsonValue& value : list) {
        if (!value.isString()) {
            arguments.fail(u"Every entry of \"colors\" must be a color code as a string, not "_s +
                           jsonTypeText(value) + u'.');
            return std::nullopt;
        }
        const std::optional<QString> hex = ColorCodeInput::read(value.toString());
        if (!hex) {
            arguments.fail(ColorCodeInput::unreadableSentence(value.toString()));
            return std::nullopt;
        }
        const QString name = ColorUtils::uniqueName(ColorUtils::colorName(*hex), names);
        names << name;
        colors.append(ColorItem::make(name, *hex, true));
    }
    return colors;
}

} // namespace

McpTool checkPalette(const PaletteSource& source) {
    JsonSchema::Properties input = PaletteArgument::properties();
    input.append(
        {u"colors"_s, JsonSchema::array(JsonSchema::string(),
                                        u"Color codes to check instead of a stored palette, for "
                                        u"example a palette you are about to propose. "_s +
                                            ColorCodeInput::formsText())});
    return McpTool{
        .name = u"check_palette"_s,
        .title = u"Check a palette"_s,
        .description =
            u"Runs HueShelf's palette check: finds dark colors that don't read as text on the "
            u"palette's light colors (WCAG contrast), pairs of colors that look alike to "
            u"color-blind people, and near-duplicates, each with a sentence to show the user. "
            u"Checks the user's chosen palette unless you give a palette's \"id\" or \"name\", "
            u"or a list of \"colors\" to check without saving anything."_s,
        .inputSchema = JsonSchema::closedObject(input, {}),
        .outputSchema = outputSchema(),
        .isReadOnly = true,
        .call =
            [&source](ToolArguments& arguments) {
                arguments.allowOnly({u"id"_s, u"name"_s, u"colors"_s});
                const std::optional<QJsonArray> codes = arguments.optionalList(u"colors"_s);
                if (codes && (arguments.has(u"id"_s) || arguments.has(u"name"_s)))
                    arguments.fail(u"Give either a palette (\"id\" or \"name\") or a list of "
                                   u"\"colors\", not both."_s);
                if (arguments.failed())
                    return ToolResult::failure(arguments.problem());

                std::optional<QString> name;
                QList<ColorItem> colors;
                if (codes) {
                    const std::optional<QList<ColorItem>> read = colorsFromCodes(arguments, *codes);
                    if (!read)
                        return ToolResult::failure(arguments.problem());
                    colors = *read;
                } else {
                    const PaletteSnapshot snapshot = source.read();
                    const std::optional<ColorTemplate> palette =
                        PaletteArgument::resolve(arguments, snapshot, true);
                    if (!palette)
                        return ToolResult::failure(arguments.problem());
                    name = palette->name;
                    colors = palette->colors;
                }

                const std::vector<PaletteCheck::Issue> issues = PaletteCheck::detect(colors);
                QJsonArray issueArray;
                for (const PaletteCheck::Issue& issue : issues)
                    issueArray.append(issueJson(issue));
                QJsonArray colorArray;
                for (const ColorItem& color : colors)
                    colorArray.append(colorJson(color));
                return ToolResult::success(QJsonObject{
                    {u"palette"_s, name ? QJsonValue(*name) : QJsonValue(QJsonValue::Null)},
                    {u"colors"_s, colorArray},
                    {u"summary"_s, PaletteCheck::fixCountText(static_cast<int>(issues.size()))},
                    {u"issues"_s, issueArray},
                    {u"worthKnowing"_s,
                     QJsonArray::fromStringList(PaletteCheck::worthKnowingLines(colors))},
                });
            },
    };
}

} // namespace hueshelf::mcp::ToolCatalog
