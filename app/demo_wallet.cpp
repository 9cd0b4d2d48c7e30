#include "app/demo_wallet.h"

#include "keys/base58.h"
#include "keys/key_vault.h"

namespace corvane::app {

DemoWallet makeDemoWallet(platform::SigningKeys &signingKeys)
{
    DemoWallet wallet{std::make_unique<platform::InMemoryKeychain>(), {}};
    const platform::SecretBytes seed = signingKeys.makeSeed();
    const auto publicKey = signingKeys.publicKey(seed);
    if (!publicKey) {
        qFatal("a fresh seed has no public key");
    }
    wallet.address = keys::Base58::encode(*publicKey);
    if (keys::KeyVault(*wallet.keychain).storeStatus(seed, wallet.address) !=
        platform::keychainSuccess) {
        qFatal("an empty keychain in memory refused a key");
    }
    return wallet;
}

} // namespace corvane::app
