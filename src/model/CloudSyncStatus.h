#pragma once

namespace hueshelf {

// What the bar's sync indicator shows: synced, a pass under way, or the time of the last
// failure.
struct CloudSyncStatus {
    enum class State { synced, syncing, failed };

    State state = State::synced;
    double failedAtMs = 0.0; // meaningful only while failed

    static CloudSyncStatus synced() { return {}; }
    static CloudSyncStatus syncing() { return {State::syncing, 0.0}; }
    static CloudSyncStatus failed(double atMs) { return {State::failed, atMs}; }

    friend bool operator==(const CloudSyncStatus&, const CloudSyncStatus&) = default;
};

} // namespace hueshelf
