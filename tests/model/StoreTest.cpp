// The store's edits, checked step by step against a plain model of the rules: what each edit
// does, whether it saves, what it says, what the save stamps, when a new palette asks for a name.

#include "ManualClock.h"
#include "ManualScheduler.h"
#include "ModelTestSupport.h"
#include "model/ColorStorage.h"
#include "model/ContentHash.h"
#include "model/StoreTexts.h"
#include "model/TemplateJson.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;
using Said = std::vector<std::pair<QString, QString>>;

// What the rules say the store holds.
struct Model {
    QList<ColorTemplate> templates;
    QUuid active;
    std::size_t saves = 0;
    Said said;
    int renames = 0;
    std::optional<double> renameDueMs;

    ColorTemplate* find(const QUuid& id) {
        for (ColorTemplate& palette : templates)
            if (palette.id == id)
                return &palette;
        return nullptr;
    }
    // Only a palette whose content hash moved is stamped.
    void save(double nowMs) {
        ++saves;
        for (ColorTemplate& p : templates) {
            const QString hash = computeContentHash(p.name, p.colors);
            if (hash != p.contentHash)
                p = {p.id,           p.name, p.colors,  p.createdAt, nowMs, p.updatedByDeviceId,
                     p.revision + 1, hash,   p.isLocked};
        }
    }
};

class Store : public ::testing::Test {
protected:
    static constexpr double kStart = 1'700'000'000'000.0;

    void start(const QList<ColorTemplate>& templates, const QUuid& active) {
        writer = {};
        said.clear();
        renames = 0;
        store = std::make_unique<ColorStorage>(clock, scheduler,
                                               LoadedTemplates{templates, active, 55.0, 0, {}});
        store->setWriter(&writer);
        QObject::connect(
            store.get(), &ColorStorage::announced,
            [this](const QString& text, const QString& icon) { said.emplace_back(text, icon); });
        QObject::connect(store.get(), &ColorStorage::templatesWritten, [this] { ++pushes; });
        QObject::connect(store.get(), &ColorStorage::renameRequested, [this] { ++renames; });
    }

    // Locks, groups, synced palettes, hashes written by others, and now and then a twin id.
    Model randomStart() {
        Model model;
        for (std::uint32_t k = 0, count = 1 + random.below(3); k < count; ++k) {
            QList<ColorItem> colors;
            for (std::uint32_t c = 0, n = 1 + random.below(4); c < n; ++c)
                colors.append(makeColor(QString(QChar(u'a' + c)), u"#123456"_s,
                                        random.below(4) == 0, random.below(3) == 0,
                                        random.bit() ? u"G"_s : QString()));
            model.templates.append(
                makePalette(u"P"_s + QString::number(k), colors, random.below(4) == 0));
            if (random.below(4) == 0)
                model.templates.last().updatedByDeviceId = u"other-mac"_s;
            if (random.below(4) == 0)
                model.templates.last().contentHash = u"ffffffffffffffff"_s;
        }
        if (random.below(6) == 0)
            model.templates.append(model.templates.constFirst());
        model.active = pickPalette(model);
        return model;
    }
    QUuid pickPalette(const Model& model) {
        return model.templates.isEmpty() || random.below(6) == 0
                   ? QUuid::createUuid()
                   : model.templates.at(random.below(model.templates.size())).id;
    }
    void step(Model& model);

    ManualClock clock{kStart};
    ManualScheduler scheduler{clock};
    FakeTemplateWriter writer;
    std::unique_ptr<ColorStorage> store;
    Said said;
    int pushes = 0;
    int renames = 0;
    struct {
        std::mt19937 engine{2024};
        std::uint32_t below(std::uint32_t bound) { return engine() % bound; }
        bool bit() { return engine() % 2 == 0; }
    } random;
};

