#pragma once

#include "core/recipient_check.h"
#include "core/send_error.h"
#include "core/transfer_outlook.h"
#include "core/transfer_session.h"
#include "keys/address.h"
#include "platform/link_opener.h"
#include "platform/sound_player.h"

#include <QCoroTask>

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QtQmlIntegration/qqmlintegration.h>

#include <memory>
#include <optional>

namespace corvane::core {
class WalletModel;
} // namespace corvane::core

namespace corvane::island {
class IslandController;
} // namespace corvane::island

namespace corvane::panes {

/// The model of the send pane: a transfer from its input to its fate.
///
/// | state   | button            | next state                                                |
/// |---------|-------------------|-----------------------------------------------------------|
/// | idle    | SEND when ready   | `send`: sending                                           |
/// | sending | SENDING, disabled | accepted: idle, with empty fields and the sent line;      |
/// |         |                   | failed: idle, with an error                               |
///
/// The transfers belong to the wallet: a new pane shows one that is being sent, and a result or a
/// fate that no pane has shown yet. Main thread.
class SendPaneModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by CardModels")
    Q_PROPERTY(QString networkName READ networkName NOTIFY changed FINAL)
    Q_PROPERTY(bool isMainnet READ isMainnet NOTIFY changed FINAL)
    Q_PROPERTY(bool hasKey READ hasKey NOTIFY changed FINAL)
    /// Which key pays, if another address is being watched; otherwise empty.
    Q_PROPERTY(QString payerWarning READ payerWarning NOTIFY changed FINAL)
    Q_PROPERTY(QString recipient READ recipient WRITE setRecipient NOTIFY changed FINAL)
    /// Why the typed recipient is refused; empty if it is not.
    Q_PROPERTY(QString recipientRefusal READ recipientRefusal NOTIFY changed FINAL)
    /// What is worth telling about a valid recipient; usually empty.
    Q_PROPERTY(QString recipientNote READ recipientNote NOTIFY changed FINAL)
    Q_PROPERTY(bool recipientNoteIsSevere READ recipientNoteIsSevere NOTIFY changed FINAL)
    /// The whole recipient in groups of four characters; empty unless it is valid.
    Q_PROPERTY(QString groupedRecipient READ groupedRecipient NOTIFY changed FINAL)
    /// The amount in SOL, as typed.
    Q_PROPERTY(QString amount READ amount WRITE setAmount NOTIFY changed FINAL)
    /// Why the typed amount is refused; empty if it is not.
    Q_PROPERTY(QString amountRefusal READ amountRefusal NOTIFY changed FINAL)
    /// True if the balance is known, so that all of it can be sent.
    Q_PROPERTY(bool hasMax READ hasMax NOTIFY changed FINAL)
    /// The amount in QUIB and dollars, and in SOL if it will be rounded; empty if there is no valid
    /// amount.
    Q_PROPERTY(QString equivalence READ equivalence NOTIFY changed FINAL)
    /// What is available or would be left, or why the cluster would refuse the amount; empty if the
    /// payer's balance is unknown or if the card refuses the amount itself.
    Q_PROPERTY(QString outlook READ outlook NOTIFY changed FINAL)
    Q_PROPERTY(bool outlookIsRefusal READ outlookIsRefusal NOTIFY changed FINAL)
    /// The labels of amounts that would work instead.
    Q_PROPERTY(QStringList offers READ offers NOTIFY changed FINAL)
    Q_PROPERTY(bool ready READ isReady NOTIFY changed FINAL)
    Q_PROPERTY(bool sending READ isSending NOTIFY changed FINAL)
    Q_PROPERTY(QString sendLabel READ sendLabel NOTIFY changed FINAL)
    Q_PROPERTY(bool sent READ isSent NOTIFY changed FINAL)
    /// The shortened signature of the transfer, on one line.
    Q_PROPERTY(QString shortSignature READ shortSignature NOTIFY changed FINAL)
    /// How much was sent to whom.
    Q_PROPERTY(QString sentSubject READ sentSubject NOTIFY changed FINAL)
    Q_PROPERTY(bool hasLink READ hasLink NOTIFY changed FINAL)
    /// Why the link does not open; empty if it does.
    Q_PROPERTY(QString linkError READ linkError NOTIFY changed FINAL)
    Q_PROPERTY(QString errorMsg READ errorMsg NOTIFY changed FINAL)
    /// What became of a transfer; empty if that is not known or not in question.
    Q_PROPERTY(QString fate READ fate NOTIFY changed FINAL)
    /// True while the cluster is still being asked.
    Q_PROPERTY(bool fateIsOpen READ fateIsOpen NOTIFY changed FINAL)
    Q_PROPERTY(bool fateIsLoss READ fateIsLoss NOTIFY changed FINAL)
    /// The transfer that `fate` is about.
    Q_PROPERTY(QString fateSubject READ fateSubject NOTIFY changed FINAL)
    /// True if that is the transfer of the sent line, which names it already.
    Q_PROPERTY(bool fateIsOfSent READ fateIsOfSent NOTIFY changed FINAL)
    /// Number of transfers that were accepted while the pane was shown.
    Q_PROPERTY(int burst READ burst NOTIFY changed FINAL)

public:
    SendPaneModel(core::WalletModel &wallet, island::IslandController &island,
                  platform::SoundPlayer &sounds, platform::LinkOpener &links,
                  QObject *parent = nullptr);

