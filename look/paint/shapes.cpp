#include "look/paint/shapes.h"

#include <QColor>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace corvane::look {

namespace {

/// The classic 4 × 4 index matrix. Index v fills its cell at densities of at least (v + 0.5) / 16,
/// so that neither 0 nor 1 is a threshold.
constexpr std::array<std::array<int, 4>, 4> bayerIndices{{
    {0, 8, 2, 10},
    {12, 4, 14, 6},
    {3, 11, 1, 9},
    {15, 7, 13, 5},
}};

constexpr std::array<std::array<double, 4>, 4> bayer = [] {
    std::array<std::array<double, 4>, 4> thresholds{};
    for (std::size_t row = 0; row < 4; ++row) {
        for (std::size_t column = 0; column < 4; ++column) {
            thresholds.at(row).at(column) = (bayerIndices.at(row).at(column) + 0.5) / 16;
        }
    }
    return thresholds;
}();

} // namespace

QPainterPath notchShapePath(const QRectF &rect, double bottomRadius)
{
    const double radius =
        std::clamp(bottomRadius, 0.0, std::max(std::min(rect.width(), rect.height()) / 2, 0.0));
    QPainterPath path(rect.topLeft());
    path.lineTo(rect.topRight());
    path.lineTo(rect.right(), rect.bottom() - radius);
    path.quadTo(rect.bottomRight(), {rect.right() - radius, rect.bottom()});
    path.lineTo(rect.left() + radius, rect.bottom());
    path.quadTo(rect.bottomLeft(), {rect.left(), rect.bottom() - radius});
    path.closeSubpath();
    return path;
}

QPainterPath continuousBoxPath(const QRectF &rect, double radius)
{
    // A superellipse with the depth of a circle on the diagonal, where it begins so far out.
    constexpr double begin = 1.53;
    constexpr double exponent = 3.26;
    constexpr int steps = 16; // per corner; the chords deviate by less than a tenth of a pixel
    const double reach = std::min({begin * radius, rect.width() / 2, rect.height() / 2});
    QPainterPath path;
    const auto addCorner = [&](const QPointF &corner, const QPointF &from, const QPointF &to) {
        for (int step = 0; step <= steps; ++step) {
            const double angle = std::numbers::pi / 2 * step / steps;
            const auto inwards = [&](double value) {
                return reach * (1 - std::pow(std::max(value, 0.0), 2 / exponent));
            };
            const QPointF point =
                corner + from * inwards(std::sin(angle)) + to * inwards(std::cos(angle));
            path.elementCount() == 0 ? path.moveTo(point) : path.lineTo(point);
        }
    };
    addCorner(rect.topLeft(), {0, 1}, {1, 0});
    addCorner(rect.topRight(), {-1, 0}, {0, 1});
    addCorner(rect.bottomRight(), {0, -1}, {-1, 0});
    addCorner(rect.bottomLeft(), {1, 0}, {0, -1});
    path.closeSubpath();
    return path;
}

EdgeLine edgeLine(double width, double scale)
{
    const long pixels = std::max(1L, std::lround(width * scale));
    return {static_cast<double>(pixels) / scale, static_cast<double>(pixels / 2) / scale};
}

DitherPattern ditherPattern(double width, double height, double cell, double topDensity,
                            double bottomDensity)
{
    DitherPattern pattern;
    if (cell <= 0) {
        return pattern;
    }
    pattern.columns = std::max(static_cast<int>(width / cell), 0);
    pattern.rows = std::max(static_cast<int>(height / cell), 0);
    if (pattern.columns == 0 || pattern.rows == 0) {
        return {};
    }
    pattern.rowMasks.reserve(pattern.rows);
    for (int row = 0; row < pattern.rows; ++row) {
        const double position =
            pattern.rows > 1 ? static_cast<double>(row) / (pattern.rows - 1) : 0.0;
        const double density = topDensity + (bottomDensity - topDensity) * position;
        quint8 mask = 0;
        for (std::size_t column = 0; column < 4; ++column) {
            if (bayer.at(static_cast<std::size_t>(row % 4)).at(column) < density) {
                mask = static_cast<quint8>(mask | (1U << column));
            }
        }
        pattern.rowMasks.append(mask);
    }
    return pattern;
}

