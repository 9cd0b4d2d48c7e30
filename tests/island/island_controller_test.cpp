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

    /// The three flags as "hovering widened expanded", and whether clicks pass
    /// through.
    [[nodiscard]] std::string state() const
    {
        return std::string(m_island->hovering() ? "h" : "-") + (m_island->widened() ? "w" : "-") +
               (m_island->expanded() ? "e" : "-") + (m_panels.state.clickThrough ? "p" : "-");
    }
    /// The pointer's new position, the time to wait, and the expected state.
    struct Step
    {
        std::optional<QPointF> pointer;
        std::chrono::milliseconds wait;
        const char *state;
    };
    void follow(std::initializer_list<Step> steps)
    {
        int number = 0;
        for (const Step &step : steps) {
            if (step.pointer) {
                moveTo(*step.pointer);
            }
            queue.advance(step.wait);
            EXPECT_EQ(state(), step.state) << "after step " << ++number;
        }
    }
    [[nodiscard]] bool isResting() const
    {
        return state() == "---p" && m_panels.state.level == platform::IslandPanel::Level::Resting;
    }

    static constexpr QPointF away{100, 100};
    static constexpr QPointF notch{756, 970};
};

TEST_F(IslandControllerTest, LooksForThePointerWhereTheIslandIs)
{
    const std::optional<QPointF> still;
    // Positions beside the tab are outside, even on the strip.
    follow({{notch, 130ms, "hw--"}, {{{500, 970}}, 0ms, "----"}, {still, 1s, "---p"}});
    // The ten points around the card are inside.
    follow({{notch, 300ms, "hwe-"}, {away, 200ms, "-we-"}, {{{440, 700}}, 2s, "-we-"}});
}

TEST_F(IslandControllerTest, ThePollCatchesAPointerThatMovedWithoutAnEvent)
{
    m_pointer.position = notch;
    queue.advance(150ms);
    EXPECT_TRUE(m_island->hovering());
    m_pointer.position = QPointF(756, 982);
    queue.advance(150ms);
    EXPECT_FALSE(m_island->hovering()) << "the top edge itself is outside";
    m_pointer.position = notch;
    queue.advance(150ms);
    ASSERT_TRUE(m_island->hovering());
    m_pointer.position.reset();
    queue.advance(150ms);
    EXPECT_FALSE(m_island->hovering()) << "on no screen at all";
    queue.advance(1s);
    EXPECT_TRUE(isResting());
    // At rest only the hover poll and the refresh cycle are scheduled.
    EXPECT_EQ(queue.pendingTimers(), 2U);
}

TEST_F(IslandControllerTest, OpensAndFoldsBackWithTheAnimationOfEachChange)
{
    EXPECT_EQ(m_panels.state.frame, QRectF(402, 584, 708, 398));
    EXPECT_EQ(m_panels.state.orderedFront, 1);
    EXPECT_TRUE(isResting());
    QList<look::Animation> seen;
    const auto record = [&] { seen.append(m_island->transaction()->current()); };
    for (const auto signal : {&IslandController::hoveringChanged, &IslandController::widenedChanged,
                              &IslandController::expandedChanged, &IslandController::paneChanged}) {
        QObject::connect(m_island.get(), signal, m_island.get(), record);
    }
    const std::optional<QPointF> still;
    follow({{notch, 119ms, "h--p"},
            {still, 1ms, "hw--"},
            {still, 100ms, "hwe-"},
            {away, 320ms, "-w--"},
            {still, 160ms, "----"},
            {still, 540ms, "---p"}});
    EXPECT_EQ(m_panels.state.orderedFront, 2);
    EXPECT_TRUE(isResting());
    const auto spring = look::Animation::spring(0.42, 0.88);
    const auto widen = look::Animation::spring(0.3, 0.9);
    EXPECT_EQ(seen, (QList{look::Animation::spring(0.22, 0.7), widen, spring,
                           look::Animation::easeOut(0.18), spring, widen}));
    seen.clear();
    m_island->setPane(IslandPane::Settings);
    EXPECT_EQ(seen, (QList{spring, spring}));
    EXPECT_TRUE(m_island->transaction()->current().isImmediate());
    EXPECT_EQ(state(), "--e-");
    EXPECT_EQ(m_panels.state.level, platform::IslandPanel::Level::Active);
    queue.advance(60s);
    m_island->setPane(IslandPane::Balance);
    EXPECT_TRUE(m_panels.state.isActive);
    queue.advance(500ms);
    EXPECT_FALSE(m_panels.state.isActive);
}

