#pragma once

#include "platform/keychain.h"
#include "platform/linux/keyring/remembered_accounts.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>

namespace corvane::platform {

class Authenticator;

/// How long the keychain waits for whom.
struct SecretServiceBounds
{
    /// The service, in the calls that must be quick.
    std::chrono::milliseconds quick{3'000};
    /// The user, at the prompt that unlocks the keyring.
    std::chrono::milliseconds unlock{120'000};
    /// The user, at the prompt that proves presence; longer than the authenticator's own bound.
    std::chrono::milliseconds presence{360'000};
};

/// The desktop's Secret Service (GNOME Keyring, KWallet, KeePassXC) as the keychain.
///
/// An item lies in the default keyring and carries its service, its account and its protection as
/// attributes. The Secret Service hands an unlocked item to every program of the user, so the
/// protected form binds this program only: it passes the data on after the authenticator has let
/// the user through. Secrets cross the bus in the service's encrypted session alone.
///
/// At most one item of a service exists. A locked keyring is never taken for an empty one: what
/// cannot be read is neither deleted nor added to, and such calls answer `keychainAuthFailed`. Nor
/// is an item deleted that came to light only after `copyAccount` had been kept from seeing it;
/// such calls answer `keychainDuplicateItem` until `copyAccount` has told of it.
///
/// Each call talks to the service anew, so a service that has been restarted is simply found again.
/// All members may be called from any thread.
class SecretServiceKeychain final : public Keychain
{
public:
    /// `authenticator` must outlive the keychain, and the keychain every call. `accountsPath`: the
    /// file in which the public accounts are remembered.
    SecretServiceKeychain(Authenticator &authenticator, const QString &accountsPath,
                          SecretServiceBounds bounds = {});
    ~SecretServiceKeychain() override;

    /// Refuses a service that has an item already, of whatever account. A locked keyring makes the
    /// call fail, and the desktop is asked to unlock it in the background for the next attempt.
    [[nodiscard]] KeychainStatus add(const QString &service, const QString &account,
                                     const SecretBytes &data,
                                     KeychainProtection protection) override;
    [[nodiscard]] std::optional<SecretBytes> copyData(const QString &service,
                                                      const PresencePrompt &prompt) override;
    /// Opening a protected item uses the context up, which must be a `OneTimeContext`.
    [[nodiscard]] std::optional<SecretBytes> copyData(const QString &service,
                                                      AuthenticationContext &context) override;
    /// Answers from memory while the keyring is locked or out of reach.
    [[nodiscard]] std::optional<QString> copyAccount(const QString &service) const override;
    [[nodiscard]] std::optional<QString> rememberedAccount(const QString &service) const override;
    KeychainStatus remove(const QString &service) override;

private:
    class QuickCall;

    [[nodiscard]] bool canAskForPresence();
    [[nodiscard]] bool askForPresence(const PresencePrompt &prompt);
    /// The data of the item; `mayOpen` is asked when the item is protected.
    [[nodiscard]] std::optional<SecretBytes> read(const QString &service,
                                                  const std::function<bool()> &mayOpen) const;
    void unlockInBackground();

    Authenticator &m_authenticator;
    const SecretServiceBounds m_bounds;
    mutable RememberedAccounts m_accounts;
    /// Held for the whole of a call that changes or remembers items, so that none remembers what
    /// another has changed meanwhile.
    mutable std::mutex m_changing;
    /// Somebody was told of no account by a look that has not gone everywhere: they must not have
    /// items removed that come to light later.
    mutable std::atomic<bool> m_missedItems = false;
    /// When a quick call last ran into its bound; the next ones are then not so patient.
    mutable std::atomic<std::chrono::steady_clock::time_point> m_lastTimeOut;
    /// One unlock prompt at a time; the thread that waits for it may outlive this object.
    std::shared_ptr<std::atomic<bool>> m_unlocking;
};

} // namespace corvane::platform
