#pragma once

#include "core/send_error.h"
#include "keys/key_vault.h"
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
/// The vault is read on a background thread, because this may prompt the user; everything else runs
/// on the main thread. Operations that return a task start immediately and continue even if the
/// task is destroyed; they change nothing after the session is destroyed.
class KeySession : public QObject
{
    Q_OBJECT

public:
    /// Starts with the remembered public key, and queries the keychain, which may be slow, in the
    /// background.
    explicit KeySession(KeySessionServices services, QObject *parent = nullptr);

    /// Creates and stores a new random key and sets `pendingBackup`. Returns the backup text
    /// (ASCII).
    [[nodiscard]] SendResult<platform::SecretBytes> create();
    /// Parses and stores a pasted key and returns its public key. `text` should be in guarded
    /// memory.
    [[nodiscard]] SendResult<QString> importText(QStringView text);
    /// Loads the seed with a context that has just passed. Does nothing unless locked.
    void unlock(std::shared_ptr<platform::AuthenticationContext> context);
    /// Unlocks the seed, with a prompt to the user if it is locked. False if the user refuses, or
    /// if the key was replaced or removed in the meantime.
    QCoro::Task<bool> open(platform::PresencePrompt prompt);
    /// The backup text (ASCII) of the key. Prompts the user if the key is locked; empty if they
    /// refuse.
    QCoro::Task<std::optional<platform::SecretBytes>> backupSecret();
    /// Removes the key from memory and from the keychain, without a prompt.
    void remove();

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
    /// A key was created or imported: `pubkey` is new already, `seed` is not set yet.
    void adopted(const corvane::keys::Address &address);

private:
    using MaybeSecret = std::optional<platform::SecretBytes>;
    using Read = std::function<MaybeSecret(keys::KeyVault &)>;

    template <typename T>
    void publish(T &property, T value, void (KeySession::*changed)())
    {
        Q_EMIT aboutToChange();
        property = std::move(value);
        Q_EMIT(this->*changed)();
    }

    /// Updates the public key from the keychain, unless the key has changed in the meantime.
    void verify();
    /// Reads the vault on a background thread.
    platform::Completion<std::shared_ptr<MaybeSecret>> inBackground(Read read);
    /// Reads the vault in the background and stores the result, which may be empty, as the seed,
    /// unless the key has changed in the meantime. Returns true if that sets a seed.
    QCoro::Task<bool> load(Read read);
    /// Stores `seed` as the wallet's key; returns the public key.
    SendResult<QString> adopt(platform::SecretBytes seed);

    KeySessionServices m_services;
    keys::KeyVault m_vault;
    std::optional<QString> m_pubkey;
    MaybeSecret m_seed;
    MaybeSecret m_pendingBackup;
    /// The number of times that the key was replaced or removed.
    unsigned m_keyChanges = 0;
};

} // namespace corvane::core
