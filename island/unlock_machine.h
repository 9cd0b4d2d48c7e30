#pragma once

// How the island is unlocked.
//
// | state     | event               | state     | actions                                        |
// |-----------|---------------------|-----------|------------------------------------------------|
// | Locked    | opened, requested   | Prompting | ClearMessage; the user is asked                |
// | Refused   | requested           | Prompting | ClearMessage; the user is asked                |
// | Prompting | nobody can be asked | Unlocked  | UnlockAtOnce; the request's continuation       |
// | Prompting | the user agrees     | Unlocked  | Unlock, LoadKey; the request's continuation    |
// | Prompting | any other answer    | Refused   |                                                |
// | Unlocked  | requested           | Unlocked  | the request's continuation                     |
//
// Whatever is not in the table does nothing: a request while another is open is dropped, and an
// island that the user has refused to unlock does not ask by itself again. Unlocked lasts until the
// program ends.
//
// Whether anybody can be asked is found out ahead, when the pointer comes near, because the answer
// may take some seconds; an attempt that begins before it is Prompting until then. Some devices
// know it only by the prompt's own answer.

#include "platform/authenticator.h"
#include "platform/main_queue.h"

#include <functional>
#include <memory>
#include <optional>

namespace corvane::island {

/// The unlock state machine; its table stands above. Main thread.
class UnlockMachine
{
public:
    enum class State { Locked, Prompting, Refused, Unlocked };

    /// The island that the machine unlocks.
    class Island
    {
    public:
        /// An attempt begins; nothing of the last one is to be seen any more.
        virtual void clearMessage() = 0;
        /// Shows the wallet, with a motion.
        virtual void unlock() = 0;
        /// Shows the wallet without a motion, and leaves the key where it is.
        virtual void unlockAtOnce() = 0;
        /// Loads the key, with a context that has just passed.
        virtual void loadKey(std::shared_ptr<platform::AuthenticationContext> context) = 0;

    protected:
        ~Island() = default;
    };

    /// All outlive the machine.
    UnlockMachine(platform::MainQueue &queue, platform::Authenticator &authenticator,
                  Island &island);

    /// The pointer comes near.
    void approached();
    /// The island opens.
    void opened();
    /// Somebody wants the island unlocked. `then`, which may be empty, runs once it is.
    void request(std::function<void()> then);
    [[nodiscard]] State state() const { return m_state; }

private:
    void ask(std::function<void()> then);
    /// Finds out anew whether anybody can be asked.
    void findOut();
    void foundOut(bool canAsk);
    void prompt(bool canAsk, std::function<void()> then);
    void answered(platform::PresenceAnswer answer,
                  std::shared_ptr<platform::AuthenticationContext> context,
                  const std::function<void()> &then);

    platform::MainQueue &m_queue;
    platform::Authenticator &m_authenticator;
    Island &m_island;
    State m_state = State::Locked;
    /// Whether anybody can be asked, from when it was found out until the next prompt.
    std::optional<bool> m_canAsk;
    bool m_findingOut = false;
    /// What follows on the attempt that waits for that.
    std::optional<std::function<void()>> m_waiting;
    /// Goes with this object, which a late answer finds out by it.
    std::shared_ptr<bool> m_life = std::make_shared<bool>(true);
};

} // namespace corvane::island
