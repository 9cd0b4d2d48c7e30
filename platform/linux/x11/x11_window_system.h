#pragma once

#include "platform/linux/x11/xcb_floating_window.h"
#include "platform/linux/x11/xcb_island_panel.h"
#include "platform/linux/x11/xcb_pointer_monitor.h"
#include "platform/window_system.h"

#include <QByteArray>

#include <utility>
#include <vector>

namespace corvane::platform {

/// An X server, including Xwayland.
class X11WindowSystem final : public WindowSystem
{
public:
    /// Environment variables (name, value) that must be set before the application object is
    /// created, so that Qt uses the X server efficiently. Excludes variables that the user has set,
    /// unless they select a window system on which the island cannot work.
    [[nodiscard]] static std::vector<std::pair<QByteArray, QByteArray>> qtEnvironment();

    /// Must be created after the application object. `screens` must outlive this object.
    X11WindowSystem(const QtScreens &screens, WhileCovered whileCovered);

    [[nodiscard]] PointerMonitor &pointerMonitor() override { return m_pointer; }
    [[nodiscard]] IslandPanelFactory &islandPanels() override { return m_panels; }
    [[nodiscard]] FloatingWindowFactory &floatingWindows() override { return m_windows; }

private:
    XcbPointerMonitor m_pointer;
    XcbIslandPanelFactory m_panels;
    XcbFloatingWindowFactory m_windows;
};

} // namespace corvane::platform
