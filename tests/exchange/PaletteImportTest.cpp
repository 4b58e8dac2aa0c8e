#include "exchange/PaletteImport.h"

#include "ManualClock.h"
#include "ManualScheduler.h"
#include "exchange/PaletteFile.h"
#include "exchange/PaletteFileSave.h"
#include "model/ColorStorage.h"
#include "model/ContentHash.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;
using Kind = PaletteImportOutcome::Kind;

// Counts the store's saves; each ends at once.
class RecordingWriter final : public TemplateWriter {
public:
    void writeTemplates(const SaveRequest& request, Written, Finished finished) override {
        activeIds.push_back(request.activeTemplateId);
        finished();
    }
    void writeShadowState(const QByteArray&) override {}

    std::vector<QString> activeIds;
};

ColorItem color(const QString& name, const QString& hex, bool dividerBefore = false,
                const QString& label = QString()) {
    ColorItem item = ColorItem::make(name, hex, false);
    item.dividerBefore = dividerBefore;
    item.dividerLabel = label;
    return item;
}

class PaletteImportTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        brand = ColorTemplate::makeNew(
            u"Brand"_s,
            {color(u"Ink"_s, u"#ffa69e"_s), color(u"Sea"_s, u"#B8F2E6"_s, true, u"Group"_s)},
            1000.0);
        brand.isLocked = true;
        brand.colors[0].isLocked = true;
        brand.colors[1].isAutoNamed = true;
        other = ColorTemplate::makeNew(u"Other"_s, {color(u"Paper"_s, u"#FFFFFF"_s)}, 1000.0);
        start({brand, other});
    }

    void start(const QList<ColorTemplate>& templates) {
        LoadedTemplates load;
        load.templates = templates;
        load.activeTemplateId = other.id;
        store = std::make_unique<ColorStorage>(clock, scheduler, load);
        store->setWriter(&writer);
        QObject::connect(store.get(), &ColorStorage::announced,
                         [this](const QString& message, const QString& icon) {
                             announcements.emplace_back(message, icon);
                         });
    }

    QString write(const QString& fileName, const QByteArray& bytes) {
        const QString path = dir.filePath(fileName);
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(file.write(bytes), bytes.size());
        return path;
    }

    QString saved(const ColorTemplate& palette, const QString& fileName) {
        const QString path = dir.filePath(fileName);
        EXPECT_EQ(PaletteFile::savePaletteFile(path, palette, QDateTime::currentDateTimeUtc()),
                  std::nullopt);
        return path;
    }

    PaletteImportOutcome import(const QString& path, bool isOneOfSeveral = false) {
        return PaletteImport::importPaletteFile(path, isOneOfSeveral, *store, scheduler, clock);
    }

    // The toast comes on the next turn, not during the import.
    std::vector<std::pair<QString, QString>> toastsOnNextTurn() {
        EXPECT_TRUE(announcements.empty());
        scheduler.runDue();
        return std::exchange(announcements, {});
    }

    QTemporaryDir dir;
    ManualClock clock{1'750'000'000'000.5};
    ManualScheduler scheduler{clock};
    RecordingWriter writer;
    ColorTemplate brand;
    ColorTemplate other;
    std::unique_ptr<ColorStorage> store;
    std::vector<std::pair<QString, QString>> announcements;
};

