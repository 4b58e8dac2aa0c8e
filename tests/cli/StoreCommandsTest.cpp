// The commands on the store's file: lookups, what is written and when, files from elsewhere.

#include "StoreHome.h"
#include "color/ColorUtils.h"

#include <QImage>
#include <QRandomGenerator>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

// A name is looked up before an id, even when the name is some palette's id.
TEST_F(StoreHome, PaletteArgumentsAreExactNamesThenIds) {
    const ColorTemplate sky = makePalette(u"Sky"_s, {u"#3366FF"_s});
    const ColorTemplate twin = makePalette(uuidText(sky.id), {u"#FF3333"_s});
    seed({sky, twin}, uuidText(twin.id));
    const std::pair<QString, QString> cases[] = {
        {sky.name, sky.name},
        {uuidText(sky.id), twin.name},
        {uuidText(sky.id).toLower(), sky.name},
        {u"sky"_s, {}},
        {u'{' + uuidText(twin.id) + u'}', {}},
    };
    for (const auto& [argument, found] : cases) {
        for (const QString& command : {u"show"_s, u"check"_s, u"use"_s}) {
            SCOPED_TRACE(command.toStdString() + ' ' + argument.toStdString());
            const CliOutcome outcome = runCli({command, argument, u"--json"_s});
            EXPECT_EQ(outcome.status, found.isEmpty() ? 1 : 0);
            EXPECT_EQ(outcome.json().object().value(u"name"_s).toString(), found);
            if (found.isEmpty()) {
                EXPECT_EQ(outcome.err,
                          u"No palette is named \""_s + argument + u"\" or has that id\n"_s);
            }
        }
    }
}

// Nothing is written when the file already names the palette as active; where it is active
// only because the file's own id was missing or unusable, the command writes it down, keeping
// every other key and stamping no palette.
TEST_F(StoreHome, UseWritesOnlyWhatTheFileLacks) {
    const ColorTemplate first = makePalette(u"First"_s, {u"#101010"_s});
    const ColorTemplate second = makePalette(u"Second"_s, {u"#202020"_s});
    const std::pair<QJsonValue, QString> cases[] = {
        {uuidText(first.id), u"Already the active palette: First\n"_s},
        {uuidText(first.id).toLower(), u"Active palette: First\n"_s},
        {QJsonValue::Undefined, u"Active palette: First\n"_s},
    };
    for (const auto& [storedActive, out] : cases) {
        seed({first, second}, storedActive);
        const QByteArray before = fileBytes();
        const QJsonArray records = fileRecords();
        EXPECT_EQ(runCli({u"use"_s, u"First"_s}).out, out);
        EXPECT_EQ(fileBytes() == before, out.startsWith(u"Already"_s));
        EXPECT_EQ(fileActiveId(), uuidText(first.id));
        EXPECT_EQ(fileRecords(), records);
        EXPECT_EQ(fileObject().value(u"helperState"_s), u"keep"_s);
    }
}

// Where only an older build's file exists, a look reads it without copying it into place; the
// first command that writes does the migration and leaves the old file for a downgrade.
TEST_F(StoreHome, ALookReadsTheOldFileWithoutMigratingIt) {
    seed({makePalette(u"Zeta"_s, {u"#111111"_s})}, QJsonValue::Undefined);
    const QString oldPath = home.paths().configDir + u"/hueshelf.Hueshelf.json";
    ASSERT_TRUE(QFile::rename(prefsPath(), oldPath));
    EXPECT_EQ(runCli({u"palettes"_s}).out.count(u"Zeta"_s), 1);
    EXPECT_EQ(filesInHome(), QStringList{u".config/hueshelf/hueshelf.Hueshelf.json"_s});
    ASSERT_EQ(runCli({u"use"_s, u"Zeta"_s}).status, 0);
    EXPECT_TRUE(QFile::exists(oldPath));
    EXPECT_EQ(fileRecords().size(), 1);
}

// A palette file from elsewhere: names and codes as pasted, unreadable colours skipped, the
// name not trimmed. (Importing files at and past every limit is the exchange differential's.)
TEST_F(StoreHome, ReadsPaletteFilesFromElsewhere) {
    const QString file = writeFile(u"a.hueshelf"_s, R"({"version": "2.0", "name": " Spaced ",
        "colors": [{"hex": " #abc ", "name": "  Sky\n"}, {"hex": "#ABCD", "name": "skipped"},
        {"hex": 7}, {"name": "no code"}, {"hex": "000000", "name": "   "}]})");
    const CliOutcome outcome = runCli({u"check"_s, u"--file"_s, file, u"--json"_s});
    ASSERT_EQ(outcome.status, 0) << outcome.err.toStdString();
    EXPECT_EQ(outcome.json()[u"name"_s].toString(), u" Spaced "_s);
    QStringList colors;
    for (const QJsonValue& color : outcome.json()[u"colors"_s].toArray())
        colors << color[u"hex"_s].toString() + u' ' + color[u"name"_s].toString();
    EXPECT_EQ(colors,
              (QStringList{u"#AABBCC Sky"_s, u"#000000 "_s + ColorUtils::colorName(u"#000000"_s)}));
    EXPECT_FALSE(QFile::exists(prefsPath()));
}

// Generators add an active palette under a free name, copying without locks and leaving the
// source alone; extracting only looks, and repeats itself for a seed.
TEST_F(StoreHome, CreateAddsAnActivePaletteUnderAFreeName) {
    const ColorTemplate brand = makePalette(u"Brand"_s, {u"#111827"_s}, true);
    seed({brand}, uuidText(brand.id));
    QImage image(50, 50, QImage::Format_RGB32);
    QRandomGenerator noise(42); // noise gives k-means something to disagree about
    for (int y = 0; y < 50; ++y)
        for (int x = 0; x < 50; ++x)
            image.setPixel(x, y, noise.generate() | 0xFF000000u);
    const QString picture = home.path() + u"/noise.png"_s;
    ASSERT_TRUE(image.save(picture));
    const QByteArray before = fileBytes();
    const QStringList seeded{u"extract"_s, picture, u"--seed"_s, u"7"_s, u"--json"_s};
    const CliOutcome looked = runCli(seeded);
    EXPECT_EQ(looked.json()[u"colors"_s].toArray().size(), 6);
    EXPECT_EQ(runCli(seeded).out, looked.out);
    EXPECT_EQ(fileBytes(), before);

    ASSERT_EQ(runCli({u"dark"_s, u"--create"_s, u"--name"_s, u"  Brand\t"_s}).status, 0);
    const CliOutcome made = runCli({u"scheme"_s, u"3b82f6"_s, u"--create"_s, u"--json"_s});
    ASSERT_EQ(made.status, 0) << made.err.toStdString();
    const QJsonArray records = fileRecords();
    ASSERT_EQ(records.size(), 3);
    EXPECT_EQ(records.at(0).toObject(), TemplateJson::templateToJson(brand));
    EXPECT_EQ(records.at(1)[u"name"_s].toString(), u"Brand 2"_s);
    EXPECT_FALSE(records.at(1)[u"isLocked"_s].toBool());
    EXPECT_FALSE(records.at(1)[u"colors"_s][0][u"isLocked"_s].toBool());
    EXPECT_EQ(made.json().object(), records.at(2).toObject()); // the record as stored
    EXPECT_EQ(fileActiveId(), made.json()[u"id"_s].toString());
}

} // namespace
} // namespace hueshelf::testing
