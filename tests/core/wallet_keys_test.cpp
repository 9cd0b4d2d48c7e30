// The life cycle of the wallet's key, and transfers signed with it.

#include "platform/one_time_context.h"
#include "tests/core/wallet_fixture.h"

#include <QCoroTask>

#include <limits>

namespace corvane::core {
namespace {

using namespace Qt::StringLiterals;
using platform::SecretBytes;
using tests::addressA;

const QString latestBlockhash = u"getLatestBlockhash"_s;
const QString sendTransaction = u"sendTransaction"_s;
const QString keyService = u"corvane.signing-key"_s;

class WalletKeysTest : public tests::WalletTest
{
protected:
    WalletKeysTest()
    {
        http.answer(latestBlockhash, R"({"result": {"value": {"blockhash": ")" +
                                         tests::addressB.toLatin1() + R"("}}})");
        http.answer(sendTransaction, R"({"result": "signature"})");
        launchAndSettle();
    }

    /// Creates a stored key whose seed is not in memory, as after a restart.
    void lock()
    {
        createKey();
        ASSERT_TRUE(model->sessionSecret());
        launchAndSettle();
        ASSERT_FALSE(model->sessionSecret());
    }

    void unlock()
    {
        const auto context = std::make_shared<platform::OneTimeContext>();
        context->pass();
        model->unlockSigningKey(context);
    }

    /// The error's text, or the signature after "sent".
    QString send(const QString &to, double amount)
    {
        const auto result = finish(model->sendSOL(to, amount));
        const auto *error = std::get_if<SendError>(&result);
        return error != nullptr ? error->description() : u"sent "_s + std::get<QString>(result);
    }
};

TEST_F(WalletKeysTest, ImportsAnythingOf32BytesAndKeepsItsStateWhereItIsRefused)
{
    // An address has 32 bytes too and can therefore be imported as a seed, but of another key.
    const QString pubkey =
        std::get<QString>(finish(model->importSigningKey(u" \n"_s + addressA + u'\n')));
    EXPECT_NE(pubkey, addressA);
    EXPECT_TRUE(
        std::holds_alternative<SendError>(finish(model->importSigningKey(addressA + u'1'))));
    EXPECT_EQ(keychain.copyAccount(keyService), pubkey);
    keychain.failures = {platform::KeychainStatus::AuthFailed,
                         platform::KeychainStatus::NotAvailable};
    EXPECT_EQ(std::get<SendError>(finish(model->createWallet())).description(),
              u"keychain refused the key (error -25291) — try again, and tell me this code if it "
              u"persists"_s);
    EXPECT_EQ(model->signingPubkey(), pubkey);
    EXPECT_EQ(model->address(), pubkey);
    // The old item was removed before the new one was rejected.
    EXPECT_FALSE(keychain.copyAccount(keyService));
}

TEST_F(WalletKeysTest, IsCorrectedByTheKeychainWhereItsMemoryIsWrong)
{
    lock();
    const auto stored = model->signingPubkey();
    keychain.forgets = true;
    launch();
    EXPECT_FALSE(model->signingPubkey());
    background.runNext();
    queue.drain();
    EXPECT_EQ(model->signingPubkey(), stored);

    // A change after the query to the keychain takes precedence over its reply.
    launch();
    background.runNext();
    const auto imported = finish(model->importSigningKey(addressA));
    EXPECT_EQ(model->signingPubkey(), std::get<QString>(imported));
}

TEST_F(WalletKeysTest, UnlocksInTheBackgroundWithoutAPrompt)
{
    lock();
    unlock();
    EXPECT_EQ(background.held(), 1U);
    background.runNext();
    EXPECT_FALSE(model->sessionSecret()) << "the result belongs to the main thread";
    queue.drain();
    EXPECT_TRUE(model->sessionSecret());
    EXPECT_TRUE(keychain.prompts.isEmpty());
    // Unlocked, or without a key, there is nothing to read.
    unlock();
    EXPECT_EQ(background.held(), 0U);
    removeKey();
    unlock();
    EXPECT_EQ(background.held(), 0U);
}

TEST_F(WalletKeysTest, RemovingForgetsTheKeyAndWhatIsStillBeingRead)
{
    createKey();
    ASSERT_TRUE(model->sessionSecret());
    ASSERT_TRUE(model->pendingBackup());
    const auto removed = [this] {
        removeKey();
        return !model->sessionSecret() && !model->pendingBackup() && !model->signingPubkey() &&
               model->address().isEmpty() && !keychain.copyAccount(keyService);
    };
    EXPECT_TRUE(removed());

    lock();
    unlock();
    background.runNext();
    EXPECT_TRUE(removed());

    // A reply after the model was destroyed has no effect.
    lock();
    unlock();
    model.reset();
    background.runNext();
    queue.drain();
}

