#include "tests/platform/x11_display.h"

#include <xcb/xtest.h>

#include <algorithm>
#include <array>
#include <span>

namespace corvane::tests {

namespace {

using platform::xcb::Owned;

/// Waits for the reply to a request, such as xcb_query_tree_reply for xcb_query_tree.
template <typename Reply, typename Cookie>
Owned<Reply> ask(xcb_connection_t *connection,
                 Reply *(*answer)(xcb_connection_t *, Cookie, xcb_generic_error_t **),
                 Cookie question)
{
    return Owned<Reply>(answer(connection, question, nullptr));
}

} // namespace

X11Display::X11Display()
    : m_connection(platform::xcb::connectToDisplay(m_root))
{}

X11Display::~X11Display()
{
    for (const xcb_window_t window : m_windows) {
        xcb_destroy_window(m_connection.get(), window);
    }
    sync();
}

void X11Display::sync()
{
    // The reply means that the server has processed all earlier requests.
    ask(m_connection.get(), xcb_get_input_focus_reply, xcb_get_input_focus(m_connection.get()));
}

xcb_atom_t X11Display::atom(const QByteArray &name)
{
    const auto length = static_cast<std::uint16_t>(name.size());
    const auto reply = ask(m_connection.get(), xcb_intern_atom_reply,
                           xcb_intern_atom(m_connection.get(), 0, length, name.constData()));
    return reply ? reply->atom : XCB_ATOM_NONE;
}

xcb_window_t X11Display::makeWindow(const QRect &pixels, Kind kind, xcb_window_t parent)
{
    const xcb_window_t window = xcb_generate_id(m_connection.get());
    const std::array<std::uint32_t, 2> values{0x00ffffff, kind == Kind::Popup ? 1U : 0U};
    xcb_create_window(
        m_connection.get(), XCB_COPY_FROM_PARENT, window, parent == XCB_NONE ? m_root : parent,
        static_cast<std::int16_t>(pixels.x()), static_cast<std::int16_t>(pixels.y()),
        static_cast<std::uint16_t>(pixels.width()), static_cast<std::uint16_t>(pixels.height()), 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
        XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values.data());
    xcb_map_window(m_connection.get(), window);
    sync();
    m_windows.push_back(window);
    return window;
}

void X11Display::announceStacking(const std::vector<xcb_window_t> &windows)
{
    xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, m_root,
                        atom("_NET_CLIENT_LIST_STACKING"), XCB_ATOM_WINDOW, 32,
                        static_cast<std::uint32_t>(windows.size()), windows.data());
    sync();
}

void X11Display::raise(xcb_window_t window)
{
    const std::uint32_t mode = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(m_connection.get(), window, XCB_CONFIG_WINDOW_STACK_MODE, &mode);
    sync();
}

void X11Display::hide(xcb_window_t window)
{
    xcb_unmap_window(m_connection.get(), window);
    sync();
}

void X11Display::makeFullScreen(xcb_window_t window)
{
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atom("_NET_WM_STATE");
    constexpr std::uint32_t add = 1;
    message.data.data32[0] = add;
    message.data.data32[1] = atom("_NET_WM_STATE_FULLSCREEN");
    xcb_send_event(m_connection.get(), 0, m_root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char *>(&message));
    sync();
}

void X11Display::movePointer(QPoint pixel)
{
    xcb_test_fake_input(m_connection.get(), XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, m_root,
                        static_cast<std::int16_t>(pixel.x()), static_cast<std::int16_t>(pixel.y()),
                        0);
    sync();
}

Owned<xcb_query_tree_reply_t> X11Display::tree(xcb_window_t window)
{
    return ask(m_connection.get(), xcb_query_tree_reply,
               xcb_query_tree(m_connection.get(), window));
}

bool X11Display::isAbove(xcb_window_t window, xcb_window_t other)
{
    const auto everything = tree(m_root);
    if (!everything) {
        return false;
    }
    const std::span stack(xcb_query_tree_children(everything.get()), everything->children_len);
    const auto place = [&](xcb_window_t lowest) {
        for (auto up = tree(lowest); up && up->parent != m_root; up = tree(lowest)) {
            lowest = up->parent;
        }
        return std::ranges::find(stack, lowest);
    };
    return place(window) > place(other);
}

bool X11Display::isViewable(xcb_window_t window)
{
    const auto reply = ask(m_connection.get(), xcb_get_window_attributes_reply,
                           xcb_get_window_attributes(m_connection.get(), window));
    return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
}

QRect X11Display::geometry(xcb_window_t window)
{
    const auto reply = ask(m_connection.get(), xcb_get_geometry_reply,
                           xcb_get_geometry(m_connection.get(), window));
    return reply ? QRect(reply->x, reply->y, reply->width, reply->height) : QRect();
}

bool X11Display::hasProperty(xcb_window_t window, const QByteArray &name)
{
    const auto reply =
        ask(m_connection.get(), xcb_get_property_reply,
            xcb_get_property(m_connection.get(), 0, window, atom(name), XCB_ATOM_ANY, 0, 1));
    return reply && reply->value_len > 0;
}

} // namespace corvane::tests
