// A save killed at any moment, or read by another process at any moment, leaves the old file or
// the new one: always a whole JSON object whose palettes decode, holding either the last save the
// writer finished or the one it was in the middle of.

#include "OtherProcessFixture.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

#include <random>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

// The count in the name of the loop's palette, -1 when there is none.
qint64 loopCountOf(const QList<ColorTemplate>& templates) {
    static const QRegularExpression pattern(u"^Loop (\\d+)$"_s);
    for (const ColorTemplate& palette : templates) {
        if (const QRegularExpressionMatch match = pattern.match(palette.name); match.hasMatch())
            return match.captured(1).toLongLong();
    }
    return -1;
}

using InterruptedSave = OtherProcessFixture;

TEST_F(InterruptedSave, AKilledWriterLeavesTheOldFileOrTheNewOne) {
    const ColorTemplate keep = makePalette(u"Keep me"_s, {makeColor(u"One"_s, u"#123456"_s)});
    seed({keep}, keep.id);
    // Random but repeatable: a failing round can be run again as it was.
    std::mt19937 random(20'240'611);
    qint64 known = -1; // the highest count seen in the file
    for (int round = 0; round < 40; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        // The writer saves "Loop N+1", "Loop N+2", ... as fast as it can, with a large palette
        // in on odd counts only, and prints "saved N" once save N is in the file.
        QProcess process;
        process.setProcessEnvironment(processEnvironment());
        process.start(QStringLiteral(HUESHELF_TEST_WRITER), {u"loop"_s});
        ASSERT_TRUE(process.waitForStarted(10'000));
        while (!process.peek(1 << 16).contains("writing\n"))
            ASSERT_TRUE(process.waitForReadyRead(10'000));
        // Meanwhile the file is read over and over, as the bar reads it: every read finds a
        // whole file. The number of reads puts the kill at a random moment of the cycle.
        for (int reads = int(random() % 3000); reads > 0; --reads)
            ASSERT_TRUE(QJsonDocument::fromJson(readBytes(prefsPath())).isObject()) << reads;
        process.kill();
        ASSERT_TRUE(process.waitForFinished(10'000));
        const QString out = QString::fromUtf8(process.readAllStandardOutput());
        const qsizetype last = out.lastIndexOf(u"saved "_s);
        const qint64 finished =
            last < 0 ? known : out.mid(last + 6).section(u'\n', 0, 0).toLongLong();

        // The file as any reader finds it now.
        const QJsonDocument document = QJsonDocument::fromJson(readBytes(prefsPath()));
        const std::optional<QByteArray> data = PreferencesFile::templatesData(document.object());
        ASSERT_TRUE(data);
        const auto templates = TemplateJson::decodeTemplates(*data, clock);
        ASSERT_TRUE(templates && !templates->isEmpty());
        EXPECT_EQ(templates->constFirst().id, keep.id);
        EXPECT_EQ(document.object().value(kForeignKey), QJsonObject({{u"keep"_s, true}}));
        // The last finished save, or the one under way when the kill came.
        const qint64 count = loopCountOf(*templates);
        EXPECT_TRUE(finished < 0 ? count == -1 || count == 1
                                 : count == finished || count == finished + 1)
            << "file " << count << ", last finished " << finished;
        // Odd counts carry the ballast, even ones don't: a mixture of two saves can't pass.
        const bool ballast =
            std::any_of(templates->begin(), templates->end(),
                        [](const ColorTemplate& p) { return p.name == u"Ballast"_s; });
        EXPECT_EQ(ballast, count % 2 == 1) << count;
        // The load at start reads the real file, whatever was left beside it.
        EXPECT_EQ(loopCountOf(TemplateLoader::load(prefsPath(), *settings, clock).templates),
                  count);
        known = std::max(known, count);
    }
    ASSERT_GT(known, 0) << "the writer never finished a save";
    // A store opened afterwards loads the last state and saves over whatever was left behind.
    openStore();
    EXPECT_EQ(loopCountOf(store->templates()), known);
    store->renameActiveTemplate(u"Kept"_s);
    writer->drain();
    EXPECT_EQ(namesOf(templatesInFile()).constFirst(), u"Kept"_s);
    EXPECT_EQ(loopCountOf(templatesInFile()), known);
}

} // namespace
} // namespace hueshelf::testing
