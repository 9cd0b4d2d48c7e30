#include "island/hover_machine.h"
#include "tests/fakes/hand_driven_queue.h"
#include "tests/fakes/table.h"

#include <gtest/gtest.h>

#include <array>

namespace corvane::island {
namespace {

using namespace std::chrono_literals;
using State = HoverMachine::State;
using Event = HoverMachine::Event;

/// A machine and an island that writes down what is done to it, as in "120 Raise Widen, 220
/// Unfold": milliseconds since `begin`, and the actions of that time.
class HoverMachineTest : public testing::Test, public HoverMachine::Island
{
protected:
    void begin(State state)
    {
        m_machine.emplace(m_queue, *this);
        switch (state) {
        case State::Resting:
            break;
        case State::Hovered:
            m_machine->handle(Event::PointerInside);
            break;
        case State::Widened:
            m_machine->handle(Event::Open);
            break;
        case State::Expanded:
            m_machine->handle(Event::Open);
            m_queue.advance(100ms);
            break;
        case State::Opened:
            m_machine->handle(Event::ShowPane);
            break;
        }
        ASSERT_EQ(m_machine->state(), state);
        m_begin = m_queue.now();
        m_log.clear();
        m_last.reset();
    }

    void handle(Event event) { m_machine->handle(event); }
    /// The hover poll finds the pointer there for `time`.
    void poll(Event event, std::chrono::milliseconds time)
    {
        for (auto passed = 0ms; passed < time; passed += 150ms) {
            handle(event);
            m_queue.advance(150ms);
        }
    }

    tests::HandDrivenQueue m_queue;
    std::string m_log;
    bool m_showsBalance = true;
    bool m_isPrompting = false;
    std::optional<HoverMachine> m_machine;

private:
    void perform(HoverMachine::Action action) override
    {
        constexpr std::array names{"Swell",  "Settle", "Raise",  "Widen",         "Prompt",
                                   "Unfold", "Fold",   "Narrow", "LetClicksPass", "Reset"};
        const auto now =
            std::chrono::duration_cast<std::chrono::milliseconds>(m_queue.now() - m_begin);
        if (m_last != now) {
            m_log += (m_last ? ", " : "") + std::to_string(now.count());
            m_last = now;
        }
        m_log += ' ';
        m_log += names.at(static_cast<std::size_t>(action));
    }
    [[nodiscard]] bool showsBalance() const override { return m_showsBalance; }
    [[nodiscard]] bool isPrompting() const override { return m_isPrompting; }

