// The wallet's own key, from its creation to a signed transfer:
//
// | state    | signingPubkey | sessionSecret | meaning                                   |
// |----------|---------------|---------------|-------------------------------------------|
// | no key   | none          | none          | watches an address, or nothing            |
// | locked   | text          | none          | stored; a transfer or a backup will ask   |
// | unlocked | text          | the seed      | a transfer is one click                   |
//
// Creating and importing lead from any state to unlocked, removing from any state to no key. A
// successful read of the vault leads from locked to unlocked. Nothing but removing forgets the
// seed.

#include "core/blank_trimming.h"
#include "core/transfer_replies.h"
#include "core/wallet_model.h"
#include "keys/base58.h"
#include "keys/secret_key_text.h"
#include "keys/transfer.h"
#include "platform/authenticator.h"
#include "platform/background_tasks.h"
#include "platform/completion.h"
#include "platform/main_queue.h"
#include "platform/signing_keys.h"

#include <QJsonObject>
#include <QPointer>

namespace corvane::core {

using namespace Qt::StringLiterals;

namespace {

using platform::SecretBytes;
using MaybeSecret = std::optional<SecretBytes>;

} // namespace

platform::Completion<std::shared_ptr<MaybeSecret>>
WalletModel::inBackground(std::function<MaybeSecret(keys::KeyVault &)> read)
{
    const platform::Completion<std::shared_ptr<MaybeSecret>> completion;
    m_services.background.run(
        [completion, read = std::move(read), vault = m_vault, &queue = m_services.queue]() mutable {
            const auto secret = std::make_shared<MaybeSecret>(read(vault));
            queue.post([completion, secret] { completion.resolve(secret); });
        });
    return completion;
}

SendResult<QString> WalletModel::adopt(SecretBytes seed)
{
    const auto publicKey = m_services.signingKeys.publicKey(seed);
    if (!publicKey) {
        return SendError::badKey();
    }
    QString text = keys::Base58::encode(*publicKey);
    const platform::KeychainStatus status = m_vault.storeStatus(seed, text);
    if (status != platform::keychainSuccess) {
        return SendError::keychainRefused(status);
    }
    ++m_keyChanges;
    publish(m_signingPubkey, std::optional(text), &WalletModel::signingPubkeyChanged);
    setAddress(text);
    m_sessionSecret = std::move(seed);
    return text;
}

SendResult<SecretBytes> WalletModel::createWallet()
{
    SecretBytes seed = m_services.signingKeys.makeSeed();
    const auto publicKey = m_services.signingKeys.publicKey(seed);
    if (!publicKey) {
        return SendError::badKey();
    }
    SecretBytes backup = keys::backupText(seed, *publicKey);
    const SendResult<QString> adopted = adopt(std::move(seed));
    if (const auto *error = std::get_if<SendError>(&adopted)) {
        return *error;
    }
    setPendingBackup(backup.clone());
    return backup;
}

SendResult<QString> WalletModel::importSigningKey(QStringView text)
{
    MaybeSecret seed = keys::seedFromText(text);
    if (!seed) {
        return SendError::badKey();
    }
    return adopt(*std::move(seed));
}

void WalletModel::unlockSigningKey(std::shared_ptr<platform::AuthenticationContext> context)
{
    if (!m_signingPubkey || m_sessionSecret) {
        return;
    }
    loadSession([context = std::move(context)](keys::KeyVault &vault) {
        return vault.loadSecret(*context);
    });
}

QCoro::Task<bool> WalletModel::loadSession(std::function<MaybeSecret(keys::KeyVault &)> read)
{
    const QPointer<WalletModel> self(this);
    const unsigned asked = m_keyChanges;
    const auto pending = inBackground(std::move(read));
    const std::shared_ptr<MaybeSecret> secret = co_await pending;
    // A key that was replaced or removed while the user was asked must not come back to life, and
    // the answer is none for the key that there is now.
    if (!self || self->m_keyChanges != asked) {
        co_return false;
    }
    self->m_sessionSecret = std::move(*secret);
    co_return self->m_sessionSecret.has_value();
}

QCoro::Task<MaybeSecret> WalletModel::backupSecret()
{
    const QPointer<WalletModel> self(this);
    if (!m_sessionSecret) {
        auto loading = loadSession([](keys::KeyVault &vault) {
            return vault.loadSecret(u"reveal your wallet backup key"_s);
        });
        if (const bool loaded = co_await loading; !self || !loaded) {
            co_return std::nullopt;
        }
    }
    const auto publicKey = m_services.signingKeys.publicKey(*m_sessionSecret);
    if (!publicKey) {
        co_return std::nullopt;
    }
    co_return keys::backupText(*m_sessionSecret, *publicKey);
}

void WalletModel::setPendingBackup(MaybeSecret text)
{
    publish(m_pendingBackup, std::move(text), &WalletModel::pendingBackupChanged);
}

void WalletModel::removeWallet()
{
    m_vault.remove();
    ++m_keyChanges;
    publish(m_signingPubkey, std::optional<QString>(), &WalletModel::signingPubkeyChanged);
    m_sessionSecret.reset();
    setPendingBackup(std::nullopt);
    setAddress({});
}

QCoro::Task<SendResult<QString>> WalletModel::sendSOL(QString to, double amountSOL)
{
    using Result = SendResult<QString>;
    const QPointer<WalletModel> self(this);

    const QStringView recipientText = trimmingBlanks(to);
    const auto recipient = keys::Base58::decode32(recipientText);
    if (!recipient) {
        co_return Result(SendError::badRecipient());
    }
    if (!(amountSOL > 0)) {
        co_return Result(SendError::badAmount());
    }
    const auto lamports = keys::Lamports::fromSol(amountSOL);

    if (!m_sessionSecret) {
        const QString prompt = u"send "_s + group(amountSOL, 4) + u" SOL"_s;
        auto loading =
            loadSession([prompt](keys::KeyVault &vault) { return vault.loadSecret(prompt); });
        if (const bool loaded = co_await loading; !self || !loaded) {
            co_return Result(SendError::locked());
        }
    }
    // The session may forget its seed while the cluster is asked.
    const SecretBytes seed = m_sessionSecret->clone();
    const auto sender = m_services.signingKeys.publicKey(seed);
    if (!sender) {
        co_return Result(SendError::locked());
    }

    auto blockhashCall =
        rpc(u"getLatestBlockhash"_s, {QJsonObject{{u"commitment"_s, u"finalized"_s}}});
    const JsonResult blockhashReply = co_await blockhashCall;
    const auto *blockhashResult = std::get_if<QJsonValue>(&blockhashReply);
    const auto blockhash =
        blockhashResult != nullptr ? readBlockhash(*blockhashResult) : std::nullopt;
    if (!self || !blockhash) {
        co_return Result(SendError::rpc(u"couldn't fetch a recent blockhash"_s));
    }

    const keys::Transfer transfer{*sender, *recipient, lamports, *blockhash};
    const std::vector<std::uint8_t> message = keys::transferMessage(transfer);
    const auto signature = m_services.signingKeys.sign(seed, message);
    if (!signature) {
        co_return Result(SendError::badKey());
    }
    const QString transaction = QString::fromLatin1(keys::signedTransaction(*signature, message));
    const QJsonObject configuration{{u"encoding"_s, u"base64"_s},
                                    {u"preflightCommitment"_s, u"confirmed"_s}};
    auto sendCall = rpc(u"sendTransaction"_s, {transaction, configuration});
    const JsonResult sent = co_await sendCall;
    const auto *result = std::get_if<QJsonValue>(&sent);
    if (result == nullptr) {
        co_return Result(SendError::rpc(u"send failed — check balance covers amount + fee"_s));
    }
    const std::optional<QString> signatureText = readSignature(*result);
    if (!signatureText) {
        co_return Result(SendError::rpc(u"unexpected RPC reply"_s));
    }
    if (self) {
        refresh();
    }
    co_return Result(*signatureText);
}

std::optional<QUrl> WalletModel::explorerURL(const QString &signature) const
{
    QString text = m_services.endpoints.explorer + u"/tx/"_s + signature;
    if (m_network == SolNetwork::Devnet) {
        text += u"?cluster=devnet"_s;
    }
    const QUrl url(text, QUrl::StrictMode);
    return url.isValid() ? std::optional(url) : std::nullopt;
}

} // namespace corvane::core
