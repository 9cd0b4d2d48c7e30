#include "keyring_desktop.h"
#include "keys/base58.h"
#include "keys/key_vault.h"
#include "platform/linux/keyring/secret_service_keychain.h"
#include "tests/fakes/fake_desktop.h"
#include "tests/fakes/secrets.h"
#include "tests/fakes/table.h"
#include "tests/platform/wait_until.h"

#include <QFile>

#include <gtest/gtest.h>

#include <csignal>

namespace corvane::tests {

namespace {

using namespace platform;
using namespace std::chrono_literals;
using Start = KeyringDesktop::Start;

const QString service = keys::KeyVault::serviceName;
const QString account = QStringLiteral("4zMMC9srt5Ri5X14GAgXhaHii3GnPAEERYPJgZJDncDU");
const QString otherAccount = QStringLiteral("9WzDXwBbmkg8ZTbNMqUxvQRAyrZzDsGYdLVL9zYtAWWM");

class SecretServiceKeychainTest : public testing::Test
{
protected:
    // One bus for all: libsecret keeps to the bus that it has met first.
    static void SetUpTestSuite() { bus = std::make_unique<SessionBus>(); }
    static void TearDownTestSuite() { bus.reset(); }

    [[nodiscard]] qsizetype itemCount() const
    {
        const auto items = desktop.items(service);
        return items ? items->size() : -1;
    }

