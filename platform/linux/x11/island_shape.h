#pragma once

#include <QList>
#include <QRect>
#include <QRectF>

namespace corvane::platform {

/// The pixels that `outline` (in points) covers at `scale` pixels per point.
[[nodiscard]] QRect pixelsOf(const QRectF &outline, double scale);

/// Rectangles that make up `area` with its two lower corners rounded by `radius` pixels, from top
/// to bottom and without overlaps.
[[nodiscard]] QList<QRect> roundedBottom(const QRect &area, double radius);

} // namespace corvane::platform
