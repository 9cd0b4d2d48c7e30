#include "keys/base58.h"
#include "keys/transfer.h"
#include "platform/authenticator.h"
#include "tests/core/wallet_fixture.h"
#include "tests/fakes/stubborn_keychain.h"

#include <QCoroTask>

#include <cmath>
#include <limits>

namespace corvane::core {
namespace {

using namespace Qt::StringLiterals;
using platform::SecretBytes;

const QString latestBlockhash = u"getLatestBlockhash"_s;
const QString sendTransaction = u"sendTransaction"_s;
const QString keyService = u"corvane.signing-key"_s;
constexpr qsizetype senderOffset = 65 + 4;

QString textOf(const SecretBytes &text)
{
    return QString::fromLatin1(reinterpret_cast<const char *>(text.bytes().data()),
                               static_cast<qsizetype>(text.size()));
}

class PassedContext final : public platform::AuthenticationContext
{
public:
    [[nodiscard]] bool passed() const override { return true; }
};

class WalletKeysTest : public tests::WalletTest
{
protected:
    WalletKeysTest()
    {
        http.answer(latestBlockhash, R"({"result": {"value": {"blockhash": ")" +
                                         tests::addressB.toLatin1() + R"("}}})");
        http.answer(sendTransaction, R"({"result": "signature"})");
    }

    void launchOn(platform::Keychain &chain)
    {
        model = std::make_unique<WalletModel>(WalletServices{
            queue, http, settings, chain, signingKeys, background, formatter, files, endpoints});
        queue.drain();
        http.forgetRequests();
    }

    /// A stored key whose seed is not in memory, as after a start.
    QString launchLocked()
    {
        launchOn(m_chain);
        const auto created = model->createWallet();
        EXPECT_TRUE(std::holds_alternative<SecretBytes>(created));
        model.reset();
        launchOn(m_chain);
        EXPECT_FALSE(model->sessionSecret());
        return model->signingPubkey().value_or(QString());
    }

    /// What `task` gives after the background and the main queue have done their work.
    template <typename Value>
    Value finish(QCoro::Task<Value> task)
    {
        while (background.held() > 0) {
            background.runNext();
        }
        queue.drain();
        std::optional<Value> result;
        task.then([&](Value value) { result.emplace(std::move(value)); });
        EXPECT_TRUE(result) << "still waiting";
        return *std::move(result);
    }

    QString sendError(const QString &to, double amount)
    {
        const auto result = finish(model->sendSOL(to, amount));
        const auto *error = std::get_if<SendError>(&result);
        return error != nullptr ? error->description() : u"sent "_s + std::get<QString>(result);
    }

    [[nodiscard]] QJsonArray paramsOf(const QString &method) const
    {
        for (const platform::HttpRequest &request : http.requests()) {
            const QJsonObject body = QJsonDocument::fromJson(request.body).object();
            if (body[u"method"_s] == method) {
                return body[u"params"_s].toArray();
            }
        }
        return {};
    }

    tests::StubbornKeychain m_chain;
};

TEST_F(WalletKeysTest, CreatesAKeyThatIsUnlockedAndWaitsForItsBackup)
{
    launchOn(m_chain);
    const auto created = model->createWallet();
    const auto *backup = std::get_if<SecretBytes>(&created);
    ASSERT_NE(backup, nullptr);
    const QString pubkey = model->signingPubkey().value_or(QString());
    EXPECT_TRUE(WalletModel::isValidAddress(pubkey));
    EXPECT_EQ(model->address(), pubkey);
    EXPECT_EQ(settings.string(u"corvane.address"_s), pubkey);
    EXPECT_EQ(m_chain.copyAccount(keyService), pubkey);
    ASSERT_TRUE(model->sessionSecret());
    EXPECT_EQ(m_chain.copyData(keyService, QString()), model->sessionSecret()->clone());
    EXPECT_EQ(model->pendingBackup()->clone(), *backup);

    // The backup is the seed followed by the public key, and leads back to the same key.
    const auto bytes = keys::Base58::decode(textOf(*backup));
    ASSERT_EQ(bytes->size(), 64U);
    EXPECT_EQ(keys::Base58::encode(std::span(*bytes).subspan(32)), pubkey);
    model->removeWallet();
    const auto imported = model->importSigningKey(textOf(*backup));
    EXPECT_EQ(std::get<QString>(imported), pubkey);
    EXPECT_FALSE(model->pendingBackup());
}

