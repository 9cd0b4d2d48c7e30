#include "keys/key_vault.h"

#include "platform/authenticator.h"
#include "platform/in_memory_keychain.h"

#include <gtest/gtest.h>

#include <vector>

using corvane::keys::KeyVault;
using namespace corvane::platform;
using namespace Qt::StringLiterals;

namespace {

/// A keychain that keeps a record of the calls and refuses what a test tells it to.
class ScriptedKeychain final : public InMemoryKeychain
{
public:
    KeychainStatus add(const QString &service, const QString &account, const SecretBytes &data,
                       KeychainProtection protection) override
    {
        const bool guarded = protection == KeychainProtection::UserPresence;
        calls.push_back(guarded ? u"add protected %1 %2"_s.arg(service, account)
                                : u"add plain %1 %2"_s.arg(service, account));
        const KeychainStatus refusal = guarded ? refuseProtected : refusePlain;
        return refusal != keychainSuccess
                   ? refusal
                   : InMemoryKeychain::add(service, account, data, protection);
    }

    std::optional<SecretBytes> copyData(const QString &service, const QString &prompt) override
    {
        calls.push_back(u"ask %1"_s.arg(prompt));
        return cancelPrompts ? std::nullopt : InMemoryKeychain::copyData(service, prompt);
    }
    using InMemoryKeychain::copyData;

    KeychainStatus remove(const QString &service) override
    {
        calls.push_back(u"remove %1"_s.arg(service));
        return InMemoryKeychain::remove(service);
    }

    KeychainStatus refuseProtected = keychainSuccess;
    KeychainStatus refusePlain = keychainSuccess;
    bool cancelPrompts = false;
    std::vector<QString> calls;
};

class Context final : public AuthenticationContext
{
public:
    explicit Context(bool passed)
        : m_passed(passed)
    {}
    bool passed() const override { return m_passed; }

private:
    bool m_passed;
};

SecretBytes seed(std::uint8_t fill)
{
    const std::vector<std::uint8_t> bytes(32, fill);
    return SecretBytes::copyOf(bytes);
}

TEST(KeyVault, StoresOneProtectedItemAndReplacesItWhateverItsAccount)
{
    ScriptedKeychain keychain;
    KeyVault vault(keychain);
    EXPECT_EQ(vault.pubkey(), std::nullopt);

    EXPECT_EQ(vault.storeStatus(seed(1), u"first"_s), 0);
    EXPECT_EQ(vault.storeStatus(seed(2), u"second"_s), 0);

    EXPECT_EQ(keychain.calls,
              (std::vector<QString>{
                  u"remove corvane.signing-key"_s, u"add protected corvane.signing-key first"_s,
                  u"remove corvane.signing-key"_s, u"add protected corvane.signing-key second"_s}));
    EXPECT_EQ(vault.pubkey(), u"second"_s);
    const std::optional<SecretBytes> secret = vault.loadSecret(u"why"_s);
    ASSERT_TRUE(secret);
    EXPECT_EQ(*secret, seed(2));
    EXPECT_TRUE(vault.remove());
    EXPECT_EQ(vault.pubkey(), std::nullopt) << "the first item must not come to light";
}

TEST(KeyVault, FallsBackToAnUnprotectedItem)
{
    ScriptedKeychain keychain;
    keychain.refuseProtected = keychainAuthFailed;
    KeyVault vault(keychain);

    EXPECT_EQ(vault.storeStatus(seed(3), u"key"_s), 0);

    EXPECT_EQ(keychain.calls.back(), u"add plain corvane.signing-key key"_s);
    EXPECT_EQ(vault.pubkey(), u"key"_s);
    Context notPassed(false);
    EXPECT_TRUE(vault.loadSecret(notPassed)) << "the item must be readable without presence";
}

TEST(KeyVault, AFailedStoreReportsTheLastStatusAndLeavesNoKey)
{
    ScriptedKeychain keychain;
    KeyVault vault(keychain);
    ASSERT_EQ(vault.storeStatus(seed(4), u"old"_s), 0);
    keychain.refuseProtected = keychainAuthFailed;
    keychain.refusePlain = keychainNotAvailable;

    EXPECT_EQ(vault.storeStatus(seed(5), u"new"_s), keychainNotAvailable);
    EXPECT_EQ(vault.pubkey(), std::nullopt);
    EXPECT_FALSE(vault.loadSecret(u"why"_s));
}

TEST(KeyVault, LoadsByPromptOrByAPassedContext)
{
    ScriptedKeychain keychain;
    KeyVault vault(keychain);
    Context passed(true);
    Context notPassed(false);
    EXPECT_FALSE(vault.loadSecret(u"empty"_s));
    EXPECT_FALSE(vault.loadSecret(passed));
    ASSERT_EQ(vault.storeStatus(seed(6), u"key"_s), 0);
    keychain.calls.clear();

    const std::optional<SecretBytes> byContext = vault.loadSecret(passed);
    ASSERT_TRUE(byContext);
    EXPECT_EQ(*byContext, seed(6));
    EXPECT_FALSE(vault.loadSecret(notPassed));
    EXPECT_EQ(vault.pubkey(), u"key"_s);
    EXPECT_TRUE(keychain.calls.empty()) << "nobody may be asked";

    keychain.cancelPrompts = true;
    EXPECT_FALSE(vault.loadSecret(u"reveal it"_s));
    EXPECT_EQ(keychain.calls, std::vector<QString>{u"ask reveal it"_s});
    EXPECT_EQ(vault.pubkey(), u"key"_s) << "a cancelled prompt changes nothing";
}

TEST(KeyVault, RemoveTellsWhetherThereWasAKey)
{
    ScriptedKeychain keychain;
    KeyVault vault(keychain);
    EXPECT_FALSE(vault.remove());
    ASSERT_EQ(vault.storeStatus(seed(7), u"key"_s), 0);
    EXPECT_TRUE(vault.remove());
    EXPECT_EQ(vault.pubkey(), std::nullopt);
    EXPECT_FALSE(vault.remove());
}

} // namespace
