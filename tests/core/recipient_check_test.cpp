// What is told about a recipient: which of the facts, and when the cluster is asked for them.

#include "core/json.h"
#include "core/recipient_check.h"
#include "platform/sodium_signing_keys.h"
#include "tests/fakes/fake_http_client.h"
#include "tests/fakes/hand_driven_queue.h"
#include "tests/fakes/table.h"

#include <QJsonArray>

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

using namespace corvane::core;
using namespace corvane::tests;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using corvane::keys::Address;
using corvane::keys::Lamports;
using corvane::platform::HttpError;

namespace {

Address address(QStringView text)
{
    return Address::fromText(text).value();
}

const Address own = address(u"7nYzRk6sJ9b8oP4dGq5XvNw3uTcMhEaLfB2CjWmZtDpK");
const Address friendly = address(u"9aBcRk6sJ9b8oP4dGq5XvNw3uTcMhEaLfB2CjWmZt111");
const Address alike = address(u"9aBcRk6sJ9b8oP4dGq5XvNw3uTcMhEaLfB2CjWmYt111");
const Address sameEnd = address(u"9aBdRk6sJ9b8oP4dGq5XvNw3uTcMhEaLfB2CjWmZt111");
const Address sameStart = address(u"9aBcRk6sJ9b8oP4dGq5XvNw3uTcMhEaLfB2CjWmZt112");
const Address stranger = address(u"4zMMC9srt5Ri5X14GAgXhaHii3GnPAEERYPJgZJDncDU");
constexpr auto systemProgram = "11111111111111111111111111111111";
constexpr auto tokenProgram = "TokenkegQfeZyiNwAJbNbGKPFXCWuBvf9Ss623VQ5DA";
constexpr auto token2022 = "TokenzQdBNbLqP5VEhdkAS6EPFLC1PHnBqCXEpPxuEb";

QJsonValue json(const QByteArray &text)
{
    const std::optional<QJsonValue> value = parseJson(text);
    EXPECT_TRUE(value) << text.constData();
    return value.value_or(QJsonValue());
}

TEST(RecipientWarning, TellsTheWorstInOneLine)
{
    using Kind = AccountKind;
    const KnownAddress paid{friendly, Dealing::Paid};
    const KnownAddress payer{friendly, Dealing::ReceivedFrom};
    const auto red = [](const QString &text) { return RecipientWarning{text, true}; };
    const auto muted = [](const QString &text) { return RecipientWarning{text, false}; };
    const auto noKey = red(u"no key can own this address — a typo, or a program's address"_s);
    for (const auto &[facts, warning] : Table<RecipientFacts, std::optional<RecipientWarning>>{
             {{stranger, own, true, Kind::Wallet, {}}, std::nullopt},
             {{stranger, own, true, {}, {}}, std::nullopt},
             {{stranger, {}, true, Kind::None, {}}, muted(u"never used on this network"_s)},
             {{own, own, true, Kind::None, {}}, muted(u"your own address"_s)},
             {{stranger, own, false, {}, {}}, noKey},
             {{stranger, own, false, Kind::None, {}}, noKey},
             {{stranger, own, false, Kind::TokenAccount, {}},
              red(u"a token account — coins sent here may be lost"_s)},
             {{stranger, own, true, Kind::Program, {}}, red(u"this is a program, not a wallet"_s)},
             {{stranger, own, true, Kind::Mint, {}}, red(u"this is a token, not a wallet"_s)},
             {{stranger, own, true, Kind::System, {}},
              red(u"an account of the system, not a wallet"_s)},
             {{stranger, own, true, Kind::ProgramData, {}},
              red(u"belongs to a program — coins sent here may be lost"_s)},
             {{alike, own, false, Kind::Mint, paid},
              red(u"looks like 9aBc…t111, which you paid before, but is another address"_s)},
             {{alike, own, true, {}, payer},
              red(u"looks like 9aBc…t111, which paid you before, but is another address"_s)},
             {{alike, friendly, true, {}, paid},
              red(u"looks like your own address, but is another"_s)},
         }) {
        EXPECT_EQ(recipientWarning(facts), warning)
            << (warning ? warning->text.toStdString() : "none");
    }
}

TEST(RecipientWarning, KnowsWhichAddressesBelongToKeys)
{
    corvane::platform::SodiumSigningKeys keys;
    for (int i = 0; i < 20; ++i) {
        EXPECT_TRUE(keys.isPublicKey(keys.publicKey(keys.makeSeed()).value()));
    }
    // Not on the curve, an address derived by a program, and a point of a small subgroup.
    for (const QString &text :
         {u"4zMMC9srt5Ri5X14GAgXhaHii3GnPAEERYPJgZJDncDV"_s,
          u"SysvarC1ock11111111111111111111111111111111"_s, QString::fromLatin1(systemProgram)}) {
        EXPECT_FALSE(keys.isPublicKey({address(text).bytes()})) << text.toStdString();
    }
}

TEST(RecipientReplies, TellAccountsApart)
{
    using Kind = AccountKind;
    const auto reply = [](const char *owner, int space, const QByteArray &mark, bool executable) {
        return QJsonValue(QJsonObject{
            {u"value"_s,
             QJsonObject{{u"owner"_s, QLatin1StringView(owner)},
                         {u"space"_s, space},
                         {u"data"_s, QJsonArray{QString::fromLatin1(mark.toBase64()), u"base64"_s}},
                         {u"executable"_s, executable},
                         {u"lamports"_s, 7}}}});
    };
    for (const auto &[owner, space, mark, executable, kind] :
         Table<const char *, int, QByteArray, bool, Kind>{
             {systemProgram, 0, "", false, Kind::Wallet},
             {systemProgram, 80, "", false, Kind::System},
             {"Sysvar1111111111111111111111111111111111111", 40, "", false, Kind::System},
             {"NativeLoader1111111111111111111111111111111", 14, "", true, Kind::Program},
             {tokenProgram, 82, "", false, Kind::Mint},
             {tokenProgram, 165, "", false, Kind::TokenAccount},
             {tokenProgram, 355, "", false, Kind::ProgramData},
             {token2022, 234, "\1", false, Kind::Mint},
             {token2022, 170, "\2", false, Kind::TokenAccount},
             {"Stake11111111111111111111111111111111111111", 200, "\2", false, Kind::ProgramData},
         }) {
        EXPECT_EQ(readAccount(reply(owner, space, mark, executable)),
                  (AccountFacts{kind, Lamports(7)}))
            << owner << space;
    }
    EXPECT_EQ(readAccount(json(R"({"value": null})")), AccountFacts{});
    for (const char *refused :
         {"{}", "[]", "null", R"({"value": {}})", R"({"value": "x"})",
          R"({"value": {"lamports": -1, "owner": "x"}})",
          R"({"value": {"lamports": "1", "owner": "x"}})", R"({"value": {"lamports": 1}})"}) {
        EXPECT_EQ(readAccount(json(refused)), std::nullopt) << refused;
    }
}

/// A transaction with accounts "address:signer:before:after", and token balances of owners.
QByteArray transaction(const QList<std::tuple<Address, bool, int, int>> &accounts,
                       const Address &tokenGainer, const Address &tokenLoser)
{
    QJsonArray keys;
    QJsonArray before;
    QJsonArray after;
    for (const auto &[key, signer, pre, post] : accounts) {
        keys.append(QJsonObject{{u"pubkey"_s, key.text()}, {u"signer"_s, signer}});
        before.append(pre);
        after.append(post);
    }
    const auto tokens = [](const Address &owner, const QString &amount) {
        return QJsonObject{{u"owner"_s, owner.text()},
                           {u"uiTokenAmount"_s, QJsonObject{{u"amount"_s, amount}}}};
    };
    const QJsonObject meta{
        {u"preBalances"_s, before},
        {u"postBalances"_s, after},
        {u"preTokenBalances"_s, QJsonArray{tokens(tokenLoser, u"9"_s), tokens(sameEnd, u"4"_s)}},
        {u"postTokenBalances"_s, QJsonArray{tokens(tokenLoser, u"8"_s), tokens(tokenGainer, u"1"_s),
                                            tokens(sameEnd, u"4"_s)}}};
    const QJsonObject message{{u"accountKeys"_s, keys}};
    const QJsonObject result{{u"meta"_s, meta},
                             {u"transaction"_s, QJsonObject{{u"message"_s, message}}}};
    return QJsonDocument(QJsonObject{{u"result"_s, result}}).toJson(QJsonDocument::Compact);
}

TEST(RecipientReplies, TellWithWhomOneDealt)
{
    const QJsonValue payment =
        json(transaction({{own, true, 9, 3}, {friendly, false, 0, 5}, {alike, false, 2, 2}},
                         stranger, own))["result"_L1];
    EXPECT_EQ(readDealings(payment, own),
              (std::vector<KnownAddress>{{friendly, Dealing::Paid}, {stranger, Dealing::Paid}}));
    const QJsonValue exchange =
        json(transaction({{own, true, 3, 9}, {friendly, true, 5, 0}}, own, alike))["result"_L1];
    EXPECT_EQ(readDealings(exchange, own), std::vector<KnownAddress>{});
    EXPECT_EQ(readDealings(payment, alike),
              (std::vector<KnownAddress>{{own, Dealing::ReceivedFrom}}));
    EXPECT_EQ(readDealings(json(R"({"transaction": {"message": {"accountKeys":
                                    [{"pubkey": "x", "signer": true}, 3, null]}}})"),
                           own),
              std::vector<KnownAddress>{});

    const QString longest(88, u'a');
    EXPECT_EQ(readSignatures(json(R"([{"signature": "a", "err": null}, {"signature": "b"},
                                      {"signature": "c", "err": {}}, {"signature": 4}, {}, 5,
                                      {"signature": "d"}])"),
                             3),
              (QStringList{u"a"_s, u"b"_s, u"d"_s}));
    EXPECT_EQ(readSignatures(QJsonArray{QJsonObject{{u"signature"_s, longest}},
                                        QJsonObject{{u"signature"_s, longest + u'a'}}},
                             9),
              QStringList{longest});
    EXPECT_EQ(readSignatures(json("{}"), 3), std::nullopt);
}

