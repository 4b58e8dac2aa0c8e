// The merge of the folder's records into the store.

#include "SyncEngineTestSupport.h"
#include "model/TemplateJson.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>

namespace hueshelf::testing {
namespace {

class ApplyRemoteTemplates : public SyncEngineFixture {
protected:
    void SetUp() override {
        brand = makePalette(
            u"Brand"_s, {makeColor(u"Ink"_s, u"#101010"_s), makeColor(u"Paper"_s, u"#FAFAFA"_s)});
        brand.revision = 4;
        other = makePalette(u"Other"_s, {makeColor(u"Moss"_s, u"#4A6B3A"_s)});
        other.revision = 9;
        startDevice({brand, other});
        // Both palettes last agreed with the folder as they stand.
        agree(brand);
        agree(other);
        writer.shadowWrites.clear();
    }

    void agree(const ColorTemplate& palette) {
        store->setShadowState(palette.id,
                              ShadowTemplateState{palette.contentHash, palette.revision, 1.0});
    }

    // The palette as another device edited it: renamed, written at `at`.
    SyncableTemplate renamedElsewhere(const QString& name, double at = kStart - 5'000.0) const {
        ColorTemplate edited = brand;
        edited.name = name;
        SyncableTemplate record = remoteRecord(edited, at);
        record.revision = brand.revision + 1;
        return record;
    }

    std::size_t unstampedSaves() const {
        return static_cast<std::size_t>(
            std::count_if(writer.requests.cbegin(), writer.requests.cend(), [](const auto& r) {
                return r.kind == SaveRequest::Kind::withoutStamping;
            }));
    }

    QMap<QUuid, ShadowTemplateState> shadowWrite(std::size_t index) const {
        return TemplateJson::decodeShadowStates(writer.shadowWrites.at(index)).value();
    }

