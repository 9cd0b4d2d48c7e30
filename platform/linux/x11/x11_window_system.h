#pragma once

#include "platform/linux/x11/xcb_floating_window.h"
#include "platform/linux/x11/xcb_island_panel.h"
#include "platform/linux/x11/xcb_pointer_monitor.h"
#include "platform/window_system.h"

#include <QByteArray>

#include <utility>
#include <vector>

namespace corvane::platform {

/// An X server, Xwayland included.
class X11WindowSystem final : public WindowSystem
{
public:
    /// Environment variables, by name, that Qt must find when the application object is made, for
    /// it to run on an X server cheaply. Those that the user has set are left out, but for a window
    /// system that the island cannot live on.
    [[nodiscard]] static std::vector<std::pair<QByteArray, QByteArray>> qtEnvironment();

    /// After the application object. `screens` outlives this.
    explicit X11WindowSystem(const QtScreens &screens);

    [[nodiscard]] PointerMonitor &pointerMonitor() override { return m_pointer; }
    [[nodiscard]] IslandPanelFactory &islandPanels() override { return m_panels; }
    [[nodiscard]] FloatingWindowFactory &floatingWindows() override { return m_windows; }

private:
    XcbPointerMonitor m_pointer;
    XcbIslandPanelFactory m_panels;
    XcbFloatingWindowFactory m_windows;
};

} // namespace corvane::platform
