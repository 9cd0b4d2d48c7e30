#pragma once

#include "platform/presence.h"
#include "platform/secret_bytes.h"

#include <QString>

#include <cstdint>
#include <optional>

namespace corvane::platform {

class AuthenticationContext;

/// The result of a keychain operation. Error messages show the number to the user, so a number
/// never changes its meaning.
enum class KeychainStatus : std::int32_t {
    Success = 0,
    UserCanceled = -128,    ///< the user dismissed the prompt
    NotAvailable = -25291,  ///< no keychain service is available
    AuthFailed = -25293,    ///< the user did not authenticate
    DuplicateItem = -25299, ///< an item with the same service and account already exists
    ItemNotFound = -25300,  ///< there is no matching item
    InternalError = -26276, ///< any other failure of the service
};

/// The number that error messages show.
[[nodiscard]] constexpr std::int32_t codeOf(KeychainStatus status)
{
    return static_cast<std::int32_t>(status);
}

/// The protection of an item's data.
enum class KeychainProtection {
    None,         ///< readable while the keychain is unlocked
    UserPresence, ///< readable only after the user has proved presence
};

/// The system keychain: secret items by service and account.
class Keychain
{
public:
    Keychain() = default;
    Keychain(const Keychain &) = delete;
    Keychain &operator=(const Keychain &) = delete;
    virtual ~Keychain() = default;

    /// Adds one item. Blocks until the keychain's service replies; background threads only. Fails
    /// with `UserPresence` if this device cannot authenticate its owner.
    [[nodiscard]] virtual KeychainStatus add(const QString &service, const QString &account,
                                             const SecretBytes &data,
                                             KeychainProtection protection) = 0;

    /// The data of the first item of `service`; empty on any failure. If the item is protected,
    /// asks the user to prove presence with `prompt` and blocks meanwhile; background threads only.
    [[nodiscard]] virtual std::optional<SecretBytes> copyData(const QString &service,
                                                              const PresencePrompt &prompt) = 0;

    /// The same without a prompt, with a context that has passed. Background threads only.
    [[nodiscard]] virtual std::optional<SecretBytes> copyData(const QString &service,
                                                              AuthenticationContext &context) = 0;

    /// The account of the first item of `service`, without reading its data and without a prompt.
    /// Blocks until the keychain's service replies; background threads only.
    [[nodiscard]] virtual std::optional<QString> copyAccount(const QString &service) const = 0;

    /// The last known result of `copyAccount`, which may be outdated. Does not block; main thread.
    [[nodiscard]] virtual std::optional<QString>
    rememberedAccount(const QString &service) const = 0;

    /// The protection of the first item of `service`, without reading its data and without a
    /// prompt; empty if there is no item or the keychain does not tell. Blocks until the keychain's
    /// service replies; background threads only.
    [[nodiscard]] virtual std::optional<KeychainProtection>
    protection(const QString &service) const = 0;

    /// Deletes all items of `service`. Blocks until the keychain's service replies; background
    /// threads only.
    virtual KeychainStatus remove(const QString &service) = 0;
};

} // namespace corvane::platform
