#include "app/demo_wallet.h"

#include "core/wallet_settings.h"
#include "keys/key_vault.h"

namespace corvane::app {

DemoWallet makeDemoWallet(platform::SigningKeys &signingKeys)
{
    auto keychain = std::make_unique<platform::InMemoryKeychain>();
    const platform::SecretBytes seed = signingKeys.makeSeed();
    const auto publicKey = signingKeys.publicKey(seed);
    if (!publicKey) {
        qFatal("a fresh seed has no public key");
    }
    const keys::Address address(*publicKey);
    if (keys::KeyVault(*keychain).storeStatus(seed, address) != platform::KeychainStatus::Success) {
        qFatal("an empty keychain in memory refused a key");
    }
    return {std::move(keychain), address};
}

void watchDemoWallet(const DemoWallet &demo, platform::SettingsStore &settings)
{
    const QString lastAddress = QStringLiteral("corvane.demoAddress");
    const QString watched = settings.string(core::addressSetting).value_or(QString());
    if (watched.isEmpty() || watched == settings.string(lastAddress)) {
        settings.setString(core::addressSetting, demo.address.text());
    }
    settings.setString(lastAddress, demo.address.text());
}

} // namespace corvane::app
