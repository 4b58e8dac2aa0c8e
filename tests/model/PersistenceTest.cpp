// The shared preferences file: the load with its fallbacks, one read-merge-write cycle, and the
// writer that runs it on its own thread. A load never writes.

#include "PersistenceFixture.h"
#include "model/ColorStorage.h"
#include "model/ContentHash.h"
#include "model/PreferencesMigration.h"
#include "model/PreferencesWrite.h"
#include "model/PreferencesWriter.h"
#include "model/TemplateEncodingCache.h"
#include "model/TemplateLoader.h"

#include <QCryptographicHash>
#include <QScopeGuard>
#include <QSemaphore>

#include <cmath>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

// Each row: the file ("none", "dir" for a directory in its place, or its bytes), the settings'
// list if any, where the palettes come from (f the file, s the settings, 1 a first launch, 0
// an empty list in the file) and whether the file's stamp could be read.
TEST_F(PersistenceFixture, TheLoadFallsBackFromTheFileToTheSettingsToTheFirstLaunch) {
    const QList<ColorTemplate> inFile{makePalette(u"File A"_s, {}), makePalette(u"File B"_s, {})};
    const QList<ColorTemplate> kept{makePalette(u"Kept A"_s, {}), makePalette(u"Kept B"_s, {})};
    const QByteArray keptJson = TemplateJson::encodeTemplates(kept);
    constexpr double kStamp = 1'690'000'000'000.5;
    const auto file = [&](const QJsonValue& list) {
        QJsonObject object = preferencesObject(inFile, inFile[1].id, kStamp);
        object.insert(u"someoneElsesKey"_s, u"kept"_s);
        object.insert(PreferencesKeys::templates, list);
        return QJsonDocument(object).toJson();
    };
    QJsonArray badRecord = TemplateJson::templatesToJson(inFile);
    badRecord[1] = QJsonObject{{u"id"_s, uuidText(inFile[1].id)}, {u"colors"_s, QJsonArray()}};
    const QByteArray bad = "[{\"id\":";
    const struct {
        QByteArray file;
        std::optional<QByteArray> settings;
        char from;
        bool stampSeen;
    } rows[] = {{"none", {}, '1', false},
                {"none", keptJson, 's', false},
                {"none", bad, '1', false},
                {file(TemplateJson::templatesToJson(inFile)), keptJson, 'f', true},
                {file(QJsonArray()), keptJson, '0', true},
                {"dir", keptJson, 's', false},
                {"{\"colorTemplates\": [", keptJson, 's', false},
                {file(QJsonValue::Undefined), keptJson, 's', true},
                {file(u"[]"_s), keptJson, 's', true},
                {file(badRecord), keptJson, 's', true},
                {file(badRecord), {}, '1', true}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.file.left(60).constData());
        QDir(locations.prefsDir).removeRecursively();
        settings->clear();
        ASSERT_TRUE(row.file == "dir" ? QDir().mkpath(prefsPath())
                                      : row.file == "none" || writeBytes(prefsPath(), row.file));
        if (row.settings)
            SettingsStore::storeTemplates(*settings, *row.settings, uuidText(kept[1].id), 12.0);

        const LoadedTemplates loaded = TemplateLoader::load(prefsPath(), *settings, clock);
        const char from = row.from;
        EXPECT_EQ(namesOf(loaded.templates).join(u'|'), from == 'f'   ? u"File A|File B"_s
                                                        : from == 's' ? u"Kept A|Kept B"_s
                                                        : from == '1' ? u"Starter|Example"_s
                                                                      : QString());
        EXPECT_EQ(loaded.activeTemplateId, from == 'f'   ? inFile[1].id
                                           : from == 's' ? kept[1].id
                                           : from == '1' ? loaded.templates.value(0).id
                                                         : loaded.activeTemplateId);
        EXPECT_FALSE(loaded.activeTemplateId.isNull()) << "a fresh id for an empty list";
        EXPECT_EQ(loaded.dataHash, from == 's'   ? PreferencesFile::dataHash(keptJson)
                                   : from == '1' ? 0
                                                 : fileDataHash());
        EXPECT_EQ(loaded.baselineStamp, row.stampSeen ? kStamp : 0.0);
        EXPECT_EQ(readBytes(prefsPath()), row.file == "none" || row.file == "dir" ? "" : row.file);
        EXPECT_TRUE(keptCopies().isEmpty());
    }
}

