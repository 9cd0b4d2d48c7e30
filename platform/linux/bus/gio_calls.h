#pragma once

#include <gio/gio.h>

#include <chrono>
#include <functional>
#include <memory>

namespace corvane::platform {

/// Gives up one reference, or frees an error.
struct GioDeleter
{
    void operator()(gpointer object) const { g_object_unref(object); }
    void operator()(GVariant *variant) const { g_variant_unref(variant); }
    void operator()(GError *error) const { g_error_free(error); }
};

/// Owns one reference to an object, a variant or an error.
template <typename T>
using GioPtr = std::unique_ptr<T, GioDeleter>;

/// Waits for asynchronous GIO operations one after the other, with one bound on all of them.
///
/// They run on a main context of their own, so that a wait runs nothing else of the program, and
/// an operation that never answers is left behind there instead of blocking its thread for ever.
/// To be used and destroyed on the thread that made it.
class BoundedCalls
{
public:
    using Start = std::function<void(GCancellable *, GAsyncReadyCallback, gpointer)>;

    /// `bound` counts from here.
    explicit BoundedCalls(std::chrono::milliseconds bound);
    ~BoundedCalls();
    BoundedCalls(const BoundedCalls &) = delete;
    BoundedCalls &operator=(const BoundedCalls &) = delete;

    /// Runs `start` and waits for the result. When the bound runs out the operation is cancelled;
    /// null when it does not answer to that either, or when the bound had run out before.
    [[nodiscard]] GioPtr<GAsyncResult> await(const Start &start);

    /// The message bus; null when there is none. The program outlives the bus's end.
    [[nodiscard]] GioPtr<GDBusConnection> bus(GBusType type, GioPtr<GError> &error);

    /// One method call, bounded by nothing else; null and an error when it fails. Takes over
    /// floating `parameters`.
    [[nodiscard]] GioPtr<GVariant> call(GDBusConnection *connection, const char *name,
                                        const char *path, const char *interface, const char *method,
                                        GVariant *parameters, const char *replyType,
                                        GioPtr<GError> &error);

    /// Gives the operations from now on a bound of their own.
    void restart(std::chrono::milliseconds bound);
    /// The bound has run out.
    [[nodiscard]] bool expired() const;

private:
    void iterateUntil(std::chrono::steady_clock::time_point end, const std::function<bool()> &done);

    GMainContext *m_context;
    GioPtr<GCancellable> m_cancellable;
    std::chrono::steady_clock::time_point m_deadline;
};

} // namespace corvane::platform
