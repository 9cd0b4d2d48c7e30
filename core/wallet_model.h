#pragma once

#include "core/endpoint_choice.h"
#include "core/json_calls.h"
#include "core/key_session.h"
#include "core/known_addresses.h"
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
class RecipientCheck;
class RentMinimum;
class TransferSession;

/// The pause between two refresh cycles.
inline constexpr std::chrono::seconds pollInterval{30};
/// Figures that are older are out of date: two cycles and the answer to the second were missed.
inline constexpr std::chrono::seconds figuresStayFresh = 2 * pollInterval + callTimeout;

/// The observable state of the wallet: address, cluster, endpoint settings, the last fetched
/// figures and the state of the signing key. Created once at launch. Main thread.
///
/// Each write of a published property emits `objectWillChange`, stores the value, emits the
/// property's own signal and then triggers dependent actions, also if the value is unchanged.
/// Settings are saved at that moment. The balances are always those of the current trimmed address
/// on the current network, or empty. A failed refresh keeps the last good values; the next cycle
/// retries.
///
/// Operations that return a task start immediately and continue even if the task is destroyed; they
/// change nothing after the model is destroyed.
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
    Q_PROPERTY(
        bool hidesAmounts READ hidesAmounts WRITE setHidesAmounts NOTIFY hidesAmountsChanged FINAL)
    Q_PROPERTY(bool hasValidAddress READ hasValidAddress NOTIFY addressChanged FINAL)
    Q_PROPERTY(bool hasSigningKey READ hasSigningKey NOTIFY signingPubkeyChanged FINAL)
    Q_PROPERTY(bool hasPendingBackup READ hasPendingBackup NOTIFY pendingBackupChanged FINAL)
    /// True while a refresh cycle runs, whoever started it.
    Q_PROPERTY(bool refreshing READ isRefreshing NOTIFY refreshingChanged FINAL)
    Q_PROPERTY(QString shortAddress READ shortAddress NOTIFY addressChanged FINAL)
    Q_PROPERTY(QString solLabel READ solLabel NOTIFY solChanged FINAL)
    Q_PROPERTY(QString quibLabel READ quibLabel NOTIFY solChanged FINAL)
    Q_PROPERTY(QString rpcSourceLabel READ rpcSourceLabel NOTIFY rpcSourceLabelChanged FINAL)

