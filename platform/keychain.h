#pragma once

#include "platform/presence.h"
#include "platform/secret_bytes.h"

#include <QString>

#include <cstdint>
#include <optional>

namespace corvane::platform {

class AuthenticationContext;

/// What a keychain answers: a signed 32-bit number, of which the user sees the value when
/// something fails.
using KeychainStatus = std::int32_t;

/// The call did what it was asked to.
inline constexpr KeychainStatus keychainSuccess = 0;
/// There is no keychain service to talk to.
inline constexpr KeychainStatus keychainNotAvailable = -25291;
/// The user did not authenticate.
inline constexpr KeychainStatus keychainAuthFailed = -25293;
/// An item with the same service and account exists already.
inline constexpr KeychainStatus keychainDuplicateItem = -25299;
/// No item matches.
inline constexpr KeychainStatus keychainItemNotFound = -25300;
/// The user dismissed the prompt.
inline constexpr KeychainStatus keychainUserCanceled = -128;
/// Anything else that went wrong inside the service.
inline constexpr KeychainStatus keychainInternalError = -26276;

/// How an item's data is protected.
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

    /// Adds one item. Quick; main thread. Refuses `UserPresence` when presence cannot be asked for.
    [[nodiscard]] virtual KeychainStatus add(const QString &service, const QString &account,
                                             const SecretBytes &data,
                                             KeychainProtection protection) = 0;

    /// The data of the first item of `service`, none on any failure. When the item is protected,
    /// the user is asked for presence with `prompt`, so the call blocks; background threads only.
    [[nodiscard]] virtual std::optional<SecretBytes> copyData(const QString &service,
                                                              const PresencePrompt &prompt) = 0;

    /// The same without a prompt, opened by a context that has passed. Background threads only.
    [[nodiscard]] virtual std::optional<SecretBytes> copyData(const QString &service,
                                                              AuthenticationContext &context) = 0;

    /// The account of the first item of `service`, without touching its data or asking anybody.
    /// Waits for the keychain's service, so background threads only.
    [[nodiscard]] virtual std::optional<QString> copyAccount(const QString &service) const = 0;

    /// The same from memory, as it was last seen; `copyAccount` may correct it. At once; main
    /// thread.
    [[nodiscard]] virtual std::optional<QString>
    rememberedAccount(const QString &service) const = 0;

    /// Deletes every item of `service`. Quick; main thread.
    virtual KeychainStatus remove(const QString &service) = 0;
};

} // namespace corvane::platform
