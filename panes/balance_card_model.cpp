#include "panes/balance_card_model.h"

#include "core/labels.h"
#include "core/wallet_model.h"
#include "island/island_controller.h"
#include "panes/network_wording.h"
#include "panes/time_wording.h"

#include <cmath>

namespace corvane::panes {

using core::WalletModel;
using island::IslandPane;

namespace {

QString signedPercent(double change)
{
    const QString sign = std::signbit(change) ? QString() : QStringLiteral("+");
    return sign + core::fixedPoint(change, 2) + u'%';
}

QString dollars(const WalletModel &wallet, std::optional<double> amount)
{
    return amount ? u'$' + wallet.group(*amount, 2) : QStringLiteral("—");
}

} // namespace

BalanceCardModel::BalanceCardModel(WalletModel &wallet, island::IslandController &island,
                                   platform::MainQueue &queue, QObject *parent)
    : QObject(parent)
    , m_wallet(wallet)
    , m_island(island)
    , m_queue(queue)
    , m_copied(queue, copiedFor)
{
    connect(&m_copied, &PassingFlag::changed, this, &BalanceCardModel::chipChanged);
    for (const auto signal :
         {&WalletModel::solChanged, &WalletModel::usdcChanged, &WalletModel::priceChanged,
          &WalletModel::chgChanged, &WalletModel::displayUSDChanged, &WalletModel::networkChanged,
          &WalletModel::addressChanged, &WalletModel::signingPubkeyChanged,
          &WalletModel::waveChanged}) {
        connect(&m_wallet, signal, this, &BalanceCardModel::update);
    }
    connect(&m_wallet, &WalletModel::lastUpdatedChanged, this, &BalanceCardModel::updateAge);
    update();
    updateAge();
}

BalanceCardModel::~BalanceCardModel()
{
    if (m_ageAlarm) {
        m_ageAlarm->cancel();
    }
}

void BalanceCardModel::updateAge()
{
    if (m_ageAlarm) {
        m_ageAlarm->cancel();
        m_ageAlarm.reset();
    }
    QString asOf;
    if (const auto updated = m_wallet.lastUpdated()) {
        const auto now = m_queue.wallTime();
        const auto left = *updated + core::figuresStayFresh - now;
        if (left > std::chrono::nanoseconds::zero()) {
            m_ageAlarm = m_queue.after(left, [this] { updateAge(); });
        } else {
            asOf = QStringLiteral("AS OF ") + clockText(*updated, now);
        }
    }
    if (m_asOf != asOf) {
        m_asOf = asOf;
        Q_EMIT asOfChanged();
    }
}

BalanceCardModel::Figures BalanceCardModel::read() const
{
    Figures figures;
    if (const std::optional<double> change = m_wallet.chg()) {
        figures.changeText = signedPercent(*change);
        // Not-a-number counts as a fall.
        figures.changeIsFall = !(*change >= 0);
    }
    if (m_wallet.displayUSD()) {
        const std::optional<double> total = m_wallet.totalUSD();
        figures.headline = m_wallet.ownAmount(dollars(m_wallet, total));
        figures.headlineIsKnown = total.has_value();
    } else {
        figures.headline = m_wallet.solLabel();
        figures.headlineIsKnown = m_wallet.sol().has_value();
    }
    figures.holdings = QStringLiteral("≈ ") + m_wallet.quibLabel();
    if (const std::optional<double> usdc = m_wallet.usdc()) {
        figures.holdings +=
            QStringLiteral("  ·  USDC ") + m_wallet.ownAmount(m_wallet.group(*usdc, 2));
    }
    figures.solPrice = QStringLiteral("SOL ") + dollars(m_wallet, m_wallet.price());
    figures.address = m_wallet.shortAddress();
    figures.hasAddress = m_wallet.hasValidAddress();
    figures.canSend = m_wallet.hasSigningKey();
    figures.networkName = networkTitle(m_wallet.network());
    figures.isMainnet = m_wallet.network() == core::SolNetwork::Mainnet;
    return figures;
}

void BalanceCardModel::update()
{
    Figures figures = read();
    if (figures != m_figures) {
        m_figures = std::move(figures);
        Q_EMIT figuresChanged();
        Q_EMIT chipChanged();
    }
    const QString announcement = m_figures.hasAddress && m_figures.headlineIsKnown
                                     ? QStringLiteral("TOTAL BALANCE ") + m_figures.headline
                                     : QString();
    if (m_announcement != announcement) {
        m_announcement = announcement;
        Q_EMIT announcementChanged();
    }
    if (m_wave != m_wallet.wave()) {
        m_wave = m_wallet.wave();
        Q_EMIT waveChanged();
    }
}

QString BalanceCardModel::chipText() const
{
    return m_copied.isRaised() ? QStringLiteral("COPIED") : m_figures.address;
}

void BalanceCardModel::toggleHeadline()
{
    m_wallet.setDisplayUSD(!m_wallet.displayUSD());
}

void BalanceCardModel::toggleAmounts()
{
    m_wallet.setHidesAmounts(!m_wallet.hidesAmounts());
}

void BalanceCardModel::copyAddress()
{
    m_island.copyAddress();
    m_copied.raise();
}

void BalanceCardModel::receive()
{
    m_island.setPane(IslandPane::Receive);
}

void BalanceCardModel::send()
{
    m_island.setPane(IslandPane::Send);
}

void BalanceCardModel::openSettings()
{
    m_island.setPane(IslandPane::Settings);
}

} // namespace corvane::panes
