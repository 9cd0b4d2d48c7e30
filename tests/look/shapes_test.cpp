#include "look/shapes.h"

#include <QColor>
#include <QPainter>

#include <gtest/gtest.h>

#include <algorithm>

namespace corvane::look {
namespace {

TEST(NotchShape, IsSquareAboveAndQuadraticBelow)
{
    const QRectF rect(10, 20, 200, 60);
    const QPainterPath path = notchShapePath(rect, 16);
    EXPECT_EQ(path.boundingRect(), rect);
    EXPECT_TRUE(path.contains(QPointF(10.5, 20.5)));
    EXPECT_TRUE(path.contains(QPointF(209.5, 20.5)));
    // Halfway along, a quadratic corner of radius r is r / 4 away from both edges; an arc would be
    // 0.293 r away.
    EXPECT_TRUE(path.contains(QPointF(10 + 4.2, 80 - 4.2)));
    EXPECT_FALSE(path.contains(QPointF(10 + 3.8, 80 - 3.8)));
    EXPECT_FALSE(path.contains(QPointF(210 - 3.8, 80 - 3.8)));
    EXPECT_TRUE(notchShapePath({0, 0, 50, 20}, 0).contains(QPointF(0.1, 19.9)));
    // Half the height is the most: the curve meets the side at mid-height.
    const QPainterPath round = notchShapePath({0, 0, 50, 20}, 400);
    EXPECT_TRUE(round.contains(QPointF(0.05, 9.5)));
    EXPECT_FALSE(round.contains(QPointF(0.05, 13)));
    EXPECT_EQ(notchShapePath({0, 0, 50, 0}, 8).boundingRect().height(), 0);
}

TEST(DitherRect, FillsTheShareOfCellsThatTheDensitySays)
{
    for (const auto &[density, filledOfSixteen] : std::initializer_list<std::pair<double, int>>{
             {0, 0}, {0.03, 0}, {0.05, 1}, {0.28, 4}, {0.5, 8}, {1, 16}}) {
        SCOPED_TRACE(density);
        const DitherPattern pattern = ditherPattern(8, 8, 2, density, density);
        int filled = 0;
        for (int row = 0; row < 4; ++row) {
            for (int column = 0; column < 4; ++column) {
                filled += pattern.isFilled(row, column) ? 1 : 0;
                EXPECT_TRUE(density != 0.5 ||
                            pattern.isFilled(row, column) == ((row + column) % 2 == 0));
            }
        }
        EXPECT_EQ(filled, filledOfSixteen);
    }
}

TEST(DitherRect, LeavesPartialCellsOutAndRunsFromTheFirstToTheLastRow)
{
    const DitherPattern pattern = ditherPattern(11, 7, 2, 1, 0);
    EXPECT_EQ(pattern.columns, 5);
    EXPECT_EQ(pattern.rows, 3);
    EXPECT_EQ(pattern.rowMasks.first(), 0b1111);
    EXPECT_EQ(pattern.rowMasks.last(), 0);
    EXPECT_EQ(ditherPattern(8, 3, 2, 1, 0).rowMasks, QList<quint8>{0b1111});
    for (const auto &[width, height, cell] :
         {std::tuple{1.0, 9.0, 2.0}, {9.0, 1.0, 2.0}, {-4.0, 9.0, 2.0}, {9.0, 9.0, 0.0}}) {
        EXPECT_EQ(ditherPattern(width, height, cell, 1, 1).rows, 0);
    }
}

TEST(DitherRect, PaintsItsTileInDevicePixels)
{
    const QColor half(255, 0, 0, 128);
    const DitherPattern pattern = ditherPattern(8, 4, 2, 1, 0);
    const QImage tile = ditherTile(pattern, 2, half, 1.5);
    EXPECT_EQ(tile.size(), QSize(12, 6));
    EXPECT_EQ(tile.pixelColor(0, 2).alpha(), 128);
    EXPECT_EQ(tile.pixelColor(0, 3).alpha(), 0);
    EXPECT_TRUE(ditherTile(ditherPattern(8, 4, 2, 0, 0), 2, half, 1).isNull());
}

TEST(QuibMark, IsARingAroundADot)
{
    const char *const rows[] = {"..#########..", ".###########.", "##.........##", "##.........##",
                                "##.........##", "##...###...##", "##...###...##", "##...###...##",
                                "##.........##", "##.........##", "##.........##", ".###########.",
                                "..#########.."};
    // In a frame that is too wide the mark stays square and centred.
    const auto rects = quibMarkRects({5, 5, 46, 26});
    for (int y = 0; y < quibMarkUnits; ++y) {
        for (int x = 0; x < quibMarkUnits; ++x) {
            const QPointF point(15 + 2 * x + 1, 5 + 2 * y + 1);
            const auto filled = std::ranges::count_if(
                rects, [&](const QRectF &rect) { return rect.contains(point); });
            EXPECT_EQ(filled, rows[y][x] == '#' ? 1 : 0) << x << "," << y;
        }
    }
}

TEST(SparklineShape, SpansTheWidthWithinItsMargins)
{
    const QRectF rect(10, 100, 90, 50);
    const QPainterPath line = sparklinePath(rect, {2, 4, 3, 2}, false);
    ASSERT_EQ(line.elementCount(), 4);
    EXPECT_NEAR(line.elementAt(0).x, 10, 1e-9);
    EXPECT_NEAR(line.elementAt(0).y, 148, 1e-9);
    EXPECT_NEAR(line.elementAt(1).x, 40, 1e-9);
    EXPECT_NEAR(line.elementAt(1).y, 102, 1e-9);
    EXPECT_NEAR(line.elementAt(2).y, 125, 1e-9);
    EXPECT_NEAR(line.elementAt(3).x, 100, 1e-9);

    const QPainterPath area = sparklinePath(rect, {2, 4, 3, 2}, true);
    EXPECT_TRUE(area.contains(QPointF(40, 149.5)));
    EXPECT_FALSE(line.contains(QPointF(90, 149.5)));

    EXPECT_TRUE(sparklinePath(rect, {1}, true).isEmpty());
    const QPainterPath flat = sparklinePath(rect, {5, 5, 5}, false);
    EXPECT_NEAR(flat.elementAt(1).y, 148, 1e-9);
}

} // namespace
} // namespace corvane::look
