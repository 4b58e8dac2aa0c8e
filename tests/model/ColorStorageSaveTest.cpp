#include "StoreFixture.h"
#include "model/TemplateJson.h"

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

using Saving = StoreFixture;

TEST_F(Saving, StampsOnlyPalettesWhoseContentChanged) {
    const ColorTemplate edited = abcd(u"Edited"_s);
    const ColorTemplate untouched = abcd(u"Untouched"_s);
    start({edited, untouched});
    clock.advanceMs(250.0);

    store->editTemplate(edited.id, [](ColorTemplate& palette) { palette.colors[0].name = u"Z"_s; });
    templatesChangedCount = 0;
    store->saveTemplates();

    const ColorTemplate& after = store->templates().at(0);
    EXPECT_EQ(after.revision, 2);
    EXPECT_EQ(after.updatedAt, kStart + 250.0);
    EXPECT_EQ(after.createdAt, edited.createdAt);
    EXPECT_EQ(after.contentHash, computeContentHash(after.name, after.colors));
    const ColorTemplate& same = store->templates().at(1);
    EXPECT_EQ(same.revision, 1);
    EXPECT_EQ(same.updatedAt, untouched.updatedAt);
    EXPECT_EQ(templatesChangedCount, 1) << "the stamped list is published";

    // Nothing changed since: a second save stamps nothing and publishes nothing.
    clock.advanceMs(250.0);
    templatesChangedCount = 0;
    store->saveTemplates();
    EXPECT_EQ(store->templates().at(0).revision, 2);
    EXPECT_EQ(store->templates().at(0).updatedAt, kStart + 250.0);
    EXPECT_EQ(templatesChangedCount, 0);
    EXPECT_EQ(saves(), 2u);
    EXPECT_EQ(writer.requests.at(1).nowMs, kStart + 500.0);
}

TEST_F(Saving, UpdatedByDeviceIsNeverStamped) {
    ColorTemplate fromSync = abcd();
    fromSync.updatedByDeviceId = u"other-mac"_s;
    start({fromSync});
    store->renameActiveTemplate(u"Renamed"_s);
    EXPECT_EQ(active().revision, 2);
    EXPECT_EQ(active().updatedByDeviceId, std::optional<QString>(u"other-mac"_s));
}

TEST_F(Saving, APaletteLockDoesNotStampButAColourLockDoes) {
    const ColorTemplate palette = abcd();
    start({palette});
    store->toggleActiveTemplateLock();
    EXPECT_TRUE(active().isLocked);
    EXPECT_EQ(active().revision, 1);
    EXPECT_EQ(active().updatedAt, palette.updatedAt);
    EXPECT_EQ(saves(), 1u);
    EXPECT_TRUE(writer.requests[0].templates[0].isLocked) << "the flip is still written";

    store->toggleActiveTemplateLock();
    ASSERT_TRUE(store->setColorLocked(palette.colors[0].id, true));
    EXPECT_EQ(active().revision, 2);
}

TEST_F(Saving, AHashWrittenDifferentlyCountsAsChangedAtTheFirstSave) {
    ColorTemplate foreign = abcd();
    foreign.contentHash = u"ffffffffffffffff"_s;
    foreign.revision = 7;
    ColorTemplate unhashed = abcd(u"Read without hash"_s);
    // As read from JSON without a contentHash: computed from its own content.
    unhashed.contentHash = computeContentHash(unhashed.name, unhashed.colors);
    start({foreign, unhashed});
    store->saveTemplates();
    EXPECT_EQ(store->templates().at(0).revision, 8);
    EXPECT_EQ(store->templates().at(0).updatedAt, kStart);
    EXPECT_EQ(store->templates().at(1).revision, 1);
}

TEST_F(Saving, HandsTheWriterCopiesOfEverythingItNeeds) {
    const ColorTemplate first = abcd(u"First"_s);
    const ColorTemplate second = abcd(u"Second"_s);
    start({first, second}, second.id);
    store->editTemplate(first.id, [](ColorTemplate& palette) { palette.name = u"Changed"_s; });
    store->saveTemplates();

    ASSERT_EQ(saves(), 1u);
    const SaveRequest& request = writer.requests[0];
    EXPECT_EQ(request.kind, SaveRequest::Kind::stamped);
    EXPECT_EQ(request.activeTemplateId, uuidText(second.id));
    EXPECT_EQ(request.activeTemplateId, request.activeTemplateId.toUpper());
    EXPECT_EQ(request.nowMs, kStart);
    EXPECT_EQ(request.baselineStamp, 55.0);
    ASSERT_EQ(request.baselineTemplates.size(), 2);
    EXPECT_EQ(request.baselineTemplates[0].name, u"First"_s) << "the baseline is the load";
    EXPECT_EQ(request.templates[0].revision, 2);

    ManualClock readClock;
    const auto decoded = TemplateJson::decodeTemplates(request.json, readClock);
    ASSERT_TRUE(decoded);
    ASSERT_EQ(decoded->size(), 2);
    EXPECT_EQ(decoded->at(0).name, u"Changed"_s);
    EXPECT_EQ(decoded->at(0).revision, 2);
    EXPECT_EQ(decoded->at(0).contentHash, request.templates[0].contentHash);
}

