// The store's cache of hashes and encoded palettes must never answer with anything but what
// computeContentHash and encodeTemplates give for the palettes as they are now, through any
// sequence of edits, including the ones that change the JSON but not the hash.

#include "model/TemplateEncodingCache.h"

#include "ModelTestSupport.h"
#include "RandomRecords.h"
#include "model/ContentHash.h"
#include "model/TemplateJson.h"

#include <gtest/gtest.h>

#include <functional>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

void expectFresh(TemplateEncodingCache& cache, const QList<ColorTemplate>& list,
                 const std::string& step) {
    for (const ColorTemplate& palette : list)
        ASSERT_EQ(cache.contentHash(palette), computeContentHash(palette.name, palette.colors))
            << step;
    ASSERT_EQ(TemplateJson::joinEncoded(cache.encodeParts(list)),
              TemplateJson::encodeTemplates(list))
        << step;
}

struct EditCase {
    const char* name;
    std::function<void(ColorTemplate&)> edit;
    bool changesHash;
};

class CachedAfterEdit : public ::testing::TestWithParam<EditCase> {};

TEST_P(CachedAfterEdit, AnswersForThePaletteAsItIsNow) {
    ColorItem first = makeColor(u"First"_s, u"#111111"_s);
    first.dividerLabel = u"stale"_s;
    ColorTemplate palette = makePalette(u"P"_s, {first, makeColor(u"Second"_s, u"#222222"_s)});
    palette.updatedByDeviceId = u"device"_s;
    QList<ColorTemplate> list{palette, makePalette(u"Other"_s, {})};
    TemplateEncodingCache cache;
    expectFresh(cache, list, "before");
    const QString before = cache.contentHash(list.at(0));

    GetParam().edit(list[0]);

    expectFresh(cache, list, "after");
    EXPECT_EQ(cache.contentHash(list.at(0)) != before, GetParam().changesHash);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, CachedAfterEdit,
    ::testing::Values(
        EditCase{"colorName", [](ColorTemplate& p) { p.colors[1].name = u"Renamed"_s; }, true},
        EditCase{"colorHex", [](ColorTemplate& p) { p.colors[0].hex = u"#111112"_s; }, true},
        EditCase{"colorLock", [](ColorTemplate& p) { p.colors[0].isLocked = true; }, true},
        EditCase{"autoNamed", [](ColorTemplate& p) { p.colors[0].isAutoNamed = true; }, true},
        EditCase{"groupStarts", [](ColorTemplate& p) { p.colors[0].dividerBefore = true; }, true},
        EditCase{"staleLabelCleared", [](ColorTemplate& p) { p.colors[0].dividerLabel.clear(); },
                 false},
        EditCase{"colorsSwapped", [](ColorTemplate& p) { p.colors.swapItemsAt(0, 1); }, true},
        EditCase{"colorRemoved", [](ColorTemplate& p) { p.colors.removeLast(); }, true},
        EditCase{"paletteName", [](ColorTemplate& p) { p.name = u"Q"_s; }, true},
        EditCase{"paletteLock", [](ColorTemplate& p) { p.isLocked = true; }, false},
        EditCase{"stamps",
                 [](ColorTemplate& p) {
                     p.updatedAt += 1.0;
                     p.revision += 1;
                     p.contentHash = u"0000000000000000"_s;
                 },
                 false},
        EditCase{"negativeZeroStamp", [](ColorTemplate& p) { p.createdAt = -0.0; }, false},
        EditCase{"deviceGone", [](ColorTemplate& p) { p.updatedByDeviceId.reset(); }, false}),
    [](const ::testing::TestParamInfo<EditCase>& param) { return std::string(param.param.name); });

// Long random sequences of the edits above, and of palettes coming, going, moving and sharing
// an id, checked after every step.
TEST(TemplateEncodingCache, StaysFreshThroughRandomEdits) {
    RandomRecords records(17);
    QList<ColorTemplate> list;
    for (int i = 0; i < 12; ++i)
        list.append(records.palette());
    TemplateEncodingCache cache;
    for (int step = 0; step < 600; ++step) {
        const qsizetype at = qsizetype(records.below(std::uint32_t(list.size())));
        ColorTemplate& palette = list[at];
        switch (records.below(9)) {
        case 0:
            if (!palette.colors.isEmpty())
                palette.colors[0].name = records.text();
            break;
        case 1:
            if (!palette.colors.isEmpty())
                palette.colors.last().dividerLabel = records.text();
            break;
        case 2:
            if (!palette.colors.isEmpty())
                palette.colors.last().dividerBefore = !palette.colors.last().dividerBefore;
            break;
        case 3:
            palette.updatedAt = records.number();
            break;
        case 4:
            palette.name = records.text();
            break;
        case 5:
            list.insert(at, records.palette());
            break;
        case 6:
            if (list.size() > 2)
                list.removeAt(at);
            break;
        case 7: { // another palette under an id already in the list
            ColorTemplate twin = records.palette();
            twin.id = list.at(0).id;
            list.append(twin);
            break;
        }
        default:
            list.swapItemsAt(at, 0);
            break;
        }
        expectFresh(cache, list, "step " + std::to_string(step));
    }
}

} // namespace
} // namespace hueshelf::testing