TEST(KnownAddresses, WarnOfTheDoubleAndNotOfTheOneThatWasPaid)
{
    const KnownAddress paid{friendly, Dealing::Paid};
    const KnownAddress payer{alike, Dealing::ReceivedFrom};
    KnownAddresses known;
    known.add(payer);
    EXPECT_EQ(known.doubleOf(friendly), payer);
    EXPECT_EQ(known.doubleOf(sameEnd), std::nullopt);
    EXPECT_EQ(known.doubleOf(sameStart), std::nullopt);
    EXPECT_EQ(known.doubleOf(alike), std::nullopt);
    known.add(paid);
    known.add({friendly, Dealing::ReceivedFrom});
    EXPECT_EQ(known.doubleOf(friendly), std::nullopt);
    EXPECT_EQ(known.doubleOf(alike), paid);
    EXPECT_EQ(known.doubleOf(stranger), std::nullopt);
    known.add({alike, Dealing::Paid});
    EXPECT_TRUE(known.doubleOf(friendly));

    // Whichever became known first, the one that was paid is named.
    const Address third = address(u"9aBcRk6sJ9b8oP4dGq5XvNw3uTcMhEaLfB2CjWmXt111");
    for (const auto &order : {std::pair(payer, paid), std::pair(paid, payer)}) {
        known = {};
        known.add(order.first);
        known.add(order.second);
        EXPECT_EQ(known.doubleOf(third), paid);
    }
}

