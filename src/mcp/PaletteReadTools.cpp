#include "mcp/JsonSchema.h"
#include "mcp/PaletteArgument.h"
#include "mcp/PaletteJson.h"
#include "mcp/PaletteSource.h"
#include "mcp/ToolCatalog.h"

using namespace Qt::StringLiterals;

namespace hueshelf::mcp::ToolCatalog {

McpTool getBrandColors(const PaletteSource& source) {
    JsonSchema::Properties output = {
        {u"id"_s, JsonSchema::string(u"The palette's id (UUID)"_s)},
        {u"name"_s, JsonSchema::string(u"The palette's name"_s)},
        {u"chosenBy"_s,
         JsonSchema::stringEnum({u"setting"_s, u"active"_s},
                                u"\"setting\": the palette the user picked for AI tools; "
                                u"\"active\": no pick, so the palette on the user's bar"_s)},
        {u"colors"_s, PaletteJson::colorsSchema()},
    };
    return McpTool{
        .name = u"get_brand_colors"_s,
        .title = u"Get brand colors"_s,
        .description =
            u"Returns the user's brand colors: the palette they chose in HueShelf for AI tools "
            u"(or, without a choice, the palette on their bar), with each color's name and hex "
            u"code in the user's order, and where it can tell, the role the color suits "
            u"(Background, Text, Primary, ...). Call this whenever the user mentions \"my "
            u"brand colors\", \"my colors\" or \"my palette\", and before choosing colors for "
            u"their code or design. Read fresh on every call."_s,
        .inputSchema = JsonSchema::closedObject({}, {}),
        .outputSchema =
            JsonSchema::object(output, {u"id"_s, u"name"_s, u"chosenBy"_s, u"colors"_s}),
        .isReadOnly = true,
        .call =
            [&source](ToolArguments& arguments) {
                arguments.allowOnly({});
                if (arguments.failed())
                    return ToolResult::failure(arguments.problem());
                const PaletteSnapshot snapshot = source.read();
                const std::optional<ColorTemplate> palette = snapshot.chosen();
                if (!palette)
                    return ToolResult::failure(PaletteArgument::noPalettesSentence());
                return ToolResult::success(QJsonObject{
                    {u"id"_s, uuidText(palette->id)},
                    {u"name"_s, palette->name},
                    {u"chosenBy"_s, chosenByIdentifier(snapshot.chosenBy())},
                    {u"colors"_s, PaletteJson::colors(palette->colors)},
                });
            },
    };
}

McpTool listPalettes(const PaletteSource& source) {
    return McpTool{
        .name = u"list_palettes"_s,
        .title = u"List palettes"_s,
        .description =
            u"Lists every color palette the user keeps in HueShelf, in the user's order: id, "
            u"name, number of colors, whether it is the palette on the user's bar (isActive) "
            u"and whether it is the one chosen for AI tools (isChosen, the one "
            u"get_brand_colors returns). Use get_palette with an id or name for a palette's "
            u"colors."_s,
        .inputSchema = JsonSchema::closedObject({}, {}),
        .outputSchema = JsonSchema::object(
            {{u"palettes"_s, JsonSchema::array(PaletteJson::summarySchema())}}, {u"palettes"_s}),
        .isReadOnly = true,
        .call =
            [&source](ToolArguments& arguments) {
                arguments.allowOnly({});
                if (arguments.failed())
                    return ToolResult::failure(arguments.problem());
                const PaletteSnapshot snapshot = source.read();
                QJsonArray palettes;
                for (const ColorTemplate& palette : snapshot.templates)
                    palettes.append(PaletteJson::summary(palette, snapshot));
                return ToolResult::success(QJsonObject{{u"palettes"_s, palettes}});
            },
    };
}

McpTool getPalette(const PaletteSource& source) {
    return McpTool{
        .name = u"get_palette"_s,
        .title = u"Get a palette"_s,
        .description =
            u"Returns one of the user's HueShelf palettes with its colors (name and hex code, "
            u"in the user's order, with suggested roles). Name the palette by \"id\" (from "
            u"list_palettes) or by \"name\". For the user's brand colors use "
            u"get_brand_colors instead."_s,
        .inputSchema = JsonSchema::closedObject(PaletteArgument::properties(), {}),
        .outputSchema = PaletteJson::paletteSchema(),
        .isReadOnly = true,
        .call =
            [&source](ToolArguments& arguments) {
                arguments.allowOnly({u"id"_s, u"name"_s});
                if (arguments.failed())
                    return ToolResult::failure(arguments.problem());
                const PaletteSnapshot snapshot = source.read();
                const std::optional<ColorTemplate> palette =
                    PaletteArgument::resolve(arguments, snapshot, false);
                if (!palette)
                    return ToolResult::failure(arguments.problem());
                return ToolResult::success(PaletteJson::palette(*palette, snapshot));
            },
    };
}

} // namespace hueshelf::mcp::ToolCatalog
