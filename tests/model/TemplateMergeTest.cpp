// The three-way merge of whole palettes, by id, that both the save and the external check use.

#include "model/TemplateMerge.h"

#include "ModelTestSupport.h"
#include "model/ContentHash.h"

#include <gtest/gtest.h>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

constexpr double kBaseStamp = 5'000.0;

// One palette on both sides. Revisions tell the sides apart: they take no part in any rule.
TEST(MergeTemplates, KeepsTheRightSideOfOnePalette) {
    ColorTemplate base = makePalette(
        u"Brand"_s, {makeColor(u"Ink"_s, u"#101010"_s), makeColor(u"Key"_s, u"#3B8077"_s)});
    using Edit = void (*)(ColorTemplate&);
    const Edit none = [](ColorTemplate&) {};
    const Edit rename = [](ColorTemplate& p) { // as a save leaves it
        p.name += u'!';
        p.contentHash = computeContentHash(p.name, p.colors);
    };
    // Not trusted: the hash is always computed afresh from the content.
    const Edit foreignHash = [](ColorTemplate& p) { p.contentHash = u"0123456789abcdef"_s; };
    const Edit unsaved = [](ColorTemplate& p) { p.colors[0].hex = u"#202020"_s; };
    const Edit paletteLock = [](ColorTemplate& p) { p.isLocked = true; };
    const Edit colourLock = [](ColorTemplate& p) { p.colors[0].isLocked = true; };
    const Edit staleLabel = [](ColorTemplate& p) { p.colors[1].dividerLabel = u"Ghost"_s; };
    const struct {
        const char* label;
        bool inBase;
        Edit local, incoming;
        double localAt, incomingAt;
        bool keepsIncoming;
    } rows[] = {
        {"new on both sides, a tie", false, rename, rename, 150, 150, true},
        {"new on both sides, local later", false, none, rename, 300, 200, false},
        {"changed only here", true, rename, none, 100, 900, false},
        {"changed only there, older", true, none, rename, 900, 100, true},
        {"changed on both sides, a tie", true, unsaved, rename, 500, 500, true},
        {"changed on both sides, local later", true, rename, rename, 900, 100, false},
        {"a foreign hash on an unchanged palette", true, rename, foreignHash, 100, 900, false},
        {"new content under the old hash", true, none, unsaved, 900, 100, true},
        {"an edit here not yet saved", true, unsaved, rename, 900, 100, false},
        {"the palette lock is no change", true, none, paletteLock, 100, 900, false},
        {"a colour lock is one", true, none, colourLock, 900, 1, true},
        {"a label under no divider is none", true, none, staleLabel, 100, 900, false}};
    for (const auto& row : rows) {
        ColorTemplate local = base;
        local.revision = 10;
        local.updatedAt = row.localAt;
        row.local(local);
        ColorTemplate incoming = base;
        incoming.revision = 20;
        incoming.updatedAt = row.incomingAt;
        row.incoming(incoming);
        const QList<ColorTemplate> merged =
            mergeTemplates(row.inBase ? QList{base} : QList<ColorTemplate>{}, {local}, {incoming},
                           kBaseStamp, kBaseStamp + 1.0);
        ASSERT_EQ(merged.size(), 1) << row.label;
        EXPECT_EQ(merged.at(0).revision, row.keepsIncoming ? 20 : 10) << row.label;
        EXPECT_EQ(merged.at(0).colors, (row.keepsIncoming ? incoming : local).colors);
    }
}

// Presence and order over a pool of palettes P0..P5, and the stamp that allows a merge at all.
TEST(MergeTemplates, DeletionsThereComeBackDeletionsHereStayAndOrderIsLocalFirst) {
    QList<ColorTemplate> pool;
    for (int i = 0; i < 6; ++i)
        pool.append(makePalette(u"P%1"_s.arg(i), {}));
    const auto pick = [&](const QList<int>& indexes) {
        QList<ColorTemplate> list;
        for (int i : indexes)
            list.append(pool.at(i));
        return list;
    };
    const struct {
        QList<int> base, local, incoming, expected;
        double incomingStamp;
    } rows[] = {
        {{0, 1}, {0, 1}, {0}, {0, 1}, 6000},                         // deleted there: not honoured
        {{0, 1}, {0}, {0, 1}, {0}, 6000},                            // deleted here: stays deleted
        {{0, 1}, {}, {0, 1}, {}, 6000},                              // everything deleted here
        {{}, {}, {0, 1}, {0, 1}, 6000},                              // new there: appended
        {{0, 1, 2}, {2, 0, 5}, {4, 1, 3, 0}, {2, 0, 5, 4, 3}, 6000}, // local order, then theirs
        {{0}, {0}, {1, 1}, {0, 1}, 6000},                            // a twin id is added once
        {{0}, {0}, {0, 1}, {0}, kBaseStamp},                         // a stamp no newer: no merge
        {{0}, {0}, {0, 1}, {0, 1}, kBaseStamp + 0.001}};
    for (const auto& row : rows)
        EXPECT_EQ(idsOf(mergeTemplates(pick(row.base), pick(row.local), pick(row.incoming),
                                       kBaseStamp, row.incomingStamp)),
                  idsOf(pick(row.expected)))
            << row.incomingStamp << " " << row.incoming.size();
}

} // namespace
} // namespace hueshelf::testing
