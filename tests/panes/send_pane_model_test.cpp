#include "keys/base58.h"
#include "panes/send_pane_model.h"
#include "tests/panes/card_fixture.h"

#include <QSignalSpy>

namespace corvane::panes {
namespace {

using namespace Qt::StringLiterals;
using island::IslandPane;
using platform::Sound;
using namespace std::chrono_literals;
using tests::addressA;
using tests::Table;

const QString transaction = u"sendTransaction"_s;
const QString accountInfo = u"getAccountInfo"_s;
const QString good = tests::addressB;
const QString signature =
    u"5VERv8NMvzbJMEkV8xnrLkEaWRtSz9CosKDYjCJjBRnbJLgp8uirBgmQpjKhoR4tjF3ZpRzrFmBV6UjKdiSZkQUW"_s;
const QByteArray accepted = R"({"result": ")" + signature.toLatin1() + R"("})";
const QByteArray refused = R"({"error": {"code": -32002, "message": "no"}})";
const QByteArray unknown = "\"none\"";
const QByteArray confirmed =
    R"({"result": {"value": [{"err": null, "confirmationStatus": "confirmed"}]}})";
const QString statuses = u"getSignatureStatuses"_s;
const QString failed = u"send failed — check balance covers amount + fee"_s;

class SendPaneModelTest : public tests::OneCardTest<&CardModels::sendPane>
{
protected:
    /// Opens the pane of a wallet with a key and a balance (in lamports, as a JSON value).
    void openPane(const QByteArray &lamports = "1500000000")
    {
        http.answer(tests::balance, R"({"result": {"value": )" + lamports + "}}");
        http.answer(u"getLatestBlockhash"_s, tests::blockhashReply(good));
        http.answer(transaction, accepted);
        launchWithKey();
        openCard();
    }

    void press() { m_card->send(m_card->recipient(), m_card->amount()); }

    void type(const QString &recipient, const QString &amount)
    {
        m_card->setRecipient(recipient);
        m_card->setAmount(amount);
    }

    void typeAndPress()
    {
        type(good, u"0.25"_s);
        press();
    }
};

TEST_F(SendPaneModelTest, IsReadyForAGoodRecipientAndAnAmountThatIsThere)
{
    const QByteArray known = "1500000000";
    const QString noAddress = u"not a solana address"_s;
    const QString notPositive = u"the amount must be more than 0"_s;
    for (const auto &[lamports, recipient, amount, recipientRefusal, amountRefusal, ready] :
         Table<QByteArray, QString, QString, QString, QString, bool>{
             {known, {}, {}, {}, {}, false},
             {known, u" "_s + good + u'\t', u"1,5"_s, {}, {}, true},
             {known, good + u'\n', u"1"_s, noAddress, {}, false},
             {known, good.chopped(1) + u'0', u"1"_s, noAddress, {}, false},
             {known, good, {}, {}, {}, false},
             {known, good, u"0"_s, {}, notPositive, false},
             {known, good, u"-1"_s, {}, notPositive, false},
             {known, good, u" 1"_s, {}, u"write the amount as 0.5"_s, false},
             {known, good, u"1.500000001"_s, {}, u"more than the 1.5000 SOL you have"_s, false},
             {known, good, u"1e20"_s, {}, u"more than the 1.5000 SOL you have"_s, false},
             {unknown, good, u"1e20"_s, {}, u"more than there is on the network"_s, false},
             {unknown, good, u"1000000"_s, {}, {}, true},
         }) {
        SCOPED_TRACE((recipient + u'|' + amount).toStdString());
        openPane(lamports);
        type(recipient, amount);
        EXPECT_EQ(m_card->recipientRefusal(), recipientRefusal);
        EXPECT_EQ(m_card->amountRefusal(), amountRefusal);
        EXPECT_TRUE(amountRefusal.isEmpty() || m_card->outlook().isEmpty()) << "one line says it";
        EXPECT_EQ(m_card->isReady(), ready);
    }
}

TEST_F(SendPaneModelTest, MaxLeavesTheFee)
{
    for (const auto &[lamports, amount, ready] : Table<QByteArray, QString, bool>{
             {"1500000000", u"1.4999"_s, true},
             {"50000", u"0.0000"_s, false},
             {"123456789012345", u"123456.7889"_s, true},
             {unknown, u"0.5"_s, true},
         }) {
        SCOPED_TRACE(lamports.constData());
        openPane(lamports);
        EXPECT_EQ(m_card->hasMax(), lamports != unknown);
        type(good, u"0.5"_s);
        m_card->max();
        EXPECT_EQ(m_card->amount(), amount);
        EXPECT_EQ(m_card->isReady(), ready);
    }
}

TEST_F(SendPaneModelTest, TellsWhatTheAmountIsWorth)
{
    http.answer(tests::binance, "{}");
    http.answer(tests::coinbase, "{}");
    for (const bool priced : {true, false}) {
        http.answer(tests::coinGecko, QByteArray(priced ? R"({"solana": {"usd": 160}})" : "{}"));
        openPane();
        for (const auto &[amount, coins, dollars] : Table<QString, QString, QString>{
                 {u"0.0015"_s, u"≈ 2 QUIB"_s, u"  ·  $0.24"_s},
                 {u"0,0014"_s, u"≈ 1 QUIB"_s, u"  ·  $0.22"_s},
                 {u"12.5"_s, u"≈ 12,500 QUIB"_s, u"  ·  $2,000.00"_s},
                 {u"0"_s, {}, {}},
                 {u"x"_s, {}, {}},
             }) {
            m_card->setAmount(amount);
            EXPECT_EQ(m_card->equivalence(), priced ? coins + dollars : coins);
        }
        model->setHidesAmounts(true);
        m_card->setAmount(u"1.0000000004"_s);
        EXPECT_EQ(m_card->equivalence(), priced ? u"≈ •••••  ·  •••••  ·  rounded to 1 SOL"_s
                                                : u"≈ •••••  ·  rounded to 1 SOL"_s);
        model->setHidesAmounts(false);
    }
}

TEST_F(SendPaneModelTest, SendsOnceAndTellsOfIt)
{
    openPane();
    http.hold(transaction);
    type(u" "_s + good, u"0,25"_s);
    press();
    queue.drain();
    EXPECT_TRUE(m_card->isSending());
    EXPECT_FALSE(m_card->isReady());
    EXPECT_EQ(m_sounds.played, QList{Sound::Pop});

    QSignalSpy changed(m_card.get(), &SendPaneModel::changed);
    http.release(transaction, accepted);
    queue.drain();
    EXPECT_GT(changed.count(), 0);
    EXPECT_FALSE(m_card->isSending());
    EXPECT_TRUE(m_card->isSent());
    EXPECT_EQ(m_card->shortSignature(), u"5VERv8NM…diSZkQUW"_s);
    EXPECT_EQ(m_card->recipient() + m_card->amount() + m_card->errorMsg(), QString());
    m_card->setAmount(u"0.1"_s);
    EXPECT_FALSE(m_card->isReady()) << "the recipient is gone";
    EXPECT_EQ(m_card->burst(), 1);
    EXPECT_EQ(m_sounds.played, (QList{Sound::Pop, Sound::Glass}));
    EXPECT_EQ(http.count(transaction), 1);
    ASSERT_TRUE(m_card->hasLink());
    m_card->openLink();
    EXPECT_EQ(m_links.opened, QList{QUrl(endpoints.explorer + u"/tx/"_s + signature)});
    EXPECT_EQ(m_card->linkError(), QString());
    m_links.fails = true;
    m_card->openLink();
    EXPECT_EQ(m_card->linkError(), u"nothing on this desktop opens web links"_s);
    m_links.fails = false;
    m_card->openLink();
    EXPECT_EQ(m_card->linkError(), QString());

    // Somebody who wants to be taken for the recipient.
    QString lookAlike = good;
    lookAlike[20] = u'j';
    type(lookAlike, u"0.1"_s);
    EXPECT_TRUE(m_card->recipientNoteIsSevere());
    EXPECT_TRUE(m_card->recipientNote().contains(u"paid"_s));

    // The next attempt clears the lines of the last transfer.
    m_links.fails = true;
    m_card->openLink();
    type(good, u"0.1"_s);
    press();
    EXPECT_FALSE(m_card->isSent());
    EXPECT_FALSE(m_card->hasLink());
    EXPECT_EQ(m_card->linkError(), QString());
    queue.drain();
}

TEST_F(SendPaneModelTest, SaysWhyItFailedAndKeepsWhatWasTyped)
{
    openPane();
    http.answer(transaction, refused);
    typeAndPress();
    settle();
    EXPECT_EQ(m_card->errorMsg(), failed);
    EXPECT_FALSE(m_card->isSent());
    EXPECT_EQ(m_card->recipient(), good);
    EXPECT_EQ(m_card->amount(), u"0.25"_s);
    EXPECT_TRUE(m_card->isReady());
    EXPECT_EQ(m_card->burst(), 0);
    EXPECT_EQ(m_sounds.played, (QList{Sound::Pop, Sound::Basso}));
    EXPECT_EQ(http.count(transaction), 1);

    // With a locked key, as after a restart; the user refuses.
    launchIsland();
    http.forgetRequests();
    openCard();
    keychain.refuses = true;
    typeAndPress();
    settle();
    EXPECT_EQ(m_card->errorMsg(), u"touch id cancelled — nothing was sent"_s);
    EXPECT_EQ(keychain.prompts, QStringList{u"send 0.2500 SOL"_s});
    EXPECT_EQ(http.count(transaction), 0);

    // The next attempt clears the error line.
    press();
    EXPECT_EQ(m_card->errorMsg(), QString());
    settle();
}

TEST_F(SendPaneModelTest, DoesNothingWithoutAnAmountOrAKey)
{
    openPane();
    type(good, u"1 SOL"_s);
    press();
    EXPECT_FALSE(m_card->isSending());
    EXPECT_EQ(m_sounds.played, QList<Sound>());
    QSignalSpy changed(m_card.get(), &SendPaneModel::changed);
    removeKey();
    EXPECT_FALSE(m_card->hasKey());
    EXPECT_GT(changed.count(), 0);
    m_island->setPane(IslandPane::Send);
    m_card->close();
    EXPECT_EQ(m_island->pane(), IslandPane::Balance);
}

TEST_F(SendPaneModelTest, TheWalletsTransferIsShownByWhateverPaneThereIs)
{
    const auto reopen = [this] {
        m_card.reset();
        openCard();
        EXPECT_EQ(m_card->recipient() + m_card->amount(), QString());
    };
    for (const bool isAccepted : {true, false}) {
        settings.values.clear();
        openPane();
        http.hold(transaction);
        typeAndPress();
        queue.drain();
        reopen();
        EXPECT_TRUE(m_card->isSending());
        typeAndPress();
        EXPECT_FALSE(m_card->isReady());
        EXPECT_EQ(m_sounds.played.last(), Sound::Pop);
        m_card.reset();
        http.release(transaction, isAccepted ? accepted : refused);
        settle();
        EXPECT_EQ(http.count(transaction), 1);
        EXPECT_EQ(m_sounds.played.last(), isAccepted ? Sound::Glass : Sound::Basso);
        // Nobody has seen the result yet.
        queue.advance(2s);
        reopen();
        EXPECT_EQ(m_card->isSent(), isAccepted);
        EXPECT_EQ(m_card->errorMsg().isEmpty(), isAccepted);
        EXPECT_EQ(m_card->burst(), 0);
        reopen();
        EXPECT_FALSE(m_card->isSent());
        EXPECT_EQ(m_card->errorMsg(), QString());
        EXPECT_EQ(m_card->fate().isEmpty(), !isAccepted) << "another signature was returned";
        http.forgetRequests();
    }
}

TEST_F(SendPaneModelTest, TellsTheFateOfATransferThatGotNoAnswer)
{
    const QString height = u"getBlockHeight"_s;
    const QByteArray none = R"({"result": {"value": [null]}})";
    for (const auto &[wentThrough, recipient, amount, isCleared] :
         Table<bool, QString, QString, bool>{
             {true, good, u"0.250"_s, true},
             {true, good, u"0.3"_s, false},
             {true, addressA, u"0.25"_s, false},
             {false, good, u"0.25"_s, false},
         }) {
        openPane();
        http.answer(height, R"({"result": 1000})");
        http.answer(statuses, none);
        http.answer(transaction, platform::HttpError::TimedOut);
        typeAndPress();
        settle();
        EXPECT_EQ(m_card->errorMsg(), failed);
        EXPECT_EQ(m_card->fate(), u"checking whether it went through…"_s);
        EXPECT_EQ(m_card->fateSubject(), u"0.25 SOL to 4zMM…ncDU"_s);
        EXPECT_FALSE(m_card->fateIsLoss());
        // Another pane tells it too.
        m_card.reset();
        openCard();
        EXPECT_EQ(m_card->fate(), u"checking whether it went through…"_s);
        type(recipient, amount);

        queue.advance(2s);
        http.answer(height, R"({"result": 2000})");
        http.answer(statuses, wentThrough ? confirmed : none);
        queue.advance(2s);
        EXPECT_EQ(m_card->fate(), wentThrough ? u"it went through"_s : u"it did not go through"_s);
        EXPECT_EQ(m_card->fateIsLoss(), !wentThrough);
        EXPECT_EQ(m_card->isSent(), wentThrough);
        EXPECT_EQ(m_card->sentSubject(), wentThrough ? m_card->fateSubject() : QString());
        EXPECT_EQ(m_card->fateIsOfSent(), wentThrough);
        EXPECT_EQ(m_card->hasLink(), wentThrough);
        // What is paid must not be paid again by a press that comes too late.
        EXPECT_EQ(m_card->recipient().isEmpty(), isCleared);
        EXPECT_EQ(m_card->isReady(), !isCleared);
        type(good, u"0.25"_s);
        queue.advance(2s);
        EXPECT_TRUE(m_card->isReady());
        model->setNetwork(core::SolNetwork::Devnet);
        EXPECT_EQ(m_card->fateSubject(), u"0.25 SOL to 4zMM…ncDU on MAINNET"_s);
        model->setHidesAmounts(true);
        EXPECT_EQ(m_card->fateSubject(), u"••••• to 4zMM…ncDU on MAINNET"_s);
        model->setHidesAmounts(false);
        model->setNetwork(core::SolNetwork::Mainnet);
        m_card.reset();
        openCard();
        EXPECT_EQ(m_card->fate(), QString()) << "it was told";
    }
}

TEST_F(SendPaneModelTest, AConfirmationDisturbsNobody)
{
    for (const bool isSeen : {true, false}) {
        openPane();
        http.hold(transaction);
        typeAndPress();
        queue.drain();
        const QByteArray bytes = QByteArray::fromBase64(
            QJsonDocument::fromJson(http.requests().back().body)[u"params"_s][0]
                .toString()
                .toLatin1());
        const auto *start = reinterpret_cast<const std::uint8_t *>(bytes.constData()) + 1;
        const QByteArray signed64 = keys::Base58::encode({start, 64}).toLatin1();
        if (!isSeen) {
            m_card.reset();
        }
        http.release(transaction, R"({"result": ")" + signed64 + R"("})");
        settle();
        if (isSeen) {
            EXPECT_EQ(m_card->sentSubject(), u"0.25 SOL to 4zMM…ncDU"_s);
            openCard();
            type(good, u"0.25"_s);
        }
        http.answer(statuses, confirmed);
        queue.advance(2s);
        if (isSeen) {
            EXPECT_FALSE(m_card->isSent()) << "the pane is afresh";
            EXPECT_EQ(m_card->amount(), u"0.25"_s) << "the same again is another payment";
        } else {
            openCard();
            EXPECT_TRUE(m_card->isSent()) << "nobody has seen it";
            EXPECT_EQ(m_card->fate(), u"it went through"_s);
        }
    }
}

TEST_F(SendPaneModelTest, SendsOnlyWhatTheCardShows)
{
    openPane();
    type(good, u"0.25"_s);
    for (const auto &[recipient, amount] :
         Table<QString, QString>{{addressA, u"0.25"_s}, {good, u"0.2"_s}, {good, u"0.250"_s}}) {
        m_card->send(recipient, amount);
        settle();
        EXPECT_EQ(m_card->errorMsg(), u"the fields were still changing — nothing was sent"_s);
        EXPECT_EQ(http.count(transaction), 0);
    }
    EXPECT_EQ(m_sounds.played, QList<Sound>());
    press();
    settle();
    EXPECT_EQ(http.count(transaction), 1);
    EXPECT_EQ(m_card->errorMsg(), QString());
}

TEST_F(SendPaneModelTest, KnowsTheRecipientAndWhatWouldWork)
{
    openPane();
    EXPECT_EQ(m_card->outlook(), u"1.499995 SOL available · fee 0.000005"_s);
    model->setHidesAmounts(true);
    EXPECT_EQ(m_card->outlook(), u"••••• available · fee 0.000005"_s);
    model->setHidesAmounts(false);
    EXPECT_EQ(m_card->groupedRecipient(), QString());
    http.answer(accountInfo, R"({"result": {"value": null}})");
    type(u" "_s + good, u"0.0001"_s);
    EXPECT_EQ(m_card->groupedRecipient(),
              u"4zMM C9sr t5Ri 5X14 GAgX haHi i3Gn PAEE RYPJ gZJD ncDU"_s);
    EXPECT_EQ(m_card->outlook(), u"leaves 1.499895 SOL · fee 0.000005"_s) << "not known yet";
    QSignalSpy changed(m_card.get(), &SendPaneModel::changed);
    queue.advance(1s);
    EXPECT_GT(changed.count(), 0);
    EXPECT_EQ(m_card->recipientNote(), u"never used on this network"_s);
    EXPECT_FALSE(m_card->recipientNoteIsSevere());
    EXPECT_TRUE(m_card->outlookIsRefusal());
    EXPECT_EQ(m_card->offers(), QStringList{u"SEND 0.00089088"_s});
    m_card->acceptOffer(1);
    EXPECT_EQ(m_card->amount(), u"0.0001"_s);
    m_card->acceptOffer(0);
    EXPECT_EQ(m_card->amount(), u"0.00089088"_s);
    EXPECT_FALSE(m_card->outlookIsRefusal());
    EXPECT_TRUE(m_card->isReady());

    // A warning refuses nothing.
    m_card->max();
    EXPECT_TRUE(m_card->outlookIsRefusal());
    EXPECT_TRUE(m_card->isReady());
    m_card->acceptOffer(0);
    EXPECT_EQ(m_card->amount(), u"1.499995"_s);
    EXPECT_EQ(http.count(u"getMinimumBalanceForRentExemption"_s), 1);
    // To itself, nothing but the fee leaves.
    type(*model->signingPubkey(), u"1.4999"_s);
    EXPECT_EQ(m_card->outlook(), u"leaves 1.499995 SOL · fee 0.000005"_s);

    // The balance is another's.
    EXPECT_EQ(m_card->payerWarning(), QString());
    const QString own = *model->signingPubkey();
    model->setAddress(addressA);
    queue.drain();
    EXPECT_EQ(m_card->outlook(), QString());
    m_card->setAmount(u"2"_s);
    EXPECT_EQ(m_card->amountRefusal(), u"more than the 1.5000 SOL of the address you watch"_s);
    EXPECT_EQ(m_card->payerWarning(), u"paid by your own key "_s + own.first(4) + u'…' +
                                          own.last(4) + u" — not by the address you watch"_s);
}

TEST_F(SendPaneModelTest, SaysWhatIsRoundedAndRefusesWhatDoesNotFit)
{
    openPane(unknown);
    type(good, {});
    for (const auto &[amount, note, ready] : Table<QString, QString, bool>{
             {u"0.0000000004"_s, u"  ·  rounded to 0 SOL"_s, true},
             {u"1.0000000005"_s, u"  ·  rounded to 1.000000001 SOL"_s, true},
             {u"1.000000001"_s, {}, true},
             {u"18000000000"_s, {}, true},
             {u"18446744073.709552"_s, {}, false},
             {u"1e20"_s, {}, false},
         }) {
        m_card->setAmount(amount);
        EXPECT_EQ(m_card->isReady(), ready) << amount.toStdString();
        EXPECT_TRUE(m_card->equivalence().endsWith(note.isEmpty() ? u".00"_s : note) ||
                    note.isEmpty());
        EXPECT_EQ(m_card->equivalence().contains(u"rounded"), !note.isEmpty());
    }
    press();
    settle();
    EXPECT_EQ(http.count(transaction), 0);
}

TEST_F(SendPaneModelTest, AReturnedSignatureStaysOnItsLine)
{
    openPane();
    http.answer(transaction, R"({"result": "A\n\tB\u202e\u0000C D\u0301\u0301EFGHIJKLMNOP/?#"})");
    typeAndPress();
    settle();
    EXPECT_EQ(m_card->shortSignature(), u"ABCDEFGH…LMNOP/?#"_s);
    m_card->openLink();
    EXPECT_FALSE(m_links.opened[0].hasFragment());
    EXPECT_FALSE(m_links.opened[0].hasQuery());
}

} // namespace
} // namespace corvane::panes
