#pragma once

#include "platform/instance.h"

#include <memory>

namespace corvane::platform {

/// A well-known name on the session bus, owned by the running instance, which implements
/// org.freedesktop.Application. Actions such as "open" and "refresh" are received as ActivateAction
/// calls.
///
/// Works without an application object, so that sending a request needs no display.
class SessionBusInstance final : public Instance
{
public:
    /// `name`: the well-known name, such as "org.corvane.Corvane".
    explicit SessionBusInstance(const QString &name);
    ~SessionBusInstance() override;

    [[nodiscard]] Claim claim(std::chrono::milliseconds patience) override;
    [[nodiscard]] bool send(const InstanceRequest &request) override;
    void serve(MainQueue &queue, Handler handler) override;

private:
    class Service;

    QByteArray m_name;
    QByteArray m_path;
    std::unique_ptr<Service> m_service;
};

} // namespace corvane::platform
