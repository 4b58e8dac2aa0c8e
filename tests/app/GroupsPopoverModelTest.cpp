#include "app/GroupsPopoverModel.h"

#include "AppTestSupport.h"
#include "GroupNotation.h"

#include <gtest/gtest.h>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;
using testing::colorsFrom;
using testing::idFor;
using testing::layoutOf;
using testing::runsText;

const QString kChangeGroups = u"Unlock this palette to change groups"_s;
const QString kMoveColors = u"Unlock this palette to move colors"_s;
const QString kThumbs = u"\U0001F44D\U0001F3FD"_s; // one character, four UTF-16 units
const QString kN39 = QString(39, u'n');

// One palette in the group notation (see GroupNotation.h) and the popover, open.
struct Harness {
    explicit Harness(const QString& layout, bool locked = false)
        : store({ColorTemplate::makeNew(u"Groups"_s, colorsFrom(layout), 1.0e12)}),
          model(*store.store) {
        if (locked)
            store.store->toggleActiveTemplateLock();
        model.open();
    }
    QString layout() const { return layoutOf(store.active().colors); }
    QString saved() const {
        return layoutOf(store.writer.requests.back().templates.constFirst().colors);
    }
    QStringList toasts() const {
        QStringList messages;
        for (const auto& [message, icon] : store.announcements)
            messages << message + (icon == u"lock.fill"_s ? u""_s : u" (wrong icon)"_s);
        return messages;
    }
    // "g" drops on group `index`, "u" on the ungrouped run, "p" on the pending row; "r" renames
    // run `index` to `text`, "x" removes it. A drop's `text` names the colour; "=..." is a raw
    // payload item, "~name" the name's id in lower case, and "" an empty payload.
    bool act(char op, qsizetype index = 0, const QString& text = {}) {
        QStringList payload;
        if (text.startsWith(u'='))
            payload = {text.mid(1)};
        else if (text.startsWith(u'~'))
            payload = {uuidText(idFor(text.mid(1))).toLower(), u"ignored"_s};
        else if (!text.isEmpty())
            payload = {uuidText(idFor(text))};
        return op == 'g'   ? model.dropOnGroup(index, payload)
               : op == 'u' ? model.dropOnUngrouped(payload)
               : op == 'p' ? model.dropOnPending(payload)
               : op == 'r' ? model.rename(index, text)
               : op == 'x' ? model.removeGroup(index)
                           : model.newGroup();
    }

    testing::TestStore store;
    GroupsPopoverModel model;
};

// Every edit is written to the palette, saved, and read back in normal form.
TEST(GroupsPopover, EditsKeepTheRunsInNormalForm) {
    const struct {
        QString layout;
        char op;
        qsizetype index;
        QString text;
        QString after; // empty: refused, the layout unchanged
    } cases[] = {
        {u"a b One|c Two|d"_s, 'g', 1, u"a"_s, u"b One|c a Two|d"_s},
        {u"a One|b c"_s, 'u', 0, u"b"_s, u"a b One|c"_s},
        {u"a One|b Two|c"_s, 'g', 2, u"b"_s, u"a Two|c b"_s}, // the emptied group vanishes
        {u"a One|b c"_s, 'g', 7, u"b"_s, u"a b One|c"_s},     // out of range: back to run 0
        {u"a One|b"_s, 'g', 1, u"~a"_s, u"One|b a"_s},
        {u"a b Two|c"_s, 'r', 0, u"Warm"_s, u"Warm|a b Two|c"_s}, // a name on run 0 is a group
        {u"a One|b"_s, 'r', 1, u""_s, u"a |b"_s},
        // Names are cut at 40 user-perceived characters, not UTF-16 units, and not trimmed.
        {u"a One|b"_s, 'r', 1, kN39 + u"nx"_s, u"a "_s + kN39 + u"n|b"_s},
        {u"a One|b"_s, 'r', 1, kN39 + kThumbs + u'x', u"a "_s + kN39 + kThumbs + u"|b"_s},
        {u"a One|b"_s, 'r', 2, u"X"_s, u""_s}, // no such run
        {u"a One|b Two|c"_s, 'x', 1, {}, u"a b Two|c"_s},
        {u"a One|b"_s, 'x', 0, {}, u""_s}, // run 0 stays
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.layout.toStdString() + ' ' + c.op + std::to_string(c.index));
        Harness h(c.layout);
        EXPECT_EQ(h.act(c.op, c.index, c.text), !c.after.isEmpty());
        EXPECT_EQ(h.layout(), c.after.isEmpty() ? c.layout : c.after);
        EXPECT_EQ(runsText(h.model.runs()), runsText(PaletteGroups::runs(h.store.active().colors)));
        EXPECT_EQ(h.store.saves(), c.after.isEmpty() ? 0u : 1u);
        if (!c.after.isEmpty()) {
            EXPECT_EQ(h.saved(), c.after);
        }
        EXPECT_TRUE(h.store.announcements.empty());
    }
}

