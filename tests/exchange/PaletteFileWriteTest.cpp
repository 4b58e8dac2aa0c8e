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

// The writer's object for stored palettes, its sorted keys and what the reader makes of it are
// compared with an independent model through the command line; here the moment of saving in
// another zone, and names the reader won't take back.
TEST(PaletteFileWrite, TheMomentIsWrittenInUtcToTheSecond) {
    const QJsonObject written = PaletteFile::exportDictionary(
        u"Z"_s, {color(u"A"_s, u"#000000"_s, false, u"stale"_s)}, savingMoment());
    EXPECT_EQ(written.value(u"exportedAt"_s).toString(), u"2026-01-31T09:30:00Z"_s);
    // A label without its divider isn't written, nor is the lock.
    EXPECT_EQ(written.value(u"colors"_s).toArray().at(0).toObject(),
              (QJsonObject{{u"hex"_s, u"#000000"_s}, {u"name"_s, u"A"_s}}));
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
        {u"Brand / Web"_s, u"Brand - Web"_s},
        {u"a/\\:*?\"<>|b"_s, u"a---------b"_s},
        {u" -Brand- "_s, u"Brand"_s},
        {u"\t<Brand>\u00A0"_s, u"Brand"_s},
        {u"Caf\u00e9 \U0001F308.v2"_s, u"Caf\u00e9 \U0001F308.v2"_s},
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
