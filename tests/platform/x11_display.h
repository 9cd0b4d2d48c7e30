#pragma once

#include "platform/linux/x11/xcb_support.h"

#include <QByteArray>
#include <QPoint>
#include <QRect>

#include <xcb/xcb.h>

#include <vector>

namespace corvane::tests {

/// Another client of the display, with its own windows, that moves the pointer as a user does.
class X11Display
{
public:
    enum class Kind {
        Managed, ///< an ordinary window
        Popup,   ///< not managed by the window manager, like a menu
    };

    X11Display();
    ~X11Display();
    X11Display(const X11Display &) = delete;
    X11Display &operator=(const X11Display &) = delete;

    [[nodiscard]] xcb_window_t root() const { return m_root; }

    /// Maps a window and waits until it is visible.
    xcb_window_t makeWindow(const QRect &pixels, Kind kind, xcb_window_t parent = XCB_NONE);
    /// Sets the list of managed windows, from bottom to top, in place of the window manager.
    void announceStacking(const std::vector<xcb_window_t> &windows);
    void raise(xcb_window_t window);
    void hide(xcb_window_t window);
    /// Asks the window manager for the whole screen.
    void makeFullScreen(xcb_window_t window);

    void movePointer(QPoint pixel);

    /// True if `window` is above `other`, or above its frame.
    [[nodiscard]] bool isAbove(xcb_window_t window, xcb_window_t other);
    [[nodiscard]] bool isViewable(xcb_window_t window);
    [[nodiscard]] QRect geometry(xcb_window_t window);
    /// True if the property exists and is not empty.
    [[nodiscard]] bool hasProperty(xcb_window_t window, const QByteArray &name);

private:
    [[nodiscard]] xcb_atom_t atom(const QByteArray &name);
    [[nodiscard]] platform::xcb::Owned<xcb_query_tree_reply_t> tree(xcb_window_t window);
    void sync();

    xcb_window_t m_root = XCB_NONE;
    platform::xcb::Connection m_connection;
    std::vector<xcb_window_t> m_windows;
};

} // namespace corvane::tests
