#include "panes/send_pane_model.h"

#include "core/blank_trimming.h"
#include "core/labels.h"
#include "core/rent_minimum.h"
#include "core/typed_amount.h"
#include "core/wallet_model.h"
#include "island/island_controller.h"
#include "panes/network_wording.h"

#include <algorithm>
#include <cmath>

namespace corvane::panes {

using core::parseAmount;
using core::TransferFate;
using core::WalletModel;
using island::IslandPane;
using keys::Lamports;
using platform::Sound;

namespace {

/// SOL that MAX keeps for the fee.
constexpr double feeMargin = 0.0001;

/// A cluster's text without anything that would leave its line or change the order of its
/// characters.
QString onOneLine(QString text)
{
    text.removeIf([](QChar c) { return !c.isPrint() || c.isSpace() || c.isMark(); });
    return text;
}

} // namespace

SendPaneModel::SendPaneModel(WalletModel &wallet, island::IslandController &island,
                             platform::SoundPlayer &sounds, platform::LinkOpener &links,
                             QObject *parent)
    : QObject(parent)
    , m_wallet(wallet)
    , m_island(island)
    , m_sounds(sounds)
    , m_links(links)
    , m_check(wallet.makeRecipientCheck())
{
    for (const auto signal :
         {&WalletModel::solChanged, &WalletModel::priceChanged, &WalletModel::networkChanged,
          &WalletModel::addressChanged, &WalletModel::customRPCChanged,
          &WalletModel::proxyOKChanged, &WalletModel::signingPubkeyChanged}) {
        connect(&m_wallet, signal, this, &SendPaneModel::update);
    }
    connect(m_check.get(), &core::RecipientCheck::changed, this, &SendPaneModel::update);
    connect(&m_wallet.rentMinimum(), &core::RentMinimum::amountChanged, this,
            &SendPaneModel::update);
    connect(&m_wallet.transfers(), &core::TransferSession::reportChanged, this,
            &SendPaneModel::followReport);
    m_lastFate = report().fate;
    followReport();
    m_wallet.rentMinimum().ask(m_wallet.rpcURL());
    update();
}

SendPaneModel::~SendPaneModel() = default;

void SendPaneModel::update()
{
    const std::optional<keys::Address> own = m_wallet.ownAddress();
    std::optional<core::RecipientQuestion> question;
    if (m_address) {
        question = {*m_address, own, m_wallet.network(), m_wallet.rpcURL()};
    }
    m_check->check(question);
    m_recipientWarning = m_check->warning();

    m_outlook = {};
    const std::optional<double> amount = payableAmount();
    if (m_wallet.sol() && own && !m_wallet.watchesAnother()) {
        if (const auto balance = Lamports::fittingSol(*m_wallet.sol())) {
            m_outlook = core::transferOutlook(
                {*balance, amount ? Lamports::fittingSol(*amount) : std::nullopt,
                 m_address ? m_check->lamports() : std::nullopt, m_address == own,
                 m_wallet.rentMinimum().amount(), m_wallet.hidesAmounts()});
        }
    }
    Q_EMIT changed();
}

const core::TransferReport &SendPaneModel::report() const
{
    return m_wallet.transfers().report();
}

void SendPaneModel::followReport()
{
    if (report().sending || m_wallet.transfers().hasNews()) {
        m_showsReport = true;
    }
    if (!report().sending) {
        m_wallet.transfers().markSeen();
    }
    // What is still in the fields is paid now, and must not be sent again by accident.
    const TransferFate fate = report().fate;
    if (fate == TransferFate::WentThrough && m_lastFate == TransferFate::Checking &&
        m_address == report().subject->recipient) {
        const std::optional<double> amount = payableAmount();
        if (amount && Lamports::fittingSol(*amount) == report().subject->amount) {
            clearFields();
        }
    }
    m_lastFate = fate;
    Q_EMIT changed();
}

void SendPaneModel::clearFields()
{
    setRecipient({});
    setAmount({});
}

QString SendPaneModel::networkName() const
{
    return networkTitle(m_wallet.network());
}

bool SendPaneModel::isMainnet() const
{
    return m_wallet.network() == core::SolNetwork::Mainnet;
}

bool SendPaneModel::hasKey() const
{
    return m_wallet.hasSigningKey();
}

QString SendPaneModel::payerWarning() const
{
    if (!m_wallet.watchesAnother()) {
        return {};
    }
    return QStringLiteral("paid by your own key ") + core::shortAddress(*m_wallet.signingPubkey()) +
           QStringLiteral(" — not by the address you watch");
}

void SendPaneModel::setRecipient(const QString &recipient)
{
    m_recipient = recipient;
    m_address = keys::Address::fromText(core::trimmingBlanks(recipient));
    update();
}

void SendPaneModel::setAmount(const QString &amount)
{
    m_amount = amount;
    update();
}

QString SendPaneModel::recipientNote() const
{
    return m_recipientWarning ? m_recipientWarning->text : QString();
}

bool SendPaneModel::recipientNoteIsSevere() const
{
    return m_recipientWarning && m_recipientWarning->severe;
}

QString SendPaneModel::groupedRecipient() const
{
    constexpr int groupSize = 4;
    QString grouped;
    if (m_address) {
        const QString &text = m_address->text();
        for (qsizetype start = 0; start < text.size(); start += groupSize) {
            if (start > 0) {
                grouped += u' ';
            }
            grouped += QStringView(text).mid(start, groupSize);
        }
    }
    return grouped;
}

std::optional<double> SendPaneModel::payableAmount() const
{
    const std::optional<double> amount = parseAmount(m_amount);
    return amount && *amount > 0 && Lamports::fittingSol(*amount) ? amount : std::nullopt;
}

bool SendPaneModel::amountIsValid() const
{
    const std::optional<double> amount = payableAmount();
    const std::optional<double> balance = m_wallet.sol();
    return amount && (!balance || *amount <= *balance);
}

QString SendPaneModel::recipientRefusal() const
{
    return m_recipient.isEmpty() || m_address ? QString() : QStringLiteral("not a solana address");
}

QString SendPaneModel::amountRefusal() const
{
    if (m_amount.isEmpty() || amountIsValid()) {
        return {};
    }
    const std::optional<double> amount = parseAmount(m_amount);
    if (!amount) {
        return QStringLiteral("write the amount as 0.5");
    }
    if (!(*amount > 0)) {
        return QStringLiteral("the amount must be more than 0");
    }
    if (!m_wallet.sol()) {
        return QStringLiteral("more than there is on the network");
    }
    const QString whose = m_wallet.watchesAnother() ? QStringLiteral(" of the address you watch")
                                                    : QStringLiteral(" you have");
    return QStringLiteral("more than the ") + m_wallet.solLabel() + whose;
}

QString SendPaneModel::outlook() const
{
    return amountRefusal().isEmpty() ? m_outlook.text : QString();
}

bool SendPaneModel::isReady() const
{
    return m_address && amountIsValid() && !isSending();
}

bool SendPaneModel::hasMax() const
{
    return m_wallet.sol().has_value();
}

void SendPaneModel::max()
{
    if (const std::optional<double> balance = m_wallet.sol()) {
        setAmount(core::fixedPoint(std::max(*balance - feeMargin, 0.0), 4));
    }
}

QString SendPaneModel::equivalence() const
{
    const std::optional<double> amount = parseAmount(m_amount);
    if (!amount || !(*amount > 0)) {
        return {};
    }
    const QString quib =
        m_wallet.group(std::round(*amount * core::quibPerSol), 0) + QStringLiteral(" QUIB");
    QString text = QStringLiteral("≈ ") + m_wallet.ownAmount(quib);
    if (const std::optional<double> price = m_wallet.price()) {
        text += QStringLiteral("  ·  ") +
                m_wallet.ownAmount(u'$' + m_wallet.group(*amount * *price, 2));
    }
    const std::optional<Lamports> lamports = Lamports::fittingSol(*amount);
    // Says what the field means, and so stays readable with it.
    if (lamports && !core::isExactly(m_amount, *lamports)) {
        text +=
            QStringLiteral("  ·  rounded to ") + core::solText(*lamports) + QStringLiteral(" SOL");
    }
    return text;
}

void SendPaneModel::acceptOffer(int index)
{
    if (index >= 0 && index < m_outlook.offers.size()) {
        setAmount(core::solText(m_outlook.offers[index].amount));
    }
}

QStringList SendPaneModel::offers() const
{
    QStringList labels;
    for (const core::AmountOffer &offer : m_outlook.offers) {
        labels.append(offer.label);
    }
    return labels;
}

QString SendPaneModel::sendLabel() const
{
    return isSending() ? QStringLiteral("SENDING") : QStringLiteral("SEND");
}

QString SendPaneModel::shortSignature() const
{
    if (!isSent()) {
        return {};
    }
    constexpr qsizetype kept = 8;
    const QString text = onOneLine(*report().signature);
    return text.left(kept) + u'…' + text.right(kept);
}

std::optional<QUrl> SendPaneModel::link() const
{
    return isSent() ? m_wallet.explorerURL(*report().signature) : std::nullopt;
}

QString SendPaneModel::errorMsg() const
{
    if (!m_pressError.isEmpty()) {
        return m_pressError;
    }
    return m_showsReport && report().error ? report().error->description() : QString();
}

QString SendPaneModel::fate() const
{
    switch (report().fate) {
    case TransferFate::Unknown:
        return {};
    case TransferFate::Checking:
        return QStringLiteral("checking whether it went through…");
    case TransferFate::WentThrough:
        return m_showsReport ? QStringLiteral("it went through") : QString();
    case TransferFate::DidNotGoThrough:
        return m_showsReport ? QStringLiteral("it did not go through") : QString();
    }
    Q_UNREACHABLE();
}

bool SendPaneModel::fateIsOpen() const
{
    return report().fate == TransferFate::Checking;
}

bool SendPaneModel::fateIsLoss() const
{
    return report().fate == TransferFate::DidNotGoThrough;
}

QString SendPaneModel::worded(const core::TransferIntent &transfer) const
{
    QString text = m_wallet.ownAmount(core::solText(transfer.amount) + QStringLiteral(" SOL")) +
                   QStringLiteral(" to ") + core::shortAddress(transfer.recipient.text());
    if (transfer.network != m_wallet.network()) {
        text += QStringLiteral(" on ") + networkTitle(transfer.network);
    }
    return text;
}

QString SendPaneModel::sentSubject() const
{
    return isSent() ? worded(*report().sent) : QString();
}

QString SendPaneModel::fateSubject() const
{
    if (fate().isEmpty()) {
        return {};
    }
    QString text = report().isEarlier ? QStringLiteral("an earlier ") : QString();
    text += worded(*report().subject);
    return text;
}

void SendPaneModel::openLink()
{
    setLinkError({});
    if (const std::optional<QUrl> page = link()) {
        m_links.open(*page, [pane = QPointer(this)] {
            if (pane) {
                pane->setLinkError(QStringLiteral("nothing on this desktop opens web links"));
            }
        });
    }
}

void SendPaneModel::setLinkError(const QString &error)
{
    m_linkError = error;
    Q_EMIT changed();
}

void SendPaneModel::close()
{
    m_island.setPane(IslandPane::Balance);
}

void SendPaneModel::send(const QString &shownRecipient, const QString &shownAmount)
{
    if (!isReady()) {
        return;
    }
    if (shownRecipient != m_recipient || shownAmount != m_amount) {
        m_pressError = QStringLiteral("the fields were still changing — nothing was sent");
        Q_EMIT changed();
        return;
    }
    m_pressError.clear();
    m_linkError.clear();
    m_sounds.play(Sound::Pop);
    // The task continues without its handle.
    finish(this, &m_island, &m_sounds, m_wallet.sendSOL(*m_address, *payableAmount()));
}

QCoro::Task<> SendPaneModel::finish(QPointer<SendPaneModel> pane,
                                    QPointer<island::IslandController> island,
                                    platform::SoundPlayer *sounds,
                                    QCoro::Task<core::SendResult<QString>> sending)
{
    const core::SendResult<QString> result = co_await sending;
    const bool isAccepted = std::holds_alternative<QString>(result);
    if (island) {
        sounds->play(isAccepted ? Sound::Glass : Sound::Basso);
    }
    if (pane && isAccepted) {
        ++pane->m_burst;
        pane->clearFields();
    }
}

} // namespace corvane::panes
