#include "look/motion/breath.h"

#include "look/motion/timing_curves.h"

#include <cmath>

namespace corvane::look {

Breath breathAt(double seconds, double period)
{
    const Breath rest;
    const double halves = seconds / period;
    const double within = halves - std::floor(halves);
    const bool returning = static_cast<long long>(std::floor(halves)) % 2 != 0;
    const double progress = easeInOutCurve().valueForProgress(returning ? 1 - within : within);
    return {rest.opacity + (1 - rest.opacity) * progress, rest.scale + (1 - rest.scale) * progress};
}

} // namespace corvane::look
