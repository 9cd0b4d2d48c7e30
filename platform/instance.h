#pragma once

#include "platform/main_queue.h"

#include <QString>

#include <chrono>
#include <functional>
#include <optional>

namespace corvane::platform {

/// What one start of the program asks of the one that runs already.
struct InstanceRequest
{
    /// Empty: to come to the front.
    QString action;
    /// Of the action, where it has one.
    std::optional<QString> parameter;

    friend bool operator==(const InstanceRequest &, const InstanceRequest &) = default;
};

/// The claim to be the only running instance, and the line to the one that is. Main thread; every
/// call is bounded to some seconds.
class Instance
{
public:
    /// What a claim comes to.
    enum class Claim {
        Granted,
        /// Another instance runs.
        Refused,
        /// Instances cannot find each other in this session.
        Unavailable
    };
    /// False when the request is none that the program knows.
    using Handler = std::function<bool(const InstanceRequest &)>;

    Instance() = default;
    Instance(const Instance &) = delete;
    Instance &operator=(const Instance &) = delete;
    virtual ~Instance() = default;

    /// Asks to be the only instance from now until the end of this object. Where another one runs,
    /// waits up to `patience` for its end.
    [[nodiscard]] virtual Claim claim(std::chrono::milliseconds patience) = 0;
    /// Hands `request` to the running instance. False when none runs, or it has not taken it.
    [[nodiscard]] virtual bool send(const InstanceRequest &request) = 0;
    /// After a granted claim: lets `handler` answer requests on `queue`, also those that have come
    /// since the claim. Both must outlive this object.
    virtual void serve(MainQueue &queue, Handler handler) = 0;
};

} // namespace corvane::platform
