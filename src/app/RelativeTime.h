#pragma once

#include <QString>

namespace hueshelf::app {

// How long ago something happened, in words, on one ladder of units: under a minute, minutes,
// hours, days, weeks (from 7 days), months of 30 days (from 30 days, at most 11) and years of
// 365 days. Counts are rounded down, so a unit changes exactly at its boundary. A time in the
// future (another device's clock, a clock set back) counts as no time at all.
namespace RelativeTime {

// The named form for a moment: "just now", "5 minutes ago", "1 hour ago", "yesterday",
// "3 days ago", "last week", "2 weeks ago", "last month", "last year", "4 years ago".
QString ago(double thenMs, double nowMs);

// The span alone, for texts that add their own "ago": "less than a minute", "1 minute",
// "5 minutes", "1 day", "2 weeks".
QString span(double thenMs, double nowMs);

} // namespace RelativeTime
} // namespace hueshelf::app
