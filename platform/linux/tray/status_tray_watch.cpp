#include "platform/linux/tray/status_tray_watch.h"

#include "platform/linux/x11/xcb_support.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QGuiApplication>

#include <xcb/xfixes.h>

#include <chrono>
#include <string_view>
#include <utility>

namespace corvane::platform {

using namespace std::chrono_literals;

namespace {

/// Delays the icon until the island's first frames have been drawn.
constexpr auto startDelay = 400ms;
constexpr auto xembedGrace = 3s;
constexpr int callTimeoutMs = 5'000;

/// The tray of the X display's first screen. Current systems have no further X screens.
constexpr std::string_view traySelectionName = "_NET_SYSTEM_TRAY_S0";

const QString watcherService = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");

} // namespace

StatusTrayWatch::StatusTrayWatch(std::function<void()> found)
    : m_found(std::move(found))
{
    m_xembedGrace.setSingleShot(true);
    m_xembedGrace.setInterval(xembedGrace);
    connect(&m_xembedGrace, &QTimer::timeout, this, &StatusTrayWatch::finish);
    QTimer::singleShot(startDelay, this, [this] {
        watchBus();
        watchDisplay();
    });
}

StatusTrayWatch::~StatusTrayWatch()
{
    if (auto *application = QCoreApplication::instance()) {
        application->removeNativeEventFilter(this);
    }
}

void StatusTrayWatch::watchBus()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return;
    }
    m_watcherService.setConnection(bus);
    m_watcherService.setWatchMode(QDBusServiceWatcher::WatchForRegistration);
    m_watcherService.addWatchedService(watcherService);
    connect(&m_watcherService, &QDBusServiceWatcher::serviceRegistered, this,
            &StatusTrayWatch::askForHost);
    // The watcher may start before a panel (host) that shows the items.
    bus.connect(watcherService, watcherPath, watcherService,
                QStringLiteral("StatusNotifierHostRegistered"), this, SLOT(askForHost()));
    askForHost();
}

void StatusTrayWatch::askForHost()
{
    if (!m_found) {
        return;
    }
    QDBusMessage question = QDBusMessage::createMethodCall(
        watcherService, watcherPath, QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("Get"));
    question << watcherService << QStringLiteral("IsStatusNotifierHostRegistered");
    question.setAutoStartService(false);
    auto *asked = new QDBusPendingCallWatcher(
        QDBusConnection::sessionBus().asyncCall(question, callTimeoutMs), this);
    connect(asked, &QDBusPendingCallWatcher::finished, this, [this, asked] {
        asked->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *asked;
        if (!reply.isError() && reply.value().variant().toBool()) {
            finish();
        }
    });
}

void StatusTrayWatch::watchDisplay()
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 == nullptr) {
        return;
    }
    xcb_connection_t *connection = x11->connection();
    const auto *extension = xcb_get_extension_data(connection, &xcb_xfixes_id);
    const xcb::Owned<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(
        connection,
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(traySelectionName.size()),
                        traySelectionName.data()),
        nullptr));
    if (extension == nullptr || extension->present == 0 || !atom) {
        return;
    }
    m_traySelection = atom->atom;
    m_selectionEvent = extension->first_event + XCB_XFIXES_SELECTION_NOTIFY;
    xcb_xfixes_select_selection_input(
        connection, xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root, m_traySelection,
        XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER);
    QCoreApplication::instance()->installNativeEventFilter(this);
    // Queried after subscribing to the notification, so that no tray is missed in between.
    const xcb::Owned<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        connection, xcb_get_selection_owner(connection, m_traySelection), nullptr));
    if (owner && owner->owner != XCB_WINDOW_NONE) {
        m_xembedGrace.start();
    }
}

bool StatusTrayWatch::nativeEventFilter(const QByteArray &type, void *message, qintptr *)
{
    if (type == "xcb_generic_event_t") {
        const auto *event = static_cast<const xcb_generic_event_t *>(message);
        if ((event->response_type & 0x7f) == m_selectionEvent) {
            const auto *changed =
                reinterpret_cast<const xcb_xfixes_selection_notify_event_t *>(event);
            if (changed->selection == m_traySelection && changed->owner != XCB_WINDOW_NONE) {
                m_xembedGrace.start();
            }
        }
    }
    return false;
}

void StatusTrayWatch::finish()
{
    if (const auto found = std::exchange(m_found, nullptr)) {
        m_xembedGrace.stop();
        found();
    }
}

} // namespace corvane::platform
