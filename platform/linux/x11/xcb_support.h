#pragma once

#include <QList>
#include <QRect>

#include <xcb/shape.h>
#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace corvane::platform::xcb {

/// Deleter for memory allocated by xcb.
struct Free
{
    void operator()(void *memory) const { std::free(memory); }
};

/// Owns memory that xcb allocates for its caller: replies, events and errors.
template <typename T>
using Owned = std::unique_ptr<T, Free>;

/// Deleter that closes a connection.
struct Disconnect
{
    void operator()(xcb_connection_t *connection) const { xcb_disconnect(connection); }
};

/// A connection separate from Qt's.
using Connection = std::unique_ptr<xcb_connection_t, Disconnect>;

/// True if the application runs on X11.
[[nodiscard]] bool isPlatform();

/// Connects to the display that Qt uses and sets `root` to its root window; null on failure.
[[nodiscard]] Connection connectToDisplay(xcb_window_t &root);

/// Sets the window's region of the given kind to `region`, in pixels, from top to bottom without
/// overlaps.
void setShape(xcb_connection_t *connection, xcb_window_t window, xcb_shape_kind_t kind,
              const QList<QRect> &region);

} // namespace corvane::platform::xcb
