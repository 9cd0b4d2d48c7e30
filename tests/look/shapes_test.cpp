#include "look/controls/ring_shape.h"
#include "look/paint/blur.h"
#include "look/paint/shape_items.h"
#include "look/paint/shapes.h"
#include "look/paint/soft_shadow.h"

#include <QColor>
#include <QPainter>

#include <gtest/gtest.h>

#include <numbers>

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

TEST(Blur, IsThatOfAGaussianAtEachResolution)
{
    QImage plain(64, 63, QImage::Format_ARGB32_Premultiplied);
    plain.fill(0xff204060);
    EXPECT_EQ(blurred(plain, 0.1).image, plain);
    EXPECT_EQ(blurred(plain, 90).image.width() * blurred(plain, 90).pixelSize, 64);
    for (const double sigma : {0.4, 0.8, 1.4, 1.6, 2.5, 3.5, 8.0}) {
        SCOPED_TRACE(sigma);
        // Filled areas stay as they are, and nothing comes from beyond the edges.
        const BlurredPicture filled = blurred(plain, sigma);
        const QColor middle = filled.image.pixelColor(filled.image.rect().center());
        EXPECT_NEAR(middle.green(), 0x40, 3);
        EXPECT_NEAR(middle.alpha(), 0xff, sigma > 5 ? 3 : 0);
        // A blurred edge has the profile of a Gaussian, across and down, and so has a shadow.
        QImage corner(128, 128, QImage::Format_ARGB32_Premultiplied);
        corner.fill(Qt::transparent);
        QPainter(&corner).fillRect(64, 48, 64, 80, Qt::black);
        const BlurredPicture picture = blurred(corner, sigma);
        const auto share = [&](int place, int edge) {
            return blurredBar((place + 0.5) * picture.pixelSize - edge, 600, sigma);
        };
        for (int place = 24 / picture.pixelSize; place < 88 / picture.pixelSize; ++place) {
            const int inside = 108 / picture.pixelSize;
            EXPECT_NEAR(picture.image.pixelColor(place, inside).alphaF(), share(place, 64), 0.08);
            EXPECT_NEAR(picture.image.pixelColor(inside, place).alphaF(), share(place, 48), 0.08);
        }
    }
    EXPECT_NEAR(blurredBar(13, 600, 13), 0.8413, 1e-3);
}

TEST(ContinuousBox, BendsEarlierThanACircleAndAsDeepOnTheDiagonal)
{
    const QPainterPath box = continuousBoxPath({0, 0, 100, 80}, 14);
    EXPECT_EQ(box.boundingRect(), QRectF(0, 0, 100, 80));
    const double depth = 14 * (1 - std::numbers::sqrt2 / 2);
    EXPECT_TRUE(box.contains(QPointF(depth + 0.3, depth + 0.3)));
    EXPECT_FALSE(box.contains(QPointF(depth - 0.3, depth - 0.3)));
    EXPECT_FALSE(box.contains(QPointF(15, 0.02)));
    EXPECT_TRUE(box.contains(QPointF(22, 0.02)));
    // Without the room for its curves, the box is all curve, and no larger.
    EXPECT_EQ(continuousBoxPath({0, 0, 20, 20}, 14).boundingRect(), QRectF(0, 0, 20, 20));
}

TEST(QuibMark, IsCoveredByExactlyItsShareOfEachPixel)
{
    for (const double size : {7.0, 8.0, 11.0, 26.0, 72.0}) {
        for (const double scale : {1.0, 1.25, 1.5, 2.0, 3.0}) {
            SCOPED_TRACE(testing::Message() << size << " points at " << scale);
            const int pixels = static_cast<int>(std::ceil(size * scale));
            QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
            image.fill(Qt::transparent);
            {
                QPainter painter(&image);
                painter.scale(scale, scale);
                paintQuibMark(painter, {0, 0, size, size}, Qt::white);
            }
            const double unit = size * scale / quibMarkUnits;
            double covered = 0;
            for (int y = 0; y < pixels; ++y) {
                for (int x = 0; x < pixels; ++x) {
                    covered += image.pixelColor(x, y).alphaF();
                }
            }
            EXPECT_NEAR(covered / (unit * unit), 2 * (9 + 11) + 4 * 9 + 9, 1);
            // Across the ring's left side, which is two cells wide, nothing shows through.
            for (int x = static_cast<int>(std::ceil(unit / 100)); x + 1 < 2 * unit; ++x) {
                EXPECT_EQ(image.pixelColor(x, pixels / 2).alpha(), 0xff) << x;
            }
        }
    }
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
