#pragma once

#include "platform/authenticator.h"
#include "platform/background_tasks.h"

#include <atomic>
#include <chrono>
#include <memory>

namespace corvane::platform {

/// Authenticates the owner through polkit, with the methods of the account's PAM stack.
///
/// polkit does not show texts from programs. Each reason therefore has an action with a fixed text,
/// in `assets/org.corvane.policy`. Contexts are `OneTimeContext`s.
///
/// polkit has no request for whether the session has an authentication agent. Without one, an
/// evaluation fails immediately, with the result that the owner could have been asked. This class
/// therefore assumes that there is an agent until an evaluation fails in this way, and afterwards
/// that there is none until another evaluation has been answered.
///
/// Thread-safe. A running evaluation, which is a background task, may outlive this object.
class PolkitAuthenticator final : public Authenticator
{
public:
    /// `userBound`: how long an evaluation waits for the user before it cancels the prompt.
    explicit PolkitAuthenticator(BackgroundTasks &background,
                                 std::chrono::milliseconds userBound = std::chrono::minutes(5));

    [[nodiscard]] std::shared_ptr<AuthenticationContext>
    makeContext(const QString &cancelTitle) override;
    /// Replies `Available` if polkit knows the actions and grants them, with authentication by the
    /// user if needed. Takes at most three seconds.
    void canEvaluate(Availability reply) override;
    /// Replies `Refused` for a context of another authenticator.
    void evaluate(std::shared_ptr<AuthenticationContext> context, PresencePrompt prompt,
                  Reply reply) override;
    [[nodiscard]] bool isAsking() const override { return *m_open > 0; }

private:
    BackgroundTasks &m_background;
    const std::chrono::milliseconds m_userBound;
    /// The number of evaluations without a reply, and whether the last one found no agent. Shared
    /// with running evaluations, which may outlive this object.
    std::shared_ptr<std::atomic<int>> m_open = std::make_shared<std::atomic<int>>(0);
    std::shared_ptr<std::atomic<bool>> m_lacksAgent = std::make_shared<std::atomic<bool>>(false);
};

} // namespace corvane::platform