TEST_F(IslandControllerTest, StaysWhileItHasTheKeyboardThatOpenedIt)
{
    const std::optional<QPointF> still;
    const auto &observer = m_panels.state.observer;
    m_island->present();
    EXPECT_TRUE(m_panels.state.isActive && m_island->keyboardDriven());
    follow({{still, 60s, "-we-"}});
    // Also if a pane was shown in between.
    m_island->setPane(IslandPane::Send);
    m_island->goBack();
    EXPECT_EQ(m_island->pane(), IslandPane::Balance);
    follow({{still, 60s, "-we-"}});
    // The pointer takes over, and the keyboard again.
    follow({{{{756, 800}}, 0ms, "-we-"}});
    EXPECT_FALSE(m_island->keyboardDriven());
    follow({{away, 200ms, "-we-"}});
    observer.keyPressed();
    follow({{still, 60s, "-we-"}});
    observer.buttonPressed();
    follow({{still, 2s, "---p"}});
    EXPECT_FALSE(m_panels.state.isActive);

    // The keyboard goes to another window.
    m_island->present();
    follow({{still, 1s, "-we-"}});
    m_panels.state.setActive(false);
    follow({{still, 2s, "---p"}});
    // Escape sends it away, once more than there are steps.
    m_island->present();
    m_island->setPane(IslandPane::Receive);
    m_island->goBack();
    m_island->goBack();
    m_island->goBack();
    follow({{still, 2s, "---p"}});

    // A pointer's user types in a field; that does not keep the island open.
    openIsland();
    EXPECT_FALSE(m_panels.state.isActive || m_island->keyboardDriven());
    m_island->setPane(IslandPane::Send);
    observer.keyPressed();
    m_island->setPane(IslandPane::Balance);
    follow({{away, 2s, "---p"}});
    // A pane from the menu.
    m_island->setPane(IslandPane::Settings);
    EXPECT_TRUE(m_island->keyboardDriven());
}

TEST_F(IslandControllerTest, TakesTheKeyboardBackFromAPrompt)
{
    createKey();
    launchIsland();
    m_authenticator.available = true;
    m_island->present();
    m_island->setPane(IslandPane::Send);
    queue.advance(1s);
    m_panels.state.setActive(false);
    m_island->goBack();
    EXPECT_EQ(m_island->pane(), IslandPane::Send);
    queue.advance(60s);
    EXPECT_FALSE(m_panels.state.isActive);
    m_authenticator.answer(false);
    queue.advance(1s);
    EXPECT_TRUE(m_panels.state.isActive);
    // One step leads from the locked card to the collapsed island, and the next opening to the
    // balance.
    m_island->goBack();
    queue.advance(2s);
    EXPECT_TRUE(isResting());
    EXPECT_EQ(m_island->pane(), IslandPane::Balance);

    // The same for a prompt that a card causes, on an island that the pointer has opened.
    openIsland();
    m_island->setPane(IslandPane::Settings);
    m_authenticator.evaluate(m_authenticator.makeContext({}), {}, [](auto) {});
    m_panels.state.setActive(false);
    queue.advance(10s);
    EXPECT_FALSE(m_panels.state.isActive);
    m_authenticator.answer(true);
    queue.advance(1s);
    EXPECT_TRUE(m_panels.state.isActive);
    // Not for an island that was sent away meanwhile.
    m_authenticator.evaluate(m_authenticator.makeContext({}), {}, [](auto) {});
    m_panels.state.setActive(false);
    m_island->goBack();
    m_island->goBack();
    m_authenticator.answer(true);
    queue.advance(1s);
    EXPECT_FALSE(m_panels.state.isActive);
}

