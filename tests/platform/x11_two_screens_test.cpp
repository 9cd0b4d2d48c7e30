#include "platform/linux/toolkit/qt_screens.h"
#include "platform/linux/x11/xcb_island_panel.h"
#include "platform/linux/x11/xcb_pointer_monitor.h"
#include "tests/platform/wait_until.h"
#include "tests/platform/x11_display.h"

#include <QGuiApplication>
#include <QProcess>
#include <QScreen>

#include <gtest/gtest.h>

namespace corvane::tests {
namespace {

using platform::QtScreens;

/// Two monitors side by side on one display; the right one is the primary.
class X11TwoScreens : public testing::Test
{
protected:
    ~X11TwoScreens() override
    {
        xrandr(QStringLiteral("--delmonitor left"));
        xrandr(QStringLiteral("--delmonitor right"));
        // Restores the display for the other tests.
        EXPECT_TRUE(waitUntil([&] { return m_screens.main()->frame == m_before; }));
    }

    static bool xrandr(const QString &arguments)
    {
        return QProcess::execute(QStringLiteral("xrandr"), arguments.split(u' ')) == 0;
    }

    void SetUp() override
    {
        m_screens.observeChanges([this] { ++m_changes; });
        ASSERT_TRUE(xrandr(QStringLiteral("--setmonitor *right 640/170x800/210+640+0 screen")));
        ASSERT_TRUE(xrandr(QStringLiteral("--setmonitor left 640/170x700/210+0+0 none")));
        ASSERT_TRUE(waitUntil([this] { return m_screens.all().size() == 2; }));
    }

    QtScreens m_screens{QStringLiteral("100x38")};
    const QRectF m_before = m_screens.main()->frame;
    int m_changes = 0;
    const double m_scale = QGuiApplication::primaryScreen()->devicePixelRatio();
};

TEST_F(X11TwoScreens, HaveThePointerAndThePanelInTheSamePlace)
{
    EXPECT_TRUE(waitUntil([this] { return m_changes > 0; }));
    X11Display display;
    const platform::XcbPointerMonitor monitor(m_screens);
    display.movePointer({740, 100});
    EXPECT_EQ(monitor.location(), QPointF(100.5 / m_scale, 699.5 / m_scale));
    // The left monitor is lower.
    display.movePointer({100, 750});
    EXPECT_EQ(monitor.location(), std::nullopt);
    const double width = 640 / m_scale;
    for (const platform::Screen &screen : m_screens.all()) {
        const bool isLeft = screen.name == QStringLiteral("left");
        const double height = (isLeft ? 700 : 800) / m_scale;
        EXPECT_EQ(screen.frame, QRectF(isLeft ? -640 : 0, 800 / m_scale - height, width, height));
        EXPECT_EQ(screen.safeAreaTop, isLeft ? 0 : 38);
        platform::XcbIslandPanel panel(m_screens, screen.frame);
        panel.show();
        panel.setFrame({screen.frame.x() + 10, screen.frame.bottom() - 60, 100, 60});
        const auto id = static_cast<xcb_window_t>(panel.window().winId());
        const QRectF expected((isLeft ? 0 : 640) + 10 * m_scale, 0, 100 * m_scale, 60 * m_scale);
        EXPECT_TRUE(waitUntil([&] { return display.geometry(id) == expected.toRect(); }));
    }
}

} // namespace
} // namespace corvane::tests
