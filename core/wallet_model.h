#pragma once

#include "core/endpoint_choice.h"
#include "core/json_calls.h"
#include "core/send_error.h"
#include "core/sol_network.h"
#include "core/wallet_services.h"
#include "keys/address.h"
#include "platform/secret_bytes.h"

#include <QCoroTask>

#include <QJsonArray>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QUrl>
#include <QtQmlIntegration/qqmlintegration.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace corvane::platform {
class AuthenticationContext;
} // namespace corvane::platform

namespace corvane::core {

class Cancellation;
class KeySession;

/// Everything the wallet knows, observable: address, cluster, endpoint settings, the last fetched
/// figures and the state of the signing key. Made once at launch; main thread.
///
/// Each write of a published property emits `objectWillChange`, stores, emits the property's own
/// signal and then runs what depends on it, also when the value is the same as before. Settings are
/// stored at that moment. The balances always describe the current trimmed address on the current
/// network or are none. Refresh failures keep the last good values; the next cycle is the retry.
///
/// The operations that return a task start at once and go on even if the task is dropped; they
/// write nothing after the model is gone.
class WalletModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("the wallet is made at launch")
    Q_PROPERTY(QString address READ address WRITE setAddress NOTIFY addressChanged FINAL)
    Q_PROPERTY(
        corvane::core::SolNetwork network READ network WRITE setNetwork NOTIFY networkChanged FINAL)
    Q_PROPERTY(QString customRPC READ customRPC WRITE setCustomRPC NOTIFY customRPCChanged FINAL)
    Q_PROPERTY(QString walletURL READ walletURL WRITE setWalletURL NOTIFY walletURLChanged FINAL)
    Q_PROPERTY(bool displayUSD READ displayUSD WRITE setDisplayUSD NOTIFY displayUSDChanged FINAL)
    Q_PROPERTY(bool hasValidAddress READ hasValidAddress NOTIFY addressChanged FINAL)
    Q_PROPERTY(bool hasSigningKey READ hasSigningKey NOTIFY signingPubkeyChanged FINAL)
    Q_PROPERTY(bool hasPendingBackup READ hasPendingBackup NOTIFY pendingBackupChanged FINAL)
    Q_PROPERTY(QString shortAddress READ shortAddress NOTIFY addressChanged FINAL)
    Q_PROPERTY(QString solLabel READ solLabel NOTIFY solChanged FINAL)
    Q_PROPERTY(QString quibLabel READ quibLabel NOTIFY solChanged FINAL)
    Q_PROPERTY(QString rpcSourceLabel READ rpcSourceLabel NOTIFY rpcSourceLabelChanged FINAL)

public:
    /// Reads the settings and the stored public key, starts polling and probes the proxy.
    explicit WalletModel(WalletServices services, QObject *parent = nullptr);
    ~WalletModel() override;

    /// Starts a full refresh, as the refresh buttons do, and returns at once.
    Q_INVOKABLE void refresh();

    /// One refresh cycle: the price, then the balances, then now and then (or by `force`) the
    /// chart.
    QCoro::Task<> refreshAll(bool force);
    /// Fetches SOL and USDC of the address. True when the USDC figure was written, otherwise
    /// whether the SOL figure was; an answer that has gone stale on the way is dropped.
    QCoro::Task<bool> refreshBalance();
    /// Asks the price services one after the other; true when one of them told a price.
    QCoro::Task<bool> refreshPrice();
    /// Fetches the chart; what is there stays when that fails.
    QCoro::Task<> refreshWave();
    /// Finds out whether the web app's RPC proxy works.
    QCoro::Task<> probeProxy();
    /// Runs a refresh cycle now and then every 30 s; a loop that runs already is cancelled.
    void startPolling();

    /// Makes a new random key, stores it and shows it for backup. Gives the backup text (ASCII).
    [[nodiscard]] SendResult<platform::SecretBytes> createWallet();
    /// Stores the key that somebody pasted and gives its public key. `text` should lie in guarded
    /// memory.
    [[nodiscard]] SendResult<QString> importSigningKey(QStringView text);
    /// Loads the seed in the background, opened by a context that has just passed.
    void unlockSigningKey(std::shared_ptr<platform::AuthenticationContext> context);
    /// The backup text (ASCII) of the stored key, asking the user while it is locked; none when
    /// they refuse.
    QCoro::Task<std::optional<platform::SecretBytes>> backupSecret();
    /// Forgets the key, here and in the keychain. Nobody is asked again.
    void removeWallet();
    /// Sends SOL from the wallet's own key and gives the transaction's signature as soon as the
    /// cluster has accepted it. Asks the user while the key is locked. An amount that does not fit
    /// into lamports stops the process.
    QCoro::Task<SendResult<QString>> sendSOL(keys::Address to, double amountSOL);
    /// The same to what somebody typed, blanks around it forgiven.
    QCoro::Task<SendResult<QString>> sendSOL(QString to, double amountSOL);
    /// The block explorer's page of a transaction.
    [[nodiscard]] std::optional<QUrl> explorerURL(const QString &signature) const;

    /// One call of the cluster by JSON-RPC; the endpoint is chosen now.
    QCoro::Task<JsonResult> rpc(QString method, QJsonArray params);

    /// The endpoint to use now: the user's own, else the proxy while it works, else the public one.
    [[nodiscard]] QUrl rpcURL() const;
    /// The public endpoint of the current network.
    [[nodiscard]] const QString &publicRPC() const;
    /// See `walletSource` and `proxyEndpoint`, for the settings as they are now.
    [[nodiscard]] std::optional<QUrl> walletSourceURL() const;
    [[nodiscard]] std::optional<QUrl> proxyRPCURL() const;
    /// See `core::rpcSource`, for the settings as they are now; changes with `rpcSourceLabel`.
    [[nodiscard]] RpcSource rpcSource() const;

