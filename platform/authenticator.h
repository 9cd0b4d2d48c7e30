#pragma once

#include "platform/presence.h"

#include <QString>

#include <functional>
#include <memory>

namespace corvane::platform {

/// One authentication of the device's owner. After it has passed, it unlocks the keychain's
/// protected item without a second prompt. Thread-safe.
class AuthenticationContext
{
public:
    AuthenticationContext() = default;
    AuthenticationContext(const AuthenticationContext &) = delete;
    AuthenticationContext &operator=(const AuthenticationContext &) = delete;
    virtual ~AuthenticationContext() = default;

    /// True after a successful evaluation, until the context has been used.
    [[nodiscard]] virtual bool passed() const = 0;
};

/// Asks the device's owner to prove presence, by fingerprint or account password. Calls do not
/// block; each reply is called exactly once, on any thread, possibly before the call returns.
class Authenticator
{
public:
    using Availability = std::function<void(PresenceMeans means)>;
    using Reply = std::function<void(PresenceAnswer answer)>;

    Authenticator() = default;
    Authenticator(const Authenticator &) = delete;
    Authenticator &operator=(const Authenticator &) = delete;
    virtual ~Authenticator() = default;

    /// Creates a context that has not been evaluated. `cancelTitle` is the label of the prompt's
    /// cancel button, on desktops where a program can set it.
    [[nodiscard]] virtual std::shared_ptr<AuthenticationContext>
    makeContext(const QString &cancelTitle) = 0;

    /// Replies whether this device can authenticate its owner, as far as this can be determined
    /// without a prompt. Replies within a few seconds.
    virtual void canEvaluate(Availability reply) = 0;

    /// Prompts the owner, who may take minutes. On success, `context` has passed before the reply.
    virtual void evaluate(std::shared_ptr<AuthenticationContext> context, PresencePrompt prompt,
                          Reply reply) = 0;

    /// True from a prompt until its reply. Thread-safe.
    [[nodiscard]] virtual bool isAsking() const = 0;
};

} // namespace corvane::platform
