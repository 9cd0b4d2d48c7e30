#pragma once

namespace corvane::look {

/// A cubic Bézier timing curve from (0, 0) to (1, 1) with two control points.
struct TimingCurve
{
    double x1 = 0;
    double y1 = 0;
    double x2 = 1;
    double y2 = 1;

    /// Progress at the fraction `time` of the duration, both 0 to 1.
    [[nodiscard]] double at(double time) const;

    [[nodiscard]] bool operator==(const TimingCurve &) const = default;
};

/// The standard curves.
inline constexpr TimingCurve easeInCurve{0.42, 0, 1, 1};
inline constexpr TimingCurve easeOutCurve{0, 0, 0.58, 1};
inline constexpr TimingCurve easeInOutCurve{0.42, 0, 0.58, 1};

} // namespace corvane::look
