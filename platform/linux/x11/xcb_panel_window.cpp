#include "platform/linux/x11/xcb_panel_window.h"

#include "platform/linux/x11/xcb_support.h"

#include <QCoreApplication>

#include <xcb/xfixes.h>

#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace corvane::platform {

namespace {

using xcb::Owned;

/// Some window managers announce a new stacking order before they apply it.
constexpr std::chrono::milliseconds settleTime{120};
/// At most this many clients are examined, starting from the top.
constexpr std::uint32_t maximumClients = 128;
/// A client's frame is rarely more than two levels below the root window.
constexpr int maximumFrameDepth = 6;

xcb_intern_atom_cookie_t askForAtom(xcb_connection_t *connection, std::string_view name)
{
    return xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
}

xcb_atom_t takeAtom(xcb_connection_t *connection, xcb_intern_atom_cookie_t cookie)
{
    const Owned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

/// The number of the X screen with this root window.
int screenNumberOf(xcb_connection_t *connection, xcb_window_t root)
{
    int number = 0;
    for (auto screen = xcb_setup_roots_iterator(xcb_get_setup(connection)); screen.rem > 0;
         xcb_screen_next(&screen), ++number) {
        if (screen.data->root == root) {
            return number;
        }
    }
    return 0;
}

} // namespace

XcbPanelWindow::XcbPanelWindow(xcb_connection_t *connection, std::uint32_t id, Observer observer)
    : m_connection(connection)
    , m_id(id)
    , m_observer(std::move(observer))
{
    const Owned<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, m_id), nullptr));
    m_root = tree ? tree->root : xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;

    // All requests are sent before waiting for the first reply.
    const std::string screen = std::to_string(screenNumberOf(m_connection, m_root));
    const auto compositor = askForAtom(m_connection, "_NET_WM_CM_S" + screen);
    const auto manager = askForAtom(m_connection, "WM_S" + screen);
    const auto managerCheck = askForAtom(m_connection, "_NET_SUPPORTING_WM_CHECK");
    const auto stacking = askForAtom(m_connection, "_NET_CLIENT_LIST_STACKING");
    const auto active = askForAtom(m_connection, "_NET_ACTIVE_WINDOW");
    const auto windowType = askForAtom(m_connection, "_NET_WM_WINDOW_TYPE");
    const auto dock = askForAtom(m_connection, "_NET_WM_WINDOW_TYPE_DOCK");
    const auto root = xcb_get_window_attributes(m_connection, m_root);
    const auto fixes =
        xcb_xfixes_query_version(m_connection, XCB_XFIXES_MAJOR_VERSION, XCB_XFIXES_MINOR_VERSION);
    m_compositorAtom = takeAtom(m_connection, compositor);
    m_stackingAtom = takeAtom(m_connection, stacking);
    m_activeWindowAtom = takeAtom(m_connection, active);
    m_managerAtom = takeAtom(m_connection, manager);
    m_managerCheckAtom = takeAtom(m_connection, managerCheck);

    // The window type of docks, to which compositing managers add neither shadows nor animations.
    const xcb_atom_t type = takeAtom(m_connection, dock);
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, m_id,
                        takeAtom(m_connection, windowType), XCB_ATOM_ATOM, 32, 1, &type);

    // Qt has selected events on the root window too, and its event mask must be kept.
    if (const Owned<xcb_get_window_attributes_reply_t> attributes{
            xcb_get_window_attributes_reply(m_connection, root, nullptr)}) {
        m_rootMask = attributes->your_event_mask | XCB_EVENT_MASK_PROPERTY_CHANGE;
    }

    const Owned<xcb_xfixes_query_version_reply_t> version(
        xcb_xfixes_query_version_reply(m_connection, fixes, nullptr));
    const auto *extension = xcb_get_extension_data(m_connection, &xcb_xfixes_id);
    if (version && extension != nullptr && extension->present != 0) {
        m_selectionEvent = extension->first_event + XCB_XFIXES_SELECTION_NOTIFY;
        for (const xcb_atom_t selection : {m_compositorAtom, m_managerAtom}) {
            xcb_xfixes_select_selection_input(
                m_connection, m_id, selection,
                XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                    XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                    XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
        }
    }
    // Queried after subscribing to the notification, so that no change is missed in between.
    const Owned<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        m_connection, xcb_get_selection_owner(m_connection, m_compositorAtom), nullptr));
    m_compositor = owner ? owner->owner : xcb_window_t{XCB_WINDOW_NONE};

    for (QTimer *timer : {&m_soon, &m_settled}) {
        timer->setSingleShot(true);
        QObject::connect(timer, &QTimer::timeout, [this] { m_observer.stackChanged(); });
    }
    m_soon.setInterval(0);
    m_settled.setInterval(settleTime);
    findWindowManager();
    QCoreApplication::instance()->installNativeEventFilter(this);
}

