#include "island/unlock_machine.h"

#include <QString>

#include <utility>

namespace corvane::island {

UnlockMachine::UnlockMachine(platform::MainQueue &queue, platform::Authenticator &authenticator,
                             Island &island)
    : m_queue(queue)
    , m_authenticator(authenticator)
    , m_island(island)
{}

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
    const auto context = m_authenticator.makeContext(QStringLiteral("Cancel"));
    if (!m_authenticator.canEvaluate(*context)) {
        m_state = State::Unlocked;
        m_island.unlockAtOnce();
        if (then) {
            then();
        }
        return;
    }
    // The answer may come on any thread.
    m_authenticator.evaluate(context, QStringLiteral("unlock Corvane"),
                             [this, life = std::weak_ptr(m_life), &queue = m_queue, context,
                              then = std::move(then)](bool success) {
                                 queue.post([this, life, context, then, success] {
                                     if (!life.expired()) {
                                         answered(success, context, then);
                                     }
                                 });
                             });
}

void UnlockMachine::answered(bool success, std::shared_ptr<platform::AuthenticationContext> context,
                             const std::function<void()> &then)
{
    if (!success) {
        m_state = State::Refused;
        return;
    }
    m_state = State::Unlocked;
    m_island.unlock();
    m_island.loadKey(std::move(context));
    if (then) {
        then();
    }
}

} // namespace corvane::island
