#include "McpTestHome.h"
#include "SchemaCheck.h"
#include "color/PaletteCheck.h"

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

class PaletteTools : public McpTestHome {
protected:
    const ColorTemplate ocean = makePalette(u"Ocean"_s, {makeColor(u"Navy"_s, u"#1B2A49"_s),
                                                         makeColor(u"Sand"_s, u"#F4E8C1"_s),
                                                         makeColor(u"Teal"_s, u"#81B29A"_s)});
    const ColorTemplate brand = makePalette(
        u"Brand"_s, {makeColor(u"Ink"_s, u"#111111"_s), makeColor(u"Paper"_s, u"#FAFAFA"_s),
                     makeColor(u"Coral"_s, u"#E07A5F"_s, false, true, u"Accents"_s),
                     makeColor(u"Gold"_s, u"#F2CC8F"_s)});
    // Same name as another but for case, and later in the gallery.
    const ColorTemplate brandLower =
        makePalette(u"brand"_s, {makeColor(u"Only"_s, u"#3366FF"_s)}, true);

    void seedAll() { seed({ocean, brand, brandLower}, uuidText(ocean.id)); }

    // Every successful answer also satisfies the schema that tools/list announced for it.
    QJsonObject checkedSuccess(const QString& tool, const QJsonObject& arguments = {}) {
        const QJsonObject structured = success(tool, arguments);
        const QStringList problems = schemaProblems(structured, tools->find(tool)->outputSchema);
        EXPECT_TRUE(problems.isEmpty()) << problems.join(u"; "_s).toStdString();
        return structured;
    }
};

QStringList hexesOf(const QJsonArray& colors) {
    QStringList hexes;
    for (const QJsonValue& color : colors)
        hexes << color.toObject().value(u"hex"_s).toString();
    return hexes;
}

QStringList namesIn(const QJsonArray& colors) {
    QStringList names;
    for (const QJsonValue& color : colors)
        names << color.toObject().value(u"name"_s).toString();
    return names;
}

// Which palette is "my brand colors": the pick when it still exists, else the bar's palette
// (which the load makes the first one when the stored active id names none).
TEST_F(PaletteTools, BrandColorsFollowThePickThenTheActiveThenTheFirst) {
    struct Case {
        const char* label;
        std::optional<QString> pick;
        QJsonValue active;
        const ColorTemplate* expected;
        QString chosenBy;
    };
    const Case cases[] = {
        {"pick", uuidText(brand.id), uuidText(ocean.id), &brand, u"setting"_s},
        {"pick in lower case", uuidText(brand.id).toLower(), uuidText(ocean.id), &brand,
         u"setting"_s},
        {"pick in braces", QString(u'{' + uuidText(brandLower.id) + u'}'), uuidText(ocean.id),
         &brandLower, u"setting"_s},
        {"no pick", std::nullopt, uuidText(ocean.id), &ocean, u"active"_s},
        {"pick of a deleted palette", uuidText(QUuid::createUuid()), uuidText(brand.id), &brand,
         u"active"_s},
        {"pick that isn't an id", u"Brand"_s, uuidText(ocean.id), &ocean, u"active"_s},
        {"nothing valid", u"junk"_s, uuidText(QUuid::createUuid()), &ocean, u"active"_s},
        {"no active id at all", std::nullopt, QJsonValue(), &ocean, u"active"_s},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        seed({ocean, brand, brandLower}, c.active);
        chooseBrand(c.pick.value_or(QString()));
        const QJsonObject answer = checkedSuccess(u"get_brand_colors"_s);
        EXPECT_EQ(answer.value(u"id"_s).toString(), uuidText(c.expected->id));
        EXPECT_EQ(answer.value(u"name"_s).toString(), c.expected->name);
        EXPECT_EQ(answer.value(u"chosenBy"_s).toString(), c.chosenBy);
    }
}

