#include "AppTestSupport.h"
#include "app/DarkVersionModel.h"
#include "app/SchemeGeneratorModel.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <type_traits>
#include <vector>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;
using SchemeGenerator::GeneratedColor;
using SchemeGenerator::SchemeStyle;
using testing::palette;
using testing::TestStore;

// A store, one popover model on it, and what the store announced and the model closed.
template <typename Model>
struct Harness {
    explicit Harness(const QList<ColorTemplate>& templates) : store(templates) {
        if constexpr (std::is_same_v<Model, SchemeGeneratorModel>) {
            model = std::make_unique<Model>(*store.store, store.scheduler);
        } else {
            model = std::make_unique<Model>(*store.store);
        }
        QObject::connect(model.get(), &Model::closed, [this] { ++closedCount; });
    }

    const ColorTemplate& active() const {
        for (const ColorTemplate& t : store.store->templates()) {
            if (t.id == store.store->activeTemplateId()) {
                return t;
            }
        }
        throw std::logic_error("no active palette");
    }

    TestStore store;
    std::unique_ptr<Model> model;
    int closedCount = 0;
};

QStringList hexesOf(const QList<GeneratedColor>& colors) {
    QStringList hexes;
    for (const GeneratedColor& color : colors) {
        hexes.append(color.hex);
    }
    return hexes;
}

// --- Scheme generator ------------------------------------------------------------------------

TEST(SchemeGeneratorModel, OpensOnTheActivePalettesFirstColour) {
    struct Case {
        QString firstHex;
        QString expectedPrimary;
    };
    const Case cases[] = {{u"#808080"_s, u"#808080"_s}, {u"#FFF"_s, u"#3B82F6"_s}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.firstHex.toStdString());
        Harness<SchemeGeneratorModel> h({palette(u"Brand"_s, {{u"A"_s, c.firstHex}})});
        h.model->open();
        EXPECT_EQ(h.model->primaryHex(), c.expectedPrimary);
        EXPECT_EQ(h.model->style(), SchemeStyle::warm);
        ASSERT_EQ(h.model->generatedColors().size(), 6);
        EXPECT_EQ(h.model->generatedColors().at(0).hex, c.expectedPrimary);
    }
}

TEST(SchemeGeneratorModel, SwatchesFadeInOnTheNextTurn) {
    Harness<SchemeGeneratorModel> h({palette(u"Brand"_s, {{u"A"_s, u"#808080"_s}})});
    h.model->open();
    EXPECT_FALSE(h.model->swatchesVisible());
    h.store.scheduler.runDue();
    EXPECT_TRUE(h.model->swatchesVisible());

    // Two changes in one turn: hidden again, and only one reveal is left waiting.
    h.model->setStyle(SchemeStyle::cool);
    h.model->setStyle(SchemeStyle::neutral);
    EXPECT_FALSE(h.model->swatchesVisible());
    EXPECT_EQ(h.store.scheduler.pendingCount(), 1);
    h.store.scheduler.runDue();
    EXPECT_TRUE(h.model->swatchesVisible());
    EXPECT_EQ(h.model->generatedColors().at(2).hex, u"#5AA6A6"_s);
}

