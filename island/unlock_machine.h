#pragma once

// How the island is unlocked.
//
// | state     | event               | next      | actions                                        |
// |-----------|---------------------|-----------|------------------------------------------------|
// | Locked    | opened, requested   | Prompting | ClearMessage; prompts the user                 |
// | Refused   | requested           | Prompting | ClearMessage; prompts the user                 |
// | Prompting | no authentication   | Unlocked  | UnlockAtOnce; the request's continuation       |
// | Prompting | the user agrees     | Unlocked  | Unlock, LoadKey; the request's continuation    |
// | Prompting | any other reply     | Refused   |                                                |
// | Unlocked  | requested           | Unlocked  | the request's continuation                     |
//
// Events that are not in the table have no effect: a request while another is open is dropped, and
// after a refusal opening the island does not prompt again. Unlocked lasts until the program exits.
//
// Whether this device can authenticate its owner is queried in advance, when the pointer reaches
// the island, because the reply may take some seconds. An attempt that starts before the reply is
// Prompting until then. On some devices this is known only from the reply to the prompt.

#include "platform/authenticator.h"
#include "platform/main_queue.h"

#include <functional>
#include <memory>
#include <optional>

namespace corvane::island {

/// The unlock state machine; see the table above. Main thread.
class UnlockMachine
{
public:
    enum class State { Locked, Prompting, Refused, Unlocked };

    /// The island that the machine unlocks.
    class Island
    {
    public:
        /// Called at the start of an attempt: removes the message of the previous one.
        virtual void clearMessage() = 0;
        /// Shows the wallet, with an animation.
        virtual void unlock() = 0;
        /// Shows the wallet without animation, and does not load the key.
        virtual void unlockAtOnce() = 0;
        /// Whether the device can authenticate its owner, as found out.
        virtual void meansFound(platform::PresenceMeans means) = 0;
        /// Loads the key with a context that has just passed.
        virtual void loadKey(std::shared_ptr<platform::AuthenticationContext> context) = 0;

    protected:
        ~Island() = default;
    };

    /// All must outlive the machine.
    UnlockMachine(platform::MainQueue &queue, platform::Authenticator &authenticator,
                  Island &island);

    /// Called when the pointer reaches the island.
    void approached();
    /// Called when the island opens.
    void opened();
    /// Requests to unlock the island. `then`, which may be empty, is called once it is unlocked.
    void request(std::function<void()> then);
    [[nodiscard]] State state() const { return m_state; }

private:
    void ask(std::function<void()> then);
    /// Queries again whether the device can authenticate its owner.
    void findOut();
    void foundOut(platform::PresenceMeans means);
    void prompt(bool canAsk, std::function<void()> then);
    void answered(platform::PresenceAnswer answer,
                  std::shared_ptr<platform::AuthenticationContext> context,
                  const std::function<void()> &then);

    platform::MainQueue &m_queue;
    platform::Authenticator &m_authenticator;
    Island &m_island;
    State m_state = State::Locked;
    /// Whether the device can authenticate its owner: set by the latest reply, reset by the next
    /// prompt.
    std::optional<bool> m_canAsk;
    bool m_findingOut = false;
    /// The continuation of the attempt that waits for this reply.
    std::optional<std::function<void()>> m_waiting;
    /// Late replies hold a weak reference to it, to detect that this object was destroyed.
    std::shared_ptr<bool> m_life = std::make_shared<bool>(true);
};

} // namespace corvane::island
