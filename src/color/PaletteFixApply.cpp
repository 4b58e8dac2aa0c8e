#include "color/PaletteCheck.h"

#include <QSet>

using namespace Qt::StringLiterals;

namespace hueshelf::PaletteCheck {

namespace {

struct PlannedChange {
    QUuid colorID;
    QString hex;
};

std::optional<PlannedChange> plannedChange(const Issue& issue) {
    if (isReadability(issue.kind)) {
        const std::optional<QString> target =
            ColorUtils::adjustedForContrast(issue.color.hex, issue.other.hex, 4.5);
        if (!target) {
            return std::nullopt;
        }
        return PlannedChange{issue.color.id, *target};
    }
    if (isLookAlike(issue.kind) && issue.move) {
        return PlannedChange{issue.move->colorID, issue.move->toHex};
    }
    // Near-duplicates have no fix: which of the two to keep is the designer's call.
    return std::nullopt;
}

} // namespace

QList<ColorItem> applyFix(const Issue& issue, const QList<ColorItem>& colors) {
    if (!issue.canFix) {
        return colors;
    }
    const std::optional<PlannedChange> change = plannedChange(issue);
    if (!change) {
        return colors;
    }
    for (qsizetype i = 0; i < colors.size(); ++i) {
        if (colors.at(i).id != change->colorID) {
            continue;
        }
        // The lock as it is now wins over the lock the issue saw.
        if (colors.at(i).isLocked) {
            return colors;
        }
        QList<ColorItem> result = colors;
        result[i].hex = change->hex;
        return result;
    }
    return {};
}

std::optional<QString> fixCost(const Issue& issue, const QList<ColorItem>& before,
                               const QList<ColorItem>& after) {
    const QUuid moved = issue.move ? issue.move->colorID : issue.color.id;
    QSet<QString> idsBefore;
    for (const Issue& earlier : detect(before)) {
        idsBefore.insert(earlier.id);
    }
    for (const Issue& now : detect(after)) {
        if (idsBefore.contains(now.id)) {
            continue;
        }
        const LookAlike* lookAlike = std::get_if<LookAlike>(&now.kind);
        if (!lookAlike) {
            continue;
        }
        if (now.color.id != moved && now.other.id != moved) {
            continue;
        }
        const ColorItem& partner = now.color.id == moved ? now.other : now.color;
        return u"Now the same as "_s + partner.name + u" to "_s + visionText(lookAlike->vision) +
               u'.';
    }
    return std::nullopt;
}

} // namespace hueshelf::PaletteCheck