TEST(SchemeGeneratorModel, StartingTextRule) {
    struct Case {
        QString typed;
        QString fieldAfter;
        bool regenerates;
    };
    const Case cases[] = {
        {u"rgb(255, 0, 0)"_s, u"#FF0000"_s, true},
        {u"ff0000"_s, u"ff0000"_s, true},
        {u"#ff0000"_s, u"#ff0000"_s, true},
        {u"not a colour"_s, u"not a colour"_s, false},
        {u"#f00"_s, u"#f00"_s, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.typed.toStdString());
        Harness<SchemeGeneratorModel> h({palette(u"Brand"_s, {{u"A"_s, u"#808080"_s}})});
        h.model->open();
        h.store.scheduler.runDue();
        const QList<GeneratedColor> before = h.model->generatedColors();

        h.model->setStartingText(c.typed);
        EXPECT_EQ(h.model->primaryHex(), c.fieldAfter);
        if (c.regenerates) {
            EXPECT_EQ(hexesOf(h.model->generatedColors()),
                      (QStringList{c.fieldAfter, u"#800000"_s, u"#FF8000"_s, u"#F8F7F6"_s,
                                   u"#EFECEB"_s, u"#450808"_s}));
            EXPECT_FALSE(h.model->swatchesVisible());
        } else {
            // The preview keeps the last good scheme, ids included, and stays shown.
            EXPECT_EQ(h.model->generatedColors(), before);
            EXPECT_TRUE(h.model->swatchesVisible());
            EXPECT_EQ(h.store.scheduler.pendingCount(), 0);
        }
    }
}

TEST(SchemeGeneratorModel, CreatesAUniquelyNamedPaletteAndAnnouncesIt) {
    Harness<SchemeGeneratorModel> h({palette(u"My color scheme"_s, {{u"A"_s, u"#808080"_s}})});
    h.model->open();
    const QList<GeneratedColor> generated = h.model->generatedColors();
    const qsizetype before = h.store.store->templates().size();

    ASSERT_TRUE(h.model->createPalette());

    ASSERT_EQ(h.store.store->templates().size(), before + 1);
    const ColorTemplate& created = h.active();
    EXPECT_EQ(created.name, u"My color scheme 2"_s);
    EXPECT_EQ(created.id, h.store.store->templates().constLast().id);
    ASSERT_EQ(created.colors.size(), generated.size());
    for (qsizetype i = 0; i < generated.size(); ++i) {
        EXPECT_EQ(created.colors.at(i).name, generated.at(i).name);
        EXPECT_EQ(created.colors.at(i).hex, generated.at(i).hex);
        EXPECT_TRUE(created.colors.at(i).isAutoNamed);
        EXPECT_NE(created.colors.at(i).id, generated.at(i).id);
    }
    ASSERT_EQ(h.store.announcements.size(), 1u);
    EXPECT_EQ(h.store.announcements.front().message, u"Created \"My color scheme 2\""_s);
    EXPECT_EQ(h.store.announcements.front().icon, u"paintpalette.fill"_s);
    EXPECT_EQ(h.closedCount, 1);
}

TEST(SchemeGeneratorModel, BlankNameRefusesAndTrimsOtherwise) {
    Harness<SchemeGeneratorModel> h({palette(u"Brand"_s, {{u"A"_s, u"#808080"_s}})});
    h.model->open();
    h.model->setTemplateName(u" \t "_s);
    EXPECT_FALSE(h.model->canCreate());
    EXPECT_FALSE(h.model->createPalette());
    EXPECT_EQ(h.store.store->templates().size(), 1);
    EXPECT_TRUE(h.store.announcements.empty());
    EXPECT_EQ(h.closedCount, 0);

    h.model->setTemplateName(u"  Sunset\t"_s);
    ASSERT_TRUE(h.model->createPalette());
    EXPECT_EQ(h.active().name, u"Sunset"_s);

    h.model->cancel();
    EXPECT_EQ(h.closedCount, 2);
    EXPECT_EQ(h.store.store->templates().size(), 2);
}

// --- Dark version ----------------------------------------------------------------------------

ColorTemplate sevenColours(const QString& name) {
    return palette(name, {{u"A"_s, u"#FFFFFF"_s},
                          {u"B"_s, u"#000000"_s},
                          {u"C"_s, u"#FF0000"_s},
                          {u"D"_s, u"#3B82F6"_s},
                          {u"E"_s, u"#EEEEEE"_s},
                          {u"F"_s, u"#CC8888"_s},
                          {u"G"_s, u"#808080"_s}});
}

