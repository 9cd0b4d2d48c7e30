#pragma once

#include "platform/presence.h"
#include "platform/secret_bytes.h"

#include <QString>

#include <cstdint>
#include <optional>

namespace corvane::platform {

class AuthenticationContext;

/// The result of a keychain operation: a signed 32-bit number, which error messages show to the
/// user.
using KeychainStatus = std::int32_t;

/// The operation succeeded.
inline constexpr KeychainStatus keychainSuccess = 0;
/// No keychain service is available.
inline constexpr KeychainStatus keychainNotAvailable = -25291;
/// The user did not authenticate.
inline constexpr KeychainStatus keychainAuthFailed = -25293;
/// An item with the same service and account already exists.
inline constexpr KeychainStatus keychainDuplicateItem = -25299;
/// There is no matching item.
inline constexpr KeychainStatus keychainItemNotFound = -25300;
/// The user dismissed the prompt.
inline constexpr KeychainStatus keychainUserCanceled = -128;
/// Any other failure of the service.
inline constexpr KeychainStatus keychainInternalError = -26276;

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

    /// Adds one item. Blocks for at most a few seconds; main thread. Fails with `UserPresence` if
    /// this device cannot authenticate its owner.
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

    /// Deletes all items of `service`. Blocks for at most a few seconds; main thread.
    virtual KeychainStatus remove(const QString &service) = 0;
};

} // namespace corvane::platform
