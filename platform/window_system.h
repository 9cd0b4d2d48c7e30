#pragma once

namespace corvane::platform {

class FloatingWindowFactory;
class IslandPanelFactory;
class PointerMonitor;

/// The display system of this desktop, such as an X server: the windows and the pointer position,
/// which the island needs together. One is chosen when the program starts. Main thread.
class WindowSystem
{
public:
    WindowSystem() = default;
    WindowSystem(const WindowSystem &) = delete;
    WindowSystem &operator=(const WindowSystem &) = delete;
    virtual ~WindowSystem() = default;

    /// The references are valid for the lifetime of this object.
    [[nodiscard]] virtual PointerMonitor &pointerMonitor() = 0;
    [[nodiscard]] virtual IslandPanelFactory &islandPanels() = 0;
    [[nodiscard]] virtual FloatingWindowFactory &floatingWindows() = 0;
};

} // namespace corvane::platform
