#pragma once

#include "look/paint/shapes.h"

#include <QColor>
#include <QImage>
#include <QRectF>

namespace corvane::look {

/// The mark on a black tile, in pixels, in a picture of `size` × `size` pixels.
struct ApplicationIcon
{
    int size;
    int tileOffset;
    int tile;
    double radius;
    int markOffset;
    /// Side of one unit of the mark's grid. An integer, so that every edge of the mark is on a
    /// pixel boundary.
    int unit;

    [[nodiscard]] QRectF tileRect() const
    {
        return {double(tileOffset), double(tileOffset), double(tile), double(tile)};
    }
    [[nodiscard]] QRectF markRect() const
    {
        const int edge = quibMarkUnits * unit;
        return {double(markOffset), double(markOffset), double(edge), double(edge)};
    }
};

/// The icon in its sizes, from small to large. The mark has an odd number of units. Where centring
/// would need half a pixel, the right and bottom margins are one pixel wider. Small icons have
/// narrow margins.
inline constexpr ApplicationIcon applicationIcons[] = {
    {16, 0, 15, 4, 1, 1},     {22, 0, 21, 5, 4, 1},       {24, 1, 21, 5, 5, 1},
    {32, 0, 32, 8, 3, 2},     {48, 0, 47, 11, 4, 3},      {64, 3, 57, 14, 12, 3},
    {128, 6, 116, 29, 25, 6}, {256, 12, 232, 58, 50, 12},
};

/// The colour of the icon's outline, which separates the tile from a dark panel.
[[nodiscard]] QColor applicationIconLine();

[[nodiscard]] QImage paintApplicationIcon(const ApplicationIcon &icon);

} // namespace corvane::look
