#include "panes/balance_card_model.h"

#include <QPointer>

#include <chrono>

namespace corvane::panes {

using core::WalletModel;
using island::IslandPane;

namespace {

constexpr auto copiedFor = std::chrono::milliseconds(1200);
constexpr QChar unknownAmount(u'—');

} // namespace

BalanceCardModel::BalanceCardModel(QObject *parent)
    : QObject(parent)
{}

void BalanceCardModel::componentComplete()
{
    for (const auto signal :
         {&WalletModel::solChanged, &WalletModel::usdcChanged, &WalletModel::priceChanged,
          &WalletModel::chgChanged, &WalletModel::displayUSDChanged, &WalletModel::networkChanged,
          &WalletModel::addressChanged, &WalletModel::signingPubkeyChanged}) {
        connect(m_wallet, signal, this, &BalanceCardModel::figuresChanged);
    }
    connect(m_wallet, &WalletModel::waveChanged, this, &BalanceCardModel::waveChanged);
    connect(m_wallet, &WalletModel::addressChanged, this, &BalanceCardModel::chipChanged);
    Q_EMIT figuresChanged();
    Q_EMIT waveChanged();
    Q_EMIT chipChanged();
}

QString BalanceCardModel::changeText() const
{
    const std::optional<double> change = m_wallet->chg();
    return change ? QString::asprintf("%+.2f%%", *change) : QString();
}

bool BalanceCardModel::changeIsFall() const
{
    // Also true for a value that is not a number.
    const std::optional<double> change = m_wallet->chg();
    return change && !(*change >= 0);
}

QString BalanceCardModel::headline() const
{
    if (!m_wallet->displayUSD()) {
        return m_wallet->solLabel();
    }
    const std::optional<double> total = m_wallet->totalUSD();
    return total ? u'$' + m_wallet->group(*total, 2) : QString(unknownAmount);
}

QString BalanceCardModel::holdings() const
{
    QString text = QStringLiteral("≈ ") + m_wallet->quibLabel();
    if (const std::optional<double> usdc = m_wallet->usdc()) {
        text += QStringLiteral("  ·  USDC ") + m_wallet->group(*usdc, 2);
    }
    return text;
}

QString BalanceCardModel::solPrice() const
{
    const std::optional<double> price = m_wallet->price();
    return QStringLiteral("SOL ") +
           (price ? u'$' + m_wallet->group(*price, 2) : QString(unknownAmount));
}

QList<double> BalanceCardModel::wave() const
{
    return m_wallet->wave();
}

bool BalanceCardModel::hasAddress() const
{
    return m_wallet->hasValidAddress();
}

bool BalanceCardModel::canSend() const
{
    return m_wallet->hasSigningKey();
}

QString BalanceCardModel::networkName() const
{
    return core::rawValue(m_wallet->network()).toUpper();
}

bool BalanceCardModel::isMainnet() const
{
    return m_wallet->network() == core::SolNetwork::Mainnet;
}

QString BalanceCardModel::chipText() const
{
    return m_copied ? QStringLiteral("COPIED") : m_wallet->shortAddress();
}

void BalanceCardModel::toggleHeadline()
{
    m_wallet->setDisplayUSD(!m_wallet->displayUSD());
}

void BalanceCardModel::copyAddress()
{
    m_island->copyAddress();
    setCopied(true);
    // An earlier click's reset is not taken back: it ends the indication early.
    m_island->queue().after(copiedFor, [card = QPointer(this)] {
        if (card) {
            card->setCopied(false);
        }
    });
}

void BalanceCardModel::receive()
{
    m_island->setPane(IslandPane::Receive);
}

void BalanceCardModel::send()
{
    m_island->setPane(IslandPane::Send);
}

void BalanceCardModel::openSettings()
{
    m_island->setPane(IslandPane::Settings);
}

void BalanceCardModel::setCopied(bool copied)
{
    if (m_copied != copied) {
        m_copied = copied;
        Q_EMIT chipChanged();
    }
}

} // namespace corvane::panes