TEST_F(PaletteTools, BrandColorsKeepTheUsersOrderWithRolesAndGroups) {
    seedAll();
    chooseBrand(uuidText(brand.id));
    const QJsonArray colors = checkedSuccess(u"get_brand_colors"_s).value(u"colors"_s).toArray();
    EXPECT_EQ(namesIn(colors), (QStringList{u"Ink"_s, u"Paper"_s, u"Coral"_s, u"Gold"_s}));
    EXPECT_EQ(hexesOf(colors),
              (QStringList{u"#111111"_s, u"#FAFAFA"_s, u"#E07A5F"_s, u"#F2CC8F"_s}));
    // The group starts at Coral and runs to the end.
    EXPECT_FALSE(colors.at(1).toObject().contains(u"group"_s));
    EXPECT_EQ(colors.at(2).toObject().value(u"group"_s), u"Accents"_s);
    EXPECT_EQ(colors.at(3).toObject().value(u"group"_s), u"Accents"_s);
    // The roles are the palette check's own suggestions.
    for (const ColorUtils::RoleSuggestion& suggestion : ColorUtils::roleSuggestions(brand.colors)) {
        for (const QJsonValue& color : colors) {
            if (color.toObject().value(u"name"_s) == suggestion.colorName) {
                EXPECT_EQ(color.toObject().value(u"role"_s).toString(),
                          suggestion.suggestions.value(0));
            }
        }
    }
    // Every readable code has a role, and no two colours share one.
    QStringList roles;
    for (const QJsonValue& color : colors)
        roles << color.toObject().value(u"role"_s).toString();
    EXPECT_EQ(roles.size(), 4);
    EXPECT_FALSE(roles.contains(QString()));
    EXPECT_EQ(roles.removeDuplicates(), 0);
}

// The server lives as long as the AI tool; the user edits meanwhile.
TEST_F(PaletteTools, EveryCallReadsTheFileAfresh) {
    seedAll();
    EXPECT_EQ(checkedSuccess(u"get_brand_colors"_s).value(u"name"_s), u"Ocean"_s);
    chooseBrand(uuidText(brand.id));
    EXPECT_EQ(checkedSuccess(u"get_brand_colors"_s).value(u"name"_s), u"Brand"_s);
    ColorTemplate renamed = brand;
    renamed.name = u"Brand 2026"_s;
    seed({ocean, renamed}, uuidText(ocean.id));
    EXPECT_EQ(checkedSuccess(u"get_brand_colors"_s).value(u"name"_s), u"Brand 2026"_s);
    EXPECT_EQ(checkedSuccess(u"list_palettes"_s).value(u"palettes"_s).toArray().size(), 2);
}

// Reading leaves the home as it was: not a file, not a settings write.
TEST_F(PaletteTools, ReadingToolsWriteNothing) {
    seedAll();
    const QStringList before = filesInHome();
    const QByteArray bytes = fileBytes(prefsPath());
    checkedSuccess(u"get_brand_colors"_s);
    checkedSuccess(u"list_palettes"_s);
    checkedSuccess(u"get_palette"_s, {{u"name"_s, u"Ocean"_s}});
    checkedSuccess(u"check_palette"_s);
    EXPECT_EQ(filesInHome(), before);
    EXPECT_EQ(fileBytes(prefsPath()), bytes);
}

// Without a preferences file the store starts as on first launch; the tools show that, and
// still write nothing.
TEST_F(PaletteTools, WithoutAFileTheFirstLaunchPalettesAreShown) {
    const QJsonObject answer = checkedSuccess(u"get_brand_colors"_s);
    EXPECT_EQ(answer.value(u"name"_s), u"Starter"_s);
    EXPECT_EQ(hexesOf(answer.value(u"colors"_s).toArray()),
              (QStringList{u"#FFA69E"_s, u"#FAF3DD"_s, u"#B8F2E6"_s}));
    EXPECT_TRUE(filesInHome().isEmpty()) << filesInHome().join(u", "_s).toStdString();
}

TEST_F(PaletteTools, AnEmptyStoreIsAToolErrorNotAnEmptyPalette) {
    seed({}, QJsonValue());
    EXPECT_EQ(failure(u"get_brand_colors"_s, {}), u"The user has no palettes in HueShelf yet."_s);
    EXPECT_EQ(failure(u"check_palette"_s, {}), u"The user has no palettes in HueShelf yet."_s);
    EXPECT_TRUE(checkedSuccess(u"list_palettes"_s).value(u"palettes"_s).toArray().isEmpty());
}

TEST_F(PaletteTools, ListShowsEveryPaletteInOrderWithOneActiveAndOneChosen) {
    seedAll();
    chooseBrand(uuidText(brandLower.id));
    const QJsonArray list = checkedSuccess(u"list_palettes"_s).value(u"palettes"_s).toArray();
    ASSERT_EQ(list.size(), 3);
    const ColorTemplate* expected[] = {&ocean, &brand, &brandLower};
    for (qsizetype i = 0; i < 3; ++i) {
        const QJsonObject entry = list.at(i).toObject();
        EXPECT_EQ(entry.value(u"id"_s).toString(), uuidText(expected[i]->id));
        EXPECT_EQ(entry.value(u"name"_s).toString(), expected[i]->name);
        EXPECT_EQ(entry.value(u"colorCount"_s).toInt(), expected[i]->colors.size());
        EXPECT_EQ(entry.value(u"isActive"_s).toBool(), i == 0);
        EXPECT_EQ(entry.value(u"isChosen"_s).toBool(), i == 2);
        EXPECT_EQ(entry.value(u"isLocked"_s).toBool(), i == 2);
    }
}