TEST_F(WalletKeysTest, ImportsAnythingOf32BytesAndRefusesTheRestUnchanged)
{
    launchOn(m_chain);
    // An address is 32 bytes too, and so a seed, but of another key.
    const auto imported = model->importSigningKey(u" \n"_s + tests::addressA + u'\n');
    ASSERT_TRUE(std::holds_alternative<QString>(imported));
    const QString pubkey = std::get<QString>(imported);
    EXPECT_NE(pubkey, tests::addressA);
    EXPECT_EQ(model->address(), pubkey);

    for (const QString &text : {QString(), u"[1,2]"_s, u"hello"_s, tests::addressA + u'1'}) {
        const auto refused = model->importSigningKey(text);
        EXPECT_EQ(std::get<SendError>(refused).description(),
                  u"that key doesn't decode — paste the base58 secret key or a JSON byte array"_s);
    }
    EXPECT_EQ(model->signingPubkey(), pubkey);
    EXPECT_EQ(m_chain.copyAccount(keyService), pubkey);
}

TEST_F(WalletKeysTest, FallsBackToAnUnprotectedItemAndTellsTheLastStatus)
{
    launchOn(m_chain);
    m_chain.failures = {platform::keychainAuthFailed};
    EXPECT_TRUE(std::holds_alternative<SecretBytes>(model->createWallet()));
    const QString before = model->address();

    m_chain.failures = {platform::keychainAuthFailed, platform::keychainNotAvailable};
    const auto refused = model->createWallet();
    EXPECT_EQ(std::get<SendError>(refused).description(),
              u"keychain refused the key (error -25291) — try again, and tell me this code if it "
              u"persists"_s);
    EXPECT_EQ(model->signingPubkey(), before);
    EXPECT_EQ(model->address(), before);
    // The old item went before the new one was refused.
    EXPECT_FALSE(m_chain.copyAccount(keyService));
}

TEST_F(WalletKeysTest, UnlocksInTheBackgroundWithoutAPrompt)
{
    launchLocked();
    model->unlockSigningKey(std::make_shared<PassedContext>());
    EXPECT_EQ(background.held(), 1U);
    background.runNext();
    EXPECT_FALSE(model->sessionSecret()) << "the result belongs to the main thread";
    queue.drain();
    EXPECT_TRUE(model->sessionSecret());
    EXPECT_TRUE(m_chain.prompts.isEmpty());
    // Unlocked, or without a key, there is nothing to read.
    model->unlockSigningKey(std::make_shared<PassedContext>());
    model->removeWallet();
    model->unlockSigningKey(std::make_shared<PassedContext>());
    EXPECT_EQ(background.held(), 0U);
}

TEST_F(WalletKeysTest, AKeyRemovedMeanwhileStaysRemoved)
{
    launchLocked();
    model->unlockSigningKey(std::make_shared<PassedContext>());
    background.runNext();
    model->removeWallet();
    queue.drain();
    EXPECT_FALSE(model->sessionSecret());
    EXPECT_FALSE(model->signingPubkey());
    EXPECT_FALSE(model->pendingBackup());
    EXPECT_EQ(model->address(), QString());
    EXPECT_FALSE(m_chain.copyAccount(keyService));

    // And an answer that finds no model any more harms nobody.
    launchLocked();
    model->unlockSigningKey(std::make_shared<PassedContext>());
    model.reset();
    background.runNext();
    queue.drain();
}

TEST_F(WalletKeysTest, RevealsTheBackupAfterAPromptOnly)
{
    const QString pubkey = launchLocked();
    m_chain.refuses = true;
    EXPECT_FALSE(finish(model->backupSecret()));
    EXPECT_FALSE(model->sessionSecret());
    m_chain.refuses = false;
    const auto backup = finish(model->backupSecret());
    ASSERT_TRUE(backup);
    EXPECT_TRUE(textOf(*backup).size() > 44);
    EXPECT_TRUE(model->sessionSecret());
    EXPECT_EQ(m_chain.prompts, QStringList(2, u"reveal your wallet backup key"_s));
    EXPECT_TRUE(finish(model->backupSecret()));
    EXPECT_EQ(m_chain.prompts.size(), 2) << "unlocked, nobody is asked";
    EXPECT_EQ(model->signingPubkey(), pubkey);
}

TEST_F(WalletKeysTest, ChecksATransferInItsOrderAndSendsNothingBefore)
{
    launchLocked();
    m_chain.refuses = true;
    struct Case
    {
        QString to;
        double amount;
        QString error;
    };
    const QString badRecipient = u"recipient isn't a valid solana address"_s;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const Case cases[] = {
        {u""_s, 0, badRecipient},
        {tests::addressA + u'\n', 1, badRecipient},
        {tests::addressA.chopped(20), nan, badRecipient},
        {tests::addressA, 0, u"bad amount"_s},
        {tests::addressA, -1, u"bad amount"_s},
        {tests::addressA, nan, u"bad amount"_s},
    };
    for (const Case &expected : cases) {
        EXPECT_EQ(sendError(expected.to, expected.amount), expected.error);
    }
    EXPECT_TRUE(m_chain.prompts.isEmpty());
    EXPECT_EQ(sendError(tests::addressA, 1234.5), u"touch id cancelled — nothing was sent"_s);
    EXPECT_EQ(m_chain.prompts, QStringList{u"send 1,234.5000 SOL"_s});
    EXPECT_TRUE(http.requests().empty());
    EXPECT_FALSE(model->sessionSecret());
}

