#pragma once

#include "look/motion/transaction.h"
#include "look/secrets/secret_text.h"
#include "panes/copied_secret.h"
#include "panes/passing_flag.h"

#include <QObject>
#include <QtQmlIntegration/qqmlintegration.h>

#include <memory>

namespace corvane::core {
class WalletModel;
} // namespace corvane::core

namespace corvane::panes {

/// The model of the card that shows a new key once, until the user has saved it. Main thread.
class BackupCardModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by CardModels")
    /// The key at the creation of the card; still visible while the card fades out.
    Q_PROPERTY(corvane::look::SecretText *backup READ backup CONSTANT FINAL)
    Q_PROPERTY(QString copyLabel READ copyLabel NOTIFY copyLabelChanged FINAL)
    /// What becomes of the copy, while the label says that there is one.
    Q_PROPERTY(QString copyNote READ copyNote NOTIFY copyLabelChanged FINAL)

public:
    BackupCardModel(core::WalletModel &wallet, look::Transaction &transaction,
                    std::shared_ptr<CopiedSecret> copiedSecret, platform::MainQueue &queue,
                    QObject *parent = nullptr);

    /// Copies the key to the clipboard and shows a confirmation for a short time.
    Q_INVOKABLE void copy();
    /// Copies `count` of its characters, starting at `first`, to the clipboard.
    Q_INVOKABLE void copyPart(int first, int count);
    /// Called when the user has saved the key: it is not shown again.
    Q_INVOKABLE void finish();

    [[nodiscard]] look::SecretText *backup() { return &m_backup; }
    [[nodiscard]] QString copyLabel() const;
    [[nodiscard]] QString copyNote() const;

Q_SIGNALS:
    void copyLabelChanged();

private:
    void read();

    core::WalletModel &m_wallet;
    look::Transaction &m_transaction;
    std::shared_ptr<CopiedSecret> m_copiedSecret;
    look::SecretText m_backup;
    PassingFlag m_copied;
};

} // namespace corvane::panes
