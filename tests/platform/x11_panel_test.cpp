#include "platform/linux/toolkit/qt_screens.h"
#include "platform/linux/x11/xcb_island_panel.h"
#include "tests/platform/wait_until.h"
#include "tests/platform/x11_display.h"

#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>

#include <gtest/gtest.h>

#include <memory>

namespace corvane::tests {
namespace {

using platform::IslandPanel;
using platform::QtScreens;
using platform::XcbIslandPanel;
using Kind = X11Display::Kind;

class X11Panel : public testing::Test
{
protected:
    X11Panel()
    {
        const QRectF screen = m_screens.main()->frame;
        // Like the island's stage: at the top centre of the screen.
        m_frame = QRectF(std::round(screen.center().x()) - 150, screen.height() - 200, 300, 200);
        m_panel = std::make_unique<XcbIslandPanel>(m_screens, m_frame);
        m_panel->setContent(&m_content);
        m_panel->show();
    }

    void SetUp() override
    {
        ASSERT_TRUE(waitUntil([&] { return m_display.isViewable(id()); }));
        // The window manager may still be processing the windows of the previous test.
        ASSERT_TRUE(waitUntil(
            [&] { return !m_display.hasProperty(m_display.root(), "_NET_CLIENT_LIST"); }));
    }

    [[nodiscard]] xcb_window_t id() const
    {
        return static_cast<xcb_window_t>(m_panel->window().winId());
    }
    [[nodiscard]] double scale() const { return m_panel->window().devicePixelRatio(); }
    /// The screen pixel of a point in the panel, which is at the top of the screen.
    [[nodiscard]] QPoint pixel(QPointF point) const
    {
        return ((QPointF(m_frame.x(), 0) + point) * scale()).toPoint();
    }
    /// The area of the panel and a margin.
    [[nodiscard]] QRect beneath() const
    {
        return {QPoint(pixel({0, 0}).x() - 10, 0),
                QSizeF(m_frame.size() * scale()).toSize() + QSize(20, 20)};
    }
    [[nodiscard]] bool isAbove(xcb_window_t other) { return m_display.isAbove(id(), other); }

    X11Display m_display;
    QtScreens m_screens;
    QRectF m_frame;
    QQuickItem m_content;
    std::unique_ptr<XcbIslandPanel> m_panel;
};

TEST_F(X11Panel, StaysAboveTheWindowManagersWindows)
{
    const auto first = m_display.makeWindow(beneath(), Kind::Managed);
    const auto second = m_display.makeWindow(beneath(), Kind::Managed);
    ASSERT_TRUE(
        waitUntil([&] { return m_display.isViewable(first) && m_display.isViewable(second); }));
    EXPECT_TRUE(waitUntil([&] { return isAbove(first) && isAbove(second); }));
    m_display.raise(first);
    EXPECT_TRUE(waitUntil([&] { return m_display.isAbove(first, second) && isAbove(first); }));
    m_display.makeFullScreen(second);
    EXPECT_TRUE(waitUntil([&] { return m_display.isAbove(second, first) && isAbove(second); }));
}

// Window managers raise windows in different ways; this test raises one to the very top.
TEST_F(X11Panel, LeavesMenusAboveItWhileItRests)
{
    const auto frame = m_display.makeWindow(beneath(), Kind::Popup);
    const auto client = m_display.makeWindow(QRect(0, 0, 50, 50), Kind::Popup, frame);
    const auto menu = m_display.makeWindow(beneath(), Kind::Popup);
    ASSERT_TRUE(!isAbove(frame) && !isAbove(menu));

    m_display.announceStacking({client});
    EXPECT_TRUE(waitUntil([&] { return isAbove(frame); }));
    EXPECT_FALSE(isAbove(menu));

    m_panel->setLevel(IslandPanel::Level::Active);
    EXPECT_TRUE(waitUntil([&] { return isAbove(menu); }));
    m_display.raise(menu);
    m_display.raise(frame);
    ASSERT_TRUE(!isAbove(frame) && !isAbove(menu));
    m_display.announceStacking({client});
    EXPECT_TRUE(waitUntil([&] { return isAbove(frame) && isAbove(menu); }));
    // One that appears later is below the panel too, until that rests.
    const auto later = m_display.makeWindow(beneath(), Kind::Popup);
    EXPECT_TRUE(waitUntil([&] { return isAbove(later); }));
    m_panel->setLevel(IslandPanel::Level::Resting);
    EXPECT_TRUE(waitUntil([&] { return !isAbove(later); }));
    EXPECT_TRUE(isAbove(frame));
}

TEST_F(X11Panel, StaysBelowALockedScreen)
{
    // An earlier test may have announced a window with the same id as one of these.
    m_display.announceStacking({});
    const QRect whole = m_display.geometry(m_display.root());
    const auto menu = m_display.makeWindow(beneath(), Kind::Popup);
    const auto locker = m_display.makeWindow(whole, Kind::Popup);
    const auto dialog = m_display.makeWindow(beneath(), Kind::Popup);
    m_panel->setLevel(IslandPanel::Level::Active);
    EXPECT_TRUE(waitUntil([&] { return isAbove(menu); }));
    EXPECT_FALSE(isAbove(locker));
    m_display.hide(locker);
    m_panel->show();
    EXPECT_TRUE(waitUntil([&] { return isAbove(dialog); }));
}

} // namespace
} // namespace corvane::tests
