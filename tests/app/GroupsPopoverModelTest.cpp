#include "app/GroupsPopoverModel.h"

#include "CheckPopoverTestSupport.h"
#include "GroupNotation.h"
#include "app/GroupNameField.h"
#include "model/ContentHash.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;
using testing::colorsFrom;
using testing::idFor;
using testing::layoutOf;
using testing::runsText;

std::string text(const QString& value) {
    return value.toStdString();
}

// A store with one palette in the group notation, a recording writer, and the popover, open.
struct GroupsHarness {
    explicit GroupsHarness(const QString& layout, bool locked = false)
        : store({paletteOf(layout, locked)}) {
        store.store->setWriter(&writer);
        model = std::make_unique<GroupsPopoverModel>(*store.store);
        model->open();
    }

    static ColorTemplate paletteOf(const QString& layout, bool locked) {
        ColorTemplate palette = ColorTemplate::makeNew(u"Groups"_s, colorsFrom(layout), 1.0e12);
        palette.isLocked = locked;
        return palette;
    }

    ColorTemplate active() const { return *store.store->activeTemplate(); }
    std::string layout() const { return text(layoutOf(active().colors)); }
    std::string runs() const { return text(runsText(model->runs())); }
    std::size_t saves() const { return writer.requests.size(); }
    const ColorTemplate& lastSaved() const { return writer.requests.back().templates.constFirst(); }

    testing::RecordingWriter writer;
    testing::TestStore store;
    std::unique_ptr<GroupsPopoverModel> model;
};

QStringList payload(const QString& name) {
    return {uuidText(idFor(name))};
}

TEST(GroupsPopoverTexts, HeaderCountsTheGroups) {
    const struct {
        QString layout;
        QString header;
    } cases[] = {
        {u"a b"_s, u"No groups yet \u00B7 the bar draws a line where each one starts"_s},
        {u"One|a b"_s, u"1 group \u00B7 the bar draws a line where each one starts"_s},
        {u"a One|b |c Two|d"_s, u"3 groups \u00B7 the bar draws a line where each one starts"_s},
    };
    for (const auto& c : cases)
        EXPECT_EQ(GroupsHarness(c.layout).model->headerText(), c.header) << text(c.layout);
    EXPECT_EQ(GroupsPopoverTexts::emptyRunLine(0),
              u"Every color is in a group. Drag one here to take it out."_s);
    EXPECT_EQ(GroupsPopoverTexts::emptyRunLine(2), u"Drag colors here"_s);
}

TEST(GroupsPopover, OpenReadsTheRunsAfresh) {
    GroupsHarness h(u"a One|b c"_s);
    EXPECT_EQ(h.runs(), "[a] One[b c]");
    h.store.store->editTemplate(
        h.active().id, [](ColorTemplate& palette) { palette.colors = colorsFrom(u"Two|a b c"_s); });
    EXPECT_EQ(h.runs(), "[a] One[b c]");
    h.model->open();
    EXPECT_EQ(h.runs(), "[] Two[a b c]");
}

TEST(GroupsPopover, PendingGroupIsNeverStored) {
    GroupsHarness h(u"a b c"_s);
    EXPECT_TRUE(h.model->canEdit());
    ASSERT_TRUE(h.model->newGroup());
    EXPECT_EQ(h.model->pendingName(), QString());
    h.model->setPendingName(u"Warm"_s);
    EXPECT_EQ(h.model->pendingName(), u"Warm"_s);
    EXPECT_EQ(h.saves(), 0u);
    EXPECT_EQ(h.layout(), "a b c");

    ASSERT_TRUE(h.model->cancelPendingGroup());
    EXPECT_EQ(h.model->pendingName(), std::nullopt);
    h.model->setPendingName(u"typed after cancel"_s);
    EXPECT_EQ(h.model->pendingName(), std::nullopt);

    h.model->newGroup();
    h.model->close();
    h.model->open();
    EXPECT_EQ(h.model->pendingName(), std::nullopt);
    EXPECT_EQ(h.saves(), 0u);
    EXPECT_FALSE(h.model->dropOnPending(payload(u"a"_s)));
    EXPECT_EQ(h.layout(), "a b c");
}

