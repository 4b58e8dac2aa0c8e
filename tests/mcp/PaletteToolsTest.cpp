#include "McpTestHome.h"
#include "color/ColorUtils.h"
#include "color/PaletteCheck.h"

#include <cmath>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

class PaletteTools : public McpTestHome {
protected:
    const ColorTemplate ocean = makePalette(
        u"Ocean"_s, {makeColor(u"Navy"_s, u"#1B2A49"_s), makeColor(u"Sand"_s, u"#F4E8C1"_s)});
    const ColorTemplate brand = makePalette(
        u"Brand"_s, {makeColor(u"Ink"_s, u"#111111"_s), makeColor(u"Paper"_s, u"#FAFAFA"_s),
                     makeColor(u"Coral"_s, u"#E07A5F"_s, false, true, u"Accents"_s),
                     makeColor(u"Gold"_s, u"#F2CC8F"_s)});
    // Named like another but for case, later in the gallery, and locked.
    const ColorTemplate brandLower =
        makePalette(u"brand"_s, {makeColor(u"Only"_s, u"#3366FF"_s)}, true);

    void seedAll() { seed({ocean, brand, brandLower}, uuidText(ocean.id)); }
};

QStringList field(const QJsonArray& objects, const QString& key) {
    QStringList values;
    for (const QJsonValue& object : objects)
        values << object[key].toString();
    return values;
}

// "My brand colors" are the pick while it names a palette, else the bar's (or the first).
TEST_F(PaletteTools, brandColorsFollowThePickThenTheActive) {
    const std::tuple<QString, QJsonValue, const ColorTemplate*, QString> cases[] = {
        {uuidText(brand.id).toLower(), uuidText(ocean.id), &brand, u"setting"_s},
        {u'{' + uuidText(brandLower.id) + u'}', uuidText(ocean.id), &brandLower, u"setting"_s},
        {uuidText(QUuid::createUuid()), uuidText(brand.id), &brand, u"active"_s},
        {u"Brand"_s, QJsonValue(), &ocean, u"active"_s},
    };
    for (const auto& [pick, active, expected, chosenBy] : cases) {
        SCOPED_TRACE(pick.toStdString());
        seed({ocean, brand, brandLower}, active);
        chooseBrand(pick);
        const QJsonObject answer = success(u"get_brand_colors"_s);
        EXPECT_EQ(answer.value(u"id"_s).toString(), uuidText(expected->id));
        EXPECT_EQ(answer.value(u"chosenBy"_s).toString(), chosenBy);
    }
}

// In the user's order, each group label carried to the end of its group, every colour with a
// role of its own; listed with the others; read afresh on every call, writing nothing.
TEST_F(PaletteTools, brandColorsAsTheyAreNow) {
    seedAll();
    EXPECT_EQ(success(u"get_brand_colors"_s).value(u"name"_s), u"Ocean"_s);
    chooseBrand(uuidText(brand.id));
    const QByteArray bytes = fileBytes(locations().preferencesFile);
    const QJsonArray colors = success(u"get_brand_colors"_s).value(u"colors"_s).toArray();
    EXPECT_EQ(field(colors, u"hex"_s),
              (QStringList{u"#111111"_s, u"#FAFAFA"_s, u"#E07A5F"_s, u"#F2CC8F"_s}));
    EXPECT_EQ(field(colors, u"group"_s), (QStringList{{}, {}, u"Accents"_s, u"Accents"_s}));
    QStringList roles = field(colors, u"role"_s);
    const ColorUtils::RoleSuggestion hint = ColorUtils::roleSuggestions(brand.colors).front();
    EXPECT_EQ(roles.at(field(colors, u"name"_s).indexOf(hint.colorName)), hint.suggestions.first());
    EXPECT_EQ(roles.removeDuplicates() + roles.count(QString()), 0);
    QString rows; // each palette's name, colour count, and whether active, chosen, locked
    for (const QJsonValue& entry : success(u"list_palettes"_s).value(u"palettes"_s).toArray())
        for (const char* key : {"name", "colorCount", "isActive", "isChosen", "isLocked"})
            rows += entry[QString::fromUtf8(key)].toVariant().toString() + u' ';
    EXPECT_EQ(rows,
              u"Ocean 2 true false false Brand 4 false true false brand 1 false false true "_s);
    EXPECT_EQ(fileBytes(locations().preferencesFile), bytes);
    seed({});
    EXPECT_EQ(failure(u"get_brand_colors"_s, {}), u"The user has no palettes in HueShelf yet."_s);
}

