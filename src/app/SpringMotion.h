#pragma once

namespace hueshelf::app::SpringMotion {

// A spring in the usual parametrisation: `response` is the undamped period in seconds (stiffness
// (2π / response)² for a unit mass), `dampingFraction` the share of critical damping.
struct Spring {
    double response;
    double dampingFraction;
};

// A swatch's scale as its group's emphasis comes and goes.
inline constexpr Spring groupEmphasis{0.26, 0.82};

// The fraction of the way from start to target, `seconds` after a spring at rest was let go
// towards the target: the step response of the damped oscillator (any control-theory text,
// e.g. Ogata, "Modern Control Engineering", §5-3). Underdamped springs overshoot 1 a little;
// a fraction of 1 or more is taken as critical damping.
double progress(const Spring& spring, double seconds);

// When the swing left stays within `tolerance` of the way for good: where the envelope of the
// oscillation falls below it.
double settleTime(const Spring& spring, double tolerance = 0.001);

// `progress` over the settle time of `groupEmphasis`, as an easing curve from 0 to 1 that ends
// exactly at 1 (Qt's custom easing takes a plain function).
double groupEmphasisEasing(double fraction);

} // namespace hueshelf::app::SpringMotion
