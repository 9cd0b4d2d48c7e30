#include "panes/settings_card_model.h"
#include "tests/panes/card_fixture.h"

#include <QSignalSpy>

namespace corvane::panes {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using island::IslandPane;

class SettingsCardModelTest : public tests::CardTest
{
protected:
    void openCard() { open(m_card); }

    SettingsCardModel m_card;
};

TEST_F(SettingsCardModelTest, FlagsAnAddressThatIsNone)
{
    openCard();
    const QString error = u"not a valid solana address"_s;
    struct Case
    {
        QString typed;
        QString error;
    };
    const Case cases[] = {
        {u"E"_s, error},
        {tests::addressA.chopped(1) + u'0', error},
        {tests::addressA, {}},
        {u" "_s + tests::addressA + u"\t"_s, {}},
        {tests::addressA + u'\n', error},
        {u"  "_s, {}},
        {{}, {}},
    };
    for (const Case &expected : cases) {
        SCOPED_TRACE(expected.typed.toStdString());
        QSignalSpy changed(&m_card, &SettingsCardModel::changed);
        m_card.setAddress(expected.typed);
        EXPECT_GT(changed.count(), 0);
        EXPECT_EQ(m_card.addressError(), expected.error);
        // Flagged, never rejected.
        EXPECT_EQ(m_card.address(), expected.typed);
        EXPECT_EQ(settings.string(u"corvane.address"_s), expected.typed);
    }
}

TEST_F(SettingsCardModelTest, NamesTheEndpointInUse)
{
    openCard();
    struct Case
    {
        QString typed;
        QString source;
        bool isPublic;
    };
    const Case cases[] = {
        {{}, u"RPC: PUBLIC RPC (RATE-LIMITED)"_s, true},
        {u"ftp://x"_s, u"RPC: PUBLIC RPC (RATE-LIMITED)"_s, true},
        {u"https://x.test"_s, u"RPC: CUSTOM ENDPOINT"_s, false},
        {u"https://rpc.helius.test"_s, u"RPC: HELIUS · CUSTOM ENDPOINT"_s, false},
    };
    for (const Case &expected : cases) {
        SCOPED_TRACE(expected.typed.toStdString());
        m_card.setCustomRPC(expected.typed);
        EXPECT_EQ(m_card.customRPC(), expected.typed);
        EXPECT_EQ(m_card.rpcSource(), expected.source);
        EXPECT_EQ(m_card.rpcIsPublic(), expected.isPublic);
    }
}

TEST_F(SettingsCardModelTest, SwitchesTheNetworkAndFetches)
{
    openCard();
    EXPECT_EQ(m_card.networks(), (QStringList{u"MAINNET"_s, u"DEVNET"_s}));
    EXPECT_EQ(m_card.network(), 0);
    EXPECT_EQ(m_card.rpcPlaceholder(), endpoints.mainnet);
    http.forgetRequests();
    m_card.setNetwork(0);
    queue.drain();
    EXPECT_EQ(http.names().size(), 0U);

    m_card.setNetwork(1);
    queue.drain();
    EXPECT_EQ(m_card.network(), 1);
    EXPECT_EQ(model->network(), core::SolNetwork::Devnet);
    EXPECT_EQ(m_card.rpcPlaceholder(), endpoints.devnet);
    EXPECT_EQ(http.count(tests::coinGecko), 1);
}

TEST_F(SettingsCardModelTest, SaysWhichKeyItHolds)
{
    openCard();
    EXPECT_FALSE(m_card.hasKey());
    EXPECT_EQ(m_card.walletText(), u"no wallet — create or import one on the balance card"_s);
    ASSERT_TRUE(std::holds_alternative<QString>(model->importSigningKey(tests::addressA)));
    const QString key = *model->signingPubkey();
    EXPECT_TRUE(m_card.hasKey());
    EXPECT_EQ(m_card.walletText(),
              u"WALLET: "_s + key.first(4) + u"…"_s + key.last(4) + u" · key in keychain"_s);
}

TEST_F(SettingsCardModelTest, RemovesOnlyWhenAskedTwiceInTime)
{
    launchWithKey();
    openCard();
    const QString really = u"REALLY REMOVE? (backup first!)"_s;
    EXPECT_EQ(m_card.removeLabel(), u"REMOVE"_s);
    m_card.remove();
    EXPECT_EQ(m_card.removeLabel(), really);
    queue.advance(2999ms);
    EXPECT_EQ(m_card.removeLabel(), really);
    queue.advance(1ms);
    EXPECT_EQ(m_card.removeLabel(), u"REMOVE"_s);
    EXPECT_TRUE(m_card.hasKey());

    m_card.remove();
    EXPECT_TRUE(m_card.hasKey());
    queue.advance(2s);
    m_card.remove();
    EXPECT_FALSE(m_card.hasKey());
    EXPECT_EQ(m_card.removeLabel(), u"REMOVE"_s);
    EXPECT_EQ(m_card.address(), QString());
    EXPECT_FALSE(keychain.copyAccount(u"corvane.signing-key"_s));
}

TEST_F(SettingsCardModelTest, AnEarlierResetEndsALaterArming)
{
    launchWithKey();
    openCard();
    m_card.remove();
    queue.advance(1s);
    m_card.remove();
    ASSERT_FALSE(m_card.hasKey());
    ASSERT_TRUE(std::holds_alternative<QString>(model->importSigningKey(tests::addressA)));
    m_card.remove();
    queue.advance(2s);
    EXPECT_EQ(m_card.removeLabel(), u"REMOVE"_s);
    EXPECT_TRUE(m_card.hasKey());
}

TEST_F(SettingsCardModelTest, BackupShowsTheKeyOnItsCard)
{
    launchLocked();
    m_island->setPane(IslandPane::Settings);
    openCard();
    keychain.refuses = true;
    m_card.backup();
    settle();
    EXPECT_EQ(keychain.prompts, QStringList{u"reveal your wallet backup key"_s});
    EXPECT_FALSE(model->hasPendingBackup());
    EXPECT_EQ(m_island->pane(), IslandPane::Settings);

    keychain.refuses = false;
    look::Animation during;
    QObject::connect(model.get(), &core::WalletModel::pendingBackupChanged, &m_card,
                     [&] { during = m_island->transaction()->current(); });
    m_card.backup();
    EXPECT_FALSE(model->hasPendingBackup());
    settle();
    EXPECT_TRUE(model->hasPendingBackup());
    EXPECT_EQ(during, look::Animation::spring(0.42, 0.88));
    EXPECT_EQ(m_island->pane(), IslandPane::Balance);
}

TEST_F(SettingsCardModelTest, ABackupThatTakesLongerThanTheCardIsStillShown)
{
    launchLocked();
    {
        SettingsCardModel card;
        open(card);
        card.backup();
    }
    settle();
    EXPECT_TRUE(model->hasPendingBackup());
}

TEST_F(SettingsCardModelTest, ABackupThatTakesLongerThanTheWalletIsForgotten)
{
    launchLocked();
    openCard();
    m_card.backup();
    close();
    settle();
}

TEST_F(SettingsCardModelTest, DoneGoesBackAndRefreshes)
{
    launchIsland();
    m_island->setPane(IslandPane::Settings);
    openCard();
    http.forgetRequests();
    m_card.done();
    queue.drain();
    EXPECT_EQ(m_island->pane(), IslandPane::Balance);
    EXPECT_EQ(http.count(tests::coinGecko), 1);
    // Only a forced refresh fetches the chart at once.
    EXPECT_EQ(http.count(tests::chart), 1);
    EXPECT_EQ(m_application.terminations, 0);
    m_card.quit();
    EXPECT_EQ(m_application.terminations, 1);
}

} // namespace
} // namespace corvane::panes
