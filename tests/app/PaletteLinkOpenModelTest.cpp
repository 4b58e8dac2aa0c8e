#include "app/PaletteLinkOpenModel.h"

#include "CheckPopoverTestSupport.h"
#include "app/PaletteLinkShareAction.h"
#include "platform/fake/FakePlatform.h"

#include <gtest/gtest.h>

#include <vector>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;
using PaletteLink::Color;
using testing::Announcement;
using testing::palette;
using testing::RecordingWriter;
using testing::TestStore;

const LinkAlert kAlert{
    u"Couldn't open that file"_s,
    u"That link isn't a HueShelf palette. It may have been cut short when it was copied, or made "
    u"with a newer version of HueShelf."_s,
    u"OK"_s};

const QString kBrandLink = u"hueshelf://import#1;Brand;Primary:FF0000,|Soft|Sky:87ceeb"_s;
const QString kOtherLink = u"hueshelf://import#1;Other;A:000000"_s;

struct Harness {
    explicit Harness(const QList<ColorTemplate>& templates = {palette(u"Starter"_s,
                                                                      {{u"A"_s, u"#FFA69E"_s}})})
        : store(templates), model(*store.store, store.clock, store.scheduler) {
        store.store->setWriter(&writer);
        QObject::connect(&model, &PaletteLinkOpenModel::alertRequested,
                         [this](const LinkAlert& alert) { alerts.push_back(alert); });
        QObject::connect(&model, &PaletteLinkOpenModel::previewOpened, [this] { ++opened; });
        QObject::connect(&model, &PaletteLinkOpenModel::previewRaised, [this] { ++raised; });
        QObject::connect(&model, &PaletteLinkOpenModel::previewClosed, [this] { ++closed; });
        QObject::connect(&model, &PaletteLinkOpenModel::barShowRequested, [this] { ++barShown; });
    }

    QStringList names() const {
        QStringList result;
        for (const ColorTemplate& p : store.store->templates())
            result.append(p.name);
        return result;
    }

    TestStore store;
    RecordingWriter writer;
    PaletteLinkOpenModel model;
    std::vector<LinkAlert> alerts;
    int opened = 0;
    int raised = 0;
    int closed = 0;
    int barShown = 0;
};

TEST(PaletteLinkOpenModel, TakesOnlyItsOwnSchemeAndHost) {
    const std::pair<QString, bool> cases[] = {
        {u"hueshelf://import#1;A;B:000000"_s, true},
        {u"HueShelf://IMPORT#1;A;B:000000"_s, true},
        {u"hueshelf://import"_s, true},
        {u"hueshelf://export#1;A;B:000000"_s, false},
        {u"hueshelf:import#1;A;B:000000"_s, false},
        {u"https://hueshelf.app/p/#1;A;B:000000"_s, false},
        {u"hueshelfs://import#1;A;B:000000"_s, false},
        {u"/home/me/palette.hueshelf"_s, false},
    };
    for (const auto& [text, accepted] : cases) {
        SCOPED_TRACE(text.toStdString());
        EXPECT_EQ(PaletteLinkOpenModel::accepts(QUrl(text)), accepted);
        Harness h;
        const auto result = h.model.open(text);
        if (!accepted) {
            EXPECT_EQ(result, PaletteLinkOpenModel::OpenResult::ignored);
            EXPECT_TRUE(h.alerts.empty());
            EXPECT_EQ(h.opened, 0);
        } else {
            EXPECT_NE(result, PaletteLinkOpenModel::OpenResult::ignored);
        }
    }
}

TEST(PaletteLinkOpenModel, EveryUnreadableLinkGetsTheSameAlertAndChangesNothing) {
    const QString texts[] = {
        u"hueshelf://import"_s,                // no payload
        u"hueshelf://import#1;A;B:000000,"_s,  // cut short
        u"hueshelf://import#1;%zz;B:000000"_s, // an escape QUrl would have "repaired"
    };
    for (const QString& text : texts) {
        SCOPED_TRACE(text.toStdString());
        Harness h;
        EXPECT_EQ(h.model.open(text), PaletteLinkOpenModel::OpenResult::refused);
        EXPECT_EQ(h.alerts, std::vector<LinkAlert>{kAlert});
        EXPECT_FALSE(h.model.isPreviewVisible());
        EXPECT_EQ(h.store.store->templates().size(), 1);
        EXPECT_TRUE(h.writer.requests.empty());
    }
}

