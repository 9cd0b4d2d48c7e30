#include "platform/linux/x11/window_region.h"
#include "platform/linux/x11/xcb_floating_window.h"
#include "tests/platform/wait_until.h"
#include "tests/platform/x11_display.h"

#include <QQuickItem>
#include <QQuickWindow>

#include <gtest/gtest.h>

namespace corvane::tests {
namespace {

using platform::XcbFloatingWindow;
using Kind = X11Display::Kind;

class X11FloatingWindow : public testing::Test
{
protected:
    void SetUp() override
    {
        m_window->show();
        ASSERT_TRUE(waitUntil([&] { return m_display.isViewable(id()); }));
    }

    [[nodiscard]] xcb_window_t id() { return static_cast<xcb_window_t>(window().winId()); }
    [[nodiscard]] QQuickWindow &window() { return m_window->window(); }

    const QRect m_geometry{40, 60, 200, 240};
    X11Display m_display;
    std::unique_ptr<XcbFloatingWindow> m_window = std::make_unique<XcbFloatingWindow>(
        QStringLiteral("tour"), m_geometry, std::make_unique<QQuickItem>());
};

TEST_F(X11FloatingWindow, IsCutToItsCornersAndFloats)
{
    const double scale = window().devicePixelRatio();
    const QRect pixels({0, 0}, (QSizeF(m_geometry.size()) * scale).toSize());
    EXPECT_EQ(m_display.shape(id()),
              platform::roundedRegion(pixels, XcbFloatingWindow::cornerRadius * scale,
                                      platform::RoundCorners::All));
    EXPECT_TRUE(m_display.hasProperty(id(), "_KDE_NET_WM_BLUR_BEHIND_REGION"));
    EXPECT_EQ(window().contentItem()->childItems().constLast()->size(), m_geometry.size());

    const auto other = m_display.makeWindow(QRect(0, 0, 600, 700), Kind::Managed);
    ASSERT_TRUE(waitUntil([&] { return m_display.hasProperty(other, "WM_STATE"); }));
    m_display.raise(other);
    EXPECT_TRUE(waitUntil([&] { return m_display.isAbove(id(), other); }));
}

} // namespace
} // namespace corvane::tests
