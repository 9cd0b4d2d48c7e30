#pragma once

#include <QList>
#include <QRect>

#include <cstdint>

namespace corvane::platform {

/// A window of another program, as the window manager and the server describe it.
struct ClientWindow
{
    std::uint32_t id = 0;
    /// In pixels of the root window, without the window manager's frame.
    QRect area;
    /// Neither minimised nor on another workspace.
    bool shown = false;
    /// In the state _NET_WM_STATE_FULLSCREEN.
    bool fullScreen = false;
};

/// True if a full-screen window covers the whole of `display`, in pixels, and the user has not
/// turned to an ordinary window there: `active` is the window in use, 0 for none.
[[nodiscard]] bool isCovered(const QRect &display, const QList<ClientWindow> &clients,
                             std::uint32_t active);

} // namespace corvane::platform