TEST_F(Saving, CountsSavesUntilTheWriterFinishes) {
    start({abcd()});
    store->saveTemplates();
    store->saveTemplatesWithoutStamping();
    EXPECT_EQ(store->savingCount(), 2);
    writer.completeNextAsRequested();
    EXPECT_EQ(store->savingCount(), 1);
    writer.completeNextAsRequested();
    EXPECT_EQ(store->savingCount(), 0);
}

TEST_F(Saving, WithoutAWriterTheSaveEndsAfterStamping) {
    ColorTemplate palette = abcd();
    palette.contentHash = u"stale"_s;
    start({palette}, std::nullopt, false);
    store->saveTemplates();
    EXPECT_EQ(store->savingCount(), 0);
    EXPECT_EQ(active().revision, 2);
    store->saveTemplatesWithoutStamping();
    EXPECT_EQ(store->savingCount(), 0);
}

TEST_F(Saving, CompletionTakesAMergedListAndMovesTheBaseline) {
    const ColorTemplate mine = abcd(u"Mine"_s);
    start({mine});
    int written = 0;
    QObject::connect(store.get(), &ColorStorage::templatesWritten, [&] { ++written; });
    clock.advanceMs(10.0);
    store->saveTemplates();

    // Another process added a palette meanwhile; the writer merged it in.
    QList<ColorTemplate> merged = writer.pending.front().request.templates;
    merged.append(abcd(u"Theirs"_s));
    templatesChangedCount = 0;
    writer.completeNext(merged);

    EXPECT_EQ(namesOf(store->templates()), (QStringList{u"Mine"_s, u"Theirs"_s}));
    EXPECT_EQ(templatesChangedCount, 1);
    EXPECT_EQ(namesOf(store->baselineTemplates()), (QStringList{u"Mine"_s, u"Theirs"_s}));
    EXPECT_EQ(store->baselineStamp(), kStart + 10.0);
    EXPECT_EQ(written, 1);
}

TEST_F(Saving, CompletionPublishesAChangeOfHashAlone) {
    const ColorTemplate mine = abcd();
    start({mine});
    store->saveTemplates();
    QList<ColorTemplate> merged = writer.pending.front().request.templates;
    merged[0].colors[0].isLocked = true; // equal records, different content
    merged[0].contentHash = computeContentHash(merged[0].name, merged[0].colors);
    writer.completeNext(merged);
    EXPECT_TRUE(active().colors[0].isLocked);
}

TEST_F(Saving, CompletionLeavesTheListAloneWhileAnEditorIsOpenOrNothingDiffers) {
    start({abcd()});
    store->setEditorPopoverOpen(true);
    store->saveTemplates();
    QList<ColorTemplate> merged = writer.pending.front().request.templates;
    merged.append(abcd(u"Theirs"_s));
    templatesChangedCount = 0;
    writer.completeNext(merged);
    EXPECT_EQ(store->templates().size(), 1);
    EXPECT_EQ(templatesChangedCount, 0);
    EXPECT_EQ(store->baselineTemplates().size(), 2) << "the baseline is what the file holds";

    store->setEditorPopoverOpen(false);
    store->saveTemplates();
    writer.completeNextAsRequested();
    EXPECT_EQ(templatesChangedCount, 0);
}