TEST_F(IslandControllerTest, FollowsTheScreens)
{
    follow({{notch, 130ms, "hw--"}});
    m_screens.change({plainScreen({0, 0, 1920, 1080})});
    queue.drain();
    EXPECT_TRUE(isResting());
    EXPECT_EQ(m_panels.state.frame, QRectF(606, 688, 708, 392));
    EXPECT_EQ(m_island->collapsedRect(), QRectF(880, 1048, 160, 32));
    follow({{{{960, 1060}}, 1s, "hwe-"}});
    m_screens.change({});
    queue.drain();
    EXPECT_TRUE(m_island->expanded());
    EXPECT_EQ(m_panels.state.frame, QRectF(0, 0, 900, 400));
    m_screens.change({notchedScreen({0, 0, 1512, 982}, 180, 38)});
    follow({{away, 3s, "---p"}});
    EXPECT_EQ(m_panels.state.frame, QRectF(402, 584, 708, 398));
}

TEST_F(IslandControllerTest, UnlocksAtOnceWhereNobodyCanBeAsked)
{
    openIsland();
    EXPECT_TRUE(m_island->islandUnlocked());
    EXPECT_TRUE(m_authenticator.reasons.isEmpty());
    // Also if the island opens before the reply; it is then unlocked before the card unfolds.
    launchIsland();
    m_island->present();
    queue.drain();
    EXPECT_TRUE(m_island->islandUnlocked());
    EXPECT_FALSE(m_island->expanded());
    m_island->copyAddress();
    model->setAddress(QStringLiteral("  abc "));
    m_island->copyAddress();
    EXPECT_EQ(m_clipboard.texts, (QStringList{QString(), QStringLiteral("  abc ")}));
}

TEST_F(IslandControllerTest, UnlockingTheIslandUnlocksTheKey)
{
    createKey();
    // As after a restart, the key is stored but locked.
    launchIsland();
    m_authenticator.available = true;
    openIsland();
    // An open prompt keeps the island open; it collapses soon after the answer.
    moveTo(away);
    queue.advance(10s);
    EXPECT_TRUE(m_island->expanded());
    QList<look::Animation> seen;
    QObject::connect(m_island.get(), &IslandController::islandUnlockedChanged, m_island.get(),
                     [&] { seen.append(m_island->transaction()->current()); });
    m_authenticator.answer(true);
    queue.drain();
    EXPECT_EQ(seen, QList{look::Animation::spring(0.42, 0.88)});
    ASSERT_EQ(background.held(), 1U);
    EXPECT_FALSE(model->sessionSecret());
    background.runNext();
    queue.advance(600ms);
    EXPECT_TRUE(model->sessionSecret()) << "opened by the context that has passed";
    EXPECT_EQ(keychain.prompts, QStringList()) << "nobody is asked a second time";
    EXPECT_FALSE(m_island->expanded());
}

TEST_F(IslandControllerTest, ChoosesTheCard)
{
    using enum Card;
    for (const auto &[choice, card] : tests::Table<CardChoice, Card>{
             {{false, IslandPane::Send, true, true}, Locked},
             {{true, IslandPane::Balance, true, true}, Backup},
             {{true, IslandPane::Balance, false, false}, Setup},
             {{true, IslandPane::Balance, true, false}, Card::Balance},
             {{true, IslandPane::Settings, true, true}, Card::Settings},
             {{true, IslandPane::Receive, false, false}, Card::Receive},
             {{true, IslandPane::Send, false, true}, Card::Send},
         }) {
        EXPECT_EQ(chosenCard(choice), card);
    }
    std::vector<Card> cards;
    QObject::connect(m_island.get(), &IslandController::cardChanged, m_island.get(),
                     [&] { cards.push_back(m_island->card()); });
    m_island->requestIslandUnlock();
    queue.drain();
    createKey();
    model->setPendingBackup(std::nullopt);
    m_island->setPane(IslandPane::Settings);
    // Without a key it is a new card of the same kind.
    removeKey();
    m_island->setPane(IslandPane::Settings);
    EXPECT_EQ(cards, (std::vector{Setup, Card::Balance, Backup, Card::Balance, Card::Settings,
                                  Card::Settings}));
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
            // Some movements cause an event, others are only detected by the poll.
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
