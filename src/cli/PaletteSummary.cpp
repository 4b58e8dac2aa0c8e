#include "cli/PaletteSummary.h"

using namespace Qt::StringLiterals;

namespace hueshelf::cli::PaletteSummary {

QJsonObject toJson(const ColorTemplate& palette, bool isActive) {
    return QJsonObject{
        {u"id"_s, uuidText(palette.id)},          {u"name"_s, palette.name},
        {u"colorCount"_s, palette.colors.size()}, {u"isActive"_s, isActive},
        {u"isLocked"_s, palette.isLocked},        {u"revision"_s, palette.revision},
        {u"updatedAt"_s, palette.updatedAt},
    };
}

QStringList textCells(const ColorTemplate& palette, bool isActive) {
    return {isActive ? u"*"_s : QString(), palette.name, colorCountText(palette.colors.size()),
            palette.isLocked ? u"locked"_s : QString(), uuidText(palette.id)};
}

QString colorCountText(qsizetype count) {
    return QString::number(count) + (count == 1 ? u" color"_s : u" colors"_s);
}

} // namespace hueshelf::cli::PaletteSummary
