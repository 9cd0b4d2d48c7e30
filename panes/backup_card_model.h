#pragma once

#include "core/wallet_model.h"
#include "island/island_controller.h"
#include "look/secrets/secret_text.h"
#include "panes/passing_flag.h"

#include <QObject>
#include <QQmlParserStatus>
#include <QtQmlIntegration/qqmlintegration.h>

namespace corvane::panes {

/// The one-time look at a key that waits to be saved. Main thread.
class BackupCardModel : public QObject, public QQmlParserStatus
{
    Q_OBJECT
    QML_ELEMENT
    Q_INTERFACES(QQmlParserStatus)
    Q_PROPERTY(corvane::core::WalletModel *wallet MEMBER m_wallet REQUIRED FINAL)
    Q_PROPERTY(corvane::island::IslandController *island MEMBER m_island REQUIRED FINAL)
    /// The key as it was when the card came; it is still seen while the card leaves.
    Q_PROPERTY(corvane::look::SecretText *backup READ backup CONSTANT FINAL)
    Q_PROPERTY(QString copyLabel READ copyLabel NOTIFY copyLabelChanged FINAL)

public:
    explicit BackupCardModel(QObject *parent = nullptr);

    /// Puts the key on the clipboard and says so for a moment.
    Q_INVOKABLE void copy();
    /// Puts `count` of its characters from `first` on on the clipboard.
    Q_INVOKABLE void copyPart(int first, int count);
    /// The user has saved the key: it is not shown again.
    Q_INVOKABLE void finish();

    [[nodiscard]] look::SecretText *backup() { return &m_backup; }
    [[nodiscard]] QString copyLabel() const;

    void classBegin() override {}
    void componentComplete() override;

Q_SIGNALS:
    void copyLabelChanged();

private:
    void read();

    core::WalletModel *m_wallet = nullptr;
    island::IslandController *m_island = nullptr;
    look::SecretText m_backup;
    PassingFlag m_copied;
};

} // namespace corvane::panes
