#include "app/SyncStatusCard.h"

#include <gtest/gtest.h>

#include <optional>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;
using Kind = SyncStatus::Kind;

constexpr double kNow = 1'700'000'000'000.0;
constexpr double kSecond = 1000.0;
constexpr double kMinute = 60 * kSecond;
constexpr double kDay = 24 * 60 * kMinute;

const QColor kGood = QColor::fromRgbF(0.36f, 0.68f, 0.42f);
const QColor kCaution = QColor::fromRgbF(0.83f, 0.64f, 0.30f);
const QColor kBad = QColor::fromRgbF(0.81f, 0.42f, 0.39f);
const QColor kGrey = QColor(Qt::gray);

// Every status against every kind of last sync: the words of the status stay, only the last
// line follows the time, and a time ahead of the clock reads as no time at all.
TEST(SyncStatusCard, ContentForEveryStatusAndLastSync) {
    const struct {
        Kind kind;
        QString title;
        QColor dot;
        QString detail;
    } statuses[] = {
        {Kind::disabled, u"Sync Disabled"_s, kGrey, u"Cloud sync is turned off"_s},
        {Kind::syncing, u"Syncing..."_s, kCaution, u"Syncing changes..."_s},
        {Kind::synced, u"Synced"_s, kGood, u"All changes are up to date. Click to sync now."_s},
        {Kind::offline, u"Offline"_s, kCaution, u"Cloud folder not accessible"_s},
        {Kind::error, u"Sync Error"_s, kBad, u"There was a problem syncing. Click to retry."_s},
    };
    const struct {
        const char* name;
        std::optional<double> lastSyncMs;
        std::optional<QString> line;
    } times[] = {
        {"never synced", std::nullopt, std::nullopt},
        {"this very moment", kNow, u"Last synced less than a minute ago"_s},
        {"in the future", kNow + 5 * kMinute, u"Last synced less than a minute ago"_s},
        {"59.999 s ago", kNow - 59'999.0, u"Last synced less than a minute ago"_s},
        {"60 s ago", kNow - kMinute, u"Last synced 1 minute ago"_s},
        {"just under 3 hours ago", kNow - 179 * kMinute, u"Last synced 2 hours ago"_s},
        {"a day ago", kNow - kDay, u"Last synced 1 day ago"_s},
        {"45 days ago", kNow - 45 * kDay, u"Last synced 1 month ago"_s},
        {"at the epoch", 0.0, u"Last synced 53 years ago"_s},
    };
    for (const auto& status : statuses) {
        for (const auto& time : times) {
            const SyncStatusCard card = SyncStatusCard::make(status.kind, time.lastSyncMs, kNow);
            const SyncStatusCard expected{status.title, status.dot, status.detail, time.line};
            EXPECT_EQ(card, expected) << status.title.toStdString() << ", " << time.name << ": "
                                      << card.lastSynced.value_or(u"(none)"_s).toStdString();
        }
    }
}

} // namespace
} // namespace hueshelf::app