void Store::step(Model& model) {
    ColorTemplate* p = model.find(model.active);
    const qsizetype n = p ? p->colors.size() : 0;
    const qsizetype at = n == 0 || random.below(6) == 0 ? -1 : qsizetype(random.below(n));
    const QUuid colorId = at < 0 ? QUuid::createUuid() : p->colors.at(at).id;
    const QUuid paletteId = pickPalette(model);
    bool saves = false;
    switch (random.below(9)) {
    case 0: { // the add button, or another program's add to any palette: in front of the first
              // group, named apart from the others unless a name is given
        const bool elsewhere = random.bit();
        ColorTemplate* target = elsewhere ? model.find(paletteId) : p;
        const QString given = elsewhere && random.bit() ? u"Given"_s : QString();
        const std::optional<QUuid> awaiting = store->colorAwaitingEdit();
        const auto index =
            elsewhere ? store->addColorTo(paletteId, u"#F5F5F5"_s, given) : store->addColor();
        if (!(saves = target && !target->isLocked)) {
            EXPECT_FALSE(index);
            break;
        }
        const qsizetype count = target->colors.size();
        qsizetype expected = 0;
        while (expected < count && !target->colors.at(expected).dividerBefore)
            ++expected;
        ASSERT_EQ(index, std::optional<qsizetype>(expected));
        // The first palette of that id, as the store finds it (a damaged file can repeat one).
        const auto& stored = store->templates();
        const auto found = std::find_if(stored.begin(), stored.end(),
                                        [&](const ColorTemplate& t) { return t.id == target->id; });
        ASSERT_NE(found, stored.end());
        const ColorItem added = found->colors.at(expected);
        if (given.isEmpty())
            EXPECT_FALSE(namesOf(target->colors).contains(added.name, Qt::CaseInsensitive));
        else
            EXPECT_EQ(added.name, given);
        // Only the bar's own add waits for its editor.
        EXPECT_EQ(store->colorAwaitingEdit(), elsewhere ? awaiting : std::optional(added.id));
        target->colors.insert(
            expected, {added.id, added.name, u"#F5F5F5"_s, given.isEmpty(), false, false, {}});
        break;
    }
    case 1: { // an exchange of two colours, never of a locked one
        const qsizetype from = qsizetype(random.below(n + 2)) - 1;
        const qsizetype to = qsizetype(random.below(n + 2)) - 1;
        saves = p && !p->isLocked && from != to && from >= 0 && to >= 0 && from < n && to < n &&
                !p->colors.at(from).isLocked && !p->colors.at(to).isLocked;
        EXPECT_EQ(store->moveColor(from, to), saves) << from << " " << to;
        if (saves)
            p->colors.swapItemsAt(from, to);
        break;
    }
    case 2: { // deleting a colour: the question, then the confirmation, which counts again
        const std::optional<QString> refusal =
            !p                                     ? std::nullopt
            : p->isLocked                          ? u"Unlock this palette to edit colors"_s
            : at >= 0 && p->colors.at(at).isLocked ? u"Unlock this color to delete it"_s
            : n < 2                                ? u"A palette needs at least one color"_s
                                                   : std::optional<QString>();
        EXPECT_EQ(store->deleteColorRefusal(colorId), refusal);
        if (refusal && n >= 2)
            break;
        EXPECT_EQ(store->deleteColor(colorId), saves = at >= 0 && n >= 2);
        if (saves)
            model.said.emplace_back(u"Removed "_s + p->colors.takeAt(at).name, u"trash.fill"_s);
        break;
    }
    case 3: { // the swatch editor's lock
        const bool locked = random.bit();
        EXPECT_EQ(store->setColorLocked(colorId, locked), saves = at >= 0 && !p->isLocked);
        if (saves)
            p->colors[at].isLocked = locked;
        break;
    }
    case 4: // the palette lock
        store->toggleActiveTemplateLock();
        if ((saves = p != nullptr))
            p->isLocked = !p->isLocked;
        break;
    case 5: { // rename: blanks keep the popover open, a locked palette keeps its name
        const QString typed = QStringList{u" \t "_s, u"  Renamed\t"_s, u"P0"_s}[random.below(3)];
        EXPECT_EQ(store->renameActiveTemplate(typed), !typed.trimmed().isEmpty());
        if ((saves = p && !p->isLocked && !typed.trimmed().isEmpty()))
            p->name = typed.trimmed();
        break;
    }
    case 6: // selecting, locked or not
        store->selectTemplate(paletteId);
        if ((saves = model.find(paletteId) != nullptr))
            model.active = paletteId;
        break;
    case 7: { // deleting a palette, every copy; the first one left becomes active
        const ColorTemplate* target = model.find(paletteId);
        const std::optional<QString> refusal =
            target && target->isLocked ? u"Unlock this palette to delete it"_s
            : target && std::all_of(model.templates.cbegin(), model.templates.cend(),
                                    [&](const ColorTemplate& t) { return t.id == paletteId; })
                ? u"There's only one palette left"_s
                : std::optional<QString>();
        EXPECT_EQ(store->deleteTemplateRefusal(paletteId), refusal);
        EXPECT_EQ(store->confirmDeleteTemplate(paletteId), saves = target && !refusal);
        if (!saves)
            break;
        model.templates.removeIf([&](const ColorTemplate& t) { return t.id == paletteId; });
        if (model.active == paletteId)
            model.active = model.templates.constFirst().id;
        model.said.emplace_back(u"Palette deleted"_s, u"trash.fill"_s);
        EXPECT_FALSE(store->shadowState().contains(paletteId) ||
                     store->templateLastModified().contains(paletteId));
        EXPECT_EQ(TemplateJson::decodeShadowStates(writer.shadowWrites.back()),
                  store->shadowState());
        break;
    }
    default: { // a blank palette: "Palette N" made unique, three greys, named 0.3 s later
        store->addBlankTemplate();
        const QString wanted = u"Palette "_s + QString::number(model.templates.size() + 1);
        QString name = wanted;
        for (int k = 2; namesOf(model.templates).contains(name); ++k)
            name = wanted + u' ' + QString::number(k);
        const ColorTemplate& made = store->templates().constLast();
        QList<ColorItem> colors;
        for (const auto& [grey, hex] : {std::pair{u"Off White"_s, u"#F5F5F5"_s},
                                        {u"Off White 2"_s, u"#E5E5E5"_s},
                                        {u"Light Gray"_s, u"#D4D4D4"_s}})
            colors.append({made.colors.value(colors.size()).id, grey, hex, true, false, false, {}});
        model.templates.append(ColorTemplate::makeNew(name, colors, clock.nowMs()));
        model.templates.last().id = model.active = made.id;
        model.said.emplace_back(u"Created \""_s + name + u'"', u"plus.circle.fill"_s);
        model.renameDueMs = clock.nowMs() + 300.0;
        saves = true;
    }
    }
    if (saves)
        model.save(clock.nowMs());
}

