#include "model/TemplateMerge.h"

#include "ModelTestSupport.h"
#include "model/ContentHash.h"

#include <gtest/gtest.h>

#include <functional>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

// Test names from the rows' own labels.
template <class Case>
std::string labelOf(const ::testing::TestParamInfo<Case>& row) {
    return row.param.label;
}

constexpr double kBaseStamp = 5'000.0;
constexpr double kIncomingStamp = 6'000.0;

ColorTemplate basePalette() {
    return makePalette(u"Brand"_s,
                       {makeColor(u"Ink"_s, u"#101010"_s), makeColor(u"Paper"_s, u"#FAFAFA"_s),
                        makeColor(u"Accent"_s, u"#3B8077"_s, false, true, u"Keys"_s)});
}

// A content change as a save would leave it: new name, hash brought up to date.
void rename(ColorTemplate& palette, const QString& name) {
    palette.name = name;
    palette.contentHash = computeContentHash(palette.name, palette.colors);
}

QList<QUuid> idsOf(const QList<ColorTemplate>& templates) {
    QList<QUuid> ids;
    for (const ColorTemplate& palette : templates)
        ids.append(palette.id);
    return ids;
}

// --- One palette on both sides: which one is kept -------------------------------------------

enum class Kept { local, incoming };

struct PaletteCase {
    const char* label;
    bool inBase;
    bool localChanged;
    bool incomingChanged;
    double localUpdatedAt;
    double incomingUpdatedAt;
    Kept expected;
};

class MergeOnePalette : public ::testing::TestWithParam<PaletteCase> {};

TEST_P(MergeOnePalette, KeepsTheRightSide) {
    const PaletteCase& row = GetParam();
    const ColorTemplate base = basePalette();

    // Revisions tell the two sides apart: they take no part in any comparison.
    ColorTemplate local = base;
    local.revision = 10;
    local.updatedAt = row.localUpdatedAt;
    if (row.localChanged)
        rename(local, u"Brand (here)"_s);
    ColorTemplate incoming = base;
    incoming.revision = 20;
    incoming.updatedAt = row.incomingUpdatedAt;
    if (row.incomingChanged)
        rename(incoming, u"Brand (there)"_s);

    const QList<ColorTemplate> baseList =
        row.inBase ? QList<ColorTemplate>{base} : QList<ColorTemplate>{};
    const QList<ColorTemplate> merged =
        mergeTemplates(baseList, {local}, {incoming}, kBaseStamp, kIncomingStamp);

    ASSERT_EQ(merged.size(), 1);
    const ColorTemplate& expected = row.expected == Kept::local ? local : incoming;
    EXPECT_EQ(merged.at(0).revision, expected.revision);
    EXPECT_EQ(merged.at(0).name, expected.name);
    EXPECT_EQ(merged.at(0).updatedAt, expected.updatedAt);
}

INSTANTIATE_TEST_SUITE_P(
    ThreeCases, MergeOnePalette,
    ::testing::Values(
        // Unknown to the base: the later updatedAt wins, a tie goes to the other process.
        PaletteCase{"NewOnBothSidesIncomingLater", false, false, true, 100.0, 200.0,
                    Kept::incoming},
        PaletteCase{"NewOnBothSidesTie", false, true, true, 150.0, 150.0, Kept::incoming},
        PaletteCase{"NewOnBothSidesLocalLater", false, false, true, 300.0, 200.0, Kept::local},
        PaletteCase{"NewOnBothSidesSameContentLocalLater", false, false, false, 300.0, 200.0,
                    Kept::local},
        // The other side left it as the base had it: this side's version stands, however
        // stamped.
        PaletteCase{"NobodyChangedIt", true, false, false, 100.0, 100.0, Kept::local},
        PaletteCase{"OnlyHereChangedIncomingStampedLater", true, true, false, 100.0, 900.0,
                    Kept::local},
        PaletteCase{"UnchangedThereButRestampedLater", true, false, false, 100.0, 900.0,
                    Kept::local},
        // Changed only there: taken even with an older updatedAt.
        PaletteCase{"OnlyThereChangedButOlder", true, false, true, 900.0, 100.0, Kept::incoming},
        PaletteCase{"OnlyThereChangedAndLater", true, false, true, 100.0, 900.0, Kept::incoming},
        // Changed on both sides: the whole palette of the later stamp, ties to incoming.
        PaletteCase{"BothChangedIncomingLater", true, true, true, 100.0, 900.0, Kept::incoming},
        PaletteCase{"BothChangedTie", true, true, true, 500.0, 500.0, Kept::incoming},
        PaletteCase{"BothChangedLocalLater", true, true, true, 900.0, 100.0, Kept::local}),
    labelOf<PaletteCase>);