TEST_F(PaletteTools, GetPaletteFindsByIdInAnyFormAndByNameExactThenInAnyCase) {
    seedAll();
    const std::pair<QJsonObject, const ColorTemplate*> cases[] = {
        {{{u"id"_s, uuidText(brand.id)}}, &brand},
        {{{u"id"_s, uuidText(brand.id).toLower()}}, &brand},
        {{{u"id"_s, QString(u'{' + uuidText(ocean.id) + u'}')}}, &ocean},
        {{{u"name"_s, u"Brand"_s}}, &brand},
        {{{u"name"_s, u"brand"_s}}, &brandLower},
        {{{u"name"_s, u"BRAND"_s}}, &brand}, // no exact match: the first in any case
        {{{u"name"_s, u"ocean"_s}}, &ocean},
        // An id wins over a name.
        {{{u"id"_s, uuidText(ocean.id)}, {u"name"_s, u"Brand"_s}}, &ocean},
    };
    for (const auto& [arguments, expected] : cases) {
        SCOPED_TRACE(toText(arguments));
        const QJsonObject palette = checkedSuccess(u"get_palette"_s, arguments);
        EXPECT_EQ(palette.value(u"id"_s).toString(), uuidText(expected->id));
        EXPECT_EQ(palette.value(u"colors"_s).toArray().size(), expected->colors.size());
    }
}

TEST_F(PaletteTools, GetPaletteRefusalsSayWhatToDo) {
    seedAll();
    const QString unknownId = uuidText(QUuid::createUuid());
    const std::pair<QJsonObject, QString> cases[] = {
        {{},
         u"get_palette needs the palette's \"id\" or \"name\"; call list_palettes to see "
         u"them."_s},
        {{{u"name"_s, u"Forest"_s}},
         u"No palette is named \"Forest\". Call list_palettes to see the palettes' names."_s},
        {{{u"name"_s, u"Ocean "_s}},
         u"No palette is named \"Ocean \". Call list_palettes to see the palettes' names."_s},
        {{{u"id"_s, unknownId}},
         u"No palette has the id \""_s + unknownId +
             u"\". Call list_palettes to see the palettes and their "
             u"ids."_s},
        {{{u"id"_s, u"Ocean"_s}},
         u"No palette has the id \"Ocean\". Call list_palettes to see the palettes and their "
         u"ids."_s},
        {{{u"id"_s, 42}}, u"The argument \"id\" must be a string, not a number."_s},
        {{{u"name"_s, QJsonArray{u"Ocean"_s}}},
         u"The argument \"name\" must be a string, not a list."_s},
        {{{u"palette"_s, u"Ocean"_s}},
         u"get_palette has no argument \"palette\"; it takes \"id\" and \"name\"."_s},
    };
    for (const auto& [arguments, sentence] : cases) {
        SCOPED_TRACE(toText(arguments));
        EXPECT_EQ(failure(u"get_palette"_s, arguments), sentence);
    }
    EXPECT_EQ(failure(u"list_palettes"_s, {{u"all"_s, true}}),
              u"list_palettes takes no arguments, but was given \"all\"."_s);
}

// A null is how many models leave an optional argument out.
TEST_F(PaletteTools, NullArgumentsCountAsAbsent) {
    seedAll();
    const QJsonObject palette =
        checkedSuccess(u"get_palette"_s, {{u"id"_s, QJsonValue::Null}, {u"name"_s, u"Brand"_s}});
    EXPECT_EQ(palette.value(u"name"_s), u"Brand"_s);
}

