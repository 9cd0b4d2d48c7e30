#include "panes/send_pane_model.h"
#include "tests/panes/card_fixture.h"

#include <QSignalSpy>

namespace corvane::panes {
namespace {

using namespace Qt::StringLiterals;
using island::IslandPane;
using platform::Sound;

const QString blockhash = u"getLatestBlockhash"_s;
const QString transaction = u"sendTransaction"_s;
const QString signature =
    u"5VERv8NMvzbJMEkV8xnrLkEaWRtSz9CosKDYjCJjBRnbJLgp8uirBgmQpjKhoR4tjF3ZpRzrFmBV6UjKdiSZkQUW"_s;

TEST(ParseAmount, ReadsDecimalNumbersOnly)
{
    struct Case
    {
        QString text;
        std::optional<double> value;
    };
    const Case cases[] = {
        {u"1.5"_s, 1.5},
        {u"1,5"_s, 1.5},
        {u",5"_s, 0.5},
        {u"2."_s, 2.0},
        {u"007"_s, 7.0},
        {u"+1"_s, 1.0},
        {u"-1"_s, -1.0},
        {u"1e-3"_s, 0.001},
        {u"1E2"_s, 100.0},
        {u"0.0000"_s, 0.0},
        {{}, std::nullopt},
        {u" 1.5"_s, std::nullopt},
        {u"1.5 "_s, std::nullopt},
        {u"1\n"_s, std::nullopt},
        {u"1,000.5"_s, std::nullopt},
        {u"1.5.0"_s, std::nullopt},
        {u"."_s, std::nullopt},
        {u"-"_s, std::nullopt},
        {u"+"_s, std::nullopt},
        {u"+-1"_s, std::nullopt},
        {u"++1"_s, std::nullopt},
        {u"1e"_s, std::nullopt},
        {u"1e999"_s, std::nullopt},
        {u"0x10"_s, std::nullopt},
        {u"inf"_s, std::nullopt},
        {u"nan"_s, std::nullopt},
        {u"one"_s, std::nullopt},
        {u"1 SOL"_s, std::nullopt},
        {u"１"_s, std::nullopt},
    };
    for (const Case &expected : cases) {
        SCOPED_TRACE(expected.text.toStdString());
        EXPECT_EQ(parseAmount(expected.text), expected.value);
    }
}

class SendPaneModelTest : public tests::CardTest
{
protected:
    /// A wallet with a key and a balance in lamports, a JSON value.
    void openPane(const QByteArray &lamports = "1500000000")
    {
        http.answer(tests::balance, R"({"result": {"value": )" + lamports + "}}");
        http.answer(blockhash, R"({"result": {"value": {"blockhash": ")" +
                                   tests::addressB.toLatin1() + R"("}}})");
        http.answer(transaction, R"({"result": ")" + signature.toLatin1() + R"("})");
        launchWithKey();
        open(m_pane);
    }

    void type(const QString &recipient, const QString &amount)
    {
        m_pane.setRecipient(recipient);
        m_pane.setAmount(amount);
    }

    SendPaneModel m_pane;
};

TEST_F(SendPaneModelTest, IsReadyForAGoodRecipientAndAnAmountThatIsThere)
{
    struct Case
    {
        const char *name;
        QByteArray lamports;
        QString recipient;
        QString amount;
        bool recipientIsWrong;
        bool amountIsWrong;
        bool ready;
    };
    const QString good = tests::addressB;
    const QString bad = good.chopped(1) + u'0';
    const QByteArray unknown = "\"none\"";
    const Case cases[] = {
        {"nothing typed", "1500000000", {}, {}, false, false, false},
        {"good", "1500000000", good, u"1"_s, false, false, true},
        {"blanks around the recipient", "1500000000", u" "_s + good + u'\t', u"1"_s, false, false,
         true},
        {"line break after the recipient", "1500000000", good + u'\n', u"1"_s, true, false, false},
        {"bad recipient", "1500000000", bad, u"1"_s, true, false, false},
        {"blank recipient", "1500000000", u" "_s, u"1"_s, true, false, false},
        {"no amount", "1500000000", good, {}, false, false, false},
        {"amount with a comma", "1500000000", good, u"1,5"_s, false, false, true},
        {"amount with a blank", "1500000000", good, u" 1.5"_s, false, true, false},
        {"nothing", "1500000000", good, u"0"_s, false, true, false},
        {"less than nothing", "1500000000", good, u"-1"_s, false, true, false},
        {"all there is", "1500000000", good, u"1.5"_s, false, false, true},
        {"a little more", "1500000000", good, u"1.500000001"_s, false, true, false},
        {"unknown balance", unknown, good, u"1000000"_s, false, false, true},
        {"unknown balance, nothing", unknown, good, u"0"_s, false, true, false},
    };
    for (const Case &expected : cases) {
        SCOPED_TRACE(expected.name);
        openPane(expected.lamports);
        type(expected.recipient, expected.amount);
        EXPECT_EQ(m_pane.recipientIsWrong(), expected.recipientIsWrong);
        EXPECT_EQ(m_pane.amountIsWrong(), expected.amountIsWrong);
        EXPECT_EQ(m_pane.isReady(), expected.ready);
        close();
    }
}

