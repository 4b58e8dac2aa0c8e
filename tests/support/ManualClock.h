#pragma once

#include "util/Clock.h"

namespace hueshelf::testing {

class ManualClock final : public Clock {
public:
    explicit ManualClock(double startMs = 1'700'000'000'000.0) : m_now(startMs) {}
    double nowMs() const override { return m_now; }
    void setNowMs(double ms) { m_now = ms; }
    void advanceMs(double ms) { m_now += ms; }

private:
    double m_now;
};

} // namespace hueshelf::testing
