#pragma once

#include "look/motion/animation.h"

namespace corvane::island {

/// The animations of the island.
[[nodiscard]] inline look::Animation standardSpring()
{
    return look::Animation::spring(0.42, 0.88);
}

/// For widening and narrowing the strip.
[[nodiscard]] inline look::Animation widenSpring()
{
    return look::Animation::spring(0.3, 0.9);
}

/// For the collapsed island, which grows slightly under the pointer.
[[nodiscard]] inline look::Animation swellSpring()
{
    return look::Animation::spring(0.22, 0.7);
}

[[nodiscard]] inline look::Animation settleCurve()
{
    return look::Animation::easeOut(0.18);
}

} // namespace corvane::island
