#include "look/controls/ring_shape.h"
#include "look/paint/box_blur.h"
#include "look/paint/shape_items.h"
#include "look/paint/shapes.h"
#include "look/paint/soft_shadow.h"

#include <QColor>
#include <QPainter>

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

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

TEST(RoundedBox, HasItsBorderOnTheEdgeInWholePixels)
{
    struct Case
    {
        double scale;
        int outside;
        int inside;
    };
    RoundedBox box;
    box.setSize({22, 22});
    box.setProperty("radius", 4.0);
    box.setProperty("color", QColor(Qt::black));
    box.setProperty("borderColor", QColor(Qt::white));
    box.setProperty("borderWidth", 1.0);
    for (const auto &[scale, outside, inside] :
         {Case{1, 0, 1}, Case{2, 1, 1}, Case{3, 1, 2}, Case{4, 2, 2}}) {
        SCOPED_TRACE(scale);
        QImage image(QSizeF(22 * scale, 22 * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        {
            QPainter painter(&image);
            painter.scale(scale, scale);
            box.paint(&painter);
        }
        const int edge = static_cast<int>(scale);
        const int middle = image.height() / 2;
        for (int x = 0; x < 2 * edge + 2; ++x) {
            const QRgb expected = x < edge - outside  ? 0
                                  : x < edge + inside ? 0xffffffff
                                                      : 0xff000000;
            EXPECT_EQ(image.pixel(x, middle), expected) << x;
            EXPECT_EQ(image.pixel(image.width() - 1 - x, middle), expected) << x;
        }
    }
}

TEST(RingShape, LiesInWholePixelsWithAGap)
{
    // A control that lies between pixels, and one that a press has shrunk.
    for (const QRectF &control : {QRectF(28.3, 40.6, 100, 25), QRectF(30.5, 41, 97.7, 24.2)}) {
        for (const auto &[scale, line, gap] : std::vector<std::tuple<double, int, int>>{
                 {1, 2, 2}, {1.25, 2, 2}, {1.5, 2, 2}, {2, 3, 3}, {0.1, 1, 1}}) {
            const RingPlace place = ringPlace(control, scale);
            EXPECT_EQ(place.line, line) << scale;
            EXPECT_EQ(place.gap, gap) << scale;
            const auto near = [&](int edge, double point, int side) {
                EXPECT_NEAR(edge + side * (line + gap), point * scale, 0.5) << scale;
            };
            near(place.outer.x(), control.left(), 1);
            near(place.outer.y(), control.top(), 1);
            near(place.outer.x() + place.outer.width(), control.right(), -1);
            near(place.outer.y() + place.outer.height(), control.bottom(), -1);
        }
    }
}

} // namespace
} // namespace corvane::look
