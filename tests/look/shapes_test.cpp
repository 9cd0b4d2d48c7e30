#include "look/paint/box_blur.h"
#include "look/paint/shapes.h"
#include "look/paint/soft_shadow.h"

#include <QColor>
#include <QPainter>

#include <gtest/gtest.h>

namespace corvane::look {
namespace {

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

} // namespace
} // namespace corvane::look