TEST_F(WalletKeysTest, TurnsEveryRefusalOfTheClusterIntoItsText)
{
    launchOn(m_chain);
    ASSERT_TRUE(std::holds_alternative<SecretBytes>(model->createWallet()));
    queue.drain();
    const QString noBlockhash = u"couldn't fetch a recent blockhash"_s;
    for (const QByteArray &reply :
         {QByteArray(R"({"error": {"code": 1}})"), QByteArray(R"({"result": null})"),
          QByteArray(R"({"result": {"value": "x"}})"),
          QByteArray(R"({"result": {"value": {"blockhash": "1111"}}})"),
          QByteArray(R"({"result": {"value": {"blockhash": ")" + QByteArray(200'000, 'z') +
                     R"("}}})"),
          QByteArray("nonsense")}) {
        http.answer(latestBlockhash, reply);
        EXPECT_EQ(sendError(tests::addressA, 1), noBlockhash);
    }
    http.answer(latestBlockhash, platform::HttpError::TimedOut);
    EXPECT_EQ(sendError(tests::addressA, 1), noBlockhash);
    EXPECT_EQ(http.count(sendTransaction), 0);

    http.answer(latestBlockhash,
                R"({"result": {"value": {"blockhash": ")" + tests::addressB.toLatin1() + R"("}}})");
    const QString failed = u"send failed — check balance covers amount + fee"_s;
    const QString unexpected = u"unexpected RPC reply"_s;
    for (const auto &[reply, text] :
         {std::pair{QByteArray(R"({"error": {"code": -32002}})"), failed},
          {QByteArray("<html>"), failed},
          {QByteArray(R"({"result": 7})"), unexpected},
          {QByteArray(R"({"result": null})"), unexpected}}) {
        http.answer(sendTransaction, reply);
        EXPECT_EQ(sendError(tests::addressA, 1), text);
    }
    http.answer(sendTransaction, platform::HttpError::TimedOut);
    EXPECT_EQ(sendError(tests::addressA, 1), failed);
}

TEST_F(WalletKeysTest, SendsASignedTransferAndRefreshes)
{
    const QString pubkey = launchLocked();
    EXPECT_EQ(sendError(u" \t"_s + tests::addressA, 1), u"sent signature"_s);
    EXPECT_EQ(m_chain.prompts, QStringList{u"send 1.0000 SOL"_s});
    EXPECT_TRUE(model->sessionSecret());
    const std::vector<QString> expected{latestBlockhash, sendTransaction, tests::coinGecko,
                                        tests::balance,  tests::tokens,   tests::chart};
    EXPECT_EQ(http.names(), expected);

    EXPECT_EQ(paramsOf(latestBlockhash),
              QJsonArray{(QJsonObject{{u"commitment"_s, u"finalized"_s}})});
    const QJsonArray params = paramsOf(sendTransaction);
    EXPECT_EQ(params[1], (QJsonObject{{u"encoding"_s, u"base64"_s},
                                      {u"preflightCommitment"_s, u"confirmed"_s}}));
    const QByteArray transaction = QByteArray::fromBase64(params[0].toString().toLatin1());
    ASSERT_EQ(transaction.size(), 215);
    const auto sender = keys::Base58::decode(pubkey);
    EXPECT_EQ(transaction.sliced(senderOffset, 32),
              QByteArray(reinterpret_cast<const char *>(sender->data()), 32));
    EXPECT_EQ(transaction.last(8), QByteArray::fromHex("00ca9a3b00000000"));
}

TEST_F(WalletKeysTest, AmountsTooLargeForTheWireStopTheProcess)
{
    launchOn(m_chain);
    EXPECT_DEATH(finish(model->sendSOL(tests::addressA, 1e300)), "does not fit");
}

TEST_F(WalletKeysTest, LinksToTheExplorer)
{
    endpoints.explorer = u"https://explorer.test"_s;
    launchOn(m_chain);
    EXPECT_EQ(model->explorerURL(u"abc"_s), QUrl(u"https://explorer.test/tx/abc"_s));
    model->setNetwork(SolNetwork::Devnet);
    EXPECT_EQ(model->explorerURL(u"abc"_s), QUrl(u"https://explorer.test/tx/abc?cluster=devnet"_s));
}

} // namespace
} // namespace corvane::core
