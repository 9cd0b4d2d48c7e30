#pragma once

#include "platform/keychain.h"
#include "platform/linux/bus/gio_calls.h"

#include <QString>

#include <libsecret/secret.h>

#include <chrono>
#include <optional>
#include <vector>

namespace corvane::platform {

/// An item of the Secret Service, and a keyring that holds items.
using KeyringItem = GioPtr<SecretItem>;
using KeyringCollection = GioPtr<SecretCollection>;

/// What is known of a keyring's lock.
enum class KeyringLock {
    Unlocked,
    Locked,
    Missing, ///< there is no such keyring
    Unknown, ///< the service did not say
};

[[nodiscard]] bool isLocked(const KeyringItem &item);
[[nodiscard]] bool isLocked(const KeyringCollection &collection);
/// An item that does not say clearly that it is unprotected is protected.
[[nodiscard]] bool isProtected(const KeyringItem &item);
/// Empty where the keyring does not tell.
[[nodiscard]] QString accountOf(const KeyringItem &item);
/// The object path of the keyring, or of the keyring that holds the item.
[[nodiscard]] QString pathOf(const KeyringCollection &collection);
[[nodiscard]] QString collectionPathOf(const KeyringItem &item);

/// One talk with the Secret Service, on a connection that is looked up anew, by libsecret.
///
/// All steps together take no longer than the bound. After a step has failed, `status()` says why.
/// Every step but `open` needs an `open` that went well. To be used and destroyed on the thread
/// that made it.
class SecretServiceConversation
{
public:
    /// `bound` counts from here.
    explicit SecretServiceConversation(std::chrono::milliseconds bound);

    [[nodiscard]] KeychainStatus status() const { return m_status; }
    [[nodiscard]] bool expired() const { return m_calls.expired(); }

    /// Connects to the bus and to the service.
    [[nodiscard]] bool open();
    /// The items of `service`, those in unlocked keyrings first; none when the service did not
    /// answer.
    [[nodiscard]] std::optional<std::vector<KeyringItem>> search(const QString &service);
    /// The keyring for new items; null when there is none.
    [[nodiscard]] KeyringCollection defaultCollection();
    /// `collection`: an object path.
    [[nodiscard]] KeyringLock lockOf(const QString &collection);
    /// Stores a whole item or none, as far as the service lives to the end of it.
    [[nodiscard]] bool create(const KeyringCollection &collection, const QString &service,
                              const QString &account, const SecretBytes &data,
                              KeychainProtection protection);
    /// Deletes what a `create` that was interrupted has left.
    void eraseUnfinished(const QString &service);
    /// Deletes the item.
    [[nodiscard]] bool erase(const KeyringItem &item);
    /// Loads the item's data in an encrypted session; none on any failure.
    [[nodiscard]] std::optional<SecretBytes> secretOf(const KeyringItem &item);
    /// Has the user asked to unlock what `object`, an item or a keyring, belongs to. From now on
    /// the steps have `bound`.
    [[nodiscard]] bool unlock(gpointer object, std::chrono::milliseconds bound);

private:
    [[nodiscard]] bool setAttributes(const KeyringItem &item, GHashTable *attributes);
    [[nodiscard]] bool openEncryptedSession();
    template <typename Finish>
    auto finish(const GioPtr<GAsyncResult> &result, Finish finishCall)
        -> decltype(finishCall(nullptr, nullptr));
    bool fail(const GError *error);

    BoundedCalls m_calls;
    GioPtr<GDBusConnection> m_bus;
    GioPtr<SecretService> m_service;
    KeychainStatus m_status = keychainInternalError;
};

} // namespace corvane::platform
