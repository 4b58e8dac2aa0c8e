#include "util/Clock.h"

#include <QDateTime>

namespace hueshelf {

double SystemClock::nowMs() const {
    // Seconds since 1970 times 1000.0, kept fractional like the rest of the data.
    return static_cast<double>(QDateTime::currentMSecsSinceEpoch());
}

SystemClock& SystemClock::instance() {
    static SystemClock clock;
    return clock;
}

} // namespace hueshelf
