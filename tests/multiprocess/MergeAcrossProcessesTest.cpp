// The store's save against real other processes of the product writing the same preferences
// file: the three-way merge and the file lock.

#include "OtherProcessFixture.h"
#include "util/Clock.h"

#include <gtest/gtest.h>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

ColorTemplate palette(const QString& name, const QString& hex = u"#E07A5F"_s) {
    return makePalette(name, {makeColor(u"First"_s, hex), makeColor(u"Second"_s, u"#3D405B"_s)});
}

class MergeAcrossProcesses : public OtherProcessFixture {
protected:
    const ColorTemplate alpha = palette(u"Alpha"_s), beta = palette(u"Beta"_s),
                        gamma = palette(u"Gamma"_s), delta = palette(u"Delta"_s);
};

TEST_F(MergeAcrossProcesses, EditsOnBothSidesSurviveByTheMergeRules) {
    seed({alpha, beta, gamma, delta}, alpha.id);
    openStore();
    // Here, not yet saved: a rename, a deletion and a new palette.
    store->editTemplate(alpha.id, [](ColorTemplate& p) { p.name = u"Alpha here"_s; });
    store->deleteTemplate(beta.id);
    store->setTemplates(QList<ColorTemplate>(store->templates()) << palette(u"Local new"_s));
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
    QStringList expected = {u"Alpha"_s};
    for (int i = 0; i < 4; ++i) {
        writers.push_back(std::make_unique<QProcess>());
        writers.back()->setProcessEnvironment(processEnvironment());
        writers.back()->start(QStringLiteral(HUESHELF_TEST_WRITER),
                              {u"add"_s, u"Theirs %1"_s.arg(i), u"#0000%1%1"_s.arg(i)});
        expected << u"Ours %1"_s.arg(i) << u"Theirs %1"_s.arg(i);
    }
    for (int i = 0; i < 4; ++i) {
        store->setTemplates(QList<ColorTemplate>(store->templates())
                            << palette(u"Ours %1"_s.arg(i)));
        clock.setNowMs(SystemClock::instance().nowMs());
        store->saveTemplates();
    }
    for (const auto& process : writers)
        ASSERT_TRUE(process->waitForFinished(20'000) && process->exitCode() == 0);
    writer->drain();
    QStringList names = namesOf(templatesInFile());
    names.sort();
    expected.sort();
    EXPECT_EQ(names, expected);
}

} // namespace
} // namespace hueshelf::testing
