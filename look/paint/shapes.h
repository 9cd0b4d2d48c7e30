#pragma once

#include <QImage>
#include <QList>
#include <QPainterPath>
#include <QRectF>

#include <array>

class QPainter;

namespace corvane::look {

/// The island's outline in `rect` (y downward): square at the top, the bottom corners cut by
/// quadratic curves of `bottomRadius` points, at most half the shorter side.
[[nodiscard]] QPainterPath notchShapePath(const QRectF &rect, double bottomRadius);

/// `rect` with continuous corners of `radius` points: they begin one and a half radii before the
/// corner, where a circle would begin abruptly, and are as deep as a circle's on the diagonal.
[[nodiscard]] QPainterPath continuousBoxPath(const QRectF &rect, double radius);

/// How a line along the edge of a box is drawn sharply: in whole device pixels, which are centred
/// on the edge if their number is even. Of an odd number, the odd one lies inside.
struct EdgeLine
{
    /// In points.
    double width = 0;
    /// The part of the width that lies outside of the edge, in points.
    double outside = 0;
};

/// The line of about `width` points, above 0, at `scale` device pixels per point.
[[nodiscard]] EdgeLine edgeLine(double width, double scale);

/// The fill of an ordered dither: a 4 × 4 Bayer matrix compared with a density per row. The pattern
/// repeats every four columns, so that a mask of four columns per row describes it.
struct DitherPattern
{
    /// Number of whole cells; partial cells at the right or bottom edge are omitted.
    int columns = 0;
    int rows = 0;
    /// For each row, the filled columns of the four-column period; column 0 is bit 0.
    QList<quint8> rowMasks;

    [[nodiscard]] bool isFilled(int row, int column) const
    {
        return (rowMasks.at(row) >> (column % 4) & 1) != 0;
    }
};

/// The pattern for a frame of `width` × `height` points and cells of `cell` points, with densities
/// from 0 to 1 at the first and the last row.
[[nodiscard]] DitherPattern ditherPattern(double width, double height, double cell,
                                          double topDensity, double bottomDensity);

/// One period of `pattern` as a picture: four columns wide, all rows high, transparent between the
/// cells of `color`. `scale` is in device pixels per point. Null if nothing is filled.
[[nodiscard]] QImage ditherTile(const DitherPattern &pattern, double cell, const QColor &color,
                                double scale);

/// The product mark in a grid of 13 × 13 units, y downward: a ring around a dot.
inline constexpr int quibMarkUnits = 13;
inline constexpr std::array<std::array<int, 4>, 9> quibMarkCells{{
    {2, 0, 9, 1},
    {1, 1, 11, 1},
    {2, 12, 9, 1},
    {1, 11, 11, 1},
    {0, 2, 1, 9},
    {1, 2, 1, 9},
    {12, 2, 1, 9},
    {11, 2, 1, 9},
    {5, 5, 3, 3},
}};

/// The mark's nine rectangles, centred in `rect` within a square. They never overlap.
[[nodiscard]] std::array<QRectF, quibMarkCells.size()> quibMarkRects(const QRectF &rect);

/// The mark in `place` of a picture of `size` pixels, drawn as one shape: each pixel is covered by
/// exactly the share of the mark in it, so that no seam shows where two rectangles meet in a pixel.
[[nodiscard]] QImage quibMarkImage(const QSize &size, const QRectF &place, const QColor &color);

/// Fills the mark, centred in `rect` within a square, as one shape. The painter may be moved and
/// scaled, but not rotated.
void paintQuibMark(QPainter &painter, const QRectF &rect, const QColor &color);

/// A price chart over the whole width of `rect` (y downward), oldest point first, with a margin of
/// 4 % of the height above and below. The points must be finite. If `closed`, the path includes the
/// area down to the bottom edge. Empty for fewer than two points.
[[nodiscard]] QPainterPath sparklinePath(const QRectF &rect, const QList<double> &points,
                                         bool closed);

} // namespace corvane::look
