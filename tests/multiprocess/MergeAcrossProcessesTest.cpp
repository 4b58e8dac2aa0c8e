#include "OtherProcessFixture.h"
#include "cli/PaletteLookup.h"
#include "util/Clock.h"

#include <gtest/gtest.h>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

ColorTemplate palette(const QString& name, const QString& first, const QString& second) {
    return makePalette(name, {makeColor(u"First"_s, first), makeColor(u"Second"_s, second)});
}

class MergeAcrossProcesses : public OtherProcessFixture {
protected:
    const ColorTemplate alpha = palette(u"Alpha"_s, u"#E07A5F"_s, u"#3D405B"_s);
    const ColorTemplate beta = palette(u"Beta"_s, u"#81B29A"_s, u"#F2CC8F"_s);
    const ColorTemplate gamma = palette(u"Gamma"_s, u"#F4F1DE"_s, u"#264653"_s);
    const ColorTemplate delta = palette(u"Delta"_s, u"#2A9D8F"_s, u"#E9C46A"_s);
};

TEST_F(MergeAcrossProcesses, EditsOnBothSidesSurviveByTheMergeRules) {
    seed({alpha, beta, gamma, delta}, alpha.id);
    openStore();

    // Here, not yet saved: a rename, a deletion and a new palette.
    store->editTemplate(alpha.id, [](ColorTemplate& p) { p.name = u"Alpha here"_s; });
    store->deleteTemplate(beta.id);
    const ColorTemplate local = palette(u"Local new"_s, u"#101010"_s, u"#202020"_s);
    QList<ColorTemplate> withLocal = store->templates();
    withLocal.append(local);
    store->setTemplates(withLocal);

    // Meanwhile another process adds, edits and deletes, each a full read-merge-write.
    QString remoteIdText;
    ASSERT_TRUE(
        otherProcess({u"add"_s, u"Remote new"_s, u"#112233"_s, u"#445566"_s}, &remoteIdText));
    ASSERT_TRUE(otherProcess({u"recolor"_s, u"Gamma"_s, u"0"_s, u"#00FF00"_s}));
    ASSERT_TRUE(otherProcess({u"delete"_s, u"Alpha"_s}));                 // edited here
    ASSERT_TRUE(otherProcess({u"rename"_s, u"Beta"_s, u"Beta there"_s})); // deleted here
    ASSERT_TRUE(otherProcess({u"delete"_s, u"Delta"_s}));                 // untouched here
    const std::optional<QUuid> remoteId = TemplateJson::uuidFromText(remoteIdText);
    ASSERT_TRUE(remoteId) << remoteIdText.toStdString();
    ASSERT_EQ(namesOf(templatesInFile()),
              (QStringList{u"Beta there"_s, u"Gamma"_s, u"Remote new"_s}));

    saveAndWait();

    const QList<ColorTemplate> file = templatesInFile();
    // Local order first, then what only the other side has; deletions over there are not
    // honoured, the one made here stands while its id is in the base.
    EXPECT_EQ(namesOf(file), (QStringList{u"Alpha here"_s, u"Gamma"_s, u"Delta"_s, u"Local new"_s,
                                          u"Remote new"_s}));
    ASSERT_EQ(file.size(), 5);
    EXPECT_EQ(file.at(1).colors.at(0).hex, u"#00FF00"_s) << "their edit of an untouched palette";
    EXPECT_EQ(file.at(1).revision, 2);
    EXPECT_EQ(file.at(0).revision, 2) << "stamped by this store's save";
    EXPECT_EQ(file.at(4).id, *remoteId);
    EXPECT_FALSE(inFile(beta.id));

    // The store now shows what the file holds, and the other process's key survived.
    EXPECT_EQ(signaturesOf(store->templates()), signaturesOf(file));
    EXPECT_EQ(fileActiveId(), uuidText(alpha.id));
    EXPECT_EQ(readPreferences().value(kForeignKey).toObject().value(u"keep"_s), QJsonValue(true));
    EXPECT_EQ(store->baselineStamp(), fileStamp());
}

