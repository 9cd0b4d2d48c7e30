#include "island/unlock_machine.h"
#include "tests/fakes/fake_desktop.h"
#include "tests/fakes/hand_driven_queue.h"
#include "tests/fakes/table.h"

#include <gtest/gtest.h>

namespace corvane::island {
namespace {

using State = UnlockMachine::State;

enum class Event { Approached, Opened, Requested, Agrees, Refuses, IsNotThere };

/// A machine, and an island that records its actions.
class UnlockMachineTest : public testing::Test, public UnlockMachine::Island
{
protected:
    void begin(State state)
    {
        m_machine.emplace(m_queue, m_authenticator, *this);
        if (state != State::Locked) {
            handle(Event::Opened);
        }
        if (state == State::Refused || state == State::Unlocked) {
            handle(state == State::Refused ? Event::Refuses : Event::Agrees);
        }
        ASSERT_EQ(m_machine->state(), state);
        m_log.clear();
        m_authenticator.reasons.clear();
    }

    void handle(Event event)
    {
        switch (event) {
        case Event::Approached:
            m_machine->approached();
            break;
        case Event::Opened:
            m_machine->opened();
            break;
        case Event::Requested:
            m_machine->request([this] { m_log += "continue "; });
            break;
        case Event::Agrees:
        case Event::Refuses:
            m_authenticator.answer(event == Event::Agrees);
            break;
        case Event::IsNotThere:
            m_authenticator.answer(platform::PresenceAnswer::NobodyToAsk);
            break;
        }
        m_queue.drain();
    }

    tests::HandDrivenQueue m_queue;
    tests::FakeAuthenticator m_authenticator;
    std::string m_log;
    std::optional<UnlockMachine> m_machine;

private:
    void clearMessage() override { m_log += "clear "; }
    void unlock() override { m_log += "unlock "; }
    void unlockAtOnce() override { m_log += "at-once "; }
    void meansFound(platform::PresenceMeans means) override
    {
        m_log += means == platform::PresenceMeans::Available ? "" : "lacking ";
    }
    void loadKey(std::shared_ptr<platform::AuthenticationContext> context) override
    {
        m_log += context->passed() ? "load " : "load-in-vain ";
    }
};

TEST_F(UnlockMachineTest, DoesWhatTheTableSays)
{
    using enum UnlockMachine::State;
    using enum Event;
    for (const auto &[from, events, log, asked, to] :
         tests::Table<State, std::vector<Event>, std::string, int, State>{
             {Locked, {Opened}, "clear ", 1, Prompting},
             {Locked, {Requested, Agrees}, "clear unlock load continue ", 1, Unlocked},
             {Locked, {Requested, Refuses}, "clear ", 1, Refused},
             {Locked, {Requested, IsNotThere}, "clear at-once continue ", 1, Unlocked},
             {Prompting, {Opened, Requested, Agrees}, "unlock load ", 0, Unlocked},
             {Prompting, {Refuses}, "", 0, Refused},
             {Refused, {Opened}, "", 0, Refused},
             {Refused, {Requested, Agrees}, "clear unlock load continue ", 1, Unlocked},
             {Unlocked, {Opened, Requested}, "continue ", 0, Unlocked},
         }) {
        SCOPED_TRACE(static_cast<int>(from));
        begin(from);
        for (const Event event : events) {
            handle(event);
        }
        EXPECT_EQ(m_log, log);
        EXPECT_EQ(m_authenticator.reasons, QStringList(asked, QStringLiteral("unlock Corvane")));
        EXPECT_EQ(m_machine->state(), to);
    }
    m_authenticator.available = false;
    begin(Locked);
    handle(Requested);
    EXPECT_EQ(m_log, "clear lacking at-once continue ");
    EXPECT_EQ(m_machine->state(), Unlocked);
    // Found out ahead, it needs no turn of the queue.
    begin(Locked);
    handle(Approached);
    m_machine->request([this] { m_log += "continue "; });
    EXPECT_EQ(m_log, "lacking clear at-once continue ");
}

} // namespace
} // namespace corvane::island
