#include "platform/linux/x11/xcb_fullscreen_watch.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <span>
#include <string_view>
#include <utility>

namespace corvane::platform {

namespace {

using xcb::Owned;

/// A window manager changes several properties and sizes at once, and a window that is dragged
/// tells of each step.
constexpr std::chrono::milliseconds settleTime{50};
/// More values than any property that is read here needs; of more windows than these, only the
/// lowest are considered.
constexpr std::uint32_t maximumValues = 256;
/// The value of _NET_WM_DESKTOP for a window on all workspaces.
constexpr std::uint32_t everyDesktop = 0xffffffff;

constexpr std::array<std::string_view, 7> names{
    "_NET_CLIENT_LIST_STACKING", "_NET_ACTIVE_WINDOW",   "_NET_CURRENT_DESKTOP", "_NET_WM_STATE",
    "_NET_WM_STATE_FULLSCREEN",  "_NET_WM_STATE_HIDDEN", "_NET_WM_DESKTOP",
};

bool contains(const std::vector<std::uint32_t> &values, std::uint32_t value)
{
    return std::ranges::find(values, value) != values.end();
}

/// The reply to a request, or null, such as after the window has been destroyed.
template <typename Reply, typename Cookie>
Owned<Reply> answer(xcb_connection_t *connection,
                    Reply *(*take)(xcb_connection_t *, Cookie, xcb_generic_error_t **),
                    Cookie asked)
{
    xcb_generic_error_t *error = nullptr;
    Owned<Reply> reply(take(connection, asked, &error));
    const Owned<xcb_generic_error_t> dropped(error);
    return reply;
}

} // namespace

std::unique_ptr<XcbFullscreenWatch> XcbFullscreenWatch::open(std::function<void()> changed)
{
    xcb_window_t root = XCB_NONE;
    xcb::Connection connection = xcb::connectToDisplay(root);
    if (!connection) {
        return nullptr;
    }
    return std::unique_ptr<XcbFullscreenWatch>(
        new XcbFullscreenWatch(std::move(connection), root, std::move(changed)));
}

XcbFullscreenWatch::XcbFullscreenWatch(xcb::Connection connection, xcb_window_t root,
                                       std::function<void()> changed)
    : m_connection(std::move(connection))
    , m_root(root)
    , m_changed(std::move(changed))
    , m_notifier(xcb_get_file_descriptor(m_connection.get()), QSocketNotifier::Read)
{
    std::vector<xcb_intern_atom_cookie_t> asked;
    for (const std::string_view name : names) {
        asked.push_back(xcb_intern_atom(m_connection.get(), 0,
                                        static_cast<std::uint16_t>(name.size()), name.data()));
    }
    for (const auto cookie : asked) {
        const auto atom = answer(m_connection.get(), xcb_intern_atom_reply, cookie);
        m_atoms.push_back(atom ? atom->atom : xcb_atom_t{XCB_ATOM_NONE});
    }
    m_soon.setSingleShot(true);
    m_soon.setInterval(settleTime);
    connect(&m_soon, &QTimer::timeout, this, &XcbFullscreenWatch::read);
    connect(&m_notifier, &QSocketNotifier::activated, this, &XcbFullscreenWatch::drain);
    select(m_root, XCB_EVENT_MASK_PROPERTY_CHANGE);
    m_soon.start();
}

void XcbFullscreenWatch::select(xcb_window_t window, std::uint32_t mask)
{
    xcb_change_window_attributes(m_connection.get(), window, XCB_CW_EVENT_MASK, &mask);
}

bool XcbFullscreenWatch::matters(const xcb_generic_event_t &event) const
{
    switch (event.response_type & 0x7f) {
    case XCB_PROPERTY_NOTIFY: {
        const auto atom = reinterpret_cast<const xcb_property_notify_event_t &>(event).atom;
        return contains(m_atoms, atom);
    }
    case XCB_CONFIGURE_NOTIFY:
    case XCB_MAP_NOTIFY:
    case XCB_UNMAP_NOTIFY:
    case XCB_DESTROY_NOTIFY:
        return true;
    default:
        return false;
    }
}

void XcbFullscreenWatch::drain()
{
    while (const Owned<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get())}) {
        if (matters(*event) && !m_soon.isActive()) {
            m_soon.start();
        }
    }
    if (xcb_connection_has_error(m_connection.get()) != 0) {
        m_notifier.setEnabled(false);
        m_soon.stop();
    }
}

