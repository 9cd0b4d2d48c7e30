#include "platform/linux/x11/xcb_pointer_monitor.h"

#include "platform/linux/toolkit/qt_screens.h"
#include "platform/linux/x11/xcb_support.h"

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <xcb/xcbext.h>
#include <xcb/xinput.h>

#include <chrono>
#include <map>
#include <utility>

namespace corvane::platform {

namespace {

/// Since this version, clients receive raw events even while another client holds a grab.
constexpr std::uint16_t neededMajor = 2;
constexpr std::uint16_t neededMinor = 1;

/// Selects raw motion events of all pointers; false if the server does not support this XInput
/// version.
bool selectRawMotion(xcb_connection_t *connection, xcb_window_t root)
{
    const auto *extension = xcb_get_extension_data(connection, &xcb_input_id);
    if (extension == nullptr || extension->present == 0) {
        return false;
    }
    const xcb::Owned<xcb_input_xi_query_version_reply_t> version(xcb_input_xi_query_version_reply(
        connection, xcb_input_xi_query_version(connection, neededMajor, neededMinor), nullptr));
    if (!version || std::pair(version->major_version, version->minor_version) <
                        std::pair(neededMajor, neededMinor)) {
        return false;
    }
    struct
    {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } selection{};
    selection.head.deviceid = XCB_INPUT_DEVICE_ALL_MASTER;
    selection.head.mask_len = 1;
    selection.mask = XCB_INPUT_XI_EVENT_MASK_RAW_MOTION;
    // Waits for the server, so that no movement after this call is missed.
    const xcb::Owned<xcb_generic_error_t> refused(xcb_request_check(
        connection, xcb_input_xi_select_events_checked(connection, root, 1, &selection.head)));
    return refused == nullptr;
}

} // namespace

/// Receives raw motion on a separate connection, because events on Qt's connection wake a second
/// thread.
///
/// A device may report a thousand movements per second. After the first, the socket is not read
/// during the merge interval, so that the process wakes once for all movements in that time.
class XcbPointerMonitor::MotionWatch final : public QObject
{
public:
    /// Null if the server does not support raw motion.
    static std::shared_ptr<MotionWatch> open();

    MotionWatch(xcb::Connection connection, std::uint8_t inputOpcode);

    int add(Handler handler);
    void remove(int id) { m_handlers.erase(id); }

    /// True if a movement was received since the last call.
    bool takeMoved() { return std::exchange(m_moved, false); }
    /// False once the connection to the server is lost.
    [[nodiscard]] bool isOpen() const { return xcb_connection_has_error(m_connection.get()) == 0; }

private:
    /// Reads all available events; true if one of them is a movement.
    bool drain();
    void onReadable();
    void onMerged();
    void tell();

    xcb::Connection m_connection;
    std::uint8_t m_inputOpcode;
    QSocketNotifier m_notifier;
    QTimer m_merge;
    std::map<int, std::shared_ptr<Handler>> m_handlers;
    int m_lastId = 0;
    bool m_moved = true;
};

std::shared_ptr<XcbPointerMonitor::MotionWatch> XcbPointerMonitor::MotionWatch::open()
{
    if (!xcb::isPlatform()) {
        return nullptr;
    }
    xcb_window_t root = XCB_NONE;
    xcb::Connection connection = xcb::connectToDisplay(root);
    if (!connection || !selectRawMotion(connection.get(), root)) {
        return nullptr;
    }
    const auto opcode = xcb_get_extension_data(connection.get(), &xcb_input_id)->major_opcode;
    // A handler may destroy the last token, and with it this object, while it is being called.
    return {new MotionWatch(std::move(connection), opcode),
            [](MotionWatch *watch) { watch->deleteLater(); }};
}

XcbPointerMonitor::MotionWatch::MotionWatch(xcb::Connection connection, std::uint8_t inputOpcode)
    : m_connection(std::move(connection))
    , m_inputOpcode(inputOpcode)
    , m_notifier(xcb_get_file_descriptor(m_connection.get()), QSocketNotifier::Read)
{
    m_merge.setSingleShot(true);
    m_merge.setTimerType(Qt::PreciseTimer);
    m_merge.setInterval(mergeInterval);
    connect(&m_notifier, &QSocketNotifier::activated, this, &MotionWatch::onReadable);
    connect(&m_merge, &QTimer::timeout, this, &MotionWatch::onMerged);
}

int XcbPointerMonitor::MotionWatch::add(Handler handler)
{
    m_handlers.emplace(++m_lastId, std::make_shared<Handler>(std::move(handler)));
    return m_lastId;
}

bool XcbPointerMonitor::MotionWatch::drain()
{
    bool moved = false;
    while (const xcb::Owned<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get())}) {
        const auto *generic = reinterpret_cast<const xcb_ge_generic_event_t *>(event.get());
        moved |= (event->response_type & 0x7f) == XCB_GE_GENERIC &&
                 generic->extension == m_inputOpcode && generic->event_type == XCB_INPUT_RAW_MOTION;
    }
    return moved;
}

