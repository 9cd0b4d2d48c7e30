#include "look/motion/timing_curves.h"

#include <QPointF>

namespace corvane::look {

namespace {

QEasingCurve bezier(const QPointF &first, const QPointF &second)
{
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment(first, second, {1, 1});
    return curve;
}

} // namespace

const QEasingCurve &easeInCurve()
{
    static const QEasingCurve curve = bezier({0.42, 0}, {1, 1});
    return curve;
}

const QEasingCurve &easeOutCurve()
{
    static const QEasingCurve curve = bezier({0, 0}, {0.58, 1});
    return curve;
}

const QEasingCurve &easeInOutCurve()
{
    static const QEasingCurve curve = bezier({0.42, 0}, {0.58, 1});
    return curve;
}

} // namespace corvane::look
