#include "look/motion/spring.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace corvane::look {

Motion springMotion(const Spring &spring, const Motion &start, double target, double seconds)
{
    const double omega = 2 * std::numbers::pi / spring.response;
    const double zeta = spring.dampingFraction;
    const double x0 = start.value - target;
    const double v0 = start.velocity;
    const double t = std::max(seconds, 0.0);

    // Closer to 1 than this, the two general formulas divide by almost zero.
    constexpr double nearlyCritical = 1e-6;
    if (std::abs(zeta - 1) < nearlyCritical) {
        const double slope = v0 + omega * x0;
        const double decay = std::exp(-omega * t);
        return {target + (x0 + slope * t) * decay, (slope - omega * (x0 + slope * t)) * decay};
    }
    if (zeta < 1) {
        const double damped = omega * std::sqrt(1 - zeta * zeta);
        const double decay = std::exp(-zeta * omega * t);
        const double cosine = std::cos(damped * t);
        const double sine = std::sin(damped * t);
        const double b = (v0 + zeta * omega * x0) / damped;
        return {target + decay * (x0 * cosine + b * sine),
                decay * ((b * damped - zeta * omega * x0) * cosine -
                         (x0 * damped + zeta * omega * b) * sine)};
    }
    const double root = omega * std::sqrt(zeta * zeta - 1);
    const double slow = -zeta * omega + root;
    const double fast = -zeta * omega - root;
    const double a = (v0 - fast * x0) / (slow - fast);
    const double b = x0 - a;
    const double slowDecay = std::exp(slow * t);
    const double fastDecay = std::exp(fast * t);
    return {target + a * slowDecay + b * fastDecay, a * slow * slowDecay + b * fast * fastDecay};
}

double springSettlingTime(const Spring &spring, const Motion &start, double target,
                          double tolerance)
{
    const double omega = 2 * std::numbers::pi / spring.response;
    const double distance = std::abs(start.value - target);
    const double reach = distance + std::abs(start.velocity) / omega;
    if (reach <= tolerance) {
        return 0;
    }
    // The envelope of the slowest component; critical damping gets a margin, because its envelope
    // is multiplied by a growing linear term.
    const double zeta = spring.dampingFraction;
    const double rate = zeta < 1 ? zeta * omega : (zeta - std::sqrt(zeta * zeta - 1)) * omega;
    constexpr double room = 20;
    return std::log(room * reach / tolerance) / rate;
}

} // namespace corvane::look