TEST(GroupsPopover, DropOnPendingMakesTheGroupAndSavesIt) {
    GroupsHarness h(u"a b c"_s);
    const qint64 revision = h.active().revision;
    h.model->newGroup();
    h.model->setPendingName(u"  Warm tones \t"_s);
    h.model->setHoveringRun(1);

    ASSERT_TRUE(h.model->dropOnPending(payload(u"b"_s)));
    EXPECT_EQ(h.model->pendingName(), std::nullopt);
    EXPECT_EQ(h.model->hoveringRun(), std::nullopt);
    EXPECT_EQ(h.runs(), "[a c] Warm tones[b]");
    EXPECT_EQ(h.layout(), "a c Warm tones|b");
    EXPECT_EQ(h.model->headerText().left(7), u"1 group"_s);

    ASSERT_EQ(h.saves(), 1u);
    EXPECT_EQ(text(layoutOf(h.lastSaved().colors)), "a c Warm tones|b");
    EXPECT_EQ(h.lastSaved().contentHash, computeContentHash(u"Groups"_s, h.active().colors));
    EXPECT_EQ(h.active().revision, revision + 1);
    EXPECT_TRUE(h.store.announcements.empty());
}

TEST(GroupsPopover, DropsMoveColoursBetweenRuns) {
    const struct {
        const char* what;
        QString layout;
        std::function<bool(GroupsPopoverModel&)> drop;
        std::string runs;
    } cases[] = {
        {"onto a group appends", u"a b One|c Two|d"_s,
         [](GroupsPopoverModel& m) { return m.dropOnGroup(1, payload(u"a"_s)); },
         "[b] One[c a] Two[d]"},
        {"within its own group goes to the end", u"a One|b c d"_s,
         [](GroupsPopoverModel& m) { return m.dropOnGroup(1, payload(u"b"_s)); }, "[a] One[c d b]"},
        {"out of a group into run 0", u"a One|b c"_s,
         [](GroupsPopoverModel& m) { return m.dropOnUngrouped(payload(u"b"_s)); }, "[a b] One[c]"},
        {"the emptied group vanishes", u"a One|b Two|c"_s,
         [](GroupsPopoverModel& m) { return m.dropOnGroup(2, payload(u"b"_s)); }, "[a] Two[c b]"},
        {"a group index out of range returns the colour to run 0", u"a One|b c"_s,
         [](GroupsPopoverModel& m) { return m.dropOnGroup(7, payload(u"b"_s)); }, "[a b] One[c]"},
        {"lower-case id text", u"a One|b"_s,
         [](GroupsPopoverModel& m) {
             return m.dropOnGroup(1, {uuidText(idFor(u"a"_s)).toLower(), u"ignored"_s});
         },
         "[] One[b a]"},
    };
    for (const auto& c : cases) {
        GroupsHarness h(c.layout);
        EXPECT_TRUE(c.drop(*h.model)) << c.what;
        EXPECT_EQ(h.runs(), c.runs) << c.what;
        EXPECT_EQ(text(runsText(PaletteGroups::runs(h.active().colors))), c.runs) << c.what;
        EXPECT_EQ(h.saves(), 1u) << c.what;
    }
}

TEST(GroupsPopover, LockedPaletteRefusesEveryAction) {
    const QString changeGroups = u"Unlock this palette to change groups"_s;
    const QString moveColors = u"Unlock this palette to move colors"_s;
    const struct {
        const char* what;
        std::function<bool(GroupsPopoverModel&)> action;
        QString toast;
    } cases[] = {
        {"new group", [](GroupsPopoverModel& m) { return m.newGroup(); }, changeGroups},
        {"rename", [](GroupsPopoverModel& m) { return m.rename(1, u"New"_s); }, changeGroups},
        {"remove", [](GroupsPopoverModel& m) { return m.removeGroup(1); }, changeGroups},
        {"drop on group", [](GroupsPopoverModel& m) { return m.dropOnGroup(1, payload(u"a"_s)); },
         moveColors},
        {"drop on ungrouped",
         [](GroupsPopoverModel& m) { return m.dropOnUngrouped(payload(u"b"_s)); }, moveColors},
        {"drop with a bad payload",
         [](GroupsPopoverModel& m) { return m.dropOnUngrouped({u"nonsense"_s}); }, moveColors},
    };
    for (const auto& c : cases) {
        GroupsHarness h(u"a One|b c"_s, true);
        EXPECT_FALSE(h.model->canEdit());
        EXPECT_FALSE(c.action(*h.model)) << c.what;
        ASSERT_EQ(h.store.announcements.size(), 1u) << c.what;
        EXPECT_EQ(h.store.announcements[0].message, c.toast) << c.what;
        EXPECT_EQ(h.store.announcements[0].icon, u"lock.fill"_s) << c.what;
        EXPECT_EQ(h.layout(), "a One|b c") << c.what;
        EXPECT_EQ(h.runs(), "[a] One[b c]") << c.what;
        EXPECT_EQ(h.saves(), 0u) << c.what;
        EXPECT_EQ(h.model->pendingName(), std::nullopt) << c.what;
    }
}

