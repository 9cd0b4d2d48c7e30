#pragma once

#include "platform/in_memory_keychain.h"
#include "platform/signing_keys.h"

#include <QString>

#include <memory>

namespace corvane::app {

/// A wallet for showing the program around: a fresh key that is never written anywhere.
struct DemoWallet
{
    std::unique_ptr<platform::InMemoryKeychain> keychain;
    /// The key's address.
    QString address;
};

/// A wallet with a new random key.
[[nodiscard]] DemoWallet makeDemoWallet(platform::SigningKeys &keys);

} // namespace corvane::app
