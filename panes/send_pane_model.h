#pragma once

#include "core/send_error.h"
#include "keys/address.h"
#include "platform/link_opener.h"
#include "platform/sound_player.h"

#include <QCoroTask>

#include <QObject>
#include <QtQmlIntegration/qqmlintegration.h>

#include <optional>

namespace corvane::core {
class WalletModel;
} // namespace corvane::core

namespace corvane::island {
class IslandController;
} // namespace corvane::island

namespace corvane::panes {

/// The model of the send pane: a transfer from its input to the link to its result.
///
/// | state   | button            | next state                                                |
/// |---------|-------------------|-----------------------------------------------------------|
/// | idle    | SEND when ready   | `send`: sending                                           |
/// | sending | SENDING, disabled | accepted: idle, with empty fields and the sent line;      |
/// |         |                   | failed: idle, with an error                               |
///
/// Main thread.
class SendPaneModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by CardModels")
    Q_PROPERTY(QString networkName READ networkName NOTIFY changed FINAL)
    Q_PROPERTY(bool isMainnet READ isMainnet NOTIFY changed FINAL)
    Q_PROPERTY(bool hasKey READ hasKey NOTIFY changed FINAL)
    Q_PROPERTY(QString recipient READ recipient WRITE setRecipient NOTIFY changed FINAL)
    Q_PROPERTY(bool recipientIsWrong READ recipientIsWrong NOTIFY changed FINAL)
    /// The amount in SOL, as typed.
    Q_PROPERTY(QString amount READ amount WRITE setAmount NOTIFY changed FINAL)
    Q_PROPERTY(bool amountIsWrong READ amountIsWrong NOTIFY changed FINAL)
    /// True if the balance is known, so that all of it can be sent.
    Q_PROPERTY(bool hasMax READ hasMax NOTIFY changed FINAL)
    /// The amount in QUIB and dollars; empty if there is no valid amount.
    Q_PROPERTY(QString equivalence READ equivalence NOTIFY changed FINAL)
    Q_PROPERTY(bool ready READ isReady NOTIFY changed FINAL)
    Q_PROPERTY(bool sending READ isSending NOTIFY changed FINAL)
    Q_PROPERTY(QString sendLabel READ sendLabel NOTIFY changed FINAL)
    Q_PROPERTY(bool sent READ isSent NOTIFY changed FINAL)
    /// The shortened signature of the transfer.
    Q_PROPERTY(QString shortSignature READ shortSignature NOTIFY changed FINAL)
    Q_PROPERTY(bool hasLink READ hasLink NOTIFY changed FINAL)
    Q_PROPERTY(QString errorMsg READ errorMsg NOTIFY changed FINAL)
    /// Number of accepted transfers.
    Q_PROPERTY(int burst READ burst NOTIFY changed FINAL)

public:
    SendPaneModel(core::WalletModel &wallet, island::IslandController &island,
                  platform::SoundPlayer &sounds, platform::LinkOpener &links,
                  QObject *parent = nullptr);

    /// Sends the transfer. The button is enabled only while `ready`.
    Q_INVOKABLE void send();
    /// Sets the amount to the balance minus a margin for the fee.
    Q_INVOKABLE void max();
    Q_INVOKABLE void openLink();
    /// Shows the balance pane, which also leads to the set-up of a wallet.
    Q_INVOKABLE void close();

    [[nodiscard]] QString networkName() const;
    [[nodiscard]] bool isMainnet() const;
    [[nodiscard]] bool hasKey() const;
    [[nodiscard]] QString recipient() const { return m_recipient; }
    void setRecipient(const QString &recipient);
    [[nodiscard]] bool recipientIsWrong() const;
    [[nodiscard]] QString amount() const { return m_amount; }
    void setAmount(const QString &amount);
    [[nodiscard]] bool amountIsWrong() const;
    [[nodiscard]] bool hasMax() const;
    [[nodiscard]] QString equivalence() const;
    [[nodiscard]] bool isReady() const;
    [[nodiscard]] bool isSending() const { return m_sending; }
    [[nodiscard]] QString sendLabel() const;
    [[nodiscard]] bool isSent() const { return m_sentSig.has_value(); }
    [[nodiscard]] QString shortSignature() const;
    [[nodiscard]] bool hasLink() const { return link().has_value(); }
    [[nodiscard]] QString errorMsg() const { return m_errorMsg; }
    [[nodiscard]] int burst() const { return m_burst; }

Q_SIGNALS:
    void changed();

private:
    /// True if the amount is greater than 0 and, if the balance is known, at most the balance.
    [[nodiscard]] bool amountIsValid() const;
    [[nodiscard]] std::optional<QUrl> link() const;
    void finish(const core::SendResult<QString> &result);
    /// Continues after the pane is destroyed, because the transfer may have been sent.
    static QCoro::Task<> transfer(QPointer<SendPaneModel> pane, QPointer<core::WalletModel> wallet,
                                  QPointer<island::IslandController> island,
                                  platform::SoundPlayer *sounds, keys::Address recipient,
                                  double amount);

    core::WalletModel &m_wallet;
    island::IslandController &m_island;
    platform::SoundPlayer &m_sounds;
    platform::LinkOpener &m_links;
    QString m_recipient;
    /// The address in `m_recipient`; empty if it is invalid.
    std::optional<keys::Address> m_address;
    QString m_amount;
    bool m_sending = false;
    std::optional<QString> m_sentSig;
    QString m_errorMsg;
    int m_burst = 0;
};

} // namespace corvane::panes