constexpr double kBaseline = 1'700'000'000'000.0;
constexpr double kNow = kBaseline + 60'000.0;
const ColorTemplate a = makePalette(u"A"_s, {makeColor(u"a"_s, u"#111111"_s)});
const ColorTemplate b = makePalette(u"B"_s, {makeColor(u"b"_s, u"#222222"_s)});

SaveRequest requestFor(const QList<ColorTemplate>& templates, double baselineStamp, double now,
                       SaveRequest::Kind kind = SaveRequest::Kind::stamped) {
    SaveRequest request{kind,      templates,     TemplateJson::encodeTemplates(templates), {},
                        templates, baselineStamp, uuidText(templates.value(0).id),          now};
    for (const ColorTemplate& palette : templates)
        request.jsonParts.append(TemplateJson::encodeTemplate(palette));
    return request;
}

// The old file name is copied once, only where the current file is missing, and never again
// once the settings say so; the old file stays for a downgrade. Rows: old exists, current
// exists, already migrated, what the current file holds afterwards.
TEST_F(PersistenceFixture, TheOldFileNameIsMigratedOnce) {
    for (const auto& [hasOld, hasCurrent, migrated, expected] :
         {std::tuple{true, false, false, "old"},
          {true, true, false, "current"},
          {true, false, true, ""},
          {false, false, false, ""}}) {
        SCOPED_TRACE(::testing::Message() << hasOld << hasCurrent << migrated);
        QFile::remove(locations.preferencesFile);
        QFile::remove(locations.oldPreferencesFile);
        settings->setValue(PreferencesKeys::didMigrate, migrated);
        ASSERT_TRUE(!hasOld || writeBytes(locations.oldPreferencesFile, "old"));
        ASSERT_TRUE(!hasCurrent || writeBytes(locations.preferencesFile, "current"));
        migrateFromOldBundleId(locations, *settings);
        EXPECT_EQ(readBytes(locations.preferencesFile), QByteArray(expected));
        EXPECT_EQ(readBytes(locations.oldPreferencesFile), hasOld ? "old" : "");
        EXPECT_TRUE(settings->value(PreferencesKeys::didMigrate).toBool());
    }
}