TEST_F(SendPaneModelTest, MaxLeavesTheFee)
{
    struct Case
    {
        QByteArray lamports;
        QString amount;
        bool ready;
    };
    const Case cases[] = {
        {"1500000000", u"1.4999"_s, true}, {"50000", u"0.0000"_s, false},
        {"0", u"0.0000"_s, false},         {"123456789012345", u"123456.7889"_s, true},
        {"\"none\"", u"0.5"_s, true},
    };
    for (const Case &expected : cases) {
        SCOPED_TRACE(expected.lamports.constData());
        openPane(expected.lamports);
        EXPECT_EQ(m_pane.hasMax(), expected.lamports != "\"none\"");
        type(tests::addressB, u"0.5"_s);
        m_pane.max();
        EXPECT_EQ(m_pane.amount(), expected.amount);
        EXPECT_EQ(m_pane.isReady(), expected.ready);
        close();
    }
}

TEST_F(SendPaneModelTest, TellsWhatTheAmountIsWorth)
{
    struct Case
    {
        QString amount;
        QString withPrice;
        QString withoutPrice;
    };
    const Case cases[] = {
        {u"0.0015"_s, u"≈ 2 QUIB  ·  $0.24"_s, u"≈ 2 QUIB"_s},
        {u"0,0014"_s, u"≈ 1 QUIB  ·  $0.22"_s, u"≈ 1 QUIB"_s},
        {u"12.5"_s, u"≈ 12,500 QUIB  ·  $2,000.00"_s, u"≈ 12,500 QUIB"_s},
        {u"0"_s, {}, {}},
        {u"-1"_s, {}, {}},
        {u"x"_s, {}, {}},
        {{}, {}, {}},
    };
    for (const bool priced : {true, false}) {
        SCOPED_TRACE(priced);
        http.answer(tests::coinGecko, QByteArray(priced ? R"({"solana": {"usd": 160}})" : "{}"));
        http.answer(tests::binance, "{}");
        http.answer(tests::coinbase, "{}");
        openPane();
        for (const Case &expected : cases) {
            SCOPED_TRACE(expected.amount.toStdString());
            m_pane.setAmount(expected.amount);
            EXPECT_EQ(m_pane.equivalence(), priced ? expected.withPrice : expected.withoutPrice);
        }
        close();
    }
}

TEST_F(SendPaneModelTest, SendsOnceAndTellsOfIt)
{
    openPane();
    http.hold(transaction);
    type(u" "_s + tests::addressB, u"0,25"_s);
    EXPECT_EQ(m_pane.sendLabel(), u"SEND"_s);
    m_pane.send();
    EXPECT_TRUE(m_pane.isSending());
    EXPECT_FALSE(m_pane.isReady());
    EXPECT_EQ(m_pane.sendLabel(), u"SENDING"_s);
    EXPECT_EQ(m_sounds.played, QList{Sound::Pop});
    queue.drain();
    EXPECT_TRUE(m_pane.isSending());

    QSignalSpy changed(&m_pane, &SendPaneModel::changed);
    http.release(transaction, R"({"result": ")" + signature.toLatin1() + R"("})");
    queue.drain();
    EXPECT_GT(changed.count(), 0);
    EXPECT_FALSE(m_pane.isSending());
    EXPECT_TRUE(m_pane.isSent());
    EXPECT_EQ(m_pane.shortSignature(), u"5VERv8NM…diSZkQUW"_s);
    EXPECT_EQ(m_pane.recipient(), QString());
    EXPECT_EQ(m_pane.amount(), QString());
    EXPECT_FALSE(m_pane.isReady());
    EXPECT_EQ(m_pane.burst(), 1);
    EXPECT_EQ(m_pane.errorMsg(), QString());
    EXPECT_EQ(m_sounds.played, (QList{Sound::Pop, Sound::Glass}));
    EXPECT_EQ(http.count(transaction), 1);

    ASSERT_TRUE(m_pane.hasLink());
    m_pane.openLink();
    EXPECT_EQ(m_links.opened, QList{QUrl(endpoints.explorer + u"/tx/"_s + signature)});

    // The next one takes the line away.
    type(tests::addressB, u"0.1"_s);
    m_pane.send();
    EXPECT_FALSE(m_pane.isSent());
    EXPECT_FALSE(m_pane.hasLink());
    queue.drain();
    EXPECT_EQ(http.count(transaction), 2);
}

