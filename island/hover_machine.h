#pragma once

// What the island does when the pointer comes and goes.
//
// | state                     | event          | state    | actions |
// |---------------------------|----------------|----------|-----------------------------------------|
// | Resting                   | PointerInside  | Hovered  | Swell; Open in 0.12 s | | Hovered,
// Widened          | PointerInside  | as it is | Open in 0.12 s                          | |
// Hovered                   | PointerOutside | Resting  | Settle                                  |
// | Widened                   | PointerOutside | Resting  | Settle, Narrow; LetClicksPass in 0.4 s
// | | Expanded, Opened          | PointerOutside | as it is | Settle; on the balance Close in 0.32
// s  | | Resting, Hovered, Widened | Open, Present  | Widened  | Raise, Widen, Prompt; Unfold in
// 0.1 s   | | Widened                   | (Unfold)       | Expanded | Unfold | | Resting, Hovered
// | ShowPane       | Opened   | Unfold                                  | | Widened | ShowPane |
// Expanded | Unfold                                  | | Expanded                  | Close |
// Widened  | Fold; Narrow in 0.16 s,                 | |                           | |          |
// LetClicksPass in 0.7 s                  | | Opened                    | Close          | Resting
// | Fold; LetClicksPass in 0.7 s            | | Widened                   | (Narrow)       |
// Resting  | Narrow                                  | | Resting, Hovered          |
// (LetClicksPass)| as it is | LetClicksPass                           | | Resting, Hovered, Widened
// | ScreensChange  | Resting  | Reset                                   |
//
// Whatever is not in the table does nothing. Besides:
// - Open and Close are only scheduled when they are not due already. PointerInside cancels a Close
//   that is due, and PointerOutside an Open.
// - Close does nothing on another pane than the balance, nor while the user is being asked.
// - For some seconds after Present, or until the pointer has been inside, PointerOutside settles
// and
//   is then an Open.
// - What becomes Resting becomes Hovered, if Swell has not been followed by Settle or Reset.

#include "platform/main_queue.h"

#include <chrono>
#include <memory>
#include <optional>

namespace corvane::island {

/// The hover state machine; its table stands above. Main thread.
class HoverMachine
{
public:
    enum class State {
        Resting,  ///< as large as the notch
        Hovered,  ///< the same, swollen under the pointer
        Widened,  ///< a strip: about to unfold, or about to narrow
        Expanded, ///< a strip with a card
        Opened    ///< a card that was opened from rest, without a strip that stays when it folds
    };

    enum class Event {
        PointerInside,  ///< the pointer is where the island is
        PointerOutside, ///< it is not, or nowhere
        Open,           ///< the island is to open
        Present,        ///< it is to open although the pointer is elsewhere, and to wait for it
        ShowPane,       ///< it is to open on a pane of the user's choice, at once
        Close,          ///< it is to close, if it may
        ScreensChange   ///< the displays have changed
    };

    enum class Action {
        Swell,         ///< the tab grows under the pointer
        Settle,        ///< it is back to its size
        Raise,         ///< the panel comes to the front and takes clicks
        Widen,         ///< the tab becomes a strip
        Prompt,        ///< the user is asked for presence, where that is due
        Unfold,        ///< the card appears
        Fold,          ///< the card goes, and the keyboard with it
        Narrow,        ///< the strip becomes a tab
        LetClicksPass, ///< the panel lets clicks through
        Reset          ///< at once a tab that lets clicks through, without a motion
    };

    /// The island that the machine moves.
    class Island
    {
    public:
        /// Called in the order of the table, when the machine has its new state.
        virtual void perform(Action action) = 0;
        [[nodiscard]] virtual bool showsBalance() const = 0;
        /// The user is being asked for presence.
        [[nodiscard]] virtual bool isPrompting() const = 0;

    protected:
        ~Island() = default;
    };

    /// Both outlive the machine.
    HoverMachine(platform::MainQueue &queue, Island &island);
    HoverMachine(const HoverMachine &) = delete;
    HoverMachine &operator=(const HoverMachine &) = delete;
    ~HoverMachine();

    void handle(Event event);
    [[nodiscard]] State state() const { return m_state; }
    /// There is a card.
    [[nodiscard]] bool isOpen() const;

private:
    void pointerInside();
    void pointerOutside();
    void open();
    void unfold();
    void close();
    void narrow();
    void letClicksPass();
    /// Leaves the strip or the card.
    void becomeTab();
    [[nodiscard]] bool isPresented() const;
    void schedule(std::shared_ptr<platform::WorkItem> &work, std::chrono::nanoseconds delay,
                  Event event);
    /// Calls `step` later; nothing cancels that but the end of this object.
    void later(std::chrono::nanoseconds delay, void (HoverMachine::*step)());

    platform::MainQueue &m_queue;
    Island &m_island;
    State m_state = State::Resting;
    /// Swell has not been followed by Settle or Reset.
    bool m_swollen = false;
    std::shared_ptr<platform::WorkItem> m_openWork;
    std::shared_ptr<platform::WorkItem> m_closeWork;
    /// Until when Present keeps the island open without the pointer.
    std::optional<std::chrono::nanoseconds> m_presentedUntil;
    /// Goes with this object, which pending steps find out by it.
    std::shared_ptr<bool> m_life = std::make_shared<bool>(true);
};

} // namespace corvane::island
