#include "app/SpringMotion.h"

#include <cmath>
#include <numbers>

namespace hueshelf::app::SpringMotion {

double progress(const Spring& spring, double seconds) {
    if (seconds <= 0)
        return 0;
    const double omega = 2.0 * std::numbers::pi / spring.response;
    const double zeta = spring.dampingFraction;
    if (zeta >= 1.0)
        return 1.0 - std::exp(-omega * seconds) * (1.0 + omega * seconds);
    const double damped = omega * std::sqrt(1.0 - zeta * zeta);
    return 1.0 -
           std::exp(-zeta * omega * seconds) *
               (std::cos(damped * seconds) + zeta * omega / damped * std::sin(damped * seconds));
}

double settleTime(const Spring& spring, double tolerance) {
    const double omega = 2.0 * std::numbers::pi / spring.response;
    const double zeta = spring.dampingFraction;
    if (zeta >= 1.0) {
        // e^(−ωt)(1 + ωt) has no closed inverse; step to where it's small enough.
        double t = 0;
        while (std::exp(-omega * t) * (1.0 + omega * t) > tolerance)
            t += 0.001;
        return t;
    }
    // |1 − x(t)| ≤ e^(−ζωt) / √(1 − ζ²).
    return std::log(1.0 / (tolerance * std::sqrt(1.0 - zeta * zeta))) / (zeta * omega);
}

double groupEmphasisEasing(double fraction) {
    if (fraction >= 1.0)
        return 1.0;
    static const double duration = settleTime(groupEmphasis);
    return progress(groupEmphasis, fraction * duration);
}

} // namespace hueshelf::app::SpringMotion
