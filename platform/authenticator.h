#pragma once

#include <QString>

#include <functional>
#include <memory>

namespace corvane::platform {

/// One authentication of the device's owner. Once it has passed, it opens the keychain's protected
/// item without a second prompt.
class AuthenticationContext
{
public:
    AuthenticationContext() = default;
    AuthenticationContext(const AuthenticationContext &) = delete;
    AuthenticationContext &operator=(const AuthenticationContext &) = delete;
    virtual ~AuthenticationContext() = default;

    /// True after a successful evaluation, until the context has been used up.
    [[nodiscard]] virtual bool passed() const = 0;
};

/// Asks the device's owner to prove presence, by fingerprint or account password.
class Authenticator
{
public:
    using Reply = std::function<void(bool success)>;

    Authenticator() = default;
    Authenticator(const Authenticator &) = delete;
    Authenticator &operator=(const Authenticator &) = delete;
    virtual ~Authenticator() = default;

    /// A fresh context, not evaluated. `cancelTitle` labels the prompt's cancel button where the
    /// desktop lets a program choose it.
    [[nodiscard]] virtual std::shared_ptr<AuthenticationContext>
    makeContext(const QString &cancelTitle) = 0;

    /// True when this device has a means of authenticating its owner. Does not prompt.
    [[nodiscard]] virtual bool canEvaluate(const AuthenticationContext &context) = 0;

    /// Prompts with `reason`. `reply` is called exactly once, later, on any thread; the context
    /// lives at least until then. A failure, a refusal and a time-out all reply false.
    virtual void evaluate(std::shared_ptr<AuthenticationContext> context, const QString &reason,
                          Reply reply) = 0;
};

} // namespace corvane::platform
