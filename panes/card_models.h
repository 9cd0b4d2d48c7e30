#pragma once

#include "panes/backup_card_model.h"
#include "panes/balance_card_model.h"
#include "panes/copied_secret.h"
#include "panes/own_address.h"
#include "panes/presence_notice.h"
#include "panes/receive_pane_model.h"
#include "panes/send_pane_model.h"
#include "panes/settings_card_model.h"
#include "panes/setup_card_model.h"
#include "platform/application.h"
#include "platform/authenticator.h"
#include "platform/clipboard.h"
#include "platform/link_opener.h"
#include "platform/main_queue.h"
#include "platform/sound_player.h"

#include <QObject>
#include <QtQmlIntegration/qqmlintegration.h>

#include <chrono>
#include <memory>

namespace corvane::core {
class WalletModel;
} // namespace corvane::core

namespace corvane::island {
class IslandController;
} // namespace corvane::island

namespace corvane::panes {

/// The services that the cards use. All must outlive the cards.
struct CardServices
{
    platform::MainQueue &queue;
    platform::Clipboard &clipboard;
    platform::SoundPlayer &sounds;
    platform::LinkOpener &links;
    platform::Application &application;
    platform::Authenticator &authenticator;
    /// The desktop's interval for double clicks.
    std::chrono::milliseconds doubleClick;
};

/// Creates the model of a card when its view is created, with the services that it uses. Main
/// thread.
class CardModels : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with the island's views")

public:
    /// The wallet and the island must outlive the cards.
    CardModels(core::WalletModel &wallet, island::IslandController &island, CardServices services,
               QObject *parent = nullptr);

    /// Each model is owned by `view` and destroyed with it.
    Q_INVOKABLE corvane::panes::BackupCardModel *backupCard(QObject *view);
    Q_INVOKABLE corvane::panes::BalanceCardModel *balanceCard(QObject *view);
    Q_INVOKABLE corvane::panes::ReceivePaneModel *receivePane(QObject *view);
    Q_INVOKABLE corvane::panes::SendPaneModel *sendPane(QObject *view);
    Q_INVOKABLE corvane::panes::SettingsCardModel *settingsCard(QObject *view);
    Q_INVOKABLE corvane::panes::SetupCardModel *setupCard(QObject *view);
    /// For lines of views, beside the views' models.
    Q_INVOKABLE corvane::panes::OwnAddress *ownAddress(QObject *view);
    Q_INVOKABLE corvane::panes::PresenceNotice *presenceNotice(QObject *view);

private:
    core::WalletModel &m_wallet;
    island::IslandController &m_island;
    CardServices m_services;
    /// Shared with the backup card, beyond which it lives.
    std::shared_ptr<CopiedSecret> m_copiedSecret;
};

} // namespace corvane::panes
