#include "look/pixel_wave.h"
#include "look/send_burst.h"
#include "tests/fakes/table.h"
#include "tests/look/item_fixture.h"

#include <QImage>
#include <QPainter>

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
    for (const auto &[uniform, jitter, dist, size, delay] :
         tests::Table<Burst::Uniform, double, double, double, double>{
             {&lowest, -0.18, 30, 3, 0}, {&highest, 0.18, 64, 7, 0.06}}) {
        Burst burst;
        burst.fire(0, uniform);
        ASSERT_EQ(burst.particles().size(), 18U);
        for (std::size_t i = 0; i < 18; ++i) {
            const Particle &particle = burst.particles().at(i);
            EXPECT_NEAR(particle.angle, jitter + static_cast<double>(i) * std::numbers::pi / 9,
                        1e-12);
            EXPECT_EQ(particle.dist, dist);
            EXPECT_EQ(particle.size, size);
            EXPECT_EQ(particle.delay, delay);
        }
    }
}

TEST(Burst, IsClearedOneSecondAfterEachFiring)
{
    Burst burst;
    burst.fire(0, &lowest);
    burst.fire(0.5, &highest);
    EXPECT_EQ(burst.particles().size(), 18U);
    EXPECT_EQ(burst.particles().front().size, 7);
    // The first one's clearing cuts the second short.
    burst.advance(0.999);
    EXPECT_EQ(burst.particles().size(), 18U);
    burst.advance(1);
    EXPECT_TRUE(burst.particles().empty());
    EXPECT_TRUE(burst.isPending());
    burst.advance(1.5);
    EXPECT_FALSE(burst.isPending());
}

using SendBurstTest = tests::ItemTest<SendBurst>;

TEST_F(SendBurstTest, FiresOnlyWhenTheTriggerChangesToOneOrMore)
{
    EXPECT_FALSE(m_item.isVisible());
    EXPECT_EQ(m_item.acceptedMouseButtons(), Qt::NoButton);
    m_item.setTrigger(-1);
    EXPECT_TRUE(m_item.particles().empty());
    m_item.setTrigger(1);
    const std::vector<Particle> first = m_item.particles();
    EXPECT_EQ(first.size(), 18U);
    EXPECT_NE(first[0].dist, first[1].dist);
    for (const int same : {1, 0}) {
        m_item.setTrigger(same);
        EXPECT_EQ(m_item.particles(), first);
    }
    m_item.setTrigger(1);
    EXPECT_NE(m_item.particles(), first);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !m_item.isVisible(); }));
    EXPECT_TRUE(m_item.particles().empty());
}

TEST(PixelWave, RunsFromLeftToRight)
{
    for (const auto &[index, seconds, opacity] :
         tests::Table<int, double, double>{{0, 0, 0.12},
                                           {0, 0.2, 0.56},
                                           {0, 0.4, 1},
                                           {0, 0.8, 0.12},
                                           {0, 1.2, 1},
                                           {1, 0.08, 0.12},
                                           {1, 0.48, 1},
                                           {5, 0.3999, 0.12},
                                           {5, 0.8, 1},
                                           {3, 0.24 + 8.4, 1}}) {
        EXPECT_NEAR(pixelWaveOpacity(index, seconds), opacity, 1e-3) << index << ' ' << seconds;
    }
}

using PixelWaveTest = tests::ItemTest<PixelWave>;

TEST_F(PixelWaveTest, DrawsSixSquaresAndStopsWhenHidden)
{
    EXPECT_EQ(m_item.size(), QSizeF(56, 6));
    QImage image(56, 6, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    m_item.paint(&painter);
    painter.end();
    for (int x = 0; x < 56; ++x) {
        EXPECT_EQ(qAlpha(image.pixel(x, 3)) > 0, x % 10 < 6) << x;
    }
    for (const bool visible : {true, false, true}) {
        m_item.setVisible(visible);
        EXPECT_EQ(m_item.isRunning(), visible);
    }
}

} // namespace
} // namespace corvane::look
