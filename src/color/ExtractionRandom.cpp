#include "color/ExtractionRandom.h"

#include <QRandomGenerator>

#include <algorithm>
#include <cmath>
#include <limits>

namespace hueshelf {

ExtractionRandom::ExtractionRandom() : m_engine(QRandomGenerator::global()->generate64()) {}

std::size_t ExtractionRandom::index(std::size_t count) {
    if (count <= 1) {
        return 0;
    }
    return std::uniform_int_distribution<std::size_t>(0, count - 1)(m_engine);
}

double ExtractionRandom::upTo(double total) {
    // uniform_real_distribution leaves out its upper end; stretching the range by one step
    // takes it in.
    const double end = std::nextafter(total, std::numeric_limits<double>::max());
    return std::min(std::uniform_real_distribution<double>(0.0, end)(m_engine), total);
}

} // namespace hueshelf
