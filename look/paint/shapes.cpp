#include "look/paint/shapes.h"

#include <QColor>
#include <QPainter>

#include <algorithm>
#include <cmath>
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

void paintQuibMark(QPainter &painter, const QRectF &rect, const QColor &color)
{
    // Not a path: Qt distributes a path with this many spans to other threads, and the animation at
    // rest would keep waking them.
    const QTransform transform = painter.deviceTransform();
    const QRectF place = transform.mapRect(rect);
    const QRect frame = place.toAlignedRect();
    if (frame.isEmpty()) {
        return;
    }
    const auto columns = static_cast<std::size_t>(frame.width());
    std::vector<double> coverage(columns * static_cast<std::size_t>(frame.height()));
    // The length of the part of [from, to] that lies in the pixel at `pixel`.
    const auto share = [](double from, double to, int pixel) {
        return std::max(std::min(to, pixel + 1.0) - std::max(from, static_cast<double>(pixel)),
                        0.0);
    };
    for (const QRectF &cell : quibMarkRects(place.translated(-frame.topLeft()))) {
        for (int y = static_cast<int>(cell.top());
             y < std::min(cell.bottom(), 1.0 * frame.height()); ++y) {
            const double down = share(cell.top(), cell.bottom(), y);
            for (int x = static_cast<int>(cell.left());
                 x < std::min(cell.right(), 1.0 * frame.width()); ++x) {
                coverage[static_cast<std::size_t>(y) * columns + static_cast<std::size_t>(x)] +=
                    down * share(cell.left(), cell.right(), x);
            }
        }
    }
    QImage image(frame.size(), QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < frame.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (std::size_t x = 0; x < columns; ++x) {
            QColor pixel = color;
            pixel.setAlphaF(static_cast<float>(
                color.alphaF() *
                std::min(coverage[static_cast<std::size_t>(y) * columns + x], 1.0)));
            line[x] = qPremultiply(pixel.rgba());
        }
    }
    const QTransform toDevice = painter.transform();
    painter.setTransform(toDevice * transform.inverted() *
                         QTransform::fromTranslate(frame.x(), frame.y()));
    painter.drawImage(0, 0, image);
    painter.setTransform(toDevice);
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
