#pragma once

namespace corvane::look {

/// A damped spring on a unit mass, described by perceptual parameters.
struct Spring
{
    /// Period of the undamped oscillation, in seconds; above 0.
    double response = 0.42;
    /// Ratio to critical damping: below 1 it overshoots, from 1 on it does not.
    double dampingFraction = 0.88;

    [[nodiscard]] bool operator==(const Spring &) const = default;
};

/// Position and velocity (units per second) of a moving value.
struct Motion
{
    double value = 0;
    double velocity = 0;
};

/// The motion `seconds` after a spring started to pull `start` towards `target`.
///
/// Closed form of x'' = -(2π/response)² (x - target) - (4π·fraction/response) x', so the result
/// does not depend on how often it is evaluated.
[[nodiscard]] Motion springMotion(const Spring &spring, const Motion &start, double target,
                                  double seconds);

/// Seconds after which the spring from `start` stays within `tolerance` of `target`.
[[nodiscard]] double springSettlingTime(const Spring &spring, const Motion &start, double target,
                                        double tolerance);

} // namespace corvane::look
