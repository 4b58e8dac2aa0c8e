#include "app/SyncStatusCard.h"

#include "app/BarLayout.h"
#include "app/RelativeTime.h"
#include "app/SyncStatusColor.h"

namespace hueshelf::app {

using namespace Qt::StringLiterals;

SyncStatusCard SyncStatusCard::make(SyncStatus::Kind kind, std::optional<double> lastSyncMs,
                                    double nowMs) {
    SyncStatusCard card{BarLayout::syncTitle(kind), syncStatusColor(kind),
                        BarLayout::syncDetail(kind), std::nullopt};
    if (lastSyncMs)
        card.lastSynced = u"Last synced "_s + RelativeTime::span(*lastSyncMs, nowMs) + u" ago"_s;
    return card;
}

} // namespace hueshelf::app
