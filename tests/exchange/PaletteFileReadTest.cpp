#include "color/ColorUtils.h"
#include "exchange/PaletteFile.h"

#include <QSet>

#include <gtest/gtest.h>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

const QString tooLarge = u"File is too large. Maximum size is 1 MB."_s;
const QString foreign = u"That isn't a HueShelf palette file."_s;
const QString nameTooLong = u"Palette name is too long. Maximum 100 characters."_s;
const QString tooMany = u"Palette has too many colors. Maximum 200."_s;
const QString noColors = u"That file has no colors HueShelf can read."_s;

// A file whose name is `name` and whose entries are the given JSON texts.
QByteArray file(const QByteArray& name, const QList<QByteArray>& entries) {
    QByteArray colors;
    for (const QByteArray& entry : entries)
        colors += (colors.isEmpty() ? "" : ",") + entry;
    return R"({"name": ")" + name + R"(", "colors": [)" + colors + "]}";
}

QList<QByteArray> entries(int count, const QByteArray& entry) {
    return QList<QByteArray>(count, entry);
}

QByteArray paddedTo(QByteArray bytes, qsizetype size) {
    bytes += QByteArray(size - bytes.size(), ' ');
    return bytes;
}

struct RefusalCase {
    const char* what;
    QByteArray bytes;
    QString message; // empty: the file is read
};

