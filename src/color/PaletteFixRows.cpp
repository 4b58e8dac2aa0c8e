#include "color/PaletteCheck.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace hueshelf::PaletteCheck {

namespace {

constexpr int kOpenRowsOnVerdict = 3;

} // namespace

QStringList mergedRowOrder(const QStringList& oldOrder, const QStringList& currentIds,
                           const QStringList& fixedIds) {
    QStringList order;
    for (const QString& id : oldOrder) {
        if (currentIds.contains(id) || fixedIds.contains(id)) {
            order.append(id);
        }
    }
    for (const QString& id : currentIds) {
        if (!order.contains(id)) {
            order.append(id);
        }
    }
    QStringList sortedFixed = fixedIds;
    std::sort(sortedFixed.begin(), sortedFixed.end());
    for (const QString& id : sortedFixed) {
        if (!order.contains(id)) {
            order.append(id);
        }
    }
    return order;
}

VerdictRows splitVerdictRows(const QStringList& ids, const QStringList& fixedIds) {
    VerdictRows rows;
    int openShown = 0;
    for (const QString& id : ids) {
        if (fixedIds.contains(id)) {
            rows.shown.append(id);
        } else if (openShown < kOpenRowsOnVerdict) {
            rows.shown.append(id);
            ++openShown;
        } else {
            ++rows.hiddenCount;
        }
    }
    return rows;
}

std::optional<QString> moreRowsText(int hiddenCount) {
    if (hiddenCount < 1) {
        return std::nullopt;
    }
    return u"and "_s + QString::number(hiddenCount) + u" more in Details"_s;
}

} // namespace hueshelf::PaletteCheck