    static inline std::unique_ptr<SessionBus> bus;
    KeyringDesktop desktop{*bus};
    FakeAuthenticator owner{true};
    SecretServiceKeychain keychain{owner,
                                   desktop.file("accounts.json"),
                                   {.quick = patience, .unlock = patience, .presence = patience}};
    keys::KeyVault vault{keychain};
};

TEST_F(SecretServiceKeychainTest, KeepsOneItemAndHandsItOutByItsProtection)
{
    ASSERT_TRUE(desktop.startKeyring());
    const SecretBytes data = seedOf(1);

    for (const auto &[protection, attribute, reasons] :
         Table<KeychainProtection, QString, QStringList>{
             {KeychainProtection::UserPresence,
              QStringLiteral("user-presence"),
              {QStringLiteral("why")}},
             {KeychainProtection::None, QStringLiteral("none"), {}}}) {
        SCOPED_TRACE(attribute.toStdString());
        EXPECT_EQ(keychain.copyAccount(service), std::nullopt);
        EXPECT_EQ(keychain.remove(service), keychainItemNotFound);
        ASSERT_EQ(keychain.add(service, account, data, protection), keychainSuccess);
        for (const QString &again : {account, otherAccount}) {
            EXPECT_EQ(keychain.add(service, again, data, protection), keychainDuplicateItem);
        }

        const auto items = desktop.items(service).value();
        ASSERT_EQ(items.size(), 1);
        EXPECT_EQ(items[0].value(QStringLiteral("account")), account);
        EXPECT_EQ(items[0].value(QStringLiteral("protection")), attribute);

        EXPECT_EQ(keychain.copyAccount(service), account);
        EXPECT_TRUE(owner.reasons.isEmpty());
        EXPECT_EQ(keychain.copyData(service, QStringLiteral("why")), data);
        EXPECT_EQ(owner.reasons, reasons);

        owner.agrees = false;
        EXPECT_EQ(keychain.copyData(service, QStringLiteral("why")).has_value(),
                  protection == KeychainProtection::None);
        EXPECT_EQ(itemCount(), 1);
        owner.agrees = true;
        owner.reasons.clear();

        EXPECT_EQ(keychain.remove(service), keychainSuccess);
        EXPECT_EQ(itemCount(), 0);
    }
}

TEST_F(SecretServiceKeychainTest, AContextOpensTheProtectedItemOnceAfterItHasPassed)
{
    ASSERT_TRUE(desktop.startKeyring());
    ASSERT_EQ(keychain.add(service, account, seedOf(1), KeychainProtection::UserPresence),
              keychainSuccess);
    OneTimeContext context;
    EXPECT_FALSE(keychain.copyData(service, context).has_value());
    context.pass();
    EXPECT_EQ(keychain.copyData(service, context), seedOf(1));
    EXPECT_FALSE(keychain.copyData(service, context).has_value());
    EXPECT_TRUE(owner.reasons.isEmpty());
}

TEST_F(SecretServiceKeychainTest, ALockedKeyringIsNotTakenForAnEmptyOne)
{
    for (const bool neverUnlocked : {false, true}) {
        SCOPED_TRACE(neverUnlocked ? "locked since the start" : "locked later");
        ASSERT_TRUE(desktop.startKeyring());
        ASSERT_EQ(vault.storeStatus(seedOf(3), *keys::Address::fromText(account)), keychainSuccess);
        if (neverUnlocked) {
            desktop.killKeyring();
            ASSERT_TRUE(desktop.startKeyring(Start::Locked));
        } else {
            ASSERT_TRUE(desktop.lock());
        }

        EXPECT_EQ(keychain.copyAccount(service), account);
        EXPECT_FALSE(vault.loadSecret(QStringLiteral("why")).has_value());
        EXPECT_EQ(keychain.remove(service), keychainAuthFailed);
        EXPECT_EQ(vault.storeStatus(seedOf(4), *keys::Address::fromText(otherAccount)),
                  keychainAuthFailed);
        EXPECT_EQ(keychain.copyAccount(service), account);

        desktop.killKeyring();
        ASSERT_TRUE(desktop.startKeyring());
        EXPECT_EQ(itemCount(), 1);
        EXPECT_EQ(keychain.copyAccount(service), account);
        EXPECT_EQ(vault.loadSecret(QStringLiteral("why")), seedOf(3));
        desktop.killKeyring();
    }
}

TEST_F(SecretServiceKeychainTest, AKeyThatCouldNotBeSeenIsNotReplaced)
{
    ASSERT_TRUE(desktop.startKeyring());
    ASSERT_EQ(vault.storeStatus(seedOf(3), *keys::Address::fromText(account)), keychainSuccess);
    for (const bool locked : {true, false}) {
        SCOPED_TRACE(locked ? "locked" : "absent");
        desktop.killKeyring();
        ASSERT_TRUE(!locked || desktop.startKeyring(Start::Locked));
        ASSERT_TRUE(QFile::remove(desktop.file("accounts.json")));
        ASSERT_EQ(keychain.copyAccount(service), std::nullopt);
        if (locked) {
            desktop.killKeyring();
        }
        ASSERT_TRUE(desktop.startKeyring());
        EXPECT_EQ(vault.storeStatus(seedOf(4), *keys::Address::fromText(otherAccount)),
                  keychainDuplicateItem);
        EXPECT_EQ(vault.storeStatus(seedOf(4), *keys::Address::fromText(otherAccount)),
                  keychainDuplicateItem);
        EXPECT_EQ(vault.loadSecret(QStringLiteral("why")), seedOf(3));
        EXPECT_EQ(keychain.copyAccount(service), account);
    }
    // Known, it may be replaced.
    EXPECT_EQ(vault.storeStatus(seedOf(4), *keys::Address::fromText(otherAccount)),
              keychainSuccess);
}

TEST_F(SecretServiceKeychainTest, BelievesItsMemoryWhereTheKeyringShowsNothing)
{
    const QString login = QStringLiteral("/org/freedesktop/secrets/collection/login");
    RememberedAccounts(desktop.file("accounts.json")).remember(service, {account, login});
    ASSERT_TRUE(desktop.startKeyring(Start::Locked));
    EXPECT_EQ(keychain.copyAccount(service), account);
    EXPECT_EQ(keychain.remove(service), keychainAuthFailed);
    EXPECT_EQ(keychain.add(service, account, seedOf(1), KeychainProtection::None),
              keychainNotAvailable);
}

TEST_F(SecretServiceKeychainTest, SurvivesAServiceThatHangsDiesAndComesBack)
{
    SecretServiceKeychain hasty(owner, desktop.file("accounts.json"),
                                {.quick = 1s, .unlock = 2s, .presence = 2s});
    keys::KeyVault hastyVault(hasty);
    const auto expectNothing = [&] {
        EXPECT_EQ(hasty.remove(service), keychainNotAvailable);
        EXPECT_EQ(hastyVault.storeStatus(seedOf(6), *keys::Address::fromText(otherAccount)),
                  keychainNotAvailable);
        EXPECT_FALSE(hastyVault.loadSecret(QStringLiteral("why")).has_value());
    };
    expectNothing();
    EXPECT_EQ(keychain.copyAccount(service), std::nullopt);
    ASSERT_TRUE(desktop.startKeyring());
    ASSERT_EQ(vault.storeStatus(seedOf(5), *keys::Address::fromText(account)), keychainSuccess);
    desktop.signalKeyring(SIGSTOP);
    expectNothing();
    desktop.killKeyring();
    expectNothing();
    EXPECT_EQ(keychain.copyAccount(service), account);

    ASSERT_TRUE(desktop.startKeyring());
    EXPECT_EQ(vault.loadSecret(QStringLiteral("why")), seedOf(5));
    EXPECT_TRUE(vault.remove());
}

TEST_F(SecretServiceKeychainTest, CorrectsItsMemoryFromAnOpenKeyring)
{
    ASSERT_TRUE(desktop.startKeyring());
    ASSERT_EQ(keychain.add(service, account, seedOf(1), KeychainProtection::None), keychainSuccess);

    // Lost memory is made up for ...
    ASSERT_TRUE(QFile::remove(desktop.file("accounts.json")));
    EXPECT_EQ(keychain.copyAccount(service), account);
    ASSERT_TRUE(desktop.lock());
    desktop.killKeyring();
    EXPECT_EQ(keychain.copyAccount(service), account);

    // ... damaged memory is nothing ...
    QFile memory(desktop.file("accounts.json"));
    ASSERT_TRUE(memory.open(QIODevice::ReadWrite | QIODevice::Unbuffered));
    for (const char *damaged : {"{", "[]", "{\"corvane.signing-key\":7}"}) {
        ASSERT_TRUE(memory.resize(0) && memory.seek(0) && memory.write(damaged) > 0);
        EXPECT_EQ(keychain.copyAccount(service), std::nullopt) << damaged;
    }

    // ... and a key that somebody else has deleted is forgotten.
    ASSERT_TRUE(desktop.startKeyring());
    EXPECT_EQ(keychain.copyAccount(service), account);
    ASSERT_TRUE(desktop.deleteItems(service));
    EXPECT_EQ(keychain.copyAccount(service), std::nullopt);
    desktop.killKeyring();
    EXPECT_EQ(keychain.copyAccount(service), std::nullopt);
}

TEST_F(SecretServiceKeychainTest, TheSecretNeverCrossesTheBusInTheClear)
{
    ASSERT_TRUE(desktop.startKeyring());
    ChildProcess monitor({"dbus-monitor", "--address", bus->address(), "--binary"});
    QByteArray traffic;
    /// Says this on the bus until the monitor has written it, and so everything before.
    const auto hears = [&](const QByteArray &text) {
        return waitUntil([&] {
            auto message = QDBusMessage::createMethodCall(
                QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/"),
                QStringLiteral("org.corvane.Marker"), QStringLiteral("Plant"));
            message << text;
            bus->connection().call(message);
            traffic += monitor.read();
            return traffic.contains(text);
        });
    };
    ASSERT_TRUE(hears("listening"));
    const SecretBytes data = seedOf(9);
    ASSERT_EQ(keychain.add(service, account, data, KeychainProtection::UserPresence),
              keychainSuccess);
    EXPECT_EQ(keychain.copyData(service, QStringLiteral("why")), data);
    ASSERT_TRUE(hears("the end"));
    EXPECT_TRUE(traffic.contains(account.toUtf8()));
    const QByteArray raw(reinterpret_cast<const char *>(data.bytes().data()), 32);
    for (const QByteArray &form : {raw, raw.toHex(), raw.toHex().toUpper(), raw.toBase64(),
                                   keys::Base58::encode(data.bytes()).toLatin1()}) {
        EXPECT_FALSE(traffic.contains(form)) << form.toPercentEncoding().constData();
    }
}

} // namespace

} // namespace corvane::tests
