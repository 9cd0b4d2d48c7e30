// Before Qt, whose keywords the GIO headers use as identifiers.
#include "platform/linux/bus/gio_calls.h"

#include "platform/linux/bus/filtered_bus.h"
#include "platform/linux/bus/instance_messages.h"
#include "platform/linux/bus/session_bus_instance.h"

#include <algorithm>
#include <atomic>
#include <deque>
#include <mutex>
#include <string_view>
#include <thread>
#include <utility>

namespace corvane::platform {

using namespace std::chrono_literals;

namespace {

/// Time limit for the bus, and for the other instance, which may be busy drawing.
constexpr auto busBound = 3s;
constexpr auto answerBound = 5s;

constexpr const char *busName = "org.freedesktop.DBus";
constexpr const char *busPath = "/org/freedesktop/DBus";
constexpr const char *applicationInterface = "org.freedesktop.Application";

/// Values of the D-Bus specification.
constexpr guint32 doNotQueue = 4;
constexpr guint32 isPrimaryOwner = 1;
constexpr guint32 isInQueue = 2;
constexpr guint32 isAlreadyOwner = 4;

constexpr const char *introspection = R"(
<node>
  <interface name="org.freedesktop.Application">
    <method name="Activate">
      <arg type="a{sv}" name="platform_data" direction="in"/>
    </method>
    <method name="Open">
      <arg type="as" name="uris" direction="in"/>
      <arg type="a{sv}" name="platform_data" direction="in"/>
    </method>
    <method name="ActivateAction">
      <arg type="s" name="action_name" direction="in"/>
      <arg type="av" name="parameter" direction="in"/>
      <arg type="a{sv}" name="platform_data" direction="in"/>
    </method>
  </interface>
</node>)";

/// Requests that may wait for the main thread, so that no program can make this one grow, and none
/// takes all of the room.
constexpr std::size_t mostWaiting = 64;
constexpr std::ptrdiff_t mostWaitingOfOneCaller = 8;

using Invocation = std::shared_ptr<GDBusMethodInvocation>;

void refuse(const Invocation &invocation, int code, const char *why)
{
    // Replying consumes a reference.
    g_dbus_method_invocation_return_error_literal(
        G_DBUS_METHOD_INVOCATION(g_object_ref(invocation.get())), G_DBUS_ERROR, code, why);
}

void accept(const Invocation &invocation)
{
    g_dbus_method_invocation_return_value(G_DBUS_METHOD_INVOCATION(g_object_ref(invocation.get())),
                                          nullptr);
}

/// The unique name of the program that called.
std::string_view callerOf(const Invocation &invocation)
{
    const char *name = g_dbus_method_invocation_get_sender(invocation.get());
    return name != nullptr ? name : "";
}

} // namespace

/// The name and the object on the bus. Requests are received on a separate thread, so that they do
/// not depend on the program's event loop, and are passed on to the main queue.
class SessionBusInstance::Service
{
public:
    explicit Service(GioPtr<GDBusConnection> connection)
        : m_connection(std::move(connection))
        , m_context(g_main_context_new())
        , m_loop(g_main_loop_new(m_context, FALSE))
    {}

    ~Service()
    {
        if (m_nextTurn) {
            m_nextTurn->cancel();
        }
        if (m_thread.joinable()) {
            // Flush the connection: the reply to the request that stopped the program may still be
            // unsent.
            BoundedCalls calls(busBound);
            const auto flushed = calls.await([this](auto *cancellable, auto done, gpointer data) {
                g_dbus_connection_flush(m_connection.get(), cancellable, done, data);
            });
            g_main_loop_quit(m_loop);
            m_thread.join();
        }
        if (m_object != 0) {
            g_dbus_connection_unregister_object(m_connection.get(), m_object);
        }
        g_dbus_connection_signal_unsubscribe(m_connection.get(), m_subscription);
        g_main_loop_unref(m_loop);
        g_main_context_unref(m_context);
    }
    Service(const Service &) = delete;
    Service &operator=(const Service &) = delete;

