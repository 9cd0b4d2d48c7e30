// Every card loads in all its states and with the longest possible texts, without clipped or
// overlapping texts. Run at two scale factors and with the fallback fonts.

#include "look/paint/shape_items.h"
#include "look/secrets/secret_field.h"
#include "panes/send_pane_model.h"
#include "tests/look/view_layout.h"
#include "tests/look/view_stage.h"
#include "tests/panes/card_fixture.h"

#include <QAccessible>

#include <algorithm>
#include <utility>

namespace corvane::panes {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

class CardViewsTest : public tests::CardTest, public testing::WithParamInterface<bool>
{
protected:
    /// Layouts are looked at where they come to rest.
    CardViewsTest() { m_stage.theme().setAppearance({.reducedMotion = true}); }
    ~CardViewsTest() override { m_stage.clear(); }

    /// Shows the card of this type with its model, and models of its lines, as the island does.
    template <typename Card, typename... Lines>
    QQuickItem &show(const QString &type, Card *card, std::pair<QString, Lines *>... lines)
    {
        QQuickItem &view = m_stage.show(u"Panes/"_s + type,
                                        {{u"card"_s, QVariant::fromValue(card)},
                                         {u"width"_s, 620},
                                         {lines.first, QVariant::fromValue(lines.second)}...},
                                        {620, 600});
        card->setParent(&view);
        (lines.second->setParent(&view), ...);
        return view;
    }

    [[nodiscard]] std::pair<QString, OwnAddress *> ownAddress()
    {
        return {u"own"_s, cards().ownAddress(nullptr)};
    }

    [[nodiscard]] QQuickItem *control(const QString &name) const
    {
        return tests::control(m_stage.view(), name);
    }

    [[nodiscard]] std::pair<QString, PresenceNotice *> presence()
    {
        return {u"presence"_s, cards().presenceNotice(nullptr)};
    }

    /// The longest text for a key that cannot be read, or that will lie unprotected.
    void expectMissingPresence(const QString &begin)
    {
        m_authenticator.available = false;
        m_authenticator.lacking = platform::PresenceMeans::NotInstalled;
        keychain.tells = platform::KeychainProtection::UserPresence;
        Q_EMIT model->sessionSecretChanged();
        settle();
        expectClean();
        EXPECT_TRUE(QTest::qWaitFor([&] {
            return std::ranges::any_of(tests::texts(m_stage.view()),
                                       [&](const QString &text) { return text.startsWith(begin); });
        })) << begin.toStdString();
    }

    void press(const QString &name)
    {
        QQuickItem *item = control(name);
        ASSERT_NE(item, nullptr) << name.toStdString();
        ASSERT_TRUE(QMetaObject::invokeMethod(item, "triggered"));
    }

    /// Expects that these texts are visible, that no text is clipped, outside of the card, or
    /// overlapped, and that the island's panel has room for the card.
    void expectClean(const QStringList &texts = {}, bool mayBeCut = false)
    {
        QStringList seen;
        EXPECT_TRUE(QTest::qWaitFor([&] {
            seen = tests::texts(m_stage.view());
            return !seen.isEmpty() && std::ranges::all_of(texts, [&seen](const QString &text) {
                return seen.contains(text);
            });
        })) << texts.join(u'|').toStdString();
        const double height = m_stage.view().implicitHeight();
        tests::expectCleanLayout(m_stage.view(), {0, 0, 620, height}, mayBeCut);
        EXPECT_LE(height, m_island->stageRect().height() - m_island->topBandHeight() -
                              island::IslandController::shadowPad);
    }

