#include "platform/linux/x11/island_shape.h"

#include <algorithm>
#include <cmath>

namespace corvane::platform {

QRect pixelsOf(const QRectF &outline, double scale)
{
    // Edges are rounded rather than sizes, so that neighbours keep touching.
    const int left = qRound(outline.left() * scale);
    const int top = qRound(outline.top() * scale);
    const int right = qRound(outline.right() * scale);
    const int bottom = qRound(outline.bottom() * scale);
    return {left, top, std::max(right - left, 0), std::max(bottom - top, 0)};
}

QList<QRect> roundedBottom(const QRect &area, double radius)
{
    if (area.isEmpty()) {
        return {};
    }
    const double limit = std::min(area.width() / 2.0, static_cast<double>(area.height()));
    const double corner = std::clamp(radius, 0.0, limit);
    const int cornerRows = static_cast<int>(std::ceil(corner));
    QList<QRect> rows;
    if (area.height() > cornerRows) {
        rows.append(area.adjusted(0, 0, 0, -cornerRows));
    }
    for (int row = area.height() - cornerRows; row < area.height(); ++row) {
        // The circle's half chord at the middle of this row of pixels.
        const double below = std::max(row + 0.5 - (area.height() - corner), 0.0);
        const double chord = std::sqrt(std::max(corner * corner - below * below, 0.0));
        const int inset = qRound(corner - chord);
        if (const int width = area.width() - 2 * inset; width > 0) {
            rows.append(QRect(area.x() + inset, area.y() + row, width, 1));
        }
    }
    return rows;
}

} // namespace corvane::platform
