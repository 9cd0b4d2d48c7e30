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

/// Time limits of the keychain.
struct SecretServiceBounds
{
    /// For the service, which a user may be waiting for.
    std::chrono::milliseconds quick{3'000};
    /// For the user, at the prompt that unlocks or creates the keyring.
    std::chrono::milliseconds unlock{120'000};
    /// For the user, at the prompt that proves presence; longer than the authenticator's own limit.
    std::chrono::milliseconds presence{360'000};
};

/// The desktop's Secret Service (GNOME Keyring, KWallet, KeePassXC) as the keychain.
///
/// An item is stored in the default keyring with its service, account and protection as attributes.
/// The Secret Service gives an unlocked item to every program of the user, so that only this
/// program enforces the protection: it returns the data only after a successful authentication.
/// Secrets are sent over the bus only in the service's encrypted session.
///
/// At most one item per service exists. A locked keyring is never treated as an empty one: nothing
/// is deleted from it or added to it, and such calls return `KeychainStatus::AuthFailed`. An item
/// that `copyAccount` could not see, for example in a locked keyring, is not deleted either: such
/// calls return `KeychainStatus::DuplicateItem` until `copyAccount` has returned its account.
///
/// Each call looks up the service again, so that a restarted service is found. Thread-safe.
class SecretServiceKeychain final : public Keychain
{
public:
    /// `authenticator` must outlive the keychain, which must outlive every call. `accountsPath`:
    /// the file for the remembered public accounts.
    SecretServiceKeychain(Authenticator &authenticator, const QString &accountsPath,
                          SecretServiceBounds bounds = {});
    ~SecretServiceKeychain() override;

    /// Fails if the service already has an item, of any account. Also fails if the keyring is
    /// locked or if there is no keyring for new items, and then asks the user in the background to
    /// unlock or to create it for the next attempt.
    [[nodiscard]] KeychainStatus add(const QString &service, const QString &account,
                                     const SecretBytes &data,
                                     KeychainProtection protection) override;
    [[nodiscard]] std::optional<SecretBytes> copyData(const QString &service,
                                                      const PresencePrompt &prompt) override;
    /// `context` must be a `OneTimeContext`; reading a protected item uses it.
    [[nodiscard]] std::optional<SecretBytes> copyData(const QString &service,
                                                      AuthenticationContext &context) override;
    /// Returns the remembered account while the keyring is locked or unavailable.
    [[nodiscard]] std::optional<QString> copyAccount(const QString &service) const override;
    [[nodiscard]] std::optional<QString> rememberedAccount(const QString &service) const override;
    /// Empty while the keyring is locked, which may hide the items or their attributes.
    [[nodiscard]] std::optional<KeychainProtection>
    protection(const QString &service) const override;
    KeychainStatus remove(const QString &service) override;

private:
    class QuickCall;

    [[nodiscard]] bool canAskForPresence();
    [[nodiscard]] bool askForPresence(const PresencePrompt &prompt);
    /// The data of the item; calls `mayOpen` if the item is protected.
    [[nodiscard]] std::optional<SecretBytes> read(const QString &service,
                                                  const std::function<bool()> &mayOpen) const;
    void prepareInBackground();

    Authenticator &m_authenticator;
    const SecretServiceBounds m_bounds;
    mutable RememberedAccounts m_accounts;
    /// Held during each call that changes or remembers items, so that no call remembers an item
    /// that another has changed in between.
    mutable std::mutex m_changing;
    /// An incomplete search has returned no account. Items that are found later must then not be
    /// deleted.
    mutable std::atomic<bool> m_missedItems = false;
    /// When a quick call last exceeded its time limit; the following ones use a shorter limit.
    mutable std::atomic<std::chrono::steady_clock::time_point> m_lastTimeOut;
    /// True while a prompt to unlock or create the keyring is open, to allow only one. Shared with
    /// the waiting thread, which may outlive this object.
    std::shared_ptr<std::atomic<bool>> m_preparing;
};

} // namespace corvane::platform
