#pragma once

#include "keys/address.h"
#include "platform/in_memory_keychain.h"
#include "platform/settings_store.h"
#include "platform/signing_keys.h"

#include <memory>

namespace corvane::app {

/// A wallet for showing the program around: a fresh key that is never written anywhere.
struct DemoWallet
{
    std::unique_ptr<platform::InMemoryKeychain> keychain;
    /// The key's address.
    keys::Address address;
};

/// A wallet with a new random key.
[[nodiscard]] DemoWallet makeDemoWallet(platform::SigningKeys &keys);

/// Watches the demo's address, unless the settings name one that was not an earlier demo's: its key
/// is gone.
void watchDemoWallet(const DemoWallet &demo, platform::SettingsStore &settings);

} // namespace corvane::app
