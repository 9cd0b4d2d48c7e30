#pragma once

#include "keys/address.h"
#include "platform/in_memory_keychain.h"
#include "platform/settings_store.h"
#include "platform/signing_keys.h"

#include <memory>

namespace corvane::app {

/// A wallet for demonstrations: a new key that is never written to disk.
struct DemoWallet
{
    std::unique_ptr<platform::InMemoryKeychain> keychain;
    /// The key's address.
    keys::Address address;
};

/// Creates a wallet with a new random key.
[[nodiscard]] DemoWallet makeDemoWallet(platform::SigningKeys &keys);

/// Sets the watched address to the demo's, unless the settings contain another address that is not
/// that of an earlier demo, whose key is lost.
void watchDemoWallet(const DemoWallet &demo, platform::SettingsStore &settings);

} // namespace corvane::app
