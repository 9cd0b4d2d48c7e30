#include "panes/backup_card_model.h"

namespace corvane::panes {

BackupCardModel::BackupCardModel(QObject *parent)
    : QObject(parent)
{
    connect(&m_copied, &PassingFlag::changed, this, &BackupCardModel::copyLabelChanged);
}

void BackupCardModel::componentComplete()
{
    connect(m_wallet, &core::WalletModel::pendingBackupChanged, this, &BackupCardModel::read);
    read();
}

void BackupCardModel::read()
{
    if (m_wallet->pendingBackup()) {
        m_backup.assign(m_wallet->pendingBackup()->bytes());
    }
}

QString BackupCardModel::copyLabel() const
{
    return m_copied.isRaised() ? QStringLiteral("COPIED") : QStringLiteral("COPY");
}

void BackupCardModel::copy()
{
    const QStringView pending = m_wallet->hasPendingBackup() ? m_backup.view() : QStringView();
    m_island->services().clipboard.setSecret(pending);
    m_copied.raise(m_island->queue(), copiedFor);
}

void BackupCardModel::copyPart(int first, int count)
{
    m_island->services().clipboard.setSecret(m_backup.view().sliced(first, count));
}

void BackupCardModel::finish()
{
    m_island->transaction()->run(look::Animation::spring(0.42, 0.88),
                                 [this] { m_wallet->setPendingBackup(std::nullopt); });
}

} // namespace corvane::panes
