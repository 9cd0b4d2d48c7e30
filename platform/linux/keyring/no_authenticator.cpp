#include "platform/linux/keyring/no_authenticator.h"

#include <QCoreApplication>
#include <QMetaObject>

#include <utility>

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

bool NoAuthenticator::canEvaluate(const AuthenticationContext &)
{
    return false;
}

void NoAuthenticator::evaluate(std::shared_ptr<AuthenticationContext> context, const QString &,
                               Reply reply)
{
    // The reply comes later, never inside this call, and the context lives until then.
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [context = std::move(context), reply = std::move(reply)] { reply(false); },
        Qt::QueuedConnection);
}

} // namespace corvane::platform