// Writers at the very same time: four one-shot processes add a palette each while the store
// saves four of its own. Each read-merge-write holds the file's lock and no write moves the
// stamp backwards, so every cycle sees every earlier one and nothing is lost, not even for a
// moment.
TEST_F(MergeAcrossProcesses, SimultaneousWritersLoseNothing) {
    constexpr int kWriters = 4;
    constexpr int kOwnPalettes = 4;
    seed({alpha}, alpha.id);
    clock.setNowMs(SystemClock::instance().nowMs());
    openStore();

    std::vector<std::unique_ptr<QProcess>> writers;
    for (int i = 0; i < kWriters; ++i) {
        auto process = std::make_unique<QProcess>();
        process->setProcessEnvironment(processEnvironment());
        process->start(QStringLiteral(HUESHELF_TEST_WRITER),
                       {u"add"_s, u"Theirs %1"_s.arg(i), u"#0000%1%1"_s.arg(i)});
        writers.push_back(std::move(process));
    }
    QList<QUuid> ours;
    for (int i = 0; i < kOwnPalettes; ++i) {
        const ColorTemplate own = palette(u"Ours %1"_s.arg(i), u"#%1%100FF"_s.arg(i), u"#FFFFFF"_s);
        ours << own.id;
        QList<ColorTemplate> templates = store->templates();
        templates.append(own);
        store->setTemplates(templates);
        clock.setNowMs(SystemClock::instance().nowMs());
        store->saveTemplates();
    }
    for (const auto& process : writers) {
        ASSERT_TRUE(process->waitForFinished(20'000));
        ASSERT_EQ(process->exitStatus(), QProcess::NormalExit);
        ASSERT_EQ(process->exitCode(), 0);
    }
    writer->drain();

    const QList<ColorTemplate> inTheFile = templatesInFile();
    for (const QUuid& id : ours)
        EXPECT_TRUE(inFile(id)) << "a palette of the store was dropped by another writer";
    EXPECT_TRUE(inFile(alpha.id));
    QStringList theirs;
    for (const ColorTemplate& p : inTheFile) {
        if (p.name.startsWith(u"Theirs "_s))
            theirs << p.name;
    }
    theirs.sort();
    EXPECT_EQ(theirs, (QStringList{u"Theirs 0"_s, u"Theirs 1"_s, u"Theirs 2"_s, u"Theirs 3"_s}));
    EXPECT_EQ(inTheFile.size(), 1 + kOwnPalettes + kWriters);
}

struct SameEditCase {
    std::string label;
    bool oursIsLater;
};

class BothEditedOnePalette : public MergeAcrossProcesses,
                             public ::testing::WithParamInterface<SameEditCase> {};

// The later updatedAt takes the whole palette: colours are never merged one by one.
TEST_P(BothEditedOnePalette, TheLaterEditWinsTheWholePalette) {
    seed({alpha, beta}, alpha.id);
    openStore();
    store->editTemplate(alpha.id, [](ColorTemplate& p) { p.colors[1].hex = u"#000080"_s; });
    ASSERT_TRUE(otherProcess({u"rename"_s, u"Alpha"_s, u"Alpha there"_s}));
    const double theirs = inFile(alpha.id).value().updatedAt;
    if (GetParam().oursIsLater)
        clock.setNowMs(SystemClock::instance().nowMs() + 3'600'000.0);
    ASSERT_EQ(GetParam().oursIsLater, clock.nowMs() > theirs);

    saveAndWait();

    const ColorTemplate merged = inFile(alpha.id).value();
    if (GetParam().oursIsLater) {
        EXPECT_EQ(merged.name, u"Alpha"_s);
        EXPECT_EQ(merged.colors.at(1).hex, u"#000080"_s);
        EXPECT_EQ(merged.updatedAt, clock.nowMs());
    } else {
        EXPECT_EQ(merged.name, u"Alpha there"_s);
        EXPECT_EQ(merged.colors.at(1).hex, u"#3D405B"_s) << "our colour edit went with our copy";
        EXPECT_EQ(merged.updatedAt, theirs);
    }
    EXPECT_EQ(signaturesOf(store->templates()), signaturesOf(templatesInFile()));
    EXPECT_EQ(namesOf(templatesInFile()).size(), 2);
}

INSTANTIATE_TEST_SUITE_P(Cases, BothEditedOnePalette,
                         ::testing::Values(SameEditCase{"TheirsIsLater", false},
                                           SameEditCase{"OursIsLater", true}),
                         [](const auto& row) { return row.param.label; });

TEST_F(MergeAcrossProcesses, AnOpenEditorHoldsAnotherProcessesPalettesBackUntilItCloses) {
    seed({alpha}, alpha.id);
    openStore();
    openMonitor();
    store->setEditorPopoverOpen(true);

    QString addedText;
    ASSERT_TRUE(otherProcess({u"add"_s, u"From the helper"_s, u"#ABCDEF"_s}, &addedText));
    ASSERT_TRUE(noticeOutsideWrite());
    EXPECT_TRUE(monitor->externalChangeHeldBack());
    EXPECT_EQ(namesOf(store->templates()), QStringList{u"Alpha"_s});

    // A second write while the editor stays open: the check on closing reads the newest file.
    ASSERT_TRUE(otherProcess({u"recolor"_s, u"Alpha"_s, u"0"_s, u"#FFFFFF"_s}));
    ASSERT_TRUE(noticeOutsideWrite());
    EXPECT_EQ(namesOf(store->templates()), QStringList{u"Alpha"_s});
    EXPECT_EQ(store->templates().at(0).colors.at(0).hex, u"#E07A5F"_s);
    const double stampBefore = fileStamp();

    store->setEditorPopoverOpen(false);
    EXPECT_FALSE(monitor->externalChangeHeldBack());
    EXPECT_EQ(namesOf(store->templates()), (QStringList{u"Alpha"_s, u"From the helper"_s}));
    EXPECT_EQ(uuidText(store->templates().at(1).id), addedText);
    EXPECT_EQ(store->templates().at(0).colors.at(0).hex, u"#FFFFFF"_s);
    EXPECT_EQ(store->baselineStamp(), stampBefore);
    // Nothing of ours was missing from the file, so nothing is written back.
    EXPECT_EQ(store->savingCount(), 0);
    writer->drain();
    EXPECT_EQ(fileStamp(), stampBefore);
}

struct UseCase {
    std::string label;
    bool alsoAdds; // another process adds the palette just before the command selects it
};

class CommandWhileTheStoreIsOpen : public MergeAcrossProcesses,
                                   public ::testing::WithParamInterface<UseCase> {};

// The command writes its choice to the file; an open store keeps its own active palette while
// it still exists, takes in any new palettes, and its next save writes its own choice back.
TEST_P(CommandWhileTheStoreIsOpen, TheOpenStoreKeepsItsActivePalette) {
    seed({alpha, beta}, alpha.id);
    openStore();
    openMonitor();

    QString chosen = u"Beta"_s;
    QStringList expectedNames{u"Alpha"_s, u"Beta"_s};
    if (GetParam().alsoAdds) {
        ASSERT_TRUE(otherProcess({u"add"_s, u"Fresh"_s, u"#0A0B0C"_s}));
        chosen = u"Fresh"_s;
        expectedNames << u"Fresh"_s;
    }
    const ProcessRun use = hueshelf({u"use"_s, chosen});
    ASSERT_TRUE(use.finished);
    ASSERT_EQ(use.status, 0) << use.err.toStdString();
    const std::optional<ColorTemplate> target = cli::PaletteLookup::find(templatesInFile(), chosen);
    ASSERT_TRUE(target);
    ASSERT_EQ(fileActiveId(), uuidText(target->id));
    const double commandStamp = fileStamp();

    ASSERT_TRUE(noticeOutsideWrite());
    EXPECT_EQ(store->activeTemplateId(), alpha.id);
    EXPECT_EQ(namesOf(store->templates()), expectedNames);
    writer->drain();
    EXPECT_EQ(fileStamp(), commandStamp) << "the merge held nothing the file lacked";
    EXPECT_EQ(fileActiveId(), uuidText(target->id));

    store->renameActiveTemplate(u"Alpha again"_s);
    writer->drain();
    EXPECT_EQ(fileActiveId(), uuidText(alpha.id));
    EXPECT_EQ(namesOf(templatesInFile()).size(), expectedNames.size());
}

INSTANTIATE_TEST_SUITE_P(Cases, CommandWhileTheStoreIsOpen,
                         ::testing::Values(UseCase{"SelectionOnly", false},
                                           UseCase{"AfterAnotherProcessAdded", true}),
                         [](const auto& row) { return row.param.label; });

// A store without a palette has no active one to keep, so the command's choice is taken, not
// the first palette of the merge.
TEST_F(MergeAcrossProcesses, AnEmptyStoreTakesTheCommandsChoice) {
    seed({}, QUuid::createUuid());
    openStore();
    openMonitor();
    ASSERT_TRUE(store->templates().isEmpty());

    QString firstText;
    QString secondText;
    ASSERT_TRUE(otherProcess({u"add"_s, u"First"_s, u"#010101"_s}, &firstText));
    ASSERT_TRUE(otherProcess({u"add"_s, u"Second"_s, u"#020202"_s}, &secondText));
    const ProcessRun use = hueshelf({u"use"_s, secondText.toLower()});
    ASSERT_TRUE(use.finished);
    ASSERT_EQ(use.status, 0) << use.err.toStdString();

    ASSERT_TRUE(noticeOutsideWrite());
    EXPECT_EQ(namesOf(store->templates()), (QStringList{u"First"_s, u"Second"_s}));
    EXPECT_EQ(uuidText(store->activeTemplateId()), secondText);
}

} // namespace
} // namespace hueshelf::testing
