#pragma once

#include "platform/authenticator.h"
#include "platform/background_tasks.h"

#include <atomic>
#include <chrono>
#include <memory>

namespace corvane::platform {

/// Authenticates the owner through polkit, by whatever the account's PAM stack offers.
///
/// polkit shows programs' own texts to nobody, so each reason has an action with a fixed text, in
/// `assets/org.corvane.policy`. Contexts are `OneTimeContext`s.
///
/// Whether the session has an authentication agent is no question that polkit answers, except by
/// the evaluation itself: without an agent that ends at once, unauthorized and with the remark that
/// the owner could have been asked. Until an evaluation has ended so, an agent is taken to be
/// there, and afterwards to be missing until an evaluation has been answered.
///
/// All members may be called from any thread, and an evaluation, which is work in the background,
/// outlives the object.
class PolkitAuthenticator final : public Authenticator
{
public:
    /// `userBound`: how long an evaluation waits for the user before it cancels the prompt.
    explicit PolkitAuthenticator(BackgroundTasks &background,
                                 std::chrono::milliseconds userBound = std::chrono::minutes(5));

    [[nodiscard]] std::shared_ptr<AuthenticationContext>
    makeContext(const QString &cancelTitle) override;
    /// True when polkit knows the actions, and would let the user authenticate for them if that is
    /// needed. Three seconds at most.
    void canEvaluate(Availability reply) override;
    /// Refuses a context of another authenticator.
    void evaluate(std::shared_ptr<AuthenticationContext> context, PresencePrompt prompt,
                  Reply reply) override;

private:
    BackgroundTasks &m_background;
    const std::chrono::milliseconds m_userBound;
    /// The last evaluation found no agent. Outlives this object where an evaluation does.
    std::shared_ptr<std::atomic<bool>> m_lacksAgent = std::make_shared<std::atomic<bool>>(false);
};

} // namespace corvane::platform
