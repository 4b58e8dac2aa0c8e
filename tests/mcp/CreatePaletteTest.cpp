#include "McpTestHome.h"
#include "SchemaCheck.h"
#include "cli/StoreSession.h"
#include "color/ColorUtils.h"

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

class CreatePalette : public McpTestHome {
protected:
    const ColorTemplate ocean = makePalette(
        u"Ocean"_s, {makeColor(u"Navy"_s, u"#1B2A49"_s), makeColor(u"Sand"_s, u"#F4E8C1"_s)});
    const ColorTemplate sunset = makePalette(u"Sunset"_s, {makeColor(u"Red"_s, u"#FF5E5B"_s)});

    void SetUp() override { seed({ocean, sunset}, uuidText(ocean.id)); }

    QJsonObject created(const QJsonObject& arguments) {
        const QJsonObject structured = success(u"create_palette"_s, arguments);
        const QStringList problems =
            schemaProblems(structured, tools->find(u"create_palette"_s)->outputSchema);
        EXPECT_TRUE(problems.isEmpty()) << problems.join(u"; "_s).toStdString();
        return structured;
    }

    // A second session, opened as another command would open it, after the call.
    QList<ColorTemplate> readBack() const {
        const cli::StoreSession session(cli::StoreSession::Access::readOnly, home.paths(),
                                        QProcessEnvironment());
        return session.storage().templates();
    }
};

TEST_F(CreatePalette, AddsThePaletteToTheFileAndMakesItActive) {
    const QJsonObject answer =
        created({{u"name"_s, u"Dusk"_s},
                 {u"colors"_s,
                  QJsonArray{u"#3d405b"_s,
                             QJsonObject{{u"hex"_s, u"rgb(0, 0, 0)"_s}, {u"name"_s, u" Ink "_s}},
                             u"#FFF"_s, QJsonObject{{u"hex"_s, u"#3D405B"_s}}}}});
    EXPECT_EQ(answer.value(u"message"_s), u"Created \"Dusk\""_s);
    const QJsonObject palette = answer.value(u"palette"_s).toObject();
    EXPECT_EQ(palette.value(u"name"_s), u"Dusk"_s);
    EXPECT_TRUE(palette.value(u"isActive"_s).toBool());

    const QList<ColorTemplate> stored = readBack();
    ASSERT_EQ(stored.size(), 3);
    EXPECT_EQ(namesOf(stored), (QStringList{u"Ocean"_s, u"Sunset"_s, u"Dusk"_s}));
    const ColorTemplate& dusk = stored.at(2);
    EXPECT_EQ(palette.value(u"id"_s).toString(), uuidText(dusk.id));
    QStringList hexes;
    for (const ColorItem& color : dusk.colors)
        hexes << color.hex;
    EXPECT_EQ(hexes, (QStringList{u"#3D405B"_s, u"#000000"_s, u"#FFFFFF"_s, u"#3D405B"_s}));
    // Given names stay the user's; the others are generated, unique, and follow the colour.
    EXPECT_EQ(dusk.colors.at(1).name, u"Ink"_s);
    EXPECT_FALSE(dusk.colors.at(1).isAutoNamed);
    const QString generated = ColorUtils::colorName(u"#3D405B"_s);
    EXPECT_EQ(dusk.colors.at(0).name, generated);
    EXPECT_TRUE(dusk.colors.at(0).isAutoNamed);
    EXPECT_EQ(dusk.colors.at(3).name,
              ColorUtils::uniqueName(generated, {generated, u"Ink"_s, dusk.colors.at(2).name}));
    EXPECT_NE(dusk.colors.at(3).name, dusk.colors.at(0).name);
    // As a new palette is made: revision 1, stamped by the store's clock, hash of its own.
    EXPECT_EQ(dusk.revision, 1);
    EXPECT_FALSE(dusk.contentHash.isEmpty());

    // Made active in the file, and the other writers' keys kept.
    const QJsonObject file = fileObject();
    EXPECT_EQ(file.value(PreferencesKeys::activeTemplateId).toString(), uuidText(dusk.id));
    EXPECT_EQ(file.value(kForeignKey), QJsonValue(QJsonObject{{u"keep"_s, true}}));
}

TEST_F(CreatePalette, ANameInUseGetsTheStoresNumber) {
    EXPECT_EQ(created({{u"name"_s, u"Ocean"_s}, {u"colors"_s, QJsonArray{u"#000000"_s}}})
                  .value(u"palette"_s)
                  .toObject()
                  .value(u"name"_s),
              u"Ocean 2"_s);
    EXPECT_EQ(created({{u"name"_s, u"Ocean"_s}, {u"colors"_s, QJsonArray{u"#000000"_s}}})
                  .value(u"message"_s),
              u"Created \"Ocean 3\""_s);
    // Case counts, blanks around the name don't.
    EXPECT_EQ(created({{u"name"_s, u" ocean\t"_s}, {u"colors"_s, QJsonArray{u"#000000"_s}}})
                  .value(u"palette"_s)
                  .toObject()
                  .value(u"name"_s),
              u"ocean"_s);
    EXPECT_EQ(namesOf(readBack()),
              (QStringList{u"Ocean"_s, u"Sunset"_s, u"Ocean 2"_s, u"Ocean 3"_s, u"ocean"_s}));
}