XcbPanelWindow::~XcbPanelWindow()
{
    if (auto *application = QCoreApplication::instance()) {
        application->removeNativeEventFilter(this);
    }
}

void XcbPanelWindow::setInputRegion(const QList<QRect> &region)
{
    if (m_input == region) {
        return;
    }
    m_input = region;
    xcb::setShape(m_connection, m_id, XCB_SHAPE_SK_INPUT, region);
    xcb_flush(m_connection);
}

void XcbPanelWindow::setBoundingRegion(const std::optional<QList<QRect>> &region)
{
    if (m_bounding == region) {
        return;
    }
    m_bounding = region;
    if (region) {
        xcb::setShape(m_connection, m_id, XCB_SHAPE_SK_BOUNDING, *region);
    } else {
        xcb_shape_mask(m_connection, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, m_id, 0, 0,
                       XCB_PIXMAP_NONE);
    }
    xcb_flush(m_connection);
}

std::vector<std::uint32_t> XcbPanelWindow::stack() const
{
    const Owned<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, m_root), nullptr));
    if (!tree) {
        return {};
    }
    const std::span children(xcb_query_tree_children(tree.get()), tree->children_len);
    return {children.begin(), children.end()};
}

void XcbPanelWindow::findWindowManager()
{
    // Only one client can redirect the windows of the root window. Properties are no evidence: a
    // window manager that was killed leaves them behind.
    const Owned<xcb_get_window_attributes_reply_t> root(xcb_get_window_attributes_reply(
        m_connection, xcb_get_window_attributes(m_connection, m_root), nullptr));
    m_managed = root && (root->all_event_masks & XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT) != 0;
    selectRootEvents();
}

void XcbPanelWindow::selectRootEvents()
{
    // A window manager announces its stacking order. Every movement of every window is only
    // received where that is not enough, because each one wakes the process.
    const bool everything = !m_managed || m_followsUnmanaged;
    const std::uint32_t mask =
        m_rootMask | (everything ? XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY : XCB_EVENT_MASK_NO_EVENT);
    xcb_change_window_attributes(m_connection, m_root, XCB_CW_EVENT_MASK, &mask);
    xcb_flush(m_connection);
}

void XcbPanelWindow::followUnmanaged(bool on)
{
    m_followsUnmanaged = on;
    findWindowManager();
}

std::vector<std::uint32_t> XcbPanelWindow::ordinaryWindows() const
{
    const auto windows = stack();
    std::vector<xcb_get_window_attributes_cookie_t> questions;
    questions.reserve(windows.size());
    for (const xcb_window_t window : windows) {
        questions.push_back(xcb_get_window_attributes(m_connection, window));
    }
    std::vector<std::uint32_t> found;
    for (std::size_t index = 0; index < windows.size(); ++index) {
        // A client may have been destroyed in the meantime.
        xcb_generic_error_t *error = nullptr;
        const Owned<xcb_get_window_attributes_reply_t> window(
            xcb_get_window_attributes_reply(m_connection, questions[index], &error));
        const Owned<xcb_generic_error_t> dropped(error);
        if (window && window->override_redirect == 0 &&
            window->map_state == XCB_MAP_STATE_VIEWABLE &&
            window->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT) {
            found.push_back(windows[index]);
        }
    }
    return found;
}

std::vector<std::uint32_t> XcbPanelWindow::managedFrames() const
{
    if (!m_managed) {
        return ordinaryWindows();
    }
    const Owned<xcb_get_property_reply_t> list(
        xcb_get_property_reply(m_connection,
                               xcb_get_property(m_connection, 0, m_root, m_stackingAtom,
                                                XCB_ATOM_WINDOW, 0, std::uint32_t{1} << 16U),
                               nullptr));
    if (!list || list->format != 32) {
        return {};
    }
    const std::span clients(static_cast<const xcb_window_t *>(xcb_get_property_value(list.get())),
                            list->value_len);
    const auto count = std::min<std::size_t>(clients.size(), maximumClients);
    const auto top = clients.last(count);
    return framesOf({top.begin(), top.end()});
}

