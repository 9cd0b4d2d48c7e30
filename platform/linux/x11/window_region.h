#pragma once

#include <QList>
#include <QRect>
#include <QRectF>

namespace corvane::platform {

/// The pixels that `outline` (in points) covers at `scale` pixels per point.
[[nodiscard]] QRect pixelsOf(const QRectF &outline, double scale);

/// The rounded corners of a region.
enum class RoundCorners { All, Lower };

/// The pixels of `area` with rounded corners of `radius` pixels, as rectangles from top to bottom
/// without overlaps. Includes pixels that are only partly inside a corner.
[[nodiscard]] QList<QRect> roundedRegion(const QRect &area, double radius, RoundCorners corners);

} // namespace corvane::platform