QImage ditherTile(const DitherPattern &pattern, double cell, const QColor &color, double scale)
{
    const double edge = cell * scale;
    if (std::ranges::all_of(pattern.rowMasks, [](quint8 mask) { return mask == 0; })) {
        return {};
    }
    const auto pixels = [edge](int cells) { return static_cast<int>(std::lround(cells * edge)); };
    QImage tile(pixels(4), pixels(pattern.rows), QImage::Format_ARGB32_Premultiplied);
    tile.fill(Qt::transparent);
    const QRgb pixel = qPremultiply(color.rgba());
    for (int row = 0; row < pattern.rows; ++row) {
        for (int y = pixels(row); y < pixels(row + 1); ++y) {
            auto *line = reinterpret_cast<QRgb *>(tile.scanLine(y));
            for (int column = 0; column < 4; ++column) {
                if (pattern.isFilled(row, column)) {
                    std::fill(line + pixels(column), line + pixels(column + 1), pixel);
                }
            }
        }
    }
    return tile;
}

std::array<QRectF, quibMarkCells.size()> quibMarkRects(const QRectF &rect)
{
    const double unit = std::min(rect.width(), rect.height()) / quibMarkUnits;
    const double left = rect.x() + (rect.width() - quibMarkUnits * unit) / 2;
    const double top = rect.y() + (rect.height() - quibMarkUnits * unit) / 2;
    std::array<QRectF, quibMarkCells.size()> rects;
    std::ranges::transform(quibMarkCells, rects.begin(), [=](const std::array<int, 4> &cell) {
        return QRectF(left + unit * cell[0], top + unit * cell[1], unit * cell[2], unit * cell[3]);
    });
    return rects;
}

QImage quibMarkImage(const QSize &size, const QRectF &place, const QColor &color)
{
    const auto columns = static_cast<std::size_t>(size.width());
    std::vector<double> coverage(columns * static_cast<std::size_t>(size.height()));
    // The length of the part of [from, to] that lies in the pixel at `pixel`.
    const auto share = [](double from, double to, int pixel) {
        return std::max(std::min(to, pixel + 1.0) - std::max(from, 1.0 * pixel), 0.0);
    };
    for (const QRectF &cell : quibMarkRects(place)) {
        const QRect touched = cell.toAlignedRect() & QRect(QPoint(), size);
        for (int y = touched.top(); y <= touched.bottom(); ++y) {
            const double down = share(cell.top(), cell.bottom(), y);
            for (int x = touched.left(); x <= touched.right(); ++x) {
                coverage[static_cast<std::size_t>(y) * columns + static_cast<std::size_t>(x)] +=
                    down * share(cell.left(), cell.right(), x);
            }
        }
    }
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    const auto opaque = static_cast<double>(color.alpha());
    for (int y = 0; y < size.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (std::size_t x = 0; x < columns; ++x) {
            const double covered = coverage[static_cast<std::size_t>(y) * columns + x];
            const auto alpha = static_cast<int>(opaque * std::min(covered, 1.0) + 0.5);
            line[x] = qPremultiply(qRgba(color.red(), color.green(), color.blue(), alpha));
        }
    }
    return image;
}

void paintQuibMark(QPainter &painter, const QRectF &rect, const QColor &color)
{
    const QTransform toDevice = painter.deviceTransform();
    const QRectF place = toDevice.mapRect(rect);
    const QRect frame = place.toAlignedRect();
    if (frame.isEmpty()) {
        return;
    }
    painter.save();
    painter.setTransform(painter.transform() * toDevice.inverted() *
                         QTransform::fromTranslate(frame.x(), frame.y()));
    painter.drawImage(0, 0, quibMarkImage(frame.size(), place.translated(-frame.topLeft()), color));
    painter.restore();
}

QPainterPath sparklinePath(const QRectF &rect, const QList<double> &points, bool closed)
{
    QPainterPath path;
    if (points.size() < 2) {
        return path;
    }
    const auto [low, high] = std::ranges::minmax(points);
    // The lower bound avoids a division by zero; a flat series is drawn at the bottom margin.
    // Computed with halves, because the difference of two finite numbers may overflow.
    const double halfSpan = std::max(high / 2 - low / 2, 0.5e-9);
    const double step = rect.width() / static_cast<double>(points.size() - 1);
    const auto point = [&, lowest = low](qsizetype index) {
        const double share = (points.at(index) / 2 - lowest / 2) / halfSpan;
        return QPointF(rect.left() + step * static_cast<double>(index),
                       rect.bottom() - rect.height() * (0.92 * share + 0.04));
    };
    path.moveTo(point(0));
    for (qsizetype index = 1; index < points.size(); ++index) {
        path.lineTo(point(index));
    }
    if (closed) {
        path.lineTo(rect.bottomRight());
        path.lineTo(rect.bottomLeft());
        path.closeSubpath();
    }
    return path;
}

} // namespace corvane::look
