#include "HelperTestHome.h"
#include "color/ColorUtils.h"
#include "model/StoreTexts.h"

#include <string>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

// A home with three palettes: Ocean (active, a group after its first colour), Locked (locked,
// with a locked colour), Sunset.
class Requests : public HelperTestHome {
protected:
    void SetUp() override {
        ocean =
            makePalette(u"Ocean"_s, {makeColor(u"Navy"_s, u"#1B2A49"_s),
                                     makeColor(u"Foam"_s, u"#E0F7FA"_s, false, true, u"Lights"_s)});
        locked = makePalette(u"Locked"_s, {makeColor(u"Ink"_s, u"#111111"_s, true)}, true);
        sunset = makePalette(u"Sunset"_s, {makeColor(u"Coral"_s, u"#FF7F50"_s)});
        seed({ocean, locked, sunset}, uuidText(ocean.id));
    }

    const ColorTemplate* storedPalette(const QUuid& id) const {
        m_stored = stored();
        for (const ColorTemplate& palette : m_stored) {
            if (palette.id == id)
                return &palette;
        }
        return nullptr;
    }

    ColorTemplate ocean;
    ColorTemplate locked;
    ColorTemplate sunset;

private:
    mutable QList<ColorTemplate> m_stored;
};

TEST_F(Requests, helloNamesTheProtocolAndTheProgram) {
    const QJsonObject reply = ask(R"({"type":"hello"})");
    EXPECT_EQ(reply, (QJsonObject{{u"type"_s, u"hello"_s},
                                  {u"protocol"_s, 1},
                                  {u"version"_s, QStringLiteral(HUESHELF_VERSION)}}));
}

// The store's order, its active palette, both kinds of lock, ids as upper-case text.
TEST_F(Requests, palettesListsTheStoreAsItIs) {
    const QJsonObject reply = ask(R"({"type":"palettes"})");
    EXPECT_EQ(reply[u"type"_s], u"palettes"_s);
    EXPECT_EQ(reply[u"activeId"_s], uuidText(ocean.id));
    const QJsonArray list = reply[u"palettes"_s].toArray();
    ASSERT_EQ(list.size(), 3);
    EXPECT_EQ(list[0][u"name"_s], u"Ocean"_s);
    EXPECT_EQ(list[1][u"name"_s], u"Locked"_s);
    EXPECT_EQ(list[2][u"name"_s], u"Sunset"_s);
    EXPECT_EQ(list[1][u"id"_s], uuidText(locked.id));
    EXPECT_EQ(list[0][u"isLocked"_s], false);
    EXPECT_EQ(list[1][u"isLocked"_s], true);
    EXPECT_EQ(list[1][u"colors"_s][0].toObject(),
              (QJsonObject{{u"id"_s, uuidText(locked.colors[0].id)},
                           {u"name"_s, u"Ink"_s},
                           {u"hex"_s, u"#111111"_s},
                           {u"isLocked"_s, true}}));
    EXPECT_EQ(list[0][u"colors"_s][1][u"name"_s], u"Foam"_s);
    EXPECT_EQ(list[0][u"colors"_s][1][u"isLocked"_s], false);
}

// Nothing is kept between requests: what the bar writes in between is in the next answer.
TEST_F(Requests, readsTheFileAgainForEveryRequest) {
    ASSERT_EQ(ask(R"({"type":"palettes"})")[u"palettes"_s].toArray().size(), 3);
    const ColorTemplate added = makePalette(u"From the bar"_s, {makeColor(u"Sky"_s, u"#87CEEB"_s)});
    seed({ocean, locked, sunset, added}, uuidText(sunset.id));
    const QJsonObject reply = ask(R"({"type":"palettes"})");
    EXPECT_EQ(reply[u"activeId"_s], uuidText(sunset.id));
    EXPECT_EQ(reply[u"palettes"_s][3][u"name"_s], u"From the bar"_s);
}

