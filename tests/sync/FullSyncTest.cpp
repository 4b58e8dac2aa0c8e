// The full pass: read, merge, remove doubles, upload what the folder lacks.

#include "SyncEngineTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>

namespace hueshelf::testing {
namespace {

struct DuplicateCase {
    const char* label;
    double times[3]; // templateLastModified of the three doubles, in list order
    int survivor;    // index among the three
};

class RemoveDuplicates : public SyncEngineFixture,
                         public ::testing::WithParamInterface<DuplicateCase> {};

TEST_P(RemoveDuplicates, TheOldestSurvivesAndOfEqualAgesTheLaterInTheList) {
    const DuplicateCase& c = GetParam();
    QList<ColorTemplate> doubles;
    for (int i = 0; i < 3; ++i)
        doubles.append(makePalette(
            u"Brand"_s, {makeColor(u"Ink"_s, u"#101010"_s), makeColor(u"Paper"_s, u"#FAFAFA"_s)}));
    // The same colours in another order are a double too; repeated colours are not.
    std::swap(doubles[1].colors[0], doubles[1].colors[1]);
    const ColorTemplate repeated = makePalette(u"Brand"_s, {makeColor(u"Ink"_s, u"#101010"_s),
                                                            makeColor(u"Ink"_s, u"#101010"_s),
                                                            makeColor(u"Paper"_s, u"#FAFAFA"_s)});
    const ColorTemplate other = makePalette(u"Other"_s, {makeColor(u"Ink"_s, u"#101010"_s)});
    startDevice({doubles[0], other, doubles[1], repeated, doubles[2]}, false);
    for (int i = 0; i < 3; ++i) {
        store->setShadowState(doubles[i].id, ShadowTemplateState{u"x"_s, 1, 0.0});
        store->setTemplateLastModified(doubles[i].id, c.times[i]);
    }
    store->setActiveTemplateId(doubles[0].id);

    storeSync->removeDuplicateTemplates();

    // The survivor keeps its place: first, between the other two, or last.
    QList<QUuid> expected = {other.id, repeated.id};
    expected.insert(c.survivor, doubles[c.survivor].id);
    QList<QUuid> ids;
    for (const ColorTemplate& palette : store->templates())
        ids.append(palette.id);
    EXPECT_EQ(ids, expected);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(store->shadowState().contains(doubles[i].id), i == c.survivor) << i;
    EXPECT_EQ(writer.shadowWrites.size(), 2u); // once after each removal
    ASSERT_EQ(writer.requests.size(), 1u);
    EXPECT_EQ(writer.requests.front().kind, SaveRequest::Kind::withoutStamping);
    if (c.survivor != 0) {
        EXPECT_EQ(store->activeTemplateId(), store->templates().constFirst().id);
    }
}

INSTANTIATE_TEST_SUITE_P(
    FullSync, RemoveDuplicates,
    ::testing::Values(DuplicateCase{"oldest in the middle", {100.0, 50.0, 200.0}, 1},
                      DuplicateCase{"oldest first", {10.0, 50.0, 200.0}, 0},
                      DuplicateCase{"oldest last", {300.0, 200.0, 100.0}, 2},
                      DuplicateCase{"all equal", {70.0, 70.0, 70.0}, 2},
                      DuplicateCase{"first two equal and older", {70.0, 70.0, 90.0}, 1}),
    [](const auto& testParam) {
        std::string name = testParam.param.label;
        std::replace(name.begin(), name.end(), ' ', '_');
        return name;
    });

class FullSync : public SyncEngineFixture {
protected:
    void SetUp() override {
        mine = makePalette(u"Mine"_s, {makeColor(u"A"_s, u"#0A0A0A"_s)});
        deletedElsewhere = makePalette(u"Doomed"_s, {makeColor(u"D"_s, u"#0D0D0D"_s)});
        shared = makePalette(u"Shared"_s, {makeColor(u"S"_s, u"#050505"_s)});
        startDevice({mine, deletedElsewhere, shared});
    }

    ColorTemplate mine;
    ColorTemplate deletedElsewhere;
    ColorTemplate shared;
};

TEST_F(FullSync, MergesUploadsWhatTheFolderLacksAndEndsSynced) {
    const ColorTemplate theirs = makePalette(u"Theirs"_s, {makeColor(u"T"_s, u"#0F0F0F"_s)});
    SyncableTemplate sharedRecord = remoteRecord(shared, kStart - 10.0);
    putRecord(sharedRecord);
    putRecord(remoteRecord(theirs, kStart - 20.0));
    putRecord(deletionRecord(remoteRecord(deletedElsewhere, 1.0), 2.0));
    clock.advanceMs(5.0);

    storeSync->fullSync();
    EXPECT_TRUE(store->isSyncing());
    EXPECT_EQ(store->cloudSyncStatus(), CloudSyncStatus::syncing());
    io.flush();

    EXPECT_EQ(namesOf(store->templates()), (QStringList{u"Mine"_s, u"Shared"_s, u"Theirs"_s}));
    EXPECT_FALSE(store->isSyncing());
    EXPECT_EQ(store->cloudSyncStatus(), CloudSyncStatus::synced());
    EXPECT_EQ(sync->lastSyncTime(), kStart + 5.0);

    // Only the palette the folder didn't know was written, as it stands.
    const SyncableTemplate uploaded = recordOf(mine.id).value();
    EXPECT_EQ(uploaded.lastModified, mine.updatedAt);
    EXPECT_EQ(uploaded.contentHash, mine.contentHash);
    EXPECT_EQ(store->shadowState().value(mine.id).contentHash, mine.contentHash);
    EXPECT_EQ(store->templateLastModified().value(mine.id), mine.updatedAt);
    EXPECT_EQ(recordOf(shared.id), sharedRecord);
    EXPECT_TRUE(recordOf(deletedElsewhere.id)->deleted);
}

TEST_F(FullSync, WithTheFolderAwayOnlyTheStoresStatusFails) {
    ASSERT_TRUE(QDir(syncFolder()).removeRecursively());
    storeSync->fullSync();
    EXPECT_EQ(io.pending(), 0u);
    EXPECT_FALSE(store->isSyncing());
    EXPECT_EQ(store->cloudSyncStatus(), CloudSyncStatus::failed(kStart));
}

TEST_F(FullSync, RunsEvenWhileAnotherPassHoldsTheFlag) {
    store->setSyncing(true);
    storeSync->fullSync();
    EXPECT_EQ(io.pending(), 1u);
    io.flush();
    EXPECT_FALSE(store->isSyncing());
    EXPECT_TRUE(recordOf(mine.id).has_value());
}

TEST_F(FullSync, UploadWithoutRecordsReadsTheFolder) {
    SyncableTemplate sharedRecord = remoteRecord(shared, 99.0);
    putRecord(sharedRecord);
    storeSync->uploadLocalOnlyTemplates({});
    EXPECT_EQ(recordOf(shared.id), sharedRecord); // known to the folder: not rewritten
    EXPECT_TRUE(recordOf(mine.id).has_value());
    EXPECT_TRUE(recordOf(deletedElsewhere.id).has_value());
}

TEST_F(FullSync, DoesNothingWithSyncOff) {
    sync->disableSync();
    storeSync->fullSync();
    EXPECT_EQ(io.pending(), 0u);
    EXPECT_EQ(store->cloudSyncStatus(), CloudSyncStatus::synced());
}

} // namespace
} // namespace hueshelf::testing
