#include "app/BarModel.h"

#include "AppTestSupport.h"
#include "TempHome.h"
#include "platform/fake/FakePlatform.h"

#include <QDateTime>
#include <QFile>
#include <QSettings>

#include <gtest/gtest.h>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;

using testing::palette;
using testing::TestStore;

class BarModelTest : public ::testing::Test {
protected:
    QString settingsPath() const { return home.paths().configDir + u"/hueshelf.conf"; }

    // The settings file as another program (or a person with an editor) would leave it.
    void writeSettingsFile(const QByteArray& contents) {
        QFile file(settingsPath());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(contents);
    }

    std::unique_ptr<BarModel> makeModel(ColorStorage& store) {
        settings = std::make_unique<QSettings>(settingsPath(), QSettings::IniFormat);
        return std::make_unique<BarModel>(store, platform, *settings);
    }

    testing::TempHome home;
    FakePlatform platform;
    std::unique_ptr<QSettings> settings;
};

TEST_F(BarModelTest, SwatchesAreTheActivePalettesColoursInOrderWithTheirFillAndInk) {
    struct Case {
        QString hex;
        QColor fill;
        bool labelIsDark;
    };
    const Case cases[] = {
        {QStringLiteral("#FFFFFF"), QColor(255, 255, 255), true},
        {QStringLiteral("#3B8077"), QColor(0x3B, 0x80, 0x77), false},
        // Alpha leads in the eight-digit form, which is drawn but is no stored code: its ink is
        // the one for codes that can't be read.
        {QStringLiteral("80FF0000"), QColor(255, 0, 0, 128), true},
        // What can't be read is drawn gray rather than dropped, so the bar keeps its places.
        {QStringLiteral("not a colour"), QColor::fromRgbF(0.5f, 0.5f, 0.5f), true},
    };
    ColorTemplate shown = palette(QStringLiteral("Shown"), {});
    for (const Case& c : cases)
        shown.colors.append(ColorItem::make(u"Name "_s + c.hex, c.hex, false));
    const ColorTemplate other = palette(QStringLiteral("Other"), {{u"X"_s, u"#123456"_s}});
    TestStore store({other, shown}, shown.id);
    auto model = makeModel(*store.store);

    EXPECT_EQ(model->paletteName(), u"Shown"_s);
    const QList<BarSwatch> swatches = model->swatches();
    ASSERT_EQ(swatches.size(), std::size(cases));
    for (qsizetype i = 0; i < swatches.size(); ++i) {
        SCOPED_TRACE(cases[i].hex.toStdString());
        EXPECT_EQ(swatches[i].id, shown.colors[i].id);
        EXPECT_EQ(swatches[i].name, u"Name "_s + cases[i].hex);
        EXPECT_EQ(swatches[i].hex, cases[i].hex);
        EXPECT_EQ(swatches[i].displayColor.rgba(), cases[i].fill.rgba());
        EXPECT_EQ(swatches[i].labelIsDark, cases[i].labelIsDark);
    }
}

TEST_F(BarModelTest, WithoutAnActivePaletteTheBarInvitesAChoiceAndCopiesNothing) {
    const ColorTemplate only = palette(QStringLiteral("Only"), {{u"A"_s, u"#111111"_s}});
    TestStore store({only}, QUuid::createUuid());
    auto model = makeModel(*store.store);

    EXPECT_EQ(model->paletteName(), u"Select"_s);
    EXPECT_TRUE(model->swatches().isEmpty());
    EXPECT_EQ(model->copyColor(only.colors[0].id), std::nullopt);
    EXPECT_TRUE(platform.clipboardHistory().isEmpty());
}