// Without a palette id the colour goes to the active palette, in front of its first group,
// named by its code as the bar names the colours it adds; other writers' keys stay.
TEST_F(Requests, addColorGoesToTheActivePaletteAsTheBarAddsIt) {
    const QJsonObject reply = ask(R"({"type":"addColor","hex":"#2e86ab"})");
    ASSERT_EQ(reply[u"type"_s], u"added"_s) << QJsonDocument(reply).toJson().toStdString();
    EXPECT_EQ(reply[u"paletteId"_s], uuidText(ocean.id));
    const QJsonObject color = reply[u"color"_s].toObject();
    EXPECT_EQ(color[u"hex"_s], u"#2E86AB"_s);
    EXPECT_EQ(color[u"name"_s], ColorUtils::colorName(u"#2E86AB"_s));
    EXPECT_EQ(color[u"isLocked"_s], false);

    const ColorTemplate* saved = storedPalette(ocean.id);
    ASSERT_NE(saved, nullptr);
    ASSERT_EQ(saved->colors.size(), 3);
    EXPECT_EQ(uuidText(saved->colors[1].id), color[u"id"_s].toString());
    EXPECT_EQ(saved->colors[1].hex, u"#2E86AB"_s);
    EXPECT_TRUE(saved->colors[1].isAutoNamed);
    EXPECT_EQ(saved->colors[2].name, u"Foam"_s);
    EXPECT_EQ(saved->revision, ocean.revision + 1);
    EXPECT_EQ(storedActiveId(), uuidText(ocean.id));
    EXPECT_EQ(file().value(u"helperState"_s), true);
}

// A palette named by id takes the colour, under the given name; the user's active palette
// stays the active one.
TEST_F(Requests, addColorToAnotherPaletteKeepsTheActiveOne) {
    const QJsonObject reply = ask(QJsonObject{{u"type"_s, u"addColor"_s},
                                              {u"hex"_s, u"rgb(10, 20, 30)"_s},
                                              {u"name"_s, u"  Deep Night "_s},
                                              {u"paletteId"_s, uuidText(sunset.id).toLower()}});
    ASSERT_EQ(reply[u"type"_s], u"added"_s) << QJsonDocument(reply).toJson().toStdString();
    EXPECT_EQ(reply[u"paletteId"_s], uuidText(sunset.id));
    EXPECT_EQ(reply[u"color"_s][u"name"_s], u"Deep Night"_s);
    const ColorTemplate* saved = storedPalette(sunset.id);
    ASSERT_NE(saved, nullptr);
    ASSERT_EQ(namesOf(saved->colors), (QStringList{u"Coral"_s, u"Deep Night"_s}));
    EXPECT_EQ(saved->colors[1].hex, u"#0A141E"_s);
    EXPECT_FALSE(saved->colors[1].isAutoNamed);
    EXPECT_EQ(storedActiveId(), uuidText(ocean.id));
    EXPECT_EQ(storedPalette(ocean.id)->colors.size(), 2);
}

struct Refusal {
    std::string name;
    QByteArray request; // %LOCKED% and %UNKNOWN% stand for ids
    QString message;
};

class AddColorRefusals : public Requests, public ::testing::WithParamInterface<Refusal> {};

// Refused in plain words, the store's where it has them, and the file isn't touched.
TEST_P(AddColorRefusals, writeNothing) {
    seed({ocean, locked, sunset},
         uuidText(GetParam().name == "activeLocked" ? locked.id : ocean.id));
    const QByteArray before = fileBytes();
    QByteArray request = GetParam().request;
    request.replace("%LOCKED%", uuidText(locked.id).toUtf8());
    request.replace("%UNKNOWN%", "0F8A2C64-1111-4222-8333-944455556666");
    const QJsonObject reply = ask(request);
    EXPECT_EQ(reply[u"type"_s], u"error"_s);
    EXPECT_EQ(reply[u"message"_s], GetParam().message);
    EXPECT_EQ(fileBytes(), before);
}

INSTANTIATE_TEST_SUITE_P(
    Requests, AddColorRefusals,
    ::testing::Values(
        Refusal{"lockedById", R"({"type":"addColor","hex":"#000000","paletteId":"%LOCKED%"})",
                StoreTexts::addColorsRefusal},
        Refusal{"activeLocked", R"({"type":"addColor","hex":"#000000"})",
                StoreTexts::addColorsRefusal},
        Refusal{"unreadable", R"({"type":"addColor","hex":"sky blue"})",
                u"\"sky blue\" is not a color code HueShelf can read. Write colors as #RRGGBB, "
                u"#RGB, rgb(r, g, b) or hsl(h, s%, l%)."_s},
        Refusal{"noCode", R"({"type":"addColor","name":"Sky"})",
                u"addColor needs the color code as a string under \"hex\"."_s},
        Refusal{"codeAsNumber", R"({"type":"addColor","hex":255})",
                u"addColor needs the color code as a string under \"hex\"."_s},
        Refusal{"nameNotText", R"({"type":"addColor","hex":"#000000","name":7})",
                u"The color's \"name\" must be a string."_s},
        Refusal{"unknownPalette", R"({"type":"addColor","hex":"#000","paletteId":"%UNKNOWN%"})",
                u"There is no palette with the id \"0F8A2C64-1111-4222-8333-944455556666\"."_s},
        Refusal{"notAnId", R"({"type":"addColor","hex":"#000","paletteId":"{%UNKNOWN%}"})",
                u"\"paletteId\" must be a palette's id, 36 characters such as "
                u"\"3F2504E0-4F89-41D3-9A0C-0305E82C3301\"."_s}),
    [](const ::testing::TestParamInfo<Refusal>& testCase) { return testCase.param.name; });

// A name in use gets the store's number; named colours keep their names, the others are named
// by their code and made unique; the new palette becomes the active one, as the MCP server's
// create does.
TEST_F(Requests, createPaletteMakesTheNameUnique) {
    const QJsonObject reply =
        ask(R"({"type":"createPalette","name":"Ocean","colors":[{"hex":"#1b2a49"},)"
            R"({"hex":"#fff","name":"Paper"},{"hex":"#1B2A49"}]})");
    ASSERT_EQ(reply[u"type"_s], u"created"_s) << QJsonDocument(reply).toJson().toStdString();
    const QJsonObject palette = reply[u"palette"_s].toObject();
    EXPECT_EQ(palette[u"name"_s], u"Ocean 2"_s);
    EXPECT_EQ(palette[u"isLocked"_s], false);
    const QString generated = ColorUtils::colorName(u"#1B2A49"_s);
    const QList<ColorTemplate> all = stored();
    ASSERT_EQ(namesOf(all), (QStringList{u"Ocean"_s, u"Locked"_s, u"Sunset"_s, u"Ocean 2"_s}));
    const ColorTemplate& made = all.at(3);
    EXPECT_EQ(uuidText(made.id), palette[u"id"_s].toString());
    EXPECT_EQ(namesOf(made.colors),
              (QStringList{generated, u"Paper"_s,
                           ColorUtils::uniqueName(generated, {generated, u"Paper"_s})}));
    EXPECT_EQ(made.colors[1].hex, u"#FFFFFF"_s);
    EXPECT_EQ(palette[u"colors"_s].toArray().size(), 3);
    EXPECT_EQ(storedActiveId(), uuidText(made.id));
}

// A palette needs colours, a name and readable codes; a refusal writes nothing.
TEST_F(Requests, createPaletteRefusesWhatTheStoreWouldNotHold) {
    const QByteArray before = fileBytes();
    const QList<std::pair<QByteArray, QString>> cases{
        {R"({"type":"createPalette","name":"Empty","colors":[]})", StoreTexts::lastColorRefusal},
        {R"({"type":"createPalette","name":"Empty"})", StoreTexts::lastColorRefusal},
        {R"({"type":"createPalette","name":" \t","colors":[{"hex":"#000"}]})",
         u"The palette's \"name\" is blank; give the palette a name."_s},
        {R"({"type":"createPalette","colors":[{"hex":"#000"}]})",
         u"createPalette needs the palette's name as a string under \"name\"."_s},
        {R"({"type":"createPalette","name":"X","colors":{"hex":"#000"}})",
         u"createPalette needs the palette's colors as a list under \"colors\"."_s},
        {R"({"type":"createPalette","name":"X","colors":[{"hex":"#000"},{"hex":"nope"}]})",
         u"Entry 2 of \"colors\": \"nope\" is not a color code HueShelf can read. Write colors "
         u"as #RRGGBB, #RGB, rgb(r, g, b) or hsl(h, s%, l%)."_s},
        {R"({"type":"createPalette","name":"X","colors":["#000"]})",
         u"Entry 1 of \"colors\" must be an object with \"hex\" and an optional \"name\"."_s},
        {R"({"type":"createPalette","name":"X","colors":[{"hex":"#000","name":[]}]})",
         u"Entry 1 of \"colors\"'s \"name\" must be a string."_s},
    };
    for (const auto& [request, message] : cases) {
        const QJsonObject reply = ask(request);
        EXPECT_EQ(reply[u"type"_s], u"error"_s) << request.toStdString();
        EXPECT_EQ(reply[u"message"_s], message) << request.toStdString();
    }
    EXPECT_EQ(fileBytes(), before);
}

TEST_F(Requests, unknownAndMissingTypesAreRefused) {
    EXPECT_EQ(ask(R"({"type":"paint","id":3})"),
              (QJsonObject{{u"id"_s, 3},
                           {u"type"_s, u"error"_s},
                           {u"message"_s, u"Unknown request type: paint"_s}}));
    EXPECT_EQ(ask(R"({"type":"Hello"})")[u"message"_s], u"Unknown request type: Hello"_s);
    for (const QByteArray& request : {QByteArray(R"({})"), QByteArray(R"({"type":1})")}) {
        const QJsonObject reply = ask(request);
        EXPECT_EQ(reply[u"type"_s], u"error"_s);
        EXPECT_EQ(reply[u"message"_s],
                  u"The request needs its \"type\" as a string, such as \"hello\"."_s);
    }
}

// Whatever the extension sent as "id" comes back as it was, on answers and on refusals alike;
// without one the reply has none.
TEST_F(Requests, theIdComesBackUnchanged) {
    const QList<QByteArray> ids{"7",    "-2.5", "9007199254740993",   R"("abc")",
                                "\"\"", "null", R"({"tab":[1,"x"]})", "[]"};
    for (const QByteArray& id : ids) {
        const QJsonValue expected = QJsonDocument::fromJson("[" + id + "]").array().at(0);
        for (const QByteArray& type : {QByteArray("hello"), QByteArray("paint")}) {
            const QJsonObject reply = ask(R"({"type":")" + type + R"(","id":)" + id + "}");
            ASSERT_TRUE(reply.contains(u"id"_s)) << id.toStdString();
            EXPECT_EQ(reply[u"id"_s], expected) << id.toStdString();
            EXPECT_EQ(QJsonDocument(QJsonObject{{u"id"_s, reply[u"id"_s]}})
                          .toJson(QJsonDocument::Compact),
                      "{\"id\":" + id + "}")
                << id.toStdString();
        }
    }
    EXPECT_FALSE(ask(R"({"type":"hello"})").contains(u"id"_s));
    EXPECT_FALSE(ask(R"({"type":"paint"})").contains(u"id"_s));
}

} // namespace
} // namespace hueshelf::testing