// The palette is locked elsewhere while a group is pending: the pending row can neither take a
// colour nor be cancelled, and stays as it was.
TEST(GroupsPopover, LockAfterNewGroupRefusesThePendingRow) {
    GroupsHarness h(u"a b"_s);
    ASSERT_TRUE(h.model->newGroup());
    h.store.store->toggleActiveTemplateLock();
    const std::size_t savesBefore = h.saves();

    EXPECT_FALSE(h.model->dropOnPending(payload(u"a"_s)));
    EXPECT_FALSE(h.model->cancelPendingGroup());
    ASSERT_EQ(h.store.announcements.size(), 2u);
    EXPECT_EQ(h.store.announcements[0].message, u"Unlock this palette to move colors"_s);
    EXPECT_EQ(h.store.announcements[1].message, u"Unlock this palette to change groups"_s);
    EXPECT_EQ(h.model->pendingName(), QString());
    EXPECT_EQ(h.layout(), "a b");
    EXPECT_EQ(h.saves(), savesBefore);
}

TEST(GroupsPopover, DropsThatMoveNothing) {
    const struct {
        const char* what;
        QStringList payload;
        std::vector<QString> toasts;
    } cases[] = {
        {"locked colour", payload(u"b"_s), {u"Unlock this color to move it"_s}},
        {"no items", {}, {}},
        {"not a uuid", {u"SWATCH-1"_s}, {}},
        {"the null uuid", {u"00000000-0000-0000-0000-000000000000"_s}, {}},
        {"a uuid of no colour here", payload(u"elsewhere"_s), {}},
    };
    for (const auto& c : cases) {
        for (int target = 0; target < 3; ++target) {
            GroupsHarness h(u"a b! One|c"_s);
            h.model->newGroup();
            h.model->setPendingName(u"Pending"_s);
            const bool taken = target == 0   ? h.model->dropOnPending(c.payload)
                               : target == 1 ? h.model->dropOnGroup(1, c.payload)
                                             : h.model->dropOnUngrouped(c.payload);
            EXPECT_FALSE(taken) << c.what << " target " << target;
            std::vector<QString> toasts;
            for (const auto& [message, icon] : h.store.announcements) {
                toasts.push_back(message);
                EXPECT_EQ(icon, u"lock.fill"_s);
            }
            EXPECT_EQ(toasts, c.toasts) << c.what;
            EXPECT_EQ(h.layout(), "a b! One|c") << c.what;
            EXPECT_EQ(h.saves(), 0u) << c.what;
            EXPECT_EQ(h.model->pendingName(), u"Pending"_s) << c.what;
        }
    }
}

TEST(GroupsPopover, RenameCutsToFortyCharacters) {
    const QString thumbs = u"\U0001F44D\U0001F3FD"_s; // one character, four UTF-16 units
    const QString forty = QString(40, u'n');
    const struct {
        QString typed;
        QString stored;
    } cases[] = {
        {forty + u'x', forty},
        {forty, forty},
        {QString(39, u'n') + thumbs + u'x', QString(39, u'n') + thumbs},
        {u" Spaced "_s, u" Spaced "_s},
    };
    for (const auto& c : cases) {
        GroupsHarness h(u"a One|b"_s);
        ASSERT_TRUE(h.model->rename(1, c.typed));
        EXPECT_EQ(h.model->runs()[1].name, c.stored);
        EXPECT_EQ(h.active().colors[1].dividerLabel, c.stored);
        EXPECT_EQ(h.lastSaved().colors[1].dividerLabel, c.stored);
    }
}

TEST(GroupsPopover, PendingNameIsCutLikeARename) {
    GroupsHarness h(u"a b"_s);
    h.model->newGroup();
    h.model->setPendingName(u"  "_s + QString(45, u'p'));
    ASSERT_TRUE(h.model->dropOnPending(payload(u"b"_s)));
    EXPECT_EQ(h.active().colors[1].dividerLabel, QString(40, u'p'));
}

