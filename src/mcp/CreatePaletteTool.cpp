#include "color/ColorCodeInput.h"
#include "mcp/JsonSchema.h"
#include "mcp/PaletteJson.h"
#include "mcp/PaletteSource.h"
#include "mcp/ToolCatalog.h"
#include "model/StoreTexts.h"
#include "model/TemplateNaming.h"
#include "model/WantedColors.h"

using namespace Qt::StringLiterals;

namespace hueshelf::mcp::ToolCatalog {

namespace {

std::optional<WantedColor> readEntry(ToolArguments& arguments, const QJsonValue& value,
                                     qsizetype index) {
    const QString entry = u"Entry "_s + QString::number(index + 1) + u" of \"colors\""_s;
    QString code;
    QString name;
    if (value.isString()) {
        code = value.toString();
    } else if (value.isObject()) {
        const QJsonObject object = value.toObject();
        for (auto it = object.constBegin(); it != object.constEnd(); ++it) {
            if (it.key() != u"hex"_s && it.key() != u"name"_s) {
                arguments.fail(entry + u" has no field \""_s + it.key() +
                               u"\"; an entry takes \"hex\" and an optional \"name\"."_s);
                return std::nullopt;
            }
        }
        if (!object.value(u"hex"_s).isString()) {
            arguments.fail(entry + u" needs its color code as a string under \"hex\"."_s);
            return std::nullopt;
        }
        const QJsonValue given = object.value(u"name"_s);
        if (!given.isUndefined() && !given.isNull() && !given.isString()) {
            arguments.fail(entry + u" has a \"name\" that is "_s + jsonTypeText(given) +
                           u", not a string."_s);
            return std::nullopt;
        }
        code = object.value(u"hex"_s).toString();
        name = TemplateNaming::trimmedOfBlanks(given.toString());
    } else {
        arguments.fail(entry +
                       u" must be a color code or an object with \"hex\" and an "
                       u"optional \"name\", not "_s +
                       jsonTypeText(value) + u'.');
        return std::nullopt;
    }
    const std::optional<QString> hex = ColorCodeInput::read(code);
    if (!hex) {
        arguments.fail(entry + u": "_s + ColorCodeInput::unreadableSentence(code));
        return std::nullopt;
    }
    return WantedColor{*hex, name};
}

// Every entry read before anything is made: one bad code refuses the whole palette.
std::optional<QList<ColorItem>> readColors(ToolArguments& arguments, const QJsonArray& list) {
    if (list.isEmpty()) {
        arguments.fail(u"create_palette needs at least one color in \"colors\"."_s);
        return std::nullopt;
    }
    QList<WantedColor> wanted;
    for (qsizetype i = 0; i < list.size(); ++i) {
        const std::optional<WantedColor> color = readEntry(arguments, list.at(i), i);
        if (!color)
            return std::nullopt;
        wanted.append(*color);
    }
    return colorItemsFor(wanted);
}

QJsonObject inputSchema() {
    const QString forms = ColorCodeInput::formsText();
    const QJsonObject entry = JsonSchema::anyOf({
        JsonSchema::string(u"A color code. "_s + forms),
        JsonSchema::closedObject(
            {{u"hex"_s, JsonSchema::string(u"The color code. "_s + forms)},
             {u"name"_s, JsonSchema::string(u"The color's name, such as \"Primary\" or "
                                            u"\"Ocean Blue\"; a descriptive name by default"_s)}},
            {u"hex"_s}),
    });
    return JsonSchema::closedObject(
        {
            {u"name"_s, JsonSchema::string(u"The palette's name; a number is added when the "
                                           u"user already has a palette of that name"_s)},
            {u"colors"_s, JsonSchema::array(entry, u"The colors in order, at least one"_s)},
        },
        {u"name"_s, u"colors"_s});
}

} // namespace

McpTool createPalette(const PaletteSource& source) {
    return McpTool{
        .name = u"create_palette"_s,
        .title = u"Create a palette"_s,
        .description =
            u"Saves a new palette in the user's HueShelf, where it becomes the palette on "
            u"their bar. Give the palette a \"name\" and its \"colors\" in order, each a color "
            u"code or an object with \"hex\" and \"name\". Nothing existing is changed; a name "
            u"already in use gets a number added. Only call this when the user asks to save "
            u"or create a palette. Returns the palette as saved."_s,
        .inputSchema = inputSchema(),
        .outputSchema = JsonSchema::object(
            {
                {u"message"_s, JsonSchema::string(u"What HueShelf tells the user"_s)},
                {u"palette"_s, PaletteJson::paletteSchema(u"The new palette as saved"_s)},
            },
            {u"message"_s, u"palette"_s}),
        .isReadOnly = false,
        .call =
            [&source](ToolArguments& arguments) {
                arguments.allowOnly({u"name"_s, u"colors"_s});
                const std::optional<QString> wantedName = arguments.requiredText(u"name"_s);
                const std::optional<QJsonArray> list = arguments.requiredList(u"colors"_s);
                const QString name =
                    wantedName ? TemplateNaming::trimmedOfBlanks(*wantedName) : QString();
                if (wantedName && name.isEmpty())
                    arguments.fail(u"The palette's \"name\" is blank; give the palette a name."_s);
                const std::optional<QList<ColorItem>> colors =
                    arguments.failed() ? std::nullopt : readColors(arguments, *list);
                if (arguments.failed())
                    return ToolResult::failure(arguments.problem());

                const ColorTemplate created = source.create(name, *colors);
                // Read back as any other caller would see it now.
                const PaletteSnapshot snapshot = source.read();
                const ColorTemplate palette =
                    snapshot.findById(uuidText(created.id)).value_or(created);
                return ToolResult::success(QJsonObject{
                    {u"message"_s, StoreTexts::createdAnnouncement(palette.name)},
                    {u"palette"_s, PaletteJson::palette(palette, snapshot)},
                });
            },
    };
}

} // namespace hueshelf::mcp::ToolCatalog
