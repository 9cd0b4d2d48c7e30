#include "platform/linux/toolkit/screen_coordinates.h"

#include <utility>

namespace corvane::platform {

ScreenCoordinates::ScreenCoordinates(QRect primary, QList<Display> displays)
    : m_primary(primary)
    , m_displays(std::move(displays))
{}

QPointF ScreenCoordinates::globalFromQt(QPointF point) const
{
    return {point.x() - m_primary.x(), m_primary.y() + m_primary.height() - point.y()};
}

QRectF ScreenCoordinates::globalFromQt(const QRectF &rectangle) const
{
    return {globalFromQt(rectangle.bottomLeft()), rectangle.size()};
}

QRectF ScreenCoordinates::qtFromGlobal(const QRectF &rectangle) const
{
    const double bottom = m_primary.y() + m_primary.height() - rectangle.y();
    return {rectangle.x() + m_primary.x(), bottom - rectangle.height(), rectangle.width(),
            rectangle.height()};
}

std::optional<QPointF> ScreenCoordinates::globalFromPixel(QPoint pixel) const
{
    for (const Display &display : m_displays) {
        const QPointF origin = display.geometry.topLeft();
        const QRectF pixels(origin, QSizeF(display.geometry.size()) * display.scale);
        // QRectF::contains() includes the right and bottom edges, which belong to the next display.
        if (pixel.x() >= pixels.left() && pixel.x() < pixels.right() && pixel.y() >= pixels.top() &&
            pixel.y() < pixels.bottom()) {
            const QPointF centre = QPointF(pixel) + QPointF(0.5, 0.5);
            return globalFromQt(origin + (centre - origin) / display.scale);
        }
    }
    return std::nullopt;
}

} // namespace corvane::platform
