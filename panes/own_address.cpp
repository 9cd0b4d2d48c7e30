#include "panes/own_address.h"

#include "core/wallet_model.h"

namespace corvane::panes {

using core::WalletModel;

OwnAddress::OwnAddress(WalletModel &wallet, QObject *parent)
    : QObject(parent)
    , m_wallet(wallet)
{
    connect(&m_wallet, &WalletModel::addressChanged, this, &OwnAddress::changed);
    connect(&m_wallet, &WalletModel::signingPubkeyChanged, this, &OwnAddress::changed);
}

void OwnAddress::watch()
{
    m_wallet.watchOwnAddress();
}

QString OwnAddress::warning() const
{
    return m_wallet.watchesAnother()
               ? QStringLiteral("watching another address — not this wallet's key")
               : QString();
}

QString OwnAddress::offer() const
{
    const std::optional<keys::Address> own = m_wallet.ownAddress();
    return own && !m_wallet.hasValidAddress()
               ? QStringLiteral("this wallet's own address: ") + own->text()
               : QString();
}

QString OwnAddress::actionLabel() const
{
    return m_wallet.hasValidAddress() ? QStringLiteral("BACK TO YOUR ADDRESS")
                                      : QStringLiteral("USE IT");
}

} // namespace corvane::panes
