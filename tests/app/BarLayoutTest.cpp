#include "app/BarLayout.h"

#include "app/BarDropHandler.h"
#include "app/BarEyedropper.h"
#include "app/PopoverPlacement.h"
#include "app/ShakeMotion.h"
#include "app/SpringMotion.h"
#include "app/SwatchAppearance.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;

// 6 points a character, 7 in medium weight, plus a fraction that must be rounded up.
double fixedWidth(const QString& text, bool medium) {
    return text.size() * (medium ? 7.0 : 6.0) + 0.25;
}

TEST(BarLayout, WidthFollowsTheNameTheCountAndSync) {
    const int brand = 8 * 7 + 1 + 18; // "HueShelf", rounded up
    const int fixedTail = 1 + 237 + 1 + 80;
    struct Case {
        QString name;
        int colors;
        bool sync;
        int expected;
    };
    // A 25-character name measures 150.25 → 151 + 2 = 153; 26 → 159; 27 → 165 (over 160).
    const QString name25(25, u'x'), name26(26, u'x'), name27(27, u'x');
    const Case cases[] = {
        {name25, 0, false, 24 + 0 + 34 + brand + 153 + 75 + fixedTail},
        {name25, 1, false, 24 + 0 + 28 + 34 + brand + 153 + 75 + fixedTail},
        {name25, 6, false, 24 + 0 + 6 * 28 + 5 * 6 + 34 + brand + 153 + 75 + fixedTail},
        {name25, 7, false, 24 + 34 + 6 * 28 + 5 * 6 + 34 + brand + 153 + 75 + fixedTail},
        {name25, 70, true, 54 + 34 + 6 * 28 + 5 * 6 + 34 + brand + 153 + 75 + fixedTail},
        {name26, 3, false, 24 + 3 * 28 + 2 * 6 + 34 + brand + 159 + 75 + fixedTail},
        {name27, 3, false, 24 + 3 * 28 + 2 * 6 + 34 + brand + 235 + fixedTail},
        {QString(400, u'x'), 3, false, 24 + 3 * 28 + 2 * 6 + 34 + brand + 235 + fixedTail},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name.size() * 100 + c.colors);
        EXPECT_EQ(BarLayout::barWidth(c.name, c.colors, c.sync, fixedWidth), c.expected);
    }
    EXPECT_EQ(BarLayout::chipTooltip(name26, fixedWidth), u"Switch palette"_s);
    // A name that takes exactly the chip's 160 points (158 + 2) still fits.
    const auto exactly158 = [](const QString&, bool medium) { return medium ? 0.0 : 158.0; };
    EXPECT_EQ(BarLayout::chipTooltip(u"Fits"_s, exactly158), u"Switch palette"_s);
    EXPECT_EQ(BarLayout::chipTooltip(name27, fixedWidth), name27 + u". Switch palette"_s);
    EXPECT_EQ(BarLayout::chipAccessibleLabel(u"Brand"_s),
              u"Palette: Brand. Switch or make a palette"_s);
}

TEST(BarLayout, CountsLabelsAndTheOverflowList) {
    EXPECT_EQ(BarLayout::overflowAccessibleLabel(1), u"1 more color"_s);
    EXPECT_EQ(BarLayout::overflowAccessibleLabel(12), u"12 more colors"_s);
    EXPECT_EQ(BarLayout::lockLook(false).symbol, u"lock.open"_s);
    EXPECT_FALSE(BarLayout::lockLook(false).backdrop.isValid());
    const BarLayout::LockLook locked = BarLayout::lockLook(true);
    EXPECT_EQ(locked.symbol, u"lock.fill"_s);
    EXPECT_EQ(locked.backdrop.rgb(), locked.tint.rgb());
    EXPECT_NEAR(locked.backdrop.alphaF(), 0.12, 0.005);
    EXPECT_EQ(BarLayout::minimizeLabel(std::nullopt), u"Minimize to the menu bar"_s);
    EXPECT_EQ(BarLayout::minimizeLabel(u"Ctrl+Shift+B"_s),
              u"Minimize to the menu bar (Ctrl+Shift+B)"_s);

    auto section = [](int ids) {
        PaletteGroups::OverflowSection s;
        for (int i = 0; i < ids; ++i)
            s.ids.append(QUuid::createUuid());
        return s;
    };
    const std::pair<QList<PaletteGroups::OverflowSection>, int> columns[] = {
        {{}, 2}, {{section(1)}, 2}, {{section(1), section(4)}, 4}, {{section(9)}, 6}};
    for (const auto& [sections, expected] : columns)
        EXPECT_EQ(BarLayout::overflowColumns(sections), expected);
    EXPECT_EQ(BarLayout::overflowPopoverWidth(2), 2 * 40 + 8 + 24);
    EXPECT_EQ(BarLayout::overflowPopoverWidth(6), 6 * 40 + 5 * 8 + 24);
}

