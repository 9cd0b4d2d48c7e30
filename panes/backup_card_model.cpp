#include "panes/backup_card_model.h"

#include "core/wallet_model.h"

#include <utility>

namespace corvane::panes {

BackupCardModel::BackupCardModel(core::WalletModel &wallet, look::Transaction &transaction,
                                 std::shared_ptr<CopiedSecret> copiedSecret,
                                 platform::MainQueue &queue, QObject *parent)
    : QObject(parent)
    , m_wallet(wallet)
    , m_transaction(transaction)
    , m_copiedSecret(std::move(copiedSecret))
    , m_copied(queue, copiedFor)
{
    connect(&m_copied, &PassingFlag::changed, this, &BackupCardModel::copyLabelChanged);
    connect(&m_wallet, &core::WalletModel::pendingBackupChanged, this, &BackupCardModel::read);
    read();
}

void BackupCardModel::read()
{
    if (m_wallet.pendingBackup()) {
        m_backup.assign(m_wallet.pendingBackup()->bytes());
    }
}

QString BackupCardModel::copyLabel() const
{
    return m_copied.isRaised() ? QStringLiteral("COPIED") : QStringLiteral("COPY");
}

QString BackupCardModel::copyNote() const
{
    return m_copied.isRaised()
               ? QStringLiteral("cleared in %1 s").arg(CopiedSecret::keptFor.count())
               : QString();
}

void BackupCardModel::copy()
{
    const QStringView pending = m_wallet.hasPendingBackup() ? m_backup.view() : QStringView();
    m_copiedSecret->copy(pending);
    m_copied.raise();
}

void BackupCardModel::copyPart(int first, int count)
{
    m_copiedSecret->copy(m_backup.view().sliced(first, count));
}

void BackupCardModel::finish()
{
    m_transaction.run(look::Animation::spring(0.42, 0.88),
                      [this] { m_wallet.setPendingBackup(std::nullopt); });
}

} // namespace corvane::panes
