#pragma once

#include "look/motion/animation.h"

namespace corvane::island {

/// The island's own vocabulary of motion.
[[nodiscard]] inline look::Animation standardSpring()
{
    return look::Animation::spring(0.42, 0.88);
}

/// The strip stretches and narrows.
[[nodiscard]] inline look::Animation widenSpring()
{
    return look::Animation::spring(0.3, 0.9);
}

/// The resting island swells under the pointer, and settles when it leaves.
[[nodiscard]] inline look::Animation swellSpring()
{
    return look::Animation::spring(0.22, 0.7);
}

[[nodiscard]] inline look::Animation settleCurve()
{
    return look::Animation::easeOut(0.18);
}

} // namespace corvane::island
