#include "look/pixel_wave.h"
#include "look/send_burst.h"
#include "tests/fakes/table.h"
#include "tests/look/item_fixture.h"

#include <QImage>
#include <QPainter>

#include <numbers>

namespace corvane::look {
namespace {

using SendBurstTest = tests::ItemTest<SendBurst>;

TEST_F(SendBurstTest, FiresOnlyWhenTheTriggerChangesToOneOrMore)
{
    EXPECT_FALSE(m_item.isVisible());
    EXPECT_EQ(m_item.acceptedMouseButtons(), Qt::NoButton);
    m_item.setTrigger(-1);
    EXPECT_TRUE(m_item.particles().empty());
    m_item.setTrigger(1);
    const std::vector<Particle> first = m_item.particles();
    ASSERT_EQ(first.size(), 18U);
    for (std::size_t i = 0; i < 18; ++i) {
        const auto &[angle, dist, size, delay] = first[i];
        EXPECT_NEAR(angle, static_cast<double>(i) * std::numbers::pi / 9, 0.18);
        EXPECT_TRUE(dist >= 30 && dist <= 64 && size >= 3 && size <= 7 && delay <= 0.06);
    }
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