xcb_get_property_cookie_t XcbFullscreenWatch::ask(xcb_window_t window, Name property) const
{
    return xcb_get_property(m_connection.get(), 0, window, m_atoms[property], XCB_ATOM_ANY, 0,
                            maximumValues);
}

std::vector<std::uint32_t> XcbFullscreenWatch::values(xcb_get_property_cookie_t asked) const
{
    const auto reply = answer(m_connection.get(), xcb_get_property_reply, asked);
    if (!reply || reply->format != 32) {
        return {};
    }
    const std::span found(static_cast<const std::uint32_t *>(xcb_get_property_value(reply.get())),
                          reply->value_len);
    return {found.begin(), found.end()};
}

QList<ClientWindow> XcbFullscreenWatch::clients() const
{
    xcb_connection_t *connection = m_connection.get();
    const auto listed = ask(m_root, ClientList);
    const auto desktop = ask(m_root, CurrentDesktop);
    const auto windows = values(listed);
    const auto current = values(desktop);

    struct Questions
    {
        xcb_get_property_cookie_t state;
        xcb_get_property_cookie_t desktop;
        xcb_get_window_attributes_cookie_t attributes;
        xcb_get_geometry_cookie_t size;
        xcb_translate_coordinates_cookie_t place;
    };
    // All requests are sent before waiting for the first reply.
    std::vector<Questions> questions;
    for (const xcb_window_t window : windows) {
        questions.push_back({ask(window, State), ask(window, Desktop),
                             xcb_get_window_attributes(connection, window),
                             xcb_get_geometry(connection, window),
                             xcb_translate_coordinates(connection, window, m_root, 0, 0)});
    }
    QList<ClientWindow> clients;
    for (std::size_t index = 0; index < windows.size(); ++index) {
        const Questions &asked = questions[index];
        const auto state = values(asked.state);
        const auto on = values(asked.desktop);
        const auto attributes =
            answer(connection, xcb_get_window_attributes_reply, asked.attributes);
        const auto size = answer(connection, xcb_get_geometry_reply, asked.size);
        const auto place = answer(connection, xcb_translate_coordinates_reply, asked.place);
        if (!attributes || !size || !place) {
            continue;
        }
        const bool here = current.empty() || on.empty() || on.front() == current.front() ||
                          on.front() == everyDesktop;
        clients.append({.id = windows[index],
                        .area = {place->dst_x, place->dst_y, size->width, size->height},
                        .shown = here && attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
                                 !contains(state, m_atoms[Hidden]),
                        .fullScreen = contains(state, m_atoms[FullScreen])});
    }
    return clients;
}

bool XcbFullscreenWatch::follow(std::vector<xcb_window_t> windows)
{
    bool more = false;
    for (const xcb_window_t window : windows) {
        if (!contains(m_followed, window)) {
            select(window, XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY);
            more = true;
        }
    }
    for (const xcb_window_t window : m_followed) {
        if (!contains(windows, window)) {
            select(window, XCB_EVENT_MASK_NO_EVENT);
        }
    }
    m_followed = std::move(windows);
    return more;
}

void XcbFullscreenWatch::read()
{
    const auto active = values(ask(m_root, ActiveWindow));
    m_active = active.empty() ? xcb_window_t{XCB_NONE} : active.front();
    m_clients = clients();
    std::vector<xcb_window_t> interesting;
    for (const ClientWindow &client : std::as_const(m_clients)) {
        if (client.fullScreen || client.id == m_active) {
            interesting.push_back(client.id);
        }
    }
    if (follow(std::move(interesting))) {
        // What has happened to them before they were followed was not announced.
        m_soon.start();
    }
    xcb_flush(m_connection.get());
    // Replies bring events with them, of which the socket no longer tells.
    drain();
    m_changed();
}

} // namespace corvane::platform
