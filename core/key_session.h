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

/// What the session needs. All of it must outlive the session.
struct KeySessionServices
{
    platform::MainQueue &queue;
    platform::BackgroundTasks &background;
    platform::Keychain &keychain;
    platform::SigningKeys &signingKeys;
};

/// The wallet's own key, from its creation to its removal:
///
/// | state    | pubkey | seed     | meaning                                 |
/// |----------|--------|----------|-----------------------------------------|
/// | no key   | none   | none     | watches an address, or nothing          |
/// | locked   | text   | none     | stored; a transfer or a backup will ask |
/// | unlocked | text   | 32 bytes | a transfer is one click                 |
///
/// `create` and `importText` lead from any state to unlocked, `remove` from any state to no key. A
/// successful read of the vault leads from locked to unlocked. Only `remove` forgets the seed.
///
/// The vault is read on a background thread, because the user may be asked meanwhile; everything
/// else happens on the main thread. The operations that return a task start at once and go on even
/// if the task is dropped; they write nothing after the session is gone.
class KeySession : public QObject
{
    Q_OBJECT

public:
    /// Begins with the public key that is remembered, and asks the keychain itself, which may take
    /// its time, in the background.
    explicit KeySession(KeySessionServices services, QObject *parent = nullptr);

    /// Makes a new random key, stores it and shows it for backup. Gives the backup text (ASCII).
    [[nodiscard]] SendResult<platform::SecretBytes> create();
    /// Stores the key that somebody pasted and gives its public key. `text` should lie in guarded
    /// memory.
    [[nodiscard]] SendResult<QString> importText(QStringView text);
    /// Loads the seed, opened by a context that has just passed. Does nothing unless locked.
    void unlock(std::shared_ptr<platform::AuthenticationContext> context);
    /// True when the seed is held in the end. While it is not, the user is asked with `prompt`;
    /// false when they refuse, and when the key was replaced or removed meanwhile.
    QCoro::Task<bool> open(platform::PresencePrompt prompt);
    /// The backup text (ASCII) of the key, asking the user while it is locked; none when they
    /// refuse.
    QCoro::Task<std::optional<platform::SecretBytes>> backupSecret();
    /// Forgets the key, here and in the keychain. Nobody is asked.
    void remove();

    /// The Base58 public key as the keychain has it; none when there is no key. It is shown, and
    /// never signed for.
    [[nodiscard]] const std::optional<QString> &pubkey() const { return m_pubkey; }
    /// The unlocked 32-byte seed, while there is one.
    [[nodiscard]] const std::optional<platform::SecretBytes> &seed() const { return m_seed; }
    /// The backup text (ASCII) of a key that was just created, until the user has saved it.
    [[nodiscard]] const std::optional<platform::SecretBytes> &pendingBackup() const
    {
        return m_pendingBackup;
    }
    void setPendingBackup(std::optional<platform::SecretBytes> text);

Q_SIGNALS:
    /// `pubkey` or `pendingBackup` is about to change; they still answer the old value.
    void aboutToChange();
    void pubkeyChanged();
    void pendingBackupChanged();
    /// A key was created or imported: `pubkey` is its own already, `seed` is not yet.
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

    /// Corrects the public key by what the keychain says, unless the key has changed meanwhile.
    void verify();
    /// Reads the vault on a background thread.
    platform::Completion<std::shared_ptr<MaybeSecret>> inBackground(Read read);
    /// Reads the vault in the background and holds what it gives, nothing included, as the seed,
    /// unless the key has changed meanwhile. True when a seed is held by that.
    QCoro::Task<bool> load(Read read);
    /// Stores `seed` and makes it the wallet's key; gives the public key.
    SendResult<QString> adopt(platform::SecretBytes seed);

    KeySessionServices m_services;
    keys::KeyVault m_vault;
    std::optional<QString> m_pubkey;
    MaybeSecret m_seed;
    MaybeSecret m_pendingBackup;
    /// How often the key has been replaced or removed.
    unsigned m_keyChanges = 0;
};

} // namespace corvane::core
