#include "panes/balance_card_model.h"
#include "tests/panes/card_fixture.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace corvane::panes {
namespace {

using namespace std::chrono_literals;
using tests::addressA;

class BalanceCardModelTest : public tests::CardTest
{
protected:
    void openCard() { open(m_card); }

    BalanceCardModel m_card;
};

TEST_F(BalanceCardModelTest, WordsTheFigures)
{
    struct Case
    {
        const char *name;
        QByteArray price;
        QByteArray lamports;
        QByteArray usdc;
        QString dollars;
        QString coins;
        QString holdings;
        QString solPrice;
    };
    const Case cases[] = {
        {"all known", R"({"solana": {"usd": 150.25}})", "8200000000", "2",
         QStringLiteral("$1,234.05"), QStringLiteral("8.2000 SOL"),
         QStringLiteral("≈ 8,200 QUIB  ·  USDC 2.00"), QStringLiteral("SOL $150.25")},
        {"no price", "{}", "8200000000", "0", QStringLiteral("—"), QStringLiteral("8.2000 SOL"),
         QStringLiteral("≈ 8,200 QUIB  ·  USDC 0.00"), QStringLiteral("SOL —")},
        {"no balance", R"({"solana": {"usd": 99.999}})", "\"none\"", "\"none\"",
         QStringLiteral("—"), QStringLiteral("—"), QStringLiteral("≈ —  ·  USDC 0.00"),
         QStringLiteral("SOL $100.00")},
    };
    for (const Case &expected : cases) {
        SCOPED_TRACE(expected.name);
        settings.setString(QStringLiteral("corvane.address"), addressA);
        settings.setBoolean(QStringLiteral("corvane.displayUSD"), true);
        http.answer(tests::coinGecko, expected.price);
        http.answer(tests::binance, "{}");
        http.answer(tests::coinbase, "{}");
        http.answer(tests::balance, R"({"result": {"value": )" + expected.lamports + "}}");
        http.answer(tests::tokens, tokenReply(expected.usdc));
        openCard();
        EXPECT_EQ(m_card.headline(), expected.dollars);
        EXPECT_EQ(m_card.holdings(), expected.holdings);
        EXPECT_EQ(m_card.solPrice(), expected.solPrice);
        m_card.toggleHeadline();
        EXPECT_EQ(m_card.headline(), expected.coins);
        EXPECT_EQ(settings.boolean(QStringLiteral("corvane.displayUSD")), false);
        close();
    }
}

TEST_F(BalanceCardModelTest, SignsTheChange)
{
    struct Case
    {
        QByteArray change;
        QString text;
        bool isFall;
    };
    const Case cases[] = {
        {"2.345", QStringLiteral("+2.35%"), false},
        {"-3.2", QStringLiteral("-3.20%"), true},
        {"0", QStringLiteral("+0.00%"), false},
        {"-0.001", QStringLiteral("-0.00%"), true},
        {"null", QString(), false},
    };
    openCard();
    for (const Case &expected : cases) {
        SCOPED_TRACE(expected.change.constData());
        http.answer(tests::coinGecko,
                    R"({"solana": {"usd": 150, "usd_24h_change": )" + expected.change + "}}");
        model->refresh();
        queue.drain();
        EXPECT_EQ(m_card.changeText(), expected.text);
        EXPECT_EQ(m_card.changeIsFall(), expected.isFall);
    }
}

TEST_F(BalanceCardModelTest, OffersWhatTheWalletCanDo)
{
    openCard();
    EXPECT_FALSE(m_card.hasAddress());
    EXPECT_FALSE(m_card.canSend());
    QSignalSpy figures(&m_card, &BalanceCardModel::figuresChanged);
    model->setAddress(u' ' + addressA);
    EXPECT_TRUE(m_card.hasAddress());
    EXPECT_GT(figures.count(), 0);
    model->setAddress(addressA.chopped(1) + u'0');
    EXPECT_FALSE(m_card.hasAddress());
    EXPECT_EQ(m_card.networkName(), QStringLiteral("MAINNET"));
    model->setNetwork(core::SolNetwork::Devnet);
    EXPECT_EQ(m_card.networkName(), QStringLiteral("DEVNET"));
    EXPECT_FALSE(m_card.isMainnet());

    m_card.openSettings();
    EXPECT_EQ(m_island->pane(), island::IslandPane::Settings);
    m_card.receive();
    EXPECT_EQ(m_island->pane(), island::IslandPane::Receive);
    m_card.send();
    EXPECT_EQ(m_island->pane(), island::IslandPane::Send);
}

TEST_F(BalanceCardModelTest, SaysForAMomentThatTheAddressWasCopied)
{
    settings.setString(QStringLiteral("corvane.address"), addressA);
    openCard();
    const QString address = QStringLiteral("EPjF…Dt1v");
    EXPECT_EQ(m_card.chipText(), address);
    m_card.copyAddress();
    EXPECT_EQ(m_clipboard.texts, QStringList{addressA});
    EXPECT_EQ(m_card.chipText(), QStringLiteral("COPIED"));
    queue.advance(1s);
    m_card.copyAddress();
    EXPECT_TRUE(m_card.isCopied());
    // The first click's reset ends it.
    queue.advance(200ms);
    EXPECT_EQ(m_card.chipText(), address);
}

} // namespace
} // namespace corvane::panes
