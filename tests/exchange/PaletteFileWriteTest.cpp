#include "exchange/PaletteFile.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTimeZone>

#include <gtest/gtest.h>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

ColorItem color(const QString& name, const QString& hex, bool dividerBefore = false,
                const QString& label = QString()) {
    ColorItem item = ColorItem::make(name, hex, true);
    item.isLocked = true; // never written
    item.dividerBefore = dividerBefore;
    item.dividerLabel = label;
    return item;
}

// 09:30:00.999 UTC, as a reader in another zone would hold it.
QDateTime savingMoment() {
    return QDateTime(QDate(2026, 1, 31), QTime(9, 30, 0, 999), QTimeZone::utc())
        .toTimeZone(QTimeZone(5 * 3600 + 30 * 60));
}

TEST(PaletteFileWrite, WritesNamesCodesAndOnlyTheDividersThereAre) {
    const QList<ColorItem> colors{
        color(u"Ink"_s, u"#ffa69e"_s),
        color(u"Brand"_s, u"#B8F2E6"_s, true, u"Brand"_s),
        color(u"Plain"_s, u"#000000"_s, true),
        color(u""_s, u"#FFFFFF"_s, false, u"stale"_s),
    };
    const QJsonObject written = PaletteFile::exportDictionary(u"Starter"_s, colors, savingMoment());
    const QJsonObject expected{
        {u"name"_s, u"Starter"_s},
        {u"version"_s, u"2.0"_s},
        {u"exportedAt"_s, u"2026-01-31T09:30:00Z"_s},
        {u"colors"_s,
         QJsonArray{
             QJsonObject{{u"hex"_s, u"#ffa69e"_s}, {u"name"_s, u"Ink"_s}},
             QJsonObject{{u"hex"_s, u"#B8F2E6"_s},
                         {u"name"_s, u"Brand"_s},
                         {u"dividerBefore"_s, true},
                         {u"dividerLabel"_s, u"Brand"_s}},
             QJsonObject{
                 {u"hex"_s, u"#000000"_s}, {u"name"_s, u"Plain"_s}, {u"dividerBefore"_s, true}},
             QJsonObject{{u"hex"_s, u"#FFFFFF"_s}, {u"name"_s, u""_s}},
         }},
    };
    EXPECT_EQ(written, expected);
}

TEST(PaletteFileWrite, BytesArePrettyWithSortedKeys) {
    const QByteArray bytes = PaletteFile::exportBytes(
        u"Z"_s, {color(u"A"_s, u"#000000"_s, true, u"L"_s)}, savingMoment());
    const QList<QByteArray> keys{"\"colors\"",      "\"dividerBefore\"", "\"dividerLabel\"",
                                 "\"hex\"",         "\"name\": \"A\"",   "\"exportedAt\"",
                                 "\"name\": \"Z\"", "\"version\""};
    qsizetype previous = -1;
    for (const QByteArray& key : keys) {
        const qsizetype at = bytes.indexOf(key);
        EXPECT_GT(at, previous) << key.toStdString() << " in\n" << bytes.toStdString();
        previous = at;
    }
    EXPECT_TRUE(bytes.startsWith("{\n    \"colors\": [\n")) << bytes.toStdString();
    EXPECT_TRUE(bytes.endsWith("}\n"));
}

TEST(PaletteFileWrite, ReadsBackWhatItWrote) {
    const QList<ColorItem> colors{
        color(u"Caf\u00e9 \U0001F308"_s, u"#FFA69E"_s),
        color(u"Quote \" and | : \\"_s, u"#B8F2E6"_s, true, u"Group"_s),
        color(u"No label"_s, u"#000000"_s, true),
    };
    const PaletteFileResult read = PaletteFile::parsePaletteFile(
        PaletteFile::exportBytes(u" Spaced "_s, colors, savingMoment()));
    ASSERT_FALSE(read.errorMessage);
    EXPECT_EQ(read.name, u" Spaced "_s);
    ASSERT_EQ(read.colors.size(), colors.size());
    for (qsizetype i = 0; i < colors.size(); ++i) {
        const ColorItem& back = read.colors.at(i);
        EXPECT_EQ(back.name, colors.at(i).name);
        EXPECT_EQ(back.hex, colors.at(i).hex);
        EXPECT_EQ(back.dividerBefore, colors.at(i).dividerBefore);
        EXPECT_EQ(back.dividerLabel, colors.at(i).dividerLabel);
        EXPECT_FALSE(back.isAutoNamed); // the file gave it a name
        EXPECT_FALSE(back.isLocked);
        EXPECT_NE(back.id, colors.at(i).id);
    }
}

