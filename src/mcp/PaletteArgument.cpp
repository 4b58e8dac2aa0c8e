#include "mcp/PaletteArgument.h"

using namespace Qt::StringLiterals;

namespace hueshelf::mcp::PaletteArgument {

JsonSchema::Properties properties() {
    return {
        {u"id"_s, JsonSchema::string(u"The palette's id, as list_palettes gives it"_s)},
        {u"name"_s, JsonSchema::string(u"The palette's name; matched exactly first, then "
                                       u"ignoring upper and lower case"_s)},
    };
}

QString noPalettesSentence() {
    return u"The user has no palettes in HueShelf yet."_s;
}

std::optional<ColorTemplate> resolve(ToolArguments& arguments, const PaletteSnapshot& snapshot,
                                     bool fallBackToChosen) {
    const std::optional<QString> id = arguments.optionalText(u"id"_s);
    const std::optional<QString> name = arguments.optionalText(u"name"_s);
    if (arguments.failed())
        return std::nullopt;
    if (id) {
        if (std::optional<ColorTemplate> palette = snapshot.findById(*id))
            return palette;
        arguments.fail(u"No palette has the id \""_s + *id +
                       u"\". Call list_palettes to see the palettes and their ids."_s);
        return std::nullopt;
    }
    if (name) {
        if (std::optional<ColorTemplate> palette = snapshot.findByName(*name))
            return palette;
        arguments.fail(u"No palette is named \""_s + *name +
                       u"\". Call list_palettes to see the palettes' names."_s);
        return std::nullopt;
    }
    if (snapshot.templates.isEmpty()) {
        arguments.fail(noPalettesSentence());
        return std::nullopt;
    }
    if (!fallBackToChosen) {
        arguments.fail(arguments.toolName() +
                       u" needs the palette's \"id\" or \"name\"; call list_palettes to see "
                       u"them."_s);
        return std::nullopt;
    }
    return snapshot.chosen();
}

} // namespace hueshelf::mcp::PaletteArgument
