#include "core/wallet_model.h"

#include "core/blank_trimming.h"
#include "core/cancellation.h"
#include "core/endpoint_choice.h"
#include "core/labels.h"
#include "core/recipient_check.h"
#include "core/rent_minimum.h"
#include "core/transfer_session.h"
#include "core/wallet_settings.h"
#include "platform/main_queue.h"
#include "platform/settings_store.h"

#include <QPointer>

#include <utility>

namespace corvane::core {

using namespace Qt::StringLiterals;

WalletModel::WalletModel(WalletServices services, QObject *parent)
    : QObject(parent)
    , m_services(std::move(services))
    , m_keySession(std::make_unique<KeySession>(KeySessionServices{
          m_services.queue, m_services.background, m_services.keychain, m_services.signingKeys}))
    , m_transfers(std::make_unique<TransferSession>(TransferServices{
          m_services.queue, m_services.http, m_services.settings, m_services.formatter,
          *m_keySession, QUrl(m_services.endpoints.mainnet)}))
    , m_rentMinimum(std::make_unique<RentMinimum>(m_services.http))
{
    const platform::SettingsStore &settings = m_services.settings;
    m_watched = WatchedAddress(settings.string(addressSetting).value_or(QString()));
    m_network = solNetworkFromRawValue(settings.string(networkSetting).value_or(QString()))
                    .value_or(SolNetwork::Mainnet);
    m_customRPC = settings.string(customRPCSetting).value_or(QString());
    m_walletURL = settings.string(walletURLSetting).value_or(QString());
    m_displayUSD = settings.boolean(displayUSDSetting).value_or(true);
    m_hidesAmounts = settings.boolean(hidesAmountsSetting).value_or(false);
    m_backupPending = settings.boolean(backupPendingSetting).value_or(false);
    m_tickerShowsBalance = settings.boolean(tickerShowsBalanceSetting).value_or(false);

    connect(m_keySession.get(), &KeySession::aboutToChange, this, &WalletModel::objectWillChange);
    connect(m_keySession.get(), &KeySession::pubkeyChanged, this,
            &WalletModel::signingPubkeyChanged);
    connect(m_keySession.get(), &KeySession::pendingBackupChanged, this,
            &WalletModel::pendingBackupChanged);
    connect(m_keySession.get(), &KeySession::seedChanged, this, &WalletModel::sessionSecretChanged);
    connect(m_keySession.get(), &KeySession::aboutToStore, this, [this](bool isNew) {
        m_backupWasPending = m_backupPending;
        if (isNew) {
            setBackupPending(true);
        }
    });
    connect(m_keySession.get(), &KeySession::storeRefused, this,
            [this] { setBackupPending(m_backupWasPending); });
    connect(m_keySession.get(), &KeySession::adopted, this,
            [this](const keys::Address &address, bool isNew) {
                watch(WatchedAddress(address));
                setBackupPending(isNew);
            });
    connect(m_keySession.get(), &KeySession::removed, this, [this](bool isErased) {
        setAddress({});
        // A key that stays in a locked keyring is back at the next start.
        setBackupPending(m_backupPending && !isErased);
    });
    connect(m_keySession.get(), &KeySession::storingChanged, this, &WalletModel::storingKeyChanged);
    connect(m_transfers.get(), &TransferSession::balancesMayHaveChanged, this,
            &WalletModel::refresh);
    connect(m_transfers.get(), &TransferSession::paid, this,
            [this](const keys::Address &recipient) { m_known.add({recipient, Dealing::Paid}); });
    connect(this, &WalletModel::customRPCChanged, this, &WalletModel::rpcSourceLabelChanged);
    connect(this, &WalletModel::proxyOKChanged, this, &WalletModel::rpcSourceLabelChanged);
    // The labels of the balance change with it.
    connect(this, &WalletModel::hidesAmountsChanged, this, &WalletModel::solChanged);

    startPolling();
    startTask([](WalletModel &model) { model.probeProxy(); });
}

WalletModel::~WalletModel()
{
    // Without this the loop would stop only after its current sleep.
    m_pollTask->cancel();
}

void WalletModel::refresh()
{
    m_refreshAsked = true;
    if (!std::exchange(m_refreshing, true)) {
        startTask([](WalletModel &model) { model.refreshWhileAsked(); });
    }
}

WalletModel::WatchedAddress::WatchedAddress(const QString &text)
    : typed(text)
    , address(keys::Address::fromText(trimmingBlanks(text)))
{}

WalletModel::WatchedAddress::WatchedAddress(const keys::Address &known)
    : typed(known.text())
    , address(known)
{}

void WalletModel::setAddress(const QString &address)
{
    watch(WatchedAddress(address));
}

void WalletModel::watch(WatchedAddress watched)
{
    const QString old = address();
    publish(m_watched, std::move(watched), &WalletModel::addressChanged);

    m_services.settings.setString(addressSetting, address());
    if (trimmingBlanks(address()) == trimmingBlanks(old)) {
        return;
    }
    clearBalances();
    if (hasValidAddress()) {
        startTask([](WalletModel &model) { model.refreshBalance(); });
    }
}

void WalletModel::setNetwork(SolNetwork network)
{
    publish(m_network, network, &WalletModel::networkChanged);
    m_services.settings.setString(networkSetting, rawValue(m_network));
    netFlip();
}

void WalletModel::setCustomRPC(const QString &customRPC)
{
    publish(m_customRPC, customRPC, &WalletModel::customRPCChanged);
    m_services.settings.setString(customRPCSetting, m_customRPC);
}

void WalletModel::setWalletURL(const QString &walletURL)
{
    publish(m_walletURL, walletURL, &WalletModel::walletURLChanged);
    m_services.settings.setString(walletURLSetting, m_walletURL);
    startTask([](WalletModel &model) { model.probeProxy(); });
}

void WalletModel::setDisplayUSD(bool displayUSD)
{
    publish(m_displayUSD, displayUSD, &WalletModel::displayUSDChanged);
    m_services.settings.setBoolean(displayUSDSetting, m_displayUSD);
}

void WalletModel::setHidesAmounts(bool hidesAmounts)
{
    publish(m_hidesAmounts, hidesAmounts, &WalletModel::hidesAmountsChanged);
    m_services.settings.setBoolean(hidesAmountsSetting, m_hidesAmounts);
}

QCoro::Task<SendResult<platform::SecretBytes>>
WalletModel::createWallet(KeySession::Publication publication)
{
    return m_keySession->create(std::move(publication));
}

QCoro::Task<SendResult<QString>> WalletModel::importSigningKey(QStringView text,
                                                               KeySession::Publication publication)
{
    return m_keySession->importText(text, std::move(publication));
}

void WalletModel::unlockSigningKey(std::shared_ptr<platform::AuthenticationContext> context)
{
    m_keySession->unlock(std::move(context));
}

QCoro::Task<std::optional<platform::SecretBytes>> WalletModel::backupSecret()
{
    return m_keySession->backupSecret();
}

QCoro::Task<bool> WalletModel::isKeyProtected()
{
    return m_keySession->isProtected();
}

QCoro::Task<> WalletModel::removeWallet()
{
    return m_keySession->remove();
}

bool WalletModel::isStoringKey() const
{
    return m_keySession->isStoring();
}

const std::optional<QString> &WalletModel::signingPubkey() const
{
    return m_keySession->pubkey();
}

std::optional<keys::Address> WalletModel::ownAddress() const
{
    const std::optional<QString> &pubkey = signingPubkey();
    return pubkey ? keys::Address::fromText(*pubkey) : std::nullopt;
}

bool WalletModel::watchesAnother() const
{
    const std::optional<keys::Address> own = ownAddress();
    return own && hasValidAddress() && own != validAddress();
}

void WalletModel::watchOwnAddress()
{
    if (const std::optional<keys::Address> own = ownAddress()) {
        watch(WatchedAddress(*own));
    }
}

const std::optional<platform::SecretBytes> &WalletModel::pendingBackup() const
{
    return m_keySession->pendingBackup();
}

void WalletModel::setPendingBackup(std::optional<platform::SecretBytes> text)
{
    const bool isSaved = !text;
    m_keySession->setPendingBackup(std::move(text));
    if (isSaved) {
        setBackupPending(false);
    }
}

void WalletModel::setBackupPending(bool pending)
{
    if (m_backupPending != pending) {
        publish(m_backupPending, pending, &WalletModel::backupPendingChanged);
        m_services.settings.setBoolean(backupPendingSetting, pending);
    }
}

const std::optional<platform::SecretBytes> &WalletModel::sessionSecret() const
{
    return m_keySession->seed();
}

QCoro::Task<SendResult<QString>> WalletModel::sendSOL(keys::Address to, double amountSOL)
{
    return m_transfers->send(std::move(to), amountSOL, {rpcURL(), m_network});
}

QCoro::Task<SendResult<QString>> WalletModel::sendSOL(QString to, double amountSOL)
{
    const std::optional<keys::Address> recipient = keys::Address::fromText(trimmingBlanks(to));
    if (!recipient) {
        co_return SendResult<QString>(SendError::badRecipient());
    }
    auto sending = sendSOL(*recipient, amountSOL);
    co_return co_await sending;
}

std::unique_ptr<RecipientCheck> WalletModel::makeRecipientCheck()
{
    return std::make_unique<RecipientCheck>(
        RecipientCheckServices{m_services.queue, m_services.http, m_services.signingKeys}, m_known);
}

std::optional<QUrl> WalletModel::explorerURL(const QString &signature) const
{
    QString text = m_services.endpoints.explorer + u"/tx/"_s +
                   QString::fromLatin1(QUrl::toPercentEncoding(signature));
    if (m_network == SolNetwork::Devnet) {
        text += u"?cluster=devnet"_s;
    }
    const QUrl url(text, QUrl::StrictMode);
    return url.isValid() ? std::optional(url) : std::nullopt;
}

const QString &WalletModel::publicRPC() const
{
    return m_services.endpoints.defaultRPC(m_network);
}

QUrl WalletModel::rpcURL() const
{
    if (const std::optional<QUrl> custom = customEndpoint(m_customRPC)) {
        return *custom;
    }
    if (m_proxyOK) {
        if (const std::optional<QUrl> proxy = proxyRPCURL()) {
            return *proxy;
        }
    }
    return QUrl(m_services.endpoints.defaultRPC(m_network));
}

std::optional<std::chrono::system_clock::time_point> WalletModel::endpointSilentSince() const
{
    return m_silence && m_silence->endpoint == rpcURL() ? std::optional(m_silence->since)
                                                        : std::nullopt;
}

std::optional<QUrl> WalletModel::walletSourceURL() const
{
    return walletSource(m_walletURL, m_services.endpoints.walletApp, m_services.files);
}

std::optional<QUrl> WalletModel::proxyRPCURL() const
{
    return proxyEndpoint(walletSourceURL(), m_network);
}

QString WalletModel::shortAddress() const
{
    return core::shortAddress(address());
}

QString WalletModel::solLabel() const
{
    return ownAmount(core::solLabel(m_services.formatter, m_sol));
}

QString WalletModel::quibLabel() const
{
    return ownAmount(core::quibLabel(m_services.formatter, m_sol));
}

QString WalletModel::ownAmount(const QString &amount) const
{
    return core::ownAmount(amount, m_hidesAmounts);
}

RpcSource WalletModel::rpcSource() const
{
    return core::rpcSource(m_customRPC, m_proxyOK);
}

QString WalletModel::rpcSourceLabel() const
{
    return core::rpcSourceLabel(rpcSource());
}

std::optional<double> WalletModel::totalUSD() const
{
    return core::totalUSD(m_sol, m_usdc, m_price);
}

QString WalletModel::group(double value, int decimals) const
{
    return core::group(m_services.formatter, value, decimals);
}

void WalletModel::netFlip()
{
    clearBalances();
    startTask([](WalletModel &model) { model.refreshAll(true); });
}

void WalletModel::clearBalances()
{
    publish(m_sol, std::optional<double>(), &WalletModel::solChanged);
    publish(m_usdc, std::optional<double>(), &WalletModel::usdcChanged);
}

void WalletModel::startTask(std::function<void(WalletModel &)> start)
{
    m_services.queue.post([model = QPointer(this), start = std::move(start)] {
        if (model) {
            start(*model);
        }
    });
}

} // namespace corvane::core
