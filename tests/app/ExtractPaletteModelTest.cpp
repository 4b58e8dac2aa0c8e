#include "app/ExtractPaletteModel.h"

#include "AppTestSupport.h"
#include "color/ColorUtils.h"

#include <QEventLoop>
#include <QImage>
#include <QTemporaryDir>
#include <QTimer>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;
using testing::Announcement;
using testing::palette;
using testing::TestStore;

struct Harness {
    explicit Harness(const QList<ColorTemplate>& templates = {palette(u"Sunset"_s,
                                                                      {{u"A"_s, u"#FF8800"_s}})})
        : store(templates), model(*store.store, store.scheduler) {
        QObject::connect(&model, &ExtractPaletteModel::openRequested, [this] { ++opened; });
        QObject::connect(&model, &ExtractPaletteModel::closed, [this] { ++closed; });
    }

    // A result arrived and the popover is open.
    void presentAndOpen(const QStringList& hexes) {
        model.present(hexes);
        store.scheduler.advance(ExtractPaletteModel::openDelaySeconds);
        ASSERT_TRUE(model.isOpen());
    }

    TestStore store;
    ExtractPaletteModel model;
    int opened = 0;
    int closed = 0;
};

const Announcement kFailure{u"Could not extract colors"_s, u"exclamationmark.triangle"_s};

TEST(ExtractPaletteModel, NothingFoundShowsOnlyTheFailureToast) {
    const std::optional<QStringList> results[] = {std::nullopt, QStringList{}};
    for (const auto& result : results) {
        SCOPED_TRACE(result ? "empty" : "absent");
        Harness h;
        h.model.present(result);
        h.store.scheduler.advance(5.0);
        EXPECT_EQ(h.store.announcements, std::vector<Announcement>{kFailure});
        EXPECT_EQ(h.opened, 0);
        EXPECT_FALSE(h.model.isOpen());
        EXPECT_TRUE(h.model.swatches().isEmpty());
        EXPECT_EQ(h.store.store->templates().size(), 1);
    }
}

TEST(ExtractPaletteModel, FoundColoursOpenThePopoverShortlyAfter) {
    Harness h;
    h.model.present(QStringList{u"#FF0000"_s, u"#3B8077"_s, u"#FFFFFF"_s});

    ASSERT_EQ(h.model.swatches().size(), 3);
    QStringList hexes;
    for (const ExtractedSwatch& swatch : h.model.swatches()) {
        hexes.append(swatch.hex);
        EXPECT_EQ(swatch.name, ColorUtils::colorName(swatch.hex));
        EXPECT_FALSE(swatch.id.isNull());
    }
    EXPECT_EQ(hexes, (QStringList{u"#FF0000"_s, u"#3B8077"_s, u"#FFFFFF"_s}));
    EXPECT_NE(h.model.swatches().at(0).id, h.model.swatches().at(1).id);
    EXPECT_EQ(h.model.paletteName(), u"Extracted palette"_s);
    EXPECT_TRUE(h.store.announcements.empty());

    // The drop ends first: the popover opens a tenth of a second later.
    EXPECT_EQ(h.opened, 0);
    h.store.scheduler.advance(0.099);
    EXPECT_EQ(h.opened, 0);
    EXPECT_FALSE(h.model.isOpen());
    h.store.scheduler.advance(0.001);
    EXPECT_EQ(h.opened, 1);
    EXPECT_TRUE(h.model.isOpen());
}

