#include "platform/linux/toolkit/qt_screens.h"
#include "platform/linux/x11/xcb_island_panel.h"
#include "platform/linux/x11/xcb_pointer_monitor.h"
#include "tests/platform/wait_until.h"
#include "tests/platform/x11_display.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QProcess>
#include <QScreen>

#include <gtest/gtest.h>

namespace corvane::tests {
namespace {

using platform::QtScreens;
using platform::XcbPointerMonitor;

class X11Pointer : public testing::Test
{
protected:
    X11Pointer() { m_display.movePointer({300, 300}); }

    [[nodiscard]] QPointF pointOf(QPoint pixel) const
    {
        const double scale = QGuiApplication::primaryScreen()->devicePixelRatio();
        const QPointF point = (QPointF(pixel) + QPointF(0.5, 0.5)) / scale;
        return {point.x(), m_screens.main()->frame.height() - point.y()};
    }

    X11Display m_display;
    QtScreens m_screens;
    XcbPointerMonitor m_monitor{m_screens};
};

TEST_F(X11Pointer, MergesABurstOverAForeignWindowAndNeverLosesItsEnd)
{
    m_display.makeWindow(QRect(0, 0, 640, 400), X11Display::Kind::Popup);
    int calls = 0;
    std::optional<QPointF> seen;
    const auto token = m_monitor.addGlobalMonitor([&] {
        ++calls;
        seen = m_monitor.location();
    });
    ASSERT_NE(token, nullptr);
    EXPECT_EQ(m_monitor.addLocalMonitor([] {}), nullptr);
    for (int round = 0; round < 5; ++round) {
        calls = 0;
        QElapsedTimer time;
        time.start();
        for (int step = 0; step <= 200; ++step) {
            m_display.movePointer({100 + step, 100 + round});
            if (step % 20 == 0) {
                QCoreApplication::processEvents();
            }
        }
        EXPECT_TRUE(waitUntil([&] { return seen == pointOf({300, 100 + round}); }));
        EXPECT_LE(calls, 2 + time.elapsed() / XcbPointerMonitor::mergeInterval.count());
    }
}

TEST_F(X11Pointer, NoticesAWarpOneCallLateAtMost)
{
    EXPECT_EQ(m_monitor.location(), pointOf({300, 300}));
    const auto token = m_monitor.addGlobalMonitor([] {});
    ASSERT_TRUE(waitUntil([&] { return m_monitor.location() == pointOf({300, 300}); }));
    m_display.warpPointer({50, 60});
    static_cast<void>(m_monitor.location());
    EXPECT_TRUE(waitUntil([&] { return m_monitor.location() == pointOf({50, 60}); }));
}

TEST_F(X11Pointer, StopsWithItsTokenEvenInsideACall)
{
    int calls = 0;
    int others = 0;
    std::unique_ptr<platform::PointerMonitor::Token> token;
    token = m_monitor.addGlobalMonitor([&] {
        ++calls;
        token.reset();
    });
    const auto other = m_monitor.addGlobalMonitor([&] { ++others; });
    m_display.movePointer({20, 30});
    ASSERT_TRUE(waitUntil([&] { return others == 1; }));
    m_display.movePointer({40, 30});
    ASSERT_TRUE(waitUntil([&] { return others == 2; }));
    EXPECT_EQ(calls, 1);
}

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