// The button's short labels; the card's words are the card's test.
TEST(BarLayout, SyncButtonLabels) {
    using Kind = SyncStatus::Kind;
    const std::pair<Kind, QString> rows[] = {
        {Kind::disabled, u"Sync disabled"_s},
        {Kind::syncing, u"Syncing..."_s},
        {Kind::synced, u"Synced - Click to sync now"_s},
        {Kind::offline, u"Offline - Click to retry"_s},
        {Kind::error, u"Sync error - Click to retry"_s},
    };
    for (const auto& [kind, label] : rows)
        EXPECT_EQ(BarLayout::syncLabel(kind), label);
}

TEST(PopoverPlacement, UnderTheAnchorWhereThereIsRoomElseOverItInsideTheScreen) {
    const QRect screen(0, 0, 1000, 800);
    const QSize size(200, 100);
    const std::tuple<QRect, std::optional<QRect>, QPoint> cases[] = {
        {{400, 100, 100, 40}, screen, {349, 148}},      // centred, 8 under
        {{400, 652, 100, 40}, screen, {349, 700}},      // ends exactly at the bottom
        {{400, 653, 100, 40}, screen, {349, 545}},      // one short: over, 8 above
        {{0, 100, 40, 40}, screen, {0, 148}},           // held at the left edge
        {{960, 100, 40, 40}, screen, {800, 148}},       // and at the right
        {{960, 100, 40, 40}, std::nullopt, {879, 148}}, // no screen: as it stands
    };
    for (const auto& [anchor, area, expected] : cases)
        EXPECT_EQ(PopoverPlacement::topLeft(anchor, size, area), expected);
}

TEST(BarDropHandler, ClassifiesByTheLowerCasedExtension) {
    using Kind = BarDropHandler::Kind;
    const std::pair<QString, Kind> cases[] = {
        {u"/a/PHOTO.JPG"_s, Kind::image},
        {u"/a/b.heif"_s, Kind::image},
        {u"/a/b.Tif"_s, Kind::image},
        {u"/a/Brand.HueShelf"_s, Kind::paletteFile},
        {u"/a/b.hueshelf.txt"_s, Kind::neither},
        {u"/a/hueshelf"_s, Kind::neither},
        {u"/a.png/readme"_s, Kind::neither},
        {u"/a/b.svg"_s, Kind::neither},
    };
    for (const auto& [path, kind] : cases) {
        SCOPED_TRACE(path.toStdString());
        EXPECT_EQ(BarDropHandler::classify(QUrl::fromLocalFile(path)), kind);
    }
}

TEST(BarEyedropper, ComponentsBecomeACodeRoundedHalfAwayFromZero) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    const std::pair<SampledColor, std::optional<QString>> cases[] = {
        {{0, 0.5, 1}, u"#0080FF"_s},
        {{0.25, 0.75, 0.002}, u"#40BF01"_s}, // 63.75, 191.25, 0.51
        {{-0.1, 1.2, 0.2}, u"#00FF33"_s},    // a wide-gamut pick takes the nearest code
        {{nan, 0, 0}, std::nullopt},
        {{0, inf, 0}, std::nullopt},
        {{0, 0, 1e300}, std::nullopt},
    };
    for (const auto& [color, expected] : cases)
        EXPECT_EQ(BarEyedropper::hexFromComponents(color), expected);
}

