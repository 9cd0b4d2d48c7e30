#include "panes/settings_card_model.h"
#include "tests/panes/card_fixture.h"

#include <QSignalSpy>

namespace corvane::panes {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using island::IslandPane;
using tests::addressA;

using SettingsCardModelTest = tests::OneCardTest<&CardModels::settingsCard>;

TEST_F(SettingsCardModelTest, FlagsWhatIsTypedAndNeverRejectsIt)
{
    launchIsland();
    openCard();
    const QString bad = u"not a valid solana address"_s;
    for (const auto &[typed, error] : tests::Table<QString, QString>{
             {addressA.chopped(1) + u'0', bad},
             {addressA + u'\n', bad},
             {u" "_s + addressA + u"\t"_s, {}},
             {u"  "_s, {}},
         }) {
        QSignalSpy changed(m_card.get(), &SettingsCardModel::changed);
        m_card->setAddress(typed);
        EXPECT_GT(changed.count(), 0);
        EXPECT_EQ(m_card->addressError(), error) << typed.toStdString();
        EXPECT_EQ(m_card->address(), typed);
        EXPECT_EQ(settings.string(u"corvane.address"_s), typed);
    }
    EXPECT_TRUE(m_card->rpcIsPublic());
    const QString noWeb = u"not a web address — write it as https://rpc.example.com"_s;
    for (const auto &[typed, error] :
         tests::Table<QString, QString>{{u" "_s, {}},
                                        {u"http://x.test"_s, {}},
                                        {u"x.test"_s, noWeb},
                                        {u"https://"_s, noWeb},
                                        {u"httpx://x.test"_s, noWeb}}) {
        m_card->setCustomRPC(typed);
        EXPECT_EQ(m_card->customRPCError(), error);
    }
    m_card->setCustomRPC(u" https://x.test"_s);
    EXPECT_EQ(m_card->customRPC(), u" https://x.test"_s);
    EXPECT_EQ(m_card->rpcSource(), u"RPC: CUSTOM ENDPOINT"_s);
    EXPECT_FALSE(m_card->rpcIsPublic());
}

TEST_F(SettingsCardModelTest, TellsAnEndpointThatDoesNotAnswer)
{
    settings.setString(u"corvane.address"_s, addressA);
    launchIsland();
    openCard();
    EXPECT_EQ(m_card->rpcSilence(), QString());
    QSignalSpy changed(m_card.get(), &SettingsCardModel::changed);
    const QDateTime asked = QDateTime::fromSecsSinceEpoch(30);
    http.answer(tests::balance, platform::HttpError::Unreachable);
    http.answer(tests::tokens, platform::HttpError::Unreachable);
    queue.advance(1min);
    EXPECT_EQ(m_card->rpcSilence(), u"no answer since "_s + asked.toString(u"HH:mm"));
    EXPECT_GT(changed.count(), 0);
    EXPECT_EQ(m_card->rpcSource(), u"RPC: PUBLIC RPC (RATE-LIMITED)"_s);
    queue.advance(24h);
    EXPECT_EQ(m_card->rpcSilence(), u"no answer since "_s + asked.toString(u"yyyy-MM-dd HH:mm"));
}

TEST_F(SettingsCardModelTest, SwitchesTheNetworkAndFetches)
{
    launchIsland();
    openCard();
    m_card->setNetwork(0);
    queue.drain();
    EXPECT_EQ(http.names().size(), 0U);
    m_card->setNetwork(1);
    queue.drain();
    EXPECT_EQ(m_card->network(), 1);
    EXPECT_EQ(model->network(), core::SolNetwork::Devnet);
    EXPECT_EQ(m_card->rpcPlaceholder(), endpoints.devnet);
    EXPECT_EQ(http.count(tests::coinGecko), 1);

    m_island->setPane(IslandPane::Settings);
    http.forgetRequests();
    m_card->done();
    queue.drain();
    EXPECT_EQ(m_island->pane(), IslandPane::Balance);
    EXPECT_EQ(http.count(tests::chart), 1) << "only a forced refresh fetches it at once";
    m_card->quit();
    EXPECT_EQ(m_application.terminations, 1);
}

TEST_F(SettingsCardModelTest, RemovesOnlyWhenAskedTwiceInTime)
{
    const QString key = launchWithKey();
    openCard();
    EXPECT_EQ(m_card->walletText(),
              u"WALLET: "_s + key.first(4) + u"…"_s + key.last(4) + u" · key in keychain"_s);
    const QString really = u"REALLY REMOVE? (backup first!)"_s;
    m_card->remove();
    queue.advance(2999ms);
    EXPECT_EQ(m_card->removeLabel(), really);
    queue.advance(1ms);
    EXPECT_EQ(m_card->removeLabel(), u"REMOVE"_s);
    m_card->remove();
    EXPECT_TRUE(m_card->hasKey());
    queue.advance(2s);
    m_card->remove();
    EXPECT_TRUE(m_card->hasKey()) << "the keychain has not answered yet";
    settle();
    EXPECT_FALSE(m_card->hasKey());
    EXPECT_EQ(m_card->walletText(), u"no wallet — create or import one on the balance card"_s);
    EXPECT_EQ(m_card->removeLabel(), u"REMOVE"_s);
    EXPECT_EQ(m_card->address(), QString());
    EXPECT_FALSE(keychain.copyAccount(u"corvane.signing-key"_s));
}

TEST_F(SettingsCardModelTest, ADoubleClickRemovesNothing)
{
    launchWithKey();
    const auto press = [this] {
        m_card->remove();
        settle();
    };
    for (const auto &[desktop, tooSoon, lateEnough] :
         tests::Table<std::chrono::milliseconds, std::chrono::milliseconds,
                      std::chrono::milliseconds>{{0ms, 499ms, 500ms}, {900ms, 899ms, 900ms}}) {
        doubleClick = desktop;
        openCard();
        press();
        for (int again = 0; again < 2; ++again) {
            queue.advance(tooSoon);
            press();
            EXPECT_TRUE(m_card->hasKey()) << "also where each press follows the last one closely";
        }
        queue.advance(lateEnough);
        press();
        EXPECT_FALSE(m_card->hasKey());
        createKey();
    }
}

TEST_F(SettingsCardModelTest, RemindsOfAKeyWithoutABackup)
{
    launchIsland();
    createKey();
    openCard();
    EXPECT_EQ(m_card->backupText(), u"not backed up yet — press BACKUP and save the key"_s);
    QSignalSpy changed(m_card.get(), &SettingsCardModel::changed);
    model->setPendingBackup(std::nullopt);
    EXPECT_EQ(m_card->backupText(), QString());
    EXPECT_GT(changed.count(), 0);
}

TEST_F(SettingsCardModelTest, BackupShowsTheKeyOnItsCard)
{
    launchLocked();
    m_island->setPane(IslandPane::Settings);
    openCard();
    keychain.refuses = true;
    m_card->backup();
    settle();
    EXPECT_EQ(keychain.prompts, QStringList{u"reveal your wallet backup key"_s});
    EXPECT_EQ(keychain.reasons, QList{platform::PresenceReason::Reveal});
    EXPECT_FALSE(model->hasPendingBackup());
    EXPECT_EQ(m_island->pane(), IslandPane::Settings);

    keychain.refuses = false;
    m_card->backup();
    EXPECT_FALSE(model->hasPendingBackup());
    settle();
    EXPECT_TRUE(model->hasPendingBackup());
    EXPECT_EQ(m_island->pane(), IslandPane::Balance);
}

TEST_F(SettingsCardModelTest, ABackupOutlivesTheCardButNotTheWallet)
{
    launchLocked();
    openCard();
    m_card->backup();
    m_card.reset();
    settle();
    EXPECT_TRUE(model->hasPendingBackup());

    launchLocked();
    openCard();
    m_card->backup();
    close();
    settle();
}

} // namespace
} // namespace corvane::panes