TEST(PaletteLinkOpenModel, PreviewsTheDecodedPalette) {
    Harness h;
    EXPECT_EQ(h.model.open(kBrandLink), PaletteLinkOpenModel::OpenResult::previewed);
    EXPECT_EQ(h.opened, 1);
    const std::optional<LinkPreview> preview = h.model.preview();
    ASSERT_TRUE(preview);
    EXPECT_EQ(preview->paletteName, u"Brand"_s);
    EXPECT_EQ(preview->countText, u"2 colors"_s);
    EXPECT_EQ(preview->swatches, (QList<Color>{{u"Primary"_s, u"#FF0000"_s, false, {}},
                                               {u"Sky"_s, u"#87CEEB"_s, true, u"Soft"_s}}));
    EXPECT_TRUE(h.writer.requests.empty());

    EXPECT_EQ(PaletteLinkOpenTexts::colorCountText(1), u"1 color"_s);
}

TEST(PaletteLinkOpenModel, AVisiblePreviewKeepsItsLinkAndDropsTheNextOne) {
    Harness h;
    h.model.open(kBrandLink);
    EXPECT_EQ(h.model.open(kOtherLink), PaletteLinkOpenModel::OpenResult::dropped);
    EXPECT_EQ(h.raised, 1);
    EXPECT_EQ(h.opened, 1);
    EXPECT_EQ(h.model.previewedPalette()->name, u"Brand"_s);
    // An unreadable link still gets its alert; the preview stays as it was.
    EXPECT_EQ(h.model.open(u"hueshelf://import#1;A"_s), PaletteLinkOpenModel::OpenResult::refused);
    EXPECT_EQ(h.model.previewedPalette()->name, u"Brand"_s);

    h.model.cancel();
    EXPECT_EQ(h.closed, 1);
    EXPECT_FALSE(h.model.isPreviewVisible());
    EXPECT_EQ(h.model.add(), std::nullopt);
    EXPECT_EQ(h.store.store->templates().size(), 1);
    EXPECT_EQ(h.barShown, 0);
    EXPECT_EQ(h.model.open(kOtherLink), PaletteLinkOpenModel::OpenResult::previewed);
}

TEST(PaletteLinkOpenModel, AddingMakesANewActivePaletteUnderAFreeName) {
    Harness h({palette(u"Brand"_s, {{u"Other"_s, u"#123456"_s}}),
               palette(u"Brand (1)"_s, {{u"Other"_s, u"#123456"_s}})});
    h.store.clock.setNowMs(1'800'000'000'000.0);
    h.model.open(kBrandLink);
    const std::optional<PaletteImportOutcome> outcome = h.model.add();
    ASSERT_TRUE(outcome);
    EXPECT_EQ(outcome->kind, PaletteImportOutcome::Kind::imported);
    EXPECT_EQ(outcome->message, u"Imported \"Brand (2)\""_s);
    EXPECT_EQ(h.names(), (QStringList{u"Brand"_s, u"Brand (1)"_s, u"Brand (2)"_s}));
    const ColorTemplate& added = h.store.store->templates().constLast();
    EXPECT_EQ(outcome->templateId, added.id);
    EXPECT_EQ(h.store.store->activeTemplateId(), added.id);
    EXPECT_EQ(added.createdAt, 1'800'000'000'000.0);
    ASSERT_EQ(added.colors.size(), 2);
    EXPECT_EQ(added.colors.at(1).hex, u"#87CEEB"_s);
    EXPECT_EQ(added.colors.at(1).dividerLabel, u"Soft"_s);
    EXPECT_EQ(h.writer.requests.size(), 1u);
    EXPECT_FALSE(h.model.isPreviewVisible());
    EXPECT_EQ(h.closed, 1);
    EXPECT_EQ(h.barShown, 1);
    // A new palette gets no toast, now or on the next turn.
    h.store.scheduler.runDue();
    EXPECT_TRUE(h.store.announcements.empty());
}