    std::chrono::nanoseconds m_begin{};
    std::optional<std::chrono::milliseconds> m_last;
};

TEST_F(HoverMachineTest, AnEventAndAllThatFollowsOnIt)
{
    using enum HoverMachine::State;
    using enum HoverMachine::Event;
    const std::string opening = "0 Raise Widen Prompt, 100 Unfold";
    for (const auto &[from, event, log, to] : tests::Table<State, Event, std::string, State>{
             {Resting, PointerInside, "0 Swell, 120 Raise Widen Prompt, 220 Unfold", Expanded},
             {Resting, PointerOutside, "", Resting},
             {Resting, Open, opening, Expanded},
             {Resting, Present, opening, Expanded},
             {Resting, ShowPane, "0 Unfold", Opened},
             {Resting, Close, "", Resting},
             {Resting, ScreensChange, "0 Reset", Resting},
             {Hovered, PointerInside, "120 Raise Widen Prompt, 220 Unfold", Expanded},
             {Hovered, PointerOutside, "0 Settle", Resting},
             {Hovered, ShowPane, "0 Unfold", Opened},
             {Widened, PointerInside, "100 Unfold", Expanded},
             {Widened, PointerOutside, "0 Narrow, 400 LetClicksPass", Resting},
             {Widened, ShowPane, "0 Unfold", Expanded},
             {Widened, Close, "100 Unfold", Expanded},
             {Widened, ScreensChange, "0 Reset", Resting},
             {Expanded, PointerInside, "", Expanded},
             {Expanded, PointerOutside, "320 Fold, 480 Narrow, 1020 LetClicksPass", Resting},
             {Expanded, Open, "", Expanded},
             {Expanded, ShowPane, "", Expanded},
             {Expanded, Close, "0 Fold, 160 Narrow, 700 LetClicksPass", Resting},
             {Expanded, ScreensChange, "", Expanded},
             {Opened, PointerInside, "", Opened},
             {Opened, PointerOutside, "320 Fold, 1020 LetClicksPass", Resting},
             {Opened, Open, "", Opened},
             {Opened, ScreensChange, "", Opened},
         }) {
        SCOPED_TRACE(testing::Message()
                     << static_cast<int>(from) << ", event " << static_cast<int>(event));
        begin(from);
        handle(event);
        m_queue.advance(2s);
        EXPECT_EQ(m_log, log);
        EXPECT_EQ(m_machine->state(), to);
    }
}

TEST_F(HoverMachineTest, ThePointerChangesItsMind)
{
    using enum HoverMachine::Event;
    struct Step
    {
        std::chrono::milliseconds wait;
        Event event;
    };
    for (const auto &[steps, log, to] : tests::Table<std::vector<Step>, std::string, State>{
             {{{0ms, PointerInside}, {100ms, PointerOutside}},
              "0 Swell, 100 Settle",
              State::Resting},
             // Out between widening and unfolding.
             {{{0ms, PointerInside}, {130ms, PointerOutside}},
              "0 Swell, 120 Raise Widen Prompt, 130 Settle Narrow, 530 LetClicksPass",
              State::Resting},
             // Back in before it folds; and one sample more outside, which delays nothing.
             {{{0ms, Open}, {200ms, PointerOutside}, {319ms, PointerInside}},
              "0 Raise Widen Prompt, 100 Unfold",
              State::Expanded},
             {{{0ms, Open}, {200ms, PointerOutside}, {150ms, PointerOutside}},
              "0 Raise Widen Prompt, 100 Unfold, 520 Fold, 680 Narrow, 1220 LetClicksPass",
              State::Resting},
             // Back in while it closes: the strip still narrows, and the next sample opens it.
             {{{0ms, Open},
               {200ms, PointerOutside},
               {330ms, PointerInside},
               {170ms, PointerInside}},
              "0 Raise Widen Prompt, 100 Unfold, 520 Fold, 650 Raise Widen Prompt, 680 Narrow, "
              "700 Swell, 820 Raise Widen Prompt, 920 Unfold",
              State::Expanded},
             // The same, after a sample outside: what narrows under the pointer stays swollen.
             {{{0ms, Open}, {200ms, PointerOutside}, {321ms, PointerOutside}, {9ms, PointerInside}},
              "0 Raise Widen Prompt, 100 Unfold, 520 Fold, 521 Narrow, 530 Swell, 650 Raise Widen "
              "Prompt, 680 Narrow, 921 LetClicksPass, 1220 LetClicksPass",
              State::Hovered},
         }) {
        begin(State::Resting);
        for (const Step &step : steps) {
            m_queue.advance(step.wait);
            handle(step.event);
        }
        m_queue.advance(2s);
        EXPECT_EQ(m_log, log);
        EXPECT_EQ(m_machine->state(), to);
    }
}

TEST_F(HoverMachineTest, StaysOpenOnAnotherPaneAndWhileTheUserIsAsked)
{
    begin(State::Opened);
    m_showsBalance = false;
    poll(Event::PointerOutside, 10s);
    handle(Event::Close);
    EXPECT_EQ(m_machine->state(), State::Opened);
    m_showsBalance = true;
    m_isPrompting = true;
    poll(Event::PointerOutside, 10s);
    EXPECT_EQ(m_machine->state(), State::Opened);
    m_isPrompting = false;
    poll(Event::PointerOutside, 600ms);
    EXPECT_EQ(m_machine->state(), State::Resting);
}

TEST_F(HoverMachineTest, WaitsForThePointerWhenPresented)
{
    begin(State::Resting);
    handle(Event::Present);
    poll(Event::PointerOutside, 6s);
    EXPECT_TRUE(m_machine->isOpen());
    poll(Event::PointerOutside, 600ms);
    EXPECT_FALSE(m_machine->isOpen());
    // In the middle of the folding.
    handle(Event::Present);
    poll(Event::PointerOutside, 1s);
    EXPECT_TRUE(m_machine->isOpen());
    // A pointer that has come keeps to the usual rules.
    handle(Event::PointerInside);
    poll(Event::PointerOutside, 600ms);
    EXPECT_FALSE(m_machine->isOpen());
}

} // namespace
} // namespace corvane::island
