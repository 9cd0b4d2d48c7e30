#pragma once

#include "platform/authenticator.h"

namespace corvane::platform {

/// For devices that have no means of authenticating their owner: every evaluation fails.
class NoAuthenticator final : public Authenticator
{
public:
    [[nodiscard]] std::shared_ptr<AuthenticationContext>
    makeContext(const QString &cancelTitle) override;
    [[nodiscard]] bool canEvaluate(const AuthenticationContext &context) override;
    void evaluate(std::shared_ptr<AuthenticationContext> context, const QString &reason,
                  Reply reply) override;
};

} // namespace corvane::platform
