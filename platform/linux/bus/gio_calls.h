#pragma once

#include <gio/gio.h>

#include <chrono>
#include <functional>
#include <memory>

namespace corvane::platform {

/// Releases one reference, or frees an error.
struct GioDeleter
{
    void operator()(gpointer object) const { g_object_unref(object); }
    void operator()(GVariant *variant) const { g_variant_unref(variant); }
    void operator()(GError *error) const { g_error_free(error); }
};

/// Owns one reference to an object, a variant or an error.
template <typename T>
using GioPtr = std::unique_ptr<T, GioDeleter>;

/// Runs asynchronous GIO operations one after the other, with one time limit for all of them.
///
/// They run on a separate main context, so that waiting dispatches no other events of the program,
/// and an operation that never completes does not block its thread forever. Must be used and
/// destroyed on the thread that created it.
class BoundedCalls
{
public:
    using Start = std::function<void(GCancellable *, GAsyncReadyCallback, gpointer)>;

    /// The time limit `bound` starts now.
    explicit BoundedCalls(std::chrono::milliseconds bound);
    ~BoundedCalls();
    BoundedCalls(const BoundedCalls &) = delete;
    BoundedCalls &operator=(const BoundedCalls &) = delete;

    /// Runs `start` and waits for the result. Cancels the operation when the time limit expires.
    /// Null if the operation does not complete after that either, or if the limit had expired
    /// before.
    [[nodiscard]] GioPtr<GAsyncResult> await(const Start &start);

    /// The message bus; null if there is none. The program does not exit when the bus closes the
    /// connection.
    [[nodiscard]] GioPtr<GDBusConnection> bus(GBusType type, GioPtr<GError> &error);

    /// Makes one method call, without a time limit of its own. Returns null and an error on
    /// failure. Takes ownership of floating `parameters`.
    [[nodiscard]] GioPtr<GVariant> call(GDBusConnection *connection, const char *name,
                                        const char *path, const char *interface, const char *method,
                                        GVariant *parameters, const char *replyType,
                                        GioPtr<GError> &error);

    /// Sets a new time limit, which starts now, for the following operations.
    void restart(std::chrono::milliseconds bound);
    /// True if the time limit has expired.
    [[nodiscard]] bool expired() const;

private:
    void iterateUntil(std::chrono::steady_clock::time_point end, const std::function<bool()> &done);

    GMainContext *m_context;
    GioPtr<GCancellable> m_cancellable;
    std::chrono::steady_clock::time_point m_deadline;
};

} // namespace corvane::platform