std::vector<std::uint32_t> XcbPanelWindow::framesOf(std::vector<std::uint32_t> climbing) const
{
    std::vector<std::uint32_t> frames;
    // Processes one level of the tree at a time, so that each level costs only one round trip.
    for (int depth = 0; depth < maximumFrameDepth && !climbing.empty(); ++depth) {
        std::vector<xcb_query_tree_cookie_t> questions;
        questions.reserve(climbing.size());
        for (const xcb_window_t window : climbing) {
            questions.push_back(xcb_query_tree(m_connection, window));
        }
        std::vector<xcb_window_t> parents;
        for (std::size_t index = 0; index < questions.size(); ++index) {
            // A client may have been destroyed in the meantime.
            xcb_generic_error_t *error = nullptr;
            const Owned<xcb_query_tree_reply_t> tree(
                xcb_query_tree_reply(m_connection, questions[index], &error));
            const Owned<xcb_generic_error_t> dropped(error);
            if (!tree || tree->parent == XCB_WINDOW_NONE) {
                continue;
            }
            if (tree->parent == m_root) {
                frames.push_back(climbing[index]);
            } else {
                parents.push_back(tree->parent);
            }
        }
        climbing = std::move(parents);
    }
    return frames;
}

std::uint32_t XcbPanelWindow::focus() const
{
    const Owned<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    return reply ? reply->focus : xcb_window_t{XCB_INPUT_FOCUS_NONE};
}

void XcbPanelWindow::rememberFocus()
{
    if (const std::uint32_t window = focus(); window != m_id) {
        m_previousFocus = window;
    }
}

void XcbPanelWindow::takeFocus()
{
    // The server ignores requests that are older than the last change of focus. The time that Qt
    // knows is that of its latest event, and often older.
    xcb_set_input_focus(m_connection, XCB_INPUT_FOCUS_PARENT, m_id, XCB_CURRENT_TIME);
    xcb_flush(m_connection);
}

void XcbPanelWindow::returnFocus()
{
    if (focus() != m_id) {
        return;
    }
    const auto giveTo = [this](std::uint32_t window) {
        const Owned<xcb_generic_error_t> refusal(xcb_request_check(
            m_connection, xcb_set_input_focus_checked(m_connection, XCB_INPUT_FOCUS_PARENT, window,
                                                      XCB_CURRENT_TIME)));
        return refusal == nullptr;
    };
    // That window may no longer exist; then focus follows the pointer.
    if (m_previousFocus == XCB_INPUT_FOCUS_NONE || !giveTo(m_previousFocus)) {
        giveTo(XCB_INPUT_FOCUS_POINTER_ROOT);
    }
    m_previousFocus = XCB_INPUT_FOCUS_NONE;
}

std::optional<std::uint32_t> XcbPanelWindow::lowestCover(std::span<const std::uint32_t> windows,
                                                         const QRect &display) const
{
    std::vector<xcb_get_window_attributes_cookie_t> attributes;
    std::vector<xcb_get_geometry_cookie_t> geometries;
    for (const xcb_window_t window : windows) {
        attributes.push_back(xcb_get_window_attributes(m_connection, window));
        geometries.push_back(xcb_get_geometry(m_connection, window));
    }
    std::vector<std::uint32_t> covers;
    for (std::size_t index = 0; index < windows.size(); ++index) {
        // A client may have been destroyed in the meantime.
        xcb_generic_error_t *error = nullptr;
        const Owned<xcb_get_window_attributes_reply_t> shown(
            xcb_get_window_attributes_reply(m_connection, attributes[index], &error));
        const Owned<xcb_generic_error_t> dropped(error);
        error = nullptr;
        const Owned<xcb_get_geometry_reply_t> place(
            xcb_get_geometry_reply(m_connection, geometries[index], &error));
        const Owned<xcb_generic_error_t> alsoDropped(error);
        if (shown && place && shown->override_redirect != 0 &&
            shown->map_state == XCB_MAP_STATE_VIEWABLE &&
            shown->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT &&
            QRect(place->x, place->y, place->width, place->height).contains(display)) {
            covers.push_back(windows[index]);
        }
    }
    if (covers.empty()) {
        return std::nullopt;
    }
    // Window managers put clients into frames, which are unmanaged windows too.
    const auto frames = managedFrames();
    const auto cover = std::ranges::find_if(covers, [&](std::uint32_t window) {
        return std::ranges::find(frames, window) == frames.end();
    });
    return cover == covers.end() ? std::nullopt : std::optional(*cover);
}

