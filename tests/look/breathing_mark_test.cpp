#include "look/motion/breathing_mark.h"
#include "tests/look/item_fixture.h"

#include <QAbstractEventDispatcher>

namespace corvane::look {
namespace {

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

} // namespace
} // namespace corvane::look
