#pragma once

namespace hueshelf {

// The one source of "now" in the program: milliseconds since 1970 as a double, the unit kept in
// the store and every sync file. Tests hand in a manual clock instead.
class Clock {
public:
    virtual ~Clock() = default;
    virtual double nowMs() const = 0;
};

class SystemClock final : public Clock {
public:
    double nowMs() const override;
    static SystemClock& instance();
};

} // namespace hueshelf
