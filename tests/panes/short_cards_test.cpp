// The cards with short models: balance, receive, backup, setup.

#include "panes/backup_card_model.h"
#include "panes/balance_card_model.h"
#include "panes/own_address.h"
#include "panes/presence_notice.h"
#include "panes/qr.h"
#include "panes/receive_pane_model.h"
#include "panes/setup_card_model.h"
#include "tests/panes/card_fixture.h"

#include <QSignalSpy>

namespace corvane::panes {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using island::IslandPane;
using tests::addressA;
using tests::Table;

using BalanceCardModelTest = tests::OneCardTest<&CardModels::balanceCard>;

TEST_F(BalanceCardModelTest, WordsTheFigures)
{
    settings.setString(u"corvane.address"_s, addressA);
    http.answer(tests::binance, "{}");
    http.answer(tests::coinbase, "{}");
    for (const auto &[price, lamports, usdc, dollars, coins, holdings, solPrice] :
         Table<QByteArray, QByteArray, QByteArray, QString, QString, QString, QString>{
             {R"({"solana": {"usd": 150.25}})", "8200000000", "2", u"$1,234.05"_s, u"8.2000 SOL"_s,
              u"≈ 8,200 QUIB  ·  USDC 2.00"_s, u"SOL $150.25"_s},
             {"{}", "8200000000", "0", u"—"_s, u"8.2000 SOL"_s, u"≈ 8,200 QUIB  ·  USDC 0.00"_s,
              u"SOL —"_s},
             {R"({"solana": {"usd": 99.999}})", "\"none\"", "\"none\"", u"—"_s, u"—"_s,
              u"≈ —  ·  USDC 0.00"_s, u"SOL $100.00"_s},
         }) {
        SCOPED_TRACE(solPrice.toStdString());
        settings.setBoolean(u"corvane.displayUSD"_s, true);
        http.answer(tests::coinGecko, price);
        http.answer(tests::balance, R"({"result": {"value": )" + lamports + "}}");
        http.answer(tests::tokens, tokenReply(usdc));
        launchIsland();
        openCard();
        EXPECT_EQ(m_card->headline(), dollars);
        EXPECT_EQ(m_card->announcement(),
                  dollars == u"—" ? QString() : u"TOTAL BALANCE "_s + dollars);
        EXPECT_EQ(m_card->holdings(), holdings);
        EXPECT_EQ(m_card->solPrice(), solPrice);
        m_card->toggleHeadline();
        EXPECT_EQ(m_card->headline(), coins);
        EXPECT_EQ(settings.boolean(u"corvane.displayUSD"_s), false);

        QSignalSpy changed(m_card.get(), &BalanceCardModel::figuresChanged);
        m_card->toggleAmounts();
        EXPECT_GT(changed.count(), 0);
        EXPECT_EQ(m_card->headline(), coins == u"—" ? coins : u"•••••"_s);
        m_card->toggleHeadline();
        EXPECT_EQ(m_card->headline(), dollars == u"—" ? dollars : u"•••••"_s);
        EXPECT_FALSE(m_card->announcement().contains(u'$'));
        EXPECT_EQ(m_card->holdings(),
                  coins == u"—" ? u"≈ —  ·  USDC •••••"_s : u"≈ •••••  ·  USDC •••••"_s);
        EXPECT_EQ(m_card->solPrice(), solPrice) << "everybody's";
        m_card->toggleAmounts();
        EXPECT_EQ(m_card->headline(), dollars);
    }
}

TEST_F(BalanceCardModelTest, TellsTheAgeOfFiguresThatAreOutOfDate)
{
    settings.setString(u"corvane.address"_s, addressA);
    launchIsland();
    queue.drain();
    const auto others = queue.pendingTimers();
    openCard();
    queue.advance(10min);
    EXPECT_EQ(m_card->asOf(), QString()) << "all is well";
    EXPECT_EQ(queue.pendingTimers(), others + 1);
    for (const QString &name :
         {tests::coinGecko, tests::binance, tests::coinbase, tests::balance, tests::tokens}) {
        http.answer(name, platform::HttpError::Unreachable);
    }
    queue.advance(72s - 1ns);
    EXPECT_EQ(m_card->asOf(), QString());
    QSignalSpy changed(m_card.get(), &BalanceCardModel::asOfChanged);
    queue.advance(1ns);
    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(m_card->asOf(), u"AS OF "_s + QDateTime::fromSecsSinceEpoch(600).toString(u"HH:mm"));
    EXPECT_EQ(queue.pendingTimers(), others) << "nothing is left to wait for";
    openCard();
    EXPECT_NE(m_card->asOf(), QString());
    http.answer(tests::balance, R"({"result": {"value": 1}})");
    queue.advance(30s);
    EXPECT_EQ(m_card->asOf(), QString());
    m_card.reset();
    EXPECT_EQ(queue.pendingTimers(), others);
    http.answer(tests::balance, platform::HttpError::Unreachable);
    launchIsland();
    openCard();
    queue.advance(10min);
    EXPECT_EQ(m_card->asOf(), QString()) << "nothing was ever fetched";
}

TEST_F(BalanceCardModelTest, SignsTheChange)
{
    launchIsland();
    openCard();
    for (const auto &[change, text, isFall] : Table<QByteArray, QString, bool>{
             {"2.345", u"+2.35%"_s, false},
             {"0", u"+0.00%"_s, false},
             {"-0.001", u"-0.00%"_s, true},
             {"null", QString(), false},
         }) {
        http.answer(tests::coinGecko,
                    R"({"solana": {"usd": 150, "usd_24h_change": )" + change + "}}");
        model->refresh();
        queue.drain();
        EXPECT_EQ(m_card->changeText(), text);
        EXPECT_EQ(m_card->changeIsFall(), isFall) << change.constData();
    }
    // It is shown before any other figure arrives.
    http.answer(tests::coinGecko, R"({"solana": {"usd": 150, "usd_24h_change": 7}})");
    model->refreshPrice();
    queue.drain();
    EXPECT_EQ(m_card->changeText(), u"+7.00%"_s);
}

TEST_F(BalanceCardModelTest, OffersWhatTheWalletCanDo)
{
    launchIsland();
    openCard();
    EXPECT_FALSE(m_card->hasAddress());
    EXPECT_FALSE(m_card->canSend());
    QSignalSpy figures(m_card.get(), &BalanceCardModel::figuresChanged);
    model->setAddress(u' ' + addressA);
    EXPECT_TRUE(m_card->hasAddress());
    EXPECT_FALSE(m_card->canSend()) << "an address that is only watched";
    EXPECT_GT(figures.count(), 0);
    model->setAddress(addressA.chopped(1) + u'0');
    EXPECT_FALSE(m_card->hasAddress());
    model->setNetwork(core::SolNetwork::Devnet);
    EXPECT_EQ(m_card->networkName(), u"DEVNET"_s);
    for (const auto &[act, pane] : Table<void (BalanceCardModel::*)(), IslandPane>{
             {&BalanceCardModel::openSettings, IslandPane::Settings},
             {&BalanceCardModel::receive, IslandPane::Receive},
             {&BalanceCardModel::send, IslandPane::Send},
         }) {
        (m_card.get()->*act)();
        EXPECT_EQ(m_island->pane(), pane);
    }
}

TEST_F(BalanceCardModelTest, SaysForAMomentThatTheAddressWasCopied)
{
    launchIsland();
    model->setAddress(addressA);
    openCard();
    m_card->copyAddress();
    EXPECT_EQ(m_card->chipText(), u"COPIED"_s);
    queue.advance(1199ms);
    m_card->copyAddress();
    EXPECT_EQ(m_card->chipText(), u"COPIED"_s);
    // The timer of the first click ends it.
    queue.advance(1ms);
    EXPECT_EQ(m_card->chipText(), u"EPjF…Dt1v"_s);
}

using OwnAddressTest = tests::OneCardTest<&CardModels::ownAddress>;

TEST_F(OwnAddressTest, SaysWhatIsNotThisWallets)
{
    launchIsland();
    model->setAddress(addressA);
    openCard();
    EXPECT_EQ(m_card->warning(), QString()) << "without a key, every address is only watched";
    EXPECT_EQ(m_card->offer(), QString());

    const QString own = launchWithKey();
    openCard();
    const QString warning = u"watching another address — not this wallet's key"_s;
    const QString offer = u"this wallet's own address: "_s + own;
    for (const auto &[address, warns, offers] : Table<QString, bool, bool>{
             {own, false, false},
             {u' ' + own + u'\t', false, false},
             {addressA, true, false},
             {own + u'\n', false, true},
             {{}, false, true},
         }) {
        SCOPED_TRACE(address.toStdString());
        QSignalSpy changed(m_card.get(), &OwnAddress::changed);
        model->setAddress(address);
        EXPECT_EQ(changed.count(), 1);
        EXPECT_EQ(m_card->warning(), warns ? warning : QString());
        EXPECT_EQ(m_card->offer(), offers ? offer : QString());
        m_card->watch();
        EXPECT_EQ(m_card->warning() + m_card->offer(), QString());
        EXPECT_EQ(settings.string(u"corvane.address"_s), own);
    }
    model->setAddress({});
    QSignalSpy changed(m_card.get(), &OwnAddress::changed);
    Q_EMIT model->signingPubkeyChanged();
    EXPECT_EQ(changed.count(), 1) << "the keychain may correct which key it is";
    removeKey();
    EXPECT_EQ(m_card->offer(), QString());
    m_card->watch();
    EXPECT_EQ(model->address(), QString());
}

using PresenceNoticeTest = tests::OneCardTest<&CardModels::presenceNotice>;

TEST_F(PresenceNoticeTest, SaysWhatIsMissingToReadTheKey)
{
    using platform::KeychainProtection;
    using platform::PresenceMeans;
    const QString start =
        u"nobody can ask for your password: start a polkit agent, then try again"_s;
    const QString install = u"nobody can ask for your password: polkit or corvane's polkit action "
                            u"is missing — install them, then try again"_s;
    const auto attempt = [this] {
        model->backupSecret();
        settle();
    };
    for (const auto &[available, lacking, protection, text] :
         Table<bool, PresenceMeans, std::optional<KeychainProtection>, QString>{
             {true, {}, KeychainProtection::UserPresence, {}},
             {false, PresenceMeans::NoAgent, KeychainProtection::UserPresence, start},
             {false, PresenceMeans::NotInstalled, KeychainProtection::UserPresence, install},
             {false, PresenceMeans::NoAgent, KeychainProtection::None, {}},
             {false, PresenceMeans::NoAgent, std::nullopt, {}},
         }) {
        launchLocked();
        m_authenticator.available = available;
        m_authenticator.lacking = lacking;
        keychain.tells = protection;
        openCard();
        EXPECT_EQ(m_card->keyText(), QString()) << "not known yet";
        settle();
        EXPECT_EQ(m_card->keyText(), text);
        EXPECT_EQ(m_authenticator.reasons + keychain.prompts, QStringList()) << "no prompt";
    }

    // An attempt may be what finds out, and may be what succeeds.
    m_authenticator.available = true;
    keychain.tells = KeychainProtection::UserPresence;
    openCard();
    keychain.refuses = true;
    for (const auto &[isThere, text] : Table<bool, QString>{{false, start}, {true, {}}}) {
        m_authenticator.available = isThere;
        attempt();
        EXPECT_EQ(m_card->keyText(), text);
    }
    m_authenticator.available = false;
    attempt();
    EXPECT_EQ(m_card->keyText(), start);
    keychain.refuses = false;
    QSignalSpy changed(m_card.get(), &PresenceNotice::changed);
    attempt();
    EXPECT_EQ(m_card->keyText(), QString()) << "it is in memory now";
    EXPECT_GT(changed.count(), 0);

    // The keychain may correct which key it is, and a late answer find nobody.
    launchLocked();
    openCard();
    settle();
    EXPECT_EQ(m_card->keyText(), start);
    keychain.tells = KeychainProtection::None;
    Q_EMIT model->signingPubkeyChanged();
    settle();
    EXPECT_EQ(m_card->keyText(), QString());
    Q_EMIT model->signingPubkeyChanged();
    m_card.reset();
    settle();
}

TEST_F(PresenceNoticeTest, SaysThatANewKeyWillLieUnprotected)
{
    launchIsland();
    for (const auto &[available, lacking, text] : Table<bool, platform::PresenceMeans, QString>{
             {true, {}, {}},
             {false, platform::PresenceMeans::NoAgent,
              u"nobody can ask for your password, so the key will lie unprotected in the keychain: "
              u"to protect it, start a polkit agent and then corvane again"_s},
             {false, platform::PresenceMeans::NotInstalled,
              u"nobody can ask for your password, so the key will lie unprotected in the keychain: "
              u"to protect it, install polkit and corvane's polkit action"_s},
         }) {
        m_authenticator.available = available;
        m_authenticator.lacking = lacking;
        openCard();
        settle();
        EXPECT_EQ(m_card->newKeyText(), text);
        EXPECT_EQ(m_card->keyText(), QString());
    }
}

using ReceivePaneModelTest = tests::OneCardTest<&CardModels::receivePane>;

TEST_F(ReceivePaneModelTest, ShowsAndCopiesTheTrimmedAddress)
{
    launchIsland();
    openCard();
    for (const auto &[address, shown] : Table<QString, QString>{
             {{}, {}},
             {addressA + u'\n', {}},
             {u"\t"_s + addressA + u' ', addressA},
         }) {
        model->setAddress(address);
        EXPECT_EQ(m_card->address(), shown);
        EXPECT_EQ(m_card->hasAddress(), !shown.isEmpty());
    }
    model->setAddress(addressA);
    m_card->copyAddress();
    EXPECT_EQ(m_clipboard.texts, QStringList{addressA});
    EXPECT_EQ(m_card->copyLabel(), u"COPIED"_s);
    m_island->setPane(IslandPane::Receive);
    m_card->close();
    EXPECT_EQ(m_island->pane(), IslandPane::Balance);
}

TEST(QR, IsDrawnInWholePixelsWithAQuietZone)
{
    const auto code = QR::modules(addressA);
    ASSERT_TRUE(code);
    // 44 bytes at level M need 33 modules, and one more on each side.
    EXPECT_EQ(code->size(), QSize(35, 35));
    EXPECT_EQ(code->pixelColor(0, 17), Qt::white);
    EXPECT_EQ(code->pixelColor(1, 1), Qt::black);
    for (const double scale : {1.0, 1.25, 2.0}) {
        const auto image = QR::image(addressA, 144, scale);
        ASSERT_TRUE(image);
        EXPECT_EQ(image->deviceIndependentSize(), QSizeF(144, 144));
        for (int y = 0; y < image->height(); ++y) {
            for (int x = 0; x < image->width(); ++x) {
                const QColor colour = image->pixelColor(x, y);
                ASSERT_TRUE(colour == Qt::black || colour == Qt::white);
            }
        }
        for (int module = 0; module < 35 * 35; ++module) {
            const QPointF middle(module % 35 + 0.5, module / 35 + 0.5);
            ASSERT_EQ(
                image->pixelColor((middle * image->width() / 35 - QPointF(0.5, 0.5)).toPoint()),
                code->pixelColor(module % 35, module / 35));
        }
    }
    EXPECT_FALSE(QR::modules({}));
    EXPECT_FALSE(QR::image(QString(3000, u'x'), 144));
}

using BackupCardModelTest = tests::OneCardTest<&CardModels::backupCard>;

TEST_F(BackupCardModelTest, ShowsAndCopiesExactlyTheKeyUntilItIsSaved)
{
    launchIsland();
    const QString text = tests::textOf(createKey());
    openCard();
    EXPECT_EQ(m_card->backup()->view(), text);
    m_card->copy();
    EXPECT_EQ(m_card->copyLabel(), u"COPIED"_s);
    m_card->copyPart(2, 5);
    EXPECT_EQ(m_clipboard.secrets, (QStringList{text, text.sliced(2, 5)}));
    EXPECT_EQ(m_clipboard.texts, QStringList());

    m_card->finish();
    EXPECT_FALSE(model->hasPendingBackup());
    EXPECT_TRUE(model->hasSigningKey());
    // The card that is fading out still shows it, but no longer copies it.
    EXPECT_EQ(m_card->backup()->view(), text);
    m_card->copy();
    EXPECT_EQ(m_clipboard.secrets.last(), QString());
}

TEST_F(BackupCardModelTest, TakesTheCopyBack)
{
    launchIsland();
    createKey();
    openCard();
    EXPECT_EQ(m_card->copyNote(), QString());
    m_card->copy();
    EXPECT_EQ(m_card->copyNote(), u"cleared in 60 s"_s);
    queue.advance(59s);
    EXPECT_EQ(m_card->copyNote(), QString());
    // The time starts again with each copy.
    m_card->copyPart(0, 5);
    queue.advance(59s);
    EXPECT_EQ(m_clipboard.cleared, 0);
    queue.advance(1s);
    EXPECT_EQ(m_clipboard.cleared, 1);
    queue.advance(120s);
    EXPECT_EQ(m_clipboard.cleared, 1);

    m_card->copy();
    model->createWallet();
    settle();
    EXPECT_EQ(m_clipboard.cleared, 1) << "there still is a key";
    removeKey();
    EXPECT_EQ(m_clipboard.cleared, 2);
    m_card->copy();
    m_card.reset();
    EXPECT_EQ(m_clipboard.cleared, 3);
    openCard();
    m_card.reset();
    queue.advance(120s);
    EXPECT_EQ(m_clipboard.cleared, 3) << "nothing was copied, and no timer remains";
    openCard();
    m_card->copy();
    queue.advance(60s);
    m_card.reset();
    EXPECT_EQ(m_clipboard.cleared, 4) << "cleared once for one copy";
}

class SetupCardModelTest : public tests::OneCardTest<&CardModels::setupCard>
{
protected:
    SetupCardModelTest()
    {
        launchIsland();
        openCard();
    }

