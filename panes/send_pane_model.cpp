#include "panes/send_pane_model.h"

#include "core/blank_trimming.h"
#include "core/labels.h"
#include "core/typed_amount.h"
#include "core/wallet_model.h"
#include "island/island_controller.h"
#include "panes/network_wording.h"

#include <algorithm>
#include <cmath>

namespace corvane::panes {

using core::parseAmount;
using core::WalletModel;
using island::IslandPane;
using platform::Sound;

namespace {

/// SOL that MAX keeps for the fee.
constexpr double feeMargin = 0.0001;

} // namespace

SendPaneModel::SendPaneModel(WalletModel &wallet, island::IslandController &island,
                             platform::SoundPlayer &sounds, platform::LinkOpener &links,
                             QObject *parent)
    : QObject(parent)
    , m_wallet(wallet)
    , m_island(island)
    , m_sounds(sounds)
    , m_links(links)
{
    for (const auto signal : {&WalletModel::solChanged, &WalletModel::priceChanged,
                              &WalletModel::networkChanged, &WalletModel::signingPubkeyChanged}) {
        connect(&m_wallet, signal, this, &SendPaneModel::changed);
    }
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

void SendPaneModel::setRecipient(const QString &recipient)
{
    m_recipient = recipient;
    m_address = keys::Address::fromText(core::trimmingBlanks(recipient));
    Q_EMIT changed();
}

void SendPaneModel::setAmount(const QString &amount)
{
    m_amount = amount;
    Q_EMIT changed();
}

bool SendPaneModel::amountIsValid() const
{
    const std::optional<double> amount = parseAmount(m_amount);
    if (!amount || !(*amount > 0)) {
        return false;
    }
    const std::optional<double> balance = m_wallet.sol();
    return !balance || *amount <= *balance;
}

bool SendPaneModel::recipientIsWrong() const
{
    return !m_recipient.isEmpty() && !m_address;
}

bool SendPaneModel::amountIsWrong() const
{
    return !m_amount.isEmpty() && !amountIsValid();
}

bool SendPaneModel::isReady() const
{
    return m_address && amountIsValid() && !m_sending;
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
    QString text = QStringLiteral("≈ ") +
                   m_wallet.group(std::round(*amount * core::quibPerSol), 0) +
                   QStringLiteral(" QUIB");
    if (const std::optional<double> price = m_wallet.price()) {
        text += QStringLiteral("  ·  $") + m_wallet.group(*amount * *price, 2);
    }
    return text;
}

QString SendPaneModel::sendLabel() const
{
    return m_sending ? QStringLiteral("SENDING") : QStringLiteral("SEND");
}

QString SendPaneModel::shortSignature() const
{
    return m_sentSig ? m_sentSig->left(8) + u'…' + m_sentSig->right(8) : QString();
}

std::optional<QUrl> SendPaneModel::link() const
{
    return m_sentSig ? m_wallet.explorerURL(*m_sentSig) : std::nullopt;
}

void SendPaneModel::openLink()
{
    if (const std::optional<QUrl> page = link()) {
        m_links.open(*page);
    }
}

void SendPaneModel::close()
{
    m_island.setPane(IslandPane::Balance);
}

void SendPaneModel::send()
{
    const std::optional<double> amount = parseAmount(m_amount);
    if (!m_address || !amount) {
        return;
    }
    m_sending = true;
    m_errorMsg.clear();
    m_sentSig.reset();
    Q_EMIT changed();
    m_sounds.play(Sound::Pop);
    // The task continues without its handle.
    transfer(this, &m_wallet, &m_island, &m_sounds, *m_address, *amount);
}

QCoro::Task<> SendPaneModel::transfer(QPointer<SendPaneModel> pane, QPointer<WalletModel> wallet,
                                      QPointer<island::IslandController> island,
                                      platform::SoundPlayer *sounds, keys::Address recipient,
                                      double amount)
{
    auto sending = wallet->sendSOL(recipient, amount);
    const core::SendResult<QString> result = co_await sending;
    if (island) {
        const bool accepted = std::holds_alternative<QString>(result);
        sounds->play(accepted ? Sound::Glass : Sound::Basso);
    }
    if (pane) {
        pane->finish(result);
    }
}

void SendPaneModel::finish(const core::SendResult<QString> &result)
{
    m_sending = false;
    if (const auto *error = std::get_if<core::SendError>(&result)) {
        m_errorMsg = error->description();
    } else {
        m_sentSig = std::get<QString>(result);
        ++m_burst;
        m_recipient.clear();
        m_address.reset();
        m_amount.clear();
    }
    Q_EMIT changed();
}

} // namespace corvane::panes
