#include "platform/linux/bus/gio_calls.h"

#include <algorithm>
#include <utility>

namespace corvane::platform {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

/// Time limit for the completion of a cancelled operation.
constexpr milliseconds cancellationGrace{200};

/// Limit on the iterations before the context is destroyed; far more than are ever pending.
constexpr int mostLastSteps = 1000;

struct Slot
{
    GioPtr<GAsyncResult> result;
};

/// Called on the context that the operation was started on, or never.
void deliver(GObject *, GAsyncResult *result, gpointer data)
{
    const std::unique_ptr<std::shared_ptr<Slot>> slot(static_cast<std::shared_ptr<Slot> *>(data));
    (*slot)->result.reset(G_ASYNC_RESULT(g_object_ref(result)));
}

gboolean wakeUp(gpointer)
{
    return G_SOURCE_CONTINUE;
}

} // namespace

BoundedCalls::BoundedCalls(milliseconds bound)
    : m_context(g_main_context_new())
    , m_cancellable(g_cancellable_new())
    , m_deadline(Clock::now() + bound)
{
    g_main_context_push_thread_default(m_context);
}

BoundedCalls::~BoundedCalls()
{
    // Destroyed proxies leave a pending free() in their context.
    for (int left = mostLastSteps; left > 0; --left) {
        if (g_main_context_iteration(m_context, FALSE) == FALSE) {
            break;
        }
    }
    g_main_context_pop_thread_default(m_context);
    g_main_context_unref(m_context);
}

void BoundedCalls::restart(milliseconds bound)
{
    if (expired()) {
        m_cancellable.reset(g_cancellable_new());
    }
    m_deadline = Clock::now() + bound;
}

bool BoundedCalls::expired() const
{
    return Clock::now() >= m_deadline;
}

void BoundedCalls::iterateUntil(Clock::time_point end, const std::function<bool()> &done)
{
    while (!done()) {
        const auto left = std::chrono::ceil<milliseconds>(end - Clock::now());
        if (left <= milliseconds::zero()) {
            return;
        }
        GSource *timer = g_timeout_source_new(static_cast<guint>(left.count()));
        g_source_set_callback(timer, wakeUp, nullptr, nullptr);
        g_source_attach(timer, m_context);
        g_main_context_iteration(m_context, TRUE);
        g_source_destroy(timer);
        g_source_unref(timer);
    }
}

GioPtr<GAsyncResult> BoundedCalls::await(const Start &start)
{
    if (expired()) {
        return nullptr;
    }
    const auto slot = std::make_shared<Slot>();
    // Shared ownership, because the operation may outlive this object.
    start(m_cancellable.get(), deliver, new std::shared_ptr<Slot>(slot));
    const auto answered = [&] { return slot->result != nullptr; };
    iterateUntil(m_deadline, answered);
    if (!answered()) {
        g_cancellable_cancel(m_cancellable.get());
        iterateUntil(Clock::now() + cancellationGrace, answered);
    }
    return std::move(slot->result);
}

GioPtr<GDBusConnection> BoundedCalls::bus(GBusType type, GioPtr<GError> &error)
{
    const auto result = await([type](GCancellable *cancellable, GAsyncReadyCallback done,
                                     gpointer data) { g_bus_get(type, cancellable, done, data); });
    if (result == nullptr) {
        error.reset(g_error_new_literal(G_IO_ERROR, G_IO_ERROR_TIMED_OUT, "no bus in time"));
        return nullptr;
    }
    GError *failure = nullptr;
    GioPtr<GDBusConnection> connection(g_bus_get_finish(result.get(), &failure));
    error.reset(failure);
    if (connection != nullptr) {
        g_dbus_connection_set_exit_on_close(connection.get(), FALSE);
    }
    return connection;
}

GioPtr<GVariant> BoundedCalls::call(GDBusConnection *connection, const char *name, const char *path,
                                    const char *interface, const char *method, GVariant *parameters,
                                    const char *replyType, GioPtr<GError> &error)
{
    GVariant *arguments = parameters != nullptr ? g_variant_ref_sink(parameters) : nullptr;
    const auto result =
        await([&](GCancellable *cancellable, GAsyncReadyCallback done, gpointer data) {
            g_dbus_connection_call(connection, name, path, interface, method, arguments,
                                   G_VARIANT_TYPE(replyType), G_DBUS_CALL_FLAGS_NONE, G_MAXINT,
                                   cancellable, done, data);
        });
    if (arguments != nullptr) {
        g_variant_unref(arguments);
    }
    if (result == nullptr) {
        error.reset(g_error_new_literal(G_IO_ERROR, G_IO_ERROR_TIMED_OUT, "no answer in time"));
        return nullptr;
    }
    GError *failure = nullptr;
    GioPtr<GVariant> reply(g_dbus_connection_call_finish(connection, result.get(), &failure));
    error.reset(failure);
    return reply;
}

} // namespace corvane::platform
