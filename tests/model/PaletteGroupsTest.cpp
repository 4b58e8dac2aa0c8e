#include "model/PaletteGroups.h"

#include "GroupNotation.h"
#include "ModelTestSupport.h"
#include "model/ContentHash.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <random>

namespace hueshelf {
namespace {

using namespace Qt::StringLiterals;
using testing::colorsFrom;
using testing::idFor;
using testing::layoutOf;
using testing::namesOf;
using testing::runsFrom;
using testing::runsText;

std::string text(const QString& value) {
    return value.toStdString();
}

TEST(PaletteGroupsRuns, ReadsDividersIntoRuns) {
    const struct {
        QString layout;
        QString runs;
    } cases[] = {
        {u""_s, u"[]"_s},
        {u"a b c"_s, u"[a b c]"_s},
        {u"a Brand|b c"_s, u"[a] Brand[b c]"_s},
        {u"Brand|a b"_s, u"[] Brand[a b]"_s},
        {u"a |b c"_s, u"[a] [b c]"_s},
        {u"a One|b |c Two|d"_s, u"[a] One[b] [c] Two[d]"_s},
    };
    for (const auto& c : cases)
        EXPECT_EQ(text(runsText(PaletteGroups::runs(colorsFrom(c.layout)))), text(c.runs))
            << text(c.layout);
}

TEST(PaletteGroupsRuns, LabelWithoutDividerIsNoGroup) {
    QList<ColorItem> colors = colorsFrom(u"a b"_s);
    colors[1].dividerLabel = u"Stale"_s;
    EXPECT_EQ(text(runsText(PaletteGroups::runs(colors))), "[a b]");
}

TEST(PaletteGroupsApplied, WritesRunsBackIntoDividers) {
    const struct {
        const char* what;
        QString layout;
        QString runs;
        QString expected;
        QString reread;
    } cases[] = {
        {"unchanged", u"a Brand|b c"_s, u"[a] Brand[b c]"_s, u"a Brand|b c"_s, u"[a] Brand[b c]"_s},
        {"moved colour changes the order", u"a b One|c"_s, u"[a] One[c b]"_s, u"a One|c b"_s,
         u"[a] One[c b]"_s},
        {"emptied group vanishes, the others keep their order", u"a One|b Two|c Three|d"_s,
         u"[a b] One[] Two[c] Three[d]"_s, u"a b Two|c Three|d"_s, u"[a b] Two[c] Three[d]"_s},
        {"a divider inside a run is cleared", u"a One|b Two|c"_s, u"[a] One[b c] Two[]"_s,
         u"a One|b c"_s, u"[a] One[b c]"_s},
        {"empty run 0 stays, the group keeps its divider", u"One|a b"_s, u"[] One[a b]"_s,
         u"One|a b"_s, u"[] One[a b]"_s},
        {"a name on run 0 survives as a group", u"a b"_s, u"Warm[a b]"_s, u"Warm|a b"_s,
         u"[] Warm[a b]"_s},
        {"a name on an empty run 0 has nowhere to live", u"One|a"_s, u"Warm[] One[a]"_s, u"One|a"_s,
         u"[] One[a]"_s},
        {"unnamed groups keep a bare divider", u"a |b"_s, u"[a] [b]"_s, u"a |b"_s, u"[a] [b]"_s},
        {"unknown ids are ignored", u"a b"_s, u"[x a] New[y]"_s, u"a b"_s, u"[a b]"_s},
        {"a colour in no run joins the end of run 0", u"a b One|c"_s, u"[b] One[c]"_s,
         u"b a One|c"_s, u"[b a] One[c]"_s},
        {"every colour in no run", u"a One|b c"_s, u"[] One[]"_s, u"a b c"_s, u"[a b c]"_s},
        {"no runs at all", u"a One|b c"_s, u""_s, u"a b c"_s, u"[a b c]"_s},
        {"an id named twice is placed once", u"a b"_s, u"[a b] G[a]"_s, u"a b"_s, u"[a b]"_s},
        {"empty palette", u""_s, u"[] One[]"_s, u""_s, u"[]"_s},
    };
    for (const auto& c : cases) {
        const QList<ColorItem> result =
            PaletteGroups::applied(runsFrom(c.runs), colorsFrom(c.layout));
        EXPECT_EQ(text(layoutOf(result)), text(c.expected)) << c.what;
        EXPECT_EQ(text(runsText(PaletteGroups::runs(result))), text(c.reread)) << c.what;
    }
}

TEST(PaletteGroupsApplied, KeepsEveryOtherField) {
    QList<ColorItem> colors = colorsFrom(u"a b! One|c"_s);
    colors[0].isAutoNamed = true;
    const QList<ColorItem> result = PaletteGroups::applied(runsFrom(u"[c] One[b a]"_s), colors);
    ASSERT_EQ(text(layoutOf(result)), "c One|b! a");
    EXPECT_EQ(result[0].hex, colors[2].hex);
    EXPECT_EQ(result[1].hex, colors[1].hex);
    EXPECT_TRUE(result[2].isAutoNamed);
    EXPECT_EQ(result[2].hex, colors[0].hex);
}

TEST(PaletteGroupsApplied, DuplicateIdsInAPaletteAreNotLost) {
    QList<ColorItem> colors = colorsFrom(u"a b"_s);
    ColorItem twin = colors[0];
    twin.hex = u"#ABCDEF"_s;
    colors.append(twin);
    const QList<ColorItem> result = PaletteGroups::applied(PaletteGroups::runs(colors), colors);
    ASSERT_EQ(result.size(), 3);
    EXPECT_EQ(result[2].hex, u"#ABCDEF"_s);
}

// Random palettes with unique ids: reading the runs and writing them back gives the palette
// as it was, every field included, as long as no label is stale.
TEST(PaletteGroupsApplied, RoundTripOfRandomPalettes) {
    std::mt19937 random(2024);
    const QString labels[] = {u""_s, u"Brand"_s, u"Neutrals"_s, u"x|y:z"_s};
    for (int round = 0; round < 300; ++round) {
        QList<ColorItem> colors;
        const int count = int(random() % 9);
        for (int i = 0; i < count; ++i) {
            ColorItem color = ColorItem::make(QString::number(i), u"#112233"_s, random() % 2);
            color.isLocked = random() % 3 == 0;
            color.dividerBefore = random() % 3 == 0;
            if (color.dividerBefore)
                color.dividerLabel = labels[random() % 4];
            colors.append(color);
        }
        const QList<ColorItem> result = PaletteGroups::applied(PaletteGroups::runs(colors), colors);
        ASSERT_EQ(result.size(), colors.size());
        for (qsizetype i = 0; i < colors.size(); ++i) {
            EXPECT_EQ(result[i], colors[i]);
            EXPECT_EQ(result[i].isAutoNamed, colors[i].isAutoNamed);
            EXPECT_EQ(result[i].isLocked, colors[i].isLocked);
            EXPECT_EQ(result[i].dividerBefore, colors[i].dividerBefore);
            EXPECT_EQ(result[i].dividerLabel, colors[i].dividerLabel);
        }
        // A stale label is cleared on the way, which the content hash never saw anyway.
        if (!colors.isEmpty()) {
            QList<ColorItem> stale = colors;
            stale[random() % count].dividerLabel += u"old"_s;
            EXPECT_EQ(computeContentHash(u"P"_s,
                                         PaletteGroups::applied(PaletteGroups::runs(stale), stale)),
                      computeContentHash(u"P"_s, stale));
        }
    }
}

// Whatever sequence of moves and removals, with indexes in range or not, the written palette
// holds exactly the colours it had.
TEST(PaletteGroupsApplied, RandomEditsLoseNothing) {
    std::mt19937 random(7);
    const QList<ColorItem> colors = colorsFrom(u"a b One|c d |e Two|f g"_s);
    for (int round = 0; round < 300; ++round) {
        QList<PaletteGroups::Run> runs = PaletteGroups::runs(colors);
        for (int step = 0; step < 6; ++step) {
            const qsizetype index = qsizetype(random() % 8) - 2;
            if (random() % 3 == 0) {
                runs = PaletteGroups::removeGroup(index, runs);
                continue;
            }
            const QUuid id = colors[random() % colors.size()].id;
            std::optional<QUuid> before;
            if (random() % 2)
                before = colors[random() % colors.size()].id;
            runs = PaletteGroups::movedColor(id, index, before, runs);
        }
        const QList<ColorItem> result = PaletteGroups::applied(runs, colors);
        QStringList expected, found;
        for (const ColorItem& color : colors)
            expected << color.name;
        for (const ColorItem& color : result)
            found << color.name;
        found.sort();
        ASSERT_EQ(found, expected) << text(runsText(runs));
        // Written runs are read back in normal form: no empty group survives.
        const QList<PaletteGroups::Run> reread = PaletteGroups::runs(result);
        for (qsizetype r = 1; r < reread.size(); ++r)
            EXPECT_FALSE(reread[r].ids.isEmpty());
    }
}

TEST(PaletteGroupsOverflow, SectionsForTheHiddenColours) {
    const struct {
        QString layout;
        qsizetype firstHidden;
        QStringList sections; // title: hidden / all
    } cases[] = {
        {u""_s, 0, {}},
        {u"a b c"_s, 3, {}},
        {u"a b c"_s, 9, {}},
        {u"a b c"_s, 1, {u"Not in a group: b c / a b c"_s}},
        {u"a b c"_s, -4, {u"Not in a group: a b c / a b c"_s}},
        {u"a b Brand|c d"_s, 3, {u"Brand \u2014 continued: d / c d"_s}},
        {u"a b Brand|c d"_s, 2, {u"Brand: c d / c d"_s}},
        {u"a |b c"_s, 2, {u"Unnamed group \u2014 continued: c / b c"_s}},
        {u"a |b c"_s, 1, {u"Unnamed group: b c / b c"_s}},
        {u"One|a b"_s, 0, {u"One: a b / a b"_s}},
        {u"a b One|c Two|d e"_s,
         1,
         {u"Not in a group: b / a b"_s, u"One: c / c"_s, u"Two: d e / d e"_s}},
    };
    for (const auto& c : cases) {
        QStringList found;
        for (const PaletteGroups::OverflowSection& section :
             PaletteGroups::overflowSections(colorsFrom(c.layout), c.firstHidden))
            found << section.title + u": "_s + namesOf(section.ids) + u" / "_s +
                         namesOf(section.allIDs);
        EXPECT_EQ(found, c.sections) << text(c.layout) << " from " << c.firstHidden;
    }
}

TEST(PaletteGroupsRemove, MovesTheGroupsColoursToRunZero) {
    const struct {
        QString runs;
        qsizetype index;
        QString expected;
    } cases[] = {
        {u"[a] One[b c] Two[d]"_s, 1, u"[a b c] Two[d]"_s},
        {u"[a] One[b c] Two[d]"_s, 2, u"[a d] One[b c]"_s},
        {u"[a] One[b]"_s, 0, u"[a] One[b]"_s},
        {u"[a] One[b]"_s, -1, u"[a] One[b]"_s},
        {u"[a] One[b]"_s, 2, u"[a] One[b]"_s},
        {u""_s, 0, u""_s},
        {u""_s, 1, u""_s},
    };
    for (const auto& c : cases)
        EXPECT_EQ(text(runsText(PaletteGroups::removeGroup(c.index, runsFrom(c.runs)))),
                  text(c.expected))
            << text(c.runs) << " remove " << c.index;
}

TEST(PaletteGroupsMove, PutsTheColourIntoTheTarget) {
    const struct {
        QString runs;
        QString id;
        qsizetype target;
        std::optional<QString> before;
        QString expected;
    } cases[] = {
        {u"[a b] One[c]"_s, u"a"_s, 1, std::nullopt, u"[b] One[c a]"_s},
        {u"[a b] One[c]"_s, u"a"_s, 1, u"c"_s, u"[b] One[a c]"_s},
        {u"[a b] One[c]"_s, u"a"_s, 1, u"a"_s, u"[b] One[c a]"_s},
        {u"[a b] One[c]"_s, u"a"_s, 1, u"b"_s, u"[b] One[c a]"_s},
        {u"[a b c]"_s, u"a"_s, 0, u"c"_s, u"[b a c]"_s},
        {u"[a] One[b c]"_s, u"c"_s, 0, std::nullopt, u"[a c] One[b]"_s},
        {u"[a b] One[c]"_s, u"a"_s, -1, std::nullopt, u"[b] One[c]"_s},
        {u"[a b] One[c]"_s, u"a"_s, 2, u"c"_s, u"[b] One[c]"_s},
        {u"[a] One[c]"_s, u"x"_s, 1, std::nullopt, u"[a] One[c x]"_s},
        {u"[a] One[a c]"_s, u"a"_s, 1, u"c"_s, u"[] One[a c]"_s},
    };
    for (const auto& c : cases) {
        const std::optional<QUuid> before =
            c.before ? std::optional<QUuid>(idFor(*c.before)) : std::nullopt;
        EXPECT_EQ(text(runsText(
                      PaletteGroups::movedColor(idFor(c.id), c.target, before, runsFrom(c.runs)))),
                  text(c.expected))
            << text(c.runs) << " move " << text(c.id) << " to " << c.target;
    }
}

TEST(PaletteGroupsMove, TargetOutOfRangeReturnsTheColourToRunZero) {
    const QList<ColorItem> colors = colorsFrom(u"a b One|c d"_s);
    for (const qsizetype target : {qsizetype(-1), qsizetype(2), qsizetype(40)}) {
        const QList<PaletteGroups::Run> moved = PaletteGroups::movedColor(
            idFor(u"c"_s), target, std::nullopt, PaletteGroups::runs(colors));
        EXPECT_EQ(text(layoutOf(PaletteGroups::applied(moved, colors))), "a b c One|d") << target;
    }
}

} // namespace
} // namespace hueshelf
