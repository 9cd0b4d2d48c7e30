// Transfers, from the press to their fate.

#include "core/transfer_session.h"

#include "core/wallet_settings.h"
#include "keys/base58.h"
#include "tests/core/wallet_fixture.h"

#include <QJsonArray>

#include <limits>

namespace corvane::core {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using platform::HttpError;
using platform::HttpReply;
using platform::HttpResult;
using tests::addressA;
using tests::addressB;
using tests::blockhashReply;
using tests::Table;

const QString latestBlockhash = u"getLatestBlockhash"_s;
const QString sendTransaction = u"sendTransaction"_s;
const QString blockHeight = u"getBlockHeight"_s;
const QString statuses = u"getSignatureStatuses"_s;
const QString isValid = u"isBlockhashValid"_s;

const QString failed = u"send failed — check balance covers amount + fee"_s;
const QString unexpected = u"unexpected RPC reply"_s;
const QString noBlockhash = u"couldn't fetch a recent blockhash"_s;
const QString pressAgain =
    u"the earlier transfer may still go through — press again to send this one too"_s;

const QByteArray refusal = R"({"error": {"code": -32002}})";
const QByteArray pending = R"({"confirmationStatus": "processed", "err": null})";
const QByteArray confirmed = R"({"confirmationStatus": "confirmed", "err": null})";
const QByteArray failedOnChain =
    R"({"confirmationStatus": "finalized", "err": {"InstructionError": [0, 1]}})";

QByteArray validReply(const QString &blockhash)
{
    return blockhashReply(blockhash, R"(, "lastValidBlockHeight": 1150)");
}
QByteArray heightReply(int height)
{
    return R"({"result": )" + QByteArray::number(height) + "}";
}
QByteArray statusReply(const QByteArray &status)
{
    return R"({"result": {"value": [)" + status + "]}}";
}
QByteArray signatureReply(const QString &signature)
{
    return R"({"result": ")" + signature.toLatin1() + R"("})";
}

class TransferSessionTest : public tests::WalletTest
{
protected:
    TransferSessionTest()
    {
        answerBlockhash(addressB);
        http.answer(sendTransaction, R"({"result": "signature"})");
        http.answer(isValid, R"({"result": {"value": false}})");
        answerFate(1000);
        launchAndSettle();
        createKey();
        http.forgetRequests();
    }

    void answerBlockhash(const QString &blockhash)
    {
        http.answer(latestBlockhash, validReply(blockhash));
    }
    void answerFate(int height, const QByteArray &status = "null")
    {
        http.answer(blockHeight, heightReply(height));
        http.answer(statuses, statusReply(status));
    }

    /// The error's text, or the signature after "sent".
    QString send(const QString &to, double amount)
    {
        return textOf(finish(model->sendSOL(to, amount)));
    }
    static QString textOf(const SendResult<QString> &result)
    {
        const auto *error = std::get_if<SendError>(&result);
        return error != nullptr ? error->description() : u"sent "_s + std::get<QString>(result);
    }

    /// The encoded transactions submitted so far.
    [[nodiscard]] QStringList submitted() const
    {
        QStringList transactions;
        for (const platform::HttpRequest &request : http.requests()) {
            const QJsonObject call = QJsonDocument::fromJson(request.body).object();
            if (call.value(u"method"_s) == sendTransaction) {
                transactions.append(call.value(u"params"_s)[0].toString());
            }
        }
        return transactions;
    }
    /// The signature of an encoded transaction, as the cluster returns it.
    static QString signatureOf(const QString &transaction)
    {
        const QByteArray bytes = QByteArray::fromBase64(transaction.toLatin1()).sliced(1, 64);
        return keys::Base58::encode(std::vector<std::uint8_t>(bytes.begin(), bytes.end()));
    }

    [[nodiscard]] const TransferReport &report() const { return model->transfers().report(); }
    [[nodiscard]] TransferFate fate() const { return report().fate; }