// What an import makes of a file (the new record, its name, its content hash, a palette found
// again) is compared with an independent model through the command line; here the store's
// side: the active palette, the save, the toast on the next turn, and the refusals.
TEST_F(PaletteImportTest, AddsANewPaletteMadeActiveAndAnnouncedOnTheNextTurn) {
    const QList<ColorItem> colors{color(u"Dusk"_s, u"#E07A5F"_s),
                                  color(u"Sand"_s, u"#F4E8C1"_s, true, u"Warm"_s)};
    const QString path =
        write(u"sunset.hueshelf"_s, PaletteFile::exportBytes(u"Sunset"_s, colors, QDateTime()));
    const PaletteImportOutcome outcome = import(path);

    ASSERT_EQ(outcome.kind, Kind::imported);
    EXPECT_EQ(outcome.message, u"Imported \"Sunset\""_s);
    ASSERT_EQ(store->templates().size(), 3);
    const ColorTemplate& added = store->templates().at(2);
    EXPECT_EQ(outcome.templateId, added.id);
    EXPECT_EQ(added.colors.at(1).dividerLabel, u"Warm"_s);
    EXPECT_EQ(added.createdAt, clock.nowMs());
    EXPECT_EQ(added.contentHash, computeContentHash(added.name, added.colors));
    EXPECT_EQ(store->activeTemplateId(), added.id);
    EXPECT_EQ(writer.activeIds, std::vector<QString>{uuidText(added.id)});

    const auto toasts = toastsOnNextTurn();
    ASSERT_EQ(toasts.size(), 1u);
    EXPECT_EQ(toasts.at(0), std::make_pair(u"Imported \"Sunset\""_s, u"paintpalette.fill"_s));
}

TEST_F(PaletteImportTest, SavingAndOpeningFindsThePaletteInsteadOfDoublingIt) {
    // Locks, ids, automatic names, the lower-case code and the moment of saving all differ
    // between the stored palette and what comes back from its file.
    const QString path =
        PaletteFile::withFileExtension(dir.filePath(u"Brand.json"_s)); // the save dialog's rule
    EXPECT_EQ(PaletteFile::savePaletteFile(path, brand, QDateTime::currentDateTimeUtc()),
              std::nullopt);
    ASSERT_TRUE(QFile::exists(dir.filePath(u"Brand.hueshelf"_s)));
    EXPECT_FALSE(QFile::exists(dir.filePath(u"Brand.json"_s)));

    for (const bool several : {false, true}) {
        store->selectTemplate(other.id);
        writer.activeIds.clear();
        const PaletteImportOutcome outcome = import(path, several);
        ASSERT_EQ(outcome.kind, Kind::alreadyHave);
        const QString expected = several ? u"You already have this palette. One file at a time."_s
                                         : u"You already have this palette."_s;
        EXPECT_EQ(outcome.message, expected);
        EXPECT_EQ(outcome.templateId, brand.id);
        EXPECT_EQ(store->templates().size(), 2);
        EXPECT_EQ(store->activeTemplateId(), brand.id);
        EXPECT_EQ(writer.activeIds, std::vector<QString>{uuidText(brand.id)});
        EXPECT_EQ(toastsOnNextTurn(),
                  (std::vector<std::pair<QString, QString>>{{expected, u"paintpalette.fill"_s}}));
    }

    // One label changed is another palette, and the name is taken: it comes in as a copy.
    ColorTemplate relabelled = brand;
    relabelled.colors[1].dividerLabel = u"Group 2"_s;
    const PaletteImportOutcome copy = import(saved(relabelled, u"relabelled.hueshelf"_s), true);
    EXPECT_EQ(copy.kind, Kind::imported);
    EXPECT_EQ(copy.message, u"Imported \"Brand (1)\". One file at a time."_s);
    EXPECT_EQ(store->templates().constLast().name, u"Brand (1)"_s);
}

TEST(PaletteImportNaming, CountsFromOneInBracketsComparingExactly) {
    struct Case {
        QString name;
        QStringList existing;
        QString expected;
    };
    const QList<Case> cases{
        {u"Brand"_s, {}, u"Brand"_s},
        {u"Brand"_s, {u"Brand"_s}, u"Brand (1)"_s},
        {u"Brand"_s, {u"Brand"_s, u"Brand (1)"_s}, u"Brand (2)"_s},
        {u"Brand"_s, {u"Brand"_s, u"Brand (2)"_s}, u"Brand (1)"_s},
        {u"Brand"_s, {u"Brand (1)"_s}, u"Brand"_s},
        {u"Brand"_s, {u"brand"_s, u"Brand "_s, u" Brand"_s}, u"Brand"_s},
        {u""_s, {u""_s}, u" (1)"_s},
    };
    for (const Case& c : cases)
        EXPECT_EQ(PaletteImport::uniqueImportedName(c.name, c.existing), c.expected)
            << c.name.toStdString();
}