void XcbPanelWindow::raiseToTop(const QRect &display)
{
    const auto windows = stack();
    const auto self = std::ranges::find(windows, m_id);
    if (self == windows.end() || std::next(self) == windows.end()) {
        return;
    }
    const auto cover = lowestCover({std::next(self), windows.end()}, display);
    const auto end = cover ? std::find(self, windows.end(), *cover) : windows.end();
    m_passed.insert(m_passed.end(), std::next(self), end);
    if (cover) {
        const std::array<std::uint32_t, 2> values{*cover, XCB_STACK_MODE_BELOW};
        xcb_configure_window(m_connection, m_id,
                             XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE,
                             values.data());
    } else {
        const std::uint32_t mode = XCB_STACK_MODE_ABOVE;
        xcb_configure_window(m_connection, m_id, XCB_CONFIG_WINDOW_STACK_MODE, &mode);
    }
    xcb_flush(m_connection);
}

void XcbPanelWindow::raiseAboveManaged()
{
    const auto windows = stack();
    const auto self = std::find(windows.begin(), windows.end(), m_id);
    if (self == windows.end() || std::next(self) == windows.end()) {
        return;
    }
    const auto frames = managedFrames();
    const auto top = std::find_first_of(windows.rbegin(), std::make_reverse_iterator(self),
                                        frames.begin(), frames.end());
    if (top == std::make_reverse_iterator(self)) {
        return;
    }
    const std::array<std::uint32_t, 2> values{*top, XCB_STACK_MODE_ABOVE};
    xcb_configure_window(m_connection, m_id,
                         XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE, values.data());
    xcb_flush(m_connection);
}

void XcbPanelWindow::lowerFromTop()
{
    const auto windows = stack();
    const auto self = std::find(windows.begin(), windows.end(), m_id);
    const auto frames = managedFrames();
    const auto lowest = std::find_if(windows.begin(), self, [&](std::uint32_t window) {
        return std::ranges::find(m_passed, window) != m_passed.end() &&
               std::ranges::find(frames, window) == frames.end();
    });
    m_passed.clear();
    if (lowest != self) {
        const std::array<std::uint32_t, 2> values{*lowest, XCB_STACK_MODE_BELOW};
        xcb_configure_window(m_connection, m_id,
                             XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE,
                             values.data());
    }
    raiseAboveManaged();
}

void XcbPanelWindow::announceStackChange()
{
    // Delayed, because a window manager changes several properties at once.
    m_soon.start();
    m_settled.start();
}

bool XcbPanelWindow::changesStack(const void *message) const
{
    const int kind = static_cast<const xcb_generic_event_t *>(message)->response_type & 0x7f;
    if (kind == XCB_MAP_NOTIFY) {
        const auto &mapped = *static_cast<const xcb_map_notify_event_t *>(message);
        return mapped.event == m_root && mapped.window != m_id &&
               (mapped.override_redirect == 0 || m_followsUnmanaged);
    }
    if (kind == XCB_CONFIGURE_NOTIFY) {
        // Not for unmanaged windows: two of them that each want to be on top would never rest.
        const auto &moved = *static_cast<const xcb_configure_notify_event_t *>(message);
        return moved.event == m_root && moved.window != m_id && moved.override_redirect == 0 &&
               !m_managed;
    }
    return false;
}

bool XcbPanelWindow::nativeEventFilter(const QByteArray &type, void *message, qintptr *)
{
    if (type != "xcb_generic_event_t") {
        return false;
    }
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    const int kind = event->response_type & 0x7f;
    if (changesStack(message)) {
        announceStackChange();
    } else if (kind == XCB_PROPERTY_NOTIFY) {
        const auto *changed = reinterpret_cast<const xcb_property_notify_event_t *>(event);
        if (changed->window == m_root &&
            (changed->atom == m_stackingAtom || changed->atom == m_activeWindowAtom)) {
            announceStackChange();
        } else if (changed->window == m_root && changed->atom == m_managerCheckAtom) {
            findWindowManager();
        }
    } else if (kind == m_selectionEvent) {
        const auto *changed = reinterpret_cast<const xcb_xfixes_selection_notify_event_t *>(event);
        if (changed->selection == m_managerAtom) {
            findWindowManager();
            announceStackChange();
        } else if (changed->selection == m_compositorAtom && changed->owner != m_compositor) {
            m_compositor = changed->owner;
            m_observer.compositingChanged();
        }
    }
    return false;
}

} // namespace corvane::platform
