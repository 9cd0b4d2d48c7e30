#include "tests/island/island_fixture.h"

#include <random>

namespace corvane::island {
namespace {

using namespace std::chrono_literals;
using tests::notchedScreen;
using tests::plainScreen;

class IslandControllerTest : public tests::IslandTest
{
protected:
    IslandControllerTest()
    {
        m_screens.screens = {notchedScreen({0, 0, 1512, 982}, 180, 38)};
        m_pointer.position = away;
        m_authenticator.available = false;
        launchIsland();
    }

    void moveTo(const QPointF &point)
    {
        m_pointer.moveTo(point);
        queue.drain();
    }

    void openIsland()
    {
        moveTo(notch);
        queue.advance(300ms);
        ASSERT_TRUE(m_island->expanded());
    }

    /// The three flags as "hovering widened expanded", and whether clicks pass through.
    [[nodiscard]] std::string state() const
    {
        return std::string(m_island->hovering() ? "h" : "-") + (m_island->widened() ? "w" : "-") +
               (m_island->expanded() ? "e" : "-") + (m_panels.state.ignoresMouseEvents ? "p" : "-");
    }
    [[nodiscard]] bool isResting() const
    {
        return state() == "---p" && m_panels.state.level == platform::IslandPanel::restingLevel;
    }

