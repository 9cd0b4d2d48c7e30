#pragma once

#include "platform/presence.h"

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

/// Asks the device's owner to prove presence, by fingerprint or account password. No call waits;
/// each reply comes exactly once, on any thread, perhaps before the call returns.
class Authenticator
{
public:
    using Availability = std::function<void(bool available)>;
    using Reply = std::function<void(PresenceAnswer answer)>;

    Authenticator() = default;
    Authenticator(const Authenticator &) = delete;
    Authenticator &operator=(const Authenticator &) = delete;
    virtual ~Authenticator() = default;

    /// A fresh context, not evaluated. `cancelTitle` labels the prompt's cancel button where the
    /// desktop lets a program choose it.
    [[nodiscard]] virtual std::shared_ptr<AuthenticationContext>
    makeContext(const QString &cancelTitle) = 0;

    /// Whether this device has a means of authenticating its owner, as far as can be found out
    /// without a prompt. Replies within a few seconds.
    virtual void canEvaluate(Availability reply) = 0;

    /// Prompts the owner, who may take minutes. `context` has passed before a reply says so.
    virtual void evaluate(std::shared_ptr<AuthenticationContext> context, PresencePrompt prompt,
                          Reply reply) = 0;
};

} // namespace corvane::platform
