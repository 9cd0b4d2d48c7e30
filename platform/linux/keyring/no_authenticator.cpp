#include "platform/linux/keyring/no_authenticator.h"

namespace corvane::platform {

namespace {

class NeverPassed final : public AuthenticationContext
{
public:
    [[nodiscard]] bool passed() const override { return false; }
};

} // namespace

std::shared_ptr<AuthenticationContext> NoAuthenticator::makeContext(const QString &)
{
    return std::make_shared<NeverPassed>();
}

void NoAuthenticator::canEvaluate(Availability reply)
{
    reply(PresenceMeans::NotInstalled);
}

void NoAuthenticator::evaluate(std::shared_ptr<AuthenticationContext>, PresencePrompt, Reply reply)
{
    reply(PresenceAnswer::NobodyToAsk);
}

} // namespace corvane::platform
