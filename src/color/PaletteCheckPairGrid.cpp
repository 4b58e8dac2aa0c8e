#include "color/PaletteCheck.h"

using namespace Qt::StringLiterals;

namespace hueshelf::PaletteCheck {

namespace {

constexpr double kTextRatio = 4.5;
constexpr ColorUtils::DisplayColor kGood{0.36, 0.68, 0.42, 1.0};
constexpr ColorUtils::DisplayColor kCaution{0.83, 0.64, 0.30, 1.0};

PairGridCell cellFor(const ColorItem& dark, const ColorItem& light) {
    PairGridCell cell;
    cell.dark = dark;
    cell.light = light;
    cell.ratio = pairRatio(dark.hex, light.hex);
    cell.readsWell = cell.ratio >= kTextRatio;
    cell.ratioLabel = QString::asprintf("%.1f", cell.ratio);
    cell.symbol = cell.readsWell ? u"checkmark"_s : u"exclamationmark"_s;
    cell.symbolColor = cell.readsWell ? kGood : kCaution;
    cell.accessibleText = dark.name + u" on "_s + light.name + u": "_s + cell.ratioLabel +
                          u":1 — "_s +
                          (cell.readsWell ? u"readable as text"_s : u"text needs 4.5:1"_s);
    return cell;
}

} // namespace

PairGrid pairGrid(const QList<ColorItem>& colors) {
    PairGrid grid;
    grid.darks = darkColors(colors);
    grid.lights = lightColors(colors);
    if (grid.isEmpty()) {
        grid.summary = u"Readability needs a dark color and a light one."_s;
        return grid;
    }
    for (const ColorItem& dark : std::as_const(grid.darks)) {
        for (const ColorItem& light : std::as_const(grid.lights)) {
            PairGridCell cell = cellFor(dark, light);
            grid.readingPairs += cell.readsWell ? 1 : 0;
            grid.cells.append(std::move(cell));
        }
    }
    grid.pairCount = static_cast<int>(grid.cells.size());
    grid.summary = QString::number(grid.readingPairs) + u" of "_s +
                   QString::number(grid.pairCount) + u" text-on-background pairs read well"_s;
    return grid;
}

} // namespace hueshelf::PaletteCheck
