#include "keys/key_vault.h"

namespace corvane::keys {

platform::KeychainStatus KeyVault::storeStatus(const platform::SecretBytes &secret,
                                               const Address &address)
{
    // Removed first, because adding would not replace an item of another account, and at most one
    // may exist.
    remove();

    const platform::KeychainStatus status = m_keychain->add(
        serviceName, address.text(), secret, platform::KeychainProtection::UserPresence);
    if (status == platform::KeychainStatus::Success) {
        return status;
    }
    return m_keychain->add(serviceName, address.text(), secret, platform::KeychainProtection::None);
}

std::optional<platform::SecretBytes> KeyVault::loadSecret(const platform::PresencePrompt &prompt)
{
    return m_keychain->copyData(serviceName, prompt);
}

std::optional<platform::SecretBytes> KeyVault::loadSecret(platform::AuthenticationContext &context)
{
    return m_keychain->copyData(serviceName, context);
}

std::optional<QString> KeyVault::pubkey() const
{
    return m_keychain->copyAccount(serviceName);
}

std::optional<QString> KeyVault::rememberedPubkey() const
{
    return m_keychain->rememberedAccount(serviceName);
}

bool KeyVault::isProtected() const
{
    return m_keychain->protection(serviceName) == platform::KeychainProtection::UserPresence;
}

bool KeyVault::remove()
{
    return m_keychain->remove(serviceName) == platform::KeychainStatus::Success;
}

} // namespace corvane::keys
