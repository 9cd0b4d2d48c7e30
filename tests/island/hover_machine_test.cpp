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

/// A machine, and an island that records its actions in the form "120 Raise Widen, 220 Unfold":
/// milliseconds, and the actions at that time.
class HoverMachineTest : public testing::Test, public HoverMachine::Island
{
protected:
    /// Sends the hover poll's samples of the pointer for `time`.
    void poll(Event event, std::chrono::milliseconds time)
    {
        for (auto passed = 0ms; passed < time; passed += 150ms) {
            m_machine->handle(event);
            m_queue->advance(150ms);
        }
    }

    std::optional<tests::HandDrivenQueue> m_queue{std::in_place};
    std::string m_log;
    bool m_showsBalance = true;
    bool m_isPrompting = false;
    bool m_isHeld = false;
    std::optional<HoverMachine> m_machine{std::in_place, *m_queue, *this};

private:
    void perform(HoverMachine::Action action) override
    {
        constexpr std::array names{"Swell",  "Settle", "Raise",  "Widen", "Prompt",
                                   "Unfold", "Fold",   "Narrow", "Pass",  "Reset"};
        const std::string time = std::to_string(m_queue->now() / 1ms);
        if (m_log.empty() || time != m_last) {
            m_log += (m_log.empty() ? "" : ", ") + time;
            m_last = time;
        }
        m_log += ' ';
        m_log += names.at(static_cast<std::size_t>(action));
    }
    [[nodiscard]] bool showsBalance() const override { return m_showsBalance; }
    [[nodiscard]] bool isPrompting() const override { return m_isPrompting; }
    [[nodiscard]] bool isHeld() const override { return m_isHeld; }

    std::string m_last;
};

TEST_F(HoverMachineTest, DoesWhatTheTableSays)
{
    using enum HoverMachine::Event;
    struct Step
    {
        int at;
        Event event;
    };
    const std::string widen = " Raise Widen Prompt";
    const std::string open = "0" + widen + ", 100 Unfold";
    for (const auto &[steps, log, to] : tests::Table<std::vector<Step>, std::string, State>{
             {{{0, PointerOutside}, {0, Close}}, "", State::Resting},
             {{{0, ScreensChange}}, "0 Reset", State::Resting},
             {{{0, Open}, {200, Open}, {300, ShowPane}, {400, ScreensChange}},
              open,
              State::Expanded},
             {{{0, PointerInside}, {50, PointerInside}, {130, PointerInside}},
              "0 Swell, 120" + widen + ", 220 Unfold",
              State::Expanded},
             {{{0, PointerInside}, {100, PointerOutside}}, "0 Swell, 100 Settle", State::Resting},
             // The pointer leaves between widening and unfolding.
             {{{0, PointerInside}, {130, PointerOutside}},
              "0 Swell, 120" + widen + ", 130 Settle Narrow, 530 Pass",
              State::Resting},
             {{{0, Open}, {50, Close}}, open, State::Expanded},
             {{{0, Open}, {50, ScreensChange}}, "0" + widen + ", 50 Reset", State::Resting},
             {{{0, PointerInside}, {50, ScreensChange}, {60, PointerOutside}},
              "0 Swell, 50 Reset",
              State::Resting},
             // It is presented while it waits to fold.
             {{{0, Open}, {200, PointerOutside}, {300, Present}}, open, State::Expanded},
             {{{0, Open}, {200, Close}}, open + ", 200 Fold, 360 Narrow, 900 Pass", State::Resting},
             // A pane opens it immediately without a strip, so that no strip narrows afterwards.
             {{{0, PointerInside}, {50, ShowPane}, {60, Open}, {900, PointerOutside}},
              "0 Swell, 50 Unfold, 900 Settle, 1220 Fold, 1920 Pass",
              State::Resting},
             {{{0, Open}, {50, ShowPane}, {200, Close}},
              "0" + widen + ", 50 Unfold, 200 Fold, 360 Narrow, 900 Pass",
              State::Resting},
             // The pointer returns before it folds; or one more sample outside, which does not
             // delay that.
             {{{0, Open}, {200, PointerOutside}, {519, PointerInside}}, open, State::Expanded},
             {{{0, Open}, {200, PointerOutside}, {350, PointerOutside}},
              open + ", 520 Fold, 680 Narrow, 1220 Pass",
              State::Resting},
             // Sent away under the pointer, it opens again once that has left and returned, or in
             // another way.
             {{{0, Open},
               {200, Dismiss},
               {910, PointerInside},
               {1200, PointerOutside},
               {1300, PointerInside}},
              open + ", 200 Fold, 360 Narrow, 900 Pass, 1300 Swell, 1420" + widen + ", 1520 Unfold",
              State::Expanded},
             {{{0, Open}, {200, Dismiss}, {1000, ShowPane}, {1100, Close}, {1900, PointerInside}},
              open +
                  ", 200 Fold, 360 Narrow, 900 Pass, 1000 Unfold, 1100 Fold, 1800 Pass, "
                  "1900 Swell, 2020" +
                  widen + ", 2120 Unfold",
              State::Expanded},
             {{{0, Open}, {200, Dismiss}, {1000, Open}, {1200, Close}, {2000, PointerInside}},
              open + ", 200 Fold, 360 Narrow, 900 Pass, 1000" + widen +
                  ", 1100 Unfold, 1200 Fold, 1360 Narrow, 1900 Pass, 2000 Swell, 2120" + widen +
                  ", 2220 Unfold",
              State::Expanded},
             // Sent away while it waits for the pointer.
             {{{0, Present}, {200, Dismiss}, {300, PointerOutside}, {301, Dismiss}},
              open + ", 200 Fold, 300 Narrow, 700 Pass, 900 Pass",
              State::Resting},
             // It opens again before the strip would narrow, or before clicks would pass.
             {{{0, Open}, {200, Close}, {250, Open}},
              open + ", 200 Fold, 250" + widen + ", 350 Unfold",
              State::Expanded},
             {{{0, Open}, {200, Close}, {850, Open}},
              open + ", 200 Fold, 360 Narrow, 850" + widen + ", 950 Unfold",
              State::Expanded},
             // The pointer returns while it closes: the strip still narrows, and the next sample
             // opens it.
             {{{0, Open}, {200, PointerOutside}, {530, PointerInside}, {700, PointerInside}},
              open + ", 520 Fold, 650" + widen + ", 680 Narrow, 700 Swell, 820" + widen +
                  ", 920 Unfold",
              State::Expanded},
             // The same after a sample outside: the tab stays swollen while it narrows under the
             // pointer.
             {{{0, Open}, {200, PointerOutside}, {521, PointerOutside}, {530, PointerInside}},
              open + ", 520 Fold, 521 Narrow, 530 Swell, 650" + widen +
                  ", 680 Narrow, 921 Pass, 1220 Pass",
              State::Hovered},
         }) {
        m_machine.reset();
        m_queue.emplace();
        m_machine.emplace(*m_queue, *this);
        m_log.clear();
        for (const Step &step : steps) {
            m_queue->advance(std::chrono::milliseconds(step.at) - m_queue->now());
            m_machine->handle(step.event);
        }
        m_queue->advance(2s);
        EXPECT_EQ(m_log, log);
        EXPECT_EQ(m_machine->state(), to) << log;
    }
}

