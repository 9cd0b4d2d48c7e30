#pragma once

// How the island reacts to the pointer.
//
// | state           | event           | next     | actions                                        |
// |-----------------|-----------------|----------|------------------------------------------------|
// | Resting         | PointerInside   | Hovered  | Swell; Open in 0.12 s                          |
// | Hovered/Widened | PointerInside   | same     | Open in 0.12 s                                 |
// | Hovered         | PointerOutside  | Resting  | Settle                                         |
// | Widened         | PointerOutside  | Resting  | Settle, Narrow; LetClicksPass in 0.4 s         |
// | Expanded/Opened | PointerOutside  | same     | Settle; on the balance pane Close in 0.32 s    |
// | without a card  | Open, Present   | Widened  | Raise, Widen, Prompt; Unfold in 0.1 s          |
// | Widened         | (Unfold)        | Expanded | Unfold                                         |
// | Resting/Hovered | ShowPane        | Opened   | Unfold                                         |
// | Widened         | ShowPane        | Expanded | Unfold                                         |
// | Expanded        | Close           | Widened  | Fold; Narrow in 0.16 s; LetClicksPass in 0.7 s |
// | Opened          | Close           | Resting  | Fold; LetClicksPass in 0.7 s                   |
// | Widened         | (Narrow)        | Resting  | Narrow                                         |
// | Resting/Hovered | (LetClicksPass) | same     | LetClicksPass                                  |
// | without a card  | ScreensChange   | Resting  | Reset                                          |
// | Expanded/Opened | Dismiss         | as Close | as Close                                       |
//
// "Without a card" means Resting, Hovered or Widened. Events in parentheses are steps that were
// scheduled by an earlier action. Events that are not in the table have no effect. In addition:
// - Open and Close are not scheduled twice. PointerInside cancels a scheduled Close, and
//   PointerOutside a scheduled Open.
// - Close has no effect on panes other than the balance, or while a prompt is open, or while the
//   island is held by the keyboard. Dismiss has none while a prompt is open.
// - For some seconds after Present, but only until the pointer has been inside or the keyboard has
//   gone elsewhere, and as long as the island is held, PointerOutside performs Settle and then acts
//   like Open.
// - After Dismiss, PointerInside has no effect until the pointer has been outside, or the island
//   has been opened in another way.
// - A transition to Resting leads to Hovered instead while the tab is swollen (from Swell until the
//   next Settle or Reset).

#include "platform/main_queue.h"

#include <chrono>
#include <memory>
#include <optional>

namespace corvane::island {

/// The hover state machine; see the table above. Main thread.
class HoverMachine
{
public:
    enum class State {
        Resting,  ///< collapsed, as large as the notch
        Hovered,  ///< the same, slightly larger under the pointer
        Widened,  ///< a strip, about to unfold or about to narrow
        Expanded, ///< a strip with a card
        Opened    ///< a card that was opened from Resting, so that no strip remains when it folds
    };

    enum class Event {
        PointerInside,  ///< the pointer is over the island
        PointerOutside, ///< the pointer is elsewhere, or on no screen
        Open,           ///< open the island
        Present,        ///< open the island without the pointer, and wait for it
        ShowPane,       ///< open the island with a chosen pane, immediately
        Close,          ///< close the island, if allowed
        Dismiss,        ///< close the island on any pane: the user sends it away by a key
        KeyboardLost,   ///< the keyboard has gone to another window
        ScreensChange   ///< the displays have changed
    };

    enum class Action {
        Swell,         ///< the tab grows under the pointer
        Settle,        ///< the tab returns to its size
        Raise,         ///< the panel is raised and accepts clicks
        Widen,         ///< the tab becomes a strip
        Prompt,        ///< the user is asked to prove presence, if required
        Unfold,        ///< the card appears
        Fold,          ///< the card disappears and keyboard focus is returned
        Narrow,        ///< the strip becomes a tab
        LetClicksPass, ///< the panel lets clicks through
        Reset          ///< immediately a tab with click-through, without animation
    };

    /// The island that the machine controls.
    class Island
    {
    public:
        /// Called in the order of the table, after the machine has changed its state.
        virtual void perform(Action action) = 0;
        [[nodiscard]] virtual bool showsBalance() const = 0;
        /// True while the user is asked to prove presence.
        [[nodiscard]] virtual bool isPrompting() const = 0;
        /// True while the keyboard, by which the island was opened, keeps it open.
        [[nodiscard]] virtual bool isHeld() const = 0;

    protected:
        ~Island() = default;
    };

    /// Both must outlive the machine.
    HoverMachine(platform::MainQueue &queue, Island &island);
    HoverMachine(const HoverMachine &) = delete;
    HoverMachine &operator=(const HoverMachine &) = delete;
    ~HoverMachine();

    void handle(Event event);
    [[nodiscard]] State state() const { return m_state; }
    /// True while a card is shown.
    [[nodiscard]] bool isOpen() const;

private:
    void pointerInside();
    void pointerOutside();
    void open();
    void unfold();
    void close();
    void dismiss();
    void fold();
    void narrow();
    void letClicksPass();
    /// Changes the state from strip or card to tab.
    void becomeTab();
    [[nodiscard]] bool isPresented() const;
    void schedule(std::shared_ptr<platform::WorkItem> &work, std::chrono::nanoseconds delay,
                  Event event);
    /// Calls `step` after `delay`, unless this object is destroyed first.
    void later(std::chrono::nanoseconds delay, void (HoverMachine::*step)());

    platform::MainQueue &m_queue;
    Island &m_island;
    State m_state = State::Resting;
    /// True from Swell to the next Settle or Reset.
    bool m_swollen = false;
    std::shared_ptr<platform::WorkItem> m_openWork;
    std::shared_ptr<platform::WorkItem> m_closeWork;
    /// The time until which Present keeps the island open without the pointer.
    std::optional<std::chrono::nanoseconds> m_presentedUntil;
    /// True from Dismiss until the pointer has been outside.
    bool m_dismissed = false;
    /// Pending steps hold a weak reference to it, to detect that this object was destroyed.
    std::shared_ptr<bool> m_life = std::make_shared<bool>(true);
};

} // namespace corvane::island