TEST(PaletteFileWrite, HasNoLimitsOfItsOwnButTheReaderHas) {
    const QString longName(101, u'n');
    const QByteArray bytes =
        PaletteFile::exportBytes(longName, {color(u"A"_s, u"#000000"_s)}, savingMoment());
    EXPECT_EQ(QJsonDocument::fromJson(bytes).object().value(u"name"_s).toString(), longName);
    EXPECT_EQ(PaletteFile::parsePaletteFile(bytes).errorMessage,
              u"Palette name is too long. Maximum 100 characters."_s);
}

TEST(PaletteFileNames, SuggestedNamesAvoidWhatFileSystemsRefuse) {
    const QList<std::pair<QString, QString>> cases{
        {u"Brand"_s, u"Brand"_s},
        {u"Brand / Web"_s, u"Brand - Web"_s},
        {u"a/\\:*?\"<>|b"_s, u"a---------b"_s},
        {u" -Brand- "_s, u"Brand"_s},
        {u"\t<Brand>\u00A0"_s, u"Brand"_s},
        {u"Brand.v2"_s, u"Brand.v2"_s},
        {u"Caf\u00e9 \U0001F308"_s, u"Caf\u00e9 \U0001F308"_s},
        {u"a - b"_s, u"a - b"_s},
        {u"///"_s, u"Palette"_s},
        {u" - "_s, u"Palette"_s},
        {QString(), u"Palette"_s},
    };
    for (const auto& [name, expected] : cases)
        EXPECT_EQ(PaletteFile::suggestedFileName(name), expected) << name.toStdString();
}

TEST(PaletteFileNames, TheSaveDialogAndTheChosenPathEndInTheExtension) {
    const QList<std::pair<QString, QString>> field{
        {u"Brand"_s, u"Brand.hueshelf"_s},
        {u"Brand.hueshelf"_s, u"Brand.hueshelf"_s},
        {u"Brand.HUESHELF"_s, u"Brand.HUESHELF.hueshelf"_s},
        {u"?"_s, u"Palette.hueshelf"_s},
    };
    for (const auto& [name, expected] : field)
        EXPECT_EQ(PaletteFile::saveDialogFileName(name), expected) << name.toStdString();

    const QList<std::pair<QString, QString>> chosen{
        {u"/home/u/Brand.json"_s, u"/home/u/Brand.hueshelf"_s},
        {u"/home/u/Brand"_s, u"/home/u/Brand.hueshelf"_s},
        {u"/home/u/Brand.HueShelf"_s, u"/home/u/Brand.HueShelf"_s},
        {u"/home/u/Brand.v2.json"_s, u"/home/u/Brand.v2.hueshelf"_s},
        {u"/home/u/my.folder/Brand"_s, u"/home/u/my.folder/Brand.hueshelf"_s},
        {u"/home/u/.json"_s, u"/home/u/.json.hueshelf"_s},
    };
    for (const auto& [path, expected] : chosen)
        EXPECT_EQ(PaletteFile::withFileExtension(path), expected) << path.toStdString();
}

TEST(PaletteFileNames, ADropIsAPaletteFileByItsExtensionInAnyCase) {
    const QList<std::pair<QString, bool>> cases{
        {u"/tmp/Brand.hueshelf"_s, true},     {u"/tmp/Brand.HUESHELF"_s, true},
        {u"/tmp/a.b/Brand.HueShelf"_s, true}, {u"/tmp/Brand.hueshelf.json"_s, false},
        {u"/tmp/Brand.json"_s, false},        {u"/tmp/hueshelf"_s, false},
        {u"/tmp/x.hueshelf/Brand"_s, false},  {u"/tmp/photo.png"_s, false},
    };
    for (const auto& [path, expected] : cases)
        EXPECT_EQ(PaletteFile::isPaletteFilePath(path), expected) << path.toStdString();
}

} // namespace
} // namespace hueshelf::testing
