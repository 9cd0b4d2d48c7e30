#include "look/paint/status_mark.h"

#include "look/paint/shapes.h"

#include <QPainter>
#include <QPainterPath>
#include <QPen>

#include <algorithm>

namespace corvane::look {

namespace {

const QColor fillColor(255, 255, 255);
const QColor edgeColor(0, 0, 0, 190);
/// Width of the edge as a fraction of the side.
constexpr double edgeShare = 1.0 / 18.0;

} // namespace

void paintStatusMark(QPainter &painter, const QRectF &rect)
{
    const double edge = std::max(1.0, edgeShare * std::min(rect.width(), rect.height()));
    QPainterPath mark;
    // Filled as one shape: separate cells that meet inside a pixel would leave a seam.
    mark.setFillRule(Qt::WindingFill);
    for (const QRectF &cell : quibMarkRects(rect.adjusted(edge, edge, -edge, -edge))) {
        mark.addRect(cell);
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.strokePath(mark,
                       QPen(edgeColor, 2 * edge, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.fillPath(mark, fillColor);
}

} // namespace corvane::look
