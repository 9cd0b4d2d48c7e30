#include "look/paint/shape_items.h"

#include "look/paint/shapes.h"

#include <QPainter>

namespace corvane::look {

namespace {

/// A brush that repeats `tile`, starting at `origin` (points).
QBrush tileBrush(const QImage &tile, double scale, const QPointF &origin)
{
    QBrush brush(tile);
    brush.setTransform(
        QTransform::fromTranslate(origin.x(), origin.y()).scale(1 / scale, 1 / scale));
    return brush;
}

/// Fills `area` with the dither of `frame`. The scale factor is taken from the painter, because the
/// software scene graph scales the painter, not the device.
void fillDithered(QPainter &painter, const QPainterPath &area, const QRectF &frame, double cell,
                  const QColor &color, double topDensity, double bottomDensity)
{
    const double scale = painter.deviceTransform().m11();
    const QImage tile =
        ditherTile(ditherPattern(frame.width(), frame.height(), cell, topDensity, bottomDensity),
                   cell, color, scale);
    if (!tile.isNull()) {
        painter.fillPath(area, tileBrush(tile, scale, frame.topLeft()));
    }
}

} // namespace

void QuibMark::paint(QPainter *painter)
{
    paintQuibMark(*painter, boundingRect(), m_color);
}

void RoundedBox::paint(QPainter *painter)
{
    const QRectF box = boundingRect().adjusted(margin, margin, -margin, -margin);
    const auto outline = [this](const QRectF &rect, double radius) {
        QPainterPath path;
        if (m_continuous) {
            path = continuousBoxPath(rect, radius);
        } else {
            path.addRoundedRect(rect, radius, radius);
        }
        return path;
    };
    painter->setRenderHint(QPainter::Antialiasing);
    painter->fillPath(outline(box, m_radius), m_color);
    if (m_borderWidth > 0) {
        // The scale factor is taken from the painter, like that of the dither.
        const EdgeLine line = edgeLine(m_borderWidth, painter->deviceTransform().m11());
        const double inset = line.width / 2 - line.outside;
        painter->strokePath(outline(box.adjusted(inset, inset, -inset, -inset), m_radius - inset),
                            QPen(m_borderColor, line.width));
    }
}

void SparklineShape::paint(QPainter *painter)
{
    constexpr double cell = 2;
    constexpr double areaOpacity = 0.85;
    constexpr double topDensity = 0.45;
    constexpr double bottomDensity = 0.03;
    constexpr double lineWidth = 1.5;
    // A mitre of ten line widths in all reaches five from the joint.
    constexpr double miterLimit = 5;

    const QRectF rect = boundingRect();
    QColor area = m_color;
    area.setAlphaF(static_cast<float>(areaOpacity));
    painter->setRenderHint(QPainter::Antialiasing);
    fillDithered(*painter, sparklinePath(rect, m_points, true), rect, cell, area, topDensity,
                 bottomDensity);
    QPen pen(m_color, lineWidth, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin);
    pen.setMiterLimit(miterLimit);
    painter->strokePath(sparklinePath(rect, m_points, false), pen);
}

} // namespace corvane::look
