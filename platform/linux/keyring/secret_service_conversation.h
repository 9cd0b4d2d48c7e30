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

/// The lock state of a keyring.
enum class KeyringLock {
    Unlocked,
    Locked,
    Missing, ///< there is no such keyring
    Unknown, ///< the service did not report it
};

[[nodiscard]] bool isLocked(const KeyringItem &item);
[[nodiscard]] bool isLocked(const KeyringCollection &collection);
/// True unless the item is explicitly marked as unprotected.
[[nodiscard]] bool isProtected(const KeyringItem &item);
/// The item's account; empty if the keyring does not provide it.
[[nodiscard]] QString accountOf(const KeyringItem &item);
/// The object path of the keyring, or of the keyring that holds the item.
[[nodiscard]] QString pathOf(const KeyringCollection &collection);
[[nodiscard]] QString collectionPathOf(const KeyringItem &item);

/// One sequence of calls to the Secret Service by libsecret, on a newly looked-up connection.
///
/// All steps together take at most the time limit. After a failed step, `status()` returns the
/// reason. All steps except `open` require a successful `open`. Must be used and destroyed on the
/// thread that created it.
class SecretServiceConversation
{
public:
    /// The time limit `bound` starts now.
    explicit SecretServiceConversation(std::chrono::milliseconds bound);

    [[nodiscard]] KeychainStatus status() const { return m_status; }
    [[nodiscard]] bool expired() const { return m_calls.expired(); }

    /// Connects to the bus and to the service.
    [[nodiscard]] bool open();
    /// The items of `service`, those in unlocked keyrings first; empty if the service did not
    /// reply.
    [[nodiscard]] std::optional<std::vector<KeyringItem>> search(const QString &service);
    /// The keyring for new items; null if there is none.
    [[nodiscard]] KeyringCollection defaultCollection();
    /// `collection`: an object path.
    [[nodiscard]] KeyringLock lockOf(const QString &collection);
    /// Stores the item completely or not at all, unless the service dies in between.
    [[nodiscard]] bool create(const KeyringCollection &collection, const QString &service,
                              const QString &account, const SecretBytes &data,
                              KeychainProtection protection);
    /// Deletes the incomplete item of an interrupted `create`.
    void eraseUnfinished(const QString &service);
    /// Deletes the item.
    [[nodiscard]] bool erase(const KeyringItem &item);
    /// Loads the item's data through an encrypted session; empty on failure.
    [[nodiscard]] std::optional<SecretBytes> secretOf(const KeyringItem &item);
    /// Asks the user to unlock the keyring of `object`, an item or a keyring. The following steps
    /// have the time limit `bound`.
    [[nodiscard]] bool unlock(gpointer object, std::chrono::milliseconds bound);
    /// Asks the user to create the keyring for new items. The following steps have the time limit
    /// `bound`.
    [[nodiscard]] bool createDefaultCollection(std::chrono::milliseconds bound);

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
    KeychainStatus m_status = KeychainStatus::InternalError;
};

} // namespace corvane::platform
