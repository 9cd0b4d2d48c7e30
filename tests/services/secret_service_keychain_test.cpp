#include "keyring_desktop.h"
#include "keys/base58.h"
#include "keys/key_vault.h"
#include "platform/linux/secret_service_keychain.h"
#include "scripted_authenticator.h"

#include <QFile>

#include <gtest/gtest.h>

#include <csignal>
#include <mutex>

namespace corvane::tests {

namespace {

using namespace platform;
using namespace std::chrono_literals;
using Start = KeyringDesktop::Start;

const QString service = keys::KeyVault::serviceName;
const QString account = QStringLiteral("4zMMC9srt5Ri5X14GAgXhaHii3GnPAEERYPJgZJDncDU");
const QString otherAccount = QStringLiteral("9WzDXwBbmkg8ZTbNMqUxvQRAyrZzDsGYdLVL9zYtAWWM");

SecretBytes seed(std::uint8_t first)
{
    SecretBytes bytes(32);
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        bytes.bytes()[index] = static_cast<std::uint8_t>(first + 7 * index);
    }
    return bytes;
}

class SecretServiceKeychainTest : public testing::Test
{
protected:
    // One bus for all: libsecret keeps to the bus that it has met first.
    static void SetUpTestSuite() { bus = std::make_unique<SessionBus>(); }
    static void TearDownTestSuite() { bus.reset(); }

    [[nodiscard]] SecretServiceKeychain makeKeychain()
    {
        return SecretServiceKeychain(owner, desktop.file("accounts.json"), bounds);
    }
    [[nodiscard]] qsizetype itemCount() const
    {
        const auto items = desktop.items(service);
        return items ? items->size() : -1;
    }

