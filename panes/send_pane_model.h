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

/// A transfer from its first letter to the link that shows it.
///
/// | state   | button            | next                                                           |
/// |---------|-------------------|----------------------------------------------------------------|
/// | idle    | SEND when ready   | send: sending                                                  |
/// | sending | SENDING, disabled | accepted: idle, fields empty, sent line; failed: idle, an error
/// |
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
    /// SOL, as typed.
    Q_PROPERTY(QString amount READ amount WRITE setAmount NOTIFY changed FINAL)
    Q_PROPERTY(bool amountIsWrong READ amountIsWrong NOTIFY changed FINAL)
    /// The balance is known, so that all of it can be sent.
    Q_PROPERTY(bool hasMax READ hasMax NOTIFY changed FINAL)
    /// The amount in QUIB and dollars; empty while there is none.
    Q_PROPERTY(QString equivalence READ equivalence NOTIFY changed FINAL)
    Q_PROPERTY(bool ready READ isReady NOTIFY changed FINAL)
    Q_PROPERTY(bool sending READ isSending NOTIFY changed FINAL)
    Q_PROPERTY(QString sendLabel READ sendLabel NOTIFY changed FINAL)
    Q_PROPERTY(bool sent READ isSent NOTIFY changed FINAL)
    /// The transfer's signature, shortened.
    Q_PROPERTY(QString shortSignature READ shortSignature NOTIFY changed FINAL)
    Q_PROPERTY(bool hasLink READ hasLink NOTIFY changed FINAL)
    Q_PROPERTY(QString errorMsg READ errorMsg NOTIFY changed FINAL)
    /// Transfers that were accepted.
    Q_PROPERTY(int burst READ burst NOTIFY changed FINAL)

public:
    SendPaneModel(core::WalletModel &wallet, island::IslandController &island,
                  platform::SoundPlayer &sounds, platform::LinkOpener &links,
                  QObject *parent = nullptr);

    /// Sends what is typed. The button offers it only while `ready`.
    Q_INVOKABLE void send();
    /// Fills in the balance less what the fee may take.
    Q_INVOKABLE void max();
    Q_INVOKABLE void openLink();
    /// To the balance pane, which is also where a wallet is set up.
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
    /// More than nothing and, as far as the balance is known, not more than that.
    [[nodiscard]] bool amountIsValid() const;
    [[nodiscard]] std::optional<QUrl> link() const;
    void finish(const core::SendResult<QString> &result);
    /// Goes on when the pane is gone: the coins are on their way.
    static QCoro::Task<> transfer(QPointer<SendPaneModel> pane, QPointer<core::WalletModel> wallet,
                                  QPointer<island::IslandController> island,
                                  platform::SoundPlayer *sounds, keys::Address recipient,
                                  double amount);

    core::WalletModel &m_wallet;
    island::IslandController &m_island;
    platform::SoundPlayer &m_sounds;
    platform::LinkOpener &m_links;
    QString m_recipient;
    /// The address that `m_recipient` stands for.
    std::optional<keys::Address> m_address;
    QString m_amount;
    bool m_sending = false;
    std::optional<QString> m_sentSig;
    QString m_errorMsg;
    int m_burst = 0;
};

} // namespace corvane::panes
