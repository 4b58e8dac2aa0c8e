#pragma once

#include <cmath>
#include <numbers>

namespace hueshelf::app::ShakeMotion {

// The refusal's shake: the bar is kicked 8 points to the left and a damped spring (response
// 0.15 s, damping fraction 0.3) brings it back. Response is the undamped period, as in the
// usual spring parametrisation: stiffness (2π / response)², underdamped below fraction 1.
inline constexpr double amplitude = -8.0;
inline constexpr double response = 0.15;
inline constexpr double dampingFraction = 0.3;
// By then the swing is below a tenth of a point.
inline constexpr double duration = 0.6;

// The offset in points, `seconds` after the kick.
inline double offset(double seconds) {
    const double omega = 2.0 * std::numbers::pi / response;
    const double damped = omega * std::sqrt(1.0 - dampingFraction * dampingFraction);
    return amplitude * std::exp(-dampingFraction * omega * seconds) * std::cos(damped * seconds);
}

} // namespace hueshelf::app::ShakeMotion
