#include "util/Clock.h"

#include <chrono>

namespace hueshelf {

double SystemClock::nowMs() const {
    // Seconds since 1970 times 1000.0, fraction kept: two saves within one millisecond still get
    // distinct stamps, so "which is later" keeps its meaning in every merge.
    using namespace std::chrono;
    const auto since = system_clock::now().time_since_epoch();
    return static_cast<double>(duration_cast<microseconds>(since).count()) / 1000.0;
}

SystemClock& SystemClock::instance() {
    static SystemClock clock;
    return clock;
}

} // namespace hueshelf