// --- The stored hash is never trusted --------------------------------------------------------

struct StoredHashCase {
    const char* label;
    // Edits base copies into local and incoming; stamps are set by the row too.
    std::function<void(ColorTemplate& local, ColorTemplate& incoming)> edit;
    Kept expected;
};

class MergeIgnoresStoredHash : public ::testing::TestWithParam<StoredHashCase> {};

TEST_P(MergeIgnoresStoredHash, ComparesContentOnly) {
    const StoredHashCase& row = GetParam();
    const ColorTemplate base = basePalette();
    ColorTemplate local = base;
    local.revision = 10;
    ColorTemplate incoming = base;
    incoming.revision = 20;
    row.edit(local, incoming);

    const QList<ColorTemplate> merged =
        mergeTemplates({base}, {local}, {incoming}, kBaseStamp, kIncomingStamp);
    ASSERT_EQ(merged.size(), 1);
    EXPECT_EQ(merged.at(0).revision, row.expected == Kept::local ? 10 : 20);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, MergeIgnoresStoredHash,
    ::testing::Values(
        // A writer that hashes differently: same content as the base, another stored hash.
        StoredHashCase{"ForeignHashOnUnchangedIncoming",
                       [](ColorTemplate& local, ColorTemplate& incoming) {
                           rename(local, u"Renamed here"_s);
                           local.updatedAt = 100.0;
                           incoming.contentHash = u"0123456789abcdef"_s;
                           incoming.updatedAt = 900.0;
                       },
                       Kept::local},
        // A writer that forgot to rehash: new content under the base's hash.
        StoredHashCase{"StaleHashOnChangedIncoming",
                       [](ColorTemplate& local, ColorTemplate& incoming) {
                           local.updatedAt = 900.0;
                           incoming.colors[0].hex = u"#202020"_s;
                           incoming.updatedAt = 100.0;
                       },
                       Kept::incoming},
        // An edit here not yet saved: the stored hash still says "as in the base".
        StoredHashCase{"UnsavedLocalEdit",
                       [](ColorTemplate& local, ColorTemplate& incoming) {
                           local.colors[1].name = u"Snow"_s;
                           local.updatedAt = 900.0;
                           rename(incoming, u"Renamed there"_s);
                           incoming.updatedAt = 100.0;
                       },
                       Kept::local},
        // The palette lock is not content: locked elsewhere, it is still "unchanged there".
        StoredHashCase{"PaletteLockAloneIsNoChange",
                       [](ColorTemplate&, ColorTemplate& incoming) {
                           incoming.isLocked = true;
                           incoming.updatedAt = 900.0;
                       },
                       Kept::local},
        // A colour's lock and a group label are content.
        StoredHashCase{"ColourLockIsAChange",
                       [](ColorTemplate&, ColorTemplate& incoming) {
                           incoming.colors[0].isLocked = true;
                           incoming.updatedAt = 1.0;
                       },
                       Kept::incoming},
        StoredHashCase{"GroupLabelIsAChange",
                       [](ColorTemplate&, ColorTemplate& incoming) {
                           incoming.colors[2].dividerLabel = u"Highlights"_s;
                           incoming.updatedAt = 1.0;
                       },
                       Kept::incoming},
        // A label under no divider doesn't hash, so it is no change either.
        StoredHashCase{"LabelWithoutDividerIsNoChange",
                       [](ColorTemplate&, ColorTemplate& incoming) {
                           incoming.colors[0].dividerLabel = u"Ghost"_s;
                           incoming.updatedAt = 900.0;
                       },
                       Kept::local}),
    labelOf<StoredHashCase>);

// --- Stamps ----------------------------------------------------------------------------------

struct StampCase {
    const char* label;
    double incomingStamp;
    bool merges;
};

class MergeStamps : public ::testing::TestWithParam<StampCase> {};

TEST_P(MergeStamps, OnlyANewerIncomingStampMerges) {
    const StampCase& row = GetParam();
    const ColorTemplate shared = basePalette();
    ColorTemplate changedThere = shared;
    rename(changedThere, u"Changed there"_s);
    const ColorTemplate addedThere =
        makePalette(u"Added there"_s, {makeColor(u"X"_s, u"#ABCDEF"_s)});

    const QList<ColorTemplate> merged = mergeTemplates(
        {shared}, {shared}, {changedThere, addedThere}, kBaseStamp, row.incomingStamp);
    if (row.merges) {
        ASSERT_EQ(merged.size(), 2);
        EXPECT_EQ(merged.at(0).name, u"Changed there"_s);
        EXPECT_EQ(merged.at(1).id, addedThere.id);
    } else {
        ASSERT_EQ(merged.size(), 1);
        EXPECT_EQ(merged.at(0).name, shared.name);
    }
}

