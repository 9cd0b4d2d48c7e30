#pragma once

#include "platform/main_queue.h"

#include <QString>

#include <chrono>
#include <functional>
#include <optional>

namespace corvane::platform {

/// A request from a newly started process to the running instance.
struct InstanceRequest
{
    /// Empty: bring the running instance to the front.
    QString action;
    /// The action's parameter, if it takes one.
    std::optional<QString> parameter;

    friend bool operator==(const InstanceRequest &, const InstanceRequest &) = default;
};

/// Claims to be the only running instance, and sends requests to an instance that already runs.
/// Main thread; every call returns within a few seconds.
class Instance
{
public:
    /// The outcome of a claim.
    enum class Claim {
        Granted,
        /// Another instance is running.
        Refused,
        /// Instances cannot find each other in this session.
        Unavailable
    };
    /// Returns false if the request is unknown.
    using Handler = std::function<bool(const InstanceRequest &)>;

    Instance() = default;
    Instance(const Instance &) = delete;
    Instance &operator=(const Instance &) = delete;
    virtual ~Instance() = default;

    /// Claims to be the only instance for the lifetime of this object. Waits up to `patience` for a
    /// running instance to exit.
    [[nodiscard]] virtual Claim claim(std::chrono::milliseconds patience) = 0;
    /// Sends `request` to the running instance. Returns false if none is running or if it did not
    /// accept the request.
    [[nodiscard]] virtual bool send(const InstanceRequest &request) = 0;
    /// After a granted claim: calls `handler` on `queue` for each request, one at a time, including
    /// those received since the claim. Both must outlive this object. Requests are refused while
    /// too many others wait.
    virtual void serve(MainQueue &queue, Handler handler) = 0;
};

} // namespace corvane::platform