void XcbPointerMonitor::MotionWatch::onReadable()
{
    const bool moved = drain();
    if (!isOpen()) {
        m_notifier.setEnabled(false);
        return;
    }
    if (moved) {
        m_notifier.setEnabled(false);
        m_merge.start();
        tell();
    }
}

void XcbPointerMonitor::MotionWatch::onMerged()
{
    if (drain()) {
        m_merge.start();
        tell();
    } else {
        m_notifier.setEnabled(isOpen());
    }
}

void XcbPointerMonitor::MotionWatch::tell()
{
    m_moved = true;
    const auto handlers = m_handlers;
    for (const auto &[id, handler] : handlers) {
        if (m_handlers.contains(id)) {
            (*handler)();
        }
    }
}

/// Queries the pointer position on a separate connection without a socket notifier: replies that
/// arrive later do not wake the process.
class XcbPointerMonitor::PointerQuery
{
public:
    /// How long a reply stays valid if the pointer's device has not moved. Slightly longer than the
    /// interval at which the position of a resting pointer is requested.
    static constexpr std::chrono::milliseconds goodFor{400};

    PointerQuery()
    {
        if (xcb::isPlatform()) {
            m_connection = xcb::connectToDisplay(m_root);
        }
    }

    /// `mayBeOlder` allows the reply to the query sent by the previous call.
    std::optional<QPoint> pixel(bool mayBeOlder);

private:
    [[nodiscard]] std::optional<QPoint> pixelOf(const xcb_query_pointer_reply_t *reply) const;
    void ask();

    xcb::Connection m_connection;
    xcb_window_t m_root = XCB_NONE;
    xcb_query_pointer_cookie_t m_asked{};
    std::chrono::steady_clock::time_point m_askedAt;
};

void XcbPointerMonitor::PointerQuery::ask()
{
    m_asked = xcb_query_pointer(m_connection.get(), m_root);
    m_askedAt = std::chrono::steady_clock::now();
    xcb_flush(m_connection.get());
}

std::optional<QPoint>
XcbPointerMonitor::PointerQuery::pixelOf(const xcb_query_pointer_reply_t *reply) const
{
    if (reply == nullptr || reply->same_screen == 0) {
        return std::nullopt;
    }
    return QPoint(reply->root_x, reply->root_y);
}

std::optional<QPoint> XcbPointerMonitor::PointerQuery::pixel(bool mayBeOlder)
{
    if (!m_connection || xcb_connection_has_error(m_connection.get()) != 0) {
        return std::nullopt;
    }
    if (m_asked.sequence != 0) {
        if (mayBeOlder && std::chrono::steady_clock::now() - m_askedAt <= goodFor) {
            void *reply = nullptr;
            xcb_generic_error_t *error = nullptr;
            if (xcb_poll_for_reply(m_connection.get(), m_asked.sequence, &reply, &error) != 0) {
                const xcb::Owned<xcb_generic_error_t> dropped(error);
                const xcb::Owned<xcb_query_pointer_reply_t> answer(
                    static_cast<xcb_query_pointer_reply_t *>(reply));
                ask();
                return pixelOf(answer.get());
            }
        }
        xcb_discard_reply(m_connection.get(), m_asked.sequence);
    }
    m_asked = {};
    const xcb::Owned<xcb_query_pointer_reply_t> answer(xcb_query_pointer_reply(
        m_connection.get(), xcb_query_pointer(m_connection.get(), m_root), nullptr));
    // Query in advance for the next call, which may come while the pointer rests.
    ask();
    return pixelOf(answer.get());
}

class XcbPointerMonitor::Subscription final : public Token
{
public:
    Subscription(std::shared_ptr<MotionWatch> watch, Handler handler)
        : m_watch(std::move(watch))
        , m_id(m_watch->add(std::move(handler)))
    {}
    ~Subscription() override { m_watch->remove(m_id); }

private:
    std::shared_ptr<MotionWatch> m_watch;
    int m_id;
};

XcbPointerMonitor::XcbPointerMonitor(const QtScreens &screens)
    : m_screens(screens)
    , m_query(std::make_unique<PointerQuery>())
{}

XcbPointerMonitor::~XcbPointerMonitor() = default;

std::unique_ptr<PointerMonitor::Token> XcbPointerMonitor::addGlobalMonitor(Handler handler)
{
    if (!m_watch) {
        m_watch = MotionWatch::open();
    }
    if (!m_watch) {
        return nullptr;
    }
    return std::make_unique<Subscription>(m_watch, std::move(handler));
}

std::unique_ptr<PointerMonitor::Token> XcbPointerMonitor::addLocalMonitor(Handler)
{
    return nullptr;
}

std::optional<QPointF> XcbPointerMonitor::location() const
{
    // An older reply is valid only while movements are being received.
    const bool rests = m_watch && m_watch->isOpen() && !m_watch->takeMoved();
    const auto pixel = m_query->pixel(rests);
    return pixel ? m_screens.coordinates().globalFromPixel(*pixel) : std::nullopt;
}

} // namespace corvane::platform