// The encoder is written by hand for speed. It must print what Qt prints for text of every
// escape and UTF-8 length (lone surrogates too) and numbers of every form, the store's cache must
// follow edits that leave the content hash alone, and the file, laid out by hand from buffers of
// earlier saves, must be what Qt prints for it and hold the bytes the writer reports, else its
// own write would look like someone else's.
TEST_F(PersistenceFixture, SavesWriteWhatQtWrites) {
    const QString texts[] = {
        u""_s, u"a \"q\" \\ / | : d u"_s, QString(QChar(0)) + u"\b\t\n\f\r\x1F\x7F"_s,
        u"é\u07FF\u0800€\u2028\uFFFD\uFFFE\uFFFF"_s,
        QString(QChar(0xD83D)) + QChar(0xDE00) + QChar(0xDBFF) + u'x' + QChar(0xDC00)};
    const double numbers[] = {0.0,      -0.0,           0.1, 1e-7,    1e21, 1.7e308, 5e-324,
                              1e15 + 1, 1.7e12 + 0.125, NAN, INFINITY};
    QList<ColorTemplate> list;
    for (int i = 0; i < 11; ++i) {
        const QString& t = texts[i % 5];
        list.append({QUuid::createUuid(),
                     t,
                     {{QUuid::createUuid(), t, texts[(i + 1) % 5], i % 2 == 0, i % 3 == 0,
                       i % 2 == 1, texts[(i + 2) % 5]}},
                     numbers[i],
                     numbers[(i + 4) % 11],
                     i % 2 ? std::optional(t) : std::nullopt,
                     qint64(1) << (i * 6),
                     t,
                     i % 3 == 1});
    }
    const QJsonObject others{
        {u""_s, u"\"quoted\"\n"_s},
        {u"colorTemplatesX"_s, QJsonObject{{u"ключ"_s, QJsonArray{1, QJsonArray(), false}}}}};
    ASSERT_TRUE(PreferencesFile::write(prefsPath(), others));
    TemplateEncodingCache cache;
    std::optional<OwnWrite> own;
    double stamp = 0.0;
    for (int round = 0; round < 4; ++round) {
        SCOPED_TRACE(round);
        ASSERT_EQ(
            TemplateJson::encodeTemplates(list),
            QJsonDocument(TemplateJson::templatesToJson(list)).toJson(QJsonDocument::Compact));
        for (const ColorTemplate& p : list) {
            const QByteArray text = contentHashText(p.name, p.colors).toUtf8();
            const QByteArray digest = QCryptographicHash::hash(text, QCryptographicHash::Sha256);
            ASSERT_EQ(cache.contentHash(p), QString::fromLatin1(digest.left(8).toHex()));
            const QByteArray one = TemplateJson::encodeTemplate(p);
            const auto read = TemplateJson::decodeTemplates("[" + one + "]", clock).value();
            ASSERT_TRUE(!std::isfinite(p.createdAt + p.updatedAt) ||
                        TemplateJson::encodeTemplate(read.value(0)) == one);
        }
        // Qt reads an integral number past 2^53 back as an integer and prints it without the
        // exponent that its writer, and the encoder, gave it. No stamp is ever like that.
        for (ColorTemplate& p : list)
            for (double* value : {&p.createdAt, &p.updatedAt})
                *value = std::trunc(*value) == *value && std::abs(*value) > 9e15 ? 0.5 : *value;
        SaveRequest request = requestFor(list, stamp, kNow + round);
        request.jsonParts = cache.encodeParts(list);
        ASSERT_EQ(TemplateJson::joinEncoded(request.jsonParts), request.json);
        const SaveOutcome outcome = writePreferences(prefsPath(), request, own);
        ASSERT_TRUE(outcome.wroteFile);
        stamp = outcome.writtenStamp;
        const QJsonObject file = readPreferences();
        ASSERT_EQ(readBytes(prefsPath()), QJsonDocument(file).toJson());
        ASSERT_EQ(outcome.writtenJson, PreferencesFile::templatesData(file));
        ASSERT_EQ(file.value(u"colorTemplatesX"_s), others.value(u"colorTemplatesX"_s));
        // Edits between saves: some change the JSON but not the content hash.
        list[round].updatedAt += 0.5;
        list[round + 1].isLocked = !list[round + 1].isLocked;
        list[round + 2].colors[0].isAutoNamed = !list[round + 2].colors[0].isAutoNamed;
        list[round + 3].colors[0].dividerLabel += u'ü';
        list.swapItemsAt(round, 10 - round);
        list.removeAt(5);
        list.append(list.at(0));
        list.last().name += u'x';
    }
}

// Local has A; the file has A and B, which another process added, beside a key of its own. B in
// the written list means the cycle merged. The written stamp never moves backwards: other
// processes only look at a stamp that moved past the one they last agreed on.
TEST_F(PersistenceFixture, TheCycleMergesOnlyAfterANewerStampAndSetsTheFourKeys) {
    const auto plain = SaveRequest::Kind::withoutStamping;
    const double later = std::nextafter(kNow + 5.0, kNow + 6.0);
    const struct {
        SaveRequest::Kind kind;
        double baseline;
        QJsonValue fileStamp; // undefined: none in the file
        bool listAsText, merges;
        double written;
    } rows[] = {{{}, kBaseline, kBaseline + 1.0, false, true, kNow},
                {{}, kBaseline, kBaseline, false, false, kNow},
                {{}, kBaseline, QJsonValue::Undefined, false, false, kNow},
                {{}, 0.0, 1.0, false, true, kNow},
                {{}, kBaseline, u"9999999999999"_s, false, false, kNow},
                {{}, kBaseline, kBaseline + 1.0, true, false, kNow},
                {plain, kBaseline, kBaseline + 1.0, false, false, kNow},
                {plain, kBaseline, kNow, false, false, std::nextafter(kNow, kNow + 1.0)},
                {{}, kBaseline, kNow + 5.0, false, true, later}};
    for (std::size_t r = 0; r < std::size(rows); ++r) {
        SCOPED_TRACE(r);
        const auto& row = rows[r];
        QJsonObject file = preferencesObject({a, b}, b.id, 0.0);
        file.insert(u"helperState"_s, QJsonObject{{u"paired"_s, true}});
        file.insert(PreferencesKeys::schemaVersion, 1);
        file.insert(PreferencesKeys::lastModified, row.fileStamp);
        if (row.listAsText)
            file.insert(PreferencesKeys::templates,
                        QString::fromUtf8(TemplateJson::encodeTemplates({a, b})));
        ASSERT_TRUE(PreferencesFile::write(prefsPath(), file));

        std::optional<OwnWrite> none; // a writer's first cycle
        const SaveOutcome outcome =
            writePreferences(prefsPath(), requestFor({a}, row.baseline, kNow, row.kind), none);
        ASSERT_TRUE(outcome.wroteFile);
        EXPECT_EQ(namesOf(templatesInFile()).join(u' '), row.merges ? u"A B"_s : u"A"_s);
        EXPECT_EQ(idsOf(outcome.writtenTemplates), idsOf(templatesInFile()));
        EXPECT_EQ(outcome.writtenStamp, row.written);
        const QJsonObject written = readPreferences();
        EXPECT_EQ(readBytes(prefsPath()), QJsonDocument(written).toJson());
        EXPECT_EQ(outcome.writtenJson, PreferencesFile::templatesData(written));
        EXPECT_EQ(written,
                  (QJsonObject{{u"helperState"_s, file.value(u"helperState"_s)},
                               {PreferencesKeys::templates, written.value(u"colorTemplates"_s)},
                               {PreferencesKeys::activeTemplateId, uuidText(a.id)},
                               {PreferencesKeys::lastModified, row.written},
                               {PreferencesKeys::schemaVersion, 2}}));
    }
}