TEST_F(WalletKeysTest, ARefusalForOneKeyIsNoConsentForAnother)
{
    const auto replaceKey = [this] {
        keychain.remove(keyService);
        ASSERT_TRUE(std::holds_alternative<QString>(finish(model->importSigningKey(addressA))));
        http.forgetRequests();
    };
    for (const bool refuses : {true, false}) {
        lock();
        keychain.refuses = refuses;
        auto transfer = model->sendSOL(addressA, 1);
        replaceKey();
        const auto sent = finish(std::move(transfer));
        EXPECT_EQ(std::get<SendError>(sent).description(),
                  u"touch id cancelled — nothing was sent"_s);
        EXPECT_EQ(http.count(sendTransaction), 0);
        EXPECT_TRUE(model->sessionSecret());

        lock();
        auto backup = model->backupSecret();
        replaceKey();
        EXPECT_FALSE(finish(std::move(backup)));
        EXPECT_TRUE(model->sessionSecret()) << "the key that there is now stays open";
    }
}

TEST_F(WalletKeysTest, RevealsAnOpenKeyWithoutAsking)
{
    const SecretBytes created = createKey();
    const auto backup = finish(model->backupSecret());
    ASSERT_TRUE(backup);
    EXPECT_TRUE(*backup == created);
    EXPECT_TRUE(keychain.prompts.isEmpty());
}

TEST_F(WalletKeysTest, ChecksATransferInItsOrderAndSendsNothingBefore)
{
    lock();
    keychain.refuses = true;
    const QString badRecipient = u"recipient isn't a valid solana address"_s;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const auto &[to, amount, error] : tests::Table<QString, double, QString>{
             {u""_s, 0, badRecipient},
             {addressA + u'\n', 1, badRecipient},
             {addressA.chopped(20), nan, badRecipient},
             {addressA, 0, u"bad amount"_s},
             {addressA, -1, u"bad amount"_s},
             {addressA, nan, u"bad amount"_s},
         }) {
        EXPECT_EQ(send(to, amount), error);
    }
    EXPECT_TRUE(keychain.prompts.isEmpty());
    EXPECT_EQ(send(addressA, 1234.5), u"touch id cancelled — nothing was sent"_s);
    EXPECT_EQ(keychain.prompts, QStringList{u"send 1,234.5000 SOL"_s});
    EXPECT_EQ(keychain.reasons, QList{platform::PresenceReason::Send});
    EXPECT_TRUE(http.requests().empty());
    EXPECT_FALSE(model->sessionSecret());
}

TEST_F(WalletKeysTest, SendsWhatIsOddButAllowedAndLinksToItsCluster)
{
    createKey();
    const QString sent = u"sent signature"_s;
    queue.drain();
    http.forgetRequests();
    EXPECT_EQ(send(addressA, 1e-10), sent) << "no lamports";
    EXPECT_EQ(http.names(),
              (std::vector<QString>{latestBlockhash, sendTransaction, tests::coinGecko,
                                    tests::balance, tests::tokens, tests::chart}))
        << "a full refresh follows";
    EXPECT_EQ(send(u" "_s + model->address() + u'\t', 1), sent) << "to itself";
    EXPECT_EQ(model->explorerURL(u"5x"_s), QUrl(u"https://solscan.io/tx/5x"_s));
    model->setNetwork(SolNetwork::Devnet);
    EXPECT_EQ(model->explorerURL(u"5x"_s), QUrl(u"https://solscan.io/tx/5x?cluster=devnet"_s));
}

TEST_F(WalletKeysTest, TurnsEveryRefusalOfTheClusterIntoItsText)
{
    createKey();
    using platform::HttpReply;
    const QString noBlockhash = u"couldn't fetch a recent blockhash"_s;
    const QString failed = u"send failed — check balance covers amount + fee"_s;
    const QString unexpected = u"unexpected RPC reply"_s;
    const QByteArray tooLong =
        R"({"result": {"value": {"blockhash": ")" + QByteArray(200'000, 'z') + R"("}}})";
    const HttpReply good{200, R"({"result": {"value": {"blockhash": ")" +
                                  tests::addressB.toLatin1() + R"("}}})"};
    for (const auto &[blockhash, answer, text] :
         tests::Table<platform::HttpResult, platform::HttpResult, QString>{
             {HttpReply{200, R"({"result": {"value": "x"}})"}, {}, noBlockhash},
             {HttpReply{200, R"({"result": {"value": {"blockhash": "11"}}})"}, {}, noBlockhash},
             {HttpReply{200, tooLong}, {}, noBlockhash},
             {platform::HttpError::TimedOut, {}, noBlockhash},
             {good, HttpReply{200, R"({"error": {"code": -32002}})"}, failed},
             {good, platform::HttpError::TimedOut, failed},
             {good, HttpReply{200, R"({"result": 7})"}, unexpected},
             {good, HttpReply{200, R"({"result": null})"}, unexpected},
         }) {
        http.answer(latestBlockhash, blockhash);
        http.answer(sendTransaction, answer);
        http.forgetRequests();
        EXPECT_EQ(send(addressA, 1), text);
        EXPECT_EQ(http.count(sendTransaction), text == noBlockhash ? 0 : 1);
        EXPECT_TRUE(http.requests()[0].body.contains(R"({"commitment":"finalized"})"));
    }
    EXPECT_TRUE(http.requests()[1].body.contains(
        R"({"encoding":"base64","preflightCommitment":"confirmed"})"));
}

} // namespace
} // namespace corvane::core
