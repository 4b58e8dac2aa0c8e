#include "app/CheckRowBuilder.h"

#include "app/CheckPopoverTexts.h"

#include <variant>

namespace hueshelf::app::CheckRowBuilder {

namespace {

const ColorItem& currentOr(const ColorItem& copy, const QList<ColorItem>& currentColors) {
    for (const ColorItem& color : currentColors) {
        if (color.id == copy.id) {
            return color;
        }
    }
    return copy;
}

// Look-alike pairs are drawn as the reader who confuses them sees them.
CheckSwatch swatchFor(const ColorItem& color, const PaletteCheck::Issue& issue,
                      const QString& seenSuffix) {
    CheckSwatch swatch{color.id, color.name, color.hex, color.name};
    if (const auto* lookAlike = std::get_if<PaletteCheck::LookAlike>(&issue.kind)) {
        swatch.hex = ColorVisionSimulation::simulated(color.hex, lookAlike->vision);
        swatch.label = color.name + seenSuffix;
    }
    return swatch;
}

} // namespace

CheckRow openRow(const PaletteCheck::Issue& issue, bool onDetailsPage, bool paletteLocked) {
    CheckRow row;
    row.issueId = issue.id;
    row.first = swatchFor(issue.color, issue, CheckPopoverTexts::seenAsSuffix);
    row.second = swatchFor(issue.other, issue, CheckPopoverTexts::seenAsSuffix);
    row.text = issue.text;
    row.note = PaletteCheck::rowNote(issue, onDetailsPage, paletteLocked);
    row.hasFixButton = issue.canFix;
    row.isFixEnabled = issue.canFix && !paletteLocked;
    row.fixAccessibleLabel = PaletteCheck::fixButtonText(issue.move);
    return row;
}

CheckRow settledRow(const FixRecord& record, const QList<ColorItem>& currentColors,
                    bool undoEnabled) {
    const PaletteCheck::Issue& issue = record.issue;
    const ColorItem& color = currentOr(issue.color, currentColors);
    const ColorItem& other = currentOr(issue.other, currentColors);

    CheckRow row;
    row.issueId = issue.id;
    row.isSettled = true;
    row.first = swatchFor(color, issue, CheckPopoverTexts::seenAsNowSuffix);
    row.second = swatchFor(other, issue, CheckPopoverTexts::seenAsNowSuffix);
    row.headline = PaletteCheck::settledHeadline(issue, color.name, other.name);
    if (issue.move) {
        row.detail = PaletteCheck::moveText(*issue.move);
    } else {
        row.detail = PaletteCheck::ratioChangeText(
            PaletteCheck::pairRatio(record.beforeHex, other.hex),
            PaletteCheck::pairRatio(record.afterHex, other.hex), other.name);
    }
    row.cost = record.cost;
    row.isUndoEnabled = undoEnabled;
    return row;
}

} // namespace hueshelf::app::CheckRowBuilder
