#pragma once

#include "platform/authenticator.h"

namespace corvane::platform {

/// For devices that cannot authenticate their owner. Replies immediately.
class NoAuthenticator final : public Authenticator
{
public:
    [[nodiscard]] std::shared_ptr<AuthenticationContext>
    makeContext(const QString &cancelTitle) override;
    void canEvaluate(Availability reply) override;
    void evaluate(std::shared_ptr<AuthenticationContext> context, PresencePrompt prompt,
                  Reply reply) override;
    [[nodiscard]] bool isAsking() const override { return false; }
};

} // namespace corvane::platform
