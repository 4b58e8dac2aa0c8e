#include "OtherProcessFixture.h"

#include <QDir>
#include <QElapsedTimer>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <thread>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

constexpr int kRounds = 40;
constexpr int kLongestDelayMs = 30;
// Random but repeatable: a failing round can be run again as it was.
constexpr unsigned kSeed = 20'240'611;

// The count in the name of the loop's palette, -1 when there is none.
qint64 loopCountOf(const QList<ColorTemplate>& templates) {
    static const QRegularExpression pattern(u"^Loop (\\d+)$"_s);
    for (const ColorTemplate& palette : templates) {
        const QRegularExpressionMatch match = pattern.match(palette.name);
        if (match.hasMatch())
            return match.captured(1).toLongLong();
    }
    return -1;
}

// The last count the writer said had reached the file, -1 when it said none.
qint64 lastSavedCount(const QString& out) {
    static const QRegularExpression pattern(u"^saved (\\d+)$"_s,
                                            QRegularExpression::MultilineOption);
    qint64 last = -1;
    QRegularExpressionMatchIterator matches = pattern.globalMatch(out);
    while (matches.hasNext())
        last = matches.next().captured(1).toLongLong();
    return last;
}

class InterruptedSave : public OtherProcessFixture {
protected:
    // Starts the writer's loop and returns once it says it is writing.
    bool startLoop(QProcess& process) {
        process.setProcessEnvironment(processEnvironment());
        process.start(QStringLiteral(HUESHELF_TEST_WRITER), {u"loop"_s});
        if (!process.waitForStarted(10'000))
            return false;
        const QDeadlineTimer deadline(10'000);
        // Peeked, not read: what the writer printed stays for the look after the kill.
        while (!process.peek(1 << 16).contains("writing\n")) {
            if (deadline.hasExpired() || process.state() == QProcess::NotRunning)
                return false;
            process.waitForReadyRead(100);
        }
        return true;
    }

    // Everything in the preferences directory that is not one of the program's own files.
    QStringList strayFiles() const {
        QStringList names = QDir(locations.prefsDir).entryList(QDir::Files | QDir::Hidden);
        names.removeAll(QFileInfo(prefsPath()).fileName());
        names.removeAll(QFileInfo(locations.settingsFile).fileName());
        names.removeIf([](const QString& name) { return name.endsWith(u".lock"_s); });
        return names;
    }
};

// A save killed at any moment leaves the old file or the new one: always a whole JSON object
// whose palettes decode, holding either the last save the writer finished or the one it was
// in the middle of, and never a half-written temporary file in the real one's place.
TEST_F(InterruptedSave, AKilledWriterLeavesTheOldFileOrTheNewOne) {
    const ColorTemplate keep = makePalette(u"Keep me"_s, {makeColor(u"One"_s, u"#123456"_s)});
    seed({keep}, keep.id);

    std::mt19937 random(kSeed);
    std::uniform_int_distribution<int> delayMs(0, kLongestDelayMs);
    qint64 known = -1; // no loop palette yet
    int roundsWithSaves = 0;
    int roundsAheadOfReport = 0; // the file held a save the writer had not yet reported
    int roundsLeavingTemporaries = 0;
    qsizetype strayCount = 0;
    QElapsedTimer elapsed;
    elapsed.start();

    for (int round = 0; round < kRounds; ++round) {
        SCOPED_TRACE("round " + std::to_string(round) + ", seed " + std::to_string(kSeed));
        QProcess process;
        ASSERT_TRUE(startLoop(process));
        std::this_thread::sleep_for(std::chrono::milliseconds(delayMs(random)));
        process.kill();
        ASSERT_TRUE(process.waitForFinished(10'000));
        ASSERT_EQ(process.exitStatus(), QProcess::CrashExit);
        const qint64 saved = lastSavedCount(QString::fromUtf8(process.readAllStandardOutput()));

        // The file as any reader finds it now.
        QJsonParseError error{};
        const QJsonDocument document = QJsonDocument::fromJson(readBytes(prefsPath()), &error);
        ASSERT_EQ(error.error, QJsonParseError::NoError) << error.errorString().toStdString();
        ASSERT_TRUE(document.isObject());
        const std::optional<QByteArray> data = PreferencesFile::templatesData(document.object());
        ASSERT_TRUE(data);
        const std::optional<QList<ColorTemplate>> templates =
            TemplateJson::decodeTemplates(*data, clock);
        ASSERT_TRUE(templates);
        ASSERT_FALSE(templates->isEmpty());
        EXPECT_EQ(templates->constFirst().id, keep.id);
        EXPECT_EQ(document.object().value(kForeignKey).toObject().value(u"keep"_s),
                  QJsonValue(true));

        // The last finished save, or the one under way when the kill came.
        const qint64 finished = saved >= 0 ? saved : known;
        const qint64 count = loopCountOf(*templates);
        if (finished < 0) {
            EXPECT_TRUE(count == -1 || count == 1) << count;
        } else {
            EXPECT_TRUE(count == finished || count == finished + 1)
                << "file " << count << ", last finished " << finished;
        }
        // Odd counts carry the ballast, even ones don't: a mixture of two saves can't pass.
        const bool hasBallast =
            std::any_of(templates->begin(), templates->end(),
                        [](const ColorTemplate& p) { return p.name == u"Ballast"_s; });
        if (count >= 0) {
            EXPECT_EQ(hasBallast, count % 2 == 1) << count;
        }

        // The load at start reads the real file, whatever was left beside it.
        const LoadedTemplates loaded = TemplateLoader::load(prefsPath(), *settings, clock);
        EXPECT_EQ(loopCountOf(loaded.templates), count);

        roundsWithSaves += saved >= 0 ? 1 : 0;
        roundsAheadOfReport += count >= 0 && count == finished + 1 ? 1 : 0;
        const qsizetype strays = strayFiles().size();
        roundsLeavingTemporaries += strays > strayCount ? 1 : 0;
        strayCount = strays;
        known = std::max(known, count);
    }
    EXPECT_GT(known, 0) << "the writer never finished a save";
    // A store opened afterwards loads the last state and saves over whatever was left behind.
    openStore();
    EXPECT_EQ(loopCountOf(store->templates()), known);
    store->renameActiveTemplate(u"Kept"_s);
    writer->drain();
    EXPECT_EQ(namesOf(templatesInFile()).constFirst(), u"Kept"_s);
    EXPECT_EQ(loopCountOf(templatesInFile()), known);

    std::cout << "[          ] " << kRounds << " kills in " << elapsed.elapsed() << " ms; "
              << roundsWithSaves << " rounds finished a save, " << roundsAheadOfReport
              << " left a save not yet reported, " << roundsLeavingTemporaries
              << " left a temporary file; last count " << known << '\n';
}

} // namespace
} // namespace hueshelf::testing
