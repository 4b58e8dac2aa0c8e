#include "PaletteTestSupport.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace hueshelf;
using namespace hueshelf::testing_palette;
using namespace hueshelf::PaletteCheck;
using ColorUtils::ContrastLevel;

namespace {

QList<ColorItem> lockedAt(QList<ColorItem> colors, std::initializer_list<int> indices) {
    for (const int i : indices)
        colors[i].isLocked = true;
    return colors;
}

// Detection, moves and fixes of unlocked palettes are compared with an independent model
// through the command line. Here locks, issue ids across edits, codes that can't be read, and
// what the popover makes of an issue.
TEST(PaletteCheck, LocksCopiesUnreadableCodesAndIdsThatOutliveEdits) {
    QList<ColorItem> colors = lockedAt(palette(words(u"#FFFFFF nope #C7C700 #808000"_s)), {3});
    colors[2].dividerLabel = u"Text"_s;
    const std::vector<Issue> issues = detect(colors);
    QStringList ids; // upper-cased in the issue ids
    for (const int n : {1, 2, 3})
        ids << u"read-"_s + idFor(n).toString(QUuid::WithoutBraces).toUpper();
    ASSERT_EQ(idsOf(issues), ids);
    EXPECT_EQ(issues[0].text, u"C1 is hard to read on C0."_s); // unreadable counts as dark
    EXPECT_TRUE(issues[1].canFix);
    EXPECT_EQ(std::tie(issues[1].color.dividerLabel, issues[1].other.hex),
              std::tie(colors[2].dividerLabel, colors[0].hex));
    EXPECT_FALSE(issues[2].canFix);
    EXPECT_TRUE(issues[2].color.isLocked);
    for (const auto& [hex, band] :
         {std::pair{u"#999999"_s, Band::light}, {u"#666666"_s, Band::midTone}})
        EXPECT_EQ(bandOf(hex), band) << hex.toStdString(); // 0.6 and 0.4 exactly
    // The fix of a colour locked since the check: the lock as it is now wins.
    EXPECT_EQ(hexesOf(applyFix(issues[1], colors)), words(u"#FFFFFF nope #7A7A00 #808000"_s));
    EXPECT_EQ(hexesOf(applyFix(issues[1], lockedAt(colors, {2}))), hexesOf(colors));
    EXPECT_TRUE(applyFix(issues[1], colors.mid(0, 2)).isEmpty()); // the colour is gone

    colors = palette({u"#FFFFFF"_s, u"#808000"_s});
    const Issue before = detect(colors).at(0);
    colors[1].name = u"Olive"_s;
    colors[0].name = u"Paper"_s;
    colors[1].hex = u"#C7C700"_s;
    const Issue after = detect(colors).at(0);
    EXPECT_EQ(before.id, after.id);
    EXPECT_EQ(std::get<Readability>(before.kind).level, ContrastLevel::lowContrast);
    EXPECT_EQ(std::get<Readability>(after.kind).level, ContrastLevel::poor);
    EXPECT_EQ(after.text, u"Olive is hard to read on Paper."_s);
}

TEST(PaletteCheck, ALockedColourIsNeverMoved) {
    const LightnessMove other{idFor(1), u"C1"_s, u"#D25834"_s, u"#DE856A"_s, 0.13};
    const LightnessMove color{idFor(0), u"C0"_s, u"#AA7134"_s, u"#CD975D"_s, 0.15};
    const std::pair<std::initializer_list<int>, std::optional<LightnessMove>> cases[] = {
        {{}, other}, {{0}, other}, {{1}, color}, {{0, 1}, std::nullopt}};
    for (const auto& [locked, move] : cases) {
        const QList<ColorItem> colors = lockedAt(palette({u"#AA7134"_s, u"#D25834"_s}), locked);
        const Issue issue = issuesWithMoves(colors).at(0);
        EXPECT_EQ(issue.canFix, move.has_value());
        ASSERT_EQ(issue.move.has_value(), move.has_value());
        if (move) {
            EXPECT_EQ(std::tie(issue.move->colorID, issue.move->toHex),
                      std::tie(move->colorID, move->toHex));
            EXPECT_NEAR(issue.move->lightnessChange, move->lightnessChange, 1e-9);
        }
        Issue withoutMove = issue; // nothing to apply without a move
        withoutMove.move.reset();
        withoutMove.canFix = true;
        EXPECT_EQ(hexesOf(applyFix(withoutMove, colors)), hexesOf(colors));
    }
}

TEST(PaletteCheckTexts, RowsMovesNotesAndRatios) {
    EXPECT_EQ(mergedRowOrder(words(u"a b c"_s), words(u"c d b"_s), {}), words(u"b c d"_s));
    EXPECT_EQ(mergedRowOrder(words(u"a b c"_s), words(u"c"_s), words(u"a"_s)), words(u"a c"_s));
    EXPECT_EQ(mergedRowOrder(words(u"b"_s), words(u"x b"_s), words(u"q b p"_s)),
              words(u"b x p q"_s));
    const VerdictRows rows = splitVerdictRows(words(u"o1 o2 f o3 o4 o5 g"_s), words(u"f g"_s));
    EXPECT_EQ(rows.shown, words(u"o1 o2 f o3 g"_s)); // fixed rows and three open ones
    EXPECT_EQ(rows.hiddenCount, 2);

    const std::tuple<double, QString, QString> moves[] = {
        {-0.125, u"Teal is 13% darker, same hue."_s, u"Fix: darken Teal"_s}, // half away from 0
        {0.15000000000000002, u"Teal is 15% lighter, same hue."_s, u"Fix: lighten Teal"_s},
        {0.0, u"Teal is 0% lighter, same hue."_s, u"Fix: lighten Teal"_s}};
    for (const auto& [change, text, button] : moves) {
        const LightnessMove move{idFor(1), u"Teal"_s, u"#008080"_s, u"#00A0A0"_s, change};
        EXPECT_EQ(moveText(move), text);
        EXPECT_EQ(fixButtonText(move), button);
    }
    Issue issue = detect(palette({u"#AA7134"_s, u"#D25834"_s})).at(0);
    const QString seen = u"Shown as they see them. "_s;
    EXPECT_EQ(
        lookAlikeNote(issue, false),
        seen + u"Any change would cause another problem, so make one lighter or darker by hand."_s);
    issue.other.isLocked = true;
    EXPECT_EQ(lookAlikeNote(issue, false),
              seen + u"Fix won't change a locked color, so adjust one by hand."_s);
    issue.move = LightnessMove{idFor(1), u"Rust"_s, u"#D25834"_s, u"#A0401F"_s, -0.1};
    EXPECT_EQ(lookAlikeNote(issue, false), seen + u"Fix darkens Rust a little."_s);

    EXPECT_EQ(ratioText(4.5), u"4.5:1 readable"_s);
    EXPECT_EQ(ratioText(4.49), u"4.5:1 OK for headings"_s); // judged on the exact ratio
    EXPECT_EQ(checkButtonTooltip(0), u"Check — everything reads well"_s);
    EXPECT_EQ(checkButtonTooltip(2), u"Check — 2 things to fix"_s);
}

TEST(PaletteCheck, NamedByRoleLeavesLockedAndUnreadableColoursAlone) {
    QList<ColorItem> colors = lockedAt(palette(words(u"#3366FF #FF3366 #FAFAFA nope"_s)), {0});
    for (ColorItem& color : colors)
        color.isAutoNamed = true;
    // The locked colour keeps its name yet holds "Primary", so the next vivid one is "Accent".
    QStringList names;
    for (const ColorItem& color : namedByRole(colors))
        names << color.name + (color.isAutoNamed ? u"*"_s : u""_s) + u':' + color.hex;
    EXPECT_EQ(names, words(u"C0*:#3366FF Accent:#FF3366 Background:#FAFAFA C3*:nope"_s));
}

} // namespace