class RecipientCheckTest : public testing::Test
{
protected:
    static constexpr auto pause = 400ms;
    const QString account = u"getAccountInfo"_s;
    const QString list = u"getSignaturesForAddress"_s;
    const QString details = u"getTransaction"_s;
    const QByteArray nobody = R"({"result": {"value": null}})";
    const RecipientWarning neverUsed{u"never used on this network"_s, false};

    RecipientCheckTest()
    {
        http.answer(account, nobody);
        http.answer(list, R"({"result": []})");
    }

    static RecipientQuestion about(const Address &recipient)
    {
        return {recipient, own, SolNetwork::Devnet, QUrl(u"http://devnet.test/?k"_s)};
    }

    void type(const std::optional<RecipientQuestion> &question)
    {
        check->check(question);
        queue.advance(pause);
    }

    void open() { check = std::make_unique<RecipientCheck>(services, known); }

    HandDrivenQueue queue;
    FakeHttpClient http{queue};
    corvane::platform::SodiumSigningKeys keys;
    KnownAddresses known;
    RecipientCheckServices services{queue, http, keys};
    std::unique_ptr<RecipientCheck> check = std::make_unique<RecipientCheck>(services, known);
};

TEST_F(RecipientCheckTest, AsksWhenTypingPausesAndOnlyThen)
{
    check->check(about(friendly));
    queue.advance(pause - 1ms);
    check->check(about(stranger));
    queue.advance(pause - 1ms);
    check->check(about(stranger));
    EXPECT_EQ(http.count(account), 0);
    EXPECT_EQ(check->lamports(), std::nullopt);
    queue.advance(1ms);
    ASSERT_EQ(http.count(account), 1);
    const auto &request = http.requests().front();
    EXPECT_EQ(request.url, QUrl(u"http://devnet.test/?k"_s));
    EXPECT_EQ(json(request.body)["params"_L1],
              json("[\"" + stranger.text().toLatin1() +
                   R"(", {"encoding": "base64", "commitment": "confirmed",
                          "dataSlice": {"offset": 165, "length": 1}}])"));
    EXPECT_EQ(check->warning(), neverUsed);
    EXPECT_EQ(check->lamports(), Lamports(0));

    check->check(std::nullopt);
    EXPECT_EQ(check->warning(), std::nullopt);
    EXPECT_EQ(check->lamports(), std::nullopt);
    check->check(about(friendly));
    check.reset();
    queue.advance(pause);
    EXPECT_EQ(http.count(account), 1);
}

