#include "core/key_session.h"

#include "keys/secret_key_text.h"
#include "platform/authenticator.h"
#include "platform/background_tasks.h"
#include "platform/main_queue.h"
#include "platform/signing_keys.h"

#include <QPointer>

namespace corvane::core {

using platform::SecretBytes;

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

platform::Completion<std::shared_ptr<KeySession::MaybeSecret>> KeySession::inBackground(Read read)
{
    const platform::Completion<std::shared_ptr<MaybeSecret>> completion;
    m_services.background.run(
        [completion, read = std::move(read), vault = m_vault, &queue = m_services.queue]() mutable {
            const auto secret = std::make_shared<MaybeSecret>(read(vault));
            queue.post([completion, secret] { completion.resolve(secret); });
        });
    return completion;
}

QCoro::Task<bool> KeySession::load(Read read)
{
    const QPointer<KeySession> self(this);
    const unsigned asked = m_keyChanges;
    const auto pending = inBackground(std::move(read));
    const std::shared_ptr<MaybeSecret> secret = co_await pending;
    // If the key was replaced or removed during the prompt, the old key must not be restored, and
    // the user's consent does not apply to the new one.
    if (!self || self->m_keyChanges != asked) {
        co_return false;
    }
    self->m_seed = std::move(*secret);
    co_return self->m_seed.has_value();
}

SendResult<QString> KeySession::adopt(SecretBytes seed)
{
    const auto publicKey = m_services.signingKeys.publicKey(seed);
    if (!publicKey) {
        return SendError::badKey();
    }
    const keys::Address address(*publicKey);
    const platform::KeychainStatus status = m_vault.storeStatus(seed, address);
    if (status != platform::KeychainStatus::Success) {
        return SendError::keychainRefused(status);
    }
    ++m_keyChanges;
    publish(m_pubkey, std::optional(address.text()), &KeySession::pubkeyChanged);
    Q_EMIT adopted(address);
    m_seed = std::move(seed);
    return address.text();
}

SendResult<SecretBytes> KeySession::create()
{
    SecretBytes seed = m_services.signingKeys.makeSeed();
    const auto publicKey = m_services.signingKeys.publicKey(seed);
    if (!publicKey) {
        return SendError::badKey();
    }
    SecretBytes backup = keys::backupText(seed, *publicKey);
    const SendResult<QString> pubkey = adopt(std::move(seed));
    if (const auto *error = std::get_if<SendError>(&pubkey)) {
        return *error;
    }
    setPendingBackup(backup.clone());
    return backup;
}

SendResult<QString> KeySession::importText(QStringView text)
{
    MaybeSecret seed = keys::seedFromText(text);
    if (!seed) {
        return SendError::badKey();
    }
    return adopt(*std::move(seed));
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

void KeySession::setPendingBackup(std::optional<SecretBytes> text)
{
    publish(m_pendingBackup, std::move(text), &KeySession::pendingBackupChanged);
}

void KeySession::remove()
{
    m_vault.remove();
    ++m_keyChanges;
    publish(m_pubkey, std::optional<QString>(), &KeySession::pubkeyChanged);
    m_seed.reset();
    setPendingBackup(std::nullopt);
}

} // namespace corvane::core