    /// A blockhash that no earlier transfer contains.
    void answerFreshBlockhash()
    {
        answerBlockhash(keys::Base58::encode(std::array<std::uint8_t, 32>{++m_blockhashes, 1}));
    }

    /// Leaves a transfer of 1 SOL to `addressA` without an answer.
    void loseTransfer()
    {
        answerFreshBlockhash();
        http.answer(sendTransaction, HttpError::TimedOut);
        ASSERT_EQ(send(addressA, 1), failed);
        ASSERT_EQ(fate(), TransferFate::Checking);
    }

    /// Sends 1 SOL to `addressA` until the cluster has the transfer, whose signature is returned.
    QString beginTransfer()
    {
        answerFreshBlockhash();
        http.forgetRequests();
        http.hold(sendTransaction);
        m_sending.emplace(model->sendSOL(addressA, 1));
        settle();
        return signatureOf(submitted().value(0));
    }

    std::optional<QCoro::Task<SendResult<QString>>> m_sending;
    std::uint8_t m_blockhashes = 0;
};

TEST_F(TransferSessionTest, ChecksATransferInItsOrderAndSendsNothingBefore)
{
    launchAndSettle();
    keychain.refuses = true;
    const QString badRecipient = u"recipient isn't a valid solana address"_s;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const auto &[to, amount, error] : Table<QString, double, QString>{
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

TEST_F(TransferSessionTest, SendsWhatIsOddButAllowedAndLinksToItsCluster)
{
    const QString sent = u"sent signature"_s;
    http.hold(blockHeight);
    EXPECT_EQ(send(addressA, 1e-10), sent) << "no lamports";
    EXPECT_EQ(http.names(),
              (std::vector<QString>{latestBlockhash, sendTransaction, tests::coinGecko,
                                    tests::balance, tests::tokens, tests::chart}))
        << "a full refresh follows";
    EXPECT_EQ(send(u" "_s + model->address() + u'\t', 1), pressAgain);
    EXPECT_EQ(send(u" "_s + model->address() + u'\t', 1), sent) << "to itself";
    for (const auto &[signature, path] : Table<QString, QString>{
             {u"5x"_s, u"5x"_s}, {u"a/../?#\n%"_s, u"a%2F..%2F%3F%23%0A%25"_s}}) {
        EXPECT_EQ(model->explorerURL(signature)->toString(QUrl::FullyEncoded),
                  u"https://solscan.io/tx/"_s + path);
    }
    model->setNetwork(SolNetwork::Devnet);
    EXPECT_EQ(model->explorerURL(u"5x"_s), QUrl(u"https://solscan.io/tx/5x?cluster=devnet"_s));
}

TEST_F(TransferSessionTest, TurnsEveryAnswerIntoItsTextAndDoubtsWhatIsNoAnswer)
{
    const HttpReply tooLong{200, blockhashReply(QString(200'000, u'z'))};
    const HttpReply tooShort{200, blockhashReply(u"11"_s)};
    const HttpReply good{200, validReply(addressB)};
    for (const auto &[blockhash, answer, text, isDoubtful] :
         Table<HttpResult, HttpResult, QString, bool>{
             {HttpReply{200, R"({"result": {"value": "x"}})"}, {}, noBlockhash, false},
             {tooShort, {}, noBlockhash, false},
             {tooLong, {}, noBlockhash, false},
             {HttpError::TimedOut, {}, noBlockhash, false},
             {good, HttpReply{200, refusal}, failed, false},
             {good, HttpReply{502, R"({"error": {"code": -32603}})"}, failed, true},
             {good, HttpReply{200, "<html>"}, failed, true},
             {good, HttpError::TimedOut, failed, true},
             {good, HttpReply{200, R"({"result": null})"}, unexpected, true},
             {good, HttpReply{200, R"({"result": "another"})"}, u"sent another"_s, true},
         }) {
        SCOPED_TRACE(text.toStdString());
        http.answer(latestBlockhash, blockhash);
        http.answer(sendTransaction, answer);
        http.forgetRequests();
        answerFate(1150);
        EXPECT_EQ(send(addressA, 1), text);
        EXPECT_EQ(http.count(sendTransaction), text == noBlockhash ? 0 : 1);
        EXPECT_EQ(http.count(tests::balance), text == noBlockhash ? 0 : 1);
        EXPECT_TRUE(http.requests()[0].body.contains(R"({"commitment":"finalized"})"));
        EXPECT_EQ(fate(), isDoubtful ? TransferFate::Checking : TransferFate::Unknown);
        EXPECT_EQ(report().error.has_value(), !text.startsWith(u"sent"));
        answerFate(1151);
        queue.advance(2s);
        EXPECT_EQ(fate(), isDoubtful ? TransferFate::DidNotGoThrough : TransferFate::Unknown);
    }
    EXPECT_TRUE(http.requests()[1].body.contains(
        R"({"encoding":"base64","preflightCommitment":"confirmed"})"));
}

TEST_F(TransferSessionTest, AsksUntilTheFateIsCertain)
{
    const HttpReply noHeight{200, R"({"result": "x"})"};
    const auto height = [](int count) { return HttpReply{200, heightReply(count)}; };
    const auto status = [](const QByteArray &text) { return HttpReply{200, statusReply(text)}; };
    using enum TransferFate;
    for (const auto &[heightAnswer, statusAnswer, expected] :
         Table<HttpResult, HttpResult, TransferFate>{
             {height(1150), status("null"), Checking},
             {height(1151), status("null"), DidNotGoThrough},
             {height(1151), status(pending), Checking},
             {height(1151), status(confirmed), WentThrough},
             {height(1000), status(failedOnChain), DidNotGoThrough},
             {noHeight, status(confirmed), WentThrough},
             {noHeight, status("null"), Checking},
             {HttpError::TimedOut, status("null"), Checking},
             {height(1151), HttpError::TimedOut, Checking},
             {height(1151), status(R"({"err": null})"), Checking},
             {height(1151), status(R"({"confirmationStatus": "confirmed"})"), Checking},
             {height(1151), status("null, null"), Checking},
             {height(1151), HttpReply{200, refusal}, Checking},
         }) {
        SCOPED_TRACE(static_cast<int>(expected));
        answerFate(1000);
        loseTransfer();
        http.forgetRequests();
        http.answer(blockHeight, heightAnswer);
        http.answer(statuses, statusAnswer);
        queue.advance(1999ms);
        EXPECT_EQ(fate(), Checking);
        EXPECT_TRUE(http.names().empty());
        queue.advance(1ms);
        const auto asked = std::ranges::find(http.names(), blockHeight);
        EXPECT_LT(asked, std::ranges::find(http.names(), statuses));
        EXPECT_EQ(fate(), expected);
        // Apart from the polling.
        EXPECT_GE(http.count(tests::balance), expected == Checking ? 0 : 1);
        EXPECT_EQ(report().subject->recipient.text(), addressA);
        EXPECT_EQ(report().error.has_value(), expected != WentThrough);
        EXPECT_EQ(report().signature.has_value(), expected == WentThrough);
        // Clean up for the next row.
        answerFate(2000);
        queue.advance(2s);
        model->transfers().markSeen();
        EXPECT_EQ(settings.string(transfersSetting), QString());
        http.forgetRequests();
        queue.advance(1min);
        EXPECT_EQ(http.count(statuses), 0);
    }
}

TEST_F(TransferSessionTest, AsksRarelyAfterAWhileAndFindsTheExpiryItself)
{
    // An endpoint that does not report how long its blockhashes are valid.
    http.answer(latestBlockhash, blockhashReply(addressB));
    loseTransfer();
    http.forgetRequests();
    queue.advance(3min);
    EXPECT_EQ(http.count(statuses), 90);
    http.forgetRequests();
    queue.advance(5min);
    EXPECT_EQ(http.count(statuses), 10);
    answerFate(1150);
    queue.advance(30s);
    EXPECT_EQ(fate(), TransferFate::Checking);
    answerFate(1151);
    queue.advance(30s);
    EXPECT_EQ(fate(), TransferFate::DidNotGoThrough);
}

TEST_F(TransferSessionTest, TellsOfAnAcceptedTransferWhenItIsConfirmedOrDropped)
{
    for (const bool isDropped : {false, true}) {
        answerFate(1000);
        const QString signature = beginTransfer();
        http.release(sendTransaction, signatureReply(signature));
        http.forgetRequests();
        EXPECT_EQ(textOf(finish(*std::move(m_sending))), u"sent "_s + signature);
        EXPECT_EQ(fate(), TransferFate::Unknown);
        EXPECT_EQ(http.count(statuses), 0) << "nothing is confirmed at once";
        model->transfers().markSeen();
        queue.advance(2s);
        EXPECT_EQ(fate(), TransferFate::Unknown);
        answerFate(isDropped ? 1151 : 1150, isDropped ? "null" : confirmed);
        queue.advance(2s);
        EXPECT_EQ(fate(), isDropped ? TransferFate::DidNotGoThrough : TransferFate::WentThrough);
        EXPECT_EQ(report().signature, signature);
        EXPECT_EQ(model->transfers().hasNews(), isDropped);
    }
}

TEST_F(TransferSessionTest, TheSameIntentAgainSubmitsTheSameBytes)
{
    loseTransfer();
    answerBlockhash(addressA);
    // The cluster has forgotten the blockhash by now: a refusal says nothing of the first time.
    http.answer(sendTransaction, refusal);
    EXPECT_EQ(send(addressA, 1), failed);
    EXPECT_EQ(fate(), TransferFate::Checking);
    // The endpoint has changed, but not the cluster.
    model->setCustomRPC(u"http://other.test"_s);
    http.answer(sendTransaction, signatureReply(signatureOf(submitted()[0])));
    EXPECT_EQ(send(addressA, 1), u"sent "_s + signatureOf(submitted()[0]));
    EXPECT_EQ(fate(), TransferFate::Unknown);
    ASSERT_EQ(submitted().size(), 3);
    EXPECT_EQ(submitted()[1], submitted()[0]);
    EXPECT_EQ(submitted()[2], submitted()[0]);
    http.forgetRequests();
    answerFate(1000, confirmed);
    queue.advance(2s);
    EXPECT_EQ(fate(), TransferFate::WentThrough);
    EXPECT_EQ(http.requests()[1].url, QUrl(u"http://other.test"_s));
    // It is done, so that the next one is another payment.
    send(addressA, 1);
    EXPECT_EQ(http.count(latestBlockhash), 1);
}

TEST_F(TransferSessionTest, AsksWhereItWasSubmittedAgainAndWhereItWasSubmittedFirst)
{
    loseTransfer();
    model->setCustomRPC(u"http://dead.test"_s);
    send(addressA, 1);
    http.forgetRequests();
    queue.advance(4s);
    QStringList asked;
    for (const platform::HttpRequest &request : http.requests()) {
        if (request.body.contains("getSignatureStatuses")) {
            asked.append(request.url.host());
        }
    }
    EXPECT_EQ(asked, (QStringList{u"dead.test"_s, u"mainnet.test"_s}));
}

TEST_F(TransferSessionTest, AnotherIntentNeedsASecondPress)
{
    http.answer(tests::probe, HttpError::Unreachable);
    for (const auto &[to, amount, network] : Table<QString, double, SolNetwork>{
             {addressA, 1.000000001, SolNetwork::Mainnet},
             {addressB, 1, SolNetwork::Mainnet},
             {addressA, 1, SolNetwork::Devnet},
         }) {
        model->setNetwork(SolNetwork::Mainnet);
        loseTransfer();
        http.forgetRequests();
        model->setNetwork(network);
        answerFreshBlockhash();
        EXPECT_EQ(send(to, amount), pressAgain);
        // The warning is for one intent.
        EXPECT_EQ(send(to, 7), pressAgain);
        EXPECT_EQ(send(to, amount), pressAgain);
        EXPECT_EQ(fate(), TransferFate::Checking);
        EXPECT_EQ(http.count(sendTransaction), 0);
        http.answer(sendTransaction, refusal);
        EXPECT_EQ(send(to, amount), failed);
        EXPECT_EQ(send(to, amount), pressAgain) << "each one is warned of";
        EXPECT_EQ(submitted().size(), 1);
        answerFate(2000);
        queue.advance(2s);
        answerFate(1000);
        queue.drain();
    }
}

TEST_F(TransferSessionTest, TheSameIntentIsAnotherPaymentOnceAcceptedOrWithAnotherKey)
{
    http.release(sendTransaction, signatureReply(beginTransfer()));
    finish(*std::move(m_sending));
    const QString first = submitted()[0];
    loseTransfer();
    EXPECT_NE(submitted()[1], first);

    ASSERT_TRUE(std::holds_alternative<QString>(finish(model->importSigningKey(addressB))));
    EXPECT_EQ(send(addressA, 1), pressAgain);
    EXPECT_EQ(submitted().size(), 2);
}

TEST_F(TransferSessionTest, TheFateOfAnEarlierTransferLeavesTheReportOfTheLatest)
{
    loseTransfer();
    send(addressB, 2);
    ASSERT_EQ(send(addressB, 2), failed);
    http.hold(statuses);
    queue.advance(2s);
    http.release(statuses, statusReply(confirmed));
    EXPECT_EQ(fate(), TransferFate::WentThrough);
    EXPECT_EQ(report().subject->recipient.text(), addressA);
    EXPECT_TRUE(report().isEarlier);
    EXPECT_FALSE(report().signature);
    EXPECT_EQ(report().error->description(), failed);
    // The next fate waits until this one was shown.
    http.release(statuses, statusReply(confirmed));
    queue.advance(5s);
    EXPECT_EQ(report().subject->recipient.text(), addressA);
    model->transfers().markSeen();
    queue.advance(5s);
    EXPECT_EQ(report().subject->recipient.text(), addressB);
    EXPECT_FALSE(report().isEarlier);
    EXPECT_TRUE(model->transfers().hasNews());
    EXPECT_TRUE(report().signature);
    EXPECT_FALSE(report().error);
}

TEST_F(TransferSessionTest, AFateThatIsKnownByTheEndOfThePromptIsHeeded)
{
    for (const auto &[status, height, submissions] :
         Table<QByteArray, int, int>{{confirmed, 1000, 0}, {"null", 1151, 1}, {"null", 1000, 1}}) {
        answerFate(1000);
        http.forgetRequests();
        loseTransfer();
        const QString first = submitted()[0];
        launch();
        settle();
        ASSERT_FALSE(model->sessionSecret());
        http.forgetRequests();
        answerBlockhash(addressA);
        auto sending = model->sendSOL(addressA, 1);
        answerFate(height, status);
        queue.advance(2s);
        EXPECT_TRUE(report().sending);
        const QString result = textOf(finish(std::move(sending)));
        ASSERT_EQ(submitted().size(), submissions);
        if (submissions == 0) {
            EXPECT_EQ(result, u"sent "_s + signatureOf(first));
        } else {
            EXPECT_EQ(submitted()[0] == first, height == 1000);
        }
        answerFate(2000);
        queue.advance(2s);
    }
}

TEST_F(TransferSessionTest, ADoubtfulTransferSurvivesARestart)
{
    beginTransfer();
    const QString first = submitted()[0];
    // Killed before the answer came.
    const auto stored = settings.values;
    model.reset();
    settings.values = stored;
    http.cancelHeld();
    // A refusal now says nothing of the time before.
    http.answer(sendTransaction, refusal);
    launchAndSettle();
    EXPECT_EQ(fate(), TransferFate::Checking);
    EXPECT_EQ(send(addressA, 2), pressAgain);
    EXPECT_EQ(send(addressA, 1), failed);
    EXPECT_EQ(submitted(), QStringList{first});
    EXPECT_EQ(fate(), TransferFate::Checking);
    answerFate(1000, confirmed);
    queue.advance(2s);
    EXPECT_EQ(fate(), TransferFate::WentThrough);
    EXPECT_EQ(report().signature, signatureOf(first));
    EXPECT_TRUE(model->transfers().hasNews());
    launchAndSettle();
    EXPECT_EQ(fate(), TransferFate::WentThrough) << "nobody had seen it";
    model->transfers().markSeen();
    launchAndSettle();
    EXPECT_EQ(fate(), TransferFate::Unknown);
}

TEST_F(TransferSessionTest, AnAcceptedTransferIsFollowedAfterARestartUntilAllIsTold)
{
    using enum TransferFate;
    for (const auto &[wasSeen, isDropped, expected] : Table<bool, bool, TransferFate>{
             {false, false, WentThrough}, {true, false, Unknown}, {true, true, DidNotGoThrough}}) {
        answerFate(1000);
        http.release(sendTransaction, signatureReply(beginTransfer()));
        if (wasSeen) {
            model->transfers().markSeen();
        }
        launchAndSettle();
        answerFate(isDropped ? 1151 : 1000, isDropped ? "null" : confirmed);
        queue.advance(2s);
        EXPECT_EQ(fate(), expected);
        EXPECT_EQ(model->transfers().hasNews(), expected != Unknown);
        EXPECT_EQ(report().signature.has_value(), expected == WentThrough);
        model->transfers().markSeen();
        EXPECT_EQ(settings.string(transfersSetting), QString());
    }
}

TEST_F(TransferSessionTest, TellsTheSameWordsAboutTwoPaymentsWithABreak)
{
    http.release(sendTransaction, signatureReply(beginTransfer()));
    finish(*std::move(m_sending));
    loseTransfer();
    answerFate(2000);
    for (const TransferFate expected :
         {TransferFate::DidNotGoThrough, TransferFate::Unknown, TransferFate::DidNotGoThrough}) {
        queue.advance(5s);
        EXPECT_EQ(fate(), expected);
        model->transfers().markSeen();
    }
    EXPECT_EQ(settings.string(transfersSetting), QString());
}

TEST_F(TransferSessionTest, NeverTakesTheBytesOfOnePaymentForAnother)
{
    loseTransfer();
    answerFate(1000, confirmed);
    queue.advance(2s);
    ASSERT_EQ(fate(), TransferFate::WentThrough);
    // An endpoint that repeats its blockhash makes the next payment look done already.
    EXPECT_EQ(send(addressA, 1), noBlockhash);
    EXPECT_EQ(submitted().size(), 1);
    EXPECT_EQ(fate(), TransferFate::Unknown);
}

TEST_F(TransferSessionTest, IgnoresStoredTransfersThatCannotBeRead)
{
    loseTransfer();
    const QString stored = *settings.string(transfersSetting);
    const QJsonObject good = QJsonDocument::fromJson(stored.toUtf8())[0].toObject();
    for (const auto &[member, value] : Table<QString, QString>{
             {u"sender"_s, u"x"_s},
             {u"recipient"_s, addressA.chopped(9)},
             {u"lamports"_s, u"-1"_s},
             {u"lamports"_s, u"18446744073709551616"_s},
             {u"blockhash"_s, u"11"_s},
             {u"signature"_s, addressA},
             {u"signature"_s, QString(100'000, u'z')},
             {u"network"_s, u"testnet"_s},
             {u"endpoint"_s, u"http://a b"_s},
         }) {
        QJsonObject bad = good;
        bad.insert(member, value);
        const auto read = submittedTransfersFromJson(QString::fromUtf8(
            QJsonDocument(QJsonArray{bad, 7, good}).toJson(QJsonDocument::Compact)));
        ASSERT_EQ(read.size(), 1U) << member.toStdString();
        EXPECT_EQ(toJson(read), stored);
    }
    EXPECT_TRUE(submittedTransfersFromJson(u"no JSON"_s).empty());
}

TEST_F(TransferSessionTest, SendsOneAtATime)
{
    http.hold(latestBlockhash);
    auto first = model->sendSOL(addressA, 1);
    queue.drain();
    EXPECT_TRUE(report().sending);
    EXPECT_EQ(send(addressA, 1), u"a transfer is under way already"_s);
    EXPECT_EQ(send(addressB, 2), u"a transfer is under way already"_s);
    EXPECT_EQ(http.count(latestBlockhash), 1);
    http.release(latestBlockhash, "{}");
    EXPECT_EQ(textOf(finish(std::move(first))), noBlockhash);
    EXPECT_FALSE(report().sending);
}

TEST_F(TransferSessionTest, OneTransferHasOneEndpoint)
{
    http.hold(latestBlockhash);
    auto sending = model->sendSOL(addressA, 1);
    queue.drain();
    model->setNetwork(SolNetwork::Devnet);
    model->setCustomRPC(u"http://other.test"_s);
    http.release(latestBlockhash, blockhashReply(addressB));
    http.answer(sendTransaction, HttpError::TimedOut);
    finish(std::move(sending));
    queue.advance(2s);
    int calls = 0;
    for (std::size_t index = 0; index < http.names().size(); ++index) {
        const QString &name = http.names()[index];
        if (name == sendTransaction || name == statuses || name == blockHeight) {
            EXPECT_EQ(http.requests()[index].url, QUrl(endpoints.mainnet));
            ++calls;
        }
    }
    EXPECT_EQ(calls, 3);
    EXPECT_EQ(http.count(isValid), 0);
    EXPECT_EQ(report().subject->network, SolNetwork::Mainnet);
}

TEST_F(TransferSessionTest, ATransferKeepsTheKeyThatItBeganWith)
{
    const QString sender = *model->signingPubkey();
    http.hold(latestBlockhash);
    auto sending = model->sendSOL(addressB, 1);
    settle();
    removeKey();
    finish(model->importSigningKey(addressA));
    http.release(latestBlockhash, validReply(addressB));
    finish(std::move(sending));
    const auto stored = submittedTransfersFromJson(*settings.string(transfersSetting));
    ASSERT_EQ(stored.size(), 1U);
    EXPECT_EQ(keys::Address(stored[0].transfer.sender).text(), sender);
    const auto isTransfers = [](const auto &write) { return write.first == transfersSetting; };
    EXPECT_EQ(std::ranges::count_if(settings.writes, isTransfers), 1)
        << "an answer that changes nothing is not written";
}

TEST_F(TransferSessionTest, SignsNothingForDevnetThatMainnetWouldAccept)
{
    model->setNetwork(SolNetwork::Devnet);
    queue.drain();
    for (const auto &[answer, isSent] : Table<HttpResult, bool>{
             {HttpReply{200, R"({"result": {"value": true}})"}, false},
             {HttpReply{200, R"({"result": {"value": false}})"}, true},
             {HttpReply{200, R"({"result": true})"}, true},
             {HttpError::TimedOut, true},
         }) {
        http.forgetRequests();
        http.answer(isValid, answer);
        http.answer(sendTransaction, refusal);
        EXPECT_EQ(send(addressA, 1), isSent ? failed : noBlockhash);
        EXPECT_EQ(http.count(sendTransaction), isSent ? 1 : 0);
        const platform::HttpRequest &question = http.requests()[1];
        EXPECT_EQ(question.url, QUrl(endpoints.mainnet));
        EXPECT_EQ(question.timeout, 3s);
        EXPECT_TRUE(question.body.contains("[\"" + addressB.toLatin1() +
                                           R"(",{"commitment":"processed"}])"));
    }
}

} // namespace
} // namespace corvane::core