// A file that holds something this program can't read is kept beside it, once per content,
// before the write replaces it; a file with nothing to lose is not.
TEST_F(PersistenceFixture, WhatCannotBeReadIsKeptAsideOncePerContent) {
    const QByteArray rows = R"(-{"other":1}|-{"colorTemplates":[]}|-
        |+colorTemplates=[]|+[]|+{"colorTemplates":"[]"}|+{"colorTemplates":{"v":3},"helper":"x"}
        |+{"colorTemplates":[{"id":"x","name":"n","colors":[]}]})";
    QByteArrayList rowList = rows.split('|');
    rowList.append("- \n"); // blanks only
    for (const QByteArray& row : rowList) {
        const QByteArray marked = row.mid(row.indexOf(row.trimmed().left(1)));
        const QByteArray content = marked.mid(1);
        SCOPED_TRACE(content.constData());
        for (const QString& copy : keptCopies())
            QFile::remove(QDir(locations.prefsDir).filePath(copy));
        for (int round = 0; round < 2; ++round) {
            ASSERT_TRUE(writeBytes(prefsPath(), content));
            std::optional<OwnWrite> none;
            ASSERT_TRUE(
                writePreferences(prefsPath(), requestFor({a}, 0.0, kNow + round), none).wroteFile);
            ASSERT_EQ(keptCopies().size(), marked.startsWith('+') ? 1 : 0) << round;
        }
        EXPECT_EQ(readBytes(QDir(locations.prefsDir).filePath(keptCopies().value(0))),
                  marked.startsWith('+') ? content : QByteArray());
        EXPECT_EQ(namesOf(templatesInFile()), QStringList{u"A"_s});
        EXPECT_EQ(readPreferences().contains(u"helper"_s), content.contains("helper"));
    }
}

// A writer that finds the file exactly as it left it skips parsing it; an edit by someone else
// of the same length must still send it the long way.
TEST_F(PersistenceFixture, TheOwnWriteShortcutNoticesAnEditOfTheSameLength) {
    std::optional<OwnWrite> own;
    ASSERT_TRUE(writePreferences(prefsPath(), requestFor({a, b}, 0.0, kBaseline), own).wroteFile);
    QByteArray bytes = readBytes(prefsPath());
    bytes.replace("#222222", "#333333");
    bytes.replace(QByteArray::number(qint64(kBaseline)), QByteArray::number(qint64(kNow)));
    ASSERT_TRUE(writeBytes(prefsPath(), bytes));
    const SaveOutcome merged =
        writePreferences(prefsPath(), requestFor({a, b}, kBaseline, kNow + 1), own);
    ASSERT_TRUE(merged.wroteFile);
    EXPECT_EQ(merged.writtenTemplates.value(1).colors.value(0).hex, u"#333333"_s);
    EXPECT_EQ(templatesInFile().value(1).colors.value(0).hex, u"#333333"_s);
}

