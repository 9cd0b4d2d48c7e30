#include "core/key_session.h"

#include "keys/secret_key_text.h"
#include "platform/authenticator.h"
#include "platform/background_tasks.h"
#include "platform/main_queue.h"
#include "platform/signing_keys.h"

#include <QPointer>

#include <utility>

namespace corvane::core {

using platform::SecretBytes;

struct KeySession::Keypair
{
    SecretBytes seed;
    keys::Address address;
};

KeySession::KeySession(KeySessionServices services, QObject *parent)
    : QObject(parent)
    , m_services(services)
    , m_vault(services.keychain)
    , m_pubkey(m_vault.rememberedPubkey())
{
    verify();
}

void KeySession::verify()
{
    m_services.background.run([session = QPointer(this), asked = m_keyChanges, vault = m_vault,
                               &queue = m_services.queue] {
        queue.post([session, asked, pubkey = vault.pubkey()] {
            if (session && session->m_keyChanges == asked && session->m_pubkey != pubkey) {
                session->publish(session->m_pubkey, pubkey, &KeySession::pubkeyChanged);
            }
        });
    });
}

template <typename Result>
platform::Completion<std::shared_ptr<Result>>
KeySession::inBackground(std::function<Result(keys::KeyVault &)> use)
{
    const platform::Completion<std::shared_ptr<Result>> completion;
    m_services.background.run(
        [completion, use = std::move(use), vault = m_vault, &queue = m_services.queue]() mutable {
            const auto result = std::make_shared<Result>(use(vault));
            queue.post([completion, result] { completion.resolve(result); });
        });
    return completion;
}

QCoro::Task<bool> KeySession::load(Read read)
{
    const QPointer<KeySession> self(this);
    const unsigned asked = m_keyChanges;
    const auto pending = inBackground<MaybeSecret>(std::move(read));
    const std::shared_ptr<MaybeSecret> secret = co_await pending;
    // If the key was replaced or removed during the prompt, the old key must not be restored, and
    // the user's consent does not apply to the new one.
    if (!self || self->m_keyChanges != asked) {
        co_return false;
    }
    self->m_seed = std::move(*secret);
    Q_EMIT self->seedChanged();
    co_return self && self->m_seed.has_value();
}

QCoro::Task<std::optional<SendError>> KeySession::adopt(std::shared_ptr<Keypair> keypair,
                                                        std::shared_ptr<SecretBytes> backup,
                                                        Publication publication)
{
    if (m_storing) {
        co_return SendError::keychainRefused(platform::KeychainStatus::InternalError);
    }
    const QPointer<KeySession> self(this);
    const bool isNew = backup != nullptr;
    setStoring(true);
    Q_EMIT aboutToStore(isNew);
    const auto pending = inBackground<platform::KeychainStatus>([keypair](keys::KeyVault &vault) {
        return vault.storeStatus(keypair->seed, keypair->address);
    });
    const std::shared_ptr<platform::KeychainStatus> status = co_await pending;
    if (!self) {
        co_return std::nullopt;
    }
    if (*status != platform::KeychainStatus::Success) {
        Q_EMIT storeRefused();
        setStoring(false);
        co_return SendError::keychainRefused(*status);
    }
    ++m_keyChanges;
    const auto change = [this, isNew, &keypair, &backup] {
        publish(m_pubkey, std::optional(keypair->address.text()), &KeySession::pubkeyChanged);
        Q_EMIT adopted(keypair->address, isNew);
        m_seed = std::move(keypair->seed);
        Q_EMIT seedChanged();
        if (backup) {
            setPendingBackup(backup->clone());
        }
    };
    if (publication) {
        publication(change);
    } else {
        change();
    }
    setStoring(false);
    co_return std::nullopt;
}

QCoro::Task<SendResult<SecretBytes>> KeySession::create(Publication publication)
{
    using Result = SendResult<SecretBytes>;
    SecretBytes seed = m_services.signingKeys.makeSeed();
    const auto publicKey = m_services.signingKeys.publicKey(seed);
    if (!publicKey) {
        co_return Result(SendError::badKey());
    }
    const auto backup = std::make_shared<SecretBytes>(keys::backupText(seed, *publicKey));
    const auto keypair = std::make_shared<Keypair>(std::move(seed), keys::Address(*publicKey));
    auto adopting = adopt(keypair, backup, std::move(publication));
    if (const std::optional<SendError> error = co_await adopting) {
        co_return Result(*error);
    }
    co_return Result(std::move(*backup));
}

QCoro::Task<SendResult<QString>> KeySession::importText(QStringView text, Publication publication)
{
    using Result = SendResult<QString>;
    MaybeSecret seed = keys::seedFromText(text);
    const auto publicKey = seed ? m_services.signingKeys.publicKey(*seed) : std::nullopt;
    if (!publicKey) {
        co_return Result(SendError::badKey());
    }
    const keys::Address address(*publicKey);
    const auto keypair = std::make_shared<Keypair>(*std::move(seed), address);
    auto adopting = adopt(keypair, nullptr, std::move(publication));
    if (const std::optional<SendError> error = co_await adopting) {
        co_return Result(*error);
    }
    co_return Result(address.text());
}

void KeySession::unlock(std::shared_ptr<platform::AuthenticationContext> context)
{
    if (!m_pubkey || m_seed) {
        return;
    }
    load([context = std::move(context)](keys::KeyVault &vault) {
        return vault.loadSecret(*context);
    });
}

QCoro::Task<bool> KeySession::open(platform::PresencePrompt prompt)
{
    if (m_seed) {
        co_return true;
    }
    auto loading = load([prompt](keys::KeyVault &vault) { return vault.loadSecret(prompt); });
    co_return co_await loading;
}

std::optional<keys::TransferSigner> KeySession::transferSigner(keys::Address recipient,
                                                               keys::Lamports amount) const
{
    return m_seed ? keys::TransferSigner::make(m_services.signingKeys, *m_seed,
                                               std::move(recipient), amount)
                  : std::nullopt;
}

QCoro::Task<std::optional<SecretBytes>> KeySession::backupSecret()
{
    const QPointer<KeySession> self(this);
    auto opening =
        open({platform::PresenceReason::Reveal, QStringLiteral("reveal your wallet backup key")});
    if (const bool isOpen = co_await opening; !self || !isOpen) {
        co_return std::nullopt;
    }
    const auto publicKey = m_services.signingKeys.publicKey(*m_seed);
    if (!publicKey) {
        co_return std::nullopt;
    }
    co_return keys::backupText(*m_seed, *publicKey);
}

QCoro::Task<bool> KeySession::isProtected()
{
    const auto pending =
        inBackground<bool>([](keys::KeyVault &vault) { return vault.isProtected(); });
    const std::shared_ptr<bool> isProtected = co_await pending;
    co_return *isProtected;
}

void KeySession::setPendingBackup(std::optional<SecretBytes> text)
{
    publish(m_pendingBackup, std::move(text), &KeySession::pendingBackupChanged);
}

QCoro::Task<> KeySession::remove()
{
    if (m_storing) {
        co_return;
    }
    const QPointer<KeySession> self(this);
    setStoring(true);
    const auto pending = inBackground<bool>([](keys::KeyVault &vault) { return vault.remove(); });
    const std::shared_ptr<bool> isErased = co_await pending;
    if (!self) {
        co_return;
    }
    ++m_keyChanges;
    publish(m_pubkey, std::optional<QString>(), &KeySession::pubkeyChanged);
    m_seed.reset();
    Q_EMIT seedChanged();
    setPendingBackup(std::nullopt);
    Q_EMIT removed(*isErased);
    setStoring(false);
}

void KeySession::setStoring(bool storing)
{
    m_storing = storing;
    Q_EMIT storingChanged();
}

} // namespace corvane::core
