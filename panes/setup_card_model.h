#pragma once

#include "core/send_error.h"
#include "look/motion/transaction.h"
#include "look/secrets/secret_text.h"

#include <QObject>
#include <QtQmlIntegration/qqmlintegration.h>

#include <optional>

namespace corvane::core {
class WalletModel;
} // namespace corvane::core

namespace corvane::panes {

/// The two ways to a key of one's own: a new one, or one that is pasted. Main thread.
class SetupCardModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by CardModels")
    /// On which one face of the card makes way for the other.
    Q_PROPERTY(corvane::look::Transaction *transaction READ transaction CONSTANT FINAL)
    /// The import form is shown instead of the choice.
    Q_PROPERTY(bool importing READ isImporting NOTIFY importingChanged FINAL)
    /// The secret key that is being pasted.
    Q_PROPERTY(corvane::look::SecretText *importText READ importText CONSTANT FINAL)
    Q_PROPERTY(bool canImport READ canImport NOTIFY canImportChanged FINAL)
    /// Why the last attempt failed; empty when there is nothing to say.
    Q_PROPERTY(QString errorMsg READ errorMsg NOTIFY errorMsgChanged FINAL)

public:
    SetupCardModel(core::WalletModel &wallet, look::Transaction &transaction,
                   QObject *parent = nullptr);

    /// Makes a wallet with a new key; its backup is shown next.
    Q_INVOKABLE void createWallet();
    /// On to the import form.
    Q_INVOKABLE void showImport();
    /// Takes over the key that was pasted. A failure keeps the text and sets `errorMsg`.
    Q_INVOKABLE void importKey();
    /// Back to the choice; forgets what was pasted.
    Q_INVOKABLE void back();

    [[nodiscard]] look::Transaction *transaction() { return &m_transaction; }
    [[nodiscard]] bool isImporting() const { return m_importing; }
    [[nodiscard]] look::SecretText *importText() { return &m_importText; }
    /// There is something to import, blanks apart.
    [[nodiscard]] bool canImport() const;
    [[nodiscard]] QString errorMsg() const { return m_errorMsg; }

Q_SIGNALS:
    void importingChanged();
    void canImportChanged();
    void errorMsgChanged();

private:
    void show(bool importing);
    template <typename Value>
    void report(const core::SendResult<Value> &result);
    void setErrorMsg(const QString &message);

    core::WalletModel &m_wallet;
    look::Transaction &m_transaction;
    bool m_importing = false;
    look::SecretText m_importText;
    QString m_errorMsg;
};

} // namespace corvane::panes
