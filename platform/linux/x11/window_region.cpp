#include "platform/linux/x11/window_region.h"

#include <algorithm>
#include <cmath>

namespace corvane::platform {

QRect pixelsOf(const QRectF &outline, double scale)
{
    // Rounds edges rather than sizes, so that adjacent rectangles stay adjacent.
    const int left = qRound(outline.left() * scale);
    const int top = qRound(outline.top() * scale);
    const int right = qRound(outline.right() * scale);
    const int bottom = qRound(outline.bottom() * scale);
    return {left, top, std::max(right - left, 0), std::max(bottom - top, 0)};
}

QList<QRect> roundedRegion(const QRect &area, double radius, RoundCorners corners)
{
    if (area.isEmpty()) {
        return {};
    }
    const bool upperToo = corners == RoundCorners::All;
    const double limit = std::min(area.width() / 2.0, area.height() / (upperToo ? 2.0 : 1.0));
    const double corner = std::clamp(radius, 0.0, limit);
    const int cornerRows = static_cast<int>(std::ceil(corner));
    const auto row = [&](int y, int distance) {
        // The edge of the pixel row nearest to the circle's centre has the longest chord.
        const double away = corner - distance - 1;
        const double chord =
            away <= 0 ? corner : std::sqrt(std::max(corner * corner - away * away, 0.0));
        const int inset = static_cast<int>(std::floor(corner - chord));
        return QRect(area.x() + inset, y, area.width() - 2 * inset, 1);
    };
    QList<QRect> rows;
    const int upperRows = upperToo ? cornerRows : 0;
    for (int distance = 0; distance < upperRows; ++distance) {
        rows.append(row(area.top() + distance, distance));
    }
    if (area.height() > upperRows + cornerRows) {
        rows.append(area.adjusted(0, upperRows, 0, -cornerRows));
    }
    for (int distance = cornerRows - 1; distance >= 0; --distance) {
        rows.append(row(area.bottom() - distance, distance));
    }
    return rows;
}

} // namespace corvane::platform