public:
    /// Reads the settings and the stored public key, starts polling and probes the proxy.
    explicit WalletModel(WalletServices services, QObject *parent = nullptr);
    ~WalletModel() override;

    /// Starts a full refresh, as the refresh buttons do. Returns immediately. However often it is
    /// called during such a refresh, only one more follows.
    Q_INVOKABLE void refresh();

    /// Runs one refresh cycle: the price, then the balances, and then, in some cycles or with
    /// `force`, the chart.
    QCoro::Task<> refreshAll(bool force);
    /// Fetches the address's SOL and USDC balances. Returns true if at least one of them was
    /// updated. Replies for an address or network that is no longer current are dropped.
    QCoro::Task<bool> refreshBalance();
    /// Queries the price services one after the other until one returns a price; false if none
    /// does.
    QCoro::Task<bool> refreshPrice();
    /// Fetches the chart. A failure keeps the last one.
    QCoro::Task<> refreshWave();
    /// Checks whether the web app's RPC proxy works.
    QCoro::Task<> probeProxy();
    /// Runs a refresh cycle immediately and then after each `pollInterval`; cancels a loop that is
    /// already running.
    void startPolling();

    /// The operations of the key's session. While `isStoringKey`, creating and importing fail and
    /// removing does nothing.
    QCoro::Task<SendResult<platform::SecretBytes>>
    createWallet(KeySession::Publication publication = {});
    QCoro::Task<SendResult<QString>> importSigningKey(QStringView text,
                                                      KeySession::Publication publication = {});
    /// Loads the seed in the background with a context that has just passed.
    void unlockSigningKey(std::shared_ptr<platform::AuthenticationContext> context);
    /// The backup text (ASCII) of the stored key. Prompts the user if the key is locked; empty if
    /// they refuse.
    QCoro::Task<std::optional<platform::SecretBytes>> backupSecret();
    QCoro::Task<bool> isKeyProtected();
    QCoro::Task<> removeWallet();
    /// True while a key is being stored or removed.
    [[nodiscard]] bool isStoringKey() const;
    /// Sends SOL with `TransferSession::send`, to the current network and endpoint.
    QCoro::Task<SendResult<QString>> sendSOL(keys::Address to, double amountSOL);
    /// The same with a typed recipient, whose surrounding blanks are ignored.
    QCoro::Task<SendResult<QString>> sendSOL(QString to, double amountSOL);
    /// The wallet's transfers. They live as long as the model.
    [[nodiscard]] TransferSession &transfers() const { return *m_transfers; }
    /// What an account of the cluster must keep. Lives as long as the model.
    [[nodiscard]] RentMinimum &rentMinimum() const { return *m_rentMinimum; }
    /// A check of recipients with the addresses that this wallet knows. The model must outlive it.
    [[nodiscard]] std::unique_ptr<RecipientCheck> makeRecipientCheck();
    /// The block explorer's page for a transaction on the current network. Characters that are not
    /// allowed in a URL are encoded.
    [[nodiscard]] std::optional<QUrl> explorerURL(const QString &signature) const;

    [[nodiscard]] bool isRefreshing() const { return m_runningCycles > 0; }

    /// Makes one JSON-RPC call to the current endpoint.
    QCoro::Task<JsonResult> rpc(QString method, QJsonArray params);
    /// When the current endpoint was asked first without an answer, and has given none since; empty
    /// if it answers or was not asked yet. A refusal is an answer. Changes with `rpcURL`, too.
    [[nodiscard]] std::optional<std::chrono::system_clock::time_point> endpointSilentSince() const;

    /// The current endpoint: the user's own, otherwise the proxy if it works, otherwise the public
    /// one.
    [[nodiscard]] QUrl rpcURL() const;
    /// The public endpoint of the current network.
    [[nodiscard]] const QString &publicRPC() const;
    /// `walletSource` and `proxyEndpoint` for the current settings.
    [[nodiscard]] std::optional<QUrl> walletSourceURL() const;
    [[nodiscard]] std::optional<QUrl> proxyRPCURL() const;
    /// `core::rpcSource` for the current settings; changes with `rpcSourceLabel`.
    [[nodiscard]] RpcSource rpcSource() const;

    /// The watched address as typed, including blanks.
    [[nodiscard]] const QString &address() const { return m_watched.typed; }
    void setAddress(const QString &address);
    [[nodiscard]] SolNetwork network() const { return m_network; }
    /// Fetches everything again, also if the network is unchanged.
    void setNetwork(SolNetwork network);
    [[nodiscard]] const QString &customRPC() const { return m_customRPC; }
    void setCustomRPC(const QString &customRPC);
    [[nodiscard]] const QString &walletURL() const { return m_walletURL; }
    /// Probes the proxy of the new address.
    void setWalletURL(const QString &walletURL);
    [[nodiscard]] bool displayUSD() const { return m_displayUSD; }
    void setDisplayUSD(bool displayUSD);
    /// True if the amounts of the user's money are not to be read, on no card.
    [[nodiscard]] bool hidesAmounts() const { return m_hidesAmounts; }
    void setHidesAmounts(bool hidesAmounts);

    /// The Base58 public key of the wallet's key; empty if it only watches an address.
    [[nodiscard]] const std::optional<QString> &signingPubkey() const;
    [[nodiscard]] bool hasSigningKey() const { return signingPubkey().has_value(); }
    /// The address of the wallet's key; empty if it only watches an address.
    [[nodiscard]] std::optional<keys::Address> ownAddress() const;
    /// True if the wallet has a key, but the watched address and the figures are of another one.
    [[nodiscard]] bool watchesAnother() const;
    /// Watches the address of the wallet's key.
    void watchOwnAddress();
    /// The backup text (ASCII) of a key that was just created, until the user has saved it.
    [[nodiscard]] const std::optional<platform::SecretBytes> &pendingBackup() const;
    /// True if the key was created here and the user has never confirmed to have saved its backup.
    /// Stored before the key is, so that no crash loses it.
    [[nodiscard]] bool isBackupPending() const { return m_backupPending && hasSigningKey(); }
    /// Sets the backup text (ASCII) to show; empty once the user has saved it.
    void setPendingBackup(std::optional<platform::SecretBytes> text);
    [[nodiscard]] bool hasPendingBackup() const { return pendingBackup().has_value(); }
    /// The 32-byte seed; empty while locked.
    [[nodiscard]] const std::optional<platform::SecretBytes> &sessionSecret() const;
    /// The watched address; empty if the trimmed text is not one.
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
    /// Prices of one day in US dollars, oldest first, at most 72; empty if unknown.
    [[nodiscard]] const QList<double> &wave() const { return m_wave; }
    /// The end of the last cycle that fetched a price or a balance.
    [[nodiscard]] std::optional<std::chrono::system_clock::time_point> lastUpdated() const
    {
        return m_lastUpdated;
    }
    /// True if the last probe of the RPC proxy succeeded.
    [[nodiscard]] bool proxyOK() const { return m_proxyOK; }

    /// The labels of `labels.h` for the current figures.
    [[nodiscard]] QString shortAddress() const;
    [[nodiscard]] QString solLabel() const;
    [[nodiscard]] QString quibLabel() const;
    [[nodiscard]] QString rpcSourceLabel() const;
    /// What a text that is an amount of the user's money reads now. All views use it, except for
    /// what the user types.
    [[nodiscard]] QString ownAmount(const QString &amount) const;
    /// The value of both balances in US dollars; empty without a SOL balance or a price.
    [[nodiscard]] std::optional<double> totalUSD() const;
    /// Formats `value` for the user's locale with exactly `decimals` fraction digits. All views use
    /// it.
    [[nodiscard]] QString group(double value, int decimals) const;

