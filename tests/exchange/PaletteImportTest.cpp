#include "exchange/PaletteImport.h"

#include "../color/QtPrinters.h"
#include "ManualClock.h"
#include "ManualScheduler.h"
#include "exchange/PaletteFile.h"
#include "exchange/PaletteFileSave.h"
#include "exchange/PaletteIdentity.h"
#include "model/ColorStorage.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;
using Kind = PaletteImportOutcome::Kind;

// Records the active palette of each save; each save ends at once.
struct RecordingWriter final : TemplateWriter {
    void writeTemplates(const SaveRequest& request, Written, Finished finished) override {
        activeIds.push_back(request.activeTemplateId);
        finished();
    }
    void writeShadowState(const QByteArray&) override {}
    std::vector<QString> activeIds;
};

ColorItem color(const QString& name, const QString& hex, const QString& label = {}) {
    ColorItem item = ColorItem::make(name, hex, false);
    item.dividerBefore = !label.isEmpty();
    item.dividerLabel = label;
    return item;
}

// What an import makes of a file and which stored palette it finds again are compared with an
// independent model through the command line, on palettes stored without stale labels. Here
// the rest of the identity, and the store's side: the active palette, the save, the toast on
// the next turn, and refusals that change nothing.
TEST(FindIdenticalPalette, ComparesWhatAFileOrLinkCarries) {
    const QList<ColorItem> incoming{color(u"Primary"_s, u"#FFA69E"_s),
                                    color(u"Accent"_s, u"#B8F2E6"_s, u"Brand"_s),
                                    color(u"Plain"_s, u"#000000"_s)};
    const std::pair<std::function<void(ColorTemplate&)>, bool> cases[] = {
        {[](ColorTemplate& p) {
             p.isLocked = p.colors[0].isLocked = p.colors[0].isAutoNamed = true;
             p.colors[0].id = QUuid::createUuid();
             p.colors[0].hex = u" \tffa69e "_s;
             p.colors[2].dividerLabel = u"stale"_s;
         },
         true},
        {[](ColorTemplate& p) { p.colors[0].hex = u"##FFA69E"_s; }, false},
        {[](ColorTemplate& p) { p.colors[1].dividerLabel = u"brand"_s; }, false},
        {[](ColorTemplate& p) { p.colors[2].dividerBefore = true; }, false},
        {[](ColorTemplate& p) { p.colors[0].name = u"primary"_s; }, false},
        {[](ColorTemplate& p) { p.colors.swapItemsAt(0, 2); }, false}};
    for (qsizetype i = 0; i < std::ssize(cases); ++i) {
        ColorTemplate stored = ColorTemplate::makeNew(u"Starter"_s, incoming, 1.0);
        cases[i].first(stored);
        const ColorTemplate same = ColorTemplate::makeNew(u"Starter"_s, incoming, 2.0);
        EXPECT_EQ(findIdenticalPalette(u"Starter"_s, incoming, {stored, same}),
                  cases[i].second ? stored.id : same.id)
            << "case " << i;
    }
}

class PaletteImportTest : public ::testing::Test {
protected:
    void SetUp() override {
        brand = ColorTemplate::makeNew(u"Brand"_s, {color(u"Ink"_s, u"#ffa69e"_s)}, 1000.0);
        brand.colors[0].isLocked = true;
        other = ColorTemplate::makeNew(u"Other"_s, {color(u"Paper"_s, u"#FFFFFF"_s)}, 1000.0);
        LoadedTemplates loaded;
        loaded.templates = {brand, other};
        loaded.activeTemplateId = other.id;
        store = std::make_unique<ColorStorage>(clock, scheduler, loaded);
        store->setWriter(&writer);
        QObject::connect(store.get(), &ColorStorage::announced,
                         [this](const QString& message, const QString& icon) {
                             announced.push_back(message + u' ' + icon);
                         });
    }

    // The outcome's message, which the toast repeats on the next turn and not before.
    QString import(const QString& path, bool isOneOfSeveral, Kind kind) {
        const PaletteImportOutcome outcome =
            PaletteImport::importPaletteFile(path, isOneOfSeveral, *store, scheduler, clock);
        EXPECT_EQ(outcome.kind, kind) << outcome.message.toStdString();
        EXPECT_TRUE(announced.empty());
        scheduler.runDue();
        if (kind != Kind::failed) {
            EXPECT_EQ(outcome.templateId, store->activeTemplateId());
            EXPECT_EQ(announced, std::vector<QString>{outcome.message + u" paintpalette.fill"_s});
        }
        announced.clear();
        return outcome.message;
    }