    /// The watched address as typed, blanks included.
    [[nodiscard]] const QString &address() const { return m_watched.typed; }
    void setAddress(const QString &address);
    [[nodiscard]] SolNetwork network() const { return m_network; }
    /// Fetches everything again, also when the network stays the same.
    void setNetwork(SolNetwork network);
    [[nodiscard]] const QString &customRPC() const { return m_customRPC; }
    void setCustomRPC(const QString &customRPC);
    [[nodiscard]] const QString &walletURL() const { return m_walletURL; }
    /// Probes the proxy of the new address.
    void setWalletURL(const QString &walletURL);
    [[nodiscard]] bool displayUSD() const { return m_displayUSD; }
    void setDisplayUSD(bool displayUSD);

    /// The Base58 public key of the wallet's own key; none when it only watches.
    [[nodiscard]] const std::optional<QString> &signingPubkey() const;
    [[nodiscard]] bool hasSigningKey() const { return signingPubkey().has_value(); }
    /// The backup text (ASCII) of a key that was just created, until the user has saved it.
    [[nodiscard]] const std::optional<platform::SecretBytes> &pendingBackup() const;
    /// Shows a backup text (ASCII), or none any more once the user has saved it.
    void setPendingBackup(std::optional<platform::SecretBytes> text);
    [[nodiscard]] bool hasPendingBackup() const { return pendingBackup().has_value(); }
    /// The unlocked 32-byte seed, while there is one.
    [[nodiscard]] const std::optional<platform::SecretBytes> &sessionSecret() const;
    /// The watched address, when the trimmed text is one.
    [[nodiscard]] const std::optional<keys::Address> &validAddress() const
    {
        return m_watched.address;
    }
    [[nodiscard]] bool hasValidAddress() const { return m_watched.address.has_value(); }

    /// SOL.
    [[nodiscard]] std::optional<double> sol() const { return m_sol; }
    /// Whole USDC.
    [[nodiscard]] std::optional<double> usdc() const { return m_usdc; }
    /// US dollars per SOL.
    [[nodiscard]] std::optional<double> price() const { return m_price; }
    /// Change of the price over 24 hours, in percent.
    [[nodiscard]] std::optional<double> chg() const { return m_chg; }
    /// Prices of one day in US dollars, oldest first, at most 72; empty when unknown.
    [[nodiscard]] const QList<double> &wave() const { return m_wave; }
    /// When the last cycle ended in which the price or a balance came in.
    [[nodiscard]] std::optional<std::chrono::system_clock::time_point> lastUpdated() const
    {
        return m_lastUpdated;
    }
    /// The RPC proxy answered its last probe.
    [[nodiscard]] bool proxyOK() const { return m_proxyOK; }

    /// What `labels.h` words, for the figures as they are now.
    [[nodiscard]] QString shortAddress() const;
    [[nodiscard]] QString solLabel() const;
    [[nodiscard]] QString quibLabel() const;
    [[nodiscard]] QString rpcSourceLabel() const;
    /// US dollars of both balances; none without a SOL balance or a price.
    [[nodiscard]] std::optional<double> totalUSD() const;
    /// `value` in the user's locale with exactly `decimals` fraction digits: the one number
    /// formatter of the system.
    [[nodiscard]] QString group(double value, int decimals) const;

Q_SIGNALS:
    /// A published property is about to change; getters still answer the old value.
    void objectWillChange();
    void addressChanged();
    void networkChanged();
    void customRPCChanged();
    void walletURLChanged();
    void displayUSDChanged();
    void signingPubkeyChanged();
    void pendingBackupChanged();
    void solChanged();
    void usdcChanged();
    void priceChanged();
    void chgChanged();
    void waveChanged();
    void lastUpdatedChanged();
    void proxyOKChanged();
    void rpcSourceLabelChanged();

private:
    /// What somebody typed and, when that is one, the address that it stands for.
    struct WatchedAddress
    {
        explicit WatchedAddress(const QString &text = {});
        explicit WatchedAddress(const keys::Address &known);

        QString typed;
        std::optional<keys::Address> address;
    };

    template <typename T>
    void publish(T &property, T value, void (WalletModel::*changed)())
    {
        Q_EMIT objectWillChange();
        property = std::move(value);
        Q_EMIT(this->*changed)();
    }

    static QCoro::Task<> poll(QPointer<WalletModel> model,
                              std::shared_ptr<Cancellation> cancellation);

    QCoro::Task<JsonResult> getJSON(QString url);
    void watch(WatchedAddress watched);
    void netFlip();
    void clearBalances();
    /// Runs `start` on the main thread, later, if the model still exists by then.
    void startTask(std::function<void(WalletModel &)> start);

    WalletServices m_services;
    std::unique_ptr<KeySession> m_keySession;

    WatchedAddress m_watched;
    SolNetwork m_network = SolNetwork::Mainnet;
    QString m_customRPC;
    QString m_walletURL;
    bool m_displayUSD = true;
    /// A setting that is held as it was found; nothing reads it yet.
    [[maybe_unused]] bool m_tickerShowsBalance = false;
    std::optional<double> m_sol;
    std::optional<double> m_usdc;
    std::optional<double> m_price;
    std::optional<double> m_chg;
    QList<double> m_wave;
    std::optional<std::chrono::system_clock::time_point> m_lastUpdated;
    bool m_proxyOK = false;
    /// How many probes were started; only the latest one's answer counts.
    unsigned m_probes = 0;

    std::shared_ptr<Cancellation> m_pollTask;
    /// Completed refresh cycles; chooses those that fetch the chart.
    qint64 m_tick = 0;
};

} // namespace corvane::core
