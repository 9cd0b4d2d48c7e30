#include "panes/setup_card_model.h"
#include "tests/panes/card_fixture.h"

namespace corvane::panes {
namespace {

const QString badKey =
    QStringLiteral("that key doesn't decode — paste the base58 secret key or a JSON byte array");
const QString refused = QStringLiteral(
    "keychain refused the key (error -25293) — try again, and tell me this code if it persists");

/// 32 bytes in Base58, good enough for a seed.
const QString seed = tests::addressA;

class SetupCardModelTest : public tests::CardTest
{
protected:
    SetupCardModelTest() { open(m_card); }

    void type(const QString &text) { m_card.importText()->insert(0, text); }

    SetupCardModel m_card;
};

TEST_F(SetupCardModelTest, CreatesAKeyThatWaitsForItsBackup)
{
    refuseNextKey();
    m_card.createWallet();
    EXPECT_EQ(m_card.errorMsg(), refused);
    EXPECT_FALSE(m_card.isImporting());
    EXPECT_FALSE(model->hasSigningKey());

    m_card.createWallet();
    EXPECT_EQ(m_card.errorMsg(), QString());
    EXPECT_TRUE(model->hasSigningKey());
    EXPECT_TRUE(model->hasPendingBackup());
}

TEST_F(SetupCardModelTest, ImportsWhatIsMoreThanBlanks)
{
    struct Case
    {
        QString text;
        bool canImport;
        QString error;
    };
    const Case cases[] = {
        {QString(), false, {}},
        {QStringLiteral("   \t "), false, {}},
        {QString(QChar(QChar::Nbsp)), false, {}},
        // Line breaks are not blanks: pressing the button tells what is wrong.
        {QStringLiteral("\n"), true, badKey},
        {QStringLiteral("x"), true, badKey},
        {seed.chopped(1) + u'0', true, badKey},
        {QStringLiteral("[1, 2]"), true, badKey},
        {u' ' + seed + u'\n', true, {}},
    };
    for (const Case &expected : cases) {
        SCOPED_TRACE(expected.text.toStdString());
        m_card.showImport();
        type(expected.text);
        EXPECT_EQ(m_card.canImport(), expected.canImport);
        m_card.importKey();
        EXPECT_EQ(m_card.errorMsg(), expected.error);
        const bool imported = expected.canImport && expected.error.isEmpty();
        EXPECT_EQ(model->hasSigningKey(), imported);
        EXPECT_EQ(m_card.importText()->view(), imported ? QStringView() : expected.text);
        m_card.back();
    }
    EXPECT_FALSE(model->hasPendingBackup());
}

TEST_F(SetupCardModelTest, SwitchingFacesForgetsErrorAndText)
{
    refuseNextKey();
    m_card.createWallet();
    EXPECT_EQ(m_card.errorMsg(), refused);
    m_card.showImport();
    EXPECT_TRUE(m_card.isImporting());
    EXPECT_EQ(m_card.errorMsg(), QString());

    type(seed);
    refuseNextKey();
    m_card.importKey();
    EXPECT_EQ(m_card.errorMsg(), refused);
    EXPECT_EQ(m_card.importText()->view(), seed);
    m_card.back();
    EXPECT_FALSE(m_card.isImporting());
    EXPECT_EQ(m_card.errorMsg(), QString());
    EXPECT_TRUE(m_card.importText()->isEmpty());
}

TEST_F(SetupCardModelTest, EveryChangeIsAnimated)
{
    look::Animation faces;
    look::Animation cards;
    const look::Transaction &transaction = *m_island->transaction();
    QObject::connect(&m_card, &SetupCardModel::importingChanged, &m_card,
                     [&] { faces = transaction.current(); });
    QObject::connect(model.get(), &core::WalletModel::signingPubkeyChanged, &m_card,
                     [&] { cards = transaction.current(); });
    const auto faceSpring = look::Animation::spring(0.35, 0.85);
    const auto cardSpring = look::Animation::spring(0.42, 0.88);

    m_card.createWallet();
    EXPECT_EQ(cards, cardSpring);
    m_card.showImport();
    EXPECT_EQ(faces, faceSpring);
    faces = cards = {};
    type(seed);
    m_card.importKey();
    EXPECT_EQ(cards, cardSpring);
    m_card.back();
    EXPECT_EQ(faces, faceSpring);
}

} // namespace
} // namespace corvane::panes