// The check's answer is the palette check itself: same issues, same order, same words.
TEST_F(PaletteTools, CheckPaletteGivesThePaletteChecksIssuesAndTexts) {
    const ColorTemplate weak = makePalette(
        u"Weak"_s, {makeColor(u"Slate"_s, u"#5A5A5A"_s), makeColor(u"Mist"_s, u"#A0A0A0"_s),
                    makeColor(u"White"_s, u"#FFFFFF"_s), makeColor(u"Almost white"_s, u"#FEFEFE"_s),
                    makeColor(u"Red"_s, u"#D0312D"_s), makeColor(u"Green"_s, u"#3C8D2F"_s)});
    seed({ocean, weak}, uuidText(ocean.id));
    chooseBrand(uuidText(weak.id));
    const QJsonObject answer = checkedSuccess(u"check_palette"_s);
    EXPECT_EQ(answer.value(u"palette"_s), u"Weak"_s);

    const std::vector<PaletteCheck::Issue> expected = PaletteCheck::detect(weak.colors);
    ASSERT_GE(expected.size(), 2u);
    const QJsonArray issues = answer.value(u"issues"_s).toArray();
    ASSERT_EQ(static_cast<std::size_t>(issues.size()), expected.size());
    QStringList kinds;
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const QJsonObject issue = issues.at(static_cast<qsizetype>(i)).toObject();
        EXPECT_EQ(issue.value(u"id"_s).toString(), expected[i].id);
        EXPECT_EQ(issue.value(u"text"_s).toString(), expected[i].text);
        EXPECT_EQ(issue.value(u"color"_s).toObject().value(u"hex"_s).toString(),
                  expected[i].color.hex);
        EXPECT_EQ(issue.value(u"other"_s).toObject().value(u"name"_s).toString(),
                  expected[i].other.name);
        kinds << issue.value(u"kind"_s).toString();
    }
    EXPECT_TRUE(kinds.contains(u"readability"_s));
    EXPECT_TRUE(kinds.contains(u"nearDuplicate"_s));
    EXPECT_EQ(answer.value(u"summary"_s).toString(),
              PaletteCheck::fixCountText(static_cast<int>(expected.size())));
    EXPECT_EQ(answer.value(u"worthKnowing"_s).toArray(),
              QJsonArray::fromStringList(PaletteCheck::worthKnowingLines(weak.colors)));
}

TEST_F(PaletteTools, CheckPaletteTakesANamedPaletteOrBareCodes) {
    seedAll();
    const QJsonObject named = checkedSuccess(u"check_palette"_s, {{u"name"_s, u"Brand"_s}});
    EXPECT_EQ(named.value(u"palette"_s), u"Brand"_s);
    EXPECT_EQ(namesIn(named.value(u"colors"_s).toArray()), namesOf(brand.colors));

    const QJsonObject bare = checkedSuccess(
        u"check_palette"_s,
        {{u"colors"_s, QJsonArray{u"#ffffff"_s, u"fefefe"_s, u"rgb(17, 17, 17)"_s}}});
    EXPECT_TRUE(bare.value(u"palette"_s).isNull());
    EXPECT_EQ(hexesOf(bare.value(u"colors"_s).toArray()),
              (QStringList{u"#FFFFFF"_s, u"#FEFEFE"_s, u"#111111"_s}));
    // Two near-white colours get distinct generated names, as the bar would give them.
    const QStringList names = namesIn(bare.value(u"colors"_s).toArray());
    EXPECT_NE(names.at(0), names.at(1));
    bool nearDuplicate = false;
    for (const QJsonValue& issue : bare.value(u"issues"_s).toArray())
        nearDuplicate = nearDuplicate || issue.toObject().value(u"kind"_s) == u"nearDuplicate"_s;
    EXPECT_TRUE(nearDuplicate);
}

TEST_F(PaletteTools, CheckPaletteRefusals) {
    seedAll();
    const std::pair<QJsonObject, QString> cases[] = {
        {{{u"colors"_s, QJsonArray()}},
         u"The list \"colors\" is empty; give at least one color code."_s},
        {{{u"colors"_s, QJsonArray{u"#FFFFFF"_s, u"teal-ish"_s}}},
         u"\"teal-ish\" is not a color code HueShelf can read. Write colors as #RRGGBB, #RGB, "
         u"rgb(r, g, b) or hsl(h, s%, l%)."_s},
        {{{u"colors"_s, QJsonArray{1, 2}}},
         u"Every entry of \"colors\" must be a color code as a string, not a number."_s},
        {{{u"colors"_s, u"#FFFFFF"_s}}, u"The argument \"colors\" must be a list, not a string."_s},
        {{{u"colors"_s, QJsonArray{u"#FFFFFF"_s}}, {u"name"_s, u"Brand"_s}},
         u"Give either a palette (\"id\" or \"name\") or a list of \"colors\", not both."_s},
        {{{u"name"_s, u"Nope"_s}},
         u"No palette is named \"Nope\". Call list_palettes to see the palettes' names."_s},
    };
    for (const auto& [arguments, sentence] : cases) {
        SCOPED_TRACE(toText(arguments));
        EXPECT_EQ(failure(u"check_palette"_s, arguments), sentence);
    }
}

} // namespace
} // namespace hueshelf::testing
