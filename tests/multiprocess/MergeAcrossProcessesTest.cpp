// The store's save against real other processes of the product writing the same preferences
// file: the three-way merge, the file lock, and a command while the bar is open.

#include "OtherProcessFixture.h"
#include "cli/PaletteLookup.h"
#include "util/Clock.h"

#include <gtest/gtest.h>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

ColorTemplate palette(const QString& name, const QString& first, const QString& second = {}) {
    QList<ColorItem> colors{makeColor(u"First"_s, first)};
    if (!second.isEmpty())
        colors.append(makeColor(u"Second"_s, second));
    return makePalette(name, colors);
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
    store->setTemplates(QList<ColorTemplate>(store->templates())
                        << palette(u"Local new"_s, u"#101010"_s));

    // Meanwhile another process adds, edits and deletes, each a full read-merge-write.
    QString remoteId;
    ASSERT_TRUE(otherProcess({u"add"_s, u"Remote new"_s, u"#112233"_s}, &remoteId));
    ASSERT_TRUE(otherProcess({u"recolor"_s, u"Gamma"_s, u"0"_s, u"#00FF00"_s}));
    ASSERT_TRUE(otherProcess({u"delete"_s, u"Alpha"_s}));                 // edited here
    ASSERT_TRUE(otherProcess({u"rename"_s, u"Beta"_s, u"Beta there"_s})); // deleted here
    ASSERT_TRUE(otherProcess({u"delete"_s, u"Delta"_s}));                 // untouched here

    store->saveTemplates();
    writer->drain();

    // Local order first, then what only the other side has; deletions over there are not
    // honoured, the one made here stands while its id is in the base.
    const QList<ColorTemplate> file = templatesInFile();
    ASSERT_EQ(namesOf(file), (QStringList{u"Alpha here"_s, u"Gamma"_s, u"Delta"_s, u"Local new"_s,
                                          u"Remote new"_s}));
    EXPECT_EQ(file.at(1).colors.at(0).hex, u"#00FF00"_s) << "their edit of an untouched palette";
    EXPECT_EQ(uuidText(file.at(4).id), remoteId);
    EXPECT_EQ(namesOf(store->templates()), namesOf(file));
    EXPECT_EQ(fileActiveId(), uuidText(alpha.id));
    EXPECT_EQ(readPreferences().value(kForeignKey).toObject().value(u"keep"_s), QJsonValue(true));
}

// Four one-shot processes add a palette each while the store saves four of its own. Each
// read-merge-write holds the file's lock, so every cycle sees every earlier one.
TEST_F(MergeAcrossProcesses, SimultaneousWritersLoseNothing) {
    seed({alpha}, alpha.id);
    clock.setNowMs(SystemClock::instance().nowMs());
    openStore();
    std::vector<std::unique_ptr<QProcess>> writers;
    for (int i = 0; i < 4; ++i) {
        writers.push_back(std::make_unique<QProcess>());
        writers.back()->setProcessEnvironment(processEnvironment());
        writers.back()->start(QStringLiteral(HUESHELF_TEST_WRITER),
                              {u"add"_s, u"Theirs %1"_s.arg(i), u"#0000%1%1"_s.arg(i)});
    }
    for (int i = 0; i < 4; ++i) {
        store->setTemplates(QList<ColorTemplate>(store->templates())
                            << palette(u"Ours %1"_s.arg(i), u"#FFFFFF"_s));
        clock.setNowMs(SystemClock::instance().nowMs());
        store->saveTemplates();
    }
    for (const auto& process : writers) {
        ASSERT_TRUE(process->waitForFinished(20'000));
        ASSERT_EQ(process->exitCode(), 0);
    }
    writer->drain();

    QStringList names = namesOf(templatesInFile());
    names.sort();
    EXPECT_EQ(names, (QStringList{u"Alpha"_s, u"Ours 0"_s, u"Ours 1"_s, u"Ours 2"_s, u"Ours 3"_s,
                                  u"Theirs 0"_s, u"Theirs 1"_s, u"Theirs 2"_s, u"Theirs 3"_s}));
}

// The command writes its choice to the file; an open store keeps its own active palette while
// it still exists, takes in the new palette, and its next save writes its own choice back.
TEST_F(MergeAcrossProcesses, ACommandWhileTheBarIsOpenLeavesItsActivePalette) {
    seed({alpha, beta}, alpha.id);
    openStore(true);
    ASSERT_TRUE(otherProcess({u"add"_s, u"Fresh"_s, u"#0A0B0C"_s}));
    ASSERT_TRUE(run(QStringLiteral(HUESHELF_BINARY), {u"use"_s, u"Fresh"_s}));
    const std::optional<ColorTemplate> fresh =
        cli::PaletteLookup::find(templatesInFile(), u"Fresh"_s);
    ASSERT_TRUE(fresh);
    ASSERT_EQ(fileActiveId(), uuidText(fresh->id));

    ASSERT_TRUE(noticeOutsideWrite());
    EXPECT_EQ(store->activeTemplateId(), alpha.id);
    EXPECT_EQ(namesOf(store->templates()), (QStringList{u"Alpha"_s, u"Beta"_s, u"Fresh"_s}));
    store->renameActiveTemplate(u"Alpha again"_s);
    writer->drain();
    EXPECT_EQ(fileActiveId(), uuidText(alpha.id));
    EXPECT_EQ(namesOf(templatesInFile()), (QStringList{u"Alpha again"_s, u"Beta"_s, u"Fresh"_s}));
}

} // namespace
} // namespace hueshelf::testing
