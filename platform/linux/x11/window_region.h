#pragma once

#include <QList>
#include <QRect>
#include <QRectF>

namespace corvane::platform {

/// The pixels that `outline` (in points) covers at `scale` pixels per point.
[[nodiscard]] QRect pixelsOf(const QRectF &outline, double scale);

/// Which corners of a region are round.
enum class RoundCorners { All, Lower };

/// Rectangles that make up all pixels of `area` that lie at least partly inside its round corners
/// of `radius` pixels, from top to bottom and without overlaps.
[[nodiscard]] QList<QRect> roundedRegion(const QRect &area, double radius, RoundCorners corners);

} // namespace corvane::platform
