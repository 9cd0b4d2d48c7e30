#pragma once

#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <gtest/gtest.h>

namespace corvane::tests {

/// A single item in a window, with keyboard focus.
template <typename Item>
class ItemTest : public testing::Test
{
protected:
    ItemTest()
    {
        m_item.setParentItem(m_window.contentItem());
        m_item.setSize({m_item.implicitWidth(), m_item.implicitHeight()});
        m_window.resize(400, 200);
        m_window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&m_window));
        m_window.requestActivate();
        m_item.forceActiveFocus();
    }

    QQuickWindow m_window;
    Item m_item;
};

} // namespace corvane::tests
