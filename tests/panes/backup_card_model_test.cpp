#include "panes/backup_card_model.h"
#include "tests/panes/card_fixture.h"

namespace corvane::panes {
namespace {

using namespace std::chrono_literals;

class BackupCardModelTest : public tests::CardTest
{
protected:
    void openCard()
    {
        launchIsland();
        auto created = model->createWallet();
        const auto bytes = std::get<platform::SecretBytes>(created).bytes();
        m_text = QString::fromLatin1(reinterpret_cast<const char *>(bytes.data()),
                                     static_cast<qsizetype>(bytes.size()));
        open(m_card);
    }

    QString m_text;
    BackupCardModel m_card;
};

TEST_F(BackupCardModelTest, ShowsAndCopiesExactlyTheKey)
{
    openCard();
    EXPECT_GE(m_text.size(), 86);
    EXPECT_EQ(m_card.backup()->view(), m_text);
    m_card.copy();
    m_card.copyPart(2, 5);
    EXPECT_EQ(m_clipboard.secrets, (QStringList{m_text, m_text.sliced(2, 5)}));
    EXPECT_EQ(m_clipboard.texts, QStringList());
}

TEST_F(BackupCardModelTest, SaysForAMomentThatItCopied)
{
    openCard();
    EXPECT_EQ(m_card.copyLabel(), QStringLiteral("COPY"));
    m_card.copy();
    EXPECT_EQ(m_card.copyLabel(), QStringLiteral("COPIED"));
    queue.advance(1100ms);
    m_card.copy();
    EXPECT_EQ(m_card.copyLabel(), QStringLiteral("COPIED"));
    // The first press's reset ends it.
    queue.advance(100ms);
    EXPECT_EQ(m_card.copyLabel(), QStringLiteral("COPY"));
    EXPECT_EQ(m_clipboard.secrets.size(), 2);
}

TEST_F(BackupCardModelTest, SavingEndsTheLook)
{
    openCard();
    look::Animation during;
    QObject::connect(model.get(), &core::WalletModel::pendingBackupChanged, &m_card,
                     [&] { during = m_island->transaction()->current(); });
    m_card.finish();
    EXPECT_FALSE(model->hasPendingBackup());
    EXPECT_TRUE(model->hasSigningKey());
    EXPECT_EQ(during, look::Animation::spring(0.42, 0.88));
    // The card that is leaving still shows it, but gives nothing away.
    EXPECT_EQ(m_card.backup()->view(), m_text);
    m_card.copy();
    EXPECT_EQ(m_clipboard.secrets, QStringList{QString()});
}

} // namespace
} // namespace corvane::panes
