#pragma once

#include "platform/authenticator.h"
#include "platform/linux/one_time_context.h"

#include <QStringList>

namespace corvane::tests {

/// An owner who is there or not, who agrees or not, and who answers at once.
class ScriptedAuthenticator : public platform::Authenticator
{
public:
    bool available = true;
    bool agrees = true;
    QStringList reasons;

    [[nodiscard]] std::shared_ptr<platform::AuthenticationContext>
    makeContext(const QString &) override
    {
        return std::make_shared<platform::OneTimeContext>();
    }
    [[nodiscard]] bool canEvaluate(const platform::AuthenticationContext &) override
    {
        return available;
    }
    void evaluate(std::shared_ptr<platform::AuthenticationContext> context, const QString &reason,
                  Reply reply) override
    {
        reasons.append(reason);
        if (agrees) {
            std::static_pointer_cast<platform::OneTimeContext>(context)->pass();
        }
        reply(agrees);
    }
};

} // namespace corvane::tests