    static constexpr QPointF away{100, 100};
    static constexpr QPointF notch{756, 970};
    static constexpr QPointF card{756, 800};
};

TEST_F(IslandControllerTest, OpensStepByStepAndFoldsBack)
{
    EXPECT_EQ(m_panels.state.frame, QRectF(402, 584, 708, 398));
    EXPECT_EQ(m_panels.state.orderedFront, 1);
    EXPECT_TRUE(isResting());

    const std::optional<QPointF> still;
    for (const auto &[wait, pointer, expected] :
         tests::Table<std::chrono::milliseconds, std::optional<QPointF>, const char *>{
             {0ms, notch, "h--p"},
             {119ms, still, "h--p"},
             {1ms, still, "hw--"},
             {99ms, still, "hw--"},
             {1ms, still, "hwe-"},
             {0ms, card, "hwe-"},
             {0ms, away, "-we-"},
             {319ms, still, "-we-"},
             {1ms, still, "-w--"},
             {160ms, still, "----"},
             {540ms, still, "---p"}}) {
        if (pointer) {
            moveTo(*pointer);
        }
        queue.advance(wait);
        EXPECT_EQ(state(), expected) << "after " << wait.count();
    }
    EXPECT_TRUE(isResting());
}

TEST_F(IslandControllerTest, LetsThePointerChangeItsMind)
{
    // Out again before the delay: nothing opens and clicks pass all the time.
    moveTo(notch);
    queue.advance(100ms);
    moveTo(away);
    EXPECT_TRUE(isResting());
    queue.advance(1s);
    EXPECT_TRUE(isResting());

    // Out between widening and unfolding: it narrows, and the card never opens.
    moveTo(notch);
    queue.advance(130ms);
    EXPECT_TRUE(m_island->widened());
    moveTo(away);
    EXPECT_FALSE(m_island->widened());
    queue.advance(399ms);
    EXPECT_FALSE(m_panels.state.ignoresMouseEvents);
    queue.advance(1ms);
    EXPECT_TRUE(isResting());

    // Sideways along the widened strip counts as out.
    moveTo(notch);
    queue.advance(130ms);
    moveTo({500, 970});
    EXPECT_FALSE(m_island->widened());
    queue.advance(1s);

    // Back in before it folds, also within the ten points around the card.
    openIsland();
    moveTo(away);
    queue.advance(200ms);
    moveTo({440, 700});
    queue.advance(2s);
    EXPECT_TRUE(m_island->expanded());
    // Back in while it narrows: it opens again and stays clickable.
    moveTo(away);
    queue.advance(400ms);
    moveTo(notch);
    queue.advance(3s);
    EXPECT_EQ(state(), "-we-");
}

TEST_F(IslandControllerTest, ThePollCatchesAPointerThatMovedWithoutAnEvent)
{
    m_pointer.position = notch;
    queue.advance(150ms);
    EXPECT_TRUE(m_island->hovering());
    m_pointer.position = QPointF(756, 982);
    queue.advance(150ms);
    EXPECT_FALSE(m_island->hovering()) << "the top edge itself is outside";
    m_pointer.position.reset();
    queue.advance(1s);
    EXPECT_TRUE(isResting());
    // At rest nothing is scheduled but the hover poll and the refresh cycle.
    EXPECT_EQ(queue.pendingTimers(), 2U);
}

TEST_F(IslandControllerTest, OtherPanesStayOpenUntilTheBalanceIsBack)
{
    m_island->setPane(IslandPane::Send);
    EXPECT_EQ(state(), "--e-");
    EXPECT_TRUE(m_panels.state.isKey);
    EXPECT_EQ(m_panels.state.level, platform::IslandPanel::activeLevel);
    queue.advance(60s);
    EXPECT_TRUE(m_island->expanded());
    m_panels.state.isKey = false;
    m_island->setPane(IslandPane::Balance);
    EXPECT_FALSE(m_panels.state.isKey);
    queue.advance(500ms);
    EXPECT_FALSE(m_island->expanded());
    queue.advance(1s);
    EXPECT_TRUE(isResting());
}

TEST_F(IslandControllerTest, RecordsTheAnimationOfEachChange)
{
    QList<look::Animation> seen;
    const auto record = [&] { seen.append(m_island->transaction()->current()); };
    for (const auto signal : {&IslandController::hoveringChanged, &IslandController::widenedChanged,
                              &IslandController::expandedChanged, &IslandController::paneChanged}) {
        QObject::connect(m_island.get(), signal, m_island.get(), record);
    }
    openIsland();
    moveTo(away);
    queue.advance(2s);
    const auto spring = look::Animation::spring(0.42, 0.88);
    const auto widen = look::Animation::spring(0.3, 0.9);
    EXPECT_EQ(seen, (QList{look::Animation::spring(0.22, 0.7), widen, spring,
                           look::Animation::easeOut(0.18), spring, widen}));
    seen.clear();
    m_island->setPane(IslandPane::Settings);
    EXPECT_EQ(seen, (QList{spring, spring}));
    EXPECT_TRUE(m_island->transaction()->current().isImmediate());
}

TEST_F(IslandControllerTest, FollowsTheScreens)
{
    moveTo(notch);
    queue.advance(130ms);
    ASSERT_TRUE(m_island->widened());
    m_screens.change({plainScreen({0, 0, 1920, 1080})});
    queue.drain();
    EXPECT_FALSE(m_island->widened());
    EXPECT_EQ(m_panels.state.frame, QRectF(606, 688, 708, 392));
    EXPECT_EQ(m_island->collapsedRect(), QRectF(880, 1048, 160, 32));
    queue.advance(2s);

    m_pointer.position = QPointF(960, 1060);
    queue.advance(1s);
    ASSERT_TRUE(m_island->expanded());
    m_screens.change({});
    queue.drain();
    EXPECT_TRUE(m_island->expanded());
    EXPECT_EQ(m_panels.state.frame, QRectF(0, 0, 900, 400));
    queue.advance(1s);
    m_screens.change({notchedScreen({0, 0, 1512, 982}, 180, 38)});
    m_pointer.position = away;
    queue.advance(3s);
    EXPECT_TRUE(isResting());
    EXPECT_EQ(m_panels.state.frame, QRectF(402, 584, 708, 398));
}

TEST_F(IslandControllerTest, UnlocksAtOnceWhereNobodyCanBeAsked)
{
    openIsland();
    EXPECT_TRUE(m_island->islandUnlocked());
    EXPECT_TRUE(m_authenticator.reasons.isEmpty());
    m_island->copyAddress();
    model->setAddress(QStringLiteral("  abc "));
    m_island->copyAddress();
    EXPECT_EQ(m_clipboard.texts, (QStringList{QString(), QStringLiteral("  abc ")}));
}

TEST_F(IslandControllerTest, AsksOnceAndStaysOpenMeanwhile)
{
    m_authenticator.available = true;
    openIsland();
    EXPECT_EQ(m_authenticator.reasons, QStringList{QStringLiteral("unlock Corvane")});
    EXPECT_EQ(m_authenticator.cancelTitles, QStringList{QStringLiteral("Cancel")});
    int dropped = 0;
    m_island->requestIslandUnlock([&] { ++dropped; });
    EXPECT_EQ(m_authenticator.reasons.size(), 1);
    // An open prompt keeps the island from folding; it folds soon after the answer.
    moveTo(away);
    queue.advance(10s);
    EXPECT_TRUE(m_island->expanded());
    m_authenticator.answer(false);
    queue.advance(600ms);
    EXPECT_FALSE(m_island->expanded());
    EXPECT_FALSE(m_island->islandUnlocked());
    EXPECT_EQ(dropped, 0);

    // After a refusal only the button asks.
    queue.advance(1s);
    openIsland();
    EXPECT_EQ(m_authenticator.reasons.size(), 1);
    int continued = 0;
    m_island->requestIslandUnlock([&] { ++continued; });
    EXPECT_EQ(m_authenticator.reasons.size(), 2);
    m_authenticator.answer(true);
    queue.drain();
    EXPECT_TRUE(m_island->islandUnlocked());
    EXPECT_EQ(continued, 1);
    EXPECT_FALSE(m_island->authMessage());
}

TEST_F(IslandControllerTest, ALateAnswerFindsNobody)
{
    m_authenticator.available = true;
    openIsland();
    m_island.reset();
    m_authenticator.answer(true);
    moveTo(notch);
    queue.advance(5s);
}

TEST_F(IslandControllerTest, NoPathOfThePointerLeavesItStuck)
{
    std::mt19937 random(20'26);
    const auto between = [&](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    for (int path = 0; path < 1000; ++path) {
        SCOPED_TRACE(path);
        const QPointF from(between(300, 1200), between(600, 982));
        const QPointF to(between(300, 1200), between(600, 982));
        const int samples = static_cast<int>(between(1, 12));
        for (int sample = 0; sample <= samples; ++sample) {
            const QPointF point = from + (to - from) * sample / samples;
            // Some movements come with an event, some are only seen by the poll.
            if (between(0, 1) < 0.7) {
                moveTo(point);
            } else {
                m_pointer.position = point;
            }
            queue.advance(std::chrono::microseconds(static_cast<int>(between(100, 250'000))));
        }
        moveTo(away);
        queue.advance(1500ms);
        ASSERT_TRUE(isResting()) << state();
    }
}

} // namespace
} // namespace corvane::island