    /// Requests the name; waits up to `patience` for its owner to release it.
    Claim claim(BoundedCalls &calls, const char *name, const char *path,
                std::chrono::milliseconds patience)
    {
        // The object is exported first, so that it exists as soon as the name does.
        if (!exportObject(name, path)) {
            return Claim::Unavailable;
        }
        GioPtr<GError> error;
        const bool waits = patience > 0ms;
        const GioPtr<GVariant> reply =
            calls.call(m_connection.get(), busName, busPath, busName, "RequestName",
                       g_variant_new("(su)", name, waits ? guint32{0} : doNotQueue), "(u)", error);
        if (reply == nullptr) {
            return Claim::Unavailable;
        }
        guint32 answer = 0;
        g_variant_get(reply.get(), "(u)", &answer);
        if (answer == isPrimaryOwner || answer == isAlreadyOwner) {
            return Claim::Granted;
        }
        if (answer == isInQueue) {
            if (waitForName(patience)) {
                return Claim::Granted;
            }
            calls.restart(busBound);
            const GioPtr<GVariant> released =
                calls.call(m_connection.get(), busName, busPath, busName, "ReleaseName",
                           g_variant_new("(s)", name), "(u)", error);
        }
        return Claim::Refused;
    }

    /// Keeps the connection that other adapters share. Otherwise each of their conversations would
    /// open one of its own, and GNOME Keyring 48 aborts now and then when connections come and go.
    void keepShared(GioPtr<GDBusConnection> shared) { m_shared = std::move(shared); }

    void run()
    {
        m_thread = std::thread([this] { g_main_loop_run(m_loop); });
    }

    void serve(MainQueue &queue, Handler handler)
    {
        const std::scoped_lock lock(m_mutex);
        m_queue = &queue;
        m_handler = std::move(handler);
        if (!m_waiting.empty()) {
            handleNextSoon();
        }
    }

private:
    bool exportObject(const char *name, const char *path)
    {
        static const GDBusInterfaceVTable calls{handleCall, nullptr, nullptr, {}};
        GDBusNodeInfo *node = g_dbus_node_info_new_for_xml(introspection, nullptr);
        g_main_context_push_thread_default(m_context);
        m_object = g_dbus_connection_register_object(m_connection.get(), path, node->interfaces[0],
                                                     &calls, this, nullptr, nullptr);
        m_subscription = g_dbus_connection_signal_subscribe(
            m_connection.get(), busName, busName, "NameAcquired", busPath, name,
            G_DBUS_SIGNAL_FLAGS_NONE, noteAcquired, this, nullptr);
        g_main_context_pop_thread_default(m_context);
        g_dbus_node_info_unref(node);
        return m_object != 0;
    }

    bool waitForName(std::chrono::milliseconds patience)
    {
        bool timedOut = false;
        GSource *timer = g_timeout_source_new(static_cast<guint>(patience.count()));
        g_source_set_callback(
            timer,
            [](gpointer flag) -> gboolean {
                *static_cast<bool *>(flag) = true;
                return G_SOURCE_REMOVE;
            },
            &timedOut, nullptr);
        g_source_attach(timer, m_context);
        while (!m_acquired && !timedOut) {
            g_main_context_iteration(m_context, TRUE);
        }
        g_source_destroy(timer);
        g_source_unref(timer);
        return m_acquired;
    }

    static void noteAcquired(GDBusConnection *, const gchar *, const gchar *, const gchar *,
                             const gchar *, GVariant *, gpointer service)
    {
        static_cast<Service *>(service)->m_acquired = true;
    }

    static void handleCall(GDBusConnection *, const gchar *, const gchar *, const gchar *,
                           const gchar *method, GVariant *arguments, GDBusMethodInvocation *taken,
                           gpointer service)
    {
        Invocation invocation(taken, g_object_unref);
        const std::string_view name(method);
        if (name == "Activate") {
            static_cast<Service *>(service)->pass(std::move(invocation), {});
        } else if (name == "ActivateAction") {
            if (auto request = actionIn(arguments)) {
                static_cast<Service *>(service)->pass(std::move(invocation), *std::move(request));
            } else {
                refuse(invocation, G_DBUS_ERROR_INVALID_ARGS, "No action takes such a parameter");
            }
        } else {
            refuse(invocation, G_DBUS_ERROR_NOT_SUPPORTED, "Corvane opens no files");
        }
    }

    struct Call
    {
        Invocation invocation;
        InstanceRequest request;
    };

