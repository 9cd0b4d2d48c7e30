#include "look/motion/timing_curve.h"

namespace corvane::look {

namespace {

double bezier(double first, double second, double s)
{
    const double rest = 1 - s;
    return 3 * rest * rest * s * first + 3 * rest * s * s * second + s * s * s;
}

} // namespace

double TimingCurve::at(double time) const
{
    if (time <= 0) {
        return 0;
    }
    if (time >= 1) {
        return 1;
    }
    // x increases monotonically for control points between 0 and 1, so that bisection converges;
    // the error after 32 halvings is far below a visible step.
    double low = 0;
    double high = 1;
    for (int step = 0; step < 32; ++step) {
        const double middle = (low + high) / 2;
        (bezier(x1, x2, middle) < time ? low : high) = middle;
    }
    return bezier(y1, y2, (low + high) / 2);
}

} // namespace corvane::look
