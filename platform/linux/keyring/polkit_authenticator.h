#pragma once

#include "platform/authenticator.h"
#include "platform/background_tasks.h"

#include <QString>

#include <chrono>
#include <optional>

namespace corvane::platform {

/// Authenticates the owner through polkit, by whatever the account's PAM stack offers.
///
/// polkit shows programs' own texts to nobody, so each reason has an action with a fixed text, in
/// `assets/org.corvane.policy`. Contexts are `OneTimeContext`s. All members may be called from any
/// thread, and an evaluation, which is work in the background, outlives the object.
class PolkitAuthenticator final : public Authenticator
{
public:
    /// `userBound`: how long an evaluation waits for the user before it cancels the prompt.
    explicit PolkitAuthenticator(BackgroundTasks &background,
                                 std::chrono::milliseconds userBound = std::chrono::minutes(5));

    [[nodiscard]] std::shared_ptr<AuthenticationContext>
    makeContext(const QString &cancelTitle) override;
    /// True when polkit knows the actions, would let the user authenticate for them, and an
    /// authentication agent is there to ask. Takes a few milliseconds, three seconds at most.
    [[nodiscard]] bool canEvaluate(const AuthenticationContext &context) override;
    /// Replies false to a reason without an action and to a context of another authenticator.
    void evaluate(std::shared_ptr<AuthenticationContext> context, const QString &reason,
                  Reply reply) override;

    /// The action whose text tells `reason`.
    [[nodiscard]] static std::optional<QString> actionFor(const QString &reason);

private:
    BackgroundTasks &m_background;
    std::chrono::milliseconds m_userBound;
};

} // namespace corvane::platform
