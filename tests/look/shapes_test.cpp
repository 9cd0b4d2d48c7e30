#include "look/controls/rolling_text.h"
#include "look/paint/box_blur.h"
#include "look/paint/shapes.h"
#include "look/paint/soft_shadow.h"
#include "tests/fakes/table.h"

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
    EXPECT_FALSE(path.contains(QPointF(210 - 3.8, 80 - 3.8)));
    EXPECT_TRUE(notchShapePath({0, 0, 50, 20}, 0).contains(QPointF(0.1, 19.9)));
    // The radius is limited to half the height: the curve meets the side at mid-height.
    const QPainterPath round = notchShapePath({0, 0, 50, 20}, 400);
    EXPECT_TRUE(round.contains(QPointF(0.05, 9.5)));
    EXPECT_FALSE(round.contains(QPointF(0.05, 13)));
    EXPECT_EQ(notchShapePath({0, 0, 50, 0}, 8).boundingRect().height(), 0);
}

TEST(Dither, FillsTheShareOfCellsThatTheDensitySays)
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

TEST(Dither, LeavesPartialCellsOutAndPaintsItsTileInDevicePixels)
{
    const DitherPattern pattern = ditherPattern(11, 7, 2, 1, 0);
    EXPECT_EQ(pattern.columns, 5);
    EXPECT_EQ(pattern.rows, 3);
    EXPECT_EQ(pattern.rowMasks.first(), 0b1111);
    EXPECT_EQ(pattern.rowMasks.last(), 0);
    for (const auto &[width, height, cell] :
         {std::tuple{1.0, 9.0, 2.0}, {9.0, 1.0, 2.0}, {-4.0, 9.0, 2.0}, {9.0, 9.0, 0.0}}) {
        EXPECT_EQ(ditherPattern(width, height, cell, 1, 1).rows, 0);
    }
    const QImage tile = ditherTile(ditherPattern(8, 4, 2, 1, 0), 2, QColor(255, 0, 0, 128), 1.5);
    EXPECT_EQ(tile.size(), QSize(12, 6));
    EXPECT_EQ(tile.pixelColor(0, 2).alpha(), 128);
    EXPECT_EQ(tile.pixelColor(0, 3).alpha(), 0);
}

TEST(SparklineShape, SpansTheWidthWithinItsMargins)
{
    const QRectF rect(10, 100, 90, 50);
    const QPainterPath line = sparklinePath(rect, {2, 4, 3, 2}, false);
    const QPointF expected[] = {{10, 148}, {40, 102}, {70, 125}, {100, 148}};
    ASSERT_EQ(line.elementCount(), 4);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(QPointF(line.elementAt(i)), expected[i]) << i;
    }
    EXPECT_TRUE(sparklinePath(rect, {2, 4, 3, 2}, true).contains(QPointF(40, 149.5)));
    EXPECT_TRUE(sparklinePath(rect, {1}, true).isEmpty());
    EXPECT_EQ(sparklinePath(rect, {5, 5, 5}, false).elementAt(1).y, 148);
    EXPECT_EQ(sparklinePath(rect, {-1e308, 1.5e308, -1e308}, false).elementAt(1).y, 102);
}

TEST(BoxBlur, KeepsFilledAreasAndReadsNothingBeyondTheEdges)
{
    QImage plain(64, 64, QImage::Format_ARGB32_Premultiplied);
    plain.fill(0xff204060);
    EXPECT_EQ(boxBlurred(plain, 0.1), plain);
    EXPECT_TRUE(boxBlurred({}, 3).isNull());
    EXPECT_NEAR(boxBlurred(plain, 3).pixelColor(32, 32).green(), 0x40, 2);
    // An overflow would be reported by the sanitizers.
    EXPECT_EQ(boxBlurred(plain, 90).size(), plain.size());
    // A blurred edge has the profile of a Gaussian.
    QImage half(121, 121, QImage::Format_ARGB32_Premultiplied);
    half.fill(Qt::transparent);
    QPainter(&half).fillRect(60, 0, 61, 121, Qt::black);
    EXPECT_NEAR(boxBlurred(half, 8).pixelColor(68, 60).alphaF(), blurredBar(8.5, 600, 8), 0.03);
}

TEST(SoftShadow, BlursABar)
{
    for (const auto &[place, share] : {std::pair{0.0, 0.5}, {300, 1}, {-44, 0}, {13, 0.8413}}) {
        EXPECT_NEAR(blurredBar(place, 600, 13), share, 1e-3) << place;
    }
    EXPECT_LT(blurredBar(16, 32, 13), 0.8);
}

TEST(RollingText, PairsPlacesFromTheRightAndGivesAllDigitsTheSameWidth)
{
    for (const auto &[from, to, marks] : tests::Table<QString, QString, QString>{
             {u"$150.25"_s, u"$151.35"_s, u"===~=~="_s},
             {u"$999.50"_s, u"$1000.50"_s, u"+~~~~==="_s},
             {QString(), u"12"_s, u"++"_s},
         }) {
        QString seen;
        QString left;
        QString came;
        for (const RollingSlot &place : rollingSlots(from, to)) {
            seen += place.isSteady() ? u'=' : place.leaving && place.coming ? u'~' : u'+';
            left += place.leaving ? QString(*place.leaving) : QString();
            came += place.coming ? QString(*place.coming) : QString();
        }
        EXPECT_EQ(seen, marks);
        EXPECT_EQ(left, from);
        EXPECT_EQ(came, to);
    }
    RollingText text;
    text.setText(u"$111.11"_s);
    const double ones = text.implicitWidth();
    text.setText(u"$848.08"_s);
    EXPECT_EQ(text.implicitWidth(), ones);
}

} // namespace
} // namespace corvane::look
