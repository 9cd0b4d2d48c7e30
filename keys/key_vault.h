#pragma once

#include "keys/address.h"
#include "platform/keychain.h"

#include <QLatin1StringView>
#include <QString>

#include <optional>

namespace corvane::platform {
class AuthenticationContext;
}

namespace corvane::keys {

/// The one keychain item of the wallet: its data is the 32-byte Ed25519 seed, its account the
/// Base58 text of the public key.
///
/// Keeps no state of its own; a copy speaks to the same keychain, which must outlive it.
class KeyVault
{
public:
    /// The service of the item in the keychain.
    static constexpr QLatin1StringView serviceName{"corvane.signing-key"};

    explicit KeyVault(platform::Keychain &keychain)
        : m_keychain(&keychain)
    {}

    /// Replaces whatever key is stored. The item is protected by the user's presence where the
    /// keychain can do that; where it refuses, the item is stored without, so that the wallet still
    /// works. Answers the status of the last attempt; after a failure no key is stored at all. Main
    /// thread.
    [[nodiscard]] platform::KeychainStatus storeStatus(const platform::SecretBytes &secret,
                                                       const Address &address);

    /// The seed, asking for the user's presence with `prompt`; none on refusal and on every
    /// failure. Blocks while the user is asked, so background threads only.
    [[nodiscard]] std::optional<platform::SecretBytes>
    loadSecret(const platform::PresencePrompt &prompt);
    /// The seed, opened by a context that has just passed. Background threads only.
    [[nodiscard]] std::optional<platform::SecretBytes>
    loadSecret(platform::AuthenticationContext &context);

    /// The public key's text, without asking anybody; none when no key is stored. Background
    /// threads only.
    [[nodiscard]] std::optional<QString> pubkey() const;
    /// The same as it was last known, at once. Main thread.
    [[nodiscard]] std::optional<QString> rememberedPubkey() const;

    /// Deletes the key. False when there was none or the keychain refused. Main thread.
    bool remove();

private:
    platform::Keychain *m_keychain;
};

} // namespace corvane::keys
