#pragma once

namespace corvane::platform {

class FloatingWindowFactory;
class IslandPanelFactory;
class PointerMonitor;

/// What draws windows on this desktop and knows where the pointer is, such as an X server: the
/// three services that only together make an island. One is chosen when the program starts. Main
/// thread.
class WindowSystem
{
public:
    WindowSystem() = default;
    WindowSystem(const WindowSystem &) = delete;
    WindowSystem &operator=(const WindowSystem &) = delete;
    virtual ~WindowSystem() = default;

    /// Each lives as long as this object.
    [[nodiscard]] virtual PointerMonitor &pointerMonitor() = 0;
    [[nodiscard]] virtual IslandPanelFactory &islandPanels() = 0;
    [[nodiscard]] virtual FloatingWindowFactory &floatingWindows() = 0;
};

} // namespace corvane::platform
