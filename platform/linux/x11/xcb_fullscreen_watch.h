#pragma once

#include "platform/linux/x11/covered_display.h"
#include "platform/linux/x11/xcb_support.h"

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <functional>
#include <memory>
#include <vector>

namespace corvane::platform {

/// Knows which windows are full screen, from the window manager (EWMH). Without one, no window is.
///
/// Waits for events, on a connection of its own: those on Qt's connection wake a second thread. It
/// hears of the root window's properties, and of what happens to the window in use and to
/// full-screen windows. Main thread.
class XcbFullscreenWatch final : public QObject
{
public:
    /// Null if there is no X server. `changed` is called after a change that may matter.
    static std::unique_ptr<XcbFullscreenWatch> open(std::function<void()> changed);

    /// True if another program covers the whole of `display`, in pixels.
    [[nodiscard]] bool covers(const QRect &display) const
    {
        return isCovered(display, m_clients, m_active);
    }

private:
    enum Name { ClientList, ActiveWindow, CurrentDesktop, State, FullScreen, Hidden, Desktop };

    XcbFullscreenWatch(xcb::Connection connection, xcb_window_t root,
                       std::function<void()> changed);

    /// Handles what has arrived.
    void drain();
    [[nodiscard]] bool matters(const xcb_generic_event_t &event) const;
    /// Asks for everything anew.
    void read();
    [[nodiscard]] QList<ClientWindow> clients() const;
    /// Follows these windows instead of those before; true if there are others among them.
    bool follow(std::vector<xcb_window_t> windows);
    void select(xcb_window_t window, std::uint32_t mask);
    /// The property's 32-bit values; none if the window does not exist.
    [[nodiscard]] std::vector<std::uint32_t> values(xcb_get_property_cookie_t asked) const;
    [[nodiscard]] xcb_get_property_cookie_t ask(xcb_window_t window, Name property) const;

    xcb::Connection m_connection;
    xcb_window_t m_root;
    std::vector<xcb_atom_t> m_atoms;
    std::function<void()> m_changed;
    QSocketNotifier m_notifier;
    QTimer m_soon;
    std::vector<xcb_window_t> m_followed;
    QList<ClientWindow> m_clients;
    xcb_window_t m_active = XCB_NONE;
};

} // namespace corvane::platform