// --- The writer's thread, with a store started as the application starts it -------------------

class WriterTest : public PersistenceFixture {
protected:
    void startStore() {
        store = std::make_unique<ColorStorage>(
            clock, scheduler, TemplateLoader::loadAtStart(locations, *settings, clock));
        writer = std::make_unique<PreferencesWriter>(prefsPath(), *settings);
        store->setWriter(writer.get());
        QObject::connect(store.get(), &ColorStorage::templatesWritten, [this] { ++pushes; });
    }

    // The writer goes first: its last completions still find the store.
    std::unique_ptr<ColorStorage> store;
    std::unique_ptr<PreferencesWriter> writer;
    int pushes = 0;
};

TEST_F(WriterTest, AFailedWriteFallsBackToTheSettingsAndTheNextStartReadsThem) {
    ASSERT_TRUE(QDir().mkpath(prefsPath())); // nothing can replace a directory
    startStore();
    clock.advanceMs(77.0);
    store->addBlankTemplate();
    writer->drain();
    EXPECT_EQ(store->templates().size(), 3) << "the in-memory list stays the truth";
    EXPECT_TRUE(pushes == 1 && store->baselineStamp() == kStart + 77.0);
    // Synchronised at once: another reader of the settings file sees it without waiting.
    QSettings onDisk(locations.settingsFile, QSettings::IniFormat);
    EXPECT_EQ(onDisk.value(PreferencesKeys::lastModified).toDouble(), kStart + 77.0);
    EXPECT_EQ(store->lastKnownDataHash(),
              PreferencesFile::dataHash(SettingsStore::templatesData(onDisk).value()));
    const LoadedTemplates next = TemplateLoader::load(prefsPath(), onDisk, clock);
    EXPECT_EQ(namesOf(next.templates), namesOf(store->templates()));
    EXPECT_EQ(next.activeTemplateId, store->activeTemplateId());
}

// The second of two quick saves finds the first's write in the file as a newer stamp. The edit
// undone in between must stay undone, a palette another process slipped in must survive both,
// and the count of pending saves stays above zero until the write queued behind has run.
TEST_F(WriterTest, ASecondSaveBehindTheFirstKeepsItsOwnEditsAndTheCountUp) {
    const ColorTemplate shared = makePalette(u"Shared"_s, {makeColor(u"s"_s, u"#102030"_s)});
    const ColorTemplate added = makePalette(u"Added there"_s, {});
    ASSERT_TRUE(PreferencesFile::write(prefsPath(),
                                       preferencesObject({shared}, shared.id, kStart - 10'000.0)));
    startStore();
    ASSERT_TRUE(PreferencesFile::write(
        prefsPath(), preferencesObject({shared, added}, shared.id, kStart - 5000.0)));

    QSemaphore entered;
    QSemaphore release;
    const auto unblock = qScopeGuard([&] { release.release(); });
    clock.advanceMs(1000.0);
    ASSERT_TRUE(store->setColorLocked(shared.colors[0].id, true));
    writer->post([&] {
        entered.release();
        release.acquire();
    });
    clock.advanceMs(1000.0);
    ASSERT_TRUE(store->setColorLocked(shared.colors[0].id, false));
    entered.acquire();
    EXPECT_TRUE(spinUntil([&] { return pushes == 1; }));
    EXPECT_EQ(store->savingCount(), 2) << "the first save ends only behind the second write";
    release.release();
    ASSERT_TRUE(spinUntil([&] { return store->savingCount() == 0; }));

    const QList<ColorTemplate> inFile = templatesInFile();
    ASSERT_EQ(namesOf(inFile), (QStringList{u"Shared"_s, u"Added there"_s}));
    EXPECT_FALSE(inFile[0].colors[0].isLocked) << "the unlock was lost to the earlier write";
    EXPECT_EQ(namesOf(store->templates()), namesOf(inFile)) << "the merge is published";
    EXPECT_FALSE(store->templates()[0].colors[0].isLocked);
    EXPECT_EQ(pushes, 2);
    EXPECT_EQ(store->lastKnownDataHash(), fileDataHash());
    EXPECT_FALSE(settings->contains(PreferencesKeys::templates)) << "no fallback needed";
}

} // namespace
} // namespace hueshelf::testing