TEST_F(HoverMachineTest, StaysOpenOnAnotherPaneAndWhileTheUserIsAsked)
{
    m_machine->handle(Event::ShowPane);
    m_showsBalance = false;
    poll(Event::PointerOutside, 10s);
    m_machine->handle(Event::Close);
    EXPECT_TRUE(m_machine->isOpen());
    m_showsBalance = true;
    m_isPrompting = true;
    poll(Event::PointerOutside, 10s);
    EXPECT_TRUE(m_machine->isOpen());
    m_machine->handle(Event::Dismiss);
    EXPECT_TRUE(m_machine->isOpen());
    m_isPrompting = false;
    m_isHeld = true;
    poll(Event::PointerOutside, 10s);
    m_machine->handle(Event::Close);
    EXPECT_TRUE(m_machine->isOpen());
    m_isHeld = false;
    poll(Event::PointerOutside, 600ms);
    EXPECT_FALSE(m_machine->isOpen());
    // While it opens, too.
    m_isHeld = true;
    m_machine->handle(Event::Open);
    poll(Event::PointerOutside, 600ms);
    EXPECT_TRUE(m_machine->isOpen());
}

TEST_F(HoverMachineTest, WaitsForThePointerWhenPresented)
{
    m_machine->handle(Event::Present);
    poll(Event::PointerOutside, 6s);
    EXPECT_TRUE(m_machine->isOpen());
    poll(Event::PointerOutside, 600ms);
    EXPECT_FALSE(m_machine->isOpen());
    // While it folds.
    m_machine->handle(Event::Present);
    poll(Event::PointerOutside, 1s);
    EXPECT_TRUE(m_machine->isOpen());
    // After the pointer has entered or the keyboard has gone, the usual rules apply.
    for (const Event event : {Event::PointerInside, Event::KeyboardLost}) {
        m_machine->handle(Event::Present);
        m_machine->handle(event);
        poll(Event::PointerOutside, 600ms);
        EXPECT_FALSE(m_machine->isOpen());
    }
}

TEST_F(HoverMachineTest, LeavesNoTimerBehind)
{
    m_machine->handle(Event::PointerInside);
    m_machine.reset();
    EXPECT_EQ(m_queue->pendingTimers(), 0U);
}

} // namespace
} // namespace corvane::island
