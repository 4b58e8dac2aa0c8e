// Between the store's palettes and the folder's records, and the hash both sides compare.

#include "sync/SyncConversion.h"

#include "SyncTestSupport.h"
#include "model/ContentHash.h"

#include <gtest/gtest.h>

#include <random>

namespace hueshelf::testing {
namespace {

ColorTemplate samplePalette() {
    ColorItem primary{QUuid(u"11111111-2222-4333-8444-555555555555"_s),
                      u"Primary"_s,
                      u"#FFA69E"_s,
                      false,
                      false,
                      false,
                      QString()};
    ColorItem accent{QUuid(u"AAAAAAAA-BBBB-4CCC-8DDD-EEEEEEEEEEEE"_s),
                     u"Accent"_s,
                     u"#B8F2E6"_s,
                     true,
                     false,
                     true,
                     u"Brand"_s};
    ColorTemplate palette;
    palette.id = QUuid(u"D1D1D1D1-AAAA-4BBB-8CCC-DDDDDDDDDDDD"_s);
    palette.name = u"Starter"_s;
    palette.colors = {primary, accent};
    palette.createdAt = 1700000000000.5;
    palette.updatedAt = 1700000000123.4567;
    palette.revision = 9;
    palette.contentHash = u"stale-on-purpose"_s;
    palette.isLocked = true;
    return palette;
}

TEST(SyncableContentHash, IsTheWorkedExample) {
    const SyncableTemplate record = syncableFrom(samplePalette(), kDeviceA);
    EXPECT_EQ(syncableContentHash(record.name, record.colors), u"6244534425de9ae5"_s);
}

TEST(SyncableContentHash, MatchesThePalettesHashOnRandomContent) {
    std::mt19937 random(11);
    const QString pieces[] = {u"a"_s, u"|"_s, u":"_s, u"é"_s, u"😀"_s, u"d"_s, QString()};
    const auto text = [&] {
        QString result;
        for (int i = int(random() % 5); i > 0; --i)
            result += pieces[random() % std::size(pieces)];
        return result;
    };
    for (int i = 0; i < 300; ++i) {
        ColorTemplate palette = samplePalette();
        palette.name = text();
        palette.colors.clear();
        for (int c = int(random() % 4); c > 0; --c)
            palette.colors.append({QUuid::createUuid(), text(), text(), bool(random() % 2),
                                   bool(random() % 2), bool(random() % 2), text()});
        const SyncableTemplate record = syncableFrom(palette, kDeviceA);
        ASSERT_EQ(syncableContentHash(record.name, record.colors),
                  computeContentHash(palette.name, palette.colors))
            << i;
    }
}

TEST(SyncableFrom, NamesThisDeviceUnlessThePaletteNamesItsLastWriter) {
    ColorTemplate palette = samplePalette();
    SyncableTemplate record = syncableFrom(palette, kDeviceA);
    EXPECT_EQ(std::tie(record.createdBy, record.modifiedBy), std::tie(kDeviceA, kDeviceA));
    EXPECT_EQ(record.lastModified, palette.updatedAt);
    EXPECT_EQ(record.schemaVersion, 2);
    EXPECT_FALSE(record.deleted || record.deletedAt || record.deletedBy);

    palette.updatedByDeviceId = kDeviceB;
    record = syncableFrom(palette, kDeviceA);
    EXPECT_EQ(std::tie(record.createdBy, record.modifiedBy), std::tie(kDeviceA, kDeviceB));
}

TEST(ToColorTemplate, TakesTheRecordsStampsDeviceAndHashAsFound) {
    SyncableTemplate record = syncableFrom(samplePalette(), kDeviceA);
    record.modifiedBy = kDeviceB;
    record.lastModified = 1700000000999.875;
    record.contentHash = u"0000000000000000"_s;
    record.deleted = true; // not a palette field: the merge looks at it before converting
    const ColorTemplate palette = toColorTemplate(record);
    EXPECT_EQ(palette.updatedAt, 1700000000999.875);
    EXPECT_EQ(palette.createdAt, record.createdAt);
    EXPECT_EQ(palette.updatedByDeviceId, kDeviceB);
    EXPECT_EQ(palette.contentHash, u"0000000000000000"_s);
    EXPECT_EQ(palette.revision, 9);
    EXPECT_TRUE(palette.isLocked);
}

TEST(Conversion, PaletteThroughRecordComesBackFieldForField) {
    ColorTemplate palette = samplePalette();
    palette.updatedByDeviceId = kDeviceB;
    const ColorTemplate back = toColorTemplate(syncableFrom(palette, kDeviceA));
    EXPECT_EQ(back, palette);
    EXPECT_EQ(back.createdAt, palette.createdAt);
    EXPECT_EQ(back.updatedAt, palette.updatedAt);
    EXPECT_EQ(back.updatedByDeviceId, palette.updatedByDeviceId);
    EXPECT_EQ(back.revision, palette.revision);
    EXPECT_EQ(back.contentHash, palette.contentHash);
    EXPECT_EQ(back.isLocked, palette.isLocked);
    for (qsizetype i = 0; i < palette.colors.size(); ++i) {
        const ColorItem& a = palette.colors.at(i);
        const ColorItem& b = back.colors.at(i);
        EXPECT_EQ(std::tie(a.isAutoNamed, a.isLocked, a.dividerBefore, a.dividerLabel),
                  std::tie(b.isAutoNamed, b.isLocked, b.dividerBefore, b.dividerLabel));
    }
}

} // namespace
} // namespace hueshelf::testing
