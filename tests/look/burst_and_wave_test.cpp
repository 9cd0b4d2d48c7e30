#include "look/motion/breathing_mark.h"
#include "look/motion/pixel_wave.h"
#include "look/motion/send_burst.h"
#include "tests/look/item_fixture.h"

#include <QAbstractEventDispatcher>

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

using BreathingMarkTest = tests::ItemTest<BreathingMark>;

TEST_F(BreathingMarkTest, KeepsTimeOnlyWhileItShows)
{
    const auto keepsTime = [&] {
        return !QAbstractEventDispatcher::instance()->registeredTimers(&m_item).isEmpty();
    };
    EXPECT_TRUE(keepsTime());
    for (const bool visible : {false, true}) {
        m_item.setVisible(visible);
        EXPECT_EQ(keepsTime(), visible) << "the item";
    }
    for (const bool visible : {false, true}) {
        m_window.setVisible(visible);
        EXPECT_EQ(keepsTime(), visible) << "its window";
    }
    m_item.setParentItem(nullptr);
    EXPECT_FALSE(keepsTime());
}

using PixelWaveTest = tests::ItemTest<PixelWave>;

TEST_F(PixelWaveTest, RunsFromLeftToRightAndStopsWhenHidden)
{
    for (int index = 0; index < 6; ++index) {
        EXPECT_NEAR(pixelWaveOpacity(index, index * 0.08), 0.12, 1e-6);
        EXPECT_NEAR(pixelWaveOpacity(index, index * 0.08 + 0.4 + 0.8 * index), 1, 1e-6);
    }
    for (const bool visible : {true, false, true}) {
        m_item.setVisible(visible);
        EXPECT_EQ(m_item.isRunning(), visible);
    }
}

} // namespace
} // namespace corvane::look