TEST_F(SendPaneModelTest, SaysWhyItFailedAndKeepsWhatWasTyped)
{
    openPane();
    http.answer(transaction, R"({"error": {"code": -32002, "message": "no"}})");
    type(tests::addressB, u"0.25"_s);
    m_pane.send();
    settle();
    EXPECT_EQ(m_pane.errorMsg(), u"send failed — check balance covers amount + fee"_s);
    EXPECT_FALSE(m_pane.isSending());
    EXPECT_FALSE(m_pane.isSent());
    EXPECT_EQ(m_pane.recipient(), tests::addressB);
    EXPECT_EQ(m_pane.amount(), u"0.25"_s);
    EXPECT_TRUE(m_pane.isReady());
    EXPECT_EQ(m_pane.burst(), 0);
    EXPECT_EQ(m_sounds.played, (QList{Sound::Pop, Sound::Basso}));
    EXPECT_EQ(http.count(transaction), 1);

    http.answer(transaction, R"({"result": ")" + signature.toLatin1() + R"("})");
    m_pane.send();
    EXPECT_EQ(m_pane.errorMsg(), QString());
    settle();
    EXPECT_TRUE(m_pane.isSent());
}

TEST_F(SendPaneModelTest, SaysThatTheUserRefused)
{
    openPane();
    close();
    launchIsland();
    open(m_pane);
    keychain.refuses = true;
    type(tests::addressB, u"0.25"_s);
    m_pane.send();
    EXPECT_EQ(m_sounds.played, QList{Sound::Pop});
    settle();
    EXPECT_EQ(m_pane.errorMsg(), u"touch id cancelled — nothing was sent"_s);
    EXPECT_EQ(keychain.prompts, QStringList{u"send 0.2500 SOL"_s});
    EXPECT_EQ(http.count(transaction), 0);
}

TEST_F(SendPaneModelTest, DoesNothingWithAnAmountThatIsNone)
{
    openPane();
    type(tests::addressB, u"1 SOL"_s);
    m_pane.send();
    EXPECT_FALSE(m_pane.isSending());
    EXPECT_EQ(m_sounds.played, QList<Sound>());
}

TEST_F(SendPaneModelTest, ATransferOutlivesItsPane)
{
    openPane();
    {
        SendPaneModel pane;
        open(pane);
        pane.setRecipient(tests::addressB);
        pane.setAmount(u"0.25"_s);
        pane.send();
    }
    settle();
    EXPECT_EQ(http.count(transaction), 1);
    EXPECT_EQ(m_sounds.played, (QList{Sound::Pop, Sound::Glass}));
}

TEST_F(SendPaneModelTest, WithoutAKeyItLeadsToTheSetup)
{
    launchIsland();
    m_island->setPane(IslandPane::Send);
    open(m_pane);
    EXPECT_FALSE(m_pane.hasKey());
    m_pane.close();
    EXPECT_EQ(m_island->pane(), IslandPane::Balance);
    QSignalSpy changed(&m_pane, &SendPaneModel::changed);
    ASSERT_TRUE(std::holds_alternative<QString>(model->importSigningKey(tests::addressA)));
    EXPECT_TRUE(m_pane.hasKey());
    EXPECT_GT(changed.count(), 0);
}

} // namespace
} // namespace corvane::panes
