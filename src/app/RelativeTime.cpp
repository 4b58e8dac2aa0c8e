#include "app/RelativeTime.h"

#include <algorithm>
#include <cmath>
#include <optional>

using namespace Qt::StringLiterals;

namespace hueshelf::app::RelativeTime {

namespace {

enum class Unit { minute, hour, day, week, month, year };

struct Amount {
    qint64 count = 0;
    Unit unit = Unit::minute;
};

constexpr qint64 kMinute = 60;
constexpr qint64 kHour = 60 * kMinute;
constexpr qint64 kDay = 24 * kHour;

// None for less than a minute.
std::optional<Amount> amountBetween(double thenMs, double nowMs) {
    const double elapsedMs = nowMs - thenMs;
    // NaN and the future both read as "now".
    if (!(elapsedMs > 0.0))
        return std::nullopt;
    const auto seconds = static_cast<qint64>(std::min(std::floor(elapsedMs / 1000.0), 1e15));
    if (seconds < kMinute)
        return std::nullopt;
    if (seconds < kHour)
        return Amount{seconds / kMinute, Unit::minute};
    if (seconds < kDay)
        return Amount{seconds / kHour, Unit::hour};
    const qint64 days = seconds / kDay;
    if (days < 7)
        return Amount{days, Unit::day};
    if (days < 30)
        return Amount{days / 7, Unit::week};
    if (days < 365)
        return Amount{std::min<qint64>(days / 30, 11), Unit::month};
    return Amount{days / 365, Unit::year};
}

QString unitWord(Unit unit, bool plural) {
    QString word;
    switch (unit) {
    case Unit::minute:
        word = u"minute"_s;
        break;
    case Unit::hour:
        word = u"hour"_s;
        break;
    case Unit::day:
        word = u"day"_s;
        break;
    case Unit::week:
        word = u"week"_s;
        break;
    case Unit::month:
        word = u"month"_s;
        break;
    case Unit::year:
        word = u"year"_s;
        break;
    }
    return plural ? word + u's' : word;
}

QString counted(const Amount& amount) {
    return QString::number(amount.count) + u' ' + unitWord(amount.unit, amount.count != 1);
}

} // namespace

QString ago(double thenMs, double nowMs) {
    const std::optional<Amount> amount = amountBetween(thenMs, nowMs);
    if (!amount)
        return u"just now"_s;
    // A single calendar-sized unit has its own name; a single minute or hour doesn't.
    if (amount->count == 1) {
        switch (amount->unit) {
        case Unit::day:
            return u"yesterday"_s;
        case Unit::week:
        case Unit::month:
        case Unit::year:
            return u"last "_s + unitWord(amount->unit, false);
        case Unit::minute:
        case Unit::hour:
            break;
        }
    }
    return counted(*amount) + u" ago"_s;
}

QString span(double thenMs, double nowMs) {
    const std::optional<Amount> amount = amountBetween(thenMs, nowMs);
    return amount ? counted(*amount) : u"less than a minute"_s;
}

} // namespace hueshelf::app::RelativeTime
