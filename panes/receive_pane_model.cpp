#include "panes/receive_pane_model.h"

#include "core/wallet_model.h"
#include "island/island_controller.h"
#include "panes/network_wording.h"

namespace corvane::panes {

using core::WalletModel;

ReceivePaneModel::ReceivePaneModel(WalletModel &wallet, island::IslandController &island,
                                   platform::MainQueue &queue, QObject *parent)
    : QObject(parent)
    , m_wallet(wallet)
    , m_island(island)
    , m_copied(queue, copiedFor)
{
    connect(&m_copied, &PassingFlag::changed, this, &ReceivePaneModel::copyLabelChanged);
    connect(&m_wallet, &WalletModel::addressChanged, this, &ReceivePaneModel::changed);
    connect(&m_wallet, &WalletModel::networkChanged, this, &ReceivePaneModel::changed);
}

bool ReceivePaneModel::hasAddress() const
{
    return m_wallet.hasValidAddress();
}

QString ReceivePaneModel::address() const
{
    return hasAddress() ? m_wallet.validAddress()->text() : QString();
}

QString ReceivePaneModel::networkName() const
{
    return networkTitle(m_wallet.network());
}

bool ReceivePaneModel::isMainnet() const
{
    return m_wallet.network() == core::SolNetwork::Mainnet;
}

QString ReceivePaneModel::copyLabel() const
{
    return m_copied.isRaised() ? QStringLiteral("COPIED") : QStringLiteral("COPY ADDRESS");
}

void ReceivePaneModel::copyAddress()
{
    m_island.copyAddress();
    m_copied.raise();
}

void ReceivePaneModel::close()
{
    m_island.setPane(island::IslandPane::Balance);
}

} // namespace corvane::panes
