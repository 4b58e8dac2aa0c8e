#include "McpTestHome.h"
#include "color/ColorUtils.h"
#include "model/StoreSession.h"

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

class CreatePalette : public McpTestHome {
protected:
    void SetUp() override { seed({makePalette(u"Ocean"_s, {makeColor(u"Navy"_s, u"#1B2A49"_s)})}); }
    QString create(const QByteArray& arguments, bool refused = false) {
        const QJsonObject json = QJsonDocument::fromJson(arguments).object();
        return refused ? failure(u"create_palette"_s, json)
                       : success(u"create_palette"_s, json).value(u"message"_s).toString();
    }
};

// Saved through the store: appended, made active, other writers' keys kept; given names stay,
// the others follow the colour and are unique; a name in use gets the store's number.
TEST_F(CreatePalette, addsThePaletteToTheFileAndMakesItActive) {
    EXPECT_EQ(create(R"({"name":" Ocean\t","colors":["#3d405b",{"name":" Ink ","hex":"#000"},)"
                     R"({"hex":"#3D405B"}]})"),
              u"Created \"Ocean 2\""_s);
    // Read back by a second session, opened as another command would open it.
    const QList<ColorTemplate> stored =
        StoreSession(StoreSession::Access::readOnly, home.paths(), QProcessEnvironment())
            .storage()
            .templates();
    ASSERT_EQ(namesOf(stored), (QStringList{u"Ocean"_s, u"Ocean 2"_s}));
    const ColorTemplate& made = stored.at(1);
    const QString generated = ColorUtils::colorName(u"#3D405B"_s);
    EXPECT_EQ(namesOf(made.colors),
              (QStringList{generated, u"Ink"_s,
                           ColorUtils::uniqueName(generated, {generated, u"Ink"_s})}));
    EXPECT_EQ(made.colors.at(1).hex, u"#000000"_s);
    EXPECT_FALSE(made.colors.at(1).isAutoNamed);
    EXPECT_TRUE(made.colors.at(2).isAutoNamed);
    const QJsonObject file = PreferencesFile::read(locations().preferencesFile).value();
    EXPECT_EQ(file.value(PreferencesKeys::activeTemplateId).toString(), uuidText(made.id));
    EXPECT_EQ(file.value(u"helperState"_s), true);
    EXPECT_EQ(success(u"get_brand_colors"_s).value(u"id"_s).toString(), uuidText(made.id));
}

// One bad entry refuses the whole palette, and the file is not touched.
TEST_F(CreatePalette, refusalsNameTheProblemAndWriteNothing) {
    const QByteArray before = fileBytes(locations().preferencesFile);
    EXPECT_EQ(create(R"({"name":"  ","colors":["#000000"]})", true),
              u"The palette's \"name\" is blank; give the palette a name."_s);
    EXPECT_EQ(create(R"({"name":"X","colors":["#000000","sky blue"]})", true),
              u"Entry 2 of \"colors\": \"sky blue\" is not a color code HueShelf can read. Write "
              u"colors as #RRGGBB, #RGB, rgb(r, g, b) or hsl(h, s%, l%)."_s);
    EXPECT_EQ(create(R"({"name":"X","colors":[{"code":"#000000"}]})", true),
              u"Entry 1 of \"colors\" has no field \"code\"; an entry takes \"hex\" and an "
              u"optional \"name\"."_s);
    EXPECT_EQ(fileBytes(locations().preferencesFile), before);
}

} // namespace
} // namespace hueshelf::testing
