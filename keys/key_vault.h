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

/// The wallet's only keychain item: its data is the 32-byte Ed25519 seed, its account is the public
/// key in Base58.
///
/// Has no state of its own; copies use the same keychain, which must outlive them.
class KeyVault
{
public:
    /// The service of the item in the keychain.
    static constexpr QLatin1StringView serviceName{"corvane.signing-key"};

    explicit KeyVault(platform::Keychain &keychain)
        : m_keychain(&keychain)
    {}

    /// Replaces the stored key, if any. Stores the item with protection by the user's presence; if
    /// the keychain refuses that, stores it without protection, so that the wallet still works.
    /// Returns the status of the last attempt; after a failure no key is stored. Background threads
    /// only.
    [[nodiscard]] platform::KeychainStatus storeStatus(const platform::SecretBytes &secret,
                                                       const Address &address);

    /// The seed; asks the user to prove presence with `prompt` if it is protected. Empty on refusal
    /// and on any failure. Blocks during the prompt; background threads only.
    [[nodiscard]] std::optional<platform::SecretBytes>
    loadSecret(const platform::PresencePrompt &prompt);
    /// The seed, read with a context that has just passed. Background threads only.
    [[nodiscard]] std::optional<platform::SecretBytes>
    loadSecret(platform::AuthenticationContext &context);

    /// The public key in Base58, without a prompt; empty if no key is stored. Background threads
    /// only.
    [[nodiscard]] std::optional<QString> pubkey() const;
    /// The last known result of `pubkey`, which may be outdated. Does not block; main thread.
    [[nodiscard]] std::optional<QString> rememberedPubkey() const;

    /// True if reading the key asks for the user's presence; false if it does not or if the
    /// keychain does not tell. Background threads only.
    [[nodiscard]] bool isProtected() const;

    /// Deletes the key. False if there was none or if the keychain failed. Background threads only.
    bool remove();

private:
    platform::Keychain *m_keychain;
};

} // namespace corvane::keys
