#include "look/motion/animation.h"

#include "look/motion/timing_curves.h"

namespace corvane::look {

Animation Animation::spring(double response, double dampingFraction)
{
    return Animation(Kind(Spring{response, dampingFraction}));
}

Animation Animation::easeIn(double seconds)
{
    return Animation(Kind(Timed{easeInCurve(), seconds}));
}

Animation Animation::easeOut(double seconds)
{
    return Animation(Kind(Timed{easeOutCurve(), seconds}));
}

Animation Animation::easeInOut(double seconds)
{
    return Animation(Kind(Timed{easeInOutCurve(), seconds}));
}

Animation Animation::delayed(double seconds) const
{
    Animation later = *this;
    later.m_delay += seconds;
    return later;
}

Motion Animation::motionAt(double seconds, const Motion &start, double target) const
{
    const double elapsed = seconds - m_delay;
    if (elapsed < 0) {
        return {start.value, 0};
    }
    if (const auto *spring = std::get_if<Spring>(&m_kind)) {
        return springMotion(*spring, start, target, elapsed);
    }
    if (const auto *timed = std::get_if<Timed>(&m_kind); timed != nullptr && timed->seconds > 0) {
        const double distance = target - start.value;
        const double progress = timed->curve.valueForProgress(elapsed / timed->seconds);
        // A spring that takes over needs the current velocity; a small difference quotient is
        // accurate enough.
        constexpr double step = 1e-3;
        const double before = timed->curve.valueForProgress((elapsed - step) / timed->seconds);
        return {start.value + distance * progress, distance * (progress - before) / step};
    }
    return {target, 0};
}

double Animation::duration(const Motion &start, double target, double tolerance) const
{
    if (const auto *spring = std::get_if<Spring>(&m_kind)) {
        return m_delay + springSettlingTime(*spring, start, target, tolerance);
    }
    if (const auto *timed = std::get_if<Timed>(&m_kind)) {
        return m_delay + timed->seconds;
    }
    return m_delay;
}

} // namespace corvane::look
