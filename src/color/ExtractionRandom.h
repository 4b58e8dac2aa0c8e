#pragma once

#include <cstddef>
#include <cstdint>
#include <random>

namespace hueshelf {

// The chance in colour extraction: which pixels seed the clusters and which pixel refills an
// empty one. The program seeds it afresh for every extraction; tests seed it, or script it by
// overriding the two draws, so that a run can be repeated.
class ExtractionRandom {
public:
    // Seeded from the system's random source.
    ExtractionRandom();
    explicit ExtractionRandom(std::uint64_t seed) : m_engine(seed) {}
    virtual ~ExtractionRandom() = default;

    ExtractionRandom(const ExtractionRandom&) = delete;
    ExtractionRandom& operator=(const ExtractionRandom&) = delete;

    // Uniform in 0 ..< count; count is at least 1.
    virtual std::size_t index(std::size_t count);
    // Uniform in 0 ... total, both ends included.
    virtual double upTo(double total);

private:
    std::mt19937_64 m_engine;
};

} // namespace hueshelf