// By id in any form (winning over a name), else by name exactly, else in any case.
TEST_F(PaletteTools, getPaletteFindsByIdThenNameAndSaysWhatToDoOtherwise) {
    seedAll();
    const std::pair<QJsonObject, QString> found[] = {
        {{{u"id"_s, QString(u'{' + uuidText(brand.id).toLower() + u'}')}, {u"name"_s, u"Ocean"_s}},
         u"Brand"_s},
        {{{u"name"_s, u"brand"_s}}, u"brand"_s},
        {{{u"name"_s, u"BRAND"_s}, {u"id"_s, QJsonValue::Null}}, u"Brand"_s},
    };
    for (const auto& [arguments, name] : found)
        EXPECT_EQ(success(u"get_palette"_s, arguments).value(u"name"_s), name);
    const std::pair<QJsonObject, QString> refused[] = {
        {{},
         u"get_palette needs the palette's \"id\" or \"name\"; call list_palettes to see them."_s},
        {{{u"name"_s, u"Ocean "_s}},
         u"No palette is named \"Ocean \". Call list_palettes to see the palettes' names."_s},
        {{{u"id"_s, 42}}, u"The argument \"id\" must be a string, not a number."_s},
        {{{u"palette"_s, u"x"_s}},
         u"get_palette has no argument \"palette\"; it takes \"id\" and \"name\"."_s},
    };
    for (const auto& [arguments, sentence] : refused)
        EXPECT_EQ(failure(u"get_palette"_s, arguments), sentence);
    EXPECT_EQ(failure(u"list_palettes"_s, {{u"all"_s, true}}),
              u"list_palettes takes no arguments, but was given \"all\"."_s);
}

// The check's answer is the palette check itself; it takes a palette or codes, not both.
TEST_F(PaletteTools, checkPaletteGivesThePaletteChecksIssues) {
    const ColorTemplate weak = makePalette(
        u"Weak"_s, {makeColor(u"Slate"_s, u"#5A5A5A"_s), makeColor(u"Mist"_s, u"#A0A0A0"_s),
                    makeColor(u"White"_s, u"#FFFFFF"_s), makeColor(u"Near"_s, u"#FEFEFE"_s)});
    seed({ocean, weak});
    const QJsonObject answer = success(u"check_palette"_s, {{u"name"_s, u"Weak"_s}});
    QStringList expected;
    for (const PaletteCheck::Issue& issue : PaletteCheck::detect(weak.colors))
        expected << issue.text;
    EXPECT_EQ(field(answer.value(u"issues"_s).toArray(), u"text"_s), expected);
    EXPECT_EQ(answer.value(u"summary"_s).toString(), PaletteCheck::fixCountText(expected.size()));
    EXPECT_EQ(
        failure(u"check_palette"_s, {{u"colors"_s, QJsonArray{u"#FFF"_s}}, {u"id"_s, u"x"_s}}),
        u"Give either a palette (\"id\" or \"name\") or a list of \"colors\", not both."_s);
}

// Each mark flips at its threshold, decided on the exact ratio; the ratio shown is cut, never
// rounded up; a failing pair gets a foreground that passes, a passing one none.
TEST_F(PaletteTools, contrastMarksAtTheirThresholds) {
    const std::pair<QString, QString> cases[] = {
        // #767676 is just above 4.5 on white, #777777 below; #595959 above 7; #949494 above 3.
        {u"767676"_s, u"1101 readable"_s},
        {u"#777777"_s, u"0100 lowContrast"_s},
        {u"rgb(89, 89, 89)"_s, u"1111 readable"_s},
        {u"#949494"_s, u"0100 lowContrast"_s},
        {u"#959595"_s, u"0000 poor"_s},
    };
    for (const auto& [foreground, marks] : cases) {
        SCOPED_TRACE(foreground.toStdString());
        const QJsonObject answer = success(
            u"check_contrast"_s, {{u"foreground"_s, foreground}, {u"background"_s, u"#FFF"_s}});
        const QJsonObject passes = answer.value(u"passes"_s).toObject();
        QString shown;
        for (const char* mark : {"aaNormalText", "aaLargeText", "aaaNormalText", "aaaLargeText"})
            shown += passes[QString::fromUtf8(mark)].toBool() ? u'1' : u'0';
        EXPECT_EQ(shown + u' ' + answer.value(u"level"_s).toString(), marks);
        const QString hex = answer.value(u"foreground"_s).toString();
        const double ratio = ColorUtils::contrastRatio(
            *ColorUtils::relativeLuminance(hex), *ColorUtils::relativeLuminance(u"#FFFFFF"_s));
        EXPECT_EQ(answer.value(u"ratio"_s).toDouble(), std::floor(ratio * 100.0) / 100.0);
        const QJsonValue suggested = answer.value(u"suggestedForeground"_s);
        EXPECT_EQ(suggested.isNull(), marks.startsWith(u'1'));
        if (!suggested.isNull()) {
            EXPECT_EQ(suggested, *ColorUtils::adjustedForContrast(hex, u"#FFFFFF"_s, 4.5));
        }
    }
    EXPECT_EQ(failure(u"check_contrast"_s, {{u"foreground"_s, u"#000"_s}}),
              u"check_contrast needs the argument \"background\"."_s);
}

TEST_F(PaletteTools, convertNamesTheCssVariableAsAsked) {
    const QJsonObject answer = success(u"convert_color"_s, {{u"color"_s, u"hsl(225, 100%, 60%)"_s},
                                                            {u"name"_s, u" Brand Ink "_s}});
    EXPECT_EQ(answer[u"formats"_s][u"css-var"_s], u"--brand-ink: #3366FF"_s);
    EXPECT_EQ(answer.value(u"rgb"_s), (QJsonObject{{u"r"_s, 51}, {u"g"_s, 102}, {u"b"_s, 255}}));
}

} // namespace
} // namespace hueshelf::testing
