#include "mcp/PaletteJson.h"

#include "color/ColorUtils.h"
#include "mcp/JsonSchema.h"

#include <QHash>

using namespace Qt::StringLiterals;

namespace hueshelf::mcp::PaletteJson {

namespace {

JsonSchema::Properties summaryProperties() {
    return {
        {u"id"_s, JsonSchema::string(u"The palette's id (UUID)"_s)},
        {u"name"_s, JsonSchema::string()},
        {u"isActive"_s, JsonSchema::boolean(u"The palette shown on the user's bar"_s)},
        {u"isChosen"_s,
         JsonSchema::boolean(u"The palette that get_brand_colors returns: the one the user "
                             u"chose for AI tools"_s)},
        {u"isLocked"_s, JsonSchema::boolean(u"Locked against edits by the user"_s)},
        {u"colorCount"_s, JsonSchema::integer()},
    };
}

QStringList summaryRequired() {
    return {u"id"_s, u"name"_s, u"isActive"_s, u"isChosen"_s, u"isLocked"_s, u"colorCount"_s};
}

} // namespace

QJsonArray colors(const QList<ColorItem>& colors) {
    QHash<QUuid, QString> roles;
    for (const ColorUtils::RoleSuggestion& suggestion : ColorUtils::roleSuggestions(colors)) {
        if (!suggestion.suggestions.isEmpty())
            roles.insert(suggestion.colorId, suggestion.suggestions.constFirst());
    }
    QJsonArray array;
    QString group;
    for (const ColorItem& color : colors) {
        if (color.dividerBefore)
            group = color.dividerLabel;
        QJsonObject object{{u"name"_s, color.name}, {u"hex"_s, color.hex}};
        if (const auto role = roles.constFind(color.id); role != roles.constEnd())
            object.insert(u"role"_s, *role);
        if (!group.isEmpty())
            object.insert(u"group"_s, group);
        array.append(object);
    }
    return array;
}

QJsonObject colorsSchema() {
    return JsonSchema::array(
        JsonSchema::object(
            {
                {u"name"_s, JsonSchema::string(u"The name the user gave the color"_s)},
                {u"hex"_s, JsonSchema::string(u"The color code, #RRGGBB"_s)},
                {u"role"_s, JsonSchema::string(u"The role the color suits in a design "
                                               u"(Background, Text, Primary, Accent, ...)"_s)},
                {u"group"_s, JsonSchema::string(u"The label of the group the color sits in"_s)},
            },
            {u"name"_s, u"hex"_s}),
        u"The colors in the order of the user's bar"_s);
}

QJsonObject summary(const ColorTemplate& palette, const PaletteSnapshot& snapshot) {
    return QJsonObject{
        {u"id"_s, uuidText(palette.id)},
        {u"name"_s, palette.name},
        {u"isActive"_s, snapshot.isActive(palette)},
        {u"isChosen"_s, snapshot.isChosen(palette)},
        {u"isLocked"_s, palette.isLocked},
        {u"colorCount"_s, palette.colors.size()},
    };
}

QJsonObject summarySchema() {
    return JsonSchema::object(summaryProperties(), summaryRequired());
}

QJsonObject palette(const ColorTemplate& palette, const PaletteSnapshot& snapshot) {
    QJsonObject object = summary(palette, snapshot);
    object.insert(u"colors"_s, colors(palette.colors));
    return object;
}

QJsonObject paletteSchema(const QString& description) {
    JsonSchema::Properties properties = summaryProperties();
    properties.append({u"colors"_s, colorsSchema()});
    return JsonSchema::object(properties, summaryRequired() << u"colors"_s, description);
}

} // namespace hueshelf::mcp::PaletteJson
