#include "app/SyncStatusCard.h"

#include <gtest/gtest.h>

#include <optional>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;
using Kind = SyncStatus::Kind;

constexpr double kNow = 1'700'000'000'000.0;

// Every status, each against another kind of last sync: the words and the dot belong to the
// status, only the last line follows the time, and a time ahead of the clock reads as no time
// at all. The spans themselves are the relative-time rule's.
TEST(SyncStatusCard, ContentForEveryStatusAndLastSync) {
    const QColor caution = QColor::fromRgbF(0.83f, 0.64f, 0.30f);
    const struct {
        Kind kind;
        QString title;
        QColor dot;
        QString detail;
        std::optional<double> lastSyncMs;
        std::optional<QString> line;
    } cases[] = {
        {Kind::disabled, u"Sync Disabled"_s, QColor(Qt::gray), u"Cloud sync is turned off"_s,
         std::nullopt, std::nullopt},
        {Kind::syncing, u"Syncing..."_s, caution, u"Syncing changes..."_s, kNow + 300'000.0,
         u"Last synced less than a minute ago"_s},
        {Kind::synced, u"Synced"_s, QColor::fromRgbF(0.36f, 0.68f, 0.42f),
         u"All changes are up to date. Click to sync now."_s, kNow - 60'000.0,
         u"Last synced 1 minute ago"_s},
        {Kind::offline, u"Offline"_s, caution, u"Cloud folder not accessible"_s,
         kNow - 179 * 60'000.0, u"Last synced 2 hours ago"_s},
        {Kind::error, u"Sync Error"_s, QColor::fromRgbF(0.81f, 0.42f, 0.39f),
         u"There was a problem syncing. Click to retry."_s, std::nullopt, std::nullopt},
    };
    for (const auto& c : cases) {
        const SyncStatusCard expected{c.title, c.dot, c.detail, c.line};
        EXPECT_EQ(SyncStatusCard::make(c.kind, c.lastSyncMs, kNow), expected)
            << c.title.toStdString();
    }
}

} // namespace
} // namespace hueshelf::app