    ColorTemplate brand;
    ColorTemplate other;
};

TEST_F(ApplyRemoteTemplates, DeletionRecordWinsOverALocalEdit) {
    // Edited here since the last agreement, and not yet saved.
    store->editTemplate(brand.id, [](ColorTemplate& p) { p.colors[0].hex = u"#202020"_s; });
    const SyncableTemplate deleted = deletionRecord(remoteRecord(brand, kStart), kStart);

    storeSync->applyRemoteTemplates({deleted});

    EXPECT_EQ(namesOf(store->templates()), QStringList{u"Other"_s});
    EXPECT_FALSE(store->shadowState().contains(brand.id));
    ASSERT_EQ(writer.shadowWrites.size(), 1u);
    EXPECT_FALSE(shadowWrite(0).contains(brand.id));
    EXPECT_EQ(unstampedSaves(), 1u);
    // Unstamped: the survivor keeps its revision.
    EXPECT_EQ(writer.requests.back().templates.constFirst().revision, 9);
}

TEST_F(ApplyRemoteTemplates, DeletionOfAPaletteNobodyHasIsIgnored) {
    const ColorTemplate stranger = makePalette(u"Gone"_s, {makeColor(u"X"_s, u"#000000"_s)});
    storeSync->applyRemoteTemplates({deletionRecord(remoteRecord(stranger, kStart), kStart)});
    EXPECT_EQ(namesOf(store->templates()), (QStringList{u"Brand"_s, u"Other"_s}));
    EXPECT_TRUE(writer.requests.empty());
    EXPECT_TRUE(writer.shadowWrites.empty());
}

TEST_F(ApplyRemoteTemplates, AcceptedRemoteReplacesThePaletteInPlace) {
    const SyncableTemplate record = renamedElsewhere(u"Brand v2"_s, 123'456.5);
    clock.advanceMs(1'000.0);

    storeSync->applyRemoteTemplates({record});

    const ColorTemplate& taken = store->templates().at(0);
    EXPECT_EQ(taken.name, u"Brand v2"_s);
    EXPECT_EQ(taken.revision, 5);
    EXPECT_EQ(taken.updatedAt, 123'456.5);
    EXPECT_EQ(taken.updatedByDeviceId, kDeviceB);
    EXPECT_EQ(store->templateLastModified().value(brand.id), 123'456.5);
    EXPECT_EQ(store->shadowState().value(brand.id),
              (ShadowTemplateState{record.contentHash, 5, kStart + 1'000.0}));
    EXPECT_EQ(unstampedSaves(), 1u);
    EXPECT_EQ(writer.requests.size(), 1u);
}

TEST_F(ApplyRemoteTemplates, ConflictKeepsTheLocalAndAddsACopyOfTheRemote) {
    store->editTemplate(brand.id, [](ColorTemplate& p) { p.name = u"Brand (mine)"_s; });
    store->editTemplate(brand.id, [](ColorTemplate& p) { p.contentHash = u"1111111111111111"_s; });
    const ColorTemplate local = store->templates().at(0);
    const SyncableTemplate record = renamedElsewhere(u"Brand (theirs)"_s);
    clock.advanceMs(777.0);

    storeSync->applyRemoteTemplates({record});

    ASSERT_EQ(store->templates().size(), 3);
    EXPECT_EQ(store->templates().at(0).id, brand.id);
    EXPECT_EQ(store->templates().at(0).name, u"Brand (mine)"_s);
    const ColorTemplate& copy = store->templates().at(2);
    EXPECT_EQ(copy.name, u"Brand (theirs) (Conflict)"_s);
    EXPECT_NE(copy.id, brand.id);
    EXPECT_EQ(copy.colors, brand.colors); // the remote's colours, ids and all
    EXPECT_EQ(copy.createdAt, kStart + 777.0);
    EXPECT_EQ(copy.updatedAt, kStart + 777.0);
    EXPECT_EQ(copy.revision, 1);
    EXPECT_FALSE(copy.updatedByDeviceId.has_value());
    EXPECT_EQ(copy.contentHash, computeContentHash(copy.name, copy.colors));

    // Written twice: the local values first, then the record's, which stand.
    ASSERT_EQ(writer.shadowWrites.size(), 2u);
    EXPECT_EQ(shadowWrite(0).value(brand.id).contentHash, u"1111111111111111"_s);
    EXPECT_EQ(shadowWrite(1).value(brand.id).contentHash, record.contentHash);
    EXPECT_EQ(store->shadowState().value(brand.id).revision, record.revision);

    ASSERT_EQ(store->pendingConflicts().size(), 1);
    const auto& conflict =
        std::get<SyncConflict::TemplateModified>(store->pendingConflicts().constFirst().change);
    EXPECT_EQ(conflict.local.name, u"Brand (mine)"_s);
    EXPECT_EQ(conflict.remote, record);

    // The next look at the same two versions finds only the local one changed.
    EXPECT_EQ(storeSync->resolveSync(local, record).kind, SyncResult::Kind::acceptLocal);
}

TEST_F(ApplyRemoteTemplates, SameVersionOnBothSidesIsNoConflict) {
    store->editTemplate(brand.id, [](ColorTemplate& p) { p.name = u"Brand v2"_s; });
    store->editTemplate(
        brand.id, [](ColorTemplate& p) { p.contentHash = computeContentHash(p.name, p.colors); });
    storeSync->applyRemoteTemplates({renamedElsewhere(u"Brand v2"_s)});
    EXPECT_EQ(store->templates().size(), 2);
    EXPECT_TRUE(store->pendingConflicts().isEmpty());
    EXPECT_TRUE(writer.requests.empty());
}

struct DoubleCase {
    const char* label;
    QString name;
    QList<std::pair<QString, QString>> colors;
    bool taken;
};

class DoublesGuard : public ApplyRemoteTemplates,
                     public ::testing::WithParamInterface<DoubleCase> {};

TEST_P(DoublesGuard, ANewcomerThatDoublesAPaletteHereIsSkipped) {
    const DoubleCase& c = GetParam();
    QList<ColorItem> colors;
    for (const auto& [name, hex] : c.colors)
        colors.append(makeColor(name, hex)); // fresh colour ids every time
    const ColorTemplate theirs = makePalette(c.name, colors);

    storeSync->applyRemoteTemplates({remoteRecord(theirs, kStart)});

    EXPECT_EQ(store->templates().size(), c.taken ? 3 : 2);
    EXPECT_EQ(store->shadowState().contains(theirs.id), c.taken);
    EXPECT_EQ(store->templateLastModified().contains(theirs.id), c.taken);
}

INSTANTIATE_TEST_SUITE_P(
    ApplyRemoteTemplates, DoublesGuard,
    ::testing::Values(
        DoubleCase{"same colours",
                   u"Brand"_s,
                   {{u"Ink"_s, u"#101010"_s}, {u"Paper"_s, u"#FAFAFA"_s}},
                   false},
        DoubleCase{"reordered and repeated",
                   u"Brand"_s,
                   {{u"Paper"_s, u"#FAFAFA"_s}, {u"Ink"_s, u"#101010"_s}, {u"Ink"_s, u"#101010"_s}},
                   false},
        DoubleCase{"another name",
                   u"Brand 2"_s,
                   {{u"Ink"_s, u"#101010"_s}, {u"Paper"_s, u"#FAFAFA"_s}},
                   true},
        DoubleCase{"one colour renamed",
                   u"Brand"_s,
                   {{u"Ink"_s, u"#101010"_s}, {u"Sheet"_s, u"#FAFAFA"_s}},
                   true},
        DoubleCase{"one colour fewer", u"Brand"_s, {{u"Ink"_s, u"#101010"_s}}, true}),
    [](const auto& testParam) {
        std::string name = testParam.param.label;
        std::replace(name.begin(), name.end(), ' ', '_');
        return name;
    });

TEST_F(ApplyRemoteTemplates, TwoNewcomersThatDoubleEachOtherBringOnePalette) {
    const ColorTemplate first = makePalette(u"Sea"_s, {makeColor(u"Blue"_s, u"#0000FF"_s)});
    const ColorTemplate second = makePalette(u"Sea"_s, {makeColor(u"Blue"_s, u"#0000FF"_s)});
    storeSync->applyRemoteTemplates({remoteRecord(first, 1.0), remoteRecord(second, 2.0)});
    ASSERT_EQ(store->templates().size(), 3);
    EXPECT_EQ(store->templates().at(2).id, first.id);
}

TEST_F(ApplyRemoteTemplates, ALockOnlyChangeMovesTheShadowButNotThePalette) {
    ColorTemplate locked = brand;
    locked.colors[1].isLocked = true;
    locked.colors[0].dividerBefore = true;
    locked.isLocked = true;
    const SyncableTemplate record = remoteRecord(locked, kStart + 50.0);
    ASSERT_NE(record.contentHash, brand.contentHash);
    int changes = 0;
    QObject::connect(store.get(), &ColorStorage::templatesChanged, [&] { ++changes; });

    storeSync->applyRemoteTemplates({record});

    EXPECT_EQ(changes, 0);
    EXPECT_TRUE(writer.requests.empty());
    EXPECT_FALSE(store->templates().at(0).colors.at(1).isLocked);
    EXPECT_EQ(store->shadowState().value(brand.id).contentHash, record.contentHash);

    // The next push writes the local version back over the folder's.
    storeSync->pushToCloud();
    EXPECT_FALSE(recordOf(brand.id)->colors.at(1).isLocked);
    EXPECT_FALSE(recordOf(brand.id)->isLocked);
}

TEST_F(ApplyRemoteTemplates, DeletingTheActivePaletteActivatesTheFirstLeft) {
    store->setActiveTemplateId(other.id);
    storeSync->applyRemoteTemplates({deletionRecord(remoteRecord(other, kStart), kStart)});
    EXPECT_EQ(store->activeTemplateId(), brand.id);
    EXPECT_EQ(writer.requests.back().activeTemplateId, uuidText(brand.id));
}

TEST_F(ApplyRemoteTemplates, DeletingEveryPaletteLeavesAFreshActiveId) {
    const QUuid before = store->activeTemplateId();
    storeSync->applyRemoteTemplates({deletionRecord(remoteRecord(brand, kStart), kStart),
                                     deletionRecord(remoteRecord(other, kStart), kStart)});
    EXPECT_TRUE(store->templates().isEmpty());
    EXPECT_FALSE(store->activeTemplateId().isNull());
    EXPECT_NE(store->activeTemplateId(), before);
    EXPECT_NE(store->activeTemplateId(), other.id);
    EXPECT_EQ(unstampedSaves(), 1u);
}

TEST_F(ApplyRemoteTemplates, ARecordAfterItsDeletionComesBackAsANewcomer) {
    // The folder lists a deletion and, later in the same pass, a live file of the same id: the
    // id left the set, so the live one is a newcomer again.
    const SyncableTemplate live = renamedElsewhere(u"Brand again"_s);
    storeSync->applyRemoteTemplates({deletionRecord(remoteRecord(brand, kStart), kStart), live});
    EXPECT_EQ(namesOf(store->templates()), (QStringList{u"Other"_s, u"Brand again"_s}));
}

TEST_F(ApplyRemoteTemplates, OfTwoPalettesWithOneIdTheFirstTakesTheRemoteVersion) {
    // A list may hold one id twice; a record of it speaks to the first, also after a deletion
    // earlier in the same pass has moved every palette up, and after newcomers have joined.
    struct Row {
        const char* label;
        bool deleteOtherFirst;
        bool newcomerFirst;
    };
    const Row rows[] = {{"plain", false, false},
                        {"after a deletion", true, false},
                        {"after a newcomer", false, true},
                        {"after both", true, true}};
    for (const Row& row : rows) {
        ColorTemplate twin = brand;
        twin.name = u"Brand twin"_s;
        startDevice({other, brand, twin}, true);
        agree(brand);
        agree(other);
        writer.shadowWrites.clear();

        QList<SyncableTemplate> records;
        if (row.deleteOtherFirst)
            records.append(deletionRecord(remoteRecord(other, kStart), kStart));
        if (row.newcomerFirst)
            records.append(
                remoteRecord(makePalette(u"New"_s, {makeColor(u"N"_s, u"#0A0B0C"_s)}), kStart));
        records.append(renamedElsewhere(u"Brand v2"_s));

        storeSync->applyRemoteTemplates(records);

        QStringList expected;
        if (!row.deleteOtherFirst)
            expected.append(u"Other"_s);
        expected.append({u"Brand v2"_s, u"Brand twin"_s});
        if (row.newcomerFirst)
            expected.append(u"New"_s);
        EXPECT_EQ(namesOf(store->templates()), expected) << row.label;
    }
}

} // namespace
} // namespace hueshelf::testing
