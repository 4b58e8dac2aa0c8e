#include "exchange/PaletteFile.h"

#include "../color/QtPrinters.h"

#include <QSet>

#include <gtest/gtest.h>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

const QString foreign = u"That isn't a HueShelf palette file."_s;
const QString nameTooLong = u"Palette name is too long. Maximum 100 characters."_s;

// A file whose name is `name` and whose entries are the given JSON texts.
QByteArray file(const QByteArray& name, const QList<QByteArray>& entries) {
    return R"({"name": ")" + name + R"(", "colors": [)" + QByteArrayList(entries).join(',') + "]}";
}

// Files the writer makes and what the reader and an import make of them, the limits included,
// are compared with an independent model through the command line. Here the order of the
// refusals, files of other programs, and the file names.
TEST(PaletteFileRead, EachRuleRefusesInItsTurn) {
    const QByteArray good = R"({"hex": "#123456"})", bad = R"({"hex": "nope"})";
    const QByteArray longName(101, 'n');
    const QByteArray flags = u"\U0001F1EB\U0001F1F7"_s.toUtf8(); // one character, two code points
    const QByteArray valid = file("X", {good});
    const QString tooMany = u"Palette has too many colors. Maximum 200."_s;
    const QString noColors = u"That file has no colors HueShelf can read."_s;
    const std::pair<QByteArray, QString> cases[] = {
        {valid.leftJustified(1048576, ' '), QString()},
        {valid.leftJustified(1048577, ' '), u"File is too large. Maximum size is 1 MB."_s},
        {valid + " x", foreign},
        {file(longName, {good, "1"}), foreign}, // one foreign entry fails the whole file
        {file(longName, QList<QByteArray>(201, good)), nameTooLong},
        {file(longName, {}), nameTooLong},
        {file(flags.repeated(101), {good}), nameTooLong},
        {file(flags.repeated(100), {good}), QString()},
        {file("X", QList<QByteArray>(201, bad)), tooMany},
        {file("X", QList<QByteArray>(200, bad)), noColors},
        {file("X", QList<QByteArray>(199, bad) << good), QString()}};
    for (const auto& [bytes, message] : cases) {
        const PaletteFileResult result = PaletteFile::parsePaletteFile(bytes);
        EXPECT_EQ(result.errorMessage.value_or(QString()), message) << bytes.left(60).toStdString();
        EXPECT_EQ(result.name.has_value(), message.isEmpty());
        EXPECT_EQ(result.colors.isEmpty(), !message.isEmpty());
    }
}

// Other line ends, ids of another program and a byte order mark, as editors and other programs
// write them; a file saved as UTF-16 is not one of ours. Every colour gets a fresh id.
TEST(PaletteFileRead, TakesFilesWrittenByOtherPrograms) {
    const std::pair<QByteArray, QString> cases[] = {
        {R"({"colors": [{"name": "Ink", "rgb": [0, 0, 0], "hex": "#000", "id": "11111111-2222-4333-8444-555555555555"}],
             "version": "9.1", "author": "someone", "name": "  Other  ", "exportedAt": 17})",
         u"  Other  : #000000 Ink"_s},
        {"{\r\n\"name\": \"CRLF\",\r\n\"colors\": [{\"hex\": \"#ffffff\", \"name\": "
         "\"P\"}]\r\n}\r\n",
         u"CRLF: #FFFFFF P"_s},
        {"\xEF\xBB\xBF{\"name\": \"BOM\", \"colors\": [{\"hex\": \"#010203\", \"name\": \"A\"}]}",
         u"BOM: #010203 A"_s}};
    for (const auto& [bytes, expected] : cases) {
        const PaletteFileResult result = PaletteFile::parsePaletteFile(bytes);
        ASSERT_TRUE(result.name) << result.errorMessage.value_or(QString()).toStdString();
        EXPECT_EQ(*result.name + u": "_s + result.colors.at(0).hex + u' ' +
                      result.colors.at(0).name,
                  expected);
        EXPECT_NE(result.colors.at(0).id, QUuid(u"11111111-2222-4333-8444-555555555555"_s));
    }
    const QString text = uR"({"name": "Wide", "colors": [{"hex": "#000000"}]})"_s;
    const QByteArray utf16 =
        "\xFF\xFE" + QByteArray(reinterpret_cast<const char*>(text.utf16()), text.size() * 2);
    EXPECT_EQ(PaletteFile::parsePaletteFile(utf16).errorMessage, foreign);
    const PaletteFileResult three =
        PaletteFile::parsePaletteFile(file("X", QList<QByteArray>(3, R"({"hex": "#123456"})")));
    EXPECT_EQ(QSet<QUuid>({three.colors[0].id, three.colors[1].id, three.colors[2].id}).size(), 3);
}

TEST(PaletteFileNames, SuggestedNamesPathsAndDrops) {
    const std::pair<QString, QString> suggested[] = {
        {u"a/\\:*?\"<>|b"_s, u"a---------b.hueshelf"_s},
        {u"\t<Brand>\u00A0"_s, u"Brand.hueshelf"_s},
        {u" - "_s, u"Palette.hueshelf"_s},
        {u"Brand.hueshelf"_s, u"Brand.hueshelf"_s},
        {u"Brand.HUESHELF"_s, u"Brand.HUESHELF.hueshelf"_s},
        {u"Caf\u00e9.v2"_s, u"Caf\u00e9.v2.hueshelf"_s}};
    for (const auto& [name, fileName] : suggested)
        EXPECT_EQ(PaletteFile::saveDialogFileName(name), fileName) << name.toStdString();
    const std::pair<QString, QString> chosen[] = {
        {u"/u/Brand.json"_s, u"/u/Brand.hueshelf"_s},
        {u"/u/Brand.HueShelf"_s, u"/u/Brand.HueShelf"_s},
        {u"/u/Brand.v2.json"_s, u"/u/Brand.v2.hueshelf"_s},
        {u"/u/my.folder/Brand"_s, u"/u/my.folder/Brand.hueshelf"_s},
        {u"/u/.json"_s, u"/u/.json.hueshelf"_s}};
    for (const auto& [path, withExtension] : chosen)
        EXPECT_EQ(PaletteFile::withFileExtension(path), withExtension) << path.toStdString();
    for (const QString& path : {u"/t/B.HUESHELF"_s, u"/t/a.b/B.HueShelf"_s})
        EXPECT_TRUE(PaletteFile::isPaletteFilePath(path)) << path.toStdString();
    for (const QString& path : {u"/t/B.hueshelf.json"_s, u"/t/hueshelf"_s, u"/t/x.hueshelf/B"_s})
        EXPECT_FALSE(PaletteFile::isPaletteFilePath(path)) << path.toStdString();
}

} // namespace
} // namespace hueshelf::testing