TEST(PaletteLinkOpenModel, AddingAPaletteAlreadyThereSelectsItAndSaysSoOnTheNextTurn) {
    // The stored copy differs only where a link can't tell: ids, locks, automatic names and the
    // letter case of its codes.
    ColorTemplate stored =
        palette(u"Brand"_s, {{u"Primary"_s, u"#ff0000"_s}, {u"Sky"_s, u"#87CEEB"_s}});
    stored.isLocked = true;
    stored.colors[0].isAutoNamed = true;
    stored.colors[1].dividerBefore = true;
    stored.colors[1].dividerLabel = u"Soft"_s;
    Harness h({palette(u"Starter"_s, {{u"A"_s, u"#FFA69E"_s}}), stored});
    h.model.open(kBrandLink);
    const std::optional<PaletteImportOutcome> outcome = h.model.add();
    ASSERT_TRUE(outcome);
    EXPECT_EQ(outcome->kind, PaletteImportOutcome::Kind::alreadyHave);
    EXPECT_EQ(outcome->message, u"You already have this palette."_s);
    EXPECT_EQ(outcome->templateId, stored.id);
    EXPECT_EQ(h.store.store->templates().size(), 2);
    EXPECT_EQ(h.store.store->activeTemplateId(), stored.id);
    EXPECT_EQ(h.writer.requests.size(), 1u);
    EXPECT_EQ(h.barShown, 1);

    EXPECT_TRUE(h.store.announcements.empty());
    h.store.scheduler.runDue();
    EXPECT_EQ(
        h.store.announcements,
        (std::vector<Announcement>{{u"You already have this palette."_s, u"paintpalette.fill"_s}}));
}

TEST(PaletteLinkShareAction, CopiesTheActivePalettesLinkAndAnnouncesIt) {
    Harness h({palette(u"Brand"_s, {{u"Primary"_s, u"#ff0000"_s}})});
    FakePlatform platform;
    const std::optional<LinkToast> toast =
        PaletteLinkShareAction::shareActivePalette(*h.store.store, platform);
    ASSERT_TRUE(toast);
    EXPECT_EQ(toast->seconds, 2.0);
    EXPECT_EQ(platform.clipboardHistory(),
              QStringList{PaletteLink::linkPrefix() + u"Brand;Primary:FF0000"_s});
    EXPECT_EQ(h.store.announcements,
              (std::vector<Announcement>{
                  {u"Link copied \u2014 anyone can open it in HueShelf"_s, u"link"_s}}));
    // The copied link opens as the same palette.
    EXPECT_EQ(h.model.open(u"hueshelf://import"_s +
                           platform.clipboardText().mid(platform.clipboardText().indexOf(u'#'))),
              PaletteLinkOpenModel::OpenResult::previewed);
    EXPECT_EQ(h.model.add()->kind, PaletteImportOutcome::Kind::alreadyHave);
}

TEST(PaletteLinkShareAction, ALinkThatCantBeMadeLeavesTheClipboardAlone) {
    Harness h({palette(u"Brand"_s, {{u"c"_s.repeated(41), u"#ff0000"_s}})});
    FakePlatform platform;
    platform.setClipboardText(u"before"_s);
    const std::optional<LinkToast> toast =
        PaletteLinkShareAction::shareActivePalette(*h.store.store, platform);
    ASSERT_TRUE(toast);
    EXPECT_EQ(toast->seconds, 2.5);
    EXPECT_EQ(platform.clipboardText(), u"before"_s);
    EXPECT_EQ(
        h.store.announcements,
        (std::vector<Announcement>{{u"A color name is too long for a link (40 characters max)"_s,
                                    u"exclamationmark.triangle"_s}}));
}

TEST(PaletteLinkShareAction, DoesNothingWithoutAnActivePalette) {
    Harness h(QList<ColorTemplate>{});
    FakePlatform platform;
    EXPECT_EQ(PaletteLinkShareAction::shareActivePalette(*h.store.store, platform), std::nullopt);
    EXPECT_TRUE(platform.clipboardHistory().isEmpty());
    EXPECT_TRUE(h.store.announcements.empty());
}

} // namespace
} // namespace hueshelf::app