    tests::ViewStage m_stage{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(Fonts, CardViewsTest, testing::Bool(),
                         [](const auto &run) { return run.param ? "Bundled" : "Fallback"; });

TEST_P(CardViewsTest, Balance)
{
    settings.setString(u"corvane.address"_s, tests::addressA);
    launchWithKey();
    m_stage.theme().setAppearance({});
    const QQuickItem &card = show(u"BalanceCard"_s, cards().balanceCard(nullptr), ownAddress());
    const QQuickItem &chart = *card.findChild<look::SparklineShape *>();
    EXPECT_LT(chart.parentItem()->width(), chart.width()) << "it is uncovered gradually";
    expectClean({u"TOTAL BALANCE"_s});
    for (const QString &name :
         {tests::coinGecko, tests::binance, tests::coinbase, tests::balance, tests::tokens}) {
        http.answer(name, platform::HttpError::Unreachable);
    }
    queue.advance(2min);
    expectClean({cards().balanceCard(&m_stage.view())->asOf()});
    const QString address = cards().balanceCard(&m_stage.view())->chipText();
    ASSERT_NE(control(address), nullptr);
    const double width = control(address)->width();
    press(address);
    expectClean({u"COPIED"_s});
    EXPECT_EQ(control(u"COPIED"_s)->width(), width);
    // Figures never overlap, whatever their length.
    http.answer(tests::tokens, tokenReply("1e60"));
    ASSERT_TRUE(finish(model->refreshBalance()));
    expectClean({cards().balanceCard(&m_stage.view())->holdings()}, true);
    const double plain = card.implicitHeight();
    for (const bool hides : {true, false}) {
        QTest::keyClick(&m_stage.window(), Qt::Key_H);
        EXPECT_EQ(model->hidesAmounts(), hides);
        EXPECT_EQ(control(u"•••••"_s) != nullptr, hides) << "what a screen reader says";
        EXPECT_EQ(card.implicitHeight(), plain);
    }
}

TEST_P(CardViewsTest, AnotherAddressIsNeverShownAsOnesOwn)
{
    const QString own = launchWithKey();
    const auto showCard = [this](const QString &type) {
        if (type == u"BalanceCard") {
            show(type, cards().balanceCard(nullptr), ownAddress());
        } else if (type == u"ReceivePane") {
            show(type, cards().receivePane(nullptr), ownAddress());
        } else {
            show(type, cards().settingsCard(nullptr), ownAddress(), presence());
        }
    };
    const QString warning = u"watching another address — not this wallet's key"_s;
    for (const auto &[type, warns] : tests::Table<QString, bool>{
             {u"BalanceCard"_s, true}, {u"ReceivePane"_s, true}, {u"SettingsCard"_s, false}}) {
        SCOPED_TRACE(type.toStdString());
        showCard(type);
        expectClean();
        const double plain = m_stage.view().implicitHeight();
        model->setAddress(tests::addressA);
        if (warns) {
            expectClean({warning});
            press(u"BACK TO YOUR ADDRESS"_s);
        } else {
            EXPECT_FALSE(tests::texts(m_stage.view()).contains(warning));
        }
        model->setAddress(u"damaged"_s);
        expectClean({u"this wallet's own address: "_s + own});
        EXPECT_EQ(control(u"BACK TO YOUR ADDRESS"_s), nullptr);
        control(u"USE IT"_s)->forceActiveFocus();
        QTest::keyClick(&m_stage.window(), Qt::Key_Space);
        const QQuickItem *focused = m_stage.window().activeFocusItem();
        ASSERT_NE(focused, nullptr);
        EXPECT_TRUE(focused->isVisible() && focused->activeFocusOnTab())
            << "the button has left, the focus has not";
        EXPECT_EQ(model->address(), own);
        expectClean();
        EXPECT_EQ(m_stage.view().implicitHeight(), plain);
    }
}

TEST_P(CardViewsTest, Setup)
{
    launchIsland();
    QQuickItem &card = show(u"SetupCard"_s, cards().setupCard(nullptr), presence());
    expectClean({u"YOUR WALLET, IN THE NOTCH"_s});
    const double plain = card.implicitHeight();
    refuseNextKey();
    press(u"CREATE WALLET"_s);
    settle();
    expectClean();
    EXPECT_GT(card.implicitHeight(), plain);

    press(u"IMPORT"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return control(u"CREATE WALLET"_s) == nullptr; }));
    expectClean({u"secret key"_s});
    EXPECT_FALSE(control(u"IMPORT"_s)->isEnabled());
    auto *secret = card.findChild<look::SecretField *>();
    ASSERT_NE(secret, nullptr);
    secret->secret()->insert(0, u"hidden");
    EXPECT_TRUE(control(u"IMPORT"_s)->isEnabled());
    QAccessibleInterface *field = QAccessible::queryAccessibleInterface(secret);
    ASSERT_NE(field, nullptr);
    EXPECT_TRUE(field->state().passwordEdit);
    EXPECT_EQ(field->text(QAccessible::Name), u"secret key"_s);
    const QAccessibleInterface *around = field->parent();
    ASSERT_NE(around, nullptr);
    EXPECT_GE(around->indexOfChild(field), 0);
    field->setText(QAccessible::Value, u"dictated"_s);
    EXPECT_EQ(secret->secret()->view(), u"dictated"_s);
    EXPECT_EQ(field->text(QAccessible::Value), QString());
    press(u"IMPORT"_s);
    expectClean({u"that key doesn't decode — paste the base58 secret key or a JSON byte array"_s});
    expectMissingPresence(u"nobody can ask for your password, so the key"_s);
}

TEST_P(CardViewsTest, SayWhatIsMissingToReadTheKey)
{
    launchIsland();
    createKey();
    launchIsland();
    model->setAddress(u"damaged"_s);
    show(u"SettingsCard"_s, cards().settingsCard(nullptr), ownAddress(), presence());
    press(u"REMOVE"_s);
    expectMissingPresence(u"nobody can ask"_s);
    expectClean({u"not backed up yet — press BACKUP and save the key"_s});
    model->setAddress(tests::addressA);
    show(u"SendPane"_s, cards().sendPane(nullptr), presence());
    expectMissingPresence(u"nobody can ask"_s);
}

TEST_P(CardViewsTest, Backup)
{
    launchWithKey();
    // The widest possible key.
    model->setPendingBackup(platform::SecretBytes::copyOf(std::vector<std::uint8_t>(88, 'W')));
    show(u"BackupCard"_s, cards().backupCard(nullptr));
    expectClean();
    press(u"COPY"_s);
    expectClean({u"COPIED"_s, u"cleared in 60 s"_s});
}

TEST_P(CardViewsTest, Settings)
{
    launchIsland();
    QQuickItem &card =
        show(u"SettingsCard"_s, cards().settingsCard(nullptr), ownAddress(), presence());
    expectClean({u"paste your quib address"_s});
    EXPECT_EQ(control(u"BACKUP"_s), nullptr);
    EXPECT_EQ(control(u"REMOVE"_s), nullptr);
    const double plain = card.implicitHeight();
    model->setCustomRPC(u"https://rpc.helius.test"_s);
    finish(model->importSigningKey(tests::addressA));
    model->setAddress(u"not an address"_s);
    model->setNetwork(core::SolNetwork::Devnet);
    press(u"REMOVE"_s);
    expectClean({u"not a valid solana address"_s, u"REALLY REMOVE? (backup first!)"_s});
    EXPECT_GT(card.implicitHeight(), plain);
    model->setCustomRPC(u"rpc"_s);
    expectClean({cards().settingsCard(&card)->customRPCError()});
    model->setAddress(tests::addressA);
    http.answer(tests::balance, platform::HttpError::Unreachable);
    http.answer(tests::tokens, platform::HttpError::Unreachable);
    queue.drain();
    expectClean({cards().settingsCard(&card)->rpcSilence()});
}

TEST_P(CardViewsTest, Receive)
{
    launchIsland();
    show(u"ReceivePane"_s, cards().receivePane(nullptr), ownAddress());
    expectClean({u"set your wallet address in settings first"_s});
    EXPECT_EQ(control(u"COPY ADDRESS"_s), nullptr);
    EXPECT_FALSE(tests::texts(m_stage.view()).contains(u"corvane::panes::QRCode"_s));
    model->setAddress(tests::addressA);
    expectClean({tests::addressA, u"corvane::panes::QRCode"_s});
    press(u"COPY ADDRESS"_s);
    expectClean();
}

TEST_P(CardViewsTest, Send)
{
    http.answer(tests::coinGecko, R"({"solana": {"usd": 150.25}})");
    http.answer(tests::balance, R"({"result": {"value": 999999999000000000}})");
    http.answer(u"getLatestBlockhash"_s, tests::blockhashReply(tests::addressA));
    http.answer(u"sendTransaction"_s, R"({"error": {"code": 1, "message": "no"}})");
    launchIsland();
    show(u"SendPane"_s, cards().sendPane(nullptr), presence());
    expectClean({u"no wallet yet — create or import one first"_s});
    EXPECT_EQ(control(u"SEND"_s), nullptr);
    m_stage.clear();

    launchWithKey();
    SendPaneModel *pane = cards().sendPane(nullptr);
    QQuickItem &card = show(u"SendPane"_s, pane, presence());
    expectClean();
    const double plain = card.implicitHeight();
    EXPECT_FALSE(control(u"SEND"_s)->isEnabled());
    pane->setRecipient(u"not an address"_s);
    pane->setAmount(u"0"_s);
    QStringList described;
    for (QQuickItem *item : card.findChildren<QQuickItem *>()) {
        QAccessibleInterface *said = QAccessible::queryAccessibleInterface(item);
        if (said != nullptr && said->role() == QAccessible::EditableText) {
            described.append(said->text(QAccessible::Description));
        }
    }
    EXPECT_EQ(described, (QStringList{pane->recipientRefusal(), pane->amountRefusal()}));
    expectClean(described);
    pane->setRecipient(tests::addressB);
    pane->setAmount(u"0.12345678"_s);
    expectClean({u"≈ 123 QUIB  ·  $18.55"_s});
    press(u"MAX"_s);
    expectClean();
    press(u"SEND"_s);
    EXPECT_FALSE(control(u"SENDING"_s)->isEnabled());
    expectClean();
    queue.drain();
    expectClean({u"send failed — check balance covers amount + fee"_s});
    EXPECT_GT(card.implicitHeight(), plain);

    http.answer(u"sendTransaction"_s, R"({"result": ")" + QByteArray(88, 'W') + R"("})");
    press(u"SEND"_s);
    queue.drain();
    expectClean({u"SENT ✓"_s, pane->sentSubject(), u"VIEW ON SOLSCAN"_s});
    m_links.fails = true;
    press(u"VIEW ON SOLSCAN"_s);
    expectClean({pane->linkError()});
    EXPECT_GT(card.implicitHeight(), plain);
}

} // namespace
} // namespace corvane::panes