TEST_F(Store, RandomEditsFollowTheRules) {
    for (int run = 0; run < 40; ++run) {
        Model model = randomStart();
        start(model.templates, model.active);
        for (const ColorTemplate& palette : model.templates)
            store->setShadowState(palette.id, {palette.contentHash, 1, 1.0});
        for (int i = 0; i < 50; ++i) {
            SCOPED_TRACE(::testing::Message() << "run " << run << " step " << i);
            // Steps 7 ms apart never fall on the rename's due time itself.
            scheduler.advance(0.007);
            if (model.renameDueMs && clock.nowMs() >= *model.renameDueMs) {
                ++model.renames;
                model.renameDueMs.reset();
            }
            step(model);
            const QByteArray expected = TemplateJson::encodeTemplates(model.templates);
            ASSERT_EQ(TemplateJson::encodeTemplates(store->templates()), expected);
            ASSERT_EQ(store->activeTemplateId(), model.active);
            ASSERT_EQ(writer.requests.size(), model.saves);
            ASSERT_TRUE(model.saves == 0 || writer.requests.back().json == expected);
            ASSERT_EQ(said, model.said);
            ASSERT_EQ(renames, model.renames);
        }
    }
}

// The completion of a save takes the list the file now holds (a lock changed there: equal
// records, another hash), unless an editor is open; no push is asked for during a sync pass.
TEST_F(Store, TheCompletionOfASaveTakesTheFilesList) {
    const ColorTemplate mine = makePalette(u"Mine"_s, {makeColor(u"A"_s, u"#111111"_s)});
    start({mine}, mine.id);
    QList<ColorTemplate> merged{mine, makePalette(u"Theirs"_s, {})};
    merged[0].colors[0].isLocked = true;
    merged[0].contentHash = u"0000000000000001"_s;
    for (const bool editorOpen : {true, false}) {
        store->setEditorPopoverOpen(editorOpen);
        store->setSyncing(editorOpen);
        store->saveTemplates();
        writer.completeNext(merged);
        EXPECT_EQ(store->templates().size(), editorOpen ? 1 : 2);
        EXPECT_EQ(store->templates().at(0).colors.at(0).isLocked, !editorOpen);
        EXPECT_EQ(store->baselineTemplates().size(), 2) << "the baseline is what the file holds";
        EXPECT_EQ(pushes, editorOpen ? 0 : 1);
    }
}

// Another process's list may hold one palette twice: deleting it would leave nothing, which is
// what the last-palette refusal is for.
TEST_F(Store, APaletteHeldTwiceIsStillTheLastOne) {
    const ColorTemplate only = makePalette(u"Only"_s, {});
    start({only, only}, only.id);
    EXPECT_EQ(store->deleteTemplateRefusal(only.id), StoreTexts::lastTemplateRefusal);
    EXPECT_FALSE(store->confirmDeleteTemplate(only.id));
    EXPECT_EQ(store->templates().size(), 2);
}

} // namespace
} // namespace hueshelf::testing
