#pragma once

#include "platform/instance.h"

#include <memory>

namespace corvane::platform {

/// A well-known name on the session bus, owned by the running instance, which answers as
/// org.freedesktop.Application. The actions "open", "refresh" and the like come as ActivateAction.
///
/// Works without an application object, so that a request needs no display.
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