INSTANTIATE_TEST_SUITE_P(Cases, MergeStamps,
                         ::testing::Values(StampCase{"Older", kBaseStamp - 1.0, false},
                                           StampCase{"Equal", kBaseStamp, false},
                                           StampCase{"Zero", 0.0, false},
                                           StampCase{"JustAbove", kBaseStamp + 0.001, true},
                                           StampCase{"Later", kIncomingStamp, true}),
                         labelOf<StampCase>);

// --- Whole lists: presence, deletions, order -------------------------------------------------

struct ListCase {
    const char* label;
    // Indexes into a pool of palettes P0..P5.
    QList<int> base;
    QList<int> local;
    QList<int> incoming;
    QList<int> expected;
};

class MergeLists : public ::testing::TestWithParam<ListCase> {};

TEST_P(MergeLists, PresenceAndOrder) {
    const ListCase& row = GetParam();
    QList<ColorTemplate> pool;
    for (int i = 0; i < 6; ++i)
        pool.append(makePalette(u"P%1"_s.arg(i), {makeColor(u"C"_s, u"#00000%1"_s.arg(i))}));
    const auto pick = [&](const QList<int>& indexes) {
        QList<ColorTemplate> list;
        for (int i : indexes)
            list.append(pool.at(i));
        return list;
    };
    const QList<ColorTemplate> merged = mergeTemplates(
        pick(row.base), pick(row.local), pick(row.incoming), kBaseStamp, kIncomingStamp);
    EXPECT_EQ(idsOf(merged), idsOf(pick(row.expected)));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, MergeLists,
    ::testing::Values(
        // Deleted by the other process: not honoured.
        ListCase{"DeletedThereComesBack", {0, 1}, {0, 1}, {0}, {0, 1}},
        ListCase{"EverythingDeletedThere", {0, 1}, {0, 1}, {}, {0, 1}},
        // Deleted here while the base still knows it: stays deleted.
        ListCase{"DeletedHereStaysDeleted", {0, 1}, {0}, {0, 1}, {0}},
        ListCase{"EverythingDeletedHere", {0, 1}, {}, {0, 1}, {}},
        // Unknown to the base and missing here: new from the other side.
        ListCase{"AddedThereIsAppended", {0}, {0}, {0, 1}, {0, 1}},
        ListCase{"IntoAnEmptyStore", {}, {}, {0, 1}, {0, 1}}, ListCase{"AllEmpty", {}, {}, {}, {}},
        // Local order first, whatever the other side's order; then the new ones in theirs.
        ListCase{
            "LocalOrderThenIncomingOrder", {0, 1, 2}, {0, 1, 2}, {4, 2, 3, 0}, {0, 1, 2, 4, 3}},
        ListCase{"ReorderedThereIsNotTaken", {0, 1, 2}, {0, 1, 2}, {2, 1, 0}, {0, 1, 2}},
        ListCase{"AddedHereIsKept", {0}, {5, 0}, {0}, {5, 0}},
        ListCase{"MixedAddsAndDeletes", {0, 1, 2}, {2, 0, 5}, {1, 3, 0}, {2, 0, 5, 3}}),
    labelOf<ListCase>);

// The kept palette is the whole record: colours are never mixed from both sides.
TEST(MergeTemplates, KeepsWholePalettesNeverMixesColours) {
    const ColorTemplate base = basePalette();
    ColorTemplate local = base;
    local.colors[0].hex = u"#111111"_s;
    local.updatedAt = 100.0;
    ColorTemplate incoming = base;
    incoming.colors[1].hex = u"#EEEEEE"_s;
    incoming.updatedAt = 200.0;

    const QList<ColorTemplate> merged =
        mergeTemplates({base}, {local}, {incoming}, kBaseStamp, kIncomingStamp);
    ASSERT_EQ(merged.size(), 1);
    EXPECT_EQ(merged.at(0).colors.at(0).hex, u"#101010"_s) << "this side's edit is lost";
    EXPECT_EQ(merged.at(0).colors.at(1).hex, u"#EEEEEE"_s);
}

} // namespace
} // namespace hueshelf::testing
