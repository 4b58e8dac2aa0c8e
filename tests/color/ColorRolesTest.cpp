#include "PaletteTestSupport.h"
#include "color/ColorUtils.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace hueshelf;
using namespace hueshelf::testing_palette;
using namespace hueshelf::ColorUtils;

namespace {

QStringList rolesOf(const QStringList& hexes) {
    QStringList roles;
    for (const RoleSuggestion& suggestion : roleSuggestions(palette(hexes))) {
        EXPECT_EQ(suggestion.suggestions.size(), 1);
        roles << suggestion.suggestions.join(u'|');
    }
    return roles;
}

// One representative of each list: vivid (l 0.5, s 1), dark (l < 0.15), light (l > 0.85),
// warm and cool (s 1 at l 0.75, outside the vivid band), muted dark and light (greys either
// side of 0.5) and mid (s 0.278 at l 0.5).
const QString vivid = u"#FF0000"_s;
const QString dark = u"#111111"_s;
const QString light = u"#F0F0F0"_s;
const QString warm = u"#FF8080"_s;
const QString cool = u"#80FFFF"_s;
const QString mutedDark = u"#404040"_s;
const QString mutedLight = u"#A0A0A0"_s;
const QString mid = u"#5C8BA3"_s;

// Roles are written "A|B|C" in these tables. Each list's order and its numbered repeats are
// compared with an independent model through the command line's check.
QStringList roles(const QString& text) {
    return text.split(u'|');
}

struct LimitCase {
    QString hex;
    QString role; // of the colour alone in a palette
    const char* why;
};

TEST(RoleSuggestions, ListLimits) {
    const LimitCase cases[] = {
        {u"#262626"_s, u"Text Dark"_s, "l 0.149 is dark"},
        {u"#272727"_s, u"Muted"_s, "l 0.153 isn't dark"},
        {u"#D9D9D9"_s, u"Background"_s, "l 0.851 is light"},
        {u"#D8D8D8"_s, u"Subtle"_s, "l 0.847 isn't light"},
        {u"#800000"_s, u"Primary"_s, "l 0.251 is in the vivid band"},
        {u"#7F0000"_s, u"Warm Accent"_s, "l 0.249 isn't"},
        {u"#FF4C4C"_s, u"Primary"_s, "l 0.649 is in the vivid band"},
        {u"#FF4D4D"_s, u"Warm Accent"_s, "l 0.651 isn't"},
        {u"#BE3F3F"_s, u"Primary"_s, "s 0.502 is vivid"},
        {u"#BD3F3F"_s, u"Warm Accent"_s, "s exactly 0.5 isn't"},
        {u"#FFFF80"_s, u"Warm Accent"_s, "hue exactly 60 is warm"},
        {u"#FDFF80"_s, u"Cool Accent"_s, "hue 60.9 is cool"},
        {u"#FF80FF"_s, u"Warm Accent"_s, "hue exactly 300 is warm"},
        {u"#F880FF"_s, u"Cool Accent"_s, "hue 296.7 is cool"},
        {u"#A65959"_s, u"Warm Accent"_s, "s 0.302 is tinted"},
        {u"#A55A5A"_s, u"Secondary"_s, "s 0.294 is mid"},
        {u"#A05F5F"_s, u"Secondary"_s, "s 0.255 is mid"},
        {u"#A36666"_s, u"Subtle"_s, "s 0.249 is muted, l 0.52 light"},
        {u"#7F7F7F"_s, u"Muted"_s, "grey at l 0.498 is muted dark"},
        {u"#808080"_s, u"Subtle"_s, "grey at l 0.502 is muted light"},
    };
    for (const LimitCase& c : cases)
        EXPECT_EQ(rolesOf({c.hex}), QStringList{c.role}) << c.why;
}

TEST(RoleSuggestions, TakenRolesAreSharedAcrossLists) {
    const std::pair<QStringList, QString> cases[] = {
        // The warm colours take "Highlight" and "Accent" before any vivid colour asks for them.
        {{warm, warm, warm, vivid, vivid, vivid},
         u"Warm Accent|Highlight|Accent|Primary|Secondary|Accent 2"_s},
        // Palette order decides between equals: the cool colour first keeps "Accent" for itself.
        {{cool, cool, vivid, vivid}, u"Cool Accent|Accent|Primary|Highlight"_s},
        {{vivid, vivid, cool, cool}, u"Primary|Accent|Cool Accent|Secondary"_s},
        // Mid and muted lists share "Secondary", "Dark Accent" and "Muted".
        {{mutedLight, mid, mutedDark, mid}, u"Subtle|Secondary|Muted|Dark Accent"_s},
    };
    for (const auto& [hexes, expected] : cases)
        EXPECT_EQ(rolesOf(hexes), roles(expected)) << hexes.join(u' ').toStdString();
}

TEST(RoleSuggestions, UnreadableColoursAreSkippedAndRecordsCarryTheColour) {
    QList<ColorItem> colors = palette({u"nope"_s, u"#ff0000"_s, u"#FFF"_s, u"#ff0000"_s});
    colors[1].name = u"Brick"_s;
    const std::vector<RoleSuggestion> suggestions = roleSuggestions(colors);
    ASSERT_EQ(suggestions.size(), 2u);
    EXPECT_EQ(suggestions[0].colorId, colors[1].id);
    EXPECT_EQ(suggestions[0].colorName, u"Brick"_s);
    EXPECT_EQ(suggestions[0].colorHex, u"#ff0000"_s); // as stored, not canonical
    EXPECT_EQ(suggestions[0].suggestions, QStringList{u"Primary"_s});
    EXPECT_EQ(suggestions[1].colorId, colors[3].id);
    EXPECT_EQ(suggestions[1].suggestions, QStringList{u"Accent"_s});
    EXPECT_TRUE(roleSuggestions({}).empty());
}

TEST(RoleFor, FirstSuggestionOfThatColour) {
    QList<ColorItem> colors = palette({vivid, dark, vivid, u"nope"_s});
    colors[2].isLocked = true; // locking doesn't hide a colour's role
    EXPECT_EQ(roleFor(colors[0].id, colors), u"Primary"_s);
    EXPECT_EQ(roleFor(colors[1].id, colors), u"Text Dark"_s);
    EXPECT_EQ(roleFor(colors[2].id, colors), u"Accent"_s);
    EXPECT_EQ(roleFor(colors[3].id, colors), std::nullopt);
    EXPECT_EQ(roleFor(QUuid::createUuid(), colors), std::nullopt);
}

TEST(RolePreview, TypedCodeReplacesTheColourForEveryone) {
    QList<ColorItem> colors = palette({vivid, dark});
    // Typed as a vivid red, the dark colour finds "Primary" taken by the first.
    const std::optional<RolePreview> preview = rolePreview(u"e53935"_s, colors[1].id, colors);
    ASSERT_TRUE(preview);
    EXPECT_EQ(preview->role, u"Accent"_s);
    EXPECT_FALSE(preview->isCurrentName);
    EXPECT_EQ(rolePreviewText(*preview), u"Accent as this color's name"_s);
    // Typed as near white it becomes the background; three digits are doubled first.
    EXPECT_EQ(rolePreview(u"#fff"_s, colors[1].id, colors)->role, u"Background"_s);
    EXPECT_EQ(rolePreview(u"FFF"_s, colors[0].id, colors)->role, u"Background"_s);
    // The first colour typed as black takes "Text Dark" from the second, which keeps its own
    // hex; the preview only speaks of the typed colour.
    EXPECT_EQ(rolePreview(u"#000"_s, colors[0].id, colors)->role, u"Text Dark"_s);
    EXPECT_EQ(colors[0].hex, vivid); // the palette itself is untouched
}

TEST(RolePreview, OnlyThreeOrSixHexDigitsPreview) {
    const QList<ColorItem> colors = palette({vivid, dark});
    const QUuid id = colors[1].id;
    for (const QString& text : {u"#FF000"_s, u"FF0000FF"_s, u"##FF0000"_s, u"rgb(255, 0, 0)"_s,
                                u"red"_s, u""_s, u"#"_s, u"#ggg"_s, u"FFFF"_s})
        EXPECT_FALSE(rolePreview(text, id, colors)) << text.toStdString();
    for (const QString& text : {u"abc"_s, u"#abc"_s, u"aabbcc"_s, u"#AaBbCc"_s})
        EXPECT_TRUE(rolePreview(text, id, colors)) << text.toStdString();
    EXPECT_FALSE(rolePreview(u"#abc"_s, QUuid::createUuid(), colors)); // not in the palette
}

TEST(RolePreview, SaysWhenTheNameAlreadyIsTheRole) {
    QList<ColorItem> colors = palette({vivid, dark});
    colors[1].name = u"Text Dark"_s;
    const std::optional<RolePreview> same = rolePreview(u"#111"_s, colors[1].id, colors);
    ASSERT_TRUE(same);
    EXPECT_TRUE(same->isCurrentName);
    EXPECT_EQ(rolePreviewText(*same), u"This color is already named for its role"_s);
    // The comparison is exact: another case is another name.
    colors[1].name = u"text dark"_s;
    EXPECT_FALSE(rolePreview(u"#111"_s, colors[1].id, colors)->isCurrentName);
}

} // namespace