    QTemporaryDir dir;
    ManualClock clock{1'750'000'000'000.5};
    ManualScheduler scheduler{clock};
    RecordingWriter writer;
    ColorTemplate brand, other;
    std::unique_ptr<ColorStorage> store;
    std::vector<QString> announced;
};

TEST_F(PaletteImportTest, ANewPaletteOrOneFoundAgainBecomesActiveAndIsSaved) {
    // The save dialog's rule for the path; the lock, ids and case of the code don't count.
    const QString path = PaletteFile::withFileExtension(dir.filePath(u"Brand.json"_s));
    ASSERT_EQ(PaletteFile::savePaletteFile(path, brand, QDateTime::currentDateTimeUtc()),
              std::nullopt);
    EXPECT_EQ(import(path, true, Kind::alreadyHave),
              u"You already have this palette. One file at a time."_s);
    EXPECT_EQ(import(path, false, Kind::alreadyHave), u"You already have this palette."_s);
    EXPECT_EQ(store->templates().size(), 2);

    ColorTemplate renamed = brand;
    renamed.colors[0].name = u"Ink 2"_s; // another palette under a taken name
    ASSERT_EQ(PaletteFile::savePaletteFile(path, renamed, {}), std::nullopt);
    EXPECT_EQ(import(path, true, Kind::imported), u"Imported \"Brand (1)\". One file at a time."_s);
    ASSERT_EQ(store->templates().size(), 3);
    EXPECT_EQ(store->templates().at(2).createdAt, clock.nowMs());
    EXPECT_EQ(writer.activeIds, (std::vector<QString>{uuidText(brand.id), uuidText(brand.id),
                                                      uuidText(store->templates().at(2).id)}));
}

TEST_F(PaletteImportTest, ARefusedFileChangesNothing) {
    const QByteArray valid = R"({"name": "Full", "colors": [{"hex": "#123456"}]})";
    const auto write = [this](const QString& name, const QByteArray& bytes, qint64 size) {
        QFile file(dir.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        EXPECT_TRUE(file.resize(size)); // a terabyte stays sparse: only its size is asked
        return file.fileName();
    };
    ASSERT_TRUE(QDir(dir.path()).mkdir(u"folder.hueshelf"_s));
    const QString tooLarge = u"File is too large. Maximum size is 1 MB."_s;
    const std::pair<QString, QString> cases[] = {
        {write(u"big.hueshelf"_s, valid, 1048577), tooLarge},
        {write(u"huge.hueshelf"_s, valid, qint64(1) << 40), tooLarge},
        {dir.filePath(u"absent.hueshelf"_s), u"HueShelf couldn't read that file.\n\n"_s},
        {dir.filePath(u"folder.hueshelf"_s), u"HueShelf couldn't read that file.\n\n"_s}};
    for (const auto& [path, message] : cases) {
        const QString said = import(path, true, Kind::failed);
        EXPECT_TRUE(said.startsWith(message) && said.size() >= message.size())
            << said.toStdString();
        EXPECT_EQ(store->templates(), (QList<ColorTemplate>{brand, other}));
        EXPECT_EQ(store->activeTemplateId(), other.id);
        EXPECT_TRUE(writer.activeIds.empty());
        EXPECT_EQ(scheduler.pendingCount(), 0);
    }
    // Saving replaces a file whole, or says why it couldn't.
    EXPECT_EQ(PaletteFile::savePaletteFile(cases[0].first, brand, {}), std::nullopt);
    EXPECT_EQ(import(cases[0].first, false, Kind::alreadyHave),
              u"You already have this palette."_s);
    EXPECT_TRUE(PaletteFile::savePaletteFile(dir.filePath(u"missing/B.hueshelf"_s), brand, {}));
    EXPECT_TRUE(PaletteFile::savePaletteFile(dir.path(), brand, {}));
}

} // namespace
} // namespace hueshelf::testing
