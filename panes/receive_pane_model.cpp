#include "panes/receive_pane_model.h"

#include "core/blank_trimming.h"
#include "panes/network_wording.h"

namespace corvane::panes {

using core::WalletModel;

ReceivePaneModel::ReceivePaneModel(QObject *parent)
    : QObject(parent)
{
    connect(&m_copied, &PassingFlag::changed, this, &ReceivePaneModel::copyLabelChanged);
}

void ReceivePaneModel::componentComplete()
{
    connect(m_wallet, &WalletModel::addressChanged, this, &ReceivePaneModel::changed);
    connect(m_wallet, &WalletModel::networkChanged, this, &ReceivePaneModel::changed);
    Q_EMIT changed();
}

bool ReceivePaneModel::hasAddress() const
{
    return m_wallet != nullptr && m_wallet->hasValidAddress();
}

QString ReceivePaneModel::address() const
{
    return hasAddress() ? core::trimmingBlanks(m_wallet->address()).toString() : QString();
}

QString ReceivePaneModel::networkName() const
{
    return m_wallet != nullptr ? networkTitle(m_wallet->network()) : QString();
}

bool ReceivePaneModel::isMainnet() const
{
    return m_wallet != nullptr && m_wallet->network() == core::SolNetwork::Mainnet;
}

QString ReceivePaneModel::copyLabel() const
{
    return m_copied.isRaised() ? QStringLiteral("COPIED") : QStringLiteral("COPY ADDRESS");
}

void ReceivePaneModel::copyAddress()
{
    m_island->copyAddress();
    m_copied.raise(m_island->queue(), copiedFor);
}

void ReceivePaneModel::close()
{
    m_island->setPane(island::IslandPane::Balance);
}

} // namespace corvane::panes