TEST_F(BarModelTest, FollowsTheStoreWhenThePaletteIsSwitchedOrEdited) {
    const ColorTemplate first = palette(QStringLiteral("First"), {{u"A"_s, u"#111111"_s}});
    const ColorTemplate second =
        palette(QStringLiteral("Second"), {{u"B"_s, u"#222222"_s}, {u"C"_s, u"#333333"_s}});
    TestStore store({first, second});
    auto model = makeModel(*store.store);
    int changes = 0;
    QObject::connect(model.get(), &BarModel::changed, [&changes] { ++changes; });

    store.store->selectTemplate(second.id);
    EXPECT_GE(changes, 1);
    EXPECT_EQ(model->paletteName(), u"Second"_s);
    EXPECT_EQ(model->swatches().size(), 2);

    const int beforeRename = changes;
    store.store->renameActiveTemplate(QStringLiteral("Renamed"));
    EXPECT_GT(changes, beforeRename);
    EXPECT_EQ(model->paletteName(), u"Renamed"_s);
}

TEST_F(BarModelTest, CopiesInTheFormatTheSettingsFileNames) {
    struct Case {
        const char* description;
        QByteArray file; // empty: no settings file at all
        QString expected;
    };
    const Case cases[] = {
        {"no settings file", {}, u"#3B8077"_s},
        {"file without the key", "[General]\nstartHidden=true\n", u"#3B8077"_s},
        {"css variable uses the colour's name", "[General]\ndefaultCopyFormat=css-var\n",
         u"--sea-glass: #3B8077"_s},
        {"quoted value from another writer", "[General]\ndefaultCopyFormat=\"tailwind\"\n",
         u"bg-[#3B8077]"_s},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.description);
        QFile::remove(settingsPath());
        if (!c.file.isEmpty())
            writeSettingsFile(c.file);
        const ColorTemplate tints =
            palette(QStringLiteral("Tints"), {{u"Sea Glass"_s, u"#3B8077"_s}});
        TestStore store({tints});
        auto model = makeModel(*store.store);

        EXPECT_EQ(model->copyColor(tints.colors[0].id), std::optional<QString>(c.expected));
        EXPECT_EQ(platform.clipboardText(), c.expected);
    }
}

TEST_F(BarModelTest, SeesAFormatChangedOnDiskSinceTheSettingsWereOpened) {
    writeSettingsFile("[General]\ndefaultCopyFormat=hex\n");
    const ColorTemplate tints = palette(QStringLiteral("Tints"), {{u"Sea"_s, u"#3B8077"_s}});
    TestStore store({tints});
    auto model = makeModel(*store.store);
    ASSERT_EQ(model->copyColor(tints.colors[0].id), std::optional<QString>(u"#3B8077"_s));

    writeSettingsFile("[General]\ndefaultCopyFormat=rgb\n");
    // Same size as before, so only the time tells the change; a person's edit comes later than
    // the moment the file was read.
    QFile file(settingsPath());
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.setFileTime(QDateTime::currentDateTime().addSecs(2),
                                 QFileDevice::FileModificationTime));
    file.close();
    EXPECT_EQ(model->copyColor(tints.colors[0].id), std::optional<QString>(u"rgb(59, 128, 119)"_s));
}

TEST_F(BarModelTest, CopiesOnlyColoursOfTheActivePaletteButAlsoLockedOnes) {
    ColorTemplate active = palette(QStringLiteral("Active"), {{u"A"_s, u"#111111"_s}});
    active.isLocked = true;
    active.colors[0].isLocked = true;
    const ColorTemplate other = palette(QStringLiteral("Other"), {{u"B"_s, u"#222222"_s}});
    TestStore store({active, other});
    auto model = makeModel(*store.store);

    EXPECT_EQ(model->copyColor(other.colors[0].id), std::nullopt);
    EXPECT_EQ(model->copyColor(QUuid::createUuid()), std::nullopt);
    EXPECT_TRUE(platform.clipboardHistory().isEmpty());

    EXPECT_EQ(model->copyColor(active.colors[0].id), std::optional<QString>(u"#111111"_s));
    EXPECT_EQ(platform.clipboardHistory(), QStringList{u"#111111"_s});
}

} // namespace
} // namespace hueshelf::app
