#include "look/pixel_wave.h"
#include "look/send_burst.h"

#include <QImage>
#include <QPainter>
#include <QQuickWindow>
#include <QTest>

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace corvane::look {
namespace {

double lowest(double low, double)
{
    return low;
}
double highest(double, double high)
{
    return high;
}

TEST(Burst, SpreadsItsSquaresEvenly)
{
    struct Case
    {
        Burst::Uniform uniform;
        double jitter;
        double dist;
        double size;
        double delay;
    };
    const Case cases[] = {{&lowest, -0.18, 30, 3, 0}, {&highest, 0.18, 64, 7, 0.06}};
    for (const Case &expected : cases) {
        Burst burst;
        burst.fire(0, expected.uniform);
        ASSERT_EQ(burst.particles().size(), 18U);
        for (std::size_t i = 0; i < 18; ++i) {
            const Particle &particle = burst.particles().at(i);
            EXPECT_NEAR(particle.angle,
                        expected.jitter + static_cast<double>(i) * std::numbers::pi / 9, 1e-12);
            EXPECT_EQ(particle.dist, expected.dist);
            EXPECT_EQ(particle.size, expected.size);
            EXPECT_EQ(particle.delay, expected.delay);
        }
    }
}

TEST(Burst, DrawsFourNumbersForEachSquareInTurn)
{
    std::vector<std::pair<double, double>> ranges;
    Burst burst;
    burst.fire(0, [&](double low, double high) {
        ranges.emplace_back(low, high);
        return low;
    });
    ASSERT_EQ(ranges.size(), 4U * 18U);
    const std::vector<std::pair<double, double>> each{{-0.18, 0.18}, {30, 64}, {3, 7}, {0, 0.06}};
    for (std::size_t i = 0; i < ranges.size(); ++i) {
        EXPECT_EQ(ranges.at(i), each.at(i % 4));
    }
}

TEST(Burst, IsClearedOneSecondAfterEachFiring)
{
    Burst burst;
    burst.fire(0, &lowest);
    burst.advance(0.5);
    EXPECT_EQ(burst.particles().size(), 18U);
    burst.fire(0.5, &highest);
    EXPECT_EQ(burst.particles().size(), 18U);
    EXPECT_EQ(burst.particles().front().size, 7);
    EXPECT_EQ(burst.firedAt(), 0.5);
    // The first one's clearing cuts the second short.
    burst.advance(0.999);
    EXPECT_EQ(burst.particles().size(), 18U);
    burst.advance(1);
    EXPECT_TRUE(burst.particles().empty());
    EXPECT_TRUE(burst.isPending());
    burst.advance(1.5);
    EXPECT_FALSE(burst.isPending());
}

TEST(Burst, SquaresFlyOutAndFade)
{
    const Particle particle{std::numbers::pi / 2, 40, 5, 0.06};
    struct Case
    {
        double seconds;
        double distance;
        double opacity;
    };
    const Case cases[] = {{0, 0, 1}, {0.06, 0, 1}, {0.81, 40, 0}, {1, 40, 0}};
    for (const Case &expected : cases) {
        const BurstSquare square = burstSquareAt(particle, expected.seconds);
        EXPECT_NEAR(square.offset.x(), 0, 1e-9);
        EXPECT_NEAR(square.offset.y(), expected.distance, 1e-9) << "downwards is positive";
        EXPECT_NEAR(square.opacity, expected.opacity, 1e-9);
    }
    // Easing out: more than half of the way in half of the time.
    const BurstSquare half = burstSquareAt(particle, 0.06 + 0.375);
    EXPECT_GT(half.offset.y(), 25);
    EXPECT_LT(half.offset.y(), 30);
    EXPECT_NEAR(half.opacity, 1 - half.offset.y() / 40, 1e-9);
}

/// An item alone in a window.
template <typename Item>
class EffectTest : public testing::Test
{
protected:
    EffectTest()
    {
        m_window.resize(200, 200);
        m_item.setParentItem(m_window.contentItem());
        m_item.setSize({m_item.implicitWidth(), m_item.implicitHeight()});
        m_window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&m_window));
    }

    QQuickWindow m_window;
    Item m_item;
};

using SendBurstTest = EffectTest<SendBurst>;

TEST_F(SendBurstTest, FiresOnlyWhenTheTriggerChangesToOneOrMore)
{
    EXPECT_FALSE(m_item.isVisible());
    EXPECT_EQ(m_item.acceptedMouseButtons(), Qt::NoButton);
    m_item.setTrigger(-1);
    EXPECT_TRUE(m_item.particles().empty());
    m_item.setTrigger(1);
    const std::vector<Particle> first = m_item.particles();
    EXPECT_EQ(first.size(), 18U);
    EXPECT_TRUE(m_item.isVisible());
    for (const Particle &particle : first) {
        EXPECT_TRUE(particle.dist >= 30 && particle.dist <= 64);
        EXPECT_TRUE(particle.size >= 3 && particle.size <= 7);
        EXPECT_TRUE(particle.delay >= 0 && particle.delay <= 0.06);
    }
    m_item.setTrigger(1);
    EXPECT_EQ(m_item.particles(), first);
    m_item.setTrigger(0);
    EXPECT_EQ(m_item.particles(), first);
    m_item.setTrigger(1);
    EXPECT_NE(m_item.particles(), first);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !m_item.isVisible(); }));
    EXPECT_TRUE(m_item.particles().empty());
}

TEST(PixelWave, RunsFromLeftToRight)
{
    struct Case
    {
        int index;
        double seconds;
        double opacity;
    };
    const Case cases[] = {
        {0, 0, 0.12},   {0, 0.2, 0.56}, {0, 0.4, 1},       {0, 0.6, 0.56},
        {0, 0.8, 0.12}, {0, 1.2, 1},    {1, 0.08, 0.12},   {1, 0.48, 1},
        {5, 0.4, 0.12}, {5, 0.8, 1},    {5, 0.3999, 0.12}, {3, 0.24 + 8.4, 1},
    };
    for (const Case &expected : cases) {
        EXPECT_NEAR(pixelWaveOpacity(expected.index, expected.seconds), expected.opacity, 1e-3)
            << expected.index << " at " << expected.seconds;
    }
}

using PixelWaveTest = EffectTest<PixelWave>;

TEST_F(PixelWaveTest, DrawsSixSquaresAndStopsWhenHidden)
{
    EXPECT_EQ(m_item.implicitWidth(), 56);
    EXPECT_EQ(m_item.implicitHeight(), 6);
    EXPECT_TRUE(m_item.isRunning());
    QImage image(56, 6, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    m_item.paint(&painter);
    painter.end();
    for (int x = 0; x < 56; ++x) {
        EXPECT_EQ(qAlpha(image.pixel(x, 3)) > 0, x % 10 < 6) << x;
    }
    m_item.setVisible(false);
    EXPECT_FALSE(m_item.isRunning());
    m_item.setVisible(true);
    EXPECT_TRUE(m_item.isRunning());
}

} // namespace
} // namespace corvane::look
