#pragma once

#include <QList>
#include <QPoint>
#include <QPointF>
#include <QRect>
#include <QRectF>

#include <optional>

namespace corvane::platform {

/// Translates between the three coordinate systems of a desktop with one or several displays:
///
/// - global points: origin at the bottom left of the primary display, y upward (`Screen`);
/// - Qt's virtual desktop: the same points, origin at its top left, y downward;
/// - X pixels, y downward. In Qt a display has the same top left corner in pixels and in points;
///   its size in points is its size in pixels divided by its scale factor.
class ScreenCoordinates
{
public:
    /// One display as reported by Qt.
    struct Display
    {
        /// In Qt's virtual desktop.
        QRect geometry;
        /// Pixels per point.
        double scale = 1;
    };

    /// Has no displays: every translation from pixels returns an empty result.
    ScreenCoordinates() = default;
    ScreenCoordinates(QRect primary, QList<Display> displays);

    /// Between Qt's virtual desktop and global points; a rectangle keeps its size.
    [[nodiscard]] QRectF globalFromQt(const QRectF &rectangle) const;
    [[nodiscard]] QPointF globalFromQt(QPointF point) const;
    [[nodiscard]] QRectF qtFromGlobal(const QRectF &rectangle) const;
    /// The global point of a pixel's centre; empty if the pixel is on no display.
    [[nodiscard]] std::optional<QPointF> globalFromPixel(QPoint pixel) const;

private:
    QRect m_primary;
    QList<Display> m_displays;
};

} // namespace corvane::platform