TEST_F(RecipientCheckTest, TellsWhatNeedsNoAnswerAtOnceAndIsSilentAboutFailures)
{
    check->check(about(own));
    EXPECT_EQ(check->warning(), (RecipientWarning{u"your own address"_s, false}));
    check->check(about(address(QString::fromLatin1(systemProgram))));
    EXPECT_TRUE(check->warning() && check->warning()->severe);

    const Address wallet{keys.publicKey(keys.makeSeed()).value()};
    http.answer(account, HttpError::TimedOut);
    type(about(wallet));
    EXPECT_EQ(check->warning(), std::nullopt);
    EXPECT_EQ(check->lamports(), std::nullopt);
}

TEST_F(RecipientCheckTest, DropsAnswersToEarlierQuestions)
{
    const Address wallet{keys.publicKey(keys.makeSeed()).value()};
    const RecipientQuestion asked = about(wallet);
    RecipientQuestion elsewhere = asked;
    elsewhere.endpoint = QUrl(u"http://other.test"_s);
    RecipientQuestion onMainnet = asked;
    onMainnet.network = SolNetwork::Mainnet;
    http.hold(account);
    for (const std::optional<RecipientQuestion> &next :
         {std::optional(about(friendly)), std::optional(elsewhere), std::optional(onMainnet),
          std::optional<RecipientQuestion>()}) {
        type(asked);
        check->check(next);
        http.release(account, nobody);
        EXPECT_EQ(check->lamports(), std::nullopt);
    }
    type(asked);
    check.reset();
    http.release(account, nobody);
    EXPECT_EQ(http.count(list), 0);
}

TEST_F(RecipientCheckTest, ReadsTheSendersTransactionsOnceAndKnowsDoubles)
{
    QByteArray entries;
    for (int i = 0; i < 12; ++i) {
        entries += R"({"signature": "s"},)";
    }
    http.answer(list, R"({"result": [)" + entries + "null]}");
    http.answer(details, transaction({{own, true, 9, 3}, {friendly, false, 0, 5}}, own, own));
    type(about(alike));
    EXPECT_EQ(check->warning(),
              recipientWarning({.recipient = alike,
                                .own = own,
                                .isKey = true,
                                .account = {},
                                .lookAlike = KnownAddress{friendly, Dealing::Paid}}));
    EXPECT_EQ(http.count(details), 10);
    open();
    type(about(stranger));
    EXPECT_EQ(http.count(list), 1);
    RecipientQuestion onMainnet = about(stranger);
    onMainnet.network = SolNetwork::Mainnet;
    type(onMainnet);
    EXPECT_EQ(http.count(list), 2);
}

TEST_F(RecipientCheckTest, StopsReadingTransactionsThatNobodyWaitsFor)
{
    http.answer(list, R"({"result": [{"signature": "s"}, {"signature": "t"}]})");
    http.hold(details);
    type(about(stranger));
    type(about(alike));
    EXPECT_EQ(http.count(details), 1) << "another recipient asked again";
    check->check(std::nullopt);
    http.release(details, R"({"result": null})");
    queue.drain();
    EXPECT_EQ(http.count(details), 1);
    type(about(stranger));
    EXPECT_EQ(http.count(list), 2) << "an interrupted reading did not start again";
    http.release(details, HttpError::Unreachable);
    queue.drain();
    EXPECT_EQ(http.count(details), 2) << "went on after a failure";

    http.answer(list, HttpError::Unreachable);
    RecipientQuestion onMainnet = about(stranger);
    onMainnet.network = SolNetwork::Mainnet;
    type(onMainnet);
    onMainnet.recipient = friendly;
    type(onMainnet);
    EXPECT_EQ(http.count(list), 4) << "a list that never came was taken for read";

    RecipientQuestion watching = about(friendly);
    watching.sender.reset();
    type(watching);
    EXPECT_EQ(http.count(list), 4);
}

} // namespace