TEST(SwatchAppearance, StatesAndReducedMotion) {
    const SwatchState hovered{.isHovered = true};
    EXPECT_DOUBLE_EQ(SwatchAppearance::of(hovered, false).scale, 1.02);
    EXPECT_DOUBLE_EQ(SwatchAppearance::of(hovered, true).scale, 1.0);
    EXPECT_DOUBLE_EQ(SwatchAppearance::of({.isHovered = true, .isBeingDragged = true}, false).scale,
                     1.0);
    const SwatchAppearance target = SwatchAppearance::of({.isDropTarget = true}, true);
    EXPECT_DOUBLE_EQ(target.scale, 1.0);
    EXPECT_TRUE(target.dropRing);
    EXPECT_FALSE(target.animates);
    const std::tuple<double, double, double> fades[] = {
        {0.0, 1.0, 1.0}, {0.5, 0.675, 0.925}, {1.0, 0.35, 0.85}};
    for (const auto& [dim, opacity, saturation] : fades) {
        EXPECT_DOUBLE_EQ(SwatchAppearance::fadeAt(dim).opacity, opacity) << dim;
        EXPECT_DOUBLE_EQ(SwatchAppearance::fadeAt(dim).saturation, saturation) << dim;
    }
    const SwatchAppearance emphasized =
        SwatchAppearance::of({.isEmphasized = true, .isLocked = true}, false);
    EXPECT_DOUBLE_EQ(emphasized.scale, 1.1);
    EXPECT_TRUE(emphasized.shadow && emphasized.lockBadge && !emphasized.checkMark);
}

// The emphasis moves on its spring: no overshoot to speak of at a damping fraction of 0.82
// (e^(−ζπ/√(1−ζ²)) ≈ 1.1%), at rest within a thousandth of the way by the settle time, and the
// easing ends exactly on the target. Other scale changes ease out over 0.15 s.
TEST(SpringMotion, TheEmphasisSpringSettlesWithASlightOvershoot) {
    using namespace SpringMotion;
    const double settle = settleTime(groupEmphasis);
    EXPECT_NEAR(settle, 0.377, 0.001);
    double peak = 0;
    for (double t = 0; t <= 2 * settle; t += 0.001) {
        peak = std::max(peak, progress(groupEmphasis, t));
        if (t >= settle) {
            EXPECT_NEAR(progress(groupEmphasis, t), 1.0, 0.001) << t;
        }
    }
    EXPECT_NEAR(peak, 1.0111, 0.0005);
    EXPECT_EQ(progress(groupEmphasis, 0), 0.0);
    EXPECT_EQ(progress(groupEmphasis, -1), 0.0);
    EXPECT_EQ(groupEmphasisEasing(1.0), 1.0);
    EXPECT_DOUBLE_EQ(groupEmphasisEasing(0.25), progress(groupEmphasis, 0.25 * settle));

    // Critical damping never passes the target and settles too.
    const Spring critical{0.3, 1.0};
    for (double t = 0; t <= 1; t += 0.01)
        EXPECT_LE(progress(critical, t), 1.0) << t;
    EXPECT_NEAR(progress(critical, settleTime(critical)), 1.0, 0.001);

    const SwatchTransition emphasis = SwatchAppearance::scaleTransition(true);
    EXPECT_EQ(emphasis.durationMs, 377);
    EXPECT_DOUBLE_EQ(emphasis.curve.valueForProgress(0.25), groupEmphasisEasing(0.25));
    const SwatchTransition hover = SwatchAppearance::scaleTransition(false);
    EXPECT_EQ(hover.durationMs, 150);
    EXPECT_EQ(hover.curve.type(), QEasingCurve::OutCubic);
    EXPECT_EQ(SwatchAppearance::dimTransition().durationMs, 140);
}

TEST(ShakeMotion, KicksLeftAndSettles) {
    EXPECT_DOUBLE_EQ(ShakeMotion::offset(0), -8.0);
    bool swungRight = false;
    for (double t = 0; t < ShakeMotion::duration; t += 0.005)
        swungRight = swungRight || ShakeMotion::offset(t) > 0;
    EXPECT_TRUE(swungRight); // underdamped: it overshoots
    EXPECT_LT(std::abs(ShakeMotion::offset(ShakeMotion::duration)), 0.1);
}

} // namespace
} // namespace hueshelf::app