// A pending group is never stored: it takes shape with the first colour dropped on it, under
// its name trimmed and cut like a rename, and the header counts it.
TEST(GroupsPopover, PendingGroupLivesUntilAColourIsDropped) {
    Harness h(u"a b c"_s);
    EXPECT_EQ(h.model.headerText(),
              u"No groups yet \u00B7 the bar draws a line where each one starts"_s);
    ASSERT_TRUE(h.act('n'));
    ASSERT_TRUE(h.model.cancelPendingGroup());
    h.model.setPendingName(u"typed after cancel"_s);
    EXPECT_EQ(h.model.pendingName(), std::nullopt);
    EXPECT_FALSE(h.act('p', 0, u"a"_s));

    h.act('n');
    h.model.setPendingName(u"  "_s + QString(45, u'p'));
    h.model.setHoveringRun(1);
    ASSERT_TRUE(h.act('p', 0, u"b"_s));
    EXPECT_EQ(h.model.pendingName(), std::nullopt);
    EXPECT_EQ(h.model.hoveringRun(), std::nullopt);
    EXPECT_EQ(h.saved(), u"a c "_s + QString(40, u'p') + u"|b"_s);
    EXPECT_TRUE(h.model.headerText().startsWith(u"1 group \u00B7"_s));
    EXPECT_TRUE(Harness(u"a One|b |c"_s).model.headerText().startsWith(u"2 groups \u00B7"_s));
}

TEST(GroupsPopover, RefusalsToastAndChangeNothing) {
    const struct {
        bool locked;
        char op;
        qsizetype index;
        QString text;
        QStringList toasts;
    } cases[] = {
        {true, 'n', 0, {}, {kChangeGroups}},
        {true, 'r', 1, u"New"_s, {kChangeGroups}},
        {true, 'x', 1, {}, {kChangeGroups}},
        {true, 'g', 1, u"a"_s, {kMoveColors}},
        {true, 'u', 0, u"=nonsense"_s, {kMoveColors}},
        {false, 'u', 0, u"b"_s, {u"Unlock this color to move it"_s}},
        {false, 'g', 1, u"=00000000-0000-0000-0000-000000000000"_s, {}},
        {false, 'u', 0, u"elsewhere"_s, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(1, c.op) + ' ' + c.text.toStdString());
        Harness h(u"a b! One|c"_s, c.locked);
        const std::size_t saves = h.store.saves();
        EXPECT_EQ(h.model.canEdit(), !c.locked);
        EXPECT_FALSE(h.act(c.op, c.index, c.text));
        EXPECT_EQ(h.toasts(), c.toasts);
        EXPECT_EQ(h.layout(), u"a b! One|c"_s);
        EXPECT_EQ(h.store.saves(), saves);
    }
}

} // namespace
} // namespace hueshelf::app
