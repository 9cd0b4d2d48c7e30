#include "keys/key_vault.h"

#include "platform/one_time_context.h"
#include "tests/fakes/secrets.h"
#include "tests/fakes/stubborn_keychain.h"

#include <gtest/gtest.h>

namespace corvane::keys {
namespace {

TEST(KeyVault, ProtectsTheKeyWhereTheKeychainCan)
{
    for (const bool canProtect : {true, false}) {
        tests::StubbornKeychain keychain;
        if (!canProtect) {
            keychain.failures = {platform::KeychainStatus::AuthFailed};
        }
        KeyVault vault(keychain);
        const auto seed = tests::seedOf(1);
        EXPECT_EQ(vault.storeStatus(seed, Address({})), platform::KeychainStatus::Success);
        platform::OneTimeContext context;
        EXPECT_EQ(vault.loadSecret(context) == seed, !canProtect) << "the user has not been asked";
        context.pass();
        EXPECT_EQ(vault.loadSecret(context), seed);
    }
}

} // namespace
} // namespace corvane::keys
