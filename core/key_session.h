#pragma once

#include "core/send_error.h"
#include "keys/key_vault.h"
#include "keys/transfer_signer.h"
#include "platform/completion.h"
#include "platform/secret_bytes.h"

#include <QCoroTask>

#include <QObject>
#include <QString>
#include <QStringView>

#include <functional>
#include <memory>
#include <optional>

namespace corvane::platform {
class AuthenticationContext;
class BackgroundTasks;
class MainQueue;
class SigningKeys;
} // namespace corvane::platform

namespace corvane::core {

/// The services of a session, all of which must outlive it.
struct KeySessionServices
{
    platform::MainQueue &queue;
    platform::BackgroundTasks &background;
    platform::Keychain &keychain;
    platform::SigningKeys &signingKeys;
};

/// The wallet's signing key, from its creation to its removal:
///
/// | state    | pubkey | seed     | meaning                                 |
/// |----------|--------|----------|-----------------------------------------|
/// | no key   | none   | none     | watches an address, or nothing          |
/// | locked   | text   | none     | stored; a transfer or a backup will ask |
/// | unlocked | text   | 32 bytes | a transfer is one click                 |
///
/// `create` and `importText` lead from any state to unlocked, `remove` from any state to no key. A
/// successful read of the vault leads from locked to unlocked. Only `remove` wipes the seed.
///
/// The vault is used on background threads, because the keychain may be slow and may prompt the
/// user; everything else runs on the main thread. Operations that return a task start immediately
/// and continue even if the task is destroyed; they change nothing after the session is destroyed.
///
/// At most one key is stored or removed at a time: while `isStoring`, `create` and `importText`
/// fail and `remove` does nothing.
class KeySession : public QObject
{
    Q_OBJECT

public:
    /// Calls its argument exactly once, immediately: the change of the published properties, which
    /// the caller may want to animate. An empty function stands for a plain call.
    using Publication = std::function<void(const std::function<void()> &change)>;

    /// Starts with the remembered public key, and queries the keychain, which may be slow, in the
    /// background.
    explicit KeySession(KeySessionServices services, QObject *parent = nullptr);

    /// Creates and stores a new random key and sets `pendingBackup`. Returns the backup text
    /// (ASCII).
    QCoro::Task<SendResult<platform::SecretBytes>> create(Publication publication = {});
    /// Parses and stores a pasted key and returns its public key. `text` should be in guarded
    /// memory; it is not used after the call has returned its task.
    QCoro::Task<SendResult<QString>> importText(QStringView text, Publication publication = {});
    /// Loads the seed with a context that has just passed. Does nothing unless locked.
    void unlock(std::shared_ptr<platform::AuthenticationContext> context);
    /// Unlocks the seed, with a prompt to the user if it is locked. False if the user refuses, or
    /// if the key was replaced or removed in the meantime.
    QCoro::Task<bool> open(platform::PresencePrompt prompt);
    /// The key for one payment of `amount` to `recipient`, which keeps it even if the session's is
    /// removed; empty while locked.
    [[nodiscard]] std::optional<keys::TransferSigner> transferSigner(keys::Address recipient,
                                                                     keys::Lamports amount) const;
    /// The backup text (ASCII) of the key. Prompts the user if the key is locked; empty if they
    /// refuse.
    QCoro::Task<std::optional<platform::SecretBytes>> backupSecret();
    /// True if reading the stored key asks for the user's presence; false if it does not or if the
    /// keychain does not tell.
    QCoro::Task<bool> isProtected();
    /// Removes the key from the keychain and then from memory, without a prompt.
    QCoro::Task<> remove();
    /// True while a key is being stored or removed.
    [[nodiscard]] bool isStoring() const { return m_storing; }

    /// The Base58 public key as stored in the keychain; empty if there is no key. For display only,
    /// never for signing.
    [[nodiscard]] const std::optional<QString> &pubkey() const { return m_pubkey; }
    /// The 32-byte seed; empty while locked.
    [[nodiscard]] const std::optional<platform::SecretBytes> &seed() const { return m_seed; }
    /// The backup text (ASCII) of a key that was just created, until the user has saved it.
    [[nodiscard]] const std::optional<platform::SecretBytes> &pendingBackup() const
    {
        return m_pendingBackup;
    }
    void setPendingBackup(std::optional<platform::SecretBytes> text);

Q_SIGNALS:
    /// `pubkey` or `pendingBackup` is about to change; getters still return the old value.
    void aboutToChange();
    void pubkeyChanged();
    void pendingBackupChanged();
    /// `seed` was set, also after an attempt that found none.
    void seedChanged();
    void storingChanged();
    /// A key is about to be stored. `isNew`: it was created here, and nobody has a backup of it.
    void aboutToStore(bool isNew);
    /// The keychain refused it.
    void storeRefused();
    /// A key was created or imported: `pubkey` is new already, `seed` is not set yet.
    void adopted(const corvane::keys::Address &address, bool isNew);
    /// The key was removed; all properties are empty already. `isErased`: also from the keychain.
    void removed(bool isErased);

private:
    using MaybeSecret = std::optional<platform::SecretBytes>;
    using Read = std::function<MaybeSecret(keys::KeyVault &)>;
    /// A seed with the address of its key.
    struct Keypair;

    template <typename T>
    void publish(T &property, T value, void (KeySession::*changed)())
    {
        Q_EMIT aboutToChange();
        property = std::move(value);
        Q_EMIT(this->*changed)();
    }

    /// Updates the public key from the keychain, unless the key has changed in the meantime.
    void verify();
    /// Calls `use` on a background thread.
    template <typename Result>
    platform::Completion<std::shared_ptr<Result>>
    inBackground(std::function<Result(keys::KeyVault &)> use);
    /// Reads the vault in the background and stores the result, which may be empty, as the seed,
    /// unless the key has changed in the meantime. Returns true if that sets a seed.
    QCoro::Task<bool> load(Read read);
    /// Stores the key, and publishes it with `backup` as `pendingBackup` unless that is empty.
    /// Returns an error if the keychain refuses.
    QCoro::Task<std::optional<SendError>> adopt(std::shared_ptr<Keypair> keypair,
                                                std::shared_ptr<platform::SecretBytes> backup,
                                                Publication publication);
    void setStoring(bool storing);

    KeySessionServices m_services;
    keys::KeyVault m_vault;
    std::optional<QString> m_pubkey;
    MaybeSecret m_seed;
    MaybeSecret m_pendingBackup;
    /// The number of times that the key was replaced or removed.
    unsigned m_keyChanges = 0;
    bool m_storing = false;
};

} // namespace corvane::core