TEST(ExtractPaletteModel, ConfirmMakesTheRenamedSwatchesANewCurrentPalette) {
    Harness h;
    h.presentAndOpen(QStringList{u"#FF0000"_s, u"#3B8077"_s, u"#0000FF"_s});
    const QList<ExtractedSwatch> swatches = h.model.swatches();
    struct Rename {
        QString typed;
        QString name;
        bool isAutoNamed;
    };
    const Rename renames[] = {
        {u"  Brand red\t"_s, u"Brand red"_s, false},
        {u" \t "_s, ColorUtils::colorName(u"#3B8077"_s), true},
        {u" "_s + ColorUtils::colorName(u"#0000FF"_s), ColorUtils::colorName(u"#0000FF"_s), true},
    };
    for (qsizetype i = 0; i < swatches.size(); ++i) {
        ASSERT_TRUE(h.model.renameSwatch(swatches.at(i).id, renames[i].typed));
    }
    EXPECT_FALSE(h.model.renameSwatch(QUuid::createUuid(), u"Nobody"_s));
    h.model.setPaletteName(u"  Sunset \t"_s);

    ASSERT_TRUE(h.model.confirm());

    const QList<ColorTemplate>& templates = h.store.store->templates();
    ASSERT_EQ(templates.size(), 2);
    const ColorTemplate& made = templates.last();
    EXPECT_EQ(made.name, u"Sunset 2"_s);
    EXPECT_EQ(h.store.store->activeTemplateId(), made.id);
    ASSERT_EQ(made.colors.size(), 3);
    for (qsizetype i = 0; i < made.colors.size(); ++i) {
        SCOPED_TRACE(i);
        const ColorItem& color = made.colors.at(i);
        EXPECT_EQ(color.hex, swatches.at(i).hex);
        EXPECT_EQ(color.name, renames[i].name);
        EXPECT_EQ(color.isAutoNamed, renames[i].isAutoNamed);
        EXPECT_NE(color.id, swatches.at(i).id);
    }
    const Announcement created{u"Created \"Sunset 2\""_s, u"paintpalette.fill"_s};
    EXPECT_EQ(h.store.announcements, std::vector<Announcement>{created});
    EXPECT_EQ(h.closed, 1);
    EXPECT_FALSE(h.model.isOpen());
    EXPECT_TRUE(h.model.swatches().isEmpty());
}

TEST(ExtractPaletteModel, ABlankPaletteNameDoesNothing) {
    Harness h;
    h.presentAndOpen(QStringList{u"#FF0000"_s});
    h.model.setPaletteName(u" \t  "_s);
    EXPECT_FALSE(h.model.canConfirm());
    EXPECT_FALSE(h.model.confirm());
    EXPECT_EQ(h.store.store->templates().size(), 1);
    EXPECT_TRUE(h.store.announcements.empty());
    EXPECT_TRUE(h.model.isOpen());
    EXPECT_EQ(h.closed, 0);
}

TEST(ExtractPaletteModel, CancelLeavesTheStoreAlone) {
    struct Case {
        const char* name;
        bool openFirst;
    };
    for (const Case& c : {Case{"open", true}, Case{"before it opened", false}}) {
        SCOPED_TRACE(c.name);
        Harness h;
        if (c.openFirst) {
            h.presentAndOpen(QStringList{u"#FF0000"_s});
        } else {
            h.model.present(QStringList{u"#FF0000"_s});
        }
        h.model.cancel();
        // A popover cancelled before its delay ran out doesn't appear afterwards.
        h.store.scheduler.advance(1.0);
        EXPECT_FALSE(h.model.isOpen());
        EXPECT_EQ(h.opened, c.openFirst ? 1 : 0);
        EXPECT_EQ(h.closed, 1);
        EXPECT_EQ(h.store.store->templates().size(), 1);
        EXPECT_TRUE(h.store.announcements.empty());
    }
}

TEST(ExtractPaletteModel, StartExtractsFromTheFileOffTheMainThread) {
    testing::ensureApplication();
    QTemporaryDir dir;
    QImage image(80, 40, QImage::Format_ARGB32);
    image.fill(qRgb(0x3B, 0x80, 0x77));
    const QString picture = dir.filePath(u"tint.png"_s);
    ASSERT_TRUE(image.save(picture, "PNG"));

    struct Case {
        QString path;
        QStringList hexes;
        std::vector<Announcement> announcements;
    };
    const Case cases[] = {
        {picture, {u"#3B8077"_s}, {}},
        {dir.filePath(u"missing.png"_s), {}, {kFailure}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(qPrintable(c.path));
        Harness h;
        QEventLoop loop;
        QObject::connect(&h.model, &ExtractPaletteModel::extractionFinished, &loop,
                         &QEventLoop::quit);
        QTimer::singleShot(20'000, &loop, &QEventLoop::quit);
        h.model.start(c.path);
        loop.exec();

        QStringList hexes;
        for (const ExtractedSwatch& swatch : h.model.swatches()) {
            hexes.append(swatch.hex);
        }
        EXPECT_EQ(hexes, c.hexes);
        EXPECT_EQ(h.store.announcements, c.announcements);
    }
}

} // namespace
} // namespace hueshelf::app
