// The life cycle of the wallet's key.

#include "platform/one_time_context.h"
#include "tests/core/wallet_fixture.h"

#include <QCoroTask>

namespace corvane::core {
namespace {

using namespace Qt::StringLiterals;
using platform::SecretBytes;
using tests::addressA;

const QString sendTransaction = u"sendTransaction"_s;
const QString keyService = u"corvane.signing-key"_s;

class WalletKeysTest : public tests::WalletTest
{
protected:
    WalletKeysTest()
    {
        http.answer(u"getLatestBlockhash"_s, tests::blockhashReply(tests::addressB));
        launchAndSettle();
    }

    /// Creates a stored key whose seed is not in memory, as after a restart.
    void lock()
    {
        createKey();
        ASSERT_TRUE(model->sessionSecret());
        launchAndSettle();
        ASSERT_FALSE(model->sessionSecret());
    }

    void unlock()
    {
        const auto context = std::make_shared<platform::OneTimeContext>();
        context->pass();
        model->unlockSigningKey(context);
    }
};

TEST_F(WalletKeysTest, ImportsAnythingOf32BytesAndKeepsItsStateWhereItIsRefused)
{
    // An address has 32 bytes too and can therefore be imported as a seed, but of another key.
    const QString pubkey =
        std::get<QString>(finish(model->importSigningKey(u" \n"_s + addressA + u'\n')));
    EXPECT_NE(pubkey, addressA);
    EXPECT_TRUE(
        std::holds_alternative<SendError>(finish(model->importSigningKey(addressA + u'1'))));
    EXPECT_EQ(keychain.copyAccount(keyService), pubkey);
    keychain.failures = {platform::KeychainStatus::AuthFailed,
                         platform::KeychainStatus::NotAvailable};
    EXPECT_EQ(std::get<SendError>(finish(model->createWallet())).description(),
              u"keychain refused the key (error -25291) — try again, and tell me this code if it "
              u"persists"_s);
    EXPECT_EQ(model->signingPubkey(), pubkey);
    EXPECT_EQ(model->address(), pubkey);
    // The old item was removed before the new one was rejected.
    EXPECT_FALSE(keychain.copyAccount(keyService));
}

TEST_F(WalletKeysTest, RemindsOfAKeyWhoseBackupWasNeverConfirmed)
{
    const QString setting = u"corvane.backupPending"_s;
    const auto expectPending = [&](bool pending, const char *when) {
        EXPECT_EQ(model->isBackupPending(), pending) << when;
        EXPECT_EQ(settings.boolean(setting).value_or(false), pending) << when;
        launchAndSettle();
        EXPECT_EQ(model->isBackupPending(), pending) << "after a restart, " << when;
    };
    model->createWallet();
    EXPECT_EQ(settings.boolean(setting), true) << "before the key is stored";
    EXPECT_FALSE(model->isBackupPending()) << "nothing to back up yet";
    settle();
    expectPending(true, "created");
    model->setPendingBackup(finish(model->backupSecret()));
    expectPending(true, "shown again");
    model->setPendingBackup(std::nullopt);
    expectPending(false, "confirmed");

    for (const bool wasPending : {false, true}) {
        using enum platform::KeychainStatus;
        keychain.keeps = true;
        keychain.failures = {AuthFailed, AuthFailed};
        finish(model->createWallet());
        expectPending(wasPending, "another one was refused");
        keychain.keeps = false;
        createKey();
    }
    finish(model->importSigningKey(addressA));
    expectPending(false, "imported");

    createKey();
    keychain.keeps = true;
    removeKey();
    EXPECT_FALSE(model->isBackupPending()) << "there is no key to be seen";
    launchAndSettle();
    EXPECT_TRUE(model->isBackupPending()) << "a locked keyring gave it back";
    keychain.keeps = false;
    removeKey();
    expectPending(false, "removed");
}

TEST_F(WalletKeysTest, TellsOfEveryAttemptToHaveTheSeed)
{
    const auto expectTold = [this](int times, auto act) {
        int told = 0;
        const auto connection = QObject::connect(model.get(), &WalletModel::sessionSecretChanged,
                                                 model.get(), [&told] { ++told; });
        act();
        settle();
        QObject::disconnect(connection);
        EXPECT_EQ(told, times);
    };
    expectTold(1, [&] { createKey(); });
    expectTold(0, [&] { model->backupSecret(); });
    launchAndSettle();
    keychain.refuses = true;
    expectTold(1, [&] { model->backupSecret(); });
    expectTold(1, [&] { unlock(); });
    expectTold(1, [&] { model->removeWallet(); });
}

TEST_F(WalletKeysTest, IsCorrectedByTheKeychainWhereItsMemoryIsWrong)
{
    lock();
    const auto stored = model->signingPubkey();
    keychain.forgets = true;
    launch();
    EXPECT_FALSE(model->signingPubkey());
    background.runNext();
    queue.drain();
    EXPECT_EQ(model->signingPubkey(), stored);

    // A change after the query to the keychain takes precedence over its reply.
    launch();
    background.runNext();
    const auto imported = finish(model->importSigningKey(addressA));
    EXPECT_EQ(model->signingPubkey(), std::get<QString>(imported));
}

TEST_F(WalletKeysTest, UnlocksInTheBackgroundWithoutAPrompt)
{
    lock();
    unlock();
    EXPECT_EQ(background.held(), 1U);
    background.runNext();
    EXPECT_FALSE(model->sessionSecret()) << "the result belongs to the main thread";
    queue.drain();
    EXPECT_TRUE(model->sessionSecret());
    EXPECT_TRUE(keychain.prompts.isEmpty());
    // Unlocked, or without a key, there is nothing to read.
    unlock();
    EXPECT_EQ(background.held(), 0U);
    removeKey();
    unlock();
    EXPECT_EQ(background.held(), 0U);
}

TEST_F(WalletKeysTest, RemovingForgetsTheKeyAndWhatIsStillBeingRead)
{
    createKey();
    ASSERT_TRUE(model->sessionSecret());
    ASSERT_TRUE(model->pendingBackup());
    const auto removed = [this] {
        removeKey();
        return !model->sessionSecret() && !model->pendingBackup() && !model->signingPubkey() &&
               model->address().isEmpty() && !keychain.copyAccount(keyService);
    };
    EXPECT_TRUE(removed());

    lock();
    unlock();
    background.runNext();
    EXPECT_TRUE(removed());

    // A reply after the model was destroyed has no effect.
    lock();
    unlock();
    model.reset();
    background.runNext();
    queue.drain();
}

TEST_F(WalletKeysTest, ARefusalForOneKeyIsNoConsentForAnother)
{
    const auto replaceKey = [this] {
        keychain.remove(keyService);
        ASSERT_TRUE(std::holds_alternative<QString>(finish(model->importSigningKey(addressA))));
        http.forgetRequests();
    };
    for (const bool refuses : {true, false}) {
        lock();
        keychain.refuses = refuses;
        auto transfer = model->sendSOL(addressA, 1);
        replaceKey();
        const auto sent = finish(std::move(transfer));
        EXPECT_EQ(std::get<SendError>(sent).description(),
                  u"touch id cancelled — nothing was sent"_s);
        EXPECT_EQ(http.count(sendTransaction), 0);
        EXPECT_TRUE(model->sessionSecret());

        lock();
        auto backup = model->backupSecret();
        replaceKey();
        EXPECT_FALSE(finish(std::move(backup)));
        EXPECT_TRUE(model->sessionSecret()) << "the key that there is now stays open";
    }
}

TEST_F(WalletKeysTest, RevealsAnOpenKeyWithoutAsking)
{
    const SecretBytes created = createKey();
    const auto backup = finish(model->backupSecret());
    ASSERT_TRUE(backup);
    EXPECT_TRUE(*backup == created);
    EXPECT_TRUE(keychain.prompts.isEmpty());
}

} // namespace
} // namespace corvane::core