TEST(PaletteFileRead, EachRuleRefusesInItsTurn) {
    const QByteArray good = R"({"hex": "#123456"})";
    const QByteArray bad = R"({"hex": "nope"})";
    const QByteArray valid = file("X", {good});
    const QByteArray longName(101, 'n');
    const QByteArray flags = u"\U0001F1EB\U0001F1F7"_s.toUtf8(); // one character, two code points
    QList<QByteArray> oneGoodOf200 = entries(199, bad);
    oneGoodOf200.insert(150, good);

    const QList<RefusalCase> cases{
        {"exactly the limit", paddedTo(valid, 1048576), QString()},
        {"one byte over", paddedTo(valid, 1048577), tooLarge},
        {"size before anything else", paddedTo("[1", 1048577), tooLarge},
        {"not JSON", "{\"name\": \"X\",", foreign},
        {"trailing text", valid + " x", foreign},
        {"array at the top", "[1]", foreign},
        {"string at the top", "\"X\"", foreign},
        {"no name", R"({"colors": [{"hex": "#123456"}]})", foreign},
        {"name not a string", R"({"name": 1, "colors": [{"hex": "#123456"}]})", foreign},
        {"no colors", R"({"name": "X"})", foreign},
        {"colors an object", R"({"name": "X", "colors": {"hex": "#123456"}})", foreign},
        {"one entry not an object", file("X", {good, "1"}), foreign},
        {"foreign entry outranks a long name", file(longName, {"[]"}), foreign},
        {"empty colour list", R"({"name":"X","colors":[]})", noColors},
        {"only a number", R"({"name":"X","colors":[1]})", foreign},
        {"name of 100 characters", file(QByteArray(100, 'n'), {good}), QString()},
        {"name of 101 characters", file(longName, {good}), nameTooLong},
        {"100 two-code-point characters", file(flags.repeated(100), {good}), QString()},
        {"101 two-code-point characters", file(flags.repeated(101), {good}), nameTooLong},
        {"long name before the count", file(longName, entries(201, good)), nameTooLong},
        {"long name before no colours", file(longName, {}), nameTooLong},
        {"200 entries", file("X", entries(200, good)), QString()},
        {"199 bad codes and one good", file("X", oneGoodOf200), QString()},
        {"201 entries, all but one bad", file("X", entries(200, bad) << good), tooMany},
        {"count before no colours", file("X", entries(201, bad)), tooMany},
        {"nothing readable", file("X", {bad, R"({"name": "no code"})"}), noColors},
        {"empty name passes", file("", {good}), QString()},
    };
    for (const RefusalCase& c : cases) {
        const PaletteFileResult result = PaletteFile::parsePaletteFile(c.bytes);
        if (c.message.isEmpty()) {
            EXPECT_FALSE(result.errorMessage)
                << c.what << ": " << result.errorMessage->toStdString();
            EXPECT_TRUE(result.name) << c.what;
            EXPECT_FALSE(result.colors.isEmpty()) << c.what;
        } else {
            EXPECT_EQ(result.errorMessage.value_or(u"(read)"_s), c.message) << c.what;
            EXPECT_FALSE(result.name) << c.what;
            EXPECT_TRUE(result.colors.isEmpty()) << c.what;
        }
    }
    const PaletteFileResult one = PaletteFile::parsePaletteFile(file("X", oneGoodOf200));
    ASSERT_EQ(one.colors.size(), 1);
    EXPECT_EQ(one.colors.at(0).hex, u"#123456"_s);
}

struct EntryCase {
    const char* what;
    QByteArray entry;
    QString hex;                             // empty: the entry is skipped
    std::optional<QString> name = QString(); // absent: generated from the code
    bool isAutoNamed = false;
    bool dividerBefore = false;
    QString dividerLabel = QString();
};

TEST(PaletteFileRead, ReadsEachEntryByItsOwnRules) {
    const QString longName = u"e\u0301"_s.repeated(120); // 120 characters, 240 code points
    const QString longLabel = u"\U0001F3A8"_s.repeated(45);
    const QString cutName = u"e\u0301"_s.repeated(100);
    const QString cutLabel = u"\U0001F3A8"_s.repeated(40);
    const auto named = [](const QByteArray& rest) -> QByteArray {
        return R"({"hex": "#102030", )" + rest + '}';
    };

    const QList<EntryCase> cases{
        {"three digits padded", R"({"hex": " #abc ", "name": "A"})", u"#AABBCC"_s, u"A"_s},
        {"line ends trimmed", R"({"hex": "\n#abcdef\t\r", "name": "A"})", u"#ABCDEF"_s, u"A"_s},
        {"four digits", R"({"hex": "#ABCD", "name": "A"})", QString()},
        {"two hashes", R"({"hex": "##ABC", "name": "A"})", QString()},
        {"five digits", R"({"hex": "#12345", "name": "A"})", QString()},
        {"not hex", R"({"hex": "#GGGGGG", "name": "A"})", QString()},
        {"blank inside", R"({"hex": "# abc", "name": "A"})", QString()},
        {"empty", R"({"hex": "", "name": "A"})", QString()},
        {"a number", R"({"hex": 123456, "name": "A"})", QString()},
        {"null", R"({"hex": null, "name": "A"})", QString()},
        {"missing", R"({"name": "A"})", QString()},
        {"name trimmed", named(R"("name": " \tSky\n ")"), u"#102030"_s, u"Sky"_s},
        {"blank name", named(R"("name": "   ")"), u"#102030"_s, std::nullopt, true},
        {"no name", named(R"("other": 1)"), u"#102030"_s, std::nullopt, true},
        {"name not a string", named(R"("name": 7)"), u"#102030"_s, std::nullopt, true},
        {"long name cut", named(R"("name": ")" + longName.toUtf8() + '"'), u"#102030"_s, cutName},
        {"divider with label",
         named(R"("name": "A", "dividerBefore": true, "dividerLabel": " Brand ")"), u"#102030"_s,
         u"A"_s, false, true, u" Brand "_s},
        {"divider without label", named(R"("name": "A", "dividerBefore": true)"), u"#102030"_s,
         u"A"_s, false, true},
        {"label not a string", named(R"("name": "A", "dividerBefore": true, "dividerLabel": 4)"),
         u"#102030"_s, u"A"_s, false, true},
        {"long label cut",
         named(R"("name": "A", "dividerBefore": true, "dividerLabel": ")" + longLabel.toUtf8() +
               '"'),
         u"#102030"_s, u"A"_s, false, true, cutLabel},
        {"label without divider", named(R"("name": "A", "dividerLabel": "Brand")"), u"#102030"_s,
         u"A"_s},
        {"divider false", named(R"("name": "A", "dividerBefore": false, "dividerLabel": "B")"),
         u"#102030"_s, u"A"_s},
        {"divider as text", named(R"("name": "A", "dividerBefore": "true", "dividerLabel": "B")"),
         u"#102030"_s, u"A"_s},
        {"divider as number", named(R"("name": "A", "dividerBefore": 1, "dividerLabel": "B")"),
         u"#102030"_s, u"A"_s},
    };
    for (const EntryCase& c : cases) {
        // A good colour behind it, so that a skipped entry still leaves a readable file.
        const PaletteFileResult result =
            PaletteFile::parsePaletteFile(file("X", {c.entry, R"({"hex": "#FFFFFF"})"}));
        ASSERT_FALSE(result.errorMessage) << c.what;
        if (c.hex.isEmpty()) {
            EXPECT_EQ(result.colors.size(), 1) << c.what;
            continue;
        }
        ASSERT_EQ(result.colors.size(), 2) << c.what;
        const ColorItem& color = result.colors.at(0);
        EXPECT_EQ(color.hex, c.hex) << c.what;
        EXPECT_EQ(color.name, c.name.value_or(ColorUtils::colorName(c.hex))) << c.what;
        EXPECT_EQ(color.isAutoNamed, c.isAutoNamed) << c.what;
        EXPECT_EQ(color.dividerBefore, c.dividerBefore) << c.what;
        EXPECT_EQ(color.dividerLabel, c.dividerLabel) << c.what;
        EXPECT_FALSE(color.isLocked) << c.what;
    }
}

TEST(PaletteFileRead, EveryColourGetsAFreshId) {
    const PaletteFileResult result = PaletteFile::parsePaletteFile(file(
        "X", entries(3, R"({"hex": "#123456", "id": "11111111-2222-4333-8444-555555555555"})")));
    QSet<QUuid> ids;
    for (const ColorItem& color : result.colors)
        ids.insert(color.id);
    EXPECT_EQ(ids.size(), 3);
    EXPECT_FALSE(ids.contains(QUuid(u"11111111-2222-4333-8444-555555555555"_s)));
    EXPECT_FALSE(ids.contains(QUuid()));
}

// Files written by hand or by other programs: any key order, extra keys, other line ends and
// escapes. Qt's reader skips a UTF-8 byte order mark, as the editors that write one expect.
TEST(PaletteFileRead, TakesFilesWrittenByOtherPrograms) {
    struct Case {
        const char* what;
        QByteArray bytes;
        QString name;
        QStringList colors; // "hex name"
    };
    const QList<Case> cases{
        {"keys in another order, extra keys",
         R"({"colors": [{"name": "Ink", "rgb": [0, 0, 0], "hex": "#000"}], "version": "9.1",
             "author": "someone", "name": "Other", "exportedAt": 17})",
         u"Other"_s,
         {u"#000000 Ink"_s}},
        {"line ends of another system",
         "{\r\n  \"name\": \"CRLF\",\r\n  \"colors\": [\r\n    {\"hex\": \"#ffffff\", \"name\": "
         "\"Paper\"}\r\n  ]\r\n}\r\n",
         u"CRLF"_s,
         {u"#FFFFFF Paper"_s}},
        {"byte order mark",
         "\xEF\xBB\xBF{\"name\": \"BOM\", \"colors\": [{\"hex\": \"#010203\", "
         "\"name\": \"A\"}]}",
         u"BOM"_s,
         {u"#010203 A"_s}},
        {"escaped characters",
         R"({"name": "Caf\u00e9 \ud83c\udf08", "colors": [{"hex": "#ABCDEF", "name": "Tab\there \"q\""}]})",
         u"Caf\u00e9 \U0001F308"_s,
         {u"#ABCDEF Tab\there \"q\""_s}},
        {"name kept as written",
         R"({"name": "  Spaced  ", "colors": [{"hex": "#ABC", "name": "A"}]})",
         u"  Spaced  "_s,
         {u"#AABBCC A"_s}},
    };
    for (const Case& c : cases) {
        const PaletteFileResult result = PaletteFile::parsePaletteFile(c.bytes);
        ASSERT_FALSE(result.errorMessage) << c.what << ": " << result.errorMessage->toStdString();
        EXPECT_EQ(result.name, c.name) << c.what;
        QStringList colors;
        for (const ColorItem& color : result.colors)
            colors << color.hex + u' ' + color.name;
        EXPECT_EQ(colors, c.colors) << c.what;
    }
    // A file saved as UTF-16 is not one of ours.
    const QString text = uR"({"name": "Wide", "colors": [{"hex": "#000000"}]})"_s;
    QByteArray utf16("\xFF\xFE");
    utf16.append(reinterpret_cast<const char*>(text.utf16()), text.size() * 2);
    EXPECT_EQ(PaletteFile::parsePaletteFile(utf16).errorMessage, foreign);
}

} // namespace
} // namespace hueshelf::testing
