#include "look/controls/rolling_text.h"
#include "look/paint/box_blur.h"
#include "look/paint/shapes.h"
#include "look/paint/soft_shadow.h"

#include <QColor>
#include <QPainter>

#include <gtest/gtest.h>

#include <algorithm>

namespace corvane::look {
namespace {

using namespace Qt::StringLiterals;

TEST(NotchShape, IsSquareAboveAndQuadraticBelow)
{
    const QRectF rect(10, 20, 200, 60);
    const QPainterPath path = notchShapePath(rect, 16);
    EXPECT_EQ(path.boundingRect(), rect);
    EXPECT_TRUE(path.contains(QPointF(10.5, 20.5)));
    EXPECT_TRUE(path.contains(QPointF(209.5, 20.5)));
    // In its middle, a quadratic corner of radius r is r / 4 from both edges; an arc would be 0.293
    // r from them.
    EXPECT_TRUE(path.contains(QPointF(10 + 4.2, 80 - 4.2)));
    EXPECT_FALSE(path.contains(QPointF(10 + 3.8, 80 - 3.8)));
    // The radius is limited to half the height: the curve meets the side at mid-height.
    const QPainterPath round = notchShapePath({0, 0, 50, 20}, 400);
    EXPECT_TRUE(round.contains(QPointF(0.05, 9.5)));
    EXPECT_FALSE(round.contains(QPointF(0.05, 13)));
}

TEST(Dither, FillsTheShareOfCellsThatTheDensitySays)
{
    for (const auto &[density, filledOfSixteen] :
         std::initializer_list<std::pair<double, int>>{{0.03, 0}, {0.28, 4}, {0.5, 8}, {1, 16}}) {
        const DitherPattern pattern = ditherPattern(8, 8, 2, density, density);
        int filled = 0;
        for (int cell = 0; cell < 16; ++cell) {
            filled += pattern.isFilled(cell / 4, cell % 4) ? 1 : 0;
        }
        EXPECT_EQ(filled, filledOfSixteen) << density;
    }
}

TEST(Dither, LeavesPartialCellsOutAndPaintsItsTileInDevicePixels)
{
    const DitherPattern pattern = ditherPattern(11, 7, 2, 1, 0);
    EXPECT_EQ(std::pair(pattern.columns, pattern.rows), std::pair(5, 3));
    EXPECT_EQ(ditherPattern(-4, 9, 2, 1, 1).rows, 0);
    const QImage tile = ditherTile(pattern, 2, Qt::red, 1.5);
    EXPECT_EQ(tile.size(), QSize(12, 9));
    EXPECT_EQ(tile.pixelColor(0, 2).alpha(), 255);
    EXPECT_EQ(tile.pixelColor(0, 8).alpha(), 0);
}

TEST(SparklineShape, SpansTheWidthWithinItsMargins)
{
    const QRectF rect(10, 100, 90, 50);
    const QPainterPath line = sparklinePath(rect, {2, 4, 3, 2}, false);
    ASSERT_EQ(line.elementCount(), 4);
    EXPECT_EQ(QPointF(line.elementAt(0)), QPointF(10, 148));
    EXPECT_EQ(QPointF(line.elementAt(1)), QPointF(40, 102));
    EXPECT_EQ(QPointF(line.elementAt(3)), QPointF(100, 148));
    EXPECT_TRUE(sparklinePath(rect, {2, 4, 3, 2}, true).contains(QPointF(40, 149.5)));
    EXPECT_TRUE(sparklinePath(rect, {1}, true).isEmpty());
    EXPECT_EQ(sparklinePath(rect, {5, 5, 5}, false).elementAt(1).y, 148) << "all alike";
    EXPECT_EQ(sparklinePath(rect, {-1e308, 1.5e308, -1e308}, false).elementAt(1).y, 102);
}

TEST(BoxBlur, KeepsFilledAreasAndReadsNothingBeyondTheEdges)
{
    QImage plain(64, 64, QImage::Format_ARGB32_Premultiplied);
    plain.fill(0xff204060);
    EXPECT_EQ(boxBlurred(plain, 0.1), plain);
    EXPECT_NEAR(boxBlurred(plain, 3).pixelColor(32, 32).green(), 0x40, 2);
    // An overflow would be reported by the sanitizers.
    EXPECT_EQ(boxBlurred(plain, 90).size(), plain.size());
    // A blurred edge has the profile of a Gaussian, and so has a shadow.
    QImage half(121, 121, QImage::Format_ARGB32_Premultiplied);
    half.fill(Qt::transparent);
    QPainter(&half).fillRect(60, 0, 61, 121, Qt::black);
    EXPECT_NEAR(boxBlurred(half, 8).pixelColor(68, 60).alphaF(), blurredBar(8.5, 600, 8), 0.03);
    EXPECT_NEAR(blurredBar(13, 600, 13), 0.8413, 1e-3);
}

TEST(RollingText, PairsPlacesFromTheRightAndGivesAllDigitsTheSameWidth)
{
    const QList<RollingSlot> expected{
        {{}, u'$'}, {u'$', u'1'}, {u'9', u'0'}, {u'.', u'.'}, {u'5', u'5'}};
    EXPECT_EQ(rollingSlots(u"$9.5"_s, u"$10.5"_s), expected);
    RollingText text;
    text.setText(u"$111.11"_s);
    const double ones = text.implicitWidth();
    text.setText(u"$848.08"_s);
    EXPECT_EQ(text.implicitWidth(), ones);
}

} // namespace
} // namespace corvane::look
