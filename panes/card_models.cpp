#include "panes/card_models.h"

#include "island/island_controller.h"

namespace corvane::panes {

CardModels::CardModels(core::WalletModel &wallet, island::IslandController &island,
                       CardServices services, QObject *parent)
    : QObject(parent)
    , m_wallet(wallet)
    , m_island(island)
    , m_services(services)
    , m_copiedSecret(std::make_shared<CopiedSecret>(wallet, services.clipboard, services.queue))
{}

BackupCardModel *CardModels::backupCard(QObject *view)
{
    return new BackupCardModel(m_wallet, *m_island.transaction(), m_copiedSecret, m_services.queue,
                               view);
}

BalanceCardModel *CardModels::balanceCard(QObject *view)
{
    return new BalanceCardModel(m_wallet, m_island, m_services.queue, view);
}

ReceivePaneModel *CardModels::receivePane(QObject *view)
{
    return new ReceivePaneModel(m_wallet, m_island, m_services.queue, view);
}

SendPaneModel *CardModels::sendPane(QObject *view)
{
    return new SendPaneModel(m_wallet, m_island, m_services.sounds, m_services.links, view);
}

SettingsCardModel *CardModels::settingsCard(QObject *view)
{
    return new SettingsCardModel(m_wallet, m_island, m_services.application, m_services.queue,
                                 m_services.doubleClick, view);
}

SetupCardModel *CardModels::setupCard(QObject *view)
{
    return new SetupCardModel(m_wallet, *m_island.transaction(), view);
}

OwnAddress *CardModels::ownAddress(QObject *view)
{
    return new OwnAddress(m_wallet, view);
}

PresenceNotice *CardModels::presenceNotice(QObject *view)
{
    return new PresenceNotice(m_wallet, m_services.authenticator, m_services.queue, view);
}

} // namespace corvane::panes