Q_SIGNALS:
    /// A published property is about to change; getters still return the old value.
    void objectWillChange();
    void addressChanged();
    void networkChanged();
    void customRPCChanged();
    void walletURLChanged();
    void displayUSDChanged();
    void hidesAmountsChanged();
    void signingPubkeyChanged();
    void pendingBackupChanged();
    void backupPendingChanged();
    /// `sessionSecret` was set, also after an attempt to read the key that failed.
    void sessionSecretChanged();
    void storingKeyChanged();
    void solChanged();
    void usdcChanged();
    void priceChanged();
    void chgChanged();
    void waveChanged();
    void lastUpdatedChanged();
    void refreshingChanged();
    void endpointSilenceChanged();
    void proxyOKChanged();
    void rpcSourceLabelChanged();

private:
    /// A typed text and the address in it, if it is valid.
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

    /// An endpoint that does not answer, and when it was asked first.
    struct Silence
    {
        QUrl endpoint;
        std::chrono::system_clock::time_point since;
    };

    QCoro::Task<JsonResult> getJSON(QString url);
    QCoro::Task<> runCycle(bool force);
    void countCycles(int change);
    void noteAnswer(const Silence &asked, const JsonResult &result);
    QCoro::Task<> refreshWhileAsked();
    void watch(WatchedAddress watched);
    void setBackupPending(bool pending);
    void netFlip();
    void clearBalances();
    /// Queues `start` on the main thread; it is not called if the model has been destroyed by then.
    void startTask(std::function<void(WalletModel &)> start);

    WalletServices m_services;
    std::unique_ptr<KeySession> m_keySession;
    std::unique_ptr<TransferSession> m_transfers;
    std::unique_ptr<RentMinimum> m_rentMinimum;
    KnownAddresses m_known;

    WatchedAddress m_watched;
    SolNetwork m_network = SolNetwork::Mainnet;
    QString m_customRPC;
    QString m_walletURL;
    bool m_displayUSD = true;
    bool m_hidesAmounts = false;
    bool m_backupPending = false;
    /// What it was when the key that is being stored was not yet.
    bool m_backupWasPending = false;
    /// A stored setting that is read and kept, but not used yet.
    [[maybe_unused]] bool m_tickerShowsBalance = false;
    std::optional<double> m_sol;
    std::optional<double> m_usdc;
    std::optional<double> m_price;
    std::optional<double> m_chg;
    QList<double> m_wave;
    std::optional<std::chrono::system_clock::time_point> m_lastUpdated;
    std::optional<Silence> m_silence;
    bool m_proxyOK = false;
    /// The number of probes started; only the latest one's reply is used.
    unsigned m_probes = 0;

    /// A refresh by `refresh()` is running, or about to start.
    bool m_refreshing = false;
    /// `refresh()` was called since that refresh started.
    bool m_refreshAsked = false;
    int m_runningCycles = 0;
    std::shared_ptr<Cancellation> m_pollTask;
    /// Completed refresh cycles; chooses those that fetch the chart.
    qint64 m_tick = 0;
};

} // namespace corvane::core
