// Groups are runs of a flat colour list; see GroupNotation.h for the short text form.

#include "model/PaletteGroups.h"

#include "GroupNotation.h"
#include "ModelTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <random>

namespace hueshelf::testing {
namespace {

// Random palettes read into runs and written back unchanged, and after random moves and
// removals with indexes in range or not.
TEST(PaletteGroups, RandomPalettesAndEditsAreWrittenAsTheirRunsSay) {
    std::mt19937 random(2024);
    const QString labels[] = {u""_s, u"Brand"_s, u"x|y:z"_s};
    for (int round = 0; round < 300; ++round) {
        QList<ColorItem> colors;
        for (int i = 0, count = int(random() % 9); i < count; ++i) {
            ColorItem color = ColorItem::make(QString::number(i), u"#112233"_s, random() % 2);
            color.isLocked = random() % 3 == 0;
            color.dividerBefore = random() % 3 == 0;
            color.dividerLabel = color.dividerBefore ? labels[random() % 3] : QString();
            colors.append(color);
        }
        const QList<ColorItem> same = PaletteGroups::applied(PaletteGroups::runs(colors), colors);
        EXPECT_EQ(layoutOf(same), layoutOf(colors));

        QList<PaletteGroups::Run> runs = PaletteGroups::runs(colors);
        for (int step = 0; step < 6 && !colors.isEmpty(); ++step) {
            const qsizetype index = qsizetype(random() % 8) - 2;
            const QUuid id = colors[random() % colors.size()].id;
            std::optional<QUuid> before;
            if (random() % 2)
                before = colors[random() % colors.size()].id;
            runs = random() % 3 == 0 ? PaletteGroups::removeGroup(index, runs)
                                     : PaletteGroups::movedColor(id, index, before, runs);
        }
        // Written and read back: the runs as edited, colours in no run at the end of run 0 in
        // palette order, groups left without colours gone, and no colour lost.
        QList<PaletteGroups::Run> expected = runs;
        for (const ColorItem& color : colors)
            if (std::none_of(runs.begin(), runs.end(),
                             [&](const auto& run) { return run.ids.contains(color.id); }))
                expected[0].ids.append(color.id);
        for (qsizetype r = expected.size() - 1; r > 0; --r)
            if (expected[r].ids.isEmpty())
                expected.removeAt(r);
        const QList<ColorItem> result = PaletteGroups::applied(runs, colors);
        ASSERT_EQ(PaletteGroups::runs(result), expected) << round;
        ASSERT_EQ(result.size(), colors.size());
    }
}

} // namespace
} // namespace hueshelf::testing