    void pass(Invocation invocation, InstanceRequest request)
    {
        const std::scoped_lock lock(m_mutex);
        const std::string_view caller = callerOf(invocation);
        const auto waiting = std::ranges::count_if(
            m_waiting, [&](const Call &call) { return callerOf(call.invocation) == caller; });
        if (m_waiting.size() >= mostWaiting || waiting >= mostWaitingOfOneCaller) {
            refuse(invocation, G_DBUS_ERROR_LIMITS_EXCEEDED, "Too many requests are waiting");
            return;
        }
        m_waiting.push_back({std::move(invocation), std::move(request)});
        if (m_queue != nullptr && m_waiting.size() == 1) {
            handleNextSoon();
        }
    }

    void handleNextSoon()
    {
        m_queue->post([alive = std::weak_ptr(m_alive), this] {
            if (!alive.expired()) {
                handleNext();
            }
        });
    }

    /// Handles one request. The next one waits for its turn among the program's other events, which
    /// draw and dispose of what the requests have shown.
    void handleNext()
    {
        Call call;
        {
            const std::scoped_lock lock(m_mutex);
            call = m_waiting.front();
        }
        if (m_handler(call.request)) {
            accept(call.invocation);
        } else {
            refuse(call.invocation, G_DBUS_ERROR_INVALID_ARGS, "Unknown action or parameter");
        }
        const std::scoped_lock lock(m_mutex);
        m_waiting.pop_front();
        if (!m_waiting.empty()) {
            m_nextTurn = m_queue->after(0ms, [this] { handleNext(); });
        }
    }

    GioPtr<GDBusConnection> m_connection;
    GioPtr<GDBusConnection> m_shared;
    GMainContext *m_context;
    GMainLoop *m_loop;
    guint m_object = 0;
    guint m_subscription = 0;
    std::atomic<bool> m_acquired = false;
    std::thread m_thread;
    /// Expires with this object. Main thread.
    std::shared_ptr<int> m_alive = std::make_shared<int>();
    std::shared_ptr<WorkItem> m_nextTurn;
    /// Guards the members below.
    std::mutex m_mutex;
    MainQueue *m_queue = nullptr;
    Handler m_handler;
    std::deque<Call> m_waiting;
};

SessionBusInstance::SessionBusInstance(const QString &name)
    : m_name(name.toLatin1())
    , m_path('/' + QByteArray(m_name).replace('.', '/'))
{}

SessionBusInstance::~SessionBusInstance() = default;

Instance::Claim SessionBusInstance::claim(std::chrono::milliseconds patience)
{
    BoundedCalls calls(busBound);
    GioPtr<GError> error;
    GioPtr<GDBusConnection> connection = filteredSessionBus(calls, error);
    if (connection == nullptr) {
        return Claim::Unavailable;
    }
    auto service = std::make_unique<Service>(std::move(connection));
    const Claim claim = service->claim(calls, m_name, m_path, patience);
    if (claim == Claim::Granted) {
        service->keepShared(calls.bus(G_BUS_TYPE_SESSION, error));
        service->run();
        m_service = std::move(service);
    }
    return claim;
}

bool SessionBusInstance::send(const InstanceRequest &request)
{
    BoundedCalls calls(answerBound);
    GioPtr<GError> error;
    const GioPtr<GDBusConnection> connection = calls.bus(G_BUS_TYPE_SESSION, error);
    if (connection == nullptr) {
        return false;
    }
    // Checked first, because the call itself would start the program if it is D-Bus activatable.
    const GioPtr<GVariant> owned =
        calls.call(connection.get(), busName, busPath, busName, "NameHasOwner",
                   g_variant_new("(s)", m_name.constData()), "(b)", error);
    gboolean isRunning = FALSE;
    if (owned != nullptr) {
        g_variant_get(owned.get(), "(b)", &isRunning);
    }
    if (isRunning == FALSE) {
        return false;
    }
    const char *method = request.action.isEmpty() ? "Activate" : "ActivateAction";
    const GioPtr<GVariant> reply =
        calls.call(connection.get(), m_name, m_path, applicationInterface, method,
                   argumentsOf(request), "()", error);
    return reply != nullptr;
}

void SessionBusInstance::serve(MainQueue &queue, Handler handler)
{
    if (m_service) {
        m_service->serve(queue, std::move(handler));
    }
}

} // namespace corvane::platform
