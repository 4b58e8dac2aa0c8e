#pragma once

#include <QDateTime>
#include <QString>

namespace hueshelf::cli {

// A stored time stamp (milliseconds since 1970) as people read it: ISO 8601 in UTC.
inline QString timeText(double ms) {
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(ms), Qt::UTC).toString(Qt::ISODate);
}

} // namespace hueshelf::cli