TEST_F(Saving, ThePlainVariantNeitherStampsNorMovesTheBaseline) {
    ColorTemplate fromSync = abcd();
    fromSync.contentHash = u"as-synced"_s;
    start({fromSync});
    int written = 0;
    QObject::connect(store.get(), &ColorStorage::templatesWritten, [&] { ++written; });
    store->saveTemplatesWithoutStamping();
    ASSERT_EQ(saves(), 1u);
    EXPECT_EQ(writer.requests[0].kind, SaveRequest::Kind::withoutStamping);
    EXPECT_EQ(writer.requests[0].templates[0].contentHash, u"as-synced"_s);
    EXPECT_EQ(active().contentHash, u"as-synced"_s);
    EXPECT_EQ(active().revision, 1);

    QList<ColorTemplate> other{abcd(u"Other"_s)};
    writer.completeNext(other);
    EXPECT_EQ(store->baselineStamp(), 55.0);
    EXPECT_EQ(store->baselineTemplates()[0].id, fromSync.id);
    EXPECT_EQ(store->templates()[0].id, fromSync.id);
    EXPECT_EQ(written, 0);
}

// --- Start and observable state ------------------------------------------------------------

TEST_F(StoreFixture, StartsFromTheLoadWithoutSaving) {
    const ColorTemplate first = abcd(u"First"_s);
    const ColorTemplate second = abcd(u"Second"_s);
    clock.setNowMs(kStart + 9.0);
    start({first, second}, second.id);
    EXPECT_EQ(store->activeTemplateId(), second.id);
    EXPECT_EQ(store->activeTemplate()->name, u"Second"_s);
    EXPECT_EQ(store->templateLastModified(),
              (QMap<QUuid, double>{{first.id, kStart + 9.0}, {second.id, kStart + 9.0}}));
    EXPECT_EQ(store->baselineTemplates(), store->templates());
    EXPECT_EQ(store->baselineStamp(), 55.0);
    EXPECT_FALSE(store->isEditorPopoverOpen());
    EXPECT_FALSE(store->isSyncing());
    EXPECT_EQ(store->cloudSyncStatus(), CloudSyncStatus::synced());
    EXPECT_FALSE(store->colorAwaitingEdit().has_value());
    EXPECT_EQ(saves(), 0u);
    EXPECT_EQ(store->savingCount(), 0);
}

TEST_F(StoreFixture, ActiveTemplateIsAbsentWhenTheIdPointsNowhere) {
    start({abcd()}, QUuid::createUuid());
    EXPECT_FALSE(store->activeTemplate().has_value());
    store->toggleActiveTemplateLock();
    EXPECT_FALSE(store->renameActiveTemplate(u" "_s));
    EXPECT_TRUE(store->renameActiveTemplate(u"x"_s));
    EXPECT_EQ(saves(), 0u);
    EXPECT_FALSE(store->templates()[0].isLocked);
}

TEST_F(StoreFixture, SettersNotifyOnlyOnChange) {
    start({abcd()});
    int editor = 0, awaiting = 0, syncing = 0, status = 0;
    QObject::connect(store.get(), &ColorStorage::isEditorPopoverOpenChanged, [&] { ++editor; });
    QObject::connect(store.get(), &ColorStorage::colorAwaitingEditChanged, [&] { ++awaiting; });
    QObject::connect(store.get(), &ColorStorage::isSyncingChanged, [&] { ++syncing; });
    QObject::connect(store.get(), &ColorStorage::cloudSyncStatusChanged, [&] { ++status; });

    store->setEditorPopoverOpen(true);
    store->setEditorPopoverOpen(true);
    const QUuid id = QUuid::createUuid();
    store->setColorAwaitingEdit(id);
    store->setColorAwaitingEdit(id);
    store->setColorAwaitingEdit(std::nullopt);
    store->setSyncing(true);
    store->setSyncing(true);
    store->setCloudSyncStatus(CloudSyncStatus::failed(12.0));
    store->setCloudSyncStatus(CloudSyncStatus::failed(12.0));
    store->setCloudSyncStatus(CloudSyncStatus::failed(13.0));
    EXPECT_EQ(editor, 1);
    EXPECT_EQ(awaiting, 2);
    EXPECT_EQ(syncing, 1);
    EXPECT_EQ(status, 2);
    EXPECT_EQ(store->cloudSyncStatus().failedAtMs, 13.0);
}

TEST_F(StoreFixture, PropertiesAreReadableThroughTheMetaObject) {
    const ColorTemplate palette = abcd();
    start({palette});
    EXPECT_EQ(store->property("activeTemplateId").toUuid(), palette.id);
    EXPECT_EQ(store->property("templates").value<QList<ColorTemplate>>().size(), 1);
    EXPECT_TRUE(store->setProperty("isEditorPopoverOpen", true));
    EXPECT_TRUE(store->isEditorPopoverOpen());
}

} // namespace
} // namespace hueshelf::testing
