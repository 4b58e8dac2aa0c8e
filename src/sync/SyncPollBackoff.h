#pragma once

#include <optional>

namespace hueshelf {

// How long the timers leave a missing sync folder alone: after three failed checks in a row
// they stop looking for five minutes, and each further failure pushes that moment on. Only a
// successful check clears it.
struct SyncPollBackoff {
    static constexpr int threshold = 3;
    static constexpr double lengthSeconds = 300.0;

    int consecutiveFailures = 0;
    std::optional<double> backoffUntil; // ms since 1970

    // Whether the timers may look at the folder at `nowMs`: no back-off, or it has run out.
    bool allowsCheckAt(double nowMs) const { return !backoffUntil || nowMs >= *backoffUntil; }

    void recordFailure(double nowMs) {
        ++consecutiveFailures;
        if (consecutiveFailures >= threshold)
            backoffUntil = nowMs + lengthSeconds * 1000.0;
    }
    void recordSuccess() {
        consecutiveFailures = 0;
        backoffUntil.reset();
    }

    friend bool operator==(const SyncPollBackoff&, const SyncPollBackoff&) = default;
};

} // namespace hueshelf