// One bad entry refuses the whole palette, and the file is not touched.
TEST_F(CreatePalette, RefusalsNameTheProblemAndWriteNothing) {
    const QByteArray before = fileBytes(prefsPath());
    const std::pair<QJsonObject, QString> cases[] = {
        {{{u"colors"_s, QJsonArray{u"#000000"_s}}},
         u"create_palette needs the argument \"name\"."_s},
        {{{u"name"_s, u"X"_s}}, u"create_palette needs the argument \"colors\"."_s},
        {{{u"name"_s, u"  "_s}, {u"colors"_s, QJsonArray{u"#000000"_s}}},
         u"The palette's \"name\" is blank; give the palette a name."_s},
        {{{u"name"_s, u"X"_s}, {u"colors"_s, QJsonArray()}},
         u"create_palette needs at least one color in \"colors\"."_s},
        {{{u"name"_s, u"X"_s}, {u"colors"_s, u"#000000"_s}},
         u"The argument \"colors\" must be a list, not a string."_s},
        {{{u"name"_s, u"X"_s}, {u"colors"_s, QJsonArray{u"#000000"_s, u"sky blue"_s}}},
         u"Entry 2 of \"colors\": \"sky blue\" is not a color code HueShelf can read. Write "
         u"colors as #RRGGBB, #RGB, rgb(r, g, b) or hsl(h, s%, l%)."_s},
        {{{u"name"_s, u"X"_s}, {u"colors"_s, QJsonArray{7}}},
         u"Entry 1 of \"colors\" must be a color code or an object with \"hex\" and an "
         u"optional \"name\", not a number."_s},
        {{{u"name"_s, u"X"_s}, {u"colors"_s, QJsonArray{QJsonObject{{u"name"_s, u"Ink"_s}}}}},
         u"Entry 1 of \"colors\" needs its color code as a string under \"hex\"."_s},
        {{{u"name"_s, u"X"_s},
          {u"colors"_s, QJsonArray{QJsonObject{{u"hex"_s, u"#000000"_s}, {u"name"_s, 3}}}}},
         u"Entry 1 of \"colors\" has a \"name\" that is a number, not a string."_s},
        {{{u"name"_s, u"X"_s}, {u"colors"_s, QJsonArray{QJsonObject{{u"code"_s, u"#000000"_s}}}}},
         u"Entry 1 of \"colors\" has no field \"code\"; an entry takes \"hex\" and an optional "
         u"\"name\"."_s},
        {{{u"name"_s, u"X"_s}, {u"colors"_s, QJsonArray{u"#000000"_s}}, {u"activate"_s, true}},
         u"create_palette has no argument \"activate\"; it takes \"name\" and \"colors\"."_s},
    };
    for (const auto& [arguments, sentence] : cases) {
        SCOPED_TRACE(toText(arguments));
        EXPECT_EQ(failure(u"create_palette"_s, arguments), sentence);
    }
    EXPECT_EQ(fileBytes(prefsPath()), before);
}

// The bar has the store open and keeps saving; the server's palette arrives between two of its
// saves, and the bar's next save merges it rather than writing over it.
TEST_F(CreatePalette, ARunningStoreMergesThePaletteIntoItsNextSave) {
    cli::StoreSession bar(cli::StoreSession::Access::readWrite, home.paths(),
                          QProcessEnvironment());
    bar.storage().createTemplate(u"Bar's own"_s, {makeColor(u"Moss"_s, u"#4A5D23"_s)});
    bar.close();

    const QJsonObject answer =
        created({{u"name"_s, u"From the tool"_s}, {u"colors"_s, QJsonArray{u"#123456"_s}}});
    // The tool's session saw the bar's palette already in the file.
    EXPECT_EQ(namesOf(readBack()),
              (QStringList{u"Ocean"_s, u"Sunset"_s, u"Bar's own"_s, u"From the tool"_s}));

    bar.storage().createTemplate(u"Later"_s, {makeColor(u"Clay"_s, u"#B66D4B"_s)});
    bar.close();
    // The merge decides the order; what counts is that nothing was written over.
    const QList<ColorTemplate> stored = fileTemplates();
    QStringList names = namesOf(stored);
    names.sort();
    EXPECT_EQ(names, (QStringList{u"Bar's own"_s, u"From the tool"_s, u"Later"_s, u"Ocean"_s,
                                  u"Sunset"_s}));
    const QString toolId = answer.value(u"palette"_s).toObject().value(u"id"_s).toString();
    bool found = false;
    for (const ColorTemplate& palette : stored)
        found = found || (uuidText(palette.id) == toolId && palette.name == u"From the tool"_s);
    EXPECT_TRUE(found);
}

TEST_F(CreatePalette, TheNewPaletteIsWhatTheOtherToolsSeeNext) {
    const QJsonObject answer =
        created({{u"name"_s, u"Fresh"_s}, {u"colors"_s, QJsonArray{u"#ABCDEF"_s}}});
    const QString id = answer.value(u"palette"_s).toObject().value(u"id"_s).toString();
    EXPECT_EQ(success(u"get_palette"_s, {{u"id"_s, id}}).value(u"name"_s), u"Fresh"_s);
    // Active now, and with no pick for AI tools, so also the brand colours.
    EXPECT_EQ(success(u"get_brand_colors"_s).value(u"id"_s).toString(), id);
}

} // namespace
} // namespace hueshelf::testing
