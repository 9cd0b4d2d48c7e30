#include "look/motion/breathing_mark.h"
#include "look/motion/pixel_wave.h"
#include "look/motion/send_burst.h"
#include "tests/look/item_fixture.h"

#include <QAbstractEventDispatcher>

namespace corvane::look {
namespace {

using SendBurstTest = tests::ItemTest<SendBurst>;

TEST_F(SendBurstTest, FiresOnlyWhenTheTriggerChangesToOneOrMore)
{
    m_item.setTrigger(-1);
    EXPECT_TRUE(m_item.particles().empty());
    m_item.setTrigger(1);
    const std::vector<Particle> first = m_item.particles();
    ASSERT_FALSE(first.empty());
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

TEST_F(PixelWaveTest, RunsFromLeftToRightWhileItShows)
{
    EXPECT_GT(pixelWaveOpacity(0, 0.2), pixelWaveOpacity(1, 0.2));
    for (const bool visible : {true, false, true}) {
        m_item.setVisible(visible);
        EXPECT_EQ(m_item.isRunning(), visible);
    }
}

} // namespace
} // namespace corvane::look