TEST(GroupsPopover, RenameAndRemoveKeepTheRunsInNormalForm) {
    const struct {
        const char* what;
        QString layout;
        std::function<bool(GroupsPopoverModel&)> action;
        bool taken;
        std::string runs;
        std::string layoutAfter;
    } cases[] = {
        {"rename a group", u"a One|b c"_s,
         [](GroupsPopoverModel& m) { return m.rename(1, u"Brand"_s); }, true, "[a] Brand[b c]",
         "a Brand|b c"},
        {"a name on run 0 comes back as a group", u"a b Two|c"_s,
         [](GroupsPopoverModel& m) { return m.rename(0, u"Warm"_s); }, true, "[] Warm[a b] Two[c]",
         "Warm|a b Two|c"},
        {"clearing a name keeps an unnamed group", u"a One|b"_s,
         [](GroupsPopoverModel& m) { return m.rename(1, QString()); }, true, "[a] [b]", "a |b"},
        {"rename out of range", u"a One|b"_s,
         [](GroupsPopoverModel& m) { return m.rename(2, u"X"_s); }, false, "[a] One[b]", "a One|b"},
        {"remove the last group", u"a One|b Two|c d"_s,
         [](GroupsPopoverModel& m) { return m.removeGroup(2); }, true, "[a c d] One[b]",
         "a c d One|b"},
        {"remove a middle group", u"a One|b Two|c"_s,
         [](GroupsPopoverModel& m) { return m.removeGroup(1); }, true, "[a b] Two[c]", "a b Two|c"},
        {"run 0 can't be removed", u"a One|b"_s,
         [](GroupsPopoverModel& m) { return m.removeGroup(0); }, false, "[a] One[b]", "a One|b"},
        {"remove out of range", u"a One|b"_s,
         [](GroupsPopoverModel& m) { return m.removeGroup(-1); }, false, "[a] One[b]", "a One|b"},
    };
    for (const auto& c : cases) {
        GroupsHarness h(c.layout);
        EXPECT_EQ(c.action(*h.model), c.taken) << c.what;
        EXPECT_EQ(h.runs(), c.runs) << c.what;
        EXPECT_EQ(h.layout(), c.layoutAfter) << c.what;
        EXPECT_EQ(h.saves(), c.taken ? 1u : 0u) << c.what;
        if (c.taken) {
            EXPECT_EQ(text(layoutOf(h.lastSaved().colors)), c.layoutAfter) << c.what;
        }
        EXPECT_TRUE(h.store.announcements.empty()) << c.what;
    }
}

TEST(GroupNameField, EditsOrRefuses) {
    GroupNameField field;
    int refusals = 0;
    QStringList commits;
    field.onRefused = [&refusals] { ++refusals; };
    field.onCommit = [&commits](const QString& name) { commits << name; };

    EXPECT_EQ(field.displayText(), u"Unnamed"_s);
    EXPECT_TRUE(field.showsPencil());
    EXPECT_EQ(field.accessibleLabel(), u"Unnamed group. Rename"_s);

    field.canEdit = false;
    EXPECT_FALSE(field.beginEditing());
    EXPECT_FALSE(field.isEditing());
    EXPECT_EQ(refusals, 1);
    field.setDraft(u"ignored"_s);
    field.commit();
    EXPECT_TRUE(commits.isEmpty());

    field.canEdit = true;
    field.name = u"Brand"_s;
    ASSERT_TRUE(field.beginEditing());
    EXPECT_TRUE(field.focused());
    EXPECT_EQ(field.draft(), u"Brand"_s);
    field.commit(); // unchanged: nothing to save
    EXPECT_TRUE(commits.isEmpty());

    field.beginEditing();
    field.setDraft(u"Neutrals"_s);
    field.cancel();
    EXPECT_TRUE(commits.isEmpty());
    EXPECT_EQ(field.draft(), u"Brand"_s);

    field.beginEditing();
    field.setDraft(u"Neutrals"_s);
    field.commit();
    EXPECT_EQ(commits, QStringList{u"Neutrals"_s});
    EXPECT_FALSE(field.isEditing());
    EXPECT_EQ(field.displayText(), u"Brand"_s);
    EXPECT_FALSE(field.showsPencil());
    EXPECT_EQ(refusals, 1);
}

} // namespace
} // namespace hueshelf::app
