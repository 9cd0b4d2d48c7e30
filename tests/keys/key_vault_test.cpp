#include "keys/key_vault.h"

#include "tests/fakes/fake_desktop.h"
#include "tests/fakes/secrets.h"
#include "tests/fakes/stubborn_keychain.h"

#include <gtest/gtest.h>

using corvane::keys::KeyVault;
using namespace corvane::platform;
using namespace corvane::tests;
using namespace Qt::StringLiterals;

namespace {

class KeyVaultTest : public testing::Test
{
protected:
    StubbornKeychain keychain;
    KeyVault vault{keychain};
    FakeAuthenticator::Context context;
};

TEST_F(KeyVaultTest, KeepsOneProtectedItemWhateverItsAccount)
{
    EXPECT_FALSE(vault.remove());
    EXPECT_FALSE(vault.loadSecret(u"empty"_s));
    EXPECT_EQ(vault.storeStatus(seedOf(1), u"first"_s), 0);
    EXPECT_EQ(vault.storeStatus(seedOf(2), u"second"_s), 0);
    EXPECT_EQ(vault.pubkey(), u"second"_s);
    EXPECT_EQ(vault.loadSecret(u"why"_s), seedOf(2));
    EXPECT_EQ(keychain.prompts, (QStringList{u"empty"_s, u"why"_s}));

    EXPECT_FALSE(vault.loadSecret(context));
    context.hasPassed = true;
    EXPECT_EQ(vault.loadSecret(context), seedOf(2));
    EXPECT_EQ(keychain.prompts.size(), 2) << "nobody may be asked";
    keychain.refuses = true;
    EXPECT_FALSE(vault.loadSecret(u"why"_s));
    EXPECT_EQ(vault.pubkey(), u"second"_s) << "a cancelled prompt changes nothing";

    EXPECT_TRUE(vault.remove());
    EXPECT_EQ(vault.pubkey(), std::nullopt) << "the first item must not come to light";
    EXPECT_FALSE(vault.remove());
}

TEST_F(KeyVaultTest, FallsBackToAnUnprotectedItemOrTellsTheLastStatus)
{
    keychain.failures = {keychainAuthFailed};
    EXPECT_EQ(vault.storeStatus(seedOf(3), u"key"_s), 0);
    EXPECT_EQ(vault.loadSecret(context), seedOf(3)) << "readable without presence";

    keychain.failures = {keychainAuthFailed, keychainNotAvailable};
    EXPECT_EQ(vault.storeStatus(seedOf(4), u"new"_s), keychainNotAvailable);
    EXPECT_EQ(vault.pubkey(), std::nullopt);
}

} // namespace
