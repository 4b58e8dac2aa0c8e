#include "AppTestSupport.h"
#include "app/ExtractPaletteModel.h"
#include "app/PaletteLinkOpenModel.h"
#include "app/SchemeGeneratorModel.h"
#include "color/ColorUtils.h"

#include <QEventLoop>
#include <QTimer>

#include <gtest/gtest.h>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;
using testing::Announcement;
using testing::palette;
using testing::TestStore;

const Announcement kCreated{u"Created \"Brand 2\""_s, u"paintpalette.fill"_s};

// Each change hides the swatches and leaves one reveal waiting; text that is no full code keeps
// the last good scheme shown. A blank name refuses; another is trimmed and made unique.
TEST(SchemeGeneratorModel, RegeneratesRevealsAndCreates) {
    TestStore store({palette(u"Brand"_s, {{u"A"_s, u"#808080"_s}})});
    SchemeGeneratorModel model(*store.store, store.scheduler);
    model.open();
    model.setStyle(SchemeGenerator::SchemeStyle::cool);
    model.setStyle(SchemeGenerator::SchemeStyle::warm);
    EXPECT_FALSE(model.swatchesVisible());
    EXPECT_EQ(store.scheduler.pendingCount(), 1);
    store.scheduler.runDue();
    const auto before = model.generatedColors();
    model.setStartingText(u"#f00"_s);
    EXPECT_EQ(model.generatedColors(), before);
    EXPECT_TRUE(model.swatchesVisible());
    model.setStartingText(u"rgb(255, 0, 0)"_s);
    EXPECT_EQ(model.primaryHex(), u"#FF0000"_s);
    EXPECT_EQ(model.generatedColors().at(1).hex, u"#800000"_s);
    model.setTemplateName(u" \t "_s);
    EXPECT_FALSE(model.createPalette());
    model.setTemplateName(u"  Brand\t"_s);
    ASSERT_TRUE(model.createPalette());
    EXPECT_EQ(store.announcements, std::vector<Announcement>{kCreated});
}

// The popover opens a tenth of a second after the drop ends, unless cancelled first; nothing
// found, or a file that can't be read, gives the failure toast only.
TEST(ExtractPaletteModel, OpensShortlyAfterAndConfirmMakesANewPalette) {
    testing::ensureApplication(); // the file is read on another thread
    for (const QString& found : {u"#3B8077"_s, u""_s, u"cancelled"_s, u"/no/such/image.png"_s}) {
        SCOPED_TRACE(found.toStdString());
        TestStore store({palette(u"Brand"_s, {{u"A"_s, u"#FF8800"_s}})});
        ExtractPaletteModel model(*store.store, store.scheduler);
        if (found.startsWith(u'/')) {
            QEventLoop loop;
            QObject::connect(&model, &ExtractPaletteModel::extractionFinished, &loop,
                             &QEventLoop::quit);
            QTimer::singleShot(20'000, &loop, &QEventLoop::quit);
            model.start(found);
            loop.exec();
        } else {
            model.present(found.isEmpty() ? QStringList() : QStringList{u"#3B8077"_s});
        }
        if (found == u"cancelled"_s)
            model.cancel();
        store.scheduler.advance(0.099);
        EXPECT_FALSE(model.isOpen());
        store.scheduler.advance(0.001);
        EXPECT_EQ(model.isOpen(), found.startsWith(u'#'));
        EXPECT_EQ(store.announcements.size(), found.isEmpty() || found.startsWith(u'/') ? 1u : 0u);
        if (!found.startsWith(u'#'))
            continue;
        ASSERT_TRUE(model.renameSwatch(model.swatches().at(0).id, u" \t "_s));
        model.setPaletteName(u" \t  "_s);
        EXPECT_FALSE(model.confirm());
        model.setPaletteName(u"  Brand \t"_s);
        ASSERT_TRUE(model.confirm());
        EXPECT_EQ(store.active().colors.at(0).name, ColorUtils::colorName(u"#3B8077"_s));
        EXPECT_EQ(store.announcements, std::vector<Announcement>{kCreated});
        EXPECT_FALSE(model.isOpen());
    }
}

// An unreadable link gets the one alert; a visible preview keeps its link. Adding makes a new
// palette, or selects one already there (same but for what a link can't tell) and says so.
TEST(PaletteLinkOpenModel, PreviewsThenAddsOrFindsTheSamePalette) {
    ColorTemplate stored = palette(
        u"Brand"_s, {{u"Primary"_s, u"#ff0000"_s, false, true}, {u"Sky"_s, u"#87CEEB"_s}}, true);
    stored.colors[1].dividerBefore = true;
    stored.colors[1].dividerLabel = u"Soft"_s;
    for (const bool alreadyThere : {false, true}) {
        const ColorTemplate other = palette(u"Brand"_s, {{u"Other"_s, u"#123456"_s}});
        TestStore store(alreadyThere ? QList{other, stored} : QList{other});
        PaletteLinkOpenModel model(*store.store, store.clock, store.scheduler);
        int alerts = 0;
        QObject::connect(&model, &PaletteLinkOpenModel::alertRequested, [&] { ++alerts; });
        using Result = PaletteLinkOpenModel::OpenResult;
        EXPECT_EQ(model.open(u"hueshelf://import#1;%zz;B:000000"_s), Result::refused);
        EXPECT_EQ(alerts, 1);
        ASSERT_EQ(model.open(u"HueShelf://IMPORT#1;Brand;Primary:FF0000,|Soft|Sky:87ceeb"_s),
                  Result::previewed);
        EXPECT_EQ(model.open(u"hueshelf://import#1;Other;A:000000"_s), Result::dropped);
        const qsizetype count = store.store->templates().size();
        const std::optional<PaletteImportOutcome> outcome = model.add();
        ASSERT_TRUE(outcome);
        EXPECT_FALSE(model.isPreviewVisible());
        EXPECT_EQ(store.store->templates().size(), count + (alreadyThere ? 0 : 1));
        EXPECT_EQ(store.active().colors.at(1).dividerLabel, u"Soft"_s);
        EXPECT_TRUE(store.announcements.empty());
        store.scheduler.runDue(); // a new palette speaks for itself
        EXPECT_EQ(store.announcements.size(), alreadyThere ? 1u : 0u);
    }
}

} // namespace
} // namespace hueshelf::app
