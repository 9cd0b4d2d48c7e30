#include "island/unlock_machine.h"

#include <QString>

#include <utility>

namespace corvane::island {

using platform::PresenceAnswer;

UnlockMachine::UnlockMachine(platform::MainQueue &queue, platform::Authenticator &authenticator,
                             Island &island)
    : m_queue(queue)
    , m_authenticator(authenticator)
    , m_island(island)
{}

void UnlockMachine::approached()
{
    if (m_state != State::Unlocked) {
        findOut();
    }
}

void UnlockMachine::opened()
{
    if (m_state == State::Locked) {
        ask(nullptr);
    }
}

void UnlockMachine::request(std::function<void()> then)
{
    if (m_state == State::Unlocked) {
        if (then) {
            then();
        }
    } else if (m_state != State::Prompting) {
        ask(std::move(then));
    }
}

void UnlockMachine::ask(std::function<void()> then)
{
    m_state = State::Prompting;
    m_island.clearMessage();
    if (m_canAsk) {
        prompt(*std::exchange(m_canAsk, std::nullopt), std::move(then));
    } else {
        m_waiting = std::move(then);
        findOut();
    }
}

void UnlockMachine::findOut()
{
    m_canAsk.reset();
    if (std::exchange(m_findingOut, true)) {
        return;
    }
    // The reply may come on any thread.
    m_authenticator.canEvaluate(
        [this, life = std::weak_ptr(m_life), &queue = m_queue](platform::PresenceMeans means) {
            queue.post([this, life, means] {
                if (!life.expired()) {
                    foundOut(means);
                }
            });
        });
}

void UnlockMachine::foundOut(platform::PresenceMeans means)
{
    const bool canAsk = means == platform::PresenceMeans::Available;
    m_findingOut = false;
    m_island.meansFound(means);
    if (m_waiting) {
        prompt(canAsk, *std::exchange(m_waiting, std::nullopt));
    } else {
        m_canAsk = canAsk;
    }
}

void UnlockMachine::prompt(bool canAsk, std::function<void()> then)
{
    const auto context = m_authenticator.makeContext(QStringLiteral("Cancel"));
    if (!canAsk) {
        answered(PresenceAnswer::NobodyToAsk, context, then);
        return;
    }
    m_authenticator.evaluate(context,
                             {platform::PresenceReason::Unlock, QStringLiteral("unlock Corvane")},
                             [this, life = std::weak_ptr(m_life), &queue = m_queue, context,
                              then = std::move(then)](PresenceAnswer answer) {
                                 queue.post([this, life, context, then, answer] {
                                     if (!life.expired()) {
                                         answered(answer, context, then);
                                     }
                                 });
                             });
}

void UnlockMachine::answered(PresenceAnswer answer,
                             std::shared_ptr<platform::AuthenticationContext> context,
                             const std::function<void()> &then)
{
    if (answer == PresenceAnswer::Refused) {
        m_state = State::Refused;
        return;
    }
    m_state = State::Unlocked;
    if (answer == PresenceAnswer::Passed) {
        m_island.unlock();
        m_island.loadKey(std::move(context));
    } else {
        m_island.unlockAtOnce();
    }
    if (then) {
        then();
    }
}

} // namespace corvane::island
