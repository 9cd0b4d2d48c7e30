#pragma once

#include <QList>
#include <QRect>

#include <xcb/shape.h>
#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace corvane::platform::xcb {

/// For memory that xcb allocates.
struct Free
{
    void operator()(void *memory) const { std::free(memory); }
};

/// What xcb allocates for its caller: replies, events and errors.
template <typename T>
using Owned = std::unique_ptr<T, Free>;

/// Closes a connection.
struct Disconnect
{
    void operator()(xcb_connection_t *connection) const { xcb_disconnect(connection); }
};

/// A connection of our own, besides Qt's.
using Connection = std::unique_ptr<xcb_connection_t, Disconnect>;

/// Whether the application runs on X11.
[[nodiscard]] bool isPlatform();

/// Connects to the display that Qt uses and finds its root window; null when that fails.
[[nodiscard]] Connection connectToDisplay(xcb_window_t &root);

/// Makes `region`, in pixels from top to bottom and without overlaps, the window's region of the
/// given kind.
void setShape(xcb_connection_t *connection, xcb_window_t window, xcb_shape_kind_t kind,
              const QList<QRect> &region);

} // namespace corvane::platform::xcb
