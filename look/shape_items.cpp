#include "look/shape_items.h"

#include "look/shapes.h"

#include <QPainter>

#include <cmath>

namespace corvane::look {

namespace {

/// A brush that repeats `tile` from `origin` (points) on.
QBrush tileBrush(const QImage &tile, double scale, const QPointF &origin)
{
    QBrush brush(tile);
    brush.setTransform(
        QTransform::fromTranslate(origin.x(), origin.y()).scale(1 / scale, 1 / scale));
    return brush;
}

/// Fills `area` with the dither of `frame`. The software scene graph scales the painter, not the
/// device, so that is where the device pixels of a point are found.
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

DitherRect::DitherRect(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{}

template <typename Value>
void DitherRect::assign(Value &member, const Value &value)
{
    if (member != value) {
        member = value;
        update();
        Q_EMIT patternChanged();
    }
}

void DitherRect::setColor(const QColor &color)
{
    assign(m_color, color);
}

void DitherRect::setCell(double cell)
{
    assign(m_cell, cell);
}

void DitherRect::setTopDensity(double density)
{
    assign(m_topDensity, density);
}

void DitherRect::setBottomDensity(double density)
{
    assign(m_bottomDensity, density);
}

void DitherRect::paint(QPainter *painter)
{
    // A partial cell at the right or bottom edge is left out.
    QPainterPath cells;
    cells.addRect(0, 0, std::floor(width() / m_cell) * m_cell,
                  std::floor(height() / m_cell) * m_cell);
    fillDithered(*painter, cells, boundingRect(), m_cell, m_color, m_topDensity, m_bottomDensity);
}

QuibMark::QuibMark(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
}

void QuibMark::setColor(const QColor &color)
{
    if (m_color != color) {
        m_color = color;
        update();
        Q_EMIT colorChanged();
    }
}

void QuibMark::paint(QPainter *painter)
{
    paintQuibMark(*painter, boundingRect(), m_color);
}

NotchShape::NotchShape(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
}

void NotchShape::assign(double &member, double value)
{
    if (member != value) {
        member = value;
        update();
        Q_EMIT changed();
    }
}

void NotchShape::setBottomRadius(double radius)
{
    assign(m_bottomRadius, radius);
}

void NotchShape::setGrainOpacity(double opacity)
{
    assign(m_grainOpacity, opacity);
}

void NotchShape::setLineWidth(double width)
{
    assign(m_lineWidth, width);
}

void NotchShape::setLineColor(const QColor &color)
{
    if (m_lineColor != color) {
        m_lineColor = color;
        update();
        Q_EMIT changed();
    }
}

void NotchShape::paint(QPainter *painter)
{
    constexpr double grainCell = 2;
    constexpr double grainWhite = 0.05;
    constexpr double grainBottomDensity = 0.28;

    const QRectF rect = boundingRect().adjusted(margin, margin, -margin, -margin);
    const QPainterPath outline = notchShapePath(rect, m_bottomRadius);
    painter->setRenderHint(QPainter::Antialiasing);
    painter->fillPath(outline, Qt::black);
    if (m_grainOpacity > 0) {
        QColor white(Qt::white);
        white.setAlphaF(static_cast<float>(grainWhite * m_grainOpacity));
        fillDithered(*painter, outline, rect, grainCell, white, 0, grainBottomDensity);
    }
    if (m_lineWidth > 0) {
        painter->strokePath(outline, QPen(m_lineColor, m_lineWidth));
    }
}

RoundedBox::RoundedBox(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
}

template <typename Value>
void RoundedBox::assign(Value &member, const Value &value)
{
    if (member != value) {
        member = value;
        update();
        Q_EMIT changed();
    }
}

void RoundedBox::setColor(const QColor &color)
{
    assign(m_color, color);
}

void RoundedBox::setBorderColor(const QColor &color)
{
    assign(m_borderColor, color);
}

void RoundedBox::setBorderWidth(double width)
{
    assign(m_borderWidth, width);
}

void RoundedBox::setRadius(double radius)
{
    assign(m_radius, radius);
}

void RoundedBox::paint(QPainter *painter)
{
    const double half = m_borderWidth / 2;
    const double inset = margin + half;
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setBrush(m_color);
    painter->setPen(m_borderWidth > 0 ? QPen(m_borderColor, m_borderWidth) : QPen(Qt::NoPen));
    painter->drawRoundedRect(boundingRect().adjusted(inset, inset, -inset, -inset), m_radius - half,
                             m_radius - half);
}

SparklineShape::SparklineShape(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
}

void SparklineShape::setPoints(const QList<double> &points)
{
    if (m_points != points) {
        m_points = points;
        update();
        Q_EMIT pointsChanged();
    }
}

void SparklineShape::setColor(const QColor &color)
{
    if (m_color != color) {
        m_color = color;
        update();
        Q_EMIT colorChanged();
    }
}

void SparklineShape::paint(QPainter *painter)
{
    constexpr double cell = 2;
    constexpr double areaOpacity = 0.85;
    constexpr double topDensity = 0.45;
    constexpr double bottomDensity = 0.03;
    constexpr double lineWidth = 1.5;

    const QRectF rect = boundingRect();
    QColor area = m_color;
    area.setAlphaF(static_cast<float>(areaOpacity));
    painter->setRenderHint(QPainter::Antialiasing);
    fillDithered(*painter, sparklinePath(rect, m_points, true), rect, cell, area, topDensity,
                 bottomDensity);
    painter->strokePath(sparklinePath(rect, m_points, false), QPen(m_color, lineWidth));
}

} // namespace corvane::look
