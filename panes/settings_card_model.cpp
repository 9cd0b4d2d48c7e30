#include "panes/settings_card_model.h"

#include "core/blank_trimming.h"
#include "core/endpoint_choice.h"
#include "core/labels.h"
#include "core/wallet_model.h"
#include "island/island_controller.h"
#include "panes/network_wording.h"
#include "panes/time_wording.h"

#include <algorithm>

namespace corvane::panes {

using core::WalletModel;
using island::IslandPane;

namespace {

/// How long the button that removes the wallet stays armed.
constexpr std::chrono::seconds armedFor{3};
/// Presses that follow each other sooner are taken for a double click, whatever the desktop says.
constexpr std::chrono::milliseconds shortestDoubleClick{500};

} // namespace

SettingsCardModel::SettingsCardModel(WalletModel &wallet, island::IslandController &island,
                                     platform::Application &application, platform::MainQueue &queue,
                                     std::chrono::milliseconds doubleClick, QObject *parent)
    : QObject(parent)
    , m_wallet(wallet)
    , m_island(island)
    , m_application(application)
    , m_queue(queue)
    , m_confirmRemove(queue, armedFor)
    , m_doubleClick(std::max(doubleClick, shortestDoubleClick))
{
    connect(&m_confirmRemove, &PassingFlag::changed, this, &SettingsCardModel::removeLabelChanged);
    for (const auto signal :
         {&WalletModel::addressChanged, &WalletModel::customRPCChanged,
          &WalletModel::networkChanged, &WalletModel::rpcSourceLabelChanged,
          &WalletModel::endpointSilenceChanged, &WalletModel::signingPubkeyChanged,
          &WalletModel::backupPendingChanged}) {
        connect(&m_wallet, signal, this, &SettingsCardModel::changed);
    }
}

QString SettingsCardModel::address() const
{
    return m_wallet.address();
}

void SettingsCardModel::setAddress(const QString &address)
{
    m_wallet.setAddress(address);
}

QString SettingsCardModel::addressError() const
{
    if (m_wallet.hasValidAddress() || core::trimmingBlanks(m_wallet.address()).isEmpty()) {
        return {};
    }
    return QStringLiteral("not a valid solana address");
}

QString SettingsCardModel::customRPC() const
{
    return m_wallet.customRPC();
}

void SettingsCardModel::setCustomRPC(const QString &customRPC)
{
    m_wallet.setCustomRPC(customRPC);
}

QString SettingsCardModel::customRPCError() const
{
    if (core::trimmingBlanks(m_wallet.customRPC()).isEmpty()) {
        return {};
    }
    const std::optional<QUrl> endpoint = core::customEndpoint(m_wallet.customRPC());
    // Only these two can be asked.
    const bool isWeb = endpoint && (endpoint->scheme() == QStringLiteral("https") ||
                                    endpoint->scheme() == QStringLiteral("http"));
    return isWeb ? QString()
                 : QStringLiteral("not a web address — write it as https://rpc.example.com");
}

QString SettingsCardModel::rpcSilence() const
{
    const auto since = m_wallet.endpointSilentSince();
    return since ? QStringLiteral("no answer since ") + clockText(*since, m_queue.wallTime())
                 : QString();
}

QString SettingsCardModel::rpcPlaceholder() const
{
    return m_wallet.publicRPC();
}

QString SettingsCardModel::rpcSource() const
{
    return QStringLiteral("RPC: ") + m_wallet.rpcSourceLabel();
}

bool SettingsCardModel::rpcIsPublic() const
{
    return m_wallet.rpcSource() == core::RpcSource::Public;
}

QList<QString> SettingsCardModel::networks() const
{
    QList<QString> titles;
    for (const core::SolNetwork network : core::allSolNetworks) {
        titles.append(networkTitle(network));
    }
    return titles;
}

int SettingsCardModel::network() const
{
    const auto found = std::ranges::find(core::allSolNetworks, m_wallet.network());
    return static_cast<int>(found - core::allSolNetworks.begin());
}

void SettingsCardModel::setNetwork(int index)
{
    // A click on the current network must not trigger a refresh.
    if (index != network()) {
        m_wallet.setNetwork(core::allSolNetworks.at(static_cast<std::size_t>(index)));
    }
}

bool SettingsCardModel::hasKey() const
{
    return m_wallet.hasSigningKey();
}

QString SettingsCardModel::walletText() const
{
    if (!hasKey()) {
        return QStringLiteral("no wallet — create or import one on the balance card");
    }
    return QStringLiteral("WALLET: ") + core::shortAddress(*m_wallet.signingPubkey()) +
           QStringLiteral(" · key in keychain");
}

QString SettingsCardModel::backupText() const
{
    return m_wallet.isBackupPending()
               ? QStringLiteral("not backed up yet — press BACKUP and save the key")
               : QString();
}

QString SettingsCardModel::removeLabel() const
{
    return m_confirmRemove.isRaised() ? QStringLiteral("REALLY REMOVE? (backup first!)")
                                      : QStringLiteral("REMOVE");
}

void SettingsCardModel::backup()
{
    // The task continues without its handle.
    showBackup(&m_wallet, &m_island);
}

QCoro::Task<> SettingsCardModel::showBackup(QPointer<WalletModel> wallet,
                                            QPointer<island::IslandController> island)
{
    auto asking = wallet->backupSecret();
    auto text = co_await asking;
    if (!text || !wallet || !island) {
        co_return;
    }
    island->transaction()->run(look::Animation::spring(0.42, 0.88),
                               [&] { wallet->setPendingBackup(std::move(text)); });
    island->setPane(IslandPane::Balance);
}

void SettingsCardModel::remove()
{
    const std::chrono::nanoseconds now = m_queue.now();
    const bool isDoubleClick = m_lastPress && now - *m_lastPress < m_doubleClick;
    m_lastPress = now;
    if (!m_confirmRemove.isRaised()) {
        m_confirmRemove.raise();
        return;
    }
    if (isDoubleClick) {
        return;
    }
    // The task continues without its handle.
    m_wallet.removeWallet();
    m_confirmRemove.lower();
}

void SettingsCardModel::quit()
{
    m_application.terminate();
}

void SettingsCardModel::done()
{
    m_island.setPane(IslandPane::Balance);
    m_wallet.refresh();
}

} // namespace corvane::panes