    ~SendPaneModel() override;

    /// Sends the transfer. The button is enabled only while `ready`. The arguments are what the
    /// card shows at this moment: if that is not what would be sent, nothing is.
    Q_INVOKABLE void send(const QString &shownRecipient, const QString &shownAmount);
    /// Sets the amount to the balance minus a margin for the fee.
    Q_INVOKABLE void max();
    /// Sets the amount to one of `offers`.
    Q_INVOKABLE void acceptOffer(int index);
    Q_INVOKABLE void openLink();
    /// Shows the balance pane, which also leads to the set-up of a wallet.
    Q_INVOKABLE void close();

    [[nodiscard]] QString networkName() const;
    [[nodiscard]] bool isMainnet() const;
    [[nodiscard]] bool hasKey() const;
    [[nodiscard]] QString payerWarning() const;
    [[nodiscard]] QString recipient() const { return m_recipient; }
    void setRecipient(const QString &recipient);
    [[nodiscard]] QString recipientRefusal() const;
    [[nodiscard]] QString recipientNote() const;
    [[nodiscard]] bool recipientNoteIsSevere() const;
    [[nodiscard]] QString groupedRecipient() const;
    [[nodiscard]] QString amount() const { return m_amount; }
    void setAmount(const QString &amount);
    [[nodiscard]] QString amountRefusal() const;
    [[nodiscard]] bool hasMax() const;
    [[nodiscard]] QString equivalence() const;
    [[nodiscard]] QString outlook() const;
    [[nodiscard]] bool outlookIsRefusal() const { return m_outlook.isRefused; }
    [[nodiscard]] QStringList offers() const;
    [[nodiscard]] bool isReady() const;
    [[nodiscard]] bool isSending() const { return report().sending; }
    [[nodiscard]] QString sendLabel() const;
    [[nodiscard]] bool isSent() const { return m_showsReport && report().signature.has_value(); }
    [[nodiscard]] QString shortSignature() const;
    [[nodiscard]] QString sentSubject() const;
    [[nodiscard]] bool hasLink() const { return link().has_value(); }
    [[nodiscard]] QString linkError() const { return m_linkError; }
    [[nodiscard]] QString errorMsg() const;
    [[nodiscard]] QString fate() const;
    [[nodiscard]] bool fateIsOpen() const;
    [[nodiscard]] bool fateIsLoss() const;
    [[nodiscard]] QString fateSubject() const;
    [[nodiscard]] bool fateIsOfSent() const { return isSent() && !report().isEarlier; }
    [[nodiscard]] int burst() const { return m_burst; }

Q_SIGNALS:
    void changed();

private:
    [[nodiscard]] const core::TransferReport &report() const;
    /// The typed amount if it is greater than 0 and fits into a transfer.
    [[nodiscard]] std::optional<double> payableAmount() const;
    /// True if the amount is payable and, if the balance is known, at most the balance.
    [[nodiscard]] bool amountIsValid() const;
    [[nodiscard]] QString worded(const core::TransferIntent &transfer) const;
    [[nodiscard]] std::optional<QUrl> link() const;
    void setLinkError(const QString &error);
    /// Follows a change of the wallet or of the fields.
    void update();
    void followReport();
    void clearFields();
    /// Continues after the pane is destroyed, because the transfer may have been sent.
    static QCoro::Task<> finish(QPointer<SendPaneModel> pane,
                                QPointer<island::IslandController> island,
                                platform::SoundPlayer *sounds,
                                QCoro::Task<core::SendResult<QString>> sending);

    core::WalletModel &m_wallet;
    island::IslandController &m_island;
    platform::SoundPlayer &m_sounds;
    platform::LinkOpener &m_links;
    std::unique_ptr<core::RecipientCheck> m_check;
    QString m_recipient;
    /// The address in `m_recipient`; empty if it is invalid.
    std::optional<keys::Address> m_address;
    QString m_amount;
    std::optional<core::RecipientWarning> m_recipientWarning;
    core::TransferOutlook m_outlook;
    /// False while the report is that of an earlier pane, which has shown it.
    bool m_showsReport = false;
    core::TransferFate m_lastFate = core::TransferFate::Unknown;
    /// Why the last press had no effect.
    QString m_pressError;
    QString m_linkError;
    int m_burst = 0;
};

} // namespace corvane::panes