TEST_F(PaletteImportTest, ARefusedFileChangesNothing) {
    const QByteArray valid = R"({"name": "Full", "colors": [{"hex": "#123456"}]})";
    const QString readPrefix = u"HueShelf couldn't read that file.\n\n"_s;
    ColorTemplate longName = other;
    longName.name = QString(101, u'n');

    struct Case {
        const char* what;
        std::function<QString()> path;
        QString message; // the whole message, or its start when it ends in the system's words
    };
    const QList<Case> cases{
        {"one byte over the limit",
         [&] { return write(u"big.hueshelf"_s, valid + QByteArray(1048577 - valid.size(), ' ')); },
         u"File is too large. Maximum size is 1 MB."_s},
        // Reading a terabyte would not come back: only the size was asked.
        {"huge and never read",
         [&] {
             const QString path = dir.filePath(u"huge.hueshelf"_s);
             QFile file(path);
             EXPECT_TRUE(file.open(QIODevice::WriteOnly));
             EXPECT_TRUE(file.resize(qint64(1) << 40));
             return path;
         },
         u"File is too large. Maximum size is 1 MB."_s},
        {"missing", [&] { return dir.filePath(u"absent.hueshelf"_s); }, readPrefix},
        {"a folder",
         [&] {
             EXPECT_TRUE(QDir(dir.path()).mkdir(u"folder.hueshelf"_s));
             return dir.filePath(u"folder.hueshelf"_s);
         },
         readPrefix},
        {"a name the writer allowed", [&] { return saved(longName, u"long.hueshelf"_s); },
         u"Palette name is too long. Maximum 100 characters."_s},
    };
    for (const Case& c : cases) {
        const PaletteImportOutcome outcome = import(c.path(), true);
        EXPECT_EQ(outcome.kind, Kind::failed) << c.what;
        if (c.message == readPrefix) {
            EXPECT_TRUE(outcome.message.startsWith(readPrefix)) << c.what;
            EXPECT_GT(outcome.message.size(), readPrefix.size()) << c.what;
        } else {
            EXPECT_EQ(outcome.message, c.message) << c.what;
        }
        EXPECT_FALSE(outcome.templateId) << c.what;
        EXPECT_EQ(store->templates(), (QList<ColorTemplate>{brand, other})) << c.what;
        EXPECT_EQ(store->activeTemplateId(), other.id) << c.what;
        EXPECT_TRUE(writer.activeIds.empty()) << c.what;
        EXPECT_EQ(scheduler.pendingCount(), 0) << c.what;
    }

    const PaletteImportOutcome full =
        import(write(u"full.hueshelf"_s, valid + QByteArray(1048576 - valid.size(), ' ')));
    EXPECT_EQ(full.kind, Kind::imported);
    EXPECT_EQ(full.message, u"Imported \"Full\""_s);
}

TEST_F(PaletteImportTest, SavingWritesTheWholeFileOrReportsWhy) {
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const QString path = write(u"Brand.hueshelf"_s, QByteArray(5000, 'x'));
    EXPECT_EQ(PaletteFile::savePaletteFile(path, brand, now), std::nullopt);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), PaletteFile::exportBytes(brand.name, brand.colors, now));

    const QStringList refused{dir.filePath(u"missing/Brand.hueshelf"_s), dir.path()};
    for (const QString& target : refused) {
        const std::optional<QString> error = PaletteFile::savePaletteFile(target, brand, now);
        ASSERT_TRUE(error) << target.toStdString();
        EXPECT_FALSE(error->isEmpty());
    }
    EXPECT_FALSE(QDir(dir.filePath(u"missing"_s)).exists());
}

} // namespace
} // namespace hueshelf::testing