TEST(DarkVersionModel, DefaultNameAndPreview) {
    Harness<DarkVersionModel> h({sevenColours(u"Brand"_s)});
    h.model->open();
    EXPECT_EQ(h.model->templateName(), u"Brand (Dark)"_s);

    const QList<DarkPreviewRow> rows = h.model->previewRows();
    ASSERT_EQ(rows.size(), 6);
    EXPECT_EQ(rows.at(0), (DarkPreviewRow{u"#FFFFFF"_s, u"#0A0A0A"_s}));
    EXPECT_EQ(rows.at(1), (DarkPreviewRow{u"#000000"_s, u"#F5F5F5"_s}));
    EXPECT_EQ(rows.at(5).originalHex, u"#CC8888"_s);
    EXPECT_EQ(h.model->morePreviewLine(), u"+1 more color not shown"_s);

    // The preview follows the active palette as it is now.
    h.store.store->editTemplate(h.active().id, [](ColorTemplate& t) {
        t.colors.append(ColorItem::make(u"H"_s, u"#111111"_s, false));
    });
    EXPECT_EQ(h.model->morePreviewLine(), u"+2 more colors not shown"_s);
}

TEST(DarkVersionModel, WithoutAnActivePalette) {
    Harness<DarkVersionModel> h({});
    h.model->open();
    EXPECT_EQ(h.model->templateName(), u"My Palette (Dark)"_s);
    EXPECT_TRUE(h.model->previewRows().isEmpty());
    EXPECT_EQ(h.model->morePreviewLine(), std::nullopt);
    EXPECT_FALSE(h.model->canCreate());
    EXPECT_FALSE(h.model->createDarkPalette());
    EXPECT_TRUE(h.store.store->templates().isEmpty());
}

TEST(DarkVersionModel, CreatesAnUnlockedCopyAndLeavesTheSourceAlone) {
    ColorTemplate source =
        palette(u"Brand"_s, {{u"Paper"_s, u"#FFFFFF"_s}, {u"Ink"_s, u"#000000"_s}});
    source.isLocked = true;
    source.colors[0].isLocked = true;
    Harness<DarkVersionModel> h({source, palette(u"Brand (Dark)"_s, {{u"X"_s, u"#123456"_s}})});
    h.model->open();

    ASSERT_TRUE(h.model->createDarkPalette());

    ASSERT_EQ(h.store.store->templates().size(), 3);
    const ColorTemplate& created = h.active();
    EXPECT_EQ(created.name, u"Brand (Dark) 2"_s);
    EXPECT_NE(created.id, source.id);
    EXPECT_FALSE(created.isLocked);
    EXPECT_FALSE(created.contentHash.isEmpty());
    ASSERT_EQ(created.colors.size(), 2);
    EXPECT_EQ(created.colors.at(0).hex, u"#0A0A0A"_s);
    EXPECT_EQ(created.colors.at(1).hex, u"#F5F5F5"_s);
    EXPECT_EQ(created.colors.at(0).name, u"Paper"_s);
    EXPECT_FALSE(created.colors.at(0).isLocked);
    EXPECT_NE(created.colors.at(0).id, source.colors.at(0).id);

    const ColorTemplate& kept = h.store.store->templates().constFirst();
    EXPECT_EQ(kept, source);
    EXPECT_TRUE(kept.colors.at(0).isLocked);
    // The popover only closes: no toast of its own.
    EXPECT_TRUE(h.store.announcements.empty());
    EXPECT_EQ(h.closedCount, 1);
}

TEST(DarkVersionModel, BlankNameRefuses) {
    Harness<DarkVersionModel> h({sevenColours(u"Brand"_s)});
    h.model->open();
    h.model->setTemplateName(u"   "_s);
    EXPECT_FALSE(h.model->canCreate());
    EXPECT_FALSE(h.model->createDarkPalette());
    EXPECT_EQ(h.store.store->templates().size(), 1);
    EXPECT_EQ(h.closedCount, 0);
    h.model->cancel();
    EXPECT_EQ(h.closedCount, 1);
}

} // namespace
} // namespace hueshelf::app
