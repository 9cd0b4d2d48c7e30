#pragma once

#include "core/key_session.h"
#include "look/motion/transaction.h"
#include "look/secrets/secret_text.h"

#include <QCoroTask>

#include <QObject>
#include <QPointer>
#include <QtQmlIntegration/qqmlintegration.h>

#include <optional>

namespace corvane::core {
class WalletModel;
} // namespace corvane::core

namespace corvane::panes {

/// The model of the card for setting up a key: create a new one, or import a pasted one. Main
/// thread.
class SetupCardModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by CardModels")
    /// The transaction in which the card switches between its two sides.
    Q_PROPERTY(corvane::look::Transaction *transaction READ transaction CONSTANT FINAL)
    /// True if the import form is shown instead of the choice.
    Q_PROPERTY(bool importing READ isImporting NOTIFY importingChanged FINAL)
    /// The content of the import form's field: a secret key.
    Q_PROPERTY(corvane::look::SecretText *importText READ importText CONSTANT FINAL)
    Q_PROPERTY(bool canImport READ canImport NOTIFY canImportChanged FINAL)
    /// The error message of the last attempt; empty if there is none.
    Q_PROPERTY(QString errorMsg READ errorMsg NOTIFY errorMsgChanged FINAL)

public:
    SetupCardModel(core::WalletModel &wallet, look::Transaction &transaction,
                   QObject *parent = nullptr);

    /// Creates a wallet with a new key and shows its backup. Does nothing while a key is being
    /// stored.
    Q_INVOKABLE void createWallet();
    /// Shows the import form.
    Q_INVOKABLE void showImport();
    /// Imports the pasted key. A failure keeps the text and sets `errorMsg`. Does nothing while a
    /// key is being stored.
    Q_INVOKABLE void importKey();
    /// Shows the choice again and wipes the pasted text.
    Q_INVOKABLE void back();

    [[nodiscard]] look::Transaction *transaction() { return &m_transaction; }
    [[nodiscard]] bool isImporting() const { return m_importing; }
    [[nodiscard]] look::SecretText *importText() { return &m_importText; }
    /// True if the text is not blank.
    [[nodiscard]] bool canImport() const;
    [[nodiscard]] QString errorMsg() const { return m_errorMsg; }

Q_SIGNALS:
    void importingChanged();
    void canImportChanged();
    void errorMsgChanged();

private:
    void show(bool importing);
    /// Awaits the result of storing a key and shows it.
    template <typename Value>
    static QCoro::Task<> report(QPointer<SetupCardModel> card,
                                QCoro::Task<core::SendResult<Value>> storing);
    /// Publishes the new key within the animation to its card.
    [[nodiscard]] core::KeySession::Publication animated();
    void setErrorMsg(const QString &message);

    core::WalletModel &m_wallet;
    look::Transaction &m_transaction;
    bool m_importing = false;
    look::SecretText m_importText;
    QString m_errorMsg;
};

} // namespace corvane::panes
