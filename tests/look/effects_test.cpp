#include "look/box_blur.h"
#include "look/soft_shadow.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace corvane::look {
namespace {

TEST(BoxBlur, SpreadsADotLikeAGaussian)
{
    QImage dot(121, 121, QImage::Format_ARGB32_Premultiplied);
    dot.fill(Qt::transparent);
    // A line, so that the blurred values stay well above one grey level.
    for (int y = 0; y < dot.height(); ++y) {
        for (int x = 56; x <= 64; ++x) {
            dot.setPixel(x, y, 0xffffffff);
        }
    }
    // The deviation of three boxes of 17 pixels: sqrt(3 (17² - 1) / 12).
    const double sigma = std::sqrt(72);
    const QImage blurred = boxBlurred(dot, sigma);
    for (int x = 20; x <= 100; x += 4) {
        double expected = 0;
        for (int source = 56; source <= 64; ++source) {
            expected += 255 / (sigma * std::sqrt(2 * std::numbers::pi)) *
                        std::exp(-0.5 * std::pow((x - source) / sigma, 2));
        }
        EXPECT_NEAR(qAlpha(blurred.pixel(x, 60)), expected, 6) << x;
    }
}

TEST(BoxBlur, KeepsWhatIsTooSmallOrEvenlyFilled)
{
    QImage plain(64, 64, QImage::Format_ARGB32_Premultiplied);
    plain.fill(0xff204060);
    EXPECT_EQ(boxBlurred(plain, 0.1), plain);
    EXPECT_TRUE(boxBlurred({}, 3).isNull());
    const QRgb centre = boxBlurred(plain, 3).pixel(32, 32);
    for (const int shift : {0, 8, 16, 24}) {
        EXPECT_NEAR(static_cast<int>(centre >> shift & 0xff), 0xff204060 >> shift & 0xff, 2);
    }
    // Larger than the picture: nothing is read beyond its edges (the sanitizers watch).
    EXPECT_EQ(boxBlurred(plain, 90).size(), plain.size());
}

TEST(SoftShadow, BlursABar)
{
    EXPECT_NEAR(blurredBar(0, 600, 13), 0.5, 1e-9);
    EXPECT_NEAR(blurredBar(300, 600, 13), 1, 1e-9);
    EXPECT_NEAR(blurredBar(-44, 600, 13), 0, 1e-3);
    EXPECT_NEAR(blurredBar(13, 600, 13), 0.8413, 1e-4);
    EXPECT_LT(blurredBar(16, 32, 13), 0.8);
}

} // namespace
} // namespace corvane::look