    const QString m_refused = u"keychain refused the key (error -25293) — try again, and tell me "
                              u"this code if it persists"_s;
};

TEST_F(SetupCardModelTest, CreatesAKeyThatWaitsForItsBackup)
{
    refuseNextKey();
    m_card->createWallet();
    settle();
    EXPECT_EQ(m_card->errorMsg(), m_refused);
    EXPECT_FALSE(model->hasSigningKey());
    // The keychain is slow: pressing again does not create another key.
    m_card->createWallet();
    m_card->createWallet();
    EXPECT_EQ(background.held(), 1U);
    QList<look::Animation> seen;
    QObject::connect(model.get(), &core::WalletModel::pendingBackupChanged, m_card.get(),
                     [&] { seen.append(m_island->transaction()->current()); });
    settle();
    EXPECT_EQ(seen, QList{look::Animation::spring(0.42, 0.88)});
    EXPECT_EQ(m_card->errorMsg(), QString());
    EXPECT_TRUE(model->hasSigningKey());
    EXPECT_TRUE(model->hasPendingBackup());
}

TEST_F(SetupCardModelTest, ImportsWhatIsMoreThanBlanksAndForgetsItWithItsFace)
{
    const QString bad =
        u"that key doesn't decode — paste the base58 secret key or a JSON byte array"_s;
    for (const auto &[text, canImport, error] : Table<QString, bool, QString>{
             {u"  \t\u00A0"_s, false, {}},
             // Line breaks are not blanks: the button is enabled and shows the error.
             {u"\n"_s, true, bad},
             {addressA.chopped(1) + u'0', true, bad},
             {u' ' + addressA + u'\n', true, {}},
         }) {
        SCOPED_TRACE(text.toStdString());
        m_card->showImport();
        EXPECT_TRUE(m_card->importText()->isEmpty());
        m_card->importText()->insert(0, text);
        EXPECT_EQ(m_card->canImport(), canImport);
        m_card->importKey();
        settle();
        EXPECT_EQ(m_card->errorMsg(), error);
        const bool imported = canImport && error.isEmpty();
        EXPECT_EQ(model->hasSigningKey(), imported);
        // After an import the field looks the same, but holds the key no more.
        EXPECT_EQ(m_card->importText()->view(), imported ? QString(text.size(), u'*') : text);
        m_card->back();
        EXPECT_EQ(m_card->errorMsg(), QString());
        EXPECT_FALSE(m_card->isImporting());
    }
    EXPECT_FALSE(model->hasPendingBackup());
}

} // namespace
} // namespace corvane::panes