    static inline std::unique_ptr<SessionBus> bus;
    KeyringDesktop desktop{*bus};
    ScriptedAuthenticator owner;
    SecretServiceBounds bounds{.quick = 2s, .unlock = 2s, .presence = 2s};
};

TEST_F(SecretServiceKeychainTest, KeepsOneItemAndHandsItOutByItsProtection)
{
    ASSERT_TRUE(desktop.startKeyring());
    SecretServiceKeychain keychain = makeKeychain();
    const SecretBytes data = seed(1);

    struct Case
    {
        KeychainProtection protection;
        const char *attribute;
        QStringList reasons;
        bool readableAgainstWill;
    };
    for (const Case &expected :
         {Case{KeychainProtection::UserPresence, "user-presence", {QStringLiteral("why")}, false},
          Case{KeychainProtection::None, "none", {}, true}}) {
        SCOPED_TRACE(expected.attribute);
        EXPECT_EQ(keychain.copyAccount(service), std::nullopt);
        EXPECT_EQ(keychain.remove(service), keychainItemNotFound);
        ASSERT_EQ(keychain.add(service, account, data, expected.protection), keychainSuccess);
        for (const QString &again : {account, otherAccount}) {
            EXPECT_EQ(keychain.add(service, again, data, expected.protection),
                      keychainDuplicateItem);
        }

        const auto items = desktop.items(service).value();
        ASSERT_EQ(items.size(), 1);
        EXPECT_EQ(items[0].value(QStringLiteral("account")), account);
        EXPECT_EQ(items[0].value(QStringLiteral("protection")),
                  QString::fromLatin1(expected.attribute));

        EXPECT_EQ(keychain.copyAccount(service), account);
        EXPECT_TRUE(owner.reasons.isEmpty());
        const auto copy = keychain.copyData(service, QStringLiteral("why"));
        EXPECT_TRUE(copy && *copy == data);
        EXPECT_EQ(owner.reasons, expected.reasons);

        owner.agrees = false;
        EXPECT_EQ(keychain.copyData(service, QStringLiteral("why")).has_value(),
                  expected.readableAgainstWill);
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
    SecretServiceKeychain keychain = makeKeychain();
    ASSERT_EQ(keychain.add(service, account, seed(1), KeychainProtection::UserPresence),
              keychainSuccess);

    OneTimeContext context;
    EXPECT_FALSE(keychain.copyData(service, context).has_value());
    context.pass();
    const auto copy = keychain.copyData(service, context);
    EXPECT_TRUE(copy && *copy == seed(1));
    EXPECT_FALSE(context.passed());
    EXPECT_FALSE(keychain.copyData(service, context).has_value());
    EXPECT_TRUE(owner.reasons.isEmpty());
}

TEST_F(SecretServiceKeychainTest, TheVaultReplacesKeysAndFallsBackWherePresenceCannotBeAsked)
{
    ASSERT_TRUE(desktop.startKeyring());
    SecretServiceKeychain keychain = makeKeychain();
    keys::KeyVault vault(keychain);

    for (const bool available : {true, false}) {
        SCOPED_TRACE(available);
        owner.available = available;
        ASSERT_EQ(vault.storeStatus(seed(1), account), keychainSuccess);
        ASSERT_EQ(vault.storeStatus(seed(2), otherAccount), keychainSuccess);
        const auto items = desktop.items(service).value();
        ASSERT_EQ(items.size(), 1);
        EXPECT_EQ(items[0].value(QStringLiteral("protection")) == u"user-presence", available);
        EXPECT_EQ(vault.pubkey(), otherAccount);
        const auto copy = vault.loadSecret(QStringLiteral("why"));
        EXPECT_TRUE(copy && *copy == seed(2));
    }
    EXPECT_TRUE(vault.remove());
    EXPECT_FALSE(vault.remove());
}

TEST_F(SecretServiceKeychainTest, ALockedKeyringIsNotTakenForAnEmptyOne)
{
    for (const bool neverUnlocked : {false, true}) {
        SCOPED_TRACE(neverUnlocked ? "locked since the start" : "locked later");
        ASSERT_TRUE(desktop.startKeyring());
        SecretServiceKeychain keychain = makeKeychain();
        keys::KeyVault vault(keychain);
        ASSERT_EQ(vault.storeStatus(seed(3), account), keychainSuccess);
        if (neverUnlocked) {
            desktop.killKeyring();
            ASSERT_TRUE(desktop.startKeyring(Start::Locked));
        } else {
            ASSERT_TRUE(desktop.lock());
        }

        EXPECT_EQ(keychain.copyAccount(service), account);
        EXPECT_FALSE(vault.loadSecret(QStringLiteral("why")).has_value());
        EXPECT_EQ(keychain.remove(service), keychainAuthFailed);
        EXPECT_EQ(vault.storeStatus(seed(4), otherAccount), keychainAuthFailed);
        EXPECT_EQ(keychain.copyAccount(service), account);

        desktop.killKeyring();
        ASSERT_TRUE(desktop.startKeyring());
        EXPECT_EQ(itemCount(), 1);
        EXPECT_EQ(keychain.copyAccount(service), account);
        const auto copy = vault.loadSecret(QStringLiteral("why"));
        EXPECT_TRUE(copy && *copy == seed(3));
        desktop.killKeyring();
    }
}

TEST_F(SecretServiceKeychainTest, BelievesItsMemoryWhereTheKeyringShowsNothing)
{
    SecretServiceKeychain keychain = makeKeychain();
    const auto add = [&] {
        return keychain.add(service, account, seed(1), KeychainProtection::None);
    };
    ASSERT_TRUE(desktop.startKeyring());
    ASSERT_TRUE(desktop.lock());
    EXPECT_EQ(keychain.copyAccount(service), std::nullopt);
    EXPECT_EQ(add(), keychainAuthFailed);

    const QString login = QStringLiteral("/org/freedesktop/secrets/collection/login");
    RememberedAccounts(desktop.file("accounts.json")).remember(service, {account, login});
    EXPECT_EQ(keychain.copyAccount(service), account);
    EXPECT_EQ(keychain.remove(service), keychainAuthFailed);

    // A daemon over other files knows neither the login keyring nor one for new items.
    desktop.killKeyring();
    ASSERT_TRUE(QFile::rename(desktop.file("keyrings"), desktop.file("elsewhere")));
    ASSERT_TRUE(desktop.startKeyring(Start::Locked));
    EXPECT_EQ(keychain.copyAccount(service), account);
    EXPECT_EQ(keychain.remove(service), keychainAuthFailed);
    EXPECT_EQ(add(), keychainNotAvailable);
}

TEST_F(SecretServiceKeychainTest, AnswersWithoutAService)
{
    SecretServiceKeychain keychain = makeKeychain();
    const auto expectNothing = [&] {
        EXPECT_EQ(keychain.add(service, account, seed(1), KeychainProtection::None),
                  keychainNotAvailable);
        EXPECT_EQ(keychain.remove(service), keychainNotAvailable);
        EXPECT_FALSE(keychain.copyData(service, QStringLiteral("why")).has_value());
    };
    expectNothing();
    EXPECT_EQ(keychain.copyAccount(service), std::nullopt);

    ASSERT_TRUE(desktop.startKeyring());
    ASSERT_EQ(keychain.add(service, account, seed(1), KeychainProtection::None), keychainSuccess);
    desktop.killKeyring();
    expectNothing();
    EXPECT_EQ(keychain.copyAccount(service), account);
}

TEST_F(SecretServiceKeychainTest, SurvivesAServiceThatHangsDiesAndComesBack)
{
    bounds.quick = 300ms;
    ASSERT_TRUE(desktop.startKeyring());
    SecretServiceKeychain keychain = makeKeychain();
    keys::KeyVault vault(keychain);
    ASSERT_EQ(vault.storeStatus(seed(5), account), keychainSuccess);

    desktop.signalKeyring(SIGSTOP);
    EXPECT_EQ(keychain.copyAccount(service), account);
    EXPECT_EQ(keychain.remove(service), keychainNotAvailable);
    EXPECT_EQ(vault.storeStatus(seed(6), otherAccount), keychainNotAvailable);
    EXPECT_FALSE(vault.loadSecret(QStringLiteral("why")).has_value());

    desktop.killKeyring();
    EXPECT_EQ(keychain.remove(service), keychainNotAvailable);
    ASSERT_TRUE(desktop.startKeyring());
    EXPECT_EQ(keychain.copyAccount(service), account);
    const auto copy = vault.loadSecret(QStringLiteral("why"));
    EXPECT_TRUE(copy && *copy == seed(5));
    EXPECT_TRUE(vault.remove());
}

TEST_F(SecretServiceKeychainTest, CorrectsItsMemoryFromAnOpenKeyring)
{
    ASSERT_TRUE(desktop.startKeyring());
    SecretServiceKeychain keychain = makeKeychain();
    ASSERT_EQ(keychain.add(service, account, seed(1), KeychainProtection::None), keychainSuccess);

    // Lost memory is made up for ...
    ASSERT_TRUE(QFile::remove(desktop.file("accounts.json")));
    EXPECT_EQ(keychain.copyAccount(service), account);
    ASSERT_TRUE(desktop.lock());
    desktop.killKeyring();
    EXPECT_EQ(keychain.copyAccount(service), account);

    // ... damaged memory is nothing ...
    QFile memory(desktop.file("accounts.json"));
    ASSERT_TRUE(memory.open(QIODevice::ReadWrite));
    const QByteArray intact = memory.readAll();
    for (const QByteArray &damaged :
         {QByteArray("{"), QByteArray("[]"), QByteArray("{\"corvane.signing-key\":7}")}) {
        ASSERT_TRUE(memory.resize(0) && memory.seek(0) && memory.write(damaged) > 0);
        ASSERT_TRUE(memory.flush());
        EXPECT_EQ(keychain.copyAccount(service), std::nullopt) << damaged.constData();
    }
    ASSERT_TRUE(memory.resize(0) && memory.seek(0) && memory.write(intact) > 0 && memory.flush());

    // ... and a key that somebody else has deleted is forgotten.
    ASSERT_TRUE(desktop.startKeyring());
    ASSERT_TRUE(desktop.deleteItems(service));
    EXPECT_EQ(keychain.copyAccount(service), std::nullopt);
    desktop.killKeyring();
    EXPECT_EQ(keychain.copyAccount(service), std::nullopt);
}

/// Everything that crosses the bus while it is listened to.
class Eavesdropper
{
public:
    explicit Eavesdropper(const std::string &address)
    {
        m_bus.reset(g_dbus_connection_new_for_address_sync(
            address.c_str(),
            static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                              G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
            nullptr, nullptr, nullptr));
        const GioPtr<GVariant> reply(g_dbus_connection_call_sync(
            m_bus.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus",
            "org.freedesktop.DBus.Monitoring", "BecomeMonitor", g_variant_new("(asu)", nullptr, 0),
            nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
        m_listening = reply != nullptr;
        g_dbus_connection_add_filter(m_bus.get(), hear, this, nullptr);
    }
    ~Eavesdropper() { g_dbus_connection_close_sync(m_bus.get(), nullptr, nullptr); }

    [[nodiscard]] bool listening() const { return m_listening; }
    [[nodiscard]] bool heard(const QByteArray &needle)
    {
        const std::scoped_lock lock(m_mutex);
        return m_traffic.contains(needle);
    }

private:
    static GDBusMessage *hear(GDBusConnection *, GDBusMessage *message, gboolean incoming,
                              gpointer self)
    {
        gsize size = 0;
        guchar *blob =
            incoming ? g_dbus_message_to_blob(message, &size, G_DBUS_CAPABILITY_FLAGS_NONE, nullptr)
                     : nullptr;
        if (blob != nullptr) {
            auto *eavesdropper = static_cast<Eavesdropper *>(self);
            const std::scoped_lock lock(eavesdropper->m_mutex);
            eavesdropper->m_traffic.append(reinterpret_cast<char *>(blob),
                                           static_cast<qsizetype>(size));
            g_free(blob);
        }
        g_object_unref(message);
        return nullptr;
    }

    GioPtr<GDBusConnection> m_bus;
    bool m_listening = false;
    std::mutex m_mutex;
    QByteArray m_traffic;
};

TEST_F(SecretServiceKeychainTest, TheSecretNeverCrossesTheBusInTheClear)
{
    ASSERT_TRUE(desktop.startKeyring());
    Eavesdropper eavesdropper(bus->address());
    ASSERT_TRUE(eavesdropper.listening());

    const SecretBytes data = seed(9);
    const QByteArray raw(reinterpret_cast<const char *>(data.bytes().data()), 32);
    const QByteArray forms[] = {raw, raw.toHex(), raw.toHex().toUpper(), raw.toBase64(),
                                keys::Base58::encode(data.bytes()).toLatin1()};

    SecretServiceKeychain keychain = makeKeychain();
    ASSERT_EQ(keychain.add(service, account, data, KeychainProtection::UserPresence),
              keychainSuccess);
    const auto copy = keychain.copyData(service, QStringLiteral("why"));
    ASSERT_TRUE(copy && *copy == data);

    // The account comes last in time, so what was said before has been heard when it has.
    ASSERT_EQ(keychain.copyAccount(service), account);
    ASSERT_TRUE(waitUntil([&] { return eavesdropper.heard(account.toUtf8()); }));
    for (const QByteArray &form : forms) {
        EXPECT_FALSE(eavesdropper.heard(form)) << form.toPercentEncoding().constData();
    }

    // The same search does find what is there to be found.
    for (const QByteArray &form : forms) {
        const GioPtr<GVariant> reply(g_dbus_connection_call_sync(
            bus->connection(), "org.freedesktop.DBus", "/", "org.corvane.Marker", "Plant",
            g_variant_new("(@ay)", g_variant_new_fixed_array(G_VARIANT_TYPE_BYTE, form.data(),
                                                             static_cast<gsize>(form.size()), 1)),
            nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
        EXPECT_TRUE(waitUntil([&] { return eavesdropper.heard(form); }));
    }
}

} // namespace

} // namespace corvane::tests
